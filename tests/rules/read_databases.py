#!/usr/bin/env python3
"""Reads databases of rules back, and compares them with the same rules in JSON Lines, and with the class files.

Usage: read_databases.py KORV_RULES
"""

import json
import random
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
import unittest
from collections import Counter
from pathlib import Path
from typing import Any, Optional

PROGRAM = Path(sys.argv.pop()).resolve() if __name__ == "__main__" else Path()
ODD_NAMES = ["bread", "a \"b\"", "it's", "x,y", "=1+1", "back\\slash", "Käse", "パン", "\U0001f600", "; DROP TABLE rule",
             "%s", "NULL", "17", "colour=red", "colour=blue", "size=", "size=big", "'", "`tick`", "caf\u0065\u0301"]
Row = dict[str, Any]


def is_left_out() -> bool:
    done = subprocess.run([PROGRAM, "none", "-o", "none.db"], capture_output=True, text=True, check=False)
    return "was built without SQLite" in done.stderr


def random_transactions(seed: int) -> str:
    chance = random.Random(seed)
    items = chance.randint(3, 8)
    lines = ([str(item) for item in range(1, items + 1) if chance.random() < 0.4] for _ in range(chance.randint(5, 40)))
    return "".join(" ".join(line) + "\n" for line in lines)


def random_class_file(seed: int) -> tuple[str, int]:
    """Classes of single items and one of all items, whose essential itemsets are the pairs, or none, so that much
    stays open. With the number of transactions."""
    chance = random.Random(seed)
    supports = [chance.randint(2, 9) for _ in range(chance.randint(3, 6))]
    lines = [f"{item}\t{support}\t {item},\n" for item, support in enumerate(supports, start=1)]
    union = max(supports) + chance.randint(1, min(supports))
    every = list(range(1, len(supports) + 1))
    pairs = "".join(f" {one} {other}," for one in every for other in every if one < other)
    closed = " ".join(map(str, every))
    lines.append(f"{closed}\t{union}\t" + (pairs if seed % 2 == 0 else f" {closed},") + "\n")
    return "".join(lines), union + chance.randint(0, 9)


def column(database: sqlite3.Connection, query: str, number: int) -> list[int]:
    """The first column of what a query with a number finds."""
    return [row[0] for row in database.execute(query, [number])]


class InDirectory(unittest.TestCase):
    def setUp(self) -> None:
        if is_left_out():
            self.skipTest("korv-rules was built without SQLite")
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.path = Path(directory.name)

    def run_program(self, *arguments: str) -> subprocess.CompletedProcess[str]:
        return subprocess.run([PROGRAM, *arguments], cwd=self.path, check=False, capture_output=True, text=True,
                              timeout=60)


