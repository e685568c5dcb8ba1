"""A person edits sets: New Backup, the INI Edit tab and its questions, deleting, in real windows."""
import harness
import window

REFUSED = "Unable to Save this file:\r\nReason: "
UNSAVED = "You have not saved your changes to {}.\r\nDo you wish to do this now?"


class Editing(harness.EndToEndTest):
    def setUp(self):
        super().setUp()
        self.pc.write_set("Daily.INI", BackupFiles="V:\\*.*", BackupToDrive="V:\\")

    def open_editor(self):
        program = window.Attended(self.pc)
        program.show_tab("INI Edit")
        return program

    def pick(self, program, name):
        program.click_entry("Fil_INI", name)
        program.wait_for(
            lambda: program.text("Lbl_INIContents") == f"INI File Contents - {name}", name)

    @staticmethod
    def new_backup(program, name):
        program.click("Cmd_AddNew")
        program.wait_for(lambda: program.visible("Frm_Input_Fld_Answer"), "the question")
        program.replace_text("Frm_Input_Fld_Answer", name)
        program.wait_for(lambda: program.text("Frm_Input_Fld_Answer") == name, "the name")
        program.keys("Enter", "Frm_Input_Fld_Answer")
        program.wait_for(lambda: not program.exists("Frm_Input_Fld_Answer"), "the question's end")

    def edit(self, program, old, new):
        """Types over one piece of the text, as a person does who has marked it."""
        text = program.text("Fld_INI")
        start = text.index(old)
        program.select_text("Fld_INI", start, start + len(old))
        program.type("Fld_INI", new)
        changed = text.replace(old, new, 1)
        program.wait_for(lambda: program.text("Fld_INI") == changed, "the typed text")
        program.wait_for(lambda: program.enabled("Cmd_Save"), "the marker of unsaved changes")

    def edits_in_log(self):
        return [text for text in self.pc.log.dated() if text.startswith("INI ")]


class ASetsLife(Editing):
    def test_made_edited_refused_saved_and_deleted(self):
        program = window.Attended(self.pc)
        self.new_backup(program, "Weekly")
        program.wait_for(lambda: program.text("Lbl_BackupFileName") == "WEEKLY", "the new set")
        self.assertEqual(["Daily.INI", "Weekly.INI"], sorted(program.items("Cmb_BackupSet")))
        self.assertEqual("Weekly.INI", program.selected("Cmb_BackupSet"))
        self.assertEqual("SubDir=OFF, MultiVolume=ON, Time=ON", program.text("Fld_BackupOptions"))
        made = self.pc.read_set("Weekly.INI")
        self.assertEqual("WEEKLY", made["BackupFileName"])
        self.assertEqual("V:\\*.*", made["BackupFiles"])

        program.show_tab("INI Edit")
        self.assertEqual(["Daily.INI", "Weekly.INI"], program.items("Fil_INI"))
        self.assertFalse(program.enabled("Cmd_Save"))
        self.pick(program, "Weekly.INI")
        self.assertFalse(program.enabled("Cmd_Save"))

        self.edit(program, "TimeBackup=ON", "TimeBackup=on")
        before = (self.pc.application / "Weekly.INI").read_bytes()
        program.click("Cmd_Save")
        box = program.answer("OK", REFUSED)
        self.assertEqual(REFUSED + "TimeBackup does not indicate 'ON' or 'OFF'.", box.text)
        self.assertEqual("INI Validation", box.title)
        self.assertTrue(box.has_icon)
        self.assertTrue(program.enabled("Cmd_Save"))
        self.assertEqual(before, (self.pc.application / "Weekly.INI").read_bytes())
        self.assertTrue((self.pc.application / "Temp.INI").exists())
        self.assertEqual([], self.edits_in_log())

        self.edit(program, "TimeBackup=on", "TimeBackup=OFF")
        program.click("Cmd_Save")
        program.wait_for(lambda: not program.enabled("Cmd_Save"), "the saved set")
        self.assertEqual("OFF", self.pc.read_set("Weekly.INI")["TimeBackup"])
        self.assertFalse((self.pc.application / "Temp.INI").exists())
        self.assertEqual(["INI Weekly.INI Edited"], self.edits_in_log())

        program.right_click("Fil_INI")
        program.wait_for(program.menu_is_open, "the menu")
        program.keys("Down", None)
        program.keys("Enter", None)
        box = program.answer("Yes", "Are you sure that you wish to delete Weekly.INI")
        self.assertEqual(("Delete File", "No"), (box.title, box.default))
        program.wait_for(lambda: program.items("Fil_INI") == ["Daily.INI"], "the list without it")
        self.assertFalse((self.pc.application / "Weekly.INI").exists())
        self.assertEqual("", program.text("Fld_INI"))
        self.assertEqual("INI File Contents", program.text("Lbl_INIContents"))
        program.show_tab("Backup")
        self.assertEqual(["Daily.INI"], program.items("Cmb_BackupSet"))
        program.show_tab("Restore")
        self.assertIn("Weekly.INI", program.items("Cmb_RestoreFile"))
        program.close()
        self.assertEqual(["INI Weekly.INI Edited"], self.edits_in_log())


