"""scripts/debian_sources.py turns a machine's apt sources, old form and new, into deb-src stanzas."""
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts"))
SCRIPT = ROOT / "scripts" / "debian_sources.py"
import debian_sources

NEW_FORM = """# a comment
Types: deb
URIs: http://mirror.example.org/debian
Suites: {suite} {suite}-updates
Components: main
Signed-By: /usr/share/keyrings/keys.gpg

Types: deb
URIs: http://tools.example.com/apt
Suites: nodistro
Components: main
"""
OLD_FORM = """# deb http://off.example.org/debian {suite} main
deb [signed-by=/usr/share/keyrings/keys.gpg arch=amd64] http://old.example.org/debian {suite} main contrib
deb http://tools.example.com/apt other main
"""


FILES = {"new_form": "sources.list.d/debian.sources", "old_form": "sources.list"}


class DebianSources(unittest.TestCase):
    def run_with(self, **files):
        suite = min(debian_sources.release_suites() - {"stable"}, key=len)
        with tempfile.TemporaryDirectory() as folder:
            os.mkdir(folder + "/sources.list.d")
            for name, text in files.items():
                Path(folder, FILES[name]).write_text(
                    text.format(suite=suite), encoding="utf-8")
            done = subprocess.run([sys.executable, SCRIPT], capture_output=True, text=True,
                                  env={**os.environ, "APT_ETC": folder}, check=False)
        return done.returncode, done.stdout.replace(suite, "SUITE")

    def test_new_form_keeps_the_signing_key(self):
        self.assertEqual((0, "Types: deb-src\nURIs: http://mirror.example.org/debian\n"
                             "Suites: SUITE SUITE-updates\nComponents: main\n"
                             "Signed-By: /usr/share/keyrings/keys.gpg\n\n"),
                         self.run_with(new_form=NEW_FORM))

    def test_old_form_keeps_the_signing_key(self):
        self.assertEqual((0, "Types: deb-src\nURIs: http://old.example.org/debian\n"
                             "Suites: SUITE\nComponents: main\n"
                             "Signed-By: /usr/share/keyrings/keys.gpg\n\n"),
                         self.run_with(old_form=OLD_FORM))

    def test_machine_without_debian_sources_fails(self):
        self.assertEqual((1, ""), self.run_with(old_form=""))


if __name__ == "__main__":
    unittest.main()
