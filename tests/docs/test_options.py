#!/usr/bin/env python3
"""The options of the companion programs: --help, the man page and the document describe the same ones alike (argument,
choices, default), the defaults are what happens, and the exit statuses are those of the man page.

usage: test_options.py PROGRAM...

The tests of a program that is not given are left out.
"""

import re
import shlex
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from typing import NamedTuple

from documents import TOP, section, table_rows, text_of

PROGRAMS: dict[str, Path] = {}  # set from the command line, by name

# An option of one or two hyphens; not a negative number, not a rule, not a part of a word.
OPTION = re.compile(r"(?<![\w-])--?[a-zA-Z][\w-]*")


class Option(NamedTuple):
    """An option as one of the three places describes it."""

    names: tuple[str, ...]  # sorted
    takes_argument: bool
    choices: tuple[str, ...]  # the words of which the argument is one; empty where it can be any
    default: str  # as it is said, in words or as it is typed; empty where there is none


class Described(NamedTuple):
    """Where the options of a program are described."""

    program: str
    document: str
    options: int  # how many there are
    elsewhere: tuple[str, ...]  # commands and options of other programs that these texts name

    @property
    def man_page(self) -> str:
        return f"man/{self.program}.1"


DESCRIBED = [
    Described("korv-mine", "docs/mining.md", 25, ("uniq -c", "--shortest", "--strongest", "--checkpoint", "--resume")),
    Described("korv-check", "docs/checking.md", 27, ("uniq -c", "tr -d", "--closure-items all")),
    Described("korv-rules", "docs/exploring.md", 58, ("uniq -c", "fold -w", "-log10")),
]


def described() -> list[Described]:
    return [each for each in DESCRIBED if each.program in PROGRAMS]


def run(program: str, *arguments: str) -> subprocess.CompletedProcess[str]:
    return subprocess.run([PROGRAMS[program], *arguments], cwd=TOP, check=False, capture_output=True, text=True,
                          stdin=subprocess.DEVNULL)


def names_in(text: str) -> tuple[str, ...]:
    return tuple(sorted(OPTION.findall(text)))


def of_help(program: str) -> list[Option]:
    """The options that --help lists: -n,--name TYPE:{choices}=default, then the text, which can hold the default, and
    behind which the options that do not go with this one can stand."""
    found = []
    for entry in re.split(r"\n(?=  -)", run(program, "--help").stdout)[1:]:
        names, argument, choices, default, text = re.fullmatch(
            r"(-\S+)( (?:TEXT|FILE|UINT|FLOAT)(?::\{([\w,]+)\})?(?:=(\S+))?)?(?: Excludes: \S+)?(?=[ :])(.*)",
            " ".join(entry.split())).groups()
        said = re.search(r"default: ([^)]*)\)", text)
        found.append(Option(names_in(names), argument is not None, tuple(choices.split(",") if choices else ()),
                            default or (said[1] if said else "")))
    return sorted(found)


def section_of_man_page(man_page: str, heading: str) -> str:
    text = text_of(man_page)
    begin = text.index(f".SH {heading}\n")
    return text[begin:text.index("\n.SH ", begin) + 1]


def of_man_page(man_page: str) -> list[Option]:
    """The options of a man page: a line behind .TP names each, with its argument or its choices."""
    text = section_of_man_page(man_page, "OPTIONS").replace(r"\-", "-").replace(r"\(aq", "'")
    found = []
    for entry in text.split("\n.TP\n")[1:]:
        head, _, below = entry.partition("\n")
        head = re.sub(r'\\f.|"', "", head.removeprefix(".BR ").removeprefix(".B "))
        argument = OPTION.sub("", head).replace(",", "").strip()
        default = re.search(r"^The default is[ \n](.*?)(?: ?[.,]|;)$", below, re.MULTILINE)
        found.append(Option(names_in(head), argument != "", words_of(argument, "|"),
                            default[1].removeprefix(".BR ") if default else ""))
    return sorted(found)


def of_document(document: str, heading: str = "All options") -> list[Option]:
    """The options of the table in a section of a document: names with argument or choices, default, meaning."""
    found = []
    for names, default, _ in table_rows(section(text_of(document), heading))[2:]:
        plain = names.replace("`", "")
        argument = OPTION.sub("", plain).strip(", ")
        found.append(Option(names_in(plain), argument != "", words_of(argument.replace(" or ", " , "), ","),
                            default.replace("`", "")))
    return sorted(found)


