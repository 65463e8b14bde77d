import { expect, test } from "vitest";
import { partnersOf, usageOf } from "../../src/model/item_usage.ts";
import { namedItems } from "../../src/model/named_items.ts";
import { titanicBook } from "../support/titanic.ts";

const book = titanicBook();
const named = namedItems(book);

test("items are counted by the side that they stand on", () => {
    const { premises, conclusions } = usageOf(book, named, Uint32Array.of(0, 1, 2, 3, 4, 5));
    expect([...premises]).toEqual([0, 0, 0, 1, 0, 3, 0, 3, 1, 0]);
    expect([...conclusions]).toEqual([0, 0, 3, 1, 1, 0, 0, 0, 0, 3]);
});

test("only the rules that are shown count", () => {
    const { premises } = usageOf(book, named, Uint32Array.of(3));
    expect([...premises]).toEqual([0, 0, 0, 0, 0, 0, 0, 1, 0, 0]);
});

test("the partners of an item come in the same rules, on either side", () => {
    const partners = partnersOf(book, named, Uint32Array.of(0, 1, 2, 3, 4, 5), 5);
    // Rules 1, 2 and 5 name sex=female: with child once, third twice, survived three times.
    expect([...partners]).toEqual([0, 0, 2, 0, 0, 0, 0, 1, 0, 3]);
});
