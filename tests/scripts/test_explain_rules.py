"""Tests of scripts/explain-rules, run as a program."""

import subprocess
import tempfile
import unittest
from pathlib import Path

PROGRAM = Path(__file__).resolve().parents[2] / "scripts" / "explain-rules"

STARS = "\t\t\t" + "*" * 42 + "\n"
WITHIN_A_NODE = STARS + "\t\t\t*** Regles approximatives intra noeud  ***\n" + STARS
BETWEEN_NODES = STARS + "\t\t\t*** Regles approximatives inter noeuds ***\n" + STARS
SEPARATOR = "-" * 27 + "\n"

NAMES = "1\tbread\n2\tmilk\n3\tsalt\n"


class ExplainRules(unittest.TestCase):
    def setUp(self) -> None:
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.names = Path(directory.name, "names")
        self.rules = Path(directory.name, "rules")

    def explain(self, rules: str, *options: str, names: str = NAMES,
                header: str = WITHIN_A_NODE) -> subprocess.CompletedProcess[str]:
        self.names.write_text(names)
        self.rules.write_text(header + rules)
        return subprocess.run([PROGRAM, self.names, self.rules, *options],
                              capture_output=True, text=True, check=False)

    def test_says_an_exact_rule_of_disjunctions(self) -> None:
        self.assertEqual(self.explain("1-->2 v 3\nsupport:7\n\n").stdout,
                         "If bread,\n    then always: milk or salt\n    (both hold for 7 transactions)\n")

    def test_says_an_approximative_rule_of_absences(self) -> None:
        rule = "not(1)not(2)-->not(3)\nsupport:4\n\nconfiance:0.8\n" + SEPARATOR
        self.assertEqual(self.explain(rule).stdout,
                         "If none of bread, milk,\n    then in 80% of the cases: not salt\n"
                         "    (both hold for 4 transactions)\n")

    def test_says_both_ends_of_intervals(self) -> None:
        rule = "1-->2\n3< support <5\n0.5< confiance <1\n" + SEPARATOR
        self.assertEqual(self.explain(rule).stdout,
                         "If bread,\n    then in 50% to 100% of the cases: milk\n"
                         "    (both hold for 3 to 5 transactions)\n")

    def test_keeps_the_number_of_an_item_without_a_name(self) -> None:
        self.assertIn("If 9,", self.explain("9-->1\nsupport:1\n\n").stdout)

    def test_keeps_a_name_with_an_unusual_separator_whole(self) -> None:
        self.assertIn("If rye\u2028bread,", self.explain("1-->2\nsupport:1\n\n", names="1\trye\u2028bread\n").stdout)

    def test_takes_an_empty_names_file(self) -> None:
        self.assertIn("If 1,", self.explain("1-->2\nsupport:1\n\n", names="").stdout)

    def test_stops_after_the_first_rules_asked_for(self) -> None:
        rules = "1-->2\nsupport:1\n\n2-->3\nsupport:1\n\n"
        self.assertEqual(self.explain(rules, "--first", "1").stdout.count("If "), 1)

    def test_says_the_shortest_rules_each_once(self) -> None:
        rules = "1-->2 v 3\nsupport:1\n\n1-->2\nsupport:1\n\n1-->2\nsupport:1\n\n2-->3\nsupport:1\n\n"
        said = self.explain(rules, "--shortest", "2").stdout
        self.assertEqual([line for line in said.splitlines() if line.startswith("If")], ["If bread,", "If milk,"])

    def test_says_the_strongest_rules_each_once(self) -> None:
        rules = ("1-->2\nsupport:9\n\nconfiance:0.7\n" + SEPARATOR + "2-->3\nsupport:4\n\nconfiance:0.9\n" + SEPARATOR
                 + "3-->1\nsupport:5\n\nconfiance:0.9\n" + SEPARATOR + "3-->1\nsupport:5\n\nconfiance:0.9\n" + SEPARATOR
                 + "1-->3\n1< support <8\n0.8< confiance <1\n" + SEPARATOR)
        said = self.explain(rules, "--strongest", "3").stdout
        self.assertEqual([line for line in said.splitlines() if line.startswith("If")],
                         ["If salt,", "If milk,", "If bread,"])
        self.assertIn("80% to 100%", said)

    def test_takes_the_upper_number_for_the_smallest_confidence_where_it_is(self) -> None:
        rule = "not(2)not(3)-->1\n0< support <1\n0.2< confiance <0.25\n" + SEPARATOR
        self.assertIn("then in at least 25% of the cases", self.explain(rule, header=BETWEEN_NODES).stdout)
        self.assertIn("then in 20% to 25% of the cases", self.explain(rule, header=WITHIN_A_NODE).stdout)

    def test_refuses_what_is_no_rule_file(self) -> None:
        result = self.explain("DCP:  1 2 \n", header="")
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("rules:2: expected the title of a rule file", result.stderr)

    def test_names_the_line_of_a_bad_names_file(self) -> None:
        result = self.explain("", names="1\tbread\nmilk\n")
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("names:2: expected an item number, a TAB and a name, found 'milk'", result.stderr)

    def test_reports_a_missing_rule_file(self) -> None:
        self.names.write_text(NAMES)
        result = subprocess.run([PROGRAM, self.names, self.rules], capture_output=True, text=True, check=False)
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("No such file", result.stderr)


if __name__ == "__main__":
    unittest.main()
