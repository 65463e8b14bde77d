#!/usr/bin/env python3
"""Reads pages of rules as a browser would, as far as that goes without one: policy, title, data, foreign names.

Usage: read_pages.py KORV_RULES
"""

import base64
import hashlib
import random
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent / "model"))
# The directory of the model is known only now.
from page_reader import Elements, Page, elements_of  # noqa: E402  pylint: disable=wrong-import-position

PROGRAM = Path(sys.argv.pop()).resolve() if __name__ == "__main__" else Path()
TITANIC = Path(__file__).parents[2] / "examples" / "titanic" / "titanic.csv"
EVERY_RULE = ("-s", "1", "-c", "0.01", "--readings", "all", "--prune", "none", "--min-lift", "0")
HOSTILE_NAMES = ["</script><script>alert(1)</script>", "<!--", "]]>", "<img src=x onerror=alert(1)>", "\"'&amp;`${1}",
                 "\u202eabc", "\u2028\u2029", "\U0001f468\u200d\U0001f469\u200d\U0001f467", "=1+1", "@SUM(A1)",
                 "x" * 10_000, "%KORV_DATA%", "\\u003c/script>", "<script", "</title>", "a=<b>", "a=</b>", "__proto__",
                 "constructor"]


def is_left_out() -> bool:
    done = subprocess.run([PROGRAM, "none", "-o", "none.html"], capture_output=True, text=True, check=False)
    return "was built without zlib" in done.stderr


