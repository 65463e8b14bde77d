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
    if (size >= 1e15) {
        return size === Infinity ? (number < 0 ? "-∞" : "∞") : String(number);
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

/** Two significant digits: "0.00012", "1.2e-05". */
function twoDigits(number: number): string {
    const [digits, exponent] = number.toExponential(1).split("e") as [string, string];
    const size = Math.abs(Number(exponent));
    if (size <= 4) {
        return String(Number(number.toPrecision(2)));
    }
    return `${String(Number(digits))}e-${String(size).padStart(2, "0")}`;
}
