"""A plain model of korv-rules --exclusions, for its tests: every pair and triple, counted one transaction at a time.

Probabilities are fractions; only what is told at the end is a float.
"""

from __future__ import annotations

import math
from collections import defaultdict
from dataclasses import dataclass
from fractions import Fraction
from functools import lru_cache
from itertools import combinations
from typing import Any, Dict, FrozenSet, List, NamedTuple, Optional, Sequence, Tuple

from rules_model import Itemset, Knowledge, Transaction, in_order, matches, minus_log10

STEPS = ("columns", "chance", "uncertain", "items", "top")


@dataclass(frozen=True)
class ExclusionRequest:
    """What is asked for. `alpha` as it is typed; `max_items`: 2 or 3."""

    min_support: int
    alpha: str = "0.05"
    max_items: int = 3
    patterns: Tuple[Tuple[str, str], ...] = ()
    top: int = 0
    min_confidence: float = 0.8


class Exclusion(NamedTuple):
    """Items that are together in fewer transactions than chance would have it."""

    items: Tuple[int, ...]
    counts: Tuple[int, ...]
    together: int
    covered: int
    expected: Fraction
    probability: Fraction

    @property
    def p(self) -> float:
        return minus_log10(-self.probability)


class Result(NamedTuple):
    """All exclusions in their order, before `top`, and what became of the others."""

    exclusions: List[Exclusion]
    pairs: int
    triples: int
    left_out: Dict[str, int]


@lru_cache(maxsize=100_000)
def probability_of_fewer(one: int, other: int, together: int, transactions: int) -> Fraction:
    """The probability that chance alone brings two sides together at most so often."""
    ways = sum(math.comb(one, both) * math.comb(transactions - one, other - both)
               for both in range(max(0, one + other - transactions), together + 1))
    return Fraction(ways, math.comb(transactions, other))


def count(database: Sequence[Transaction], items: Itemset) -> int:
    """How many transactions hold all items."""
    return sum(weight for held, weight in database if items <= held)


def exclusive_columns(knowledge: Knowledge) -> List[FrozenSet[int]]:
    """Columns of which no transaction has two values."""
    by_name: Dict[str, set] = defaultdict(set)
    for item, name in knowledge.names.items():
        if name.find("=") > 0:
            by_name[name.split("=")[0]].add(item)
    assert knowledge.database is not None
    return [frozenset(items) for items in by_name.values()
            if all(len(items & held) < 2 for held, _ in knowledge.database)]


def judged(ways: Sequence[Tuple[int, int]], together: int, transactions: int) -> Optional[Tuple[Fraction, Fraction]]:
    """What chance would give in the least of some ways, and the largest probability; None unless it is less in all."""
    expected = min(Fraction(one * other, transactions) for one, other in ways)
    if together >= expected:
        return None
    return expected, max(probability_of_fewer(one, other, together, transactions) for one, other in ways)


def run(knowledge: Knowledge, request: ExclusionRequest) -> Result:
    """All exclusions, their most surprising first."""
    database, transactions = knowledge.database, knowledge.transactions
    assert database is not None
    columns = exclusive_columns(knowledge)
    occurring = sorted(frozenset().union(*(held for held, _ in database)))
    frequent = [item for item in occurring if count(database, frozenset({item})) >= request.min_support]
    counts = {frozenset({item}): count(database, frozenset({item})) for item in frequent}
    pairs = [frozenset(pair) for pair in combinations(frequent, 2)]
    counts.update({pair: count(database, pair) for pair in pairs})
    in_column = [pair for pair in pairs if any(pair <= column for column in columns)]
    looked_at = [pair for pair in pairs if pair not in in_column]
    triples = [frozenset(triple) for triple in combinations(frequent, 3)
               if all(counts[frozenset(pair)] >= request.min_support for pair in combinations(triple, 2))]
    if request.max_items == 2:
        triples = []
    left_out = dict.fromkeys(STEPS, 0)
    left_out["columns"] = len(in_column)
    found = []
    for itemsets in (looked_at, triples):
        for itemset in itemsets:
            ways = [(counts[frozenset({item})], counts[itemset - {item}]) for item in itemset]
            together = count(database, itemset)
            verdict = judged(ways, together, transactions)
            if verdict is None:
                left_out["chance"] += 1
                continue
            expected, probability = verdict
            if request.alpha != "1" and probability * len(itemsets) > Fraction(request.alpha):
                left_out["uncertain"] += 1
            elif not is_asked_for(knowledge, itemset, request.patterns):
                left_out["items"] += 1
            else:
                covered = sum(weight for held, weight in database if itemset & held)
                items = in_order(itemset)
                found.append(Exclusion(items, tuple(counts[frozenset({item})] for item in items), together, covered,
                                       expected, probability))
    found.sort(key=lambda each: (each.probability, -each.expected, each.items))
    left_out["top"] = max(0, len(found) - request.top) if request.top else 0
    return Result(found, len(pairs), len(triples), left_out)


def is_asked_for(knowledge: Knowledge, itemset: Itemset, patterns: Sequence[Tuple[str, str]]) -> bool:
    return all(any(matches(knowledge, item, pattern) for item in itemset) == (option == "with")
               for option, pattern in patterns)


def confidences(exclusion: Exclusion, transactions: int) -> Dict[str, Optional[Fraction]]:
    """The confidences of the rules of a pair: if one then not the other, if not one then the other."""
    keys = ("a_not_b", "b_not_a", "not_a_b", "not_b_a")
    if len(exclusion.items) != 2:
        return dict.fromkeys(keys)
    (one, other), both = exclusion.counts, exclusion.together
    return dict(zip(keys, (Fraction(one - both, one), Fraction(other - both, other),
                           Fraction(other - both, transactions - one), Fraction(one - both, transactions - other))))


def told(number: int, exclusion: Exclusion, knowledge: Knowledge) -> Dict[str, Any]:
    """An exclusion as jsonl tells it."""
    told_confidences = confidences(exclusion, knowledge.transactions)
    return {"id": number, "items": [knowledge.name(item) for item in exclusion.items],
            "numbers": list(exclusion.items), "size": len(exclusion.items), "together": exclusion.together,
            "expected": float(exclusion.expected), "covered": exclusion.covered,
            "transactions": knowledge.transactions, "p": exclusion.p,
            **{key: None if value is None else float(value) for key, value in told_confidences.items()}}
