"""scripts/check-layers finds each fault that it names, and nothing in a clean tree."""
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / "scripts" / "check-layers"

CLEAN = {
    "sources.cmake": "set(ALL common/a.cpp zip/z.cpp forms/f.cpp ui/u.cpp app/main_win32.cpp\n"
                     "    log/l.cpp platform/win32/w.cpp tests/zip/z_test.cpp\n"
                     "    tests/end_to_end/run_test.py)\n",
    "common/a.h": "#pragma once\n",
    "common/a.cpp": '#include "common/a.h"\n',
    "platform/machine.h": '#include "common/a.h"\n',
    "platform/win32/w.cpp": '#include <windows.h>\n#include "platform/machine.h"\n',
    "forms/f.h": '#include "platform/machine.h"\n',
    "forms/f.cpp": '#include "forms/f.h"\n',
    "zip/z.h": '#include "platform/machine.h"\n',
    "zip/z.cpp": '#include "zip/z.h"\n// std::fopen(name) would bypass platform/\n',
    "log/l.h": '#include "forms/f.h"\n',
    "log/l.cpp": '#include "log/l.h"\n',
    "ui/u.h": '#include "log/l.h"\n',
    "ui/u.cpp": '#include "ui/u.h"\n#include "zip/z.h"\n',
    "app/main_win32.cpp": '#include <windows.h>\n#include "ui/u.h"\n',
    "tests/zip/z_test.cpp": '#include <fstream>\n#include "zip/z.h"\n',
    "tests/end_to_end/run_test.py": "",
}


