#!/usr/bin/env python3
"""A plain model of korv-rules, for its tests: from classes to the rules that are told, every step the slow way.

A support that is not known is a range, and whatever depends on it is computed for every number of the range. All
comparisons are between integers or fractions; only what is told at the end is a float.
"""

from __future__ import annotations

import fnmatch
import math
import re
import sys
from collections import defaultdict
from dataclasses import dataclass, field
from fractions import Fraction
from functools import lru_cache
from pathlib import Path
from typing import Any, Callable, Dict, FrozenSet, List, NamedTuple, Optional, Sequence, Tuple, Union

sys.path.append(str(Path(__file__).resolve().parents[2] / "model"))
import korv_model  # noqa: E402

Itemset = FrozenSet[int]
Transaction = Tuple[Itemset, int]  # its items, and how often it occurs


# --- what is known -------------------------------------------------------------------------------


class EquivalenceClass(NamedTuple):
    """A closed itemset, its disjunctive support, and its essential itemsets except one that is as large."""

    closed: Itemset
    support: int
    essentials: Tuple[Itemset, ...]

    @property
    def keys(self) -> Tuple[Itemset, ...]:
        """The itemsets within which a support is that of the class."""
        return self.essentials or (self.closed,)


def in_order(itemset: Itemset) -> Tuple[int, ...]:
    """The items, ascending."""
    return tuple(sorted(itemset))


def shortest(itemsets: Sequence[Itemset]) -> Itemset:
    """The shortest itemset, of these the lexicographically smallest."""
    return min(itemsets, key=lambda itemset: (len(itemset), in_order(itemset)))


class Knowledge:
    """Classes, the number of transactions, names of items, and the transactions themselves where they are at hand.

    `holdout`: other transactions, which confirm rules."""

    def __init__(self, classes: Sequence[EquivalenceClass], transactions: int, names: Optional[Dict[int, str]] = None,
                 database: Optional[Sequence[Transaction]] = None,
                 holdout: Optional[Sequence[Transaction]] = None) -> None:
        self.holdout = holdout
        self.classes = sorted(classes, key=lambda each: in_order(each.closed))
        self.transactions = transactions
        self.names = names or {}
        self.database = database
        self.class_of = {each.closed: each for each in classes}
        self.keys = [(key, each.support) for each in self.classes for key in each.keys]
        self.known_bounds: Dict[Itemset, Tuple[int, int]] = {}

    def bounds(self, itemset: Itemset) -> Tuple[int, int]:
        """The smallest and the largest support that an itemset can have."""
        if itemset not in self.known_bounds:
            self.known_bounds[itemset] = self.find_bounds(itemset)
        return self.known_bounds[itemset]

    def find_bounds(self, itemset: Itemset) -> Tuple[int, int]:
        if self.database is not None:
            count = sum(weight for items, weight in self.database if items & itemset)
            return count, count
        lower = max((support for key, support in self.keys if key <= itemset), default=0)
        upper = min((each.support for each in self.classes if itemset <= each.closed), default=self.transactions)
        return lower, upper

    def name(self, item: int) -> str:
        """The name of an item, or its number."""
        return self.names.get(item, str(item))

    def successors(self) -> List[Tuple[EquivalenceClass, List[EquivalenceClass]]]:
        """Each class with its immediate closed proper subsets, in the orders of the lattice."""
        by_items = {in_order(each.closed): each for each in self.classes}
        entries = korv_model.load_entries({items: korv_model.ClassData() for items in by_items})
        if entries:
            korv_model.LatticeBuilder(entries).build()
        return [(by_items[entry.itemset], [by_items[items] for items in entry.successors]) for entry in entries]


class Columns:
    """Columns of a table, as the names of items tell: column=value, at least two of a column."""

    def __init__(self, knowledge: Knowledge) -> None:
        by_name: Dict[str, List[int]] = defaultdict(list)
        for item, name in knowledge.names.items():
            if "=" in name:
                by_name[name.split("=")[0]].append(item)
        self.columns = {name: frozenset(items) for name, items in by_name.items() if len(items) > 1}
        self.exclusive = [items for items in self.columns.values() if is_exclusive(knowledge, items)]
        self.exhaustive = [items for items in self.exclusive if is_exhaustive(knowledge, items)]

    def rest(self, items: Itemset) -> Optional[Itemset]:
        """The rest of the exhaustive column that all these items are in, when there is one."""
        for column in self.exhaustive:
            if items < column:
                return column - items
        return None


def is_exclusive(knowledge: Knowledge, items: Itemset) -> bool:
    """Whether nothing tells that two of the items meet."""
    return not any(knowledge.bounds(frozenset((one, other)))[1]
                   < knowledge.bounds(frozenset((one,)))[0] + knowledge.bounds(frozenset((other,)))[0]
                   for one in items for other in items if one < other)


