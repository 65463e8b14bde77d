#!/usr/bin/env python3
"""The documents against the programs: commands are run, excerpts are found in what was written, numbers are counted.

usage: test_documents.py [--update] KORV KORV_MINE KORV_RULES KORV_CHECK

Each document has a table that says of each of its blocks, in order, what it is. A block that the table does not have
fails the test, and so does one that the table has and the document has not.

With --update, blocks that are no longer what is written are replaced in the documents, where it is known by what:
those that are Whole or Numbered. Read what has changed before you believe it: git diff.
"""

import csv
import itertools
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from collections import Counter
from pathlib import Path
from random import Random
from typing import Callable, NamedTuple, Union

from documents import MAN_PAGES, MARKDOWN, TOP, Block, anchors, blocks, links, section, table_rows, text_of

PROGRAMS: dict[str, Path] = {}  # set from the command line, by name
PERSONS = TOP / "examples" / "persons" / "persons.csv"


class Run(NamedTuple):
    """Commands that are run. Their output goes to the files run-1.stdout, run-1.stderr, run-2.stdout and so on."""

    begins: str
    status: int = 0
    needs: str = ""  # a program, without which they are left out
    inside: str = "."  # the directory in which the reader is, by an earlier "cd"


class Records(NamedTuple):
    """Records of a rule file, each of them there as it is, but not necessarily one behind the other."""

    begins: str
    file: str


class Pieces(NamedTuple):
    """The beginning of a file; a line "..." stands for any lines."""

    begins: str
    file: str


class Excerpt(NamedTuple):
    """Lines of a file, one behind the other. Times and memory may differ."""

    begins: str
    file: str


class Whole(NamedTuple):
    """All that a file holds, but for `before`, which stands before it. Times and memory may differ."""

    begins: str
    file: str
    before: str = ""
    needs: str = ""  # the program that writes the file, if it may be missing


class Numbered(NamedTuple):
    """Rules with their numbers, as korv-rules writes them in words: a paragraph for each of those that are shown. A
    paragraph "..." stands for any that are not."""

    begins: str
    file: str


class ClassFile(NamedTuple):
    """A class file as it is shown, <TAB> for TAB: a run reads one class from it."""

    begins: str
    closed_itemset: str
    support: int
    essentials: str


class Successors(NamedTuple):
    """Successors in a notation of the document's own, against a lattice file."""

    begins: str
    file: str


class ForShow(NamedTuple):
    """Neither run nor compared, and why."""

    begins: str
    why: str


Entry = Union[Run, Records, Pieces, Excerpt, Whole, Numbered, ClassFile, Successors, ForShow]

BUILDS = "builds the project; .ci/run does it"
DEVELOPS = "for people who work on the project; .ci/run does it"

