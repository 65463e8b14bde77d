import { expect, test } from "vitest";
import { shownRules, TestBrowser } from "../support/browser.ts";
import { madeBlob, type MadeClass } from "../support/made_book.ts";
import { confirmed, titanic } from "../support/titanic.ts";

const browser = new TestBrowser();

// {female}, {survived}, and {female, survived}, which is the class of rule 3.
const classes: readonly MadeClass[] = [
    { count: 470, ownItems: [5], lowers: [], essentials: [] },
    { count: 711, ownItems: [9], lowers: [], essentials: [] },
    { count: 837, ownItems: [], lowers: [0, 1], essentials: [], moreUppers: 2 },
    { count: 1200, ownItems: [2], lowers: [2], essentials: [[2, 9]] },
];
const blob = madeBlob({ ...titanic, classes });

test("a click on a row says its rule with everything behind it", async () => {
    const page = await browser.open(blob);
    await page.locator(".row", { hasText: "class=crew" }).first().click();
    const panel = page.getByRole("complementary", { name: "The chosen rule" });
    const text = (await panel.innerText()).replace(/\u00a0/gu, " ");
    expect(text).toContain("If class=crew or survived=no, then in 91 % of cases: sex=male");
    expect(text).toContain(
        "1,556 of 1,702, against 1,731 of all 2,201 (79 %): 1.16 times as often as in general",
    );
    expect(await panel.locator(".counts td.number, .counts tbody td").allInnerTexts()).toEqual([
        "146",
        "324",
        "1,556",
        "175",
    ]);
    const measures = await panel.locator(".measures dt").allInnerTexts();
    expect(measures).toHaveLength(23);
    expect(text).toContain("what zhang says");
    expect(await page.locator(".row[aria-selected=true]").count()).toBe(1);
});

test("whether a rule held in other transactions is told", async () => {
    const page = await browser.open(madeBlob(confirmed), { fragment: "rule=1" });
    const text = await page.getByRole("region", { name: "In other transactions" }).innerText();
    expect(text.replace(/\u00a0/gu, " ").replace(/\n+/gu, "\n")).toBe(
        "In other transactions\n" +
            "Of 440 other transactions, 97 meet the premise, and 88 of these the conclusion: " +
            "91 %, against 91 % here.\n" +
            "So it is confirmed, with a holdout p of 5·10⁻¹³. " +
            "Chance alone would confirm any rule of this page in at most 5.0 % of cases.",
    );
});

test("the mosaic shows the premise as wide as it is frequent, and chance as a dashed line", async () => {
    const page = await browser.open(blob, { fragment: "rule=1" });
    const part = async (selector: string, name: string) =>
        Number(await page.locator(selector).getAttribute(name));
    // 1,702 of 2,201 meet the premise; of 2,201 1,731 the conclusion, of those 1,702 1,556.
    expect(await part(".mosaic .met.with", "width")).toBeCloseTo((100 * 1702) / 2201 - 0.4, 6);
    expect(await part(".mosaic .met.with", "height")).toBeCloseTo((56 * 1556) / 1702, 6);
    expect(Number(await page.locator(".mosaic .chance").first().getAttribute("y1"))).toBeCloseTo(
        56 * (1 - 1731 / 2201),
        6,
    );
});

test("what is only known within bounds is a hatched band", async () => {
    const rule = {
        premise: { items: [0], count: 8 },
        conclusion: { items: [1], count: 5, spread: 2 },
        exceptions: 4,
        slope: 1,
    };
    const page = await browser.open(madeBlob({ transactions: 10, names: ["a", "b"], rules: [rule] }), {
        fragment: "rule=1",
    });
    // Between 4 and 6 of 8 in the first column.
    expect(Number(await page.locator(".mosaic .open").first().getAttribute("height"))).toBeCloseTo(56 / 4, 6);
    expect(await page.locator(".counts .met.with").innerText()).toBe("4 to 6");
    expect((await page.locator(".said").innerText()).replace(/\u00a0/gu, " ")).toContain(
        "then in 50 % to 75 % of cases",
    );
});

test("stronger and weaker rules are told, and a click leads to them", async () => {
    const page = await browser.open(blob, { fragment: "rule=6" });
    const panel = page.locator(".panel");
    // "women => third class or survived" says less than "women or children => ...", which holds more often.
    expect(await panel.innerText()).toContain("These say more, and hold at least as often:");
    await panel.getByRole("button", { name: "sex=female or age=child → class=3rd or survived=yes" }).click();
    expect(await page.locator(".panel h2").innerText()).toBe("Rule 2");
});

test("the other readings are told with how often they hold", async () => {
    const page = await browser.open(blob, { fragment: "rule=3" });
    const section = page.getByRole("region", { name: "Four ways to read it" });
    expect(await section.locator("li").allInnerTexts()).toEqual([
        "sex=female → survived=yes\n73\u00a0%, lift 2.27",
        "survived=yes → sex=female\n48\u00a0%, lift 2.27",
        "survived=no → sex=male\n92\u00a0%, lift 1.16",
        "sex=male → survived=no\n79\u00a0%, lift 1.16",
    ]);
});