def is_exhaustive(knowledge: Knowledge, items: Itemset) -> bool:
    """Whether the supports of the items, which exclude each other, are known and add up to all transactions."""
    bounds = [knowledge.bounds(frozenset((item,))) for item in items]
    return all(low == high for low, high in bounds) and sum(low for low, _ in bounds) == knowledge.transactions


# --- pairs and their eight rules -----------------------------------------------------------------


class Pair(NamedTuple):
    """A base and the difference between it and a class."""

    place: int  # the second digit of its forms: 1 within a node, 2 and 3 between nodes
    base: Itemset
    base_class: EquivalenceClass
    difference: Itemset
    support: int  # of both together
    possible: range  # supports of the difference


def all_pairs(knowledge: Knowledge) -> List[Pair]:
    """All pairs, each once, in the order of korv."""
    pairs: Dict[FrozenSet[Itemset], Pair] = {}

    def add(place: int, base: Itemset, base_class: EquivalenceClass, whole: EquivalenceClass) -> None:
        difference = whole.closed - base
        low, high = knowledge.bounds(difference)
        low = max(low, whole.support - base_class.support)
        high = min(high, whole.support)
        pairs.setdefault(frozenset((base, difference)),
                         Pair(place, base, base_class, difference, whole.support, range(low, high + 1)))

    for node in knowledge.classes:
        for essential in node.essentials:
            add(1, essential, node, node)
    for node, successors in knowledge.successors():
        for successor in successors:
            add(3, successor.closed, successor, node)
            for essential in successor.essentials:
                add(2, essential, successor, node)
    return list(pairs.values())


class Side(NamedTuple):
    """One side of a rule: a transaction holds one of the items or, negated, none."""

    items: Itemset
    negated: bool


class Table(NamedTuple):
    """How many transactions meet the premise, the conclusion, both, and how many there are."""

    premise: int
    conclusion: int
    both: int
    all: int


# The rules of a pair in the order of korv: the form (x is the place), whether the base is the premise, whether premise
# and conclusion are negated.
RULES_OF_A_PAIR = (("1x2", False, False, False), ("1x1", True, False, False),
                   ("2x1", True, True, True), ("2x2", False, True, True), ("3x1", True, False, True),
                   ("4x2", False, True, False), ("4x1", True, True, False), ("3x2", False, False, True))
# At this place, the two directions have each other's label.
EXCHANGED = {"R421": "R422", "R422": "R421"}


@dataclass
class Rule:
    """A rule, with one table for each support that the difference of its pair may have."""

    form: str
    premise: Side
    conclusion: Side
    tables: List[Table]
    pair: Pair
    wordings: int = 1
    measured: Dict[str, Tuple[Any, Any]] = field(default_factory=dict)
    holdout: Table = Table(0, 0, 0, 1)  # in other transactions
    corrected: Fraction = Fraction(1)  # the probability of that by chance, for all rules that are counted there

    @property
    def group(self) -> Tuple[bool, bool]:
        return self.premise.negated, self.conclusion.negated

    @property
    def items(self) -> int:
        """How many items both sides have."""
        return len(self.premise.items) + len(self.conclusion.items)

    @property
    def is_exact(self) -> bool:
        return all(table.both == table.premise for table in self.tables)

    @property
    def kind(self) -> str:
        first, last = self.tables[0], self.tables[-1]
        if (first.both, first.premise) != (last.both, last.premise):
            return "bounded"
        return "exact" if first.both == first.premise != 0 else "approximative"

    def bounds(self, measure: str) -> Tuple[Any, Any]:
        """The smallest and the largest value of a measure, exact; None, both, where no value is defined."""
        if measure not in self.measured:
            values = [value for value in map(MEASURES[measure].exact, self.tables) if value is not None]
            self.measured[measure] = (min(values), max(values)) if values else (None, None)
        return self.measured[measure]


def label(place: int, pattern: str) -> str:
    """The label of a form at a place."""
    text = "R" + pattern.replace("x", str(place))
    return EXCHANGED.get(text, text)


def counted(rule: Rule, database: Sequence[Transaction]) -> Table:
    """The table of a rule in transactions."""
    lines = [(bool(items & rule.premise.items) != rule.premise.negated,
              bool(items & rule.conclusion.items) != rule.conclusion.negated, weight) for items, weight in database]
    return Table(sum(weight for premise, _, weight in lines if premise),
                 sum(weight for _, conclusion, weight in lines if conclusion),
                 sum(weight for premise, conclusion, weight in lines if premise and conclusion),
                 sum(weight for _, _, weight in lines))


