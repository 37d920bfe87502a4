"""Asked to end, the program pauses, saves and ends; the next run goes on."""
import signal
import time
import unittest

from support.case import MIB, SystemTest
from support.home import wait_until


class SignalTest(SystemTest):
    def start_slow_download(self):
        self.source = self.serve("slow.bin", 3 * MIB)
        process = self.home.start(self.server.url("/rate/1000000/slow.bin"))
        # A busy disk may have the bytes before the queue.
        wait_until(lambda: self.home.partial_bytes() > 200_000 and self.home.queue(),
                   what="the first bytes and the queue")
        return process

    def test_the_next_run_goes_on_where_it_stood(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(signal=number.name):
                process = self.start_slow_download()
                began = time.monotonic()
                result = self.home.interrupt(process, number)
                self.assertLess(time.monotonic() - began, 5)
                self.assert_status(result, -number)
                received = self.home.partial_bytes()
                self.assertGreater(received, 200_000)
                record, = self.home.queue()
                self.assertFalse(record["Paused"])
                self.assertEqual(record["URL"], self.server.url("/rate/1000000/slow.bin"))

                self.assert_status(self.home.run(), 0)
                self.assert_downloaded("slow.bin", self.source)
                self.assert_nothing_left()
                last = self.server.requests()[-1]
                self.assertTrue(last[3].startswith("bytes="), f"not resumed: {last}")
                self.assertGreaterEqual(int(last[3][6:].split("-")[0]), 200_000)
                (self.home.downloads / "slow.bin").unlink()

    def test_a_second_interrupt_ends_at_once_and_loses_nothing(self):
        process = self.start_slow_download()
        process.send_signal(signal.SIGINT)
        self.assert_status(self.home.interrupt(process), -signal.SIGINT)
        self.assertEqual(len(self.home.queue()), 1)
        self.assert_status(self.home.run(), 0)
        self.assert_downloaded("slow.bin", self.source)

    def test_a_hang_up_that_was_ignored_stays_ignored(self):
        self.source = self.serve("slow.bin", 3 * MIB)
        process = self.home.start(
            self.server.url("/rate/3000000/slow.bin"),
            preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        wait_until(lambda: self.home.partial_bytes() > 0, what="the first bytes")
        self.assert_status(self.home.interrupt(process, signal.SIGHUP), 0)
        self.assert_downloaded("slow.bin", self.source)


if __name__ == "__main__":
    unittest.main()
