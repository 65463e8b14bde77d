import { expect, test } from "vitest";
import { orderBy } from "../../src/model/order.ts";
import { randomNumbers } from "../support/large_book.ts";

function ordered(values: readonly number[], isAscending: boolean): number[] {
    const column = Float64Array.from(values);
    return [...orderBy({ low: column, high: column }, isAscending)];
}

test("negative, infinite and undefined values have their place, and equal ones stay", () => {
    const values = [2, NaN, -1, Infinity, 0, -0, 2, -3.5, 1e-300];
    expect(ordered(values, true)).toEqual([7, 2, 4, 5, 8, 0, 6, 3, 1]);
    expect(ordered(values, false)).toEqual([3, 0, 6, 8, 4, 5, 2, 7, 1]);
});

test("the order is that of a plain sort", () => {
    const random = randomNumbers(3);
    const values = Array.from({ length: 5_000 }, () => (random(400) - 200) / (1 + random(7)));
    const plainly = (sign: number) =>
        values
            .map((_, rule) => rule)
            .sort((one, other) => sign * (values[one]! - values[other]!) || one - other);
    expect(ordered(values, true)).toEqual(plainly(1));
    expect(ordered(values, false)).toEqual(plainly(-1));
});

test("upwards the upper end decides, downwards the lower one", () => {
    const column = { low: Float64Array.of(1, 2), high: Float64Array.of(9, 3) };
    expect([...orderBy(column, true)]).toEqual([1, 0]);
    expect([...orderBy(column, false)]).toEqual([1, 0]);
});

test("no rules are in order", () => {
    expect(ordered([], true)).toEqual([]);
});

test("one rule is in order, and so are rules without a value", () => {
    expect(ordered([NaN], true)).toEqual([0]);
    expect(ordered([NaN, NaN, NaN], false)).toEqual([0, 1, 2]);
});
