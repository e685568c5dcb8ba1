"""Unattended refusals before a backup, on drives that really are what they say."""
import archives
import harness
import log_file

KIB = 1024


class Refusals(harness.EndToEndTest):
    def setUp(self):
        super().setUp()
        self.source = self.pc.drive("s")
        (self.source / "letter.txt").write_text("Dear reader\n", encoding="utf-8")

    def run_set(self, **keys):
        self.pc.write_set("Job.INI", **{"BackupFiles": "S:\\*.*", "BackupToDrive": "E:\\", **keys})
        return self.pc.run_unattended("Job.INI")

    def assert_refused(self, reason, **keys):
        self.assert_exit_code(harness.FAILED, self.run_set(**keys))
        self.assertEqual(log_file.refused("Job.INI", reason), self.pc.log.records())

    def test_destination_folder_is_missing(self):
        destination = self.pc.drive("e")
        self.assert_refused("Unable to locate E:\\Nowhere\\", BackupToDrive="E:\\Nowhere")
        self.assertEqual([], list(destination.iterdir()))

    def test_destination_drive_is_missing(self):
        self.assert_refused("Unable to locate Q:\\", BackupToDrive="Q:")

    def test_source_folder_is_missing(self):
        self.pc.drive("e")
        self.assert_refused("Unable to locate S:\\Nowhere\\", BackupFiles="S:\\Nowhere\\*.*")
        self.assertEqual("S:\\Nowhere\\*.*", self.pc.read_set("Job.INI")["BackupFiles"])

    def test_source_drive_is_missing(self):
        self.pc.drive("e")
        self.assert_refused("Unable to locate Q:\\Data\\", BackupFiles="Q:\\Data\\*.*")

    def test_missing_destination_is_told_before_missing_source(self):
        self.pc.drive("e")
        self.assert_refused("Unable to locate E:\\Nowhere\\", BackupFiles="S:\\Nowhere\\*.*",
                            BackupToDrive="E:\\Nowhere\\")

    def test_cdrom(self):
        self.pc.drive("e", "cdrom")
        self.assert_refused("Cannot Backup to CDROM Drive E:\\")

    def test_ram_disk_is_refused_before_the_multi_volume_rules(self):
        self.pc.drive("e", "ramdisk")
        self.assert_refused("Cannot Backup to RAM Disk E:\\", MultiVolumeBackup="ON")

    def test_one_volume_onto_a_removable_drive(self):
        self.pc.drive("e", "floppy")
        self.assert_refused("MultiVolume Flag NOT set for Removable Drive E:\\")

    def test_many_volumes_onto_a_fixed_drive(self):
        self.pc.drive("e")
        self.assert_refused("MultiVolume Flag set for Non-Removable Drive E:\\",
                            MultiVolumeBackup="ON")

    def test_many_volumes_onto_a_network_drive(self):
        self.pc.drive("e", "network")
        self.assert_refused("MultiVolume Flag set for Non-Removable Drive E:\\",
                            MultiVolumeBackup="ON")

    def test_many_volumes_onto_a_floppy_with_too_little_space(self):
        floppy = self.pc.drive("e", "floppy", 1440 * KIB)
        self.assert_refused("Unable to conduct a Backup on a MultiVolume Drive whilst Unattended",
                            MultiVolumeBackup="ON")
        self.assertEqual([], list(floppy.iterdir()))

    def test_many_volumes_onto_a_floppy_with_enough_space_run(self):
        floppy = self.pc.drive("e", "floppy", 2880 * KIB)
        self.assert_exit_code(harness.COMPLETE, self.run_set(MultiVolumeBackup="ON"))
        self.assertEqual([], archives.differences(self.source, floppy / "JOB.zip"))
        self.assertEqual(log_file.successful("Job.INI", "E:\\JOB.zip"), self.pc.log.records())

    def test_one_volume_onto_a_network_drive_runs(self):
        share = self.pc.drive("e", "network")
        self.assert_exit_code(harness.COMPLETE, self.run_set())
        self.assertEqual([], archives.differences(self.source, share / "JOB.zip"))


if __name__ == "__main__":
    harness.main()
