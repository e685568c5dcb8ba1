"""The main window with a person before it: its tabs, its keys, its ways out, and bad input."""
import re
import subprocess

import harness
import log_file
import window


class MainWindow(harness.EndToEndTest):
    """A computer with one set that could be backed up."""

    def setUp(self):
        super().setUp()
        self.source = self.pc.drive("s")
        (self.source / "Documents" / "Letters").mkdir(parents=True)
        (self.source / "note.txt").write_text("note\n", encoding="utf-8")
        self.destination = self.pc.drive("e")

    def open(self, selected="Job.INI", **keys):
        """Starts the program with Job.INI and selects it."""
        self.pc.write_set("Job.INI", **{"BackupFiles": "S:\\*.*", "BackupToDrive": "E:\\", **keys})
        program = window.Attended(self.pc)
        if selected:
            program.choose("Cmb_BackupSet", selected)
        return program

    def shown(self, program):
        program.wait_for(lambda: program.text("Fld_BackupWhere") == "E:\\", "the set")
        return program

    def assert_box(self, box, title, text):
        self.assertEqual((title, text.replace("\r\n", "\n")),
                         (box.title, box.text.replace("\r\n", "\n")))
        self.assertEqual(["OK"], list(box.buttons))
        self.assertTrue(box.has_icon)


class Events(MainWindow):
    def test_each_control_of_the_backup_tab_does_what_it_is_for(self):
        self.pc.write_set("Other.INI", BackupFiles="S:\\Documents\\*.*", BackupToDrive="E:\\",
                          BackupFileName="OTHER")
        program = self.shown(self.open())

        def opens(button, dialog):
            program.click(button)
            program.wait_for(lambda: program.visible(f"{dialog}_Cmd_Cancel"), dialog)
            program.click(f"{dialog}_Cmd_Cancel")
            program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")

        def edit_mode(on):
            names = ["Cmd_Options_0", "Cmd_Options_1", "Cmd_Options_2", "Dri_DriveList",
                     "Dir_DirList", "Cmd_Navigate"]
            program.wait_for(lambda: program.enabled("Cmd_Change") != on, "the edit mode")
            self.assertEqual([on] * 6, [program.enabled(name) for name in names])

        edit_mode(False)
        program.click("Cmd_Change")
        edit_mode(True)
        for button in ("Cmd_Options_0", "Cmd_Options_1", "Cmd_Options_2"):
            opens(button, "Frm_BackupOptions")
        opens("Cmd_Navigate", "Frm_BackupWhere")
        # One click marks, two open; the drive list leads to the root of another drive.
        program.click_entry("Dir_DirList", "Documents")
        program.wait_for(lambda: program.selected("Dir_DirList") == "Documents", "the mark")
        self.assertNotIn("Letters", program.items("Dir_DirList"))
        program.open_entry("Dir_DirList", "Documents")
        program.wait_for(lambda: "Letters" in program.items("Dir_DirList"), "the opened folder")
        self.assertEqual("S:\\DOCUMENTS\\*.*",
                         self.pc.read_set("Job.INI")["BackupFiles"].upper())
        program.choose("Dri_DriveList", "v:")
        program.wait_for(lambda: "Vantrel" in program.items("Dir_DirList"), "the other drive")
        self.assertEqual("V:\\*.*", self.pc.read_set("Job.INI")["BackupFiles"])
        # Another set ends the edit mode and shows its own.
        program.choose("Cmb_BackupSet", "Other.INI")
        program.wait_for(lambda: program.text("Lbl_BackupFileName") == "OTHER", "the other set")
        edit_mode(False)
        self.assertIn("Documents", program.items("Dir_DirList"))
        # Coming back to the tab reads the set again.
        program.show_tab("About")
        self.pc.write_set("Other.INI", BackupFiles="S:\\Documents\\*.*", BackupToDrive="E:\\",
                          BackupFileName="CHANGED")
        program.show_tab("Backup")
        program.wait_for(lambda: program.text("Lbl_BackupFileName") == "CHANGED", "the new name")
        self.assert_exit_code(0, program.close())

    def test_about_tab_shows_the_version_and_opens_the_web_address(self):
        registry = self.pc.prefix / "system.reg"
        text = registry.read_text(encoding="utf-8", errors="surrogateescape")
        text += ('\n[Software\\\\Classes\\\\https\\\\shell\\\\open\\\\command] 1\n'
                 '@="cmd /c echo %1>V:\\\\opened.txt"\n')
        registry.write_text(text, encoding="utf-8", errors="surrogateescape")
        program = self.open(selected=None)
        program.show_tab("About")
        self.assertEqual(("3.0", "6"), (program.text("Fld_Version"), program.text("Fld_Build")))
        before = program.picture("Lbl_WebAddress")
        program.wait_for(lambda: program.picture("Lbl_WebAddress") != before, "the flashing")
        program.click("Lbl_WebAddress")
        opened = self.pc.application.parent / "opened.txt"
        program.wait_for(lambda: opened.exists() and opened.read_text(encoding="ascii").strip(),
                         "the browser")
        self.assertEqual(program.text("Lbl_WebAddress"),
                         opened.read_text(encoding="ascii").strip())
        self.assertIsNone(program.box())
        self.assert_exit_code(0, program.close())


