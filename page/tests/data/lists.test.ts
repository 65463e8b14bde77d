import { expect, test } from "vitest";
import { listAt, listsOf, numberOfLists, sizeOfList } from "../../src/data/lists.ts";

test("sizes part the values into lists, empty ones too", () => {
    const lists = listsOf(Uint32Array.of(2, 0, 1), Uint32Array.of(7, 8, 9));
    expect(numberOfLists(lists)).toBe(3);
    expect([0, 1, 2].map((i) => [...listAt(lists, i)])).toEqual([[7, 8], [], [9]]);
    expect([0, 1, 2].map((i) => sizeOfList(lists, i))).toEqual([2, 0, 1]);
});
