/** Which side of a rule an item is asked for in. */
export type Place = "any" | "if" | "then";

/** Asks for rules that name an item, or for those that do not. */
export interface ItemTerm {
    readonly kind: "items";
    readonly place: Place;
    readonly isExcluded: boolean;
    /** Any of these is enough. */
    readonly patterns: readonly Pattern[];
}

/** Asks for rules with a quantity in a range. */
export interface RangeTerm {
    readonly kind: "range";
    readonly quantity: string;
    readonly from: Limit | undefined;
    readonly to: Limit | undefined;
}

export interface Limit {
    /** As it is typed. */
    readonly value: number;
    /** The value is a percentage: beside a count, one of all transactions. */
    readonly isPercent: boolean;
    /** Whether what is equal passes. */
    readonly isIncluded: boolean;
}

export type Term = ItemTerm | RangeTerm;

/** What a name of an item must be like. */
export type Pattern =
    | { readonly kind: "part"; readonly text: string }
    | { readonly kind: "whole"; readonly pieces: readonly string[] }
    | { readonly kind: "number"; readonly number: number };

/**
 * The terms of a text, parted by blanks; blanks within quotes belong to a term. What is not closed ends with the text.
 */
export function termsOf(text: string): string[] {
    return termPieces(text).map((piece) => piece.text);
}

/** The same with where each begins. */
export function termPieces(text: string): { readonly text: string; readonly begin: number }[] {
    const pieces = text.matchAll(/(?:"(?:\\.|[^"\\])*(?:"|$)|[^\s"])+/gsu);
    return Array.from(pieces, (piece) => ({ text: piece[0], begin: piece.index }));
}

/**
 * Reads one term: `milk`, `-bread`, `then:survived=yes`, `#17`, `class=*`, `beer|wine`, `lift>1.2`, `support>=5%`,
 * `lift:1.2..3`. `quantities` are the names that can be compared; a beginning that fits one of them alone will do.
 * Nothing where the term asks for nothing yet, as `then:` does.
 */
export function termOf(text: string, quantities: readonly string[]): Term | undefined {
    return rangeOf(text, quantities) ?? itemTermOf(text);
}

/** The amount that a limit stands for, beside a count or another quantity. The one division comes last. */
export function amountOf({ value, isPercent }: Limit, isCount: boolean, transactions: number): number {
    if (!isPercent) {
        return value;
    }
    return (isCount ? value * transactions : value) / 100;
}

/** The text of a term that asks for a range with both ends included; an end may be missing. */
export function rangeText(quantity: string, from: number | undefined, to: number | undefined): string {
    return `${quantity}:${from ?? ""}..${to ?? ""}`;
}

/** The text of a term that asks for one item, by its number. */
export function itemText(number: number, place: Place = "any"): string {
    return `${place === "any" ? "" : `${place}:`}#${number}`;
}

