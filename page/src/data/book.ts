import { shortestDoubles } from "./single_floats.ts";
import { Unpacked } from "./unpacked.ts";
import type { Header } from "./header.ts";
import { listsOf, type Lists } from "./lists.ts";
import { tablesOfRules, type Tables } from "./rule_tables.ts";

/** All that a page tells. Items, sides, rules and classes are numbered from 0, and lists of them ascend. */
export interface Book {
    readonly header: Header;
    readonly transactions: number;
    readonly items: Items;
    readonly sides: Sides;
    readonly rules: Rules;
    readonly classes: Classes;
    readonly exclusions: Exclusions;
}

export interface Items {
    readonly count: number;
    readonly names: readonly string[];
    /** The numbers of the items in the program's own files. */
    readonly numbers: Uint32Array;
    /** How many transactions hold each; `unknownCount` where that is not known. */
    readonly counts: Uint32Array;
    /** The position of the column of each item; -1 for none. */
    readonly columnOf: Int32Array;
}

/** Sides of rules, each once: plain ones (a transaction holds one of the items), then negated ones (none of them). */
export interface Sides {
    readonly count: number;
    readonly plain: number;
    readonly items: Lists;
    /** How many transactions meet each side, or its lower bound. */
    readonly counts: Uint32Array;
    /** The upper bound less the lower one. */
    readonly spreads: Uint32Array;
}

/** The rules, in the order in which the program ranked them. */
export interface Rules {
    readonly count: number;
    readonly premises: Uint32Array;
    readonly conclusions: Uint32Array;
    /** Positions in the header's forms; nothing where they are not told. */
    readonly forms: Uint32Array | undefined;
    readonly wordings: Uint32Array;
    readonly readings: Uint32Array;
    /** What other transactions say of the rules, where the program asked any. */
    readonly holdout: Holdout | undefined;
    readonly tables: Tables;
}

/** Counts of rules in other transactions. */
export interface Holdout {
    /** How many of these meet the premise of each rule, and how many both sides. */
    readonly premises: Uint32Array;
    readonly supports: Uint32Array;
    /** How rarely chance gives that, corrected for the number of rules, as -log10. */
    readonly ps: Float64Array;
}

export interface Classes {
    readonly count: number;
    readonly counts: Uint32Array;
    /** Items of a class that none of its lower neighbours has. */
    readonly ownItems: Lists;
    readonly lowers: Lists;
    /** How many further neighbours the lattice has, which the page leaves out. */
    readonly moreLowers: Uint32Array;
    readonly moreUppers: Uint32Array;
    /** Which of the essential itemsets are those of a class: from starts[c] up to starts[c + 1]. */
    readonly essentialStarts: Uint32Array;
    readonly essentials: Lists;
}

/** Pairs of items that meet less often than by chance, the most surprising first. */
export interface Exclusions {
    readonly count: number;
    readonly firsts: Uint32Array;
    readonly seconds: Uint32Array;
    readonly togethers: Uint32Array;
    /** How rarely chance gives so few, as -log10. */
    readonly ps: Float64Array;
}

const noValues = new Uint32Array(0);

/** Stands for the count of an item that is not known. */
export const unknownCount = 0xffff_ffff;

/** Reads the unpacked data of a page. Throws where they are no such data. */
export function bookOf(buffer: ArrayBuffer): Book {
    const data = new Unpacked(buffer);
    const { header } = data;
    const sides = sidesOf(data);
    let classes: Classes | undefined;
    return {
        header,
        transactions: header.transactions,
        items: itemsOf(data),
        sides,
        rules: rulesOf(data, sides),
        // Of many rules, they take long enough to let people wait for them until they are looked at.
        get classes() {
            return (classes ??= classesOf(data));
        },
        exclusions: exclusionsOf(data),
    };
}

/** Whether a side is met by transactions that hold none of its items. */
export function isNegated(sides: Sides, side: number): boolean {
    return side >= sides.plain;
}

