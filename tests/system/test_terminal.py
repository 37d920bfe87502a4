"""What a person sees on a terminal."""
import signal
import subprocess
import time
import unittest
from pathlib import Path

from support.case import MIB, SystemTest
from support.home import PROGRAMS, SANITIZED, wait_until
from support.screen import width

BAR = "━"


class TerminalTest(SystemTest):
    def assert_screen_was_well_treated(self, session):
        self.assertEqual(session.screen.unknown, [])
        self.assertTrue(session.screen.shows_cursor)
        self.assertTrue(session.screen.wraps, "the terminal's wrapping was left off")
        self.assertEqual(session.screen.column, 0)

    def test_a_line_with_bar_size_speed_and_time_left(self):
        source = self.serve("moving.bin", 6 * MIB)
        session = self.session(self.server.url("/rate/1500000/moving.bin"))
        session.wait_for(lambda lines: any(
            line.startswith("moving.bin") and BAR in line and "%" in line and " of 6.3 MB" in line
            and "/s" in line and "0:0" in line for line in lines))
        self.assertEqual(session.screen.text()[-1], "1 download")
        self.assertEqual(session.finish(), 0)
        self.assertTrue(session.screen.text()[0].startswith("Download Complete: moving.bin"))
        self.assertEqual(len(session.screen.text()), 1)
        self.assert_screen_was_well_treated(session)
        self.assert_downloaded("moving.bin", source)

    def test_being_resized(self):
        for reflows in (True, False):
            with self.subTest(reflows=reflows):
                source = self.serve("resized.bin", 4 * MIB)
                session = self.session(self.server.url("/rate/2000000/resized.bin"),
                                       columns=100, reflows=reflows)
                session.wait_for_text(BAR)
                for columns, lines in ((60, 20), (30, 10), (120, 5), (80, 2), (100, 24)):
                    session.resize(columns, lines)
                    drawn = session.drawings
                    session.wait_for(lambda lines: session.drawings > drawn)
                    rows = session.screen.everything()
                    self.assertLessEqual(len([row for row in rows if "resized.bin" in row]), 1)
                    self.assertLessEqual(max(sum(map(width, row)) for row in rows), columns)
                self.assertEqual(session.finish(), 0)
                self.assertEqual(len(session.screen.everything()), 1, session.screen.everything())
                self.assert_downloaded("resized.bin", source)
                (self.home.downloads / "resized.bin").unlink()

    def test_names_cannot_steer_the_terminal(self):
        name = "\x1b]0;owned\x07\x1b[2J\u202etxt.bin"
        self.serve("evil.bin", 100_000)
        (self.server.content / name).write_bytes(b"x" * 100_000)
        session = self.session(
            self.server.url("/rate/100000/%1B%5D0;owned%07%1B%5B2J%E2%80%AEtxt.bin"))
        self.assertEqual(session.finish(), 0)
        self.assertEqual(session.screen.unknown, [])
        self.assertNotIn(b"\x1b]0", session.raw)
        self.assertNotIn(b"\x1b[2J", session.raw)
        self.assertNotIn("\u202e".encode(), session.raw)

    def test_interrupted_from_the_keyboard(self):
        self.serve("halted.bin", 4 * MIB)
        session = self.session(self.server.url("/rate/500000/halted.bin"))
        session.wait_for_text(BAR)
        session.type("\x03")
        self.assertEqual(session.finish(), -signal.SIGINT)
        self.assertTrue(session.screen.wraps)
        self.assertFalse(any(BAR in line for line in session.screen.text()))
        self.assertEqual(len(self.home.queue()), 1)


class LibrariesTest(unittest.TestCase):
    """Programs without windows load nothing that belongs to windows."""

    def test_no_window_system(self):
        for program in ("orlop-terminal", "orlop-defaults", "orlop-log"):
            path = PROGRAMS / program
            loaded = subprocess.run(["ldd", path], capture_output=True, text=True,
                                    check=True).stdout
            self.assertIn("libQt6Core", loaded)
            for library in ("Qt6Gui", "Qt6Widgets", "libX11", "libwayland"):
                self.assertNotIn(library, loaded, program)


class EndlessSeriesTest(SystemTest):
    def test_it_is_refused_and_the_setting_named(self):
        result = self.home.run("http://127.0.0.1:1/{1-999999999999}{1-999999}")
        self.assert_status(result, 1)
        self.assertIn("stands for 999,998,999,999,000,001 addresses", result.stderr)
        self.assertIn("“Largest Series” allows 10,000", result.stderr)
        self.assertFalse(self.home.queue())

    @unittest.skipIf(SANITIZED, "a sanitizer's own memory hides the program's")
    def test_where_it_is_allowed_it_fills_no_memory_and_ends_at_once(self):
        process = self.home.start("-Largest Series", str(1 << 62),
                                  self.server.url("/{1-999999999999}"))
        wait_until(lambda: len(self.server.requests()) > 300, what="requests")
        time.sleep(3)  # In which it would go on growing.
        words = Path(f"/proc/{process.pid}/status").read_text().split()
        self.assertLess(int(words[words.index("VmHWM:") + 1]), 200_000, "kB")
        self.home.interrupt(process)
        self.assertLessEqual(len(self.home.queue()), 60_000)


if __name__ == "__main__":
    unittest.main()
