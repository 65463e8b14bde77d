import { boundsText, countText } from "../model/number_words.ts";
import type { Context, Sight } from "./component.ts";
import { h, refill, shortened } from "./dom.ts";
import { termText } from "./search_bar.ts";

const mostRules = 250;
const mostLetters = 400;

/** The shown rules as a plain table for paper, where rows cannot come and go. Filled when one prints. */
export class PrintTable {
    readonly root = h("section", { class: "print-only", "aria-hidden": "true" });
    readonly #context: Context;

    constructor(context: Context) {
        this.#context = context;
    }

    /** Fills the table with the first rules that are shown. */
    fill({ rules, state }: Sight): void {
        const { quantities, filter } = this.#context;
        const filters = state.terms.map((text) => {
            const term = filter.term(text);
            return term === undefined ? text : termText(this.#context, term);
        });
        const columns = state.columns.map((name) => quantities.get(name));
        const head = [
            ...["#", "If", "then"].map((text) => h("th", { scope: "col" }, text)),
            ...columns.map(({ title }) => h("th", { scope: "col", class: "number" }, title)),
        ];
        const rows = Array.from(rules.subarray(0, mostRules), (rule) => this.#row(rule, state.columns));
        const left = rules.length - rows.length;
        const asked = filters.length === 0 ? "" : `: ${shortened(filters.join("; "), mostLetters)}`;
        refill(
            this.root,
            h("p", {}, `${countText(rules.length)} rules${asked}`),
            h("table", { class: "plain" }, h("thead", {}, h("tr", {}, ...head)), h("tbody", {}, ...rows)),
            left > 0 ? h("p", {}, `and ${countText(left)} more`) : undefined,
        );
    }

    /** Empties it again. */
    clear(): void {
        refill(this.root);
    }

    #row(rule: number, columns: readonly string[]): HTMLElement {
        const { book, words, quantities } = this.#context;
        const side = (position: number) => h("td", {}, shortened(words.text(position), mostLetters));
        return h(
            "tr",
            {},
            h("td", {}, countText(rule + 1)),
            side(book.rules.premises[rule]!),
            side(book.rules.conclusions[rule]!),
            ...columns.map((name) =>
                h(
                    "td",
                    { class: "number" },
                    boundsText(quantities.bounds(name, rule), quantities.get(name).say),
                ),
            ),
        );
    }
}
