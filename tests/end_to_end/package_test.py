"""The packages that users get, as `./package` has made them: the portable zip and the installer.
VANTREL_PACKAGES names their folder; without it, what `./package --quick` has made is tested.

The 64-bit edition is run; the 32-bit one, when it is there, is looked at from outside, since Wine
here has no 32-bit half.
"""
import os
import re
import struct
import subprocess
import zipfile
from pathlib import Path

import archives
import harness
import log_file
import window

PACKAGES = Path(os.environ.get("VANTREL_PACKAGES", harness.ROOT / "build" / "packages-quick"))
CONTENTS = ["System/FileCopy-144.AVI", "System/FileCopy-192.AVI", "System/FileCopy.AVI",
            "Vantrel.Cfg", "Vantrel.exe", "guide.html", "vzip.exe"]
UNPACK_FIRST = "Unpack this archive first.txt"
MACHINES = {"x64": 0x8664, "x86": 0x14C}
RUNNING, CANNOT_WRITE = 3, 5  # exit codes of the installer
SHORTCUTS = ["Vantrel Guide.lnk", "Vantrel.lnk"]
UNINSTALL_KEY = "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Vantrel"
SETTINGS_KEY = "HKCU\\Software\\Vantrel"


def package(edition, end):
    path = PACKAGES / f"Vantrel-{log_file.version()}-{edition}"
    path = path.with_name(path.name.replace(edition, f"setup-{edition}")) if end == "exe" else path
    path = path.with_name(f"{path.name}.{end}")
    if not path.exists():
        raise AssertionError(f"{path.name} is missing: ./package --quick makes it")
    return path


def editions():
    return ["x64", *(["x86"] if list(PACKAGES.glob("*-x86.zip")) else [])]


def output(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT).stdout.decode("utf-8", errors="replace")


class Contents(harness.unittest.TestCase):
    """As other people's tools see them."""

    maxDiff = None

    def assert_release(self, program, edition):
        """An executable of this edition and version, without symbols, that scales with the screen."""
        start = struct.unpack_from("<I", program, 0x3C)[0]
        self.assertEqual(b"PE\0\0", program[start:start + 4])
        machine, _, _, _, symbols = struct.unpack_from("<HHIII", program, start + 4)
        self.assertEqual((MACHINES[edition], 0), (machine, symbols))
        file_version = output(harness.ROOT / "scripts" / "product-version", "--file").strip()
        self.assertIn(file_version.encode("utf-16-le"), program)
        self.assertIn(b"dpiAware", program)
        self.assertIn(b'level="asInvoker"', program)

    def test_portable_zips(self):
        for edition in editions():
            path = package(edition, "zip")
            self.assertIn("No errors detected", output("unzip", "-t", path))
            self.assertIn("Everything is Ok", output("7zz", "t", path))
            self.assertEqual([UNPACK_FIRST, *(f"Vantrel/{name}" for name in CONTENTS)],
                             sorted(output("unzip", "-Z1", path).splitlines()))
            self.assertIn("Unpack this archive before you start Vantrel.\r\n",
                          output("unzip", "-p", path, UNPACK_FIRST))
            program = subprocess.run(["unzip", "-p", path, "Vantrel/Vantrel.exe"], check=True,
                                     stdout=subprocess.PIPE).stdout
            self.assert_release(program, edition)

    def test_installers(self):
        for edition in editions():
            path = package(edition, "exe")
            listing = output("7zz", "l", "-slt", path)
            self.assertIn("Type = Nsis", listing)
            names = re.findall(r"^Path = (.+)$", listing, re.M)[1:]
            for name in CONTENTS:
                self.assertIn(name, names)
            self.assertEqual([], [name for name in names
                                  if name.upper().endswith((".INI", ".LOG", ".TXT"))])
            self.assert_release(path.read_bytes(), edition)


