"""scripts/check-paths finds a machine's own folders and foreign addresses, and nothing else."""
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / "scripts" / "check-paths"
# Put together here, so that this file passes the check itself.
HOME = "/" + "home/jo/x"
ADDRESS = "https:" + "//downloads.vendor.net/x"


class CheckPaths(unittest.TestCase):
    def status_for(self, text):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run(["git", "init", "-q", folder], check=True)
            Path(folder, "file.txt").write_text(text, encoding="utf-8")
            return subprocess.run([sys.executable, SCRIPT, folder], capture_output=True,
                                  check=False).returncode

    def test_clean_file_passes(self):
        self.assertEqual(0, self.status_for(
            "see https://www.example.com/vantrel\n/usr/share/doc\nsrc/home/page\n"
            'xmlns="http://schemas.vendor.com/x"\n'))

    def test_own_folder(self):
        self.assertEqual(1, self.status_for(f"cd {HOME}\n"))

    def test_foreign_address(self):
        self.assertEqual(1, self.status_for(f"get {ADDRESS}\n"))

    def test_empty_tree_is_no_success(self):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run(["git", "init", "-q", folder], check=True)
            self.assertEqual(1, subprocess.run([sys.executable, SCRIPT, folder],
                                               capture_output=True, check=False).returncode)


if __name__ == "__main__":
    unittest.main()
