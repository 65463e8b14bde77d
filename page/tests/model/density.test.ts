import { expect, test } from "vitest";
import { densityOf, reachOfLifts, shadesOf, sidesOfChance } from "../../src/model/density.ts";

test("rules that pass are counted by cells from below, with the mean of their shades", () => {
    const values = {
        across: Float32Array.of(0.1, 0.2, 1, NaN, 0.9),
        up: Float32Array.of(0.1, 0.2, 1, 0.5, 0.9),
        shades: Float32Array.of(1, 0, -1, 1, 0.5),
    };
    const { counts, means } = densityOf(Uint8Array.of(1, 1, 1, 1, 0), values, [2, 2]);
    expect([...counts]).toEqual([2, 0, 0, 1]);
    expect([...means]).toEqual([0.5, 0, 0, -1]);
});

test("lifts have shades on both sides of chance", () => {
    expect([...shadesOf(Float64Array.of(1, 4, 0.25, 2, 100, 0, NaN), 4)]).toEqual([0, 1, -1, 0.5, 1, -1, 0]);
});

test("the strongest shade is that of nearly the largest lift, above or below chance", () => {
    const lifts = Float64Array.from({ length: 101 }, (_, i) => 1 + i / 10);
    expect(reachOfLifts(lifts)).toBe(10.5);
    expect(reachOfLifts(Float64Array.of(0.1, 0.2, 0.1))).toBe(10);
    expect(reachOfLifts(Float64Array.of(1, 1, NaN, Infinity))).toBe(1.1);
    expect(reachOfLifts(new Float64Array(0))).toBe(2);
});

test("lifts lie on the sides of chance that occur", () => {
    expect(sidesOfChance(Float64Array.of(1, 1.2, NaN))).toEqual({ isBelow: false, isAbove: true });
    expect(sidesOfChance(Float64Array.of(0, 1))).toEqual({ isBelow: true, isAbove: false });
    expect(sidesOfChance(Float64Array.of(0.5, Infinity))).toEqual({ isBelow: true, isAbove: true });
});

test("no rules fill no cell", () => {
    const none = new Float32Array(0);
    const { counts, means } = densityOf(new Uint8Array(0), { across: none, up: none, shades: none }, [2, 1]);
    expect([[...counts], [...means]]).toEqual([
        [0, 0],
        [0, 0],
    ]);
});

test("a rule without a place in one direction is left out, and one at the very end is in the last cell", () => {
    const values = {
        across: Float32Array.of(1, NaN, 0),
        up: Float32Array.of(1, 0, NaN),
        shades: Float32Array.of(0.5, 1, 1),
    };
    expect([...densityOf(new Uint8Array(3).fill(1), values, [2, 2]).counts]).toEqual([0, 0, 0, 1]);
});
