/** The numbers of single precision as doubles with as few digits as tell them apart: 0.1 for what is stored of 0.1. */
export function shortestDoubles(numbers: ArrayLike<number>): Float64Array {
    return Float64Array.from(numbers, shortestDouble);
}

function shortestDouble(number: number): number {
    const fewest = 6;
    const most = 9; // which are always enough
    for (let digits = fewest; digits < most; ++digits) {
        const rounded = Number(number.toPrecision(digits));
        if (Math.fround(rounded) === number) {
            return rounded;
        }
    }
    return Number(number.toPrecision(most));
}
