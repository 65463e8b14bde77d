import { leastCases, rulesOfFewCases } from "../model/few_cases.ts";
import { countText } from "../model/number_words.ts";
import type { Component, Context, Sight } from "./component.ts";
import { button, h } from "./dom.ts";
import { LinkCopy } from "./link_copy.ts";
import { rangeOn } from "./ranges.ts";

/** How many rules are shown, the choice of columns, and what can be done with what is shown. */
export class Toolbar implements Component {
    readonly root: HTMLElement;
    readonly #context: Context;
    readonly #count = h("p", { class: "count", role: "status" });
    readonly #clear: HTMLButtonElement;
    readonly #readings: HTMLButtonElement;
    readonly #few: HTMLButtonElement;
    #byReadings = false;
    #terms: readonly string[] = [];
    readonly #boxes = new Map<string, HTMLInputElement>();

    constructor(context: Context, exportRules: () => void) {
        this.#context = context;
        this.#clear = button("Clear filters", { class: "link" }, () => {
            context.change({ terms: [], draft: "", formsOff: [], kindsOff: [], byReadings: false });
        });
        const title =
            "A rule can be read in four ways: as it is, turned round, and both with the sides denied. " +
            "These name what is searched for in another reading than the one shown.";
        this.#readings = button("", { class: "link", title }, () => {
            context.change({ byReadings: !this.#byReadings });
        });
        this.#few = button(
            "",
            {
                class: "link",
                title: `Of so few cases hardly anything follows: leave out rules that fewer than ${leastCases} support`,
            },
            () => {
                context.change({ terms: [...this.#terms, `support>=${leastCases}`] });
            },
        );
        const save = button(
            "Save as CSV",
            { title: "Save the rules that are shown as a table, as the program writes it (a p as -log10)" },
            exportRules,
        );
        const hint = h("p", { class: "hint" }, "A click on a rule shows what is behind it.");
        this.root = h(
            "div",
            { class: "toolbar" },
            this.#count,
            this.#readings,
            this.#few,
            this.#clear,
            hint,
            h(
                "div",
                { class: "actions" },
                this.#columns(),
                save,
                new LinkCopy(context.address, context.say).root,
            ),
        );
    }

    update(now: Sight, before: Sight | undefined): void {
        const { state, found, rules, busy } = now;
        this.#terms = state.terms;
        if (now.passes !== before?.passes) {
            this.#offerMore(now);
        }
        this.#byReadings = state.byReadings;
        this.#readings.hidden = found.others === 0 || rules.length === 0;
        this.#readings.textContent = readingWords(found.others, state.byReadings);
        this.#count.textContent =
            busy === "" ? countWords(rules.length, this.#context.book.rules.count) : busy;
        const isFiltered =
            state.terms.length + state.draft.length + state.formsOff.length + state.kindsOff.length > 0;
        this.#clear.hidden = !isFiltered;
        this.#boxes.forEach((box, name) => (box.checked = state.columns.includes(name)));
    }

    /** Where many rules rest on few cases, offers to leave these out. */
    #offerMore({ passes, rules, state }: Sight): void {
        const { book } = this.#context;
        const many = 0.1;
        const isAsked = rangeOn(this.#context, state.terms, "support") !== undefined;
        const few =
            isAsked || book.header.rules.min_support >= leastCases ? 0 : rulesOfFewCases(book, passes);
        this.#few.hidden = few === 0 || few < many * rules.length;
        this.#few.textContent = `Leave out ${countText(few)} of fewer than ${leastCases} cases`;
    }

    #columns(): HTMLElement {
        const { all } = this.#context.quantities;
        const boxes = all.map(({ name, title, explanation }) => {
            const box = h("input", { type: "checkbox" });
            box.addEventListener("change", () => {
                this.#context.change({ columns: this.#ticked() });
            });
            this.#boxes.set(name, box);
            return h("label", { title: explanation }, box, h("span", {}, title));
        });
        const menu = h(
            "details",
            { class: "menu" },
            h("summary", {}, "Columns"),
            h("fieldset", {}, h("legend", {}, "Numbers in the table"), ...boxes),
        );
        menu.addEventListener("focusout", (event) => {
            if (event.relatedTarget instanceof Node && !menu.contains(event.relatedTarget)) {
                menu.open = false;
            }
        });
        menu.addEventListener("keydown", (event) => {
            if (event.key === "Escape" && menu.open) {
                event.stopPropagation();
                menu.open = false;
                menu.querySelector("summary")?.focus();
            }
        });
        return menu;
    }

    #ticked(): string[] {
        return [...this.#boxes].filter(([, box]) => box.checked).map(([name]) => name);
    }
}

/** What another reading adds, or has added. */
function readingWords(others: number, areShown: boolean): string {
    const number = countText(others);
    return areShown ? `Leave out ${number} in another reading` : `${number} more in another reading`;
}

/** "All 46 rules", "3 of 46 rules". */
function countWords(shown: number, all: number): string {
    const noun = all === 1 ? "rule" : "rules";
    if (shown < all) {
        return `${countText(shown)} of ${countText(all)} ${noun}`;
    }
    return all === 1 ? "1 rule" : `All ${countText(all)} ${noun}`;
}
