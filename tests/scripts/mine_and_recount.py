#!/usr/bin/env python3
"""From transactions to rules, every one counted again.

usage: mine_and_recount.py KORV_MINE KORV TRANSACTIONS MIN_SUPPORT MINSUPP MINCONF

TRANSACTIONS is in the FIMI format. Mines classes, closed over all items, derives the rules, and counts the support and
the confidence of each rule in the transactions. Those of exact and approximative rules must be as printed, those of
approximated rules within the printed bounds. Prints how many rules were counted; ends with status 1 at the first rule
that is wrong.
"""

import pathlib
import re
import subprocess
import sys
import tempfile

NUMBER = r"(?:nan|inf|[-+.\de]+)"
RECORD = re.compile(
    r"(?P<premise>[^\n]*)-->(?P<conclusion>[^\n]*)\n"
    r"(?:support:(?P<support>\d+)\n\n|(?P<low>\d+)< support <(?P<high>\d+)\n)"
    rf"(?:confiance:(?P<confidence>{NUMBER})\n-+\n|(?P<least>{NUMBER})< confiance <(?P<most>{NUMBER})\n-+\n)?")


class Database:
    """Transactions as sets, each an int with a bit for each transaction."""

    def __init__(self, path):
        lines = path.read_text(encoding="ascii").splitlines()
        self.transactions = len(lines)
        self.everything = (1 << len(lines)) - 1
        bits = {}
        for position, line in enumerate(lines):
            for item in set(line.split()):
                bits.setdefault(item, []).append(position)
        self.with_item = {item: sum(1 << position for position in positions) for item, positions in bits.items()}

    def where(self, side):
        """The transactions for which a side of a rule holds."""
        negated = side.startswith("not(")
        items = re.findall(r"\d+", side)
        with_any = 0
        for item in items:
            with_any |= self.with_item[item]
        return self.everything & ~with_any if negated else with_any


def complaint(record, database):
    """What is wrong with a rule; nothing when it is right."""
    premise = database.where(record["premise"])
    both = (premise & database.where(record["conclusion"])).bit_count()
    confidence = both / premise.bit_count()
    if record["support"] and int(record["support"]) != both:
        return f"support {both}"
    if record["low"] and not int(record["low"]) <= both <= int(record["high"]):
        return f"support {both}"
    if record["confidence"] and record["confidence"] != f"{confidence:g}":
        return f"confidence {confidence:g}"
    # The upper end is no bound from above in every form of rule, and printed to six digits.
    if record["least"] and float(record["least"]) > confidence * (1 + 1e-5):
        return f"confidence {confidence:g}"
    if record["support"] and not record["confidence"] and not record["least"] and confidence != 1:
        return f"confidence {confidence:g}"
    return None


def main():
    korv_mine, korv, transactions = (pathlib.Path(word).resolve() for word in sys.argv[1:4])
    min_support, minsupp, minconf = sys.argv[4:7]
    database = Database(transactions)
    with tempfile.TemporaryDirectory() as name:
        directory = pathlib.Path(name)
        subprocess.run([korv_mine, transactions, "-s", min_support, "--closure-items", "all", "-q", "-o", "classes"],
                       cwd=directory, check=True)
        subprocess.run([korv, "run", "classes", minsupp, minconf, str(database.transactions)], cwd=directory,
                       check=True, stdout=subprocess.DEVNULL)
        counted = 0
        for path in sorted(directory.glob("int*.txt")):
            text = path.read_text(encoding="ascii")
            for record in RECORD.finditer(text):
                counted += 1
                if found := complaint(record, database):
                    sys.exit(f"{path.name}: counted {found} for\n{record[0]}")
            if text.count("-->") != len(RECORD.findall(text)):
                sys.exit(f"{path.name}: not every rule is a record")
    if counted == 0:
        sys.exit("no rule was derived")
    print(f"{counted} rules are right")


main()
