import { expect, test } from "vitest";
import { bookOf } from "../../src/data/book.ts";
import { sideRanks } from "../../src/model/side_ranks.ts";
import { SideWords } from "../../src/model/side_words.ts";
import { largeBlob } from "../support/large_book.ts";
import { madeBlob } from "../support/made_book.ts";

const noPause = () => Promise.resolve();

test("sides are ranked by names, numbers in them as numbers, then by sign", async () => {
    const side = (items: readonly number[], isNegated = false) => ({ items, isNegated, count: 1 });
    const rules = [
        [side([0]), side([1])],
        [side([0], true), side([2])],
        [side([1, 2]), side([0, 2])],
    ].map(([premise, conclusion]) => ({ premise: premise!, conclusion: conclusion!, exceptions: 0 }));
    const book = bookOf(madeBlob({ transactions: 9, names: ["item 10", "item 9", "apple"], rules }).buffer);
    const words = new SideWords(book);
    const ranks = await sideRanks(book, noPause);
    const texts = [...ranks.keys()]
        .sort((one, other) => ranks[one]! - ranks[other]!)
        .map((each) => words.text(each));
    expect(texts).toEqual([
        "apple",
        "item 9",
        "item 9 or apple",
        "item 10",
        "not item 10",
        "item 10 or apple",
    ]);
});

test("many sides get each rank once, in pieces", async () => {
    const book = bookOf(largeBlob(100_000).buffer);
    let pauses = 0;
    const ranks = await sideRanks(book, () => {
        ++pauses;
        return Promise.resolve();
    });
    expect([...ranks].sort((one, other) => one - other)).toEqual([...ranks.keys()]);
    expect(pauses).toBeGreaterThan(2);
});

test("no sides have no ranks", async () => {
    const book = bookOf(madeBlob({ transactions: 0, names: [], rules: [] }).buffer);
    expect(await sideRanks(book, noPause)).toHaveLength(0);
});