def rules_of(pair: Pair, transactions: int) -> List[Rule]:
    """The eight rules of a pair in the order of korv."""
    base_support = pair.base_class.support
    rules = []
    for pattern, base_first, premise_negated, conclusion_negated in RULES_OF_A_PAIR:
        base_negated, difference_negated = ((premise_negated, conclusion_negated) if base_first
                                            else (conclusion_negated, premise_negated))
        base, difference = Side(pair.base, base_negated), Side(pair.difference, difference_negated)
        tables = []
        for r in pair.possible:
            cells = {(False, False): base_support + r - pair.support, (False, True): pair.support - r,
                     (True, False): pair.support - base_support, (True, True): transactions - pair.support}
            meet_base = transactions - base_support if base_negated else base_support
            meet_difference = transactions - r if difference_negated else r
            both = cells[base_negated, difference_negated]
            if base_first:
                tables.append(Table(meet_base, meet_difference, both, transactions))
            else:
                tables.append(Table(meet_difference, meet_base, both, transactions))
        rules.append(Rule(label(pair.place, pattern), base if base_first else difference,
                          difference if base_first else base, tables, pair))
    return rules


# --- measures ------------------------------------------------------------------------------------

Exact = Union[Fraction, float, None]  # a float only where it is infinite


def quotient(numerator: int, denominator: int) -> Exact:
    """A fraction; infinite, or undefined, where the denominator is 0."""
    if denominator != 0:
        return Fraction(numerator, denominator)
    return None if numerator == 0 else math.copysign(math.inf, numerator)


def certainty_factor(t: Table) -> Exact:
    added = t.both * t.all - t.premise * t.conclusion
    if added > 0:
        return quotient(added, t.premise * (t.all - t.conclusion))
    return quotient(added, t.premise * t.conclusion) if added < 0 else Fraction(0)


def zhang(t: Table) -> Exact:
    return quotient(t.both * t.all - t.premise * t.conclusion,
                    max(t.both * (t.all - t.premise), t.premise * (t.conclusion - t.both)))


def squared_phi(t: Table) -> Exact:
    """The square of phi, with the sign of phi."""
    added = t.both * t.all - t.premise * t.conclusion
    return quotient(added * abs(added), t.premise * (t.all - t.premise) * t.conclusion * (t.all - t.conclusion))


def kappa(t: Table) -> Exact:
    agreed = t.both + (t.all - t.premise - t.conclusion + t.both)
    by_chance = t.premise * t.conclusion + (t.all - t.premise) * (t.all - t.conclusion)
    return quotient(agreed * t.all - by_chance, t.all * t.all - by_chance)


def cross_products(t: Table) -> Tuple[int, int]:
    """Of the fourfold table: both times neither, and premise alone times conclusion alone."""
    return (t.both * (t.all - t.premise - t.conclusion + t.both), (t.premise - t.both) * (t.conclusion - t.both))


def yule_q(t: Table) -> Exact:
    same, different = cross_products(t)
    return quotient(same - different, same + different)


def chi2(t: Table) -> Exact:
    same, different = cross_products(t)
    return quotient(t.all * (same - different) ** 2,
                    t.premise * (t.all - t.premise) * t.conclusion * (t.all - t.conclusion))


@lru_cache(maxsize=None)
def choose(n: int, k: int) -> int:
    return math.factorial(n) // (math.factorial(k) * math.factorial(n - k))


@lru_cache(maxsize=100_000)
def chance(t: Table) -> Fraction:
    """The probability that chance alone brings premise and conclusion together at least so often."""
    ways = sum(choose(t.premise, both) * choose(t.all - t.premise, t.conclusion - both)
               for both in range(t.both, min(t.premise, t.conclusion) + 1)
               if t.conclusion - both <= t.all - t.premise)
    return Fraction(ways, choose(t.all, t.conclusion))


def as_float(value: Exact) -> float:
    return float(value) if value is not None else math.nan


def signed_root(value: Exact) -> float:
    return math.copysign(math.sqrt(abs(as_float(value))), as_float(value))


def minus_log10(minus_probability: Exact) -> float:
    """-log10 of a probability, from its negative; precise also near 1."""
    assert isinstance(minus_probability, Fraction)
    probability = -minus_probability
    if probability > Fraction(1, 2):
        return -math.log1p(-float(1 - probability)) / math.log(10)
    return math.log10(probability.denominator) - math.log10(probability.numerator)


@dataclass(frozen=True)
class Measure:
    """An exact value by which rules compare as by the measure, and what is told of it."""

    exact: Callable[[Table], Exact]
    told: Callable[[Exact], float] = as_float


