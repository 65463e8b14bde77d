#!/usr/bin/env python3
"""Compares korv-rules with the model, and with korv.

    compare_rules.py KORV_RULES [--cases N] [--seed S] [--jobs J] [--case INDEX]
    compare_rules.py KORV_RULES --korv KORV [--cases N] [--seed S] [--jobs J]
    compare_rules.py model --korv KORV [--cases N] [--seed S] [--jobs J]
    compare_rules.py KORV_RULES --korv KORV --minsupp S --minconf C --transactions N CLASS_FILE...

The first form compares everything that is told of random inputs with what the model tells. The others compare the rules
of class files, random ones or those given, with what korv writes; the model itself can take the place of the program.
What differs first is made smaller where possible, and printed; the exit status is then 1.
"""

from __future__ import annotations

import argparse
import json
import math
import multiprocessing
import random
import re
import shlex
import subprocess
import sys
import tempfile
import time
from dataclasses import replace
from pathlib import Path
from typing import Any, Dict, Iterable, Iterator, List, NamedTuple, Optional, Sequence, Tuple

import random_cases
import rules_model
from random_cases import Case
from rules_model import Request

DEFAULT_CASES = 500
TIME_LIMIT_SECONDS = 60
SHRINKING_SECONDS = 60
TOLERANCE = 1e-12
CHUNK = 20
THE_MODEL = "model"  # in the place of the program

# What the accounting calls each step, behind the number of rules that it left out.
STEP_WORDS = {
    "chance": "(?:no more often together than by chance|of a lift below)",
    "forms": "of another form",
    "kinds": "not (?:exact|approximative|bounded)",
    "columns": "true by the columns",
    "items": "without the items asked for",
    "size": "of more than",
    "where": "not as --where asks",
    "one_column": "with a column on both sides",
    "insignificant": "that could be chance",
    "same_fact": "the same fact",
    "reading": "another reading",
    "turned_round": "the contrapositive",
    "weaker": "weaker than",
    "unproductive": "hardly better than",
    "per_conclusion": r"beyond the best [\d,]+ of a conclusion",
    "not_confirmed": "not confirmed",
}


class Outcome(NamedTuple):
    """What a run of the program told."""

    status: int
    stdout: str
    stderr: str


class Program:
    """The program, run in a directory of its own."""

    def __init__(self, path: str, directory: Path) -> None:
        self.path = path
        self.directory = directory

    def run(self, files: Dict[str, str], arguments: List[str]) -> Outcome:
        for old in self.directory.iterdir():
            old.unlink()
        for name, text in files.items():
            (self.directory / name).write_bytes(text.encode())
        done = subprocess.run([self.path, *arguments], cwd=self.directory, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=TIME_LIMIT_SECONDS, check=False)
        return Outcome(done.returncode, done.stdout.decode(errors="replace"), done.stderr.decode(errors="replace"))


# --- with the model ------------------------------------------------------------------------------


def first_difference(outcome: Outcome, model: rules_model.Result) -> Optional[str]:
    """What differs first; None when all is told alike."""
    expected_status = 0 if model.rules else 1
    if outcome.status != expected_status:
        return f"exit status {outcome.status}, model {expected_status}; standard error:\n{outcome.stderr}"
    lines = outcome.stdout.splitlines()
    try:
        told = [json.loads(line, parse_float=shortest_float) for line in lines]
    except ValueError as error:
        return f"{error} in:\n{outcome.stdout}"
    if [rule["id"] for rule in told] != list(range(1, len(told) + 1)):
        return f"ids are {[rule['id'] for rule in told]}"
    expected_rules = with_ties_in_order(model.rules, model)
    for number, (rule, expected) in enumerate(zip(with_ties_in_order(told, model), expected_rules), 1):
        found = difference_of_rules(rule, expected)
        if found:
            return f"rule {number}: {found}\n  program: {as_json(rule)}\n  model:   {as_json(expected)}"
    if len(told) != len(expected_rules):
        more = told[len(expected_rules):] or expected_rules[len(told):]
        return f"{len(told)} rules, model {len(expected_rules)}; the first one more is\n  {as_json(more[0])}"
    return difference_of_accounting(outcome.stderr, model)


def as_json(rule: Dict[str, Any]) -> str:
    return json.dumps(rule, ensure_ascii=False)


def shortest_float(text: str) -> float:
    """The number; raises ValueError where fewer digits would have said the same."""
    value = float(text)
    if len(digits_of(text)) > len(digits_of(repr(value))):
        raise ValueError(f"{text} is {value!r}")
    return value


