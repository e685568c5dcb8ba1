"""F1: the guide opens from every window and disturbs none of them."""
import random
import shutil

import harness
import window

MIB = 1024 * 1024
PAGE = "V:\\Vantrel\\guide.html"
MISSING = "The Guide cannot be found."
SURE = "Are you sure that you wish to start the backup now?"


class Guide(harness.EndToEndTest):
    """A computer whose browser writes down what it is to show."""

    def setUp(self):
        super().setUp()
        self.source = self.pc.drive("s")
        (self.source / "note.txt").write_text("note\n", encoding="utf-8")
        self.destination = self.pc.drive("e")
        self.shown = self.pc.application.parent / "shown.txt"
        self.pages = 0
        self._install_browser()

    def _install_browser(self):
        shutil.copy(self.pc.helper("recording_browser.exe"), self.pc.application.parent)
        registry = self.pc.prefix / "system.reg"
        text = registry.read_text(encoding="utf-8", errors="surrogateescape")
        text += ('\n[Software\\\\Classes\\\\.html] 1\n@="a.browser"\n'
                 '\n[Software\\\\Classes\\\\a.browser\\\\shell\\\\open\\\\command] 1\n'
                 '@="V:\\\\recording_browser.exe V:\\\\shown.txt \\"%1\\""\n')
        registry.write_text(text, encoding="utf-8", errors="surrogateescape")

    def open(self):
        self.pc.write_set("Job.INI", BackupFiles="S:\\*.*", BackupToDrive="E:\\")
        program = window.Attended(self.pc)
        program.choose("Cmb_BackupSet", "Job.INI")
        program.wait_for(lambda: program.text("Fld_BackupWhere") == "E:\\", "the set")
        return program

    def shown_pages(self):
        return self.shown.read_text(encoding="utf-8").split("\n")[:-1] if self.shown.exists() else []

    def assert_f1_shows_the_guide(self, program, name="TAB_Backup", keys="F1"):
        """One more page, and no box from us."""
        if name:
            program.come_to_front(name)
        program.keys(keys, None)
        self.pages += 1
        program.wait_for(lambda: len(self.shown_pages()) >= self.pages, f"page {self.pages}")
        self.assertEqual([PAGE] * self.pages, [page.strip() for page in self.shown_pages()])

    def assert_closes(self, program):
        """Without a page that nobody asked for."""
        self.assert_exit_code(0, program.close())
        self.assertEqual([PAGE] * self.pages, [page.strip() for page in self.shown_pages()])

    def edit(self, program):
        program.click("Cmd_Change")
        program.wait_for(lambda: program.enabled("Cmd_Navigate"), "the edit mode")

    def open_dialog(self, program, button, control):
        program.click(button)
        program.wait_for(lambda: program.exists(control) and program.visible(control), control)

    def close_dialog(self, program, cancel):
        program.click(cancel)
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")

    def test_every_tab(self):
        program = self.open()
        for tab in window.TABS:
            program.show_tab(tab)
            self.assert_f1_shows_the_guide(program)
            self.assertEqual(tab, program.shown_tab())
        self.assertIsNone(program.box())
        self.assert_closes(program)

    def test_key_that_is_held_down_asks_once(self):
        program = self.open()
        self.assert_f1_shows_the_guide(program, keys="F1+F1+F1")
        program.come_to_front("TAB_Backup")
        self.assert_f1_shows_the_guide(program)
        self.assert_closes(program)

    def test_text_that_is_being_typed_and_a_menu_stay(self):
        program = self.open()
        program.show_tab("INI Edit")
        program.click_entry("Fil_INI", "Job.INI")
        program.wait_for(lambda: program.text("Fld_INI"), "the text")
        program.replace_text("Fld_INI", "half a sent")
        program.wait_for(lambda: program.text("Fld_INI") == "half a sent", "what was typed")
        program.click("Fld_INI")
        program.wait_for(lambda: program.focus() == "Fld_INI", "the keyboard in the text")
        self.assert_f1_shows_the_guide(program, "Fld_INI")
        self.assertEqual("half a sent", program.text("Fld_INI"))
        # The browser may have come to the front.
        program.come_to_front("Fld_INI")
        self.assertEqual("Fld_INI", program.focus())
        program.keys("Alt+F")
        program.wait_for(program.menu_is_open, "the menu")
        self.assert_f1_shows_the_guide(program, None)
        program.come_to_front("TAB_Backup")
        program.keys("Esc", None)
        program.wait_for(lambda: not program.menu_is_open(), "the menu to close")
        self.assert_closes(program)

    def test_dialogs_stay_open_with_what_is_in_them(self):
        program = self.open()
        self.edit(program)
        name = "Frm_BackupOptions_Fld_BackupFileName"
        self.open_dialog(program, "Cmd_Options_1", name)
        program.replace_text(name, "Fresh")
        program.wait_for(lambda: program.text(name) == "Fresh", "what was typed")
        self.assert_f1_shows_the_guide(program, name)
        self.assertEqual("Fresh", program.text(name))
        self.assertFalse(program.enabled("TAB_Backup"))
        self.close_dialog(program, "Frm_BackupOptions_Cmd_Cancel")

        self.open_dialog(program, "Cmd_Navigate", "Frm_BackupWhere_Cmd_NewFolder")
        self.assert_f1_shows_the_guide(program, "Frm_BackupWhere_Cmd_NewFolder")
        self.open_dialog(program, "Frm_BackupWhere_Cmd_NewFolder", "Frm_Input_Fld_Answer")
        self.assert_f1_shows_the_guide(program, "Frm_Input_Fld_Answer")
        self.assertEqual("New Folder", program.text("Frm_Input_Fld_Answer"))
        program.keys("Esc", "Frm_Input_Fld_Answer")
        program.wait_for(lambda: program.enabled("Frm_BackupWhere_Cmd_Cancel"), "the dialog")
        self.close_dialog(program, "Frm_BackupWhere_Cmd_Cancel")
        self.assertEqual([], [each.name for each in self.destination.iterdir()])
        self.assert_closes(program)

    def test_question_waits_on(self):
        program = self.open()
        program.click("Cmd_Backup")
        question = program.wait_for_box(SURE)
        program.keys("F1", None)
        program.wait_for(self.shown_pages, "the page")
        self.assertEqual(question, program.box())
        program.answer("No", SURE)
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assertEqual([], list(self.destination.iterdir()))
        self.assert_exit_code(0, program.close())
        self.assertEqual([PAGE], self.shown_pages())

    def test_running_backup_goes_on(self):
        block = random.Random(4).randbytes(MIB)
        with open(self.source / "big.bin", "wb") as big:
            for _ in range(200):
                big.write(block)
        program = self.open()
        cancel = "Frm_Backup_Cmd_Cancel"
        program.click("Cmd_Backup")
        program.answer("Yes", SURE)
        program.wait_for(lambda: program.exists(cancel) and
                         program.value("Frm_Backup_PB_Folder") > 0, "the run's first progress")
        self.assert_f1_shows_the_guide(program, cancel)
        program.wait_for(lambda: program.text("Frm_Backup_Lbl_BackupPath") == "Backup Complete",
                         "the end of the run")
        self.assertIsNone(program.box())
        # Nothing is left of the run that would keep a message back.
        (self.pc.application / "guide.html").unlink()
        program.come_to_front("Frm_Backup_Cmd_Ok")
        program.keys("F1", None)
        program.answer("OK", MISSING)
        self.close_dialog(program, "Frm_Backup_Cmd_Ok")
        self.assertIn("Successful Backup", self.pc.log.dated())
        self.assert_closes(program)

    def test_missing_page_is_told_with_its_place(self):
        program = self.open()
        (self.pc.application / "guide.html").unlink()
        program.keys("F1")
        box = program.answer("OK", MISSING)
        self.assertEqual(("Guide", True), (box.title, box.has_icon))
        self.assertIn("It should be the file " + PAGE, box.text)
        self.assertEqual(["OK"], list(box.buttons))
        self.assertFalse(self.shown.exists())
        self.assert_exit_code(0, program.close())

    def test_page_that_no_program_opens_is_told(self):
        registry = self.pc.prefix / "system.reg"
        text = registry.read_text(encoding="utf-8", errors="surrogateescape")
        registry.write_text(text.replace('@="a.browser"', '@="gone"'), encoding="utf-8",
                            errors="surrogateescape")
        program = self.open()
        program.keys("F1")
        box = program.answer("OK", "The Guide could not be opened.")
        self.assertIn(PAGE, box.text)
        self.assert_exit_code(0, program.close())


if __name__ == "__main__":
    harness.main()
