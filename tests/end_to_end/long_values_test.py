"""Values of a set that are too long to be read back, and paths without a drive, in the real program."""
import archives
import harness
import log_file
import window

SOURCE = "BackupFiles is longer than 254 bytes"
DATED = "BackupToDrive with the name of a dated folder is longer than 254 bytes"
SURE = "Are you sure that you wish to start the backup now?"


def folder_of(length):
    """A path below a drive's root of so many characters, without the drive: A...A\\B...B."""
    first = "A" * 120
    return first + "\\" + "B" * (length - 121)


class LongValues(harness.EndToEndTest):
    def setUp(self):
        super().setUp()
        self.source = self.pc.drive("s")
        self.destination = self.pc.drive("e")

    @staticmethod
    def make(root, folder, file_name="letter.txt"):
        """A folder below a drive's root with a file in it."""
        path = root.joinpath(*folder.split("\\"))
        path.mkdir(parents=True, exist_ok=True)
        (path / file_name).write_text("Dear reader\n", encoding="utf-8")
        return path

    def write_set(self, source, destination="E:\\", **keys):
        self.pc.write_set("Job.INI", BackupFiles=source, BackupToDrive=destination, **keys)
        self.written = (self.pc.application / "Job.INI").read_bytes()

    def assert_set_unchanged(self):
        self.assertEqual(self.written, (self.pc.application / "Job.INI").read_bytes())

    def archives_made(self):
        return [path for root in (self.source, self.destination, self.pc.application.parent)
                for path in root.rglob("*") if path.suffix.lower() == ".zip"]

    def assert_refused_unattended(self, reason):
        self.assert_exit_code(harness.FAILED, self.pc.run_unattended("Job.INI"))
        self.assertEqual(log_file.refused("Job.INI", reason), self.pc.log.records())
        self.assertEqual([], self.archives_made())
        self.assert_set_unchanged()

    def assert_refused_attended(self, reason):
        program = window.Attended(self.pc)
        program.choose("Cmb_BackupSet", "Job.INI")
        program.wait_for(lambda: program.text("Lbl_BackupFileName") == "JOB", "the set")
        program.show_tab("Restore")
        program.show_tab("Backup")
        program.click("Cmd_Backup")
        program.answer("OK", f"Unable to continue with the Backup as {reason}.")
        self.assert_exit_code(0, program.close())
        self.assertEqual([], self.archives_made())
        self.assert_set_unchanged()


class Sources(LongValues):
    def test_source_that_is_too_long_is_refused_unattended(self):
        self.make(self.source, folder_of(240))
        self.make(self.source, folder_of(240) + "\\" + "C" * 40)
        self.write_set("S:\\" + folder_of(240) + "\\" + "C" * 40 + "\\*.*")
        self.assert_refused_unattended(SOURCE)

    def test_source_that_is_too_long_is_refused_attended_and_never_written_back(self):
        self.make(self.source, folder_of(240))
        self.make(self.source, folder_of(240) + "\\" + "C" * 40)
        self.write_set("S:\\" + folder_of(240) + "\\" + "C" * 40 + "\\*.*")
        self.assert_refused_attended(SOURCE)

    def test_longest_source_is_archived(self):
        folder = self.make(self.source, folder_of(247))  # with S:\ and \*.* 254
        self.write_set("S:\\" + folder_of(247) + "\\*.*")
        self.assert_exit_code(harness.COMPLETE, self.pc.run_unattended("Job.INI"))
        self.assertEqual([], archives.differences(folder, self.destination / "JOB.zip"))

    def test_folder_that_is_too_long_is_refused_where_it_is_chosen(self):
        self.make(self.source, folder_of(240) + "\\" + "C" * 40)
        self.write_set("S:\\" + folder_of(240) + "\\*.*")
        program = window.Attended(self.pc)
        program.choose("Cmb_BackupSet", "Job.INI")
        program.wait_for(lambda: program.text("Lbl_BackupFileName") == "JOB", "the set")
        program.click("Cmd_Change")
        program.wait_for(lambda: "C" * 40 in program.items("Dir_DirList"), "the folder's folders")
        program.open_entry("Dir_DirList", "C" * 40)
        box = program.answer("OK", "Unable to use the folder")
        self.assertTrue(box.text.endswith("Its path is longer than a Backup Set can store."))
        program.wait_for(lambda: "C" * 40 in program.items("Dir_DirList"), "the folder before")
        self.assert_exit_code(0, program.close())
        self.assert_set_unchanged()


class Destinations(LongValues):
    def setUp(self):
        super().setUp()
        self.make(self.source, "Data")

    def test_dated_destination_that_is_too_long_is_refused_unattended(self):
        self.make(self.destination, folder_of(236))
        self.write_set("S:\\Data\\*.*", "E:\\" + folder_of(236) + "\\", TimeBackup="ON")
        self.assert_refused_unattended(DATED)

    def test_dated_destination_that_is_too_long_is_refused_attended(self):
        self.make(self.destination, folder_of(236))
        self.write_set("S:\\Data\\*.*", "E:\\" + folder_of(236) + "\\", TimeBackup="ON")
        self.assert_refused_attended(DATED)

    def test_destination_that_is_too_long_gets_no_archive_beside_it(self):
        self.make(self.destination, folder_of(251))
        self.write_set("S:\\Data\\*.*", "E:\\" + folder_of(251) + "\\")
        self.assert_refused_unattended("BackupToDrive is longer than 254 bytes")


class Roots(LongValues):
    """The application's drive is V:."""

    def test_paths_that_begin_with_a_backslash_are_on_the_applications_drive_unattended(self):
        folder = self.make(self.pc.application.parent, "Data")
        self.write_set("\\Data\\*.*", "\\Out\\")
        (self.pc.application.parent / "Out").mkdir()
        self.assert_exit_code(harness.COMPLETE, self.pc.run_unattended("Job.INI"))
        archive = self.pc.application.parent / "Out" / "JOB.zip"
        self.assertEqual([], archives.differences(folder, archive))
        self.assertEqual("\\Out\\", self.pc.read_set("Job.INI")["RestoreFromDrive"])

    def test_paths_that_begin_with_a_backslash_are_on_the_applications_drive_attended(self):
        folder = self.make(self.pc.application.parent, "Data")
        (self.pc.application.parent / "Out").mkdir()
        self.write_set("\\Data\\*.*", "\\Out\\")
        program = window.Attended(self.pc)
        program.choose("Cmb_BackupSet", "Job.INI")
        program.wait_for(lambda: program.text("Fld_BackupWhere") == "\\Out\\", "the set")
        program.click("Cmd_Backup")
        program.answer("Yes", SURE)
        program.wait_for(lambda: program.visible("Frm_Backup_Cmd_Ok"), "the end of the backup")
        self.assertEqual("Backup Complete", program.text("Frm_Backup_Lbl_BackupPath"))
        program.click("Frm_Backup_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        self.assert_exit_code(0, program.close())
        archive = self.pc.application.parent / "Out" / "JOB.zip"
        self.assertEqual([], archives.differences(folder, archive))

    def test_source_without_drive_or_backslash_is_refused_unattended(self):
        self.write_set("*.*")
        self.assert_refused_unattended(
            'BackupFiles does not begin with the root of a drive: "*.*"')

    def test_destination_without_drive_or_backslash_is_refused_attended(self):
        self.make(self.source, "Data")
        self.write_set("S:\\Data\\*.*", "")
        self.assert_refused_attended(
            'BackupToDrive does not begin with the root of a drive: ""')


if __name__ == "__main__":
    harness.main()
