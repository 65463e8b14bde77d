import { mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import path from "node:path";
import { pathToFileURL } from "node:url";
import { chromium, type Browser, type BrowserContextOptions, type Page } from "playwright-core";
import { afterAll, afterEach, beforeAll, expect } from "vitest";
import { pageOf } from "./page_file.ts";

/** A page in a browser, with everything that it said on the console and asked of the network. */
export interface OpenPage {
    readonly page: Page;
    readonly messages: string[];
    readonly requests: string[];
}

/** How a page is opened. */
export interface Opening {
    /** What stands behind "#" in the address. */
    readonly fragment?: string;
    readonly options?: BrowserContextOptions;
    /** Runs in the page before its own program. */
    readonly before?: () => void;
    /** A message that is expected on the console; any other fails the test. */
    readonly allows?: RegExp;
    /** Whether to wait until rules are shown. */
    readonly waits?: boolean;
}

/** How long, in milliseconds, a page may take for what it does at once on a machine that has nothing else to do. */
const patience = 120_000;

/** How a browser is started: without anything that asks the network. */
export const launchOptions = {
    executablePath: "/usr/bin/chromium",
    args: [
        "--no-sandbox",
        "--disable-gpu",
        "--disable-quic",
        "--no-first-run",
        "--disable-background-networking",
        "--disable-component-update",
        "--disable-sync",
    ],
};

/** A browser for the tests of a file, and a folder for the pages that they open. */
export class TestBrowser {
    #browser: Browser | undefined;
    #folder = "";
    #pages = 0;
    #open: OpenPage[] = [];

    /** Starts it before the tests, and ends it behind them. A page that said anything fails its test. */
    constructor() {
        beforeAll(async () => {
            this.#folder = mkdtempSync(path.join(tmpdir(), "page-test-"));
            this.#browser = await chromium.launch(launchOptions);
        });
        afterEach(async () => {
            const opened = this.#open;
            this.#open = [];
            await Promise.all(opened.map(({ page }) => page.context().close()));
            expect(opened.flatMap(({ messages }) => messages)).toEqual([]);
            expect(opened.flatMap(({ requests }) => requests)).toEqual([]);
        });
        afterAll(async () => {
            await this.#browser?.close();
            rmSync(this.#folder, { recursive: true });
        });
    }

    /** Opens a page with these data from a file. */
    async open(blob: Uint8Array, opening: Opening = {}): Promise<Page> {
        return this.openText(pageOf(blob), opening);
    }

    /** Opens a page with this text from a file. */
    async openText(text: string, opening: Opening = {}): Promise<Page> {
        this.#pages += 1;
        const file = path.join(this.#folder, `page-${this.#pages}.html`);
        writeFileSync(file, text);
        const options = { viewport: { width: 1280, height: 800 }, ...opening.options };
        const context = await this.#browser!.newContext(options);
        if (opening.before !== undefined) {
            await context.addInitScript(opening.before);
        }
        const page = await context.newPage();
        page.setDefaultTimeout(patience);
        this.#watch(page, pathToFileURL(file).href, opening.allows);
        await page.goto(addressOf(file, opening.fragment));
        if (opening.waits !== false) {
            await page.waitForSelector(".toolbar", { state: "attached" });
        }
        return page;
    }

    #watch(page: Page, address: string, allows: RegExp | undefined): void {
        const messages: string[] = [];
        const requests: string[] = [];
        page.on("console", (message) => {
            if (allows?.test(message.text()) !== true) {
                messages.push(message.text());
            }
        });
        page.on("pageerror", (error) => messages.push(error.stack ?? error.message));
        page.on("request", (request) => {
            if (request.url().replace(/#.*$/su, "") !== address) {
                requests.push(request.url());
            }
        });
        this.#open.push({ page, messages, requests });
    }
}

function addressOf(file: string, fragment = ""): string {
    return `${pathToFileURL(file).href}${fragment === "" ? "" : `#${fragment}`}`;
}

/** The texts of the rows in sight: premise and conclusion of each. */
export async function shownRules(page: Page): Promise<string[]> {
    const rows = await page.locator(".row:visible").evaluateAll((elements) =>
        elements
            .map((row) => ({
                position: Number(row.getAttribute("aria-rowindex")),
                text: [...row.querySelectorAll(".side")].map((side) => side.textContent).join(" => "),
            }))
            .sort((one, other) => one.position - other.position),
    );
    return rows.map(({ text }) => text);
}

/** What the page says of how many rules are shown. */
export async function shownCount(page: Page): Promise<string> {
    return (await page.locator(".toolbar .count").textContent()) ?? "";
}
