import { isNegated, type Book } from "../data/book.ts";
import { listAt } from "../data/lists.ts";
import { saysByRest } from "./column_rest.ts";

/** A side by its items, ascending, whether the book has it or not. */
export interface SideItems {
    readonly items: readonly number[];
    readonly isNegated: boolean;
}

/** The items of a side of the book. */
export function sideItems(book: Book, side: number): SideItems {
    return { items: [...listAt(book.sides.items, side)], isNegated: isNegated(book.sides, side) };
}

/**
 * The same side by the other values of its column, negated the other way; nothing unless all its items are in one
 * exhaustive column that has more.
 */
export function byRest(book: Book, { items, isNegated: negated }: SideItems): SideItems | undefined {
    const position = items.length === 0 ? -1 : book.items.columnOf[items[0]!]!;
    const column = book.header.columns[position];
    if (column?.exhaustive !== true || items.some((item) => book.items.columnOf[item] !== position)) {
        return undefined;
    }
    const rest = column.items.filter((item) => !items.includes(item));
    return rest.length === 0 ? undefined : { items: rest, isNegated: !negated };
}

/** The side that holds for exactly the other transactions, as the program words it. */
export function complement(book: Book, side: SideItems): SideItems {
    const turned = { items: side.items, isNegated: !side.isNegated };
    const rest = byRest(book, turned);
    const column = book.header.columns[book.items.columnOf[side.items[0] ?? -1] ?? -1];
    const isByRest =
        rest !== undefined && column !== undefined && saysByRest(column, side.items.length, turned.isNegated);
    return isByRest ? rest : turned;
}

/** The number of a side; nothing where the book has none of these items and this sign. O(log sides). */
export function findSide(book: Book, { items, isNegated: negated }: SideItems): number | undefined {
    const { sides } = book;
    let [begin, end] = negated ? [sides.plain, sides.count] : [0, sides.plain];
    while (begin < end) {
        const middle = (begin + end) >> 1;
        const difference = lexicographic(listAt(sides.items, middle), items);
        if (difference === 0) {
            return middle;
        }
        [begin, end] = difference < 0 ? [middle + 1, end] : [begin, middle];
    }
    return undefined;
}

function lexicographic(one: ArrayLike<number>, other: ArrayLike<number>): number {
    const common = Math.min(one.length, other.length);
    for (let i = 0; i < common; ++i) {
        const difference = one[i]! - other[i]!;
        if (difference !== 0) {
            return difference;
        }
    }
    return one.length - other.length;
}
