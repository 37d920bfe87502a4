"""Killed at any moment, the program loses nothing: the queue on disk is always whole, and the
file ends byte for byte right. ORLOP_LONG_TESTS=1 kills 200 times and more."""
import os
import unittest

from support.case import MIB
from support.home import LONG, SANITIZED, sha256, wait_until
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


@unittest.skipIf(SANITIZED, "a sanitizer wants to be loaded first")
@unittest.skipUnless("ORLOP_SLOW_DISK" in os.environ, "the preloaded library is not built")
class KilledAheadOfTheDiskTest(KillingTest):
    """What the program has done counts, though the disk has not yet been synced."""

    def queue_only(self, address, **more):
        """The queue's file knows it, and nothing else does."""
        self.home.run("-Auto-Start", "0", address)
        [record] = self.home.queue()
        self.assertNotIn("Response URL", record)
        self.home.write_queue([record | more | {"Paused": False}])

    def start(self, *arguments, **environment):
        return self.home.start(*arguments, environment={
            "LD_PRELOAD": os.environ["ORLOP_SLOW_DISK"], **environment})

    def lose_first_bytes(self, *settings, folder="", **more):
        # Slow enough that four connections are far from the end when the kill comes.
        source = self.serve("early.bin", 4 * MIB)
        address = self.server.url("/rate/600000/early.bin")
        self.queue_only(address, **more)
        folder = self.home.downloads / folder
        process = self.start(*settings, SLOW_SYNC_MICROSECONDS="30000000")
        # Beginning with a dot: metadata on its way to its name, gone the next moment.
        wait_until(lambda: sum(path.stat().st_size
                               for path in folder.glob("*.orlop/[!.]*")) > MIB,
                   what="the first bytes")
        self.kill(process)
        wait_until(self.server.is_idle, what="the end of what was killed")
        known = len(self.server.requests())
        self.assert_status(self.home.run(*settings), 0)
        self.assertEqual({request[2] for request in self.server.requests()[known:]}, {"206"})
        self.assertEqual(sha256(folder / "early.bin"), sha256(source))
        self.assert_nothing_left()

    def test_first_bytes_are_not_lost(self):
        self.lose_first_bytes()

    def test_first_bytes_of_several_parts_are_not_lost(self):
        self.lose_first_bytes("-Acceleration: Enabled", "1")

    def test_first_bytes_in_a_chosen_folder_are_not_lost(self):
        self.lose_first_bytes(folder="chosen",
                              **{"Download Folder": str(self.home.downloads / "chosen")})

    def finish_and_lose(self, size, *settings):
        name = f"done-{size}.bin"
        source = self.serve(name, size)
        address = self.server.url("/" + name)
        self.queue_only(address)
        process = self.start(*settings, SLOW_SYNC_MICROSECONDS="500000")
        wait_until(self.home.finished, what="the file")
        self.kill(process)
        known = len(self.server.requests())
        self.assert_status(self.home.run(), 0)
        self.assertEqual(self.server.requests()[known:], [])
        self.assertEqual(self.home.finished(), [name])
        self.assert_downloaded(name, source)
        self.assert_nothing_left()

    def test_a_finished_file_is_not_fetched_again(self):
        self.finish_and_lose(3 * MIB)

    def test_a_file_that_was_joined_is_not_fetched_again(self):
        self.finish_and_lose(3 * MIB + 1, "-Acceleration: Enabled", "1")

    def test_a_file_that_came_at_once_is_not_fetched_again(self):
        self.finish_and_lose(5_000)


if __name__ == "__main__":
    unittest.main()
