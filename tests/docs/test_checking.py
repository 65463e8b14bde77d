#!/usr/bin/env python3
"""The codes of korv-check: the program, its document and the tables of class files have the same ones, and each example
is told as the document says.

usage: test_checking.py KORV_CHECK
"""

import gzip
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from typing import NamedTuple, Optional

from documents import section, table_rows, text_of
from test_class_file import DEVIATIONS, data_of

KORV_CHECK: list[Path] = []  # set from the command line
DOCUMENT = "docs/checking.md"
DEVIATION_TABLES = ("Numbers and separators", "The item part", "The support", "The essential itemsets",
                    "Line ends and the end of the file")

STARS = "\t\t\t******************************************\n"
HEADER = STARS + "\t\t\t*** Regles approximatives inter noeuds ***\n" + STARS
# The example of the table is the closed itemset itself, as it should be but for its order.
OTHER_CODES = {"Essential itemset as large as the closed itemset": ["unordered-items"]}
# The example of this row is a byte-order mark at the beginning.
OTHER_CODES["Bytes of 128 and above, NUL"] = ["byte-order-mark"]


class Code(NamedTuple):
    """What the document says of a code."""

    name: str
    severity: str
    is_mended: bool
    meaning: str
    points: dict[str, str]  # example, what is said and cure


def codes_of_document() -> list[Code]:
    codes = []
    for part in re.split(r"^### ", text_of(DOCUMENT), flags=re.MULTILINE)[1:]:
        name, _, text = part.partition("\n")
        severity, mended, meaning = re.match(r"\n(\w+)(, mended)?\. (.*)\n", text).groups()
        points = dict(row for row in table_rows(text) if row[0].isalpha())
        codes.append(Code(name, severity.lower(), mended is not None, meaning, points))
    return codes


def check(data: bytes, *arguments: str, others: Optional[dict[str, bytes]] = None) -> subprocess.CompletedProcess[str]:
    with tempfile.TemporaryDirectory() as directory:
        for name, content in {"a.classes": data, **(others or {})}.items():
            Path(directory, name).write_bytes(content)
        return subprocess.run([*KORV_CHECK, "a.classes", "--max", "0", *arguments], cwd=directory, check=False,
                              capture_output=True, text=True)


def codes_found(data: bytes) -> list[str]:
    return re.findall(r"\[([a-z-]+)\]$", check(data, "--no-notes").stdout, re.MULTILINE)


class Codes(unittest.TestCase):
    def test_are_those_of_the_program(self) -> None:
        done = subprocess.run([*KORV_CHECK, "--codes"], check=True, capture_output=True, text=True)
        rows = [line.split("\t") for line in done.stdout.splitlines()]
        self.assertEqual([[each.name, each.severity, "mended" if each.is_mended else "-", each.meaning]
                          for each in codes_of_document()], rows)

    def test_are_told_as_the_document_says(self) -> None:
        for each in codes_of_document():
            with self.subTest(code=each.name):
                self.assertIn("Cure", each.points)
                text = each.points["Example"]
                example, *further = re.findall(r"`([^`]*)`|an empty file", text)
                arguments = further[0].split() if further and further[0].startswith("-") else []
                others = {name: data_of(held.replace("<HEADER>", HEADER))
                          for name, held in re.findall(r"`([a-z.]*)` holds `([^`]*)`", text)}
                if others and "--database" not in arguments:
                    arguments += ["--database", "a.dat"]
                data = data_of(example.replace("<BOM>", "\ufeff"))
                said = each.points["Said"].strip("`")
                said = said if said.startswith("rules:") else "a.classes:" + said
                done = check(gzip.compress(data) if text.startswith("compressed") else data, *arguments, others=others)
                self.assertIn(said, done.stdout.splitlines())

    def test_of_the_tables_of_class_files_are_those_that_are_found(self) -> None:
        text = text_of("docs/class-file.md")
        rows = [row for heading in DEVIATION_TABLES for row in table_rows(section(text, heading))[2:]]
        self.assertEqual([row[0] for row in rows], list(DEVIATIONS))
        for deviation, example, _, cell in rows:
            with self.subTest(deviation=deviation):
                expected = DEVIATIONS[deviation]
                shown = expected.example or example.strip("`").replace("…", expected.rest)
                codes = re.findall(r"\[([a-z-]+)\]\(checking.md#\1\)", cell)
                self.assertGreater(len(codes), 0)
                self.assertIn(OTHER_CODES.get(deviation, codes)[0], codes_found(data_of(shown)))


if __name__ == "__main__":
    KORV_CHECK.append(Path(sys.argv.pop()).resolve())
    unittest.main()