class Splash(MainWindow):
    def test_it_is_there_before_anything_is_written_and_gone_with_the_main_window(self):
        program = window.Attended(self.pc, wait=False)
        program.wait_for(lambda: program.exists("Frm_Splash_Lbl_Version") and
                         program.visible("Frm_Splash_Lbl_Version"), "the splash")
        self.assertEqual("", self.pc.log.text())
        self.assertFalse(program.exists("TAB_Backup"))
        self.assertEqual("Version " + log_file.version(), program.text("Frm_Splash_Lbl_Version"))
        program.wait_for(lambda: program.exists("TAB_Backup") and program.visible("TAB_Backup"),
                         "the main window")
        program.wait_for(lambda: not program.exists("Frm_Splash_Lbl_Version"), "its end")
        self.assertEqual(log_file.started("Nil"), self.pc.log.records())
        self.assert_exit_code(0, program.close())


class Keys(MainWindow):
    def test_ctrl_tab_goes_through_the_tabs_both_ways(self):
        program = self.open(selected=None)
        for caption in [*window.TABS[1:], window.TABS[0]]:
            program.keys("Ctrl+Tab")
            program.wait_for(lambda: program.shown_tab() == caption, caption)
        for caption in reversed(window.TABS):
            program.keys("Ctrl+Shift+Tab")
            program.wait_for(lambda: program.shown_tab() == caption, caption)
        self.assert_exit_code(0, program.close())

    def test_access_keys_and_the_order_of_the_tab_key(self):
        program = self.shown(self.open())
        program.keys("Alt+C")
        program.wait_for(lambda: not program.enabled("Cmd_Change"), "the edit mode")
        program.keys("Alt+L")
        program.wait_for(lambda: program.focus() == "Dri_DriveList", "the drive list")
        order = ["Dir_DirList", "Cmd_Options_0", "Cmd_Options_1", "Cmd_Navigate", "Cmd_Options_2",
                 "Cmd_AddNew", "Cmd_Backup", "Cmd_Exit_0", "TAB_Backup", "Cmb_BackupSet"]
        for name in order:
            program.keys("Tab")
            program.wait_for(lambda: program.focus() == name, name)
        # Enter opens what is marked in the folder list.
        program.click_entry("Dir_DirList", "Documents")
        program.wait_for(lambda: program.focus() == "Dir_DirList", "the folder list")
        program.keys("Enter")
        program.wait_for(lambda: "Letters" in program.items("Dir_DirList"), "the opened folder")
        program.keys("Alt+E")
        self.assert_exit_code(0, program.wait_for_end())

    def test_a_change_of_dpi_while_open_rescales_everything(self):
        program = self.shown(self.open())
        names = [name for name in window.CONTROLS
                 if 1050 <= window.CONTROLS[name] <= 1075 and program.exists(name)]
        page_before = program.place("Fra_Backup")
        before = {name: program.place(name) for name in names}
        for dpi in (144, 192, 120, 96):
            program.set_dpi(dpi)
            page = program.place("Fra_Backup")
            # A dialog's measure is its font, whose proportions may differ a little.
            scale = [(page[2 + axis] - page[axis]) / (page_before[2 + axis] - page_before[axis])
                     for axis in (0, 1)]
            for each in scale:
                self.assertAlmostEqual(dpi / 96, each, delta=0.12 * dpi / 96)
            for name, old in before.items():
                # Where a combo box ends is the business of its font.
                edges = 2 if name.startswith(("Cmb_", "Dri_")) else 4
                wanted = [(value - start) * factor for value, start, factor in
                          zip(old, page_before[:2] * 2, scale * 2)][:edges]
                found = [value - start for value, start in zip(program.place(name), page[:2] * 2)]
                for one, other in zip(wanted, found):
                    self.assertAlmostEqual(one, other, delta=3 * dpi / 96, msg=f"{name} at {dpi}")
        self.assert_exit_code(0, program.close())


