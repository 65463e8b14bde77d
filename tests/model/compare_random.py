#!/usr/bin/env python3
"""Compares a korv binary with the model on random inputs, byte for byte.

    compare_random.py BINARY [--count N] [--seed S]

The first input on which they differ is shrunk and printed; the exit status is then 1.
"""

from __future__ import annotations

import argparse
import os
import random
import re
import subprocess
import sys
import tempfile
from collections.abc import Callable, Sequence
from dataclasses import dataclass, replace
from pathlib import Path

import korv_model

DEFAULT_COUNT = 2000
DEFAULT_SEED = 1
TIME_LIMIT_SECONDS = 20
SHRINK_RUNS = 4000
LONGEST_NAME = 255

TIMING_LINE = re.compile(rb"^(Time spent by .* = )(?:\*|[-+.0-9e]+)$", re.MULTILINE)

LABELS = ("r", "", "a b", "50%", "\u00e9", "no/such", "n" * 300)
ODD_MINSUPPS = ("0", "-1", "-0", "+2", " 3", "abc", "", "1x", "0x2", "010", "1.9", "2147483647",
                "2147483648", "-2147483648", "-2147483649", "4294967295", "99999999999999999999")
MINCONFS = ("0", "0.1", "0.25", "0.5", "0.50", "0.6", "0.8", "1", "1.0", ".3")
ODD_MINCONFS = ("nan", "-nan", "NAN(7)", "inf", "-inf", "infinity", "1e-3", "0x1p-1", "0X.8p0",
                "abc", "", "-0", "-0.0", "-1", "2", "1e", "0x", " 0.5", "+.5", "0,5", "1e400",
                "1e-400", "0.3333333333333333", "123456789")
ODD_NUMBERS = (0, 1, 10, 100, (1 << 31) - 1, 1 << 31, (1 << 32) - 1, 1 << 32, (1 << 32) + 3,
               1 << 40, 10 ** 20)
DAMAGE_BYTES = b"0123456789 \t\n\r,-.a\x00\x80\xff"


# --- inputs ------------------------------------------------------------------------------------


@dataclass(frozen=True)
class Case:
    """One input: the class file's bytes, how it is handed over, and the arguments.

    The class file comes as a "file", a "pipe", or is a "directory" or "missing".
    The second argument, if there is one, stands for the path of the class file.
    """

    class_file: bytes
    handed_over: str
    arguments: tuple[str, ...]


@dataclass
class RandomClass:
    """A class record before it is written down; nothing in it need fit together."""

    items: list[int]
    support: int
    essentials: list[list[int]]


Family = list[RandomClass]


def random_transactions(rng: random.Random) -> list[frozenset[int]]:
    """A small transaction database; every item that is kept occurs."""
    names = sorted(rng.sample(range(1, rng.choice((8, 8, 30))), rng.randint(1, 7)))
    density = rng.uniform(0.1, 0.7)
    rows = rng.randint(1, 14)
    return [frozenset(name for name in names if rng.random() < density) for _ in range(rows)]


def mined_family(transactions: Sequence[frozenset[int]]) -> Family:
    """All classes of a database, by going through every itemset of its items."""
    items = sorted(frozenset().union(*transactions))
    rows = {item: frozenset(row for row, transaction in enumerate(transactions)
                            if item in transaction) for item in items}
    classes: dict[tuple[int, ...], RandomClass] = {}
    for mask in range(1, 1 << len(items)):
        itemset = [item for index, item in enumerate(items) if mask >> index & 1]
        covered = rows_of(itemset, rows)
        closure = tuple(item for item in items if rows[item] <= covered)
        found = classes.setdefault(closure, RandomClass(list(closure), len(covered), []))
        if is_essential(itemset, rows):
            found.essentials.append(itemset)
    return list(classes.values())


def rows_of(itemset: Sequence[int], rows: dict[int, frozenset[int]]) -> frozenset[int]:
    """The transactions with at least one item of the itemset."""
    return frozenset().union(*(rows[item] for item in itemset))


def is_essential(itemset: Sequence[int], rows: dict[int, frozenset[int]]) -> bool:
    """Whether removing any item lowers the disjunctive support."""
    covered = rows_of(itemset, rows)
    return all(rows_of([other for other in itemset if other != item], rows) != covered
               for item in itemset)