/** The text of a term that asks for any item of a column. */
export function columnText(name: string): string {
    return /[\s"|*#:<>=]|^-/u.test(name) ? quoted(`${name}=`) : `${name}=*`;
}

/** The text of a pattern for names that contain a text, whatever characters it has. */
export function quoted(text: string): string {
    return `"${text.replace(/["\\]/g, "\\$&")}"`;
}

const number = String.raw`[-+]?(?:\d+\.?\d*|\.\d+)(?:e[-+]?\d+)?`;
const comparison = new RegExp(`^([a-z_0-9]+)(>=|<=|>|<|=)(${number})(%?)$`, "iu");
const between = new RegExp(`^([a-z_0-9]+):(?:(${number})(%?))?\\.\\.(?:(${number})(%?))?$`, "iu");

/**
 * What is wrong with a term that begins as a comparison of a quantity does and has no number behind; nothing for
 * others.
 */
export function problemOf(text: string, quantities: readonly string[]): string | undefined {
    const [, name = "", operator = "", rest = ""] = /^([a-z_0-9]+)(>=|<=|>|<)(.*)$/isu.exec(text) ?? [];
    const quantity = quantityOf(name, quantities);
    if (quantity === undefined || rangeOf(text, quantities) !== undefined) {
        return undefined;
    }
    const found = rest === "" ? "nothing" : `“${rest}”`;
    const example = `${quantity}${operator}0.5 or ${quantity}${operator}5%`;
    return `${name}${operator}: found ${found}; expected a number, as in ${example}`;
}

function rangeOf(text: string, quantities: readonly string[]): RangeTerm | undefined {
    return comparisonOf(text, quantities) ?? rangeBetween(text, quantities);
}

/** `lift>1.2` */
function comparisonOf(text: string, quantities: readonly string[]): RangeTerm | undefined {
    const [, name = "", operator = "", value = "", percent = ""] = comparison.exec(text) ?? [];
    const quantity = quantityOf(name, quantities);
    if (quantity === undefined) {
        return undefined;
    }
    const limit = limitOf(value, percent, operator.includes("="));
    return {
        kind: "range",
        quantity,
        from: operator.startsWith("<") ? undefined : limit,
        to: operator.startsWith(">") ? undefined : limit,
    };
}

/** `lift:1.2..3`, of which an end may be missing. */
function rangeBetween(text: string, quantities: readonly string[]): RangeTerm | undefined {
    const [, name = "", from, ofFrom = "", to, ofTo = ""] = between.exec(text) ?? [];
    const quantity = quantityOf(name, quantities);
    return quantity === undefined
        ? undefined
        : { kind: "range", quantity, from: limitOf(from, ofFrom, true), to: limitOf(to, ofTo, true) };
}

function limitOf(value: string, percent: string, isIncluded: boolean): Limit;
function limitOf(value: string | undefined, percent: string, isIncluded: boolean): Limit | undefined;
function limitOf(value: string | undefined, percent: string, isIncluded: boolean): Limit | undefined {
    return value === undefined ? undefined : { value: Number(value), isPercent: percent !== "", isIncluded };
}

/** The name, or the only one that begins like this with at least three letters. */
function quantityOf(beginning: string, quantities: readonly string[]): string | undefined {
    const shortest = 3;
    const name = beginning.toLowerCase();
    if (quantities.includes(name) || name.length < shortest) {
        return quantities.includes(name) ? name : undefined;
    }
    const fitting = quantities.filter((each) => each.startsWith(name));
    return fitting.length === 1 ? fitting[0] : undefined;
}

function itemTermOf(text: string): ItemTerm | undefined {
    const [, minus = "", place = "", rest = ""] = /^(-?)(?:(if|then):)?(.*)$/su.exec(text) ?? [];
    const patterns = alternatives(rest)
        .filter((alternative) => alternative !== "" && alternative !== '"' && alternative !== '""')
        .map(patternOf);
    if (patterns.length === 0) {
        return undefined;
    }
    return {
        kind: "items",
        place: place === "if" || place === "then" ? place : "any",
        isExcluded: minus !== "",
        patterns,
    };
}

/** The parts between bars; bars within quotes are characters. */
function alternatives(text: string): string[] {
    return text.match(/(?:"(?:\\.|[^"\\])*(?:"|$)|[^|"])+/gsu) ?? [];
}

function patternOf(text: string): Pattern {
    const number = /^#(\d+)$/u.exec(text)?.[1];
    if (number !== undefined) {
        return { kind: "number", number: Number(number) };
    }
    const isQuoted = text.startsWith('"');
    const bare = isQuoted ? text.replace(/^"|"$/gu, "").replace(/\\(.)/gsu, "$1") : text;
    if (!isQuoted && bare.includes("*")) {
        return { kind: "whole", pieces: bare.toLowerCase().split("*") };
    }
    return { kind: "part", text: bare.toLowerCase() };
}
