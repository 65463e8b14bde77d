import { mkdtempSync, readFileSync, rmSync, statSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import path from "node:path";
import { pathToFileURL } from "node:url";
import { chromium, type Browser, type Page } from "playwright-core";
import { afterAll, test } from "vitest";
import { launchOptions } from "../tests/support/browser.ts";
import { largeBlob } from "../tests/support/large_book.ts";
import { pageOf, writePage } from "../tests/support/page_file.ts";

/** What is measured of a page, in milliseconds; each is the middle one of some runs. */
interface Times {
    /** From the address to rules on the screen. */
    ready: number;
    /** From a letter in the search to the rules that fit. */
    filter: number;
    /** From a click on the head of a column, the first time and again, to the rules in order. */
    sort: number;
    again: number;
    /** The same for a side, which is ordered piece by piece, and the longest time without an answer meanwhile. */
    side: number;
    stuck: number;
    /** From a far jump of the scroller to rows in its place: the longest of many. */
    scroll: number;
    /** The most that the process of the page held in memory, in bytes. */
    memory: number;
}

/** A page that is measured. */
interface Measured {
    readonly name: string;
    readonly rules: number;
    readonly bytes: number;
    /** Without the program that all pages have. */
    readonly bytesOfARule: number;
    readonly times: Times;
}

const rounds = Number(process.env["BENCH_ROUNDS"] ?? "3");
/** Pages of the program, with blanks between them; without these, made pages of as many rules as are asked for. */
const files = (process.env["BENCH_PAGES"] ?? "").split(" ").filter((file) => file !== "");
const sizes =
    files.length > 0 ? [] : (process.env["BENCH_RULES"] ?? "10000,200000,1000000").split(",").map(Number);
const folder = mkdtempSync(path.join(tmpdir(), "page-bench-"));
const results: Measured[] = [];
let browser: Browser;

afterAll(() => {
    rmSync(folder, { recursive: true });
    console.log(tableOf());
    if (process.env["BENCH_RESULTS"] !== undefined) {
        writeFileSync(process.env["BENCH_RESULTS"], JSON.stringify(results));
    }
});

test.each(sizes)("a made page of %i rules", async (rules) => {
    const file = path.join(folder, `made-${rules}.html`);
    writePage(file, largeBlob(rules));
    await measure(file);
});

test.runIf(files.length > 0).each(files)("%s", measure);

/** Each round in a browser of its own, so that its memory is that of one page. */
async function measure(file: string): Promise<void> {
    const all: Times[] = [];
    let rules = 0;
    for (let round = 0; round < rounds; ++round) {
        browser = await chromium.launch(launchOptions);
        await restOfStart(browser);
        const page = await browser.newPage({ viewport: { width: 1280, height: 800 } });
        all.push(await timesOf(page, pathToFileURL(path.resolve(file)).href));
        rules = Number(await page.locator("[role=grid]").getAttribute("aria-rowcount")) - 1;
        await browser.close();
    }
    const middle = (name: keyof Times) =>
        all.map((times) => times[name]).sort((one, other) => one - other)[rounds >> 1]!;
    const names = Object.keys(all[0]!) as (keyof Times)[];
    const times = Object.fromEntries(names.map((name) => [name, middle(name)])) as unknown as Times;
    const bytes = statSync(file).size;
    const bytesOfARule = (bytes - Buffer.byteLength(pageOf(new Uint8Array(0)))) / rules;
    results.push({ name: path.basename(file, ".html"), rules, bytes, bytesOfARule, times });
}

/** Lets a browser come to rest that has just been started, which is no part of what a page takes. */
async function restOfStart(started: Browser): Promise<void> {
    const page = await started.newPage();
    await page.goto("data:text/html,<p>start");
    await page.waitForTimeout(1_000);
    await page.close();
}

async function timesOf(page: Page, address: string): Promise<Times> {
    await page.goto(address, { waitUntil: "commit" });
    const ready = await shownAt(page);
    await page.waitForTimeout(300);
    const filter = Math.max(...(await typed(page, ["1", "12", "-12", "12 7", ""])));
    const sort = await clicked(page, "lift");
    const again = await clicked(page, "lift");
    const { time: side, stuck } = await sortedBySide(page);
    const scroll = await scrolled(page);
    return { ready, filter, sort, again, side, stuck, scroll, memory: await peakMemory() };
}

/**
 * When rules were shown. Asks the browser itself: what playwright puts into a page to wait in it would take some of the
 * time that is measured.
 */
async function shownAt(page: Page): Promise<number> {
    const session = await page.context().newCDPSession(page);
    const expression = `new Promise((resolve) => {
        new PerformanceObserver((list) => {
            list.getEntriesByName("shown").forEach((mark) => resolve(mark.startTime));
        }).observe({ type: "mark", buffered: true });
    })`;
    const { result } = await session.send("Runtime.evaluate", { expression, awaitPromise: true });
    return Number(result.value);
}

/** The most memory that a process of a page held so far, in bytes, as Linux counts it. */
async function peakMemory(): Promise<number> {
    const session = await browser.newBrowserCDPSession();
    const { processInfo } = await session.send("SystemInfo.getProcessInfo");
    const peaks = processInfo
        .filter(({ type }) => type === "renderer")
        .map(({ id }) => /VmHWM:\s+(\d+)/u.exec(readFileSync(`/proc/${id}/status`, "utf8"))?.[1] ?? "0");
    return 1024 * Math.max(...peaks.map(Number));
}

/** For each text, how long it takes from typing it to the next frame that shows what fits. */
async function typed(page: Page, texts: readonly string[]): Promise<number[]> {
    return page.evaluate(async (all) => {
        const field = document.querySelector<HTMLInputElement>("input[type=search]")!;
        const times = [];
        for (const text of all) {
            const begin = performance.now();
            field.value = text;
            field.dispatchEvent(new Event("input", { bubbles: true }));
            await new Promise((resolve) => requestAnimationFrame(() => setTimeout(resolve)));
            times.push(performance.now() - begin);
        }
        return times;
    }, texts);
}

async function clicked(page: Page, column: string): Promise<number> {
    return page.evaluate(async (title) => {
        const heads = [...document.querySelectorAll<HTMLElement>("[role=columnheader] button")];
        const begin = performance.now();
        heads.find((head) => head.textContent === title)!.click();
        await new Promise((resolve) => requestAnimationFrame(() => setTimeout(resolve)));
        return performance.now() - begin;
    }, column);
}

async function sortedBySide(page: Page): Promise<{ time: number; stuck: number }> {
    return page.evaluate(async () => {
        const heads = [...document.querySelectorAll<HTMLElement>("[role=columnheader] button")];
        const begin = performance.now();
        heads.find((head) => head.textContent === "If")!.click();
        let stuck = 0;
        let last = performance.now();
        const count = document.querySelector(".toolbar .count")!;
        do {
            await new Promise((resolve) => setTimeout(resolve));
            stuck = Math.max(stuck, performance.now() - last);
            last = performance.now();
        } while (count.textContent.startsWith("Preparing"));
        return { time: performance.now() - begin, stuck };
    });
}

/** The longest time from a jump to a frame in which the rows of its place are there. */
async function scrolled(page: Page): Promise<number> {
    return page.evaluate(async () => {
        const grid = document.querySelector<HTMLElement>("[role=grid]")!;
        let longest = 0;
        for (let i = 0; i < 40; ++i) {
            const begin = performance.now();
            grid.scrollTop = (((i * 7) % 40) / 40) * grid.scrollHeight;
            await new Promise((resolve) => requestAnimationFrame(() => setTimeout(resolve)));
            const rows = document.querySelectorAll(".row:not([hidden])").length;
            longest = Math.max(longest, rows > 3 ? performance.now() - begin : Infinity);
        }
        return longest;
    });
}

function tableOf(): string {
    const heads = [
        "page",
        "rules",
        "MB",
        "bytes a rule",
        "ready",
        "filter",
        "sort",
        "again",
        "by side",
        "stuck",
        "scroll",
        "memory",
    ];
    const rows = results.map(({ name, rules, bytes, bytesOfARule, times }) => [
        name,
        rules.toLocaleString("en"),
        (bytes / 1e6).toFixed(2),
        bytesOfARule.toFixed(1),
        ...[times.ready, times.filter, times.sort, times.again, times.side, times.stuck, times.scroll].map(
            (time) => `${Math.round(time)} ms`,
        ),
        `${Math.round(times.memory / 1e6)} MB`,
    ]);
    return [heads, heads.map(() => "--:"), ...rows].map((row) => `| ${row.join(" | ")} |`).join("\n");
}