MEASURES: Dict[str, Measure] = {
    "support": Measure(lambda t: Fraction(t.both)),
    "coverage": Measure(lambda t: Fraction(t.premise, t.all)),
    "prevalence": Measure(lambda t: Fraction(t.conclusion, t.all)),
    "confidence": Measure(lambda t: quotient(t.both, t.premise)),
    "recall": Measure(lambda t: quotient(t.both, t.conclusion)),
    "lift": Measure(lambda t: quotient(t.both * t.all, t.premise * t.conclusion)),
    "leverage": Measure(lambda t: Fraction(t.both * t.all - t.premise * t.conclusion, t.all * t.all)),
    "added_value": Measure(lambda t: quotient(t.both * t.all - t.premise * t.conclusion, t.premise * t.all)),
    "conviction": Measure(lambda t: quotient(t.premise * (t.all - t.conclusion), t.all * (t.premise - t.both))),
    "certainty": Measure(certainty_factor),
    "zhang": Measure(zhang),
    "phi": Measure(squared_phi, signed_root),
    "kappa": Measure(kappa),
    "yule_q": Measure(yule_q),
    "odds_ratio": Measure(lambda t: quotient(*cross_products(t))),
    "relative_risk": Measure(lambda t: quotient(t.both * (t.all - t.premise), t.premise * (t.conclusion - t.both))),
    "jaccard": Measure(lambda t: quotient(t.both, t.premise + t.conclusion - t.both)),
    "cosine": Measure(lambda t: quotient(t.both ** 2, t.premise * t.conclusion), signed_root),
    "kulczynski": Measure(lambda t: quotient(t.both * (t.premise + t.conclusion), 2 * t.premise * t.conclusion)),
    "imbalance": Measure(lambda t: quotient(abs(t.premise - t.conclusion), t.premise + t.conclusion - t.both)),
    "laplace": Measure(lambda t: Fraction(t.both + 1, t.premise + 2)),
    "chi2": Measure(chi2),
    "p": Measure(lambda t: -chance(t), minus_log10),
}

# Computed by logarithms elsewhere, so that equal values may differ in the last digits.
MEASURES_WITH_ROUGH_TIES = ("p",)


# --- what is asked -------------------------------------------------------------------------------

# A condition: ("lift", ">", 1.2), ("and", one, other), ("or", one, other) or ("not", one).
Condition = Tuple[Any, ...]


@dataclass(frozen=True)
class Request:
    """Options of the command line that decide on rules. Patterns by the name of their option, without hyphens."""

    min_support: int = 1
    min_confidence: float = 0.8
    min_lift: Optional[float] = None
    forms: Tuple[str, ...] = ()
    kinds: Tuple[str, ...] = ()
    wording: str = "shortest"
    patterns: Tuple[Tuple[str, str], ...] = ()
    max_items: int = 6
    max_if: int = 0
    max_then: int = 0
    where: Optional[Condition] = None
    test: bool = False
    alpha: str = "0.05"
    readings: str = "one"
    prune: str = "productive"
    sort: str = "leverage"
    ascending: bool = False
    per_conclusion: int = 0
    top: int = 0
    measures: Tuple[str, ...] = ()


FORM_WORDS = {"or-or": "1", "none-none": "2", "or-none": "3", "none-or": "4"}


def is_form(form: str, wanted: str) -> bool:
    """Whether a label is wanted by a label, the number of a group, or words."""
    return form == wanted or form[1] == FORM_WORDS.get(wanted, wanted)


def matches(knowledge: Knowledge, item: int, pattern: str) -> bool:
    """Whether an item is one of those that a pattern stands for."""
    return any(matches_word(knowledge, item, word) for word in pattern.split("|"))


def matches_word(knowledge: Knowledge, item: int, word: str) -> bool:
    if word.startswith("#"):
        return item == int(word[1:])
    if len(word) > 1 and word.startswith("/") and word.endswith("/"):
        return re.search(word[1:-1], knowledge.name(item)) is not None
    return fnmatch.fnmatchcase(knowledge.name(item), word)


def named_items(side: Side, exhaustive: Sequence[Itemset]) -> Itemset:
    """The items that a side names in words: of each column, its own or the rest, if these are fewer or, else, plain."""
    named = side.items
    for column in exhaustive:
        part = side.items & column
        rest = column - part
        if part and rest and (len(rest) < len(part) or (len(rest) == len(part) and side.negated)):
            named = named - part | rest
    return named


def is_asked_for(knowledge: Knowledge, rule: Rule, patterns: Sequence[Tuple[str, str]],
                 exhaustive: Sequence[Itemset]) -> bool:
    """Whether the sides of a rule name the items that all patterns want, and none that they do not."""
    premise, conclusion = named_items(rule.premise, exhaustive), named_items(rule.conclusion, exhaustive)
    places = {"with": premise | conclusion, "if": premise, "then": conclusion}
    places.update({"without": places["with"], "if-not": places["if"], "then-not": places["then"]})
    for option, pattern in patterns:
        found = any(matches(knowledge, item, pattern) for item in places[option])
        if found != (option in ("with", "if", "then")):
            return False
    return True


