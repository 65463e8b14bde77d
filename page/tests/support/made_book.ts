import type { Header, MeasureText } from "../../src/data/header.ts";
import { blobOf, type StoredArray } from "./blob_writer.ts";

/** A side of a rule that is to be made: positions of items, ascending. */
export interface MadeSide {
    readonly items: readonly number[];
    readonly isNegated?: boolean;
    readonly count: number;
    /** How far the count is open. */
    readonly spread?: number;
}

/** A rule that is to be made, by its sides, with how often the premise is met and the conclusion is not. */
export interface MadeRule {
    readonly premise: MadeSide;
    readonly conclusion: MadeSide;
    readonly exceptions: number;
    readonly slope?: number;
    readonly form?: string;
    readonly wordings?: number;
    readonly readings?: number;
    /** What other transactions say; `header` then has to tell of them. */
    readonly holdout?: { readonly premise: number; readonly support: number; readonly p: number };
    /** x, y, a of both tables where the sides do not tell them. */
    readonly counts?: readonly number[];
}

export interface MadeClass {
    readonly count: number;
    readonly ownItems: readonly number[];
    readonly lowers: readonly number[];
    readonly essentials: readonly (readonly number[])[];
    readonly moreLowers?: number;
    readonly moreUppers?: number;
}

/** What a made page tells. */
export interface MadeBook {
    readonly transactions: number;
    readonly names: readonly (string | null)[];
    readonly counts?: readonly number[];
    readonly columns?: Header["columns"];
    readonly rules: readonly MadeRule[];
    readonly classes?: readonly MadeClass[];
    readonly exclusions?: readonly { first: number; second: number; together: number; p: number }[];
    readonly header?: Partial<Header>;
}

/** Formulas and names as the program's catalogue has them. */
const measureNames =
    "support coverage prevalence confidence recall lift leverage added_value conviction certainty zhang phi kappa " +
    "yule_q odds_ratio relative_risk jaccard cosine kulczynski imbalance laplace chi2 p";

export const measureTexts: readonly MeasureText[] = measureNames.split(" ").map((name) => ({
    name,
    formula: `formula of ${name}`,
    explanation: `what ${name} says`,
    turns: name === "chi2" ? "chance" : name === "imbalance" ? "equal_sides" : "",
}));

const forms = [0, 1, 2, 3].flatMap((group) =>
    ["11", "12", "21", "22", "31", "32"].map((end) => ({
        label: `R${group + 1}${end}`,
        text: `form ${group + 1}${end}`,
        group: group + 1,
    })),
);

/** The unpacked data of a page of these rules. Sides are numbered as the format says. */
export function madeBlob(book: MadeBook): Uint8Array<ArrayBuffer> {
    const sides = numberedSides(book.rules);
    return blobOf(madeHeader(book, sides), [
        ...itemArrays(book),
        ...sideArrays(sides.all),
        ...ruleArrays(book.rules, sides.numberOf),
        ...classArrays(book.classes ?? []),
        ...exclusionArrays(book.exclusions ?? []),
    ]);
}

interface NumberedSides {
    readonly all: readonly MadeSide[];
    readonly plain: number;
    readonly numberOf: (side: MadeSide) => number;
}

function numberedSides(rules: readonly MadeRule[]): NumberedSides {
    const byKey = new Map<string, MadeSide>();
    const keyOf = (side: MadeSide) => `${side.isNegated === true ? "!" : ""}${side.items.join()}`;
    for (const { premise, conclusion } of rules) {
        byKey.set(keyOf(premise), premise);
        byKey.set(keyOf(conclusion), conclusion);
    }
    const all = [...byKey.values()].sort(
        (one, other) =>
            Number(one.isNegated ?? false) - Number(other.isNegated ?? false) ||
            lexicographic(one.items, other.items),
    );
    const numbers = new Map(all.map((side, number) => [keyOf(side), number]));
    return {
        all,
        plain: all.filter((side) => side.isNegated !== true).length,
        numberOf: (side) => numbers.get(keyOf(side))!,
    };
}

function lexicographic(one: readonly number[], other: readonly number[]): number {
    for (let i = 0; i < Math.min(one.length, other.length); ++i) {
        if (one[i] !== other[i]) {
            return one[i]! - other[i]!;
        }
    }
    return one.length - other.length;
}

/** A header with everything that the page reads; parts of it can be given. */
export function madeHeader(
    book: Pick<MadeBook, "transactions" | "names" | "columns" | "header"> & {
        rules: { readonly length: number };
        classes?: readonly unknown[];
        exclusions?: readonly unknown[];
    },
    sides: { readonly all: { readonly length: number }; readonly plain: number },
): Omit<Header, "arrays"> {
    const { length } = book.rules;
    return {
        format: 1,
        program: "korv-rules 0.0",
        title: "made.csv",
        transactions: book.transactions,
        rules: {
            count: length,
            left: length,
            limit: 200_000,
            min_support: 23,
            min_confidence: 0.5,
            sort: "leverage",
            ascending: false,
            left_out_by_limit: 0,
            limit_option: "",
        },
        run: {
            options: "--min-support 1%",
            notes: [],
            settings: [{ name: "minimum support", value: "1%", option: "--min-support" }],
        },
        summary: { derived: length, origin: "made classes", left_out: [], note: "" },
        shown_measures: ["confidence", "lift", "leverage"],
        measures: measureTexts,
        symbols: "x the premise, y the conclusion, a both",
        forms,
        items: { count: book.names.length, left_out: 0, names: book.names },
        columns: book.columns ?? [],
        sides: { count: sides.all.length, plain: sides.plain },
        lattice: { classes: book.classes?.length ?? 0, shown: book.classes?.length ?? 0, why: "" },
        exclusions: { known: true, shown: book.exclusions?.length ?? 0, left_out: 0, why: "", alpha: 0.05 },
        ...book.header,
    };
}

