"""Runs that are killed, and what must hold on the disk whenever that happens."""
import random
import shutil
import time

from .case import SystemTest
from .home import sha256


class KillingTest(SystemTest):
    def setUp(self):
        super().setUp()
        seed = random.randrange(1 << 30)
        self.random = random.Random(seed)
        self.note = f"with seed {seed}"

    def run_and_kill(self, longest, *arguments):
        """True: it had ended by itself before."""
        process = self.home.start(*arguments)
        time.sleep(self.random.uniform(0.01, longest))
        return self.kill(process)

    def kill(self, process):
        """True: it had ended by itself before."""
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
