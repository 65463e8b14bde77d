import { isNegated, type Book } from "../data/book.ts";
import { listAt } from "../data/lists.ts";
import { measureOf } from "./rules.ts";

/** Rules of the same signs that say more than a rule, or less: numbers of rules, as the program ranked them. */
export interface Related {
    /** They say more, and hold at least as often: the rule adds nothing to them. */
    readonly stronger: readonly number[];
    /** They would say more, but hold less often. */
    readonly wouldBeStronger: readonly number[];
    /** They say less, and hold no more often: they add nothing to the rule. */
    readonly weaker: readonly number[];
    /** They say less, but hold more often. */
    readonly special: readonly number[];
}

const within = 1;
const around = 2;

/**
 * Compares a rule with all others of a book. One says more where whoever meets the other's premise meets its premise,
 * too, and whoever meets its conclusion meets the other's. O(rules + items of all sides).
 */
export function relatedRules(book: Book, rule: number): Related {
    const { premises, conclusions, count } = book.rules;
    const premise = premises[rule]!;
    const conclusion = conclusions[rule]!;
    const premiseOrder = orderOfSides(book, premise);
    const conclusionOrder = orderOfSides(book, conclusion);
    const own = measureOf(book, rule, "confidence");
    const related = { stronger: [], wouldBeStronger: [], weaker: [], special: [] } as Record<
        keyof Related,
        number[]
    >;
    for (let other = 0; other < count; ++other) {
        // A plain side with more items is met by more transactions, a negated one by fewer.
        const ofPremise = premiseOrder[premises[other]!]!;
        const ofConclusion = conclusionOrder[conclusions[other]!]!;
        if (ofPremise === 0 || ofConclusion === 0 || other === rule) {
            continue;
        }
        const isWider = (ofPremise & around) !== 0 && (ofConclusion & within) !== 0;
        const isNarrower = (ofPremise & within) !== 0 && (ofConclusion & around) !== 0;
        if (isWider || isNarrower) {
            const confidence = measureOf(book, other, "confidence");
            if (isWider) {
                (confidence.low >= own.high ? related.stronger : related.wouldBeStronger).push(other);
            } else {
                (own.low >= confidence.high ? related.weaker : related.special).push(other);
            }
        }
    }
    return related;
}

/**
 * For each side how it stands to one side, by items alone: `within` where whoever meets it meets that side, `around`
 * the other way round, both for the side itself, 0 for sides of another sign, or of which nothing follows.
 */
function orderOfSides(book: Book, reference: number): Uint8Array {
    const { sides } = book;
    const { starts, values } = sides.items;
    const negated = isNegated(sides, reference);
    const ownItems = listAt(sides.items, reference);
    const isOwn = new Uint8Array(book.items.count);
    ownItems.forEach((item) => (isOwn[item] = 1));
    const order = new Uint8Array(sides.count);
    const [begin, end] = negated ? [sides.plain, sides.count] : [0, sides.plain];
    for (let side = begin; side < end; ++side) {
        let common = 0;
        for (let i = starts[side]!; i < starts[side + 1]!; ++i) {
            common += isOwn[values[i]!]!;
        }
        const isPart = common === starts[side + 1]! - starts[side]!;
        const isWhole = common === ownItems.length;
        const [fewer, more] = negated ? [around, within] : [within, around];
        order[side] = (isPart ? fewer : 0) | (isWhole ? more : 0);
    }
    return order;
}