class UnsavedChanges(Editing):
    def setUp(self):
        super().setUp()
        self.pc.write_set("Monthly.INI", BackupFiles="V:\\*.*", BackupToDrive="V:\\")

    def change_and_leave(self, old, new):
        program = self.open_editor()
        self.pick(program, "Daily.INI")
        self.edit(program, old, new)
        program.click_entry("Fil_INI", "Monthly.INI")
        box = program.wait_for_box(UNSAVED.format("Daily.INI"))
        self.assertEqual(("Changes", "No", False), (box.title, box.default, box.has_icon))
        return program

    def shows_monthly(self, program):
        program.wait_for(lambda: "BackupFileName=MONTHLY" in program.text("Fld_INI"), "the other")
        self.assertEqual("Monthly.INI", program.selected("Fil_INI"))
        self.assertFalse(program.enabled("Cmd_Save"))

    def test_no_loses_them(self):
        program = self.change_and_leave("BackupFileName=DAILY", "BackupFileName=OTHER")
        program.answer("No")
        self.shows_monthly(program)
        program.close()
        self.assertEqual("DAILY", self.pc.read_set("Daily.INI")["BackupFileName"])
        self.assertEqual([], self.edits_in_log())

    def test_yes_saves_them_and_the_next_direct_save_is_confirmed(self):
        program = self.change_and_leave("BackupFileName=DAILY", "BackupFileName=OTHER")
        program.answer("Yes")
        self.shows_monthly(program)
        self.assertEqual("OTHER", self.pc.read_set("Daily.INI")["BackupFileName"])

        self.edit(program, "BackupFileName=MONTHLY", "BackupFileName=AGAIN")
        program.click("Cmd_Save")
        box = program.answer("No", "Are you sure that you wish to save the changes?")
        self.assertEqual(("Save Changes", "No"), (box.title, box.default))
        self.assertTrue(program.enabled("Cmd_Save"))
        program.click("Cmd_Save")
        program.answer("Yes", "Are you sure that you wish to save the changes?")
        program.wait_for(lambda: not program.enabled("Cmd_Save"), "the saved set")
        self.edit(program, "BackupFileName=AGAIN", "BackupFileName=FREELY")
        program.click("Cmd_Save")
        program.wait_for(lambda: not program.enabled("Cmd_Save"), "a save without a question")
        program.close()
        self.assertEqual("FREELY", self.pc.read_set("Monthly.INI")["BackupFileName"])
        self.assertEqual(["INI Daily.INI Edited", "INI Monthly.INI Edited",
                          "INI Monthly.INI Edited"], self.edits_in_log())

    def test_yes_with_a_text_that_fails_stays_where_it_was(self):
        program = self.change_and_leave("BackupFileName=DAILY", "BackupFileName=")
        program.answer("Yes")
        program.answer("OK", REFUSED + "There is no name for the Backup File.")
        self.assertEqual("Daily.INI", program.selected("Fil_INI"))
        self.assertIn("BackupFileName=\r\n", program.text("Fld_INI"))
        self.assertTrue(program.enabled("Cmd_Save"))
        program.close()
        self.assertEqual("DAILY", self.pc.read_set("Daily.INI")["BackupFileName"])


