import { expect, test } from "vitest";
import { keptOf, roundedShown, shownOf, tickLabel, ticksFor } from "../../src/model/shown_units.ts";

const probability = { isProbability: true, isCount: false };
const count = { isProbability: false, isCount: true };
const axis = { from: -30, to: 0, isLogarithmic: false, hasInfinite: false };

test("probabilities are kept as logarithms, and shown as they are", () => {
    expect([1, 0.001, 0].map((shown) => keptOf(probability, shown))).toEqual([0, -3, -Infinity]);
    expect([0, -3, -24].map((kept) => shownOf(probability, kept))).toEqual([1, 0.001, 1e-24]);
    expect([keptOf(count, 7), shownOf(count, 7)]).toEqual([7, 7]);
});

test("what is chosen on an axis of probabilities has two digits", () => {
    // 10^-23.3 is 5.0119e-24.
    expect(roundedShown(probability, axis, -23.3)).toBe(5e-24);
    expect(roundedShown(count, { ...axis, from: 0, to: 100 }, 12.3456)).toBe(12.3);
});

test("an axis of probabilities is labelled at powers of ten, one of counts at whole numbers", () => {
    expect(ticksFor(probability, { ...axis, from: -3 }, 8)).toEqual([-3, -2, -1, 0]);
    expect([-20, -3, -1, 0].map((tick) => tickLabel(probability, tick))).toEqual([
        "10⁻²⁰",
        "0.001",
        "0.1",
        "1",
    ]);
    expect(ticksFor(count, { ...axis, from: 2, to: 4 }, 5)).toEqual([2, 3, 4]);
    expect(tickLabel(count, 2_000)).toBe("2,000");
});