TABLE: dict[str, list[Entry]] = {
    "ARCHITECTURE.md": [
        ForShow("src/    base", "a drawing"),
        ForShow("class file -->", "a drawing"),
        ForShow("text_input -->", "a drawing"),
        ForShow("input_parts --> transaction_reader", "a drawing"),
        ForShow("rule_input --> Pairs", "a drawing"),
        ForShow("text_input --> checked_lines", "a drawing"),
    ],
    "README.md": [
        ForShow("./scripts/demo", BUILDS),
        Run("cd build"),
        Numbered("1. If ", "run-1.stdout"),
        Excerpt("635 rules", "run-1.stderr"),
        Run("./korv-mine ../examples/persons/persons.csv", inside="build"),
        Numbered("1. If age=74..88,", "run-2.rules"),
        ForShow("cmake -S . -B build", BUILDS),
        ForShow("g++ -std=c++20", BUILDS),
        Run("./korv titanic ../examples/titanic/titanic.classes 100 0.6 2201", inside="build"),
        Numbered("1. If class=crew,", "run-3.rules"),
        Records("7-->3 v 10", "build/intra_exact_titanic_100_0.6.txt"),
        Records("8-->4 v 9", "build/inter_approx_titanic_100_0.6.txt"),
        ForShow("korv LABEL CLASSFILE MINSUPP MINCONF N", "a synopsis"),
        ClassFile("1 4<TAB>5<TAB> 1,", "1 4", 5, "1"),
    ],
    "docs/checking.md": [
        Run("korv-check examples/titanic/titanic.classes -n 2201"),
        Whole("60 notes not shown", "run-1.stdout"),
        Run("sed 's/$/\\r/' examples/titanic/titanic.classes | korv-check - --no-notes", status=2),
        Whole("standard input:1:", "run-2.stdout"),
        Run("korv titanic examples/titanic/titanic.classes 100 0.6 2201"),
        Whole("96 classes", "run-3.stdout"),
        Run("sed 's/$/\\r/' examples/titanic/titanic.classes | korv-check - --fix mended.classes"),
    ],
    "docs/class-file.md": [
        ForShow("file       = { record } ;", "a grammar; test_class_file.py runs the examples of this document"),
        Run("grep -nvP", status=1),
    ],
    "docs/exploring.md": [
        Run("korv-rules examples/titanic/titanic.csv --top 3"),
        Numbered("1. If ", "run-1.stdout"),
        Whole("input ", "run-1.stderr"),
        Run("korv-rules examples/titanic/titanic.csv -c 0.7"),
        Whole(" #  rule", "run-2.stdout"),
        Run("korv-rules examples/titanic/titanic.csv --then"),
        Whole("#  rule", "run-3.stdout"),
        Run("korv-rules examples/titanic/titanic.csv --where 'lift"),
        Whole("#  rule", "run-4.stdout"),
        Run("korv-rules examples/titanic/titanic.csv --where 'items"),
        Whole("#  rule", "run-5.stdout"),
        Run("korv-rules examples/titanic/titanic.csv --test"),
        Whole("#  rule", "run-6.stdout"),
        Whole("input ", "run-6.stderr"),
        Run("awk 'NR == 1 || NR % 2 == 0'"),
        Whole("#  rule", "run-7.stdout"),
        Run("korv-rules examples/titanic/titanic.csv --top 2 -o rules.csv"),
        Whole("id,", "run-8.stdout"),
        Run("korv-rules examples/titanic/titanic.csv --if"),
        Whole("{\"id\":1,", "run-9.stdout"),
        Run("korv-rules examples/titanic/titanic.csv --then 'survived=*' --max-then 1 -c 0.7 --readings all --top 8 \\",
            needs="dot"),
        Run("korv-rules examples/titanic/titanic.csv -c 0.7 --readings all -o rules.html"),
        Run("korv-rules examples/titanic/titanic.csv --exclusions --without"),
        Whole("1. ", "run-12.stdout"),
        Whole("input ", "run-12.stderr"),
        Run("korv-rules examples/titanic/titanic.csv --exclusions --top 2"),
        Whole("id,", "run-13.stdout"),
        Run("korv-rules examples/titanic/titanic.csv --count"),
        Whole("form ", "run-14.stdout"),
        Run("korv-rules examples/titanic/titanic.classes -n 2201"),
        Numbered("1. If ", "run-15.stdout"),
        Whole("class file ", "run-15.stderr"),
        Run("korv-rules examples/titanic/titanic.classes --database", status=1),
        Whole("class file ", "run-16.stderr"),
        Run("korv-mine examples/titanic/titanic.dat"),
        Run("korv titanic examples/titanic/titanic.classes 100 0.6 2201"),
        Whole("1. If ", "run-18.rules"),
        Whole("rule files ", "run-18.stderr"),
        Run("korv-rules int*_titanic_*.txt --database"),
        Whole("#  rule", "run-19.stdout"),
        Whole("rule files ", "run-19.stderr"),
    ],
    "docs/mining.md": [
        Run("korv-mine examples/persons/persons.csv"),
        Whole("input               table", "run-1.stderr"),
        Numbered("1. If income=", "run-1.rules"),
        Run("iconv -f WINDOWS-1252"),
        Run("sqlite3 :memory: '.import --csv receipts.csv sales'", needs="sqlite3"),
        ForShow("|<---- A: --min-support", "a drawing"),
        Run("korv-mine examples/titanic/titanic.dat -s 1 --min-joint 0 --max-size 2"),
        Excerpt("4-->not(7)", "run-4.stdout"),
        Run("grep -P '\\t2201\\t' pairs.classes"),
        Whole("1 2 3 4 5 6 7 8 9 10<TAB>2201", "run-5.stdout"),
        Run("awk -F"),
        ForShow("korv-mine groceries.dat", "data that is not part of the project"),
        Run("korv-mine examples/persons/persons.csv --bins 4 --split 'languages=;' --ignore pension --estimate"),
        Whole("min. support", "run-7.stdout"),
        Run("korv-mine examples/titanic/titanic.dat -s 1 --min-joint 0 --max-size 10"),
        Run("sort examples/titanic/titanic.dat"),
        Run("sqlite3 sales.db", needs="sqlite3"),
        Whole("1", "groups.txt", needs="sqlite3"),
        ForShow("mpirun -n 2 korv-mine-mpi", "MPI may be missing; the program's own tests run it so"),
        ForShow("#!/bin/sh", "a cluster is needed"),
    ],
    "docs/output-files.md": [
        Pieces("\t\t\t*****", "Lattice_shop_1.txt"),
        Excerpt("*****", "Lattice_shop_1.txt"),
        Pieces("\t\t\t*****", "intra_exact_shop_1_0.5.txt"),
        Records("3-->2 v 4", "intra_exact_shop_1_0.5.txt"),
        Records("2 v 4-->3", "intra_approx_shop_1_0.5.txt"),
        Records("1 v 4-->not(2)not(3)", "inter_approx_part_1_0.5.txt"),
        Records("not(2)not(3)-->not(4)", "inter_approx_part_1_0.5.txt"),
        Excerpt("3-->2 v 4", "intra_exact_zero_0_0.txt"),
        Records("not(2)not(3)-->4", "inter_approx_zero_0_0.txt"),
        Pieces("Number of exact rules: 32", "number_rules_shop_1_0.5.txt"),
        Excerpt("Number of exact rules: 32", "number_rules_shop_1_0.5.txt"),
        Whole("  ******", "shop.stdout", before="\n"),
    ],
    "docs/page.md": [
        ForShow("x1 = count", "formulas"),
    ],
    "docs/rules-database.md": [
        Run("korv-rules examples/titanic/titanic.csv -c 0.7"),
        *itertools.chain.from_iterable(
            (Run("sqlite3 -box rules.db", needs="sqlite3"), Whole("┌", f"run-{number}.stdout", needs="sqlite3"))
            for number in range(2, 12)),
    ],
    "docs/rules.md": [
        Run("printf "),
        Run("printf '1"),
        Successors("{1 2 3 4} -> {1 4}, {2 3 4}", "Lattice_shop_1.txt"),
        Run("grep -vP '^2 3"),
        Records("not(3)-->not(2)not(4)", "intra_approx_part_1_0.5.txt"),
        Records("1 v 4-->not(2)not(3)", "inter_approx_part_1_0.5.txt"),
    ],
    "examples/titanic/README.md": [
        Run("cd build"),
        Numbered("1. If class=crew,", "run-1.rules"),
        Records("7-->3 v 10", "build/intra_exact_titanic_100_0.6.txt"),
        Records("not(3)not(10)-->not(7)", "build/intra_exact_titanic_100_0.6.txt"),
        Records("not(8)-->not(4)", "build/intra_exact_titanic_100_0.6.txt"),
        Records("1-->10", "build/inter_approx_titanic_100_0.6.txt"),
        Records("8-->4 v 9", "build/inter_approx_titanic_100_0.6.txt"),
        Records("1 v 2 v 4-->8 v 10", "build/intra_exact_titanic_100_0.6.txt"),
    ],
    "examples/persons/README.md": [],
    "man/korv-check.1": [
        Run("korv-check titanic.classes -n 2201"),
        Run("korv-check titanic.classes --database"),
        Run("korv-check titanic.classes --fix"),
    ],
    "man/korv-mine-mpi.1": [ForShow("mpirun -n 4 korv-mine-mpi", "MPI may be missing")],
    "man/korv-mine.1": [
        Run("korv-mine persons.csv --bins 4 --split 'languages=;' --ignore pension -s 10%"),
        Run("korv-mine persons.csv --bins 4 --split 'languages=;' --ignore pension --estimate"),
        Run("korv-mine titanic.dat"),
        Run("sort titanic.dat"),
    ],
    "man/korv-rules.1": [
        Run("korv-rules titanic.csv --to words"),
        Run("korv-rules titanic.csv --then"),
        Run("korv-rules titanic.classes -n 2201"),
        Run("korv-rules titanic.csv --exclusions"),
        Run("korv-rules titanic.csv --readings all"),
    ],
    "man/korv.1": [
        Run("korv mush mushroom.txt 300 0.8 8124"),
        Run("gzip -dc mushroom.txt.gz"),
        Run("printf "),
    ],
    "CHANGELOG.md": [],
    "CONTRIBUTING.md": [
        ForShow("./scripts/test", DEVELOPS),
    ],
    "bench/README.md": [
        ForShow("bench/run", "measures for minutes, and files that are not bundled; .ci/run runs it on the sample"),
    ],
}


