import { expect, test } from "vitest";
import { bookOf } from "../../src/data/book.ts";
import { Quantities } from "../../src/model/quantities.ts";
import { largeBlob } from "../support/large_book.ts";
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
