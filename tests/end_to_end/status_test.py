"""What the main window shows its user to do next: the status bar, tool tips, the keyboard's way to the
first backup, and the folder tree's menu."""
import archives
import harness
import window


class MainWindow(harness.EndToEndTest):
    def wait_for_status(self, program, text):
        program.wait_for(lambda: program.status() == text, text)

    def wait_for_focus(self, program, name):
        program.wait_for(lambda: program.focus() == name, f"the keyboard at {name}")


class FirstStart(MainWindow):
    def test_keyboard_leads_to_the_first_backup_and_the_status_bar_names_each_step(self):
        root = self.pc.application.parent
        (root / "note.txt").write_text("note\n", encoding="utf-8")
        program = window.Attended(self.pc)
        self.wait_for_status(program, "There is no backup set yet. Press New Backup.")
        self.wait_for_focus(program, "Cmd_AddNew")
        program.keys("Enter", None)
        program.wait_for(lambda: program.visible("Frm_Input_Fld_Answer"), "the name")
        program.replace_text("Frm_Input_Fld_Answer", "Daily")
        program.keys("Enter", None)

        self.wait_for_status(
            program, "Multi Volume is on, but V:\\ is fixed. Press Change Settings, then ... at "
                     "Backup Options.")
        self.wait_for_focus(program, "Cmd_Change")
        program.keys("Enter", None)
        self.wait_for_status(
            program, "Multi Volume is on, but V:\\ is fixed. Press ... at Backup Options.")
        self.wait_for_focus(program, "Dri_DriveList")
        program.click("Cmd_Options_2")
        self.wait_for_focus(program, "Frm_BackupOptions_Chk_MultiVolumeBackup")
        program.keys("Space", None)
        program.keys("Enter", None)
        self.wait_for_status(program, "The set has no archive yet. Press Backup Now.")
        program.click("Cmd_Backup")
        program.answer("Yes", "Are you sure")
        program.wait_for(lambda: program.exists("Frm_Backup_Cmd_Ok") and
                         program.visible("Frm_Backup_Cmd_Ok"), "the end of the run")
        program.click("Frm_Backup_Cmd_Ok")
        program.wait_for(lambda: program.status().startswith("Last archive: V:\\"), "the archive")
        self.assertIn("DAILY.zip", program.status())
        self.assert_exit_code(0, program.close())
        made = list(root.glob("*/DAILY.zip"))
        self.assertEqual(1, len(made))
        self.assertEqual(["note.txt"], list(archives.entries(made[0])))

    def test_refusal_leads_to_the_button_that_solves_it(self):
        self.pc.drive("e")
        self.pc.write_set("Job.INI", BackupFiles="V:\\*.*", BackupToDrive="E:\\",
                          MultiVolumeBackup="ON")
        program = window.Attended(self.pc)
        program.choose("Cmb_BackupSet", "Job.INI")
        program.wait_for(lambda: program.text("Lbl_BackupFileName") == "JOB", "the set")
        program.click("Cmd_Backup")
        program.answer("OK", "Multi-Volume Flag is set to ON")
        self.wait_for_focus(program, "Cmd_Change")
        self.assertTrue(program.enabled("Cmd_Change"))
        self.assert_exit_code(0, program.close())


class ToolTips(MainWindow):
    def test_disabled_controls_show_theirs(self):
        program = window.Attended(self.pc)
        for name, tip in (("Cmd_Options_0", "Edit Options"),
                          ("Dri_DriveList", "Select the Drive that you wish to Backup"),
                          ("Dir_DirList", "Select a Folder that you wish to Backup")):
            self.assertFalse(program.enabled(name))
            program.hover("Fra_Backup")
            program.wait_for(lambda: program.tip() == "", "no tool tip")
            program.hover(name)
            program.wait_for(lambda: program.tip() == tip, tip)
        program.show_tab("INI Edit")
        program.hover("Cmd_Save")
        program.wait_for(lambda: program.tip() == "Save any Changes you have made to the "
                                                  "Configuration File", "the tip of Save")
        self.assert_exit_code(0, program.close())

    def test_status_line_that_is_shortened_is_complete_in_its_tip(self):
        folder = "E:\\" + "A folder with a rather long name\\" * 5
        self.pc.drive("e")
        self.pc.write_set("Job.INI", BackupFiles="V:\\*.*", BackupToDrive=folder)
        program = window.Attended(self.pc)
        program.choose("Cmb_BackupSet", "Job.INI")
        program.wait_for(lambda: program.status().startswith("Missing destination: E:\\..."),
                         "the shortened path")
        self.assertTrue(program.status().endswith("... at Backup Location."), program.status())
        program.hover("Sta_Mainmenu")
        program.wait_for(lambda: program.tip() == f"Missing destination: {folder}. Press Change "
                         "Settings, then ... at Backup Location.", "the tip")
        self.assert_exit_code(0, program.close())