function itemArrays({ names, counts, transactions }: MadeBook): StoredArray[] {
    return [
        { name: "item_numbers", values: names.map((_, item) => item + 1), isDelta: true },
        {
            name: "item_counts",
            values: counts ?? names.map(() => Math.ceil(transactions / 2)),
            isInPlanes: true,
        },
    ];
}

function sideArrays(sides: readonly MadeSide[]): StoredArray[] {
    return [
        { name: "side_sizes", values: sides.map((side) => side.items.length) },
        { name: "side_items", values: sides.flatMap((side) => side.items) },
        { name: "side_counts", values: sides.map((side) => side.count), isInPlanes: true },
        ...optional(
            "side_spreads",
            sides.map((side) => side.spread ?? 0),
            0,
        ),
    ];
}

function ruleArrays(rules: readonly MadeRule[], numberOf: (side: MadeSide) => number): StoredArray[] {
    const odd = rules.flatMap((rule, position) =>
        rule.counts === undefined ? [] : [{ position, counts: rule.counts }],
    );
    const slopes = rules.map((rule) => rule.slope ?? 0);
    return [
        { name: "premises", values: rules.map((rule) => numberOf(rule.premise)), isInPlanes: true },
        { name: "conclusions", values: rules.map((rule) => numberOf(rule.conclusion)) },
        { name: "exceptions", values: rules.map((rule) => rule.exceptions), isInPlanes: true },
        {
            name: "forms",
            values: rules.map(({ form }) => forms.findIndex(({ label }) => label === (form ?? "R111"))),
        },
        ...(slopes.some((slope) => slope !== 0)
            ? [{ name: "slopes", values: slopes, type: "i8" as const }]
            : []),
        ...optional(
            "wordings",
            rules.map((rule) => rule.wordings ?? 1),
            1,
        ),
        ...optional(
            "readings",
            rules.map((rule) => rule.readings ?? 1),
            1,
        ),
        ...holdoutArrays(rules.flatMap(({ holdout }) => holdout ?? [])),
        { name: "odd_rules", values: odd.map(({ position }) => position) },
        { name: "odd_counts", values: odd.flatMap(({ counts }) => counts) },
    ];
}

function holdoutArrays(all: readonly NonNullable<MadeRule["holdout"]>[]): StoredArray[] {
    if (all.length === 0) {
        return [];
    }
    return [
        { name: "holdout_premises", values: all.map(({ premise }) => premise), isInPlanes: true },
        { name: "holdout_exceptions", values: all.map(({ premise, support }) => premise - support) },
        { name: "holdout_ps", values: all.map(({ p }) => p), type: "f32" },
    ];
}

function classArrays(classes: readonly MadeClass[]): StoredArray[] {
    const essentials = classes.flatMap((each) => each.essentials);
    return [
        { name: "class_counts", values: classes.map((each) => each.count) },
        { name: "class_own_sizes", values: classes.map((each) => each.ownItems.length) },
        { name: "class_own_items", values: classes.flatMap((each) => each.ownItems) },
        { name: "class_lower_sizes", values: classes.map((each) => each.lowers.length) },
        { name: "class_lowers", values: classes.flatMap((each, c) => each.lowers.map((lower) => c - lower)) },
        { name: "class_essential_sizes", values: classes.map((each) => each.essentials.length) },
        { name: "essential_sizes", values: essentials.map((each) => each.length) },
        { name: "essential_items", values: essentials.flat() },
        ...optional(
            "class_more_lowers",
            classes.map((each) => each.moreLowers ?? 0),
            0,
        ),
        ...optional(
            "class_more_uppers",
            classes.map((each) => each.moreUppers ?? 0),
            0,
        ),
    ];
}

function exclusionArrays(exclusions: NonNullable<MadeBook["exclusions"]>): StoredArray[] {
    return [
        { name: "exclusion_firsts", values: exclusions.map((each) => each.first) },
        { name: "exclusion_seconds", values: exclusions.map((each) => each.second) },
        { name: "exclusion_togethers", values: exclusions.map((each) => each.together) },
        { name: "exclusion_ps", values: exclusions.map((each) => each.p), type: "f32" },
    ];
}

/** An array that is left out where all its values are the usual one. */
function optional(name: string, values: readonly number[], usual: number): StoredArray[] {
    return values.every((value) => value === usual) ? [] : [{ name, values }];
}
