"""Tests the user guide: its pages beside the program, their source documents and their pictures; and that names in the
developers' documents exist.

    guide_test.py PROJECT_FOLDER PROGRAM_FOLDER
"""
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ET

PROJECT = pathlib.Path(sys.argv.pop(1))
GUIDE = pathlib.Path(sys.argv.pop(1)) / "guide"
PAGES = ("guide.html", "prices.html", "locators.html")
DOCUMENTS = [PROJECT / "README.md", PROJECT / "CONTRIBUTING.md", *sorted((PROJECT / "docs").glob("*.md"))]


def page_tree(page):
    text = page.read_text(encoding="utf-8")
    doctype = "<!DOCTYPE html>\n"
    assert text.startswith(doctype)
    return ET.fromstring(text[len(doctype):])


def identifiers(tree):
    return [element.get("id") for element in tree.iter() if element.get("id")]


def without_code(markdown):
    markdown = re.sub(r"^(```.*?^```|(    .*\n)+)", "", markdown, flags=re.M | re.S)
    return re.sub(r"`[^`\n]*`", "", markdown)


def links_of(document):
    """Targets of the links and pictures of a Markdown document."""
    return re.findall(r"\]\(([^)\s]+)\)", without_code(document.read_text(encoding="utf-8")))


def named_pictures():
    return {pathlib.Path(link).name for document in DOCUMENTS for link in links_of(document) if link.endswith(".png")}


def pictures_of_the_tour():
    """Names of the tour's pictures without their numbers, and of the pictures made from the tour's pages."""
    tour = (PROJECT / "samples/tour").read_text(encoding="utf-8")
    names = re.findall(r"^ *(?:picture|part) ([a-z][\w-]*) ", tour, flags=re.M)
    names += re.findall(r'^ *show_form "[^"]*" ([\w-]+) ', tour, flags=re.M)
    pages = re.findall(r'"\$tour_dir/([\w-]+)\.html"', tour)
    return {name + ".png" for name in names + pages}


class Pages(unittest.TestCase):
    def test_each_is_there_and_well_formed(self):
        for name in PAGES:
            tree = page_tree(GUIDE / name)
            self.assertEqual("html", tree.tag)
            self.assertTrue(tree.findtext("head/title").startswith("Tallymoor: "))
            self.assertGreater(len("".join(tree.find("body/main").itertext())), 2000)

    def test_identifiers_are_unique(self):
        for name in PAGES:
            found = identifiers(page_tree(GUIDE / name))
            self.assertEqual(len(set(found)), len(found))

    def test_every_link_leads_somewhere(self):
        trees = {name: page_tree(GUIDE / name) for name in PAGES}
        checked = 0
        for name, tree in trees.items():
            for link in tree.iter("a"):
                target = link.get("href")
                page, _, anchor = target.partition("#")
                self.assertIn(page or name, trees, target)
                if anchor:
                    self.assertIn(anchor, identifiers(trees[page or name]), target)
                checked += 1
        self.assertGreater(checked, 20)

    def test_contents_name_every_section(self):
        for name in PAGES:
            tree = page_tree(GUIDE / name)
            listed = [link.get("href")[1:] for link in tree.find("body/nav").iter("a")]
            sections = [heading.get("id") for heading in tree.find("body/main") if heading.tag in ("h2", "h3")]
            self.assertEqual(sections, listed)

    def test_every_picture_and_the_stylesheet_are_there(self):
        shown = set()
        for name in PAGES:
            tree = page_tree(GUIDE / name)
            self.assertTrue((GUIDE / tree.find("head/link").get("href")).is_file())
            shown |= {picture.get("src") for picture in tree.iter("img")}
        there = {f"images/{picture.name}" for picture in (GUIDE / "images").iterdir()}
        self.assertEqual(shown, there)
        self.assertGreater(len(shown), 5)

    def test_the_example_for_price_sources_lies_beside_the_page(self):
        names = set(re.findall(r"samples/locators/[\w/]+\.(?:html|xml)", (GUIDE / "locators.html").read_text(encoding="utf-8")))
        self.assertGreater(len(names), 4)
        for name in names:
            self.assertEqual((PROJECT / name).read_bytes(), (GUIDE / name).read_bytes())