def words_of(argument: str, separator: str) -> tuple[str, ...]:
    """The choices of an argument; none for one word, which stands for any."""
    words = tuple(word.strip() for word in argument.split(separator))
    return words if len(words) > 1 else ()


class Options(unittest.TestCase):
    maxDiff = None

    def test_are_described_alike_in_all_three_places(self) -> None:
        for each in described():
            with self.subTest(program=each.program):
                options = of_help(each.program)
                self.assertEqual(len(options), each.options)
                self.assertEqual(of_man_page(each.man_page), options)
                self.assertEqual(of_document(each.document), options)

    def test_there_is_none_elsewhere_in_the_documents(self) -> None:
        for each in described():
            with self.subTest(program=each.program):
                names = {name for option in of_help(each.program) for name in option.names}
                man_page = text_of(each.man_page).replace(r"\-", "-")
                code = "\n".join(re.findall(rf"`[^`\n]+`|{each.program} .*$", text_of(each.document), re.MULTILINE))
                for other in each.elsewhere:
                    man_page, code = man_page.replace(other, ""), code.replace(other, "")
                self.assertLessEqual(set(OPTION.findall(man_page)), names)
                found = set(OPTION.findall(code))
                self.assertGreater(len(found), 20)
                self.assertLessEqual(found, names)


def of_korv_mine() -> dict[str, Option]:
    return {option.names[0]: option for option in of_help("korv-mine")}


def of_korv_rules() -> dict[str, Option]:
    return {option.names[0]: option for option in of_help("korv-rules")}


class OptionsOfKorvMineMpi(unittest.TestCase):
    """It has those of korv-mine, and some of its own, which its man page and its section describe."""

    def setUp(self) -> None:
        if "korv-mine-mpi" not in PROGRAMS:
            self.skipTest("korv-mine-mpi is not given")

    def test_are_those_of_korv_mine_and_two_more(self) -> None:
        options = {option.names: option for option in of_help("korv-mine-mpi")}
        for option in of_help("korv-mine"):
            self.assertEqual(options.pop(option.names), option)
        self.assertEqual(sorted(options), [("--checkpoint",), ("--resume",)])
        own = sorted(options.values())
        self.assertEqual(of_man_page("man/korv-mine-mpi.1"), own)
        self.assertEqual(of_document("docs/mining.md", "More than one machine"), own)

    def test_of_checkpoints_go_together(self) -> None:
        sample = "examples/titanic/titanic.dat"
        for status, arguments in ((107, "-s 1 --resume"), (108, "--estimate --checkpoint kept"), (106, "-s 1")):
            with self.subTest(arguments=arguments):
                words = shlex.split(arguments) if status == 106 else [sample, *shlex.split(arguments)]
                self.assertEqual(run("korv-mine-mpi", *words).returncode, status)


class OfKorvMine(unittest.TestCase):
    """Tests of this program; they are left out where it is not given."""

    def setUp(self) -> None:
        if "korv-mine" not in PROGRAMS:
            self.skipTest("korv-mine is not given")


class OfKorvRules(unittest.TestCase):
    """Tests of this program; they are left out where it is not given."""

    def setUp(self) -> None:
        if "korv-rules" not in PROGRAMS:
            self.skipTest("korv-rules is not given")


class OfKorvCheck(unittest.TestCase):
    """Tests of this program; they are left out where it is not given."""

    def setUp(self) -> None:
        if "korv-check" not in PROGRAMS:
            self.skipTest("korv-check is not given")


class CheckOptions(OfKorvCheck):
    def test_have_the_choices_and_defaults_that_are_known(self) -> None:
        options = {option.names[0]: option for option in of_help("korv-check")}
        self.assertEqual({name: option.choices for name, option in options.items() if option.choices},
                         {"--completions": ("bash", "zsh"), "--format": ("fimi", "basket", "table")})
        self.assertEqual({name: option.default for name, option in options.items()
                          if option.default and name not in ("--format", "--missing", "--separator")},
                         {"--large": "100", "--max": "20", "--seed": "1",
                          "--names": "the name of the class file with the extension .names"})
        self.assertEqual({name for name, option in options.items() if not option.takes_argument},
                         {"--codes", "--help", "--json", "--no-notes", "--notes", "--only-true", "--quiet", "--version",
                          "--weighted"})