def digits_of(text: str) -> str:
    """The digits of a number without its exponent and the zeros around them."""
    return text.lower().split("e")[0].replace(".", "").strip("-0")


def difference_of_rules(told: Dict[str, Any], expected: Dict[str, Any]) -> Optional[str]:
    """The key in which a rule differs."""
    for key, value in expected.items():
        if key not in told:
            return f"{key} is missing"
        if not (is_same(told[key], value) or (key == "holdout_p" and is_near(told[key], value))):
            return f"{key} is {told[key]!r}, model {value!r}"
    if list(told) != list(expected):
        return f"keys are {list(told)}, model {list(expected)}"
    return None


def is_same(told: Any, expected: Any) -> bool:
    """Whether two values agree, floats but for rounding."""
    if isinstance(expected, float) and isinstance(told, (int, float)):
        return math.isclose(told, expected, rel_tol=TOLERANCE, abs_tol=1e-300)
    return type(told) is type(expected) and told == expected


def is_near(told: Any, expected: float) -> bool:
    """The same of numbers that are differences of larger ones."""
    return isinstance(told, (int, float)) and math.isclose(told, expected, abs_tol=TOLERANCE)


def difference_of_accounting(text: str, model: rules_model.Result) -> Optional[str]:
    """The first number that the program tells otherwise on standard error."""
    told = {"derived": number_before("rules? from", text)}
    told.update({step: number_before(words, text) for step, words in STEP_WORDS.items()})
    shown_of = re.search(r"^ *([\d,]+) shown\b.* shows all ([\d,]+)", text, re.MULTILINE)
    told["top"] = (whole_number(shown_of[2]) - whole_number(shown_of[1]) if shown_of
                   else number_before(r"beyond the best [\d,]+  ", text))
    expected = {"derived": model.derived, **model.left_out}
    for name, number in told.items():
        if number != expected[name]:
            return f"accounting of {name}: {number}, model {expected[name]}; standard error:\n{text}"
    return None


def number_before(words: str, text: str) -> int:
    """The number that stands before these words in a line; 0 where there is none."""
    match = re.search(rf"^ *([\d,]+) {words}", text, re.MULTILINE)
    return whole_number(match[1]) if match else 0


def whole_number(text: str) -> int:
    return int(text.replace(",", ""))


def with_ties_in_order(rules: List[Dict[str, Any]], model: rules_model.Result) -> List[Dict[str, Any]]:
    """The rules, those at places where the model has almost equal values ordered by their sides."""
    if model.sorted_by not in rules_model.MEASURES_WITH_ROUGH_TIES:
        return rules
    ordered: List[Dict[str, Any]] = []
    start = 0
    for end in range(1, len(rules) + 1):
        if end < min(len(rules), len(model.values)) and is_same(model.values[end], model.values[end - 1]):
            continue
        ordered += sorted(rules[start:end], key=lambda rule: json.dumps([rule["premise"], rule["conclusion"]]))
        start = end
    return [{**rule, "id": number} for number, rule in enumerate(ordered, 1)]


def difference_of(program: Program, case: Case) -> Optional[str]:
    """What differs first in a case."""
    try:
        outcome = program.run(case.files(), case.arguments())
    except subprocess.TimeoutExpired:
        return "time limit passed"
    return first_difference(outcome, rules_model.run(case.knowledge(), case.request))


def shrunk(program: Program, case: Case) -> Case:
    """A case that differs still, of which no part can go."""
    deadline = time.monotonic() + SHRINKING_SECONDS
    while True:
        for smaller in random_cases.smaller_cases(case):
            if time.monotonic() > deadline:
                return case
            if is_usable(smaller) and difference_of(program, smaller):
                case = smaller
                break
        else:
            return case


def is_usable(case: Case) -> bool:
    """Whether a smaller case is one that the program accepts."""
    classes = case.knowledge().classes
    if not classes:
        return False
    items = frozenset().union(*(each.closed for each in classes))
    return all(any(rules_model.matches_word(case.knowledge(), item, word) for item in items)
               for _, pattern in case.request.patterns for word in pattern.split("|"))


def description(case: Case, difference: Optional[str]) -> str:
    """A case for people."""
    files = "".join(f"--- {name}\n{text}" for name, text in case.files().items())
    return f"{files}--- korv-rules {shlex.join(case.arguments())}\n{difference}\n"


# --- with korv -----------------------------------------------------------------------------------

NUMBER = r"(?:nan|inf|[-+.\de]+)"
RECORD = re.compile(
    r"(?P<premise>[^\n]*)-->(?P<conclusion>[^\n]*)\n"
    r"(?:support:(?P<support>\d+)\n\n|(?P<low>\d+)< support <(?P<high>\d+)\n)"
    rf"(?:confiance:(?P<confidence>{NUMBER})\n-+\n|(?P<least>{NUMBER})< confiance <(?P<most>{NUMBER})\n-+\n)?")
