import { isNegated, type Book } from "../data/book.ts";
import { listAt } from "../data/lists.ts";
import { countText } from "./number_words.ts";
import { saysByRest } from "./column_rest.ts";

/** Items of a side that are said together: those of one column, or of none (-1). */
interface Group {
    column: number;
    items: readonly number[];
    isNegated: boolean;
}

/** A side as it is given: its items, ascending, and whether they are denied. */
export interface SaidItems {
    readonly items: Iterable<number>;
    readonly isNegated: boolean;
}

/**
 * Says sides of rules, in the words of the program: "bread or butter", "none of bread, butter", "class in {1st, 2nd}
 * or sex=female". Items of an exhaustive column are said by its other values where these are fewer.
 */
export class SideWords {
    readonly #book: Book;

    constructor(book: Book) {
        this.#book = book;
    }

    /** A side of the book. Of more than `most` items the others are counted. */
    text(side: number, most = Infinity): string {
        const { sides } = this.#book;
        return this.textOf({ items: listAt(sides.items, side), isNegated: isNegated(sides, side) }, most);
    }

    /** Any side. */
    textOf(side: SaidItems, most = Infinity): string {
        const items = [...side.items];
        if (items.length === 0) {
            return side.isNegated ? "anything" : "nothing";
        }
        const others = Math.max(0, items.length - most);
        const groups = this.#groups(items.slice(0, items.length - others), side.isNegated, others === 0);
        const text = groups.map((group) => this.#said(group)).join(side.isNegated ? " and " : " or ");
        return others === 0
            ? text
            : `${text}${side.isNegated ? " and not " : " or "}${countText(others)} more`;
    }

    /** The items that the words of a side name. */
    namedItems(side: SaidItems): number[] {
        return this.#groups([...side.items], side.isNegated, true).flatMap((group) => group.items);
    }

    /** By column, in the order of the first item of each; what is in no column stands alone, or last if denied. */
    #groups(items: readonly number[], negated: boolean, canTurn: boolean): Group[] {
        const groups: Group[] = [];
        const rest: number[] = [];
        for (const item of items) {
            const column = this.#book.items.columnOf[item]!;
            const same = column < 0 ? undefined : groups.find((group) => group.column === column);
            if (column < 0 && negated) {
                rest.push(item);
            } else if (same === undefined) {
                groups.push({ column, items: [item], isNegated: negated });
            } else {
                same.items = [...same.items, item];
            }
        }
        if (rest.length > 0) {
            groups.push({ column: -1, items: rest, isNegated: negated });
        }
        return canTurn ? groups.map((group) => this.#turned(group)) : groups;
    }

    /** The group as it is said: by the rest of its column where that says the same in fewer items. */
    #turned(group: Group): Group {
        const column = this.#book.header.columns[group.column];
        if (column === undefined || !saysByRest(column, group.items.length, group.isNegated)) {
            return group;
        }
        const items = column.items.filter((item) => !group.items.includes(item));
        return { column: group.column, items, isNegated: !group.isNegated };
    }

    #said({ column, items, isNegated: negated }: Group): string {
        const { header, items: all } = this.#book;
        const name = (item: number) => all.names[item]!;
        const ofColumn = header.columns[column]?.name;
        if (ofColumn === undefined && negated) {
            return items.length === 1 ? `not ${name(items[0]!)}` : `none of ${items.map(name).join(", ")}`;
        }
        if (ofColumn === undefined || (items.length === 1 && !negated)) {
            return name(items[0]!);
        }
        const values = items.map((item) => name(item).slice(ofColumn.length + 1));
        const said = values.length === 1 ? values[0]! : `in {${values.join(", ")}}`;
        return `${ofColumn} ${negated ? "not " : ""}${said}`;
    }
}