def sample(name: str) -> Path:
    return TOP / "examples" / "titanic" / name


def sample_transactions() -> list[frozenset[str]]:
    return [frozenset(line.split()) for line in sample("titanic.dat").read_text(encoding="ascii").splitlines()]


def persons() -> list[dict[str, str]]:
    """The lines of the table of persons, cells by column."""
    with PERSONS.open(encoding="utf-8", newline="") as file:
        return list(csv.DictReader(file))


def write_transactions(directory: Path) -> None:
    """What the man page mines."""
    shutil.copy(PERSONS, directory)
    shutil.copy(sample("titanic.dat"), directory)


def write_exports(directory: Path) -> None:
    """What docs/mining.md converts: a table of a spreadsheet, and receipts in the long form."""
    (directory / "export.csv").write_bytes("Straße;Preis\r\nHöhe;1,5\r\nHöhe;2\r\nRing;3,75\r\n"
                                           "Ring;10,25\r\nRing;-0,5\r\n".encode("cp1252"))
    (directory / "receipts.csv").write_text(
        "receipt,item\n1,\"bread, white\"\n1,milk\n2,tea\n3,\"bread, white\"\n2,milk\n2,milk\n", encoding="ascii")


def write_class_file(directory: Path) -> None:
    shutil.copy(sample("titanic.classes"), directory / "classes.txt")


def write_sample(directory: Path) -> None:
    for name in ("titanic.csv", "titanic.dat", "titanic.classes", "titanic.names"):
        shutil.copy(sample(name), directory)


def write_mushrooms(directory: Path) -> None:
    """Any class file will do for the man page."""
    shutil.copy(sample("titanic.classes"), directory / "mushroom.txt")
    subprocess.run(["gzip", "-k", "mushroom.txt"], cwd=directory, check=True)


def run_worked_example(directory: Path) -> None:
    """The two runs of docs/rules.md, and one of the class file of the second with both thresholds 0."""
    first, _, _, second, *_ = blocks("docs/rules.md")
    commands = first.text + "korv shop shop.txt 1 0.5 6 >shop.stdout\n" + second.text + "korv zero part.txt 0 0 6\n"
    shell(commands, directory)


# What a document takes for granted in the current directory.
GIVEN: dict[str, Callable[[Path], None]] = {
    "docs/class-file.md": write_class_file,
    "docs/mining.md": write_exports,
    "docs/output-files.md": run_worked_example,
    "man/korv-check.1": write_sample,
    "man/korv-mine.1": write_transactions,
    "man/korv-rules.1": write_sample,
    "man/korv.1": write_mushrooms,
}


def shell(commands: str, directory: Path, inside: str = ".") -> subprocess.CompletedProcess[bytes]:
    """Runs commands in a directory, or inside one of its own, as if the programs were installed."""
    environment = dict(os.environ, PATH=f"{directory / 'build'}{os.pathsep}{os.environ['PATH']}", LC_ALL="C.UTF-8")
    return subprocess.run(["sh", "-e", "-c", commands], cwd=directory / inside, env=environment, check=False,
                          capture_output=True)


def laid_out(document: str, directory: Path) -> None:
    """The directory as a document takes it to be: programs, sample, scripts and what is given."""
    (directory / "build").mkdir()
    for name, path in PROGRAMS.items():
        (directory / "build" / name).symlink_to(path)
    (directory / "examples").symlink_to(TOP / "examples")
    (directory / "scripts").symlink_to(TOP / "scripts")
    GIVEN.get(document, lambda _: None)(directory)


def is_left_out(entry: Entry) -> bool:
    """Whether a program is missing that an entry needs."""
    needs = entry.needs if isinstance(entry, (Run, Whole)) else ""
    return bool(needs) and shutil.which(needs) is None


def run_blocks(document: str, directory: Path) -> list[str]:
    """Runs the commands of a document in order; what went wrong."""
    laid_out(document, directory)
    wrong = []
    number = 0
    for entry, block in zip(TABLE[document], blocks(document)):
        if not isinstance(entry, Run):
            continue
        number += 1
        if is_left_out(entry):
            continue
        done = shell(block.text, directory, entry.inside)
        (directory / f"run-{number}.stdout").write_bytes(done.stdout)
        (directory / f"run-{number}.stderr").write_bytes(done.stderr)
        # Of a run of korv and korv-rules, what the latter says.
        (directory / f"run-{number}.rules").write_bytes(done.stdout[done.stdout.find(b"\n1. If ") + 1:])
        if done.returncode != entry.status:
            wrong.append(f"{document}:{block.line}: status {done.returncode}; expected {entry.status}\n"
                         + done.stderr.decode(errors="replace"))
    return wrong


