import type { ValueColumn } from "./quantities.ts";

const digits = 65_536;

/** Rules as the program ranked them: 0, 1, 2, ... */
export function givenOrder(rules: number): Uint32Array {
    return Uint32Array.from({ length: rules }, (_, rule) => rule);
}

/**
 * All rules ordered by a quantity: ascending by the upper end of its values, descending by the lower one, so that the
 * end that is certain decides. What is not defined comes last; equal ones stay as the program ranked them.
 * A radix sort of the bits: O(rules).
 */
export function orderBy({ low, high }: ValueColumn, isAscending: boolean): Uint32Array {
    const values = isAscending ? high : low;
    const keys = sortableKeys(values, isAscending);
    let order = givenOrder(values.length);
    let other: Uint32Array = new Uint32Array(values.length);
    for (let digit = 0; digit < 4; ++digit) {
        if (sortedByDigit(keys, digit, order, other)) {
            [order, other] = [other, order];
        }
    }
    return order;
}

/** 64 bits for each value, as four digits: numbers in the order of the values, or against it. */
function sortableKeys(values: Float64Array, isAscending: boolean): Uint16Array {
    const keys = new Uint16Array(values.length * 4);
    const one = new Float64Array(1);
    const bits = new Uint32Array(one.buffer);
    const turned = isAscending ? 0 : -1;
    for (let i = 0; i < values.length; ++i) {
        const value = values[i]!;
        one[0] = value === 0 ? 0 : value; // one zero, not two
        // Of negative numbers all bits are turned, of others only the sign.
        const isNegative = bits[1]! >>> 31 === 1;
        const isLast = Number.isNaN(value) ? -1 : 0;
        const lower = (bits[0]! ^ (isNegative ? -1 : 0) ^ turned) | isLast;
        const upper = (bits[1]! ^ (isNegative ? -1 : 0x8000_0000) ^ turned) | isLast;
        keys[4 * i] = lower;
        keys[4 * i + 1] = lower >>> 16;
        keys[4 * i + 2] = upper;
        keys[4 * i + 3] = upper >>> 16;
    }
    return keys;
}

/** Sorts by one digit from `from` to `to`, keeping the order of equal ones. False where all have the same digit. */
function sortedByDigit(keys: Uint16Array, digit: number, from: Uint32Array, to: Uint32Array): boolean {
    const starts = new Uint32Array(digits + 1);
    for (let i = digit; i < keys.length; i += 4) {
        starts[keys[i]! + 1]! += 1;
    }
    if (from.length === 0 || starts[keys[digit]! + 1] === from.length) {
        return false;
    }
    for (let value = 1; value < digits; ++value) {
        starts[value]! += starts[value - 1]!;
    }
    for (const rule of from) {
        const key = keys[4 * rule + digit]!;
        to[starts[key]!] = rule;
        starts[key]! += 1;
    }
    return true;
}