class Truth(NamedTuple):
    """What is certain of a condition."""

    holds: bool
    fails: bool


def compared(measure: str, value: Exact, number: float) -> int:
    """Whether a value of a measure is below (-1), equal to (0) or above (1) a number."""
    told = MEASURES[measure].told(value)
    return (told > number) - (told < number)


def truth(rule: Rule, condition: Condition) -> Truth:
    """Whether a condition holds, or fails, for every support that is possible."""
    if condition[0] == "not":
        inner = truth(rule, condition[1])
        return Truth(inner.fails, inner.holds)
    if condition[0] in ("and", "or"):
        one, other = truth(rule, condition[1]), truth(rule, condition[2])
        if condition[0] == "and":
            return Truth(one.holds and other.holds, one.fails or other.fails)
        return Truth(one.holds or other.holds, one.fails and other.fails)
    measure, operator, number = condition
    low, high = rule.bounds(measure)
    if low is None:
        return Truth(False, False)
    least, most = compared(measure, low, number), compared(measure, high, number)
    return {">": Truth(least > 0, most <= 0), ">=": Truth(least >= 0, most < 0),
            "<": Truth(most < 0, least >= 0), "<=": Truth(most <= 0, least > 0)}[operator]


# --- the steps -----------------------------------------------------------------------------------

STEPS = ("chance", "forms", "kinds", "columns", "items", "size", "where", "one_column", "insignificant", "same_fact",
         "reading", "turned_round", "weaker", "unproductive", "per_conclusion", "top", "not_confirmed")


@dataclass
class Result:
    """Rules as they are told, and how many each step left out."""

    rules: List[Dict[str, Any]]
    derived: int
    left_out: Dict[str, int]
    sorted_by: str
    values: List[Any]  # that the rules are sorted by, as they would be told


