import { expect, test } from "vitest";
import { RowWindow } from "../../src/view/row_window.ts";

function windowOf(rows: number): RowWindow {
    const made = new RowWindow();
    made.resize(rows, 40, 400);
    return made;
}

test("of a short list the scroller is as high as all rows", () => {
    const of = windowOf(100);
    expect(of.height).toBe(4_000);
    of.scrollTo(85);
    expect([of.top, of.range]).toEqual([85, [2, 13]]);
});

test("of a long list the scroller is no higher than browsers can scroll over", () => {
    expect(windowOf(1_000_000).height).toBe(15_000_000);
});

test("near movements move a long list by as many pixels", () => {
    const of = windowOf(1_000_000);
    of.scrollTo(7_000_000);
    const { top } = of;
    of.scrollTo(7_000_120);
    expect(of.top).toBe(top + 120);
});

test("far movements move a long list by their part of the whole", () => {
    const of = windowOf(1_000_000);
    of.scrollTo((15_000_000 - 400) / 2);
    expect(of.top).toBeCloseTo((40_000_000 - 400) / 2, 3);
});

test("the ends of the scroller are the ends of the list", () => {
    const of = windowOf(1_000_000);
    of.scrollTo(15_000_000 - 400);
    expect(of.range).toEqual([999_990, 1_000_000]);
    of.scrollTo(200);
    of.scrollTo(0);
    expect(of.range).toEqual([0, 10]);
});

test("a row that is in sight does not move the list, others just into sight", () => {
    const of = windowOf(100);
    expect(of.show(5)).toBe(0);
    expect(of.show(12)).toBe(13 * 40 - 400);
    expect(of.show(11)).toBe(13 * 40 - 400);
    expect(of.show(0)).toBe(0);
});

test("any row of a long list can be shown, and the scroller follows", () => {
    const of = windowOf(1_000_000);
    for (const row of [999_999, 0, 123_456, 500_000]) {
        const scrolled = of.show(row);
        const { top } = of;
        of.scrollTo(scrolled); // as the event of the scroller tells it
        expect(of.top).toBe(top);
        const [begin, end] = of.range;
        expect(row).toBeGreaterThanOrEqual(begin);
        expect(row).toBeLessThan(end);
    }
});

test("fewer rows bring the list back into sight", () => {
    const of = windowOf(1_000);
    of.show(999);
    of.resize(10, 40, 400);
    expect([of.top, of.range]).toEqual([0, [0, 10]]);
});
