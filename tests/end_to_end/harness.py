"""End-to-end tests: the program itself under Wine, on drives that really are what they say.

A `Computer` is a throw-away Wine prefix with drives of chosen kinds and sizes; the application
folder is V:\\Vantrel. Tests look from outside only: exit codes, files, the log, and archives as
other people's tools read them. Run a test file by itself or through ctest's windows preset.

Environment: VANTREL_BUILD is the windows preset's build folder (default build/windows). Every test
file runs in a mount namespace of its own, so that no volume can be left behind.
"""
import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from log_file import LogFile

ROOT = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("VANTREL_BUILD", ROOT / "build" / "windows")).resolve()
PREFIX_TOOL = ROOT / "scripts" / "wine-prefix"

# A hang is a failure, too. Far longer than any run takes on a slow machine.
HANG_SECONDS = float(os.environ.get("VANTREL_HANG_SECONDS", 240))

# How many tests of a file run at a time.
SIDE_BY_SIDE = int(os.environ.get("VANTREL_SIDE_BY_SIDE", 3))

COMPLETE, SOME_SKIPPED, FAILED, CANCELLED, NO_SUCH_SET, ALREADY_RUNNING = range(6)

SET_TEMPLATE = """;---------------------------\r
[BACKUP SOURCE]\r
BackupFiles={BackupFiles}\r
BackupSubDirectories={BackupSubDirectories}\r
\r
[DESTINATION]\r
BackupFileName={BackupFileName}\r
MultiVolumeBackup={MultiVolumeBackup}\r
BackupToDrive={BackupToDrive}\r
TimeBackup={TimeBackup}\r
\r
[RESTORE SOURCE]\r
RestoreFromDrive={RestoreFromDrive}\r
RestoreFileName={RestoreFileName}\r
\r
[RESTORE DESTINATION]\r
RestoreDestination=\r
"""


def wait_until(condition, what, longest_pause=0.002):
    """Polls until `condition()` is true and returns that value; fails after the hang time. Pauses, in
    seconds, double up to the longest one."""
    deadline = time.monotonic() + HANG_SECONDS
    pause = 0.002
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise AssertionError(f"waited in vain: {what}")
        time.sleep(pause)
        pause = min(2 * pause, longest_pause)


def write_endless_file(path):
    """A file of zeros that no run reads to its end before the hang time; it takes no space."""
    with open(path, "wb") as file:
        file.truncate(256 * 2**30)


class Computer:
    """A Wine prefix with its own drives. Give it its drives before the first program runs."""

    def __init__(self):
        parent = ROOT / "build" / "end_to_end"
        parent.mkdir(parents=True, exist_ok=True)
        self.folder = Path(tempfile.mkdtemp(prefix="pc-", dir=parent))
        self.prefix = self.folder / "prefix"
        self._mounted = []
        self._running = []
        subprocess.run([PREFIX_TOOL, "make", self.prefix], check=True)
        self.environment = {k: v for k, v in os.environ.items() if not k.startswith("WINE")}
        self.environment.update(
            WINEPREFIX=str(self.prefix), WINEDEBUG="err+all,fixme-all",
            WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe=", LC_ALL="C.UTF-8", TZ="CET-1CEST,M3.5.0,M10.5.0/3")
        self.application = self.drive("v") / "Vantrel"
        shutil.copytree(BUILD / "app", self.application,
                        ignore=shutil.ignore_patterns("*.INI", "*.ini", "*.Log", "*.Bak"))

    # Drives

    def drive(self, letter, kind="hd", size=None):
        """Adds a drive and returns its root folder. `kind` is the type set in Wine (hd, floppy, cdrom,
        network, ramdisk); with a size in bytes it is a volume of its own that really fills up."""
        root = self.folder / f"drive_{letter}"
        if size is not None:
            self.disk(root.name, size)
        else:
            root.mkdir()
        (self.prefix / "dosdevices" / f"{letter}:").symlink_to(root)
        self._set_drive_type(letter, kind)
        return root

    def disk(self, name, size):
        """A volume that is in no drive yet; returns its root folder."""
        root = self.folder / name
        root.mkdir()
        subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={size},mode=755", "vantrel-test",
                        root], check=True)
        self._mounted.append(root)
        return root

    def put_in(self, letter, root):
        """Changes the disk of a drive; None takes it out."""
        drive = self.prefix / "dosdevices" / f"{letter}:"
        drive.unlink(missing_ok=True)
        drive.symlink_to(root if root else self.folder / "no disk")

    def _set_drive_type(self, letter, kind):
        registry = self.prefix / "system.reg"
        text = registry.read_text(encoding="utf-8", errors="surrogateescape")
        section = "[Software\\\\Wine\\\\Drives]"
        if section not in text:
            text += f"\n{section} 1\n"
        head, tail = text.split(section, 1)
        first_line, rest = tail.split("\n", 1)
        text = f'{head}{section}{first_line}\n"{letter}:"="{kind}"\n{rest}'
        registry.write_text(text, encoding="utf-8", errors="surrogateescape")

    def make_read_only(self, root):
        """From now on nothing can be written to a drive that was made with a size."""
        subprocess.run(["mount", "-o", "remount,ro", root], check=True)

    # Backup sets

    def write_set(self, name, **keys):
        """Writes a set file into the application folder. Keys as in the file; the defaults are one
        archive in a fixed place, with sub-folders, on one volume."""
        values = {"BackupSubDirectories": "ON", "MultiVolumeBackup": "OFF", "TimeBackup": "OFF",
                  "BackupFileName": name.rsplit(".", 1)[0].upper(), "RestoreFromDrive": "",
                  "RestoreFileName": "", **keys}
        path = self.application / name
        path.write_bytes(SET_TEMPLATE.format(**values).encode("cp1252"))
        return path

    def read_set(self, name):
        """The keys of a set file, section names left out."""
        lines = (self.application / name).read_bytes().decode("cp1252").splitlines()
        return dict(line.split("=", 1) for line in lines if "=" in line)

    # Programs

    def start(self, *arguments, **options):
        """Starts a program under Wine without waiting; a list entry is one argument."""
        # What Wine itself has to say is no part of any test.
        with open(self.folder / "wine.log", "ab") as chatter:
            process = subprocess.Popen(["wine", *arguments], env=self.environment, stderr=chatter,
                                       cwd=self.application, **options)
        self._running.append(process)
        return process

    def start_unattended(self, name):
        """Starts a backup of a set; the process is the program itself."""
        return self.start("V:\\Vantrel\\Vantrel.exe", name, stdin=subprocess.DEVNULL)

    def run_unattended(self, name):
        """Runs a backup of a set to its end and returns the program's exit code."""
        return self.finish(self.start_unattended(name))

    def run_with_command_line(self, text):
        """Runs the program with a command line that no shell has touched: `text` stands right
        behind the executable's name."""
        self.environment["VANTREL_COMMAND_LINE"] = "V:\\Vantrel\\Vantrel.exe" + text
        try:
            launcher = self.helper("launch.exe")
            return self.finish(self.start(launcher, stdin=subprocess.DEVNULL))
        finally:
            del self.environment["VANTREL_COMMAND_LINE"]

    @staticmethod
    def helper(name):
        """A Windows helper program of the tests, as a path that Wine takes."""
        return str(BUILD / "end_to_end" / name)

    def finish(self, process):
        try:
            return process.wait(timeout=HANG_SECONDS)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
            raise AssertionError("the program hangs; its log:\n" + self.log.text()) from None

    # What it left

    @property
    def log(self):
        return LogFile(self.application / "Vantrel.Log")

    def chatter(self):
        """What Wine itself had to say, for a person who looks for what went wrong."""
        return (self.folder / "wine.log").read_text(encoding="utf-8", errors="replace")

    def remove(self):
        """Ends everything that still runs here and removes all of it."""
        subprocess.run([PREFIX_TOOL, "stop", self.prefix], check=False)
        for process in self._running:
            if process.poll() is None:
                process.kill()
            process.wait()
            for stream in (process.stdin, process.stdout):
                if stream:
                    stream.close()
        for root in self._mounted:
            if subprocess.run(["umount", root], check=False).returncode:
                subprocess.run(["umount", "--lazy", root], check=True)
        shutil.rmtree(self.folder)


