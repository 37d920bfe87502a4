"""A disk slower than the network slows the server down and does not fill the memory."""
import os
import unittest

from support.case import MIB, SystemTest
from support.home import SANITIZED, TERMINAL
from support.measure import measure

# In flight for one request, and what the system's own buffers and allocator add to it.
BOUND = 4 * MIB + 6 * MIB


@unittest.skipIf(SANITIZED, "a sanitizer's own memory hides the program's")
@unittest.skipUnless("ORLOP_SLOW_DISK" in os.environ, "the preloaded library is not built")
class SlowDiskTest(SystemTest):
    def peak_memory(self, name, size, **environment):
        """In bytes, over one download."""
        source = self.serve(name, size)
        run = measure([TERMINAL, self.server.url(f"/{name}")], self.home.environment(**environment))
        self.assertEqual(run.status, 0, run.errors)
        self.assert_downloaded(name, source)
        return run.memory

    def test_memory_stays_bounded(self):
        usual = self.peak_memory("tiny.bin", 1)
        slow = self.peak_memory("flood.bin", 96 * MIB, LD_PRELOAD=os.environ["ORLOP_SLOW_DISK"],
                                SLOW_DISK_MICROSECONDS="4000")
        print(f"{usual / MIB:.1f} MiB for one byte, {slow / MIB:.1f} MiB with a slow disk")
        self.assertLess(slow - usual, BOUND)


if __name__ == "__main__":
    unittest.main()
