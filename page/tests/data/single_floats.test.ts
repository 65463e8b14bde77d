import { expect, test } from "vitest";
import { shortestDoubles } from "../../src/data/single_floats.ts";

test("a number of single precision is the shortest one that is stored like this", () => {
    const stored = Float32Array.of(0.1, 12.3, 95.623474, 0, 16_777_215, 3.4028235e38);
    expect([...shortestDoubles(stored)]).toEqual([0.1, 12.3, 95.623474, 0, 16_777_215, 3.4028235e38]);
});

test("what is no number, or infinite, stays so", () => {
    expect([...shortestDoubles(Float32Array.of(Infinity, NaN))]).toEqual([Infinity, NaN]);
});
