import { expect, test } from "vitest";
import { firstState, fragmentOf, stateOf, type Known, type ViewState } from "../../src/model/view_state.ts";

const first = firstState(["confidence", "lift"]);
const known: Known = {
    quantities: ["support", "confidence", "lift", "phi"],
    forms: ["R111", "R131"],
    rules: 50,
    classes: 10,
    items: 20,
};

const busy: ViewState = {
    view: "items",
    terms: ["then:#4", "lift:1.2..", '"a b&c=#%"', "-é🙂"],
    draft: "mil",
    formsOff: ["R131"],
    kindsOff: ["bounded"],
    byReadings: true,
    sorting: { by: "lift", isAscending: true },
    columns: ["support", "phi"],
    xAxis: "lift",
    yAxis: "phi",
    rule: 0,
    node: 9,
    item: 19,
};

test("the first state needs no fragment", () => {
    expect(fragmentOf(first, first)).toBe("");
    expect(stateOf("", first, known)).toEqual(first);
});

test("a state comes back from its fragment", () => {
    expect(stateOf(`#${fragmentOf(busy, first)}`, first, known)).toEqual(busy);
});

test("a table without numbers comes back", () => {
    const bare = { ...first, columns: [] };
    expect(stateOf(fragmentOf(bare, first), first, known)).toEqual(bare);
});

test("rules are told by the numbers that the program gives them", () => {
    expect(fragmentOf({ ...first, rule: 6 }, first)).toBe("rule=7");
    expect(stateOf("rule=7&sort=lift", first, known)).toMatchObject({
        rule: 6,
        sorting: { by: "lift", isAscending: false },
    });
});

test("what makes no sense is passed over", () => {
    const odd = "view=x&sort=nothing&columns=lift,lift,x&x=y&rule=51&class=0&item=1.5&without=R999,exact&q=";
    expect(stateOf(odd, first, known)).toEqual({ ...first, columns: ["lift"], kindsOff: ["exact"] });
});