class CheckExitStatus(OfKorvCheck):
    sample = "examples/titanic/titanic.classes"

    def test_is_as_the_man_page_and_the_document_say(self) -> None:
        cases = [
            (0, "--help"), (0, "--version"), (0, "--codes"), (0, self.sample), (0, f"{self.sample} -n 2201 --notes"),
            (0, f"{self.sample} --database examples/titanic/titanic.dat --sample 5 --seed 2"),
            (1, f"{self.sample} -n 2200"), (2, "examples/titanic/titanic.dat"), (2, "/dev/null"),
            (2, f"{self.sample} --database examples/persons/persons.csv"),
            (3, ""), (3, "missing"), (3, "examples"), (3, f"{self.sample} --some"), (3, f"{self.sample} -n 0"),
            (3, f"{self.sample} --rules missing"), (3, f"{self.sample} --fix {self.sample}"),
            (3, f"{self.sample} --database missing"), (3, f"{self.sample} --notes --no-notes"),
            (3, f"{self.sample} --fix missing/classes"),
        ]
        for status, arguments in cases:
            with self.subTest(arguments=arguments):
                self.assertEqual(run("korv-check", *shlex.split(arguments)).returncode, status)
        statuses = {str(status) for status, _ in cases}
        self.assertEqual(set(re.findall(r"^\.B (\d)$", section_of_man_page("man/korv-check.1", "EXIT STATUS"),
                                        re.MULTILINE)), statuses)
        rows = table_rows(section(text_of("docs/checking.md"), "Exit status"))[2:]
        self.assertEqual({row[0] for row in rows}, statuses)


class MineOptions(OfKorvMine):
    def test_have_the_choices_and_defaults_that_are_known(self) -> None:
        options = of_korv_mine()
        self.assertEqual({name: option.choices for name, option in options.items() if option.choices},
                         {"--closure-items": ("frequent", "all"), "--completions": ("bash", "zsh"),
                          "--format": ("fimi", "basket", "table")})
        self.assertEqual({name for name, option in options.items() if option.default},
                         {"--closure-items", "--estimate", "--format", "--min-joint", "--min-own", "--missing",
                          "--names", "--output", "--separator"})
        self.assertEqual({name for name, option in options.items() if not option.takes_argument},
                         {"--estimate", "--help", "--only-true", "--partial", "--quiet", "--version", "--weighted"})

    def test_formats_of_the_table_are_those_of_the_program(self) -> None:
        rows = table_rows(section(text_of("docs/mining.md"), "What may my file look like?"))[2:]
        self.assertEqual([row[0].strip("`") for row in rows], ["fimi", "basket", "table"])


class MineDefaults(OfKorvMine):
    """What happens without an option is what happens with its default."""

    transactions = ("1 2 3", "1 2", "2 3", "3 4", "1 4", "2", "1 5")

    def classes(self, text: str, *arguments: str) -> str:
        with tempfile.TemporaryDirectory() as directory:
            path = Path(directory) / "transactions"
            path.write_text(text, encoding="utf-8")
            done = run("korv-mine", str(path), "-q", *arguments)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout

    def test_of_thresholds_closures_and_output(self) -> None:
        text = "\n".join(self.transactions) + "\n"
        without = self.classes(text, "-s", "2")
        for option, default, other in (("--min-joint", "2", "1"), ("--min-own", "1", "2"),
                                       ("--closure-items", "frequent", "all")):
            with self.subTest(option=option):
                self.assertEqual(self.classes(text, "-s", "2", option, default), without)
                changed = self.classes(text, "-s", "2", option, other, "--max-size", "2")
                self.assertNotEqual(changed, self.classes(text, "-s", "2", "--max-size", "2"))
        self.assertEqual(self.classes(text, "-s", "2", "--output", "-"), without)

    def test_of_missing_cells(self) -> None:
        text = "a,b\nx,NA\ny,NaN\nx,null\ny,?\nx,z\n"
        without = self.classes(text, "-s", "1")
        words = of_korv_mine()["--missing"].default
        self.assertEqual(self.classes(text, "-s", "1", "--missing", words), without)
        self.assertNotEqual(self.classes(text, "-s", "1", "--missing", ""), without)

    def test_of_estimates(self) -> None:
        sample = "examples/titanic/titanic.dat"
        words = of_korv_mine()["--estimate"].default
        without = run("korv-mine", sample, "--estimate").stdout
        self.assertEqual(run("korv-mine", sample, "--estimate", "-s", words).stdout, without)
        self.assertEqual(len(without.splitlines()), 1 + 6)


