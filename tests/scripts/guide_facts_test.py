"""docs/guide.md names every exit code, every refusal, every way out, every skipped thing and every
message of an attended run that the sources can write, so that a new one is not forgotten there."""
import re
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def source(name):
    return (ROOT / name).read_text(encoding="utf-8")


GUIDE = source("docs/guide.md")


MESSAGE = re.compile(
    r'"((?:Unable to|Nothing has been|Nothing could be|No Location has|There is no|You have|Are you sure'
    r"|This (?:folder|configuration)|Please (?:enter|insert|select)|Could not find|Web Page|Logon Failure"
    r"|Log File Suc|The (?:archive|folder for|destination|disk in|Guide)|What was written|It is another"
    r'|Vantrel has been)[^"\\]*)')
# Sentences after the first one of a message, and one of a log record.
SECOND_SENTENCES = {"Please enter a valid Backup Set", "Please enter a valid Restore File",
                    "Please select a new Backupset to Restore From or manually select",
                    "The archive needs disk"}


class GuideFacts(unittest.TestCase):
    maxDiff = None

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
        reasons = re.search(r"kReasons[^;]*;", source("log/clsLog.cpp"))[0]
        self.assert_all_told(re.findall(r'"([^"]+\.)"', reasons), 6)

    def test_skipped_things(self):
        texts = [text for path in sorted((ROOT / "zip/writer").iterdir())
                 for text in re.findall(r'"((?:Skipped|Changed)[^":]*)', source(path))]
        self.assert_all_told(texts, 6)

    def test_messages_of_attended_runs(self):
        """Up to eleven words of each."""
        texts = set()
        for folder in ("backup", "restore", "forms", "ui", "system", "zip/disks", "zip/reader"):
            for path in sorted((ROOT / folder).glob("*.cpp")):
                # Neighbours are one text.
                code = re.sub(r'"(?:\s*\n\s*|\s+)"', "", source(path))
                code = re.sub(r'" \+\s*line \+ line \+ "', '"\n"', code)
                texts.update(re.findall(MESSAGE, code))
        texts = {" ".join(re.split(r"[.:,(]|  ", text)[0].split()[:11]) for text in texts}
        self.assert_all_told(sorted(texts - SECOND_SENTENCES), 40)

    def test_records(self):
        texts = [text for name in ("app/application.cpp", "backup/Frm_Backup.cpp", "ui/log_tab.cpp",
                                   "restore/Frm_Restore.cpp", "restore/protected_pass.cpp")
                 for text in re.findall(r'(?:LogRecord|Record)\("([^"]+)"', source(name))]
        self.assert_all_told([text.strip() for text in texts], 8)


if __name__ == "__main__":
    unittest.main()
