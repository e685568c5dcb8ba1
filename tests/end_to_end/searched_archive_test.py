"""Archives with a damaged directory, in the real windows: the question, the search, its cancel, a restore."""
import os

import archives
import harness
import restore_test

QUESTION = "The list of files in this archive is damaged or missing:"


class SearchedArchives(restore_test.Restoring):
    def damaged(self, files):
        """The archive without its directory, and without the end of the last file."""
        self.zip("old.zip", files)
        path = self.archives / "old.zip"
        data = path.read_bytes()
        path.write_bytes(data[:data.index(b"PK\1\2") - 3])

    def choose(self, button):
        program = self.start()
        program.show_tab("Restore")
        self.zip("sound.zip", {"one.txt": "1", "two.txt": "2"})
        self.browse("E:\\sound.zip")
        program.wait_for(lambda: program.text("Fld_Total") == "2", "the entries")
        self.browse("E:\\old.zip")
        program.wait_for_box(QUESTION)
        self.assertEqual("0", program.text("Fld_Total"), "of the archive that the question is about")
        self.assertIn("No entries are listed.", program.status())
        box = program.answer(button, QUESTION)
        self.assertEqual(("Restore", True), (box.title, box.has_icon))
        self.assertEqual({"Search", "Cancel"}, set(box.buttons))
        return program

    def test_truncated_one_is_searched_and_its_intact_files_are_restored(self):
        (self.pc.application / "Vantrel.Cfg").write_bytes(b";\r\n" * 7 + b"\r\nT:\\MINE\r\n")
        (self.target / "Mine").mkdir()
        (self.target / "Mine" / "letter.txt").write_text("newer", encoding="utf-8")
        self.damaged({"Mine/letter.txt": "older", "b.txt": "beta", "last.txt": "gamma"})
        program = self.choose("Search")
        program.wait_for(lambda: program.text("Fld_Total") == "2", "the files that were found")
        self.assertEqual(["Mine/letter.txt", "b.txt"], self.listed("old.zip"))
        self.choose_destination()
        self.restore()
        self.assert_exit_code(0, program.close())
        self.assertEqual({"Mine": None, "Mine/letter.txt": b"older", "MINE_001": None,
                          "MINE_001/letter.txt": b"newer", "b.txt": b"beta"},
                         archives.tree(self.target))
        records = self.pc.log.undated()
        self.assertIn("last.txt is not restored: the archive ends before its data.", records)
        self.assertIn("1 file not restored", records)

    def test_one_that_is_not_searched_counts_nothing(self):
        self.damaged({"a.txt": "alpha", "last.txt": "gamma"})
        program = self.choose("Cancel")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assertEqual("0", program.text("Fld_Total"))
        self.assert_exit_code(0, program.close())

    def test_search_is_cancelled(self):
        self.damaged({"a.txt": "alpha", "last.txt": "gamma"})
        os.truncate(self.archives / "old.zip", 256 * 2**30)
        program = self.choose("Search")
        program.wait_for(lambda: program.visible("Frm_Restore_Cmd_Cancel"), "the window of the search")
        program.click("Frm_Restore_Cmd_Cancel")
        program.wait_for(lambda: not program.exists("Frm_Restore_Cmd_Cancel") and
                         program.enabled("TAB_Backup"), "the main window again")
        self.assertEqual("0", program.text("Fld_Total"))
        self.assert_exit_code(0, program.close())


if __name__ == "__main__":
    harness.main()
