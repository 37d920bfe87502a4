"""What the programs remember of finished downloads."""
import plistlib
import unittest

from support.case import SystemTest
from support.home import wait_until


class HistoryTest(SystemTest):
    def setUp(self):
        super().setUp()
        self.history_path = self.home.support / "History.plist"

    def addresses(self):
        if not self.history_path.exists():
            return []
        return [entry["Original URL"] for entry in plistlib.loads(self.history_path.read_bytes())]

    def download(self, name, *settings):
        self.serve(name, 1000)
        self.assert_status(self.home.run(*settings, self.server.url("/" + name)), 0)
        return self.server.url("/" + name)

    def test_runs_add_to_one_history(self):
        first = self.download("first.bin")
        second = self.download("second.bin")
        self.download("private.bin", "-Private Downloading", "YES")
        self.assertEqual(self.addresses(), [first, second])
        self.assertEqual(self.history_path.stat().st_mode & 0o777, 0o600)
        third = self.download("third.bin", "-Number Of History Items", "2")
        self.assertEqual(self.addresses(), [second, third])
        self.download("fourth.bin", "-Clear History On Quit", "YES")
        self.assertFalse(self.history_path.exists())

    def test_a_kill_loses_no_more_than_the_last_seconds(self):
        self.serve("first.bin", 1000)
        self.serve("slow.bin", 200_000)
        first = self.server.url("/first.bin")
        program = self.home.start(first, self.server.url("/rate/1000/slow.bin"))
        wait_until(lambda: self.addresses() == [first], what="the history on disk")
        program.kill()
        program.wait()
        self.assertEqual(self.addresses(), [first])


if __name__ == "__main__":
    unittest.main()