class MineExitStatus(OfKorvMine):
    sample = "examples/titanic/titanic.dat"
    table = "examples/persons/persons.csv"

    def test_is_as_the_man_page_says(self) -> None:
        cases = [
            (0, "--help"), (0, "-h"), (0, "--version"), (0, f"{self.sample} -s 1 -q"),
            (0, f"{self.sample} {self.sample} -s 1 -q"), (0, f"{self.sample} --estimate"),
            (1, "missing -s 1"), (1, "examples -s 1"), (1, "LICENSE -s 1 --format fimi"), (1, "- - -s 1"),
            (1, "man/korv-mine.1.in -s 1 --format table"),
            (1, f"{self.sample} -s 0"), (1, f"{self.sample} -s 2202"), (1, f"{self.sample} -s 2201"),
            (1, f"{self.sample} -s 1 --min-own 0"), (1, f"{self.sample} -s 1 --min-joint 0"),
            (1, f"{self.sample} -s 1 -o missing/classes"), (1, f"{self.sample} -s 1 -o {self.sample}"),
            (1, f"{self.sample} -s 1 -o missing --names missing"),
            (1, f"{self.sample} -s 1 --bins 4"), (1, f"{self.sample} -s 1 --separator ';'"),
            (1, f"{self.sample} -s 1 --names missing"), (1, f"{self.table} -s 1 --weighted"),
            (1, f"{self.table} -s 1 --bins 4 --bins 5"), (1, f"{self.table} -s 1 --columns missing"),
            (3, f"{self.sample} -s 1 --max-classes 5"), (3, f"{self.sample} -s 1 --max-classes 5 --partial"),
            (3, f"{self.sample} -s 1 --max-seconds 0"),
            (104, f"{self.sample} -s 1 --quiet=some"),
            (105, f"{self.sample} -s some"), (105, f"{self.sample} -s 5%,1%"), (105, f"{self.sample} -s 1 --bins some"),
            (105, f"{self.sample} -s 1 --max-size 0"), (105, f"{self.sample} -s 1 --format some"),
            (105, f"{self.sample} -s 1 -o ''"),
            (106, "-s 1"), (106, self.sample),
            (108, f"{self.sample} --estimate -o missing"), (108, f"{self.sample} --estimate --names missing"),
            (108, f"{self.sample} --estimate --partial"),
            (109, f"{self.sample} -s 1 --some"),
            (114, f"{self.sample} -s"), (114, f"{self.sample} -s 1 -s 1"),
        ]
        for status, arguments in cases:
            with self.subTest(arguments=arguments):
                self.assertEqual(run("korv-mine", *shlex.split(arguments)).returncode, status)
        statuses = section_of_man_page("man/korv-mine.1", "EXIT STATUS")
        self.assertEqual({int(number) for number in re.findall(r"\b\d+\b", statuses)} - {100},
                         {status for status, _ in cases})

    def test_is_1_when_the_format_is_in_doubt(self) -> None:
        with tempfile.TemporaryDirectory() as directory:
            path = Path(directory) / "names"
            path.write_text("bread\nmilk\n", encoding="utf-8")
            self.assertEqual(run("korv-mine", str(path), "-s", "1").returncode, 1)
            self.assertEqual(run("korv-mine", str(path), "-s", "1", "--format", "basket").returncode, 0)


