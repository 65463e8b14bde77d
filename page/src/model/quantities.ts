import type { Book, Holdout } from "../data/book.ts";
import { boundsOf, tableAt, type Bounds } from "./bounds.ts";
import { measures, type MeasureOfCounts } from "./measures.ts";
import { countText, distinctText, measureText, probabilityText } from "./number_words.ts";
import { surprise } from "./fisher.ts";
import { itemsOfRule, turnOf } from "./rules.ts";
import { ratio } from "./table.ts";

/** A number that every rule has: a count or a measure. */
export interface Quantity {
    /** As the program and the search name it: "added_value". */
    readonly name: string;
    /** As the page says it: "added value". */
    readonly title: string;
    readonly isCount: boolean;
    /** Its values are decimal logarithms of what is shown and typed. */
    readonly isProbability: boolean;
    readonly formula: string;
    readonly explanation: string;
    /** Whether values spread over magnitudes, so that a logarithmic axis shows them better. */
    readonly isWide: boolean;
    /** No value is further from 0: 1 for shares and the like. */
    readonly most: number;
    /** A value of it as text. */
    readonly say: (value: number) => string;
}

/** The values of a quantity for all rules. Both arrays are the same one where all values are known. */
export interface ValueColumn {
    readonly low: Float64Array;
    readonly high: Float64Array;
}

const wide = new Set(["lift", "conviction", "odds_ratio", "relative_risk", "chi2"]);

/** Not shares or the like, between -1 and 1, and so said with as many decimals each. */
const unlimited = wide;

/** Kept as logarithms, as they may be smaller than any number; the program tells them the other way round: -log10. */
const probabilities = new Set(["p", "holdout_p"]);

/** What is said of p in the place of the program's words on its logarithm. */
const textOfP = {
    formula: "Fisher's exact test, one-sided",
    explanation:
        "how probable it is that chance alone gives so many with both sides; 0.001 is once in 1,000 times",
};

/** Measures as they are kept. */
const keptMeasures: Readonly<Record<string, MeasureOfCounts>> = { ...measures, p: logarithmOfP };

function logarithmOfP(x: number, y: number, a: number, n: number): number {
    return 0 - surprise(x, y, a, n);
}

/** The quantities of what other transactions say, in the order of the program's columns. */
export const holdoutNames: ReadonlySet<string> = new Set([
    "holdout_support",
    "holdout_confidence",
    "holdout_p",
]);

/** What one rule costs more than some nanoseconds for. */
const expensive = new Set(["p"]);

/** The quantities of a book, with the values of each for all rules once these were asked for. */
export class Quantities {
    readonly all: readonly Quantity[];
    readonly #book: Book;
    readonly #byName: ReadonlyMap<string, Quantity>;
    readonly #columns = new Map<string, ValueColumn>();

    constructor(book: Book) {
        this.#book = book;
        this.all = catalogueOf(book);
        this.#byName = new Map(this.all.map((quantity) => [quantity.name, quantity]));
    }

    /** The quantity of this name; nothing where there is none. */
    named(name: string): Quantity | undefined {
        return this.#byName.get(name);
    }

    /** The quantity of this name. Throws where there is none. */
    get(name: string): Quantity {
        const quantity = this.#byName.get(name);
        if (quantity === undefined) {
            throw new Error(`no quantity ${name}`);
        }
        return quantity;
    }