def masked(text: str) -> str:
    """The text without the numbers that differ from run to run: times, and memory."""
    text = re.sub(r"^(Time spent by .* = )[0-9.e-]+$", r"\1#", text, flags=re.MULTILINE)
    return re.sub(r"^(time|peak memory)( +)[0-9.]+ (s|MiB)$", r"\1\2# \3", text, flags=re.MULTILINE)


def records_of(text: str) -> list[str]:
    """A text cut before each rule line; what stands before the first one belongs to it."""
    return re.split(r"\n(?=[^\n]*-->)", text.removesuffix("\n"))


def has_lines(text: str, lines: str) -> bool:
    """Whether whole lines are in a text, one behind the other."""
    return ("\n" + lines) in ("\n" + text)


def pieces_are_in(text: str, excerpt: str) -> bool:
    """Whether a text begins with the first piece of an excerpt, and holds the others behind it in their order."""
    first, *others = re.split(r"^\.\.\.\n", excerpt, flags=re.MULTILINE)
    if not text.startswith(first):
        return False
    position = len(first)
    for piece in others:
        position = text.find("\n" + piece, position - 1)
        if position < 0:
            return False
        position += 1 + len(piece)
    return True


def renumbered(text: str, shown: str) -> str:
    """The paragraphs of a text that begin with the same numbers as those that are shown."""
    def number(paragraph: str) -> str:
        return paragraph.split(".", 1)[0]

    written = {number(paragraph): paragraph for paragraph in text.rstrip("\n").split("\n\n")}
    return "\n\n".join(paragraph if paragraph == "..." else written.get(number(paragraph), "")
                       for paragraph in shown.rstrip("\n").split("\n\n")) + "\n"


def lattice_of(text: str) -> dict[str, dict[str, object]]:
    """The classes of a lattice file: support, essential itemsets and successors by closed itemset."""
    def itemsets(line: str) -> list[str]:
        return [] if line == "VIDE" else [part.strip() for part in line.split(";") if part.strip()]

    found = {}
    for closed, support, essentials, successors in re.findall(
            r"^DCP:  (.*)\nDisjonctive support: (\d+)\nles essentiels:  (.*)\nles successeurs: (.*)\n", text,
            re.MULTILINE):
        found[closed.strip()] = {"support": int(support), "essentials": itemsets(essentials),
                                 "successors": itemsets(successors)}
    return found


def shown_successors(text: str) -> dict[str, list[str]]:
    found = {}
    for line in text.splitlines():
        closed, successors = re.split(r" *-> *", line)
        found[closed.strip("{}")] = re.findall(r"\{([^}]*)\}", successors)
    return found


def agrees(entry: Entry, block: Block, directory: Path) -> bool:
    """Whether an excerpt is what was written."""
    if isinstance(entry, ClassFile):
        (directory / "shown.classes").write_text(block.text.replace("<TAB>", "\t"), encoding="ascii")
        done = shell("korv shown shown.classes 1 0.5 100", directory)
        lattice = lattice_of((directory / "Lattice_shown_1.txt").read_text(encoding="utf-8"))
        return b"fin de fichier" not in done.stdout and lattice == {
            entry.closed_itemset: {"support": entry.support, "essentials": [entry.essentials], "successors": []}}
    written = masked((directory / entry.file).read_text(encoding="utf-8"))
    shown = masked(block.text).replace("<TAB>", "\t")
    if isinstance(entry, Records):
        ends = [record if record.endswith("\n") else record + "\n" for record in records_of(shown)]
        return "-->" in shown and all(has_lines(written, record) for record in ends)
    if isinstance(entry, Pieces):
        return pieces_are_in(written, shown)
    if isinstance(entry, Excerpt):
        return has_lines(written, shown)
    if isinstance(entry, Whole):
        return written == entry.before + shown
    if isinstance(entry, Numbered):
        return renumbered(written, shown) == shown
    return isinstance(entry, Successors) and shown_successors(shown) == {
        closed: of_class["successors"] for closed, of_class in lattice_of(written).items()}


def update(document: str, directory: Path) -> None:
    """Replaces the blocks of a document that are no longer what is written, where it is known by what."""
    lines = text_of(document).split("\n")
    # From the last block on, so that the lines of the others keep their numbers.
    for entry, block in reversed(list(zip(TABLE[document], blocks(document)))):
        if not isinstance(entry, (Whole, Numbered)) or is_left_out(entry) or agrees(entry, block, directory):
            continue
        text = (directory / entry.file).read_text(encoding="utf-8")
        new = text.removeprefix(entry.before) if isinstance(entry, Whole) else renumbered(text, block.text)
        begin = block.line - 1
        lines[begin:begin + block.text.count("\n")] = new.replace("\t", "<TAB>").split("\n")[:-1]
        print(f"{document}:{block.line}: updated")
    (TOP / document).write_text("\n".join(lines), encoding="utf-8")


def update_all() -> None:
    for document in MARKDOWN:
        with tempfile.TemporaryDirectory() as directory:
            for complaint in run_blocks(document, Path(directory)):
                print(complaint)
            update(document, Path(directory))


class InDirectory(unittest.TestCase):
    def setUp(self) -> None:
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = Path(directory.name)

    def ran(self, document: str) -> Path:
        """A directory of its own in which the commands of a document were run."""
        directory = self.directory / document.replace("/", "_")
        directory.mkdir()
        self.assertEqual(run_blocks(document, directory), [])
        return directory


