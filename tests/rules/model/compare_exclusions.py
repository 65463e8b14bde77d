#!/usr/bin/env python3
"""Compares korv-rules --exclusions with the model, in all formats.

    compare_exclusions.py KORV_RULES [--cases N] [--seed S] [--jobs J] [--case INDEX]

What differs first is printed; the exit status is then 1.
"""

from __future__ import annotations

import argparse
import csv
import io
import json
import math
import multiprocessing
import random
import re
import shlex
import sys
import tempfile
from dataclasses import dataclass
from fractions import Fraction
from pathlib import Path
from typing import Any, Callable, Dict, List, Optional, Tuple

import exclusions_model
import random_cases
from compare_rules import Outcome, Program, number_before, shortest_float
from exclusions_model import Exclusion, ExclusionRequest, Result
from random_cases import Case, Mining
from rules_model import Knowledge, Request, Transaction

DEFAULT_CASES = 500
CHUNK = 20
TOLERANCE = 1e-10  # of p; what is expected, and confidences, are quotients
FORMATS = ("jsonl", "jsonl", "csv", "tsv", "words", "table")
STEP_WORDS = {"columns": "of two values of a column", "chance": "together as often as by chance",
              "uncertain": "could be chance", "items": "without the items asked for"}


@dataclass(frozen=True)
class ExclusionCase:
    """An input, options and a format."""

    case: Case
    request: ExclusionRequest
    format: str

    def arguments(self) -> List[str]:
        request = self.request
        arguments = source_arguments(self.case) + ["--exclusions", "-s", str(request.min_support), "--to", self.format]
        for option, value, default in (("--alpha", request.alpha, "0.05"), ("--max-items", request.max_items, 3),
                                       ("--top", request.top, 0), ("-c", request.min_confidence, 0.8)):
            if value != default:
                arguments += [option, str(value)]
        for option, pattern in request.patterns:
            arguments += ["--" + option, pattern]
        return arguments


def source_arguments(case: Case) -> List[str]:
    """The input and how it is read."""
    if case.source == "database":
        return ["in.classes", "--database", "in.dat"] + (["--weighted"] if case.is_weighted else [])
    arguments = ["in.dat", "--format", case.source] + (["--separator", ","] if case.source != "fimi" else [])
    if case.is_weighted:
        arguments += ["--weight", "count"] if case.source == "table" else ["--weighted"]
    return arguments


# --- random cases --------------------------------------------------------------------------------


def with_exclusions(rng: random.Random, database: List[Transaction]) -> List[Transaction]:
    """The transactions, in some of which items that should exclude each other no longer meet."""
    items = sorted(frozenset().union(*(held for held, _ in database)))
    for _ in range(rng.choice((0, 1, 1, 2))):
        size = rng.choice((2, 2, 3))
        if len(items) < size:
            continue
        group = frozenset(rng.sample(items, size))
        share = rng.choice((0.7, 1.0))
        database = [(held - {rng.choice(sorted(group))} if group <= held and rng.random() < share else held, weight)
                    for held, weight in database]
    return database


