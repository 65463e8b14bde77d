import { expect, test } from "vitest";
import {
    boundsText,
    countText,
    decimals,
    distinctText,
    measureText,
    percentText,
    plainText,
    probabilityText,
} from "../../src/model/number_words.ts";

test("counts have commas", () => {
    expect([0, 999, 1000, 2201, 1234567].map(countText)).toEqual(["0", "999", "1,000", "2,201", "1,234,567"]);
});

test.each([
    [0, "0 %"],
    [1, "100 %"],
    [0.0001, "under 0.1 %"],
    [0.012, "1.2 %"],
    [0.0995, "10 %"],
    [0.564, "56 %"],
    [0.996, "99.6 %"],
    [0.99996, "over 99.9 %"],
])("the share %d is said as %s", (share, text) => {
    expect(percentText(share)).toBe(text);
});

test.each([
    [1.7136, "1.71"],
    [0.0751, "0.075"],
    [12.34, "12.3"],
    [123.4, "123"],
    [1234.4, "1,234"],
    [0, "0.000"],
    [1, "1.00"],
    [1.001, "<1.01"],
    [0.9996, ">0.999"],
    [0.00012, "0.00012"],
    [0.0000123, "1.2·10⁻⁵"],
    [-1e-12, "-1·10⁻¹²"],
    [2.5e15, "2.5·10¹⁵"],
    [-0.25, "-0.250"],
    [NaN, "–"],
    [Infinity, "∞"],
])("the measure %d is said as %s", (value, text) => {
    expect(measureText(value)).toBe(text);
});

test("a number that is not 1 is never said as 1", () => {
    expect(distinctText(0.99999, 3)).toBe(">0.999");
    expect(distinctText(1, 3)).toBe("1.000");
});

test("ties go to the even digit, and only ties", () => {
    expect([0.5, 1.5, 2.5, 12.5].map((tie) => decimals(tie, 0))).toEqual(["0", "2", "2", "12"]);
    expect(decimals(0.125, 2)).toBe("0.12");
    expect(decimals(0.375, 2)).toBe("0.38");
    expect(decimals(2.675, 2)).toBe("2.67"); // it is a little less than that
});

test("bounds are said once where they sound alike", () => {
    expect(boundsText({ low: 0.561, high: 0.564 }, percentText)).toBe("56 %");
    expect(boundsText({ low: 0.5, high: 0.75 }, percentText)).toBe("50 % to 75 %");
});

test.each([
    [0, "1.00"],
    [Math.log10(0.5), "0.500"],
    [Math.log10(0.023), "0.023"],
    [-4, "0.0001"],
    [-23.3, "5·10⁻²⁴"], // 10^0.7 = 5.01
    [-4.0001, "10⁻⁴"],
    [-1234.5, "3.2·10⁻¹²³⁵"], // 10^0.5 = 3.16
    [-Infinity, "0"],
    [NaN, "–"],
])("the probability of the logarithm %d is said as %s", (logarithm, text) => {
    expect(probabilityText(logarithm)).toBe(text);
});

test("a plain number has all of its digits, and a power of ten where it is far from 1", () => {
    expect([0, 0.25, 20_000, 3.25e-7, 1e-9, 4e21].map(plainText)).toEqual([
        "0",
        "0.25",
        "20000",
        "3.25·10⁻⁷",
        "10⁻⁹",
        "4·10²¹",
    ]);
});
