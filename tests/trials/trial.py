"""What all trials share: a try is something done to the program, and what must hold after it."""
import os
import random
import subprocess
import sys
import time
from dataclasses import dataclass, field
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "system"))
from support.home import PROGRAMS, Home, sha256  # noqa: E402

FAULTS = os.environ.get("ORLOP_FAULTS", str(PROGRAMS.parent / "tests/system/orlop_faults.so"))
MIB = 1 << 20


class Broken(Exception):
    """Something did not hold. The text says what."""


@dataclass
class Outcome:
    kind: str
    seed: int
    tries: int = 0
    harmed: int = 0
    broken: list = field(default_factory=list)

    def __str__(self):
        line = (f"{self.kind}: {self.tries} tries, {self.harmed} harmed, {len(self.broken)} broken, "
                f"seed {self.seed}")
        return "\n".join([line, *(f"    {how}" for how in self.broken)])


class Trial:
    """One kind. `attempt` does one try with `self.random` and answers how often harm was done; a
    `Broken` says what did not hold."""

    kind = ""

    def __init__(self, seed):
        self.seed = seed
        self.random = random.Random(seed)

    def close(self):
        pass

    def attempt(self):
        raise NotImplementedError

    @classmethod
    def run(cls, seed, tries, seconds):
        """Until so many tries were made or the time is over. Each try has a seed of its own, so
        that one that broke can be made again alone."""
        outcome = Outcome(cls.kind, seed)
        end = time.monotonic() + seconds
        trial = cls(seed)
        try:
            while outcome.tries < tries and time.monotonic() < end:
                own = seed + outcome.tries
                trial.random = random.Random(own)
                outcome.tries += 1
                try:
                    outcome.harmed += trial.attempt()
                except Broken as how:
                    outcome.broken.append(f"{how} (seed {own})")
        finally:
            trial.close()
        return outcome


def end_of(home, process, note, deadline=60):
    """The result of a run that must end by itself, and not by a crash."""
    try:
        result = home.result(process, deadline=deadline)
    except subprocess.TimeoutExpired:
        process.kill()
        home.result(process)
        raise Broken(f"{note}: it did not end") from None
    if result.returncode < 0 and -result.returncode in (4, 6, 7, 8, 11):
        raise Broken(f"{note}: it crashed with signal {-result.returncode}")
    return result


def check_files(home, wanted, note):
    """Whatever is called complete is one of the wanted files."""
    for path in home.downloads.rglob("*"):
        if path.is_file() and not any(".orlop" in part for part in path.relative_to(
                home.downloads).parts) and sha256(path) not in wanted:
            raise Broken(f"{note}: {path.name} is complete and wrong")


def check_queue(home, note):
    try:
        return home.queue()
    except Exception as error:
        raise Broken(f"{note}: the queue cannot be read: {error}") from None


def new_home(**options):
    return Home(**options)