def contradictory_family(rng: random.Random) -> Family:
    """Classes whose itemsets, supports and essential itemsets do not fit together."""
    universe = range(1, rng.randint(2, 8))
    highest = rng.choice((3, 10, 30))

    def itemset(shortest: int) -> list[int]:
        return rng.sample(universe, rng.randint(min(shortest, len(universe)), len(universe)))

    return [RandomClass(itemset(1), rng.randint(0, highest),
                        [itemset(0) for _ in range(rng.choice((0, 1, 1, 2, 2, 3, 4)))])
            for _ in range(rng.randint(0, 14))]


def thin_out(rng: random.Random, family: Family) -> Family:
    """The family with classes and essential itemsets missing, so that bounds stay open."""
    keep_class = rng.uniform(0.4, 1.0)
    keep_essential = rng.uniform(0.3, 1.0)
    for each in family:
        each.essentials = [essential for essential in each.essentials
                           if rng.random() < keep_essential]
    return [each for each in family if rng.random() < keep_class]


def repeat_items(rng: random.Random, family: Family) -> Family:
    """The family with items repeated inside some itemsets."""
    for each in family:
        for itemset in [each.items, *each.essentials]:
            if itemset and rng.random() < 0.3:
                itemset.append(rng.choice(itemset))
    return family


def add_empty_essentials(rng: random.Random, family: Family) -> Family:
    """The family with empty essential itemsets in some classes."""
    for each in family:
        if rng.random() < 0.4:
            each.essentials.insert(rng.randint(0, len(each.essentials)), [])
    return family


def odd_supports(rng: random.Random, family: Family) -> Family:
    """The family with some supports that are 0, off by a little, or far too large."""
    for each in family:
        if rng.random() < 0.3:
            each.support = rng.choice((0, each.support + 1, max(each.support - 1, 0),
                                       rng.choice(ODD_NUMBERS)))
    return family


def odd_items(rng: random.Random, family: Family) -> Family:
    """The family with one item renamed to an odd number everywhere."""
    old = rng.randint(1, 7)
    new = rng.choice(ODD_NUMBERS)
    for each in family:
        each.items = [new if item == old else item for item in each.items]
        each.essentials = [[new if item == old else item for item in essential]
                           for essential in each.essentials]
    return family


def repeat_classes(rng: random.Random, family: Family) -> Family:
    """The family with some classes listed again, changed."""
    again = [RandomClass(rng.sample(each.items, len(each.items)), each.support + rng.randint(0, 2),
                         [list(essential) for essential in each.essentials[:rng.randint(0, 2)]])
             for each in family if rng.random() < 0.3]
    return family + again


def shuffle_family(rng: random.Random, family: Family) -> Family:
    """The family in any order, of classes and of items."""
    for each in family:
        rng.shuffle(each.items)
        rng.shuffle(each.essentials)
        for essential in each.essentials:
            rng.shuffle(essential)
    rng.shuffle(family)
    return family


def add_empty_class(rng: random.Random, family: Family) -> Family:
    """The family with a class without items somewhere, where loading stops."""
    family.insert(rng.randint(0, len(family)), RandomClass([], rng.randint(0, 5), [[1], [1, 2]]))
    return family


Change = Callable[[random.Random, Family], Family]

CHANGES: tuple[tuple[float, Change], ...] = (
    (0.50, thin_out),
    (0.10, repeat_items),
    (0.10, add_empty_essentials),
    (0.15, odd_supports),
    (0.10, odd_items),
    (0.10, repeat_classes),
    (0.30, shuffle_family),
    (0.03, add_empty_class),
)


def class_file_bytes(family: Family) -> bytes:
    """The family as a class file; a class without essential itemsets lists its closed itemset."""
    return b"".join(record_bytes(each) for each in family)


def record_bytes(each: RandomClass) -> bytes:
    """One class as a record."""
    essentials = each.essentials or [each.items]
    listed = " ".join(blank_separated(essential) + "," for essential in essentials)
    return f"{blank_separated(each.items)}\t{each.support}\t {listed}\n".encode("ascii")


def blank_separated(itemset: Sequence[int]) -> str:
    """The items with blanks between them."""
    return " ".join(str(item) for item in itemset)


