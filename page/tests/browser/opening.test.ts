import { expect, test } from "vitest";
import { packed } from "../support/blob_writer.ts";
import { shownCount, shownRules, TestBrowser } from "../support/browser.ts";
import { madeBlob } from "../support/made_book.ts";
import { pageOf } from "../support/page_file.ts";
import { titanic } from "../support/titanic.ts";

const browser = new TestBrowser();
const blob = madeBlob(titanic);

test("a page opens from a file, says what it is, and asks nothing of the network", async () => {
    const page = await browser.open(blob);
    expect(await page.title()).toBe("made.csv");
    expect(await page.locator("h1").textContent()).toBe("made.csv");
    expect(await page.locator(".what p").first().textContent()).toContain(
        "6 rules about what goes with what in 2,201",
    );
    expect(await page.locator(".what p").first().textContent()).toContain(
        "Each has a support of at least 23 and a confidence of at least 0.5.",
    );
    expect(await shownRules(page)).toEqual([
        "class=crew or survived=no => sex=male",
        "sex=female or age=child => class=3rd or survived=yes",
        "sex=female => survived=yes",
        "age=child => class=3rd",
        "age=child => class not crew",
        "sex=female => class=3rd or survived=yes",
    ]);
    // That there was no message and no request is checked behind each test.
});

test("no script that is not the page's own runs", async () => {
    const broken = pageOf(blob).replace("</body>", "<script>document.title='broken in'</script></body>");
    const page = await browser.openText(broken, {
        allows: /violates the following Content Security Policy/u,
    });
    expect(await page.title()).toBe("made.csv");
});

test("how the rules were chosen is told with the options that undo it", async () => {
    const leftOut = [
        { count: 226, what: "no more often together than by chance", options: "--min-lift 0 keeps them" },
    ];
    const summary = { derived: 232, origin: "78 classes", left_out: leftOut, note: "" };
    const page = await browser.open(madeBlob({ ...titanic, header: { summary } }));
    await page.getByText("How these were chosen").click();
    const text = await page.locator(".choice").innerText();
    expect(text).toContain("232\trules from 78 classes");
    expect(text).toContain("226\tno more often together than by chance\t--min-lift 0 keeps them");
});

test("rules that the page has no room for are told, with the option that brings them in", async () => {
    const rules = {
        count: 6,
        left: 340_000,
        limit: 6,
        min_support: 23,
        min_confidence: 0.8,
        sort: "leverage",
        ascending: false,
        left_out_by_limit: 339_994,
        limit_option: "--page-limit 340000",
    };
    const page = await browser.open(madeBlob({ ...titanic, header: { rules } }));
    expect(await page.locator(".what p").first().textContent()).toContain("6 rules of 340,000");
    await page.getByText("How these were chosen").click();
    expect(await page.locator(".choice").innerText()).toContain(
        "339,994\tbeyond what fits this page\t--page-limit 340000",
    );
});

test("one rule is a page, too", async () => {
    const page = await browser.open(madeBlob({ ...titanic, rules: titanic.rules.slice(0, 1) }));
    expect(await shownCount(page)).toBe("1 rule");
    await page.locator(".row").first().click();
    expect(await page.locator(".said").innerText()).toContain("class=crew or survived=no");
});

test("a page without rules says why", async () => {
    const summary = {
        derived: 3,
        origin: "2 classes",
        left_out: [],
        note: "No rule is left. --min-confidence 0.5 helps.",
    };
    const page = await browser.open(madeBlob({ ...titanic, rules: [], header: { summary } }));
    const text = await page.locator(".nothing").innerText();
    expect(text).toContain("This page has no rule");
    expect(text).toContain("--min-confidence 0.5 helps.");
});

test("a browser that cannot unpack the data says so", async () => {
    const page = await browser.open(blob, {
        waits: false,
        before: () => {
            Reflect.deleteProperty(globalThis, "DecompressionStream");
        },
    });
    await page.getByRole("heading", { name: "This browser is too old for this page." }).waitFor();
    expect(await page.locator("main").innerText()).toContain("current version of Firefox");
});

test("damaged data are told, not guessed", async () => {
    const page = await browser.openText(pageOf(blob).replace(packed(blob), packed(blob).slice(0, 400)), {
        waits: false,
    });
    await page.getByRole("heading", { name: "The rules in this file cannot be read." }).waitFor();
});

test("data of another format are refused", async () => {
    const page = await browser.open(madeBlob({ ...titanic, header: { format: 9 } }), { waits: false });
    await page.getByText("format 9 of the data is not known here").waitFor();
});