    /** The values of all rules; computed once. O(rules). */
    column(name: string): ValueColumn {
        let column = this.#columns.get(name);
        if (column === undefined) {
            const part = newColumn(this.#book);
            fill(this.#book, name, part, 0, this.#book.rules.count);
            column = part;
            this.#columns.set(name, column);
        }
        return column;
    }

    /** The bounds of a quantity of one rule. */
    bounds(name: string, rule: number): Bounds {
        const column = this.#columns.get(name);
        if (column !== undefined) {
            return { low: column.low[rule]!, high: column.high[rule]! };
        }
        return boundsFunction(this.#book, name)(rule);
    }

    /** Whether `column` would take long enough to be noticed. */
    isSlow(name: string): boolean {
        const most = 20_000;
        return expensive.has(name) && !this.#columns.has(name) && this.#book.rules.count > most;
    }

    /** Computes the values of all rules piece by piece, with a pause of the caller's between two pieces. */
    async prepare(name: string, pause: (done: number) => Promise<void>): Promise<void> {
        const piece = 10_000;
        const { count } = this.#book.rules;
        const column = newColumn(this.#book);
        for (let begin = 0; begin < count; begin += piece) {
            fill(this.#book, name, column, begin, Math.min(count, begin + piece));
            await pause(begin / count);
        }
        this.#columns.set(name, column);
    }
}

function newColumn(book: Book): ValueColumn {
    const { count, tables } = book.rules;
    const low = new Float64Array(count);
    return { low, high: tables.first === tables.second ? low : new Float64Array(count) };
}

function fill(book: Book, name: string, column: ValueColumn, begin: number, end: number): void {
    const { first, second } = book.rules.tables;
    const counts = countsOf(book, name);
    if (counts !== undefined) {
        column.low.set(counts.subarray(begin, end), begin);
        column.high.set(counts.subarray(begin, end), begin);
        return;
    }
    const measure = name === "support" ? undefined : keptMeasures[name];
    if (measure !== undefined && first === second) {
        const n = book.transactions;
        for (let rule = begin; rule < end; ++rule) {
            column.low[rule] = measure(first.x[rule]!, first.y[rule]!, first.a[rule]!, n);
        }
        return;
    }
    const bounds = boundsFunction(book, name);
    for (let rule = begin; rule < end; ++rule) {
        const { low, high } = bounds(rule);
        column.low[rule] = low;
        column.high[rule] = high;
    }
}

/** What the book has of each rule as it is; nothing for what must be computed, or is not known exactly. */
function countsOf({ rules }: Book, name: string): Uint32Array | undefined {
    const { first, second } = rules.tables;
    const ofTables = { support: first.a, premise_count: first.x, conclusion_count: first.y };
    const ofRules = { wordings: rules.wordings, readings: rules.readings };
    const all: Readonly<Record<string, Uint32Array>> =
        first === second ? { ...ofTables, ...ofRules } : ofRules;
    return Object.hasOwn(all, name) ? all[name] : undefined;
}

function boundsFunction(book: Book, name: string): (rule: number) => Bounds {
    const { first, second } = book.rules.tables;
    const between = (one: number, other: number) => ({
        low: Math.min(one, other),
        high: Math.max(one, other),
    });
    const known = (value: number) => ({ low: value, high: value });
    switch (name) {
        case "support":
            return (rule) => between(first.a[rule]!, second.a[rule]!);
        case "premise_count":
            return (rule) => between(first.x[rule]!, second.x[rule]!);
        case "conclusion_count":
            return (rule) => between(first.y[rule]!, second.y[rule]!);
        case "items":
            return (rule) => known(itemsOfRule(book, rule));
        case "wordings":
            return (rule) => known(book.rules.wordings[rule]!);
        case "readings":
            return (rule) => known(book.rules.readings[rule]!);
        default:
            if (book.rules.holdout !== undefined && holdoutNames.has(name)) {
                const { holdout } = book.rules;
                return (rule) => known(holdoutValue(holdout, name, rule));
            }
            return measureFunction(book, name, keptMeasures[name] ?? (() => NaN));
    }
}

function measureFunction(book: Book, name: string, measure: MeasureOfCounts): (rule: number) => Bounds {
    const { first, second } = book.rules.tables;
    const turn = turnOf(book, name);
    const n = book.transactions;
    return (rule) => boundsOf(measure, turn, tableAt(first, rule, n), tableAt(second, rule, n));
}

function count(name: string, title: string, formula: string, explanation: string): Quantity {
    return {
        ...{ name, title, formula, explanation, say: countText },
        ...{ isCount: true, isProbability: false, isWide: true, most: Infinity },
    };
}

function catalogueOf(book: Book): Quantity[] {
    const counts = [
        count("support", "support", "a", "how many transactions meet both sides"),
        count("premise_count", "premise count", "x", "how many transactions meet the premise"),
        count("conclusion_count", "conclusion count", "y", "how many transactions meet the conclusion"),
        { ...count("items", "items", "", "how many items both sides name"), isWide: false },
        count("wordings", "wordings", "", "how many rules say exactly the same of every transaction"),
        count("readings", "readings", "", "how many rules tell of the same association"),
    ];
    const ofRules = book.header.measures
        .filter((measure) => measure.name !== "support" && measure.name in measures)
        .map(({ name, formula, explanation }) =>
            measured(name, name === "p" ? textOfP : { formula, explanation }),
        );
    return [...counts, ...ofRules, ...holdoutQuantities(book)];
}

function measured(name: string, text: { formula: string; explanation: string }): Quantity {
    return {
        name,
        title: name.replaceAll("_", " "),
        ...text,
        isCount: false,
        isProbability: probabilities.has(name),
        isWide: wide.has(name),
        most: unlimited.has(name) ? Infinity : 1,
        say: wayToSay(name),
    };
}

function wayToSay(name: string): (value: number) => string {
    if (probabilities.has(name)) {
        return probabilityText;
    }
    const places = name === "leverage" ? 4 : 3;
    return unlimited.has(name)
        ? measureText
        : (value) => (Number.isNaN(value) ? measureText(value) : distinctText(value, places));
}

/** A number of a rule in other transactions. */
function holdoutValue({ premises, supports, ps }: Holdout, name: string, rule: number): number {
    switch (name) {
        case "holdout_support":
            return supports[rule]!;
        case "holdout_confidence":
            return ratio(supports[rule]!, premises[rule]!);
        default:
            return 0 - ps[rule]!;
    }
}

function holdoutQuantities(book: Book): Quantity[] {
    if (book.header.holdout === undefined) {
        return [];
    }
    const others = `the ${countText(book.header.holdout.transactions)} other transactions`;
    const measure = (name: string, explanation: string) => measured(name, { formula: "", explanation });
    return [
        count("holdout_support", "holdout support", "", `how many of ${others} meet both sides`),
        measure("holdout_confidence", `how often the conclusion holds where the premise does, in ${others}`),
        measure(
            "holdout_p",
            `how probable it is that chance alone gives that in ${others}, corrected for the number of rules`,
        ),
    ];
}
