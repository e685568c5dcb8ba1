"""A person restores: everything by clicks and keys in the real windows."""
import os
import random
import shutil
import zipfile

import archives
import harness
import trees
import window

MIB = 1024 * 1024
CARE = "PLEASE SELECT THE RESTORE LOCATION WITH CARE!"
FILE_NAME_FIELD = 1148  # of the system's dialog for opening files
CLOSED, PROTECTED = 0, 2  # pictures of the folder tree, as the screen counts them


class Restoring(harness.EndToEndTest):
    """Drives to restore from and to, and the steps that every test takes."""

    def setUp(self):
        super().setUp()
        self.source = self.pc.drive("s")
        self.archives = self.pc.drive("e")
        self.target = self.pc.drive("t")

    def start(self):
        self.program = window.Attended(self.pc)
        return self.program

    def zip(self, name, files):
        with zipfile.ZipFile(self.archives / name, "w") as made:
            for path, text in files.items():
                made.writestr(path, text)

    def listed(self, name, text=None):
        """Waits until the archive is listed and returns the entries' names."""
        program = self.program
        program.wait_for(lambda: program.text("Fld_RestoreFile").upper().endswith(name.upper()) and
                         program.visible("TV_Restore"), f"the entries of {name}")
        return [text for _, _, text in program.tree("TV_Restore")]

    def browse(self, path):
        program = self.program
        program.click("Cmd_RestoreFile")
        program.wait_for(lambda: (box := program.box()) and box.title == "Select a Restore File",
                         "the dialog for opening files")
        program.type_in_box(FILE_NAME_FIELD, path)
        program.answer("Open")

    def choose_destination(self, *folders, drive="t:"):
        program = self.program
        program.click("Cmd_RestoreTo")
        box = program.answer("OK", CARE)
        self.assertEqual(("Restore", True), (box.title, box.has_icon))
        dialog = "Frm_RestoreWhere_"
        program.wait_for(lambda: program.visible(dialog + "Cmd_Ok"), "the folder dialog")
        program.wait_for(lambda: not program.enabled("TAB_Backup"), "the dialog in front")
        program.choose(dialog + "Dri_DriveList", drive)
        for folder in folders:
            program.wait_for(lambda: folder in program.items(dialog + "Dir_DirList"), folder)
            program.open_entry(dialog + "Dir_DirList", folder)
        wanted = "\\".join([drive, *folders]).upper()
        program.click(dialog + "Cmd_Ok")
        program.wait_for(lambda: program.text("Fld_RestoreTo").rstrip("\\") == wanted, wanted)
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")

    def restore(self, outcome="Restore Complete"):
        program = self.program
        program.click("Cmd_Restore")
        program.wait_for(lambda: program.visible("Frm_Restore_Cmd_Ok") and
                         program.text("Frm_Restore_Lbl_RestorePath") == outcome, outcome)
        program.click("Frm_Restore_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")

    def assert_same_tree(self, source, copy):
        self.assertEqual(archives.tree(source), archives.tree(copy))
        for path in source.rglob("*"):
            old, new = path.stat(), (copy / path.relative_to(source)).stat()
            # The system's unit is 100 ns. Folders that hold something are no entries.
            if path.is_dir() and any(path.iterdir()):
                continue
            self.assertEqual(old.st_mtime_ns // 100, new.st_mtime_ns // 100, path)
            if path.is_file():
                self.assertEqual(old.st_mode & 0o222 == 0, new.st_mode & 0o222 == 0, path)


class CompleteRestores(Restoring):
    def test_backed_up_set_comes_back_with_names_times_and_attributes(self):
        documents = self.source / "Documents"
        documents.mkdir()
        trees.make_real_tree(documents)
        self.pc.write_set("Job.INI", BackupFiles="S:\\Documents\\*.*", BackupToDrive="E:\\")
        self.assert_exit_code(harness.COMPLETE, self.pc.run_unattended("Job.INI"))
        (self.target / "Back").mkdir()

        program = self.start()
        program.show_tab("Restore")
        program.choose("Cmb_RestoreFile", "Job.INI")
        names = self.listed("E:\\JOB.zip")
        self.assertEqual(list(archives.entries(self.archives / "JOB.zip")), names)
        self.assertEqual(str(len(names)), program.text("Fld_Total"))
        self.choose_destination("Back")
        self.restore()
        self.assert_exit_code(0, program.close())
        self.assert_same_tree(documents, self.target / "Back")
        self.assertEqual("T:\\BACK", self.pc.read_set("Job.INI")["RestoreDestination"])
        records = self.pc.log.dated()
        self.assertIn("Starting Restore from Job.INI", records)
        self.assertIn("Finished Restore from Job.INI", records)

    def test_browsed_archive_of_another_program_is_restored(self):
        self.zip("other.zip", {"one.txt": "1", "folder/two.txt": "2", "folder/Ünï.txt": "3"})
        program = self.start()
        program.show_tab("Restore")
        self.browse("E:\\other.zip")
        self.assertEqual(["one.txt", "folder/two.txt", "folder/Ünï.txt"], self.listed("other.zip"))
        self.assertEqual("3", program.text("Fld_Total"))
        self.choose_destination()
        self.restore()
        self.assert_exit_code(0, program.close())
        self.assertEqual({"one.txt": b"1", "folder": None, "folder/two.txt": b"2",
                          "folder/Ünï.txt": b"3"}, archives.tree(self.target))

    def test_hostile_entries_stay_inside_and_are_said(self):
        self.zip("evil.zip", {"../evil.txt": "x", "C:\\evil.txt": "x", "good.txt": "y"})
        program = self.start()
        program.show_tab("Restore")
        self.browse("E:\\evil.zip")
        self.listed("evil.zip")
        (self.target / "Back").mkdir()
        self.choose_destination("Back")
        self.restore()
        self.assert_exit_code(0, program.close())
        self.assertEqual({"Back": None, "Back/good.txt": b"y"}, archives.tree(self.target))
        self.assertIn("2 files not restored", self.pc.log.undated())


class ProtectedFolders(Restoring):
    """The Secure Data tab, and what a restore makes of it."""

    def load_tree(self, letter, folder):
        """The tree of a drive that has this folder, which no other drive has."""
        program = self.program
        program.show_tab("Secure Data")
        program.wait_for(lambda: program.visible("TV_SecureMode"), "the folder tree")
        program.choose("Dri_SecureMode", f"{letter}:")
        program.wait_for(lambda: program.visible("TV_SecureMode") and
                         (0, folder) in self.nodes(), f"the tree of drive {letter}")

    def nodes(self):
        return [(level, text) for level, _, text in self.program.tree("TV_SecureMode")]

    def picture(self, text):
        return next(image for _, image, name in self.program.tree("TV_SecureMode") if name == text)

    def press_in_menu(self, key):
        program = self.program
        program.wait_for(program.menu_is_open, "the menu")
        program.keys(key, None)

    def entries(self):
        return (self.pc.application / "Vantrel.Cfg").read_bytes().decode().split("\r\n")[8:-1]

    def test_protected_folder_is_renamed_before_a_restore_writes_into_it(self):
        mine = self.target / "Letters" / "Mine"
        mine.mkdir(parents=True)
        (mine / "letter.txt").write_text("newer", encoding="utf-8")
        self.zip("old.zip", {"Mine/letter.txt": "older"})
        program = self.start()
        self.load_tree("t", "Letters")
        self.assertEqual([(0, "Letters"), (1, "Mine")], self.nodes())
        program.click_tree("TV_SecureMode", "Letters", "Mine")
        program.right_click_tree("TV_SecureMode", "Letters", "Mine")
        self.press_in_menu("A")
        program.wait_for(lambda: self.picture("Mine") == PROTECTED, "the protected picture")
        self.assertEqual(["T:\\LETTERS\\MINE"], self.entries())

        program.show_tab("Restore")
        self.browse("E:\\old.zip")
        self.listed("old.zip")
        self.choose_destination("Letters")
        self.restore()
        self.assert_exit_code(0, program.close())
        self.assertEqual({"Letters": None, "Letters/Mine": None,
                          "Letters/Mine/letter.txt": b"older",
                          "Letters/MINE_001": None, "Letters/MINE_001/letter.txt": b"newer"},
                         archives.tree(self.target))
        self.assertIn((True, "Restore process about to Overwrite T:\\LETTERS\\MINE"),
                      self.pc.log.records())
        self.assertIn((False, "T:\\LETTERS\\MINE renamed to T:\\LETTERS\\MINE_001"),
                      self.pc.log.records())

    def test_protected_folders_stay_whatever_an_archive_calls_them(self):
        folders = ["Mine", "Mi_ne", "Plans_", "_con"]
        for folder in folders:
            (self.target / folder).mkdir()
            (self.target / folder / "letter.txt").write_text("newer", encoding="utf-8")
        header = [";"] * 7 + [""]
        listed = header + [f"T:\\{folder.upper()}" for folder in folders]
        # The last line is left open.
        (self.pc.application / "Vantrel.Cfg").write_bytes("\r\n".join(listed).encode())
        names = ["./Mine/letter.txt", "Mi:ne/letter.txt", "Plans./letter.txt", "/con/letter.txt"]
        self.zip("odd.zip", dict.fromkeys(names, "older"))
        program = self.start()
        program.show_tab("Restore")
        self.browse("E:\\odd.zip")
        self.assertEqual(names, self.listed("odd.zip"))
        self.choose_destination()
        self.restore()
        self.assert_exit_code(0, program.close())
        found = archives.tree(self.target)
        for folder in folders:
            self.assertEqual(b"newer", found[f"{folder.upper()}_001/letter.txt"])
            self.assertEqual(b"older", found.pop(f"{folder}/letter.txt"), folder)
        self.assertEqual(len(folders), sum(text == b"newer" for text in found.values()))

    def test_protection_is_taken_away_again(self):
        (self.target / "Mine").mkdir()
        program = self.start()
        self.load_tree("t", "Mine")
        program.click_tree("TV_SecureMode", "Mine")
        for key, picture, entries in (("A", PROTECTED, ["T:\\MINE"]), ("D", CLOSED, [])):
            program.right_click_tree("TV_SecureMode", "Mine")
            self.press_in_menu(key)
            program.wait_for(lambda: self.picture("Mine") == picture, f"picture {picture}")
            self.assertEqual(entries, self.entries())
        self.assert_exit_code(0, program.close())

    def test_folder_of_windows_is_refused_and_folders_in_it_are_not(self):
        program = self.start()
        self.load_tree("c", "windows")
        program.click_tree("TV_SecureMode", "windows")
        program.right_click_tree("TV_SecureMode", "windows")
        self.press_in_menu("A")
        box = program.answer("OK", "This folder is maintained by your Operating System.  "
                                   "You may not Protect System Folders.")
        self.assertEqual(("Protected Folders", True), (box.title, box.has_icon))
        self.assertEqual([], self.entries())
        program.click_tree("TV_SecureMode", "windows", "temp")
        program.right_click_tree("TV_SecureMode", "windows", "temp")
        self.press_in_menu("A")
        program.wait_for(lambda: self.entries() == ["C:\\WINDOWS\\TEMP"], "the entry")
        self.assert_exit_code(0, program.close())

    def test_drive_without_a_disk_clears_the_tree(self):
        shutil.rmtree(self.pc.drive("a", "floppy"))
        program = self.start()
        self.load_tree("v", "Vantrel")
        program.choose("Dri_SecureMode", "a:")
        program.wait_for(lambda: self.nodes() == [], "an empty tree")
        self.assertIsNone(program.box())
        self.assert_exit_code(0, program.close())


class ProtectedRestores(Restoring):
    """T:\\Mine is protected and holds newer work; E:\\old.zip has an older file for it."""

    def setUp(self):
        super().setUp()
        self.list = self.pc.application / "Vantrel.Cfg"
        self.list.write_bytes(b";\r\n" * 7 + b"\r\nT:\\MINE\r\n")
        (self.target / "Mine").mkdir()
        (self.target / "Mine" / "letter.txt").write_text("newer", encoding="utf-8")
        self.zip("old.zip", {"Mine/letter.txt": "older"})

    def choose_archive_and_destination(self):
        program = self.start()
        program.show_tab("Restore")
        self.browse("E:\\old.zip")
        self.assertEqual(["Mine/letter.txt"], self.listed("old.zip"))
        self.choose_destination()
        return program

    def assert_untouched(self):
        self.assertEqual({"Mine": None, "Mine/letter.txt": b"newer"}, archives.tree(self.target))

    def assert_renamed(self):
        self.assertEqual({"Mine": None, "Mine/letter.txt": b"older",
                          "MINE_001": None, "MINE_001/letter.txt": b"newer"},
                         archives.tree(self.target))


class DamagedLists(ProtectedRestores):
    ERROR = "Input past end of file: V:\\Vantrel\\Vantrel.Cfg"

    def answer_last_box(self):
        box = self.program.answer("OK", "Run-time error")
        self.assertEqual(f"Run-time error '62':\n\n{self.ERROR}", box.text.replace("\r\n", "\n"))
        self.assertEqual(("Vantrel", True), (box.title, box.has_icon))
        self.program.wait_for_end()

    def assert_restore_ends_the_program(self, damaged):
        self.list.write_bytes(damaged)
        program = self.choose_archive_and_destination()
        program.click("Cmd_Restore")
        self.answer_last_box()
        self.assert_untouched()
        self.assertEqual(damaged, self.list.read_bytes())
        self.assertFalse([text for text in self.pc.log.dated() if "Restore" in text])

    def test_empty_one_ends_the_program_before_a_restore(self):
        self.assert_restore_ends_the_program(b"")

    def test_one_of_three_lines_ends_the_program_before_a_restore(self):
        self.assert_restore_ends_the_program(b";\r\n" * 3)

    def test_one_is_shown_on_the_tab_and_ends_the_program_in_the_menu(self):
        program = self.start()
        program.show_tab("Secure Data")
        program.wait_for(lambda: program.visible("TV_SecureMode"), "the folder tree")
        program.choose("Dri_SecureMode", "t:")
        program.wait_for(lambda: program.visible("TV_SecureMode") and
                         program.tree("TV_SecureMode") == [(0, PROTECTED, "Mine")], "drive t")
        self.list.write_bytes(b"")
        program.choose("Dri_SecureMode", "s:")  # it has no folder, so the list is not read
        program.wait_for(lambda: program.tree("TV_SecureMode") == [], "drive s")
        program.choose("Dri_SecureMode", "t:")
        box = program.answer("OK", self.ERROR)
        self.assertEqual(("Error", True), (box.title, box.has_icon))
        self.list.write_bytes(b";\r\n" * 7)
        program.choose("Dri_SecureMode", "s:")
        program.choose("Dri_SecureMode", "t:")
        program.wait_for(lambda: program.visible("TV_SecureMode") and
                         program.tree("TV_SecureMode") == [(0, CLOSED, "Mine")], "drive t again")
        self.list.write_bytes(b";\r\n" * 3)
        program.click_tree("TV_SecureMode", "Mine")
        program.right_click_tree("TV_SecureMode", "Mine")
        program.wait_for(program.menu_is_open, "the menu")
        program.keys("A", None)
        self.answer_last_box()
        self.assertEqual(b";\r\n" * 3, self.list.read_bytes())


class ArchivesThatCannotBeListed(ProtectedRestores):
    def ask(self, reason):
        """Presses Restore Now; the question that comes is left open."""
        program = self.program
        program.click("Cmd_Restore")
        box = program.wait_for_box(f"The archive cannot be read: E:\\old.zip ({reason}).")
        self.assertEqual(("Restore", True), (box.title, box.has_icon))
        self.assertEqual({"Retry", "Cancel"}, set(box.buttons))
        self.assertFalse(program.exists("Frm_Restore_Cmd_Cancel"))

    def finish_restore(self):
        program = self.program
        program.wait_for(lambda: program.visible("Frm_Restore_Cmd_Ok") and
                         program.text("Frm_Restore_Lbl_RestorePath") == "Restore Complete", "its end")
        program.click("Frm_Restore_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assert_exit_code(0, program.close())

    def assert_cancelled(self):
        program = self.program
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assertFalse(program.exists("Frm_Restore_Cmd_Ok"))
        self.assert_exit_code(0, program.close())
        self.assert_untouched()
        records = self.pc.log.dated()
        start = records.index("Starting Restore from ZIP File - E:\\old.zip")
        self.assertEqual(["Finished Restore from ZIP File - E:\\old.zip", "Cancelled by User"],
                         records[start + 1:start + 3])

    def test_removed_one_that_comes_back_is_restored_beside_the_protected_folder(self):
        program = self.choose_archive_and_destination()
        (self.archives / "old.zip").rename(self.archives / "away.zip")
        self.ask("File not found")
        (self.archives / "away.zip").rename(self.archives / "old.zip")
        program.answer("Retry")
        self.finish_restore()
        self.assert_renamed()

    def test_removed_one_and_cancel_leave_everything_and_are_logged(self):
        program = self.choose_archive_and_destination()
        (self.archives / "old.zip").unlink()
        self.ask("File not found")
        program.answer("Cancel")
        self.assert_cancelled()

    def test_overwritten_one_and_cancel_leave_everything_and_are_logged(self):
        program = self.choose_archive_and_destination()
        (self.archives / "old.zip").write_bytes(b"no archive")
        self.ask("This is no zip archive, or its end is missing.")
        program.answer("Cancel")
        self.assert_cancelled()


class InterruptedRestores(Restoring):
    def start_big_restore(self):
        """Up to the running restore of random bytes, which take their time."""
        big = random.Random(7).randbytes(MIB) * 400
        with zipfile.ZipFile(self.archives / "big.zip", "w") as made:
            for number in range(4):
                made.writestr(f"big {number}.bin", big)
        program = self.start()
        program.show_tab("Restore")
        self.browse("E:\\big.zip")
        self.listed("big.zip")
        self.choose_destination()
        program.click("Cmd_Restore")
        program.wait_for(lambda: any(self.target.iterdir()), "the first file")
        return program

    def test_cancelled_restore_leaves_whole_files_only_and_says_so(self):
        program = self.start_big_restore()
        program.click("Frm_Restore_Cmd_Cancel")
        program.wait_for(lambda: program.exists("Frm_Restore_Lbl_RestorePath") and
                         program.text("Frm_Restore_Lbl_RestorePath") == "Restore Cancelled by User",
                         "the end of the run")
        program.close_box("Frm_Restore_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assert_exit_code(0, program.close())
        sizes = {os.stat(path).st_size for path in self.target.iterdir()}
        self.assertLessEqual(sizes, {400 * MIB})
        self.assertIn("Cancelled by User", self.pc.log.dated() + self.pc.log.undated())


if __name__ == "__main__":
    harness.main()
