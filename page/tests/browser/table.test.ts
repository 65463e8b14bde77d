import { expect, test } from "vitest";
import { shownRules, TestBrowser } from "../support/browser.ts";
import { largeBlob } from "../support/large_book.ts";
import { madeBlob } from "../support/made_book.ts";
import { confirmed, titanic } from "../support/titanic.ts";

const browser = new TestBrowser();
const blob = madeBlob(titanic);

test("numbers are sorted from the largest, and once more from the smallest", async () => {
    const page = await browser.open(blob);
    const column = page.getByRole("columnheader", { name: "lift" });
    await column.getByRole("button").click();
    expect((await shownRules(page)).slice(0, 2)).toEqual([
        "sex=female => survived=yes",
        "age=child => class=3rd",
    ]);
    expect(await column.getAttribute("aria-sort")).toBe("descending");
    await column.getByRole("button").click();
    expect((await shownRules(page))[0]).toBe("class=crew or survived=no => sex=male");
    expect(await column.getAttribute("aria-sort")).toBe("ascending");
});

test("no head of a number is cut off, sorted or not, and bars end below their numbers", async () => {
    const columns = "support,premise_count,confidence,relative_risk,leverage";
    const page = await browser.open(blob, { fragment: `columns=${columns}&sort=confidence` });
    const cut = await page
        .locator("[role=columnheader] button")
        .evaluateAll((heads) =>
            heads.filter((head) => head.scrollWidth > head.clientWidth).map((head) => head.textContent),
        );
    expect(cut).toEqual([]);
    const row = page.locator(".row:visible").first();
    const gaps = await row.locator(".number").evaluateAll((cells) =>
        cells.map((cell) => {
            const [text, bar] = [...cell.children].map((child) => child.getBoundingClientRect());
            return Math.round(bar!.right - text!.right);
        }),
    );
    expect(gaps).toEqual([0, 0, 0, 0, 0]);
    const edges = await row.evaluate((element) => [
        element.getBoundingClientRect().right,
        element.lastElementChild!.querySelector(".bar")!.getBoundingClientRect().right,
    ]);
    expect(edges[0]! - edges[1]!).toBeGreaterThanOrEqual(12);
});

test("sides are sorted by their names", async () => {
    const page = await browser.open(blob);
    await page.getByRole("columnheader", { name: "If", exact: true }).getByRole("button").click();
    await page.waitForFunction(() => document.querySelector("[aria-sort=ascending]")?.textContent === "If");
    await expect
        .poll(() => shownRules(page))
        .toEqual([
            "age=child => class=3rd",
            "age=child => class not crew",
            "class=crew or survived=no => sex=male",
            "sex=female => survived=yes",
            "sex=female => class=3rd or survived=yes",
            "sex=female or age=child => class=3rd or survived=yes",
        ]);
});

test("the order of the program comes back", async () => {
    const page = await browser.open(blob, { fragment: "sort=lift" });
    await page.getByRole("columnheader", { name: "#" }).getByRole("button").click();
    expect((await shownRules(page))[0]).toBe("class=crew or survived=no => sex=male");
});

test("what other transactions say of the rules is in the table, and can be searched for", async () => {
    const page = await browser.open(madeBlob(confirmed), { fragment: "q=holdout_p<1e-10" });
    expect(await page.locator(".what p").first().textContent()).toContain(
        "; 440 other transactions confirm it.",
    );
    const heads = await page.getByRole("columnheader").allInnerTexts();
    expect(heads.slice(-2)).toEqual(["holdout confidence", "holdout p"]);
    expect(await page.locator(".row:visible").count()).toBe(3);
    const first = page.locator(".row", { hasText: "class=crew or survived=no" });
    expect(await first.locator(".number").allInnerTexts()).toEqual([
        "1,556",
        "0.914",
        "1.16",
        "0.0988",
        "0.907",
        "5·10⁻¹³",
    ]);
});

test("columns can be chosen", async () => {
    const page = await browser.open(blob);
    await page.locator(".menu summary").click();
    await page.getByRole("checkbox", { name: "conviction" }).check();
    await page.getByRole("checkbox", { name: "leverage" }).uncheck();
    const heads = await page.getByRole("columnheader").allInnerTexts();
    expect(heads.map((head) => head.replace(/ .$/u, ""))).toEqual([
        "#",
        "If",
        "then",
        "support",
        "confidence",
        "lift",
        "conviction",
    ]);
    expect(
        await page.locator(".row", { hasText: "class not crew" }).locator(".number").last().innerText(),
    ).toBe("∞");
});

test("what is not known exactly is a range with a band", async () => {
    const rule = {
        premise: { items: [0], count: 8 },
        conclusion: { items: [1], count: 5, spread: 2 },
        exceptions: 4,
        slope: 1,
    };
    const page = await browser.open(madeBlob({ transactions: 10, names: ["a", "b"], rules: [rule] }));
    const cell = page.locator(".row .number").nth(1);
    expect(await cell.innerText()).toBe("0.500–\u200b0.750");
    const band = await cell
        .locator(".bar")
        .evaluate((bar) => ["--low", "--high"].map((name) => bar.style.getPropertyValue(name)));
    expect(band[0]).not.toBe(band[1]);
});

