#!/usr/bin/env python3
"""A plain model of korv, for its tests: the same command line, files, messages and exit statuses.

Every step is written the slow and obvious way. The one difference that can be seen from outside is
that the three timing lines show `*` instead of seconds.

    korv_model.py LABEL CLASSFILE MINSUPP MINCONF N
"""

from __future__ import annotations

import ctypes
import math
import os
import struct
import sys
from collections.abc import Iterable, Sequence
from dataclasses import dataclass, field
from fractions import Fraction
from io import FileIO
from typing import NamedTuple

Itemset = tuple[int, ...]

WORD = 1 << 32
LONG_MIN = -(1 << 31)
LONG_MAX = (1 << 31) - 1

TAB = 9
LINE_FEED = 10
COMMA = 44
END_OF_FILE = -1

USAGE_MESSAGE = (b"\n Erreur! Entrez le fichier des Inputs suivi d'un minsupp superieur ou egal"
                 b" a 1 et d'un minconf compris entre 0 et 1!\n")
UNREADABLE_MESSAGE = b"\n Erreur! Le fichier entre ne peut etre lu!"
EMPTY_LATTICE_MESSAGE = (b"Erreur: le nombre de classes doit \xef\xbf\xbdtre non null"
                         b"Arr\xef\xbf\xbdt du programme")

BANNER_EDGE = "\n  ****************************************************************"
BANNER_SPACE = "\n  ***                                                          ***"
BANNER_NAME = "\n  ***                  The KORV tool                           ***"
BANNER_LONG_NAME = "\n  ***      Korvane\t\t        ***"
BANNER = (BANNER_EDGE + BANNER_SPACE + BANNER_NAME + BANNER_LONG_NAME + BANNER_SPACE + BANNER_EDGE
          + "\n\n")

LATTICE_EDGE = "\t\t\t**************************************************\n"
LATTICE_SPACE = "\t\t\t****                                          ****\n"
LATTICE_TITLE = "\t\t\t****      Disjunctive Search Space\t\t****\n"
LATTICE_BANNER = (2 * LATTICE_EDGE + LATTICE_SPACE + LATTICE_TITLE + 2 * LATTICE_SPACE
                  + 2 * LATTICE_EDGE)

CLASS_BANNER = ("******************************\n"
                "**   Equivalence class:  **\n"
                "**                          **\n"
                "******************************\n")

HEADER_EDGE = "\t\t\t******************************************\n"
INTRA_EXACT_TITLE = "\t\t\t***   Regles exaxtes intra noeud      ***\n"
INTRA_APPROX_TITLE = "\t\t\t*** Regles approximatives intra noeud  ***\n"
INTER_EXACT_TITLE = "\t\t\t***   Regles exactes inter noeuds     ***\n"
INTER_APPROX_TITLE = "\t\t\t*** Regles approximatives inter noeuds ***\n"

RECORD_SEPARATOR = "---------------------------\n"
REPORT_HYPHENS = 63 * "-"
REPORT_ASTERISKS = 70 * "*"

EXACT, APPRO, APPED = 0, 1, 2
KIND_NAMES = ("exact", "appro", "apped")

# Row of each form in the counters.
ROW = {
    "R111": 1, "R112": 0, "R121": 17, "R122": 16, "R131": 9, "R132": 8,
    "R211": 2, "R212": 3, "R221": 18, "R222": 19, "R231": 10, "R232": 11,
    "R311": 4, "R312": 7, "R321": 20, "R322": 23, "R331": 12, "R332": 15,
    "R411": 6, "R412": 5, "R421": 21, "R422": 22, "R431": 14, "R432": 13,
}

# The forms as the report lists them, group by group.
REPORT_FORMS = (
    (("R111", "e1-->(f1-e1)"), ("R112", "(f1-e1)-->e1"),
     ("R121", "e1-->(f2-e1)"), ("R122", "(f2-e1)-->e1"),
     ("R131", "f1-->(f2-f1)"), ("R132", "(f2-f1)-->f1")),
    (("R211", "not(e1)-->not(f1-e1)"), ("R212", "not(f1-e1)-->not(e1)"),
     ("R221", "not(e1)-->not(f2-e1)"), ("R222", "not(f2-e1)-->not(e1)"),
     ("R231", "not(f1)-->not(f2-f1)"), ("R232", "not(f2-f1)-->not(f1)")),
    (("R311", "e1-->not(f1-e1)"), ("R312", "(f1-e1)-->not(e1)"),
     ("R321", "e1-->not(f2-e1)"), ("R322", "(f2-e1)-->not(e1)"),
     ("R331", "f1-->not(f2-f1)"), ("R332", "(f2-f1)-->not(f1)")),
    (("R411", "not(e1)-->(f1-e1)"), ("R412", "not(f1-e1)-->e1"),
     ("R421", "not(f2-e1)-->e1"), ("R422", "not(e1)-->(f2-e1)"),
     ("R431", "not(f1)-->(f2-f1)"), ("R432", "not(f2-f1)-->f1")),
)

