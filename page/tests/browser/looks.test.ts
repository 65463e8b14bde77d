import AxeBuilder from "axe-core";
import type { Page } from "playwright-core";
import { expect, test } from "vitest";
import { TestBrowser } from "../support/browser.ts";
import { madeBlob } from "../support/made_book.ts";
import { titanic } from "../support/titanic.ts";

const browser = new TestBrowser();
const blob = madeBlob({
    ...titanic,
    classes: [
        { count: 470, ownItems: [5], lowers: [], essentials: [] },
        { count: 837, ownItems: [9], lowers: [0], essentials: [] },
    ],
});

/** What axe-core finds wrong, in words. */
async function violations(page: Page): Promise<string[]> {
    await page.evaluate(AxeBuilder.source);
    return page.evaluate(async () => {
        const { axe } = globalThis as unknown as { axe: typeof import("axe-core") };
        const result = await axe.run({
            runOnly: ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "best-practice"],
        });
        return result.violations.map(
            ({ id, nodes }) =>
                `${id}: ${nodes.map((node) => `${node.html} ${node.failureSummary ?? ""}`).join(" | ")}`,
        );
    });
}

const narrow = { viewport: { width: 360, height: 740 } };

test.each([
    ["rules", "", {}],
    ["rules in the dark", "", { colorScheme: "dark" }],
    ["a rule", "rule=3&q=female", {}],
    ["a rule in the dark", "rule=3&q=female", { colorScheme: "dark" }],
    ["no rule that fits", "q=nothing", {}],
    ["items", "view=items&item=6", {}],
    ["exclusions", "view=exclusions", {}],
    ["exclusions in the dark", "view=exclusions", { colorScheme: "dark" }],
    ["a narrow page", "", narrow],
    ["a rule on a narrow page", "rule=3", narrow],
] as const)("axe-core finds nothing wrong with %s", async (_, fragment, options) => {
    const page = await browser.open(blob, { fragment, options });
    expect(await violations(page)).toEqual([]);
});

test("axe-core finds nothing wrong with the help and the choice of columns", async () => {
    const page = await browser.open(blob);
    await page.getByText("How these were chosen").click();
    await page.locator(".menu summary").click();
    expect(await violations(page)).toEqual([]);
    await page.keyboard.press("Escape");
    await page.getByRole("button", { name: "Help" }).click();
    expect(await violations(page)).toEqual([]);
});

test.each(["", "rule=3&q=female&q=lift>1.5", "view=items&item=6", "view=exclusions", "q=nothing"])(
    "nothing is wider than a page of 360 pixels: #%s",
    async (fragment) => {
        const page = await browser.open(blob, { fragment, options: narrow });
        expect(await page.evaluate(() => document.documentElement.scrollWidth)).toBeLessThanOrEqual(360);
    },
);

test("on a narrow page an item, its panel and the choice of columns are in sight", async () => {
    const names = Array.from({ length: 40 }, (_, i) => `a name of an item ${i}`);
    const rules = names.slice(1).map((_, i) => ({
        premise: { items: [0], count: 4 },
        conclusion: { items: [i + 1], count: 5 },
        exceptions: 1,
    }));
    const page = await browser.open(madeBlob({ transactions: 9, names, rules }), { options: narrow });
    await page.locator(".menu summary").click();
    const menu = (await page.locator(".menu fieldset").boundingBox())!;
    expect(menu.x).toBeGreaterThanOrEqual(0);
    expect(menu.x + menu.width).toBeLessThanOrEqual(360);
    await page.getByRole("button", { name: "Items" }).click();
    const first = page.locator(".items-view tbody .name").first();
    expect((await first.boundingBox())!.width).toBeGreaterThan(110);
    await first.getByRole("button").click();
    const panel = (await page.locator(".partners").boundingBox())!;
    expect(panel.y + panel.height).toBeLessThanOrEqual(741);
    await page.getByRole("button", { name: "Close this item" }).click();
    expect(await page.locator(".partners").isVisible()).toBe(false);
});

test("on a narrow page filters open, and rules can be looked at", async () => {
    const page = await browser.open(blob, { options: narrow });
    await page.locator(".filters summary").first().click();
    await page.getByRole("checkbox", { name: "with exceptions" }).uncheck();
    await page.locator(".row:visible").first().click();
    expect(await page.locator(".said").innerText()).toContain("class not crew");
    await page.getByRole("button", { name: "Close this rule" }).click();
    expect(await page.locator(".row:visible .number").first().innerText()).toContain("109");
});

test("the page is dark where the system is", async () => {
    const page = await browser.open(blob, { options: { colorScheme: "dark" } });
    const lightness = (name: "backgroundColor" | "color") =>
        page.evaluate((property) => {
            const parts = getComputedStyle(document.documentElement)[property].match(/\d+/gu) ?? [];
            return (
                parts
                    .slice(0, 3)
                    .map(Number)
                    .reduce((one, other) => one + other) / 3
            );
        }, name);
    expect(await lightness("backgroundColor")).toBeLessThan(50);
    expect(await lightness("color")).toBeGreaterThan(200);
});

