import { expect, test } from "vitest";
import { bookOf } from "../../src/data/book.ts";
import { SideWords } from "../../src/model/side_words.ts";
import { madeBlob } from "../support/made_book.ts";
import { titanicBook } from "../support/titanic.ts";

const words = new SideWords(titanicBook());

function said(items: readonly number[], isNegated = false, most = Infinity): string {
    return words.textOf({ items, isNegated }, most);
}

test("a plain side joins its items by or", () => {
    expect(said([5, 7])).toBe("sex=female or age=child");
});

test("values of one column are said together", () => {
    expect(said([0, 1])).toBe("class in {1st, 2nd}");
    expect(said([0, 1, 5])).toBe("class in {1st, 2nd} or sex=female");
});

test("a denied value of a column is said so where the others are more", () => {
    expect(said([3], true)).toBe("class not crew");
});

test("a column of two is said by the other value rather than denied", () => {
    expect(said([5, 7], true)).toBe("sex=male and age=adult");
});

test("most values of a column are said by the one that is missing", () => {
    expect(said([0, 1, 2])).toBe("class not crew");
    expect(said([0, 1, 2], true)).toBe("class=crew");
    expect(said([0, 1], true)).toBe("class in {3rd, crew}");
});

test("sides without items are met by nothing, or by anything", () => {
    expect([said([]), said([], true)]).toEqual(["nothing", "anything"]);
});

test("items without a column are denied one by one, or together", () => {
    const groceries = bookOf(
        madeBlob({
            transactions: 9,
            names: ["bread", "butter", "size=small", "size=large"],
            columns: [{ name: "size", items: [2, 3], exclusive: true, exhaustive: false }],
            rules: [],
        }).buffer,
    );
    const of = new SideWords(groceries);
    expect(of.textOf({ items: [0], isNegated: true })).toBe("not bread");
    expect(of.textOf({ items: [0, 1], isNegated: true })).toBe("none of bread, butter");
    expect(of.textOf({ items: [0, 1, 2], isNegated: true })).toBe("size not small and none of bread, butter");
    expect(of.textOf({ items: [2, 3], isNegated: false })).toBe("size in {small, large}");
});

test("of a long side the others are counted, and no column is turned", () => {
    expect(said([0, 1, 2, 5], false, 3)).toBe("class in {1st, 2nd, 3rd} or 1 more");
    expect(said([0, 5, 7], true, 2)).toBe("class not 1st and sex not female and not 1 more");
});

test("the items that are named are those of the words", () => {
    expect(words.namedItems({ items: [0, 1, 2, 5], isNegated: false })).toEqual([3, 5]);
});
