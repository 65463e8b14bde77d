import type { Counts, Tables } from "../data/rule_tables.ts";
import type { MeasureOfCounts } from "./measures.ts";
import { excess, type Table } from "./table.ts";

/** The smallest and the largest value that something can have; equal where it is known, NaN where not defined. */
export interface Bounds {
    readonly low: number;
    readonly high: number;
}

/** Where a measure turns between the two tables of a rule, if anywhere. */
export type Turn = "" | "chance" | "equal_sides";

/** One of the two tables of a rule. */
export function tableAt(counts: Counts, rule: number, transactions: number): Table {
    return { x: counts.x[rule]!, y: counts.y[rule]!, a: counts.a[rule]!, n: transactions };
}

/** The bounds of a measure of one rule over all tables between its two. */
export function boundsOf(
    measure: MeasureOfCounts,
    turn: Turn,
    tables: Tables,
    transactions: number,
    rule: number,
): Bounds {
    const low = new Float64Array(1);
    const high = new Float64Array(1);
    fillBounds(measure, turn, tables, transactions, rule, low, high);
    return { low: low[0]!, high: high[0]! };
}

/**
 * Puts the bounds of a measure of as many rules as `low` has room for, from the rule `begin` on, into `low` and
 * `high`, which may be one array where all counts are known. O(1) for a rule, as a measure is monotonic between two
 * tables, but for one turn; and without objects, of which a million take longer than the measure.
 */
export function fillBounds(
    measure: MeasureOfCounts,
    turn: Turn,
    tables: Tables,
    transactions: number,
    begin: number,
    low: Float64Array,
    high: Float64Array,
): void {
    for (let i = 0; i < low.length; ++i) {
        const rule = begin + i;
        const last = lastStep(tables, rule);
        const one = valueNear(measure, tables, transactions, rule, 0, 1);
        const other = last === 0 ? one : valueNear(measure, tables, transactions, rule, last, last - 1);
        low[i] = other < one || Number.isNaN(one) ? other : one;
        high[i] = other > one || Number.isNaN(one) ? other : one;
        if (turn !== "" && last > 1) {
            const before = lastStepBefore(turn, tables, transactions, rule, last);
            for (let step = before; step <= before + 1; ++step) {
                const value = valueAt(measure, tables, transactions, rule, step);
                low[i] = value < low[i]! ? value : low[i]!;
                high[i] = value > high[i]! ? value : high[i]!;
            }
        }
    }
}

/** How many steps there are from the first table of a rule to the second. */
function lastStep({ first, second }: Tables, rule: number): number {
    return Math.max(
        Math.abs(first.x[rule]! - second.x[rule]!),
        Math.abs(first.y[rule]! - second.y[rule]!),
        Math.abs(first.a[rule]! - second.a[rule]!),
    );
}

/**
 * The value at an end; where it is not defined there, the one next to it: a side that holds for all transactions, or
 * for none, can only be at an end, so that it is defined there, or nowhere.
 */
function valueNear(
    measure: MeasureOfCounts,
    tables: Tables,
    transactions: number,
    rule: number,
    end: number,
    next: number,
): number {
    const value = valueAt(measure, tables, transactions, rule, end);
    return Number.isNaN(value) ? valueAt(measure, tables, transactions, rule, next) : value;
}

function valueAt(
    measure: MeasureOfCounts,
    { first, second }: Tables,
    transactions: number,
    rule: number,
    step: number,
): number {
    return measure(
        moved(first.x[rule]!, second.x[rule]!, step),
        moved(first.y[rule]!, second.y[rule]!, step),
        moved(first.a[rule]!, second.a[rule]!, step),
        transactions,
    );
}

function moved(from: number, to: number, steps: number): number {
    return from < to ? Math.min(from + steps, to) : Math.max(from - steps, to);
}

/** The last step on the near side of the turn; any step before the last where there is no turn between the tables. */
function lastStepBefore(
    turn: Turn,
    tables: Tables,
    transactions: number,
    rule: number,
    last: number,
): number {
    const at = ({ x, y, a, n }: Table) => (turn === "chance" ? excess(x, y, a, n) : x - y);
    const near = at(tableAt(tables.first, rule, transactions));
    const far = at(tableAt(tables.second, rule, transactions));
    const slope = Math.trunc((far - near) / last);
    const step = slope === 0 ? 0 : Math.trunc(-near / slope);
    return step < 0 || step >= last ? 0 : step;
}
