"""Backups that cannot be completed: what was there before stays, and the log says why."""
import random
import subprocess

import archives
import harness
import log_file

MIB = 1024 * 1024


class FailingBackups(harness.EndToEndTest):
    def setUp(self):
        super().setUp()
        self.source = self.pc.drive("s")
        (self.source / "letter.txt").write_text("Dear reader\n", encoding="utf-8")

    def back_up(self, **keys):
        self.pc.write_set("Job.INI", BackupFiles="S:\\*.*", BackupToDrive="E:\\", **keys)
        return self.pc.run_unattended("Job.INI")

    def assert_failed_with(self, word):
        """The last run ended by itself, in the middle, and an undated line says why."""
        records = self.pc.log.records()
        last_start = max(i for i, (_, text) in enumerate(records) if text.endswith(" Started"))
        run = records[last_start:]
        self.assertEqual(log_file.successful("Job.INI", run[3][1].split("File ", 1)[1])[:4], run[:4])
        reasons = [text for dated, text in run[4:] if dated is False]
        self.assertTrue(any(word in text.lower() for text in reasons), run)
        self.assertNotIn("Successful Backup", [text for _, text in run])

    def grow_source(self):
        (self.source / "big.bin").write_bytes(random.Random(4).randbytes(4 * MIB))

    def test_destination_fills_up(self):
        destination = self.pc.drive("e", size=2 * MIB)
        self.assert_exit_code(harness.COMPLETE, self.back_up())
        earlier = (destination / "JOB.zip").read_bytes()
        kept = self.pc.read_set("Job.INI")
        self.grow_source()
        self.assert_exit_code(harness.FAILED, self.back_up())
        self.assert_failed_with("full")
        self.assertEqual({"JOB.zip": earlier}, archives.tree(destination))
        self.assertEqual("", self.pc.read_set("Job.INI")["RestoreFileName"])
        self.assertEqual("JOB.zip", kept["RestoreFileName"])

    def test_destination_fills_up_in_a_stamped_folder(self):
        destination = self.pc.drive("e", size=2 * MIB)
        self.grow_source()
        self.assert_exit_code(harness.FAILED, self.back_up(TimeBackup="ON"))
        self.assert_failed_with("full")
        self.assertEqual({}, archives.tree(destination))

    def test_read_only_destination(self):
        destination = self.pc.drive("e", size=2 * MIB)
        self.assert_exit_code(harness.COMPLETE, self.back_up())
        earlier = (destination / "JOB.zip").read_bytes()
        self.pc.make_read_only(destination)
        self.assert_exit_code(harness.FAILED, self.back_up())
        self.assert_failed_with("e:\\")
        self.assertEqual({"JOB.zip": earlier}, archives.tree(destination))

    def test_no_file_matches(self):
        destination = self.pc.drive("e")
        (self.source / "Nothing").mkdir()
        self.pc.write_set("Job.INI", BackupFiles="S:\\Nothing\\*.*", BackupToDrive="E:\\")
        self.assert_exit_code(harness.FAILED, self.pc.run_unattended("Job.INI"))
        self.assert_failed_with("s:\\nothing")
        self.assertEqual({}, archives.tree(destination))


class LockedFile(harness.EndToEndTest):
    def test_is_named_counted_and_left_out(self):
        source = self.pc.drive("s")
        destination = self.pc.drive("e")
        (source / "letter.txt").write_text("Dear reader\n", encoding="utf-8")
        (source / "open ledger.dat").write_bytes(b"being written to")
        holder = self.pc.start(self.pc.helper("lock_file.exe"), "S:\\open ledger.dat",
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.assertEqual(b"locked", holder.stdout.readline().strip())
        self.pc.write_set("Job.INI", BackupFiles="S:\\*.*", BackupToDrive="E:\\")
        self.assert_exit_code(harness.SOME_SKIPPED, self.pc.run_unattended("Job.INI"))

        self.assertEqual([], archives.differences(source, destination / "JOB.zip",
                                                  {"open ledger.dat"}))
        notes = self.pc.log.undated()[1:]
        self.assertEqual(2, len(notes), notes)
        self.assertIn("open ledger.dat", notes[0])
        self.assertEqual("1 file not backed up", notes[1])
        self.assertEqual(log_file.successful("Job.INI", "E:\\JOB.zip", notes),
                         self.pc.log.records())
        holder.stdin.close()
        self.assertEqual(0, self.pc.finish(holder))


if __name__ == "__main__":
    harness.main()
