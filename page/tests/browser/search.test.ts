import type { Page } from "playwright-core";
import { expect, test } from "vitest";
import { shownCount, shownRules, TestBrowser } from "../support/browser.ts";
import { madeBlob, madeHeader } from "../support/made_book.ts";
import { titanic } from "../support/titanic.ts";

const browser = new TestBrowser();
const blob = madeBlob(titanic);

const field = (page: Page) => page.getByRole("combobox", { name: "Search rules" });

test("rules are filtered while one types", async () => {
    const page = await browser.open(blob);
    await field(page).pressSequentially("crew");
    expect(await shownRules(page)).toEqual([
        "class=crew or survived=no => sex=male",
        "age=child => class not crew",
    ]);
    expect(await shownCount(page)).toBe("2 of 6 rules");
});

test("names that fit what is typed last are offered, in quotes where they have blanks", async () => {
    const names = ["whole milk", "butter milk", "bread"];
    const rule = { premise: { items: [0], count: 4 }, conclusion: { items: [1], count: 5 }, exceptions: 1 };
    const page = await browser.open(madeBlob({ transactions: 9, names, rules: [rule] }));
    await field(page).fill("-bread then:mil");
    const offered = await page
        .locator("datalist option")
        .evaluateAll((options) => options.map((option) => option.getAttribute("value")));
    expect(offered).toEqual(['-bread then:"whole milk"', '-bread then:"butter milk"']);
    await field(page).fill(offered[0]!);
    expect(await shownCount(page)).toBe("0 of 1 rule");
});

test("words that are the name of an item together become one filter", async () => {
    const names = ["butter", "milk", "butter milk"];
    const side = (item: number, count: number) => ({ items: [item], count });
    const rules = [
        { premise: side(0, 4), conclusion: side(1, 5), exceptions: 1 },
        { premise: side(2, 4), conclusion: side(1, 5), exceptions: 1 },
    ];
    const page = await browser.open(madeBlob({ transactions: 9, names, rules }));
    await field(page).pressSequentially("butter m");
    const offered = page.locator("datalist option");
    expect(await offered.evaluateAll((all) => all.map((option) => option.getAttribute("value")))).toEqual([
        '"butter milk"',
    ]);
    await field(page).pressSequentially("ilk");
    await field(page).press("Enter");
    expect(await page.locator(".chips .chip > span").allInnerTexts()).toEqual(["butter milk"]);
    expect(await shownRules(page)).toEqual(["butter milk => milk"]);
});

test("Enter makes chips of what is typed, and all of them must hold", async () => {
    const page = await browser.open(blob);
    await field(page).fill("then:survived=yes -child lift>1.2");
    await field(page).press("Enter");
    expect(await page.locator(".chips .chip > span").allInnerTexts()).toEqual([
        "then: survived=yes",
        "not child",
        "lift > 1.20",
    ]);
    expect(await field(page).inputValue()).toBe("");
    expect(await shownRules(page)).toEqual([
        "sex=female => survived=yes",
        "sex=female => class=3rd or survived=yes",
    ]);
});

test("rules that another reading lets fit are counted, shown on a click, and say by which reading", async () => {
    const only = madeBlob({ ...titanic, rules: titanic.rules.slice(2, 3) });
    const page = await browser.open(only, { fragment: "q=if:survived%3Dno" });
    await page.locator(".no-rules").getByText("1 rule fits").waitFor();
    await page.getByRole("button", { name: "Show", exact: true }).click();
    expect(await shownRules(page)).toEqual(["⇄sex=female => survived=yes"]);
    await page.waitForURL(/readings=all/u);
    const mark = page.locator(".row").first().getByRole("img");
    expect(await mark.getAttribute("aria-label")).toContain("Found by another reading");
    await page.locator(".row").first().click();
    expect(await page.locator(".found-as").innerText()).toBe(
        "⇄ The search found another reading of it: survived=no → sex=male, 92\u00a0%, lift 1.16",
    );
    expect(await page.locator(".panel li:has(.fits:visible)").allInnerTexts()).toEqual([
        "survived=no → sex=male (fits the search)\n92\u00a0%, lift 1.16",
    ]);
    await page.getByRole("button", { name: "Leave out 1 in another reading" }).click();
    expect(await shownCount(page)).toBe("0 of 1 rule");
});