class Databases(InDirectory):
    def both(self, *arguments: str) -> tuple[sqlite3.Connection, list[Row]]:
        """The database and the objects that a run writes."""
        for name in ("rules.db", "rules.jsonl"):
            done = self.run_program(*arguments, "-q", "-o", name)
            self.assertIn(done.returncode, (0, 1), done.stderr)
        database = sqlite3.connect(self.path / "rules.db")
        self.addCleanup(database.close)
        database.row_factory = sqlite3.Row
        # Only LF ends a line: splitlines would also part names at other separators.
        lines = (self.path / "rules.jsonl").read_text(encoding="utf-8").split("\n")[:-1]
        return database, [json.loads(line) for line in lines]

    def expect_consistent(self, database: sqlite3.Connection) -> None:
        self.assertEqual([tuple(row) for row in database.execute("PRAGMA integrity_check")], [("ok",)])
        self.assertEqual(database.execute("PRAGMA foreign_key_check").fetchall(), [])
        self.assertEqual(database.execute("PRAGMA user_version").fetchone()[0], 1)

    def side(self, database: sqlite3.Connection, number: int) -> tuple[Row, Row]:
        """A side as JSON has it, and its row."""
        row = dict(database.execute("SELECT * FROM side WHERE id = ?", [number]).fetchone())
        items = database.execute("SELECT item.id, name FROM side_item JOIN item ON item.id = item WHERE side = ? "
                                 "ORDER BY item", [number]).fetchall()
        self.assertEqual(row["size"], len(items))
        return ({"none" if row["negated"] else "any": [item["name"] for item in items],
                 "items": [item["id"] for item in items]}, row)

    def expect_same(self, database: sqlite3.Connection, objects: list[Row]) -> None:
        """Expects that the rules are these, number by number."""
        rows = database.execute("SELECT * FROM rule ORDER BY id").fetchall()
        self.assertEqual(len(rows), len(objects))
        for row, expected in zip(rows, objects):
            found = dict(row)
            self.assertEqual(list(found), list(expected))
            for part in ("premise", "conclusion"):
                found[part], side = self.side(database, row[part])
                self.assertLessEqual(row[part + "_count"], side["support"])
                self.assertGreaterEqual(row[part + "_count_max"], side["support_max"])
                if row["kind"] != "bounded" and row[part + "_count"] == row[part + "_count_max"]:
                    self.assertEqual(side["support"], row[part + "_count"])
            expected = {key: float("inf") if value == "inf" else float("-inf") if value == "-inf" else value
                        for key, value in expected.items()}
            self.assertEqual(found, expected)  # floating-point numbers, too: both are exact
        wordings = database.execute(
            "SELECT negated, group_concat(item) AS items FROM (SELECT * FROM side JOIN side_item ON side = side.id "
            "ORDER BY side.id, item) GROUP BY id").fetchall()
        self.assertEqual(set(Counter(map(tuple, wordings)).values()) - {1}, set(), "a side is there twice")

    def test_have_every_number_of_random_transactions(self) -> None:
        rules = bounded = 0
        for seed in range(60):
            (self.path / "in.dat").write_text(random_transactions(seed), encoding="ascii")
            (self.path / "in.names").write_text(
                "".join(f"{item}\t{name}\n" for item, name in enumerate(random.Random(seed).sample(ODD_NAMES, 8), 1)),
                encoding="utf-8")
            choices = [["--names", "in.names"], [], ["--measures", "all"], ["--readings", "all", "--prune", "none"],
                       ["--min-lift", "0"], ["--wording", "full", "--max-items", "0"]]
            arguments = sum(random.Random(seed).sample(choices, 3), [])
            database, objects = self.both("in.dat", "--format", "fimi", "-s", "1", "-c", "0.3", *arguments)
            with self.subTest(seed=seed, arguments=arguments):
                self.expect_consistent(database)
                self.expect_same(database, objects)
            rules += len(objects)
        self.assertGreater(rules, 1000)
        for seed in range(40):
            text, transactions = random_class_file(seed)
            (self.path / "in.classes").write_text(text, encoding="ascii")
            database, objects = self.both("in.classes", "-n", str(transactions), "-s", "1", "-c", "0.1", "--min-lift",
                                          "0", "--measures", "all", "--readings", "all", "--max-items", "0")
            with self.subTest(seed=seed, classes=text):
                self.expect_consistent(database)
                self.expect_same(database, objects)
            bounded += sum(each["kind"] == "bounded" for each in objects)
        self.assertGreater(bounded, 100)

    def test_have_what_other_transactions_say(self) -> None:
        (self.path / "in.dat").write_text(random_transactions(4), encoding="ascii")
        (self.path / "other.dat").write_text(random_transactions(5), encoding="ascii")
        database, objects = self.both("in.dat", "-s", "1", "-c", "0.3", "--holdout", "other.dat", "--alpha", "1",
                                      "--prune", "full")
        self.assertGreater(len(objects), 10)
        self.assertEqual(list(objects[0])[-3:], ["holdout_support", "holdout_confidence", "holdout_p"])
        self.expect_consistent(database)
        self.expect_same(database, objects)

    def test_have_names_as_they_are(self) -> None:
        (self.path / "in.dat").write_text("".join(f"{item} {item % 20 + 1}\n" for item in range(1, 21)), "ascii")
        (self.path / "in.names").write_text(
            "".join(f"{item}\t{name}\n" for item, name in enumerate(ODD_NAMES, start=1)), encoding="utf-8")
        database, objects = self.both("in.dat", "--format", "fimi", "--names", "in.names", "-s", "1", "-c", "0",
                                      "--max-items", "2")
        self.expect_same(database, objects)
        rows = database.execute("SELECT * FROM item ORDER BY id").fetchall()
        self.assertEqual([row["name"] for row in rows], ODD_NAMES)
        self.assertEqual({row["support"] for row in rows}, {2})
        columns = {row["name"]: (row["column_name"], row["value"]) for row in rows if row["column_name"] is not None}
        self.assertEqual(columns, {"colour=red": ("colour", "red"), "colour=blue": ("colour", "blue"),
                                   "size=": ("size", ""), "size=big": ("size", "big")})

    def test_show_rules_in_the_words_of_csv(self) -> None:
        (self.path / "in.csv").write_text("a,b\n" + "x,y\nx,y\nx,z\nu,z\nv,z\n", encoding="ascii")
        database, _ = self.both("in.csv", "-s", "1", "-c", "0.5")
        done = self.run_program("in.csv", "-s", "1", "-c", "0.5", "-q", "--to", "tsv")
        lines = [line.split("\t") for line in done.stdout.splitlines()]
        rows = database.execute("SELECT * FROM rules ORDER BY id").fetchall()
        self.assertEqual(lines[0], list(rows[0].keys()))
        self.assertEqual([[line[3], line[4]] for line in lines[1:]],
                         [[row["premise"], row["conclusion"]] for row in rows])

    def test_have_the_classes_with_their_lattice(self) -> None:
        for seed in range(30):
            text, transactions = random_class_file(seed)
            (self.path / "in.classes").write_text(text, encoding="ascii")
            database, _ = self.both("in.classes", "-n", str(transactions))
            found = {}
            closed = {}
            for row in database.execute("SELECT * FROM class"):
                items = column(database, "SELECT item FROM class_item WHERE class = ?", row["id"])
                keys = [tuple(column(database, "SELECT item FROM essential_item WHERE essential = ?", essential))
                        for essential in column(database, "SELECT id FROM essential WHERE class = ?", row["id"])]
                closed[row["id"]] = frozenset(items)
                found[tuple(items)] = (row["support"], keys)
            expected = {}
            for line in text.splitlines():
                itemset, support, keys = line.split("\t")
                items = tuple(map(int, itemset.split()))
                expected[items] = (int(support), [key for key in (tuple(map(int, each.split()))
                                                                  for each in keys.split(",") if each) if key != items])
            self.assertEqual(found, expected)
            edges = {(closed[upper], closed[lower]) for upper, lower in database.execute("SELECT * FROM edge")}
            self.assertEqual(edges, immediate(set(closed.values())))
            supports = dict(database.execute("SELECT id, support FROM item").fetchall())
            self.assertEqual(supports, {items[0]: support for items, (support, _) in expected.items()
                                        if len(items) == 1})

    def test_say_where_they_come_from(self) -> None:
        (self.path / "sub").mkdir()
        (self.path / "sub" / "in.dat").write_text("1 2\n1 2\n3\n", encoding="ascii")
        database, objects = self.both("sub/in.dat", "-s", "1", "-c", "0.4", "--then", "1*|1")
        meta = dict(map(tuple, database.execute("SELECT key, value FROM meta")))
        version = self.run_program("--version").stdout.split()[1]
        self.assertEqual({key: meta[key] for key in ("program", "version", "input", "options", "transactions", "rules",
                                                     "prune")},
                         {"program": "korv-rules", "version": version, "input": "in.dat",
                          "options": "--min-confidence 0.4 --then '1*|1' --min-support 1", "transactions": 3,
                          "rules": len(objects), "prune": "productive"})

    def test_are_there_without_rules(self) -> None:
        (self.path / "in.dat").write_text("1\n2\n", encoding="ascii")
        database, objects = self.both("in.dat", "--min-lift", "1000")
        self.assertEqual(objects, [])
        self.expect_consistent(database)
        self.assertEqual(database.execute("SELECT count(*) FROM rules").fetchone()[0], 0)

    def test_are_the_same_bytes_each_time(self) -> None:
        (self.path / "in.dat").write_text(random_transactions(1), encoding="ascii")
        for name in ("one.db", "other.db"):
            self.run_program("in.dat", "-s", "1", "-c", "0.3", "-q", "--readings", "all", "-o", name)
        self.assertEqual((self.path / "one.db").read_bytes(), (self.path / "other.db").read_bytes())