class SizeAndPosition(MainWindow):
    PLACE = (60, 40, 960, 760)  # left, top, right, bottom

    def place_it(self, program):
        left, top, right, bottom = self.PLACE
        program.move_window(left, top, right - left, bottom - top)
        program.wait_for(lambda: program.window_place("TAB_Backup") == self.PLACE, "the new place")

    def stored(self):
        text = (self.pc.prefix / "user.reg").read_text(encoding="utf-8", errors="replace")
        return re.findall(r'^"(Frm_\w+ Placement)"="(.*)"', text, re.M)

    def test_main_window_comes_back_as_it_was(self):
        program = self.shown(self.open())
        designed = program.place("Dir_DirList")
        self.place_it(program)
        larger = program.place("Dir_DirList")
        self.assertLess(designed[2] - designed[0], larger[2] - larger[0])
        self.assertLess(designed[3] - designed[1], larger[3] - larger[1])
        self.assert_exit_code(0, program.close())
        again = self.shown(window.Attended(self.pc))
        self.assertEqual(self.PLACE, again.window_place("TAB_Backup"))
        self.assertEqual(larger, again.place("Dir_DirList"))
        again.maximize()
        again.wait_for(lambda: again.place("Dir_DirList")[3] > larger[3], "the maximized window")
        self.assert_exit_code(0, again.close())
        # Without a window manager, as here, the system gives it the size of a maximized window only
        # when the user maximizes it.
        third = self.shown(window.Attended(self.pc))
        third.wait_for(third.maximized, "the maximized window")
        self.assert_exit_code(0, third.close())

    def test_run_window_can_be_resized_and_comes_back_in_its_size(self):
        program = self.shown(self.open())

        def run(look):
            program.click("Cmd_Backup")
            program.answer("Yes", "Are you sure")
            ok = "Frm_Backup_Cmd_Ok"
            program.wait_for(lambda: program.exists(ok) and program.visible(ok), "the end of the run")
            size = look(ok)
            program.click(ok)
            program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
            return size

        def size_of(name):
            left, top, right, bottom = program.window_place(name)
            return right - left, bottom - top

        def enlarge(name):
            width, height = size_of(name)
            program.move_window(5, 5, width + 200, height + 150, name)
            program.wait_for(lambda: size_of(name) == (width + 200, height + 150), "the new size")
            return width + 200, height + 150
        larger = run(enlarge)
        self.assertEqual(larger, run(size_of))
        self.assert_exit_code(0, program.close())

    def test_unattended_run_neither_takes_nor_stores_a_size(self):
        program = self.shown(self.open())
        self.place_it(program)
        self.assert_exit_code(0, program.close())
        self.assert_exit_code(harness.COMPLETE, self.pc.run_unattended("Job.INI"))
        subprocess.run([harness.PREFIX_TOOL, "stop", self.pc.prefix], check=True)
        self.assertEqual([("Frm_Mainmenu Placement", "60 40 960 760 96 normal")], self.stored())


