import { expect, test } from "vitest";
import { matchingItems } from "../../src/model/item_matching.ts";
import { termOf } from "../../src/model/search_terms.ts";
import { titanicBook } from "../support/titanic.ts";

const { items } = titanicBook();

function matching(text: string): number[] {
    const term = termOf(text, []);
    const matches = matchingItems(items, term?.kind === "items" ? term.patterns : []);
    return [...matches.keys()].filter((item) => matches[item] === 1);
}

test("a part of a name is enough", () => {
    expect(matching("MALE")).toEqual([4, 5]);
});

test("with stars the whole name must fit", () => {
    expect(matching("class=*")).toEqual([0, 1, 2, 3]);
    expect(matching("*=*st")).toEqual([0]);
    expect(matching("c*s*r*")).toEqual([2, 3]);
    expect(matching("lass=*")).toEqual([]);
    expect(matching("sex=male*male")).toEqual([]);
});

test("a number is that of the item, not its position", () => {
    expect(matching("#4")).toEqual([3]);
    expect(matching("#40")).toEqual([]);
});

test("alternatives add up", () => {
    expect(matching("crew|child")).toEqual([3, 7]);
});
