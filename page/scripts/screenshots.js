/**
 * Takes the pictures of the page that documents show.
 *
 * node scripts/screenshots.js PAGE FOLDER: PAGE is a page of the bundled sample, the pictures go to FOLDER.
 */
import { mkdir } from "node:fs/promises";
import path from "node:path";
import { pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

/**
 * @typedef {{ name: string, fragment: string, width: number, height: number, scheme: "light" | "dark" }} Picture
 */

/** @type {Picture[]} */
const pictures = [
    { name: "page", fragment: "rule=4", width: 1400, height: 860, scheme: "light" },
    { name: "page-dark", fragment: "q=survived%3D*&sort=lift", width: 1200, height: 760, scheme: "dark" },
    { name: "page-exclusions", fragment: "view=exclusions", width: 1100, height: 620, scheme: "light" },
    { name: "page-narrow", fragment: "q=child", width: 360, height: 760, scheme: "light" },
];

const [page, folder] = process.argv.slice(2);
if (page === undefined || folder === undefined) {
    throw new Error("node scripts/screenshots.js PAGE FOLDER");
}
await mkdir(folder, { recursive: true });
const browser = await chromium.launch({
    executablePath: "/usr/bin/chromium",
    args: ["--no-sandbox", "--disable-gpu", "--disable-background-networking"],
});
for (const { name, fragment, width, height, scheme } of pictures) {
    const shown = await browser.newPage({ viewport: { width, height }, colorScheme: scheme });
    await shown.goto(`${pathToFileURL(page).href}#${fragment}`);
    await shown.waitForSelector(".toolbar", { state: "attached" });
    // The map is drawn in the next frame.
    await shown.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => setTimeout(resolve))));
    await shown.screenshot({ path: path.join(folder, `${name}.png`) });
    await shown.close();
}
await browser.close();
