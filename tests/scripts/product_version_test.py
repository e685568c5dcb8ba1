"""scripts/product-version: one place for the version, and no release that CHANGELOG.md omits."""
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
HEADER = """inline constexpr int kVersionMajor = 4;
inline constexpr int kVersionMinor = 10;
inline constexpr int kVersionBuild = 2;
inline constexpr int kVersionRevision = 7;
"""


class ProductVersion(unittest.TestCase):
    def run_in_tree(self, *arguments, header=HEADER, changelog="# Changelog\n\n## 4.10.7, new\n"):
        with tempfile.TemporaryDirectory() as folder:
            tree = Path(folder)
            for name in ("scripts", "common"):
                (tree / name).mkdir()
            shutil.copy(ROOT / "scripts" / "product-version", tree / "scripts")
            (tree / "common" / "product.h").write_text(header, encoding="utf-8")
            (tree / "CHANGELOG.md").write_text(changelog, encoding="utf-8")
            return subprocess.run([tree / "scripts" / "product-version", *arguments],
                                  capture_output=True, text=True, check=False)

    def test_both_forms(self):
        self.assertEqual("4.10.7\n", self.run_in_tree().stdout)
        self.assertEqual("4.10.2.7\n", self.run_in_tree("--file").stdout)

    def test_older_changelog_is_refused(self):
        old = self.run_in_tree(changelog="# Changelog\n\n## 4.10.6\n\n## 4.10.7\n")
        self.assertEqual((1, ""), (old.returncode, old.stdout))
        self.assertIn("'4.10.6'", old.stderr)

    def test_missing_number_is_refused(self):
        self.assertEqual(1, self.run_in_tree(header=HEADER.replace("Minor", "Other")).returncode)

    def test_this_tree(self):
        subprocess.run([ROOT / "scripts" / "product-version"], check=True, capture_output=True)


if __name__ == "__main__":
    unittest.main()
