import { expect, test } from "vitest";
import { surprise } from "../../src/model/fisher.ts";

/** The same from binomial coefficients, whole numbers and no logarithm but the last. */
function plainly(x: number, y: number, a: number, n: number): number {
    let more = 0n;
    let all = 0n;
    for (let both = Math.max(0, x + y - n); both <= Math.min(x, y); ++both) {
        const ways = choose(x, both) * choose(n - x, y - both);
        all += ways;
        more += both >= a ? ways : 0n;
    }
    const scale = 10n ** 400n;
    const share = (more * scale) / all;
    const digits = share.toString();
    return 400 - (digits.length - 17 + Math.log10(Number(digits.slice(0, 17).padEnd(17, "0"))));
}

function choose(n: number, k: number): bigint {
    let ways = 1n;
    for (let i = 1; i <= k; ++i) {
        ways = (ways * BigInt(n - k + i)) / BigInt(i);
    }
    return ways;
}

test("a tea taster who finds all four cups is right once in 70 times", () => {
    expect(surprise(4, 4, 4, 8)).toBeCloseTo(Math.log10(70), 12);
});

test("of three cups of four, 17 in 70 cases are at least as good", () => {
    expect(surprise(4, 4, 3, 8)).toBeCloseTo(Math.log10(70 / 17), 12);
});

test("all tables of up to 16 transactions agree with sums of binomial coefficients", () => {
    for (const n of [2, 5, 9, 16]) {
        for (let x = 0; x <= n; ++x) {
            for (let y = 0; y <= n; ++y) {
                for (let a = Math.max(0, x + y - n); a <= Math.min(x, y); ++a) {
                    expect(surprise(x, y, a, n), `${x} ${y} ${a} ${n}`).toBeCloseTo(plainly(x, y, a, n), 9);
                }
            }
        }
    }
});

test("a table of thousands agrees with sums of binomial coefficients", () => {
    expect(surprise(240, 360, 170, 1100)).toBeCloseTo(plainly(240, 360, 170, 1100), 8);
    expect(surprise(745, 865, 680, 1100)).toBeCloseTo(plainly(745, 865, 680, 1100), 8);
    expect(surprise(240, 360, 60, 1100)).toBeCloseTo(plainly(240, 360, 60, 1100), 10);
});

test("where there cannot be fewer, nothing surprises", () => {
    expect(surprise(3, 4, 0, 10)).toBe(0);
    expect(surprise(10, 4, 4, 10)).toBe(0);
});

test("turning a rule round gives the same number", () => {
    expect(surprise(123, 456, 100, 1000)).toBe(surprise(456, 123, 100, 1000));
});
