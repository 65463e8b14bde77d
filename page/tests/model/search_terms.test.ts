import { expect, test } from "vitest";
import {
    columnText,
    itemText,
    problemOf,
    quoted,
    rangeText,
    termOf,
    termsOf,
    type ItemTerm,
} from "../../src/model/search_terms.ts";

const quantities = ["support", "confidence", "conviction", "lift", "items", "p"];

function itemTerm(text: string): ItemTerm {
    const term = termOf(text, quantities);
    if (term?.kind !== "items") {
        throw new Error(`${text} is read as ${JSON.stringify(term)}`);
    }
    return term;
}

test("terms are parted by blanks, but not within quotes", () => {
    expect(termsOf('milk -bread  then:"whole milk" "a \\" b"')).toEqual([
        "milk",
        "-bread",
        'then:"whole milk"',
        '"a \\" b"',
    ]);
    expect(termsOf('milk "not yet clo')).toEqual(["milk", '"not yet clo']);
    expect(termsOf("  ")).toEqual([]);
});

test("a word asks for a part of a name, in any letters", () => {
    expect(itemTerm("Milk")).toEqual({
        kind: "items",
        place: "any",
        isExcluded: false,
        patterns: [{ kind: "part", text: "milk" }],
    });
});

test("places and minus are read", () => {
    expect(itemTerm("then:survived=yes").place).toBe("then");
    expect(itemTerm("-if:a")).toMatchObject({ place: "if", isExcluded: true, patterns: [{ text: "a" }] });
});

test("quotes take signs for what they are", () => {
    expect(itemTerm('"-a|b*"').patterns).toEqual([{ kind: "part", text: "-a|b*" }]);
    expect(itemTerm(quoted('say "x\\y"')).patterns).toEqual([{ kind: "part", text: 'say "x\\y"' }]);
});

test("bars part alternatives, stars stand for any signs, and numbers for an item", () => {
    expect(itemTerm("beer|class=*|#17").patterns).toEqual([
        { kind: "part", text: "beer" },
        { kind: "whole", pieces: ["class=", ""] },
        { kind: "number", number: 17 },
    ]);
});

test("what asks for nothing yet is no term", () => {
    for (const text of ["", "-", "then:", '"', '""', "|"]) {
        expect(termOf(text, quantities), text).toBeUndefined();
    }
});

test("comparisons are read with their limits", () => {
    expect(termOf("lift>1.2", quantities)).toEqual({
        kind: "range",
        quantity: "lift",
        from: { value: 1.2, isPercent: false, isIncluded: false },
        to: undefined,
    });
    expect(termOf("support>=5%", quantities)).toMatchObject({
        from: { value: 5, isPercent: true, isIncluded: true },
    });
    expect(termOf("p<=-1e-3", quantities)).toMatchObject({
        from: undefined,
        to: { value: -0.001, isIncluded: true },
    });
    expect(termOf("items=2", quantities)).toMatchObject({ from: { value: 2 }, to: { value: 2 } });
});

test("a comparison without a number is told with what is expected", () => {
    expect(problemOf("lift>", quantities)).toBe(
        "lift>: found nothing; expected a number, as in lift>0.5 or lift>5%",
    );
    expect(problemOf("support>=abc", quantities)).toContain("found “abc”");
    expect(problemOf("lift>1", quantities)).toBeUndefined();
    expect(problemOf("age>x", quantities)).toBeUndefined();
});

test("a range may be open at an end", () => {
    expect(termOf(rangeText("lift", 1.5, undefined), quantities)).toMatchObject({
        from: { value: 1.5 },
        to: undefined,
    });
    expect(termOf("lift:1..2", quantities)).toMatchObject({
        from: { value: 1 },
        to: { value: 2, isIncluded: true },
    });
});

test("a beginning that fits one quantity stands for it", () => {
    expect(termOf("conf>0.9", quantities)).toMatchObject({ quantity: "confidence" });
    expect(termOf("con>0.9", quantities)).toMatchObject({ kind: "items" });
    expect(termOf("age>4", quantities)).toMatchObject({ kind: "items", patterns: [{ text: "age>4" }] });
});

test("a column is asked for by its name, in quotes where that has signs of a search", () => {
    expect(columnText("class")).toBe("class=*");
    expect(itemTerm(columnText("marital status")).patterns).toEqual([
        { kind: "part", text: "marital status=" },
    ]);
});

test("an item is asked for by its number", () => {
    expect(itemText(17, "then")).toBe("then:#17");
    expect(itemText(3)).toBe("#3");
});
