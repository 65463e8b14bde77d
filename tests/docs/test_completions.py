#!/usr/bin/env python3
"""What bash completes for the companion programs, by the script that each writes: the options of --help and their
choices. zsh at least reads the script for it, where there is one.

usage: test_completions.py PROGRAM...
"""

import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import test_options
from test_options import PROGRAMS, of_help, run

ASK = """
source /dev/stdin <<<"$1"
shift
compopt() { :; }
COMP_WORDS=("$@")
COMP_CWORD=$(($# - 1))
_${1//-/_}
printf '%s\\n' "${COMPREPLY[@]}"
"""


def completed(program: str, *words: str) -> list[str]:
    """What bash would offer for the last of these words behind the program's name."""
    script = run(program, "--completions", "bash").stdout
    with tempfile.TemporaryDirectory() as directory:
        for name in ("persons.csv", "people.csv"):
            Path(directory, name).touch()
        done = subprocess.run(["bash", "-c", ASK, "bash", script, program, *words], cwd=directory, check=True,
                              capture_output=True, text=True)
    assert done.stderr == "", done.stderr
    return sorted(done.stdout.split())


class Bash(unittest.TestCase):
    def test_offers_the_options_of_help(self) -> None:
        for program in PROGRAMS:
            with self.subTest(program=program):
                names = {name for option in of_help(program) for name in option.names}
                self.assertEqual(set(completed(program, "-")), names)

    def test_offers_options_that_begin_as_the_word_does(self) -> None:
        for program in PROGRAMS:
            with self.subTest(program=program):
                begin, name = ("--data", ["--database", "--database-size"]) if program == "korv-check" \
                    else ("--min-s", ["--min-support"])
                self.assertEqual(completed(program, "x.csv", begin), name)

    def test_offers_the_choices_of_an_option(self) -> None:
        for program in PROGRAMS:
            for option in of_help(program):
                if option.choices:
                    with self.subTest(program=program, option=option.names[-1]):
                        self.assertEqual(completed(program, option.names[0], ""), sorted(option.choices))

    def test_offers_a_choice_behind_an_equals_sign(self) -> None:
        for program in PROGRAMS:
            with self.subTest(program=program):
                self.assertEqual(completed(program, "--completions", "="), ["bash", "zsh"])
                self.assertEqual(completed(program, "--completions", "=", "b"), ["bash"])

    def test_offers_files_where_there_may_be_one(self) -> None:
        for program in PROGRAMS:
            output = "--fix" if program == "korv-check" else "-o"
            for words in (["pers"], [output, "pers"], ["--names", "pers"], ["--quiet", "pers"]):
                with self.subTest(program=program, words=words):
                    self.assertEqual(completed(program, *words), ["persons.csv"])

    def test_offers_nothing_for_the_value_of_another_option(self) -> None:
        for program in PROGRAMS:
            with self.subTest(program=program):
                number = "-n" if program == "korv-check" else "-s"
                self.assertEqual(completed(program, number, "p"), [])

    def test_offers_measures_with_commas_between_them(self) -> None:
        if "korv-rules" not in PROGRAMS:
            self.skipTest("korv-rules is not given")
        self.assertEqual(completed("korv-rules", "--sort", "+conv"), ["+conviction"])
        self.assertEqual(completed("korv-rules", "--measures", "phi,kap"), ["phi,kappa"])
        self.assertEqual(completed("korv-rules", "--kinds", "exact,"),
                         ["exact,approximative", "exact,bounded", "exact,exact"])


class Zsh(unittest.TestCase):
    def test_names_every_option(self) -> None:
        for program in PROGRAMS:
            script = run(program, "--completions", "zsh").stdout
            self.assertEqual(script.split("\n", 1)[0], f"#compdef {program}")
            for option in of_help(program):
                with self.subTest(program=program, option=option.names):
                    words = shlex.split(script, comments=True)
                    names = [name + ("=" if name.startswith("--") else "+") * option.takes_argument
                             for name in option.names]
                    self.assertTrue(any(all(name in word for name in names) for word in words))

    def test_is_read_by_zsh(self) -> None:
        if shutil.which("zsh") is None:
            self.skipTest("zsh is not installed")
        for program in PROGRAMS:
            with self.subTest(program=program):
                subprocess.run(["zsh", "-n"], input=run(program, "--completions", "zsh").stdout, check=True, text=True)


if __name__ == "__main__":
    test_options.PROGRAMS.update((Path(argument).name, Path(argument).resolve()) for argument in sys.argv[1:])
    unittest.main(argv=sys.argv[:1])
