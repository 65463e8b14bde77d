import { expect, test } from "vitest";
import { tablesOfRules } from "../../src/data/rule_tables.ts";

const none = { rules: new Uint32Array(0), counts: new Uint32Array(0) };
const premises = Uint32Array.of(0, 1);
const conclusions = Uint32Array.of(1, 0);
const exceptions = Uint32Array.of(3, 15);
const noSlopes = new Int8Array(2);

test("the counts of sides and the exceptions make the table of a rule", () => {
    const sides = { counts: Uint32Array.of(10, 20), spreads: new Uint32Array(2) };
    const { first, second } = tablesOfRules(premises, conclusions, exceptions, noSlopes, sides, none);
    expect([...first.x]).toEqual([10, 20]);
    expect([...first.y]).toEqual([20, 10]);
    expect([...first.a]).toEqual([7, 5]);
    expect(second).toBe(first);
});

test("a side that is open moves the counts as the slope says", () => {
    const sides = { counts: Uint32Array.of(10, 20), spreads: Uint32Array.of(0, 4) };
    const slopes = Int8Array.of(1, -1);
    const { first, second } = tablesOfRules(premises, conclusions, exceptions, slopes, sides, none);
    expect([...first.a]).toEqual([7, 5]);
    expect([...second.x]).toEqual([10, 24]);
    expect([...second.y]).toEqual([24, 10]);
    expect([...second.a]).toEqual([11, 1]);
});

test("odd rules have counts of their own", () => {
    const sides = { counts: Uint32Array.of(10, 20), spreads: new Uint32Array(2) };
    const odd = { rules: Uint32Array.of(1), counts: Uint32Array.of(1, 2, 3, 4, 5, 6) };
    const { first, second } = tablesOfRules(premises, conclusions, exceptions, noSlopes, sides, odd);
    expect([first.x[1], first.y[1], first.a[1]]).toEqual([1, 2, 3]);
    expect([second.x[1], second.y[1], second.a[1]]).toEqual([4, 5, 6]);
    expect([second.x[0], second.y[0], second.a[0]]).toEqual([10, 20, 7]);
});
