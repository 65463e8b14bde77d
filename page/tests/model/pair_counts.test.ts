import { expect, test } from "vitest";
import { bookOf, unknownCount } from "../../src/data/book.ts";
import { namedItems } from "../../src/model/named_items.ts";
import { pairCountsOf } from "../../src/model/pair_counts.ts";
import { madeBlob, type MadeBook } from "../support/made_book.ts";
import { titanic } from "../support/titanic.ts";

function pairs(made: MadeBook, item: number): Record<string, number> {
    const book = bookOf(madeBlob(made).buffer);
    const counts = pairCountsOf(book, namedItems(book), item);
    return Object.fromEntries([...counts].map(([other, together]) => [book.items.names[other]!, together]));
}

const plain = (count: number, ...items: readonly number[]) => ({ items, count });

/** Items a, b, c and d, of which 10 transactions hold 4, 5, 6 and 7. */
const letters: MadeBook = { transactions: 10, names: ["a", "b", "c", "d"], counts: [4, 5, 6, 7], rules: [] };

test("a side of two items tells of their pair, plain or negated", () => {
    const rules = [
        { premise: plain(7, 0, 1), conclusion: plain(6, 2), exceptions: 3 },
        { premise: { items: [0, 3], isNegated: true, count: 2 }, conclusion: plain(6, 2), exceptions: 1 },
    ];
    // 4 + 5 - 7, and 4 + 7 - (10 - 2).
    expect(pairs({ ...letters, rules }, 0)).toEqual({ b: 2, d: 3 });
});

test("a side that is not known exactly tells nothing", () => {
    const rules = [
        { premise: { ...plain(7, 0, 1), spread: 1 }, conclusion: plain(6, 2), exceptions: 3 },
        { premise: plain(4, 0), conclusion: { ...plain(6, 2), spread: 1 }, exceptions: 3, slope: 1 },
    ];
    expect(pairs({ ...letters, rules }, 0)).toEqual({});
});

test("a rule of two items tells of their pair, whichever it denies", () => {
    const not = (item: number, count: number) => ({ items: [item], isNegated: true, count });
    const rules = [
        { premise: plain(4, 0), conclusion: plain(5, 1), exceptions: 3 },
        { premise: plain(4, 0), conclusion: not(2, 4), exceptions: 2 },
        { premise: not(3, 3), conclusion: not(0, 6), exceptions: 1 },
    ];
    // 4 - 3; 2 of the 4 are without c; and of 3 without d, 1 has a, so 3 have both.
    expect(pairs({ ...letters, rules }, 0)).toEqual({ b: 1, c: 2, d: 3 });
});

test("larger rules tell nothing of pairs", () => {
    const rules = [{ premise: plain(7, 0, 1), conclusion: plain(8, 2, 3), exceptions: 1 }];
    expect(pairs({ ...letters, rules }, 2)).toEqual({ d: 5 });
});

test("an item whose count is not known has no pairs", () => {
    const rules = [{ premise: plain(4, 0), conclusion: plain(5, 1), exceptions: 3 }];
    expect(pairs({ ...letters, counts: [unknownCount, 5, 6, 7], rules }, 0)).toEqual({});
});

test("where a column has two values, one of them tells of the other", () => {
    // Of 1,731 men 367 survived, so 344 women of 711; the page tells of 45 girls and of 23 women in the crew.
    expect(pairs({ ...titanic, rules: titanic.rules.slice(1, 2) }, 5)).toEqual({
        "class=crew": 23,
        "sex=male": 0,
        "age=adult": 425,
        "age=child": 45,
        "survived=no": 126,
        "survived=yes": 344,
    });
});

test("a value does not tell of another one where the page lacks a third", () => {
    const columns = [{ name: "x", items: [0, 1], exclusive: true, exhaustive: true }];
    const exclusions = [{ first: 0, second: 2, together: 1, p: 3 }];
    expect(pairs({ ...letters, columns, exclusions }, 2)).toEqual({ a: 1 });
    expect(pairs({ ...letters, columns, exclusions, counts: [4, 6, 6, 7] }, 2)).toEqual({ a: 1, b: 5 });
});
