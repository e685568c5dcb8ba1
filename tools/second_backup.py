"""The rows of tools/bench for a second backup of the same files, which reuses the first one's archive.

Each archive is compared with one that is made with --fresh. For that, files are read once after each
change: the archive holds times of access, which a first reading changes.
"""
import contextlib
import os
import shutil
import subprocess
from pathlib import Path

# Targets; see docs/performance.md. Times as fast as the first backup, or at most this many times as
# long as another run.
UNCHANGED = 5.0
CHANGED_BEHIND_DATES = 4.0
CHUNKS_CHANGED = 4.0
BESIDE_ZIP_UPDATE = 1.25
ALL_CHANGED = 1.05
UNDER_WINE = 1.6
MEMORY_MB = 128
CHUNK = 1 << 20  # bytes


def files_of(folder):
    return sorted(p for p in folder.rglob("*") if p.is_file() and not p.is_symlink())


def read_all(folder):
    """In other processes: the measured ones would inherit this one's peak memory."""
    find = subprocess.Popen(["find", folder, "-type", "f", "-print0"], stdout=subprocess.PIPE)
    subprocess.run(["xargs", "-0", "cat"], stdin=find.stdout, stdout=subprocess.DEVNULL, check=True)
    find.wait()


def flip(path, offset, keep_dates):
    """Changes one byte."""
    info = path.stat()
    with open(path, "r+b") as file:
        file.seek(offset)
        byte = file.read(1)
        file.seek(offset)
        file.write(bytes([byte[0] ^ 1]))
    if keep_dates:
        os.utime(path, ns=(info.st_atime_ns, info.st_mtime_ns))