test("paper has all shown rules as a plain table, and no controls", async () => {
    const page = await browser.open(blob, { fragment: "q=female" });
    await page.emulateMedia({ media: "print" });
    await page.evaluate(() => dispatchEvent(new Event("beforeprint")));
    expect(await page.locator(".print-only tbody tr").count()).toBe(3);
    expect(await page.locator(".print-only").innerText()).toContain("3 rules: female");
    for (const hidden of [".search", ".toolbar", ".filters", ".rule-table"]) {
        expect(await page.locator(hidden).isVisible(), hidden).toBe(false);
    }
    await page.evaluate(() => dispatchEvent(new Event("afterprint")));
    expect(await page.locator(".print-only tbody tr").count()).toBe(0);
});

test("on paper the lattice is drawn with brackets that reach its class, whatever the width of the paper", async () => {
    const classes = [
        { count: 470, ownItems: [5], lowers: [], essentials: [] },
        { count: 837, ownItems: [9], lowers: [0], essentials: [] },
    ];
    const page = await browser.open(madeBlob({ ...titanic, classes }), { fragment: "rule=3" });
    await page.emulateMedia({ media: "print" });
    await page.setViewportSize({ width: 680, height: 900 });
    expect(await page.locator(".lattice .lines").isVisible()).toBe(false);
    const gaps = await page.locator(".lattice").evaluate((lattice) => {
        const box = (selector: string) => lattice.querySelector(selector)!.getBoundingClientRect();
        const centre = lattice.querySelector(".centre")!;
        const [above, below] = ["::before", "::after"].map((part) =>
            parseFloat(getComputedStyle(centre, part).height),
        );
        const { top, bottom } = centre.getBoundingClientRect();
        // 1 for the border of the class, within which its lines begin.
        return [top - box("ul").bottom - above! + 1, box("ul:last-of-type").top - bottom - below! + 1];
    });
    expect(gaps.map(Math.round)).toEqual([0, 0]);
});

test("on paper the pairs that exclude each other have all of their numbers", async () => {
    const exclusions = [{ first: 2, second: 5, together: 1, p: 7 }];
    const page = await browser.open(madeBlob({ ...titanic, exclusions }), { fragment: "view=exclusions" });
    await page.emulateMedia({ media: "print" });
    await page.setViewportSize({ width: 680, height: 900 });
    expect(await page.locator(".exclusions-view thead th:visible").count()).toBe(6);
});

test.each([768, 1024])(
    "at a width of %i a rule stands beside the table, which goes on to work",
    async (width) => {
        const page = await browser.open(blob, {
            fragment: "rule=3",
            options: { viewport: { width, height: 800 } },
        });
        const [table, panel] = [page.locator(".rule-table"), page.locator(".panel")];
        const [left, right] = [(await table.boundingBox())!, (await panel.boundingBox())!];
        expect(left.x + left.width).toBeLessThanOrEqual(right.x);
        expect(right.x + right.width).toBe(width);
        expect([left.width >= 320, right.width >= 310]).toEqual([true, true]);
        const inSight = await page
            .locator(".row:visible")
            .first()
            .evaluate((row) =>
                [...row.children].every((cell) => cell.getBoundingClientRect().right <= innerWidth),
            );
        expect(inSight).toBe(true);
        await page.locator(".row:visible", { hasText: "class=crew" }).first().click();
        expect(await panel.locator("h2").innerText()).toBe("Rule 1");
        await page.getByRole("button", { name: "Close this rule" }).click();
        expect(await page.locator(".filters").isVisible()).toBe(true);
    },
);

test.each([
    "rule=3&q=female&q=p<0",
    "without=exact&rule=2",
    "view=items&item=6",
    "view=exclusions",
    "q=nothing",
])("what fingers touch is at least 32 pixels high: #%s", async (fragment) => {
    for (const width of [360, 800]) {
        const options = { hasTouch: true, isMobile: true, viewport: { width, height: 900 } };
        const page = await browser.open(blob, { fragment, options });
        const low = await page
            .locator("button, select, summary, label:has([type=checkbox]), input:not([type=checkbox])")
            .evaluateAll((elements) =>
                elements
                    .filter((element) => element.checkVisibility() && element.clientWidth > 0)
                    .filter((element) => Math.round(element.getBoundingClientRect().height) < 32)
                    .map((element) => element.outerHTML.slice(0, 120)),
            );
        expect(low).toEqual([]);
    }
});

test.each([768, 1024])("at a width of %i names of items have room beside the chosen one", async (width) => {
    const page = await browser.open(blob, {
        fragment: "view=items&item=6",
        options: { viewport: { width, height: 800 } },
    });
    const narrowest = await page
        .locator(".items-view tbody .name")
        .evaluateAll((names) => Math.min(...names.map((name) => name.getBoundingClientRect().width)));
    expect(narrowest).toBeGreaterThanOrEqual(120);
    const panel = (await page.locator(".partners").boundingBox())!;
    expect(panel.x + panel.width).toBeLessThanOrEqual(width);
});
