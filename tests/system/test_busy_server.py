"""Servers that have no place for as much as is asked of them."""
import re
import unittest

from support.case import MIB, SystemTest
from support.desktop import Desktop
from support.hostile import Speaker
from support.home import PROGRAMS, wait_until

PROGRAM = PROGRAMS / "orlop"
BUSY = b"HTTP/1.1 503 Busy\r\nRetry-After: %d\r\nContent-Length: 0\r\n\r\n"


class LimitedServerTest(SystemTest):
    def test_six_files(self):
        """With the settings that a new user has."""
        for connections in 1, 2, 3:
            with self.subTest(connections=connections):
                files = [self.serve(f"limited-{connections}-{number}.bin", 600_000, number)
                         for number in range(6)]
                result = self.home.run(*(self.server.url(f"/limit/{connections}/{file.name}")
                                         for file in files))
                self.assert_status(result, 0)
                for file in files:
                    self.assert_downloaded(file.name, file)
                self.assert_nothing_left()
                statuses = self.server.statuses(f"/limit/{connections}/limited")
                self.assertEqual(statuses.count("200"), 6)
                if connections == 1:
                    self.assertIn("503", statuses)
                # It is not asked again and again: what it serves is known after the first refusals.
                self.assertLessEqual(len(statuses), 6 + 3, statuses)

    def test_one_accelerated_file(self):
        file = self.serve("split.bin", 3 * MIB)
        for connections in 1, 2, 3:
            with self.subTest(connections=connections):
                result = self.home.run("-Acceleration: Enabled", "YES",
                                       self.server.url(f"/limit/{connections}/split.bin"))
                self.assert_status(result, 0)
                self.assert_downloaded("split.bin", file)
                self.assert_nothing_left()
                self.assertIn("503", self.server.statuses(f"/limit/{connections}/split"))
                sent = sum(int(request[4]) for request in self.server.requests()
                           if f"/limit/{connections}/split" in request[1] and
                           request[2] in ("200", "206"))
                # The first answer, a whole one, is cut off where the second part begins; what is
                # on its way by then is lost.
                self.assertLess(sent, 4 * MIB)
                (self.home.downloads / "split.bin").unlink()


class BusyServerTest(SystemTest):
    server_class = Speaker

    def setUp(self):
        super().setUp()
        self.refusals = 1
        self.server.answers = {"/file": self.answer, "/other": lambda: (self.served(b"other"),)}
        self.server.heads.clear()

    @staticmethod
    def served(body):
        return b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\n\r\n" % len(body) + body

    def answer(self):
        self.refusals -= 1
        return (BUSY % 3 if self.refusals >= 0 else self.served(b"file"),)

    def test_on_the_terminal(self):
        result = self.home.run(self.server.url("/file"))
        self.assert_status(result, 0)
        self.assertIn("file - Waiting for 127.0.0.1: 0:03", result.stdout)
        self.assertEqual(self.home.finished(), ["file"])

    def test_counts_down_on_a_screen(self):
        session = self.session(self.server.url("/file"))
        for left in "0:03", "0:02", "0:01":
            session.wait_for_text(f"Waiting for 127.0.0.1: {left}")
        self.assertEqual(session.finish(), 0)

    def test_is_given_up_with_its_status(self):
        self.refusals = 99
        result = self.home.run("-Server Busy: Retries", 1, self.server.url("/file"))
        self.assert_status(result, 1)
        self.assertIn("503", result.stderr)
        self.assertEqual(len(self.server.heads), 2)

    def test_survives_a_quit(self):
        self.refusals = 99
        program = self.home.start(self.server.url("/file"))
        wait_until(lambda: self.server.heads, what="a request")
        wait_until(lambda: "/file" in str(self.home.queued_addresses()), what="the queue's file")
        self.home.interrupt(program)
        self.assertEqual(self.home.queued_addresses(), [self.server.url("/file")])
        self.refusals = 0
        self.assert_status(self.home.run(), 0)
        self.assertEqual(self.home.finished(), ["file"])

    @unittest.skipUnless(PROGRAM.exists(), "built without the desktop program")
    def test_in_the_window(self):
        self.server.answers["/file"] = lambda: (
            BUSY % 30 if len(self.server.heads) < 2 else self.served(b"file"),)
        desktop = Desktop("Orlop")
        self.addCleanup(desktop.close)
        program = self.home.start(self.server.url("/file"), program=PROGRAM,
                                  environment=desktop.environment)

        def left():
            row = next((node for node in desktop.nodes() if node.role == "list item"), None)
            found = row and re.search(r"Waiting for 127\.0\.0\.1: 0:(\d\d)$", row.name)
            return int(found[1]) if found else 0

        first = wait_until(left, what="the wait in the row")
        desktop.screenshot("waiting-for-a-server")
        wait_until(lambda: 0 < left() < first, what="the next second")
        program.terminate()
        program.wait(30)


if __name__ == "__main__":
    unittest.main()
