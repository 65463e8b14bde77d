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

/** Whether all counts of a rule are known. */
export function isKnown(tables: Tables, rule: number): boolean {
    const { first, second } = tables;
    return (
        first === second ||
        (first.x[rule] === second.x[rule] &&
            first.y[rule] === second.y[rule] &&
            first.a[rule] === second.a[rule])
    );
}

/** The bounds of a measure over all tables between two. O(1): it is monotonic, but for one turn. */
export function boundsOf(measure: MeasureOfCounts, turn: Turn, first: Table, second: Table): Bounds {
    const last = numberOfSteps(first, second);
    // A side that holds for all transactions, or for none, can only be at an end: where a measure is not defined for
    // that reason, it is defined next to it, or nowhere.
    const steps = [0, 1, last - 1, last];
    if (turn !== "") {
        const before = lastStepBefore(turn, first, second, last);
        steps.push(before, before + 1);
    }
    let low = Infinity;
    let high = -Infinity;
    for (const step of steps) {
        const value = step < 0 || step > last ? NaN : valueAt(measure, first, second, step);
        low = value < low ? value : low;
        high = value > high ? value : high;
    }
    return low > high ? { low: NaN, high: NaN } : { low, high };
}

function numberOfSteps(first: Table, second: Table): number {
    return Math.max(Math.abs(first.x - second.x), Math.abs(first.y - second.y), Math.abs(first.a - second.a));
}

function valueAt(measure: MeasureOfCounts, first: Table, second: Table, step: number): number {
    return measure(
        moved(first.x, second.x, step),
        moved(first.y, second.y, step),
        moved(first.a, second.a, step),
        first.n,
    );
}

function moved(from: number, to: number, steps: number): number {
    return from < to ? Math.min(from + steps, to) : Math.max(from - steps, to);
}

/** The last step on the near side of the turn; any step where there is no turn between the tables. */
function lastStepBefore(turn: Turn, first: Table, second: Table, steps: number): number {
    const at = ({ x, y, a, n }: Table) => (turn === "chance" ? excess(x, y, a, n) : x - y);
    const near = at(first);
    const slope = steps === 0 ? 0 : Math.trunc((at(second) - near) / steps);
    const step = slope === 0 ? 0 : Math.trunc(-near / slope);
    return step < 0 || step > steps ? 0 : step;
}