class Steps:
    """The steps one after the other."""

    def __init__(self, knowledge: Knowledge, request: Request) -> None:
        self.knowledge = knowledge
        self.request = request
        self.columns = Columns(knowledge)
        self.left_out = dict.fromkeys(STEPS, 0)

    def run(self) -> Result:
        request = self.request
        rules = self.derived()
        derived = len(rules)
        rules = self.keep("chance", rules, self.is_beyond_chance)
        rules = self.keep("forms", rules, lambda rule: not request.forms or any(
            is_form(rule.form, form) for form in request.forms))
        rules = self.keep("kinds", rules, lambda rule: not request.kinds or rule.kind in request.kinds)
        if request.wording == "shortest":
            for rule in rules:
                self.shorten(rule)
            rules = self.keep("columns", rules, lambda rule: not self.is_true_by_columns(rule))
            for rule in rules:
                rule.premise, rule.conclusion = self.folded(rule.premise), self.folded(rule.conclusion)
        exhaustive = self.columns.exhaustive if request.wording == "shortest" else []
        rules = self.keep("items", rules, lambda rule: is_asked_for(self.knowledge, rule, request.patterns, exhaustive))
        rules = self.keep("size", rules, self.is_short)
        rules = self.keep("where", rules, lambda rule: not request.where or truth(rule, request.where).holds)
        if request.test:
            rules = self.keep("one_column", rules, lambda rule: not self.has_a_column_on_both_sides(rule))
            rules = self.keep("insignificant", rules, self.is_significant)
        rules = self.merged(rules)
        if request.readings == "one":
            rules = self.one_reading(rules)
        rules = self.pruned(rules)
        rules.sort(key=self.place)
        rules = self.for_each_conclusion(rules)
        if request.top:
            self.left_out["top"] = max(len(rules) - request.top, 0)
            rules = rules[:request.top]
        if self.knowledge.holdout is not None:
            rules = self.confirmed(rules, self.knowledge.holdout)
        end = 1 if request.ascending else 0
        values = [told_number(request.sort, rule.bounds(request.sort)[end]) for rule in rules]
        return Result([self.told(number, rule) for number, rule in enumerate(rules, 1)], derived, self.left_out,
                      request.sort, values)

    def keep(self, step: str, rules: List[Rule], is_kept: Callable[[Rule], bool]) -> List[Rule]:
        kept = [rule for rule in rules if is_kept(rule)]
        self.left_out[step] += len(rules) - len(kept)
        return kept

    # Which rules there are.

    def derived(self) -> List[Rule]:
        """The rules that have the minimum support and confidence for certain."""
        return [rule for pair in all_pairs(self.knowledge) for rule in rules_of(pair, self.knowledge.transactions)
                if all(table.both >= self.request.min_support and table.premise > 0
                       and table.both / table.premise >= self.request.min_confidence for table in rule.tables)]

    def is_beyond_chance(self, rule: Rule) -> bool:
        if self.request.min_lift == 0:
            return True
        if self.request.min_lift is None:
            return all(table.both * table.all > table.premise * table.conclusion for table in rule.tables)
        low = rule.bounds("lift")[0]
        return low is not None and float(low) >= self.request.min_lift

    # How sides are worded.

    def shorten(self, rule: Rule) -> None:
        """Words both sides by the shortest itemsets that say the same and have no item in common."""
        difference = self.worded_difference(rule.pair)
        words = {rule.pair.base: shortest([key for key in rule.pair.base_class.keys if not key & difference]),
                 rule.pair.difference: difference}
        rule.premise = Side(words[rule.premise.items], rule.premise.negated)
        rule.conclusion = Side(words[rule.conclusion.items], rule.conclusion.negated)

    def worded_difference(self, pair: Pair) -> Itemset:
        if len(pair.possible) > 1:
            return pair.difference
        return shortest([key for key, support in self.knowledge.keys
                         if support == pair.possible[0] and key <= pair.difference] or [pair.difference])

    def is_true_by_columns(self, rule: Rule) -> bool:
        """Whether a rule, as worded but not folded, says only how a table is made."""
        premise, conclusion = rule.premise.items, rule.conclusion.items
        if rule.group == (False, True):
            return not premise & conclusion and any(
                premise | conclusion <= column for column in self.columns.exclusive)
        if rule.group == (True, False):
            return any(column <= premise | conclusion for column in self.columns.exhaustive)
        return False

    def folded(self, side: Side) -> Side:
        """The side worded by the rest of an exhaustive column where that is shorter, or as short and plain."""
        rest = self.columns.rest(side.items)
        if rest is None or (len(rest), not side.negated) > (len(side.items), side.negated):
            return side
        return Side(rest, not side.negated)

    # Which rules are wanted.

    def is_short(self, rule: Rule) -> bool:
        limits = ((rule.items, self.request.max_items), (len(rule.premise.items), self.request.max_if),
                  (len(rule.conclusion.items), self.request.max_then))
        return all(limit == 0 or size <= limit for size, limit in limits)

    # Which rules are more than chance.

    def has_a_column_on_both_sides(self, rule: Rule) -> bool:
        return any(rule.premise.items & column and rule.conclusion.items & column for column in self.columns.exclusive)

    def is_significant(self, rule: Rule) -> bool:
        """Whether even the worst of the tables is one that chance would hardly bring."""
        items = self.items_of_sides()
        largest = self.request.max_items or items
        possible = sum(4 * choose(items, size) * choose(items - size, rule.items - size)
                       for size in range(1, rule.items) if rule.items <= items)
        level = Fraction(self.request.alpha) / (largest - 1) / possible
        return all(chance(table) <= level for table in rule.tables)

    def items_of_sides(self) -> int:
        """How many items sides can name."""
        in_columns = [items for items in self.columns.columns.values()]
        return len(frozenset().union(*in_columns, *(each.closed for each in self.knowledge.classes)))

    def confirmed(self, rules: List[Rule], holdout: Sequence[Transaction]) -> List[Rule]:
        """The rules that other transactions confirm, by Holm's method: the smallest p first, until one is too large."""
        for rule in rules:
            rule.holdout = counted(rule, holdout)
        by_chance = sorted(rules, key=lambda rule: chance(rule.holdout))
        largest = Fraction(0)
        for tried, rule in enumerate(by_chance):
            largest = min(max(largest, (len(rules) - tried) * chance(rule.holdout)), Fraction(1))
            rule.corrected = largest
        kept = [rule for rule in rules if rule.corrected <= Fraction(self.request.alpha)]
        self.left_out["not_confirmed"] = len(rules) - len(kept)
        return kept

    # One of several.

    def merged(self, rules: List[Rule]) -> List[Rule]:
        """One rule for each fact: the first, with counts that are known where one of its wordings has such counts."""
        first: Dict[Tuple[Side, Side], Rule] = {}
        for rule in rules:
            one = first.setdefault((rule.premise, rule.conclusion), rule)
            if one is rule:
                continue
            one.wordings += 1
            if len(one.tables) > 1 and len(rule.tables) == 1:
                one.tables = rule.tables
                one.measured = {}
        self.left_out["same_fact"] = len(rules) - len(first)
        return list(first.values())

    def one_reading(self, rules: List[Rule]) -> List[Rule]:
        """The best rule of each association."""
        readings: Dict[Any, List[Rule]] = defaultdict(list)
        for rule in rules:
            one, one_negated = self.canonical(rule.premise)
            other, other_negated = self.canonical(rule.conclusion)
            readings[frozenset((one, other)), one_negated == other_negated].append(rule)
        best = [min(each, key=goodness_of_reading) for each in readings.values()]
        self.left_out["reading"] = len(rules) - len(best)
        return best

    def canonical(self, side: Side) -> Side:
        """One side for a side and for its complement within an exhaustive column, negated or not."""
        rest = self.columns.rest(side.items) if self.request.wording == "shortest" else None
        if rest is not None and (len(rest), in_order(rest)) < (len(side.items), in_order(side.items)):
            return Side(rest, not side.negated)
        return side

    # Pruning.

    def pruned(self, rules: List[Rule]) -> List[Rule]:
        prune = self.request.prune
        if prune == "none":
            return rules
        kept = []
        for rule in rules:
            step = self.reason_to_prune(rule, rules, prune == "same")
            if step is None:
                kept.append(rule)
            else:
                self.left_out[step] += 1
        return self.productive(kept) if prune == "productive" else kept

    def reason_to_prune(self, rule: Rule, rules: List[Rule], only_same: bool) -> Optional[str]:
        """The step that leaves a rule out; None for one that stays."""
        others = [other for other in rules if other is not rule]
        if rule.is_exact:
            better = [other for other in others
                      if other.is_exact and goodness_of_statement(other) < goodness_of_statement(rule)]
            if any(is_contrapositive(rule, other) for other in better):
                return "turned_round"
            if not only_same and any(implies(rule, other) and implies(other, rule) for other in better):
                return "weaker"
        for other in others:
            if only_same:
                if other.conclusion == rule.conclusion and dominates(other, rule):
                    return "weaker"
            elif dominates(other, rule):
                return "weaker"
            elif other.is_exact and rule.is_exact and implies(other, rule) and not implies(rule, other):
                return "weaker"
        return None

    def productive(self, rules: List[Rule]) -> List[Rule]:
        """The rules that gain at least one transaction over each shorter one, beyond what chance gives."""
        kept = [rule for rule in rules
                if all(gain(rule, other) >= 1 for other in rules if self.lies_within_in_words(other, rule))]
        self.left_out["unproductive"] += len(rules) - len(kept)
        return kept

    def lies_within_in_words(self, rule: Rule, other: Rule) -> bool:
        """Whether a rule lies within a longer one; or does by the rest of a column on either side, and the longer one
        has but further alternatives."""
        return lies_within((rule.premise, rule.conclusion), other, is_within) or any(
            lies_within((premise, conclusion), other, lacks_alternatives)
            for premise in self.ways_to_word(rule.premise) for conclusion in self.ways_to_word(rule.conclusion)
            if (premise, conclusion) != (rule.premise, rule.conclusion))

    def ways_to_word(self, side: Side) -> List[Side]:
        rest = self.columns.rest(side.items) if self.request.wording == "shortest" else None
        return [side] if rest is None else [side, Side(rest, not side.negated)]

    # Order.

    def place(self, rule: Rule) -> Tuple[Any, ...]:
        """What rules are sorted by."""
        low, high = rule.bounds(self.request.sort)
        if low is None:
            value: Tuple[Any, ...] = (1, 0)
        else:
            value = (0, high if self.request.ascending else -low)
        return (*value, -rule.bounds("support")[0], rule.items, in_order(rule.premise.items), rule.premise.negated,
                in_order(rule.conclusion.items), rule.conclusion.negated)

    def for_each_conclusion(self, rules: List[Rule]) -> List[Rule]:
        if not self.request.per_conclusion:
            return rules
        seen: Dict[Side, int] = defaultdict(int)
        kept = []
        for rule in rules:
            seen[rule.conclusion] += 1
            if seen[rule.conclusion] <= self.request.per_conclusion:
                kept.append(rule)
        self.left_out["per_conclusion"] = len(rules) - len(kept)
        return kept

    # Telling.

    def told(self, number: int, rule: Rule) -> Dict[str, Any]:
        """A rule as a line of JSON has it."""
        told: Dict[str, Any] = {"id": number, "form": rule.form, "kind": rule.kind,
                                "premise": self.told_side(rule.premise),
                                "conclusion": self.told_side(rule.conclusion)}

        def add(name: str, low: Any, high: Any) -> None:
            told.update({name: low, name + "_max": high})

        def add_measure(name: str) -> None:
            low, high = rule.bounds(name)
            add(name, told_number(name, low), told_number(name, high))

        supports = [table.both for table in rule.tables]
        add("support", min(supports), max(supports))
        for name in ("confidence", "lift", "leverage"):
            add_measure(name)
        premises = [table.premise for table in rule.tables]
        add("premise_count", min(premises), max(premises))
        conclusions = [table.conclusion for table in rule.tables]
        add("conclusion_count", min(conclusions), max(conclusions))
        told.update({"transactions": self.knowledge.transactions, "items": rule.items, "wordings": rule.wordings})
        for name in MEASURES:
            if name in self.request.measures and name not in told:
                add_measure(name)
        if self.knowledge.holdout is not None:
            confidence = quotient(rule.holdout.both, rule.holdout.premise)
            told.update({"holdout_support": rule.holdout.both,
                         "holdout_confidence": None if confidence is None else float(confidence),
                         "holdout_p": minus_log10(-rule.corrected)})
        return told

    def told_side(self, side: Side) -> Dict[str, Any]:
        items = list(in_order(side.items))
        return {"none" if side.negated else "any": [self.knowledge.name(item) for item in items], "items": items}


