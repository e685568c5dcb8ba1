"""Real faults in the middle of things: a drive is pulled out, the program's own files are held by
another program or may not be written."""
import random
import subprocess

import archives
import harness
import window

MIB = 1024 * 1024
BIG = 24 * MIB
SURE = "Are you sure that you wish to start the backup now?"


class Faults(harness.EndToEndTest):
    def setUp(self):
        super().setUp()
        self.source = self.pc.drive("s")
        self.destination = self.pc.drive("e")
        self.target = self.pc.drive("t")
        (self.source / "letter.txt").write_text("Dear reader\n", encoding="utf-8")
        self.set = self.pc.write_set("Job.INI", BackupFiles="S:\\*.*", BackupToDrive="E:\\")
        self.assert_exit_code(harness.COMPLETE, self.pc.run_unattended("Job.INI"))
        self.earlier = archives.tree(self.destination)

    def grow_source(self):
        (self.source / "big.bin").write_bytes(random.Random(4).randbytes(BIG))

    def hold(self, path):
        """Another program opens a file for itself alone, until the test is over or it lets go."""
        holder = self.pc.start(self.pc.helper("lock_file.exe"), path, stdin=subprocess.PIPE,
                               stdout=subprocess.PIPE)
        self.assertEqual(b"locked", holder.stdout.readline().strip())
        return holder

    def let_go(self, holder):
        holder.stdin.close()
        self.assertEqual(0, self.pc.finish(holder))

    def written(self, path):
        """Waits until there are some bytes of a file."""
        harness.wait_until(lambda: path.exists() and path.stat().st_size >= MIB, f"part of {path}")

    def open_job(self):
        program = window.Attended(self.pc)
        program.choose("Cmb_BackupSet", "Job.INI")
        program.wait_for(lambda: program.text("Lbl_BackupFileName") == "JOB", "the set")
        return program