class RulesOptions(OfKorvRules):
    def test_have_the_choices_and_defaults_that_are_known(self) -> None:
        options = of_korv_rules()
        self.assertEqual({name: option.choices for name, option in options.items() if option.choices},
                         {"--closure-items": ("frequent", "all"), "--color": ("auto", "always", "never"),
                          "--completions": ("bash", "zsh"),
                          "--format": ("classes", "rules", "fimi", "basket", "table"),
                          "--graph": ("lattice", "rules"), "--prune": ("none", "same", "full", "productive"),
                          "--readings": ("one", "all"),
                          "--to": ("words", "table", "csv", "tsv", "jsonl", "sqlite", "dot", "html"),
                          "--wording": ("shortest", "full")})
        self.assertEqual({name for name, option in options.items() if option.default},
                         {"--alpha", "--bins", "--closure-items", "--color", "--format", "--graph", "--max-classes",
                          "--max-items", "--max-size", "--min-confidence", "--min-joint", "--min-lift", "--min-own",
                          "--min-support", "--missing", "--names", "--output", "--page-limit", "--prune", "--readings",
                          "--separator", "--sort", "--threads", "--to", "--top", "--wording"})
        self.assertEqual({name for name, option in options.items() if not option.takes_argument},
                         {"--count", "--exclusions", "--help", "--help-measures", "--only-true", "--quiet", "--test",
                          "--verify", "--version", "--weighted"})

    def test_measures_of_the_table_are_those_of_the_program(self) -> None:
        rows = [[cell.strip("`") for cell in row]
                for row in table_rows(section(text_of("docs/exploring.md"), "Measures"))[2:]]
        self.assertEqual(len(rows), 23)
        lines = run("korv-rules", "--help-measures").stdout.split("\n\n", 1)[1].splitlines()
        self.assertEqual([re.split(r" {2,}", line) for line in lines], rows)

    def test_columns_of_the_table_are_those_of_the_program(self) -> None:
        rows = table_rows(section(text_of("docs/exploring.md"), "What comes out"))
        begin = next(i for i, row in enumerate(rows) if row[0] == "Column")
        columns = [name.strip("`") for row in rows[begin + 2:] for name in row[0].split(", ")]
        header = run("korv-rules", "examples/titanic/titanic.csv", "-q", "--to", "csv").stdout.split("\n", 1)[0]
        self.assertEqual(columns, header.split(","))
        man_page = " ".join(section_of_man_page("man/korv-rules.1", "OUTPUT").split())
        self.assertIn(f"in this order: {', '.join(columns[:-1])} and {columns[-1]};", man_page)

    def test_columns_of_exclusions_are_those_of_the_program(self) -> None:
        rows = table_rows(section(text_of("docs/exploring.md"), "What excludes each other"))
        columns = [name.strip("`") for row in rows[2:] for name in row[0].split(", ")]
        header = run("korv-rules", "examples/titanic/titanic.csv", "--exclusions", "-q", "--to", "csv").stdout
        self.assertEqual(columns, header.split("\n", 1)[0].split(","))
        man_page = " ".join(section_of_man_page("man/korv-rules.1", "EXCLUSIONS").split())
        self.assertIn(f"{', '.join(columns[:9])} (as \\-log10), and the confidences "
                      f"{', '.join(columns[9:-1])} and {columns[-1]} of", man_page)

    def test_formats_and_extensions_of_the_table_are_those_of_the_program(self) -> None:
        rows = [[cell.strip("`") for cell in row[:2]]
                for row in table_rows(section(text_of("docs/exploring.md"), "What comes out"))[2:10]]
        self.assertEqual(tuple(row[0] for row in rows), of_korv_rules()["--to"].choices)
        sample = "examples/titanic/titanic.csv"
        for word, extensions in rows:
            with self.subTest(format=word), tempfile.TemporaryDirectory() as directory:
                expected = Path(directory) / "rules"
                self.assertEqual(run("korv-rules", sample, "-q", "--to", word, "-o", str(expected)).returncode, 0)
                self.assertGreater(expected.stat().st_size, 0)
                for extension in extensions.split("`, `") if extensions else []:
                    path = Path(directory) / f"rules{extension}"
                    self.assertEqual(run("korv-rules", sample, "-q", "-o", str(path)).returncode, 0)
                    self.assertEqual(path.read_bytes(), expected.read_bytes())


