import type { Passes } from "./filter.ts";

/** How many bins a histogram has. */
export const numberOfBins = 48;

/** In which bin each rule is, by its position on an axis; `numberOfBins` for one without a position. */
export function binsOf(positions: Float32Array): Uint8Array {
    const bins = new Uint8Array(positions.length);
    const last = numberOfBins - 1; // which the very end of the axis belongs to
    for (let rule = 0; rule < bins.length; ++rule) {
        const position = positions[rule]!;
        bins[rule] = position >= 0 ? Math.min(last, position * numberOfBins) : numberOfBins;
    }
    return bins;
}

/** How many of the rules that pass are in each bin. */
export function countsOfBins(bins: Uint8Array, passes: Passes): Uint32Array {
    const counts = new Uint32Array(numberOfBins + 1); // one more for those without a position
    for (let rule = 0; rule < bins.length; ++rule) {
        if (passes[rule] === 1) {
            counts[bins[rule]!]! += 1;
        }
    }
    return counts.subarray(0, numberOfBins);
}
