import { positionOn, type Axis } from "./axis.ts";

/** Rules by cells of a grid: how many there are, and the mean of what colours them. Row 0 is the lowest. */
export interface Density {
    readonly columns: number;
    readonly rows: number;
    readonly counts: Uint32Array;
    readonly means: Float64Array;
}

/** What stands where in a scatter plot. */
export interface ScatterValues {
    readonly x: Float64Array;
    readonly y: Float64Array;
    readonly colour: Float64Array;
    readonly xAxis: Axis;
    readonly yAxis: Axis;
}

/** Counts rules cell by cell; those that have no place are left out. `toShade` makes a mean of colours meaningful. */
export function densityOf(
    rules: Uint32Array,
    { x, y, colour, xAxis, yAxis }: ScatterValues,
    [columns, rows]: readonly [number, number],
    toShade: (value: number) => number,
): Density {
    const counts = new Uint32Array(columns * rows);
    const means = new Float64Array(columns * rows);
    for (const rule of rules) {
        const across = positionOn(xAxis, x[rule]!);
        const up = positionOn(yAxis, y[rule]!);
        const shade = toShade(colour[rule]!);
        if (Number.isNaN(across) || Number.isNaN(up)) {
            continue;
        }
        const column = Math.min(columns - 1, Math.floor(across * columns));
        const cell = Math.min(rows - 1, Math.floor(up * rows)) * columns + column;
        counts[cell]! += 1;
        means[cell]! += Number.isNaN(shade) ? 0 : shade;
    }
    for (let cell = 0; cell < counts.length; ++cell) {
        means[cell]! /= counts[cell]! || 1;
    }
    return { columns, rows, counts, means };
}

/**
 * Where a value lies between -1 (far below chance) and 1 (far above it), in relation to `reach`: a lift of 1 is 0,
 * `reach` and what is beyond is 1, and its inverse -1.
 */
export function shadeOfLift(lift: number, reach: number): number {
    const shade = Math.log(lift) / Math.log(reach);
    return Math.min(1, Math.max(-1, shade));
}
