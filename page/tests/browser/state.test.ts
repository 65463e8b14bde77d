import { readFileSync } from "node:fs";
import { expect, test } from "vitest";
import { shownCount, shownRules, TestBrowser } from "../support/browser.ts";
import { madeBlob } from "../support/made_book.ts";
import { titanic } from "../support/titanic.ts";

const browser = new TestBrowser();
const blob = madeBlob(titanic);

test("what one sees comes back from the address", async () => {
    const page = await browser.open(blob);
    await page.getByRole("combobox", { name: "Search rules" }).fill("female");
    await page.getByRole("combobox", { name: "Search rules" }).press("Enter");
    await page.getByRole("combobox", { name: "Search rules" }).fill("lift>1.5");
    await page.getByRole("columnheader", { name: "confidence" }).getByRole("button").click();
    await page.getByLabel("Quantity across").selectOption("lift");
    await page.locator(".row:visible").first().click();
    const rules = await shownRules(page);
    const said = await page.locator(".said").innerText();
    await expect.poll(() => page.url()).toContain("typed=lift");

    const again = await browser.open(blob, { fragment: new URL(page.url()).hash.slice(1) });
    expect(await shownRules(again)).toEqual(rules);
    expect(await again.locator(".said").innerText()).toBe(said);
    expect(await again.getByRole("combobox", { name: "Search rules" }).inputValue()).toBe("lift>1.5");
    expect(await again.getByLabel("Quantity across").inputValue()).toBe("lift");
    expect(await again.getByRole("columnheader", { name: "confidence" }).getAttribute("aria-sort")).toBe(
        "descending",
    );
});

test("the browser goes back from rule to rule", async () => {
    const page = await browser.open(blob);
    await page.locator(".row", { hasText: "class=crew" }).first().click();
    await page.locator(".row", { hasText: "class not crew" }).click();
    expect(await page.locator(".panel h2").innerText()).toBe("Rule 5");
    await page.goBack();
    await expect.poll(() => page.locator(".panel h2").innerText()).toBe("Rule 1");
    await page.goBack();
    await page.locator(".panel").waitFor({ state: "hidden" });
});

test("stepping through the table with arrows leaves one step to go back by", async () => {
    const page = await browser.open(blob);
    await page.locator(".row", { hasText: "class=crew" }).first().click();
    await page.getByRole("grid").focus();
    await page.keyboard.press("ArrowDown");
    await page.keyboard.press("ArrowDown");
    await expect.poll(() => page.url()).toContain("rule=3");
    await page.goBack();
    await page.locator(".panel").waitFor({ state: "hidden" });
});

test("a fragment that makes no sense shows everything", async () => {
    const page = await browser.open(blob, { fragment: "rule=99&sort=x&%%%" });
    expect(await shownCount(page)).toBe("All 6 rules");
});

test("what is shown is saved as CSV, in its order", async () => {
    const page = await browser.open(blob, { fragment: "q=child&sort=%2Bsupport" });
    const download = page.waitForEvent("download");
    await page.getByRole("button", { name: "Save as CSV" }).click();
    const saved = await download;
    expect(saved.suggestedFilename()).toBe("made-rules.csv");
    const lines = readFileSync(await saved.path(), "utf8").split("\n");
    expect(lines[0]).toMatch(/^id,form,kind,premise,conclusion,support,support_max,/u);
    expect(lines.slice(1).map((line) => line.split(",").slice(0, 5).join())).toEqual([
        "4,R112,approximative,age=child,class=3rd",
        "5,R311,exact,age=child,class not crew",
        "2,R122,approximative,sex=female or age=child,class=3rd or survived=yes",
        "",
    ]);
});

test("the link of what one sees is copied", async () => {
    const page = await browser.open(blob, {
        fragment: "q=child",
        options: { permissions: ["clipboard-read", "clipboard-write"] },
    });
    await page.getByRole("columnheader", { name: "lift" }).getByRole("button").click();
    await page.getByRole("button", { name: "Copy link" }).click();
    await page.getByRole("button", { name: "Copied" }).waitFor();
    const link = await page.evaluate(() => navigator.clipboard.readText());
    expect(link).toBe(`${page.url().replace(/#.*/u, "")}#q=child&sort=lift`);
    expect(await page.locator(".heard").textContent()).toBe("The link is copied");
});

test("where the browser does not let the page copy, the link is selected in a field until one goes on", async () => {
    const page = await browser.open(blob, {
        fragment: "q=child",
        before: () => {
            Object.defineProperty(navigator, "clipboard", { value: undefined });
        },
    });
    await page.getByRole("button", { name: "Copy link" }).click();
    const field = page.getByRole("textbox", { name: "Link" });
    expect(await field.inputValue()).toBe(page.url());
    expect(await page.evaluate(() => getSelection()?.toString())).toBe(page.url());
    await page.keyboard.press("Escape");
    expect(await field.isVisible()).toBe(false);
    expect(await shownCount(page)).toBe("3 of 6 rules");
});
