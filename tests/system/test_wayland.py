"""The window in a Wayland session, by a compositor without a screen and its own screenshots."""
import shutil
import subprocess
import unittest
from pathlib import Path

from support.bus import Bus
from support.case import MIB, SystemTest
from support.home import PROGRAMS, wait_until

PROGRAM = PROGRAMS / "orlop"
SIZE = (1000, 700)


@unittest.skipUnless(PROGRAM.exists(), "built without the desktop program")
class WaylandTest(SystemTest):
    def setUp(self):
        super().setUp()
        self.bus = Bus()
        self.addCleanup(self.bus.close)
        self.assertTrue(shutil.which("weston"), "scripts/setup installs it")
        width, height = SIZE
        self.compositor = self.home.start(
            "--backend=headless-backend.so", "--use-pixman", f"--width={width}",
            f"--height={height}", "--socket=orlop-test", "--no-config", "--idle-time=0", "--debug",
            program="weston", stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_until((Path(self.home.environment()["XDG_RUNTIME_DIR"]) / "orlop-test").exists,
                   what="the compositor")
        self.session = self.bus.environment | {"WAYLAND_DISPLAY": "orlop-test", "DISPLAY": ""}

    def screenshot(self):
        """What is on the screen, a byte for each pixel."""
        for old in self.home.root.glob("wayland-screenshot*.png"):
            old.unlink()
        self.assert_status(self.home.run(program="weston-screenshooter", environment=self.session), 0)
        picture, = self.home.root.glob("wayland-screenshot*.png")
        return subprocess.run(["convert", picture, "-colorspace", "Gray", "-depth", "8", "gray:-"],
                              capture_output=True, check=True).stdout

    def is_at_rest(self):
        shot = self.screenshot()
        return len(set(shot)) > 10 and self.share_that_differs(shot) == 0

    def share_that_differs(self, before):
        now = self.screenshot()
        return sum(a != b for a, b in zip(before, now)) / len(before)

    def test_the_window_shows_downloads_and_goes(self):
        self.serve("slow.bin", 2 * MIB)
        wait_until(self.is_at_rest, what="the desktop, once it has faded in")
        bare = self.screenshot()
        self.assertEqual(len(bare), SIZE[0] * SIZE[1])
        # On nothing but this compositor: a fallback to X11 would have no server to go to.
        program = self.home.start(self.server.url("/rate/300000/slow.bin"), program=PROGRAM,
                                  environment=self.session | {"QT_QPA_PLATFORM": "wayland"})
        wait_until(lambda: self.home.partial_bytes() > 0, what="the first bytes")
        wait_until(lambda: self.share_that_differs(bare) > 0.2, what="a window of its usual size")
        self.assert_status(self.home.run("--quit", program=PROGRAM, environment=self.session), 0)
        result = self.home.result(program)
        self.assert_status(result, 0)
        self.assertEqual(result.stderr, "", "what Wayland does not allow costs no words here")
        wait_until(lambda: self.share_that_differs(bare) < 0.02, what="the bare desktop")


if __name__ == "__main__":
    unittest.main()