def random_case(rng: random.Random) -> ExclusionCase:
    """A random case."""
    source = rng.choice(("fimi", "fimi", "basket", "table", "database"))
    is_weighted = rng.random() < 0.4
    names: Dict[int, str] = {}
    columns: Tuple[Any, ...] = ()
    if source == "table":
        database, names, columns = random_cases.random_table(rng, is_weighted)
    else:
        database = with_exclusions(rng, random_cases.random_baskets(rng, is_weighted))
    if is_weighted and rng.random() < 0.5:
        factor = rng.choice((3, 10, 40))
        database = [(held, weight * factor) for held, weight in database]
    if source == "basket":
        database = random_cases.renumbered_by_occurrence(database)
    items = sorted(frozenset().union(*(held for held, _ in database)))
    if not items:
        return random_case(rng)
    if source == "basket":
        names = dict(zip(items, rng.sample(random_cases.ODD_NAMES, len(items))))
        if rng.random() < 0.5:
            names = {item: f"c{item % 3}=v{item}" for item in items}
    elif source == "database":
        names = random_cases.random_names(rng, items)
    transactions = sum(weight for _, weight in database)
    mining = Mining(1, 1, 1, 2)
    classes = tuple(random_cases.mined(database, mining)) if source == "database" else ()
    case = Case(source, classes, tuple(database), names, is_weighted, None, (), Request(), columns)
    knowledge = Knowledge((), transactions, names, database)
    request = ExclusionRequest(
        min_support=min(rng.choice((1, 1, 2, 3, 5)), transactions),
        alpha=rng.choice(("0.05", "0.05", "1", "1", "0.3", "0.01", "0.999", "0.000001")),
        max_items=rng.choice((2, 3, 3, 3)),
        patterns=random_patterns(rng, knowledge, items),
        top=rng.choice((0, 0, 0, 1, 3, 10)),
        min_confidence=rng.choice((0.8, 0.8, 0.5, 1.0, 0.1)))
    return ExclusionCase(case, request, rng.choice(FORMATS))


def random_patterns(rng: random.Random, knowledge: Knowledge, items: List[int]) -> Tuple[Tuple[str, str], ...]:
    return tuple((rng.choice(("with", "without")), random_cases.random_word(rng, knowledge, rng.choice(items)))
                 for _ in range(rng.choice((0, 0, 0, 1, 2))))


# --- what the formats tell -----------------------------------------------------------------------


def of_jsonl(text: str) -> List[Dict[str, Any]]:
    return [json.loads(line, parse_float=shortest_float) for line in text.splitlines()]


def of_delimited(text: str, delimiter: str) -> List[Dict[str, Any]]:
    """The rows as jsonl has them, but for the names, which are joined."""
    quoting = {"quoting": csv.QUOTE_NONE} if delimiter == "\t" else {}
    rows = []
    for row in csv.DictReader(io.StringIO(text), delimiter=delimiter, **quoting):
        told: Dict[str, Any] = {}
        for key, cell in row.items():
            if key == "items":
                told[key] = cell[1:] if re.match(r"'+[=+\-@]", cell) else cell
            elif key == "numbers":
                told[key] = [int(number) for number in cell.split(" ")]
            elif key in ("expected", "p") or "_" in key:
                told[key] = shortest_float(cell) if cell else None
            else:
                told[key] = int(cell)
        rows.append(told)
    return rows


def decimals(number: float, digits: int) -> str:
    return f"{number:.{digits}f}"


def distinct_text(number: Any, digits: int) -> str:
    """With so many decimals, but what is neither 0 nor 1 does not read as these."""
    text = decimals(float(number), digits)
    if number and text == decimals(0, digits):
        return f"{float(number):.2g}"
    if number == 1 or text != decimals(1, digits):
        return text
    return f"<{decimals(1 + 10 ** -digits, digits)}" if number > 1 else f">{decimals(1 - 10 ** -digits, digits)}"


def measure_text(number: float) -> str:
    if number >= 999.5:
        return f"{round(number):,}"
    if number and number < 0.001:
        return f"{number:.2g}"
    return distinct_text(number, 0 if number >= 99.95 else 1 if number >= 9.995 else 2 if number >= 1 else 3)


def percent_text(share: Fraction) -> str:
    percent = 100 * float(share)  # a half is where rounding puts it
    if share in (0, 1):
        return f"{int(share) * 100} %"
    if percent < 0.05 or percent >= 99.95:
        return "under 0.1 %" if percent < 0.05 else "over 99.9 %"
    return decimals(percent, 1 if percent < 9.95 or percent >= 99.5 else 0) + " %"


def joined(names: List[str]) -> str:
    return ", ".join(names[:-1]) + " and " + names[-1]


