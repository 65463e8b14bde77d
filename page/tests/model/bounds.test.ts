import { expect, test } from "vitest";
import { boundsOf, type Turn } from "../../src/model/bounds.ts";
import { measures } from "../../src/model/measures.ts";
import type { Table } from "../../src/model/table.ts";

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
        for (const [first, second] of openTables(9)) {
            const bounds = boundsOf(measures[name]!, turns[name] ?? "", first, second);
            expect(bounds, JSON.stringify([first, second])).toEqual(extremes(name, first, second));
        }
    },
);

test("the bounds of a known table are its value", () => {
    const table = { x: 8, y: 10, a: 6, n: 20 };
    expect(boundsOf(measures["confidence"]!, "", table, table)).toEqual({ low: 0.75, high: 0.75 });
});

test("an infinite value at an end is the upper bound", () => {
    const bounds = boundsOf(
        measures["conviction"]!,
        "",
        { x: 4, y: 5, a: 3, n: 10 },
        { x: 4, y: 5, a: 4, n: 10 },
    );
    expect(bounds).toEqual({ low: 2, high: Infinity });
});
