import type { Book } from "../data/book.ts";
import type { Bounds } from "./bounds.ts";
import { holdoutNames, type Quantities } from "./quantities.ts";
import { itemsOfRule, kindOf } from "./rules.ts";
import type { SideWords } from "./side_words.ts";

const usual = ["confidence", "lift", "leverage"];
const counts = ["premise_count", "conclusion_count"];
const notFurther = new Set(["support", "items", "wordings", ...usual, ...counts, ...holdoutNames]);

/** Writes rules as the program does: the same columns in the same order, and those of further quantities behind. */
export class CsvWriter {
    readonly #book: Book;
    readonly #words: SideWords;
    readonly #quantities: Quantities;
    readonly #further: readonly string[];
    /** What other transactions say, which is always known and last. */
    readonly #inHoldout: readonly string[];

    /** `shown`: quantities that are wanted; the usual ones are always written. */
    constructor(book: Book, words: SideWords, quantities: Quantities, shown: readonly string[]) {
        this.#book = book;
        this.#words = words;
        this.#quantities = quantities;
        this.#further = shown.filter((name) => !notFurther.has(name));
        this.#inHoldout = [...holdoutNames].filter((name) => quantities.named(name) !== undefined);
    }

    /** The line of names. */
    header(): string {
        const ranges = (names: readonly string[]) => names.flatMap((name) => [name, `${name}_max`]);
        return line([
            ...["id", "form", "kind", "premise", "conclusion"],
            ...ranges(["support", ...usual, ...counts]),
            ...["transactions", "items", "wordings"],
            ...ranges(this.#further),
            ...this.#inHoldout,
        ]);
    }

    /** The line of a rule. */
    row(rule: number): string {
        const { rules, header, transactions } = this.#book;
        const ranges = (names: readonly string[]) =>
            names.flatMap((name) => boundsCells(this.#told(name, rule)));
        const form = rules.forms === undefined ? "" : (header.forms[rules.forms[rule]!]?.label ?? "");
        return line([
            ...[String(rule + 1), form, kindOf(this.#book, rule)],
            ...[rules.premises[rule]!, rules.conclusions[rule]!].map((side) =>
                textCell(this.#words.text(side)),
            ),
            ...ranges(["support", ...usual, ...counts]),
            ...[transactions, itemsOfRule(this.#book, rule), rules.wordings[rule]!].map(String),
            ...ranges(this.#further),
            ...this.#inHoldout.map((name) => numberCell(this.#told(name, rule).low)),
        ]);
    }

    /** Bounds as the program tells them: of a probability, -log10. */
    #told(name: string, rule: number): Bounds {
        const { low, high } = this.#quantities.bounds(name, rule);
        return this.#quantities.get(name).isProbability ? { low: 0 - high, high: 0 - low } : { low, high };
    }
}

function line(cells: readonly string[]): string {
    return `${cells.join(",")}\n`;
}

function boundsCells({ low, high }: Bounds): string[] {
    return [numberCell(low), numberCell(high)];
}

function numberCell(value: number): string {
    if (Number.isNaN(value)) {
        return "";
    }
    return value === Infinity ? "inf" : String(value);
}

/**
 * A text as a cell: quoted where it must be, and with an apostrophe before what a spreadsheet would take for a
 * formula, or for such an apostrophe.
 */
export function textCell(text: string): string {
    const guarded = /^'*[=+\-@\t\r\n]/u.test(text) ? `'${text}` : text;
    return /[",\r\n]/u.test(guarded) ? `"${guarded.replaceAll('"', '""')}"` : guarded;
}