class Pages(unittest.TestCase):
    def setUp(self) -> None:
        if is_left_out():
            self.skipTest("korv-rules was built without zlib")
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.path = Path(directory.name)

    def text_of(self, *arguments: str, status: int = 0) -> str:
        """The page that a run writes."""
        done = subprocess.run([PROGRAM, *arguments, "-o", "a.html"], cwd=self.path, check=False, capture_output=True,
                              text=True, timeout=60)
        self.assertEqual(done.returncode, status, done.stderr)
        return (self.path / "a.html").read_text(encoding="utf-8")

    def test_are_the_same_for_the_same_input_and_options(self) -> None:
        first = self.text_of(str(TITANIC))
        (self.path / "elsewhere").mkdir()
        (self.path / "elsewhere" / "titanic.csv").write_bytes(TITANIC.read_bytes())
        self.assertEqual(self.text_of("elsewhere/titanic.csv"), first)
        self.assertNotEqual(self.text_of("elsewhere/titanic.csv", "-c", "0.7"), first)

    def test_of_the_sample_are_small(self) -> None:
        self.assertLess(len(self.text_of(str(TITANIC)).encode()), 200_000)

    def expect_policy(self, elements: Elements) -> None:
        """Expects that nothing is allowed but the program itself, by its hash, and no request of any kind."""
        self.assertEqual(len(elements.policies), 1)
        allowed = {}
        for directive in elements.policies[0].split(";"):
            name, *sources = directive.split()
            allowed[name] = sources
        self.assertEqual(allowed["default-src"], ["'none'"])
        programs = [text for members, text in elements.scripts if members.get("type") in (None, "", "module")]
        for name, texts in (("script-src", programs), ("style-src", elements.styles)):
            hashes = {"'sha256-" + base64.b64encode(hashlib.sha256(text.encode()).digest()).decode() + "'"
                      for text in texts}
            self.assertEqual(set(allowed.get(name, [])), hashes)
        for name, sources in allowed.items():
            for source in sources:
                self.assertRegex(source, r"^('none'|'sha256-.*'|data:|blob:)$", name)

    def test_allow_nothing_but_their_program(self) -> None:
        elements = elements_of(self.text_of(str(TITANIC)))
        self.expect_policy(elements)
        for members, _ in elements.scripts:
            self.assertNotIn("src", members)
        self.assertNotIn("link", elements.names)

    def test_have_hostile_names_in_their_data_alone(self) -> None:
        lines = [",".join('"' + name.replace('"', '""') + '"' for name in HOSTILE_NAMES[i:] + HOSTILE_NAMES[:i // 2])
                 for i in range(len(HOSTILE_NAMES))]
        text = "".join(line + "\n" for line in lines)
        (self.path / "a.csv").write_text(text, encoding="utf-8")
        found = self.text_of("a.csv", "--format", "basket", "--separator", ",", "--max-size", "2", *EVERY_RULE)
        plain = self.text_of(str(TITANIC))
        page = Page(found)
        self.assertLessEqual({"<!--", "__proto__", "x" * 10_000, "%KORV_DATA%"}, set(page.names))
        self.assertLessEqual(set(page.names), set(HOSTILE_NAMES))
        self.assertEqual(elements_of(found).names, elements_of(plain).names)
        self.assertEqual(self.without_data(found), self.without_data(plain).replace("titanic.csv", "a.csv"))

    def without_data(self, text: str) -> str:
        return re.sub(r"[A-Za-z0-9+/=]{1000,}", "", text)

    def test_have_a_title_that_is_no_markup(self) -> None:
        name = "<b>&amp;\"'.dat"
        (self.path / name).write_text("1 2\n1 2\n1\n2\n\n", encoding="ascii")
        text = self.text_of(name, *EVERY_RULE)
        self.assertIn(name, elements_of(text).title)
        self.assertNotIn("<b>&amp;\"", text)
        self.assertEqual(Page(text).header["title"], name)

    def test_say_why_there_is_no_rule(self) -> None:
        (self.path / "a.dat").write_text("1 2\n1 2\n1\n2\n\n", encoding="ascii")
        page = Page(self.text_of("a.dat", "-s", "1", "--min-lift", "9", "-c", "0.1", status=1))
        self.assertEqual((page.rules, page.sides), ([], []))
        self.assertIn("--min-lift 0", page.header["summary"]["note"])
        self.assertGreater(len(page.classes), 0)

    def test_have_the_first_rules_and_say_what_shows_the_others(self) -> None:
        whole = Page(self.text_of(str(TITANIC)))
        page = Page(self.text_of(str(TITANIC), "--page-limit", "5"))
        expected = {"count": 5, "left": 42, "limit": 5, "left_out_by_limit": 37,
                    "limit_option": "--page-limit 42 shows all 42"}
        self.assertEqual({key: page.header["rules"][key] for key in expected}, expected)
        self.assertEqual(page.rules, whole.rules[:5])

    def test_of_rule_files_have_no_classes_and_say_so(self) -> None:
        stars = "\t\t\t******************************************\n"
        (self.path / "a.txt").write_text(f"{stars}\t\t\t*** Regles approximatives inter noeuds ***\n{stars}1-->2\n"
                                         "support:3\n\nconfiance:0.75\n---------------------------\n",
                                         encoding="ascii")
        (self.path / "a.dat").write_text("1 2\n1 2\n1 2\n1\n2\n\n\n\n", encoding="ascii")
        page = Page(self.text_of("a.txt", "--database", "a.dat"))
        self.assertEqual([(rule.first, rule.form) for rule in page.rules], [((4, 4, 3), None)])
        self.assertEqual(page.header["lattice"]["classes"], 0)
        self.assertIn("rule files", page.header["lattice"]["why"])
        self.assertTrue(page.header["exclusions"]["known"])

    def test_leave_classes_out_where_there_is_no_room(self) -> None:
        # Most triples of 40 items are classes of their own.
        chance = random.Random(1)
        lines = [" ".join(str(item) for item in range(1, 41) if chance.random() < 0.3) for _ in range(300)]
        (self.path / "a.dat").write_text("".join(line + "\n" for line in lines), encoding="ascii")
        page = Page(self.text_of("a.dat", "-s", "3", "--max-size", "3", "--top", "2"))
        lattice = page.header["lattice"]
        self.assertGreater(lattice["classes"], 10_000)
        self.assertLess(lattice["shown"], lattice["classes"])
        self.assertGreater(lattice["shown"], 2_000)
        self.assertIn("room for", lattice["why"])
        for rule in page.rules:
            items = frozenset(rule.premise.items + rule.conclusion.items)
            neither = {(False, False): page.transactions - rule.first.premise - rule.first.conclusion + rule.first.both,
                       (True, True): rule.first.both, (False, True): rule.first.conclusion - rule.first.both,
                       (True, False): rule.first.premise - rule.first.both}
            found = page.class_around(items, page.transactions - neither[(rule.premise.is_negated,
                                                                          rule.conclusion.is_negated)])
            assert found is not None
            self.assertEqual((found.more_lowers, found.more_uppers), (0, 0))
        self.assertTrue(any(each.more_lowers or each.more_uppers for each in page.classes))


if __name__ == "__main__":
    unittest.main()
