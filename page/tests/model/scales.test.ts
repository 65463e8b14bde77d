import { expect, test } from "vitest";
import { positionOn } from "../../src/model/axis.ts";
import { Quantities } from "../../src/model/quantities.ts";
import { Scales } from "../../src/model/scales.ts";
import { titanicBook } from "../support/titanic.ts";

test("rules stand on the axis of a quantity where their values lie", () => {
    const quantities = new Quantities(titanicBook());
    const scales = new Scales(quantities);
    const { low } = quantities.column("lift");
    const positions = scales.positions("lift");
    positions.forEach((position, rule) => {
        expect(position).toBeCloseTo(positionOn(scales.axis("lift"), low[rule]!), 6);
    });
    expect(scales.positions("lift")).toBe(positions);
});
