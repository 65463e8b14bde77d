import { expect, test } from "vitest";
import { bookOf, type Book } from "../../src/data/book.ts";
import { relatedRules, type Related } from "../../src/model/dominance.ts";
import { madeBlob, type MadeRule, type MadeSide } from "../support/made_book.ts";
import { randomNumbers } from "../support/large_book.ts";

const items = [0, 1, 2];

/** All sides over three items. */
const allSides: readonly MadeSide[] = [1, 2, 3, 4, 5, 6, 7].flatMap((mask) => {
    const some = items.filter((item) => (mask >> item) & 1);
    return [
        { items: some, count: 100 },
        { items: some, isNegated: true, count: 100 },
    ];
});

/** All pairs of sides, with confidences from 0 to 1. */
function allRules(): MadeRule[] {
    const random = randomNumbers(5);
    return allSides.flatMap((premise) =>
        allSides.map((conclusion) => ({ premise, conclusion, exceptions: 25 * random(5) })),
    );
}

/** Whether a transaction with these items (bits) meets a side. */
function isMet(side: MadeSide, transaction: number): boolean {
    const holds = side.items.some((item) => (transaction >> item) & 1);
    return side.isNegated === true ? !holds : holds;
}

/** Whether whoever meets one side meets the other, in all databases. */
function implies(one: MadeSide, other: MadeSide): boolean {
    return [0, 1, 2, 3, 4, 5, 6, 7].every(
        (transaction) => !isMet(one, transaction) || isMet(other, transaction),
    );
}

function hasSameSigns(one: MadeRule, other: MadeRule): boolean {
    return (
        one.premise.isNegated === other.premise.isNegated &&
        one.conclusion.isNegated === other.conclusion.isNegated
    );
}

/** The relation as its words say it, from what transactions can be. */
function plainly(rules: readonly MadeRule[], own: number): Related {
    const rule = rules[own]!;
    const others = [...rules.keys()].filter((other) => other !== own && hasSameSigns(rules[other]!, rule));
    const saysMore = (one: MadeRule, other: MadeRule) =>
        implies(other.premise, one.premise) && implies(one.conclusion, other.conclusion);
    const wider = others.filter((other) => saysMore(rules[other]!, rule));
    const narrower = others.filter((other) => !wider.includes(other) && saysMore(rule, rules[other]!));
    return {
        stronger: wider.filter((other) => rules[other]!.exceptions <= rule.exceptions),
        wouldBeStronger: wider.filter((other) => rules[other]!.exceptions > rule.exceptions),
        weaker: narrower.filter((other) => rules[other]!.exceptions >= rule.exceptions),
        special: narrower.filter((other) => rules[other]!.exceptions < rule.exceptions),
    };
}

test("of all rules over three items, those that say more or less are found", () => {
    const rules = allRules();
    const book = bookOf(madeBlob({ transactions: 1_000, names: ["a", "b", "c"], rules }).buffer);
    for (const own of rules.keys()) {
        expect(relatedRules(book, own), String(own)).toEqual(plainly(rules, own));
    }
});

test("of what is not known exactly, the ends that are certain are compared", () => {
    const open = { items: [0], count: 8, spread: 0 };
    const conclusion = { items: [1], count: 5, spread: 2 };
    const rules: MadeRule[] = [
        { premise: open, conclusion, exceptions: 4, slope: 1 }, // 0.5 to 0.75
        { premise: { items: [0, 2], count: 10 }, conclusion, exceptions: 3, slope: 0 }, // 0.7
        { premise: { items: [0, 3], count: 10 }, conclusion, exceptions: 2, slope: 0 }, // 0.8
    ];
    const book: Book = bookOf(madeBlob({ transactions: 20, names: ["a", "b", "c", "d"], rules }).buffer);
    expect(relatedRules(book, 0)).toMatchObject({ stronger: [2], wouldBeStronger: [1] });
    expect(relatedRules(book, 1)).toMatchObject({ weaker: [], special: [0] });
    expect(relatedRules(book, 2)).toMatchObject({ weaker: [0], special: [] });
});

test("a rule alone is neither stronger nor weaker than any", () => {
    const side = (item: number): MadeSide => ({ items: [item], count: 10 });
    const rules = [{ premise: side(0), conclusion: side(1), exceptions: 2 }];
    const book = bookOf(madeBlob({ transactions: 20, names: ["a", "b"], rules }).buffer);
    const none: Related = { stronger: [], wouldBeStronger: [], weaker: [], special: [] };
    expect(relatedRules(book, 0)).toEqual(none);
});