class Documents(unittest.TestCase):
    def test_every_link_leads_to_a_file(self):
        for document in DOCUMENTS:
            for link in links_of(document):
                if not re.match("[a-z]+:", link) and not link.startswith("#"):
                    self.assertTrue((document.parent / link.partition("#")[0]).exists(), f"{document}: {link}")

    def test_every_picture_is_one_of_the_tour(self):
        self.assertEqual(set(), named_pictures() - pictures_of_the_tour())

    def test_every_picture_shows_something(self):
        for picture in (PROJECT / "docs/images").iterdir():
            self.assertGreater(picture.stat().st_size, 2000, picture.name)

    def test_no_picture_lies_there_unused(self):
        there = {picture.name for picture in (PROJECT / "docs/images").iterdir()}
        self.assertEqual(named_pictures(), there)


class NamesOfTheSource(unittest.TestCase):
    def test_classes_and_operations_that_are_named_exist(self):
        files = [file for folder in ("src", "tests", "fuzzing") for file in (PROJECT / folder).rglob("*.[ch]*")]
        source = set()
        for file in files:
            source |= set(re.findall(r"\w+", file.read_text(encoding="utf-8", errors="replace")))
        checked = 0
        for document in (PROJECT / "docs/architecture.md", PROJECT / "CONTRIBUTING.md"):
            for name in re.findall(r"`([A-Za-z:]*[a-z][A-Z:][A-Za-z:]*)(?:\(\))?`", document.read_text(encoding="utf-8")):
                for part in filter(None, name.split("::")):
                    self.assertIn(part, source, f"{document.name}: {name}")
                    checked += 1
        self.assertGreater(checked, 50)


class TheMaker(unittest.TestCase):
    """Tests scripts/make-guide with invalid documents and with a valid one."""

    def make(self, text, pictures=()):
        with tempfile.TemporaryDirectory() as scratch:
            folder = pathlib.Path(scratch)
            (folder / "images").mkdir()
            for picture in pictures:
                (folder / "images" / picture).write_bytes(b"")
            (folder / "guide.md").write_text(text, encoding="utf-8")
            (folder / "other.md").write_text("# Other\n\n## A & B, again\n", encoding="utf-8")
            made = subprocess.run(
                [PROJECT / "scripts/make-guide", "--to", folder / "out", "--style", PROJECT / "docs/guide.css",
                 folder / "guide.md", folder / "other.md"], capture_output=True, text=True)
            page = folder / "out/guide.html"
            return made.returncode, made.stderr, page.read_text(encoding="utf-8") if page.exists() else ""

    def refuses(self, text, words):
        status, message, page = self.make("# Title\n\n" + text)
        self.assertEqual(1, status)
        self.assertIn(words, message)
        self.assertEqual("", page)

    def test_refuses_broken_links(self):
        self.refuses("[x](#nowhere)", '"#nowhere" names no heading')
        self.refuses("[x](other.md#nowhere)", '"other.md#nowhere" names no heading')
        self.refuses("[x](missing.md)", '"missing.md" is not part of the guide')
        self.refuses("![x](images/missing.png)", 'there is no picture "images/missing.png"')
        self.refuses("![x](../images/missing.png)", 'there is no picture "../images/missing.png"')
        self.refuses("## Twice\n\n## Twice", 'two headings "Twice"')

    def test_refuses_a_picture_without_alternative_text(self):
        status, message, _ = self.make("# Title\n\n![](images/a.png)", ["a.png"])
        self.assertEqual(1, status)
        self.assertIn("has no alternative text", message)

    def test_refuses_a_document_without_a_title(self):
        self.assertEqual(1, self.make("Text")[0])

    def test_links_lead_from_page_to_page(self):
        status, message, page = self.make(
            "# Title\n\n## Here\n\n[a](#here) [b](other.md#a--b-again) [c](other.md)\n\n![d](images/d.png)", ["d.png"])
        self.assertEqual((0, ""), (status, message))
        self.assertIn('<a href="#here">a</a> <a href="other.html#a--b-again">b</a> <a href="other.html">c</a>', page)
        self.assertIn('<img src="images/d.png" alt="d" />', page)


if __name__ == "__main__":
    unittest.main()