class Blocks(InDirectory):
    def test_every_document_has_a_table_of_its_blocks(self) -> None:
        self.assertEqual(sorted(TABLE), sorted(MARKDOWN + MAN_PAGES))

    def test_the_table_says_of_every_block_what_it_is(self) -> None:
        for document, entries in TABLE.items():
            found = blocks(document)
            for entry, block in itertools.zip_longest(entries, found):
                with self.subTest(document=document, line=block.line if block else None):
                    self.assertIsNotNone(entry, "this block is not in the table of test_documents.py")
                    self.assertIsNotNone(block, f"the document has no block {entry}")
                    self.assertEqual(block.first_line[:len(entry.begins)], entry.begins)

    def test_commands_run_and_excerpts_are_what_is_written(self) -> None:
        for document, entries in TABLE.items():
            directory = self.ran(document)
            for entry, block in zip(entries, blocks(document)):
                with self.subTest(document=document, line=block.line):
                    if is_left_out(entry):
                        self.skipTest(f"{document}:{block.line}: {entry.needs} is missing")
                    if not isinstance(entry, (Run, ForShow)):
                        self.assertTrue(agrees(entry, block, directory), "not found as it is shown:\n" + block.text)

    def test_programs_of_commands_for_show_are_there(self) -> None:
        programs = set()
        for document, entries in TABLE.items():
            for entry, block in zip(entries, blocks(document)):
                if isinstance(entry, ForShow):
                    for program in re.findall(r"(?:^|&& )((?:\./)?\.?\w+/[\w.-]+)", block.text, re.MULTILINE):
                        programs.add(program)
                        with self.subTest(document=document, program=program):
                            self.assertTrue(os.access(TOP / program, os.X_OK))
        self.assertLess({"./scripts/demo", "./scripts/test", ".ci/run", "bench/run"}, programs)


class Links(unittest.TestCase):
    def test_lead_to_files_and_headings(self) -> None:
        for document in MARKDOWN:
            for link in links(text_of(document)):
                if re.match(r"https?:", link):
                    continue
                with self.subTest(document=document, link=link):
                    file, _, anchor = link.partition("#")
                    target = ((TOP / document).parent / file).resolve() if file else TOP / document
                    self.assertTrue(target.exists(), "there is no such file")
                    if anchor:
                        self.assertIn(anchor, anchors(target.read_text(encoding="utf-8")))

    def test_lists_of_sections_name_them_all(self) -> None:
        for document in ("docs/output-files.md", "docs/rules.md"):
            text = text_of(document)
            listed = re.findall(r"^- \[.*\]\(#(.*)\)$", text, re.MULTILINE)
            headings = re.findall(r"^## (.*)$", text, re.MULTILINE)
            self.assertEqual(listed, [heading.lower().replace(" ", "-") for heading in headings], document)


class Text(unittest.TestCase):
    def test_code_spans_are_closed_in_their_line(self) -> None:
        for document in MARKDOWN:
            fenced = False
            for number, line in enumerate(text_of(document).split("\n"), start=1):
                if line.startswith("```"):
                    fenced = not fenced
                elif not fenced:
                    self.assertEqual(line.count("`") % 2, 0, f"{document}:{number}: a code span that is not closed")


