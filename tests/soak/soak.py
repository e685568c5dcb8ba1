"""Backups and restores in a row, with faults and kills that nobody chose, through the real program
under Wine:

    python3 tests/soak/soak.py [--rounds 200] [--seed N]

The first half of the rounds starts a program for each; the second half is one program that is never
closed. After every round the earlier archive, the set, the list of protected folders and the log
are whole; what says that it was successful is read by other people's tools, and restores equal.
Handles, threads and memory of the program that is never closed must not grow.

The seed is printed and repeats the choices; what is written when a kill comes is up to the machine.
"""
import argparse
import random
import shutil
import statistics
import subprocess
import sys
from collections import Counter
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "end_to_end"))

import archives  # noqa: E402
import harness  # noqa: E402
import window  # noqa: E402

MIB = 1024 * 1024
DISK = 24 * MIB
SET = "Job.INI"
ARCHIVE = "JOB.zip"
KEPT_LINES = 13  # of a log that is trimmed
LEAST_SAMPLES = 6
WARM_UP = 5      # rounds of a program before its handles and memory are compared


class Growth:
    """Handles, threads and memory of one program, round by round."""

    def __init__(self, process):
        self.pid = process.pid
        self.samples = []

    def sample(self):
        proc = Path("/proc") / str(self.pid)
        status = dict(line.split(":", 1) for line in (proc / "status").read_text().splitlines())
        memory = dict(line.split(":", 1) for line in
                      (proc / "smaps_rollup").read_text().splitlines()[1:])
        self.samples.append({
            "descriptors": len(list((proc / "fd").iterdir())),
            "handles": self._server_descriptors(),
            "threads": int(status["Threads"]),
            "resident KB": int(status["VmRSS"].split()[0]),
            # Of its own: a page of a library counts as private, too, once no other program has it.
            "anonymous KB": int(memory["Anonymous"].split()[0]),
        })

    def _server_descriptors(self):
        """A program's file handles are descriptors of its Wine server."""
        prefix = (Path("/proc") / str(self.pid) / "environ").read_bytes().split(b"\0")
        prefix = next(entry for entry in prefix if entry.startswith(b"WINEPREFIX="))
        for proc in Path("/proc").glob("[0-9]*"):
            try:
                if (proc / "comm").read_text().startswith("wineserver") and \
                        prefix in (proc / "environ").read_bytes().split(b"\0"):
                    return len(list((proc / "fd").iterdir()))
            except OSError:
                continue
        return 0

    def report(self):
        """Medians of a tenth of the rounds, after the warm-up and at the end."""
        rest = self.samples[WARM_UP:]
        if len(rest) < LEAST_SAMPLES:
            print(f"  too few for a comparison: it takes {WARM_UP + LEAST_SAMPLES}")
            return []
        part = max(3, len(rest) // 10)
        grown = []
        for name in self.samples[0]:
            first = statistics.median(sample[name] for sample in rest[:part])
            last = statistics.median(sample[name] for sample in rest[-part:])
            print(f"  {name:13} {first:10.0f} at first {last:10.0f} at the end")
            # Memory may settle a little; a leak of a round's buffers would be megabytes a round.
            allowed = 4 * 1024 if name.endswith("KB") else 2
            if last > first + allowed:
                grown.append(f"{name} grew from {first} to {last}")
        return grown


class Soak:
    def __init__(self, seed):
        self.seed = seed
        self.pc = harness.Computer()
        self.source = self.pc.drive("s")
        self.destination = self.pc.drive("e", size=DISK)
        self.target = self.pc.drive("t")
        self.set = self.pc.write_set(SET, BackupFiles="S:\\*.*", BackupToDrive="E:\\")
        self.list = self.pc.application / "Vantrel.Cfg"
        self.log = self.pc.application / "Vantrel.Log"
        self.counts = Counter()
        self.program = None
        self.list.write_bytes(b";\r\n" * 7 + b"\r\nC:\\KEPT\r\n")
        self._fill_source()
        assert self.pc.run_unattended(SET) == harness.COMPLETE
        self.restore_target = None

    def _fill_source(self):
        dice = random.Random(self.seed)
        (self.source / "big.bin").write_bytes(dice.randbytes(3 * MIB))
        for number in range(12):
            folder = self.source / f"folder {number % 4}"
            folder.mkdir(exist_ok=True)
            (folder / f"note {number}.txt").write_text(f"note {number}\n" * 400, encoding="utf-8")

    # What must be whole

    def remember(self):
        self.before = {path: path.read_bytes() for path in (self.set, self.list, self.log)}
        self.earlier = archives.tree(self.destination).get(ARCHIVE)

    def expected_sets(self):
        """The set as it was, with the archive remembered, with the destination remembered."""
        old = self.before[self.set]
        values = self.pc.read_set(SET)

        def with_key(text, key, value):
            head, tail = text.split(f"{key}=".encode(), 1)
            return head + f"{key}={value}".encode() + tail[tail.index(b"\r\n"):]
        backed_up = with_key(with_key(old, "RestoreFromDrive", "E:\\"), "RestoreFileName", ARCHIVE)
        return [old, backed_up, *(with_key(text, "RestoreDestination", values["RestoreDestination"])
                                  for text in (old, backed_up)
                                  if values["RestoreDestination"] in ("", "T:\\", self.goal()))]

    def goal(self):
        return f"T:\\{self.restore_target}".upper()

    def check_log(self):
        old, now = self.before[self.log], self.log.read_bytes()
        if now.startswith(old):
            return
        kept, now_lines = old.split(b"\r\n")[:-1], now.split(b"\r\n")
        assert now_lines[:KEPT_LINES] == kept[:KEPT_LINES], "the log's first lines"
        rest = now_lines[KEPT_LINES:]
        assert kept[-1] in rest, "the log's newest records"
        newest = rest[:rest.index(kept[-1]) + 1]
        # The last line of several that are alike may be the first that is found.
        assert newest == kept[len(kept) - len(newest):] or b"----" in kept[-1], "records in the log"

    def check(self, complete, left_out=()):
        """After a round: `complete` is what the program said."""
        assert self.list.read_bytes() == self.before[self.list], "the list of protected folders"
        assert self.set.read_bytes() in self.expected_sets(), self.set.read_bytes().decode()
        self.check_log()
        now = archives.tree(self.destination).get(ARCHIVE)
        if complete:
            different = archives.differences(self.source, self.destination / ARCHIVE, left_out)
            assert not different, different
        elif now != self.earlier:
            # A kill came after the archive was in its place.
            different = archives.differences(self.source, self.destination / ARCHIVE, left_out)
            assert not different, f"neither the earlier archive nor a whole one: {different}"

    def change_source(self, dice):
        (self.source / "changes.txt").write_text(f"{dice.random()}\n", encoding="utf-8")

    # Faults

    def hold(self, path):
        """Another program opens a file for itself alone."""
        holder = self.pc.start(self.pc.helper("lock_file.exe"), path, stdin=subprocess.PIPE,
                               stdout=subprocess.PIPE)
        assert holder.stdout.readline().strip() == b"locked", path
        return holder

    def let_go(self, holder):
        holder.stdin.close()
        self.pc.finish(holder)

    def remount(self, options):
        subprocess.run(["mount", "-o", f"remount,{options}", self.destination], check=True)

    def fill_up(self):
        """A file that leaves less room than the archive takes."""
        # What a killed run left would make room: the next run removes it.
        (self.destination / (ARCHIVE + ".vantrel-new")).unlink(missing_ok=True)
        free = shutil.disk_usage(self.destination).free
        (self.destination / "ballast").write_bytes(bytes(free - MIB))

    def with_fault(self, fault, work):
        """Does `work` while something is wrong; returns what it returns."""
        held = {"held source": "S:\\folder 1\\note 1.txt", "held archive": "E:\\JOB.zip",
                "held set": "V:\\Vantrel\\Job.INI", "held log": "V:\\Vantrel\\Vantrel.Log"}
        if fault in held:
            holder = self.hold(held[fault])
            try:
                return work()
            finally:
                self.let_go(holder)
        if fault == "read-only":
            self.remount("ro")
            try:
                return work()
            finally:
                self.remount("rw")
        if fault == "full":
            self.fill_up()
            try:
                return work()
            finally:
                (self.destination / "ballast").unlink()
        return work()

    # Rounds with a program of their own

    def bytes_written(self):
        new = self.destination / (ARCHIVE + ".vantrel-new")
        return new.stat().st_size if new.exists() else None

    def run_until(self, process, wanted):
        """Until so much is written, or the program has ended."""
        harness.wait_until(lambda: process.poll() is not None or
                           (self.bytes_written() or -1) >= wanted, f"{wanted} bytes")

    def killed_backup(self, dice):
        process = self.pc.start_unattended(SET)
        self.run_until(process, dice.randrange(3 * MIB))
        process.kill()
        code = process.wait()
        self.check(complete=code == harness.COMPLETE)

    def unplugged_backup(self, dice):
        process = self.pc.start_unattended(SET)
        self.run_until(process, dice.randrange(2 * MIB))
        self.pc.put_in("e", None)
        code = self.pc.finish(process)
        self.pc.put_in("e", self.destination)
        self.check(complete=code == harness.COMPLETE)

    def backup_under(self, fault):
        code = self.with_fault(fault, lambda: self.pc.run_unattended(SET))
        expected = {None: {harness.COMPLETE}, "held source": {harness.SOME_SKIPPED}}
        assert code in expected.get(fault, {harness.FAILED}), f"{fault}: exit code {code}"
        self.check(complete=code in (harness.COMPLETE, harness.SOME_SKIPPED),
                   left_out={"folder 1/note 1.txt"} if fault == "held source" else ())

    def killed_restore(self, dice):
        program = self.open_program()
        self.begin_restore(program)
        wanted = dice.randrange(3 * MIB)
        big = self.target / self.restore_target / "big.bin"
        harness.wait_until(lambda: (big.exists() and big.stat().st_size >= wanted) or
                           program.visible("Frm_Restore_Cmd_Ok"), "something restored")
        program.process.kill()
        program.process.wait()
        self.check(complete=False)

    def single_round(self, dice):
        self.change_source(dice)
        kind = dice.choice([None, "kill", "kill", "unplug", "full", "read-only", "held source",
                            "held archive", "held set", "held log", "kill restore"])
        self.counts[f"backup, {kind}" if kind != "kill restore" else "restore, kill"] += 1
        if kind == "kill":
            self.killed_backup(dice)
        elif kind == "unplug":
            self.unplugged_backup(dice)
        elif kind == "kill restore":
            self.killed_restore(dice)
        else:
            self.backup_under(kind)

    # Rounds of the program that is never closed

    def open_program(self):
        program = window.Attended(self.pc)
        if program.selected("Cmb_BackupSet") != SET:
            program.choose("Cmb_BackupSet", SET)
        program.wait_for(lambda: program.text("Lbl_BackupFileName") == "JOB", "the set")
        return program

    def wait_for_end_of(self, program, form):
        """Says no to every question until the run is over; then its outcome, and closes it."""
        def over():
            box = program.box()
            if box and "Cancel" in box.buttons:
                program.answer("Cancel")
            return program.visible(f"{form}_Cmd_Ok")
        program.wait_for(over, f"the end of {form}")
        label = "Lbl_BackupPath" if form == "Frm_Backup" else "Lbl_RestorePath"
        program.wait_for(lambda: program.text(f"{form}_{label}").endswith(("Complete", "User")),
                         "the outcome")
        outcome = program.text(f"{form}_{label}")
        program.click(f"{form}_Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        return outcome

    def attended_backup(self, program, fault):
        def work():
            program.show_tab("Backup")
            program.click("Cmd_Backup")
            box = program.wait_for(program.box, "a question")
            if "Yes" not in box.buttons:
                program.answer("OK")
                return "refused"
            program.answer("Yes")
            return self.wait_for_end_of(program, "Frm_Backup")
        outcome = self.with_fault(fault, work)
        left_out = {"folder 1/note 1.txt"} if fault == "held source" else ()
        self.check(complete=outcome == "Backup Complete", left_out=left_out)
        assert (outcome == "Backup Complete") == (fault in (None, "held source")), \
            f"{fault}: {outcome}"

    def begin_restore(self, program):
        for old in self.target.iterdir():
            shutil.rmtree(old)
        self.restore_target = "Back"
        (self.target / self.restore_target).mkdir()
        program.show_tab("Restore")
        if program.selected("Cmb_RestoreFile") != SET:
            program.choose("Cmb_RestoreFile", SET)
        program.wait_for(lambda: program.visible("TV_Restore") and
                         program.count("Cmb_RestoreFile") and
                         program.text("Fld_RestoreFile").endswith(ARCHIVE), "the listing")
        program.click("Cmd_RestoreTo")
        program.answer("OK")
        dialog = "Frm_RestoreWhere_"
        program.wait_for(lambda: program.visible(dialog + "Cmd_Ok"), "the folder dialog")
        program.wait_for(lambda: not program.enabled("TAB_Backup"), "the dialog in front")
        if program.text("Fld_RestoreTo") != "T:\\BACK":
            program.choose(dialog + "Dri_DriveList", "t:")
            program.wait_for(lambda: "Back" in program.items(dialog + "Dir_DirList"), "Back")
            program.open_entry(dialog + "Dir_DirList", "Back")
        program.click(dialog + "Cmd_Ok")
        program.wait_for(lambda: program.enabled("TAB_Backup"), "the main window again")
        program.click("Cmd_Restore")

    def attended_restore(self, program):
        self.begin_restore(program)
        outcome = self.wait_for_end_of(program, "Frm_Restore")
        assert outcome == "Restore Complete", outcome
        # As another reader restores it, byte for byte.
        other = self.pc.folder / "other reader"
        archives.extract_with_unzip(self.destination / ARCHIVE, other)
        same = archives.tree(other) == archives.tree(self.target / self.restore_target)
        shutil.rmtree(other)
        assert same, "what is restored is not what the archive holds"
        self.check(complete=False)

    def lasting_round(self, program, dice):
        kind = dice.choice(["restore", "restore", None, None, "full", "read-only", "held source",
                            "held archive"])
        self.counts[f"lasting: {kind if kind == 'restore' else f'backup, {kind}'}"] += 1
        if kind == "restore":
            self.attended_restore(program)
            return
        self.change_source(dice)
        self.attended_backup(program, kind)

    # All of it

    def run(self, rounds):
        grown = []
        for number in range(rounds):
            dice = random.Random(f"{self.seed} {number}")
            lasting = number >= rounds // 2
            if lasting and self.program is None:
                self.program = self.open_program()
                growth = Growth(self.program.process)
            self.remember()
            try:
                if lasting:
                    self.lasting_round(self.program, dice)
                    growth.sample()
                else:
                    self.single_round(dice)
            except Exception as error:
                raise AssertionError(f"round {number} of seed {self.seed}: {error}") from error
            if number % 20 == 19:
                print(f"{number + 1} rounds", flush=True)
        for kind, count in sorted(self.counts.items()):
            print(f"  {count:4} {kind}")
        print(f"One program for {len(growth.samples)} rounds:")
        grown = growth.report()
        assert self.program.close() == 0
        assert not grown, grown


def main():
    harness.prepare()
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--rounds", type=int, default=200)
    parser.add_argument("--seed", type=int, default=random.SystemRandom().randrange(1_000_000))
    options = parser.parse_args()
    print(f"{options.rounds} rounds, --seed {options.seed}", flush=True)
    soak = Soak(options.seed)
    try:
        soak.run(options.rounds)
    finally:
        soak.pc.remove()
    print("Nothing was lost.")


if __name__ == "__main__":
    main()
