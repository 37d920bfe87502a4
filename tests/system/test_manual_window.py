"""The manual, as a reader meets it: pages, neighbours, quick access, search, settings."""
import plistlib
import unittest

from support.home import wait_until
from test_window import WindowTest


class ManualWindowTest(WindowTest):
    def setting(self, key):
        path = self.home.root / "config/Orlop/com.tarnworks.Orlop.plist"
        return plistlib.loads(path.read_bytes()).get(key) if path.exists() else None

    def title(self, text):
        self.desktop.wait_for("label", text)

    def test_pages_search_and_a_setting(self):
        self.use("manual")
        self.start()
        self.desktop.key("F1")
        self.title("Getting Started")
        self.shoot("first")
        self.desktop.key("ctrl+Page_Down")
        self.title("Adding Addresses")
        self.desktop.key("alt+Left")
        self.title("Getting Started")
        self.desktop.click(self.desktop.find("button menu", "Contents")
                           or self.desktop.find("push button", "Contents"))
        self.desktop.key("Down", "Down")
        self.shoot("contents")
        self.desktop.key("Return")
        self.title("Adding Addresses")
        self.desktop.key("ctrl+f")
        self.desktop.type("Certificate")
        wait_until(lambda: self.desktop.find("text", "Search the Manual"), 30, "the search field")
        self.shoot("search")
        self.desktop.key("Down", "Down", "Return")
        self.title("Troubleshooting")
        self.shoot("found")
        self.desktop.key("Escape")  # What was searched for.
        self.desktop.key("Escape")
        self.desktop.wait_until_gone("text", "Search the Manual")

    def test_a_link_sets_a_setting_and_takes_it_back(self):
        self.use("manual-setting",
                 "-DQHelpManager: Open Relative Path", "settings.html")
        self.start()
        self.title("Hidden Settings: List and Window")
        self.desktop.key("Tab", "Return")
        self.desktop.wait_for("push button", "Revert to (No Value)")
        self.shoot("alert")
        self.desktop.key("Return")
        wait_until(lambda: self.setting("Reveal By Launching") is True, 30, "the setting")
        self.desktop.wait_until_gone("push button", "Revert to (No Value)")
        self.desktop.wait_for_focus()
        self.desktop.key("Return")
        wait_until(lambda: any("That didn't do anything" in node.name
                               for node in self.desktop.nodes()), 30, "the second answer")


del WindowTest

if __name__ == "__main__":
    unittest.main()
