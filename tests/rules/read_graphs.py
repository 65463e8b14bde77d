#!/usr/bin/env python3
"""Draws graphs of rules and lattices by Graphviz, and compares what is drawn with the rules in JSON Lines.

Usage: read_graphs.py KORV_RULES
"""

import json
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ET
from collections import Counter
from pathlib import Path

from read_databases import ODD_NAMES, immediate, random_class_file

PROGRAM = Path(sys.argv.pop()).resolve() if __name__ == "__main__" else Path()
TITANIC = Path(__file__).resolve().parents[2] / "examples" / "titanic"
SVG = "{http://www.w3.org/2000/svg}"
# What Graphviz would take for something else.
GRAPHVIZ_NAMES = ["\\N", "\\l", "a\\", "&lt;", "&amp;amp;", "<b>bold</b>", "{a|b}", "-> 1;", "\"", "</text>"]


@unittest.skipUnless(shutil.which("dot"), "Graphviz is missing")
class Graphs(unittest.TestCase):
    def setUp(self) -> None:
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.path = Path(directory.name)

    def run_program(self, *arguments: str) -> "subprocess.CompletedProcess[str]":
        done = subprocess.run([PROGRAM, *arguments], cwd=self.path, check=False, capture_output=True, text=True,
                              timeout=60)
        self.assertIn(done.returncode, (0, 1), done.stderr)
        return done

    def drawn(self, *arguments: str) -> ET.Element:
        """A graph as Graphviz draws it. It has nothing to complain of."""
        text = self.run_program(*arguments, "-q", "--to", "dot").stdout
        done = subprocess.run(["dot", "-Tsvg"], input=text, check=True, capture_output=True, text=True, timeout=60)
        self.assertEqual(done.stderr, "")
        return ET.fromstring(done.stdout)

    def parts(self, picture: ET.Element, kind: str) -> list[tuple[str, list[str]]]:
        """The title of each node or edge, and its lines of text."""
        return [(group.findtext(SVG + "title", ""), [text.text or "" for text in group.iter(SVG + "text")])
                for group in picture.iter(SVG + "g") if group.get("class") == kind]

    def test_names_are_drawn_as_they_are(self) -> None:
        names = ODD_NAMES[:13] + GRAPHVIZ_NAMES
        items = range(1, len(names) + 1)
        (self.path / "in.dat").write_text("".join(f"{item}\n" * 2 for item in items), encoding="ascii")
        (self.path / "in.names").write_text(
            "".join(f"{item}\t{name}\n" for item, name in zip(items, names)), encoding="utf-8")
        picture = self.drawn("in.dat", "--format", "fimi", "--names", "in.names", "-s", "1", "--max-size", "1")
        nodes = self.parts(picture, "node")
        shown = [" ".join(lines[:-1]).replace("\u00a0", " ") for _, lines in nodes]
        self.assertEqual(Counter(shown), Counter(names))
        tooltips = [link.get("{http://www.w3.org/1999/xlink}title") for link in picture.iter(SVG + "a")]
        self.assertEqual(Counter(tooltips), Counter(names))

    def test_the_lattice_has_the_classes_with_edges_to_their_successors(self) -> None:
        for seed in range(6):
            text, transactions = random_class_file(seed)
            (self.path / "in.classes").write_text(text, encoding="ascii")
            picture = self.drawn("in.classes", "-n", str(transactions))
            closed = {title: frozenset(map(int, " ".join(lines[:-1]).split(" or ")))
                      for title, lines in self.parts(picture, "node")}
            supports = {closed[title]: int(lines[-1].split(" ")[0]) for title, lines in self.parts(picture, "node")}
            expected = {frozenset(map(int, line.split("\t")[0].split())): int(line.split("\t")[1])
                        for line in text.splitlines()}
            self.assertEqual(supports, expected)
            edges = {(closed[title.split("->")[0]], closed[title.split("->")[1]])
                     for title, _ in self.parts(picture, "edge")}
            self.assertEqual(edges, immediate(set(expected)))

    def test_the_sample_has_an_edge_for_each_rule(self) -> None:
        table = str(TITANIC / "titanic.csv")
        rules = [json.loads(line) for line in self.run_program(table, "-q", "--to", "jsonl").stdout.splitlines()]
        picture = self.drawn(table, "--graph", "rules")
        sides = {json.dumps(rule[part]) for rule in rules for part in ("premise", "conclusion")}
        nodes = dict(self.parts(picture, "node"))
        self.assertEqual(len(nodes), len(sides))
        counts = Counter()
        for title, lines in self.parts(picture, "edge"):
            premise, conclusion = title.split("->")
            count = [int(nodes[side][-1].split(" ")[0].replace(",", "")) for side in (premise, conclusion)]
            counts[(*count, float(lines[0].split()[0]))] += 1
        expected = Counter((rule["premise_count"], rule["conclusion_count"]) for rule in rules)
        self.assertEqual(Counter((premise, conclusion) for premise, conclusion, _ in counts.elements()), expected)
        for premise, conclusion, percent in counts:
            confidences = [100 * rule["confidence"] for rule in rules
                           if (rule["premise_count"], rule["conclusion_count"]) == (premise, conclusion)]
            self.assertTrue(any(abs(percent - each) <= 0.51 for each in confidences), (percent, confidences))

    def test_the_lattice_of_the_sample_is_drawn(self) -> None:
        picture = self.drawn(str(TITANIC / "titanic.csv"))
        self.assertEqual(len(self.parts(picture, "node")), 78)

    @unittest.skipUnless(shutil.which("gvpr"), "gvpr is missing")
    def test_widths_follow_the_support(self) -> None:
        table = str(TITANIC / "titanic.csv")
        text = self.run_program(table, "-q", "--to", "dot", "--graph", "rules").stdout
        program = 'E { printf("%s %s\\n", $.penwidth, $.tooltip); }'
        done = subprocess.run(["gvpr", program], input=text, check=True, capture_output=True, text=True)
        found = [(int(re.search(r"support ([\d,]+),", line)[1].replace(",", "")), float(line.split(" ")[0]))
                 for line in done.stdout.splitlines()]
        self.assertEqual(len(found), 42)
        largest = max(support for support, _ in found)
        for support, width in found:
            self.assertAlmostEqual(width, 1 + 5 * support / largest, delta=0.051)


