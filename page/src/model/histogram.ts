import { positionOn, type Axis } from "./axis.ts";
import type { Passes } from "./filter.ts";

/** Stands for the bin of a value that is not defined. */
const none = 255;

/** How many bins a histogram has. */
export const numberOfBins = 48;

/** The bin of each value of a column on an axis. */
export function binsOf(axis: Axis, values: Float64Array): Uint8Array {
    const bins = new Uint8Array(values.length);
    for (let i = 0; i < values.length; ++i) {
        const position = positionOn(axis, values[i]!);
        bins[i] = Number.isNaN(position)
            ? none
            : Math.min(numberOfBins - 1, Math.floor(position * numberOfBins));
    }
    return bins;
}

/** How many of the rules that pass fall into each bin. */
export function countsOfBins(bins: Uint8Array, passes: Passes): Uint32Array {
    const counts = new Uint32Array(none + 1);
    for (let i = 0; i < bins.length; ++i) {
        counts[bins[i]!]! += passes[i]!;
    }
    return counts.slice(0, numberOfBins);
}