test("a million rules scroll to the last one and back", async () => {
    const page = await browser.open(largeBlob(1_000_000));
    const grid = page.getByRole("grid");
    expect(await grid.getAttribute("aria-rowcount")).toBe("1000001");
    expect(await page.locator(".row").count()).toBeLessThan(60);
    await grid.evaluate((element) => {
        element.scrollTop = element.scrollHeight;
    });
    await page.locator('.row[aria-rowindex="1000001"]:visible').waitFor();
    const box = (await grid.boundingBox())!;
    const last = (await page.locator('.row[aria-rowindex="1000001"]').boundingBox())!;
    expect(last.y + last.height).toBeLessThanOrEqual(box.y + box.height + 1);
    expect(await page.locator('.row[aria-rowindex="1000001"] .id').innerText()).toBe("1,000,000");
    await grid.evaluate((element) => {
        element.scrollTop = 0;
    });
    await page.locator('.row[aria-rowindex="2"]:visible').waitFor();
});

test("one can scroll over neighbouring rows of a million", async () => {
    const page = await browser.open(largeBlob(1_000_000));
    const grid = page.getByRole("grid");
    const first = () =>
        page
            .locator(".row:visible")
            .evaluateAll((rows) => Math.min(...rows.map((row) => Number(row.getAttribute("aria-rowindex")))));
    await grid.evaluate((element) => {
        element.scrollTop = 5_000_000;
    });
    await expect.poll(first).toBeGreaterThan(1_000);
    const before = await first();
    await grid.evaluate((element) => {
        element.scrollTop += 420; // ten rows
    });
    await expect.poll(first).toBe(before + 10);
});

test("p is shown as the probability it is, sorted from the smallest, and chosen in the same unit", async () => {
    const page = await browser.open(madeBlob(confirmed), { fragment: "columns=holdout_p&rule=1" });
    const column = page.getByRole("columnheader", { name: "holdout p" });
    await column.getByRole("button").click();
    expect(await column.getAttribute("aria-sort")).toBe("ascending");
    const shown = await page
        .locator(".row:visible")
        .evaluateAll((rows) =>
            rows
                .sort((one, other) => Number(one.ariaRowIndex) - Number(other.ariaRowIndex))
                .map((row) => row.querySelector(".number span")!.textContent),
        );
    expect(shown).toEqual(["5·10⁻¹³", "5·10⁻¹²", "5·10⁻¹¹", "5·10⁻¹⁰", "5·10⁻⁹", "5·10⁻⁸"]);
    await page.getByRole("textbox", { name: "holdout p to" }).fill("10⁻¹¹");
    await page.getByRole("textbox", { name: "holdout p to" }).press("Tab");
    expect(await page.locator(".chips .chip > span").innerText()).toBe("holdout p ≤ 10⁻¹¹");
    expect(await page.locator(".row:visible").count()).toBe(2);
    const measures = await page.locator(".measures > div").allInnerTexts();
    expect(measures.at(-1)).toMatch(/^p\s*Fisher's exact test, one-sided\s+\S*10⁻/u);
});

test("rows become cards as soon as the table is narrow, and rows again where it has room", async () => {
    const page = await browser.open(blob, { options: { viewport: { width: 860, height: 800 } } });
    const distance = async () => {
        const boxes = await Promise.all([0, 1].map((row) => page.locator(".row").nth(row).boundingBox()));
        return boxes[1]!.y - boxes[0]!.y;
    };
    // At these widths, the table is as high as before.
    expect(await distance()).toBe(42);
    await page.setViewportSize({ width: 850, height: 800 });
    await expect.poll(distance).toBe(92);
    await page.setViewportSize({ width: 860, height: 800 });
    await expect.poll(distance).toBe(42);
    await page.setViewportSize({ width: 1024, height: 800 });
    await page.locator(".row").first().click();
    await expect.poll(distance).toBe(92);
    await page.keyboard.press("Escape");
    await expect.poll(distance).toBe(42);
});

test("without columns of numbers, sides are beside each other", async () => {
    const page = await browser.open(blob, { fragment: "columns=" });
    const boxes = await page.locator(".row").first().locator("[role=gridcell]").all();
    const places = await Promise.all(boxes.map(async (cell) => (await cell.boundingBox())!));
    expect(places).toHaveLength(3);
    expect(places.map(({ x, width }) => Math.round(x + width)).slice(0, 2)).toEqual(
        places.map(({ x }) => Math.round(x)).slice(1),
    );
});

test("the number of a rule is not cut off, however many there are", async () => {
    const page = await browser.open(largeBlob(200_000), { fragment: "rule=199999" });
    const id = page.locator(".row[aria-selected=true] .id");
    expect(await id.innerText()).toBe("199,999");
    expect(await id.evaluate((cell) => cell.scrollWidth - cell.clientWidth)).toBeLessThanOrEqual(0);
});
