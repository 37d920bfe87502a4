"""Orlop, the host and the browser are killed at random moments of hand-overs: each file is there
exactly once then, in Orlop or in the browser."""
import os
import random
import re
import sys
import time
import unittest
from collections import Counter

from support.browser_case import SERVICE, BrowserCase
from support.chromium import Chromium
from support.firefox import Firefox
from support.download_site import content
from support.home import LONG, wait_until

ROUNDS = 200 if LONG else 10
SEED = int(os.environ.get("ORLOP_KILL_SEED", random.SystemRandom().randrange(1 << 32)))


class KillTests:
    names = [f"{number:03}.bin" for number in range(ROUNDS)]

    def copies(self, name):
        """Whole ones, also under the names that a second copy gets; anything else is a fault."""
        stem = name.removesuffix(".bin")
        found = []
        for place, folder, names in (("Orlop", self.home.downloads, self.in_orlop()),
                                     ("browser", self.home.root / "Browser", self.in_browser())):
            for one in names:
                if re.fullmatch(rf"{stem}( ?\(?\d+\)?)?\.bin", one):
                    found.append(place)
                    self.assertEqual((folder / one).read_bytes(), content(name), f"{one} in {place}")
        return found

    def under_way(self):
        """What may still become a file, here or there."""
        return (self.browser.unsettled() + [record["URL"] for record in self.home.queue()] +
                [one for one in self.browser.downloads() if one[1] == "in_progress"])

    def remove_what_lost_its_cookie(self):
        """The site's cookie died with the browser, before Orlop was asked (again): a failed row, which
        the user sees and gets again from the page."""
        lost = [record["Identity"] for record in self.home.queue()
                if record.get("Status Code") == 403]
        if lost:
            self.orlop.bus.call(*SERVICE, f"{SERVICE[0]}.Remove", str(lost))
            self.lost_cookies += len(lost)

    def wait_for_quiet(self, may_lose_cookie):
        def is_quiet():
            if may_lose_cookie:
                self.remove_what_lost_its_cookie()
            return not self.under_way()
        try:
            wait_until(is_quiet)
        except AssertionError:
            self.fail(f"still under way: {self.under_way()}, {self.home.queue()}")

    def settled(self, name, victim):
        """Where the copies are when nothing happens any more."""
        self.orlop.start()
        self.wait_for_quiet(victim == "browser")
        end = time.monotonic() + 1
        while not (found := self.copies(name)) and time.monotonic() < end:
            time.sleep(0.05)
        self.wait_for_quiet(victim == "browser")
        return found or self.copies(name)

    def kill(self, victim):
        if victim == "Orlop":
            self.orlop.kill()
        elif victim == "host":
            self.orlop.kill_hosts()
        else:
            self.browser.restart()
            self.page = self.browser.open(self.site.url("/page"))

    def test_exactly_once(self):
        chance = random.Random(SEED)
        table, repeated, self.lost_cookies = Counter(), 0, 0
        self.orlop.start()
        self.page = self.browser.open(self.site.url("/page"))
        for name in self.names:
            victim = chance.choice(("Orlop", "host", "browser"))
            with self.subTest(name=name, victim=victim, seed=SEED):
                self.browser.click(self.page, f"{chance.choice(('file', 'twice'))}-{name}")
                time.sleep(chance.random() ** 2 * 0.4)
                self.kill(victim)
                found = self.settled(name, victim)
                if not found:
                    # The browser died before it knew of the click, or with a download half done.
                    self.assertEqual(victim, "browser")
                    repeated += 1
                    self.browser.click(self.page, f"file-{name}")
                    wait_until(lambda: self.copies(name), what=f"{name} once more")
                    found = self.settled(name, victim)
                self.assertEqual(len(found), 1, found)
                table[victim, found[0]] += 1
        print(f"\n{type(self).__name__}: {ROUNDS} hand-overs, seed {SEED}", file=sys.stderr)
        for (victim, place), count in sorted(table.items()):
            print(f"  {victim} killed: {count} in {place}", file=sys.stderr)
        print(f"  clicked again after the browser had died: {repeated}, of these with its cookie: "
              f"{self.lost_cookies}", file=sys.stderr)
        self.assertEqual({name: len(self.copies(name)) for name in self.names},
                         dict.fromkeys(self.names, 1), "also at the end")


class ChromiumKillTest(KillTests, BrowserCase):
    family = Chromium


class FirefoxKillTest(KillTests, BrowserCase):
    family = Firefox


if __name__ == "__main__":
    unittest.main()
