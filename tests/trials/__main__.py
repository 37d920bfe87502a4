"""scripts/trials: see there."""
import argparse
import random
import sys
import time

from hostile_files import HostileFiles
from kills import CallKills, Errors, RandomKills, Signals
from power import PowerCuts
from versions import Versions
from ways import WAYS, DisturbedTransfers

KINDS = {"kills": RandomKills, "calls": CallKills, "errors": Errors, "power": PowerCuts,
         "versions": Versions, "files": HostileFiles, "signals": Signals}
ENDLESS = 1 << 40


def run(name, seed, tries, seconds):
    """False: something broke."""
    if name == "power" and (reason := PowerCuts.is_possible()):
        print(f"power cuts: not possible here: {reason}", flush=True)
        return True
    outcome = KINDS[name].run(seed, tries, seconds)
    print(outcome, flush=True)
    return not outcome.broken


def night(hours):
    """All kinds in turn, in portions, until the time is over."""
    end = time.monotonic() + hours * 3600
    is_whole = True
    while (left := end - time.monotonic()) > 0:
        for name in KINDS:
            seed = random.randrange(1 << 30)
            is_whole = run(name, seed, ENDLESS, min(max(left / len(KINDS), 1), 600)) and is_whole
    return is_whole


def main():
    parser = argparse.ArgumentParser(prog="scripts/trials", description=__doc__)
    parser.add_argument("kinds", nargs="*", choices=[*KINDS, "night", []], metavar="KIND")
    parser.add_argument("--tries", type=int, default=20)
    parser.add_argument("--seconds", type=float, default=600, help="at most, for each kind")
    parser.add_argument("--seed", type=int)
    parser.add_argument("--hours", type=float, default=8, help="of the night")
    parser.add_argument("--ways", default="", help="only those whose names have this in them")
    given = parser.parse_args()
    DisturbedTransfers.ways = [way for way in WAYS if given.ways in way.name]
    if "night" in given.kinds:
        return night(given.hours)
    seed = random.randrange(1 << 30) if given.seed is None else given.seed
    return all([run(name, seed, given.tries, given.seconds) for name in given.kinds or KINDS])


if __name__ == "__main__":
    sys.exit(0 if main() else 1)
