import type { Book } from "../data/book.ts";
import { matchingItems } from "./item_matching.ts";
import type { Term } from "./search_terms.ts";

/** Two items that meet less often than by chance. */
export interface Exclusion {
    readonly first: number;
    readonly second: number;
    readonly together: number;
    /** How many transactions would have both by chance. */
    readonly expected: number;
    readonly lift: number;
    /** The share of all transactions that have one of the two. */
    readonly covered: number;
    /** How rarely chance gives so few, as -log10. */
    readonly p: number;
}

/** By what exclusions are ordered, the largest first; of `lift`, the smallest. */
export type ExclusionOrder = "p" | "lift" | "expected" | "covered";

/** All pairs of a book, the most surprising first. */
export function exclusionsOf(book: Book): Exclusion[] {
    const { firsts, seconds, togethers, ps, count } = book.exclusions;
    const n = book.transactions;
    return Array.from({ length: count }, (_, i) => {
        const first = firsts[i]!;
        const second = seconds[i]!;
        const [one, other] = [book.items.counts[first]!, book.items.counts[second]!];
        const together = togethers[i]!;
        const expected = (one * other) / n;
        const covered = (one + other - together) / n;
        return { first, second, together, expected, lift: together / expected, covered, p: ps[i]! };
    });
}

/**
 * The pairs that the items asked for are in: of each term one of the two, of a denied one neither. Terms that ask for
 * numbers of rules do not matter.
 */
export function chosenExclusions(
    book: Book,
    all: readonly Exclusion[],
    terms: readonly (Term | undefined)[],
): Exclusion[] {
    const tests = terms.flatMap((term) => {
        if (term?.kind !== "items") {
            return [];
        }
        const matches = matchingItems(book.items, term.patterns);
        return [
            ({ first, second }: Exclusion) =>
                (matches[first] === 1 || matches[second] === 1) !== term.isExcluded,
        ];
    });
    return all.filter((exclusion) => tests.every((test) => test(exclusion)));
}

/** The pairs in another order. */
export function orderedExclusions(pairs: readonly Exclusion[], by: ExclusionOrder): Exclusion[] {
    const sign = by === "lift" ? 1 : -1;
    return [...pairs].sort((one, other) => sign * (one[by] - other[by]));
}
