#!/usr/bin/env python3
"""Checks that chance brings hardly any rule through --test: shuffles data, so that nothing in it is real.

    shuffled_data.py KORV_RULES FILE [--shuffles N] [--seed S] [--alpha A] [OPTION...]

FILE is a table (.csv), of which each column of cells is shuffled by itself, or holds transactions of whole numbers, of
which each item is shuffled over all transactions. OPTION are further options of korv-rules. The exit status is 1 when
more than A of the shuffles have a rule that passes, or when the data themselves have none, so that nothing was tested.
"""

from __future__ import annotations

import argparse
import math
import random
import re
import subprocess
import sys
import tempfile
from pathlib import Path
from typing import List, NamedTuple

TIME_LIMIT_SECONDS = 600


class Found(NamedTuple):
    """How many rules there are, and how many reach a p of 0.05 by themselves."""

    passing: int
    looked_at: int
    seeming: int


def shuffled_table(text: str, rng: random.Random) -> str:
    """The table with each column in an order of its own. No cell may hold a comma or a line end."""
    header, *rows = text.splitlines()
    columns = [rng.sample(cells, len(cells)) for cells in map(list, zip(*(row.split(",") for row in rows)))]
    return "\n".join([header, *map(",".join, zip(*columns))]) + "\n"


def shuffled_items(text: str, rng: random.Random) -> str:
    """As many transactions, each item in as many of them as before."""
    lines = [set(line.split()) for line in text.splitlines()]
    drawn: List[List[str]] = [[] for _ in lines]
    for item in sorted(set().union(*lines), key=int):
        count = sum(item in line for line in lines)
        for position in rng.sample(range(len(lines)), count):
            drawn[position].append(item)
    return "".join(" ".join(items) + "\n" for items in drawn)


def run(program: str, path: Path, options: List[str]) -> str:
    """What is told of the rules on standard error."""
    done = subprocess.run([program, str(path), *options, "--top", "0", "-o", str(path.parent / "rules.csv")],
                          stderr=subprocess.PIPE, timeout=TIME_LIMIT_SECONDS, check=False)
    if done.returncode not in (0, 1):
        sys.exit(done.stderr.decode())
    return done.stderr.decode()


def shown(summary: str) -> int:
    """How many rules are left."""
    number = re.search(r"^ *([\d,]+) shown", summary, re.MULTILINE)
    return int(number[1].replace(",", "")) if number else 0


def found_in(options: argparse.Namespace, path: Path) -> Found:
    every = [*options.options, "--min-lift", "0", "--readings", "all", "--prune", "none"]
    tested = [*every, "--test", "--alpha", str(options.alpha)]
    return Found(shown(run(options.program, path, tested)), shown(run(options.program, path, every)),
                 shown(run(options.program, path, [*every, "--where", f"p >= {-math.log10(0.05)}"])))


def main() -> int:
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("file", type=Path)
    parser.add_argument("--shuffles", type=int, default=20)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--alpha", type=float, default=0.05)
    options, options.options = parser.parse_known_args()
    text = options.file.read_text(encoding="utf-8")
    shuffled = shuffled_table if options.file.suffix == ".csv" else shuffled_items
    with tempfile.TemporaryDirectory() as directory:
        path = Path(directory) / f"data{options.file.suffix}"
        path.write_text(text, encoding="utf-8")
        real = found_in(options, path)
        print(f"as it is: {real.passing} of {real.looked_at} rules pass; {real.seeming} have p <= 0.05")
        by_chance = []
        for number in range(options.shuffles):
            path.write_text(shuffled(text, random.Random(f"{options.seed} {number}")), encoding="utf-8")
            by_chance.append(found_in(options, path))
            print(f"shuffle {number}: {by_chance[-1].passing} of {by_chance[-1].looked_at} rules pass; "
                  f"{by_chance[-1].seeming} have p <= 0.05", flush=True)
    with_rules = sum(found.passing > 0 for found in by_chance)
    looked_at = sum(found.looked_at for found in by_chance)
    seeming = sum(found.seeming for found in by_chance)
    print(f"{with_rules} of {options.shuffles} shuffles have a rule that passes; of {looked_at} rules, {seeming} have "
          f"p <= 0.05 ({seeming / max(looked_at, 1):.1%})")
    if real.passing == 0 or seeming == 0:
        print("nothing was tested: no rule of the data passes, or no rule of the shuffles seems real")
        return 1
    return 0 if with_rules <= options.alpha * options.shuffles else 1


if __name__ == "__main__":
    sys.exit(main())