class Failures(InDirectory):
    def expect_only(self, *names: str) -> None:
        self.assertEqual(sorted(path.name for path in self.path.iterdir()), sorted(names))

    def test_standard_output_and_devices_are_refused(self) -> None:
        (self.path / "in.dat").write_text("1 2\n", encoding="ascii")
        done = self.run_program("in.dat", "--to", "sqlite")
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertEqual(done.stderr, "korv-rules: --to sqlite: found standard output; expected -o FILE, since a "
                                      "database is a file\n")
        done = self.run_program("in.dat", "--to", "sqlite", "-o", "/dev/null")
        self.assertEqual(done.returncode, 2)
        self.assertEqual(done.stderr, "korv-rules: \"/dev/null\": is no file; expected one, since a database is to be "
                                      "written\n")

    def test_a_full_disk_leaves_the_earlier_file(self) -> None:
        (self.path / "in.dat").write_text(random_transactions(2), encoding="ascii")
        (self.path / "rules.db").write_text("earlier", encoding="ascii")
        # A limit of the size of files stands in for a full disk.
        done = subprocess.run(["bash", "-c", f"ulimit -f 8; exec '{PROGRAM}' in.dat -s 1 -c 0.1 -q -o rules.db"],
                              cwd=self.path, check=False, capture_output=True, text=True)
        self.assertEqual(done.returncode, 4, done.stderr)
        self.assertRegex(done.stderr, r"^korv-rules: rules\.db: cannot be written: .+\n$")
        self.assertEqual((self.path / "rules.db").read_text(encoding="ascii"), "earlier")
        self.expect_only("in.dat", "rules.db")

    def test_a_signal_leaves_nothing_behind(self) -> None:
        chance = random.Random(3)
        lines = (" ".join(str(item) for item in range(24) if chance.random() < 0.4) + "\n" for _ in range(400))
        (self.path / "in.dat").write_text("".join(lines), encoding="ascii")
        process = subprocess.Popen([PROGRAM, "in.dat", "-s", "1", "-c", "0", "--min-lift", "0", "--prune", "none",
                                    "--readings", "all", "--max-size", "4", "-q", "-o", "rules.db"], cwd=self.path,
                                   stderr=subprocess.PIPE)
        size = self.wait_for_a_page(process)
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(timeout=30), -signal.SIGTERM)
        assert process.stderr is not None
        process.stderr.close()
        self.assertIsNotNone(size, "the program has ended before it wrote")
        self.expect_only("in.dat")

    def wait_for_a_page(self, process: "subprocess.Popen[bytes]") -> Optional[int]:
        """Waits until the hidden file has a size; its size then, or nothing where the program has ended."""
        while process.poll() is None:
            for path in self.path.glob(".korv-*"):
                if path.stat().st_size > 0:
                    return path.stat().st_size
            time.sleep(0.01)
        return None


def immediate(closed: set[frozenset[int]]) -> set[tuple[frozenset[int], frozenset[int]]]:
    """Pairs of itemsets, the first of which contains the second, with none between."""
    return {(upper, lower) for upper in closed for lower in closed
            if lower < upper and not any(lower < each < upper for each in closed)}


if __name__ == "__main__":
    unittest.main()
