"""Tests of scripts/check-types, run as a program on small trees."""

import subprocess
import tempfile
import unittest
from pathlib import Path

PROGRAM = Path(__file__).resolve().parents[2] / "scripts" / "check-types"


class CheckTypes(unittest.TestCase):
    def check(self, **headers: str) -> tuple[int, str]:
        """The status and messages for a tree with these headers, each in a directory of tools/ of its name."""
        with tempfile.TemporaryDirectory() as name:
            (Path(name) / "src").mkdir()
            for directory, text in headers.items():
                header = Path(name) / "tools" / directory / "x.h"
                header.parent.mkdir(parents=True)
                header.write_text(text)
            checked = subprocess.run([PROGRAM, name], capture_output=True, text=True, check=False)
            return checked.returncode, checked.stderr

    def test_two_types_of_a_name_in_one_namespace_are_refused(self) -> None:
        self.assertEqual(self.check(mine="namespace korv {\nstruct Seen {\n", rules="namespace korv {\nclass Seen {\n"),
                         (1, "tools/rules/x.h:2: found another korv::Seen; expected the one of tools/mine/x.h:2 "
                             "alone\n"))

    def test_names_may_be_taken_again_in_another_namespace_or_within_a_type(self) -> None:
        self.assertEqual(self.check(mine="namespace korv {\nstruct Seen {\n",
                                    rules="namespace other {\nstruct Seen {\n",
                                    common="namespace korv {\nstruct Other {\n    struct Seen {\n"), (0, ""))

    def test_a_declaration_is_no_definition(self) -> None:
        self.assertEqual(self.check(mine="namespace korv {\nclass Seen;\nclass Seen {\n",
                                    rules="namespace korv {\nclass Seen;\n"), (0, ""))
