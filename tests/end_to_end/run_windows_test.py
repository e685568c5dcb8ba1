"""What the windows of a run show while it works and when it has ended."""
import random
import re
import subprocess

import harness
import window

MIB = 1024 * 1024
SURE = "Are you sure that you wish to start the backup now?"
FLOPPY = 1440 * 1024
NUMBER = r"\d{1,3}(?:,\d{3})*"
SIZE = r"(?:\d\.\d|" + NUMBER + r") (?:bytes?|KB|MB|GB)"
FIGURES = re.compile(rf"({NUMBER}) of ({NUMBER}) files?, {SIZE} of {SIZE}"
                     rf"(?:, finishing|(?:, {SIZE}/s)?(?:, (?:\d+ min )?(?:\d+ s )?left)?)$")


class RunWindows(harness.EndToEndTest):
    def setUp(self):
        super().setUp()
        self.random = random.Random(1)
        self.source = self.pc.drive("s") / "Documents"
        self.source.mkdir()

    def fill(self, name, size):
        """A file of bytes that do not shrink."""
        with open(self.source / name, "wb") as file:
            for start in range(0, size, MIB):
                file.write(self.random.randbytes(min(MIB, size - start)))

    def start_backup(self, destination="E:\\", **keys):
        self.pc.write_set("Job.INI", BackupFiles="S:\\Documents\\*.*",
                          BackupToDrive=destination, **keys)
        program = window.Attended(self.pc)
        program.choose("Cmb_BackupSet", "Job.INI")
        program.click("Cmd_Backup")
        program.answer("Yes", SURE)
        return program

    def wait_for_end(self, program, outcome, run="Backup"):
        """Waits for OK; returns the figures, the location and what was left out."""
        status = f"Frm_{run}_Lbl_{run}Path"
        program.wait_for(lambda: program.visible(f"Frm_{run}_Cmd_Ok") and
                         program.text(status) == outcome, outcome)
        labels = [f"Frm_{run}_Lbl_{name}" for name in ("Figures", "Location", "LeftOut")]
        program.wait_for(lambda: program.text(labels[1]) != "", "the summary")
        self.assertTrue(all(program.visible(label) for label in labels))
        return [program.text(label) for label in labels]

    def leave(self, program, run="Backup"):
        program.click(f"Frm_{run}_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assert_exit_code(0, program.close())

    def restore(self, program):
        """Restores the set's archive into T:\\."""
        program.show_tab("Restore")
        program.choose("Cmb_RestoreFile", "Job.INI")
        program.wait_for(lambda: program.text("Fld_Total") not in ("", "0"), "the entries")
        program.click("Cmd_RestoreTo")
        program.answer("OK", "PLEASE SELECT THE RESTORE LOCATION WITH CARE!")
        program.wait_for(lambda: program.visible("Frm_RestoreWhere_Cmd_Ok"), "the folder dialog")
        program.choose("Frm_RestoreWhere_Dri_DriveList", "t:")
        program.click("Frm_RestoreWhere_Cmd_Ok")
        program.wait_for(lambda: program.text("Fld_RestoreTo") == "T:\\" and
                         program.enabled("Cmd_Restore"), "the destination")
        program.click("Cmd_Restore")

    def test_small_files_move_the_figures_and_the_overall_bar(self):
        self.pc.drive("e")
        count = 6000
        for number in range(count):
            folder = self.source / f"{number // 300}"
            folder.mkdir(exist_ok=True)
            (folder / f"{number}.txt").write_text(f"note {number}\n", encoding="utf-8")
        self.fill("large.bin", 30 * MIB)
        program = self.start_backup()
        lines, percents = set(), set()

        def over():
            lines.add(program.text("Frm_Backup_Lbl_Figures"))
            percents.add(program.value("Frm_Backup_PB_Folder"))
            return program.visible("Frm_Backup_Cmd_Ok")
        program.wait_for(lambda: program.exists("Frm_Backup_Lbl_Figures"), "the window of the run")
        program.wait_for(over, "the end of the run")
        seen = [match for match in map(FIGURES.match, lines) if match]
        self.assertEqual({f"{count + 1:,}"}, {match[2] for match in seen}, lines)
        # How many are seen depends on how often a busy computer lets this program look.
        self.assertGreater(len({match[1] for match in seen}), 1, lines)
        self.assertNotEqual([], [each for each in percents if 0 < each < 100], percents)
        figures, location, left_out = self.wait_for_end(program, "Backup Complete")
        self.assertRegex(figures, rf"^{count + 1:,} files, 30 MB, archive of 3\d MB, \d+ s$")
        self.assertEqual(("Archive: E:\\JOB.zip", ""), (location, left_out))
        self.assertFalse(program.visible("Frm_Backup_Lbl_BackingUp"))
        self.assertEqual("Backing Up Files.......", program.text("Frm_Backup_Lbl_BackingUp"))
        self.leave(program)

    def test_locked_file_is_in_the_summary(self):
        self.pc.drive("e")
        self.fill("ledger.xls", 3000)
        self.fill("letter.txt", 2000)
        holder = self.pc.start(self.pc.helper("lock_file.exe"), "S:\\Documents\\ledger.xls",
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.assertEqual(b"locked", holder.stdout.readline().strip())
        program = self.start_backup()
        figures, _, left_out = self.wait_for_end(program, "Backup Complete")
        self.assertRegex(figures, r"^1 file, 2\.0 KB, archive of 2\.\d KB, \d+ s$")
        self.assertEqual("1 file left out: ledger.xls. See the Log tab.", left_out)
        self.leave(program)

    def test_cancelled_run_has_the_earlier_archive(self):
        destination = self.pc.drive("e")
        (destination / "JOB.zip").write_bytes(b"the earlier archive")
        harness.write_endless_file(self.source / "large.bin")
        program = self.start_backup()
        program.wait_for(lambda: program.exists("Frm_Backup_Lbl_Figures") and
                         " of 256 GB" in program.text("Frm_Backup_Lbl_Figures"), "the first figures")
        program.click("Frm_Backup_Cmd_Cancel")
        figures, location, _ = self.wait_for_end(program, "Backup Cancelled by User")
        self.assertRegex(figures, rf"^Cancelled after 0 of 1 file, {SIZE} of 256 GB, \d+ s$")
        self.assertEqual("Earlier archive, unchanged: E:\\JOB.zip", location)
        self.leave(program)
        self.assertEqual(b"the earlier archive", (destination / "JOB.zip").read_bytes())

    def test_full_disk_leaves_no_archive(self):
        self.pc.drive("e", size=8 * MIB)
        self.fill("large.bin", 20 * MIB)
        program = self.start_backup()
        program.answer("Cancel", "full")
        _, location, _ = self.wait_for_end(program, "Backup Cancelled by User")
        self.assertEqual("No archive was made: E:\\JOB.zip", location)
        self.leave(program)

    def test_disk_that_is_full_at_the_end_of_a_run_is_named_with_the_space(self):
        """The entries fit, the archive's directory does not."""
        self.pc.drive("e", size=4 * MIB)
        count = 12000
        for number in range(count):
            (self.source / f"{number:0200}.txt").write_bytes(b"a")
        program = self.start_backup()
        box = program.answer("Cancel", "full")
        self.assertRegex(box.text, r"^The disk in drive E: is full: E:\\JOB\.zip needs about "
                                   rf"{SIZE} more \({SIZE} free\)\.$")
        figures, location, _ = self.wait_for_end(program, "Backup Cancelled by User")
        self.assertTrue(figures.startswith(f"Cancelled after {count:,} of {count:,} files"), figures)
        self.assertEqual("No archive was made: E:\\JOB.zip", location)
        self.leave(program)

    def test_number_of_the_disk_is_shown_while_it_is_asked_for(self):
        self.pc.drive("a", "floppy", size=FLOPPY)
        self.fill("large.bin", 3 * MIB)
        program = self.start_backup("A:\\", MultiVolumeBackup="ON")
        for number in (2, 3):
            program.wait_for_box(f"disk {number} ")
            self.assertRegex(program.text("Frm_Backup_Lbl_Figures"),
                             rf"^0 of 1 file, {SIZE} of 3\.0 MB, waiting for disk {number}$")
            self.pc.put_in("a", self.pc.disk(f"floppy_{number}", FLOPPY))
            program.answer("Retry", f"disk {number} ")
        figures, location, _ = self.wait_for_end(program, "Backup Complete")
        self.assertRegex(figures, r"^1 file, 3\.0 MB, archive of 3\.0 MB, \d+ s$")
        self.assertEqual("Archive: A:\\JOB.zip", location)
        self.leave(program)

    def test_damaged_file_is_in_the_summary_of_a_restore(self):
        archive = self.pc.drive("e") / "JOB.zip"
        self.pc.drive("t")
        for name in ("a.bin", "b.bin", "c.bin"):
            self.fill(name, 20000)
        self.pc.write_set("Job.INI", BackupFiles="S:\\Documents\\*.*", BackupToDrive="E:\\")
        self.assert_exit_code(harness.COMPLETE, self.pc.run_unattended("Job.INI"))
        data = bytearray(archive.read_bytes())
        data[len(data) // 2] ^= 255
        archive.write_bytes(data)
        program = window.Attended(self.pc)
        self.restore(program)
        figures, location, left_out = self.wait_for_end(program, "Restore Complete", "Restore")
        self.assertRegex(figures, r"^2 files, 39 KB, \d+ s$")
        self.assertEqual(("Restored to: T:\\", "1 file left out: b.bin. See the Log tab."),
                         (location, left_out))
        self.leave(program, "Restore")


if __name__ == "__main__":
    harness.main()
