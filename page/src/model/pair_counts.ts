import { isNegated, unknownCount, type Book } from "../data/book.ts";
import { listAt, sizeOfList, type Lists } from "../data/lists.ts";
import { tableAt } from "./bounds.ts";

/** Of some other items, how many transactions hold them together with one item. */
export type PairCounts = ReadonlyMap<number, number>;

/**
 * What a page tells exactly of the pairs of an item: in exclusions, in sides of two items, in rules with one item on
 * each side, and in columns of two values, where one value tells of the other. `named`: the items of each side.
 * O(rules + items of all sides + exclusions).
 */
export function pairCountsOf(book: Book, named: Lists, item: number): PairCounts {
    const counts = new Map<number, number>();
    const held = book.items.counts[item]!;
    if (held === unknownCount) {
        return counts;
    }
    const contrary = contraryOf(book, item);
    for (const [other, together] of pairsOf(book, named, contrary)) {
        counts.set(other, book.items.counts[other]! - together);
    }
    for (const [other, together] of pairsOf(book, named, item)) {
        counts.set(other, together);
    }
    for (const [other, together] of [...counts]) {
        const rest = contraryOf(book, other);
        if (rest !== undefined && rest !== item) {
            counts.set(rest, held - together);
        }
    }
    for (const other of sameColumn(book, item)) {
        counts.set(other, 0);
    }
    counts.delete(item);
    return counts;
}

/** The only other value of a column in which each transaction has exactly one. */
function contraryOf({ items, header, transactions }: Book, item: number): number | undefined {
    const column = header.columns[items.columnOf[item]!];
    if (column?.items.length !== 2 || !column.exclusive || !column.exhaustive) {
        return undefined;
    }
    const other = column.items.find((each) => each !== item)!;
    return items.counts[item]! + items.counts[other]! === transactions ? other : undefined;
}

/** The other values of an exclusive column. */
function sameColumn({ items, header }: Book, item: number): readonly number[] {
    const column = header.columns[items.columnOf[item]!];
    return column?.exclusive === true ? column.items.filter((each) => each !== item) : [];
}

/** The pairs of an item that the page tells as such. */
function pairsOf(book: Book, named: Lists, item: number | undefined): Map<number, number> {
    const counts = new Map<number, number>();
    if (item !== undefined && book.items.counts[item] !== unknownCount) {
        addExclusions(book, item, counts);
        addSides(book, item, counts);
        addRules(book, named, item, counts);
    }
    return counts;
}

function addExclusions({ exclusions }: Book, item: number, counts: Map<number, number>): void {
    const { count, firsts, seconds, togethers } = exclusions;
    for (let pair = 0; pair < count; ++pair) {
        const [first, second] = [firsts[pair]!, seconds[pair]!];
        if (first === item || second === item) {
            counts.set(first === item ? second : first, togethers[pair]!);
        }
    }
}

/** A side of two items tells how many transactions hold one of them. */
function addSides(book: Book, item: number, counts: Map<number, number>): void {
    const { sides, items, transactions } = book;
    const { starts, values } = sides.items;
    for (let side = 0; side < sides.count; ++side) {
        const first = starts[side]!;
        if (starts[side + 1]! - first !== 2 || sides.spreads[side] !== 0) {
            continue;
        }
        const [one, another] = [values[first]!, values[first + 1]!];
        const other = one === item ? another : one;
        if ((one === item || another === item) && items.counts[other] !== unknownCount) {
            const met = sides.counts[side]!;
            const either = isNegated(sides, side) ? transactions - met : met;
            counts.set(other, items.counts[item]! + items.counts[other]! - either);
        }
    }
}

function addRules(book: Book, named: Lists, item: number, counts: Map<number, number>): void {
    const { count, premises, conclusions, tables } = book.rules;
    const { first, second } = tables;
    for (let rule = 0; rule < count; ++rule) {
        const sides = [premises[rule]!, conclusions[rule]!] as const;
        if (sizeOfList(named, sides[0]) !== 1 || sizeOfList(named, sides[1]) !== 1) {
            continue;
        }
        const [one, another] = [
            named.values[named.starts[sides[0]]!]!,
            named.values[named.starts[sides[1]]!]!,
        ];
        if (one !== item && another !== item) {
            continue;
        }
        const { x, y, a, n } = tableAt(first, rule, book.transactions);
        const isKnown = x === second.x[rule] && y === second.y[rule] && a === second.a[rule];
        if (isKnown) {
            const withPremise = isDenied(book, sides[0], one) ? y - a : a;
            const held = isDenied(book, sides[0], one) ? n - x : x;
            counts.set(
                one === item ? another : one,
                isDenied(book, sides[1], another) ? held - withPremise : withPremise,
            );
        }
    }
}

/** Whether the words of a side deny an item that they name; one that the side does not have is from a column's rest. */
function isDenied({ sides }: Book, side: number, item: number): boolean {
    return isNegated(sides, side) === listAt(sides.items, side).includes(item);
}
