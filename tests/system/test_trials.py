"""A few of each of the trials (scripts/trials), with a fresh seed each time."""
import os
import random
import sys
import unittest
from pathlib import Path

from support.home import SANITIZED

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "trials"))
from hostile_files import HostileFiles  # noqa: E402
from kills import CallKills, Errors, RandomKills, Signals  # noqa: E402
from power import PowerCuts  # noqa: E402
from versions import Versions  # noqa: E402

TRIES, SECONDS = 6, 8


class TrialsTest(unittest.TestCase):
    def hold(self, kind):
        outcome = kind.run(random.randrange(1 << 30), TRIES, SECONDS)
        print(outcome)
        self.assertGreater(outcome.tries, 0)
        self.assertEqual(outcome.broken, [], outcome)

    def test_random_kills(self):
        self.hold(RandomKills)

    def test_versions(self):
        self.hold(Versions)

    def test_hostile_files(self):
        self.hold(HostileFiles)

    def test_signals(self):
        self.hold(Signals)


@unittest.skipIf(SANITIZED, "a sanitizer wants to be loaded first")
@unittest.skipUnless("ORLOP_FAULTS" in os.environ, "the preloaded library is not built")
class FaultTrialsTest(TrialsTest):
    test_random_kills = test_versions = test_hostile_files = test_signals = None

    def test_kills_at_calls(self):
        self.hold(CallKills)

    def test_errors(self):
        self.hold(Errors)

    def test_power_cuts(self):
        if reason := PowerCuts.is_possible():
            self.skipTest(f"not possible here: {reason}")
        self.hold(PowerCuts)


if __name__ == "__main__":
    unittest.main()
