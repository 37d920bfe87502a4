"""Killed at any moment, the program loses nothing: the queue on disk is always whole, and the
file ends byte for byte right. ORLOP_LONG_TESTS=1 kills 200 times and more."""
import unittest

from support.case import MIB
from support.home import LONG
from support.killing import KillingTest

KILLS_IN_TRANSFERS = 160 if LONG else 7
KILLS_IN_QUEUE_WRITES = 60 if LONG else 4


class KillTest(KillingTest):
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
