"""A person backs up: everything by clicks and keys in the real windows."""
import random

import archives
import harness
import window

MIB = 1024 * 1024
SURE = "Are you sure that you wish to start the backup now?"


class Attended(harness.EndToEndTest):
    """A source to back up, and the steps that every test takes."""

    def setUp(self):
        super().setUp()
        self.source = self.pc.drive("s")
        letters = self.source / "Documents" / "Letters"
        letters.mkdir(parents=True)
        (letters / "to the editor.txt").write_text("Dear Sir\n", encoding="utf-8")
        (letters.parent / "empty").mkdir()
        (letters.parent / "accounts.csv").write_text("a;b;c\n" * 5000, encoding="utf-8")
        self.documents = letters.parent

    def open_set(self, destination="E:\\", source="S:\\Documents\\*.*", **keys):
        self.pc.write_set("Job.INI", BackupFiles=source, BackupToDrive=destination, **keys)
        program = window.Attended(self.pc)
        program.choose("Cmb_BackupSet", "Job.INI")
        return program

    @staticmethod
    def start(program):
        program.click("Cmd_Backup")
        program.answer("Yes", SURE)

    @staticmethod
    def wait_for_outcome(program, outcome):
        program.wait_for(lambda: program.visible("Frm_Backup_Cmd_Ok") and
                         program.text("Frm_Backup_Lbl_BackupPath") == outcome, outcome)

    def leave(self, program):
        program.click("Frm_Backup_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assert_exit_code(0, program.close())


class CompleteBackups(Attended):
    def test_set_written_by_hand_is_changed_in_the_window_and_backed_up(self):
        destination = self.pc.drive("e")
        (destination / "Kept").mkdir()
        self.pc.write_set("Weekly.INI", BackupFiles="V:\\*.*", BackupToDrive="V:\\",
                          BackupFileName="FIRST")
        program = window.Attended(self.pc)
        self.assertEqual(["Weekly.INI"], program.items("Cmb_BackupSet"))
        program.choose("Cmb_BackupSet", "Weekly.INI")
        program.wait_for(lambda: program.text("Fld_BackupWhere") == "V:\\", "the set")
        self.assertFalse(program.enabled("Dri_DriveList"))
        self.assertFalse(program.enabled("Cmd_Navigate"))

        # What: another drive, and a folder on it.
        program.click("Cmd_Change")
        program.wait_for(lambda: program.enabled("Dri_DriveList"), "the edit mode")
        self.assertFalse(program.enabled("Cmd_Change"))
        program.choose("Dri_DriveList", "s:")
        program.wait_for(lambda: "Documents" in program.items("Dir_DirList"), "the new drive")
        program.open_entry("Dir_DirList", "Documents")
        program.wait_for(lambda: "Letters" in program.items("Dir_DirList"), "the opened folder")
        self.assertEqual("S:\\Documents\\*.*".upper(),
                         self.pc.read_set("Weekly.INI")["BackupFiles"].upper())

        # Where: a folder of another drive, made in the dialog.
        program.click("Cmd_Navigate")
        program.wait_for(lambda: program.visible("Frm_BackupWhere_Cmd_Ok"), "the dialog")
        self.assertFalse(program.enabled("TAB_Backup"))
        program.choose("Frm_BackupWhere_Dri_DriveList", "e:")
        program.wait_for(lambda: "Kept" in program.items("Frm_BackupWhere_Dir_DirList"), "e:")
        program.click("Frm_BackupWhere_Cmd_NewFolder")
        program.wait_for(lambda: program.visible("Frm_Input_Fld_Answer"), "the input box")
        self.assertEqual("New Folder", program.text("Frm_Input_Fld_Answer"))
        program.replace_text("Frm_Input_Fld_Answer", "Archive")
        program.wait_for(lambda: program.text("Frm_Input_Fld_Answer") == "Archive", "the name")
        program.keys("Enter", "Frm_Input_Fld_Answer")
        program.wait_for(lambda: (destination / "Archive").is_dir(), "the new folder")
        program.wait_for(lambda: program.enabled("Frm_BackupWhere_Cmd_Ok"), "the dialog again")
        program.click("Frm_BackupWhere_Cmd_Ok")
        program.wait_for(lambda: program.text("Fld_BackupWhere") == "E:\\Archive", "the label")
        self.assertEqual("E:\\ARCHIVE\\", self.pc.read_set("Weekly.INI")["BackupToDrive"])

        # Options: another name, stored in capitals.
        program.wait_for(lambda: program.enabled("Cmd_Options_1"), "the main window again")
        program.click("Cmd_Options_1")
        program.wait_for(lambda: program.visible("Frm_BackupOptions_Cmd_Ok"), "the options")
        self.assertTrue(program.checked("Frm_BackupOptions_Chk_BackupSubDirectories"))
        program.replace_text("Frm_BackupOptions_Fld_BackupFileName", "weekly")
        program.wait_for(
            lambda: program.text("Frm_BackupOptions_Fld_BackupFileName") == "weekly", "the name")
        program.click("Frm_BackupOptions_Cmd_Ok")
        program.wait_for(lambda: program.text("Lbl_BackupFileName") == "WEEKLY", "the new name")
        self.assertEqual("SubDir=ON, MultiVolume=OFF, Time=OFF", program.text("Fld_BackupOptions"))

        # Now.
        program.wait_for(lambda: program.enabled("Cmd_Backup"), "the main window again")
        program.click("Cmd_Backup")
        question = program.answer("Yes", SURE)
        self.assertEqual(("Vantrel", "No", ["Yes", "No"]),
                         (question.title, question.default, list(question.buttons)))
        self.wait_for_outcome(program, "Backup Complete")
        self.assertEqual([], program.items("Frm_Backup_Lst_Details"))
        self.assertEqual((0, 0), (program.value("Frm_Backup_PB_Folder"),
                                  program.value("Frm_Backup_PB_File")))
        self.assertFalse(program.visible("Frm_Backup_Cmd_Cancel"))
        program.click("Frm_Backup_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assertEqual([], archives.differences(
            self.documents, destination / "Archive" / "WEEKLY.zip"))
        stored = self.pc.read_set("Weekly.INI")
        self.assertEqual(("E:\\ARCHIVE\\", "WEEKLY.zip"),
                         (stored["RestoreFromDrive"], stored["RestoreFileName"]))

        # The system menu closes it; the next start finds the set selected.
        self.assert_exit_code(0, program.close())
        self.assertIn("Application Closed - Unloaded by Close on Control menu.",
                      self.pc.log.dated())
        again = window.Attended(self.pc)
        again.wait_for(lambda: again.selected("Cmb_BackupSet") == "Weekly.INI", "the set")
        self.assertEqual("WEEKLY", again.text("Lbl_BackupFileName"))
        self.assert_exit_code(0, again.close())

    def test_no_to_the_question_changes_nothing(self):
        destination = self.pc.drive("e")
        program = self.open_set()
        before = self.pc.log.text()
        program.click("Cmd_Backup")
        program.answer("No", SURE)
        self.assertFalse(program.exists("Frm_Backup_Cmd_Ok"))
        self.assertEqual(before, self.pc.log.text())
        self.assertEqual([], list(destination.iterdir()))
        self.assert_exit_code(0, program.close())

    def test_one_volume_onto_a_floppy_is_refused(self):
        self.pc.drive("e", "floppy", size=1440 * 1024)
        program = self.open_set()
        program.click("Cmd_Backup")
        box = program.answer("OK", "Multi-Volume Flag is set to OFF")
        self.assertEqual("Unable to continue as the Multi-Volume Flag is set to OFF and a Backup "
                         "File is about to be created on a Removable Drive", box.text)
        self.assertEqual(("Backup", True), (box.title, box.has_icon))
        self.assertFalse(program.exists("Frm_Backup_Cmd_Ok"))
        self.assert_exit_code(0, program.close())

    def test_many_volumes_onto_a_fixed_drive_are_refused(self):
        self.pc.drive("e")
        program = self.open_set(MultiVolumeBackup="ON")
        program.click("Cmd_Backup")
        box = program.answer("OK", "Multi-Volume Flag is set to ON")
        self.assertEqual("Unable to continue as the Multi-Volume Flag is set to ON and a Backup "
                         "File is about to be created on a Non-Removable Drive", box.text)
        self.assert_exit_code(0, program.close())

    def test_options_refuse_many_volumes_on_a_fixed_drive_and_stay_open(self):
        self.pc.drive("e")
        self.pc.drive("a", "floppy", size=1440 * 1024)
        program = self.open_set()
        program.click("Cmd_Change")
        program.wait_for(lambda: program.enabled("Cmd_Options_2"), "the edit mode")
        program.click("Cmd_Options_2")
        program.wait_for(lambda: program.visible("Frm_BackupOptions_Cmd_Ok"), "the options")
        program.click("Frm_BackupOptions_Chk_MultiVolumeBackup")
        program.wait_for(
            lambda: program.checked("Frm_BackupOptions_Chk_MultiVolumeBackup"), "the mark")
        program.click("Frm_BackupOptions_Cmd_Ok")
        box = program.answer("OK", "Unable to Save as you have selected the Multi Volume")
        self.assertTrue(box.text.endswith("are;\r\nA: ") or box.text.endswith("are;\nA: "), box)
        self.assertTrue(program.visible("Frm_BackupOptions_Cmd_Ok"))
        program.click("Frm_BackupOptions_Cmd_Cancel")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assertEqual("OFF", self.pc.read_set("Job.INI")["MultiVolumeBackup"])
        self.assert_exit_code(0, program.close())


