import { tickIncrement, ticks } from "d3-array";
import { countText, plainText } from "./number_words.ts";
import type { ValueColumn } from "./quantities.ts";

/** How the values of a quantity are laid out on a line: 0 is its beginning, 1 its end. */
export interface Axis {
    readonly from: number;
    readonly to: number;
    readonly isLogarithmic: boolean;
    /** Some values are infinite; they lie at the end, apart from the others. */
    readonly hasInfinite: boolean;
}

/** The part of an axis that finite values take where some are infinite. */
const finitePart = 0.94;

/** An axis for all values of a column, logarithmic where they are wide and far apart. */
export function axisOf(column: ValueColumn, isWide: boolean): Axis {
    let from = Infinity;
    let to = -Infinity;
    let hasInfinite = false;
    const all = column.low === column.high ? [column.low] : [column.low, column.high];
    for (const values of all) {
        for (let rule = 0; rule < values.length; ++rule) {
            const value = values[rule]!; // no comparison holds for NaN
            if (value === Infinity) {
                hasInfinite = true;
                continue;
            }
            if (value < from) {
                from = value;
            }
            if (value > to) {
                to = value;
            }
        }
    }
    if (isWide && from >= 0) {
        const least = from > 0 ? from : Math.min(...all.map(leastPositive));
        if (to / least > 20) {
            return { from: least, to, isLogarithmic: true, hasInfinite };
        }
    }
    return { ...roundEnds(from, to), isLogarithmic: false, hasInfinite };
}

function leastPositive(values: Float64Array): number {
    let least = Infinity;
    for (let rule = 0; rule < values.length; ++rule) {
        const value = values[rule]!;
        if (value > 0 && value < least) {
            least = value;
        }
    }
    return least;
}

/** Ends at round numbers, and some room where all values are one. */
function roundEnds(from: number, to: number): { from: number; to: number } {
    if (from > to) {
        return { from: 0, to: 1 };
    }
    if (from === to) {
        const room = Math.abs(from) / 2 || 0.5;
        return { from: from - room, to: to + room };
    }
    const increment = tickIncrement(from, to, 20);
    const step = increment < 0 ? -1 / increment : increment;
    const round = (value: number, rounded: (quotient: number) => number) =>
        increment < 0 ? rounded(value * -increment) / -increment : rounded(value / step) * step;
    return { from: round(from, Math.floor), to: round(to, Math.ceil) };
}

/** Where a value lies; what is beyond an end lies at it. NaN where the value is not defined. */
export function positionOn(axis: Axis, value: number): number {
    if (value === Infinity) {
        return 1;
    }
    const { from, to } = axis;
    const part = axis.isLogarithmic
        ? Math.log(Math.max(value, from) / from) / Math.log(to / from)
        : (value - from) / (to - from);
    return Math.min(1, Math.max(0, part)) * (axis.hasInfinite ? finitePart : 1);
}

/** Where all values of a column lie, as `positionOn` says of one. */
export function positionsOn(axis: Axis, values: Float64Array): Float32Array {
    const { from, to, isLogarithmic, hasInfinite } = axis;
    const positions = new Float32Array(values.length);
    const begin = isLogarithmic ? Math.log(from) : from;
    const scale = (hasInfinite ? finitePart : 1) / ((isLogarithmic ? Math.log(to) : to) - begin);
    const last = hasInfinite ? finitePart : 1;
    for (let i = 0; i < values.length; ++i) {
        const value = values[i]!;
        const position = ((isLogarithmic ? Math.log(value) : value) - begin) * scale;
        positions[i] = value === Infinity ? 1 : Math.min(last, Math.max(0, position));
    }
    return positions;
}

/** The value at a position: the opposite of `positionOn`. */
export function valueAt(axis: Axis, position: number): number {
    const part = position / (axis.hasInfinite ? finitePart : 1);
    if (part > 1 && axis.hasInfinite) {
        return Infinity;
    }
    const { from, to } = axis;
    const within = Math.min(1, Math.max(0, part));
    return axis.isLogarithmic ? from * (to / from) ** within : from + within * (to - from);
}

/** Round values for labels, about so many; of a logarithmic axis those of 1, 2, 5 times a power of ten. */
export function ticksOf(axis: Axis, about: number): number[] {
    if (!axis.isLogarithmic) {
        return ticks(axis.from, axis.to, about);
    }
    const first = Math.floor(Math.log10(axis.from));
    const last = Math.ceil(Math.log10(axis.to));
    for (const factors of [[1, 2, 5], [1, 3], [1]]) {
        const values = [];
        for (let exponent = first; exponent <= last; ++exponent) {
            values.push(...factors.map((factor) => Number(`${factor}e${exponent}`)));
        }
        const within = values.filter((value) => value >= axis.from && value <= axis.to);
        if (within.length <= about || factors.length === 1) {
            return within;
        }
    }
    return [];
}

/** A round value as a label: no more digits than it has. */
export function tickText(value: number): string {
    const size = Math.abs(value);
    return size >= 1_000 && size < 1e9 ? countText(value) : plainText(Number(value.toPrecision(12)));
}

/** A value in so many digits that neighbours which can be told apart on the axis differ. */
export function roundedOn(axis: Axis, value: number): number {
    if (!Number.isFinite(value)) {
        return value;
    }
    const smallest = axis.isLogarithmic ? value / 500 : (axis.to - axis.from) / 500;
    const places = Math.max(0, Math.min(15, Math.ceil(-Math.log10(smallest))));
    return Number(value.toFixed(places));
}
