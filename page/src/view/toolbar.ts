import { countText } from "../model/number_words.ts";
import type { Component, Context, Sight } from "./component.ts";
import { button, h } from "./dom.ts";
import { LinkCopy } from "./link_copy.ts";

/** How many rules are shown, the choice of columns, and what can be done with what is shown. */
export class Toolbar implements Component {
    readonly root: HTMLElement;
    readonly #context: Context;
    readonly #count = h("p", { class: "count", role: "status" });
    readonly #clear: HTMLButtonElement;
    readonly #readings: HTMLButtonElement;
    #byReadings = false;
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
        const save = button(
            "Save as CSV",
            { title: "Save the rules that are shown as a table" },
            exportRules,
        );
        const hint = h("p", { class: "hint" }, "A click on a rule shows what is behind it.");
        this.root = h(
            "div",
            { class: "toolbar" },
            this.#count,
            this.#readings,
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

    update({ state, found, rules, busy }: Sight): void {
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
