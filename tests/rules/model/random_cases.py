"""Random databases, class files and options for comparisons with the model of korv-rules."""

from __future__ import annotations

import random
from collections import defaultdict
from dataclasses import dataclass, field, fields, replace
from typing import Any, Callable, Dict, FrozenSet, List, Optional, Sequence, Tuple

from rules_model import (MEASURES, MEASURES_WITH_ROUGH_TIES, Condition, EquivalenceClass, Itemset, Knowledge, Request,
                         Transaction, in_order)

FORMS = tuple(f"R{group}{place}{direction}" for group in "1234" for place in "123" for direction in "12")
FORM_CHOICES = (*FORMS, "1", "2", "3", "4", "or-or", "none-none", "or-none", "none-or")
KINDS = ("exact", "approximative", "bounded")
ODD_NAMES = ("bread", "whole milk", "caf\u00e9", 'a "b"', "x,y", "=x", "\u05d0\u05d1", "\U0001f600", "-1", "it's", "+",
             "<b>")
VALUES = ("low", "mid", "high", "top")
BOUNDARIES = (0.2, 0.25, 0.3, 0.4, 0.5, 0.6, 0.75, 0.8, 1.0)


@dataclass(frozen=True)
class Mining:
    """Options that decide which classes transactions have."""

    min_support: int
    min_joint: int
    min_own: int = 1
    max_size: int = 99
    over_all: bool = False


@dataclass(frozen=True)
class Case:
    """An input and options. `source`: "classes", "database" (classes with their transactions), or the format of
    transactions that are to be mined."""

    source: str
    classes: Tuple[EquivalenceClass, ...]  # as they are listed; empty where they are mined
    database: Tuple[Transaction, ...]
    names: Dict[int, str]
    is_weighted: bool
    mining: Optional[Mining]
    mining_arguments: Tuple[str, ...]
    request: Request
    columns: Tuple[Tuple[str, FrozenSet[int]], ...] = field(default=())  # of a table
    holdout: Optional[Tuple[Transaction, ...]] = None  # other transactions

    def knowledge(self) -> Knowledge:
        """What the program is to know."""
        transactions = sum(weight for _, weight in self.database)
        if self.source == "classes":
            return Knowledge(self.classes, transactions, self.names, holdout=self.holdout)
        classes = self.classes if self.mining is None else mined(self.database, self.mining)
        return Knowledge(classes, transactions, self.names, self.database, self.holdout)

    def files(self) -> Dict[str, str]:
        """The files that the program reads."""
        files = self.input_files()
        if self.holdout is not None:
            other = replace(self, database=self.holdout, source="fimi" if self.source == "classes" else self.source)
            files["other.dat"] = other.input_files()["in.dat"]
        return files

    def input_files(self) -> Dict[str, str]:
        if self.source in ("classes", "database"):
            files = {"in.classes": class_file(self.classes)}
            if self.names:
                files["in.names"] = "".join(f"{item}\t{name}\n" for item, name in sorted(self.names.items()))
            if self.source == "database":
                files["in.dat"] = self.lines(" ", str)
            return files
        if self.source == "fimi":
            return {"in.dat": self.lines(" ", str)}
        if self.source == "basket":
            return {"in.dat": self.lines(",", lambda item: quoted(self.names[item]))}
        return {"in.dat": self.table()}

    def lines(self, separator: str, text_of_item: Callable[[int], str]) -> str:
        """The transactions, one on each line."""
        return "".join((f"{weight} " if self.is_weighted else "")
                       + separator.join(text_of_item(item) for item in in_order(items)) + "\n"
                       for items, weight in self.database)

    def table(self) -> str:
        header = [name for name, _ in self.columns] + (["count"] if self.is_weighted else [])
        rows = [header]
        for items, weight in self.database:
            cells = ["".join(self.names[item].split("=")[1] for item in items & column) for _, column in self.columns]
            rows.append(cells + ([str(weight)] if self.is_weighted else []))
        return "".join(",".join(row) + "\n" for row in rows)

    def arguments(self) -> List[str]:
        """The command line."""
        if self.source == "classes":
            source = ["in.classes", "-n", str(sum(weight for _, weight in self.database))]
        elif self.source == "database":
            source = ["in.classes", "--database", "in.dat"] + (["--weighted"] if self.is_weighted else [])
        else:
            source = ["in.dat", "--format", self.source, *self.mining_arguments]
            if self.source != "fimi":
                source += ["--separator", ","]
            if self.is_weighted:
                source += ["--weight", "count"] if self.source == "table" else ["--weighted"]
        if self.holdout is not None:
            source += ["--holdout", "other.dat"]
        if (self.request.test or self.holdout is not None) and self.request.alpha != Request().alpha:
            source += ["--alpha", self.request.alpha]
        return source + request_arguments(self.request) + ["--to", "jsonl"]