class RulesDefaults(OfKorvRules):
    """What happens without an option is what happens with its default, and not with another argument."""

    sample = "examples/titanic/titanic.csv"

    def rules(self, *arguments: str) -> str:
        done = run("korv-rules", self.sample, "-q", *arguments)
        self.assertIn(done.returncode, (0, 1))
        self.assertEqual(done.stderr, "")
        return done.stdout

    def test_of_options_with_a_word_or_a_number(self) -> None:
        options = of_korv_rules()
        without = self.rules()
        for option, other in (("--max-items", "3"), ("--min-confidence", "0.9"), ("--min-support", "10%"),
                              ("--wording", "full"), ("--readings", "all"), ("--prune", "full"), ("--sort", "lift")):
            with self.subTest(option=option):
                self.assertEqual(self.rules(option, options[option].default), without)
                self.assertNotEqual(self.rules(option, other), without)
        for option in ("--min-own", "--closure-items", "--max-classes", "--output"):
            with self.subTest(option=option):
                self.assertEqual(self.rules(option, options[option].default), without)
        self.assertEqual(self.rules("--color", "auto", "--to", "table"), self.rules("--to", "table"))
        self.assertNotEqual(self.rules("--color", "always", "--to", "table"), self.rules("--to", "table"))

    def test_of_limits_is_any(self) -> None:
        without = self.rules()
        for option, other in (("--max-if", "1"), ("--max-then", "1"), ("--top", "1"), ("--per-conclusion", "1")):
            with self.subTest(option=option):
                self.assertEqual(self.rules(option, "0"), without)
                self.assertNotEqual(self.rules(option, other), without)

    def test_of_exclusions(self) -> None:
        without = self.rules("--exclusions")
        self.assertEqual(self.rules("--exclusions", "--alpha", of_korv_rules()["--alpha"].default), without)
        self.assertEqual(self.rules("--exclusions", "--max-items", "3"), without)
        for option, other in (("--alpha", "1"), ("--max-items", "2")):
            self.assertNotEqual(self.rules("--exclusions", option, other), without)

    def test_of_the_lift_is_more_than_1(self) -> None:
        self.assertEqual(self.rules("--where", "lift > 1"), self.rules())
        self.assertNotEqual(self.rules("--min-lift", "0"), self.rules())


class RulesExitStatus(OfKorvRules):
    table = "examples/titanic/titanic.csv"
    classes = "examples/titanic/titanic.classes"
    transactions = "examples/titanic/titanic.dat"

    def test_is_as_the_man_page_and_the_document_say(self) -> None:
        cases = [
            (0, "--help"), (0, "-h"), (0, "--version"), (0, "--help-measures"), (0, f"{self.table} -q"),
            (0, f"{self.table} -q --count"), (0, f"{self.table} -q --verify"), (0, f"{self.classes} -n 2201 -q"),
            (0, f"{self.classes} --database {self.transactions} -q --verify"),
            (1, f"{self.table} -q --min-lift 100"), (1, f"{self.table} -q --min-lift 100 --count"),
            (1, f"{self.table} -s 90% -c 1"), (0, f"{self.table} -q --exclusions"),
            (1, f"{self.table} -q --exclusions --alpha 1e-300"), (2, f"{self.table} --exclusions --then a"),
            (2, f"{self.classes} -n 2201 --exclusions"),
            (2, ""), (2, f"{self.table} --some"), (2, f"{self.table} -c 2"), (2, f"{self.table} -s some"),
            (2, f"{self.table} --to some"), (2, f"{self.table} -o rules.some"), (2, f"{self.table} --sort some"),
            (2, f"{self.table} --measures some"), (2, f"{self.table} --where some"), (2, f"{self.table} --then some"),
            (2, f"{self.table} --forms some"), (2, f"{self.table} --kinds some"), (2, f"{self.table} --quiet=some"),
            (2, f"{self.table} -j 0"),
            (2, f"{self.table} -o {self.table} --to csv"), (2, f"{self.classes} -n 2201 --verify"),
            (2, f"{self.classes} -n 2201 --database {self.transactions}"),
            (2, self.classes), (2, f"{self.table} -n 2201"),
            (2, f"{self.table} --database {self.transactions}"), (2, f"{self.classes} -n 2201 --min-own 2"),
            (2, f"{self.transactions} --bins 4"), (3, "missing"), (3, "examples"), (3, f"{self.classes} -n 1000"),
            (3, f"{self.classes} --database examples/persons/persons.csv"), (3, f"{self.table} --max-classes 20"),
            (3, "LICENSE --format classes -n 10"),
            (4, f"{self.table} -o examples --to csv"), (4, f"{self.table} -o /dev/full --to csv"),
        ]
        for status, arguments in cases:
            with self.subTest(arguments=arguments):
                self.assertEqual(run("korv-rules", *shlex.split(arguments)).returncode, status)
        rows = table_rows(section(text_of("docs/exploring.md"), "Exit status"))[2:]
        self.assertEqual({int(row[0]) for row in rows}, {status for status, _ in cases})
        heads = re.findall(r"^\.TP\n\.B (\d+)$", section_of_man_page("man/korv-rules.1", "EXIT STATUS"), re.MULTILINE)
        self.assertEqual([int(head) for head in heads], [int(row[0]) for row in rows])


if __name__ == "__main__":
    for argument in sys.argv[1:]:
        PROGRAMS[Path(argument).name] = Path(argument).resolve()
    del sys.argv[1:]
    unittest.main()
