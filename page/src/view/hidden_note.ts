import type { Filter } from "../model/filter.ts";
import type { Context, Sight } from "./component.ts";
import { button, h, refill, shortened } from "./dom.ts";
import { termText } from "./search_bar.ts";

/** Says of the chosen rule that the filters leave it out of the table, and how to loosen them. */
export class HiddenNote {
    readonly root = h("div", { role: "status" });
    readonly #context: Context;

    constructor(context: Context) {
        this.#context = context;
    }

    update({ state, found, passes }: Sight): void {
        const { rule } = state;
        if (rule === undefined || passes[rule] === 1) {
            refill(this.root);
            return;
        }
        const { filter } = this.#context;
        const now = { ...state, terms: [...state.terms, ...filter.termsOf(state.draft)] };
        const { terms, formsOff, kindsOff } = filter.loosenedFor(rule, now);
        const words = this.#givenUp(now, { terms, formsOff, kindsOff });
        const loosen = button(`Show it there, without ${words.join(" and ")}`, { class: "link" }, () => {
            this.#context.change({ terms, formsOff, kindsOff, draft: "" });
        });
        const isInReading = found.masks[rule] !== 0 && found.others > 0 && !state.byReadings;
        refill(
            this.root,
            h(
                "div",
                { class: "hidden-note" },
                h("p", {}, "The filters leave this rule out of the table."),
                h("p", {}, loosen),
                isInReading ? h("p", {}, this.#byReading()) : undefined,
            ),
        );
    }

    #byReading(): HTMLElement {
        return button("Show the rules that another reading lets fit", { class: "link" }, () => {
            this.#context.change({ byReadings: true });
        });
    }

    /** What of the first filter the other one does without. */
    #givenUp(one: Filter, other: Filter): string[] {
        const { filter } = this.#context;
        const terms = one.terms
            .filter((text) => !other.terms.includes(text))
            .map((text) => {
                const term = filter.term(text);
                return `“${shortened(term === undefined ? text : termText(this.#context, term), 60)}”`;
            });
        return [
            ...terms,
            ...(other.kindsOff.length < one.kindsOff.length ? ["a choice of certainty"] : []),
            ...(other.formsOff.length < one.formsOff.length ? ["a choice of forms"] : []),
        ];
    }
}
