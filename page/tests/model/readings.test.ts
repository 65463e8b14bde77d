import { expect, test } from "vitest";
import { findRule, otherReading, readingsOf } from "../../src/model/readings.ts";
import { SideWords } from "../../src/model/side_words.ts";
import { titanicBook } from "../support/titanic.ts";

const book = titanicBook();
const words = new SideWords(book);

test("the four readings of sex and survival follow from one table", () => {
    const readings = readingsOf(book, 2).map(({ premise, conclusion, confidence, lift, rule }) => [
        `${words.textOf(premise)} => ${words.textOf(conclusion)}`,
        Number(confidence.low.toFixed(3)),
        Number(lift.low.toFixed(2)),
        rule,
    ]);
    // 344 of 470 women, and of 711 who survived; 1,364 of 1,731 men, and of 1,490 who died.
    // By chance 470 * 711 / 2,201 = 151.8 of the first, and 1,731 * 1,490 / 2,201 = 1,171.8 of the others.
    expect(readings).toEqual([
        ["sex=female => survived=yes", 0.732, 2.27, 2],
        ["survived=yes => sex=female", 0.484, 2.27, undefined],
        ["survived=no => sex=male", 0.915, 1.16, undefined],
        ["sex=male => survived=no", 0.788, 1.16, undefined],
    ]);
});

test("a rule is found by its sides", () => {
    const child = { items: [7], isNegated: false };
    expect(findRule(book, child, { items: [3], isNegated: true })).toBe(4);
    expect(findRule(book, child, { items: [9], isNegated: false })).toBeUndefined();
});

test("the reading that a filter found is another one only where the rule as it is does not fit", () => {
    expect([0b0000, 0b0001, 0b1111, 0b0010, 0b1100, 0b1000].map(otherReading)).toEqual([
        undefined,
        undefined,
        undefined,
        1,
        2,
        3,
    ]);
});
