import { expect, test } from "vitest";
import { cellsOf, excess, ratio } from "../../src/model/table.ts";

test("the cells of a table add up to all transactions", () => {
    expect(cellsOf({ x: 5, y: 6, a: 4, n: 10 })).toEqual({
        both: 4,
        onlyPremise: 1,
        onlyConclusion: 2,
        neither: 3,
    });
});

test("the excess is exact where products are beyond doubles", () => {
    const n = 4_000_000_000;
    // (n/2) n - (n/2 + 1) (n - 1) = -n/2 + 1
    expect(excess(n / 2 + 1, n - 1, n / 2, n)).toBe(-n / 2 + 1);
    expect(excess(3, 4, 2, 10)).toBe(8);
});

test("only equal numbers have a ratio of 1", () => {
    const large = 2 ** 53 - 1;
    expect(ratio(large, large)).toBe(1);
    expect(ratio(large - 1, large)).toBeLessThan(1);
    expect(ratio(large, large - 1)).toBeGreaterThan(1);
});

test("0/0 is not defined, and what is divided by 0 infinite", () => {
    expect(ratio(0, 0)).toBeNaN();
    expect(ratio(1, 0)).toBe(Infinity);
});