class Names(Editing):
    def assert_error(self, program, text):
        box = program.answer("OK", text)
        self.assertEqual(("Error", True), (box.title, box.has_icon))

    def test_bad_names_make_nothing(self):
        program = window.Attended(self.pc)
        for name in ("a*b", "sub\\set", "nul", "c:set"):
            self.new_backup(program, name)
            self.assert_error(program, "Bad file name or number")
        self.assertEqual(["Daily.INI"], program.items("Cmb_BackupSet"))
        program.close()
        self.assertEqual(["Daily.INI"], [p.name for p in self.pc.application.glob("*.[iI][nN][iI]")])

    def test_name_in_other_case_selects_the_existing_set(self):
        program = window.Attended(self.pc)
        self.new_backup(program, "DAILY.ini")
        box = program.answer("OK", "Unable to Save the Configuration File as it already exists.")
        self.assertEqual("Backup", box.title)
        program.wait_for(lambda: program.selected("Cmb_BackupSet") == "Daily.INI", "the old set")
        program.close()


class LargeText(Editing):
    def test_a_megabyte_is_shown_typed_into_undone_and_saved(self):
        path = self.pc.application / "Daily.INI"
        line = b"; a line of a comment that says nothing\r\n"
        padding = line * (1024 * 1024 // len(line))
        path.write_bytes(path.read_bytes() + padding)
        whole = path.read_bytes().decode("cp1252").removesuffix("\r\n")
        program = self.open_editor()
        self.pick(program, "Daily.INI")
        self.assertEqual(whole, program.text("Fld_INI"))

        program.click("Fld_INI")
        program.keys("Ctrl+Home", "Fld_INI")
        program.keys("X", "Fld_INI")
        program.wait_for(lambda: program.text("Fld_INI") == "x" + whole, "the typed letter")
        program.keys("Ctrl+Z", "Fld_INI")
        program.wait_for(lambda: program.text("Fld_INI") == whole, "the text without it")
        program.type("Fld_INI", "; mine\r")
        program.wait_for(lambda: program.text("Fld_INI") == "; mine\r\n" + whole, "the comment")
        program.click("Cmd_Save")
        program.wait_for(lambda: not program.enabled("Cmd_Save"), "the saved text")
        program.close()
        saved = path.read_bytes().decode("cp1252")
        self.assertTrue(saved.startswith("; mine\r\n;---"))
        self.assertTrue(saved.endswith("\r\n" + line.decode("cp1252")))
        self.assertEqual(len("; mine\r\n" + whole + "\r\n"), len(saved))

    def test_everything_is_marked_copied_and_put_back_by_keys(self):
        program = self.open_editor()
        self.pick(program, "Daily.INI")
        text = program.text("Fld_INI")
        program.click("Fld_INI")
        program.keys("Ctrl+A", "Fld_INI")
        program.keys("Ctrl+C", "Fld_INI")
        program.keys("X", "Fld_INI")
        program.wait_for(lambda: program.text("Fld_INI") == "x", "one letter in place of all")
        program.keys("Ctrl+A", "Fld_INI")
        program.keys("Ctrl+V", "Fld_INI")
        program.wait_for(lambda: program.text("Fld_INI") == text, "the copied text")
        program.close()

    def test_coming_in_by_tab_marks_nothing(self):
        program = self.open_editor()
        self.pick(program, "Daily.INI")
        text = program.text("Fld_INI")
        program.click("Fil_INI")
        program.keys("Tab", "Fil_INI")
        program.keys("Tab", "Fil_INI")
        program.wait_for(lambda: program.focus() == "Fld_INI", "the keyboard in the text")
        program.keys("X", "Fld_INI")
        program.wait_for(lambda: len(program.text("Fld_INI")) == len(text) + 1, "one letter more")
        program.close()

    def test_nul_bytes_and_no_line_end(self):
        (self.pc.application / "Odd.INI").write_bytes(b"one\x00two\nthree")
        program = self.open_editor()
        self.pick(program, "Odd.INI")
        self.assertEqual("one two\r\nthree", program.text("Fld_INI"))
        program.close()


if __name__ == "__main__":
    harness.main()
