"""Archives on several disks: floppies in drive A: that really fill up and are really changed."""
import random
import re
import shutil
import subprocess
import tempfile
from pathlib import Path

import archives
import harness
import window

FLOPPY = 1440 * 1024
SURE = "Are you sure that you wish to start the backup now?"
ARCHIVE = "JOB.zip"


def prompt(number):
    return f"Please insert disk {number} of {ARCHIVE} into drive A: and press Retry.\r\n\r\n"


class Spanned(harness.EndToEndTest):
    """A source, and a box of floppies; the first one is in the drive."""

    size = FLOPPY

    def setUp(self):
        super().setUp()
        self.source = self.pc.drive("s") / "Documents"
        (self.source / "Letters").mkdir(parents=True)
        (self.source / "Letters" / "to the editor.txt").write_text("Dear Sir\n", encoding="utf-8")
        (self.source / "empty").mkdir()
        (self.source / "accounts.csv").write_text("a;b;c\n" * 50000, encoding="utf-8")
        self.random = random.Random(1)
        self.disks = [self.pc.drive("a", "floppy", self.size)]

    def fill_source(self, size):
        """Files of noise, small ones and one that takes most of `size` bytes."""
        for index in range(20):
            (self.source / "Letters" / f"{index}.bin").write_bytes(self.random.randbytes(3000))
        (self.source / "large.bin").write_bytes(self.random.randbytes(size - 60000))

    def new_disk(self, size=None):
        self.disks.append(self.pc.disk(f"disk_{len(self.disks) + 1}", size or self.size))
        return self.disks[-1]

    def start_backup(self):
        self.pc.write_set("Job.INI", BackupFiles="S:\\Documents\\*.*", BackupToDrive="A:\\",
                          MultiVolumeBackup="ON")
        program = window.Attended(self.pc)
        program.choose("Cmb_BackupSet", "Job.INI")
        program.click("Cmd_Backup")
        program.answer("Yes", SURE)
        return program

    @staticmethod
    def backup_is_over(program, outcome="Backup Complete"):
        return (program.visible("Frm_Backup_Cmd_Ok") and
                program.text("Frm_Backup_Lbl_BackupPath") == outcome)

    def next_box(self, program, over):
        """The box that comes, None when the run is over first."""
        return program.wait_for(lambda: (over(program) and "over") or program.box(),
                                "a prompt or the end")

    def back_up(self, program):
        """Puts in a new disk at each prompt, until the backup is complete; returns the prompts."""
        asked = []
        while (box := self.next_box(program, self.backup_is_over)) != "over":
            self.assertIn(prompt(len(self.disks) + 1), box.text)
            asked.append(box.text)
            self.pc.put_in("a", self.new_disk())
            program.answer("Retry", prompt(len(self.disks)))
        program.click("Frm_Backup_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        return asked

    def assert_set_is_good(self):
        """What another program finds in the disks, put together."""
        with tempfile.TemporaryDirectory() as folder:
            folder = Path(folder)
            for number, root in enumerate(self.disks, 1):
                self.assertEqual([ARCHIVE], [path.name for path in root.iterdir()])
                name = "set.zip" if number == len(self.disks) else f"set.z{number:02}"
                shutil.copyfile(root / ARCHIVE, folder / name)
            said = subprocess.run(["7zz", "t", folder / "set.zip"], check=True,
                                  capture_output=True, text=True).stdout
            self.assertIn(f"Volumes = {len(self.disks)}\n", said)
            self.assertIn("Everything is Ok", said)
            archives.extract_with_7zz(folder / "set.zip", folder / "out")
            self.assertEqual(archives.tree(self.source), archives.tree(folder / "out"))

    # Restoring

    def feed(self, program, over):
        """Puts in the disk that each prompt asks for; returns what was asked."""
        asked = []
        while (box := self.next_box(program, over)) != "over":
            found = re.match(r"Please insert (?:the last disk|disk (\d+) of the (\d+) disks) of "
                             rf"{ARCHIVE} into drive A: and press Retry\.\r\n\r\n", box.text)
            self.assertTrue(found, box.text)
            number = int(found[1]) if found[1] else len(self.disks)
            if found[2]:
                self.assertEqual(len(self.disks), int(found[2]))
            asked.append("last" if not found[1] else number)
            self.pc.put_in("a", self.disks[number - 1])
            program.answer("Retry", box.text)
        return asked

    def choose_destination(self, program):
        program.click("Cmd_RestoreTo")
        program.answer("OK", "PLEASE SELECT THE RESTORE LOCATION WITH CARE!")
        program.wait_for(lambda: program.visible("Frm_RestoreWhere_Cmd_Ok"), "the dialog")
        program.wait_for(lambda: not program.enabled("TAB_Backup"), "the dialog in front")
        program.wait_for(lambda: program.visible("Frm_RestoreWhere_Dri_DriveList"), "its drives")
        program.choose("Frm_RestoreWhere_Dri_DriveList", "r:")
        program.wait_for(lambda: "Here" in program.items("Frm_RestoreWhere_Dir_DirList"), "r:")
        program.open_entry("Frm_RestoreWhere_Dir_DirList", "Here")
        program.click("Frm_RestoreWhere_Cmd_Ok")
        program.wait_for(lambda: program.text("Fld_RestoreTo") == "R:\\HERE", "the destination")

    def restore(self, program, destination):
        """From the first disk in the drive; returns what listing and restoring asked for."""
        self.pc.put_in("a", self.disks[0])
        program.show_tab("Restore")
        program.choose("Cmb_RestoreFile", "Job.INI")
        count = str(len(archives.tree(self.source)) - 1)  # "Letters" has no entry of its own
        listed = self.feed(program, lambda p: p.text("Fld_Total") == count)
        self.choose_destination(program)
        program.click("Cmd_Restore")
        restored = self.feed(
            program, lambda p: p.exists("Frm_Restore_Cmd_Ok") and
            p.visible("Frm_Restore_Cmd_Ok") and
            p.text("Frm_Restore_Lbl_RestorePath") == "Restore Complete")
        program.click("Frm_Restore_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assertEqual(archives.tree(self.source), archives.tree(destination))
        return listed, restored


class Sets(Spanned):
    def test_three_floppies_there_and_back(self):
        destination = self.pc.drive("r") / "Here"
        destination.mkdir()
        self.fill_source(2 * FLOPPY + FLOPPY // 3)
        program = self.start_backup()
        room = "The disk in the drive has 0 bytes free."
        self.assertEqual([prompt(2) + room, prompt(3) + room], self.back_up(program))
        self.assertEqual(3, len(self.disks))
        self.assert_set_is_good()
        self.assertIn("Successful Backup", self.pc.log.text())
        listed, restored = self.restore(program, destination)
        self.assertEqual(["last"], listed)
        self.assertEqual([1, 2, 3], restored)
        self.assert_exit_code(0, program.close())

    def test_forty_floppies_there_and_back(self):
        destination = self.pc.drive("r") / "Here"
        destination.mkdir()
        self.fill_source(39 * FLOPPY + FLOPPY // 2)
        program = self.start_backup()
        self.back_up(program)
        self.assertEqual(40, len(self.disks))
        self.assert_set_is_good()
        listed, restored = self.restore(program, destination)
        self.assertEqual(["last"], listed)
        self.assertEqual(list(range(1, 41)), restored)
        self.assert_exit_code(0, program.close())

    def test_one_floppy_is_enough_and_holds_a_plain_archive(self):
        program = self.start_backup()
        self.back_up(program)
        self.assertEqual(1, len(self.disks))
        self.assertEqual([], archives.differences(self.source, self.disks[0] / ARCHIVE))
        self.assert_exit_code(0, program.close())


class WrongDisks(Spanned):
    def test_disks_that_will_not_do_are_said_and_left_as_they_are(self):
        self.fill_source(FLOPPY + FLOPPY // 2)
        full = self.pc.disk("full", 64 * 1024)
        (full / "letter.doc").write_bytes(self.random.randbytes(64 * 1024))
        protected = self.pc.disk("protected", FLOPPY)
        self.pc.make_read_only(protected)
        used = self.pc.disk("used", FLOPPY)
        (used / ARCHIVE).write_bytes(b"of last week")
        program = self.start_backup()
        holds = f"The disk in the drive holds A:\\{ARCHIVE} already, and no file is overwritten."
        cases = [(self.disks[0], holds), (used, holds), (None, "There is no disk in the drive."),
                 (full, "The disk in the drive is full: it has 0 bytes free."),
                 (protected, "The disk in the drive is write-protected.")]
        for disk, note in cases:
            self.pc.put_in("a", disk)
            program.answer("Retry", prompt(2))
            self.assertEqual(prompt(2) + note, program.wait_for_box(note).text)
        self.back_up(program)
        self.assertEqual(2, len(self.disks))
        self.assert_set_is_good()
        self.assertEqual(["letter.doc"], [path.name for path in full.iterdir()])
        self.assertEqual(b"of last week", (used / ARCHIVE).read_bytes())
        self.assert_exit_code(0, program.close())

    def test_every_other_disk_is_refused_when_restoring(self):
        destination = self.pc.drive("r") / "Here"
        destination.mkdir()
        self.fill_source(3 * FLOPPY + FLOPPY // 2)
        program = self.start_backup()
        self.back_up(program)
        right = self.pc.put_in
        refused = []

        def wrong_first(letter, root):
            """For each disk that is asked for, all the others first."""
            for other in self.disks:
                if other is not root:
                    right(letter, other)
                    before = program.box()
                    program.answer("Retry", before.text)
                    refused.append(program.wait_for_box("Please insert").text)
            right(letter, root)

        program.show_tab("Restore")
        right("a", self.disks[-1])
        program.choose("Cmb_RestoreFile", "Job.INI")
        self.choose_destination(program)
        program.click("Cmd_Restore")
        self.pc.put_in = wrong_first
        self.feed(program, lambda p: p.exists("Frm_Restore_Cmd_Ok") and
                  p.visible("Frm_Restore_Cmd_Ok") and
                  p.text("Frm_Restore_Lbl_RestorePath") == "Restore Complete")
        self.assertEqual(12, len(refused))
        self.assertTrue(all("The disk in the drive is another one." in text
                            for text in refused), refused)
        program.click("Frm_Restore_Cmd_Ok")
        self.assertEqual(archives.tree(self.source), archives.tree(destination))


SEARCH = "The list of files in this archive is damaged or missing:"


class Incomplete(Spanned):
    """A set of five disks of which one is lost."""

    def back_up_five_disks(self):
        self.destination = self.pc.drive("r") / "Here"
        self.destination.mkdir()
        for index in range(12):
            (self.source / f"{index:02}.bin").write_bytes(self.random.randbytes(500_000))
        program = self.start_backup()
        self.back_up(program)
        self.assertEqual(5, len(self.disks))
        program.show_tab("Restore")
        return program

    def feed_without(self, program, missing, over):
        """Inserts each disk that is asked for, and continues without those that are missing; until the
        end, or the question whether to search."""
        asked = []
        while (box := self.next_box(program, over)) != "over" and not box.text.startswith(SEARCH):
            found = re.match(r"Please insert (?:the last disk|disk (\d+))", box.text)
            self.assertTrue(found, box.text)
            number = int(found[1]) if found[1] else 5
            asked.append(number if found[1] else "last")
            self.assertEqual({"Cancel", "Retry", "Continue"}, set(box.buttons))
            if number not in missing:
                self.pc.put_in("a", self.disks[number - 1])
            program.answer("Continue" if number in missing else "Retry", box.text)
        return asked

    def restore_without(self, program, missing):
        """Restores the files that were listed; returns what was asked, and the files that are lost."""
        self.choose_destination(program)
        program.click("Cmd_Restore")
        asked = self.feed_without(program, missing, self.restore_is_over)
        program.click("Frm_Restore_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assert_exit_code(0, program.close())
        source, copy = archives.tree(self.source), archives.tree(self.destination)
        lost = set(source) - set(copy)
        self.assertEqual({name: source[name] for name in copy}, copy)
        records = self.pc.log.undated()
        named = {name for name in lost
                 if any(record.startswith(f"{name} is not restored: ") for record in records)}
        files = "file" if len(named) == 1 else "files"
        self.assertIn(f"{len(named)} {files} not restored", records)
        return asked, lost

    def test_five_disks_without_the_third_return_the_files_on_the_others(self):
        program = self.back_up_five_disks()
        program.choose("Cmb_RestoreFile", "Job.INI")
        program.wait_for(lambda: int(program.text("Fld_Total") or 0) > 12, "the files of the set")
        asked, lost = self.restore_without(program, {3})
        self.assertEqual([1, 2, 3, 4, 5], asked)
        self.assertTrue(2 <= len(lost) <= 4, lost)
        records = self.pc.log.undated()
        for name in lost:
            self.assertIn(f"{name} is not restored: disk 3 is missing.", records)

    def test_five_disks_without_the_last_are_searched(self):
        program = self.back_up_five_disks()
        self.pc.put_in("a", self.disks[0])
        program.choose("Cmb_RestoreFile", "Job.INI")
        self.assertEqual(["last"], self.feed_without(program, {5}, lambda _: False))
        program.answer("Search", SEARCH)
        asked = self.feed_without(program, {5, 6}, self.files_are_listed)
        self.assertEqual([2, 3, 4, 5, 6], asked)
        asked, lost = self.restore_without(program, {5})
        self.assertEqual([1, 2, 3, 4], asked)
        self.assertTrue(1 <= len(lost) <= 5, lost)
        self.assertIn("The archive is incomplete: its last disk is missing. It was searched for its "
                      "files.", self.pc.log.undated())

    @staticmethod
    def files_are_listed(program):
        return (not program.exists("Frm_Restore_Cmd_Cancel") and program.enabled("TAB_Backup") and
                int(program.text("Fld_Total") or 0) > 6)

    @staticmethod
    def restore_is_over(program):
        return (program.exists("Frm_Restore_Cmd_Ok") and program.visible("Frm_Restore_Cmd_Ok") and
                program.text("Frm_Restore_Lbl_RestorePath") == "Restore Complete")


class Cancelled(Spanned):
    def test_cancel_at_each_prompt_leaves_the_disk_in_the_drive_empty(self):
        self.fill_source(2 * FLOPPY + FLOPPY // 3)
        program = self.start_backup()
        program.answer("Cancel", prompt(2))
        program.wait_for(lambda: self.backup_is_over(program, "Backup Cancelled by User"), "end")
        program.click("Frm_Backup_Cmd_Ok")
        self.assertEqual([], list(self.disks[0].iterdir()))

        program.wait_for(lambda: program.enabled("Cmd_Backup"), "the main window")
        program.click("Cmd_Backup")
        program.answer("Yes", SURE)
        program.wait_for_box(prompt(2))
        self.pc.put_in("a", self.new_disk())
        program.answer("Retry", prompt(2))
        program.answer("Cancel", prompt(3))
        program.wait_for(lambda: self.backup_is_over(program, "Backup Cancelled by User"), "end")
        self.assertEqual([], list(self.disks[1].iterdir()))
        self.assertEqual([ARCHIVE], [path.name for path in self.disks[0].iterdir()])
        program.click("Frm_Backup_Cmd_Ok")
        self.assertIn("1 disk holds a part of an archive that was not finished: A:\\JOB.zip",
                      self.pc.log.text())
        self.assertIn("Cancelled by User", self.pc.log.text())
        self.assertEqual("", self.pc.read_set("Job.INI")["RestoreFileName"])


class Unattended(Spanned):
    size = 2 * FLOPPY  # an unattended run wants 2,000,000 bytes free

    def test_second_disk_cannot_be_asked_for(self):
        self.fill_source(3 * FLOPPY)
        self.pc.write_set("Job.INI", BackupFiles="S:\\Documents\\*.*", BackupToDrive="A:\\",
                          MultiVolumeBackup="ON")
        self.assert_exit_code(harness.FAILED, self.pc.run_unattended("Job.INI"))
        self.assertEqual([], list(self.disks[0].iterdir()))
        self.assertIn("The archive needs disk 2, which an unattended run cannot ask for: A:\\JOB.zip.",
                      self.pc.log.text())
        self.assertNotIn("Successful Backup", self.pc.log.text())

    def test_one_disk_is_enough(self):
        self.pc.write_set("Job.INI", BackupFiles="S:\\Documents\\*.*", BackupToDrive="A:\\",
                          MultiVolumeBackup="ON")
        for _ in range(2):  # the second run replaces the archive of the first
            self.assert_exit_code(harness.COMPLETE, self.pc.run_unattended("Job.INI"))
            self.assertEqual([], archives.differences(self.source, self.disks[0] / ARCHIVE))
        self.assertEqual([ARCHIVE], [path.name for path in self.disks[0].iterdir()])


if __name__ == "__main__":
    harness.main()
