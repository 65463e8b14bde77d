import type { Book } from "../data/book.ts";
import { listAt, type Lists } from "../data/lists.ts";
import type { PairCounts } from "./pair_counts.ts";
import { ratio } from "./table.ts";

/** In how many rules each item stands. */
export interface ItemUsage {
    readonly premises: Uint32Array;
    readonly conclusions: Uint32Array;
}

/** Counts the items that rules name on either side. `named`: the items of each side. O(rules + items of all sides). */
export function usageOf(book: Book, named: Lists, rules: Uint32Array): ItemUsage {
    const { premises, conclusions } = book.rules;
    return {
        premises: countedByItem(named, timesOfSides(premises, rules, book.sides.count), book.items.count),
        conclusions: countedByItem(
            named,
            timesOfSides(conclusions, rules, book.sides.count),
            book.items.count,
        ),
    };
}

/** An item that rules name on the other side of one item, or of which the page tells how often both go together. */
export interface Partner {
    readonly item: number;
    /** In how many rules. */
    readonly rules: number;
    /** How many times as often as by chance both go together; nothing where the page does not tell. */
    readonly lift: number | undefined;
}

/**
 * The items on the other side of one item in some rules, and those of `pairs`, what the page tells of its pairs, but
 * for other values of its column, which never go together: the furthest from chance first, behind them those of which
 * no lift is known, the most rules first. O(rules + items of the rules with the item).
 */
export function partnersOf(
    book: Book,
    named: Lists,
    rules: Uint32Array,
    item: number,
    pairs: PairCounts,
): Partner[] {
    const times = timesOfPartners(book, named, rules, item);
    for (const other of pairs.keys()) {
        if (!times.has(other) && !areOfOneColumn(book, item, other)) {
            times.set(other, 0);
        }
    }
    return [...times]
        .map(([other, count]) => {
            const together = pairs.get(other);
            const lift = together === undefined ? undefined : liftOf(book, item, other, together);
            return { item: other, rules: count, lift };
        })
        .sort(
            (one, other) =>
                distance(other.lift) - distance(one.lift) || other.rules - one.rules || one.item - other.item,
        );
}

function areOfOneColumn({ items }: Book, item: number, other: number): boolean {
    return items.columnOf[item] !== -1 && items.columnOf[item] === items.columnOf[other];
}

/** In how many rules each item stands on the other side of one item. */
function timesOfPartners(book: Book, named: Lists, rules: Uint32Array, item: number): Map<number, number> {
    const { premises, conclusions } = book.rules;
    const has = sidesWith(named, item);
    const times = new Map<number, number>();
    const add = (side: number) => {
        for (const partner of listAt(named, side)) {
            times.set(partner, (times.get(partner) ?? 0) + 1);
        }
    };
    for (const rule of rules) {
        const [premise, conclusion] = [premises[rule]!, conclusions[rule]!];
        if (has[premise] === 1) {
            add(conclusion);
        }
        if (has[conclusion] === 1) {
            add(premise);
        }
    }
    times.delete(item);
    return times;
}

/** How far from chance a lift is, in either direction; less than any where it is not known. */
function distance(lift: number | undefined): number {
    return lift === undefined ? -1 : Math.min(Math.abs(Math.log(lift)), Number.MAX_VALUE);
}

function liftOf({ items, transactions }: Book, item: number, other: number, together: number): number {
    return ratio(together * transactions, items.counts[item]! * items.counts[other]!);
}

function timesOfSides(sideOf: Uint32Array, rules: Uint32Array, sides: number): Uint32Array {
    const times = new Uint32Array(sides);
    for (const rule of rules) {
        times[sideOf[rule]!]! += 1;
    }
    return times;
}

function countedByItem({ starts, values }: Lists, times: Uint32Array, items: number): Uint32Array {
    const counts = new Uint32Array(items);
    for (let side = 0; side < times.length; ++side) {
        const count = times[side]!;
        if (count > 0) {
            for (let i = starts[side]!; i < starts[side + 1]!; ++i) {
                counts[values[i]!]! += count;
            }
        }
    }
    return counts;
}

function sidesWith({ starts, values }: Lists, item: number): Uint8Array {
    const has = new Uint8Array(starts.length - 1);
    for (let side = 0; side < has.length; ++side) {
        for (let i = starts[side]!; i < starts[side + 1]!; ++i) {
            if (values[i] === item) {
                has[side] = 1;
            }
        }
    }
    return has;
}
