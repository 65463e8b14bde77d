import { cellsOf, excess } from "./table.ts";

const firstOfSeries = 128;
const logOfTwoPi = 1.8378770664093453;

/** ln k! - (k ln k - k) for small k. */
const small = smallValues();

function smallValues(): Float64Array {
    const values = new Float64Array(firstOfSeries);
    let logFactorial = 0;
    for (let k = 1; k < firstOfSeries; ++k) {
        logFactorial += Math.log(k);
        values[k] = logFactorial - (k * Math.log(k) - k);
    }
    return values;
}

/** ln k! - (k ln k - k), from Stirling's series. */
function beyondStirling(k: number): number {
    if (k < firstOfSeries) {
        return small[k]!;
    }
    const square = k * k;
    const terms = 1 / 12 - (1 / 360 - (1 / 1260 - 1 / 1680 / square) / square) / square;
    return (logOfTwoPi + Math.log(k)) / 2 + terms / k;
}

/** (1 + u) ln(1 + u) - u, for u >= -1. Near 0, where that would be the difference of equal numbers, by its series. */
function divergence(u: number): number {
    const near = 0.05;
    const terms = 14; // what is left out is below the precision
    if (u <= -1) {
        return 1;
    }
    if (Math.abs(u) > near) {
        return (1 + u) * Math.log1p(u) - u;
    }
    let sum = 0;
    for (let k = terms; k >= 2; --k) {
        sum = 1 / (k * (k - 1)) - u * sum;
    }
    return u * u * sum;
}

/** A term of the divergences: of a cell with this expected count and this deviation from it. */
function term(mean: number, gap: number): number {
    return mean === 0 ? 0 : mean * divergence(gap / mean);
}

/**
 * The natural logarithm of the probability of exactly this table among those of its margins. Logarithms of factorials
 * are large and nearly cancel each other; what remains of them is a sum over the cells, all of the same sign.
 */
function logProbability(x: number, y: number, a: number, n: number): number {
    const { onlyPremise, onlyConclusion, neither } = cellsOf({ x, y, a, n });
    const deviation = excess(x, y, a, n) / n;
    const divergences =
        term((x * y) / n, deviation) +
        term((x * (n - y)) / n, -deviation) +
        term(((n - x) * y) / n, -deviation) +
        term(((n - x) * (n - y)) / n, deviation);
    const margins =
        beyondStirling(x) +
        beyondStirling(n - x) +
        beyondStirling(y) +
        beyondStirling(n - y) -
        beyondStirling(n);
    const cells =
        beyondStirling(a) +
        beyondStirling(onlyPremise) +
        beyondStirling(onlyConclusion) +
        beyondStirling(neither);
    return margins - cells - divergences;
}

/**
 * The sum of the probabilities of all tables from one on, in relation to that of the first. A step takes one
 * transaction from both of the taken cells and adds it to both of the given ones. The probabilities must fall.
 */
function tailSum(firstTaken: number, secondTaken: number, firstGiven: number, secondGiven: number): number {
    const negligible = 1e-17;
    let sum = 1;
    let probability = 1;
    for (let step = 0; probability > sum * negligible; ++step) {
        probability *=
            ((firstTaken - step) * (secondTaken - step)) /
            ((firstGiven + step + 1) * (secondGiven + step + 1));
        sum += probability;
    }
    return sum;
}

/**
 * How rarely chance gives so many transactions with both sides, or more: Fisher's one-sided probability as -log10.
 * O(sqrt(n)) at worst. From the expected count on the tail itself is added up, below it the other one, so that a
 * probability close to 1 is exact, too.
 */
export function surprise(x: number, y: number, a: number, n: number): number {
    // In this order, so that turning a rule round gives the same sum.
    const [fewer, more] = x <= y ? [x, y] : [y, x];
    const { onlyPremise, onlyConclusion, neither } = cellsOf({ x: fewer, y: more, a, n });
    if (a === 0 || neither === 0) {
        return 0; // there cannot be fewer
    }
    if (excess(x, y, a, n) > 0) {
        const tail = tailSum(onlyPremise, onlyConclusion, a, neither);
        return Math.max(0, -(logProbability(fewer, more, a, n) + Math.log(tail)) / Math.LN10);
    }
    const below = tailSum(a - 1, neither - 1, onlyPremise + 1, onlyConclusion + 1);
    return -Math.log1p(-Math.exp(logProbability(fewer, more, a - 1, n)) * below) / Math.LN10;
}