class Numbers(InDirectory):
    """Numbers in sentences."""

    def numbers(self, document: str, pattern: str) -> list[int]:
        """The numbers in the one sentence that a pattern matches; a blank stands for any white space."""
        found = re.findall(pattern.replace(" ", r"\s+"), text_of(document))
        self.assertEqual(len(found), 1, f"{document}: {pattern}")
        groups = found[0] if isinstance(found[0], tuple) else (found[0],)
        return [int(number.replace(",", "")) for number in groups]

    def printed(self, output: Path) -> list[int]:
        """The numbers of exact, approximative and approximated rules that a run printed."""
        return [int(re.search(rf"^Number of {kind} rules: (\d+)$", output.read_text(), re.MULTILINE)[1])
                for kind in ("exact", "approximative", "approximated")]

    def test_of_the_rules_of_the_sample(self) -> None:
        directory = self.ran("examples/titanic/README.md")
        exact, approximative, approximated = self.printed(directory / "run-1.stdout")
        texts = {path.name.partition("_titanic")[0]: path.read_text()
                 for path in (directory / "build").glob("int*.txt")}
        rules = {name: re.findall(r"^.*-->.*$", text, re.MULTILINE) for name, text in texts.items()}
        every = [rule for of_file in rules.values() for rule in of_file]
        self.assertEqual(
            self.numbers("examples/titanic/README.md",
                         r"writes ([\d,]+) rules: (\d+) exact, (\d+) approximative, (\d+) approximated"),
            [len(every), exact, approximative, approximated])
        self.assertEqual(self.numbers("examples/titanic/README.md", r"\((\d+) of them repeat another one"),
                         [len(every) - len(set(every))])
        self.assertEqual(
            self.numbers("README.md", r"there are (\d+) of them, so the two exact files hold (\d+) rules although the "
                                      r"program reports (\d+)"),
            [texts["intra_exact"].count("< support <"), len(rules["intra_exact"]) + len(rules["inter_exact"]), exact])
        intervals = re.findall(r"`(\d+< support <\d+|[\d.]+< confiance <[\d.]+)`", text_of("README.md"))
        self.assertEqual(len(intervals), 2)
        self.assertTrue(has_lines(texts["intra_approx"], "\n".join(intervals) + "\n"))

    def test_of_the_persons_of_the_sample(self) -> None:
        document = "examples/titanic/README.md"
        persons = sample_transactions()

        def count(some: Callable[[frozenset[str]], object]) -> int:
            return sum(1 for person in persons if some(person))

        adults = count(lambda person: "8" in person)
        lost = count(lambda person: "8" in person and person & {"4", "9"})
        first_class, saved = count(lambda person: "1" in person), count(lambda person: {"1", "10"} <= person)
        self.assertEqual(self.numbers(document, r"# The sample: ([\d,]+) persons"), [len(persons)])
        self.assertEqual(self.numbers(document, r"All (\d+) children"), [count(lambda person: "7" in person)])
        self.assertEqual(self.numbers(document, r"of the (\d+) persons who neither travelled third class nor survived"),
                         [count(lambda person: not person & {"3", "10"})])
        self.assertEqual(count(lambda person: not person & {"3", "10"} and "7" in person), 0)
        self.assertEqual(self.numbers(document, r"None of the (\d+) who were not adults"),
                         [count(lambda person: "8" not in person)])
        self.assertEqual(count(lambda person: "4" in person and "8" not in person), 0)
        self.assertEqual(self.numbers(document, r"Of the (\d+) passengers of the first class, (\d+) \((\d+) %\)"),
                         [first_class, saved, round(100 * saved / first_class)])
        self.assertEqual(
            self.numbers(document, r"Of the ([\d,]+) adults, ([\d,]+) \((\d+) %\) .* survivors were a minority of "
                                   r"(\d+)"),
            [adults, lost, round(100 * lost / adults), adults - lost])
        self.assertEqual(self.numbers("README.md", r"Of the adults, ([\d,]+) \((\d+) %\)"),
                         [lost, round(100 * lost / adults)])
        self.assertEqual(self.numbers(document, r"In the transactions there are ([\d,]+) of them"),
                         [count(lambda person: person & {"1", "2", "4"})])

    def test_of_the_classes_of_the_sample(self) -> None:
        persons = set(sample_transactions())
        items = sorted(set().union(*persons))

        def closure(itemset: frozenset[str]) -> frozenset[str]:
            return frozenset(item for item in items
                             if all(person & itemset for person in persons if item in person))

        closed = {closure(frozenset(some)) for size in range(1, len(items) + 1)
                  for some in itertools.combinations(items, size)}
        listed = len(sample("titanic.classes").read_text(encoding="ascii").splitlines())
        self.assertEqual(self.numbers("examples/titanic/README.md", r"(\d+) of the (\d+) classes of the database"),
                         [listed, len(closed)])

    def test_of_the_rules_of_the_worked_example(self) -> None:
        directory = self.ran("docs/rules.md")
        exact, approximative, approximated = self.printed(directory / "run-1.stdout")
        self.assertEqual(self.numbers("docs/rules.md", r"whole run writes (\d+) exact and (\d+) approximative rules"),
                         [exact, approximative])
        self.assertEqual(approximated, 0)
        self.assertEqual(
            self.numbers("docs/rules.md", r"writes (\d+) exact, (\d+) approximative and (\d+) approximated rules"),
            self.printed(directory / "run-3.stdout"))

    def test_of_the_counters_of_the_worked_example(self) -> None:
        directory = self.ran("docs/output-files.md")
        counts = (directory / "number_rules_shop_1_0.5.txt").read_text()
        rules = {name: (directory / f"{name}_shop_1_0.5.txt").read_text() for name in ("intra_approx", "inter_exact")}
        sides = {name: Counter(re.findall(r"^(not)?[^-\n]*-->(not)?", text, re.MULTILINE))
                 for name, text in rules.items()}

        def counter(kind: str, form: str) -> int:
            return int(re.search(rf"{kind}  of the form  {form} = .*\t(\d+)$", counts, re.MULTILINE)[1])

        self.assertEqual(self.numbers("docs/output-files.md", r"section shows (\d+) for R111: four of .* and two are"),
                         [counter("appro", "R111")])
        self.assertEqual((sides["intra_approx"]["", ""], sides["intra_approx"]["not", "not"]), (4, 2))
        self.assertEqual(self.numbers("docs/output-files.md", r"section shows (\d+) for R232: one of .* and two are"),
                         [counter("exact", "R232")])
        self.assertEqual(sides["inter_exact"]["not", "not"], 1 + 2)

    def test_of_the_persons_aboard_whom_rules_tell_of(self) -> None:
        with sample("titanic.csv").open(encoding="utf-8", newline="") as file:
            persons = list(csv.DictReader(file))

        def share(part: list[dict[str, str]], column: str, value: str) -> list[int]:
            """How many of some persons have this value, of how many, and the per cent that this is."""
            having = sum(person[column] == value for person in part)
            return [having, len(part), round(100 * having / len(part))]

        women = [person for person in persons if person["sex"] == "female"]
        women_not_third = [person for person in women if person["class"] != "3rd"]
        dead_not_third = [person for person in persons if person["class"] != "3rd" and person["survived"] == "no"]
        crew_or_dead = [person for person in persons if person["class"] == "crew" or person["survived"] == "no"]
        children = [person for person in persons if person["age"] == "child"]
        self.assertEqual(self.numbers("README.md",
                                      r"(\d+) of (\d+) survived, where of all persons (\d+) of ([\d,]+) did"),
                         share(women_not_third, "survived", "yes")[:2] + share(persons, "survived", "yes")[:2])
        self.assertEqual(self.numbers("README.md", r"Of the children, (\d+) % travelled third class"),
                         share(children, "class", "3rd")[2:])
        self.assertEqual(self.numbers("README.md", r"not travelled third class, (\d+) % were men"),
                         share(dead_not_third, "sex", "male")[2:])
        document = "docs/exploring.md"
        having, of, per_cent = share(crew_or_dead, "sex", "male")
        self.assertEqual(self.numbers(document, r"did not survive: ([\d,]+) persons\. Of these, ([\d,]+) were men, "
                                      r"which are (\d+) %\. Of all persons aboard, (\d+) % were men"),
                         [of, having, per_cent] + share(persons, "sex", "male")[2:])
        women_of_the_crew = [person for person in women if person["class"] == "crew"]
        self.assertEqual(self.numbers(document, r"since (\d+) of the (\d+) women of the crew survived"),
                         share(women_of_the_crew, "survived", "yes")[:2])
        self.assertEqual(self.numbers(document, r"did not travel third class, (\d+) % survived"),
                         share(women_not_third, "survived", "yes")[2:])

    def test_of_the_table_of_the_sample(self) -> None:
        names = dict(line.split("\t") for line in sample("titanic.names").read_text(encoding="utf-8").splitlines())
        with sample("titanic.csv").open(encoding="utf-8", newline="") as file:
            rows = [{f"{column}={value}" for column, value in row.items()} for row in csv.DictReader(file)]
        self.assertEqual(rows, [{names[item] for item in person} for person in sample_transactions()])

    def test_of_the_table_of_persons(self) -> None:
        of_village = [person["home"] for person in persons() if person["lives_in"] == "village"]
        of_old = [person["retired"] for person in persons() if 74 <= int(person["age"]) <= 88]
        of_young = [person["home"] == "rent" or person["children"] == "0"
                    for person in persons() if 18 <= int(person["age"]) <= 26]
        of_poor = [person["home"] == "rent" or person["travels_by"] == "car"
                   for person in persons() if person["income"].isdigit() and 14500 <= int(person["income"]) <= 17700]
        for document, position, shown in (("README.md", 5, [of_old, of_village]),
                                          ("docs/mining.md", 2, [of_poor, of_old, of_young])):
            text = blocks(document)[position].text
            self.assertEqual(list(map(int, re.findall(r"in all (\d+) cases", text))), list(map(len, shown)))
        self.assertEqual((set(of_old), set(of_village), set(of_young), set(of_poor)),
                         ({"yes"}, {"own"}, {True}, {True}))
        self.assertEqual([person["pension"] for person in persons()], [person["retired"] for person in persons()])
        self.assertEqual(self.numbers("docs/mining.md", r"its (\d+) persons are made up"), [len(persons())])
        self.assertEqual(self.numbers("examples/persons/README.md", r"# The table: (\d+) persons"), [len(persons())])

    def test_of_the_classes_that_mining_makes_of_the_sample(self) -> None:
        directory = self.ran("docs/mining.md")
        all_classes = (directory / "all.classes").read_text(encoding="ascii").splitlines()
        self.assertEqual(self.numbers("docs/mining.md", r"This makes all (\d+) classes of the sample"),
                         [len(all_classes)])
        self.assertEqual(shell("korv all all.classes 0 0 2201", directory).stdout.count(b"approximated rules: 0\n"), 1)