_strtod = ctypes.CDLL(None).strtod
_strtod.argtypes = (ctypes.c_char_p, ctypes.c_void_p)
_strtod.restype = ctypes.c_double


# --- numbers ---------------------------------------------------------------------------------


def wrap(value: int) -> int:
    """The value as an unsigned 32-bit number."""
    return value % WORD


def strtol(text: bytes) -> int:
    """The leading decimal number of a text, saturated to a signed 32-bit long, stored unsigned."""
    position = 0
    while position < len(text) and text[position] in b" \t\n\v\f\r":
        position += 1
    negative = text[position:position + 1] == b"-"
    if text[position:position + 1] in (b"-", b"+"):
        position += 1
    value = 0
    while position < len(text) and is_digit(text[position]):
        value = value * 10 + text[position] - 48
        position += 1
    if negative:
        value = -value
    return wrap(min(max(value, LONG_MIN), LONG_MAX))


def strtod(text: bytes) -> float:
    """The leading floating-point number of a text, by the C library."""
    return _strtod(text, None)


def quotient(numerator: int, denominator: int) -> float:
    """One double division of two counts; 0 divided by 0 gives the negative NaN of the hardware."""
    if denominator != 0:
        return float(numerator) / float(denominator)
    if numerator != 0:
        return math.inf
    return math.copysign(math.nan, -1.0)


def capped(value: float) -> float:
    """The value if it is below 1.0, else 1.0; also 1.0 for a NaN."""
    return value if value < 1.0 else 1.0


def format_double(value: float) -> str:
    """A double as a stream writes it: six significant digits, a NaN with its sign."""
    if math.isnan(value):
        return "-nan" if math.copysign(1.0, value) < 0 else "nan"
    return "%g" % value


def to_single(value: int) -> int:
    """An unsigned 32-bit number rounded to single precision (still an integer)."""
    return int(struct.unpack("f", struct.pack("f", float(value)))[0])


def round_to_bits(value: Fraction, bits: int) -> Fraction:
    """A fraction from 0 to 2**bits rounded to a mantissa of so many bits, ties to even."""
    if value == 0:
        return value
    unit = Fraction(1)
    while value / unit < 1 << (bits - 1):
        unit /= 2
    return round(value / unit) * unit


def percentage(part: int, total: int) -> float:
    """100 * part in 32 bits, over the total in single precision, by an extended division."""
    value = Fraction(wrap(100 * part), to_single(total))
    return float(round_to_bits(value, 64))


# --- itemsets: ascending, an item may occur more than once -------------------------------------


def intersection(a: Itemset, b: Itemset) -> Itemset:
    """The items present in both, by a merge."""
    common: list[int] = []
    i = j = 0
    while i < len(a) and j < len(b):
        if a[i] < b[j]:
            i += 1
        elif b[j] < a[i]:
            j += 1
        else:
            common.append(a[i])
            i += 1
            j += 1
    return tuple(common)


def contained(a: Itemset, b: Itemset) -> bool:
    """Whether every item of a has its own counterpart in b."""
    return len(a) <= len(b) and len(intersection(a, b)) == len(a)


def difference(a: Itemset, b: Itemset) -> Itemset:
    """The items of a without counterpart in b, by a merge."""
    rest: list[int] = []
    j = 0
    for item in a:
        while j < len(b) and b[j] < item:
            j += 1
        if j < len(b) and b[j] == item:
            j += 1
        else:
            rest.append(item)
    return tuple(rest)


def basket(itemset: Itemset) -> str:
    """Every item followed by one blank."""
    return "".join(f"{item} " for item in itemset)


# --- reading the classes ---------------------------------------------------------------------


def is_digit(character: int) -> bool:
    """Whether a byte is one of 0 to 9."""
    return 48 <= character <= 57


@dataclass
class ClassData:
    """What is stored with a closed itemset."""

    support: int = 0
    essentials: list[Itemset] = field(default_factory=list)


class Record(NamedTuple):
    """One record of the class file; `valid` is what the reader returns."""

    valid: bool
    itemset: Itemset
    support: int
    essentials: list[Itemset]


