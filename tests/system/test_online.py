"""Updates and news from a server of the test's, signed with a key of the test's."""
import base64
import subprocess
import tempfile
import unittest
from pathlib import Path

from support.case import SystemTest
from support.desktop import Desktop
from support.home import PROGRAMS, wait_until

PROGRAM = PROGRAMS / "orlop_online"
FEED = """<?xml version="1.0"?>
<rss version="2.0"><channel><title>Orlop</title>
<item><version>9.9</version><link>https://a.example/orlop</link></item>
</channel></rss>
"""
FOUND = "Orlop 9.9 is now available! You are currently using Orlop "
NEWS = "There are news of Orlop."


@unittest.skipUnless(PROGRAM.exists(), "built without the desktop program")
class OnlineTest(SystemTest):
    def setUp(self):
        super().setUp()
        keys = tempfile.TemporaryDirectory(prefix="orlop-keys-")
        self.addCleanup(keys.cleanup)
        self.key = Path(keys.name) / "key.pem"
        self.openssl("genpkey", "-algorithm", "ed25519", "-out", self.key)
        # The last 32 bytes of the structure around it are the key (RFC 8410).
        public = self.openssl("pkey", "-in", self.key, "-pubout", "-outform", "DER")[-32:]
        self.environment = {"TEST_APPCAST_KEY": base64.b64encode(public).decode()}

    @staticmethod
    def openssl(*words, **options):
        return subprocess.run(["openssl", *map(str, words)], capture_output=True, check=True,
                              timeout=60, **options).stdout

    def put(self, name, text):
        (self.server.content / name).write_text(text)
        return self.server.url(f"/{name}")

    def publish_feed(self, name, signed=None):
        feed = self.key.with_name("feed")
        feed.write_text(signed or FEED)
        signature = self.openssl("pkeyutl", "-sign", "-inkey", self.key, "-rawin", "-in", feed)
        self.put(f"{name}.sig", base64.b64encode(signature).decode())
        self.environment["TEST_APPCAST"] = self.put(name, FEED)

    def start(self, *arguments, **environment):
        desktop = Desktop("Orlop")
        self.addCleanup(desktop.close)
        program = self.home.start(*arguments, program=PROGRAM,
                                  environment=desktop.environment | self.environment | environment)
        self.addCleanup(program.kill)
        desktop.wait_for("frame", "Orlop")
        return desktop, program

    @staticmethod
    def end(program):
        program.terminate()
        program.wait(30)

    def find_starting(self, desktop, role, beginning):
        return next((node for node in desktop.nodes()
                     if node.role == role and node.name.startswith(beginning)), None)

    def test_an_update_is_told_of_and_remembered(self):
        self.publish_feed("feed.xml")
        desktop, program = self.start("-Preferences Section", "Updates")
        wait_until(lambda: self.find_starting(desktop, "label", FOUND), 30, "the bar")
        desktop.wait_for("push button", "Show...")
        desktop.wait_for("push button", "Check Now")
        wait_until(lambda: self.find_starting(desktop, "label", "Last check: "), 30, "the date")
        desktop.screenshot("updates")
        self.end(program)
        desktop, program = self.start("-Preferences Section", "Updates",
                                      TEST_APPCAST="http://127.0.0.1:9/feed")
        wait_until(lambda: self.find_starting(desktop, "label", "Last check: "), 30, "the memory")
        self.assertTrue(self.find_starting(desktop, "label", FOUND))
        self.assertIsNone(desktop.find("push button", "Show..."), "nobody asked on the same day")

    def test_what_is_signed_otherwise_is_not_believed(self):
        self.publish_feed("false.xml", signed=FEED.replace("9.9", "0.0"))
        desktop, _ = self.start()
        wait_until(lambda: "is not signed by Orlop's makers" in self.home.log_text(), 30,
                   "the refusal")
        self.assertIsNone(desktop.find("push button", "Show..."))

    def test_without_addresses_both_say_so(self):
        desktop, _ = self.start("-Preferences Section", "Updates")
        desktop.wait_for("label", "This build of Orlop has no address to look for new versions at.")
        self.assertNotIn("enabled", desktop.find("push button", "Check Now").states)

    def wait_for_page(self, desktop):
        wait_until(lambda: self.find_starting(desktop, "check box", "Automatically show"), 30,
                   "the window of news")

    def test_first_news_come_up_and_later_ones_in_a_bar(self):
        address = self.put("news.html", "<h1>One</h1>DQ_NEWS_VERSION[1]")
        desktop, program = self.start(TEST_NEWS=address)
        self.wait_for_page(desktop)
        desktop.screenshot("news")
        self.end(program)
        desktop, program = self.start(TEST_NEWS=address)
        # It stood open at the end.
        self.wait_for_page(desktop)
        self.end(program)
        self.put("news.html", "<h1>Two</h1>DQ_NEWS_VERSION[2]")
        for _ in range(2):
            desktop, program = self.start("-Automatic News Updates: Popped Up Once", "YES",
                                          TEST_NEWS=address)
            bar = desktop.wait_for("label", NEWS)
            self.assertIsNone(self.find_starting(desktop, "check box", "Automatically show"))
            if _ == 0:
                self.end(program)
        desktop.screenshot("news-bar")
        self.assertTrue(bar)
        desktop.click(desktop.wait_for("push button", "Read"))
        self.wait_for_page(desktop)
        desktop.wait_until_gone("label", NEWS)

    def assert_hostile(self, name, page, seen):
        address = self.put(name, f"DQ_NEWS_VERSION[-1]{page}")
        desktop, program = self.start("-Automatic News Updates: Suppress", "YES",
                                      TEST_NEWS=address)
        desktop.menu("Help", "Orlop News...")
        wait_until(lambda: any(seen in node.name for node in desktop.nodes()), 30, seen)
        self.end(program)

    def test_deep_pages_are_not_laid_out(self):
        self.assert_hostile("deep.html", "<div>" * 40_000, "Automatically show")

    def test_deep_tables_are_not_laid_out(self):
        self.assert_hostile("tables.html", "<table><tr><td>" * 500, "Automatically show")

    def test_a_huge_page_is_not_taken(self):
        self.assert_hostile("huge.html", "x" * 300_000, "The page of news cannot be reached.")


if __name__ == "__main__":
    unittest.main()
