"""scripts/coverage must count what ran, and fail where a room runs too little of itself."""
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


class Coverage(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name).resolve()
        self.build = self.root / "build"
        self.objects = self.build / "CMakeFiles/vantrel_zip.dir/zip"
        self.objects.mkdir(parents=True)
        (self.root / "zip").mkdir()
        (self.build / "CMakeCache.txt").write_text(
            f"CMAKE_HOME_DIRECTORY:INTERNAL={self.root}\n", encoding="utf-8")

    def compile(self, name, text):
        source = self.root / "zip" / f"{name}.cpp"
        source.write_text(text, encoding="utf-8")
        subprocess.run(["c++", "--coverage", "-c", source, "-o", self.objects / f"{name}.cpp.o"],
                       cwd=self.build, check=True)

    def run_program(self):
        subprocess.run(["c++", "--coverage", "-x", "c++", "-", "-x", "none",
                        self.objects / "a.cpp.o", "-o", self.build / "program"], input=MAIN,
                       cwd=self.build, text=True, check=True)
        subprocess.run([self.build / "program"], check=True)

    def look(self, *words):
        done = subprocess.run([sys.executable, SCRIPT, self.build, *words], capture_output=True,
                              text=True, check=False)
        return done.returncode, done.stdout

    def test_room_that_ran_as_a_whole_passes(self):
        self.compile("a", ALL)
        self.run_program()
        status, text = self.look()
        self.assertEqual((status, text.split("\n")[0].split()),
                         (0, ["zip", "2", "of", "2", "lines", "100.0", "%"]))

    def test_room_below_its_floor_fails_and_its_lines_are_named(self):
        self.compile("a", HALF)
        self.run_program()
        status, text = self.look("--lines")
        self.assertEqual(status, 1)
        self.assertIn("zip/a.cpp: 5 7 8\n", text)
        self.assertIn("below 95 %", text)

    def test_source_that_is_in_no_program_counts(self):
        self.compile("a", ALL)
        self.compile("unused", HALF)
        self.run_program()
        status, text = self.look("--lines")
        self.assertEqual(status, 1)
        self.assertIn("zip/unused.cpp: 1 2 3 5 7 8\n", text)

    def test_what_was_counted_before_is_forgotten(self):
        self.compile("a", ALL)
        self.run_program()
        self.assertEqual(self.look("--forget")[0], 0)
        self.assertEqual(self.look()[0], 1)

    def test_build_that_counts_nothing_fails(self):
        self.assertEqual(self.look()[0], 1)


if __name__ == "__main__":
    unittest.main()
