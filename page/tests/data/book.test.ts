import { expect, test } from "vitest";
import { bookOf, isNegated, unknownCount } from "../../src/data/book.ts";
import { listAt } from "../../src/data/lists.ts";
import { madeBlob, type MadeBook } from "../support/made_book.ts";
import { titanicBook } from "../support/titanic.ts";

const small: MadeBook = {
    transactions: 10,
    names: ["a=1", null, "b"],
    rules: [
        {
            premise: { items: [0], count: 4 },
            conclusion: { items: [1, 2], isNegated: true, count: 5 },
            exceptions: 1,
        },
    ],
    classes: [
        { count: 4, ownItems: [0], lowers: [], essentials: [] },
        { count: 5, ownItems: [2], lowers: [], essentials: [] },
        {
            count: 9,
            ownItems: [1],
            lowers: [0, 1],
            essentials: [
                [0, 1],
                [1, 2],
            ],
            moreUppers: 3,
        },
    ],
};

test("an item without a name is named by its number", () => {
    expect(bookOf(madeBlob(small).buffer).items.names).toEqual(["a=1", "2", "b"]);
});

test("items know their column", () => {
    const { items } = titanicBook();
    expect([...items.columnOf]).toEqual([0, 0, 0, 0, 1, 1, 2, 2, 3, 3]);
    expect([...bookOf(madeBlob(small).buffer).items.columnOf]).toEqual([-1, -1, -1]);
});

test("sides are plain up to a number, and negated from there", () => {
    const { sides, rules } = bookOf(madeBlob(small).buffer);
    const [premise, conclusion] = [rules.premises[0]!, rules.conclusions[0]!];
    expect([...listAt(sides.items, conclusion)]).toEqual([1, 2]);
    expect([isNegated(sides, premise), isNegated(sides, conclusion)]).toEqual([false, true]);
});

test("lower neighbours are told as positions, with the essential itemsets of their class", () => {
    const { classes } = bookOf(madeBlob(small).buffer);
    expect([...listAt(classes.lowers, 2)]).toEqual([0, 1]);
    expect([...classes.essentialStarts]).toEqual([0, 0, 0, 2]);
    expect([...listAt(classes.essentials, 1)]).toEqual([1, 2]);
    expect([...classes.moreUppers]).toEqual([0, 0, 3]);
});

test("what is not told has its usual value", () => {
    const { rules, sides } = bookOf(madeBlob(small).buffer);
    expect([rules.wordings[0], rules.readings[0], sides.spreads[0]]).toEqual([1, 1, 0]);
    expect(rules.holdout).toBeUndefined();
    expect(unknownCount).toBe(2 ** 32 - 1);
});

test("what other transactions say of rules is told where they were asked", () => {
    const rules = [{ ...small.rules[0]!, holdout: { premise: 97, support: 88, p: 12.3 } }];
    const header = { holdout: { transactions: 440, alpha: 0.05 } };
    const { holdout } = bookOf(madeBlob({ ...small, rules, header }).buffer).rules;
    expect([holdout?.premises[0], holdout?.supports[0], holdout?.ps[0]]).toEqual([97, 88, 12.3]);
});

test("a book without rules that other transactions confirm is one", () => {
    const header = { holdout: { transactions: 440, alpha: 0.05 } };
    const { holdout } = bookOf(madeBlob({ ...small, rules: [], header }).buffer).rules;
    expect([holdout?.premises.length, holdout?.ps.length]).toEqual([0, 0]);
});

test("a book without rules is one", () => {
    const { rules, sides } = bookOf(madeBlob({ transactions: 0, names: [], rules: [] }).buffer);
    expect([rules.count, sides.count]).toEqual([0, 0]);
});

test("classes and items of sides are put together once", () => {
    const book = bookOf(madeBlob(small).buffer);
    expect(book.classes).toBe(book.classes);
    expect(book.sides.items.values).toBe(book.sides.items.values);
});
