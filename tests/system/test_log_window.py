"""The window of the log, and the report of a problem, as a user meets them."""
import plistlib
import tarfile
import unittest

from support.home import wait_until
from test_window import WindowTest


class LogWindowTest(WindowTest):
    def says(self, part):
        return any(part in node.name for node in self.desktop.nodes() if node.role == "list item")

    def test_live_in_the_dark_with_a_search(self):
        self.use("log", "-DQDebugLog", "YES")
        self.desktop.prefer(dark=True)
        self.start(self.server.url("/status/404"))
        self.wait_for_first_rows("404.html")
        self.desktop.menu("Help", "Log")
        self.desktop.wait_for("list", "Log Lines")
        wait_until(lambda: self.says("status code: 404"), 30, "what is past")
        self.desktop.key("ctrl+f")
        self.desktop.type("STATUS CODE")
        wait_until(lambda: any("selected" in node.states and "status code" in node.name
                               for node in self.desktop.nodes()), 30, "what was looked for")
        self.shoot("search")
        self.home.run("-DQDebugLog", "YES", self.server.url("/quick.pdf"), environment={
            "XDG_DATA_HOME": str(self.home.root / "other")})
        wait_until(lambda: self.says("orlop-terminal: "), 30, "what another program logs")
        self.shoot("live")
        self.desktop.click(self.desktop.find("combo box", "All Lines"))
        self.desktop.wait_for("list item", "Without Debug Lines")
        self.desktop.key("Down", "Return")
        wait_until(lambda: self.says("orlop") and not self.says("status code"), 30,
                   "the lines that are not for debugging")
        self.shoot("without-debug")
        self.desktop.key("ctrl+s")
        wait_until(lambda: self.dialogs() and self.dialogs()[-1].has_focus(), 30,
                   "the question where to")
        saved = self.home.root / "saved.plist"
        self.desktop.key("ctrl+a")
        self.desktop.type(str(saved))
        self.desktop.key("Return")
        wait_until(saved.exists, 30, "the saved log")
        entries = plistlib.loads(saved.read_bytes())
        self.assertTrue(all(isinstance(value, (str, int)) for entry in entries
                            for value in entry.values()))
        self.assertFalse(any("status code" in entry["eventMessage"] for entry in entries))
        self.assertTrue(entries)
        self.desktop.key("ctrl+w")
        self.desktop.wait_until_gone("list", "Log Lines")

    def dialogs(self):
        return [node for node in self.desktop.nodes() if node.role in ("dialog", "file chooser")]

    def test_a_report_is_what_was_shown(self):
        self.use("report")
        self.start(self.server.url("/status/404"))
        self.wait_for_first_rows("404.html")
        self.desktop.menu("Help", "Report a Problem...")
        self.desktop.wait_for_dialog("Report a Problem")
        self.shoot("shown")
        self.desktop.key("Return")
        wait_until(lambda: len(self.dialogs()) > 1 and self.dialogs()[-1].has_focus(), 30,
                   "the question where to")
        self.desktop.key("Return")
        path = self.home.root / "orlop-report.tar.gz"
        wait_until(path.exists, 30, "the report")
        with tarfile.open(path) as archive:
            self.assertEqual([member.name for member in archive],
                             [f"orlop-report/{name}" for name in
                              ("surroundings.txt", "settings.plist", "log.txt")])
            text = archive.extractfile("orlop-report/surroundings.txt").read().decode()
        self.assertTrue(text.startswith("Orlop: 0."), text)


del WindowTest

if __name__ == "__main__":
    unittest.main()