def told_number(measure: str, value: Exact) -> Any:
    """A value of a measure as JSON has it."""
    if value is None:
        return None
    told = MEASURES[measure].told(value)
    return ("inf" if told > 0 else "-inf") if math.isinf(told) else told


def negated_sides(rule: Rule) -> int:
    return int(rule.premise.negated) + int(rule.conclusion.negated)


def goodness_of_reading(rule: Rule) -> Tuple[Any, ...]:
    """The smallest one is the best reading of an association."""
    return (negated_sides(rule), -rule.bounds("confidence")[0], rule.items, in_order(rule.premise.items),
            rule.premise.negated, in_order(rule.conclusion.items))


def goodness_of_statement(rule: Rule) -> Tuple[Any, ...]:
    """The smallest one stays of the exact rules that imply each other."""
    return (negated_sides(rule), rule.items, in_order(rule.premise.items), in_order(rule.conclusion.items))


def implies_side(side: Side, other: Side) -> bool:
    """Whether whatever meets a side meets the other, by the items alone."""
    if side.negated != other.negated:
        return False
    return other.items <= side.items if side.negated else side.items <= other.items


def dominates(rule: Rule, other: Rule) -> bool:
    """Whether a rule says more than another one: of more transactions, a narrower conclusion, as surely."""
    return (implies_side(other.premise, rule.premise) and implies_side(rule.conclusion, other.conclusion)
            and rule.bounds("confidence")[0] >= other.bounds("confidence")[1])