def quoted(name: str) -> str:
    """A name as a cell of a basket."""
    return '"' + name.replace('"', '""') + '"' if '"' in name or "," in name else name


def class_file(classes: Sequence[EquivalenceClass]) -> str:
    """The classes in the format of a class file."""
    return "".join(f"{blanks(each.closed)}\t{each.support}\t" + "".join(f" {blanks(key)}," for key in each.keys) + "\n"
                   for each in classes)


def blanks(itemset: Itemset) -> str:
    return " ".join(map(str, in_order(itemset)))


def request_arguments(request: Request) -> List[str]:
    """The options of a request; those that have their default are left out."""
    default = Request()
    arguments = ["-s", str(request.min_support)]
    options = {"min_confidence": "-c", "min_lift": "--min-lift", "wording": "--wording", "max_items": "--max-items",
               "max_if": "--max-if", "max_then": "--max-then", "readings": "--readings",
               "per_conclusion": "--per-conclusion"}
    for attribute, option in options.items():
        if getattr(request, attribute) != getattr(default, attribute):
            arguments += [option, str(getattr(request, attribute))]
    # The program may choose these two by itself.
    arguments += ["--prune", request.prune, "--top", str(request.top)]
    for attribute in ("forms", "kinds", "measures"):
        if getattr(request, attribute):
            arguments += ["--" + attribute, ",".join(getattr(request, attribute))]
    for option, pattern in request.patterns:
        arguments += ["--" + option, pattern]
    if request.test:
        arguments += ["--test"]
    if request.where:
        arguments += ["--where", text_of(request.where)]
    if (request.sort, request.ascending) != ("leverage", False):
        arguments += ["--sort", ("+" if request.ascending else "") + request.sort]
    return arguments


def text_of(condition: Condition) -> str:
    """A condition as it is typed."""
    if condition[0] == "not":
        return f"not ({text_of(condition[1])})"
    if condition[0] in ("and", "or"):
        return f"({text_of(condition[1])}) {condition[0]} ({text_of(condition[2])})"
    return "{} {} {}".format(*condition)


# --- classes by brute force ----------------------------------------------------------------------


def mined(database: Sequence[Transaction], mining: Mining) -> List[EquivalenceClass]:
    """The classes of transactions: every itemset of frequent items is looked at."""
    weights = [weight for _, weight in database]
    rows: Dict[int, int] = defaultdict(int)
    for position, (items, _) in enumerate(database):
        for item in items:
            rows[item] |= 1 << position
    counts: Dict[int, int] = {}

    def count(lines: int) -> int:
        if lines not in counts:
            counts[lines] = sum(weight for position, weight in enumerate(weights) if lines >> position & 1)
        return counts[lines]

    frequent = [item for item in sorted(rows) if count(rows[item]) >= mining.min_support]
    candidates = sorted(rows) if mining.over_all else frequent
    essentials: Dict[Itemset, List[Itemset]] = defaultdict(list)
    supports: Dict[Itemset, int] = {}
    for mask in range(1, 1 << len(frequent)):
        items = [item for index, item in enumerate(frequent) if mask >> index & 1]
        if len(items) > mining.max_size:
            continue
        cover, together, owns = 0, -1, []
        for item in items:
            together &= rows[item]
        for item in items:
            others = 0
            for other in items:
                others |= rows[other] if other != item else 0
            owns.append(rows[item] & ~others)
            cover |= rows[item]
        if any(not own or count(own) < mining.min_own for own in owns):
            continue
        if len(items) > 1 and count(together) < mining.min_joint:
            continue
        closure = frozenset(item for item in candidates if rows[item] & ~cover == 0)
        essentials[closure].append(frozenset(items))
        supports[closure] = count(cover)
    return [EquivalenceClass(closed, supports[closed], tuple(sorted(
        (key for key in essentials[closed] if len(key) < len(closed)), key=lambda key: (len(key), in_order(key)))))
            for closed in sorted(essentials, key=lambda each: (len(each), in_order(each)))]


# --- random parts --------------------------------------------------------------------------------


def random_weight(rng: random.Random, is_weighted: bool) -> int:
    return rng.choice((1, 1, 2, 3, 7)) if is_weighted else 1