class Menus(MainWindow):
    def assert_menu_below(self, program, place):
        program.wait_for(program.menu_is_open, "the menu")
        left, top, right, bottom = place
        at = program.menu_place()
        self.assertTrue(left <= at[0] <= right, (place, at))
        self.assertAlmostEqual(bottom, at[1], delta=(bottom - top) / 2)

    def close_menu(self, program):
        program.keys("Esc", None)
        program.wait_for(lambda: not program.menu_is_open(), "the menu to close")

    def test_keys_open_the_menu_of_the_tree_at_the_selected_folder(self):
        drive = self.pc.drive("t")
        for number in range(60):
            (drive / f"Folder {number:02}").mkdir()
        program = window.Attended(self.pc)
        program.show_tab("Secure Data")
        program.wait_for(lambda: program.visible("TV_SecureMode"), "the tree")
        program.choose("Dri_SecureMode", "t:")
        program.wait_for(lambda: program.visible("TV_SecureMode") and
                         len(program.tree("TV_SecureMode")) == 60, "the folders")
        program.click_tree("TV_SecureMode", "Folder 02")
        self.wait_for_status(program, "T:\\Folder 02 is not protected. The menu key or the right "
                                      "button changes it.")
        for keys in ("Apps", "Shift+F10"):
            program.keys(keys)
            self.assert_menu_below(program, program.tree_place("TV_SecureMode", "Folder 02"))
            self.close_menu(program)
        # One that has been scrolled away comes back for its menu.
        program.tree_place("TV_SecureMode", "Folder 59")
        program.keys("Apps")
        self.assert_menu_below(program, program.tree_place("TV_SecureMode", "Folder 02"))
        program.keys("A", None)
        self.wait_for_status(program, "T:\\Folder 02 is protected. The menu key or the right "
                                      "button changes it.")
        self.assert_exit_code(0, program.close())

    def test_keys_open_the_menu_of_the_file_list_at_the_selected_file(self):
        self.pc.write_set("Job.INI", BackupFiles="V:\\*.*", BackupToDrive="V:\\")
        program = window.Attended(self.pc)
        program.show_tab("INI Edit")
        program.click_entry("Fil_INI", "Job.INI")
        self.wait_for_focus(program, "Fil_INI")
        for keys in ("Apps", "Shift+F10"):
            program.keys(keys)
            program.wait_for(program.menu_is_open, "the menu")
            left, top, right, bottom = program.place("Fil_INI")
            at = program.menu_place()
            self.assertTrue(left < at[0] < right and top < at[1] < (top + bottom) / 2, at)
            self.close_menu(program)
        self.assert_exit_code(0, program.close())


class LargeDrives(MainWindow):
    def read(self, parents, children):
        """Shows the folders of a drive with so many of them; it is being read."""
        drive = self.pc.drive("t")
        for parent in range(parents):
            for child in range(children):
                (drive / f"{parent:03}" / f"{child:03}").mkdir(parents=True)
        program = window.Attended(self.pc)
        program.show_tab("Secure Data")
        program.wait_for(lambda: program.visible("TV_SecureMode"), "the tree")
        program.choose("Dri_SecureMode", "t:")
        return program

    def test_escape_stops_the_reading_and_the_folders_read_so_far_stay(self):
        program = self.read(100, 300)
        program.wait_for(lambda: program.status() == "Reading the folders of T:\\. Press Esc to stop.",
                         "the reading")
        program.keys("Esc", None)
        program.wait_for(lambda: program.visible("TV_SecureMode"), "the tree")
        read = len(program.tree("TV_SecureMode"))
        self.assertTrue(program.status().startswith(f"Reading was stopped after {read:,} folder"),
                        (read, program.status()))
        self.assertTrue(read < 30100, read)
        self.assert_exit_code(0, program.close())

    def test_keys_pressed_during_the_reading_are_handled_afterwards_with_ctrl(self):
        program = self.read(60, 60)
        program.keys("Ctrl+Tab")
        program.wait_for(lambda: program.shown_tab() == "About", "the next tab")
        self.assert_exit_code(0, program.close())


if __name__ == "__main__":
    harness.main(own_screens=True)
