import { expect, test } from "vitest";
import { CsvWriter, textCell } from "../../src/model/csv.ts";
import { Quantities } from "../../src/model/quantities.ts";
import { SideWords } from "../../src/model/side_words.ts";
import { confirmedBook, titanicBook } from "../support/titanic.ts";

const book = titanicBook();
const writer = new CsvWriter(book, new SideWords(book), new Quantities(book), [
    "support",
    "lift",
    "conviction",
]);

test("the columns are those of the program, and what is shown besides behind them", () => {
    expect(writer.header()).toBe(
        "id,form,kind,premise,conclusion,support,support_max,confidence,confidence_max,lift,lift_max,leverage," +
            "leverage_max,premise_count,premise_count_max,conclusion_count,conclusion_count_max,transactions,items," +
            "wordings,conviction,conviction_max\n",
    );
});

test("what other transactions say stands last, whether it is shown or not", () => {
    const confirmed = confirmedBook();
    const shown = ["holdout_p", "conviction"];
    const writerOfAll = new CsvWriter(confirmed, new SideWords(confirmed), new Quantities(confirmed), shown);
    expect(writerOfAll.header()).toMatch(
        /,wordings,conviction,conviction_max,holdout_support,holdout_confidence,holdout_p\n$/u,
    );
    expect(writerOfAll.row(0)).toMatch(/,88,0\.9072164948453608,12\.3\n$/u);
});

test("a rule is written with all digits", () => {
    // As the guide to rules has it.
    expect(writer.row(0)).toMatch(
        /^1,R131,approximative,class=crew or survived=no,sex=male,1556,1556,0\.9142/u,
    );
    expect(writer.row(0)).toMatch(/,sex=male,1556,1556,0\.9142185663924794,0\.9142185663924794,1\.16/u);
    expect(writer.row(0)).toMatch(
        /,1702,1702,1731,1731,2201,3,1,2\.4893417064472563,2\.4893417064472563\n$/u,
    );
});

test("what is infinite is inf", () => {
    expect(writer.row(4)).toMatch(/^5,R311,exact,age=child,class not crew,.*,inf,inf\n$/u);
});

test.each([
    ["bread", "bread"],
    ["=1+1", "'=1+1"],
    ["-x", "'-x"],
    ["+x", "'+x"],
    ["@x", "'@x"],
    ["\tx", "'\tx"],
    ["'=x", "''=x"],
    ["'x", "'x"],
    ["a,b", '"a,b"'],
    ['say "x"', '"say ""x"""'],
    ["=a,b", '"\'=a,b"'],
    ["two\nlines", '"two\nlines"'],
])("the text %j is the cell %j", (text, cell) => {
    expect(textCell(text)).toBe(cell);
});
