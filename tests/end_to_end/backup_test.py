"""Unattended backups of a real tree, read back by three readers that are not ours."""
import re
import tempfile
from datetime import datetime, timedelta

import archives
import harness
import log_file
import trees


class BackupOfARealTree(harness.EndToEndTest):
    def setUp(self):
        super().setUp()
        self.source = self.pc.drive("s") / "Eigene Dateien"
        self.source.mkdir()
        trees.make_real_tree(self.source)
        self.destination = self.pc.drive("e")

    def back_up(self, **keys):
        self.pc.write_set("Daily.ini", BackupFiles="S:\\Eigene Dateien\\*.*",
                          BackupToDrive="E:\\", BackupFileName="Daily", **keys)
        self.assert_exit_code(harness.COMPLETE, self.pc.run_unattended("Daily.ini"))

    def assert_archive_is_whole(self, archive):
        self.assertEqual([], archives.differences(self.source, archive))
        with tempfile.TemporaryDirectory() as folder:
            archives.extract_with_7zz(archive, folder)
            self.assertEqual([], archives.time_differences(self.source, folder, 0.001))
        with tempfile.TemporaryDirectory() as folder:
            archives.extract_with_unzip(archive, folder)
            self.assertEqual([], archives.time_differences(self.source, folder, 1.001))

    def test_fixed_name(self):
        self.back_up(TimeBackup="OFF")
        self.assertEqual(["Daily.zip"], [path.name for path in self.destination.iterdir()])
        self.assert_archive_is_whole(self.destination / "Daily.zip")
        self.assertEqual(log_file.successful("Daily.ini", "E:\\Daily.zip"), self.pc.log.records())
        kept = self.pc.read_set("Daily.ini")
        self.assertEqual("E:\\", kept["RestoreFromDrive"])
        self.assertEqual("Daily.zip", kept["RestoreFileName"])

    def test_attributes_and_empty_folders_are_stored(self):
        self.back_up(TimeBackup="OFF")
        found = archives.entries(self.destination / "Daily.zip")
        self.assertEqual(1, found["read-only.txt"].external_attr & 1)
        self.assertEqual(2, found[".hidden.txt"].external_attr & 2)
        self.assertEqual(0x10, found["empty folder/"].external_attr & 0x10)
        self.assertIn("nested/empty/leer ü/", found)

    def test_stamped_folder(self):
        before = datetime.now()
        self.back_up(TimeBackup="ON")
        [folder] = self.destination.iterdir()
        self.assertRegex(folder.name, r"^\d{8}_\d{6}$")
        # The program's clock is local time, up to a day from this process's.
        stamp = datetime.strptime(folder.name, "%Y%m%d_%H%M%S")
        self.assertLess(abs(stamp - before), timedelta(days=1))
        self.assertEqual(["Daily.zip"], [path.name for path in folder.iterdir()])
        self.assert_archive_is_whole(folder / "Daily.zip")
        self.assertEqual(log_file.successful("Daily.ini", f"E:\\{folder.name}\\Daily.zip"),
                         self.pc.log.records())
        kept = self.pc.read_set("Daily.ini")
        self.assertEqual(f"E:\\{folder.name}\\", kept["RestoreFromDrive"])
        self.assertEqual("Daily.zip", kept["RestoreFileName"])

    def test_without_sub_folders(self):
        self.back_up(BackupSubDirectories="OFF")
        top = {path.name for path in self.source.iterdir() if path.is_file()}
        self.assertEqual(top, set(archives.entries(self.destination / "Daily.zip")))

    def test_mask_becomes_all_files(self):
        # Showing the set moves the folder list before the set's own mask is shown, which writes the
        # folder with the mask of an empty window.
        self.pc.write_set("Texts.ini", BackupFiles="S:\\Eigene Dateien\\*.txt",
                          BackupToDrive="E:\\", BackupSubDirectories="OFF")
        self.assert_exit_code(harness.COMPLETE, self.pc.run_unattended("Texts.ini"))
        self.assertEqual("S:\\Eigene Dateien\\*.*", self.pc.read_set("Texts.ini")["BackupFiles"])
        self.assertIn("one.bin", archives.entries(self.destination / "TEXTS.zip"))

    def test_second_run_replaces_the_first(self):
        self.back_up()
        first = (self.destination / "Daily.zip").read_bytes()
        (self.source / "new.txt").write_text("new since the first run\n", encoding="utf-8")
        (self.source / "one.bin").unlink()
        self.back_up()
        self.assertNotEqual(first, (self.destination / "Daily.zip").read_bytes())
        self.assert_archive_is_whole(self.destination / "Daily.zip")
        header, *_ = re.split(r"\r\n(?=\d\d/)", self.pc.log.text())
        self.assertEqual(12, header.count("\r\n") + 1)


class DestinationInsideTheSource(harness.EndToEndTest):
    def test_archive_does_not_contain_itself(self):
        source = self.pc.drive("s")
        trees.make_real_tree(source)
        (source / "Backup").mkdir()
        (source / "Backup" / "list of discs.txt").write_text("one")
        self.pc.write_set("Inside.ini", BackupFiles="S:\\*.*", BackupToDrive="S:\\Backup\\")
        # The second run meets the first one's archive, which is about to be replaced.
        for _ in range(2):
            self.assert_exit_code(harness.COMPLETE, self.pc.run_unattended("Inside.ini"))
            archive = source / "Backup" / "INSIDE.zip"
            self.assertEqual(["INSIDE.zip", "list of discs.txt"],
                             sorted(path.name for path in archive.parent.iterdir()))
            self.assertEqual([], archives.differences(source, archive, {"Backup/INSIDE.zip"}))


if __name__ == "__main__":
    harness.main()