def random_baskets(rng: random.Random, is_weighted: bool) -> List[Transaction]:
    """Transactions over up to 8 items, with items in all of them, twins and empty ones."""
    count = rng.choice((2, 3, 4, 4, 4, 5, 5, 5, 6, 6, 7, 8))
    numbers = sorted(rng.sample(range(rng.choice((9, 9, 30))), count))
    likelihoods = {item: rng.uniform(0.1, 0.8) for item in numbers}
    lines = []
    for _ in range(rng.randint(3, 40)):
        lines.append({item for item in numbers if rng.random() < likelihoods[item]})
    if rng.random() < 0.15:
        everywhere = rng.choice(numbers)
        for line in lines:
            line.add(everywhere)
    if rng.random() < 0.2:
        one, other = rng.sample(numbers, 2)
        for line in lines:
            (line.add if one in line else line.discard)(other)
    if rng.random() < 0.2:
        lines.insert(rng.randint(0, len(lines)), set())
    return [(frozenset(line), random_weight(rng, is_weighted)) for line in lines]


def random_table(rng: random.Random, is_weighted: bool) -> Tuple[
        List[Transaction], Dict[int, str], Tuple[Tuple[str, FrozenSet[int]], ...]]:
    """Transactions of a table with the names of their items and the items of each column, numbered from 1."""
    widths = [rng.choice((2, 2, 3, 4)) for _ in range(rng.choice((1, 2, 2, 2, 3)))]
    has_gaps = rng.random() < 0.3
    rows = []
    for _ in range(rng.randint(3, 40)):
        cells = [rng.choice(VALUES[:width]) for width in widths]
        if rng.random() < 0.5:
            cells[-1] = VALUES[min(VALUES.index(cells[0]), widths[-1] - 1)]
        rows.append(["" if has_gaps and rng.random() < 0.15 else cell for cell in cells])
    numbers: Dict[Tuple[int, str], int] = {}
    columns = []
    for position in range(len(widths)):
        first = len(numbers) + 1
        for row in rows:
            if row[position]:
                numbers.setdefault((position, row[position]), len(numbers) + 1)
        columns.append((f"c{position}", frozenset(range(first, len(numbers) + 1))))
    names = {number: f"c{position}={value}" for (position, value), number in numbers.items()}
    lines = [(frozenset(numbers[position, cell] for position, cell in enumerate(row) if cell),
              random_weight(rng, is_weighted)) for row in rows]
    return lines, names, tuple(columns)


def renumbered_by_occurrence(database: Sequence[Transaction]) -> List[Transaction]:
    """The transactions with items numbered from 1 in the order in which baskets bring them."""
    numbers: Dict[int, int] = {}
    for items, _ in database:
        for item in in_order(items):
            numbers.setdefault(item, len(numbers) + 1)
    return [(frozenset(numbers[item] for item in items), weight) for items, weight in database]


def random_names(rng: random.Random, items: Sequence[int]) -> Dict[int, str]:
    """Names of some items, or of all."""
    if rng.random() < 0.5:
        return {}
    if rng.random() < 0.5:
        # Columns whose items need not exclude each other.
        return {item: f"c{rng.randint(1, 2)}=v{item}" for item in items if rng.random() < 0.9}
    names = rng.sample(ODD_NAMES, len(items))
    return {item: name for item, name in zip(items, names) if rng.random() < 0.8}


def thinned(rng: random.Random, classes: Sequence[EquivalenceClass]) -> List[EquivalenceClass]:
    """Some of the classes with some of their essential itemsets; nothing in them contradicts the others."""
    keep_class, keep_essential = rng.uniform(0.5, 1.0), rng.uniform(0.2, 1.0)
    kept = [each._replace(essentials=tuple(key for key in each.essentials if rng.random() < keep_essential))
            for each in classes if rng.random() < keep_class]
    return kept or list(classes[:1])


def shuffled(rng: random.Random, classes: Sequence[EquivalenceClass]) -> List[EquivalenceClass]:
    """The classes, and the essential itemsets of each, in another order."""
    mixed = [each._replace(essentials=tuple(rng.sample(each.essentials, len(each.essentials)))) for each in classes]
    rng.shuffle(mixed)
    return mixed


