#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Small trees with one fault each, and what scripts/check_layers says about them."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECK = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "check_layers"
MARK = "// SPDX-License-Identifier: GPL-3.0-or-later\n"
HEADER = MARK + "#pragma once\n"

# Name, the file that is added to a faultless tree, its text, and a part of the complaint.
FAULTS = [
    ("up", "src/platform/A.cpp", MARK + '#include "rules/Rule.h"\n', "goes up, from layer 0 to 4"),
    ("up in one folder", "src/document/TErrorLog.cpp", MARK + '#include "document/Run.h"\n', "goes up"),
    ("sideways", "src/metadata/A.cpp", MARK + '#include "extensions/Ext.h"\n', "sideways"),
    ("indented", "src/platform/A.cpp", MARK + '  # include "rules/Rule.h"\n', "goes up"),
    ("Qt module by path", "src/rules/A.cpp", MARK + "#include <QtGui/QColor>\n", "is QtGui"),
    ("Qt module by name", "src/cli/A.cpp", MARK + "#include <QColor>\n", "is QtGui"),
    ("unknown Qt header", "src/cli/A.cpp", MARK + "#include <QNothing>\n", "unknown Qt header"),
    ("ICU outside", "src/document/A.cpp", MARK + "#include <unicode/uregex.h>\n", "is ICU"),
    ("media library", "src/metadata/A.cpp", MARK + "#include <exiv2/exiv2.hpp>\n", "is exiv2"),
    ("parent path", "src/rules/A.cpp", MARK + '#include "../rules/Rule.h"\n', "no header under src/"),
    ("bare name", "src/rules/A.cpp", MARK + '#include "Rule.h"\n', "no header under src/"),
    ("no layer", "src/sundry/A.cpp", MARK, "is in no layer"),
    ("no licence", "tests/A.cpp", "int a;\n", "does not start with"),
    ("no guard", "src/rules/A.h", MARK, "without #pragma once"),
]

FAULTLESS = {
    "src/platform/Text.h": HEADER + "#include <QString>\n#include <sys/stat.h>\n#include <vector>\n",
    "src/commonprocs/Regex.h": HEADER + "#include <unicode/uregex.h>\n",
    "src/rules/Rule.h": HEADER + '#include "platform/Text.h"\n',
    "src/rules/Other.h": HEADER + '#include "rules/Rule.h"\n',
    "src/extensions/Ext.h": HEADER + '#include "rules/Rule.h"\n',
    "src/document/Run.h": HEADER + '#include "extensions/Ext.h"\n',
    "src/document/Engine.h": HEADER + '#include "document/Run.h"\n',
    "src/cli/main.cpp": MARK + '#include "document/Engine.h"\n#include <QtCore/QDir>\n',
    "tests/tst.cpp": MARK + "#include <QtTest>\n#include <QColor>\n",
}


class CheckLayers(unittest.TestCase):
    def complaints(self, extra):
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {**FAULTLESS, **extra}.items():
                path = pathlib.Path(folder, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text)
            run = subprocess.run(
                [sys.executable, CHECK, "--root", folder], capture_output=True, text=True
            )
            self.assertEqual(run.returncode, 1 if run.stderr else 0)
            return run.stderr.splitlines()

    def test_a_faultless_tree_passes(self):
        self.assertEqual(self.complaints({}), [])

    def test_each_fault_is_named_with_its_file(self):
        for name, path, text, expected in FAULTS:
            with self.subTest(name):
                complaints = self.complaints({path: text})
                self.assertEqual(len(complaints), 1, complaints)
                self.assertIn(path + ":", complaints[0])
                self.assertIn(expected, complaints[0])


if __name__ == "__main__":
    unittest.main()
