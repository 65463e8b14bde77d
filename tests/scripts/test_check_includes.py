"""Tests of scripts/check-includes, run as a program on small trees."""

import subprocess
import tempfile
import unittest
from pathlib import Path

PROGRAM = Path(__file__).resolve().parents[2] / "scripts" / "check-includes"
DIRECTORIES = ["src/base", "src/index", "src/engine", "src/io", "src/app", "tools/common", "tools/mine", "tools/other"]


class CheckIncludes(unittest.TestCase):
    def check(self, source: str, line: str) -> subprocess.CompletedProcess[str]:
        """Runs the program on a tree that holds this source, of this line, alone."""
        with tempfile.TemporaryDirectory() as name:
            tree = Path(name)
            for directory in DIRECTORIES:
                (tree / directory).mkdir(parents=True)
            (tree / source).write_text("#pragma once\n" + line + "\n")
            return subprocess.run([PROGRAM, tree], capture_output=True, text=True, check=False)

    def assert_allowed(self, source: str, line: str) -> None:
        checked = self.check(source, line)
        self.assertEqual((checked.returncode, checked.stderr), (0, ""), f"{source}: {line}")

    def assert_refused(self, source: str, line: str) -> None:
        checked = self.check(source, line)
        self.assertEqual(checked.returncode, 1, f"{source}: {line}")
        self.assertIn(f"{source}:2: found {line}; expected a header of base", checked.stderr)

    def test_layer_includes_itself_and_those_before_it(self) -> None:
        layers = ["base", "index", "engine", "io", "app"]
        for place, layer in enumerate(layers):
            for other_place, other in enumerate(layers):
                line = f'#include "{other}/x.h"'
                if other_place <= place:
                    self.assert_allowed(f"src/{layer}/a.cpp", line)
                else:
                    self.assert_refused(f"src/{layer}/a.cpp", line)

    def test_headers_are_checked_too(self) -> None:
        self.assert_refused("src/base/a.h", '#include "io/x.h"')

    def test_layers_include_nothing_of_companions_and_tests(self) -> None:
        for other in ["common", "mine", "tools/mine", "support", "tests/support"]:
            self.assert_refused("src/app/a.cpp", f'#include "{other}/x.h"')

    def test_companion_includes_all_layers_but_app(self) -> None:
        for layer in ["base", "index", "engine", "io"]:
            self.assert_allowed("tools/mine/a.cpp", f'#include "{layer}/x.h"')
        self.assert_refused("tools/mine/a.cpp", '#include "app/x.h"')
        self.assert_refused("tools/common/a.cpp", '#include "app/x.h"')

    def test_companion_includes_itself_and_what_is_common(self) -> None:
        self.assert_allowed("tools/mine/a.cpp", '#include "mine/x.h"')
        self.assert_allowed("tools/mine/a.cpp", '#include "common/x.h"')
        self.assert_refused("tools/mine/a.cpp", '#include "other/x.h"')
        self.assert_refused("tools/common/a.cpp", '#include "mine/x.h"')

    def test_no_road_around(self) -> None:
        for line in ['#include <app/x.h>', '#  include "app/x.h"', '#include "../app/x.h"', '#include "x.h"',
                     '#include "base/../app/x.h"']:
            self.assert_refused("src/base/a.cpp", line)

    def test_headers_of_the_system_are_free(self) -> None:
        self.assert_allowed("src/base/a.cpp", "#include <vector>")
        self.assert_allowed("src/base/a.cpp", "#include <sys/stat.h>")
