import { surprise } from "./fisher.ts";
import { excess, ratio } from "./table.ts";

/** A measure of x, y, a, n: premise, conclusion, both, all transactions. NaN where it is not defined (0/0). */
export type MeasureOfCounts = (x: number, y: number, a: number, n: number) => number;

/** (a n - x y) in relation to a product of counts. */
function excessIn(x: number, y: number, a: number, n: number, whole: number): number {
    return ratio(excess(x, y, a, n), whole);
}

function variances(x: number, y: number, n: number): number {
    return x * (n - x) * (y * (n - y));
}

function certainty(x: number, y: number, a: number, n: number): number {
    if (x === 0) {
        return NaN;
    }
    const beyondChance = excess(x, y, a, n);
    return beyondChance === 0 ? 0 : ratio(beyondChance, x * (beyondChance > 0 ? n - y : y));
}

function phi(x: number, y: number, a: number, n: number): number {
    // The root of one quotient, so that equal values are equal.
    const beyondChance = excess(x, y, a, n);
    const size = Math.sqrt(ratio(beyondChance * beyondChance, variances(x, y, n)));
    return beyondChance < 0 ? -size : size;
}

function chi2(x: number, y: number, a: number, n: number): number {
    const beyondChance = excess(x, y, a, n);
    return ratio(beyondChance * beyondChance * n, variances(x, y, n));
}

/**
 * The measures by the names that the program gives them, where their formulas stand, too. `support` is the share of
 * the transactions here; where the page says a support, it is a count.
 */
export const measures: Readonly<Record<string, MeasureOfCounts>> = {
    support: (_x, _y, a, n) => ratio(a, n),
    coverage: (x, _y, _a, n) => ratio(x, n),
    prevalence: (_x, y, _a, n) => ratio(y, n),
    confidence: (x, _y, a) => ratio(a, x),
    recall: (_x, y, a) => ratio(a, y),
    lift: (x, y, a, n) => ratio(a * n, x * y),
    leverage: (x, y, a, n) => excessIn(x, y, a, n, n * n),
    added_value: (x, y, a, n) => excessIn(x, y, a, n, x * n),
    conviction: (x, y, a, n) => ratio(x * (n - y), n * (x - a)),
    certainty,
    zhang: (x, y, a, n) => excessIn(x, y, a, n, Math.max(a * (n - x), x * (y - a))),
    phi,
    kappa: (x, y, a, n) => 2 * excessIn(x, y, a, n, x * (n - y) + y * (n - x)),
    yule_q: (x, y, a, n) => excessIn(x, y, a, n, a * (n - x - y + a) + (x - a) * (y - a)),
    odds_ratio: (x, y, a, n) => ratio(a * (n - x - y + a), (x - a) * (y - a)),
    relative_risk: (x, y, a, n) => ratio(a * (n - x), x * (y - a)),
    jaccard: (x, y, a) => ratio(a, x + y - a),
    cosine: (x, y, a) => Math.sqrt(ratio(a * a, x * y)),
    kulczynski: (x, y, a) => ratio(a * (x + y), 2 * x * y),
    imbalance: (x, y, a) => ratio(Math.abs(x - y), x + y - a),
    laplace: (x, _y, a) => ratio(a + 1, x + 2),
    chi2,
    p: surprise,
};