class ClassReader:
    """Reads class records from the bytes of a class file, character by character."""

    def __init__(self, data: bytes) -> None:
        self.data = data
        self.position = 0
        self.at_end = False
        self.character = 0
        self.messages: list[str] = []

    def get(self) -> None:
        """Read one character; a read past the last one sets the end-of-file flag."""
        if self.position < len(self.data):
            self.character = self.data[self.position]
            self.position += 1
        else:
            self.character = END_OF_FILE
            self.at_end = True

    def got_digit(self) -> bool:
        """Whether the last read gave a digit."""
        return not self.at_end and is_digit(self.character)

    def scan_number(self) -> int:
        """The number that starts at the current digit; consumes the character after it."""
        value = 0
        while True:
            value = wrap(value * 10 + self.character - 48)
            self.get()
            if not self.got_digit():
                return value

    def scan_itemset(self, terminator: int) -> Itemset:
        """All numbers up to the terminator or the end of the file, ascending."""
        items: list[int] = []
        while True:
            self.get()
            if self.got_digit():
                items.append(self.scan_number())
            if self.at_end or self.character == terminator:
                return tuple(sorted(items))

    def scan_essentials(self, closed_size: int) -> list[Itemset]:
        """The essential itemsets up to the end of the record."""
        essentials: list[Itemset] = []
        while True:
            essential = self.scan_itemset(COMMA)
            if len(essential) != closed_size:
                essentials.append(essential)
            self.get()
            if self.at_end or self.character == LINE_FEED:
                return essentials

    def read_record(self) -> Record:
        """The next record."""
        if self.at_end:
            self.messages.append("fin de fichier\n")
            return Record(False, (), 0, [])
        itemset = self.scan_itemset(TAB)
        support = 0
        self.get()
        if self.got_digit():
            support = self.scan_number()
        self.get()
        essentials = self.scan_essentials(len(itemset))
        return Record(len(itemset) != 0, itemset, support, essentials)


def load_classes(reader: ClassReader) -> dict[Itemset, ClassData]:
    """The classes in lexicographic order; of equal closed itemsets the last one counts."""
    classes: dict[Itemset, ClassData] = {}
    while True:
        record = reader.read_record()
        if not record.valid:
            return dict(sorted(classes.items()))
        classes[record.itemset] = ClassData(record.support, record.essentials)


# --- the lattice -----------------------------------------------------------------------------


@dataclass
class Entry:
    """One class in the lattice with its immediate closed proper subsets."""

    key: int
    itemset: Itemset
    data: ClassData
    successors: list[Itemset] = field(default_factory=list)


def load_entries(classes: dict[Itemset, ClassData]) -> list[Entry]:
    """One entry per class, by ascending size, then in lexicographic order."""
    entries = [Entry(len(itemset), itemset, data) for itemset, data in classes.items()]
    entries.sort(key=lambda entry: entry.key)
    return entries


def insert_successor(x: Itemset, successors: list[Itemset]) -> bool:
    """Offer x as a successor; it replaces the listed ones that it contains."""
    index = 0
    while index < len(successors):
        common = intersection(successors[index], x)
        if len(common) == len(x):
            return False
        if len(common) == len(successors[index]):
            del successors[index]
        else:
            index += 1
    successors.append(x)
    return True


class LatticeBuilder:
    """Links every entry to its successors."""

    def __init__(self, entries: list[Entry]) -> None:
        self.entries = entries
        self.entry_of = {entry.itemset: entry for entry in entries}
        self.frontier: list[Entry] = []
        self.visited: set[Itemset] = set()

    def build(self) -> None:
        """Fill all successor lists."""
        first_key = self.entries[0].key
        for entry in self.entries:
            if entry.key != first_key:
                self.link(entry)
            self.frontier.append(entry)

    def link(self, entry: Entry) -> None:
        """Find the successors of one entry and take them off the frontier."""
        self.visited.clear()
        index = 0
        while index < len(self.frontier):
            other = self.frontier[index]
            common = intersection(other.itemset, entry.itemset)
            if len(common) == other.key:
                insert_successor(other.itemset, entry.successors)
                del self.frontier[index]
                continue
            if common:
                self.descend(other, entry)
            index += 1

    def descend(self, above: Entry, entry: Entry) -> None:
        """Offer to the entry what lies below an entry that overlaps it."""
        for successor in above.successors:
            if successor in self.visited:
                continue
            common = intersection(successor, entry.itemset)
            if len(common) == len(successor):
                insert_successor(successor, entry.successors)
            elif common:
                self.descend(self.entry_of[successor], entry)
            self.visited.add(successor)


def lattice_text(entries: list[Entry]) -> str:
    """The lattice file."""
    return LATTICE_BANNER + "".join(class_block(entry) for entry in entries)


def class_block(entry: Entry) -> str:
    """The block of one class in the lattice file."""
    essentials = "".join(basket(essential) + " ; " for essential in entry.data.essentials)
    successors = "".join(basket(successor) + ";" for successor in entry.successors)
    return (CLASS_BANNER
            + f"DCP:  {basket(entry.itemset)}\n"
            + f"Disjonctive support: {entry.data.support}\n"
            + f"les essentiels:  {essentials or 'VIDE'}\n"
            + f"les successeurs: {successors or 'VIDE'}\n\n")


class Bounded(NamedTuple):
    """A support (0 when only bounds are known) and the bounds as the search left them."""

    support: int
    lower: int
    upper: int


