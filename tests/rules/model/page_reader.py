"""Reads the pages that korv-rules writes, by docs/page.md alone: shares nothing with the program."""

from __future__ import annotations

import base64
import html.parser
import json
import math
import struct
import sys
import zlib
from array import array
from dataclasses import dataclass
from typing import Any, Dict, FrozenSet, Iterator, List, NamedTuple, Optional, Tuple

UNKNOWN = 0xFFFFFFFF
TYPES = {"u8": "B", "u16": "H", "u32": "I", "i8": "b", "f32": "f", "f64": "d"}


class Elements(html.parser.HTMLParser):
    """Scripts, styles, titles and policies of a page."""

    def __init__(self) -> None:
        super().__init__(convert_charrefs=True)
        self.scripts: List[Tuple[Dict[str, Optional[str]], str]] = []
        self.styles: List[str] = []
        self.policies: List[str] = []
        self.title = ""
        self.names: List[str] = []
        self._open: Optional[Tuple[str, Dict[str, Optional[str]]]] = None
        self._text = ""

    def handle_starttag(self, tag: str, attrs: List[Tuple[str, Optional[str]]]) -> None:
        self.names.append(tag)
        members = dict(attrs)
        if tag == "meta" and members.get("http-equiv", "").lower() == "content-security-policy":
            self.policies.append(members["content"] or "")
        if tag in ("script", "style", "title"):
            self._open = (tag, members)
            self._text = ""

    def handle_data(self, data: str) -> None:
        if self._open:
            self._text += data

    def handle_endtag(self, tag: str) -> None:
        if not self._open or self._open[0] != tag:
            return
        members = self._open[1]
        self._open = None
        if tag == "script":
            self.scripts.append((members, self._text))
        elif tag == "style":
            self.styles.append(self._text)
        else:
            self.title = self._text


def elements_of(page: str) -> Elements:
    elements = Elements()
    elements.feed(page)
    elements.close()
    return elements


def data_of(page: str) -> str:
    """The text of the element that holds the data."""
    found = [text for members, text in elements_of(page).scripts if members.get("id") == "korv-data"]
    assert len(found) == 1, f"{len(found)} elements of data"
    return found[0]


class Table(NamedTuple):
    premise: int
    conclusion: int
    both: int


@dataclass(frozen=True)
class Side:
    items: Tuple[int, ...]  # numbers as in the files
    is_negated: bool
    low: int
    high: int


@dataclass(frozen=True)
class Rule:
    premise: Side
    conclusion: Side
    first: Table
    second: Table
    form: Optional[str]
    wordings: int
    readings: int
    holdout: Optional[Tuple[int, int, float]]  # support and premise in other transactions, and p

    @property
    def kind(self) -> str:
        if self.first.premise != self.second.premise or self.first.both != self.second.both:
            return "bounded"
        return "exact" if self.first.both == self.first.premise and self.first.both else "approximative"

    def bounds(self, count: str) -> Tuple[int, int]:
        ends = getattr(self.first, count), getattr(self.second, count)
        return min(ends), max(ends)


@dataclass(frozen=True)
class Class:
    items: FrozenSet[int]
    count: int
    lowers: Tuple[int, ...]  # positions
    more_lowers: int
    more_uppers: int
    essentials: Tuple[Tuple[int, ...], ...]


