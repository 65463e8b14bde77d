import { expect, test } from "vitest";
import { bookOf } from "../../src/data/book.ts";
import { countOf, itemsOfRule, kindOf, measureOf, turnOf } from "../../src/model/rules.ts";
import { madeBlob, type MadeRule } from "../support/made_book.ts";

const a = { items: [0], count: 8 };
const b = { items: [1, 2], count: 5 };
const open = { items: [2, 3], count: 5, spread: 2 };
const none = { items: [3], count: 0 };
const rules: readonly MadeRule[] = [
    { premise: a, conclusion: b, exceptions: 3 },
    { premise: b, conclusion: a, exceptions: 0 },
    { premise: a, conclusion: open, exceptions: 4, slope: 1 },
    { premise: a, conclusion: open, exceptions: 4, slope: 0 },
    { premise: none, conclusion: a, exceptions: 0 },
];
const book = bookOf(madeBlob({ transactions: 10, names: ["a", "b", "c", "d"], rules }).buffer);

test("a rule is exact, has exceptions, or is bounded", () => {
    expect([0, 1, 2].map((rule) => kindOf(book, rule))).toEqual(["approximative", "exact", "bounded"]);
});

test("a rule of which only the conclusion's count is open is not bounded", () => {
    expect(kindOf(book, 3)).toBe("approximative");
});

test("a rule that holds in no transaction is not exact", () => {
    expect(kindOf(book, 4)).toBe("approximative");
});

test("counts and measures of a bounded rule are ranges", () => {
    expect(countOf(book, 2, "a")).toEqual({ low: 4, high: 6 });
    expect(countOf(book, 2, "y")).toEqual({ low: 5, high: 7 });
    expect(measureOf(book, 2, "confidence")).toEqual({ low: 0.5, high: 0.75 });
    expect(measureOf(book, 0, "nothing").low).toBeNaN();
});

test("the items of both sides are counted, and turns are those of the catalogue", () => {
    expect(itemsOfRule(book, 0)).toBe(3);
    expect([turnOf(book, "chi2"), turnOf(book, "lift")]).toEqual(["chance", ""]);
});