def difference_support(entries: list[Entry], x: Itemset, lower: int, upper: int) -> Bounded:
    """The disjunctive support of any itemset, narrowed over the classes by ascending size."""
    n = len(x)
    for entry in entries:
        support = entry.data.support
        essentials = entry.data.essentials
        if entry.key < n:
            common = intersection(entry.itemset, x)
            if len(common) == entry.key:
                lower = max(lower, support)
            elif common:
                lower = raised(lower, support, essentials, common)
        elif entry.key == n:
            if entry.itemset == x:
                return Bounded(support, lower, upper)
            lower = raised(lower, support, essentials, x)
        else:
            if contained(x, entry.itemset):
                upper = min(upper, support)
            # contained() is false for every essential itemset larger than x.
            lower = raised(lower, support, essentials, x)
        if lower == upper:
            return Bounded(lower, lower, upper)
    return Bounded(0, lower, upper)


def raised(lower: int, support: int, essentials: list[Itemset], x: Itemset) -> int:
    """The lower bound, raised to the support when x contains an essential itemset."""
    if support > lower:
        for essential in essentials:
            if contained(essential, x):
                return support
    return lower


# --- rules -----------------------------------------------------------------------------------


@dataclass
class Side:
    """One side of a rule: a disjunction, or the absence of all its items."""

    itemset: Itemset
    negated: bool

    def text(self) -> str:
        """The side as a rule line shows it."""
        if not self.itemset:
            return "empty_set"
        if self.negated:
            return "".join(f"not({item})" for item in self.itemset)
        return " v ".join(str(item) for item in self.itemset)


def plain(itemset: Itemset) -> Side:
    """A side that holds when any item is present."""
    return Side(itemset, False)


def negated(itemset: Itemset) -> Side:
    """A side that holds when no item is present."""
    return Side(itemset, True)


def rule_line(premise: Side, conclusion: Side) -> str:
    """The first line of a rule record."""
    return f"{premise.text()}-->{conclusion.text()}\n"


def support_lines(support: int) -> str:
    """An exact support and an empty line."""
    return f"support:{support}\n\n"


def support_interval(low: int, high: int) -> str:
    """A support known only as an interval."""
    return f"{low}< support <{high}\n"


def confidence_lines(confidence: float) -> str:
    """A single confidence and the end of the record."""
    return f"confiance:{format_double(confidence)}\n" + RECORD_SEPARATOR


def confidence_interval(low: float, high: float) -> str:
    """A confidence known only as an interval and the end of the record."""
    return f"{format_double(low)}< confiance <{format_double(high)}\n" + RECORD_SEPARATOR


def file_header(title: str) -> list[str]:
    """The first lines of a rule file."""
    return [HEADER_EDGE, title, HEADER_EDGE]


class RuleWriter:
    """The four rule files, the counters and the totals by kind."""

    def __init__(self) -> None:
        self.counters = [[0, 0, 0] for _ in range(24)]
        self.totals = [0, 0, 0]
        self.intra_exact = file_header(INTRA_EXACT_TITLE)
        self.intra_approx = file_header(INTRA_APPROX_TITLE)
        self.inter_exact = file_header(INTER_EXACT_TITLE)
        self.inter_approx = file_header(INTER_APPROX_TITLE)

    def count(self, form: str, kind: int) -> None:
        """Count one rule in a counter cell and in the total of its kind."""
        row = self.counters[ROW[form]]
        row[kind] = wrap(row[kind] + 1)
        self.totals[kind] = wrap(self.totals[kind] + 1)

    def column_sums(self) -> list[int]:
        """The sum of each column of the counters."""
        return [wrap(sum(row[kind] for row in self.counters)) for kind in (EXACT, APPRO, APPED)]


class Thresholds(NamedTuple):
    """What the rule makers test against."""

    minsupp: int
    minconf: float
    transactions: int


