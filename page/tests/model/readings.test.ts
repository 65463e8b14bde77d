import { expect, test } from "vitest";
import { findRule, readingsOf } from "../../src/model/readings.ts";
import { SideWords } from "../../src/model/side_words.ts";
import { titanicBook } from "../support/titanic.ts";

const book = titanicBook();
const words = new SideWords(book);

test("the four readings of sex and survival follow from one table", () => {
    const readings = readingsOf(book, 2).map(({ premise, conclusion, confidence, rule }) => [
        `${words.textOf(premise)} => ${words.textOf(conclusion)}`,
        Number(confidence.low.toFixed(3)),
        rule,
    ]);
    // 344 of 470 women, and of 711 who survived; 1,364 of 1,731 men, and of 1,490 who died.
    expect(readings).toEqual([
        ["sex=female => survived=yes", 0.732, 2],
        ["survived=yes => sex=female", 0.484, undefined],
        ["survived=no => sex=male", 0.915, undefined],
        ["sex=male => survived=no", 0.788, undefined],
    ]);
});

test("a rule is found by its sides", () => {
    const child = { items: [7], isNegated: false };
    expect(findRule(book, child, { items: [3], isNegated: true })).toBe(4);
    expect(findRule(book, child, { items: [9], isNegated: false })).toBeUndefined();
});