class WaysOut(MainWindow):
    def assert_left_by(self, way, reason):
        program = self.open(selected=None)
        way(program)
        self.assert_exit_code(0, program.wait_for_end())
        self.assertEqual(f"Application Closed - Unloaded by {reason}", self.pc.log.dated()[-1])

    def test_every_way_out_is_in_the_log(self):
        control_menu = "Close on Control menu."
        code = "Invoked from code."
        self.assert_left_by(lambda program: program.close_box(), control_menu)
        self.assert_left_by(lambda program: program.keys("Alt+F4"), control_menu)
        self.assert_left_by(lambda program: program.click("Cmd_Exit_0"), code)

        def exit_of_the_restore_tab(program):
            program.show_tab("Restore")
            program.click("Cmd_Exit_1")

        def file_menu(program):
            program.keys("Alt+F")
            program.keys("X", name=None)

        self.assert_left_by(exit_of_the_restore_tab, code)
        self.assert_left_by(file_menu, code)
        self.assert_left_by(lambda program: program.end_session(), "Windows O/S is ending.")
        self.assert_left_by(lambda program: program.bare_close(), "Windows Task Manager is ending.")

    def test_escape_closes_nothing(self):
        program = self.open(selected=None)
        program.keys("Esc")
        program.keys("Ctrl+Tab")
        program.wait_for(lambda: program.shown_tab() == "Restore", "the next tab")
        self.assert_exit_code(0, program.close())


