"""Second backups, which reuse the compressed data of the last archive where it is proved equal.

The archive of the first run is replaced by one that another compressor has made, with the mark of the
program's own: what the second run's archive has of it was reused.
"""
import os
import random
import struct
import subprocess
import zipfile

import archives
import harness

MIB = 1024 * 1024
BIG = 24 * MIB
TEXTS = 30
MARK = 0x4756


def mark_of(archive):
    """The extra field of the first entry that names the compressor."""
    extra = archives.entries(archive)[min(archives.entries(archive))].extra
    while extra:
        number, size = struct.unpack_from("<HH", extra)
        if number == MARK:
            return extra[:4 + size]
        extra = extra[4 + size:]
    raise AssertionError("no mark")


def forge(archive):
    """Replaces the archive; returns the packed size of each text."""
    mark = mark_of(archive)
    with zipfile.ZipFile(archive) as opened:
        contents = {info.filename: opened.read(info) for info in opened.infolist()}
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED, compresslevel=1) as opened:
        for name, content in contents.items():
            info = zipfile.ZipInfo(name)
            info.compress_type = zipfile.ZIP_DEFLATED
            info.extra, mark = mark, b""
            opened.writestr(info, content)
    return packed_sizes(archive)


def packed_sizes(archive):
    return {name: info.compress_size for name, info in archives.entries(archive).items()
            if name.endswith(".txt")}


class SecondBackups(harness.EndToEndTest):
    def setUp(self):
        super().setUp()
        self.source = self.pc.drive("s")
        self.destination = self.pc.drive("e")
        words = random.Random(3)
        for number in range(TEXTS):
            text = " ".join(words.choices(["the", "quick", "brown", "fox", "jumps"], k=2000))
            (self.source / f"text {number:02}.txt").write_text(text, encoding="utf-8")
        # The first entry: the others are looked for when this one is written.
        (self.source / "big.bin").write_bytes(random.Random(4).randbytes(BIG))
        self.write_set(TimeBackup="ON")
        self.run_to_the_end()
        [self.first] = self.archives()
        self.fresh_sizes = packed_sizes(self.first)
        self.forged_sizes = forge(self.first)
        self.assertNotEqual(self.fresh_sizes, self.forged_sizes)

    def write_set(self, **keys):
        self.pc.write_set("Job.INI", BackupFiles="S:\\*.*", BackupToDrive="E:\\", **keys)

    def archives(self):
        return sorted(self.destination.rglob("JOB.zip"))

    def run_to_the_end(self):
        self.assert_exit_code(harness.COMPLETE, self.pc.run_unattended("Job.INI"))

    def run_and_meanwhile(self, action):
        """Runs a backup and does something when some of the new archive has been written."""
        before = self.archives()
        process = self.pc.start_unattended("Job.INI")

        def has_begun():
            return any(path.stat().st_size >= MIB
                       for path in self.destination.rglob("*.vantrel-new"))
        harness.wait_until(has_begun, "some of the new archive")
        action(process)
        status = self.pc.finish(process)
        [made] = set(self.archives()) - set(before) or [None]
        return status, made

    def check(self, archive, sizes):
        self.assertEqual([], archives.differences(self.source, archive))
        if sizes is not None:
            self.assertEqual(sizes, packed_sizes(archive))
        self.assertNotIn("earlier archive", self.pc.log.text())

    def newest(self):
        return max(self.archives())

    def test_dated_folders_reuse_the_archive_of_the_last_run(self):
        self.run_to_the_end()
        self.check(self.newest(), self.forged_sizes)

    def test_a_changed_file_is_compressed_again(self):
        path = self.source / "text 07.txt"
        dates = path.stat()
        path.write_text(path.read_text(encoding="utf-8").replace("fox", "cat"), encoding="utf-8")
        os.utime(path, ns=(dates.st_atime_ns, dates.st_mtime_ns))
        self.run_to_the_end()
        now = packed_sizes(self.newest())
        self.assertNotEqual(self.forged_sizes.pop(path.name), now.pop(path.name))
        self.assertEqual(self.forged_sizes, now)
        self.check(self.newest(), None)

    def test_one_name_reuses_the_archive_that_is_replaced(self):
        self.write_set(TimeBackup="OFF")
        target = self.destination / "JOB.zip"
        self.first.rename(target)
        self.run_to_the_end()
        self.check(target, self.forged_sizes)

    def test_the_run_after_a_kill_reuses_the_last_complete_archive(self):
        self.run_and_meanwhile(lambda process: process.kill())
        self.run_to_the_end()
        self.check(self.newest(), self.forged_sizes)

    def test_earlier_archive_is_deleted_meanwhile(self):
        status, made = self.run_and_meanwhile(lambda process: self.first.unlink())
        self.assert_exit_code(harness.COMPLETE, status)
        self.check(made, None)

    def test_earlier_archive_was_deleted_before(self):
        self.first.unlink()
        self.first.parent.rmdir()
        self.run_to_the_end()
        self.check(self.newest(), self.fresh_sizes)

    def test_earlier_archive_is_locked(self):
        path = f"E:\\{self.first.parent.name}\\JOB.zip"
        holder = self.pc.start(self.pc.helper("lock_file.exe"), path, stdin=subprocess.PIPE,
                               stdout=subprocess.PIPE)
        self.assertEqual(b"locked", holder.stdout.readline().strip())
        self.run_to_the_end()
        holder.stdin.close()
        self.assertEqual(0, self.pc.finish(holder))
        self.check(self.newest(), self.fresh_sizes)

    def test_drive_of_the_earlier_archive_is_unplugged(self):
        other = self.pc.drive("f")
        (other / "JOB.zip").write_bytes(self.first.read_bytes())
        self.write_set(TimeBackup="ON", RestoreFromDrive="F:\\", RestoreFileName="JOB.zip")
        self.run_to_the_end()
        self.check(self.newest(), self.forged_sizes)
        self.write_set(TimeBackup="ON", RestoreFromDrive="F:\\", RestoreFileName="JOB.zip")
        status, made = self.run_and_meanwhile(lambda process: self.pc.put_in("f", None))
        self.assert_exit_code(harness.COMPLETE, status)
        self.check(made, None)
        self.write_set(TimeBackup="ON", RestoreFromDrive="F:\\", RestoreFileName="JOB.zip")
        self.run_to_the_end()
        self.check(self.newest(), self.fresh_sizes)


if __name__ == "__main__":
    harness.main()
