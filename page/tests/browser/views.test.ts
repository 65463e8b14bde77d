import type { Page } from "playwright-core";
import { expect, test } from "vitest";
import { shownRules, TestBrowser } from "../support/browser.ts";
import { madeBlob } from "../support/made_book.ts";
import { titanic } from "../support/titanic.ts";

const browser = new TestBrowser();
const blob = madeBlob(titanic);

/** The texts of rows, a tab between two cells. */
async function rowTexts(page: Page, rows: string): Promise<string[]> {
    const texts = await page.locator(rows).allInnerTexts();
    return texts.map((text) => text.replace(/\s*\t/gu, "\t"));
}

test("items are told with how often they stand on either side", async () => {
    const page = await browser.open(blob);
    await page.getByRole("button", { name: "Items" }).click();
    const rows = await rowTexts(page, ".items-view tbody tr");
    expect(rows.slice(0, 2)).toEqual(["sex=female\t470\t3\t–", "age=child\t109\t3\t–"]);
    expect(rows).toHaveLength(7);
});

test("a number of the items view leads to its rules", async () => {
    const page = await browser.open(blob, { fragment: "view=items" });
    const row = page.locator(".items-view tbody tr", { hasText: "class=3rd" });
    await row.getByRole("button", { name: "3", exact: true }).click();
    expect(await page.locator(".chips .chip > span").innerText()).toBe("then: class=3rd");
    expect(await shownRules(page)).toHaveLength(3);
});

test("an item is told with its partners", async () => {
    const page = await browser.open(blob, { fragment: "view=items" });
    await page.locator(".items-view").getByRole("button", { name: "sex=female" }).click();
    const partners = page.getByRole("complementary", { name: "The chosen item" });
    expect(await partners.innerText()).toContain("In 470 of 2,201 transactions (21\u00a0%).");
    expect(await partners.locator("h3, li").allInnerTexts()).toEqual([
        "Goes with",
        "survived=yes\nlift 2.27",
        "age=child\nlift 1.93",
        "Less often with",
        "class=crew\nlift 0.122",
        "survived=no\nlift 0.396",
        "age=adult\nlift 0.951",
        "Also in rules with",
        "class=3rd\nin 2 rules",
    ]);
    expect(await partners.getByText("lift 2.27").getAttribute("title")).toBe("344 transactions have both");
    await partners.getByRole("button", { name: "class=3rd" }).click();
    expect(await shownRules(page)).toHaveLength(2);
});

test("what an item goes with, and what it is less often with, are told apart", async () => {
    const page = await browser.open(blob, { fragment: "view=items&item=4" });
    const partners = page.getByRole("complementary", { name: "The chosen item" });
    expect(await partners.locator("h3, li").allInnerTexts()).toEqual([
        "Goes with",
        "sex=male\nlift 1.24",
        "survived=no\nlift 1.12",
        "age=adult\nlift 1.05",
        "Less often with",
        "age=child\nlift 0.000",
        "sex=female\nlift 0.122",
        "survived=yes\nlift 0.742",
    ]);
});

test("a column leads to all rules with one of its values", async () => {
    const page = await browser.open(blob, { fragment: "view=items" });
    await page.getByRole("button", { name: "survived", exact: true }).click();
    expect(await page.locator(".chips .chip > span").innerText()).toBe("survived=*");
    expect(await shownRules(page)).toHaveLength(4);
});

test("items follow the filters", async () => {
    const page = await browser.open(blob, { fragment: "view=items&q=crew" });
    const names = await page.locator(".items-view .name").allInnerTexts();
    expect(names.toSorted()).toEqual(["age=child", "class=crew", "sex=male", "survived=no"]);
});

test("exclusions are told with what is seen and what is expected", async () => {
    const page = await browser.open(blob);
    await page.getByRole("button", { name: "Exclusions" }).click();
    expect(await rowTexts(page, ".exclusions-view tbody tr")).toEqual([
        "sex=male less often than expected with survived=yes\t367 of 559\t0.656\t559\t94 %\t3.2·10⁻⁹⁶",
        "class=crew less often than expected with sex=female\t23 of 189\t0.122\t189\t61 %\t6.3·10⁻⁸⁵",
    ]);
    await page.getByRole("columnheader", { name: "Seen / expected" }).getByRole("button").click();
    expect(await page.locator(".exclusions-view tbody tr").first().innerText()).toContain(
        "class=crew less often than expected with",
    );
});

test("one item excludes another only where they are never together", async () => {
    const exclusions = [{ first: 3, second: 7, together: 0, p: 20.6 }];
    const page = await browser.open(madeBlob({ ...titanic, exclusions }), { fragment: "view=exclusions" });
    expect(await page.locator(".exclusions-view tbody .name").innerText()).toBe(
        "class=crew excludes age=child",
    );
});

test("exclusions follow the search, and lead to rules", async () => {
    const page = await browser.open(blob, { fragment: "view=exclusions" });
    await page.getByRole("combobox", { name: "Search rules" }).fill("crew");
    expect(await page.locator(".exclusions-view tbody tr").count()).toBe(1);
    await page.locator(".exclusions-view").getByRole("button", { name: "class=crew" }).click();
    expect(await shownRules(page)).toHaveLength(2);
});

test("where the search leaves no exclusions, the page says how many there are", async () => {
    const page = await browser.open(blob, { fragment: "view=exclusions&q=child" });
    expect(await page.locator(".exclusions-view tbody tr").count()).toBe(0);
    expect(await page.locator(".exclusions-view").innerText()).toContain(
        "None of the 2 pairs that meet less often than by chance has the items that are searched for.",
    );
});

test("without transactions the page says what brings exclusions", async () => {
    const exclusions = {
        known: false,
        shown: 0,
        left_out: 0,
        why: "--database FILE counts them.",
        alpha: 0.05,
    };
    const page = await browser.open(madeBlob({ ...titanic, exclusions: [], header: { exclusions } }), {
        fragment: "view=exclusions",
    });
    expect(await page.locator(".exclusions-view").innerText()).toContain("--database FILE counts them.");
});

test("the key of the map has the colours that occur, and no others", async () => {
    const key = async (page: Page) =>
        (await page.locator(".legend").innerText()).replace(/\s+/gu, " ").trim();
    expect(await key(await browser.open(blob))).toBe("lift chance more");
    // 1 of 4 with the premise has the conclusion, against 5 of 10 in general: a lift of 0.5.
    const rule = { premise: { items: [0], count: 4 }, conclusion: { items: [1], count: 5 }, exceptions: 3 };
    const rare = { transactions: 10, names: ["a", "b"], rules: [rule] };
    expect(await key(await browser.open(madeBlob(rare)))).toBe("lift less chance");
    const common = { ...rule, conclusion: { items: [0, 1], count: 2 }, exceptions: 2 };
    const both = madeBlob({ ...rare, rules: [rule, common] });
    expect(await key(await browser.open(both))).toBe("lift less more than chance");
});