class BadInput(MainWindow):
    def test_no_sets_at_all(self):
        program = window.Attended(self.pc)
        self.assertEqual(([], []),
                         (program.items("Cmb_BackupSet"), program.items("Cmb_RestoreFile")))
        program.click("Cmd_Backup")
        self.assert_box(program.answer("OK"), "Backup",
                        "Nothing has been selected to Backup.\nPlease enter a valid Backup Set.")
        program.click("Cmd_Change")
        program.wait_for(lambda: program.enabled("Cmd_Navigate"), "the edit mode")
        program.click("Cmd_Navigate")
        self.assert_box(program.answer("OK"), "Backup", "Please select a Backup Configuration.")
        program.click("Cmd_Options_1")
        self.assert_box(program.answer("OK"), "Backup",
                        "Please select a Backup Configuration first.")
        self.assert_exit_code(0, program.close())

    def test_remembered_set_that_is_gone_selects_nothing(self):
        program = self.shown(self.open())
        self.assert_exit_code(0, program.close())
        (self.pc.application / "Job.INI").rename(self.pc.application / "Renamed.INI")
        again = window.Attended(self.pc)
        self.assertEqual(["Renamed.INI"], again.items("Cmb_BackupSet"))
        self.assertIsNone(again.selected("Cmb_BackupSet"))
        self.assert_exit_code(0, again.close())

    def test_absent_drives_are_told_and_the_set_stays_as_it_is(self):
        program = self.open(BackupFiles="Q:\\Data\\*.*", BackupToDrive="R:\\There\\")
        file = self.pc.application / "Job.INI"
        before = file.read_bytes()
        self.assert_box(
            program.answer("OK", "Q:"), "Backup",
            "You have selected a file whereupon files from Q:\\Data\\*.* are to backed up.  "
            "Vantrel cannot locate Q:\\Data\\*.*\n\n")
        self.assert_box(
            program.answer("OK", "R:"), "Backup",
            "You have selected to backup files to R:\\There\\ are to backed up.  "
            "Vantrel cannot locate R:\\There\\\n\nIf the Drive Selected is a Removable Drive "
            "then place a Disk into the Drive Now.")
        program.wait_for(lambda: program.text("Fld_BackupWhere") == "R:\\There\\", "the set")
        self.assertEqual("v:", program.selected("Dri_DriveList"))
        self.assertEqual(before, file.read_bytes())
        self.assert_refused(program, "R:\\There\\")
        self.assert_exit_code(0, program.close())

    def assert_refused(self, program, missing):
        program.click("Cmd_Backup")
        self.assert_box(program.answer("OK"), "Backup",
                        f"Unable to continue with the Backup as {missing} does not appear to "
                        "exist.")

    def test_destination_that_vanishes_before_the_press(self):
        (self.destination / "There").mkdir()
        program = self.open(BackupToDrive="E:\\There\\")
        program.wait_for(lambda: program.text("Fld_BackupWhere") == "E:\\There\\", "the set")
        (self.destination / "There").rmdir()
        self.assert_refused(program, "E:\\There\\")
        self.assert_exit_code(0, program.close())

    def test_cdrom_is_not_refused_before_the_question(self):
        self.pc.drive("r", "cdrom")
        program = self.open(BackupToDrive="R:\\")
        program.wait_for(lambda: program.text("Fld_BackupWhere") == "R:\\", "the set")
        program.click("Cmd_Backup")
        program.answer("No", "Are you sure")
        self.assert_exit_code(0, program.close())

    def test_drive_that_is_not_ready_keeps_the_folder_list(self):
        (self.pc.prefix / "dosdevices" / "a:").symlink_to(self.pc.folder / "no disk in it")
        program = self.shown(self.open())
        program.click("Cmd_Change")
        program.wait_for(lambda: program.enabled("Dri_DriveList"), "the edit mode")
        if "a:" not in program.items("Dri_DriveList"):
            self.assertIn("s:", program.items("Dri_DriveList"))
        else:
            program.choose("Dri_DriveList", "a:")
            box = program.answer("OK")
            self.assertEqual("Error", box.title)
        self.assertIn("Documents", program.items("Dir_DirList"))
        self.assert_exit_code(0, program.close())

    def test_folder_that_cannot_be_made_ends_the_program_with_the_systems_message(self):
        program = self.shown(self.open())
        program.click("Cmd_Change")
        program.wait_for(lambda: program.enabled("Cmd_Navigate"), "the edit mode")
        program.click("Cmd_Navigate")
        program.wait_for(lambda: program.visible("Frm_BackupWhere_Cmd_NewFolder"), "the dialog")
        program.click("Frm_BackupWhere_Cmd_NewFolder")
        program.wait_for(lambda: program.visible("Frm_Input_Fld_Answer"), "the input box")
        program.replace_text("Frm_Input_Fld_Answer", "no?such*name")
        program.wait_for(lambda: program.text("Frm_Input_Fld_Answer") == "no?such*name", "it")
        program.keys("Enter", "Frm_Input_Fld_Answer")
        box = program.answer("OK", "Run-time error")
        self.assertRegex(box.text, "^Run-time error '(52|75|76)':\r?\n\r?\n.+$")
        self.assertEqual("Vantrel", box.title)
        program.wait_for_end()
        self.assertFalse([text for text in self.pc.log.dated() if "Closed" in text])

    def test_folder_that_a_set_cannot_store_is_refused_and_nothing_is_stored(self):
        (self.source / "Ελληνικά").mkdir()
        program = self.shown(self.open())
        before = (self.pc.application / "Job.INI").read_bytes()
        program.click("Cmd_Change")
        program.wait_for(lambda: program.enabled("Dir_DirList"), "the edit mode")
        program.open_entry("Dir_DirList", "Ελληνικά")
        box = program.answer("OK", "Ελληνικά")
        self.assertTrue(box.has_icon)
        self.assertEqual(before, (self.pc.application / "Job.INI").read_bytes())
        program.wait_for(lambda: "Documents" in program.items("Dir_DirList"), "the old folder")
        self.assert_exit_code(0, program.close())

    def test_two_thousand_sets(self):
        for number in range(2000):
            self.pc.write_set(f"Set {number:04}.INI", BackupFiles="S:\\*.*", BackupToDrive="E:\\",
                              BackupFileName=f"N{number}")
        program = window.Attended(self.pc)
        self.assertEqual(2000, program.count("Cmb_BackupSet"))
        program.choose("Cmb_BackupSet", "Set 1999.INI")
        program.wait_for(lambda: program.text("Lbl_BackupFileName") == "N1999", "the last set")
        self.assert_exit_code(0, program.close())


if __name__ == "__main__":
    harness.main()