class Recipes(InDirectory):
    def test_transactions_that_are_counted_give_the_same_classes(self) -> None:
        self.assertEqual((self.ran("docs/mining.md") / "titanic.classes").read_bytes(),
                         sample("titanic.classes").read_bytes())

    def test_exclusions_are_the_pairs_that_never_meet(self) -> None:
        directory = self.ran("docs/mining.md")
        shown = (directory / "run-4.stdout").read_text(encoding="utf-8")
        transactions = sample_transactions()
        expected = []
        pairs = []
        for one, other in itertools.permutations(sorted(set().union(*transactions)), 2):
            never_meet = not any({one, other} <= transaction for transaction in transactions)
            if never_meet and int(one) < int(other):
                pairs.append(f"{one} {other}")
            # Where one or the other is always there, the closure of the two holds all items.
            if never_meet and not all(transaction & {one, other} for transaction in transactions):
                expected.append(f"{one}-->not({other})")
        self.assertEqual(sorted(re.findall(r"^.*-->.*$", shown, re.MULTILINE)), sorted(expected))
        self.assertEqual(len(expected), 12 + 2)
        self.assertEqual(sorted((directory / "run-6.stdout").read_text(encoding="ascii").splitlines()), sorted(pairs))
        self.assertEqual(len(pairs), 10)

    def recipe_on(self, transactions: list[set[int]]) -> list[str]:
        """What the commands for items that exclude each other print for other transactions, one behind the other."""
        directory = Path(tempfile.mkdtemp(dir=self.directory))
        laid_out("docs/rules.md", directory)
        lines = [" ".join(map(str, sorted(transaction))) + "\n" for transaction in transactions]
        (directory / "transactions").write_text("".join(lines), encoding="ascii")
        mine, *_, list_pairs = (block.text for block in blocks("docs/mining.md")
                                if block.text.startswith("awk") or "grep -E" in block.text)
        mine = mine.replace("examples/titanic/titanic.dat", "transactions --format fimi")
        done = [shell(commands, directory) for commands in (mine, list_pairs)]
        return [each.stdout.decode() for each in done]

    def test_exclusions_have_sides_of_several_items_where_closures_have(self) -> None:
        rules, pairs = self.recipe_on([{7, 8}, {8}, {20}, {20}, {30}])
        self.assertIn("\n7 v 8-->not(20)\n", "\n" + rules)
        self.assertIn("\n20-->not(7)not(8)\n", "\n" + rules)
        self.assertEqual(pairs, "7 20\n7 30\n8 20\n8 30\n20 30\n")

    def test_pairs_that_never_meet_are_all_listed(self) -> None:
        listed = 0
        for seed in range(40):
            random = Random(seed)
            transactions = [{item for item in range(1, 7) if random.random() < 0.25} for _ in range(12)]
            items = sorted(set().union(*transactions))
            expected = [f"{one} {other}\n" for one, other in itertools.combinations(items, 2)
                        if not any({one, other} <= transaction for transaction in transactions)]
            listed += len(expected)
            self.assertEqual(self.recipe_on(transactions)[1], "".join(expected), f"seed {seed}: {transactions}")
        self.assertGreater(listed, 100)

    def test_a_table_of_a_spreadsheet_is_converted(self) -> None:
        names = (self.ran("docs/mining.md") / "prices.names").read_text(encoding="utf-8")
        self.assertEqual(names, "1\tStraße=Höhe\n2\tStraße=Ring\n3\tPreis=-0.5..2\n4\tPreis=3.75..10.25\n")

    @unittest.skipUnless(shutil.which("sqlite3"), "sqlite3 is missing")
    def test_receipts_in_the_long_form_become_baskets(self) -> None:
        baskets = (self.ran("docs/mining.md") / "baskets.txt").read_text(encoding="utf-8").splitlines()
        self.assertEqual([set(basket.split("\t")) for basket in baskets],
                         [{"bread, white", "milk"}, {"tea", "milk"}, {"bread, white"}])

    @unittest.skipUnless(shutil.which("sqlite3"), "sqlite3 is missing")
    def test_groups_of_an_sql_engine_give_the_classes_of_the_sales(self) -> None:
        directory = self.ran("docs/mining.md")
        baskets = ["bread,milk", "milk,bread", "tea", "", "tea,milk", "bread,milk"]
        (directory / "baskets").write_text("\n".join(baskets) + "\n", encoding="ascii")
        done = shell("korv-mine baskets --format basket --separator , -s 1 -q", directory)
        self.assertEqual((directory / "sales.classes").read_bytes(), done.stdout)


