"""What has come of a file is kept until the server shows that it is not that file's."""
import time
import unittest

from support.case import MIB, SystemTest
from support.home import sha256, wait_until
from support.hostile import Speaker
from support.servers import Nginx, write_random

LOGIN = (b"HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 20\r\n\r\n"
         b"<html>Login.</html>\n")


class PartialDataTest(SystemTest):
    server_class = Speaker

    def setUp(self):
        super().setUp()
        self.whole = write_random(self.home.root / "whole", 4_000_000).read_bytes()

    def begin(self):
        """Half of the file comes, and then the connection ends."""
        self.server.answers["/file.bin"] = lambda: (
            b"HTTP/1.1 200 OK\r\nETag: \"1\"\r\nAccept-Ranges: bytes\r\n"
            b"Content-Length: 4000000\r\n\r\n", self.whole[:2_000_000])
        self.assert_status(self.home.run(self.server.url("/file.bin")), 1)
        self.assertEqual(self.home.partial_bytes(), 2_000_000)

    def finish(self):
        self.server.answers["/file.bin"] = lambda: (
            b"HTTP/1.1 206 Partial Content\r\nETag: \"1\"\r\nContent-Length: 2000000\r\n"
            b"Content-Range: bytes 2000000-3999999/4000000\r\n\r\n", self.whole[2_000_000:])
        self.assert_status(self.home.run(self.server.url("/file.bin")), 0)
        self.assertIn("Range: bytes=2000000-\r\n", self.server.heads[-1])
        self.assertEqual((self.home.downloads / "file.bin").read_bytes(), self.whole)
        self.assert_nothing_left()

    def test_a_network_that_asks_for_a_login(self):
        self.begin()
        self.server.answers["/file.bin"] = lambda: (LOGIN,)
        result = self.home.run(self.server.url("/file.bin"))
        self.assert_status(result, 1)
        self.assertIn("Something else came in place of the file. Does the network ask for a login?",
                      result.stderr)
        self.assertEqual(self.home.partial_bytes(), 2_000_000)
        self.finish()

    def test_a_refusal_says_what_is_kept(self):
        self.begin()
        for status in 401, 403, 500:
            self.server.answers["/file.bin"] = lambda: (
                b"HTTP/1.1 %d No\r\nContent-Length: 0\r\n\r\n" % status,)
            result = self.home.run(self.server.url("/file.bin"))
            self.assert_status(result, 1)
            self.assertIn(f"Aborted — {status} — 2 of 4 MB kept", result.stderr)
            self.assertEqual(self.home.partial_bytes(), 2_000_000)
        self.finish()


class SignedLinkTest(SystemTest):
    """A link that is good for a while, and whose origin redirects to a fresh one."""

    def test_is_renewed_and_no_byte_comes_twice(self):
        file = self.serve("signed.bin", 2 * MIB)
        origin = Speaker()
        self.addCleanup(origin.close)
        origin.answers["/signed.bin"] = lambda: (
            b"HTTP/1.1 302 Found\r\nContent-Length: 0\r\nLocation: %s\r\n\r\n"
            % self.server.signed("signed.bin", 4).encode(),)
        program = self.home.start(origin.url("/signed.bin"))
        wait_until(lambda: self.home.partial_bytes() >= MIB // 2, what="a part of the file")
        self.home.interrupt(program)
        kept = self.home.partial_bytes()
        self.assertLess(kept, 2 * MIB)
        # Until the link has expired: its server reads the clock of the machine.
        time.sleep(5)
        self.assert_status(self.home.run(origin.url("/signed.bin")), 0)
        self.assertEqual(sha256(self.home.downloads / "signed.bin"), sha256(file))
        self.assert_nothing_left()
        requests = [request[2:] for request in self.server.requests() if "/signed/" in request[1]]
        self.assertEqual([status for status, *_ in requests], ["200", "410", "206"])
        first, _, last = requests
        self.assertEqual(last, ("206", f"bytes={kept}-", str(2 * MIB - kept)))
        # What was on its way when the program ended.
        self.assertLessEqual(int(first[2]) - kept, 400 << 10)
        self.assertEqual(len(origin.heads), 2)


if __name__ == "__main__":
    unittest.main()
