import { expect, test } from "vitest";
import { csvName } from "../../src/model/file_name.ts";

test.each([
    ["titanic.csv", "titanic-rules.csv"],
    ["sales 2024.tar.gz", "sales-2024-tar-rules.csv"],
    ["a.csv, b.csv", "a-csv-b-rules.csv"],
    ["größe", "größe-rules.csv"],
    ["../../etc/<b>.csv", "etc-b-rules.csv"],
    ["-", "rules.csv"],
    ["\u202e\u0000", "rules.csv"],
    ["", "rules.csv"],
    ["x".repeat(10_000), `${"x".repeat(60)}-rules.csv`],
])("the rules of %j are saved as %s", (title, name) => {
    expect(csvName(title)).toBe(name);
});
