"""Judges archives with other people's readers, each file against the folder it was made from."""
import subprocess
import tempfile
import zipfile
from pathlib import Path


def extract_with_unzip(archive, folder):
    subprocess.run(["unzip", "-q", "-o", archive, "-d", folder], check=True,
                   env={"LC_ALL": "C.UTF-8", "PATH": "/usr/bin:/bin", "TZ": "UTC"})


def extract_with_7zz(archive, folder):
    subprocess.run(["7zz", "x", "-y", "-bso0", "-bsp0", f"-o{folder}", archive], check=True)


def extract_with_python(archive, folder):
    with zipfile.ZipFile(archive) as opened:
        damaged = opened.testzip()
        assert damaged is None, f"damaged: {damaged}"
        opened.extractall(folder)


READERS = {"unzip": extract_with_unzip, "7zz": extract_with_7zz, "zipfile": extract_with_python}


def tree(folder):
    """Relative path -> bytes for files, None for folders."""
    found = {}
    for path in Path(folder).rglob("*"):
        found[str(path.relative_to(folder))] = None if path.is_dir() else path.read_bytes()
    return found


def entries(archive):
    with zipfile.ZipFile(archive) as opened:
        return {info.filename: info for info in opened.infolist()}


def differences(source, archive, left_out=()):
    """What any reader finds different from `source`; paths of `left_out` are not expected."""
    expected = {name: data for name, data in tree(source).items() if name not in left_out}
    complaints = []
    for reader, extract in READERS.items():
        # Beside the archive: a long path below /tmp must not be the reason for a difference.
        with tempfile.TemporaryDirectory() as folder:
            extract(archive, folder)
            actual = tree(folder)
            for name in sorted(expected.keys() | actual.keys()):
                if name not in actual:
                    complaints.append(f"{reader}: {name} is missing")
                elif name not in expected:
                    complaints.append(f"{reader}: {name} should not be there")
                elif expected[name] != actual[name]:
                    complaints.append(f"{reader}: {name} has other contents")
    return complaints


def time_differences(source, folder, seconds):
    """Files below `folder` whose modification time is more than `seconds` off the source's."""
    complaints = []
    for path in Path(source).rglob("*"):
        if path.is_file():
            copy = Path(folder) / path.relative_to(source)
            off = abs(path.stat().st_mtime - copy.stat().st_mtime)
            if off > seconds:
                complaints.append(f"{path.relative_to(source)} is {off} s off")
    return complaints