test("a chip is taken away by its button, and the last one by Backspace", async () => {
    const page = await browser.open(blob, { fragment: "q=child&q=crew" });
    expect(await shownCount(page)).toBe("1 of 6 rules");
    await page.getByRole("button", { name: "Remove the filter crew" }).click();
    expect(await shownCount(page)).toBe("3 of 6 rules");
    await field(page).press("Backspace");
    expect(await shownCount(page)).toBe("All 6 rules");
});

test("where no rule fits, the filters are offered for loosening, the most helpful first", async () => {
    const page = await browser.open(blob, { fragment: "q=child&q=lift>2.2&q=crew" });
    await page.getByRole("heading", { name: "No rule fits all filters" }).waitFor();
    expect(await page.locator(".no-rules li").allInnerTexts()).toEqual(
        ["Without “child”\n0 rules", "Without “lift > 2.20”\n1 rule", "Without “crew”\n1 rule"].sort(
            (one, other) => Number(one.includes("0 rules")) - Number(other.includes("0 rules")),
        ),
    );
    await page.getByRole("button", { name: "Without “lift > 2.20”" }).click();
    expect(await shownRules(page)).toEqual(["age=child => class not crew"]);
});

test("a range is chosen by dragging over a histogram, shown as a chip, and given up by a click", async () => {
    const page = await browser.open(blob);
    const plot = page.locator(".histogram", { hasText: "confidence" }).locator("svg");
    const box = (await plot.boundingBox())!;
    const y = box.y + box.height / 2;
    await page.mouse.move(box.x + box.width * 0.51, y);
    await page.mouse.down();
    await page.mouse.move(box.x + box.width * 0.8, y, { steps: 4 });
    await page.mouse.move(box.x + box.width * 0.985, y);
    await page.mouse.up();
    // The axis of confidence is from 0.72 to 1, its middle at 0.86; whole bars are chosen, of 48, also the last one.
    expect(await page.locator(".chips .chip > span").innerText()).toBe("confidence ≥ 0.860");
    expect(await shownCount(page)).toBe("4 of 6 rules");
    await plot.click({ position: { x: 10, y: 10 } });
    expect(await shownCount(page)).toBe("All 6 rules");
});

test("a range can be typed beside its histogram", async () => {
    const page = await browser.open(blob);
    await page.getByRole("textbox", { name: "support to" }).fill("350");
    await page.getByRole("textbox", { name: "support to" }).press("Tab");
    expect(await shownCount(page)).toBe("3 of 6 rules");
    expect(await page.locator(".chips .chip > span").innerText()).toBe("support ≤ 350");
});

test("what is no number is told beside the field, and in the search", async () => {
    const page = await browser.open(blob);
    const from = page.getByRole("textbox", { name: "confidence from" });
    await from.fill("90");
    await from.press("Tab");
    const histogram = page.locator(".histogram", { hasText: "confidence" });
    expect(await histogram.getByRole("alert").innerText()).toContain(
        "expected at most 1, such as 0.5 or 50%",
    );
    expect(await shownCount(page)).toBe("All 6 rules");
    await from.fill("90 %");
    await from.press("Tab");
    expect(await histogram.locator(".problem-of-field").textContent()).toBe("");
    expect(await page.locator(".chips .chip > span").innerText()).toBe("confidence ≥ 0.900");
    await page.getByText("Clear filters").click();
    await field(page).fill("support>=abc");
    await field(page).press("Enter");
    expect(await page.locator(".search [role=status]").innerText()).toContain(
        "found “abc”; expected a number",
    );
    expect(await field(page).inputValue()).toBe("support>=abc");
});

