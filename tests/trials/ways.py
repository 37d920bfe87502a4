"""Ways in which files come, to be disturbed in the middle."""
from dataclasses import dataclass

from trial import MIB, Broken, Trial, check_files, check_queue, end_of, new_home
from support.home import sha256
from support.servers import Nginx, write_random

ACCELERATED = ("-Acceleration: Enabled", "1", "-Acceleration: Channels", "4")
APART = ("-Acceleration: Parts In Place", "0")
OWN_FOLDER = ("-Intermediates Location", "0")


@dataclass
class Way:
    name: str
    place: str
    settings: tuple = ()
    files: tuple = ("large.bin",)


WAYS = [
    Way("plain", "/"), Way("slow", "/rate/6000000/"), Way("chunked", "/chunked/"),
    Way("no ranges", "/noranges/"), Way("redirected", "/to/"), Way("accelerated", "/", ACCELERATED),
    Way("accelerated and slow", "/rate/2000000/", ACCELERATED),
    Way("accelerated and uneven", "/uneven/", ACCELERATED),
    Way("accelerated and apart", "/", ACCELERATED + APART),
    Way("accelerated, apart and slow", "/rate/2000000/", ACCELERATED + APART),
    Way("in the program's folder", "/", OWN_FOLDER),
    Way("accelerated in the program's folder", "/", ACCELERATED + OWN_FOLDER),
    Way("small", "/", files=("small-0.bin",)),
    Way("many", "/", files=tuple(f"small-{number}.bin" for number in range(12))),
]


class DisturbedTransfers(Trial):
    """Runs of one way each that are disturbed some times, and then one that is not, which has to
    bring every file."""

    ways = WAYS
    may_leave_strays = False

    def __init__(self, seed):
        super().__init__(seed)
        self.server = Nginx()
        self.sources = {"large.bin": write_random(self.server.content / "large.bin", 3 * MIB + 7, 1)}
        for number in range(12):
            name = f"small-{number}.bin"
            self.sources[name] = write_random(self.server.content / name, 700 + number, number + 2)
        self.wanted = {sha256(path): name for name, path in self.sources.items()}

    def close(self):
        self.server.close()

    def disturbed(self, home, arguments):
        """One run, which ends by itself from now on. Answers the process."""
        raise NotImplementedError

    def harms_of(self, home, process):
        """How often harm was done to a run that has ended."""
        return int(process.returncode != 0)

    def attempt(self):
        way = self.random.choice(self.ways)
        home = new_home(**self.home_options())
        try:
            return self.disturb(home, way)
        finally:
            home.close()

    def home_options(self):
        return {}

    def disturb(self, home, way):
        note = way.name
        addresses = [self.server.url(way.place + name) for name in way.files]
        harmed = 0
        for _ in range(self.random.randint(1, 3)):
            # What the queue did not come to know is asked for again, as a user would.
            arguments = [*way.settings, *self.missing(home, way, addresses)]
            process = self.disturbed(home, arguments)
            end_of(home, process, note)
            harmed += self.harms_of(home, process)
            check_files(home, self.wanted, note)
            check_queue(home, note)
        for run in range(3):
            missing = self.missing(home, way, addresses)
            if run and not missing and not home.queue():
                break
            end_of(home, home.start(*way.settings, *missing), note)
        check_files(home, self.wanted, note)
        if missing := self.missing(home, way, addresses):
            raise Broken(f"{note}: {missing} did not come")
        if home.queue():
            raise Broken(f"{note}: the queue is not empty")
        names = home.finished()
        if len(names) != len(way.files):
            raise Broken(f"{note}: came more than once: {names}")
        strays = [name for name in home.leftovers() if "Queue.lock" not in name]
        if strays and not self.may_leave_strays:
            raise Broken(f"{note}: strays: {strays}")
        return harmed

    def missing(self, home, way, addresses):
        queued = {record["URL"]: record["Paused"] for record in home.queue()}
        have = {self.wanted.get(sha256(home.downloads / name)) for name in home.finished()}
        return [address for name, address in zip(way.files, addresses)
                if name not in have and queued.get(address, True)]
