"""The end of the program with a window: whoever wants it gets it, at whatever moment."""
import plistlib
import signal
import subprocess
import sys
import unittest
from pathlib import Path
from urllib.parse import quote

from support.home import PROGRAMS, wait_until
from test_window import WindowTest

PROGRAM = PROGRAMS / "orlop"
SESSION_MANAGER = Path(__file__).parent / "support/session_manager.py"
KEPT = "Unfinished Addresses"


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

    def join_session(self):
        """A session for the program, which can be left."""
        manager = subprocess.Popen([sys.executable, SESSION_MANAGER], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, text=True, bufsize=1)
        # It ends with its input.
        self.addCleanup(lambda: manager.communicate() and self.assertEqual(manager.returncode, 0))
        self.desktop.session = {"SESSION_MANAGER": manager.stdout.readline().strip()}
        return manager

    def log_out_while_something_is_entered(self):
        """Answers the session, which has not ended yet, the program, the panel and its text."""
        manager = self.join_session()
        program = self.start()
        self.assertEqual(manager.stdout.readline(), "joined\n")
        self.desktop.key("ctrl+n")
        panel = self.desktop.wait_for_dialog("Add Addresses")
        self.desktop.type(text := self.slow_address())
        self.wait_for_setting(KEPT, text)
        manager.stdin.write("log out\n")
        self.assertEqual(manager.stdout.readline(), "saved\n")
        return manager, program, panel, text

    def test_a_logout(self):
        self.use("closing-logout")
        manager, program, _, text = self.log_out_while_something_is_entered()
        manager.stdin.write("end\n")
        self.assert_ends(program)
        self.assertEqual(self.setting(KEPT), text)

    def test_a_logout_that_is_cancelled(self):
        self.use("closing-logout-cancelled")
        manager, program, panel, first = self.log_out_while_something_is_entered()
        manager.stdin.write("cancel\n")
        # What is typed from now on is as safe as before.
        self.desktop.key("Return")
        self.desktop.type(second := self.server.url("/quick.pdf"))
        self.wait_for_setting(KEPT, f"{first}\n{second}")
        self.desktop.place_window("Orlop", (700, 500, 520, 300))
        self.desktop.click(self.desktop.find("label"))
        self.desktop.key("alt+F4")
        wait_until(lambda: self.desktop.find("dialog", panel.name).has_focus(), 30,
                   "what holds the window open")
        self.desktop.key("ctrl+Return")
        self.wait_for_rows("slow.iso", "quick.pdf")
        # It is added, and not offered again by the next start.
        self.wait_for_setting(KEPT, None)
        program.kill()


del WindowTest

if __name__ == "__main__":
    unittest.main()
