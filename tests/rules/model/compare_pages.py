#!/usr/bin/env python3
"""Compares the pages that korv-rules writes with the same rules in JSON Lines, and with the model.

    compare_pages.py KORV_RULES [--cases N] [--seed S] [--jobs J] [--case INDEX]

Of random inputs, every number of every rule is worked out from the page as docs/page.md says, with the measures of the
model; the classes of a page are those of the model with the neighbours that a plain search finds; its exclusions are
those of the model. What differs first is printed; the exit status is then 1.
"""

from __future__ import annotations

import argparse
import json
import multiprocessing
import random
import shlex
import sys
import tempfile
from dataclasses import replace
from pathlib import Path
from typing import Any, Dict, List, Optional, Tuple

import exclusions_model
import random_cases
import rules_model
from compare_rules import Program, difference_of_rules
from exclusions_model import ExclusionRequest
from page_reader import Page, Rule, Side, Table, expected_exclusion, is_close
from random_cases import Case
from rules_model import EquivalenceClass, Knowledge

DEFAULT_CASES = 500
CHUNK = 20
LEFT_OUT = "was built without zlib"


class PageCase:
    """An input with options, and the limit of the page."""

    def __init__(self, rng: random.Random) -> None:
        case = random_cases.random_case(rng)
        self.limit = rng.choice((200000, 200000, 1000000, 1, 2, 7))
        sort = case.request.sort
        if self.limit < 100 and sort in rules_model.MEASURES_WITH_ROUGH_TIES:
            sort = "leverage"
        # The limit decides on how many rules other transactions confirm.
        holdout = case.holdout if self.limit > 100 else None
        self.case = replace(case, request=replace(case.request, sort=sort), holdout=holdout)

    def arguments(self) -> List[str]:
        return self.case.arguments()[:-1] + ["html", "-o", "page.html", "--page-limit", str(self.limit)]


def all_tables(rule: Rule, transactions: int) -> List[rules_model.Table]:
    """The tables of a rule between its two ends."""
    steps = max(abs(low - high) for low, high in zip(rule.first, rule.second))
    return [rules_model.Table(*(low + (high - low) // max(steps, 1) * step
                                for low, high in zip(rule.first, rule.second)), transactions)
            for step in range(steps + 1)]


def told_rule(number: int, rule: Rule, page: Page, teller: rules_model.Steps) -> Dict[str, Any]:
    """A rule of a page as a line of JSON has it."""
    sides = [rules_model.Side(frozenset(side.items), side.is_negated) for side in (rule.premise, rule.conclusion)]
    no_pair: Any = None
    told = rules_model.Rule(rule.form or "", sides[0], sides[1], all_tables(rule, page.transactions), no_pair,
                            rule.wordings)
    if rule.holdout is None:
        return teller.told(number, told)
    both, premise, surprise = rule.holdout
    told.holdout = rules_model.Table(premise, 0, both, page.header["holdout"]["transactions"])
    return {**teller.told(number, told), "holdout_p": surprise}


def difference_of_told_rules(page: Page, lines: List[Dict[str, Any]], teller: rules_model.Steps) -> Optional[str]:
    if len(page.rules) != len(lines):
        return f"{len(page.rules)} rules, {len(lines)} in JSON"
    for number, (rule, line) in enumerate(zip(page.rules, lines), 1):
        told = told_rule(number, rule, page, teller)
        # A page rounds p, which is all of a rule that it has as a number with few digits.
        if "holdout_p" in told and is_close(told["holdout_p"], line["holdout_p"]):
            told["holdout_p"] = line["holdout_p"]
        difference = difference_of_rules(line, told)
        if difference:
            return f"{difference}\n  page: {told}\n  JSON: {line}"
        if rule.kind != line["kind"]:
            return f"the kind is {rule.kind}, in JSON {line['kind']}"
        for count, key in (("both", "support"), ("premise", "premise_count"), ("conclusion", "conclusion_count")):
            if rule.bounds(count) != (line[key], line[key + "_max"]):
                return f"{key} is {rule.bounds(count)}, in JSON {line}"
    return None


