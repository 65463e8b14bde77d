import { expect, test } from "vitest";
import { RuleFilter } from "../../src/model/filter.ts";
import { Quantities } from "../../src/model/quantities.ts";
import { rangeOn, withRange } from "../../src/view/ranges.ts";
import { titanicBook } from "../support/titanic.ts";

const book = titanicBook();
const quantities = new Quantities(book);
const reader = { book, quantities, filter: new RuleFilter(book, quantities) };

test("the range of a quantity is that of the last term on it", () => {
    const terms = ["lift>1.1", "milk", "lift:1.2..3", "support>9"];
    expect(rangeOn(reader, terms, "lift")).toEqual({ from: 1.2, to: 3 });
    expect(rangeOn(reader, terms, "confidence")).toBeUndefined();
});

test("a percentage beside a count is told in transactions, one beside a share as it is", () => {
    expect(rangeOn(reader, ["support>=10%"], "support")).toEqual({ from: 220.1, to: undefined });
    expect(rangeOn(reader, ["confidence<90%"], "confidence")).toEqual({ from: undefined, to: 0.9 });
});

test("another range takes the place of all terms on its quantity", () => {
    const terms = ["lift>1.1", "milk", "lift:1.2..3", "support>9"];
    expect(withRange(reader, terms, "lift", "lift:2..")).toEqual(["milk", "support>9", "lift:2.."]);
    expect(withRange(reader, terms, "lift", undefined)).toEqual(["milk", "support>9"]);
});

test("a range of probabilities is kept as one of their logarithms", () => {
    expect(rangeOn(reader, ["p:0.0001..1%"], "p")).toEqual({ from: -4, to: -2 });
});
