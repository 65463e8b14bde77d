import type { Book } from "../data/book.ts";
import type { Lists } from "../data/lists.ts";

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

/** With how many rules each item comes together with one item, on whichever sides. That item itself is not counted. */
export function partnersOf(book: Book, named: Lists, rules: Uint32Array, item: number): Uint32Array {
    const { premises, conclusions } = book.rules;
    const has = sidesWith(named, item);
    const common = rules.filter((rule) => has[premises[rule]!] === 1 || has[conclusions[rule]!] === 1);
    const { premises: left, conclusions: right } = usageOf(book, named, common);
    const partners = left.map((count, each) => count + right[each]!);
    partners[item] = 0;
    return partners;
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
