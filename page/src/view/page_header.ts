import type { Header } from "../data/header.ts";
import { countText } from "../model/number_words.ts";
import { views, type View } from "../model/view_state.ts";
import type { Component, Context, Sight } from "./component.ts";
import { button, h, setAttributes, shortened } from "./dom.ts";

const viewNames: Readonly<Record<View, string>> = {
    rules: "Rules",
    items: "Items",
    exclusions: "Exclusions",
};

/** What the page is about, how its rules were chosen, and the way to its other views. */
export class PageHeader implements Component {
    readonly root: HTMLElement;
    readonly #context: Context;
    readonly #tabs = new Map<View, HTMLButtonElement>();

    constructor(context: Context, help: () => void) {
        this.#context = context;
        const { title } = context.book.header;
        const tabs = views.map((view) => {
            const tab = button(viewNames[view], {}, () => {
                context.change({ view });
            });
            this.#tabs.set(view, tab);
            return tab;
        });
        this.root = h(
            "header",
            { class: "page-header" },
            h(
                "div",
                { class: "what" },
                h("h1", {}, shortened(title, 200)),
                h("p", {}, ...this.#about()),
                this.#choice(),
            ),
            h(
                "nav",
                { "aria-label": "Views" },
                ...tabs,
                button("?", { class: "help", "aria-label": "Help", title: "Help (?)" }, help),
            ),
        );
    }

    update({ state }: Sight): void {
        this.#tabs.forEach((tab, view) => {
            setAttributes(tab, { "aria-current": view === state.view ? "page" : undefined });
        });
    }

    /** How many rules, of how many, about what, and what they have in common. */
    #about(): (string | HTMLElement)[] {
        const { quantities, book } = this.#context;
        const { header, transactions } = book;
        const {
            count,
            left,
            sort,
            ascending,
            min_support: support,
            min_confidence: confidence,
        } = header.rules;
        const rules = h("strong", {}, numberOfRules(count));
        const of = left > count ? ` of ${countText(left)}` : "";
        // The program ranks by -log10 of a probability, of which the page shows the probability itself.
        const isLowest = ascending !== (quantities.named(sort)?.isProbability ?? false);
        const order = `${isLowest ? "lowest" : "highest"} ${sort.replaceAll("_", " ")} first`;
        const about = `${of} about what goes with what in ${countText(transactions)} transactions, ${order}.`;
        const limits =
            `Each has a support of at least ${countText(support)} ` +
            `and a confidence of at least ${confidence}`;
        const confirmed =
            header.holdout === undefined
                ? ""
                : `; ${countText(header.holdout.transactions)} other transactions confirm it`;
        return [rules, count === 0 ? about : `${about} ${limits}${confirmed}.`];
    }

    /** Where the other rules went. */
    #choice(): HTMLElement {
        const { summary, run, rules, program } = this.#context.book.header;
        const step = (count: string, what: string, option: string) =>
            h(
                "tr",
                {},
                h("td", { class: "number" }, count),
                h("td", {}, what),
                h("td", {}, option === "" ? "" : h("code", {}, option)),
            );
        const limit =
            rules.left_out_by_limit === 0
                ? []
                : [
                      step(
                          countText(rules.left_out_by_limit),
                          "beyond what fits this page",
                          rules.limit_option,
                      ),
                  ];
        const rows = [
            step(countText(summary.derived), `rules from ${summary.origin}`, ""),
            ...summary.left_out.map(({ count, what, options }) => step(countText(count), what, options)),
            ...limit,
            step(countText(rules.count), "on this page", ""),
        ];
        const settings = run.settings.map(({ name, value, option }) =>
            h("tr", {}, h("td", {}, name), h("td", {}, value), h("td", {}, h("code", {}, option))),
        );
        const options = run.options === "" ? "" : `Options: ${run.options}`;
        const notes = [...(run.notes ?? []), summary.note, options, `Written by ${program}.`];
        return h(
            "details",
            { class: "choice" },
            h("summary", {}, "How these were chosen"),
            h("p", { class: "in-words" }, choiceInWords(this.#context.book.header)),
            h(
                "div",
                { class: "wide-table" },
                tableOf(["Rules", "", "Undone by"], rows),
                tableOf(["Setting", "", "Option"], settings),
            ),
            ...notes.filter((note) => note !== "").map((note) => h("p", { class: "quiet" }, note)),
        );
    }
}

function tableOf(heads: readonly string[], rows: readonly HTMLElement[]): HTMLElement {
    const head = h(
        "tr",
        {},
        ...heads.map((text) => (text === "" ? h("td") : h("th", { scope: "col" }, text))),
    );
    return h("table", { class: "plain" }, h("thead", {}, head), h("tbody", {}, ...rows));
}

/** How the rules were chosen, for who has only the page. */
function choiceInWords({ summary, program }: Header): string {
    const { derived, left_out: leftOut } = summary;
    const steps =
        leftOut.length === 0
            ? ""
            : " Those that tell a reader too little, or the same as another rule, were left out step by step.";
    const name = program.replace(/ .*$/u, "");
    return (
        `${numberOfRules(derived)} can be derived from the data.${steps} ` +
        `What is in the last columns is for whoever runs ${name} again: the options that choose otherwise.`
    );
}

function numberOfRules(count: number): string {
    if (count === 0) {
        return "No rule";
    }
    return count === 1 ? "1 rule" : `${countText(count)} rules`;
}
