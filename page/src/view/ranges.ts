import { amountOf, type Limit, type RangeTerm } from "../model/search_terms.ts";
import { keptOf } from "../model/shown_units.ts";
import type { Context } from "./component.ts";

/** What says how terms are read, and in what counts are. */
type Reader = Pick<Context, "book" | "filter" | "quantities">;

/** A range of a quantity, as its values are kept; an open end is missing. */
export interface Range {
    readonly from: number | undefined;
    readonly to: number | undefined;
}

/** The range that terms ask for; nothing where they ask for none. Where several do, the last one counts. */
export function rangeOn(reader: Reader, terms: readonly string[], quantity: string): Range | undefined {
    const term = terms.map((text) => asRange(reader, text)).findLast((each) => each?.quantity === quantity);
    if (term === undefined) {
        return undefined;
    }
    const unit = reader.quantities.get(quantity);
    const amount = (limit: Limit | undefined) =>
        limit === undefined
            ? undefined
            : keptOf(unit, amountOf(limit, unit.isCount, reader.book.transactions));
    return { from: amount(term.from), to: amount(term.to) };
}

/** The terms with this one in the place of all that ask for a range of a quantity; without any where it is missing. */
export function withRange(
    reader: Reader,
    terms: readonly string[],
    quantity: string,
    text: string | undefined,
): string[] {
    const others = terms.filter((each) => asRange(reader, each)?.quantity !== quantity);
    return text === undefined ? others : [...others, text];
}

function asRange(reader: Reader, text: string): RangeTerm | undefined {
    const term = reader.filter.term(text);
    return term?.kind === "range" ? term : undefined;
}
