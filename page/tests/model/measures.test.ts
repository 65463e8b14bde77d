import { expect, test } from "vitest";
import { measures } from "../../src/model/measures.ts";

// Of 20 transactions, 8 meet the premise, 10 the conclusion, 6 both: cells 6, 2, 4, 8; v = 6 20 - 8 10 = 40.
const expected: Readonly<Record<string, number>> = {
    support: 6 / 20,
    coverage: 8 / 20,
    prevalence: 10 / 20,
    confidence: 6 / 8,
    recall: 6 / 10,
    lift: 1.5,
    leverage: 0.1,
    added_value: 0.25,
    conviction: 2,
    certainty: 0.5,
    zhang: 40 / 72,
    phi: 40 / Math.sqrt(8 * 12 * 10 * 10),
    kappa: 0.4,
    yule_q: 40 / 56,
    odds_ratio: 6,
    relative_risk: 0.75 / (4 / 12),
    jaccard: 0.5,
    cosine: 6 / Math.sqrt(80),
    kulczynski: 0.675,
    imbalance: 2 / 12,
    laplace: 0.7,
    chi2: (20 * 1600) / 9600,
    // 1 - (tables of 0 to 5): C(10,6) C(10,2) + C(10,7) C(10,1) + C(10,8) of C(20,8)
    p: -Math.log10((210 * 45 + 120 * 10 + 45) / 125_970),
};

test.each(Object.entries(expected))("%s of a small table", (name, value) => {
    expect(measures[name]!(8, 10, 6, 20)).toBeCloseTo(value, 12);
});

test("each measure of the catalogue has a value", () => {
    expect(Object.keys(measures)).toEqual(Object.keys(expected));
});

test("measures below chance turn their sign", () => {
    expect(measures["phi"]!(8, 10, 2, 20)).toBeCloseTo(-40 / Math.sqrt(9600), 12);
    expect(measures["certainty"]!(8, 10, 2, 20)).toBeCloseTo(-0.5, 12);
    expect(measures["yule_q"]!(8, 10, 2, 20)).toBeCloseTo(-40 / 56, 12);
});

test("a rule without exception has an infinite conviction", () => {
    expect(measures["conviction"]!(8, 10, 8, 20)).toBe(Infinity);
    expect(measures["odds_ratio"]!(8, 10, 8, 20)).toBe(Infinity);
});

test("a premise that no transaction meets leaves measures undefined", () => {
    for (const name of ["confidence", "lift", "certainty", "zhang", "relative_risk"]) {
        expect(measures[name]!(0, 10, 0, 20), name).toBeNaN();
    }
    expect(measures["support"]!(0, 10, 0, 20)).toBe(0);
});
