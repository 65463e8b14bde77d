#!/usr/bin/env python3
"""Compares what korv-rules reads in the rule files of korv with what it derives from the classes.

    compare_rule_files.py KORV_RULES KORV [--cases N] [--seed S]
    compare_rule_files.py KORV_RULES KORV --minsupp S --minconf C --transactions N [--database FILE] CLASS_FILE...

The first form takes random class files. What differs first is printed; the exit status is then 1.
"""

from __future__ import annotations

import argparse
import json
import subprocess
import sys
import tempfile
from pathlib import Path
from typing import Any, Dict, Iterator, List, NamedTuple, Optional

import compare_rules
from compare_rules import ALL_RULES, SidesOfKorv, told_side

DEFAULT_CASES = 200
READING = "--max-items 0 --min-lift 0 --readings all --prune none --top 0 --to jsonl -q".split()
ROUNDING = 1e-5  # more than six digits leave open
# What a rule file does not hold.
UNKNOWN = ["form", "lift", "lift_max", "leverage", "leverage_max", "conclusion_count", "conclusion_count_max"]
OF_KNOWN_RULES = ["kind", "support", "support_max", "confidence", "confidence_max", "premise_count",
                  "premise_count_max", "transactions", "items"]

RuleLine = Dict[str, Any]


class Input(NamedTuple):
    """A class file, with the thresholds of both programs, and the transactions where they are at hand."""

    class_file: Path
    minsupp: str
    minconf: str
    transactions: int
    database: Optional[Path] = None


class Programs(NamedTuple):
    """The programs, and a directory for the rule files."""

    korv_rules: str
    korv: str
    directory: Path

    def rules_of(self, arguments: List[str]) -> Iterator[RuleLine]:
        """The rules that korv-rules tells, in its order."""
        with subprocess.Popen([self.korv_rules, *arguments], cwd=self.directory, stdout=subprocess.PIPE) as process:
            assert process.stdout
            yield from map(json.loads, process.stdout)
        if process.returncode not in (0, 1):
            raise RuntimeError(f"exit status {process.returncode}")


def sides_of(rule: RuleLine) -> SidesOfKorv:
    return told_side(rule["premise"]), told_side(rule["conclusion"])


def difference_of_rule(read: RuleLine, derived: RuleLine, has_database: bool) -> Optional[str]:
    """The key in which a rule that was read differs."""
    if has_database:
        keys = [key for key in derived if key not in ("id", "form", "wordings")]
        return next((key for key in keys if read[key] != derived[key]), None)
    unknown = next((key for key in UNKNOWN if read[key] is not None), None)
    if unknown or derived["kind"] != "bounded":
        return unknown or next((key for key in OF_KNOWN_RULES if read[key] != derived[key]), None)
    if any(read[key] != derived[key] for key in ("support", "support_max")):
        return "support"
    # Where no transaction need meet both sides, the file may tell less.
    is_as_narrow = abs(read["confidence"] - derived["confidence"]) <= ROUNDING and (
        derived["support"] == 0 or abs(read["confidence_max"] - derived["confidence_max"]) <= ROUNDING)
    is_around = (read["confidence"] <= derived["confidence"] + ROUNDING
                 and derived["confidence_max"] <= read["confidence_max"] + ROUNDING
                 and read["premise_count"] <= derived["premise_count"]
                 and derived["premise_count_max"] <= read["premise_count_max"])
    return None if is_as_narrow and is_around else "confidence"


def first_difference(programs: Programs, case: Input) -> Optional[str]:
    """What differs first between the rules of the files and those of the classes; None where nothing does."""
    for old in programs.directory.glob("*.txt"):
        old.unlink()
    subprocess.run([programs.korv, "run", case.class_file, case.minsupp, case.minconf, str(case.transactions)],
                   cwd=programs.directory, check=True, stdout=subprocess.DEVNULL)
    files = sorted(path.name for path in programs.directory.glob("int*.txt"))
    of_database = ["--database", str(case.database)] if case.database else ["-n", str(case.transactions)]
    thresholds = ["-s", case.minsupp, "-c", case.minconf]
    derived = {sides_of(rule): rule
               for rule in programs.rules_of([str(case.class_file), *of_database, "-q", *thresholds, *ALL_RULES])}
    missing = {sides for sides, rule in derived.items() if rule["kind"] != "bounded"}
    read_sides = set()
    for rule in programs.rules_of([*files, *of_database, *READING]):
        sides = sides_of(rule)
        if sides not in derived or sides in read_sides:
            return f"{'twice' if sides in read_sides else 'not derived'}: {json.dumps(rule)}"
        difference = difference_of_rule(rule, derived[sides], case.database is not None)
        if difference:
            return f"{difference} differs:\n  read:    {json.dumps(rule)}\n  derived: {json.dumps(derived[sides])}"
        read_sides.add(sides)
    # What only the transactions settle, korv need not have written.
    missing -= read_sides
    if missing and not case.database:
        return f"not read: {json.dumps(derived[min(missing)])}"
    return None


def compare_random_cases(programs: Programs, seed: int, cases: int) -> int:
    """Compares random class files; the exit status."""
    for index in range(cases):
        case = compare_rules.case_of(seed, index, True)
        path = programs.directory / "in.classes"
        path.write_text(case.files()["in.classes"], encoding="ascii")
        difference = first_difference(programs, Input(path, str(case.request.min_support),
                                                      str(case.request.min_confidence),
                                                      case.knowledge().transactions))
        if difference:
            print(f"DIFFERS: --seed {seed}, case {index}\n{path.read_text(encoding='ascii')}{case.arguments()}\n"
                  f"{difference}")
            return 1
    print(f"{cases} cases compared, all agree")
    return 0


def main() -> int:
    """The command line."""
    parser = argparse.ArgumentParser(description="Compare the rules of rule files with those of classes.")
    parser.add_argument("korv_rules")
    parser.add_argument("korv")
    parser.add_argument("class_files", nargs="*", type=Path)
    parser.add_argument("--cases", type=int, default=DEFAULT_CASES)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--minsupp")
    parser.add_argument("--minconf")
    parser.add_argument("--transactions", type=int)
    parser.add_argument("--database", type=Path)
    options = parser.parse_intermixed_args()
    with tempfile.TemporaryDirectory() as name:
        programs = Programs(str(Path(options.korv_rules).resolve()), str(Path(options.korv).resolve()), Path(name))
        if not options.class_files:
            return compare_random_cases(programs, options.seed, options.cases)
        database = options.database.resolve() if options.database else None
        for path in options.class_files:
            difference = first_difference(programs, Input(path.resolve(), options.minsupp, options.minconf,
                                                          options.transactions, database))
            if difference:
                print(f"DIFFERS: {path}\n{difference}")
                return 1
            print(f"{path}: what is read agrees")
    return 0


if __name__ == "__main__":
    sys.exit(main())
