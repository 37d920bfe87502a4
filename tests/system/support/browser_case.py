"""A browser with the extension, Orlop on the bus, and a site that hands out files sparingly."""
import contextlib
import os
import signal
import unittest
from pathlib import Path

from .download_site import DownloadSite, content
from .home import PROGRAMS, Home, wait_until
from .native_host import HOST, bus_with_service

ORLOP = PROGRAMS / "orlop"
SERVICE = ("com.tarnworks.Orlop", "/com/tarnworks/Orlop")


class Orlop:
    """The program as the bus has started it, without a screen."""

    def __init__(self, home):
        self.home = home
        wrapper = home.root / "orlop-in-background"
        wrapper.write_text(f"#!/bin/sh\nexport QT_QPA_PLATFORM=offscreen\n"
                           f"exec {ORLOP} --background\n")
        wrapper.chmod(0o755)
        self.bus = bus_with_service(home, wrapper)
        self.environment = self.bus.environment

    def process(self):
        """Its process id; nothing: it does not run."""
        answer = self.bus.call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                               "org.freedesktop.DBus.GetConnectionUnixProcessID", SERVICE[0])
        return int(answer.strip("(,)").split()[-1]) if answer else None

    def start(self):
        self.bus.call(*SERVICE, SERVICE[0] + ".BrowserFilter")
        return wait_until(self.process, what="Orlop")

    def kill(self):
        process = self.process()
        if process:
            os.kill(process, signal.SIGKILL)
            wait_until(lambda: self.process() != process, what="its end")

    def kill_hosts(self):
        """Those that browsers have started in this home."""
        for folder in Path("/proc").glob("[0-9]*"):
            with contextlib.suppress(OSError):
                if ((folder / "comm").read_text().strip() == HOST.name
                        and f"HOME={self.home.root}\0".encode()
                        in (folder / "environ").read_bytes()):
                    os.kill(int(folder.name), signal.SIGKILL)

    def close(self):
        self.kill()
        self.bus.close()


class BrowserCase(unittest.TestCase):
    """Each class is one run of one browser. `family` is the class of the browser."""

    family = None
    names = ()

    @classmethod
    def setUpClass(cls):
        if not cls.family.is_there():
            raise unittest.SkipTest(f"{cls.family.program} is not installed")
        cls.home = Home()
        cls.addClassCleanup(cls.home.close)
        cls.orlop = Orlop(cls.home)
        cls.addClassCleanup(cls.orlop.close)
        cls.home.run("--install", "--browser", cls.family.family, program=HOST)
        cls.site = DownloadSite(cls.names)
        cls.addClassCleanup(cls.site.close)
        cls.browser = cls.family(cls.home, cls.orlop.environment)
        cls.addClassCleanup(cls.browser.close)

    def in_orlop(self):
        return self.home.finished()

    def in_browser(self):
        """The files that the browser has whole."""
        folder = self.home.root / "Browser"
        sizes = {}
        for path in folder.iterdir() if folder.exists() else []:
            with contextlib.suppress(FileNotFoundError):
                sizes[path.name] = path.stat().st_size
        return sorted(name for name, size in sizes.items()
                      if size and not name.endswith((".crdownload", ".part")))

    def assert_in_orlop(self, *names):
        wait_until(lambda: set(names) <= set(self.in_orlop()), what=lambda:
                   f"{names} in Orlop, while the browser has {self.browser.downloads()},")
        for name in names:
            self.assertEqual((self.home.downloads / name).read_bytes(), content(name), name)
        wait_until(lambda: not self.browser.unsettled(), what="the settling")
        self.assertEqual(set(names) & set(self.in_browser()), set(), "and nowhere else")
        self.assertEqual([one for one in self.browser.downloads() if one[0] in names], [])

    def assert_in_browser(self, *names):
        wait_until(lambda: set(names) <= set(self.in_browser()),
                   what=lambda: f"{names} in the browser, which has {self.browser.downloads()},")
        wait_until(lambda: not self.browser.unsettled(), what="the settling")
        self.assertEqual(set(names) & set(self.in_orlop()), set(), "and nowhere else")