def change_files(folder, every, keep_dates):
    changed = [path for path in files_of(folder) if path.stat().st_size > 0][::every]
    for path in changed:
        flip(path, path.stat().st_size // 2, keep_dates)
    read_all(folder)


def change_chunks(folder, every):
    [path] = files_of(folder)
    for chunk in range(0, path.stat().st_size // CHUNK, every):
        flip(path, chunk * CHUNK + CHUNK // 2, True)
    read_all(folder)


@contextlib.contextmanager
def processors_awake():
    """Endless loops of the lowest priority, one for each processor, so that none of them sleeps. Under
    Wine the program and the server wait for each other some 240,000 times, and a virtual machine takes
    long to wake a processor."""
    loops = [subprocess.Popen(["nice", "-n", "19", "sh", "-c", "while :; do :; done"])
             for _ in range(os.cpu_count())]
    try:
        yield
    finally:
        for loop in loops:
            loop.kill()
            loop.wait()


class SecondBackups:
    def __init__(self, measured, vzip, base, scratch, rounds):
        self.measured = measured
        self.vzip = str(vzip)
        self.base = base
        self.scratch = scratch
        self.rounds = rounds
        self.failures = []
        print("\n| second backup | s | processor | MB | beside | s | processor "
              "| ratio of times | of processor times |\n" + "|---" * 9 + "|")

    def create(self, archive, folder, *options):
        return [self.vzip, "create", str(archive), str(folder), "--quiet", "--threads", "2",
                *options]

    def runs(self, commands, environment=None):
        """Runs the commands in turn; each gets a file that is copied to its archive before."""
        results = {name: self.measured() for name in commands}
        for _ in range(self.rounds):
            for name, (command, folder, archive, start) in commands.items():
                archive.unlink(missing_ok=True)
                if start:
                    shutil.copyfile(start, archive)
                results[name].run(command, folder, None, environment)
                results[name].size = archive.stat().st_size
        return results

    def row(self, name, second, other_name, other, limit, faster):
        """`faster`: `limit` is the smallest factor by which `second` has to be faster than `other`;
        otherwise the largest one by which it may be slower; None for no limit."""
        pairs = [(other.seconds, second.seconds), (other.processor, second.processor)]
        ratios = [one / two if faster else two / one for one, two in pairs]
        print(f"| {name} | {second.seconds:.2f} | {second.processor:.2f} | {second.memory:.0f} "
              f"| {other_name} | {other.seconds:.2f} | {other.processor:.2f} "
              f"| {ratios[0]:.2f} | {ratios[1]:.2f} |", flush=True)
        if limit and ((ratios[0] < limit) if faster else (ratios[0] > limit)):
            self.failures.append(f"second backup, {name}: ratio {ratios[0]:.2f}, limit {limit}")
        if second.memory > MEMORY_MB:
            self.failures.append(f"second backup, {name}: too much memory")

    def require_same(self, name, archive, fresh):
        if subprocess.run(["cmp", "-s", archive, fresh], check=False).returncode != 0:
            self.failures.append(f"second backup, {name}: differs from a fresh archive")

    def measure(self, name, folder, first, limit, faster, beside=None):
        """A backup of `folder` that reuses the archive `first`, beside a fresh one of it, or beside
        another command: its name, words, archive and what that is copied from."""
        second, fresh = self.scratch / "second.zip", self.scratch / "fresh.zip"
        results = self.runs({
            "fresh": (self.create(fresh, folder, "--fresh"), folder, fresh, None),
            "second": (self.create(second, folder, "--earlier", str(first)), folder, second, None),
            **({beside[0]: (beside[1], folder, *beside[2:])} if beside else {})})
        self.require_same(name, second, fresh)
        other = beside[0] if beside else "fresh"
        self.row(name, results["second"], other, results[other], limit, faster)

    def mixed(self):
        tree, first = self.scratch / "tree", self.scratch / "first.zip"
        shutil.rmtree(tree, ignore_errors=True)
        shutil.copytree(self.base / "mixed", tree, symlinks=True)
        read_all(tree)
        subprocess.run(self.create(first, tree, "--fresh"), check=True)
        self.measure("mixed, unchanged", tree, first, UNCHANGED, True)
        change_files(tree, 100, True)
        self.measure("mixed, 1 % of the files changed, unchanged dates", tree, first,
                     CHANGED_BEHIND_DATES, True)
        update, updated = self.scratch / "zip-9.zip", self.scratch / "updated.zip"
        update.unlink(missing_ok=True)
        subprocess.run(["zip", "-9", "-r", "-q", str(update), "."], cwd=tree, check=True)
        change_files(tree, 100, False)
        self.measure("mixed, 1 % of the files changed, new dates", tree, first, BESIDE_ZIP_UPDATE,
                     False, ("zip -9 -r -u", ["zip", "-9", "-r", "-u", "-q", str(updated), "."],
                             updated, update))
        change_files(tree, 1, False)
        self.measure("mixed, all files changed", tree, first, ALL_CHANGED, False)
        shutil.rmtree(tree)

    def one_file(self):
        tree, first = self.scratch / "tree", self.scratch / "first.zip"
        shutil.rmtree(tree, ignore_errors=True)
        shutil.copytree(self.base / "one-file", tree)
        read_all(tree)
        subprocess.run(self.create(first, tree, "--fresh"), check=True)
        self.measure("one file, unchanged", tree, first, UNCHANGED, True)
        change_chunks(tree, 100)
        self.measure("one file, 1 % of its chunks changed", tree, first, CHUNKS_CHANGED, True)
        change_chunks(tree, 1)
        self.measure("one file, all chunks changed", tree, first, ALL_CHANGED, False)
        shutil.rmtree(tree)

    def wine(self, build, environment):
        """vzip.exe, the second run beside the first one."""
        def windows(path):
            return "Z:" + str(path).replace("/", "\\")
        first, second = self.scratch / "wine-first.zip", self.scratch / "wine-second.zip"
        command = ["wine", str(build / "vzip.exe"), "create"]
        folder = self.base / "mixed"
        tail = [windows(folder), "--quiet", "--threads", "2"]
        commands = {
            "fresh": ([*command, windows(first), *tail, "--fresh"], folder, first, None),
            "second": ([*command, windows(second), *tail, "--earlier", windows(first)], folder,
                       second, None)}
        for name, limit, around in (
                ("mixed, unchanged, Wine", UNDER_WINE, contextlib.nullcontext()),
                ("the same, processors kept awake", None, processors_awake())):
            with around:
                results = self.runs(commands, environment)
            self.require_same("Wine", second, first)
            self.row(name, results["second"], "fresh", results["fresh"], limit, True)


def rows(measured, vzip, base, scratch, rounds, chosen):
    backups = SecondBackups(measured, vzip, base, scratch, rounds)
    if "second-mixed" in chosen:
        backups.mixed()
    if "second-one-file" in chosen:
        backups.one_file()
    return backups.failures


def wine_rows(measured, build, base, scratch, rounds, environment):
    backups = SecondBackups(measured, Path("vzip"), base, scratch, rounds)
    backups.wine(build, environment)
    return backups.failures
