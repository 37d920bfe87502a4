"""Killed at any moment of a download over several connections, the program goes on with every part
where it stood. ORLOP_LONG_TESTS=1 kills 200 times and more."""
import signal
import time
import unittest
from collections import Counter

from support.case import MIB
from support.home import LONG, wait_until
from support.killing import KillingTest

KILLS = 240 if LONG else 12
CHANNELS = 4
ACCELERATED = ("-Acceleration: Enabled", "1", "-Acceleration: Channels", str(CHANNELS))
APART = ("-Acceleration: Parts In Place", "0")


class Parts:
    """Which bytes of a file that is fetched over several connections are on the disk."""

    def __init__(self, home, source):
        size = source.stat().st_size // CHANNELS
        first = source.stat().st_size - (CHANNELS - 1) * size
        starts = [0] + [first + number * size for number in range(CHANNELS - 1)]
        folder = home.downloads / f"{source.name}.orlop"
        names = [source.name] + [f"{source.name}.orlop-xf-{number}" for number in range(1, CHANNELS)]
        journals = [self.journal(path) for path in folder.glob("*.orlop-xf-*")] if (
            folder / f"{source.name}.orlop-xf-0").exists() else None
        if journals is not None:
            self.spans = [span for span in journals if span]
        else:
            sizes = [self.size(folder / name) for name in names]
            self.spans = [(start, start + size)
                          for start, size in zip(starts, sizes) if size is not None]
        self.are_joined = journals is None and any(
            first < end for start, end in self.spans if start == 0)

    @staticmethod
    def size(path):
        """Nothing: it is not there, or has just been joined or moved."""
        try:
            return path.stat().st_size
        except FileNotFoundError:
            return None

    @staticmethod
    def journal(path):
        """Nothing: no byte has come."""
        try:
            words = path.read_text(encoding="ascii").split()
        except FileNotFoundError:  # It has just become a whole file.
            return None
        return (int(words[2]), int(words[2]) + int(words[3])) if words else None

    def held(self, first=0, last=1 << 62):
        """How many of these bytes."""
        total = 0
        for start, end in sorted(self.spans):
            start, end = max(start, first), min(end, last + 1)
            total += max(0, end - start)
            first = max(first, end)
        return total


class AcceleratedKillTest(KillingTest):
    def setUp(self):
        super().setUp()
        self.source = self.serve("wide.bin", 8 * MIB + 3)
        self.address = self.server.url("/rate/400000/wide.bin")
        self.length = self.source.stat().st_size
        self.kills = Counter()
        self.fetched_again = []
        self.unsaved = 0
        self.most_parts = 0

    def transfer(self, process):
        time.sleep(self.random.uniform(0.01, 0.5))

    def pause(self, process):
        time.sleep(self.random.uniform(0.05, 0.4))
        process.send_signal(signal.SIGINT)
        time.sleep(self.random.uniform(0, 0.03))

    def join(self, process):
        wait_until(lambda: process.poll() is not None or
                   Parts(self.home, self.source).held() == self.length, what="all of the file")
        time.sleep(self.random.uniform(0, 0.03))

    def run_and_kill_while(self, deed, arguments):
        """True: the file had come whole before."""
        before = Parts(self.home, self.source)
        # Else it was killed between the very first bytes and the word of them.
        is_known = any(self.home.downloads.glob("*/Archive.orlopinfo"))
        known = len(self.server.requests())
        process = self.home.start(*ACCELERATED, *self.layout, *arguments)
        deed(process)
        process.kill()
        self.home.result(process)
        wait_until(self.server.is_idle, 5, "the end of what was killed")
        again = 0
        for _, _, _, span, _ in self.server.requests()[known:]:
            first, last = span[6:].split("-") if span != "-" else (0, self.length - 1)
            again += before.held(int(first), int(last))
        if is_known:
            self.fetched_again.append(again)
        else:
            self.unsaved += again
        if process.returncode != -signal.SIGKILL:
            return process.returncode == 0
        after = Parts(self.home, self.source)
        self.most_parts = max(self.most_parts, len(after.spans))
        self.kills["joining" if after.are_joined else
                   "complete" if after.held() == self.length else
                   "in parts" if len(after.spans) > 1 else "start or end"] += 1
        return False

    def test_every_part_goes_on_where_it_stood(self):
        self.kill_many(())

    def test_every_part_in_a_file_of_its_own_goes_on_where_it_stood(self):
        self.kill_many(APART)

    def test_parts_that_were_shared_go_on_where_they_stood(self):
        self.address = self.server.url("/uneven/wide.bin")
        self.kill_many(("-Acceleration: Minimum Fraction Size", "20000"), CHANNELS + 1)

    def start_once_more(self):
        """What a kill at the very end has left of a folder goes at the next start."""
        small = self.serve("small.bin", 1)
        self.assertEqual(self.home.run(self.server.url("/small.bin")).returncode, 0, self.note)
        self.assert_downloaded("small.bin", small)
        (self.home.downloads / "small.bin").unlink()

    def kill_many(self, layout, parts=CHANNELS):
        """Until it has been killed with so many parts as well."""
        self.layout = layout
        deeds = [self.transfer] * 4 + [self.pause, self.join]
        files = 0
        while self.kills.total() < KILLS or self.most_parts < parts:
            self.assertLess(self.kills.total(), 10 * KILLS, f"never {parts} parts")
            files += 1
            arguments = [self.address]
            for _ in range(50):
                if self.run_and_kill_while(self.random.choice(deeds), arguments):
                    break
                if self.assert_queue_is_whole([self.address]):
                    arguments = []
                elif self.home.finished():
                    self.start_once_more()
                    break
            else:  # Killed each time before it came far, by a busy machine.
                self.assertEqual(self.home.run(*ACCELERATED, *layout).returncode, 0, self.note)
            if self.home.queued_addresses():
                self.fail(f"{self.note} this stays: {self.home.queue_path.read_text()}")
            self.assertEqual(list(self.home.downloads.glob("*/Archive.orlopinfo")), [], self.note)
            self.assert_only_copies_of([self.source])
        sent = sum(int(request[4]) for request in self.server.requests())
        print(f"{self.kills.total()} kills ({dict(self.kills)}) in {files} files of {self.length} "
              f"bytes, sent more than once: {sent - files * self.length}, of which on the disk but "
              f"nobody's: {self.unsaved}")
        self.assertEqual([count for count in self.fetched_again if count], [], self.note)


if __name__ == "__main__":
    unittest.main()
