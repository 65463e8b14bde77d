import { isNegated, type Book } from "../data/book.ts";
import { listAt, sizeOfList, type Lists } from "../data/lists.ts";
import { tableAt } from "./bounds.ts";
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

/** An item that rules name on the other side of one item. */
export interface Partner {
    readonly item: number;
    /** In how many rules. */
    readonly rules: number;
    /**
     * How many times as often as by chance both go together, whether a rule says so or that one goes with the absence
     * of the other. It is that of the rule with the fewest items, and among these the one furthest from chance.
     */
    readonly lift: number;
}

/**
 * The items on the other side of one item in some rules, the furthest from chance first. Rules that are not known
 * exactly tell by their first table. O(rules + items of the rules with the item).
 */
export function partnersOf(book: Book, named: Lists, rules: Uint32Array, item: number): Partner[] {
    const { premises, conclusions } = book.rules;
    const has = sidesWith(named, item);
    const best = new Map<number, Partner & { readonly size: number }>();
    const add = (rule: number, own: number, other: number) => {
        const size = sizeOfList(named, own) + sizeOfList(named, other);
        const isOwnDenied = isDenied(book, own, item);
        for (const partner of listAt(named, other)) {
            const before = best.get(partner);
            const denials = [isOwnDenied, isDenied(book, other, partner)] as const;
            const lift = liftOf(book, rule, own === premises[rule] ? denials : [denials[1], denials[0]]);
            const isBetter =
                before === undefined ||
                size < before.size ||
                (size === before.size && distance(lift) > distance(before.lift));
            const told = isBetter ? { lift, size } : { lift: before.lift, size: before.size };
            best.set(partner, { item: partner, rules: (before?.rules ?? 0) + 1, ...told });
        }
    };
    for (const rule of rules) {
        const [premise, conclusion] = [premises[rule]!, conclusions[rule]!];
        if (has[premise] === 1) {
            add(rule, premise, conclusion);
        }
        if (has[conclusion] === 1) {
            add(rule, conclusion, premise);
        }
    }
    best.delete(item);
    return [...best.values()]
        .map(({ item: partner, rules: count, lift }) => ({ item: partner, rules: count, lift }))
        .sort((one, other) => distance(other.lift) - distance(one.lift) || one.item - other.item);
}

/** How far from chance a lift is, in either direction. */
function distance(lift: number): number {
    return Math.abs(Math.log(lift));
}

/** Whether the words of a side deny an item that they name; one that the side does not have is from a column's rest. */
function isDenied({ sides }: Book, side: number, item: number): boolean {
    return isNegated(sides, side) === listAt(sides.items, side).includes(item);
}

/** The lift of a rule with its sides, where these are denied, in the place of their contraries. */
function liftOf(book: Book, rule: number, [noPremise, noConclusion]: readonly [boolean, boolean]): number {
    const { x, y, a, n } = tableAt(book.rules.tables.first, rule, book.transactions);
    const [premise, withPremise] = noPremise ? [n - x, y - a] : [x, a];
    const [conclusion, together] = noConclusion ? [n - y, premise - withPremise] : [y, withPremise];
    return ratio(together * n, premise * conclusion);
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