function itemsOf(data: Unpacked): Items {
    const { count, names } = data.header.items;
    const numbers = data.numbers("item_numbers", count);
    const columnOf = new Int32Array(count).fill(-1);
    data.header.columns.forEach((column, position) => {
        for (const item of column.items) {
            columnOf[item] = position;
        }
    });
    return {
        count,
        names: names.map((name, item) => name ?? String(numbers[item])),
        numbers,
        counts: data.numbers("item_counts", count, unknownCount),
        columnOf,
    };
}

function sidesOf(data: Unpacked): Sides {
    const { count, plain } = data.header.sides;
    return {
        count,
        plain,
        items: storedLists(data, "side_sizes", "side_items", count),
        counts: data.numbers("side_counts", count),
        spreads: data.numbers("side_spreads", count),
    };
}

function rulesOf(data: Unpacked, sides: Sides): Rules {
    const { count } = data.header.rules;
    const premises = data.numbers("premises", count);
    const conclusions = data.numbers("conclusions", count);
    return {
        count,
        premises,
        conclusions,
        forms: data.has("forms") ? data.numbers("forms", count) : undefined,
        wordings: data.numbers("wordings", count, 1),
        readings: data.numbers("readings", count, 1),
        holdout: data.header.holdout === undefined ? undefined : holdoutOf(data, count),
        tables: tablesOfRules(
            premises,
            conclusions,
            data.numbers("exceptions", count),
            data.has("slopes") ? new Int8Array(data.array("slopes")) : new Int8Array(count),
            sides,
            {
                rules: new Uint32Array(data.array("odd_rules")),
                counts: new Uint32Array(data.array("odd_counts")),
            },
        ),
    };
}

function holdoutOf(data: Unpacked, count: number): Holdout {
    const premises = data.numbers("holdout_premises", count);
    const exceptions = data.numbers("holdout_exceptions", count);
    return {
        premises,
        supports: premises.map((premise, rule) => premise - exceptions[rule]!),
        ps: shortestDoubles(data.array("holdout_ps")),
    };
}

function classesOf(data: Unpacked): Classes {
    const count = data.header.lattice.shown;
    const lowers = storedLists(data, "class_lower_sizes", "class_lowers", count);
    const numbersOfEssentials = data.numbers("class_essential_sizes", count);
    const { starts } = listsOf(numbersOfEssentials, noValues);
    return {
        count,
        counts: data.numbers("class_counts", count),
        ownItems: storedLists(data, "class_own_sizes", "class_own_items", count),
        lowers: { starts: lowers.starts, values: positionsOfLowers(lowers) },
        moreLowers: data.numbers("class_more_lowers", count),
        moreUppers: data.numbers("class_more_uppers", count),
        essentialStarts: starts,
        essentials: storedLists(data, "essential_sizes", "essential_items", starts[count]!),
    };
}

/** Neighbours are stored as how far before the class they stand. */
function positionsOfLowers({ starts, values: distances }: Lists): Uint32Array {
    const positions = new Uint32Array(distances.length);
    for (let each = 0; each + 1 < starts.length; ++each) {
        for (let i = starts[each]!; i < starts[each + 1]!; ++i) {
            positions[i] = each - distances[i]!;
        }
    }
    return positions;
}

function exclusionsOf(data: Unpacked): Exclusions {
    const count = data.header.exclusions.shown;
    return {
        count,
        firsts: data.numbers("exclusion_firsts", count),
        seconds: data.numbers("exclusion_seconds", count),
        togethers: data.numbers("exclusion_togethers", count),
        ps: new Float64Array(data.array("exclusion_ps")),
    };
}

/** Lists of the data. Their values are put into 32 bits when they are first asked for: of sides, there are many. */
function storedLists(data: Unpacked, sizes: string, values: string, count: number): Lists {
    const { starts } = listsOf(data.numbers(sizes, count), noValues);
    let wide: Uint32Array | undefined;
    return {
        starts,
        get values() {
            return (wide ??= new Uint32Array(data.array(values)));
        },
    };
}
