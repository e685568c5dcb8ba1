"""scripts/check-headers must find a header that needs another one in front of it."""
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / "scripts" / "check-headers"

CLEAN = {
    "common/number.h": "#pragma once\nusing Number = int;\n",
    "zip/reader.h": '#pragma once\n#include "common/number.h"\nNumber Read();\n',
}
NEEDY = "#pragma once\nNumber Read();\n"


class CheckHeaders(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)

    def run_on(self, changes):
        for name, text in {**CLEAN, **changes}.items():
            path = self.root / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        done = subprocess.run([sys.executable, SCRIPT, self.root], capture_output=True, text=True,
                              check=False)
        return done.returncode, done.stdout

    def test_clean_tree_passes(self):
        self.assertEqual(self.run_on({}), (0, "2 headers, 0 with complaints\n"))

    def test_needy_header_is_named(self):
        status, text = self.run_on({"zip/reader.h": NEEDY})
        self.assertEqual(status, 1)
        self.assertIn("zip/reader.h: does not compile by itself", text)

    def test_header_that_passed_fails_when_what_it_includes_changes(self):
        self.run_on({})
        status, text = self.run_on({"common/number.h": "#pragma once\n"})
        self.assertEqual(status, 1)
        self.assertIn("zip/reader.h: does not compile by itself", text)

    def test_header_that_its_own_source_includes_first_is_left_to_clang_tidy(self):
        source = '#include "zip/reader.h"\n'
        self.assertEqual(self.run_on({"zip/reader.h": NEEDY, "zip/reader.cpp": source})[0], 0)
        source = '#include "common/number.h"\n' + source
        self.assertEqual(self.run_on({"zip/reader.h": NEEDY, "zip/reader.cpp": source})[0], 1)

    def test_header_of_a_test_is_always_compiled(self):
        status, _ = self.run_on({"tests/zip/builder.h": NEEDY,
                                 "tests/zip/builder.cpp": '#include "tests/zip/builder.h"\n'})
        self.assertEqual(status, 1)

    def test_tree_without_headers_fails(self):
        self.assertEqual(subprocess.run([sys.executable, SCRIPT, self.root / "none"],
                                        capture_output=True, check=False).returncode, 1)


if __name__ == "__main__":
    unittest.main()