class NextCommand(InDirectory):
    def test_is_printed_by_korv_mine_as_the_documents_show_it(self) -> None:
        for document, position, run in (("README.md", 4, 2), ("docs/mining.md", 0, 1), ("man/korv-mine.1", 0, 1)):
            with self.subTest(document=document):
                shown = blocks(document)[position].text.splitlines()[1].removeprefix("./")
                summary = (self.ran(document) / f"run-{run}.stderr").read_text()
                self.assertIn("\nTo derive rules: " + shown + "\n", summary)


class Tables(InDirectory):
    def test_rules_of_the_worked_example_are_written_as_the_tables_say(self) -> None:
        directory = self.ran("docs/rules.md")
        text = text_of("docs/rules.md")
        tried = 0
        for heading, pair in (("An intra-node pair", "intra"), ("An inter-node pair", "inter")):
            exact, approximate = ((directory / f"{pair}_{kind}_shop_1_0.5.txt").read_text()
                                  for kind in ("exact", "approx"))
            for form, rule, support, confidence, _, written in table_rows(section(text, heading))[2:]:
                if not rule:
                    continue
                tried += 1
                with self.subTest(form=form):
                    line = rule.strip("`") + "\n"
                    record = line + "support:" + support.split(" = ")[-1] + "\n\n"
                    value = eval_quotient(confidence)
                    if written == "exact":
                        self.assertEqual(value, 1)
                        self.assertTrue(has_lines(exact, record))
                    elif written == "appro":
                        self.assertTrue(has_lines(approximate, record + f"confiance:{value:g}\n"))
                    else:
                        self.assertEqual(written, "no: below 0.5")
                        self.assertLess(value, 0.5)
                        self.assertFalse(has_lines(exact + approximate, line))
        self.assertEqual(tried, 12)

    def test_files_have_the_names_and_titles_of_the_tables(self) -> None:
        text = text_of("docs/output-files.md")
        names = table_rows(section(text, "Files and their names"))
        titles = dict(row for row in table_rows(section(text, "Header"))[2:])
        laid_out("docs/output-files.md", self.directory)
        shutil.copy(sample("titanic.classes"), self.directory / "data.txt")
        before = {path.name for path in self.directory.iterdir()}
        command = names[0][2].removeprefix("For ").strip("`")
        self.assertEqual(shell(command, self.directory).returncode, 0)
        self.assertEqual({path.name for path in self.directory.iterdir()} - before,
                         {name.strip("`") for _, _, name in names[2:]})
        for file, pattern, name in names[2:]:
            for part, word in (("LABEL", "mush"), ("MINSUPP", "300"), ("MINCONF", "0.80")):
                pattern = pattern.replace(part, word)
            self.assertEqual(pattern, name)
            if title := titles.pop(file.removesuffix(" rules"), None):
                lines = (self.directory / name.strip("`")).read_text().splitlines()
                self.assertEqual(lines[1], "\t\t\t" + title.strip("`"))
        self.assertEqual(titles, {})

    def test_messages_on_standard_error_are_those_of_the_table(self) -> None:
        laid_out("docs/rules.md", self.directory)
        (self.directory / "empty").touch()
        rows = table_rows(section(text_of("docs/output-files.md"), "Standard error"))[2:]
        commands = ["korv a b c d", "korv a missing 1 1 1", "korv a empty 1 1 1"]
        self.assertEqual(len(rows), len(commands))
        for (message, _, layout), command in zip(rows, commands):
            expected = "".join(re.findall(r"`([^`]*)`", message))
            if "empty line before" in layout:
                expected = "\n" + expected
            if "no line end" not in layout:
                expected += "\n"
            self.assertEqual(shell(command, self.directory).stderr.decode(), expected)

    def test_statuses_are_those_of_the_table(self) -> None:
        laid_out("docs/rules.md", self.directory)
        (self.directory / "empty").touch()
        shutil.copy(sample("titanic.classes"), self.directory / "classes")
        rows = table_rows(section(text_of("docs/output-files.md"), "Exit status"))[2:]
        listed = [int(status) for status, _, _ in rows]
        self.assertEqual(listed, [0, 0, 1, 2])
        # No run ends with 1, as the document says.
        for command, status in (("korv a classes 1 1 2201", 0), ("korv a", 0), ("korv a missing 1 1 1", 0),
                                ("korv a . 1 1 1", 0), ("korv a empty 1 1 1", 2)):
            self.assertEqual(shell(command, self.directory).returncode, status, command)


def eval_quotient(text: str) -> float:
    """What "1", "2/3" or "2/3 = 0.666667" stands for. Raises ValueError when the two ends are not equal."""
    quotient, *rest = text.split(" = ")
    numerator, _, denominator = quotient.partition("/")
    value = int(numerator) / int(denominator or 1)
    if rest and rest[0] != f"{value:g}":
        raise ValueError(f"{text} is wrong")
    return value


if __name__ == "__main__":
    for program in ("korv-check", "korv-rules", "korv-mine", "korv"):
        PROGRAMS[program] = Path(sys.argv.pop()).resolve()
    if sys.argv[1:] == ["--update"]:
        update_all()
    else:
        unittest.main()
