import { expect, test } from "vitest";
import { binsOf, countsOfBins, numberOfBins } from "../../src/model/histogram.ts";

test("bins are equal parts of the axis, whose very end belongs to the last one; what has no place has no bin", () => {
    const positions = Float32Array.of(0, 0.01, 0.021, 0.5, 0.999, 1, NaN);
    expect(numberOfBins).toBe(48);
    expect([...binsOf(positions)]).toEqual([0, 0, 1, 24, 47, 47, 48]);
});

test("rules are counted by bins, those without one nowhere, and only those that pass", () => {
    const bins = Uint8Array.of(0, 0, 47, 48, 24);
    const counts = countsOfBins(bins, Uint8Array.of(1, 1, 1, 1, 1));
    expect(counts).toHaveLength(48);
    expect([counts[0], counts[24], counts[47]]).toEqual([2, 1, 1]);
    expect(counts.reduce((one, other) => one + other)).toBe(4);
    expect(countsOfBins(bins, Uint8Array.of(0, 1, 0, 1, 0))[0]).toBe(1);
});

test("no rules are in no bin", () => {
    expect(binsOf(new Float32Array(0))).toHaveLength(0);
    expect(countsOfBins(new Uint8Array(0), new Uint8Array(0))).toEqual(new Uint32Array(48));
});
