import { readFileSync, writeFileSync } from "node:fs";
import { fileURLToPath } from "node:url";
import { packed } from "./blob_writer.ts";

const template = fileURLToPath(new URL("../../dist/page.html", import.meta.url));

/** A page of these data, as the program would write it. */
export function pageOf(blob: Uint8Array, title = "made.csv"): string {
    const escaped = title.replace(/[&<>"']/gu, (sign) => `&#${sign.codePointAt(0)!};`);
    return readFileSync(template, "utf8")
        .replace("%KORV_TITLE%", () => escaped)
        .replace("%KORV_DATA%", () => packed(blob));
}

/** Writes such a page into a file. */
export function writePage(file: string, blob: Uint8Array): void {
    writeFileSync(file, pageOf(blob));
}