class PulledOut(Faults):
    def test_destination_in_the_middle_of_a_backup(self):
        self.grow_source()
        process = self.pc.start_unattended("Job.INI")
        self.written(self.destination / "JOB.zip.vantrel-new")
        self.pc.put_in("e", None)
        self.assert_exit_code(harness.FAILED, self.pc.finish(process))
        self.assertTrue(any("E:\\JOB.zip" in text for text in self.pc.log.undated()),
                        self.pc.log.undated())
        self.pc.put_in("e", self.destination)
        self.assertEqual(self.earlier["JOB.zip"], archives.tree(self.destination)["JOB.zip"])
        # The next run finds its disk again, and clears up.
        self.assert_exit_code(harness.COMPLETE, self.pc.run_unattended("Job.INI"))
        self.assertEqual(["JOB.zip"], sorted(archives.tree(self.destination)))
        self.assertEqual([], archives.differences(self.source, self.destination / "JOB.zip"))

    def test_destination_comes_back_and_the_backup_goes_on(self):
        self.grow_source()
        program = self.open_job()
        program.click("Cmd_Backup")
        program.answer("Yes", SURE)
        self.written(self.destination / "JOB.zip.vantrel-new")
        self.pc.put_in("e", None)
        program.wait_for_box("E:\\JOB.zip")
        self.pc.put_in("e", self.destination)
        program.answer("Retry")
        program.wait_for(lambda: program.visible("Frm_Backup_Cmd_Ok"), "the end")
        program.wait_for(lambda: program.text("Frm_Backup_Lbl_BackupPath") == "Backup Complete",
                         "the outcome")
        program.click("Frm_Backup_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assert_exit_code(0, program.close())
        self.assertEqual([], archives.differences(self.source, self.destination / "JOB.zip"))

    def test_archive_in_the_middle_of_a_restore(self):
        self.grow_source()
        self.assert_exit_code(harness.COMPLETE, self.pc.run_unattended("Job.INI"))
        (self.pc.application / "Vantrel.Cfg").write_bytes(b";\r\n" * 7 + b"\r\n")
        program = self.open_job()
        program.show_tab("Restore")
        program.choose("Cmb_RestoreFile", "Job.INI")
        program.wait_for(lambda: program.visible("TV_Restore") and
                         program.text("Fld_RestoreFile").endswith("JOB.zip"), "the listing")
        program.click("Cmd_RestoreTo")
        program.answer("OK")
        dialog = "Frm_RestoreWhere_"
        program.wait_for(lambda: program.visible(dialog + "Cmd_Ok"), "the folder dialog")
        program.wait_for(lambda: not program.enabled("TAB_Backup"), "the dialog in front")
        program.choose(dialog + "Dri_DriveList", "t:")
        program.click(dialog + "Cmd_Ok")
        program.wait_for(lambda: program.text("Fld_RestoreTo").startswith("T:"), "the destination")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        before = archives.tree(self.destination)
        program.click("Cmd_Restore")
        self.written(self.target / "big.bin")
        self.pc.put_in("e", None)
        # An open file outlives its drive letter here: the run may come to its end. Either way
        # it says so, and nothing restored is half of a file.
        def over():
            box = program.box()
            if box and "Cancel" in box.buttons:
                self.pc.put_in("e", self.destination)
                program.answer("Retry")
            return program.visible("Frm_Restore_Cmd_Ok")
        program.wait_for(over, "the end of the restore")
        self.pc.put_in("e", self.destination)
        program.wait_for(lambda: program.text("Frm_Restore_Lbl_RestorePath") == "Restore Complete",
                         "the outcome")
        program.click("Frm_Restore_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assert_exit_code(0, program.close())
        self.assertEqual(before, archives.tree(self.destination))
        self.assertEqual(archives.tree(self.source), archives.tree(self.target))


class OwnFiles(Faults):
    """What the program keeps beside itself is held, or may not be written."""

    def test_set_that_another_program_holds_is_not_backed_up_with_empty_values(self):
        before = self.set.read_bytes()
        holder = self.hold("V:\\Vantrel\\Job.INI")
        self.assert_exit_code(harness.FAILED, self.pc.run_unattended("Job.INI"))
        self.let_go(holder)
        self.assertTrue(self.pc.log.dated()[-2].startswith("Backup Failed - "), self.pc.log.text())
        self.assertEqual(before, self.set.read_bytes())
        self.assertEqual(self.earlier, archives.tree(self.destination))

    def save_in_editor(self, program, button):
        """Types a new archive name, has it saved, and answers the box that comes of it."""
        program.show_tab("INI Edit")
        program.click_entry("Fil_INI", "Job.INI")
        program.wait_for(lambda: "BackupFileName=JOB" in program.text("Fld_INI"), "the set")
        text = program.text("Fld_INI")
        at = text.replace("\r\n", "\n").index("BackupFileName=JOB") + len("BackupFileName=")
        at += text.replace("\r\n", "\n")[:at].count("\n")
        program.select_text("Fld_INI", at, at + len("JOB"))
        program.type("Fld_INI", "OTHER")
        program.wait_for(lambda: "BackupFileName=OTHER" in program.text("Fld_INI"), "the text")
        program.click("Cmd_Save")
        return program.answer(button)

    def assert_not_saved(self, program, before):
        box = self.save_in_editor(program, "OK")
        self.assertEqual(("Error", "Permission denied"), (box.title, box.text))
        self.assertTrue(program.enabled("Cmd_Save"))
        self.assertIn("BackupFileName=OTHER", program.text("Fld_INI"))
        self.assertEqual(before, self.set.read_bytes())

    def test_held_set_is_not_saved_and_it_says_so(self):
        before = self.set.read_bytes()
        program = self.open_job()
        program.show_tab("INI Edit")
        program.click_entry("Fil_INI", "Job.INI")
        program.wait_for(lambda: "BackupFileName=JOB" in program.text("Fld_INI"), "the set")
        program.select_text("Fld_INI", 0, 0)
        program.type("Fld_INI", ";")
        program.wait_for(lambda: program.enabled("Cmd_Save"), "the change")
        holder = self.hold("V:\\Vantrel\\Job.INI")
        program.click("Cmd_Save")
        box = program.answer("OK")
        self.assertEqual(("Error", "Permission denied"), (box.title, box.text))
        self.assertTrue(program.enabled("Cmd_Save"))
        self.let_go(holder)
        self.assertEqual(before, self.set.read_bytes())
        # The text is there still, and can be saved now.
        program.click("Cmd_Save")
        program.wait_for(lambda: not program.enabled("Cmd_Save"), "the save")
        self.assertEqual(b";;", self.set.read_bytes()[:2])
        self.assert_exit_code(0, program.close())

    def test_read_only_set_is_not_saved_and_it_says_so(self):
        before = self.set.read_bytes()
        self.set.chmod(0o444)
        program = self.open_job()
        self.assert_not_saved(program, before)
        program.close_box()
        program.wait_for_end()

    def test_held_log_ends_an_unattended_run_before_it_begins(self):
        log = self.pc.log.text()
        holder = self.hold("V:\\Vantrel\\Vantrel.Log")
        self.assert_exit_code(harness.FAILED, self.pc.run_unattended("Job.INI"))
        self.let_go(holder)
        self.assertEqual(log, self.pc.log.text())
        self.assertEqual(self.earlier, archives.tree(self.destination))

    def test_log_that_is_held_in_the_middle_is_told_and_the_archive_is_whole(self):
        program = self.open_job()
        program.click("Cmd_Backup")
        program.wait_for_box(SURE)
        holder = self.hold("V:\\Vantrel\\Vantrel.Log")
        program.answer("Yes", SURE)
        box = program.answer("OK")
        self.assertIn("Permission denied", box.text)
        program.wait_for_end()
        self.let_go(holder)
        self.assertEqual(self.earlier, archives.tree(self.destination))


if __name__ == "__main__":
    harness.main()