def damaged(rng: random.Random, data: bytes) -> bytes:
    """The bytes with a little damage of one kind."""
    if not data:
        return bytes(rng.choice(DAMAGE_BYTES) for _ in range(rng.randint(0, 20)))
    kind = rng.randrange(7)
    if kind == 0:
        return data[:rng.randrange(len(data))]
    if kind == 1:
        return data.replace(b"\n", b"\r\n")
    if kind == 2:
        return data.replace(rng.choice((b",", b"\t", b" ", b"\n")), b"", rng.randint(1, 3))
    if kind == 3:
        start = rng.randrange(len(data))
        return data[:start] + data[start + rng.randint(1, 12):]
    if kind == 4:
        return data.rstrip(b"\n")
    changed = bytearray(data)
    for _ in range(rng.randint(1, 5)):
        position = rng.randrange(len(changed))
        if kind == 5:
            changed[position] = rng.choice(DAMAGE_BYTES)
        else:
            changed.insert(position, rng.choice(DAMAGE_BYTES))
    return bytes(changed)


def random_arguments(rng: random.Random, transactions: int,
                     family: Family) -> tuple[str, ...]:
    """A command line; mostly five sensible arguments."""
    minsupp = str(rng.randint(0, 3))
    if rng.random() < 0.15:
        minsupp = rng.choice(ODD_MINSUPPS)
    minconf = rng.choice(MINCONFS)
    if rng.random() < 0.15:
        minconf = rng.choice(ODD_MINCONFS)
    count = str(max(transactions + rng.choice((0, 0, 0, 0, 1, 5, -1, -3)), 0))
    if family and rng.random() < 0.2:
        count = str(rng.choice(family).support)
    if rng.random() < 0.1:
        count = rng.choice(ODD_MINSUPPS)
    label = rng.choice(LABELS) if rng.random() < 0.1 else "r"
    arguments = (label, "classes", minsupp, minconf, count)
    if rng.random() < 0.02:
        return (arguments + ("more", "and more"))[:rng.randint(0, 7)]
    return arguments


def random_case(rng: random.Random) -> Case:
    """One random input."""
    transactions = random_transactions(rng)
    if rng.random() < 0.75:
        family = mined_family(transactions)
    else:
        family = contradictory_family(rng)
    for probability, change in CHANGES:
        if rng.random() < probability:
            family = change(rng, family)
    data = class_file_bytes(family)
    if rng.random() < 0.25:
        data = damaged(rng, data)
    handed_over = "file"
    if rng.random() < 0.02:
        handed_over = rng.choice(("pipe", "directory", "missing"))
    return Case(data, handed_over, random_arguments(rng, len(transactions), family))


# --- running and comparing ---------------------------------------------------------------------


@dataclass(frozen=True)
class Outcome:
    """Everything observed of one run, in the order in which it is compared."""

    parts: dict[str, bytes]


def outcome(files: dict[str, bytes], stdout: bytes, stderr: bytes, status: int | str) -> Outcome:
    """The outcome of a run, with the timing values masked."""
    parts = {"exit status": str(status).encode(), "standard error": stderr,
             "names of the files": "\n".join(sorted(files)).encode("utf-8", "surrogateescape")}
    parts.update(sorted(files.items()))
    parts["standard output"] = TIMING_LINE.sub(rb"\1*", stdout)
    return Outcome(parts)


def can_be_created(name: str) -> bool:
    """Whether an output file can be made in the empty directory of the run."""
    return "/" not in name and len(os.fsencode(name)) <= LONGEST_NAME


def model_outcome(case: Case) -> Outcome:
    """What the model does."""
    readable = case.handed_over in ("file", "pipe")
    result = korv_model.run(case.class_file if readable else None, case.arguments)
    files = {name: content for name, content in result.files.items() if can_be_created(name)}
    return outcome(files, result.stdout, result.stderr, result.status)


class BinaryRunner:
    """Runs the binary, each time in an empty directory."""

    def __init__(self, binary: Path, root: Path) -> None:
        self.binary = binary
        self.class_file = root / "classes"
        self.directory = root / "run"
        self.directory.mkdir()

    def outcome(self, case: Case) -> Outcome:
        """What the binary does."""
        self.class_file.write_bytes(case.class_file)
        paths = {"file": str(self.class_file), "pipe": "/dev/stdin",
                 "directory": os.curdir, "missing": "no_such_file"}
        arguments = list(case.arguments)
        if len(arguments) > 1:
            arguments[1] = paths[case.handed_over]
        status: int | str
        try:
            done = subprocess.run([self.binary, *arguments], cwd=self.directory, check=False,
                                  capture_output=True, timeout=TIME_LIMIT_SECONDS,
                                  input=case.class_file if case.handed_over == "pipe" else b"")
            stdout, stderr, status = done.stdout, done.stderr, done.returncode
        except subprocess.TimeoutExpired:
            stdout, stderr, status = b"", b"", "time limit passed"
        return outcome(self.take_files(), stdout, stderr, status)

    def take_files(self) -> dict[str, bytes]:
        """The files of the run, which are removed."""
        files: dict[str, bytes] = {}
        for path in self.directory.iterdir():
            files[path.name] = path.read_bytes()
            path.unlink()
        return files