class CheckLayers(unittest.TestCase):
    def run_on(self, changes):
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {**CLEAN, **changes}.items():
                path = Path(folder) / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text, encoding="utf-8")
            done = subprocess.run([sys.executable, SCRIPT, folder], capture_output=True, text=True,
                                  check=False)
        return done.returncode, done.stdout

    def assert_finds(self, words, changes):
        status, output = self.run_on(changes)
        self.assertEqual(1, status, output)
        self.assertIn(words, output)
        self.assertIn(" 1 complaints", output)

    def assert_accepts(self, changes):
        status, output = self.run_on(changes)
        self.assertEqual(0, status, output)

    def test_clean_tree_passes(self):
        self.assert_accepts({})

    def test_empty_tree_fails(self):
        with tempfile.TemporaryDirectory() as folder:
            done = subprocess.run([sys.executable, SCRIPT, folder], capture_output=True, check=False)
        self.assertEqual(1, done.returncode)

    def test_upward_include(self):
        self.assert_finds("log/l.cpp: includes ui/u.h", {"log/l.cpp": '#include "log/l.h"\n'
                                                                      '#include "ui/u.h"\n'})

    def test_include_between_modules_of_one_layer(self):
        self.assert_finds("zip/z.cpp: includes backupset/b.h",
                          {"zip/z.cpp": '#include "zip/z.h"\n#include "backupset/b.h"\n',
                           "backupset/b.h": ""})

    def test_upward_include_between_submodules(self):
        self.assert_finds("zip/base/b.h: includes zip/records/r.h, which is not below it",
                          {"zip/z.h": '#include "zip/base/b.h"\n', "zip/records/r.h": "",
                           "zip/base/b.h": '#include "zip/records/r.h"\n'})

    def test_include_between_submodules_of_one_level(self):
        self.assert_finds("zip/reader/r.h: includes zip/writer/w.h, which is not below it",
                          {"zip/z.h": '#include "zip/reader/r.h"\n', "zip/writer/w.h": "",
                           "zip/reader/r.h": '#include "zip/writer/w.h"\n'})

    def test_submodules_may_not_include_the_module_above_them(self):
        self.assert_finds("zip/base/b.h: includes zip/y.h, which is not below it",
                          {"zip/z.h": '#include "zip/base/b.h"\n', "zip/y.h": "",
                           "zip/base/b.h": '#include "zip/y.h"\n'})

    def test_machine_reached_past_app(self):
        self.assert_finds("ui/u.cpp: includes platform/win32/m.h",
                          {"ui/u.cpp": '#include "ui/u.h"\n#include "platform/win32/m.h"\n',
                           "platform/win32/m.h": ""})

    def test_views_reached_past_app(self):
        self.assert_finds("ui/u.cpp: includes views/win32/v.h",
                          {"ui/u.cpp": '#include "ui/u.h"\n#include "views/win32/v.h"\n',
                           "views/win32/v.h": ""})

    def test_views_include_no_product_module(self):
        self.assert_finds("views/win32/v.h: includes log/l.h",
                          {"views/win32/v.h": '#include "log/l.h"\n',
                           "app/main_win32.cpp": '#include "views/win32/v.h"\n'})

    def test_app_may_reach_everything(self):
        self.assert_accepts({"app/main_win32.cpp": '#include "ui/u.h"\n#include "views/win32/v.h"\n',
                             "views/win32/v.h": '#include "forms/f.h"\n'})

    def test_product_includes_a_test(self):
        self.assert_finds("app/main_win32.cpp: includes tests/zip/help.h",
                          {"app/main_win32.cpp": '#include "tests/zip/help.h"\n',
                           "tests/zip/help.h": ""})

    def test_windows_header_above_platform(self):
        self.assert_finds("zip/z.cpp: includes <windows.h>",
                          {"zip/z.cpp": '#include "zip/z.h"\n#include <windows.h>\n'})

    def test_windows_header_in_the_portable_part_of_app(self):
        self.assert_finds("app/start.cpp: includes <CommCtrl.h>",
                          {"app/start.cpp": "#include <CommCtrl.h>\n",
                           "CMakeLists.txt": "app/start.cpp"})

    def test_file_header_above_platform(self):
        for header in ("filesystem", "fstream", "ctime"):
            self.assert_finds(f"log/l.cpp: includes <{header}>",
                              {"log/l.cpp": f'#include "log/l.h"\n#include <{header}>\n'})

    def test_clock_above_platform(self):
        self.assert_finds("log/l.cpp: uses system_clock",
                          {"log/l.cpp": '#include "log/l.h"\n'
                                        "auto now = std::chrono::system_clock::now();\n"})

    def test_file_call_above_platform(self):
        self.assert_finds("log/l.cpp: uses fopen(",
                          {"log/l.cpp": '#include "log/l.h"\nauto* f = fopen("a", "r");\n'})

    def test_cycle(self):
        self.assert_finds("is in a cycle: zip/y.h > zip/z.h > zip/y.h",
                          {"zip/z.h": '#include "zip/y.h"\n', "zip/y.h": '#include "zip/z.h"\n'})

    def test_forward_declaration_of_a_type_of_a_higher_layer(self):
        self.assert_finds("forms/f.h: declares Log, which log/l.h above it defines",
                          {"forms/f.h": "class Log;\n", "log/l.h": "class Log final : public F {};\n"
                                                                  '#include "forms/f.h"\n'})

    def test_forward_declaration_of_a_type_of_a_higher_submodule(self):
        self.assert_finds("zip/base/b.h: declares Disk, which zip/records/r.h above it defines",
                          {"zip/z.h": '#include "zip/base/b.h"\n#include "zip/records/r.h"\n',
                           "zip/base/b.h": "struct Disk;\n", "zip/records/r.h": "struct Disk {};\n"})

    def test_forward_declarations_that_point_down_or_to_a_nested_type(self):
        self.assert_accepts({"forms/f.h": "class Log {};\n", "log/l.h": "class Log;\n"
                                                                       '#include "forms/f.h"\n'})
        self.assert_accepts({"zip/z.h": "struct Z {\n    struct Turn;\n};\n",
                             "zip/z.cpp": '#include "zip/z.h"\nstruct Z::Turn {};\n',
                             "ui/u.h": '#include "log/l.h"\nstruct Turn {};\n'})

    def test_own_header_is_not_the_first_include(self):
        self.assert_finds("zip/z.cpp: does not include zip/z.h first",
                          {"zip/z.cpp": '#include "common/a.h"\n#include "zip/z.h"\n'})

    def test_missing_include(self):
        self.assert_finds("zip/z.cpp: includes zip/gone.h, which is not in the tree",
                          {"zip/z.cpp": '#include "zip/z.h"\n#include "zip/gone.h"\n'})

    def test_source_outside_the_build(self):
        self.assert_finds("zip/forgotten.cpp: is not in the build", {"zip/forgotten.cpp": ""})

    def test_test_outside_the_build(self):
        self.assert_finds("tests/log/l_test.cpp: is not in the build", {"tests/log/l_test.cpp": ""})

    def test_source_that_is_only_in_a_comment_of_the_build(self):
        self.assert_finds("zip/off.cpp: is not in the build",
                          {"zip/off.cpp": "", "CMakeLists.txt": "# zip/off.cpp\n"})

    def test_end_to_end_test_outside_ctest(self):
        self.assert_finds("tests/end_to_end/other_test.py: is not run by ctest",
                          {"tests/end_to_end/other_test.py": ""})

    def test_header_that_is_not_included(self):
        self.assert_finds("zip/alone.h: is not included", {"zip/alone.h": ""})

    def test_disabled_test(self):
        self.assert_finds("tests/zip/z_test.cpp: DISABLED_",
                          {"tests/zip/z_test.cpp": '#include "zip/z.h"\n'
                                                   "TEST(Z, DISABLED_Works) {}\n"})

    def test_using_declaration_without_a_use(self):
        source = '#include "common/a.h"\nusing other::Unused;\nusing other::Used;\nUsed value;\n'
        self.assert_finds("common/a.cpp: does not use Unused", {"common/a.cpp": source})
        self.assert_accepts({"common/a.cpp": source.replace("using other::Unused;", "")})

    def test_too_long_file(self):
        self.assert_finds("common/a.cpp: has more than 400 lines",
                          {"common/a.cpp": '#include "common/a.h"\n' * 401})


if __name__ == "__main__":
    unittest.main()
