import { expect, test } from "vitest";
import { bookOf } from "../../src/data/book.ts";
import { rulesOfFewCases } from "../../src/model/few_cases.ts";
import { madeBlob } from "../support/made_book.ts";

test("rules that pass are counted where fewer than 5 transactions have both sides, or may have", () => {
    const rule = (premise: number, exceptions: number, spread = 0) => ({
        premise: { items: [0, premise], count: premise },
        conclusion: { items: [1], count: 20, spread },
        exceptions,
        slope: spread === 0 ? 0 : 1,
    });
    // 5, 4, and 3 to 5 cases.
    const rules = [rule(6, 1), rule(5, 1), { ...rule(9, 6), counts: [9, 20, 3, 9, 22, 5] }];
    const names = Array.from({ length: 10 }, (_, item) => `item ${item}`);
    const book = bookOf(madeBlob({ transactions: 40, names, rules }).buffer);
    expect(rulesOfFewCases(book, Uint8Array.of(1, 1, 1))).toBe(2);
    expect(rulesOfFewCases(book, Uint8Array.of(1, 0, 1))).toBe(1);
});
