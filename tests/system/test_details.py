"""The details of a download beside its row, and another address for it, as a user meets them."""
import re
import unittest

from support.case import MIB
from support.home import sha256, wait_until
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
        self.desktop.wait_for_dialog("Change Address")
        self.desktop.key("ctrl+a")
        self.desktop.type(self.server.url(path))
        self.desktop.key("Return")

    def test_facts_and_connections_are_told(self):
        self.use("details", "-Acceleration: Enabled", "1", "-Acceleration: Channels", "2")
        self.start_with_half_a_file()
        wait_until(lambda: self.fact("Address") == self.slow_address(), 30, "the address")
        wait_until(lambda: self.fact("Size") == "8.4 MB (8,388,608 bytes)", 30, "the size")
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
        # The question, and the rest of the file; the server writes its log a moment later.
        wait_until(lambda: [request[2] for request in self.server.requests()
                            if request[1] == "/slow.iso"] == ["206", "206"], 30, "the answers")

    def test_a_limit_counts_as_typed_and_another_one_at_once(self):
        self.use("limit")
        self.serve("large.iso", 80 * MIB)
        self.start(self.server.url("/rate/1000000/large.iso"))
        self.wait_for_first_rows("large.iso")
        self.desktop.key("ctrl+i")
        for kilobytes in (40, 600):
            before = self.home.partial_bytes()
            wait_until(lambda: self.home.partial_bytes() > before + 30_000, 30, "bytes before it")
            self.desktop.menu("Queue", "Speed Limit...")
            self.desktop.wait_for_dialog("Speed Limit")
            self.desktop.type(str(kilobytes))
            self.desktop.key("Return")
            self.desktop.wait_until_gone("dialog", "Speed Limit")
            wait_until(lambda: self.home.queue()[0].get("Speed Limit") == kilobytes * 1000, 30,
                       "the limit on disk")
            slowest, fastest = 0.3 * kilobytes, 1.3 * kilobytes
            wait_until(lambda: slowest < self.total_rate() < fastest, 30, "the speed in the window")
        self.shoot("raised")

    def total_rate(self):
        """Of the status bar, in kilobytes per second."""
        found = (re.match(r"([0-9.]+) ([KM])B/s", node.name) for node in self.desktop.nodes()
                 if node.role == "label")
        return next((float(match[1]) * (1000 if match[2] == "M" else 1) for match in found if match), 0)

    def test_a_checksum_found_beside_the_file_is_verified_by_return(self):
        self.use("sums")
        (self.server.content / "SHA256SUMS").write_text(f"{sha256(self.quick)}  quick.pdf\n")
        self.start(self.server.url("/quick.pdf"))
        self.wait_for_first_rows("quick.pdf")
        self.wait_for_state("quick.pdf", "Complete")
        self.desktop.click(self.row("quick.pdf"))
        self.desktop.menu("Queue", "Verify...")
        self.desktop.click(self.desktop.wait_for("push button", "Look Beside It"))
        self.desktop.wait_for("label", "Found in SHA256SUMS")
        self.desktop.key("Return")
        self.wait_for_state("quick.pdf", "Verified SHA-256")
        self.desktop.wait_until_gone("dialog", "Verify")


if __name__ == "__main__":
    unittest.main()