class IntraNodeRules:
    """The rules between an essential itemset e of a class and the rest d of its closed itemset."""

    def __init__(self, entries: list[Entry], limits: Thresholds, out: RuleWriter) -> None:
        self.entries = entries
        self.limits = limits
        self.out = out

    def exact(self, form: str, premise: Side, conclusion: Side, support: int) -> None:
        """Write and count an exact rule."""
        self.out.intra_exact += [rule_line(premise, conclusion), support_lines(support)]
        self.out.count(form, EXACT)

    def appro(self, form: str, premise: Side, conclusion: Side, support: int,
              confidence: float) -> None:
        """Write and count an approximative rule."""
        self.out.intra_approx += [rule_line(premise, conclusion), support_lines(support),
                                  confidence_lines(confidence)]
        self.out.count(form, APPRO)

    def apped(self, form: str, premise: Side, conclusion: Side, support: str, low: float,
              high: float) -> None:
        """Write and count an approximated rule."""
        self.out.intra_approx += [rule_line(premise, conclusion), support,
                                  confidence_interval(low, high)]
        self.out.count(form, APPED)

    def derive(self, classes: dict[Itemset, ClassData]) -> None:
        """All intra-node rules, in the order of the closed itemsets."""
        for closed, data in classes.items():
            if len(data.essentials) == 2:
                self.two_essentials(closed, data)
            else:
                for essential in data.essentials:
                    self.one_essential(closed, data, essential)

    def two_essentials(self, closed: Itemset, data: ClassData) -> None:
        """A class with exactly two essential itemsets, which may be each other's rest."""
        first, second = data.essentials
        rest = difference(closed, first)
        if rest == second:
            self.known_support(rest, data.support, first, data.support)
        else:
            self.one_essential(closed, data, first)
            self.one_essential(closed, data, second)

    def one_essential(self, closed: Itemset, data: ClassData, essential: Itemset) -> None:
        """The rules of one essential itemset."""
        rest = difference(closed, essential)
        found = difference_support(self.entries, rest, 0, data.support)
        if found.support != 0:
            self.known_support(rest, found.support, essential, data.support)
        else:
            self.bounded_support(rest, essential, data.support, found.lower, found.upper)

    def known_support(self, d: Itemset, r: int, e: Itemset, s: int) -> None:
        """The rules when the support r of the rest is known."""
        minsupp, minconf, total = self.limits
        t = wrap(total - s)
        u = wrap(s - r)
        if r >= minsupp:
            self.exact("R112", plain(d), plain(e), r)
            q1 = quotient(r, s)
            if q1 >= minconf:
                if q1 == 1.0:
                    self.exact("R111", plain(e), plain(d), r)
                else:
                    self.appro("R111", plain(e), plain(d), r, q1)
        if t >= minsupp:
            self.exact("R211", negated(e), negated(d), t)
            if r != total:
                q2 = quotient(t, wrap(total - r))
                if q2 >= minconf:
                    if q2 == 1.0:
                        self.exact("R212", negated(d), negated(e), t)
                    else:
                        # Counted with R111 on purpose.
                        self.appro("R111", negated(d), negated(e), t, q2)
        if u < minsupp:
            return
        q3 = quotient(u, s)
        if q3 >= minconf:
            self.appro("R311", plain(e), negated(d), u, q3)
        if r != total:
            q4 = quotient(u, wrap(total - r))
            if q4 >= minconf:
                if q4 == 1.0:
                    self.exact("R412", negated(d), plain(e), u)
                else:
                    self.appro("R412", negated(d), plain(e), u, q4)
        self.zero_support_pair(d, e)

    def zero_support_pair(self, d: Itemset, e: Itemset) -> None:
        """The two rules that hold nowhere, let through by thresholds of zero only."""
        if self.limits.minsupp == 0 and self.limits.minconf == 0.0:
            self.appro("R411", negated(e), plain(d), 0, 0.0)
            self.appro("R312", plain(d), negated(e), 0, 0.0)

    def bounded_support(self, d: Itemset, e: Itemset, s: int, lo: int, hi: int) -> None:
        """The rules when only bounds on the support of the rest are known."""
        minsupp, minconf, total = self.limits
        t = wrap(total - s)
        if lo >= minsupp:
            self.out.intra_exact += [rule_line(plain(d), plain(e)), support_interval(lo, hi)]
            self.out.count("R112", APPED)
            if quotient(lo, s) >= minconf:
                self.apped("R111", plain(e), plain(d), support_interval(lo, hi),
                           quotient(lo, s), quotient(hi, s))
        if t >= minsupp:
            self.exact("R211", negated(e), negated(d), t)
            if hi != total:
                low = quotient(t, wrap(total - lo))
                if low >= minconf:
                    self.apped("R212", negated(d), negated(e), support_lines(t),
                               low, quotient(t, wrap(total - hi)))
        u_lo = wrap(s - hi)
        u_hi = wrap(s - lo)
        if u_lo < minsupp:
            return
        if quotient(u_lo, s) >= minconf:
            self.apped("R311", plain(e), negated(d), support_interval(u_lo, u_hi),
                       quotient(u_lo, s), quotient(u_hi, s))
        if hi != total:
            low = quotient(u_lo, wrap(total - lo))
            low = low if low > 0.0 else 0.0
            high = capped(quotient(u_hi, wrap(total - hi)))
            if low >= minconf:
                self.apped("R412", negated(d), plain(e), support_interval(u_lo, u_hi), low, high)
        self.zero_support_pair(d, e)