test("kinds and forms can be switched off", async () => {
    const page = await browser.open(blob);
    const counts = () => page.locator(".switches fieldset").first().locator(".count").allInnerTexts();
    expect(await counts()).toEqual(["1", "5"]);
    await page.getByRole("checkbox", { name: "with exceptions" }).uncheck();
    expect(await shownRules(page)).toEqual(["age=child => class not crew"]);
    await field(page).fill("child");
    expect(await counts()).toEqual(["1", "2"]);
    await page.getByText("Clear filters").click();
    await page.getByText("Forms of rules").click();
    await page.getByRole("checkbox", { name: /R111/u }).uncheck();
    expect(await shownCount(page)).toBe("4 of 6 rules");
});

test("dragging over the map chooses rules by both of its quantities", async () => {
    const page = await browser.open(blob, { fragment: "x=lift&y=confidence" });
    const box = (await page.locator(".plot").boundingBox())!;
    // The upper right of the map: a lift above some 1.6, a confidence above some 0.8.
    await page.mouse.move(box.x + 52 + (box.width - 66) * 0.45, box.y + 10 + (box.height - 34) * 0.6);
    await page.mouse.down();
    await page.mouse.move(box.x + box.width - 2, box.y + 2, { steps: 5 });
    await page.mouse.up();
    const chips = await page.locator(".chips .chip > span").allInnerTexts();
    expect(chips.map((chip) => chip.replace(/[\d.]+$/u, "…"))).toEqual(["lift ≥ …", "confidence ≥ …"]);
    expect(await shownRules(page)).toEqual([
        "sex=female or age=child => class=3rd or survived=yes",
        "age=child => class not crew",
        "sex=female => class=3rd or survived=yes",
    ]);
});

test("a click on a point of the map looks at its rule", async () => {
    const page = await browser.open(madeBlob({ ...titanic, rules: titanic.rules.slice(4, 5) }));
    const box = (await page.locator(".plot").boundingBox())!;
    // The only point is in the middle of both axes.
    await page.mouse.click(box.x + 52 + (box.width - 66) / 2, box.y + 10 + (box.height - 34) / 2);
    expect(await page.locator(".said").innerText()).toContain("class not crew");
});

test("a rule that fits the search as it stands has no mark of another reading", async () => {
    const page = await browser.open(blob, { fragment: "q=if:female&readings=all&rule=3" });
    // Rule 1 is read as "sex=female => class not crew and survived=yes", too.
    expect(await page.locator(".row:visible:has(.by-reading) .id").allInnerTexts()).toEqual(["1"]);
    expect(await page.locator(".row:visible").count()).toBe(4);
    expect(await page.locator(".found-as").isVisible()).toBe(false);
    expect(await page.locator(".panel .fits:visible").count()).toBe(0);
});

test("where many rules rest on few cases, these can be left out", async () => {
    const rule = (premise: number) => ({
        premise: { items: [0, premise], count: premise },
        conclusion: { items: [1], count: 20 },
        exceptions: 0,
    });
    const names = Array.from({ length: 10 }, (_, item) => `item ${item}`);
    const rules = [rule(3), rule(4), rule(5)];
    const header = madeHeader({ transactions: 40, names, rules }, { all: [], plain: 0 });
    const least = { rules: { ...header.rules, min_support: 3 } };
    const page = await browser.open(madeBlob({ transactions: 40, names, rules, header: least }));
    await page.getByRole("button", { name: "Leave out 2 of fewer than 5 cases" }).click();
    expect(await shownCount(page)).toBe("1 of 3 rules");
    expect(await page.locator(".chips .chip > span").innerText()).toBe("support ≥ 5");
    expect(await page.getByRole("button", { name: /fewer than 5/u }).isVisible()).toBe(false);
});
