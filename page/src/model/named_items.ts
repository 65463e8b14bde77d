import { isNegated, type Book } from "../data/book.ts";
import { listAt, numberOfLists, sizeOfList, type Lists } from "../data/lists.ts";
import { saysByRest } from "./column_rest.ts";
import { SideWords } from "./side_words.ts";

/**
 * The items that the words of each side name, which are others than those it has where a column is said by its rest.
 * `isDenied`: those that the words of its contrary name. O(items of all sides).
 */
export function namedItems(book: Book, isDenied = false): Lists {
    const { sides } = book;
    if (!book.header.columns.some((column) => column.exhaustive)) {
        return sides.items;
    }
    const { starts: sideStarts, values: items } = sides.items;
    const words = new SideWords(book);
    const turns = new TurnTest(book);
    const starts = new Uint32Array(sides.count + 1);
    const values: number[] = [];
    for (let side = 0; side < numberOfLists(sides.items); ++side) {
        const negated = isNegated(sides, side) !== isDenied;
        if (turns.hasTurnedGroup(side, negated)) {
            values.push(...words.namedItems({ items: listAt(sides.items, side), isNegated: negated }));
        } else {
            for (let i = sideStarts[side]!; i < sideStarts[side + 1]!; ++i) {
                values.push(items[i]!);
            }
        }
        starts[side + 1] = values.length;
    }
    return { starts, values: Uint32Array.from(values) };
}

/** Sees fast, as most sides have none, whether a side has a group of items that is said by the rest of its column. */
class TurnTest {
    readonly #book: Book;
    readonly #inColumn: Uint32Array;

    constructor(book: Book) {
        this.#book = book;
        this.#inColumn = new Uint32Array(book.header.columns.length);
    }

    hasTurnedGroup(side: number, negated: boolean): boolean {
        const { items, sides, header } = this.#book;
        const { starts, values } = sides.items;
        if (sizeOfList(sides.items, side) < 2 && !negated) {
            return false;
        }
        for (let i = starts[side]!; i < starts[side + 1]!; ++i) {
            const column = items.columnOf[values[i]!]!;
            if (column >= 0) {
                this.#inColumn[column]! += 1;
            }
        }
        let isTurned = false;
        for (let i = starts[side]!; i < starts[side + 1]!; ++i) {
            const column = items.columnOf[values[i]!]!;
            if (column >= 0) {
                const count = this.#inColumn[column]!;
                isTurned ||= count > 0 && saysByRest(header.columns[column]!, count, negated);
                this.#inColumn[column] = 0;
            }
        }
        return isTurned;
    }
}
