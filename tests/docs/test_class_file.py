#!/usr/bin/env python3
"""The examples of docs/class-file.md, read by korv: what the document says of each is what the lattice file shows.

usage: test_class_file.py KORV

The table here says of each example, by the first cell of its row, which classes are stored; a row without an entry, and
an entry without a row, fail the test.
"""

import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from typing import NamedTuple, Optional

from documents import blocks, section, table_rows, text_of

KORV: list[Path] = []  # set from the command line

DOCUMENT = "docs/class-file.md"


class Read(NamedTuple):
    """What the reader makes of an example."""

    classes: dict[str, tuple[int, list[str]]]  # support and essential itemsets by closed itemset, as written
    runs_into_the_end: bool = False  # of the file, so that "fin de fichier" is printed
    rest: str = ""  # put in the place of "…" in the example
    example: Optional[str] = None  # instead of one in words
    grammatical: bool = False  # so that grep finds nothing, for a reason that the document gives


EMPTY = ""  # an empty itemset

EXAMPLES: dict[str, Read] = {
    "3·1·2<TAB>5<TAB>·1,·2·3,<LF>": Read({"1 2 3": (5, ["1", "2 3"])}, grammatical=True),
    "2·3<TAB>2<TAB>·2,·3,<LF>": Read({"2 3": (2, ["2", "3"])}, grammatical=True),
    "1·4<TAB>3<TAB>·4·1,<LF>": Read({"1 4": (3, [])}, grammatical=True),
    "7<TAB>12<TAB>·7,<LF>": Read({"7": (12, [])}, grammatical=True),
}

DEVIATIONS: dict[str, Read] = {
    # Numbers and separators
    "Number of 2^32 or more, item or support": Read(
        {"1 2": (1, ["1"])}, example="4294967297·2<TAB>4294967297<TAB>·4294967297,<LF>", grammatical=True),
    "Minus or plus sign before an item": Read({"7 8": (5, ["7"])}, rest="5<TAB>·7,<LF>"),
    "Decimal point in an item": Read({"1 2 5": (5, ["1"])}, rest="5<TAB>·1,<LF>"),
    "Letters or other text among items": Read({"1 2": (5, ["1"])}, rest="5<TAB>·1,<LF>"),
    "Bytes of 128 and above, NUL": Read({"1 2": (5, ["1"])}, example="\ufeff1·2<TAB>5<TAB>·1,<LF>"),
    "Several blanks between items, blanks before TAB": Read({"1 2": (5, ["1"])}, rest="5<TAB>·1,<LF>"),
    "Commas between items of the closed itemset": Read({"1 2": (5, ["1"])}, rest="5<TAB>·1,<LF>"),
    "TAB or LF between the items of an essential itemset": Read(
        {"1 2 3": (5, ["1 2"])}, example="1·2·3<TAB>5<TAB>·1<TAB>2,<LF>"),
    "Leading zeros": Read({"7 8": (5, ["7"])}, example="007·8<TAB>5<TAB>·07,<LF>", grammatical=True),
    "Item repeated in the closed itemset": Read({"1 2 2": (4, ["2"])}, grammatical=True),
    "Item repeated in an essential itemset": Read({"1 2": (5, [])}, grammatical=True),
    # The item part
    "Empty line before or between records, or at the end": Read(
        {"1 2": (5, ["1"]), "3 4": (6, ["3"])},
        example="<LF>1·2<TAB>5<TAB>·1,<LF><LF>3·4<TAB>6<TAB>·3,<LF><LF>"),
    "Comment line with neither digits nor TAB": Read(
        {"1 2": (5, ["1"])}, example="#·classes<LF>1·2<TAB>5<TAB>·1,<LF>"),
    "Comment line with digits": Read({"1 2 3": (5, ["1"])}, rest="5<TAB>·1,<LF>"),
    "Comment line with TAB, no digit before it": Read(
        {"1 2": (5, ["1"])}, example="1·2<TAB>5<TAB>·1,<LF>#<TAB>classes<LF>3<TAB>2<TAB>·3,<LF>"),
    "No digit before the first TAB": Read(
        {"1 2": (5, ["1"])}, example="1·2<TAB>5<TAB>·1,<LF><TAB>4<TAB>·3,<LF>3<TAB>2<TAB>·3,<LF>"),
    "Blank instead of the first TAB": Read({"1 2 5": (0, [EMPTY])}),
    "No TAB at all in the line": Read({"1 1 2 3 5": (2, ["3"])}),
    "Closed itemset listed in two records, in any item order": Read(
        {"1 3": (6, ["3"])}, example="3·1<TAB>5<TAB>·1,<LF>1·3<TAB>6<TAB>·3,<LF>", grammatical=True),
    # The support
    "No digit directly after the first TAB (blank, sign, second TAB, letter)": Read({"1 2": (0, [])}),
    "Minus sign before the support": Read({"1 2": (0, ["1"])}),
    "Fraction": Read({"1 2": (5, [])}),
    "Another byte, not a digit, instead of the second TAB": Read({"1 2": (5, ["1"])}),
    "Spare BLANK missing": Read({"1 2": (5, ["3"])}),
    "Second TAB missing": Read({"1 2": (5, [EMPTY])}),
    "More separators than one before the first essential itemset": Read({"1 2": (5, ["1"])}),
    # The essential itemsets
    "Essential itemset as large as the closed itemset": Read({"1 4": (3, [])}, grammatical=True),
    "Essential itemset larger than the closed itemset, or with foreign items": Read(
        {"1 2 3": (5, ["2 3 4 5"])}, grammatical=True),
    "Empty essential itemset": Read({"1 2": (6, [EMPTY])}),
    "Two commas in a row": Read({"1 2 3": (5, ["1", "2"])}, example="1·2·3<TAB>5<TAB>·1,,·2,<LF>"),
    "Digit directly after a comma": Read({"1 2 3": (5, ["1", "3", "1 2"])}),
    "Single digit directly after a comma": Read({"1 2": (5, ["1", EMPTY])}),
    "Blank, or anything else, between the last comma and LF": Read({"1 2": (5, ["1", "2 3 3"])}),
    "Last comma missing": Read({"1 2 3": (5, ["1 3", "2 3 4 4 5"])}),
    "No essential itemset and no comma": Read({"1 2": (5, ["1 3 4"])}),
    "The same essential itemset twice": Read(
        {"1 2": (5, ["1", "1"])}, example="1·2<TAB>5<TAB>·1,·1,<LF>", grammatical=True),
    # Line ends and the end of the file
    "CR LF line ends": Read({"1 2": (5, ["1", "2 3 3", EMPTY])}, runs_into_the_end=True),
    "CR line ends": Read({"1 2": (5, ["1", "2 3 3", EMPTY])}, runs_into_the_end=True),
    "Last LF missing": Read({"1 2": (5, ["1"])}, runs_into_the_end=True, grammatical=True),
    "Last comma and LF missing": Read({"1 2": (5, ["1"])}, runs_into_the_end=True),
    "Only the last comma missing": Read({"1 2": (5, ["1"])}, runs_into_the_end=True),
    "Blank after the last comma": Read({"1 2": (5, ["1", EMPTY])}, runs_into_the_end=True),
    "File cut off after the support": Read({"1 2": (5, [EMPTY])}, runs_into_the_end=True),
    "File cut off in the items": Read({"1 2": (0, [EMPTY])}, runs_into_the_end=True),
}


