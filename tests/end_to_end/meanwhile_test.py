"""What changes behind the back of the program while its window is open: folders that go, drives that
come, a log that somebody holds."""
import subprocess

import harness
import window


class Meanwhile(harness.EndToEndTest):
    """A computer with one set, whose source has two folders."""

    def setUp(self):
        super().setUp()
        self.source = self.pc.drive("s")
        (self.source / "Documents").mkdir()
        (self.source / "Gone").mkdir()
        self.destination = self.pc.drive("e")
        self.set_file = self.pc.write_set("Job.INI", BackupFiles="S:\\*.*", BackupToDrive="E:\\")

    def open(self):
        """Starts the program, selects the set and changes to the edit mode."""
        program = window.Attended(self.pc)
        program.choose("Cmb_BackupSet", "Job.INI")
        program.wait_for(lambda: program.text("Fld_BackupWhere") == "E:\\", "the set")
        program.click("Cmd_Change")
        program.wait_for(lambda: program.enabled("Dir_DirList"), "the edit mode")
        return program

    def assert_error(self, box, text):
        self.assertEqual(("Error", text), (box.title, box.text))
        self.assertEqual(["OK"], list(box.buttons))
        self.assertTrue(box.has_icon)


class Folders(Meanwhile):
    def assert_refused(self, program, name, act):
        """`act` opens Gone, which is not there any more, in a folder list."""
        (self.source / "Gone").rmdir()
        act()
        self.assert_error(program.answer("OK"), "Path not found: S:\\Gone")
        program.wait_for(lambda: "Gone" not in program.items(name), "the list without it")
        program.open_entry(name, "Documents")
        program.wait_for(lambda: program.selected(name) == "Documents" and
                         len(program.items(name)) == 2, "the other folder")

    def test_double_click_on_a_folder_that_is_gone(self):
        program = self.open()
        before = self.set_file.read_bytes()

        def double_click():
            program.open_entry("Dir_DirList", "Gone")
            program.wait_for_box()
            self.assertEqual(before, self.set_file.read_bytes())

        self.assert_refused(program, "Dir_DirList", double_click)
        self.assert_exit_code(0, program.close())

    def test_enter_on_a_folder_that_is_gone(self):
        program = self.open()

        def enter():
            program.click_entry("Dir_DirList", "Gone")
            program.wait_for(lambda: program.selected("Dir_DirList") == "Gone" and
                             program.focus() == "Dir_DirList", "the mark")
            program.keys("Enter")

        self.assert_refused(program, "Dir_DirList", enter)
        self.assert_exit_code(0, program.close())

    def test_folder_that_is_gone_in_the_destination_dialog(self):
        self.pc.write_set("Job.INI", BackupFiles="E:\\*.*", BackupToDrive="S:\\")
        program = window.Attended(self.pc)
        program.choose("Cmb_BackupSet", "Job.INI")
        program.wait_for(lambda: program.text("Fld_BackupWhere") == "S:\\", "the set")
        program.click("Cmd_Change")
        program.wait_for(lambda: program.enabled("Cmd_Navigate"), "the edit mode")
        program.click("Cmd_Navigate")
        name = "Frm_BackupWhere_Dir_DirList"
        program.wait_for(lambda: program.visible(name) and "Gone" in program.items(name),
                         "the dialog")
        self.assert_refused(program, name, lambda: program.open_entry(name, "Gone"))
        program.click("Frm_BackupWhere_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assertEqual("S:\\Documents", program.text("Fld_BackupWhere"))
        self.assert_exit_code(0, program.close())

    def test_unstorable_folder_beside_a_program_in_a_root(self):
        root = self.pc.application.parent
        for each in list(self.pc.application.iterdir()):
            each.rename(root / each.name)
        (root / "Ελληνικά").mkdir()
        program = window.Attended(self.pc, program="V:\\Vantrel.exe")
        program.click("Cmd_Change")
        program.wait_for(lambda: program.enabled("Dir_DirList"), "the edit mode")
        program.open_entry("Dir_DirList", "Ελληνικά")
        self.assertIn("Ελληνικά", program.answer("OK").text)
        program.wait_for(lambda: program.selected("Dir_DirList") == "V:\\", "the old folder")
        self.assert_exit_code(0, program.close())


class Drives(Meanwhile):
    def plug_in(self):
        """A drive T: with a folder Photos comes."""
        stick = self.pc.folder / "stick"
        (stick / "Photos").mkdir(parents=True)
        self.pc.put_in("t", stick)

    def test_drive_that_comes_later_is_in_the_list_when_it_opens(self):
        program = self.open()
        self.assertNotIn("t:", program.items("Dri_DriveList"))
        self.plug_in()
        program.click("Dri_DriveList")
        program.wait_for(lambda: "t:" in program.items("Dri_DriveList"), "the new drive")
        self.assertEqual("s:", program.selected("Dri_DriveList"))
        program.choose("Dri_DriveList", "t:")
        program.keys("Enter")
        program.wait_for(lambda: "Photos" in program.items("Dir_DirList"), "its folders")
        program.wait_for(lambda: self.pc.read_set("Job.INI")["BackupFiles"] == "T:\\*.*", "the set")
        self.assert_exit_code(0, program.close())

    def test_set_on_a_drive_that_comes_later_is_shown_when_the_tab_is_shown_again(self):
        self.set_file = self.pc.write_set("Job.INI", BackupFiles="T:\\Photos\\*.*",
                                          BackupToDrive="E:\\")
        program = window.Attended(self.pc)
        program.choose("Cmb_BackupSet", "Job.INI")
        self.assertIn("T:\\Photos\\*.*", program.answer("OK").text)
        program.wait_for(lambda: program.text("Fld_BackupWhere") == "E:\\", "the set")
        self.plug_in()
        program.show_tab("About")
        program.show_tab("Backup")
        program.wait_for(lambda: program.selected("Dir_DirList") == "Photos", "the folder")
        self.assertEqual("t:", program.selected("Dri_DriveList"))
        self.assertIsNone(program.box())
        self.assertEqual("T:\\Photos\\*.*", self.pc.read_set("Job.INI")["BackupFiles"])
        self.assert_exit_code(0, program.close())


class Log(Meanwhile):
    def test_closing_with_a_log_that_somebody_holds_keeps_the_selection(self):
        program = self.open()
        holder = self.pc.start(self.pc.helper("lock_file.exe"), "V:\\Vantrel\\Vantrel.Log",
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.assertEqual(b"locked", holder.stdout.readline().strip())
        program.close_box()
        self.assert_error(program.answer("OK"), "Permission denied")
        self.assert_exit_code(0, program.wait_for_end())
        holder.stdin.close()
        self.pc.finish(holder)
        again = window.Attended(self.pc)
        self.assertEqual("Job.INI", again.selected("Cmb_BackupSet"))
        self.assert_exit_code(0, again.close())

    def test_end_of_the_session_with_a_log_that_somebody_holds_waits_for_nobody(self):
        program = self.open()
        holder = self.pc.start(self.pc.helper("lock_file.exe"), "V:\\Vantrel\\Vantrel.Log",
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.assertEqual(b"locked", holder.stdout.readline().strip())
        self.assertTrue(program.end_session())
        self.assert_exit_code(0, program.wait_for_end())
        holder.stdin.close()
        self.pc.finish(holder)


if __name__ == "__main__":
    harness.main()
