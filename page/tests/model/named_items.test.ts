import { expect, test } from "vitest";
import { bookOf } from "../../src/data/book.ts";
import { listAt } from "../../src/data/lists.ts";
import { namedItems } from "../../src/model/named_items.ts";
import { SideWords } from "../../src/model/side_words.ts";
import { findSide, sideItems } from "../../src/model/side_lookup.ts";
import { madeBlob } from "../support/made_book.ts";
import { titanic, titanicBook } from "../support/titanic.ts";

test("without columns that every transaction has, items are named as they are", () => {
    const book = titanicBook({ columns: [] });
    expect(namedItems(book)).toBe(book.sides.items);
});

test("all sides of up to three of the ten items are named as their words do", () => {
    const items = [...titanic.names.keys()];
    const some = items.flatMap((a) =>
        items.flatMap((b) => items.map((c) => [...new Set([a, b, c])].sort((x, y) => x - y))),
    );
    const rules = some.map((each) => ({
        premise: { items: each, count: 1 },
        conclusion: { items: each, isNegated: true, count: 1 },
        exceptions: 0,
    }));
    const book = bookOf(madeBlob({ ...titanic, rules }).buffer);
    const named = namedItems(book);
    const words = new SideWords(book);
    for (let side = 0; side < book.sides.count; ++side) {
        expect([...listAt(named, side)]).toEqual(words.namedItems(sideItems(book, side)));
    }
    // "class not crew and sex=male" for none of crew, female.
    const side = findSide(book, { items: [3, 5], isNegated: true })!;
    expect([...listAt(named, side)]).toEqual([3, 4]);
});
