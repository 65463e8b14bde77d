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

function partners(item: number): (readonly [string, number, number])[] {
    return partnersOf(book, named, Uint32Array.of(0, 1, 2, 3, 4, 5), item).map(
        ({ item: other, rules, lift }) => [book.items.names[other]!, rules, Number(lift.toFixed(3))] as const,
    );
}

test("the partners of an item are on the other side, with the lift of the rule with the fewest items", () => {
    // 344 * 2,201 / (470 * 711), and 450 * 2,201 / (470 * 1,239). The child is on the same side.
    expect(partners(5)).toEqual([
        ["survived=yes", 3, 2.266],
        ["class=3rd", 2, 1.701],
    ]);
});

test("an item that a rule denies goes with the other one as often as the counts say", () => {
    // No child is in the crew: "age=child => class not crew". 1,556 * 2,201 / (1,702 * 1,731) are male.
    expect(partners(3)).toEqual([
        ["age=child", 1, 0],
        ["sex=male", 1, 1.162],
    ]);
});

test("without rules, no item is used, and none has a partner", () => {
    const none = new Uint32Array(0);
    const { premises, conclusions } = usageOf(book, named, none);
    expect([Math.max(...premises), Math.max(...conclusions)]).toEqual([0, 0]);
    expect(partnersOf(book, named, none, 5)).toEqual([]);
});