def words_of(exclusions: List[Exclusion], knowledge: Knowledge, request: ExclusionRequest) -> List[str]:
    """The sentences about exclusions, and the confidences of the rules that are told with them."""
    lines = []
    for number, each in enumerate(exclusions, 1):
        if len(each.items) == 3:
            what = "are seldom together, though each two of them are: all three"
        else:
            what = ("exclude" if 4 * each.together <= each.expected else "avoid") + " each other: together"
        times = (f"{each.together:,}" if each.together else "no") + " transaction" + ("s" if each.together > 1 else "")
        lines.append(f"{number}. {joined([knowledge.name(item) for item in each.items])} {what} in {times}, "
                     f"{measure_text(float(each.expected))} expected; one of them is in "
                     f"{percent_text(Fraction(each.covered, knowledge.transactions))}")
        sure = [value for value in exclusions_model.confidences(each, knowledge.transactions).values()
                if value is not None and value >= Fraction(str(request.min_confidence))]
        lines += [f"({distinct_text(value, 3)})" for value in sure]
    return lines


def words_told(text: str) -> List[str]:
    """The same of what was written."""
    lines = []
    for paragraph in text.split("\n\n") if text else []:
        sentence, rules = (re.sub(r"\n +", " ", paragraph.rstrip("\n")) + " ").split(" %", 1)
        lines.append(sentence + " %")
        lines += re.findall(r"\([<>]?\d(?:\.\d+)?(?:e-\d+)?\)", rules)
    return lines


def cells_of(exclusions: List[Exclusion], knowledge: Knowledge) -> List[List[str]]:
    """The cells of a table behind the names."""
    return [[str(number), f"{each.together:,}", measure_text(float(each.expected)),
             distinct_text(Fraction(each.covered, knowledge.transactions), 3), measure_text(each.p)]
            for number, each in enumerate(exclusions, 1)]


def cells_told(text: str) -> List[List[str]]:
    return [[line.split()[0], *line.split()[-4:]] for line in text.splitlines()[1:]]


# --- comparison ----------------------------------------------------------------------------------


def is_same(told: Any, expected: Any) -> bool:
    if isinstance(expected, float) and isinstance(told, (int, float)):
        return math.isclose(told, expected, rel_tol=TOLERANCE, abs_tol=1e-300)
    return type(told) is type(expected) and told == expected


def by_rough_ties(rows: List[Any], exclusions: List[Exclusion], key: Callable[[Any], Any]) -> List[Any]:
    """The rows, those at places where p is almost equal in an order of their own."""
    ordered: List[Any] = []
    start = 0
    for end in range(1, len(rows) + 1):
        if end == len(rows) or not is_same(exclusions[end].p, exclusions[end - 1].p):
            ordered += sorted(rows[start:end], key=key)
            start = end
    return ordered


def has_tie_at_top(result: Result, top: int) -> bool:
    """Whether rounding decides on what --top keeps."""
    return 0 < top < len(result.exclusions) and is_same(result.exclusions[top - 1].p, result.exclusions[top].p)


def difference_of_rows(told: List[Dict[str, Any]], expected: List[Dict[str, Any]],
                       exclusions: List[Exclusion]) -> Optional[str]:
    if [each["id"] for each in told] != list(range(1, len(expected) + 1)):
        return f"ids {[each['id'] for each in told]}, model 1 to {len(expected)}"
    told = by_rough_ties(told, exclusions, lambda each: each["numbers"])
    expected = by_rough_ties(expected, exclusions, lambda each: each["numbers"])
    for one, other in zip(told, expected):
        if list(one) != list(other):
            return f"keys {list(one)}, model {list(other)}"
        for key, value in other.items():
            if key != "id" and not is_same(one[key], value):
                return f"{key} is {one[key]!r}, model {value!r}\n  program: {one}\n  model:   {other}"
    return None


def difference_of_texts(told: List[Any], expected: List[Any]) -> Optional[str]:
    """Where p is almost equal, lines may change places; so they are compared as sets besides their numbers."""
    def unnumbered(lines: List[Any]) -> List[str]:
        return sorted(re.sub(r"^\d+\. ", "", each) if isinstance(each, str) else str(each[1:]) for each in lines)

    if len(told) != len(expected) or unnumbered(told) != unnumbered(expected):
        return f"told\n{told}\n, model\n{expected}"
    return None


