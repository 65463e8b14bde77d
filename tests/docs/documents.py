"""The documents of the tree as data: their fenced blocks, tables, headings and links."""

import re
from pathlib import Path
from typing import NamedTuple

TOP = Path(__file__).resolve().parents[2]

MARKDOWN = sorted(
    path.relative_to(TOP).as_posix()
    for pattern in ("*.md", "docs/**/*.md", "examples/**/*.md", "bench/**/*.md")
    for path in TOP.glob(pattern))
MAN_PAGES = [
    "man/korv-check.1", "man/korv-mine-mpi.1", "man/korv-mine.1", "man/korv-rules.1", "man/korv.1"]


class Block(NamedTuple):
    """A fenced block of a document, or an example of a man page."""

    text: str  # its lines, each with its line end
    line: int  # of the document, where it begins

    @property
    def first_line(self) -> str:
        return self.text.split("\n", 1)[0]


def text_of(document: str) -> str:
    """A document's text. A man page may be there as a template, with ".in" behind its name."""
    path = TOP / document
    return (path if path.exists() else path.with_name(path.name + ".in")).read_text(encoding="utf-8")


def blocks(document: str) -> list[Block]:
    return man_examples(text_of(document)) if document in MAN_PAGES else fenced_blocks(text_of(document))


def fenced_blocks(text: str) -> list[Block]:
    """Blocks between fences of three backticks or tildes. A fence that is not closed raises ValueError."""
    found = []
    lines = text.split("\n")
    begin = None
    for number, line in enumerate(lines):
        if not re.match(r" *(```|~~~)", line):
            continue
        if begin is None:
            begin = number + 1
        else:
            found.append(Block("".join(each + "\n" for each in lines[begin:number]), begin + 1))
            begin = None
    if begin is not None:
        raise ValueError(f"line {begin}: a fence that is not closed")
    return found


ROFF_ESCAPES = {r"\-": "-", r"\(aq": "'", r"\(rs": "\\", r"\(dq": '"', r"\&": "", r"\e": "\\"}


def man_examples(text: str) -> list[Block]:
    """The blocks between .nf and .fi in the section EXAMPLES, with escapes resolved."""
    found = []
    inside = False
    lines: list[str] = []
    section = ""
    for number, line in enumerate(text.split("\n"), start=1):
        if line.startswith(".SH "):
            section = line[4:]
        elif line == ".nf" and section == "EXAMPLES":
            inside, lines, begin = True, [], number + 1
        elif line == ".fi" and inside:
            inside = False
            found.append(Block("".join(each + "\n" for each in lines), begin))
        elif inside and line not in (".RS", ".RE"):
            lines.append(re.sub(r"\\(?:\(..|.)", lambda match: ROFF_ESCAPES[match[0]], line))
    return found


def without_blocks(text: str) -> str:
    """The text with the lines of fenced blocks left empty, so that lines keep their numbers."""
    lines = text.split("\n")
    for block in fenced_blocks(text):
        for number in range(block.line - 1, block.line - 1 + block.text.count("\n")):
            lines[number] = ""
    return "\n".join(lines)


def table_rows(text: str) -> list[list[str]]:
    """The cells of all table rows, header rows included; an escaped bar belongs to its cell."""
    return [[cell.strip().replace(r"\|", "|") for cell in re.split(r"(?<!\\)\|", line)[1:-1]]
            for line in without_blocks(text).split("\n") if line.startswith("|")]


def section(text: str, heading: str) -> str:
    """What stands below a heading, up to the next one of any level."""
    match = re.search(rf"^#+ {re.escape(heading)}\n(.*?)(?=^#+ |\Z)", text, re.MULTILINE | re.DOTALL)
    if match is None:
        raise ValueError(f"there is no heading {heading!r}")
    return match[1]


def anchors(text: str) -> set[str]:
    """The anchors of the headings, as they are made of their texts: "Two totals per kind" is two-totals-per-kind."""
    found: set[str] = set()
    for heading in re.findall(r"^#+ (.*)$", without_blocks(text), re.MULTILINE):
        anchor = re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")
        number = 1
        unique = anchor
        while unique in found:
            unique = f"{anchor}-{number}"
            number += 1
        found.add(unique)
    return found


def links(text: str) -> list[str]:
    return re.findall(r"\]\(([^)\s]+)\)", without_blocks(text))