class Packages(harness.EndToEndTest):
    """Files to back up, and a set for them wherever the program stands."""

    def setUp(self):
        super().setUp()
        # Menus of the machine that runs the tests are none of its business.
        self.pc.environment["WINEDLLOVERRIDES"] += ";winemenubuilder.exe="
        self.source = self.pc.drive("s")
        (self.source / "Letters").mkdir()
        (self.source / "Letters" / "to the editor.txt").write_text("Dear Sir\n", encoding="utf-8")
        (self.source / "accounts.csv").write_text("a;b;c\n" * 5000, encoding="utf-8")
        self.destination = self.pc.drive("e")

    def write_set(self, folder):
        path = folder / "Job.INI"
        path.write_bytes(harness.SET_TEMPLATE.format(
            BackupFiles="S:\\*.*", BackupSubDirectories="ON", MultiVolumeBackup="OFF",
            BackupToDrive="E:\\", TimeBackup="OFF", BackupFileName="JOB", RestoreFromDrive="",
            RestoreFileName="").encode("cp1252"))
        return path

    def assert_backs_up(self, folder, program):
        """One unattended run of the copy in `folder`, judged by unzip and file by file."""
        self.pc.application = folder
        archive = self.destination / "JOB.zip"
        archive.unlink(missing_ok=True)
        self.assert_exit_code(harness.COMPLETE, self.pc.finish(
            self.pc.start(program, "Job.INI", stdin=subprocess.DEVNULL)))
        self.assertIn("No errors detected", output("unzip", "-t", archive))
        self.assertEqual([], archives.differences(self.source, archive))
        self.assertIn("Successful Backup", self.pc.log.dated())

    def run_quietly(self, *command):
        """A program under Wine; its exit code and what it printed."""
        process = self.pc.start(*command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
        printed = process.stdout.read().decode("utf-8", errors="replace")
        return self.pc.finish(process), printed

    def registered(self, key, name):
        """A text of the registry; None when it is not there."""
        code, printed = self.run_quietly("reg", "query", key, "/v", name)
        found = re.search(rf"{name}\s+REG_\w+\s+(.*?)\r?$", printed, re.M)
        return found.group(1) if code == 0 and found else None


class Portable(Packages):
    def test_backs_up_from_where_it_was_unpacked(self):
        drive = self.pc.drive("p")
        subprocess.run(["unzip", "-q", package("x64", "zip"), "-d", drive], check=True)
        self.write_set(drive / "Vantrel")
        self.assert_backs_up(drive / "Vantrel", "P:\\Vantrel\\Vantrel.exe")
        self.assertEqual(sorted([*CONTENTS, "Job.INI", "System", "Vantrel.Log"]),
                         sorted(archives.tree(drive / "Vantrel")))

    def test_vzip_checks_an_archive_whose_name_is_in_no_ansi_code_page(self):
        drive = self.pc.drive("p")
        subprocess.run(["unzip", "-q", package("x64", "zip"), "-d", drive], check=True)
        archive = self.destination / "архив 文.zip"
        with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as made:
            made.writestr("письмо.txt", "Dear Sir\n" * 100)
        vzip = "P:\\Vantrel\\vzip.exe"
        code, printed = self.run_quietly(vzip, "list", f"E:\\{archive.name}")
        self.assertEqual(0, code, printed)
        self.assertIn("письмо.txt", printed)
        self.assertEqual(0, self.run_quietly(vzip, "verify", f"E:\\{archive.name}")[0])
        archive.write_bytes(archive.read_bytes().replace(b"PK\1\2", b"PK\1\1"))
        self.assertEqual(1, self.run_quietly(vzip, "verify", f"E:\\{archive.name}")[0])


class Installed(Packages):
    """A computer on which the installer has run."""

    def setUp(self):
        super().setUp()
        self.assertEqual((0, ""), self.install())
        users = self.pc.prefix / "drive_c" / "users"
        self.folder = next(users.glob("*/AppData/Local/Programs/Vantrel"))
        self.place = self.windows_path(self.folder)
        self.program = self.place + "\\Vantrel.exe"
        self.users = users

    def windows_path(self, path):
        relative = path.relative_to(self.pc.prefix / "drive_c")
        return "C:\\" + str(relative).replace("/", "\\")

    def install(self, *options):
        return self.run_quietly(str(package("x64", "exe")), "/S", *options)

    def uninstall(self, *options):
        """Silently; the uninstaller goes on in a copy of itself when it has returned."""
        self.assertEqual((0, ""), self.run_quietly(self.place + "\\Uninstall.exe", "/S", *options))
        harness.wait_until(lambda: not (self.folder / "Uninstall.exe").exists() and
                           self.registered(UNINSTALL_KEY, "DisplayName") is None,
                           "the end of the uninstaller")

    def shortcuts(self):
        return sorted(path.name for path in self.users.rglob("*.lnk"))

    def files(self):
        return archives.tree(self.folder)

    def test_user_installation_backs_up_and_is_known_to_the_system(self):
        self.assertEqual(sorted([*CONTENTS, "System", "Uninstall.exe"]), sorted(self.files()))
        self.assertEqual(SHORTCUTS, self.shortcuts())
        expected = {"DisplayName": "Vantrel", "DisplayVersion": log_file.version(),
                    "InstallLocation": self.place,
                    "UninstallString": f'"{self.place}\\Uninstall.exe"',
                    "QuietUninstallString": f'"{self.place}\\Uninstall.exe" /S'}
        self.assertEqual(expected,
                         {name: self.registered(UNINSTALL_KEY, name) for name in expected})
        self.write_set(self.folder)
        self.assert_backs_up(self.folder, self.program)

    def test_desktop_shortcut_is_made_on_request_and_removed_with_the_program(self):
        self.assertEqual((0, ""), self.install("/DESKTOP"))
        self.assertEqual(sorted([*SHORTCUTS, "Vantrel.lnk"]), self.shortcuts())
        self.assertTrue(list(self.users.glob("*/Desktop/Vantrel.lnk")))
        self.uninstall()
        self.assertEqual([], self.shortcuts())

    def test_upgrade_renews_the_program_and_keeps_what_is_the_users(self):
        self.write_set(self.folder)
        self.assert_backs_up(self.folder, self.program)
        (self.folder / "Vantrel.Cfg").write_bytes(b";\r\n" * 7 + b"\r\nS:\\LETTERS\r\n")
        fresh = self.files()
        users_own = {name: fresh[name] for name in ("Job.INI", "Vantrel.Log", "Vantrel.Cfg")}
        (self.folder / "Vantrel.exe").write_bytes(b"an older program")
        (self.folder / "guide.html").unlink()
        self.assertEqual((0, ""), self.install())
        self.assertEqual(fresh, self.files())
        self.assertEqual(users_own, {name: self.files()[name] for name in users_own})
        self.assert_backs_up(self.folder, self.program)

    def test_silent_removal_keeps_sets_log_and_list_and_nothing_else(self):
        self.write_set(self.folder)
        self.assert_backs_up(self.folder, self.program)
        before = self.files()
        kept = {name: before[name] for name in ("Job.INI", "Vantrel.Cfg", "Vantrel.Log")}
        self.uninstall()
        self.assertEqual(kept, self.files())
        self.assertEqual([], self.shortcuts())
        # They are taken up again.
        self.assertEqual((0, ""), self.install())
        self.assertEqual({**before, **kept}, self.files())

    def test_removal_of_everything_leaves_only_what_is_not_ours(self):
        self.write_set(self.folder)
        self.assert_backs_up(self.folder, self.program)
        (self.folder / "other.INI").write_text("[other program]\r\nkey=1\r\n", encoding="ascii")
        self.run_quietly("reg", "add", SETTINGS_KEY + "\\Startup", "/v", "INI File", "/d", "Job.INI")
        self.assertEqual("Job.INI", self.registered(SETTINGS_KEY + "\\Startup", "INI File"))
        self.uninstall("/EVERYTHING")
        self.assertEqual(["other.INI"], sorted(self.files()))
        self.assertIsNone(self.registered(SETTINGS_KEY + "\\Startup", "INI File"))
        self.assertTrue((self.destination / "JOB.zip").exists())

    def test_program_that_runs_is_neither_replaced_nor_removed(self):
        self.pc.application = self.folder
        before = self.files()
        program = window.Attended(self.pc, program=self.program)
        self.assertEqual(RUNNING, self.install()[0])
        # In its own place, so that the exit code is its own.
        self.assertEqual(RUNNING, self.run_quietly(self.place + "\\Uninstall.exe", "/S",
                                                   "_?=" + self.place)[0])
        self.assertEqual(before, {name: content for name, content in self.files().items()
                                  if name != "Vantrel.Log"})
        self.assert_exit_code(0, program.close())
        self.assertEqual((0, ""), self.install())


class NotInstalled(Packages):
    def test_folder_that_cannot_be_written_is_refused(self):
        disk = self.pc.drive("r", size=30 * 1024 * 1024)
        self.pc.make_read_only(disk)
        code, printed = self.run_quietly(str(package("x64", "exe")), "/S", "/D=R:\\Vantrel")
        self.assertEqual((CANNOT_WRITE, ""), (code, printed))
        self.assertIsNone(self.registered(UNINSTALL_KEY, "DisplayName"))
        self.assertEqual([], list((self.pc.prefix / "drive_c" / "users").rglob("Vantrel*.lnk")))


if __name__ == "__main__":
    harness.main()