def difference_of_holdout(page: Page, case: Case) -> Optional[str]:
    told = page.header.get("holdout")
    if case.holdout is None:
        return None if told is None else f"other transactions {told} that there are none of"
    expected = {"transactions": sum(weight for _, weight in case.holdout), "alpha": float(case.request.alpha)}
    return None if told == expected else f"other transactions {told}, model {expected}"


def difference_of_sides(page: Page) -> Optional[str]:
    """Whether each side is in a rule, and tells no more than its rules do."""
    used = {(side.items, side.is_negated) for rule in page.rules for side in (rule.premise, rule.conclusion)}
    told = {(side.items, side.is_negated): side for side in page.sides}
    if used != set(told) or len(told) != len(page.sides):
        return f"sides {sorted(told)}, those of rules {sorted(used)}"
    for rule in page.rules:
        for side, (low, high) in ((rule.premise, rule.bounds("premise")), (rule.conclusion, rule.bounds("conclusion"))):
            if side.low < low or side.high > high:
                return f"{side} is wider than in {rule}"
    return None


def plain_neighbours(classes: List[EquivalenceClass]) -> Dict[Any, List[Any]]:
    """By closed itemset, the closed itemsets directly below."""
    below: Dict[Any, List[Any]] = {}
    for each in classes:
        subsets = [other.closed for other in classes if other.closed < each.closed]
        below[each.closed] = [one for one in subsets if not any(one < other for other in subsets)]
    return below


def difference_of_classes(page: Page, knowledge: Knowledge) -> Optional[str]:
    if page.header["lattice"] != {"classes": len(knowledge.classes), "shown": len(knowledge.classes), "why": ""}:
        return f"lattice {page.header['lattice']}, model {len(knowledge.classes)} classes"
    below = plain_neighbours(knowledge.classes)
    found = {each.items: each for each in page.classes}
    for each in knowledge.classes:
        told = found.get(each.closed)
        if told is None or told.count != each.support:
            return f"{each} is told as {told}"
        if {page.classes[lower].items for lower in told.lowers} != set(below[each.closed]):
            return f"below {sorted(each.closed)}: {told.lowers}, model {below[each.closed]}"
        essentials = [itemset for itemset in each.essentials if len(itemset) < len(each.closed)]
        if sorted(map(sorted, told.essentials)) not in (sorted(map(sorted, each.essentials)),
                                                        sorted(map(sorted, essentials))):
            return f"essentials of {sorted(each.closed)}: {told.essentials}, model {each.essentials}"
        if told.more_lowers or told.more_uppers:
            return f"{told} has neighbours that are left out"
    return None


def met_by_either(rule: Rule, table: Table, transactions: int) -> int:
    """How many transactions hold one of the items of both sides."""
    only_premise, only_conclusion = table.premise - table.both, table.conclusion - table.both
    cells = {(True, True): table.both, (True, False): only_premise, (False, True): only_conclusion,
             (False, False): transactions - only_premise - only_conclusion - table.both}
    return transactions - cells[(rule.premise.is_negated, rule.conclusion.is_negated)]


def difference_of_class_search(page: Page, knowledge: Knowledge, is_full: bool) -> Optional[str]:
    """Whether the class of each rule is found: that of its items, or of the rest of the column that words a side."""
    columns = [] if is_full else rules_model.Columns(knowledge).exhaustive

    def wordings(side: Side) -> List[frozenset[int]]:
        items = frozenset(side.items)
        return [items] + [column - items for column in columns if items < column]

    for rule in page.rules:
        held = met_by_either(rule, rule.first, page.transactions)
        if held != met_by_either(rule, rule.second, page.transactions):
            return f"the transactions of the class of {rule} are not known"
        found = [page.class_around(premise | conclusion, count)
                 for premise in wordings(rule.premise) for conclusion in wordings(rule.conclusion)
                 for count in counts_of_union(rule, premise, conclusion, page.transactions)]
        if not any(found):
            return f"no class of {rule}"
    return None


def counts_of_union(rule: Rule, premise: frozenset[int], conclusion: frozenset[int], transactions: int) -> List[int]:
    """How many transactions hold one of these items, which word the sides of the rule or the opposite of them."""
    turned = (premise != frozenset(rule.premise.items), conclusion != frozenset(rule.conclusion.items))
    counts = []
    for table in (rule.first, rule.second):
        side = (rule.premise.is_negated != turned[0], rule.conclusion.is_negated != turned[1])
        only = table.premise - table.both, table.conclusion - table.both
        cells = {(True, True): table.both, (True, False): only[0], (False, True): only[1],
                 (False, False): transactions - only[0] - only[1] - table.both}
        counts.append(transactions - cells[side])
    return counts