class InterNodeRules:
    """The rules between a closed itemset and its successors, or their essential itemsets.

    Below, b is the successor or essential itemset, d the rest of the larger closed itemset.
    """

    def __init__(self, entries: list[Entry], classes: dict[Itemset, ClassData], limits: Thresholds,
                 out: RuleWriter) -> None:
        self.entries = entries
        self.classes = classes
        self.limits = limits
        self.out = out

    def exact(self, form: str, premise: Side, conclusion: Side, support: int) -> None:
        """Write and count an exact rule."""
        self.out.inter_exact += [rule_line(premise, conclusion), support_lines(support)]
        self.out.count(form, EXACT)

    def appro(self, form: str, premise: Side, conclusion: Side, support: int,
              confidence: float) -> None:
        """Write and count an approximative rule."""
        self.out.inter_approx += [rule_line(premise, conclusion), support_lines(support),
                                  confidence_lines(confidence)]
        self.out.count(form, APPRO)

    def by_confidence(self, form: str, premise: Side, conclusion: Side, support: int,
                      confidence: float) -> None:
        """Write and count a rule that is exact when its confidence is 1."""
        if confidence == 1.0:
            self.exact(form, premise, conclusion, support)
        else:
            self.appro(form, premise, conclusion, support, confidence)

    def apped(self, form: str, premise: Side, conclusion: Side, support: str, low: float,
              high: float) -> None:
        """Write and count an approximated rule."""
        self.out.inter_approx += [rule_line(premise, conclusion), support,
                                  confidence_interval(low, high)]
        self.out.count(form, APPED)

    def derive(self) -> None:
        """All inter-node rules, in the order of the entries."""
        for entry in self.entries:
            if len(entry.successors) == 2:
                self.two_successors(entry)
            else:
                for successor in entry.successors:
                    self.one_successor(entry, successor)

    def two_successors(self, entry: Entry) -> None:
        """An entry with exactly two successors, which may be each other's rest."""
        first, second = entry.successors
        rest = difference(entry.itemset, first)
        if rest == second:
            self.known_support(rest, self.classes[second].support, first,
                               self.classes[first].support, entry.data.support, True)
            self.essentials_of(entry, first)
            self.essentials_of(entry, second)
        else:
            self.one_successor(entry, first)
            self.one_successor(entry, second)

    def one_successor(self, entry: Entry, successor: Itemset) -> None:
        """The rules of one successor, then those of its essential itemsets."""
        self.pair(entry, successor, self.classes[successor].support, True)
        self.essentials_of(entry, successor)

    def essentials_of(self, entry: Entry, successor: Itemset) -> None:
        """The rules of the essential itemsets of one successor."""
        data = self.classes[successor]
        for essential in data.essentials:
            self.pair(entry, essential, data.support, False)

    def pair(self, entry: Entry, b: Itemset, s1: int, ifd_pair: bool) -> None:
        """The rules between b, of support s1, and the rest of the entry's closed itemset."""
        s2 = entry.data.support
        d = difference(entry.itemset, b)
        found = difference_support(self.entries, d, wrap(s2 - s1), s2)
        if found.support != 0:
            self.known_support(d, found.support, b, s1, s2, ifd_pair)
        else:
            self.bounded_support(d, b, s1, s2, found.lower, found.upper, ifd_pair)

    def known_support(self, d: Itemset, r: int, b: Itemset, s1: int, s2: int,
                      ifd_pair: bool) -> None:
        """The rules when the support r of the rest is known."""
        minsupp, minconf, total = self.limits
        both = wrap(s1 + r - s2)
        neither = wrap(total - s2)
        only_b = wrap(s2 - r)
        only_d = wrap(s2 - s1)
        if both >= minsupp:
            q1 = quotient(both, r)
            if q1 >= minconf:
                self.appro("R132" if ifd_pair else "R122", plain(d), plain(b), both, q1)
            q2 = quotient(both, s1)
            if q2 >= minconf:
                self.by_confidence("R131" if ifd_pair else "R121", plain(b), plain(d), both, q2)
        if neither >= minsupp:
            q3 = quotient(neither, wrap(total - s1))
            if q3 >= minconf:
                self.appro("R231" if ifd_pair else "R221", negated(b), negated(d), neither, q3)
            if r != total:
                q4 = quotient(neither, wrap(total - r))
                if q4 >= minconf:
                    # Stays true for the rules below: they are counted as those of a closed pair.
                    ifd_pair = True
                    self.by_confidence("R232", negated(d), negated(b), neither, q4)
        if only_b >= minsupp:
            q5 = quotient(only_b, s1)
            if q5 >= minconf:
                self.by_confidence("R331" if ifd_pair else "R321", plain(b), negated(d),
                                   only_b, q5)
            if r != total:
                q6 = quotient(only_b, wrap(total - r))
                if q6 >= minconf:
                    self.by_confidence("R432" if ifd_pair else "R421", negated(d), plain(b),
                                       only_b, q6)
        if only_d >= minsupp:
            q7 = quotient(only_d, wrap(total - s1))
            if q7 >= minconf:
                self.by_confidence("R431" if ifd_pair else "R422", negated(b), plain(d),
                                   only_d, q7)
            q8 = quotient(only_d, r)
            if q8 >= minconf:
                self.by_confidence("R332" if ifd_pair else "R322", plain(d), negated(b),
                                   only_d, q8)

    def bounded_support(self, d: Itemset, b: Itemset, s1: int, s2: int, lo: int, hi: int,
                        ifd_pair: bool) -> None:
        """The rules when only bounds on the support of the rest are known."""
        minsupp, minconf, total = self.limits
        both_lo = wrap(s1 + lo - s2)
        both_hi = wrap(s1 + hi - s2)
        neither = wrap(total - s2)
        only_b_lo = wrap(s2 - hi)
        only_b_hi = wrap(s2 - lo)
        only_d = wrap(s2 - s1)
        if both_lo >= minsupp:
            interval = support_interval(both_lo, both_hi)
            low, high = quotient(both_lo, hi), capped(quotient(both_hi, lo))
            if low >= minconf:
                self.apped("R132" if ifd_pair else "R122", plain(d), plain(b), interval, low, high)
            low, high = quotient(both_lo, s1), quotient(both_hi, s1)
            if low >= minconf:
                self.apped("R131" if ifd_pair else "R121", plain(b), plain(d), interval, low, high)
        if neither >= minsupp:
            q3 = quotient(neither, wrap(total - s1))
            if q3 >= minconf:
                self.appro("R231" if ifd_pair else "R221", negated(b), negated(d), neither, q3)
            if hi != total:
                low = quotient(neither, wrap(total - lo))
                high = quotient(neither, wrap(total - hi))
                if low >= minconf:
                    self.apped("R232" if ifd_pair else "R222", negated(d), negated(b),
                               support_lines(neither), low, high)
        if only_b_lo >= minsupp:
            interval = support_interval(only_b_lo, only_b_hi)
            low, high = capped(quotient(only_b_lo, s1)), capped(quotient(only_b_hi, s1))
            if low >= minconf:
                self.apped("R331" if ifd_pair else "R321", plain(b), negated(d), interval,
                           low, high)
            if hi != total:
                # Both ends divide the lower support.
                low = quotient(only_b_lo, wrap(total - lo))
                high = capped(quotient(only_b_lo, wrap(total - hi)))
                if low >= minconf:
                    self.apped("R432" if ifd_pair else "R421", negated(d), plain(b), interval,
                               low, high)
        if only_d >= minsupp:
            q7 = quotient(only_d, wrap(total - s1))
            if q7 >= minconf:
                if q7 == 1.0:
                    # Counted with the reverse direction on purpose.
                    self.exact("R332" if ifd_pair else "R322", negated(b), plain(d), only_d)
                else:
                    self.appro("R431" if ifd_pair else "R422", negated(b), plain(d), only_d, q7)
            low, high = quotient(only_d, hi), quotient(only_d, lo)
            if low >= minconf:
                self.apped("R332" if ifd_pair else "R322", plain(d), negated(b),
                           support_lines(only_d), low, high)