def random_condition(rng: random.Random, depth: int = 2) -> Condition:
    kind = rng.random()
    if depth and kind < 0.15:
        return ("not", random_condition(rng, depth - 1))
    if depth and kind < 0.5:
        return (rng.choice(("and", "or")), random_condition(rng, depth - 1), random_condition(rng, depth - 1))
    measure = rng.choice(("support", "confidence", "lift", rng.choice(sorted(MEASURES))))
    if measure == "support":
        number: float = rng.randint(1, 12)
    elif measure == "confidence":
        number = rng.choice(BOUNDARIES)
    elif measure == "lift":
        number = rng.choice((0.8, 1, 1.2, 1.25, 1.5, 2))
    else:
        number = round(rng.uniform(0.0, 1.5), 4)
    return (measure, rng.choice((">", ">=", "<", "<=")), number)


def random_patterns(rng: random.Random, knowledge: Knowledge) -> Tuple[Tuple[str, str], ...]:
    """Patterns, each of an item that occurs in a class."""
    items = sorted(frozenset().union(*(each.closed for each in knowledge.classes)))
    patterns = []
    for _ in range(rng.choice((0, 0, 0, 0, 0, 1, 2))):
        words = [random_word(rng, knowledge, rng.choice(items)) for _ in range(rng.choice((1, 1, 2)))]
        patterns.append((rng.choice(("with", "without", "if", "then", "if-not", "then-not")), "|".join(words)))
    return tuple(patterns)


def random_word(rng: random.Random, knowledge: Knowledge, item: int) -> str:
    name = knowledge.name(item)
    plain = name.isascii() and name.replace("=", "").isalnum()
    if not plain:
        return f"#{item}"
    return rng.choice((f"#{item}", name, name[:1] + "*", "?" + name[1:], f"/^{name}$/", f"/{name[:2]}/",
                       f"/^[{name[0]}]/"))


def random_request(rng: random.Random, knowledge: Knowledge, min_support: int) -> Request:
    """Options, most of them at their defaults."""
    def sometimes(likelihood: float, value: Any, default: Any) -> Any:
        return value if rng.random() < likelihood else default

    sort = sometimes(0.5, rng.choice(sorted(MEASURES)), "leverage")
    has_clear_order = sort not in MEASURES_WITH_ROUGH_TIES
    return Request(
        min_support=min_support,
        min_confidence=rng.choice((0.01, 0.1, 0.1, 0.2, 0.3, 0.5, 0.5, 0.6, 0.75, 0.8, 1.0)),
        min_lift=sometimes(0.4, rng.choice((0, 0, 0.5, 1, 1.2, 1.25)), None),
        forms=sometimes(0.15, tuple(rng.sample(FORM_CHOICES, rng.randint(1, 4))), ()),
        kinds=sometimes(0.1, tuple(rng.sample(KINDS, rng.randint(1, 2))), ()),
        wording=sometimes(0.3, "full", "shortest"),
        patterns=random_patterns(rng, knowledge),
        max_items=sometimes(0.5, rng.choice((0, 0, 2, 3, 4, 8)), 6),
        max_if=sometimes(0.1, rng.randint(1, 3), 0),
        max_then=sometimes(0.1, rng.randint(1, 3), 0),
        where=sometimes(0.2, random_condition(rng), None),
        test=rng.random() < 0.15,
        alpha=rng.choice(("0.05", "0.3", "0.5", "1")),
        readings=sometimes(0.5, "all", "one"),
        prune=rng.choice(("none", "same", "full", "productive", "productive")),
        sort=sort,
        ascending=rng.random() < 0.2,
        per_conclusion=sometimes(0.1 * has_clear_order, rng.randint(1, 3), 0),
        top=sometimes(0.2 * has_clear_order, rng.randint(1, 20), 0),
        measures=sometimes(0.4, tuple(rng.sample(sorted(MEASURES), rng.randint(1, 5))), ()))


def random_holdout(rng: random.Random, case: Case) -> Optional[Tuple[Transaction, ...]]:
    """Other transactions, most of them like those of the case; None where rules are not to be confirmed."""
    if rng.random() < 0.8:
        return None
    items = sorted(frozenset().union(*(items for items, _ in case.database)))
    strangeness = rng.choice((0.0, 0.1, 0.5))
    lines = []
    for _ in range(rng.randint(1, 60)):
        line = set(rng.choice(case.database)[0])
        if case.columns:
            for _, column in case.columns:
                if rng.random() < strangeness:
                    line = (line - column) | (rng.choice(case.database)[0] & column)
        else:
            line ^= {item for item in items if rng.random() < strangeness}
        lines.append((frozenset(line), random_weight(rng, case.is_weighted)))
    if case.source == "fimi":
        lines[0] = (lines[0][0] | {max(items) + 5}, 1)  # which is unknown
    return tuple(lines) if any(line & frozenset(items) for line, _ in lines) else None


