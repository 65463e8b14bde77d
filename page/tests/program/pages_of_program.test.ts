import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import path from "node:path";
import { fileURLToPath } from "node:url";
import { inflateRawSync } from "node:zlib";
import { afterAll, describe, expect, test } from "vitest";
import { bookOf, type Book } from "../../src/data/book.ts";
import { CsvWriter } from "../../src/model/csv.ts";
import { Lattice } from "../../src/model/lattice.ts";
import { measures } from "../../src/model/measures.ts";
import { holdoutNames, Quantities } from "../../src/model/quantities.ts";
import { namedItems } from "../../src/model/named_items.ts";
import { pairCountsOf } from "../../src/model/pair_counts.ts";
import { plainSentence, sentenceOf } from "../../src/model/rule_words.ts";
import { SideWords } from "../../src/model/side_words.ts";

const program = process.env["KORV_RULES"] ?? "";
const titanic = sample("titanic.csv");
const classes = sample("titanic.classes");
const all = ["--readings", "all", "--prune", "none", "--min-lift", "0"];

/** Every second person of the sample, and the others. */
const folder = mkdtempSync(path.join(tmpdir(), "page-program-"));
const [half, otherHalf] = halvesOf(titanic);

afterAll(() => {
    rmSync(folder, { recursive: true });
});

/** What is asked of the program: input and options. */
const runs: Readonly<Record<string, readonly string[]>> = {
    "the sample as it is": [titanic],
    "all readings of the sample, in full": [
        titanic,
        "--readings",
        "all",
        "--prune",
        "none",
        "--min-lift",
        "0",
    ],
    "the sample with its items as they are": [titanic, "--wording", "full", "-c", "0.3", "--sort", "lift"],
    "half of the sample, confirmed by the other": [half, "--holdout", otherHalf, "-c", "0.7"],
    "classes that leave supports open": [classes, "-n", "2201", "-s", "1", "-c", "0.1", ...all],
    "classes that leave supports open, in full": [
        classes,
        "-n",
        "2201",
        "-s",
        "1",
        "--wording",
        "full",
        ...all,
    ],
};

function sample(file: string): string {
    return fileURLToPath(new URL(`../../../examples/titanic/${file}`, import.meta.url));
}

function halvesOf(table: string): [string, string] {
    const [head = "", ...rows] = readFileSync(table, "utf8").trimEnd().split("\n");
    const put = (name: string, remainder: number) => {
        const file = path.join(folder, name);
        writeFileSync(file, [head, ...rows.filter((_, i) => i % 2 === remainder), ""].join("\n"));
        return file;
    };
    return [put("half.csv", 0), put("other.csv", 1)];
}

function output(...options: readonly string[]): string {
    return execFileSync(program, options, {
        encoding: "utf8",
        maxBuffer: 1e9,
        stdio: ["ignore", "pipe", "ignore"],
    });
}

function bookOfRun(options: readonly string[]): Book {
    const page = output(...options, "--to", "html", "--measures", "all");
    const [, data = ""] = /id="korv-data">([^<]*)</u.exec(page) ?? [];
    return bookOf(new Uint8Array(inflateRawSync(Buffer.from(data, "base64"))).buffer);
}

/** How far numbers may be apart that are not the same to nearly all digits. */
const shares: Readonly<Record<string, number>> = { p: 1e-9, holdout_p: 1e-6 };

/** A number of the program's output: null is not defined, "inf" infinite. */
function numberOf(value: unknown): number {
    return value === null ? NaN : value === "inf" ? Infinity : Number(value);
}

function isClose(one: number, other: number, share: number): boolean {
    return (
        Object.is(one, other) ||
        Math.abs(one - other) <= share * Math.max(Math.abs(one), Math.abs(other), 1e-9)
    );
}

/** Bounds as the program tells them: of a probability, -log10. */
function toldBounds(quantities: Quantities, name: string, rule: number) {
    const { low, high } = quantities.bounds(name, rule);
    return quantities.get(name).isProbability ? { low: 0 - high, high: 0 - low } : { low, high };
}

