"""scripts/make-guide: a page that stands alone, with links that lead somewhere."""
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


class MakeGuide(unittest.TestCase):
    def make(self, text):
        """Exit code, page, complaints."""
        with tempfile.TemporaryDirectory() as folder:
            source, page = Path(folder, "guide.md"), Path(folder, "guide.html")
            source.write_text(text, encoding="utf-8")
            done = subprocess.run([ROOT / "scripts" / "make-guide", source, page, "4.10.7"],
                                  capture_output=True, text=True, check=False)
            made = page.read_bytes().decode("utf-8") if page.exists() else ""
            return done.returncode, made, done.stderr

    def test_links_tables_and_version(self):
        code, page, _ = self.make("# It & I\n\n[there](#a-heading-of-c-code)\n\n"
                                  "| a | b |\n|---|---|\n| 1 | 2 |\n\n## A heading of `C` code!\n")
        self.assertEqual(0, code)
        self.assertIn("<title>It &amp; I</title>", page)
        self.assertIn('<a href="#a-heading-of-c-code">', page)
        self.assertIn('<h2 id="a-heading-of-c-code">', page)
        self.assertIn("<table>", page)
        self.assertIn("Vantrel 4.10.7", page)

    def test_link_that_leads_nowhere(self):
        code, page, complaint = self.make("# Title\n\n[there](#nowhere)\n")
        self.assertEqual((1, ""), (code, page))
        self.assertIn("#nowhere", complaint)

    def test_picture_and_foreign_page_are_refused(self):
        self.assertEqual(1, self.make("# Title\n\n![x](x.png)\n")[0])
        self.assertEqual(1, self.make("# Title\n\n[x](https://www.example.com/)\n")[0])

    def test_text_without_title(self):
        self.assertEqual(1, self.make("Text\n")[0])

    def test_the_guide_itself(self):
        text = (ROOT / "docs" / "guide.md").read_text(encoding="utf-8")
        code, page, complaint = self.make(text)
        self.assertEqual((0, ""), (code, complaint))
        self.assertGreater(page.count("<h2"), 10)


if __name__ == "__main__":
    unittest.main()