class Warnings(unittest.TestCase):
    def warning(self, items: int, *arguments: str) -> str:
        """What is said of the graph of so many items that never meet."""
        with tempfile.TemporaryDirectory() as directory:
            path = Path(directory)
            (path / "in.dat").write_text("".join(f"{item}\n" for item in range(1, items + 1)), encoding="ascii")
            classes = "".join(f"{item}\t1\t {item},\n" for item in range(1, items + 1))
            (path / "in.classes").write_text(classes, encoding="ascii")
            done = subprocess.run([PROGRAM, *arguments, "-q", "-o", "graph.dot"], cwd=path, check=False,
                                  capture_output=True, text=True, timeout=60)
            return done.stderr

    def test_are_given_above_500_nodes(self) -> None:
        self.assertEqual(self.warning(500, "in.dat", "--format", "fimi", "-s", "1", "--max-size", "1"), "")
        self.assertEqual(self.warning(501, "in.dat", "--format", "fimi", "-s", "1", "--max-size", "1"),
                         "korv-rules: warning: a graph of 501 nodes is hard to read; a higher --min-support or a lower "
                         "--max-size brings fewer\n")
        self.assertEqual(self.warning(501, "in.classes", "-n", "501"),
                         "korv-rules: warning: a graph of 501 nodes is hard to read; classes mined with a higher "
                         "--min-support are fewer\n")


if __name__ == "__main__":
    unittest.main()
