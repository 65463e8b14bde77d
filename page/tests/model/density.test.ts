import { expect, test } from "vitest";
import { densityOf, shadeOfLift } from "../../src/model/density.ts";

const unit = { from: 0, to: 1, isLogarithmic: false, hasInfinite: false };

test("rules are counted by cells from below, with the mean of their shades", () => {
    const values = {
        x: Float64Array.of(0.1, 0.2, 0.9, NaN),
        y: Float64Array.of(0.1, 0.2, 0.9, 0.5),
        colour: Float64Array.of(1, 0, -1, 1),
        xAxis: unit,
        yAxis: unit,
    };
    const { counts, means } = densityOf(Uint32Array.of(0, 1, 2, 3), values, [2, 2], (value) => value);
    expect([...counts]).toEqual([2, 0, 0, 1]);
    expect([...means]).toEqual([0.5, 0, 0, -1]);
});

test("lifts have shades on both sides of chance", () => {
    expect([1, 4, 0.25, 2, 100].map((lift) => shadeOfLift(lift, 4))).toEqual([0, 1, -1, 0.5, 1]);
    expect(shadeOfLift(0, 4)).toBe(-1);
});