# --- the rule-count file -----------------------------------------------------------------------


def form_breakdown(counters: list[list[int]], kind: int) -> str:
    """The counts of one kind by form, in four groups."""
    lines: list[str] = []
    for group, forms in enumerate(REPORT_FORMS, start=1):
        tabs = 4 if group == 1 else 3
        lines.append(f"Form {group}: \n\n")
        for label, form in forms:
            lines.append(f"Number  of  rules of Form {group}: {KIND_NAMES[kind]} "
                         f" of the form  {label} = {form}: " + tabs * "\t"
                         + f"{counters[ROW[label]][kind]}\n")
        total = wrap(sum(counters[ROW[label]][kind] for label, _ in forms))
        ends = 5 if group == 4 else 3
        lines.append(f"\nTotal number  of  rules of Form {group}: {total}" + ends * "\n")
    return "".join(lines)


def percentage_lines(sums: Sequence[int], total: int) -> str:
    """The share of each kind; nothing when there is no rule."""
    if total == 0:
        return ""
    lines = [f"Percentage of {name} rules: {format_double(percentage(part, total))} %\n"
             for name, part in zip(KIND_NAMES, sums)]
    return "".join(lines) + "\n\n"


def report_text(writer: RuleWriter) -> str:
    """The rule-count file."""
    sums = writer.column_sums()
    total = wrap(sum(sums))
    text = "".join(f"Number of {name} rules: {part}\n" for name, part in zip(KIND_NAMES, sums))
    text += f"\nTotal number of rules: {total}\n\n\n"
    text += percentage_lines(sums, total)
    text += REPORT_HYPHENS + "\n\n"
    for kind, name in enumerate(KIND_NAMES):
        text += form_breakdown(writer.counters, kind)
        text += f"Number of {name} rules: {writer.totals[kind]}\n"
        ends = 2 if kind == APPED else 5
        text += f"Number of {name} rules: {sums[kind]}" + ends * "\n"
        text += REPORT_ASTERISKS + "\n\n"
    return text


# --- the run -----------------------------------------------------------------------------------


class FileNames(NamedTuple):
    """The six output files, in the order in which they are created."""

    intra_exact: str
    intra_approx: str
    inter_exact: str
    inter_approx: str
    number_rules: str
    lattice: str


