import { expect, test } from "vitest";
import { byRest, complement, findSide, sideItems } from "../../src/model/side_lookup.ts";
import { titanicBook } from "../support/titanic.ts";

const book = titanicBook();

test("every side is found by its items and its sign", () => {
    for (let side = 0; side < book.sides.count; ++side) {
        expect(findSide(book, sideItems(book, side))).toBe(side);
    }
    expect(findSide(book, { items: [3], isNegated: false })).toBeUndefined();
    expect(findSide(book, { items: [9, 99], isNegated: false })).toBeUndefined();
});

test("a part of a column that every transaction has is also the rest of it, denied", () => {
    expect(byRest(book, { items: [0, 1], isNegated: false })).toEqual({ items: [2, 3], isNegated: true });
    expect(byRest(book, { items: [0, 5], isNegated: false })).toBeUndefined();
    expect(byRest(book, { items: [4, 5], isNegated: false })).toBeUndefined();
    expect(byRest(book, { items: [], isNegated: false })).toBeUndefined();
});

test("a complement is worded by fewer items, or else plain", () => {
    expect(complement(book, { items: [5], isNegated: false })).toEqual({ items: [4], isNegated: false });
    expect(complement(book, { items: [3], isNegated: false })).toEqual({ items: [3], isNegated: true });
    expect(complement(book, { items: [0, 1, 2], isNegated: false })).toEqual({
        items: [3],
        isNegated: false,
    });
    expect(complement(book, { items: [5, 7], isNegated: false })).toEqual({ items: [5, 7], isNegated: true });
});