class RunsThatDoNotComplete(Attended):
    """The earlier archive stays byte for byte, whatever ends a run."""

    def setUp(self):
        super().setUp()
        self.destination = self.pc.drive("e", size=24 * MIB)
        (self.destination / "JOB.zip").write_bytes(b"the earlier archive")

    def grow(self, megabytes):
        """Bytes that do not shrink."""
        block = random.Random(4).randbytes(MIB)
        with open(self.documents / "big.bin", "wb") as big:
            for _ in range(megabytes):
                big.write(block)

    def assert_cancelled(self):
        self.assertEqual({"JOB.zip": b"the earlier archive"}, archives.tree(self.destination))
        self.assertEqual("", self.pc.read_set("Job.INI")["RestoreFileName"])
        self.assertEqual(["Finished Backup Job.INI", "Cancelled by User"],
                         [text for text in self.pc.log.dated() if "Closed" not in text][-2:])

    def start_long_run(self):
        """A run that is in the middle of its work, with a destination that could take it all."""
        self.destination = self.pc.drive("h")
        (self.destination / "JOB.zip").write_bytes(b"the earlier archive")
        harness.write_endless_file(self.documents / "big.bin")
        program = self.open_set(destination="H:\\")
        self.start(program)
        program.wait_for(lambda: program.exists("Frm_Backup_Lbl_Figures") and
                         " of 256 GB" in program.text("Frm_Backup_Lbl_Figures"), "the first figures")
        return program

    def test_full_destination_retried_after_space_was_made_succeeds(self):
        ballast = self.destination / "ballast.bin"
        ballast.write_bytes(bytes(20 * MIB))
        self.grow(8)
        program = self.open_set()
        self.start(program)
        box = program.wait_for_box("E:")
        self.assertEqual(["Retry", "Cancel"], list(box.buttons))
        self.assertIn("full", box.text.lower())
        ballast.unlink()
        program.answer("Retry")
        self.wait_for_outcome(program, "Backup Complete")
        self.assertEqual([], archives.differences(self.documents, self.destination / "JOB.zip"))
        self.assertEqual("Successful Backup", self.pc.log.dated()[-1])
        self.leave(program)

    def assert_cancel_leaves_the_earlier_archive(self, question):
        program = self.open_set()
        self.start(program)
        program.answer("Cancel", question)
        self.wait_for_outcome(program, "Backup Cancelled by User")
        self.leave(program)
        self.assert_cancelled()

    def test_full_destination_cancelled_leaves_the_earlier_archive(self):
        self.grow(40)
        self.assert_cancel_leaves_the_earlier_archive("full")

    def test_write_protected_destination_asks_and_cancels(self):
        self.pc.make_read_only(self.destination)
        self.assert_cancel_leaves_the_earlier_archive("E:")

    def test_nothing_to_back_up_asks_and_cancels(self):
        program = self.open_set(source="S:\\Documents\\empty\\*.*")
        self.start(program)
        box = program.answer("Cancel")
        self.assertEqual(["Retry", "Cancel"], list(box.buttons))
        self.wait_for_outcome(program, "Backup Cancelled by User")
        self.leave(program)
        self.assert_cancelled()

    def test_cancel_button(self):
        program = self.start_long_run()
        program.click("Frm_Backup_Cmd_Cancel")
        self.wait_for_outcome(program, "Backup Cancelled by User")
        self.leave(program)
        self.assert_cancelled()

    def test_escape_cancels_then_closes(self):
        program = self.start_long_run()
        program.keys("Esc", "Frm_Backup_Cmd_Cancel")
        self.wait_for_outcome(program, "Backup Cancelled by User")
        program.keys("Esc", "Frm_Backup_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assert_exit_code(0, program.close())
        self.assert_cancelled()

    def test_close_box_cancels_then_closes(self):
        program = self.start_long_run()
        program.close_box("Frm_Backup_Cmd_Cancel")
        self.wait_for_outcome(program, "Backup Cancelled by User")
        program.close_box("Frm_Backup_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assert_exit_code(0, program.close())
        self.assert_cancelled()

    def test_end_of_the_session_cancels_and_leaves(self):
        program = self.start_long_run()
        self.assertTrue(program.end_session())
        self.assert_exit_code(0, program.wait_for_end())
        self.assert_cancelled()
        self.assertEqual("Application Closed - Unloaded by Windows O/S is ending.",
                         self.pc.log.dated()[-1])

    def test_main_window_cannot_be_closed_during_a_run(self):
        program = self.start_long_run()
        program.close_box()
        program.click("Frm_Backup_Cmd_Cancel")
        self.wait_for_outcome(program, "Backup Cancelled by User")
        self.leave(program)
        self.assert_cancelled()


if __name__ == "__main__":
    harness.main()
