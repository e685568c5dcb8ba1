"""The program is killed at moments of a backup that nobody chose: the earlier archive stays byte for
byte, and the next run succeeds and clears up.

VANTREL_KILL_SEED repeats the moments of an earlier run; each run prints its seed.
"""
import os
import random
import unittest
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import archives
import harness

SEED = int(os.environ.get("VANTREL_KILL_SEED", random.SystemRandom().randrange(1_000_000)))
KILLS = 20
COMPUTERS = 4
ATTEMPTS = 5
FILE_BYTES = 6_000_000
FILES = 6


def make_source(folder):
    """Bytes that do not shrink, so that the archive's size is known beforehand."""
    source = random.Random(7)
    for number in range(FILES):
        (folder / f"part {number}.bin").write_bytes(source.randbytes(FILE_BYTES))


class Victim:
    """One computer with a source, an earlier archive, and a backup to be killed over it."""

    def __init__(self, time_backup):
        self.pc = harness.Computer()
        self.source = self.pc.drive("s")
        self.destination = self.pc.drive("e")
        self.time_backup = time_backup
        make_source(self.source)
        self.pc.write_set("Job.INI", BackupFiles="S:\\*.*", BackupToDrive="E:\\",
                          TimeBackup="ON" if time_backup else "OFF")
        self.run_to_the_end()
        self.notes = 0
        self.take_as_earlier()

    def take_as_earlier(self):
        """What is there now has to stay; the next archive will be another one."""
        self.earlier = self.archives()
        self.notes += 1
        (self.source / "note.txt").write_text(f"note {self.notes}\n", encoding="utf-8")

    def run_to_the_end(self):
        exit_code = self.pc.run_unattended("Job.INI")
        assert exit_code == harness.COMPLETE, f"exit code {exit_code}\n{self.pc.log.text()}"

    def archives(self):
        return {path: data for path, data in archives.tree(self.destination).items()
                if data is not None}

    def bytes_written(self):
        """Size of the unfinished archive, None while there is none."""
        sizes = []
        # Files and folders of an earlier run may go while this looks; os.walk leaves those out.
        for folder, _, names in os.walk(self.destination):
            for name in names:
                path = Path(folder, name)
                if str(path.relative_to(self.destination)) in self.earlier:
                    continue
                try:
                    sizes.append(path.stat().st_size)
                except FileNotFoundError:
                    pass
        return max(sizes, default=None)

    def kill_after(self, wanted):
        """Runs a backup and kills it as soon as `wanted` bytes are written. One that was faster
        than this watcher, on a busy machine, does not count: another is run."""
        for _ in range(ATTEMPTS):
            status = self.try_to_kill_after(wanted)
            if status == -9:
                return
            assert status == harness.COMPLETE, f"exit code {status}\n{self.pc.log.text()}"
            self.take_as_earlier()
        raise AssertionError(f"ended before it could be killed, {ATTEMPTS} times")

    def try_to_kill_after(self, wanted):
        process = self.pc.start_unattended("Job.INI")

        def there():
            written = self.bytes_written()
            return process.poll() is not None or (written is not None and written >= wanted)

        harness.wait_until(there, f"{wanted} bytes written")
        process.kill()
        return process.wait()

    def check_earlier_archive(self):
        now = self.archives()
        for path, data in self.earlier.items():
            assert now.get(path) == data, f"{path} is not what it was"

    def check_next_run(self):
        self.run_to_the_end()
        left = sorted(self.archives())
        if self.time_backup:
            assert len(left) == len(self.earlier) + 1, f"debris: {left}"
        else:
            assert left == sorted(self.earlier), f"debris: {left}"
        [newest] = [path for path, data in self.archives().items()
                    if data != self.earlier.get(path)]
        folders = [path for path, data in archives.tree(self.destination).items() if data is None]
        assert len(folders) == (len(left) if self.time_backup else 0), f"debris: {folders}"
        complaints = archives.differences(self.source, self.destination / newest)
        assert not complaints, complaints


class KilledBackups(unittest.TestCase):
    def kill_all(self, time_backup):
        chance = random.Random(SEED + time_backup)
        # The last tenth is left out: a kill must not come after the end.
        moments = [int(chance.random() * 0.9 * FILES * FILE_BYTES) for _ in range(KILLS)]
        print(f"VANTREL_KILL_SEED={SEED}, killed after bytes: {sorted(moments)}", flush=True)
        shares = [moments[start::COMPUTERS] for start in range(COMPUTERS)]

        def one_computer(share):
            victim = Victim(time_backup)
            try:
                for wanted in share:
                    victim.kill_after(wanted)
                    victim.check_earlier_archive()
                victim.check_next_run()
                return len(share)
            finally:
                victim.pc.remove()

        with ThreadPoolExecutor(COMPUTERS) as pool:
            self.assertEqual(KILLS, sum(pool.map(one_computer, shares)))

    def test_over_an_earlier_archive(self):
        self.kill_all(time_backup=False)

    def test_beside_an_earlier_stamped_archive(self):
        self.kill_all(time_backup=True)


if __name__ == "__main__":
    harness.main()
