import type { Page } from "playwright-core";
import { expect, test } from "vitest";
import { shownCount, TestBrowser } from "../support/browser.ts";
import { madeBlob } from "../support/made_book.ts";
import { titanic } from "../support/titanic.ts";

const browser = new TestBrowser();
const blob = madeBlob(titanic);

const focused = (page: Page) => page.evaluate(() => document.activeElement?.getAttribute("aria-label"));

async function press(page: Page, ...keys: readonly string[]): Promise<void> {
    for (const key of keys) {
        await page.keyboard.press(key);
    }
}

test("everything is found without a mouse: search, table, rule, lattice, and back", async () => {
    const classes = [
        { count: 470, ownItems: [5], lowers: [], essentials: [] },
        { count: 837, ownItems: [9], lowers: [0], essentials: [] },
    ];
    const page = await browser.open(madeBlob({ ...titanic, classes }));
    await press(page, "/");
    expect(await focused(page)).toBe("Search rules");
    await page.keyboard.type("female");
    await press(page, "Enter");
    expect(await shownCount(page)).toBe("3 of 6 rules");
    await page.getByRole("grid").focus();
    await press(page, "ArrowDown", "Enter");
    expect(await page.locator(".panel h2").innerText()).toBe("Rule 3");
    await press(page, "ArrowDown");
    expect(await page.locator(".panel h2").innerText()).toBe("Rule 6");
    await press(page, "Home", "ArrowDown");
    await page.getByRole("button", { name: "− survived=yes" }).focus();
    await press(page, "Enter");
    expect(await page.locator(".lattice .centre").innerText()).toContain("In 470 transactions".slice(3));
    await press(page, "Escape");
    expect(await page.locator(".panel").isVisible()).toBe(false);
    expect(await focused(page)).toBe("Rules");
    await press(page, "Escape");
    expect(await shownCount(page)).toBe("All 6 rules");
});

test("Tab reaches the search, the filters, the map's choices, the table and its heads", async () => {
    const page = await browser.open(blob);
    const reached = new Set<string>();
    for (let i = 0; i < 60; ++i) {
        await press(page, "Tab");
        reached.add(
            await page.evaluate(() => {
                const element = document.activeElement;
                return element?.getAttribute("aria-label") ?? element?.textContent ?? "";
            }),
        );
    }
    for (const name of [
        "Search rules",
        "support from",
        "lift to",
        "Quantity up",
        "Rules",
        "confidence",
        "Columns",
        "Help",
    ]) {
        expect([...reached], name).toContain(name);
    }
});

test("the active row is told to those who do not see it", async () => {
    const page = await browser.open(blob);
    await page.getByRole("grid").focus();
    await press(page, "End");
    const id = await page.getByRole("grid").getAttribute("aria-activedescendant");
    expect(await page.locator(`[id="${id!}"]`).getAttribute("aria-rowindex")).toBe("7");
    expect(await page.locator(".heard").textContent()).toBe(
        "If sex=female, then in 96 % of cases: class=3rd or survived=yes",
    );
});

test("numbers choose a view, and ? explains the keys", async () => {
    const page = await browser.open(blob);
    await press(page, "3");
    expect(await page.locator(".exclusions-view").isVisible()).toBe(true);
    await press(page, "1", "?");
    const help = page.getByRole("dialog", { name: "Help" });
    expect(await help.innerText()).toContain("search");
    await press(page, "Escape");
    expect(await help.isVisible()).toBe(false);
});

test("Esc closes the choice of columns, and nothing else", async () => {
    const page = await browser.open(blob, { fragment: "rule=2" });
    await page.locator(".menu summary").focus();
    await press(page, "Enter", "Tab", "Space", "Escape");
    expect(await page.locator(".menu fieldset").isVisible()).toBe(false);
    expect(await page.locator(".panel h2").innerText()).toBe("Rule 2");
    expect((await page.getByRole("columnheader").allInnerTexts()).join()).not.toContain("support");
});

test("letters are text where one types", async () => {
    const page = await browser.open(blob);
    await press(page, "/");
    await page.keyboard.type("j/?1");
    expect(await page.getByRole("combobox", { name: "Search rules" }).inputValue()).toBe("j/?1");
    await press(page, "Escape");
    expect(await page.getByRole("combobox", { name: "Search rules" }).inputValue()).toBe("");
});

test("the licences of libraries are in the help", async () => {
    const page = await browser.open(blob);
    await press(page, "?");
    await page.getByText(/^d3-array/u).click();
    expect(await page.locator("dialog pre").first().innerText()).toContain("Copyright");
});

test("the first j looks at the first rule, the next ones at those behind it, and k at those before", async () => {
    const page = await browser.open(blob, { fragment: "sort=lift" });
    const shown = () => page.locator(".panel h2").innerText();
    await press(page, "j");
    expect(await shown()).toBe("Rule 3");
    await press(page, "j");
    expect(await shown()).toBe("Rule 4");
    await press(page, "k");
    expect(await shown()).toBe("Rule 3");
});