describe.skipIf(program === "").each(Object.entries(runs))("%s", (_, options) => {
    test("has the same numbers as jsonl", () => {
        const book = bookOfRun(options);
        const quantities = new Quantities(book);
        const lines = output(...options, "--to", "jsonl", "--top", "0", "--measures", "all")
            .trimEnd()
            .split("\n");
        expect(lines.length).toBe(book.rules.count);
        const names = ["premise_count", "conclusion_count", "items", "wordings", ...Object.keys(measures)];
        lines.forEach((line, rule) => {
            const told = JSON.parse(line) as Record<string, unknown>;
            for (const name of [...names, ...[...holdoutNames].filter((each) => each in told)]) {
                const { low, high } = toldBounds(quantities, name, rule);
                const share = shares[name] ?? 1e-13;
                const most = told[`${name}_max`] ?? told[name] ?? null;
                expect(isClose(low, numberOf(told[name]), share), `${line}: ${name} ${low}`).toBe(true);
                expect(isClose(high, numberOf(most), share), `${line}: ${name}_max ${high}`).toBe(true);
            }
        });
    });

    test("has the same sides, forms and kinds as csv", () => {
        const book = bookOfRun(options);
        const writer = new CsvWriter(book, new SideWords(book), new Quantities(book), []);
        const lines = output(...options, "--to", "csv", "--top", "0")
            .trimEnd()
            .split("\n");
        expect(writer.header()).toBe(`${lines[0]!}\n`);
        const texts = (line: string) => /^(?:(?:"(?:[^"]|"")*"|[^",]*),){5}/u.exec(line)?.[0];
        lines.slice(1).forEach((line, rule) => {
            expect(texts(writer.row(rule))).toBe(texts(line));
        });
    });

    test("says its rules as words do", () => {
        const book = bookOfRun(options);
        const words = new SideWords(book);
        // What it says of other transactions, the page says in a sentence of its own.
        const said = output(...options, "--to", "words", "--top", "0")
            .replace(/\n\s+/gu, " ")
            .replace(/ in the holdout, .+?, holdout_p \S+/gu, "");
        for (let rule = 0; rule < book.rules.count; ++rule) {
            const sentence = sentenceOf(book, words, rule);
            const others = sentence.others === "" ? "" : ` ${sentence.others}`;
            expect(said).toContain(`${rule + 1}. ${plainSentence(sentence)} ${sentence.counts}${others}`);
        }
    });
});

describe.skipIf(program === "").each([
    ["the sample as it is", [titanic]],
    ["all rules of the sample", [titanic, ...all]],
    ["half of the sample, with rules of few cases", [half, "-s", "1", "-c", "0.5"]],
])("%s", (_, options) => {
    test("tells of pairs what its rows say", () => {
        const book = bookOfRun(options);
        const { names } = book.items;
        const [head = "", ...rows] = readFileSync(options[0]!, "utf8").trimEnd().split("\n");
        const columns = head.split(",");
        const held = rows.map(
            (row) => new Set(row.split(",").map((value, column) => `${columns[column]!}=${value}`)),
        );
        const named = namedItems(book);
        let told = 0;
        for (let item = 0; item < book.items.count; ++item) {
            for (const [other, together] of pairCountsOf(book, named, item)) {
                const counted = held.filter((row) => row.has(names[item]!) && row.has(names[other]!));
                expect(together, `${names[item]!} and ${names[other]!}`).toBe(counted.length);
                ++told;
            }
        }
        expect(told).toBeGreaterThan(40);
    });
});

describe.skipIf(program === "")("the lattice of the sample", () => {
    test("has the class of every rule whose counts are known", () => {
        const book = bookOfRun([titanic, "--readings", "all", "--prune", "none"]);
        const lattice = new Lattice(book);
        for (let rule = 0; rule < book.rules.count; ++rule) {
            expect(lattice.classOfRule(rule), String(rule + 1)).toBeDefined();
        }
    });

    test("the page of the sample is below 200 KB", () => {
        const template = readFileSync(new URL("../../dist/page.html", import.meta.url));
        const page = output(titanic, "--to", "html");
        const [, data = ""] = /id="korv-data">([^<]*)</u.exec(page) ?? [];
        expect(template.length + data.length).toBeLessThan(200_000);
    });
});
