#!/usr/bin/env python3
"""Reads rules back from csv and tsv, and compares them with the same rules in JSON Lines.

Usage: read_back.py WRITE_RULES

WRITE_RULES is the program that writes them, between items of awkward names.
"""

import csv
import io
import json
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM = sys.argv.pop() if __name__ == "__main__" else ""
SIDES = ("premise", "conclusion")
Columns = dict[str, list[str]]


def columns_of(rules: list[dict]) -> Columns:
    """The columns of a table: names of the form column=value, at least two different ones of a column."""
    names = sorted({name for rule in rules for side in SIDES for name in next(iter(rule[side].values()))})
    columns: Columns = {}
    for name in names:
        column, sign, _ = name.partition("=")
        if sign and column:
            columns.setdefault(column, []).append(name)
    return {column: of_column for column, of_column in columns.items() if len(of_column) > 1}


def in_words(side: dict, columns: Columns) -> str:
    """A side as csv has it, from what JSON says."""
    is_negated = "none" in side
    groups: dict[str, list[str]] = {}  # by column, or by the name itself
    rest: list[str] = []
    for name in side["none" if is_negated else "any"]:
        column = name.partition("=")[0]
        if column in columns and name in columns[column]:
            groups.setdefault("=" + column, []).append(name.partition("=")[2])
        elif is_negated:
            rest.append(name)
        else:
            groups[" " + name] = [name]
    if not is_negated:
        return " or ".join(values[0] if key[0] == " " else plain(key[1:], values) for key, values in groups.items())
    parts = [f"{key[1:]} not {values[0]}" if len(values) == 1 else f"{key[1:]} not in {{{', '.join(values)}}}"
             for key, values in groups.items()]
    if rest:
        parts.append(f"not {rest[0]}" if len(rest) == 1 else f"none of {', '.join(rest)}")
    return " and ".join(parts)


def plain(column: str, values: list[str]) -> str:
    return f"{column}={values[0]}" if len(values) == 1 else f"{column} in {{{', '.join(values)}}}"


def without_apostrophe(cell: str) -> str:
    return cell[1:] if re.match(r"'+[=+\-@\t\r\n]", cell) else cell


def unescaped(cell: str) -> str:
    meanings = {"t": "\t", "n": "\n", "r": "\r", "\\": "\\"}
    return re.sub(r"\\(.)", lambda match: meanings[match[1]], cell)


def as_cell(value: object) -> str:
    """A number, word or null of JSON as a cell."""
    return "" if value is None else value if isinstance(value, str) else json.dumps(value)


class ReadBack(unittest.TestCase):
    """Each format says the same as JSON Lines."""

    @classmethod
    def setUpClass(cls) -> None:
        cls.directory = tempfile.TemporaryDirectory()
        cls.path = Path(cls.directory.name)
        subprocess.run([PROGRAM, cls.directory.name], check=True, timeout=60)
        # Only LF ends a line: splitlines would also part names at other separators.
        lines = (cls.path / "rules.jsonl").read_bytes().decode("utf-8").removesuffix("\n").split("\n")
        cls.rules = [json.loads(line) for line in lines]
        cls.columns = columns_of(cls.rules)

    @classmethod
    def tearDownClass(cls) -> None:
        cls.directory.cleanup()

    def expect_rules(self, rows: list[dict[str, str]]) -> None:
        """Expects the rules in rows of cells by column, sides without escapes and apostrophes."""
        self.assertEqual(len(rows), len(self.rules))
        for row, rule in zip(rows, self.rules):
            expected = {key: in_words(value, self.columns) if key in SIDES else value for key, value in rule.items()}
            self.assertEqual(list(row), list(expected))
            for key, value in expected.items():
                if isinstance(value, float):
                    self.assertEqual(float(row[key]), value, (key, row))
                else:
                    self.assertEqual(row[key], as_cell(value), (key, row))

    def test_csv_by_python(self) -> None:
        with (self.path / "rules.csv").open(encoding="utf-8", newline="") as file:
            rows = list(csv.DictReader(file, strict=True))
        for row in rows:
            for side in SIDES:
                self.assertNotRegex(row[side], r"^[=+\-@\t\r\n]")
                row[side] = without_apostrophe(row[side])
        self.expect_rules(rows)

    @unittest.skipUnless(shutil.which("sqlite3"), "sqlite3 is not installed")
    def test_csv_by_sqlite(self) -> None:
        script = ".mode csv\n.import rules.csv rules\n.mode json\nSELECT * FROM rules ORDER BY CAST(id AS INTEGER);\n"
        result = subprocess.run(["sqlite3", "-batch", "-bail", ":memory:"], input=script, cwd=self.path, check=True,
                                capture_output=True, encoding="utf-8", timeout=60)
        self.assertEqual(result.stderr, "")
        rows = json.loads(result.stdout)
        for row in rows:
            for side in SIDES:
                row[side] = without_apostrophe(row[side])
        self.expect_rules(rows)

    def test_tsv_line_by_line(self) -> None:
        lines = (self.path / "rules.tsv").read_bytes().decode("utf-8").removesuffix("\n").split("\n")
        header = lines[0].split("\t")
        cells = [line.split("\t") for line in lines[1:]]
        self.assertEqual({len(row) for row in cells}, {len(header)})
        rows = [dict(zip(header, row)) for row in cells]
        for row in rows:
            for side in SIDES:
                row[side] = unescaped(without_apostrophe(row[side]))
        self.expect_rules(rows)

    def test_tsv_by_python_with_quoting_off(self) -> None:
        with (self.path / "rules.tsv").open(encoding="utf-8", newline="") as file:
            rows = list(csv.DictReader(file, dialect="excel-tab", quoting=csv.QUOTE_NONE))
        self.assertEqual([unescaped(without_apostrophe(row["premise"])) for row in rows],
                         [in_words(rule["premise"], self.columns) for rule in self.rules])

    def test_names_alone_are_themselves(self) -> None:
        """The first rules have each name alone: the cell of a plain side is the name."""
        with (self.path / "rules.csv").open(encoding="utf-8", newline="") as file:
            cells = [row["premise"] for row in csv.DictReader(file, strict=True)]
        for cell, rule in zip(cells[:40], self.rules):
            self.assertEqual([without_apostrophe(cell)], rule["premise"]["any"])

    def test_json_has_the_columns_of_csv(self) -> None:
        with (self.path / "rules.csv").open(encoding="utf-8", newline="") as file:
            header = next(csv.reader(io.StringIO(file.readline())))
        for rule in self.rules:
            self.assertEqual(list(rule), header)
        self.assertGreater(sum(rule["kind"] == "bounded" for rule in self.rules), 100)
        self.assertGreater(sum(rule["conviction"] == "inf" for rule in self.rules), 10)
        self.assertGreater(sum(rule["lift"] is None for rule in self.rules), 10)


if __name__ == "__main__":
    unittest.main()
