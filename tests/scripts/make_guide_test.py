"""scripts/make-guide: a page that stands alone, with links that lead somewhere."""
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


class MakeGuide(unittest.TestCase):
    def make(self, text, pictures=()):
        """Exit code, page, complaints. `pictures` are names and contents of files beside the text."""
        with tempfile.TemporaryDirectory() as folder:
            for name, content in pictures:
                Path(folder, name).parent.mkdir(exist_ok=True)
                Path(folder, name).write_bytes(content)
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

    def test_picture_is_a_part_of_the_page(self):
        code, page, _ = self.make("# Title\n\n![A window](pictures/x.png)\n",
                                  [("pictures/x.png", b"\x89PNG")])
        self.assertEqual(0, code)
        self.assertIn('<img src="data:image/png;base64,iVBORw==" alt="A window"', page)

    def test_missing_picture_other_kinds_and_foreign_page_are_refused(self):
        code, page, complaint = self.make("# Title\n\n![x](x.png)\n")
        self.assertEqual((1, ""), (code, page))
        self.assertIn("x.png", complaint)
        self.assertEqual(1, self.make("# Title\n\n![x](x.gif)\n", [("x.gif", b"GIF")])[0])
        self.assertEqual(1, self.make("# Title\n\n[x](https://www.example.com/)\n")[0])

    def test_text_without_title(self):
        self.assertEqual(1, self.make("Text\n")[0])

    def test_the_guide_itself(self):
        text = (ROOT / "docs" / "guide.md").read_text(encoding="utf-8")
        pictures = [(f"pictures/{path.name}", path.read_bytes())
                    for path in (ROOT / "docs" / "pictures").iterdir()]
        code, page, complaint = self.make(text, pictures)
        self.assertEqual((0, ""), (code, complaint))
        self.assertGreater(page.count("<h2"), 10)
        self.assertEqual(page.count("<img"), page.count("data:image/png;base64,"))
        self.assertGreater(page.count("<img"), 8)


if __name__ == "__main__":
    unittest.main()
