import { CsvWriter } from "../model/csv.ts";
import { csvName } from "../model/file_name.ts";
import { countText } from "../model/number_words.ts";
import type { Context, Sight } from "./component.ts";
import { h } from "./dom.ts";

const piece = 20_000;

/** Offers the shown rules as a file. Written piece by piece, so that the page goes on answering. */
export async function downloadCsv(context: Context, { rules, state }: Sight): Promise<void> {
    const { book, words, quantities, say } = context;
    const writer = new CsvWriter(book, words, quantities, state.columns);
    const parts = [writer.header()];
    for (let begin = 0; begin < rules.length; begin += piece) {
        parts.push(Array.from(rules.subarray(begin, begin + piece), (rule) => writer.row(rule)).join(""));
        await nextTask();
    }
    const address = URL.createObjectURL(new Blob(parts, { type: "text/csv" }));
    const name = csvName(book.header.title);
    const link = h("a", { href: address, download: name });
    link.click();
    URL.revokeObjectURL(address);
    say(`${countText(rules.length)} ${rules.length === 1 ? "rule is" : "rules are"} saved as ${name}`);
}

/** Lets the page answer what came in meanwhile. */
export function nextTask(): Promise<void> {
    return new Promise((resolve) => {
        setTimeout(resolve);
    });
}
