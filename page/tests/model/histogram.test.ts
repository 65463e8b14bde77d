import { expect, test } from "vitest";
import { axisOf } from "../../src/model/axis.ts";
import { binsOf, countsOfBins, numberOfBins } from "../../src/model/histogram.ts";

test("values are counted by bins, undefined ones nowhere, and only of rules that pass", () => {
    const values = Float64Array.of(0, 0.01, 1, NaN, 0.5);
    const bins = binsOf(axisOf({ low: values, high: values }, false), values);
    const counts = countsOfBins(bins, Uint8Array.of(1, 1, 1, 1, 1));
    expect(counts).toHaveLength(numberOfBins);
    expect([counts[0], counts[numberOfBins / 2], counts.at(-1)]).toEqual([2, 1, 1]);
    expect(counts.reduce((one, other) => one + other)).toBe(4);
    expect(countsOfBins(bins, Uint8Array.of(0, 1, 0, 1, 0))[0]).toBe(1);
});
