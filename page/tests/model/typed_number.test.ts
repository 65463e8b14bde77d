import { expect, test } from "vitest";
import { typedNumber } from "../../src/model/typed_number.ts";

function value(text: string, whole = 1): unknown {
    const typed = typedNumber(text, whole, Infinity);
    return typed.kind === "number" ? typed.value : typed.kind;
}

test("a comma is a decimal one unless groups of three digits follow", () => {
    expect(value("0,5")).toBe(0.5);
    expect(value("0,500")).toBe(0.5);
    expect(value("1,250")).toBe(1250);
    expect(value("1,250,000.5")).toBe(1250000.5);
    expect(value("1e-3")).toBe(0.001);
});

test("a percentage is one of the whole", () => {
    expect(value("50 %")).toBe(0.5);
    expect(value("5%", 2000)).toBe(100);
});

test("an empty field leaves the range open", () => {
    expect(value("  ")).toBe("open");
});

test("what is no number, or more than can be, is told with what is expected", () => {
    expect(typedNumber("abc", 1, 1)).toEqual({
        kind: "problem",
        problem: "found “abc”; expected a number, such as 0.5 or 50%",
    });
    expect(typedNumber("50", 1, 1)).toEqual({
        kind: "problem",
        problem: "found 50; expected at most 1, such as 0.5 or 50%",
    });
    expect(typedNumber("1,2,3", 1, Infinity).kind).toBe("problem");
});

test("powers of ten are read as the page says them", () => {
    expect(["3.5·10⁻⁷", "10⁻²⁴", "2·10¹⁵"].map((text) => value(text))).toEqual([3.5e-7, 1e-24, 2e15]);
});