class Result(NamedTuple):
    """All that a run leaves behind."""

    files: dict[str, bytes]
    stdout: bytes
    stderr: bytes
    status: int


def file_names(label: str, minsupp: str, minconf: str) -> FileNames:
    """The output file names, made of the arguments as typed."""
    common = f"_{label}_{minsupp}"
    suffix = f"{common}_{minconf}.txt"
    return FileNames("intra_exact" + suffix, "intra_approx" + suffix, "inter_exact" + suffix,
                     "inter_approx" + suffix, "number_rules" + suffix, f"Lattice{common}.txt")


def encoded(parts: Iterable[str]) -> bytes:
    """Pieces of output as bytes; everything that is printed is ASCII."""
    return "".join(parts).encode("ascii")


def summary_text(writer: RuleWriter) -> str:
    """The totals on the console."""
    exact, appro, apped = writer.column_sums()
    return (f"Number of exact rules: {writer.totals[EXACT]}\n"
            f"Number of approximative rules: {writer.totals[APPRO]}\n"
            f"Number of approximated rules: {writer.totals[APPED]}\n"
            f"x={exact}   y={appro}  z={apped}\n")


def closing_text() -> str:
    """The last lines on the console."""
    return ("Execution ended successfully!!!\n"
            "Time spent by Building Lattice step = *\n"
            "Time spent by KOR Deriver step = *\n"
            "Time spent by Disjunctive Lattice Builder = *\n")


def run(class_file: bytes | None, arguments: Sequence[str]) -> Result:
    """Run the tool on the bytes of a class file (None: it cannot be read).

    The arguments are those of the command line: label, class file, minsupp, minconf, N.
    """
    if len(arguments) < 5:
        return Result({}, encoded([BANNER]), USAGE_MESSAGE, 0)
    if class_file is None:
        return Result({}, encoded([BANNER]), UNREADABLE_MESSAGE, 0)
    limits = Thresholds(strtol(os.fsencode(arguments[2])), strtod(os.fsencode(arguments[3])),
                        strtol(os.fsencode(arguments[4])))
    names = file_names(arguments[0], arguments[2], arguments[3])
    console = [BANNER,
               f"Minimum support threshold = {limits.minsupp}\n",
               f"Minimum confiance threshold = {format_double(limits.minconf)}\n"]

    reader = ClassReader(class_file)
    classes = load_classes(reader)
    entries = load_entries(classes)
    console += reader.messages
    console += ["\nDCI loaded\n", " hash_table loaded\n"]
    if not entries:
        return Result({name: b"" for name in names}, encoded(console), EMPTY_LATTICE_MESSAGE, 2)

    LatticeBuilder(entries).build()
    console += [" Lattice built\n", " Lattice written\n", f" Size of the map: {len(classes)}\n",
                " Closed itemsets processed\n"]

    writer = RuleWriter()
    IntraNodeRules(entries, limits, writer).derive(classes)
    InterNodeRules(entries, classes, limits, writer).derive()
    console += [" Rules generted \n", summary_text(writer), closing_text()]

    files = {
        names.intra_exact: encoded(writer.intra_exact),
        names.intra_approx: encoded(writer.intra_approx),
        names.inter_exact: encoded(writer.inter_exact),
        names.inter_approx: encoded(writer.inter_approx),
        names.number_rules: encoded([report_text(writer)]),
        names.lattice: encoded([lattice_text(entries)]),
    }
    return Result(files, encoded(console), b"", 0)


def open_class_file(path: str) -> FileIO | None:
    """The class file at its start, a pipe where it stands; None when it cannot be read."""
    try:
        stream = open(path, "rb", buffering=0)
    except OSError:
        return None
    try:
        if stream.seekable():
            stream.read(1)
            stream.seek(0)
    except OSError:
        stream.close()
        return None
    return stream


def write_file(name: str, content: bytes) -> None:
    """Write one output file; one that cannot be created is lost without a word."""
    try:
        with open(name, "wb") as stream:
            stream.write(content)
    except OSError:
        pass


def run_command(arguments: Sequence[str]) -> Result:
    """Run the tool as from the command line, writing its files into the current directory."""
    stream = open_class_file(arguments[1]) if len(arguments) >= 5 else None
    if stream is None:
        return run(None, arguments)
    # The output files are emptied before the classes are read, should they be the same file.
    for name in file_names(arguments[0], arguments[2], arguments[3]):
        write_file(name, b"")
    with stream:
        class_file = stream.readall()
    result = run(class_file, arguments)
    for name, content in result.files.items():
        write_file(name, content)
    return result


def main() -> int:
    """The command line."""
    sys.setrecursionlimit(100_000)
    result = run_command(sys.argv[1:])
    sys.stdout.buffer.write(result.stdout)
    sys.stdout.buffer.flush()
    sys.stderr.buffer.write(result.stderr)
    sys.stderr.buffer.flush()
    return result.status


if __name__ == "__main__":
    sys.exit(main())
