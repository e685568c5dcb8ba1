"""scripts/coverage counts the lines that ran, and fails if too few lines of a module ran."""
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / "scripts" / "coverage"

# Half of its lines run.
HALF = """int Answer(int question) {
    if (question > 0) {
        return question * 2;
    }
    return question / 3;
}
int Unasked(int question) {
    return question + 1;
}
"""
ALL = """int Answer(int question) {
    return question * 2;
}
"""
MAIN = "int Answer(int); int main(int count, char**) { return Answer(count) == 2 ? 0 : 1; }\n"


COUNTING = ["-fprofile-instr-generate", "-fcoverage-mapping"]


class Coverage(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name).resolve()
        self.build = self.root / "build"
        self.build.mkdir()
        (self.root / "zip").mkdir()
        (self.build / "CMakeCache.txt").write_text(
            f"CMAKE_HOME_DIRECTORY:INTERNAL={self.root}\n", encoding="utf-8")

    def compile(self, name, text):
        """Compiles into the library of the module."""
        source = self.root / "zip" / f"{name}.cpp"
        source.write_text(text, encoding="utf-8")
        compiled = self.build / "CMakeFiles" / "vantrel_zip.dir" / "zip" / f"{name}.cpp.o"
        compiled.parent.mkdir(parents=True, exist_ok=True)
        subprocess.run(["clang++", *COUNTING, "-c", source, "-o", compiled], check=True)
        subprocess.run(["ar", "rc", self.build / "libvantrel_zip.a", compiled], check=True)

    def run_program(self):
        subprocess.run(["clang++", COUNTING[0], "-x", "c++", "-", "-x", "none",
                        self.build / "libvantrel_zip.a", "-o", self.build / "program"], input=MAIN,
                       text=True, check=True)
        counted = self.build / "coverage" / "%m.profraw"
        subprocess.run([self.build / "program"], check=True,
                       env={**os.environ, "LLVM_PROFILE_FILE": str(counted)})

    def look(self, *words):
        done = subprocess.run([sys.executable, SCRIPT, self.build, *words], capture_output=True,
                              text=True, check=False)
        return done.returncode, done.stdout

    def test_completely_run_module_passes(self):
        self.compile("a", ALL)
        self.run_program()
        status, text = self.look()
        self.assertEqual((status, text.split("\n")[0].split()),
                         (0, ["zip", "3", "of", "3", "lines", "100.0", "%"]))

    def test_module_below_the_minimum_fails_and_its_lines_are_named(self):
        self.compile("a", HALF)
        self.run_program()
        status, text = self.look("--lines")
        self.assertEqual(status, 1)
        self.assertIn("zip/a.cpp: 5 7 8 9\n", text)
        self.assertIn("below 95 %", text)

    def test_source_that_is_in_no_program_counts(self):
        self.compile("a", ALL)
        self.compile("unused", HALF.replace("Answer", "Reply"))
        self.run_program()
        status, text = self.look("--lines")
        self.assertEqual(status, 1)
        self.assertIn("zip/unused.cpp: 1 2 3 4 5 6 7 8 9\n", text)

    def test_what_was_counted_before_is_forgotten(self):
        self.compile("a", ALL)
        self.run_program()
        self.assertEqual(self.look("--forget")[0], 0)
        self.assertEqual(self.look()[0], 1)

    def test_build_that_counts_nothing_fails(self):
        self.assertEqual(self.look()[0], 1)


if __name__ == "__main__":
    unittest.main()
