"""Killed at any moment, the program loses nothing: the queue on disk is always whole, and the
file ends byte for byte right. ORLOP_LONG_TESTS=1 kills 200 times and more."""
import random
import shutil
import time
import unittest

from support.case import MIB, SystemTest
from support.home import LONG, sha256, wait_until

KILLS_IN_TRANSFERS = 160 if LONG else 7
KILLS_IN_QUEUE_WRITES = 60 if LONG else 4


class KillTest(SystemTest):
    def setUp(self):
        super().setUp()
        seed = random.randrange(1 << 30)
        self.random = random.Random(seed)
        self.note = f"with seed {seed}"

    def run_and_kill(self, longest, *arguments):
        """True: it had ended by itself before."""
        process = self.home.start(*arguments)
        time.sleep(self.random.uniform(0.01, longest))
        ended = process.poll()
        process.kill()
        self.home.result(process)
        if ended is not None:
            self.assertEqual(ended, 0, self.note)
        return ended is not None

    def assert_queue_is_whole(self, addresses):
        """Some state between "all of these" and "none", and never a broken one."""
        queued = self.home.queued_addresses()
        self.assertEqual(queued, [each for each in addresses if each in queued], self.note)
        return queued

    def assert_only_copies_of(self, sources):
        """Each is there; one that was finished but not yet out of the queue may be there twice.
        Takes them away."""
        wanted = {sha256(source): source.name for source in sources}
        for name in self.home.finished():
            self.assertIn(sha256(self.home.downloads / name), wanted,
                          f"{name} is damaged, {self.note}")
        for source in sources:
            self.assert_downloaded(source.name, source)
        for path in self.home.downloads.iterdir():
            shutil.rmtree(path) if path.is_dir() else path.unlink()

    def test_the_next_run_goes_on_where_it_stood(self):
        source = self.serve("halfway.bin", 4 * MIB)
        address = self.server.url("/rate/1500000/halfway.bin")
        process = self.home.start(address)
        wait_until(lambda: self.home.partial_bytes() > 2 * MIB, what="half of the file")
        process.kill()
        self.home.result(process)
        self.assert_status(self.home.run(), 0)
        self.assert_downloaded("halfway.bin", source)
        self.assertEqual(self.home.leftovers(), [])
        span = self.server.requests()[-1][3]
        self.assertTrue(span.startswith("bytes="), "not resumed")
        self.assertGreater(int(span[6:].split("-")[0]), 2 * MIB - 65536)

    def test_transfers(self):
        """Of one file, again and again from where the last run was killed."""
        kills = rounds = 0
        source = self.serve("victim.bin", 3 * MIB)
        places = ("/rate/4000000/", "/", "/chunked/", "/noranges/")
        while kills < KILLS_IN_TRANSFERS:
            place = places[rounds % len(places)]
            address = self.server.url(f"{place}victim.bin")
            rounds += 1
            arguments = [address]
            for _ in range(25):
                if self.run_and_kill(0.4 if place == places[0] else 0.12, *arguments):
                    break
                kills += 1
                # Before the queue is on disk for the first time there is nothing to go on with.
                if self.assert_queue_is_whole([address]):
                    arguments = []
            else:
                self.assert_status(self.home.run(*arguments), 0)
            self.assertEqual(self.home.queued_addresses(), [], self.note)
            self.assert_only_copies_of([source])
        print(f"{kills} kills in {rounds} files")

    def test_queue_writes(self):
        """Of many small files, each of which changes the queue when it is done."""
        kills = 0
        sources = [self.serve(f"small-{number}.bin", 500 + number, seed=number)
                   for number in range(120)]
        addresses = [self.server.url("/" + source.name) for source in sources]
        while kills < KILLS_IN_QUEUE_WRITES:
            arguments = addresses
            for _ in range(25):
                if self.run_and_kill(0.25, *arguments):
                    break
                kills += 1
                if self.assert_queue_is_whole(addresses):
                    arguments = []
            self.assert_status(self.home.run(*arguments), 0)
            self.assert_only_copies_of(sources)
        print(f"{kills} kills")


if __name__ == "__main__":
    unittest.main()
