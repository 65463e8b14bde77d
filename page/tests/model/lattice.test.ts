import { expect, test } from "vitest";
import { Lattice } from "../../src/model/lattice.ts";
import { titanicBook } from "../support/titanic.ts";
import type { MadeClass } from "../support/made_book.ts";

// Positions: 0 {1st}, 1 {crew}, 2 {female}, 3 {child}, 4 {yes}, 5 {1st, female}, 6 {female, yes}, 7 {1st, female, yes}.
const classes: readonly MadeClass[] = [
    { count: 325, ownItems: [0], lowers: [], essentials: [] },
    { count: 885, ownItems: [3], lowers: [], essentials: [], moreUppers: 2 },
    { count: 470, ownItems: [5], lowers: [], essentials: [] },
    { count: 109, ownItems: [7], lowers: [], essentials: [] },
    { count: 711, ownItems: [9], lowers: [], essentials: [] },
    { count: 650, ownItems: [], lowers: [0, 2], essentials: [] },
    { count: 837, ownItems: [], lowers: [2, 4], essentials: [] },
    {
        count: 959,
        ownItems: [],
        lowers: [5, 6],
        essentials: [
            [0, 9],
            [5, 9],
        ],
        moreLowers: 1,
    },
];
const book = titanicBook({ classes });
const lattice = new Lattice(book);

test("a class has its own items and those of all below it", () => {
    expect(lattice.itemsOf(7)).toEqual([0, 5, 9]);
    expect(lattice.itemsOf(1)).toEqual([3]);
});

test("neighbours are told with what they have more or less", () => {
    const { uppers, lowers, moreLowers } = lattice.around(6);
    expect(uppers).toEqual([{ position: 7, count: 959, difference: [0] }]);
    expect(lowers.map(({ position, difference }) => [position, difference])).toEqual([
        [4, [5]],
        [2, [9]],
    ]);
    expect(moreLowers).toBe(0);
    expect(lattice.around(7).moreLowers).toBe(1);
    expect(lattice.around(1).moreUppers).toBe(2);
});

test("the class around items is the smallest that has them, with their count", () => {
    expect(lattice.classAround([9, 5], 837)).toBe(6);
    expect(lattice.classAround([0, 9], 959)).toBe(7);
    expect(lattice.classAround([0, 9], 958)).toBeUndefined();
    expect(lattice.classAround([0, 3], 1210)).toBeUndefined();
});

test("the class of a rule is that of both sides", () => {
    // Women and survivors: 470 + 711 - 344 = 837.
    expect(lattice.classOfRule(2)).toBe(6);
    expect(lattice.classOfRule(0)).toBeUndefined();
});

test("other wordings are essential itemsets of the class of a side, apart from the other side", () => {
    const side = { items: [0, 9], isNegated: false };
    expect(lattice.wordingsOf(side, 959, [])).toEqual([[5, 9]]);
    expect(lattice.wordingsOf(side, 959, [5])).toEqual([]);
    expect(lattice.wordingsOf({ items: [5, 9], isNegated: true }, 2201 - 837, [])).toEqual([]);
    expect(lattice.wordingsOf({ items: [0, 5, 9], isNegated: true }, 2201 - 959, [])).toEqual([
        [0, 9],
        [5, 9],
    ]);
});

test("a side by the rest of its column leads to the class of the items themselves", () => {
    // The rule of children and "class not crew" is not on the page; with a class of child and crew it is.
    const withClass = titanicBook({
        classes: [...classes, { count: 994, ownItems: [], lowers: [1, 3], essentials: [] }],
    });
    expect(new Lattice(withClass).classOfRule(4)).toBe(8);
});

test("more items than fit one word of bits are looked for, too", () => {
    const names = Array.from({ length: 70 }, (_, item) => `item ${item}`);
    const all = [...names.keys()];
    const large = titanicBook({
        names,
        columns: [],
        counts: names.map(() => 1),
        rules: [],
        exclusions: [],
        classes: [
            { count: 5, ownItems: all.slice(0, 69), lowers: [], essentials: [] },
            { count: 6, ownItems: [69], lowers: [0], essentials: [] },
        ],
    });
    expect(new Lattice(large).classAround(all, 6)).toBe(1);
    expect(new Lattice(large).classAround(all.slice(0, 69), 5)).toBe(0);
});

test("without classes, no rule has one, and no side has other wordings", () => {
    const lattice = new Lattice(titanicBook({ classes: [] }));
    expect(lattice.classOfRule(2)).toBeUndefined();
    expect(lattice.wordingsOf({ items: [5], isNegated: false }, 470, [])).toEqual([]);
});
