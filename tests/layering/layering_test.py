#!/usr/bin/env python3
"""Proves that the layering check can fail: small trees, each with one fault, and one with none."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECK = pathlib.Path(__file__).with_name("layering.py")

# Case, file, its text, and what the check says of it.
FAULTS = [
    ("logic sees a toolkit", "src/capture/a.h", "#include <QString>\n", "1: src/capture includes <QString>"),
    ("logic sees the system", "src/settings/a.cpp", "\n#include <unistd.h>\n", "2: src/settings includes <unistd.h>"),
    ("logic sees a backend", "src/history/a.h", '#include "backends/x11/b.h"\n', '1: src/history includes "backends/x11/b.h"'),
    ("logic looks upwards", "src/capture/a.h", '#include "history/b.h"\n', '1: src/capture includes "history/b.h"'),
    ("logic starts a thread", "src/history/a.h", "#include <thread>\n", "1: src/history includes <thread>"),
    ("logic reads the clock", "src/history/a.h", "// steady_clock\nauto t = system_clock::now();\n", "2: src/history uses system_clock"),
    ("logic reads the environment", "src/settings/a.h", "auto h = '\"' + getenv(\"\");\n", "1: src/settings uses getenv"),
    ("logic prints", "src/capture/a.cpp", "#include <iostream>\n", "1: src/capture includes <iostream>"),
    ("an interface sees a library", "src/platform/a.h", "#include <nlohmann/json.hpp>\n", "1: src/platform includes <nlohmann/json.hpp>"),
    ("a second file sees ICU", "src/platform/a.cpp", "#include <unicode/normalizer2.h>\n", "1: src/platform includes <unicode/normalizer2.h>"),
    ("an interface sees logic", "src/platform/a.h", '#include "capture/b.h"\n', '1: src/platform includes "capture/b.h"'),
    ("a backend sees another", "src/backends/qt/a.h", '#include "backends/x11/b.h"\n', '1: src/backends/qt includes "backends/x11/b.h"'),
    ("X11 sees the toolkit", "src/backends/x11/a.h", "#include <QObject>\n", "1: src/backends/x11 includes <QObject>"),
    ("the previewer sees the window", "src/previewer/a.h", '#include "backends/qt/b.h"\n', '1: src/previewer includes "backends/qt/b.h"'),
    ("the window sees the previewer", "src/backends/qt/a.h", '#include "previewer/a.h"\n', '1: src/backends/qt includes "previewer/a.h"'),
    ("their messages see the system", "src/previewer/protocol/a.h", "#include <unistd.h>\n", "1: src/previewer/protocol includes <unistd.h>"),
    ("an inner room sees one above it", "src/backends/qt/theme/a.h", '#include "backends/qt/rows/b.h"\n', '1: src/backends/qt includes "backends/qt/rows/b.h"'),
    ("an inner room sees what puts all together", "src/platform/combine/a.h", '#include "platform/platform.h"\n', '1: src/platform includes "platform/platform.h"'),
    ("an include from beside", "src/capture/b.cpp", '#include "b.h"\n', '1: src/capture includes "b.h"'),
    ("an include by macro", "src/capture/b.cpp", "#include NAME\n", "1: src/capture includes what a macro names"),
    ("a folder nobody knows", "src/misc/a.cpp", "", " lies in no known folder"),
]

GOOD_TREE = {
    "src/platform/a.h": "#include <vector>\n",
    "src/platform/json.cpp": "#include <nlohmann/json.hpp>\n",
    "src/platform/foundation/canonical_mapping.cpp": "#include <unicode/normalizer2.h>\n",
    "src/capture/a.cpp": '#include "capture/a.h"\n#include "platform/a.h"\n#include <chrono>\n// getenv\nauto s = "cout";\n',
    "src/capture/dynamic_type.cpp": "#include <iostream>\nvoid f() { std::cout << 1; }\n",
    "src/history/a.cpp": '#include "capture/a.h"\n#include "detail/a.h"\n#include "settings/a.h"\n',
    "src/backends/x11/a.cpp": "#include <xcb/xcb.h>\n#include <unistd.h>\n",
    "src/backends/qt/a.cpp": "#include <QObject>\n#include <thread>\n",
    "src/app/main.cpp": '#include "backends/qt/a.h"\n#include "backends/x11/a.h"\n',
}


def check(tree):
    """The exit code of the check and the lines it prints for a tree of these files."""
    with tempfile.TemporaryDirectory() as folder:
        for name, text in tree.items():
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        pathlib.Path(folder, "src").mkdir(exist_ok=True)
        outcome = subprocess.run(
            [sys.executable, str(CHECK), folder], capture_output=True, text=True, check=False
        )
        return outcome.returncode, outcome.stdout.splitlines()


class LayeringCheck(unittest.TestCase):
    def test_finds_each_fault_and_nothing_else(self):
        for case, name, text, said in FAULTS:
            with self.subTest(case):
                self.assertEqual(check({**GOOD_TREE, name: text}), (1, [f"{name}:{said}"]))

    def test_passes_what_is_allowed(self):
        self.assertEqual(check(GOOD_TREE), (0, ["No faults."]))


if __name__ == "__main__":
    unittest.main()
