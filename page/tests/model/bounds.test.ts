import { expect, test } from "vitest";
import type { Tables } from "../../src/data/rule_tables.ts";
import { boundsOf, fillBounds, type Turn } from "../../src/model/bounds.ts";
import { measures } from "../../src/model/measures.ts";
import type { Table } from "../../src/model/table.ts";

/** The tables of rules, of each the first and the second. */
function tablesOf(pairs: readonly (readonly [Table, Table])[]): Tables {
    const counts = (end: 0 | 1) => ({
        x: Uint32Array.from(pairs, (pair) => pair[end].x),
        y: Uint32Array.from(pairs, (pair) => pair[end].y),
        a: Uint32Array.from(pairs, (pair) => pair[end].a),
    });
    return { first: counts(0), second: counts(1) };
}

const turns: Readonly<Record<string, Turn>> = { chi2: "chance", imbalance: "equal_sides" };

/** All values between two tables. */
function extremes(name: string, first: Table, second: Table): { low: number; high: number } {
    const steps = Math.max(
        Math.abs(first.x - second.x),
        Math.abs(first.y - second.y),
        Math.abs(first.a - second.a),
    );
    const values = [];
    for (let step = 0; step <= steps; ++step) {
        const at = (from: number, to: number) =>
            from + Math.sign(to - from) * Math.min(step, Math.abs(to - from));
        values.push(
            measures[name]!(at(first.x, second.x), at(first.y, second.y), at(first.a, second.a), first.n),
        );
    }
    const defined = values.filter((value) => !Number.isNaN(value));
    return defined.length === 0
        ? { low: NaN, high: NaN }
        : { low: Math.min(...defined), high: Math.max(...defined) };
}

/** Two tables of one pair of itemsets b and d with a union of t: the support of d is what is open. */
function* openTables(n: number): Generator<[Table, Table]> {
    for (let t = 1; t <= n; ++t) {
        for (let b = 0; b <= t; ++b) {
            for (let lo = t - b; lo <= t; ++lo) {
                for (let hi = lo; hi <= t; ++hi) {
                    const plain = (r: number): Table => ({ x: b, y: r, a: b + r - t, n });
                    const turned = (r: number): Table => ({ x: r, y: b, a: b + r - t, n });
                    const denied = (r: number): Table => ({ x: b, y: n - r, a: t - r, n });
                    yield [plain(lo), plain(hi)];
                    yield [turned(lo), turned(hi)];
                    yield [denied(lo), denied(hi)];
                }
            }
        }
    }
}

test.each(Object.keys(measures).filter((name) => name !== "p"))(
    "the bounds of %s are its extremes over all tables between, for all up to 9 transactions",
    (name) => {
        const pairs = [...openTables(9)];
        const tables = tablesOf(pairs);
        pairs.forEach(([first, second], rule) => {
            const bounds = boundsOf(measures[name]!, turns[name] ?? "", tables, 9, rule);
            expect(bounds, JSON.stringify([first, second])).toEqual(extremes(name, first, second));
        });
    },
);

test("the bounds of a known table are its value", () => {
    const table = { x: 8, y: 10, a: 6, n: 20 };
    const bounds = boundsOf(measures["confidence"]!, "", tablesOf([[table, table]]), 20, 0);
    expect(bounds).toEqual({ low: 0.75, high: 0.75 });
});

test("an infinite value at an end is the upper bound", () => {
    const pair = [
        { x: 4, y: 5, a: 3, n: 10 },
        { x: 4, y: 5, a: 4, n: 10 },
    ] as const;
    const bounds = boundsOf(measures["conviction"]!, "", tablesOf([pair]), 10, 0);
    expect(bounds).toEqual({ low: 2, high: Infinity });
});

test("what is defined for no table has no bounds", () => {
    const none = { x: 0, y: 5, a: 0, n: 10 };
    const bounds = boundsOf(measures["confidence"]!, "", tablesOf([[none, none]]), 10, 0);
    expect(bounds).toEqual({ low: NaN, high: NaN });
});

test("bounds of some rules are those from the first asked for, as many as there is room for", () => {
    const table = (a: number): Table => ({ x: 4, y: 5, a, n: 10 });
    const pairs = [1, 2, 3, 4].map((a) => [table(a - 1), table(a)] as const);
    const low = new Float64Array(2);
    const high = new Float64Array(2);
    fillBounds(measures["confidence"]!, "", tablesOf(pairs), 10, 1, low, high);
    expect([[...low], [...high]]).toEqual([
        [0.25, 0.5],
        [0.5, 0.75],
    ]);
});
