"""The class files that the benchmarks measure, and the thresholds of their runs."""

import subprocess
from typing import NamedTuple, Optional

from measuring import TOP


class Case(NamedTuple):
    name: str  # of the class file
    minsupp: int
    minconf: float
    transactions: int
    plain_ends: bool = False  # whether the plain walks end within minutes
    made: Optional[tuple] = None  # arguments of make-classes


# The sample, files that this benchmark makes, and files mined from public benchmark data (with --classes).
SAMPLE = Case("titanic", 100, 0.6, 2201, plain_ends=True)
MADE = [
    Case("made_300000_20000", 20, 0.5, 308420, made=(300000, 20000)),
    Case("made_1000000_500", 20, 0.5, 7800, made=(1000000, 500)),
]
MINED = [
    Case("mushroom_2000", 300, 0.8, 8124, plain_ends=True),
    Case("mushroom_1000", 300, 0.8, 8124, plain_ends=True),
    Case("mushroom_500", 300, 0.8, 8124),
    Case("mushroom_200", 300, 0.8, 8124),
    Case("chess_1200", 100, 0.5, 3196),
    Case("chess_247", 300, 0.8, 3196),
    Case("groceries_10", 5, 0.2, 9835),
    Case("T10I4D100K_200", 100, 0.3, 100000),
    Case("splice_103", 100, 0.8, 3190),
    Case("retail_freq_14", 50, 0.5, 88162),
]


def made_file(case, directory):
    path = directory / f"{case.name}.classes"
    with open(path, "w", encoding="ascii") as out:
        subprocess.run([TOP / "bench" / "make-classes", *map(str, case.made)], check=True, stdout=out,
                       stderr=subprocess.DEVNULL)
    return path


def path_of(case, classes, work):
    if case.made:
        return made_file(case, work)
    if case is SAMPLE:
        return TOP / "examples" / "titanic" / "titanic.classes"
    return classes / f"{case.name}.classes"
