import { expect, test } from "vitest";
import { countsOfBins, numberOfBins } from "../../src/model/histogram.ts";

test("rules are counted by bins, those without a place nowhere, and only those that pass", () => {
    const positions = Float32Array.of(0, 0.01, 1, NaN, 0.5);
    const counts = countsOfBins(positions, Uint8Array.of(1, 1, 1, 1, 1));
    expect(counts).toHaveLength(numberOfBins);
    expect([counts[0], counts[numberOfBins / 2], counts.at(-1)]).toEqual([2, 1, 1]);
    expect(counts.reduce((one, other) => one + other)).toBe(4);
    expect(countsOfBins(positions, Uint8Array.of(0, 1, 0, 1, 0))[0]).toBe(1);
});