def contrapositive(rule: Rule) -> Tuple[Side, Side]:
    """Premise and conclusion of the same statement, turned round."""
    return (Side(rule.conclusion.items, not rule.conclusion.negated),
            Side(rule.premise.items, not rule.premise.negated))


def is_contrapositive(rule: Rule, other: Rule) -> bool:
    return (other.premise, other.conclusion) == contrapositive(rule)


def implies(rule: Rule, other: Rule) -> bool:
    """Whether an exact rule implies another one, whatever the transactions are."""
    premise, conclusion = rule.premise.items, rule.conclusion.items
    other_premise, other_conclusion = other.premise.items, other.conclusion.items
    groups = {rule.group, other.group}
    if groups <= {(False, False), (True, True)}:
        # Both as a rule of two plain sides.
        if rule.group == (True, True):
            premise, conclusion = conclusion, premise
        if other.group == (True, True):
            other_premise, other_conclusion = other_conclusion, other_premise
        return other_premise <= premise and conclusion <= other_conclusion
    if groups == {(False, True)}:
        return ((other_premise <= premise and other_conclusion <= conclusion)
                or (other_premise <= conclusion and other_conclusion <= premise))
    if groups == {(True, False)}:
        return premise | conclusion <= other_premise | other_conclusion
    return False


def gain(rule: Rule, other: Rule) -> Fraction:
    """By how many transactions a rule may be further beyond what chance gives than another one surely is."""
    return rule.tables[0].all * (rule.bounds("leverage")[1] - other.bounds("leverage")[0])


def is_within(side: Side, other: Side) -> bool:
    return side.items <= other.items


def lacks_alternatives(side: Side, other: Side) -> bool:
    return side.items == other.items if other.negated else side.items <= other.items


def lies_within(sides: Tuple[Side, Side], other: Rule, is_part: Callable[[Side, Side], bool]) -> bool:
    """Whether two sides are parts of those of a longer rule, either way round. One side of each pair is negated, or
    none or both of each."""
    one, two = sides
    if len(one.items) + len(two.items) >= other.items:
        return False
    if (one.negated != two.negated) != (other.premise.negated != other.conclusion.negated):
        return False
    return ((is_part(one, other.premise) and is_part(two, other.conclusion))
            or (is_part(one, other.conclusion) and is_part(two, other.premise)))


def run(knowledge: Knowledge, request: Request) -> Result:
    """The rules that are told of what is known, and the accounting."""
    return Steps(knowledge, request).run()
