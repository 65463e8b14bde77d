import { expect, test } from "vitest";
import { saysByRest } from "../../src/model/column_rest.ts";

const column = { name: "class", items: [0, 1, 2, 3], exclusive: true, exhaustive: true };

test("items are said by the rest of their column where that is fewer, or as many and plain", () => {
    const byRest = (items: number, isNegated: boolean) => saysByRest(column, items, isNegated);
    expect([1, 2, 3, 4].map((items) => byRest(items, false))).toEqual([false, false, true, false]);
    expect([1, 2, 3, 4].map((items) => byRest(items, true))).toEqual([false, true, true, false]);
});

test("a column that some transactions have no value of has no rest", () => {
    expect(saysByRest({ ...column, exhaustive: false }, 3, false)).toBe(false);
});
