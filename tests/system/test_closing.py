"""The end of the program with a window: whoever wants it gets it, at whatever moment."""
import plistlib
import signal
import unittest
from urllib.parse import quote

from support.home import PROGRAMS
from test_window import WindowTest

PROGRAM = PROGRAMS / "orlop"


class ClosingTest(WindowTest):
    def quit_from_outside(self):
        self.assert_status(self.home.run("--quit", program=PROGRAM,
                                         environment=self.desktop.environment), 0)

    def launch(self, *items):
        """Asks something before its list is of any use."""
        return self.home.start(*items, program=PROGRAM, environment=self.desktop.environment)

    def two_linked_files(self):
        """A link that is asked about."""
        files = "\n".join(self.server.url(f"/rate/1/part-{number}.zip") for number in (1, 2))
        return "orlop://linked/" + quote(files, safe="")

    def risky_bundle(self):
        """A begun download that wants to go where programs are run from, by both its keys."""
        bundle = self.home.root / "bait.bin.orlop"
        bundle.mkdir(exist_ok=True)
        autostart = self.home.root / "config/autostart"
        (bundle / "Archive.orlopinfo").write_bytes(plistlib.dumps({
            "URL": self.server.url("/rate/1/bait.bin"), "Paused": True,
            "Download File": str(autostart / "bait.desktop"), "Download Folder": str(autostart)}))
        return bundle

    def assert_ends(self, program):
        self.assert_status(self.home.result(program), 0)

    def test_a_second_close_while_the_window_fades(self):
        self.use("closing")
        program = self.start()
        # The window manager's key, which closes a window, comes while the other fades it.
        self.desktop.key("ctrl+q", "alt+F4")
        self.assert_ends(program)

    def test_a_quit_while_it_tells_of_a_damaged_queue(self):
        self.use("closing-damaged")
        self.home.support.mkdir(parents=True)
        self.home.queue_path.write_bytes(b"no queue")
        program = self.launch()
        self.desktop.wait_for("alert message")
        self.quit_from_outside()
        self.assert_ends(program)

    def test_a_quit_while_it_asks_about_what_it_was_started_with(self):
        self.use("closing-asking")
        program = self.launch(self.two_linked_files())
        self.desktop.wait_for("alert message")
        self.quit_from_outside()
        self.assert_ends(program)

    def test_a_quit_while_the_terminal_asks_about_what_it_was_started_with(self):
        self.use("closing-terminal")
        session = self.session(self.two_linked_files(), environment=self.desktop.environment)
        session.wait_for_text("Linked Files")
        self.quit_from_outside()
        self.assertEqual(session.finish(), 0)

    def test_nobody_is_taken_to_agree_when_the_session_ends(self):
        self.use("closing-session")
        for number in (signal.SIGTERM, signal.SIGHUP):
            with self.subTest(signal=number):
                program = self.start()
                self.launch(self.risky_bundle())
                self.desktop.wait_for("alert message")
                self.assert_status(self.home.interrupt(program, number), 0)
                self.assertNotIn("autostart", str(self.home.queue()))


del WindowTest

if __name__ == "__main__":
    unittest.main()
