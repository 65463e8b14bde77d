import type { ValueColumn } from "./quantities.ts";

/** Bits of a digit: so few that the places where rules are written next fit the processor's nearest memory. */
const bitsOfDigit = 11;
const values = 2 ** bitsOfDigit;

/** Rules as the program ranked them: 0, 1, 2, ... */
export function givenOrder(rules: number): Uint32Array<ArrayBuffer> {
    const order = new Uint32Array(rules);
    for (let rule = 0; rule < rules; ++rule) {
        order[rule] = rule;
    }
    return order;
}

/**
 * All rules ordered by a quantity: ascending by the upper end of its values, descending by the lower one, so that the
 * end that is certain decides. What is not defined comes last; equal ones stay as the program ranked them.
 * A radix sort of the bits: O(rules).
 */
export function orderBy({ low, high }: ValueColumn, isAscending: boolean): Uint32Array {
    const { lower, upper } = sortableKeys(isAscending ? high : low, isAscending);
    const order = sortedByKey(lower, givenOrder(lower.length));
    const keys = new Uint32Array(upper.length);
    for (let i = 0; i < keys.length; ++i) {
        keys[i] = upper[order[i]!]!;
    }
    return sortedByKey(keys, order);
}

interface Keys {
    readonly lower: Uint32Array;
    readonly upper: Uint32Array;
}

/** 64 bits for each value, as two halves: numbers in the order of the values, or against it. */
function sortableKeys(column: Float64Array, isAscending: boolean): Keys {
    const lower = new Uint32Array(column.length);
    const upper = new Uint32Array(column.length);
    const one = new Float64Array(1);
    const bits = new Uint32Array(one.buffer);
    const turned = isAscending ? 0 : -1;
    for (let i = 0; i < column.length; ++i) {
        const value = column[i]!;
        one[0] = value === 0 ? 0 : value; // one zero, not two
        // Of negative numbers all bits are turned, of others only the sign.
        const isNegative = bits[1]! >>> 31 === 1;
        const isLast = Number.isNaN(value) ? -1 : 0;
        lower[i] = (bits[0]! ^ (isNegative ? -1 : 0) ^ turned) | isLast;
        upper[i] = (bits[1]! ^ (isNegative ? -1 : 0x8000_0000) ^ turned) | isLast;
    }
    return { lower, upper };
}

/** Rules sorted by their keys, which stand in the same order; those of equal keys stay. Overwrites both. */
function sortedByKey(keys: Uint32Array, rules: Uint32Array): Uint32Array {
    let from: KeyedRules = { keys, rules };
    let to: KeyedRules = { keys: new Uint32Array(keys.length), rules: new Uint32Array(keys.length) };
    for (let shift = 0; shift < 32; shift += bitsOfDigit) {
        if (sortByDigit(from, to, shift)) {
            [from, to] = [to, from];
        }
    }
    return from.rules;
}

interface KeyedRules {
    readonly keys: Uint32Array;
    readonly rules: Uint32Array;
}

/** Sorts by one digit from `from` to `to`. False, without doing it, where all have the same digit. */
function sortByDigit(from: KeyedRules, to: KeyedRules, shift: number): boolean {
    const { keys, rules } = from;
    const mask = values - 1;
    const starts = new Uint32Array(values + 1);
    for (let i = 0; i < keys.length; ++i) {
        starts[((keys[i]! >>> shift) & mask) + 1]! += 1;
    }
    if (keys.length === 0 || starts[((keys[0]! >>> shift) & mask) + 1] === keys.length) {
        return false;
    }
    for (let value = 1; value < values; ++value) {
        starts[value]! += starts[value - 1]!;
    }
    for (let i = 0; i < keys.length; ++i) {
        const key = keys[i]!;
        const digit = (key >>> shift) & mask;
        const place = starts[digit]!;
        to.keys[place] = key;
        to.rules[place] = rules[i]!;
        starts[digit] = place + 1;
    }
    return true;
}
