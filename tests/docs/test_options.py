#!/usr/bin/env python3
"""The options of korv-mine: --help, the man page and docs/mining.md name the same ones, and its exit statuses are those
of the man page.

usage: test_options.py KORV_MINE
"""

import re
import subprocess
import sys
import unittest
from pathlib import Path

from documents import TOP, section, table_rows, text_of

KORV_MINE: list[Path] = []  # set from the command line

# An option of one or two hyphens; not a negative number, not a rule, not a part of a word.
OPTION = re.compile(r"(?<![\w-])--?[a-zA-Z][\w-]*")


def run(*arguments: str) -> subprocess.CompletedProcess[str]:
    return subprocess.run([*KORV_MINE, *arguments], cwd=TOP, check=False, capture_output=True, text=True,
                          stdin=subprocess.DEVNULL)


def of_help() -> list[set[str]]:
    """The names of each option, as --help lists them."""
    return [set(match[1].split(","))
            for match in re.finditer(r"^  (-\S+)", run("--help").stdout, re.MULTILINE)]


def of_man_page() -> list[set[str]]:
    text = text_of("man/korv-mine.1").replace(r"\-", "-")
    options = text[text.index(".SH OPTIONS"):text.index(".SH FORMATS")]
    return [set(OPTION.findall(match[1])) for match in re.finditer(r"^\.TP\n(.*)$", options, re.MULTILINE)]


def of_document() -> list[set[str]]:
    rows = table_rows(section(text_of("docs/mining.md"), "All options"))[2:]
    return [set(OPTION.findall(row[0])) for row in rows]


class Options(unittest.TestCase):
    def test_are_the_same_in_all_three_places(self) -> None:
        names = sorted(map(sorted, of_help()))
        self.assertEqual(len(names), 11)
        self.assertEqual(sorted(map(sorted, of_man_page())), names)
        self.assertEqual(sorted(map(sorted, of_document())), names)

    def test_there_is_none_elsewhere_in_the_documents(self) -> None:
        names = set().union(*of_help())
        man_page = text_of("man/korv-mine.1").replace(r"\-", "-")
        self.assertLessEqual(set(OPTION.findall(man_page)), names)
        # The options of another program.
        mining = re.sub(r"`scripts/explain-rules[^`]*`", "", text_of("docs/mining.md"))
        code = "\n".join(re.findall(r"`[^`\n]+`|^korv-mine .*$", mining, re.MULTILINE))
        found = set(OPTION.findall(code))
        self.assertGreater(len(found), 10)
        self.assertLessEqual(found, names)

    def test_choices_are_the_same_in_all_three_places(self) -> None:
        choices = dict(re.findall(r"^  (?:-\w,)?--([\w-]+) .*\{([\w,]+)\}", run("--help").stdout, re.MULTILINE))
        self.assertEqual(choices, {"closure-items": "frequent,all", "format": "fimi,basket,table"})
        man_page = text_of("man/korv-mine.1").replace(r"\-", "-")
        for option, words in choices.items():
            with self.subTest(option=option):
                self.assertIn(f'\n.BR --{option} " " {words.replace(",", " | ")}\n', man_page)
                rows = table_rows(section(text_of("docs/mining.md"), "All options"))
                (cell,) = (row[0] for row in rows if row[0].startswith(f"`--{option}"))
                self.assertEqual(re.findall(r"\w+", cell.partition(option)[2].replace(" or ", " ")), words.split(","))

    def test_formats_of_the_table_are_those_of_the_program(self) -> None:
        rows = table_rows(section(text_of("docs/mining.md"), "What goes in"))[2:]
        self.assertEqual([row[0].partition(" ")[0].strip("`") for row in rows], ["fimi", "basket", "table"])


class ExitStatus(unittest.TestCase):
    sample = "examples/titanic/titanic.dat"

    def test_is_as_the_man_page_says(self) -> None:
        cases = [
            (0, "--help"), (0, "-h"), (0, "--version"), (0, f"{self.sample} -s 1 -q"),
            (1, "missing -s 1"), (1, "README.md -s 1"), (1, f"{self.sample} -s 0"), (1, f"{self.sample} -s 2202"),
            (1, f"{self.sample} -s 2201"), (1, f"{self.sample} -s 1 -o missing/classes"),
            (1, f"{self.sample} -s 1 --format table --bins 4 --bins 5"),
            (104, f"{self.sample} -s 1 --quiet=some"),
            (105, f"{self.sample} -s some"), (105, f"{self.sample} -s 1 --bins 4"),
            (106, "-s 1"), (106, self.sample),
            (109, f"{self.sample} -s 1 --some"), (109, f"{self.sample} -s 1 more"),
            (114, f"{self.sample} -s"), (114, f"{self.sample} -s 1 -s 1"),
        ]
        for status, arguments in cases:
            with self.subTest(arguments=arguments):
                self.assertEqual(run(*arguments.split()).returncode, status)
        text = text_of("man/korv-mine.1")
        statuses = text[text.index(".SH EXIT STATUS"):text.index(".SH EXAMPLES")]
        self.assertEqual({int(number) for number in re.findall(r"\b\d+\b", statuses)} - {100},
                         {status for status, _ in cases})


if __name__ == "__main__":
    KORV_MINE.append(Path(sys.argv.pop()).resolve())
    unittest.main()