def difference_of_exclusions(page: Page, case: Case, knowledge: Knowledge) -> Optional[str]:
    told = page.header["exclusions"]
    if knowledge.database is None:
        return None if not told["known"] and told["shown"] == 0 else f"exclusions {told} without transactions"
    expected = exclusions_model.run(knowledge, ExclusionRequest(case.request.min_support, max_items=2)).exclusions
    if not told["known"] or told["shown"] != len(expected):
        return f"exclusions {told}, model {len(expected)}"
    rows = sorted(expected_exclusion(page, index) for index in range(len(expected)))
    for row, other in zip(rows, sorted(expected, key=lambda each: each.items)):
        model = (other.items, other.together, float(other.expected), other.covered, other.p)
        if row[0] != model[0] or not all(is_close(one, two) for one, two in zip(row[1:], model[1:])):
            return f"exclusion {row}, model {model}"
    return None


def difference_of_items(page: Page, knowledge: Knowledge) -> Optional[str]:
    for item, name in zip(page.items, page.names):
        if name != knowledge.name(item):
            return f"item {item} is {name!r}, model {knowledge.name(item)!r}"
        count = page.item_count(item)
        low, high = knowledge.bounds(frozenset((item,)))
        if count is not None and (count, count) != (low, high):
            return f"item {item} is in {count}, model {low} to {high}"
        if knowledge.database is not None and count is None:
            return f"the count of item {item} is not told"
    return None


def difference_of(program: Program, page_case: PageCase) -> Optional[str]:
    """What differs first in a case."""
    case = page_case.case
    lines = program.run(case.files(), case.arguments())
    outcome = program.run(case.files(), page_case.arguments())
    if outcome.status not in (0, 1) or outcome.status != lines.status:
        return f"exit statuses {lines.status} and {outcome.status}; standard error:\n{outcome.stderr}"
    page = Page((program.directory / "page.html").read_text(encoding="utf-8"))
    rules = [json.loads(line) for line in lines.stdout.splitlines()]
    shown = rules[:page_case.limit]
    beyond = len(rules) - len(shown)
    told = page.header["rules"]
    if (told["count"], told["limit"]) != (len(shown), page_case.limit):
        return f"rules {told}, {len(rules)} in JSON"
    if beyond and (told["left_out_by_limit"] < beyond or "--page-limit" not in told["limit_option"]
                   or told["limit_option"] not in outcome.stderr):
        return f"rules {told}, {beyond} beyond the limit; standard error:\n{outcome.stderr}"
    knowledge = case.knowledge()
    teller = rules_model.Steps(knowledge, case.request)
    return (difference_of_told_rules(page, shown, teller) or difference_of_holdout(page, case)
            or difference_of_sides(page)
            or difference_of_items(page, knowledge) or difference_of_classes(page, knowledge)
            or difference_of_class_search(page, knowledge, case.request.wording == "full")
            or difference_of_exclusions(page, case, knowledge))


def compare_chunk(program: str, seed: int, indexes: range) -> Tuple[int, Optional[str]]:
    """How many cases agree, and the first difference in words."""
    done = 0
    with tempfile.TemporaryDirectory() as directory:
        runner = Program(program, Path(directory))
        if LEFT_OUT in runner.run({}, ["none", "-o", "none.html"]).stderr:
            return 0, None
        for index in indexes:
            case = PageCase(random.Random(f"{seed} {index}"))
            difference = difference_of(runner, case)
            if difference:
                files = "".join(f"--- {name}\n{text}" for name, text in case.case.files().items())
                return done, (f"case {index} of seed {seed}\n{files}--- korv-rules {shlex.join(case.arguments())}\n"
                              f"{difference}\n")
            done += 1
    return done, None


def main() -> int:
    """The command line."""
    parser = argparse.ArgumentParser(description="Compare the pages of korv-rules with JSON Lines and the model.")
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
