import type { Book } from "../data/book.ts";
import { sizeOfList } from "../data/lists.ts";
import type { Tables } from "../data/rule_tables.ts";
import { boundsOf, tableAt, type Bounds, type Turn } from "./bounds.ts";
import { measures } from "./measures.ts";
import type { Table } from "./table.ts";

/** What is known of a rule: nothing is left open and it has no exception, or some, or counts are open. */
export type Kind = "exact" | "approximative" | "bounded";

export const kinds: readonly Kind[] = ["exact", "approximative", "bounded"];

/** The two tables of a rule, equal where all is known. */
export function tablesOf(book: Book, rule: number): readonly [Table, Table] {
    const { first, second } = book.rules.tables;
    return [tableAt(first, rule, book.transactions), tableAt(second, rule, book.transactions)];
}

/** The kind of a rule. One of which only the count of the conclusion is open is not bounded. */
export function kindOf(book: Book, rule: number): Kind {
    return kinds[kindPosition(book.rules.tables, rule)]!;
}

/** The kind of each rule, as its position among all kinds. */
export function kindsOfRules({ rules }: Book): Uint8Array {
    const positions = new Uint8Array(rules.count);
    for (let rule = 0; rule < positions.length; ++rule) {
        positions[rule] = kindPosition(rules.tables, rule);
    }
    return positions;
}

function kindPosition({ first, second }: Tables, rule: number): 0 | 1 | 2 {
    const x = first.x[rule]!;
    const a = first.a[rule]!;
    if (x !== second.x[rule] || a !== second.a[rule]) {
        return 2;
    }
    return a === x && a !== 0 ? 0 : 1;
}

/** The bounds of a measure, by its name in the catalogue. */
export function measureOf(book: Book, rule: number, name: string): Bounds {
    const measure = measures[name];
    if (measure === undefined) {
        return { low: NaN, high: NaN };
    }
    return boundsOf(measure, turnOf(book, name), book.rules.tables, book.transactions, rule);
}

/** Where a measure turns between two tables, by the catalogue of the program. */
export function turnOf(book: Book, name: string): Turn {
    return book.header.measures.find((measure) => measure.name === name)?.turns ?? "";
}

/** The bounds of one of the counts of a rule. */
export function countOf(book: Book, rule: number, count: "x" | "y" | "a"): Bounds {
    const { first, second } = book.rules.tables;
    const one = first[count][rule]!;
    const other = second[count][rule]!;
    return { low: Math.min(one, other), high: Math.max(one, other) };
}

/** How many items both sides name. */
export function itemsOfRule(book: Book, rule: number): number {
    const { sides, rules } = book;
    return sizeOfList(sides.items, rules.premises[rule]!) + sizeOfList(sides.items, rules.conclusions[rule]!);
}
