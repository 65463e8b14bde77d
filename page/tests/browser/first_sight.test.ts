import type { Page } from "playwright-core";
import { expect, test } from "vitest";
import { TestBrowser } from "../support/browser.ts";
import { largeBlob } from "../support/large_book.ts";

const browser = new TestBrowser();

/** What the frame in which the rules are shown first has, taken behind it. */
interface FirstSight {
    readonly rows: number;
    readonly histograms: number;
    readonly emptyHistograms: number;
    readonly paintedPixels: number;
    readonly ticks: number;
}

declare global {
    var firstSight: Promise<FirstSight>;
}

/** Looks at the page as soon as it says that it is ready. */
function lookAtFirstFrame(): void {
    const look = (): FirstSight => {
        const all = (selector: string) => [...document.querySelectorAll(selector)];
        const canvas = document.querySelector("canvas")!;
        const { data } = canvas.getContext("2d")!.getImageData(0, 0, canvas.width, canvas.height);
        return {
            rows: all(".row:not([hidden])").length,
            histograms: all(".histogram").length,
            emptyHistograms: all(".histogram path").filter((path) => path.getAttribute("d") === "").length,
            paintedPixels: data.filter((value, i) => i % 4 === 3 && value > 0).length,
            ticks: all(".scatter .marks span").length,
        };
    };
    globalThis.firstSight = new Promise((resolve) => {
        new PerformanceObserver((list) => {
            if (list.getEntriesByName("shown").length > 0) {
                requestAnimationFrame(() => {
                    setTimeout(() => {
                        resolve(look());
                    });
                });
            }
        }).observe({ type: "mark", buffered: true });
    });
}

async function paintedPixels(page: Page): Promise<number> {
    return page.evaluate(() => {
        const canvas = document.querySelector("canvas")!;
        const { data } = canvas.getContext("2d")!.getImageData(0, 0, canvas.width, canvas.height);
        return data.filter((value, i) => i % 4 === 3 && value > 0).length;
    });
}

test.each([5_000, 50_000])("the first frame with %i rules lacks nothing", async (rules) => {
    const page = await browser.open(largeBlob(rules), {
        before: lookAtFirstFrame,
        allows: /willReadFrequently/u, // is about these tests, which read the canvas
    });
    const sight = await page.evaluate(() => globalThis.firstSight);
    expect(sight.rows).toBeGreaterThan(3);
    expect(sight.histograms).toBe(await page.locator(".histogram").count());
    expect([sight.histograms > 0, sight.emptyHistograms]).toEqual([true, 0]);
    expect(sight.ticks).toBeGreaterThan(4);
    expect(sight.paintedPixels).toBeGreaterThan(1_000);
    expect(sight.paintedPixels).toBe(await paintedPixels(page));
});
