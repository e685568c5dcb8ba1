"""The instructions of the guide, carried out step by step."""
import re
import subprocess

import archives
import harness
import window

GUIDE = (harness.ROOT / "docs" / "guide.md").read_text(encoding="utf-8")
INSTALLED = "C:\\Users\\You\\AppData\\Local\\Programs\\Vantrel"


class Recipes(harness.EndToEndTest):
    def setUp(self):
        super().setUp()
        self.documents = self.pc.drive("s") / "Documents"
        (self.documents / "Letters").mkdir(parents=True)
        (self.documents / "Letters" / "to the editor.txt").write_text("Dear Sir\n", encoding="utf-8")
        (self.documents / "note.txt").write_text("note\n", encoding="utf-8")
        self.destination = self.pc.drive("e")

    def batch_file(self):
        """The guide's own, for where the program is here."""
        [text] = re.findall(r"^    @echo off\n(?:    .*\n)+", GUIDE, re.M)
        text = re.sub(r"^    ", "", text, flags=re.M)
        self.assertIn(INSTALLED, text)
        return text.replace(INSTALLED, "V:\\Vantrel").replace("\n", "\r\n")

    def test_first_backup(self):
        (self.destination / "Kept").mkdir()
        program = window.Attended(self.pc)
        # 1
        program.click("Cmd_AddNew")
        program.wait_for(lambda: program.visible("Frm_Input_Fld_Answer"), "the question")
        program.replace_text("Frm_Input_Fld_Answer", "Daily")
        program.wait_for(lambda: program.text("Frm_Input_Fld_Answer") == "Daily", "the name")
        program.keys("Enter", "Frm_Input_Fld_Answer")
        program.wait_for(lambda: program.text("Lbl_BackupFileName") == "DAILY", "the new set")
        # 2
        program.click("Cmd_Change")
        program.wait_for(lambda: program.enabled("Dri_DriveList"), "the edit mode")
        # 3
        program.choose("Dri_DriveList", "s:")
        program.wait_for(lambda: "Documents" in program.items("Dir_DirList"), "the drive")
        program.open_entry("Dir_DirList", "Documents")
        program.wait_for(lambda: "Letters" in program.items("Dir_DirList"), "the folder")
        # 4
        program.click("Cmd_Navigate")
        program.wait_for(lambda: program.visible("Frm_BackupWhere_Cmd_Ok"), "the dialog")
        program.choose("Frm_BackupWhere_Dri_DriveList", "e:")
        program.wait_for(lambda: "Kept" in program.items("Frm_BackupWhere_Dir_DirList"), "e:")
        program.click("Frm_BackupWhere_Cmd_Ok")
        program.wait_for(lambda: program.enabled("Cmd_Options_2"), "the main window again")
        # 5
        program.click("Cmd_Options_2")
        program.wait_for(lambda: program.visible("Frm_BackupOptions_Cmd_Ok"), "the options")
        for box, wanted in (("BackupSubDirectories", True), ("MultiVolumeBackup", False)):
            name = f"Frm_BackupOptions_Chk_{box}"
            self.assertEqual(not wanted, program.checked(name))
            program.click(name)
            program.wait_for(lambda: program.checked(name) == wanted, box)
        program.click("Frm_BackupOptions_Cmd_Ok")
        program.wait_for(lambda: program.enabled("Cmd_Backup"), "the main window again")
        # 6
        program.click("Cmd_Backup")
        program.answer("Yes", "Are you sure")
        program.wait_for(lambda: program.exists("Frm_Backup_Lbl_BackupPath") and program.text(
            "Frm_Backup_Lbl_BackupPath") == "Backup Complete", "the end of the run")
        program.click("Frm_Backup_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assert_exit_code(0, program.close())
        [archive] = self.destination.glob("*_*/DAILY.zip")
        self.assertEqual([], archives.differences(self.documents, archive))

    def test_network_paths_need_no_drive_letter(self):
        share = self.pc.folder / "share"
        for folder in ("documents", "backup"):
            (share / folder).mkdir(parents=True)
        (share / "documents" / "note.txt").write_text("note\n", encoding="utf-8")
        server = self.pc.prefix / "dosdevices" / "unc" / "server"
        server.mkdir(parents=True)
        (server / "share").symlink_to(share)
        for time in ("OFF", "ON"):
            self.pc.write_set("Net.INI", BackupFiles="\\\\SERVER\\SHARE\\DOCUMENTS\\*.*",
                              BackupToDrive="\\\\SERVER\\SHARE\\BACKUP\\", TimeBackup=time)
            self.assert_exit_code(harness.COMPLETE, self.pc.run_unattended("Net.INI"))
        made = sorted((share / "backup").rglob("NET.zip"))
        self.assertEqual(2, len(made))
        for archive in made:
            self.assertEqual([], archives.differences(share / "documents", archive))

    def test_batch_file_waits_and_sees_the_exit_codes(self):
        self.pc.write_set("DAILY.INI", BackupFiles="S:\\Documents\\*.*", BackupToDrive="Q:\\")
        self.pc.write_set("LETTERS.INI", BackupFiles="S:\\Documents\\Letters\\*.*",
                          BackupToDrive="E:\\")
        (self.pc.application / "all.cmd").write_bytes(self.batch_file().encode("ascii"))
        batch = self.pc.start("cmd", "/c", "V:\\Vantrel\\all.cmd", stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE)
        said = batch.stdout.read().decode("ascii").split("\r\n")
        self.assert_exit_code(0, self.pc.finish(batch))
        self.assertEqual(["The backup of DAILY.INI failed, see Vantrel.Log", ""], said)
        self.assertEqual(["Command Line Parameter = DAILY.INI", "Command Line Parameter = LETTERS.INI"],
                         [text for text in self.pc.log.undated() if "Parameter" in text])
        self.assertEqual([], archives.differences(self.documents / "Letters",
                                                  self.destination / "LETTERS.zip"))


if __name__ == "__main__":
    harness.main()
