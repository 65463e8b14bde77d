import { expect, test } from "vitest";
import { bookOf } from "../../src/data/book.ts";
import { Quantities } from "../../src/model/quantities.ts";
import { largeBlob } from "../support/large_book.ts";
import { madeBlob } from "../support/made_book.ts";
import { confirmedBook, titanicBook } from "../support/titanic.ts";

test("each quantity has the same values in a column as one by one", () => {
    const alone = new Quantities(titanicBook());
    const together = new Quantities(titanicBook());
    for (const { name } of alone.all) {
        const { low, high } = together.column(name);
        for (let rule = 0; rule < 6; ++rule) {
            expect(alone.bounds(name, rule), name).toEqual({ low: low[rule], high: high[rule] });
        }
    }
});

test("the support is a count here, and items are those of both sides", () => {
    const quantities = new Quantities(titanicBook());
    expect(quantities.bounds("support", 0)).toEqual({ low: 1556, high: 1556 });
    expect(quantities.bounds("items", 0).low).toBe(3);
    expect(quantities.get("support").say(1556)).toBe("1,556");
    expect(quantities.get("confidence").say(1)).toBe("1.000");
    expect(quantities.named("nothing")).toBeUndefined();
});

test("what takes long is prepared in pieces, and is no longer slow then", async () => {
    const quantities = new Quantities(bookOf(largeBlob(30_000).buffer));
    expect([quantities.isSlow("p"), quantities.isSlow("lift")]).toEqual([true, false]);
    let pauses = 0;
    await quantities.prepare("p", () => {
        ++pauses;
        return Promise.resolve();
    });
    expect([quantities.isSlow("p"), pauses]).toEqual([false, 3]);
    expect(quantities.column("p").low).toHaveLength(30_000);
});

test("what other transactions say of rules are quantities, too", () => {
    const quantities = new Quantities(confirmedBook());
    expect(quantities.column("holdout_support").low[1]).toBe(87);
    expect(quantities.bounds("holdout_confidence", 1).high).toBeCloseTo(87 / 98, 15);
    expect(quantities.bounds("holdout_p", 1)).toEqual({ low: -11.3, high: -11.3 });
    expect(quantities.get("holdout_p").say(-11.3)).toBe("5·10⁻¹²");
    expect(new Quantities(titanicBook()).named("holdout_p")).toBeUndefined();
});

/** Rules of which none, the conclusion, and the premise are open. */
const openBook = bookOf(
    madeBlob({
        transactions: 20,
        names: ["a", "b", "c"],
        rules: [
            { premise: { items: [0], count: 8 }, conclusion: { items: [1], count: 10 }, exceptions: 2 },
            {
                premise: { items: [0], count: 8 },
                conclusion: { items: [2], count: 10, spread: 4 },
                exceptions: 2,
                slope: -1,
            },
            {
                premise: { items: [2], count: 10, spread: 4 },
                conclusion: { items: [0], count: 8 },
                exceptions: 4,
                slope: 0,
            },
        ],
    }).buffer,
);

test("what is open has bounds, in columns as one by one, whichever table has the smaller count", () => {
    const quantities = new Quantities(openBook);
    const expected = {
        support: { low: [6, 2, 6], high: [6, 6, 6] },
        premise_count: { low: [8, 8, 10], high: [8, 8, 14] },
        conclusion_count: { low: [10, 10, 8], high: [10, 14, 8] },
        confidence: { low: [0.75, 0.25, 6 / 14], high: [0.75, 0.75, 0.6] },
        items: { low: [2, 2, 2], high: [2, 2, 2] },
        wordings: { low: [1, 1, 1], high: [1, 1, 1] },
    };
    for (const [name, { low, high }] of Object.entries(expected)) {
        const alone = [0, 1, 2].map((rule) => new Quantities(openBook).bounds(name, rule));
        expect([alone.map((each) => each.low), alone.map((each) => each.high)], name).toEqual([low, high]);
        const column = quantities.column(name);
        expect([[...column.low], [...column.high]], name).toEqual([low, high]);
    }
});

test("what is prepared in pieces is what is computed at once", async () => {
    const book = bookOf(largeBlob(25_000).buffer);
    const inPieces = new Quantities(book);
    await inPieces.prepare("lift", () => Promise.resolve());
    expect(inPieces.column("lift")).toEqual(new Quantities(book).column("lift"));
});

test("of no rules, every quantity has no values", () => {
    const quantities = new Quantities(bookOf(madeBlob({ transactions: 0, names: [], rules: [] }).buffer));
    for (const { name } of quantities.all) {
        expect(quantities.column(name).low, name).toHaveLength(0);
    }
});