SIX_DIGITS = 1.000001e-5  # of a number that was printed with six digits


class KorvRule(NamedTuple):
    """A rule as korv writes it: support and confidence are bounds."""

    supports: Tuple[int, int]
    confidences: Tuple[float, float]
    is_known: bool


SideOfKorv = Tuple[bool, Tuple[int, ...]]
SidesOfKorv = Tuple[SideOfKorv, SideOfKorv]
WrittenRule = Tuple[SidesOfKorv, KorvRule]


def side_of_korv(text: str) -> SideOfKorv:
    return text.startswith("not("), tuple(map(int, re.findall(r"\d+", text)))


def korv_rules(korv: str, directory: Path, class_file: Path, minsupp: str, minconf: str,
               transactions: int) -> Iterator[WrittenRule]:
    """All records of the four rule files."""
    subprocess.run([korv, "run", class_file, minsupp, minconf, str(transactions)], cwd=directory, check=True,
                   stdout=subprocess.DEVNULL)
    for path in sorted(directory.glob("int*.txt")):
        text = path.read_text(encoding="ascii")
        path.unlink()
        for record in RECORD.finditer(text):
            if record["support"]:
                supports = (int(record["support"]),) * 2
            else:
                supports = (int(record["low"]), int(record["high"]))
            if record["confidence"]:
                confidences = (float(record["confidence"]),) * 2
            elif record["least"]:
                confidences = (float(record["least"]), float(record["most"]))
            else:
                confidences = (1.0, 1.0)
            yield ((side_of_korv(record["premise"]), side_of_korv(record["conclusion"])),
                   KorvRule(supports, confidences, bool(record["support"]) and not record["least"]))


def told_side(side: Dict[str, Any]) -> SideOfKorv:
    return "none" in side, tuple(side["items"])


def told_rules(rules: Iterable[Dict[str, Any]]) -> Dict[SidesOfKorv, Dict[str, Any]]:
    """The rules that korv-rules told, by their sides. Raises ValueError for one that is told twice."""
    told: Dict[SidesOfKorv, Dict[str, Any]] = {}
    for rule in rules:
        sides = told_side(rule["premise"]), told_side(rule["conclusion"])
        if sides in told or rule["wordings"] != 1:
            raise ValueError(f"twice: {json.dumps(rule)}")
        told[sides] = rule
    return told


EVERY_RULE = Request(wording="full", max_items=0, min_lift=0, readings="all", prune="none")
ALL_RULES = ("--wording full --max-items 0 --min-lift 0 --readings all --prune none --top 0 --to jsonl").split()


