/** The part of a page's data that is JSON. Texts are plain text and foreign: never take them for HTML. */
export interface Header {
    readonly format: number;
    readonly program: string;
    readonly title: string;
    readonly transactions: number;
    readonly rules: {
        readonly count: number;
        /** How many the program found, before those that the page has no room for were left out. */
        readonly left: number;
        readonly limit: number;
        /** What each of them has at least; the support in transactions. */
        readonly min_support: number;
        readonly min_confidence: number;
        readonly sort: string;
        readonly ascending: boolean;
        readonly left_out_by_limit: number;
        /** What to say to the program for all rules; empty where none are left out. */
        readonly limit_option: string;
    };
    readonly run: {
        readonly options: string;
        /** Lines on the input. */
        readonly notes?: readonly string[];
        readonly settings: readonly Setting[];
    };
    readonly summary: {
        readonly derived: number;
        readonly origin: string;
        readonly left_out: readonly LeftOut[];
        readonly note: string;
    };
    readonly shown_measures: readonly string[];
    readonly measures: readonly MeasureText[];
    readonly symbols: string;
    readonly forms: readonly FormText[];
    readonly items: {
        readonly count: number;
        readonly left_out: number;
        /** An item without a name is named by its number. */
        readonly names: readonly (string | null)[];
    };
    readonly columns: readonly ColumnHeader[];
    readonly sides: {
        readonly count: number;
        /** How many are plain; the others, behind them, are negated. */
        readonly plain: number;
    };
    readonly lattice: {
        readonly classes: number;
        readonly shown: number;
        readonly why: string;
    };
    readonly exclusions: {
        readonly known: boolean;
        readonly shown: number;
        readonly left_out: number;
        readonly why: string;
        /** In which share of all files chance alone would give any pair at all. */
        readonly alpha?: number;
    };
    /** The other transactions that confirm the rules; missing where there are none. */
    readonly holdout?: {
        readonly transactions: number;
        /** How probable it is at most that chance alone confirms a rule. */
        readonly alpha: number;
    };
    readonly arrays: readonly ArrayHeader[];
}

export interface Setting {
    readonly name: string;
    readonly value: string;
    readonly option: string;
}

/** A step that left rules out, with the options that bring them back. */
export interface LeftOut {
    readonly count: number;
    readonly what: string;
    readonly options: string;
}

export interface MeasureText {
    readonly name: string;
    readonly formula: string;
    readonly explanation: string;
    /** Where the measure turns between the two tables of a rule; empty: nowhere. */
    readonly turns: "" | "chance" | "equal_sides";
}

export interface FormText {
    readonly label: string;
    readonly text: string;
    /** Which of the groups, from 1. */
    readonly group: number;
}

export interface ColumnHeader {
    readonly name: string;
    readonly items: readonly number[];
    /** No two of its items meet in a transaction. */
    readonly exclusive: boolean;
    /** It is exclusive, and every transaction has one of its items. */
    readonly exhaustive: boolean;
}

export interface ArrayHeader {
    readonly name: string;
    readonly type: "u8" | "u16" | "u32" | "i8" | "f32" | "f64";
    readonly length: number;
    readonly offset: number;
    readonly layout?: "planes";
    readonly delta?: boolean;
}

/** The format that this program reads. */
export const knownFormat = 1;
