"""Folders to back up, with everything that is hard about real ones."""
import os
import random
import shutil

from harness import ROOT

# Each a name that some backup program has lost a file over.
HARD_NAMES = ["Übersicht für Jörg.txt", "Прайс-лист.txt", "日本語の文書.txt", "emoji 🎒.txt",
              "e\u0301 decomposed.txt", "  leading blanks.txt", "no extension", "many.dots.in.it.tar.gz",
              "percent%20sign & ampersand.txt", "$dollar (brackets) [square] {curly}.txt", "-dash.txt"]


def long_path(folder):
    """A file whose path below `folder` has more than 300 characters."""
    for number in range(6):
        folder = folder / f"{number} a folder whose name is as long as fifty-one letters"
    folder.mkdir(parents=True)
    path = folder / "at the end of a long path.txt"
    path.write_text("far below\n", encoding="utf-8")
    return path


def make_real_tree(folder):
    """Fills `folder`: this project's sources, hard names, long paths, empty and big files, empty
    folders, read-only and hidden files, times of several decades."""
    for room in ("app", "common", "docs", "forms", "platform", "zip"):
        shutil.copytree(ROOT / room, folder / "sources" / room)
    names = folder / "names"
    names.mkdir()
    for number, name in enumerate(HARD_NAMES):
        (names / name).write_text(f"{number} {name}\n" * 50, encoding="utf-8")
    assert len(str(long_path(folder / "deep").relative_to(folder))) > 300

    random_bytes = random.Random(20)
    (folder / "empty.bin").write_bytes(b"")
    (folder / "one.bin").write_bytes(b"x")
    (folder / "does not shrink.bin").write_bytes(random_bytes.randbytes(3_000_001))
    (folder / "shrinks well.log").write_bytes(b"the same line again and again\r\n" * 200_000)

    (folder / "empty folder").mkdir()
    (folder / "nested" / "empty" / "leer ü").mkdir(parents=True)

    (folder / "read-only.txt").write_text("not to be changed\n", encoding="utf-8")
    os.chmod(folder / "read-only.txt", 0o444)
    # Wine shows names that begin with a dot as hidden files.
    (folder / ".hidden.txt").write_text("not to be seen\n", encoding="utf-8")

    for number, path in enumerate(sorted(names.iterdir())):
        os.utime(path, (820_454_400 + number * 100_000_001,) * 2)
