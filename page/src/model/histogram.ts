import type { Passes } from "./filter.ts";

/** How many bins a histogram has. */
export const numberOfBins = 48;

/** How many of the rules that pass fall into each bin, by their positions on an axis; those without one into none. */
export function countsOfBins(positions: Float32Array, passes: Passes): Uint32Array {
    const counts = new Uint32Array(numberOfBins + 1); // one more for the very end of the axis
    for (let rule = 0; rule < positions.length; ++rule) {
        const position = positions[rule]!;
        if (position >= 0) {
            counts[(position * numberOfBins) | 0]! += passes[rule]!;
        }
    }
    counts[numberOfBins - 1]! += counts[numberOfBins]!;
    return counts.subarray(0, numberOfBins);
}