class EndToEndTest(unittest.TestCase):
    """Gives every test a computer of its own."""

    maxDiff = None

    def setUp(self):
        self.pc = Computer()
        self.addCleanup(self.pc.remove)

    def assert_exit_code(self, expected, actual):
        self.assertEqual(expected, actual, "exit code; the log:\n" + self.pc.log.text())


def _enter_own_mount_namespace():
    """Starts this program again where mounting is allowed and ends with it."""
    if os.environ.get("VANTREL_OWN_MOUNTS"):
        return
    os.environ["VANTREL_OWN_MOUNTS"] = "1"
    user = [] if os.geteuid() == 0 else ["--user", "--map-root-user"]
    os.execvp("unshare", ["unshare", *user, "--mount", "--propagation", "private",
                          sys.executable, *sys.argv])


def _every_test(suite):
    for each in suite:
        if isinstance(each, unittest.TestSuite):
            yield from _every_test(each)
        else:
            yield f"{type(each).__name__}.{each._testMethodName}"


def _run_alone(name, environment):
    """Runs one test in a process of its own; its name, success and output."""
    done = subprocess.run([sys.executable, *sys.argv, name], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                          env=environment)
    return name, done.returncode == 0, done.stdout.decode("utf-8", errors="replace")


def _run_side_by_side(own_screens):
    """The program waits more than it works, so that several tests at a time cost little more than
    one. Every test has its own computer, so none sees another."""
    names = list(_every_test(unittest.defaultTestLoader.loadTestsFromModule(
        sys.modules["__main__"])))
    failures = 0
    environment = dict(os.environ)
    if own_screens:
        environment.pop("DISPLAY", None)  # `prepare` then starts a screen
    with ThreadPoolExecutor(SIDE_BY_SIDE) as pool:
        for name, passed, output in pool.map(lambda each: _run_alone(each, environment), names):
            failures += not passed
            print(f"{name} ... {'ok' if passed else 'FAILED'}", flush=True)
            if not passed:
                print(output, flush=True)
    print(f"Ran {len(names)} tests, {failures} failed", flush=True)
    sys.exit(failures > 0 or not names)


def prepare():
    """Mounts of its own, and a screen if there is none: starts this program again with them."""
    _enter_own_mount_namespace()
    if not os.environ.get("DISPLAY"):
        screen = str(ROOT / "scripts" / "with-display")
        os.execv(screen, [screen, sys.executable, *sys.argv])


def main(own_screens=False):
    """What a test file calls: `prepare`, then its tests. Names of tests on the command line are run
    one by one, here. With `own_screens` each test has a screen of its own: tests that move the mouse
    need it, since a screen has one pointer, and windows of other tests may lie on top."""
    prepare()
    if len(sys.argv) == 1:
        _run_side_by_side(own_screens)
    unittest.main(verbosity=2)