def shown(line: bytes) -> str:
    """A line so that every byte can be read."""
    return repr(line)[1:]


def first_difference(binary: Outcome, model: Outcome) -> str | None:
    """The first differing line of the first differing part; None when all parts agree."""
    for name in [*model.parts, *binary.parts]:
        ours, theirs = binary.parts.get(name), model.parts.get(name)
        if ours == theirs:
            continue
        if ours is None or theirs is None:
            return f"{name}: written by {'the model' if ours is None else 'the binary'} only"
        return f"{name}, {first_differing_line(ours, theirs)}"
    return None


def first_differing_line(ours: bytes, theirs: bytes) -> str:
    """The first line in which two different texts differ."""
    our_lines, their_lines = ours.split(b"\n"), theirs.split(b"\n")
    number = 0
    while our_lines[number:number + 1] == their_lines[number:number + 1]:
        number += 1
    our_line = [shown(line) for line in our_lines[number:number + 1]] or ["nothing"]
    their_line = [shown(line) for line in their_lines[number:number + 1]] or ["nothing"]
    return f"line {number + 1}:\n  binary: {our_line[0]}\n  model:  {their_line[0]}"


# --- shrinking ---------------------------------------------------------------------------------


class Shrinker:
    """Makes the class file of a differing input smaller while it still differs."""

    def __init__(self, differs: Callable[[Case], bool]) -> None:
        self.differs = differs
        self.runs_left = SHRINK_RUNS

    def shrink(self, case: Case) -> Case:
        """Remove records, then essential itemsets, then bytes, until nothing more can go."""
        before = None
        while before != case and self.runs_left > 0:
            before = case
            for pattern in (rb"[^\n]*\n?", rb"[^,]*,?", rb"(?s:.)"):
                pieces = [piece for piece in re.findall(pattern, case.class_file) if piece]
                case = self.without_pieces(case, pieces)
        return case

    def without_pieces(self, case: Case, pieces: list[bytes]) -> Case:
        """Remove runs of pieces, long runs first."""
        length = len(pieces)
        while length > 0:
            start = 0
            while start < len(pieces):
                fewer = pieces[:start] + pieces[start + length:]
                smaller = replace(case, class_file=b"".join(fewer))
                if self.still_differs(smaller):
                    case, pieces = smaller, fewer
                else:
                    start += length
            length //= 2
        return case

    def still_differs(self, case: Case) -> bool:
        """Whether the outcomes differ, as long as there are runs left to find out."""
        if self.runs_left == 0:
            return False
        self.runs_left -= 1
        return self.differs(case)


def report(seed: int, index: int, case: Case, difference: str | None) -> None:
    """Print a differing input."""
    print(f"DIFFERS: seed {seed}, input {index}")
    print(f"arguments: {list(case.arguments)}")
    print(f"class file ({case.handed_over}, {len(case.class_file)} bytes):")
    for line in case.class_file.splitlines(keepends=True):
        print(f"  {shown(line)}")
    print(f"first difference: {difference}")


def compare(runner: BinaryRunner, count: int, seed: int) -> int:
    """Compare so many inputs; the exit status."""
    for index in range(count):
        case = random_case(random.Random(f"{seed} {index}"))
        if first_difference(runner.outcome(case), model_outcome(case)) is None:
            continue
        shrinker = Shrinker(lambda smaller: runner.outcome(smaller) != model_outcome(smaller))
        case = shrinker.shrink(case)
        report(seed, index, case, first_difference(runner.outcome(case), model_outcome(case)))
        print(f"{index + 1} inputs compared, the last one differs")
        return 1
    print(f"{count} inputs compared, all agree")
    return 0


def main() -> int:
    """The command line."""
    parser = argparse.ArgumentParser(description="Compare a korv binary with the model.")
    parser.add_argument("binary", type=Path)
    parser.add_argument("--count", type=int, default=DEFAULT_COUNT)
    parser.add_argument("--seed", type=int, default=DEFAULT_SEED)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as root:
        runner = BinaryRunner(options.binary.resolve(), Path(root))
        return compare(runner, options.count, options.seed)


if __name__ == "__main__":
    sys.exit(main())
