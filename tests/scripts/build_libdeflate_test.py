"""scripts/build-libdeflate accepts only verified versions of the library."""
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / "scripts" / "build-libdeflate"
VERIFIED = re.search(r"^verified_versions=\((.*)\)$", SCRIPT.read_text(encoding="utf-8"), re.M)[1].split()


class BuildLibdeflate(unittest.TestCase):
    def build(self, version):
        """Exit code, standard error and whether there is a library, for sources of that version."""
        with tempfile.TemporaryDirectory() as folder:
            work = Path(folder, "build/deps/libdeflate")
            for place in ("scripts", "zip/deflate/libdeflate"):
                Path(folder, place).mkdir(parents=True)
            for place in ("download", "source/lib"):
                (work / place).mkdir(parents=True)
            shutil.copy(SCRIPT, Path(folder, "scripts"))
            (work / "download/libdeflate_1-1.dsc").touch()
            (work / "source/libdeflate.h").write_text(
                f'#define LIBDEFLATE_VERSION_STRING\t"{version}"\n', encoding="utf-8")
            (work / "source/lib/deflate_compress.c").touch()
            Path(folder, "zip/deflate/libdeflate/tuned_level.c").write_text("int level;\n",
                                                                            encoding="utf-8")
            done = subprocess.run([Path(folder, "scripts/build-libdeflate"), "native"],
                                  capture_output=True, text=True, check=False)
            library = Path(folder, "build/deps/native/lib/libdeflate.a").exists()
            return done.returncode, done.stderr, library

    def test_verified_versions_are_built(self):
        for version in VERIFIED:
            self.assertEqual((0, "", True), self.build(version))

    def test_another_version_stops_the_build_and_names_the_way_out(self):
        code, complaint, library = self.build("9.87")
        self.assertNotEqual(0, code)
        self.assertFalse(library)
        self.assertIn("libdeflate 9.87", complaint)
        self.assertIn(f"verified with {' '.join(VERIFIED)} only", complaint)
        self.assertIn("how to verify another version", complaint)
        self.assertIn("-DVANTREL_SYSTEM_LIBDEFLATE=ON", complaint)

    def test_a_longer_version_with_a_verified_beginning_is_another_one(self):
        self.assertNotEqual(0, self.build(VERIFIED[0] + "9")[0])


if __name__ == "__main__":
    unittest.main()
