/** The largest number of transactions for which doubles hold products of two counts exactly. */
const mostForDoubles = 94_906_265;

/** The four counts of a rule, in transactions. */
export interface Table {
    /** How many meet the premise. */
    readonly x: number;
    /** How many meet the conclusion. */
    readonly y: number;
    /** How many meet both. */
    readonly a: number;
    /** How many there are. */
    readonly n: number;
}

/** The cells of a table: both sides, one of them only, or neither. */
export interface Cells {
    readonly both: number;
    readonly onlyPremise: number;
    readonly onlyConclusion: number;
    readonly neither: number;
}

/** The cells of a table. */
export function cellsOf({ x, y, a, n }: Table): Cells {
    return { both: a, onlyPremise: x - a, onlyConclusion: y - a, neither: n - x - y + a };
}

/** a n - x y, which is n^2 times the leverage: above 0 where the sides meet more often than by chance. */
export function excess(x: number, y: number, a: number, n: number): number {
    return n <= mostForDoubles ? a * n - x * y : Number(BigInt(a) * BigInt(n) - BigInt(x) * BigInt(y));
}

/** A quotient that is 1 only where both numbers are equal. NaN for 0/0. */
export function ratio(part: number, whole: number): number {
    const rounded = part / whole;
    if (rounded !== 1 || part === whole) {
        return rounded;
    }
    return part > whole ? 1 + Number.EPSILON : 1 - Number.EPSILON / 2;
}
