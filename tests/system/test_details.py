"""The details of a download beside its row, and another address for it, as a user meets them."""
import unittest

from support.home import wait_until
from test_window import PROGRAM, WindowTest


@unittest.skipUnless(PROGRAM.exists(), "built without the desktop program")
class DetailsTest(WindowTest):
    def start_with_half_a_file(self):
        self.start(self.slow_address())
        self.wait_for_first_rows("slow.iso")
        self.desktop.key("ctrl+i")
        wait_until(lambda: self.home.partial_bytes() > 100_000, 30, "some of the file")

    def fact(self, label):
        """Empty: it is not told."""
        return next((node.name.removeprefix(f"{label}: ") for node in self.desktop.nodes()
                     if node.role == "cell" and node.name.startswith(f"{label}: ")), "")

    def pause(self):
        self.desktop.click(self.first_button("slow.iso"))
        self.wait_for_state("slow.iso", "Paused")

    def enter_address(self, path):
        self.desktop.menu("Queue", "Change Address...")
        self.desktop.wait_for("text", "New address")
        self.desktop.key("ctrl+a")
        self.desktop.type(self.server.url(path))
        self.desktop.key("Return")

    def test_facts_and_connections_are_told(self):
        self.use("details", "-Acceleration: Enabled", "1", "-Acceleration: Channels", "2")
        self.start_with_half_a_file()
        wait_until(lambda: self.fact("Address") == self.slow_address(), 30, "the address")
        self.assertEqual(self.fact("Size"), "8.4 MB (8,388,608 bytes)")
        wait_until(lambda: self.fact("Part") and "/s" in self.fact("Speed"), 30, "a connection")
        self.shoot("accelerated")
        self.desktop.key("ctrl+i")
        self.desktop.wait_until_gone("table", "Facts")
        self.wait_for_setting("Details Pane", False)

    def test_another_address_goes_on_with_the_same_file_and_warns_of_another(self):
        self.use("address")
        self.start_with_half_a_file()
        self.pause()
        kept = self.home.partial_bytes()
        self.enter_address("/quick.pdf")
        self.desktop.wait_for("push button", "Begin Anew")
        self.shoot("other-file")
        self.desktop.key("Escape")
        self.desktop.wait_until_gone("dialog", "Change Address")
        self.assertEqual(self.home.partial_bytes(), kept)
        self.assertEqual(self.fact("Address"), self.slow_address())

        self.enter_address("/slow.iso")
        self.wait_for_state("slow.iso", "Complete")
        self.assert_downloaded("slow.iso", self.slow)
        answers = [line.split("|")[2] for line in self.server.log.read_text().splitlines()
                   if line.startswith("GET|/slow.iso|")]
        self.assertEqual(answers, ["206", "206"], "the question, and the rest of the file")


if __name__ == "__main__":
    unittest.main()