test("one walks the lattice from class to class, and back to that of the rule", async () => {
    const page = await browser.open(blob, { fragment: "rule=3" });
    const centre = page.locator(".lattice .centre");
    expect(await centre.innerText()).toContain("sex=female or survived=yes");
    expect(await page.locator(".lattice ul").last().innerText()).toContain("− sex=female\n711");
    expect(await page.locator(".lattice ul").first().innerText()).toContain("2 not on this page");
    await page.getByRole("button", { name: "+ class=3rd" }).click();
    expect(await centre.innerText()).toContain("class=3rd or sex=female or survived=yes");
    expect(await centre.innerText()).toContain("The same transactions hold: class=3rd or survived=yes");
    expect(page.url()).toContain("class=4");
    await page.getByRole("button", { name: "Back to the class of the rule" }).click();
    expect(await centre.innerText()).toContain("One of these 2 items is in 837 transactions");
});

test("a rule whose class is not on the page says so", async () => {
    const header = { lattice: { classes: 900, shown: 4, why: "The page has room for 4 of 900 classes." } };
    const page = await browser.open(madeBlob({ ...titanic, classes, header }), { fragment: "rule=1" });
    expect(await page.locator(".panel").innerText()).toContain(
        "is not on the page. The page has room for 4 of 900 classes.",
    );
});

test("an item of a rule leads to all rules with it on the same side, and back", async () => {
    const page = await browser.open(blob, { fragment: "rule=4" });
    const item = page.locator(".items-of-rule").getByRole("button", { name: "age=child" });
    await item.click();
    expect(await page.locator(".chips .chip > span").innerText()).toBe("if: age=child");
    expect(await item.getAttribute("aria-pressed")).toBe("true");
    expect(await shownRules(page)).toEqual([
        "sex=female or age=child => class=3rd or survived=yes",
        "age=child => class=3rd",
        "age=child => class not crew",
    ]);
    await item.click();
    expect(await shownRules(page)).toHaveLength(6);
});

test("arrows of the panel step through the table", async () => {
    const page = await browser.open(blob, { fragment: "rule=3&sort=lift" });
    await page.getByRole("button", { name: "Next rule in the table" }).click();
    expect(await page.locator(".panel h2").innerText()).toBe("Rule 4");
    await page.getByRole("button", { name: "Previous rule in the table" }).click();
    expect(await page.locator(".panel h2").innerText()).toBe("Rule 3");
    await page.getByRole("button", { name: "Close this rule" }).click();
    expect(await page.locator(".panel").isVisible()).toBe(false);
});

test("a rule that the filters leave out says so, and what to give up for it", async () => {
    const page = await browser.open(blob, {
        fragment: "rule=3&q=female&q=lift<2&without=approximative&typed=p<1",
    });
    const note = page.locator(".hidden-note");
    expect(await note.innerText()).toContain("The filters leave this rule out of the table.");
    await note
        .getByRole("button", { name: "Show it there, without “lift < 2” and a choice of certainty" })
        .click();
    expect(await note.isVisible()).toBe(false);
    expect(await page.locator(".chips .chip > span").allInnerTexts()).toEqual(["female", "p < 1"]);
    expect(await page.locator(".row[aria-selected=true]").count()).toBe(1);
});

test("from a rule that the filters leave out, the next one is the first of the table", async () => {
    const page = await browser.open(blob, { fragment: "rule=3&q=child" });
    await page.getByRole("button", { name: "Next rule in the table" }).click();
    expect(await page.locator(".panel h2").innerText()).toBe("Rule 2");
});

test("forms are said in words, with the program's names as a detail, and the lattice in a sentence", async () => {
    const form = { label: "R111", text: "e1-->(f1-e1)", group: 1 };
    const rules = titanic.rules.filter(({ form: label }) => label === "R111");
    const page = await browser.open(madeBlob({ ...titanic, rules, classes, header: { forms: [form] } }), {
        fragment: "rule=1",
    });
    const section = page.getByRole("region", { name: "In the lattice" });
    expect(await section.locator(".form").innerText()).toBe(
        "This rule: the fewest items of a class → its other items (form R111)",
    );
    expect(await section.innerText()).toContain("Above stand the next larger classes");
    await page.getByText("Forms of rules").click();
    const box = page.getByRole("checkbox", { name: "the fewest items of a class → its other items R111" });
    expect(await box.isVisible()).toBe(true);
    await page.getByText("How these were chosen").click();
    expect(await page.locator(".in-words").innerText()).toBe(
        "2 rules can be derived from the data. What is in the last columns is for whoever runs korv-rules again: " +
            "the options that choose otherwise.",
    );
});