def data_of(example: str) -> bytes:
    """The bytes of an example as the document shows them."""
    for shown, byte in (("·", " "), ("<TAB>", "\t"), ("<LF>", "\n"), ("<CR>", "\r")):
        example = example.replace(shown, byte)
    return example.encode()


def classes_of(lattice: str) -> dict[str, tuple[int, list[str]]]:
    found = {}
    for closed, support, essentials in re.findall(
            r"^DCP:  (.*)\nDisjonctive support: (\d+)\nles essentiels:  (.*)\n", lattice, re.MULTILINE):
        itemsets = [] if essentials == "VIDE" else essentials.split(" ; ")[:-1]
        found[closed.strip()] = (int(support), [itemset.strip() for itemset in itemsets])
    return found


def rows_with_examples() -> list[tuple[str, str]]:
    """Deviation and example of each row of the tables of deviations."""
    text = text_of(DOCUMENT)
    headings = ("Numbers and separators", "The item part", "The support", "The essential itemsets",
                "Line ends and the end of the file")
    return [(row[0], row[1]) for heading in headings for row in table_rows(section(text, heading))[2:]]


class Examples(unittest.TestCase):
    def setUp(self) -> None:
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = Path(directory.name)

    def check(self, data: bytes, expected: Read) -> None:
        (self.directory / "classes.txt").write_bytes(data)
        done = subprocess.run([*KORV, "run", "classes.txt", "1", "0.5", "100"], cwd=self.directory, check=True,
                              capture_output=True)
        self.assertEqual(classes_of((self.directory / "Lattice_run_1.txt").read_text(encoding="utf-8")),
                         expected.classes)
        self.assertEqual(b"fin de fichier" in done.stdout, expected.runs_into_the_end)
        grep = subprocess.run(["sh", "-c", blocks(DOCUMENT)[1].text], cwd=self.directory, check=False,
                              capture_output=True, env=dict(os.environ, LC_ALL="C.UTF-8"))
        self.assertEqual(grep.returncode, 1 if expected.grammatical else 0, grep.stdout.decode(errors="replace"))

    def test_records_are_read_as_the_examples_say(self) -> None:
        rows = table_rows(section(text_of(DOCUMENT), "Examples"))[2:]
        self.assertEqual([row[0].strip("`") for row in rows], list(EXAMPLES))
        for record, closed, support, essentials in rows:
            with self.subTest(record=record):
                expected = EXAMPLES[record.strip("`")]
                self.check(data_of(record.strip("`")), expected)
                (stored,) = expected.classes.values()
                self.assertEqual(list(expected.classes), [closed])
                self.assertEqual(stored[0], int(support))
                self.assertEqual(stored[1], re.findall(r"\{([^}]*)\}", essentials.partition("none")[0]))

    def test_deviations_are_read_as_the_tables_say(self) -> None:
        rows = rows_with_examples()
        self.assertEqual([deviation for deviation, _ in rows], list(DEVIATIONS))
        for deviation, example in rows:
            with self.subTest(deviation=deviation):
                expected = DEVIATIONS[deviation]
                shown = expected.example or example.strip("`").replace("…", expected.rest)
                self.assertNotIn("…", shown)
                self.check(data_of(shown), expected)


if __name__ == "__main__":
    KORV.append(Path(sys.argv.pop()).resolve())
    unittest.main()
