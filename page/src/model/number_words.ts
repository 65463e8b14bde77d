import type { Bounds } from "./bounds.ts";

/** A whole number with commas: "2,201". */
export function countText(count: number): string {
    return String(count).replace(/\B(?=(\d{3})+$)/g, ",");
}

/** A share as a percentage, of which only 0 and 1 are said as 0 % and 100 %. */
export function percentText(share: number): string {
    const percent = 100 * share;
    if (share === 0 || share === 1) {
        return `${decimals(percent, 0)} %`;
    }
    if (percent < 0.05) {
        return "under 0.1 %";
    }
    if (percent >= 99.95) {
        return "over 99.9 %";
    }
    return `${decimals(percent, percent < 9.95 || percent >= 99.5 ? 1 : 0)} %`;
}

/** A measure with three significant digits or so; "–" where it is not defined. */
export function measureText(number: number): string {
    if (Number.isNaN(number)) {
        return "–";
    }
    const size = Math.abs(number);
    if (size === Infinity) {
        return number < 0 ? "-∞" : "∞";
    }
    if (size >= 1e15) {
        return digitsWithPower(number, 1);
    }
    if (size >= 999.5) {
        return (number < 0 ? "-" : "") + countText(Math.round(size));
    }
    if (size !== 0 && size < 0.001) {
        return twoDigits(number);
    }
    return distinctText(number, decimalsFor(size));
}

function decimalsFor(size: number): number {
    if (size >= 99.95) {
        return 0;
    }
    if (size >= 9.995) {
        return 1;
    }
    return size >= 1 ? 2 : 3;
}

/** A number with so many decimals, but never 0 or 1 for another number: "<1.001", "0.00012". */
export function distinctText(number: number, places: number): string {
    const size = Math.abs(number);
    const sign = number < 0 ? "-" : "";
    const text = decimals(size, places);
    if (size !== 0 && text === decimals(0, places)) {
        return twoDigits(number);
    }
    if (size === 1 || text !== decimals(1, places)) {
        return sign + text;
    }
    const step = 10 ** -places;
    const isAbove = number > (number < 0 ? -1 : 1);
    return (isAbove ? "<" : ">") + sign + decimals(size > 1 ? 1 + step : 1 - step, places);
}

/** "0.61 to 0.73"; one of the texts where they are equal. */
export function rangeText(low: string, high: string): string {
    return low === high ? low : `${low} to ${high}`;
}

/** Bounds, each said by `say`. */
export function boundsText(bounds: Bounds, say: (number: number) => string): string {
    return rangeText(say(bounds.low), say(bounds.high));
}

/** A number with so many decimals. A tie goes to the even digit, as in the program's own texts. */
export function decimals(number: number, places: number): string {
    const halves = number * 2 ** (places + 1);
    const isTie = Number.isInteger(halves) && halves % 2 !== 0;
    if (!isTie) {
        return number.toFixed(places);
    }
    const below = Math.floor(number * 10 ** places);
    return ((below % 2 === 0 ? below : below + 1) / 10 ** places).toFixed(places);
}

/** Two significant digits: "0.00012", "1.2·10⁻⁵". */
function twoDigits(number: number): string {
    return Math.abs(number) >= leastPlain
        ? String(Number(number.toPrecision(2)))
        : digitsWithPower(number, 1);
}

/** What is smaller is said with a power of ten. */
const leastPlain = 1e-4;

/** A probability by its decimal logarithm, so that none is too small: "0.023", "4.7·10⁻²⁴". */
export function probabilityText(logarithm: number): string {
    if (Number.isNaN(logarithm) || logarithm === -Infinity) {
        return Number.isNaN(logarithm) ? "–" : "0";
    }
    if (logarithm >= Math.log10(leastPlain)) {
        return measureText(Number((10 ** logarithm).toPrecision(12)));
    }
    const exponent = Math.floor(logarithm);
    const digits = Number((10 ** (logarithm - exponent)).toPrecision(2));
    return digits < 10 ? powerText(digits, exponent) : powerText(1, exponent + 1);
}

/** A number with all of its digits: "0.25", "20000", "3·10⁻⁷". */
export function plainText(number: number): string {
    const size = Math.abs(number);
    const isPlain = size === 0 || (size >= leastPlain && size < 1e15) || size === Infinity;
    return isPlain ? String(number) : digitsWithPower(number);
}

function digitsWithPower(number: number, places?: number): string {
    const [digits, exponent] = number.toExponential(places).split("e") as [string, string];
    return powerText(Number(digits), Number(exponent));
}

/** "4.7·10⁻²⁴"; of 1, the power alone: "10⁻²⁴". */
function powerText(digits: number, exponent: number): string {
    const raised = Array.from(String(exponent), (sign) => (sign === "-" ? "⁻" : superscripts[Number(sign)]!));
    return `${digits === 1 ? "" : `${digits}·`}10${raised.join("")}`;
}

/** The digits of exponents, from 0. */
export const superscripts = "⁰¹²³⁴⁵⁶⁷⁸⁹";
