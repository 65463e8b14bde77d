import type { Book, Holdout } from "../data/book.ts";
import { fillBounds, type Bounds } from "./bounds.ts";
import { surprise } from "./fisher.ts";
import { measures, type MeasureOfCounts } from "./measures.ts";
import { countText, distinctText, measureText, probabilityText } from "./number_words.ts";
import { turnOf } from "./rules.ts";
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
            column = newColumn(this.#book);
            fill(this.#book, name, 0, column);
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
        const low = new Float64Array(1);
        const high = new Float64Array(1);
        fill(this.#book, name, rule, { low, high });
        return { low: low[0]!, high: high[0]! };
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
            const low = column.low.subarray(begin, begin + piece);
            const high = column.high.subarray(begin, begin + piece);
            fill(this.#book, name, begin, { low, high });
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

/** Puts the values of as many rules as the column has room for into it, from the rule `begin` on. */
function fill(book: Book, name: string, begin: number, { low, high }: ValueColumn): void {
    const { wordings, readings, holdout, tables } = book.rules;
    const { first, second } = tables;
    switch (name) {
        case "support":
            fillBetween(first.a, second.a, begin, low, high);
            break;
        case "premise_count":
            fillBetween(first.x, second.x, begin, low, high);
            break;
        case "conclusion_count":
            fillBetween(first.y, second.y, begin, low, high);
            break;
        case "wordings":
            fillBetween(wordings, wordings, begin, low, high);
            break;
        case "readings":
            fillBetween(readings, readings, begin, low, high);
            break;
        case "items":
            fillItems(book, begin, low);
            high.set(low);
            break;
        default:
            if (holdout !== undefined && holdoutNames.has(name)) {
                for (let i = 0; i < low.length; ++i) {
                    low[i] = holdoutValue(holdout, name, begin + i);
                }
                high.set(low);
                break;
            }
            fillBounds(
                keptMeasures[name] ?? notDefined,
                turnOf(book, name),
                tables,
                book.transactions,
                begin,
                low,
                high,
            );
    }
}

/** The bounds of counts that lie between two, whichever is the larger one. */
function fillBetween(
    one: Uint32Array,
    other: Uint32Array,
    begin: number,
    low: Float64Array,
    high: Float64Array,
): void {
    for (let i = 0; i < low.length; ++i) {
        const first = one[begin + i]!;
        const second = other[begin + i]!;
        low[i] = Math.min(first, second);
        high[i] = Math.max(first, second);
    }
}

/** How many items both sides of rules name, as `itemsOfRule` says of one. */
function fillItems({ sides, rules }: Book, begin: number, values: Float64Array): void {
    const { starts } = sides.items;
    const { premises, conclusions } = rules;
    for (let i = 0; i < values.length; ++i) {
        const premise = premises[begin + i]!;
        const conclusion = conclusions[begin + i]!;
        values[i] = starts[premise + 1]! - starts[premise]! + starts[conclusion + 1]! - starts[conclusion]!;
    }
}

function notDefined(): number {
    return NaN;
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
