import { readFileSync } from "node:fs";
import { expect, test } from "vitest";
import { shownRules, TestBrowser } from "../support/browser.ts";
import { madeBlob, type MadeBook } from "../support/made_book.ts";
import { pageOf } from "../support/page_file.ts";

const browser = new TestBrowser();

const names = [
    "<script>document.title='broken'</script>",
    `"><img src=x onerror="document.title='broken'">`,
    "</script><!-- ]]> &amp; &#60;",
    "\u202egnp.evil\u202c right to left עברית",
    "👩‍👩‍👧‍👦 emoji \ud800 alone",
    '=HYPERLINK("http://example.org")',
    "x".repeat(10_000),
    "new\nline\ttab\u0000nul",
    "__proto__=constructor",
    "__proto__=toString",
];

const hostile: MadeBook = {
    transactions: 100,
    names,
    columns: [{ name: "__proto__", items: [8, 9], exclusive: true, exhaustive: true }],
    rules: names.slice(1).map((_, item) => ({
        premise: { items: [item], count: 40 },
        conclusion: { items: [item + 1], count: 50 },
        exceptions: 10,
    })),
    classes: [{ count: 60, ownItems: [0, 1], lowers: [], essentials: [] }],
    exclusions: [{ first: 0, second: 1, together: 1, p: 9 }],
    header: { title: names[0]!, run: { options: names[1]!, notes: [names[2]!], settings: [] } },
};

test("names are shown as they are, and nothing in them is interpreted", async () => {
    const page = await browser.openText(pageOf(madeBlob(hostile), names[0]));
    expect(await page.title()).toBe(names[0]);
    expect(await page.locator("h1").textContent()).toBe(names[0]);
    expect((await shownRules(page))[0]).toBe(`${names[0]!} => ${names[1]!}`);
    for (const fragment of [
        "rule=1",
        "rule=3",
        "rule=5",
        "rule=7",
        "view=items&item=1",
        "view=exclusions",
        "q=%3Cscript",
    ]) {
        await page.evaluate((hash) => (location.hash = hash), fragment);
        await page.waitForTimeout(50);
    }
    expect(await page.locator("img, body script:not([type=module])").count()).toBe(0);
    expect(await page.title()).toBe(names[0]);
});

test("a name of 10,000 letters does not widen the page", async () => {
    const page = await browser.open(madeBlob(hostile), { fragment: "rule=7" });
    const [width, height] = await page.evaluate(() => [
        document.documentElement.scrollWidth,
        document.querySelector(".sentence")!.getBoundingClientRect().height,
    ]);
    expect(width).toBeLessThanOrEqual(1280);
    expect(height).toBeLessThan(700);
});

test("names can be searched for whatever they hold", async () => {
    const page = await browser.open(madeBlob(hostile));
    await page.getByRole("combobox", { name: "Search rules" }).fill('"<img src"');
    expect(await shownRules(page)).toHaveLength(2);
    await page.getByRole("combobox", { name: "Search rules" }).fill("__proto__=*");
    expect(await shownRules(page)).toHaveLength(2);
    await page.getByRole("combobox", { name: "Search rules" }).fill('"((("');
    expect(await shownRules(page)).toHaveLength(0);
});

test("a formula is no formula in what is saved", async () => {
    const page = await browser.open(madeBlob(hostile), { fragment: "q=hyperlink" });
    const download = page.waitForEvent("download");
    await page.getByRole("button", { name: "Save as CSV" }).click();
    const text = readFileSync(await (await download).path(), "utf8");
    expect(text).toContain(`"'=HYPERLINK(""http://example.org"")"`);
});
