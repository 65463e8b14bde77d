import type { RangeTerm } from "../model/search_terms.ts";
import type { Context } from "./component.ts";

/** A range of a quantity, in its own unit; an open end is missing. */
export interface Range {
    readonly from: number | undefined;
    readonly to: number | undefined;
}

/** The range that terms ask for; nothing where they ask for none. Where several do, the last one counts. */
export function rangeOn(context: Context, terms: readonly string[], quantity: string): Range | undefined {
    const term = terms.map((text) => asRange(context, text)).findLast((each) => each?.quantity === quantity);
    if (term === undefined) {
        return undefined;
    }
    const { isCount } = context.quantities.get(quantity);
    const limit = ({ from, to }: RangeTerm, end: "from" | "to") => {
        const told = end === "from" ? from : to;
        return told === undefined
            ? undefined
            : told.value * (told.isPercent && isCount ? context.book.transactions : 1);
    };
    return { from: limit(term, "from"), to: limit(term, "to") };
}

/** The terms with this one in the place of all that ask for a range of a quantity; without any where it is missing. */
export function withRange(
    context: Context,
    terms: readonly string[],
    quantity: string,
    text: string | undefined,
): string[] {
    const others = terms.filter((each) => asRange(context, each)?.quantity !== quantity);
    return text === undefined ? others : [...others, text];
}

function asRange(context: Context, text: string): RangeTerm | undefined {
    const term = context.filter.term(text);
    return term?.kind === "range" ? term : undefined;
}
