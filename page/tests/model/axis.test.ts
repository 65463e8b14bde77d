import { expect, test } from "vitest";
import {
    axisOf,
    positionOn,
    positionsOn,
    roundedOn,
    ticksOf,
    tickText,
    valueAt,
    type Axis,
} from "../../src/model/axis.ts";

function axis(values: readonly number[], isWide: boolean): Axis {
    const column = Float64Array.from(values);
    return axisOf({ low: column, high: column }, isWide);
}

test("an axis has round ends around its values", () => {
    expect(axis([0.03, 0.97, NaN], false)).toEqual({
        from: 0,
        to: 1,
        isLogarithmic: false,
        hasInfinite: false,
    });
    expect(axis([3, 1_970], false)).toMatchObject({ from: 0, to: 2_000 });
});

test("values of different magnitudes are laid out by their logarithms where that suits them", () => {
    expect(axis([1, 10, 1_000], true)).toEqual({
        from: 1,
        to: 1_000,
        isLogarithmic: true,
        hasInfinite: false,
    });
    expect(axis([1, 1_000], false).isLogarithmic).toBe(false);
    expect(axis([5, 10], true).isLogarithmic).toBe(false);
    expect(axis([-1, 1_000], true).isLogarithmic).toBe(false);
});

test("a logarithmic axis begins at the least value above 0, and zeros lie at its beginning", () => {
    const of = axis([0, 2, 1_000, 0], true);
    expect(of).toMatchObject({ from: 2, to: 1_000, isLogarithmic: true });
    expect(positionOn(of, 0)).toBe(0);
});

test.each([[], [NaN], [Infinity, NaN]])(
    "an axis without a finite value goes from 0 to 1: %j",
    (...values) => {
        for (const isWide of [true, false]) {
            expect(axis(values, isWide)).toMatchObject({ from: 0, to: 1, isLogarithmic: false });
        }
    },
);

test("an axis of bounds has room for both ends", () => {
    const column = { low: Float64Array.of(0.2, 0.4), high: Float64Array.of(0.9, Infinity) };
    expect(axisOf(column, false)).toEqual({ from: 0.2, to: 0.9, isLogarithmic: false, hasInfinite: true });
});

test("positions of a logarithm are even steps of factors", () => {
    const of = axis([1, 1_000], true);
    expect([1, 10, 100, 1_000, 0].map((value) => positionOn(of, value).toFixed(3))).toEqual([
        "0.000",
        "0.333",
        "0.667",
        "1.000",
        "0.000",
    ]);
});

test("infinite values lie at the end, apart from the finite ones", () => {
    const of = axis([0, 10, Infinity], false);
    expect(of.hasInfinite).toBe(true);
    expect(positionOn(of, Infinity)).toBe(1);
    expect(positionOn(of, 10)).toBeCloseTo(0.94);
    expect(valueAt(of, 0.99)).toBe(Infinity);
});

test("a position leads back to its value", () => {
    for (const of of [axis([1, 1_000], true), axis([-2, 7], false), axis([0, 5, Infinity], false)]) {
        for (const value of [1, 2.5, 4]) {
            expect(valueAt(of, positionOn(of, value))).toBeCloseTo(value, 9);
        }
    }
});

test.each([
    ["linear", [-1, 0.5, 3, NaN], false],
    ["logarithmic", [0, 1, 7, 1_000, NaN], true],
    ["with infinite values", [0, 2, Infinity], false],
    ["logarithmic with infinite values", [1, 30, Infinity], true],
] as const)("all positions on an axis are those of each value: %s", (_, values, isWide) => {
    const of = axis(values, isWide);
    const positions = positionsOn(of, Float64Array.from(values));
    values.forEach((value, i) => {
        const position = positionOn(of, value);
        expect(Math.abs(positions[i]! - position) < 1e-6 || Object.is(positions[i], position)).toBe(true);
    });
});

test("one value has room on both sides, and none has an axis, too", () => {
    expect(axis([4, 4], false)).toMatchObject({ from: 2, to: 6 });
    expect(axis([0], false)).toMatchObject({ from: -0.5, to: 0.5 });
    expect(axis([], false)).toMatchObject({ from: 0, to: 1 });
    expect(positionOn(axis([1, 2], false), NaN)).toBeNaN();
});

test("ticks are round, and no more than there is room for", () => {
    expect(ticksOf(axis([0, 1], false), 5)).toEqual([0, 0.2, 0.4, 0.6, 0.8, 1]);
    expect(ticksOf(axis([1, 1_000], true), 10)).toEqual([1, 2, 5, 10, 20, 50, 100, 200, 500, 1_000]);
    expect(ticksOf(axis([1, 1_000], true), 4)).toEqual([1, 10, 100, 1_000]);
});

test("labels have no more digits than they need", () => {
    expect([0, 0.2, 0.30000000000000004, 20_000, 1e-7].map(tickText)).toEqual([
        "0",
        "0.2",
        "0.3",
        "20,000",
        "10⁻⁷",
    ]);
});

test("what is chosen on an axis is rounded to what can be seen there", () => {
    expect(roundedOn(axis([0, 1], false), 0.123456)).toBe(0.123);
    expect(roundedOn(axis([0, 5_000], false), 1234.56)).toBe(1235);
    expect(roundedOn(axis([0, 1, Infinity], false), Infinity)).toBe(Infinity);
});