class Page:
    """The data of a page, checked for what must hold of any."""

    def __init__(self, text: str) -> None:
        blob = zlib.decompress(base64.b64decode(data_of(text), validate=True), wbits=-zlib.MAX_WBITS)
        (length,) = struct.unpack_from("<I", blob)
        self.header: Dict[str, Any] = json.loads(blob[4:4 + length].decode("utf-8"))
        begin = -(-(4 + length) // 8) * 8
        assert not any(blob[4 + length:begin]), "the padding is not zero"
        self.arrays: Dict[str, array[Any]] = {}
        end = begin
        for told in self.header["arrays"]:
            at = begin + told["offset"]
            assert told["offset"] % 8 == 0 and at >= end and not any(blob[end:at]), told
            numbers, size = decoded(told, blob, at)
            assert told["name"] not in self.arrays and len(numbers) > 0
            self.arrays[told["name"]] = numbers
            end = at + size
        assert len(blob) == -(-end // 8) * 8, "the blob ends elsewhere"
        self.transactions: int = self.header["transactions"]
        self.items = list(self.list("item_numbers"))
        assert self.items == sorted(set(self.items)) and len(self.items) == self.header["items"]["count"]
        self.names = [name if name is not None else str(item)
                      for name, item in zip(self.header["items"]["names"], self.items)]
        assert len(self.names) == len(self.items)
        self.sides = list(self._sides())
        self.rules = list(self._rules())
        self.classes = self._classes()

    def list(self, name: str, length: Optional[int] = None, usual: int = 0) -> Any:
        """An array, or what stands for it where there is none."""
        if name in self.arrays:
            assert length is None or len(self.arrays[name]) == length, name
            return self.arrays[name]
        return [usual] * (length or 0)

    def item_count(self, item: int) -> Optional[int]:
        count = self.list("item_counts")[self.items.index(item)]
        return None if count == UNKNOWN else count

    def name(self, item: int) -> str:
        return self.names[self.items.index(item)]

    def _sides(self) -> Iterator[Side]:
        number, plain = self.header["sides"]["count"], self.header["sides"]["plain"]
        itemsets = list(pieces(self.list("side_sizes", number), self.list("side_items"), self.items))
        for part in (itemsets[:plain], itemsets[plain:]):
            assert all(one < other for one, other in zip(part, part[1:])), "the sides are not in their order"
        spreads = self.list("side_spreads", number)
        for position, (itemset, low) in enumerate(zip(itemsets, self.list("side_counts", number))):
            yield Side(itemset, position >= plain, low, low + spreads[position])

    def _rules(self) -> Iterator[Rule]:
        number = self.header["rules"]["count"]
        odd = {rule: [Table(*self.list("odd_counts")[6 * i + j:6 * i + j + 3]) for j in (0, 3)]
               for i, rule in enumerate(self.list("odd_rules"))}
        columns = [self.list(name, number, usual) for name, usual in (
            ("premises", 0), ("conclusions", 0), ("exceptions", 0), ("slopes", 0), ("wordings", 1), ("readings", 1))]
        forms = self.arrays.get("forms")
        holdout = list(self._holdout()) or [None] * number
        assert len(holdout) == number
        for rule, (premise, conclusion, exceptions, slope, wordings, readings) in enumerate(zip(*columns)):
            if rule in odd:
                tables = odd[rule]
                assert tables[0].premise - tables[0].both == exceptions
            else:
                tables = list(tables_of(self.sides[premise], self.sides[conclusion], exceptions, slope))
            yield Rule(self.sides[premise], self.sides[conclusion], tables[0], tables[1],
                       self.header["forms"][forms[rule]]["label"] if forms else None, wordings, readings,
                       holdout[rule])

    def _holdout(self) -> Iterator[Tuple[int, int, float]]:
        names = ("holdout_premises", "holdout_exceptions", "holdout_ps")
        assert "holdout" in self.header or not any(name in self.arrays for name in names)
        for premise, exceptions, surprise in zip(*(self.list(name) for name in names)):
            yield premise - exceptions, premise, surprise

    def _classes(self) -> List[Class]:
        number = self.header["lattice"]["shown"]
        counts = self.list("class_counts", number)
        own = list(pieces(self.list("class_own_sizes", number), self.list("class_own_items"), self.items))
        lowers = list(pieces(self.list("class_lower_sizes", number), self.list("class_lowers")))
        more = self.list("class_more_lowers", number), self.list("class_more_uppers", number)
        itemsets = list(pieces(self.list("essential_sizes"), self.list("essential_items"), self.items))
        essentials = list(pieces(self.list("class_essential_sizes", number), itemsets))
        classes: List[Class] = []
        for position in range(number):
            assert list(lowers[position]) == sorted(set(lowers[position]))
            below = [position - distance for distance in lowers[position]]
            items = frozenset(own[position]).union(*(classes[lower].items for lower in below))
            assert not any(frozenset(own[position]) & classes[lower].items for lower in below)
            classes.append(Class(items, counts[position], tuple(below), more[0][position], more[1][position],
                                 tuple(essentials[position])))
        return classes

    def class_around(self, items: FrozenSet[int], count: int) -> Optional[Class]:
        """The first class that holds the items, if so many transactions meet it."""
        found = next((each for each in self.classes if items <= each.items), None)
        return found if found and found.count == count else None


def decoded(told: Dict[str, Any], blob: bytes, at: int) -> Tuple[array[Any], int]:
    """The numbers of an array, and how many bytes it takes."""
    code = TYPES[told["type"]]
    numbers: array[Any] = array(code)
    size = numbers.itemsize * told["length"]
    stored = blob[at:at + size]
    assert len(stored) == size, "an array goes beyond the blob"
    if told.get("layout") == "planes":
        stored = bytes(stored[plane * told["length"] + i] for i in range(told["length"])
                       for plane in range(numbers.itemsize))
    numbers.frombytes(stored)
    if sys.byteorder == "big":
        numbers.byteswap()
    if told.get("delta"):
        total = 0
        for i, difference in enumerate(numbers):
            total = (total + difference) % (1 << 8 * numbers.itemsize)
            numbers[i] = total
    return numbers, size


def pieces(sizes: Any, elements: Any, of: Optional[List[Any]] = None) -> Iterator[Tuple[Any, ...]]:
    """The pieces of a list, one behind the other; as elements of `of` where they are positions."""
    begin = 0
    for size in sizes:
        piece = elements[begin:begin + size]
        assert len(piece) == size
        yield tuple(of[position] for position in piece) if of is not None else tuple(piece)
        begin += size
    assert begin == len(elements)


def tables_of(premise: Side, conclusion: Side, exceptions: int, slope: int) -> Iterator[Table]:
    step = max(premise.high - premise.low, conclusion.high - conclusion.low)
    both = premise.low - exceptions
    yield Table(premise.low, conclusion.low, both)
    yield Table(premise.high, conclusion.high, both + slope * step)


def expected_exclusion(page: Page, index: int) -> Tuple[Tuple[int, int], int, float, int, float]:
    """The items of an exclusion, how often they are together, how often by chance, either, and p."""
    first, second = (page.items[page.list(name)[index]] for name in ("exclusion_firsts", "exclusion_seconds"))
    counts = [page.item_count(item) or 0 for item in (first, second)]
    together = page.list("exclusion_togethers")[index]
    return ((first, second), together, counts[0] * counts[1] / page.transactions, sum(counts) - together,
            page.list("exclusion_ps")[index])


def is_close(one: float, other: float) -> bool:
    return math.isclose(one, other, rel_tol=1e-6, abs_tol=1e-30)
