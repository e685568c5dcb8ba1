"""scripts/check-words finds the words of its list in the files that a row names, and nowhere else."""
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / "scripts" / "check-words"
LIST = "# comment\nOldName|old_name | * | NewName\nPlace | zip/* | Location\n(?i:mend(ed)?) | * | fix\n"


class CheckWords(unittest.TestCase):
    def run_on(self, files):
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {"scripts/words.txt": LIST, **files}.items():
                path = Path(folder) / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text, encoding="utf-8")
            subprocess.run(["git", "init", "-q", folder], check=True)
            done = subprocess.run([sys.executable, SCRIPT, folder], capture_output=True, text=True,
                                  check=False)
        return done.returncode, done.stdout

    def test_complete_words_are_found_with_their_line_and_replacement(self):
        status, output = self.run_on({"a.h": "int a;\nclass OldName;\n"})
        self.assertEqual(1, status)
        self.assertIn("a.h:2: OldName; use: NewName", output)

    def test_each_alternative_is_a_complete_word(self):
        self.assertEqual(0, self.run_on({"a.h": "OldNames my_old_name OldNameTest\n"})[0])
        self.assertEqual(1, self.run_on({"a.h": "old_name\n"})[0])

    def test_an_ordinary_word_is_found_only_where_its_row_says(self):
        self.assertEqual(1, self.run_on({"zip/a.h": "Place a;\n"})[0])
        self.assertEqual(0, self.run_on({"ui/a.h": "Place a;\n"})[0])

    def test_phrases_match_without_regard_to_case(self):
        self.assertEqual(1, self.run_on({"README.md": "Mended.\n"})[0])

    def test_a_clean_tree_passes(self):
        self.assertEqual((0, "1 files, 0 complaints\n"), self.run_on({"a.h": "int a;\n"}))

    def test_a_tree_without_files_fails(self):
        self.assertEqual(1, self.run_on({})[0])


if __name__ == "__main__":
    unittest.main()