def difference_of_output(case: ExclusionCase, output: str, exclusions: List[Exclusion],
                         knowledge: Knowledge) -> Optional[str]:
    if case.format == "words":
        return difference_of_texts(words_told(output), words_of(exclusions, knowledge, case.request))
    if case.format == "table":
        return difference_of_texts(cells_told(output), cells_of(exclusions, knowledge))
    expected = [exclusions_model.told(number, each, knowledge) for number, each in enumerate(exclusions, 1)]
    if case.format == "jsonl":
        return difference_of_rows(of_jsonl(output), expected, exclusions)
    expected = [{**each, "items": " and ".join(each["items"])} for each in expected]
    return difference_of_rows(of_delimited(output, "," if case.format == "csv" else "\t"), expected, exclusions)


def difference_of_accounting(text: str, result: Result, shown: int) -> Optional[str]:
    told = {"pairs": number_before("pairs?", text), "triples": 0, "shown": number_before("shown, by", text)}
    triples = re.search(r"^[\d,]+ pairs? and ([\d,]+) triples? of", text, re.MULTILINE)
    told["triples"] = int(triples[1].replace(",", "")) if triples else 0
    told.update({step: number_before(words, text) for step, words in STEP_WORDS.items()})
    expected = {"pairs": result.pairs, "triples": result.triples, "shown": shown,
                **{step: result.left_out[step] for step in STEP_WORDS}}
    return None if told == expected else f"accounting {told}, model {expected}; standard error:\n{text}"


def difference_of(program: Program, case: ExclusionCase) -> Optional[str]:
    """What differs first in a case."""
    database = case.case.database
    knowledge = Knowledge((), sum(weight for _, weight in database), case.case.names, database)
    result = exclusions_model.run(knowledge, case.request)
    if has_tie_at_top(result, case.request.top):
        return None
    shown = result.exclusions[:case.request.top or None]
    outcome: Outcome = program.run(case.case.files(), case.arguments())
    if outcome.status != (0 if shown else 1):
        return f"exit status {outcome.status}; standard error:\n{outcome.stderr}"
    return (difference_of_output(case, outcome.stdout, shown, knowledge)
            or difference_of_accounting(outcome.stderr, result, len(shown)))


def compare_chunk(program: str, seed: int, indexes: range) -> Tuple[int, Optional[str]]:
    """How many exclusions the model has, and the first difference in words."""
    found = 0
    with tempfile.TemporaryDirectory() as directory:
        runner = Program(program, Path(directory))
        for index in indexes:
            case = random_case(random.Random(f"{seed} {index}"))
            difference = difference_of(runner, case)
            if difference:
                files = "".join(f"--- {name}\n{text}" for name, text in case.case.files().items())
                return found, (f"case {index} of seed {seed}\n{files}--- korv-rules {shlex.join(case.arguments())}\n"
                               f"{difference}\n")
            found += 1
    return found, None


def main() -> int:
    """The command line."""
    parser = argparse.ArgumentParser(description="Compare korv-rules --exclusions with the model.")
    parser.add_argument("program")
    parser.add_argument("--cases", type=int, default=DEFAULT_CASES)
    parser.add_argument("--case", type=int, help="this one only")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=2)
    options = parser.parse_args()
    indexes = range(options.cases) if options.case is None else range(options.case, options.case + 1)
    program = str(Path(options.program).resolve())
    chunks = [(program, options.seed, indexes[start:start + CHUNK]) for start in range(0, len(indexes), CHUNK)]
    compared = 0
    with multiprocessing.Pool(options.jobs) as pool:
        for done, difference in pool.starmap(compare_chunk, chunks, chunksize=1):
            if difference:
                print(difference)
                return 1
            compared += done
    print(f"{compared} cases agree")
    return 0


if __name__ == "__main__":
    sys.exit(main())
