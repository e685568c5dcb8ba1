"""Reads the transaction log as an outside program would: bytes, lines, records."""
import re
from pathlib import Path

DASHES = "-" * 80
STAMP = re.compile(r"^\d\d/\d\d/\d{4} \d\d:\d\d:\d\d (.*)$")
BLANKS = " " * 20
PRODUCT = Path(__file__).resolve().parents[2] / "common" / "product.h"


class LogFile:
    def __init__(self, path):
        self._path = path

    def text(self):
        """The whole log, or nothing when there is none yet."""
        if not self._path.exists():
            return ""
        return self._path.read_bytes().decode("cp1252")

    def records(self):
        """Everything behind the 12 header lines: (dated, text) for each line; a line that is not a
        record, such as the dashes of an exit, has None for dated."""
        return [self._record(line) for line in self.text().split("\r\n")[12:-1]]

    def dated(self):
        return [text for dated, text in self.records() if dated]

    def undated(self):
        return [text for dated, text in self.records() if dated is False]

    @staticmethod
    def _record(line):
        stamped = STAMP.match(line)
        if stamped:
            return True, stamped.group(1)
        if line.startswith(BLANKS):
            return False, line[len(BLANKS):]
        return None, line


def version():
    """Major, minor and revision, from the one place where the version stands."""
    numbers = dict(re.findall(r"kVersion(\w+) = (\d+);", PRODUCT.read_text(encoding="utf-8")))
    return ".".join(numbers[part] for part in ("Major", "Minor", "Revision"))


def started(command_line):
    """The records of a start."""
    return [(True, f"Application {version()} Started"),
            (False, f"Command Line Parameter = {command_line}")]


def closed():
    """The records of an unattended run's end."""
    return [(True, "Application Closed - Unloaded by Invoked from code."), (None, DASHES)]


def successful(set_name, archive, notes=()):
    """The records of one whole unattended run that made `archive`, with our own undated lines."""
    return [*started(set_name),
            (True, f"Starting Backup {set_name}"),
            (True, f"Creating Backup File {archive}"),
            *[(False, note) for note in notes],
            (True, f"Finished Backup {set_name}"),
            (True, "Successful Backup"),
            *closed()]


def refused(set_name, reason):
    """The records of an unattended run that the checks before the backup refuse."""
    return [*started(set_name),
            (True, f"Starting Backup {set_name}"),
            (True, f"Finished Backup {set_name}"),
            (True, f"Backup Failed - {reason}"),
            *closed()]
