import { expect, test } from "vitest";
import { partnersOf, usageOf } from "../../src/model/item_usage.ts";
import { namedItems } from "../../src/model/named_items.ts";
import { pairCountsOf } from "../../src/model/pair_counts.ts";
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

function partners(item: number): (readonly [string, number, number | undefined])[] {
    const pairs = pairCountsOf(book, named, item);
    return partnersOf(book, named, Uint32Array.of(0, 1, 2, 3, 4, 5), item, pairs).map(
        ({ item: other, rules, lift }) =>
            [book.items.names[other]!, rules, lift === undefined ? lift : Number(lift.toFixed(3))] as const,
    );
}

test("the partners of an item are those of its pairs, with their lifts, and then those of its rules", () => {
    // Of the 470 women, 23 were in the crew of 885, 126 died of 1,490 and 344 survived of 711, 45 were children of 109,
    // and 425 adults of 2,092. The rules with the third class have other items beside it.
    expect(partners(5)).toEqual([
        ["class=crew", 0, 0.122],
        ["survived=no", 0, 0.396],
        ["survived=yes", 3, 2.266],
        ["age=child", 0, 1.933],
        ["age=adult", 0, 0.951],
        ["class=3rd", 2, undefined],
    ]);
});

test("what never goes together comes first, but for values of one column", () => {
    // Of the crew of 885, no one was a child; 23 were women, 212 survived, 862 were men, 673 died, and all were adults.
    expect(partners(3)).toEqual([
        ["age=child", 1, 0],
        ["sex=female", 0, 0.122],
        ["survived=yes", 0, 0.742],
        ["sex=male", 1, 1.238],
        ["survived=no", 0, 1.123],
        ["age=adult", 0, 1.052],
    ]);
});

test("without rules, no item is used, and none has a partner", () => {
    const none = new Uint32Array(0);
    const { premises, conclusions } = usageOf(book, named, none);
    expect([Math.max(...premises), Math.max(...conclusions)]).toEqual([0, 0]);
    expect(partnersOf(book, named, none, 5, new Map())).toEqual([]);
});
