import { expect, test } from "vitest";
import { chosenExclusions, exclusionsOf, orderedExclusions } from "../../src/model/exclusion_list.ts";
import { termOf } from "../../src/model/search_terms.ts";
import { titanicBook } from "../support/titanic.ts";

const book = titanicBook();
const all = exclusionsOf(book);

test("what is expected follows from the counts of both items", () => {
    // 1,731 men, 711 who survived: 1731 711 / 2201; 1731 + 711 - 367 = 2075 are one of them.
    expect(all[0]!.expected).toBeCloseTo(559.1736, 4);
    expect(all[0]!.covered).toBeCloseTo(2075 / 2201, 12);
    expect(all[1]!.lift).toBeCloseTo((23 * 2201) / (885 * 470), 12);
});

test("terms choose pairs by either item, and numbers of rules do not matter", () => {
    const terms = (...texts: readonly string[]) => texts.map((text) => termOf(text, ["lift"]));
    expect(chosenExclusions(book, all, terms("crew"))).toEqual([all[1]]);
    expect(chosenExclusions(book, all, terms("-crew", "lift>9"))).toEqual([all[0]]);
    expect(chosenExclusions(book, all, terms("sex=*"))).toHaveLength(2);
    expect(chosenExclusions(book, all, terms("crew", "survived"))).toEqual([]);
});

test("the smallest lift comes first, the largest of all others", () => {
    expect(orderedExclusions(all, "lift")).toEqual([all[1], all[0]]);
    expect(orderedExclusions(all, "expected")).toEqual([all[0], all[1]]);
});

test("a book without pairs has none to choose from", () => {
    expect(exclusionsOf(titanicBook({ exclusions: [] }))).toEqual([]);
    expect(orderedExclusions([], "covered")).toEqual([]);
});
