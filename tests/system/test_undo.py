"""What is removed in the window can be had back, also after the program was killed."""
import unittest

from support.home import wait_until
from test_window import WindowTest


class UndoTest(WindowTest):
    def bar(self, text):
        return wait_until(lambda: next((node for node in self.desktop.nodes() if node.role ==
                                        "label" and node.name.startswith(text)), None), 30, text)

    def test_a_row_comes_back_by_button_and_key_and_after_a_kill(self):
        self.use("undo")
        program = self.start(self.slow_address(), self.server.url("/quick.pdf"))
        self.wait_for_first_rows("slow.iso", "quick.pdf")
        self.wait_for_state("slow.iso", "Downloading")
        wait_until(lambda: self.home.partial_bytes() > 300_000, 30, "some data")
        self.desktop.click(self.row("slow.iso"))
        self.desktop.key("Delete")
        self.wait_for_rows("quick.pdf")
        self.assertRegex(self.bar("Removed slow.iso").name, r"^Removed slow.iso \(\d.* kept\)$")
        self.shoot("bar")
        self.desktop.click(self.desktop.find("push button", "Undo"))
        self.wait_for_rows("slow.iso", "quick.pdf")
        self.wait_for_state("slow.iso", "Downloading")  # As it did.
        self.desktop.wait_until_gone("push button", "Undo")

        self.desktop.click(self.on_row("slow.iso", -16))
        self.wait_for_rows("quick.pdf")
        wait_until(lambda: "Removed From" in str(self.home.queue()), 30, "the removal on disk")
        program.kill()
        program.wait()
        kept = self.home.partial_bytes()
        self.assertGreater(kept, 300_000)

        program = self.start()
        self.bar("Removed slow.iso")
        self.assertEqual(self.rows(), [])
        self.desktop.key("ctrl+z")
        self.wait_for_rows("slow.iso")
        self.wait_for_state("slow.iso", "Paused")
        self.assertEqual(self.home.partial_bytes(), kept)
        self.desktop.click(self.row("slow.iso"))
        self.desktop.key("Delete")
        self.wait_for_rows()
        self.desktop.key("ctrl+q")
        self.assert_status(self.home.result(program), 0)
        self.assertEqual(self.home.leftovers(), [])


del WindowTest

if __name__ == "__main__":
    unittest.main()