def difference_from_korv(program: Program, korv: str, class_file: Path, minsupp: str, minconf: str,
                         transactions: int) -> Tuple[Optional[str], int]:
    """What differs first, and how many rules korv writes."""
    arguments = [str(class_file), "-n", str(transactions), "-s", minsupp, "-c", minconf, *ALL_RULES]
    done = subprocess.run([program.path, *arguments], stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    if done.returncode not in (0, 1):
        return f"exit status {done.returncode}: {done.stderr.decode()}", 0
    written = list(korv_rules(korv, program.directory, class_file, minsupp, minconf, transactions))
    return difference_from_written(map(json.loads, done.stdout.decode().splitlines()), written), len(written)


def difference_from_written(rules: Iterable[Dict[str, Any]], written: Sequence[WrittenRule]) -> Optional[str]:
    """What differs first between rules as lines of JSON have them, and what korv wrote."""
    try:
        told = told_rules(rules)
    except ValueError as error:
        return str(error)
    for sides, rule in written:
        if sides not in told:
            return f"missing: {sides} {rule}"
        if not lies_in(told[sides], rule):
            return f"korv: {sides} {rule}\n  korv-rules: {json.dumps(told[sides])}"
    sides_of_korv = {sides for sides, _ in written}
    for sides, told_rule in told.items():
        # Of bounds, a lower end that is larger than korv's may reach the minimum confidence.
        if sides not in sides_of_korv and told_rule["kind"] != "bounded":
            return f"korv has not: {json.dumps(told_rule)}"
    return None


def lies_in(told: Dict[str, Any], rule: KorvRule) -> bool:
    """Whether support and confidence are those that korv writes, or bounds within the bounds that it writes."""
    is_between = (rule.supports[0] <= told["support"] and told["support_max"] <= rule.supports[1]
                  and told["confidence"] >= rule.confidences[0] * (1 - SIX_DIGITS)
                  # The upper end that korv writes for this form is none.
                  and (told["confidence_max"] <= rule.confidences[1] * (1 + SIX_DIGITS)
                       or (not rule.is_known and told["form"] in ("R421", "R432"))))
    if not rule.is_known:
        return is_between
    return is_between and f"{told['confidence']:g}" == f"{rule.confidences[0]:g}" and told["kind"] != "bounded"


def difference_of_class_file(program: Program, korv: str, case: Case) -> Optional[str]:
    """The same for a random class file."""
    case = replace(case, holdout=None)  # korv knows of no other transactions
    path = program.directory / "in.classes"
    path.write_text(case.files()["in.classes"], encoding="ascii")
    request = replace(EVERY_RULE, min_support=case.request.min_support, min_confidence=case.request.min_confidence)
    arguments = (str(request.min_support), str(request.min_confidence), case.knowledge().transactions)
    if program.path != THE_MODEL:
        return difference_from_korv(program, korv, path, *arguments)[0]
    rules = rules_model.run(case.knowledge(), request).rules
    return difference_from_written(rules, list(korv_rules(korv, program.directory, path, *arguments)))


# --- many cases ----------------------------------------------------------------------------------


class Work(NamedTuple):
    """Cases for one worker."""

    path: str
    korv: Optional[str]
    seed: int
    indexes: range


def case_of(seed: int, index: int, only_classes: bool) -> Case:
    rng = random.Random(f"{seed} {index}")
    while True:
        case = random_cases.random_case(rng)
        if not only_classes or case.source == "classes":
            return case


def do_work(work: Work) -> Tuple[int, str]:
    """The index of the first case that differs, or -1, and its description; that of a smaller one where possible."""
    with tempfile.TemporaryDirectory() as name:
        program = Program(work.path, Path(name))
        for index in work.indexes:
            case = case_of(work.seed, index, work.korv is not None)
            if work.korv is None:
                difference = difference_of(program, case)
                if difference:
                    smaller = shrunk(program, case)
                    return index, description(smaller, difference_of(program, smaller))
            else:
                difference = difference_of_class_file(program, work.korv, case)
                if difference:
                    return index, description(case, difference)
    return -1, ""


def compare_cases(path: str, korv: Optional[str], seed: int, indexes: range, jobs: int) -> int:
    """Compares the cases, several at a time; the exit status."""
    chunks = [Work(path, korv, seed, indexes[start:start + CHUNK]) for start in range(0, len(indexes), CHUNK)]
    with multiprocessing.Pool(jobs) as pool:
        for index, text in pool.imap(do_work, chunks):
            if index >= 0:
                print(f"DIFFERS: --seed {seed} --case {index}\n{text}")
                return 1
    print(f"{len(indexes)} cases compared, all agree")
    return 0


def compare_class_files(options: argparse.Namespace) -> int:
    """Compares the class files that are given with korv; the exit status."""
    with tempfile.TemporaryDirectory() as name:
        program = Program(options.program, Path(name))
        for path in options.class_files:
            difference, count = difference_from_korv(program, options.korv, path.resolve(), options.minsupp,
                                                     options.minconf, options.transactions)
            if difference:
                print(f"DIFFERS: {path}\n{difference}")
                return 1
            print(f"{path}: {count} rules agree")
    return 0


def main() -> int:
    """The command line."""
    parser = argparse.ArgumentParser(description="Compare korv-rules with the model, or with korv.")
    parser.add_argument("program")
    parser.add_argument("class_files", nargs="*", type=Path)
    parser.add_argument("--korv")
    parser.add_argument("--cases", type=int, default=DEFAULT_CASES)
    parser.add_argument("--case", type=int, help="this one only")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--minsupp", default="1")
    parser.add_argument("--minconf", default="0.8")
    parser.add_argument("--transactions", type=int)
    options = parser.parse_intermixed_args()
    if options.class_files and (options.korv is None or options.transactions is None):
        parser.error("class files are compared with those of --korv, and need --transactions")
    if options.program != THE_MODEL:
        options.program = str(Path(options.program).resolve())
    elif options.korv is None or options.class_files:
        parser.error("the model is compared with korv, on random class files")
    options.korv = options.korv and str(Path(options.korv).resolve())
    if options.class_files:
        return compare_class_files(options)
    indexes = range(options.cases) if options.case is None else range(options.case, options.case + 1)
    return compare_cases(options.program, options.korv, options.seed, indexes, options.jobs)


if __name__ == "__main__":
    sys.exit(main())
