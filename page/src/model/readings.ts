import type { Book } from "../data/book.ts";
import { boundsOf, type Bounds } from "./bounds.ts";
import type { MeasureOfCounts } from "./measures.ts";
import { complement, findSide, sideItems, type SideItems } from "./side_lookup.ts";
import { ratio } from "./table.ts";

/** One of the four ways to read an association: a rule, and how often it holds. */
export interface Reading {
    readonly premise: SideItems;
    readonly conclusion: SideItems;
    readonly confidence: Bounds;
    readonly lift: Bounds;
    /** The number of this rule where the book has it. */
    readonly rule: number | undefined;
}

/** How often the denied premise goes with the denied conclusion, by the counts of the rule itself. */
const ofDenied: MeasureOfCounts = (x, y, a, n) => ratio(n - x - y + a, n - x);
const ofDeniedTurned: MeasureOfCounts = (x, y, a, n) => ratio(n - x - y + a, n - y);
const liftOfDenied: MeasureOfCounts = (x, y, a, n) => ratio((n - x - y + a) * n, (n - x) * (n - y));
const liftOfRule: MeasureOfCounts = (x, y, a, n) => ratio(a * n, x * y);
const ofRule: MeasureOfCounts = (x, _y, a) => ratio(a, x);
const ofTurned: MeasureOfCounts = (_x, y, a) => ratio(a, y);

/**
 * The ways to read the association of a rule: as it is, turned round, and both with both sides denied. All follow
 * from the same four counts. O(rules), to see which of them the book has.
 */
export function readingsOf(book: Book, rule: number): Reading[] {
    const { premises, conclusions } = book.rules;
    const premise = sideItems(book, premises[rule]!);
    const conclusion = sideItems(book, conclusions[rule]!);
    const noPremise = complement(book, premise);
    const noConclusion = complement(book, conclusion);
    const bounds = (measure: MeasureOfCounts) =>
        boundsOf(measure, "", book.rules.tables, book.transactions, rule);
    const reading = (
        from: SideItems,
        to: SideItems,
        confidence: MeasureOfCounts,
        lift: MeasureOfCounts,
    ): Reading => ({
        premise: from,
        conclusion: to,
        confidence: bounds(confidence),
        lift: bounds(lift),
        rule: findRule(book, from, to),
    });
    return [
        reading(premise, conclusion, ofRule, liftOfRule),
        reading(conclusion, premise, ofTurned, liftOfRule),
        reading(noConclusion, noPremise, ofDeniedTurned, liftOfDenied),
        reading(noPremise, noConclusion, ofDenied, liftOfDenied),
    ];
}

/** The first reading that names the items as terms ask, where the rule as it is does not; nothing elsewhere. */
export function otherReading(mask: number): number | undefined {
    return mask === 0 || (mask & 1) === 1 ? undefined : Math.log2(mask & -mask);
}

/** The number of the rule with these sides; nothing where the book has none. */
export function findRule(book: Book, premise: SideItems, conclusion: SideItems): number | undefined {
    const from = findSide(book, premise);
    const to = findSide(book, conclusion);
    if (from === undefined || to === undefined) {
        return undefined;
    }
    const { premises, conclusions } = book.rules;
    const found = premises.findIndex((side, rule) => side === from && conclusions[rule] === to);
    return found < 0 ? undefined : found;
}
