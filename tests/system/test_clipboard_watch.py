"""Addresses that are copied in other programs are offered, until they are in the list."""
import unittest

from test_window import WindowTest


class ClipboardWatchTest(WindowTest):
    def test_the_offer_goes_when_what_was_copied_is_pasted(self):
        self.use("clipboard", "-Watch Clipboard", "YES")
        self.start()
        addresses = [self.server.url(f"/part-{number}.zip") for number in (1, 2)]
        self.desktop.copy("\n".join(addresses))
        self.desktop.wait_for("label", "2 addresses were copied")
        self.desktop.key("ctrl+v")
        self.wait_for_rows("part-1.zip", "part-2.zip")
        self.desktop.wait_until_gone("label", "2 addresses were copied")


del WindowTest

if __name__ == "__main__":
    unittest.main()
