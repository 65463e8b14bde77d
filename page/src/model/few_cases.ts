import type { Book } from "../data/book.ts";
import type { Passes } from "./filter.ts";

/** Fewer transactions with both sides of a rule are no more than an anecdote. */
export const leastCases = 5;

/** How many of the rules that pass rest, or may rest, on fewer cases. O(rules). */
export function rulesOfFewCases({ rules }: Book, passes: Passes): number {
    const { first, second } = rules.tables;
    let count = 0;
    for (let rule = 0; rule < passes.length; ++rule) {
        const isFew = first.a[rule]! < leastCases || second.a[rule]! < leastCases;
        count += isFew ? passes[rule]! : 0;
    }
    return count;
}
