"""docs/guide.md names every exit code, every refusal, every way out and every skipped thing that the
sources can write, so that a new one is not forgotten there."""
import re
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def source(name):
    return (ROOT / name).read_text(encoding="utf-8")


GUIDE = source("docs/guide.md")


class GuideFacts(unittest.TestCase):
    def assert_all_told(self, texts, at_least):
        self.assertGreaterEqual(len(texts), at_least, "the sources are not as this check knows them")
        self.assertEqual([], [text for text in texts if text not in GUIDE])

    def test_exit_codes(self):
        codes = re.findall(r"constexpr int k\w+ = (\d+);", source("forms/program.h"))
        self.assert_all_told([f"\n| {code} | " for code in codes], 6)

    def test_refusals(self):
        self.assert_all_told([text.rstrip() for text in
                              re.findall(r'failed \+ "([^"]+)"', source("backup/preflight.cpp"))], 6)

    def test_ways_out(self):
        self.assert_all_told(re.findall(r'std::string\("([^"]+\.)"\) \+ kLineEnd',
                                        source("log/clsLog.cpp")), 6)

    def test_skipped_things(self):
        texts = [text for path in sorted((ROOT / "zip/writer").iterdir())
                 for text in re.findall(r'"((?:Skipped|Changed)[^":]*)', source(path))]
        self.assert_all_told(texts, 6)

    def test_records(self):
        texts = [text for name in ("app/application.cpp", "backup/Frm_Backup.cpp", "ui/log_tab.cpp",
                                   "restore/Frm_Restore.cpp", "restore/protected_pass.cpp")
                 for text in re.findall(r'(?:LogRecord|Record)\("([^"]+)"', source(name))]
        self.assert_all_told([text.strip() for text in texts], 8)


if __name__ == "__main__":
    unittest.main()
