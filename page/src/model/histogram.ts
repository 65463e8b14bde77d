import type { Passes } from "./filter.ts";

/** Stands for the bin of a rule that has no place on the axis. */
const none = 255;

/** How many bins a histogram has. */
export const numberOfBins = 48;

/** The bin of each rule, by its position on an axis. */
export function binsOf(positions: Float32Array): Uint8Array {
    const bins = new Uint8Array(positions.length);
    for (let rule = 0; rule < positions.length; ++rule) {
        const bin = positions[rule]! * numberOfBins;
        bins[rule] = bin >= 0 ? Math.min(numberOfBins - 1, bin) : none;
    }
    return bins;
}

/** How many of the rules that pass fall into each bin. */
export function countsOfBins(bins: Uint8Array, passes: Passes): Uint32Array {
    const counts = new Uint32Array(none + 1);
    for (let rule = 0; rule < bins.length; ++rule) {
        counts[bins[rule]!]! += passes[rule]!;
    }
    return counts.slice(0, numberOfBins);
}
