"""The pages of the manual: whole HTML, links and anchors that lead somewhere, settings that exist,
the same pages in all languages, and spelling."""
import html.parser
import re
import shutil
import subprocess
import unittest
import urllib.parse
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
BOOKS = {"en": "en_GB", "de": "de_DE"}
VOID = {"meta", "br", "img", "hr"}
DEFAULT = "x-tarnworks-help://default/"


def pages(language):
    return sorted((ROOT / f"resources/help/{language}.lproj/Help").glob("*.html"))


class Page(html.parser.HTMLParser):
    """What a page names and links to; complains of tags that do not match."""

    def __init__(self, path):
        super().__init__(convert_charrefs=True)
        self.open, self.problems = [], []
        self.names, self.links, self.words = set(), [], []
        self.comments = []
        self.feed(path.read_text(encoding="utf-8"))
        self.close()
        self.problems += [f"<{tag}> is never closed" for tag in self.open]

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        if tag not in VOID:
            self.open.append(tag)
        if "name" in attributes and tag == "a":
            self.names.add(attributes["name"])
        if "href" in attributes:
            self.links.append(attributes["href"])

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.problems.append(f"</{tag}> closes something else at {self.getpos()}")

    def handle_comment(self, data):
        self.comments.append(data)

    def handle_data(self, data):
        if not {"code", "pre", "style"} & set(self.open):
            self.words.append(data)


def settings():
    rows = (ROOT / "docs/settings.md").read_text(encoding="utf-8").splitlines()
    found = (re.match(r"\| `([^`]+)` \| ([^|]+) \|.*", row) for row in rows)
    return {match[1]: (match[2].strip(), "without effect" in match[0])
            for match in found if match}


class ManualTest(unittest.TestCase):
    def test_pages_are_whole(self):
        for language in BOOKS:
            self.assertGreaterEqual(len(pages(language)), 20)
            for path in pages(language):
                with self.subTest(page=f"{language}/{path.name}"):
                    page = Page(path)
                    self.assertEqual(page.problems, [])
                    markers = " ".join(page.comments)
                    self.assertRegex(markers, r"com\.tarnworks\.help\.index\[\d+_?\]")
                    self.assertIn("<body>", path.read_text(encoding="utf-8"))

    def test_languages_have_the_same_pages(self):
        names = [[path.name for path in pages(language)] for language in BOOKS]
        self.assertEqual(names[0], names[1])
        for english, other in zip(pages("en"), pages("de")):
            with self.subTest(page=english.name):
                one, two = Page(english), Page(other)
                self.assertEqual(one.links, two.links)
                self.assertEqual(len(one.names), len(two.names))
                self.assertEqual(one.comments[0], two.comments[0], "the index")

    def test_links_lead_somewhere(self):
        for language in BOOKS:
            names = {path.name: Page(path).names for path in pages(language)}
            for path in pages(language):
                for link in Page(path).links:
                    if link.startswith(DEFAULT):
                        continue
                    target, _, fragment = link.partition("#")
                    with self.subTest(page=f"{language}/{path.name}", link=link):
                        self.assertIn(target or path.name, names)
                        if fragment:
                            self.assertIn(fragment, names[target or path.name])

    def test_settings_exist_and_take_these_values(self):
        known = settings()
        kinds = {"true or false": r"(yes|no)?", "whole number": r"(integer:-?\d+)?",
                 "number": r"(double:[\d.]+)?"}
        count = 0
        for path in pages("en"):
            for link in Page(path).links:
                if not link.startswith(DEFAULT):
                    continue
                key, _, value = link[len(DEFAULT):].partition("#")
                key = urllib.parse.unquote(key)
                with self.subTest(page=path.name, setting=key):
                    self.assertIn(key, known)
                    kind, is_idle = known[key]
                    self.assertFalse(is_idle, "it has no effect")
                    self.assertRegex(value, f"^{kinds[kind]}$")
                count += 1
        self.assertGreater(count, 20)

    def test_quick_access_categories_have_anchors(self):
        for language in BOOKS:
            read = [Page(path) for path in pages(language)]
            have = {name.split("]")[0].lstrip("[") for page in read for name in page.names}
            for page in read:
                for comment in page.comments:
                    offered = re.match(r"com\.tarnworks\.help\.quickaccess\[(.*)\]", comment)
                    if offered:
                        self.assertLessEqual(set(offered[1].split("|")), have)

    @unittest.skipUnless(shutil.which("hunspell"), "hunspell is not installed")
    def test_spelling(self):
        own = set((ROOT / "tests/house/manual_words.txt").read_text(encoding="utf-8").split())
        for language, dictionary in BOOKS.items():
            text = "\n".join(word for path in pages(language) for word in Page(path).words)
            result = subprocess.run(["hunspell", "-d", dictionary, "-i", "utf-8", "-l"], input=text,
                                    capture_output=True, text=True, check=True)
            self.assertEqual(sorted(set(result.stdout.split()) - own), [], dictionary)


if __name__ == "__main__":
    unittest.main()