def random_mining(rng: random.Random, transactions: int, request: Request) -> Tuple[Mining, Tuple[str, ...]]:
    """Options of mining, and how they are typed."""
    arguments: List[str] = []
    min_joint = request.min_support
    if rng.random() < 0.6:
        min_joint = rng.randint(0, min(2, transactions))
        arguments += ["--min-joint", str(min_joint)]
    max_size = request.max_items or 99
    if rng.random() < 0.3 or (request.max_items == 0 and min_joint < request.min_support):
        max_size = rng.randint(1, 8)
        arguments += ["--max-size", str(max_size)]
    min_own = 1
    if rng.random() < 0.15:
        min_own = min(2, transactions)
        arguments += ["--min-own", str(min_own)]
    over_all = rng.random() < 0.2
    if over_all:
        arguments += ["--closure-items", "all"]
    return Mining(request.min_support, min_joint, min_own, max_size, over_all), tuple(arguments)


def random_case(rng: random.Random) -> Case:
    """A random case."""
    case = random_case_without_holdout(rng)
    return replace(case, holdout=random_holdout(rng, case))


def random_case_without_holdout(rng: random.Random) -> Case:
    source = rng.choice(("classes", "classes", "classes", "database", "fimi", "basket", "table"))
    is_weighted = source != "classes" and rng.random() < 0.2
    names: Dict[int, str] = {}
    columns: Tuple[Tuple[str, FrozenSet[int]], ...] = ()
    if source == "table" or (source in ("classes", "database") and rng.random() < 0.4):
        database, names, columns = random_table(rng, is_weighted)
    else:
        database = random_baskets(rng, is_weighted)
    if source == "basket":
        database = renumbered_by_occurrence(database)
    items = sorted(frozenset().union(*(items for items, _ in database)))
    if not items:
        return random_case_without_holdout(rng)
    if source == "basket":
        names = {item: name for item, name in zip(items, rng.sample(ODD_NAMES, len(items)))}
        if rng.random() < 0.5:
            names = {item: f"c{item % 2}=v{item}" for item in items}
    elif not names and source in ("classes", "database"):
        names = random_names(rng, items)
    transactions = sum(weight for _, weight in database)
    min_support = min(rng.choice((1, 1, 2, 3)), transactions)
    mining = Mining(rng.choice((1, 1, min_support)), rng.choice((0, 0, 1)), 1, rng.choice((99, 99, 2, 3)))
    classes = mined(database, mining)
    if source in ("classes", "database"):
        if rng.random() < 0.6:
            classes = thinned(rng, classes)
        if rng.random() < 0.5:
            classes = shuffled(rng, classes)
    if not classes:
        return random_case_without_holdout(rng)
    knowledge = Knowledge(classes, transactions, names)
    case = Case(source, tuple(classes), tuple(database), names, is_weighted, None, (),
                random_request(rng, knowledge, min_support), columns)
    if source in ("classes", "database"):
        return case
    mining, arguments = random_mining(rng, transactions, case.request)
    case = replace(case, classes=(), mining=mining, mining_arguments=arguments)
    if not case.knowledge().classes:
        return random_case_without_holdout(rng)
    # Some items of the patterns may be in no class now.
    return replace(case, request=replace(case.request, patterns=random_patterns(rng, case.knowledge())))


# --- smaller cases -------------------------------------------------------------------------------


def smaller_cases(case: Case) -> List[Case]:
    """Cases with one part less, or an option at its default."""
    found: List[Case] = []
    default = Request(min_support=case.request.min_support)
    if case.holdout is not None:
        found.append(replace(case, holdout=None))
    for each in fields(Request):
        if getattr(case.request, each.name) != getattr(default, each.name):
            found.append(replace(case, request=replace(case.request, **{each.name: getattr(default, each.name)})))
    if case.mining is not None:
        if case.source == "fimi":
            # Elsewhere the numbers of items depend on the transactions.
            found += [replace(case, database=case.database[:position] + case.database[position + 1:])
                      for position in range(len(case.database))]
        return found
    for position, each in enumerate(case.classes):
        rest = case.classes[:position], case.classes[position + 1:]
        found.append(replace(case, classes=rest[0] + rest[1]))
        found += [replace(case, classes=(*rest[0], each._replace(
            essentials=each.essentials[:index] + each.essentials[index + 1:]), *rest[1]))
                  for index in range(len(each.essentials))]
    for item in case.names:
        found.append(replace(case, names={other: name for other, name in case.names.items() if other != item}))
    return found
