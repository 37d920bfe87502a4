"""Orlop, the host and the browser are killed at random moments of hand-overs: each file is there
exactly once then, in Orlop or in the browser."""
import os
import random
import re
import sys
import time
import unittest
from collections import Counter

from support.browser_case import BrowserCase
from support.browsers import Chromium, Firefox
from support.download_site import content
from support.home import LONG, wait_until

ROUNDS = 200 if LONG else int(os.environ.get("ROUNDS","5"))
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

    def is_quiet(self):
        return (not self.browser.unsettled() and not self.home.queue() and
                all(state != "in_progress" for _, state in self.browser.downloads()))

    def settled(self, name):
        """Where the copies are when nothing happens any more."""
        self.orlop.start()
        wait_until(self.is_quiet, what=f"{name} settling")
        end = time.monotonic() + 1
        while not (found := self.copies(name)) and time.monotonic() < end:
            time.sleep(0.05)
        wait_until(self.is_quiet, what=f"{name} settling")
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
        table, repeated = Counter(), 0
        self.orlop.start()
        self.page = self.browser.open(self.site.url("/page"))
        for name in self.names:
            victim = chance.choice(("Orlop", "host", "browser"))
            with self.subTest(name=name, victim=victim, seed=SEED):
                self.browser.click(self.page, f"{chance.choice(('file', 'twice'))}-{name}")
                time.sleep(chance.random() ** 2 * 0.4)
                self.kill(victim)
                found = self.settled(name)
                if not found:
                    # The browser died before it knew of the click, or with a download half done.
                    self.assertEqual(victim, "browser")
                    repeated += 1
                    self.browser.click(self.page, f"file-{name}")
                    wait_until(lambda: self.copies(name), what=f"{name} once more")
                    found = self.settled(name)
                self.assertEqual(len(found), 1, found)
                table[victim, found[0]] += 1
        print(f"\n{type(self).__name__}: {ROUNDS} hand-overs, seed {SEED}", file=sys.stderr)
        for (victim, place), count in sorted(table.items()):
            print(f"  {victim} killed: {count} in {place}", file=sys.stderr)
        print(f"  clicked again after the browser had died: {repeated}", file=sys.stderr)
        self.assertEqual({name: len(self.copies(name)) for name in self.names},
                         dict.fromkeys(self.names, 1), "also at the end")


class ChromiumKillTest(KillTests, BrowserCase):
    family = Chromium


class FirefoxKillTest(KillTests, BrowserCase):
    family = Firefox


if __name__ == "__main__":
    unittest.main()
