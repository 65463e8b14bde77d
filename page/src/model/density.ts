import type { Passes } from "./filter.ts";

/** Rules by cells of a grid: how many there are, and the mean of their shades. Row 0 is the lowest. */
export interface Density {
    readonly columns: number;
    readonly rows: number;
    readonly counts: Uint32Array;
    readonly means: Float64Array;
}

/** Where each rule stands in a plot: from the left and from below, from 0 to 1, and its shade. */
export interface ScatterValues {
    readonly across: Float32Array;
    readonly up: Float32Array;
    readonly shades: Float32Array;
}

/** Counts the rules that pass, cell by cell; those that have no place are left out. O(rules). */
export function densityOf(
    passes: Passes,
    { across, up, shades }: ScatterValues,
    [columns, rows]: readonly [number, number],
): Density {
    const counts = new Uint32Array(columns * rows);
    const means = new Float64Array(columns * rows);
    for (let rule = 0; rule < passes.length; ++rule) {
        const column = Math.min(columns - 1, across[rule]! * columns);
        const row = Math.min(rows - 1, up[rule]! * rows);
        if (passes[rule] === 1 && column >= 0 && row >= 0) {
            const cell = Math.trunc(row) * columns + Math.trunc(column);
            counts[cell]! += 1;
            means[cell]! += shades[rule]!;
        }
    }
    for (let cell = 0; cell < counts.length; ++cell) {
        means[cell]! /= counts[cell]! || 1;
    }
    return { columns, rows, counts, means };
}

/**
 * How far lifts are from chance: 0 for 1, 1 for `reach` and what is beyond, -1 for its inverse and what is below; 0
 * where the lift is not defined.
 */
export function shadesOf(lifts: Float64Array, reach: number): Float32Array {
    const shades = new Float32Array(lifts.length);
    const whole = Math.log(reach);
    for (let rule = 0; rule < lifts.length; ++rule) {
        const shade = Math.log(lifts[rule]!) / whole;
        shades[rule] = Number.isNaN(shade) ? 0 : Math.min(1, Math.max(-1, shade));
    }
    return shades;
}

/** The lift that has the strongest shade: nearly the largest, so that a few odd ones do not pale the others. */
export function reachOfLifts(lifts: Float64Array): number {
    const mostLooked = 20_000;
    const least = 1.1;
    const step = Math.max(1, Math.floor(lifts.length / mostLooked));
    const looked = new Float64Array(Math.ceil(lifts.length / step));
    let count = 0;
    for (let rule = 0; rule < lifts.length; rule += step) {
        const size = Math.max(lifts[rule]!, 1 / lifts[rule]!);
        if (Number.isFinite(size)) {
            looked[count] = size;
            count += 1;
        }
    }
    const sizes = looked.subarray(0, count).sort();
    return Math.max(least, sizes[Math.floor(0.95 * (count - 1))] ?? 2);
}

/** Whether there are lifts below chance, and above it. */
export interface SidesOfChance {
    readonly isBelow: boolean;
    readonly isAbove: boolean;
}

/** On which sides of chance lifts lie; those that are not defined lie on neither. */
export function sidesOfChance(lifts: Float64Array): SidesOfChance {
    let isBelow = false;
    let isAbove = false;
    for (let rule = 0; rule < lifts.length && !(isBelow && isAbove); ++rule) {
        isBelow ||= lifts[rule]! < 1;
        isAbove ||= lifts[rule]! > 1;
    }
    return { isBelow, isAbove };
}
