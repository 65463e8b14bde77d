import { countText } from "../model/number_words.ts";
import type { ViewState } from "../model/view_state.ts";
import type { Component, Context, Sight } from "./component.ts";
import { button, h, refill, shortened } from "./dom.ts";
import { termText } from "./search_bar.ts";

/** Stands in the place of the table where no rule is left, and says which filter to loosen. */
export class NoRules implements Component {
    readonly root = h("div", { class: "no-rules", role: "status" });
    readonly #context: Context;

    constructor(context: Context) {
        this.#context = context;
    }

    update({ rules, state, found }: Sight): void {
        if (rules.length > 0) {
            refill(this.root);
        } else if (this.#context.book.rules.count === 0) {
            refill(this.root, ...this.#ofEmptyBook());
        } else {
            refill(this.root, ...this.#ofFilters(state, found.others));
        }
    }

    #ofEmptyBook(): HTMLElement[] {
        const { summary } = this.#context.book.header;
        const last = summary.left_out.at(-1);
        const advice =
            last === undefined
                ? ""
                : `The last ${countText(last.count)} were ${last.what}; ${last.options} keeps them.`;
        return [
            h("h2", {}, "This page has no rule"),
            h("p", {}, summary.note === "" ? advice : summary.note),
        ];
    }

    #ofFilters(state: ViewState, others: number): HTMLElement[] {
        const ways = this.#ways(state).map(({ words, changes }) => {
            const count = this.#context.filter
                .passes({ ...state, ...changes, terms: changes.terms })
                .reduce(sum, 0);
            return { words, changes: { ...changes, draft: "" }, count };
        });
        ways.sort((one, other) => other.count - one.count);
        const entries = ways.map(({ words, changes, count }) =>
            h(
                "li",
                {},
                button(`Without ${words}`, { class: "link" }, () => {
                    this.#context.change(changes);
                }),
                h("span", { class: "value" }, count === 1 ? "1 rule" : `${countText(count)} rules`),
            ),
        );
        return [
            h("h2", {}, "No rule fits all filters"),
            ...(others === 0 ? [] : [this.#byReadings(others)]),
            h("p", { class: "quiet" }, "Loosen one of them:"),
            h("ul", { class: "list" }, ...entries),
        ];
    }

    /** Leads to the rules that fit once they are turned round, or both of their sides denied. */
    #byReadings(others: number): HTMLElement {
        const words = others === 1 ? "1 rule fits" : `${countText(others)} rules fit`;
        const show = button("Show", { class: "link" }, () => {
            this.#context.change({ byReadings: true });
        });
        return h("p", {}, `In another reading (turned round, or with both sides denied) ${words}. `, show);
    }

    /** Each filter that could be given up, with the state without it. */
    #ways(state: ViewState): { words: string; changes: Partial<ViewState> & { terms: string[] } }[] {
        const { filter } = this.#context;
        const terms = [...state.terms, ...filter.termsOf(state.draft)];
        const ways = terms.map((text, position) => {
            const term = filter.term(text);
            const words = shortened(term === undefined ? text : termText(this.#context, term), 80);
            return { words: `“${words}”`, changes: { terms: terms.filter((_, i) => i !== position) } };
        });
        const switched = [
            {
                isOff: state.kindsOff.length > 0,
                words: "a choice of certainty",
                changes: { terms, kindsOff: [] },
            },
            {
                isOff: state.formsOff.length > 0,
                words: "a choice of forms",
                changes: { terms, formsOff: [] },
            },
        ];
        return [...ways, ...switched.filter(({ isOff }) => isOff)];
    }
}

function sum(one: number, other: number): number {
    return one + other;
}
