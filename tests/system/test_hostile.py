"""Answers that are wrong on purpose end a download soon, with an error and in bounds."""
import gzip
import itertools
import json
import unittest

from support.case import MIB, SystemTest
from support.home import SANITIZED, TERMINAL
from support.hostile import Speaker
from support.measure import measure

OK = b"HTTP/1.1 200 OK\r\n"
CHUNKED = OK + b"Transfer-Encoding: chunked\r\n\r\n"
KIB = 1024


def once(*pieces):
    return lambda: pieces


class HostileTest(SystemTest):
    server_class = Speaker

    def measure(self, *arguments):
        return measure([TERMINAL, *arguments], self.home.environment(), deadline=60)

    def test_answers_that_cannot_be(self):
        table = {
            "chunk-overflow": once(CHUNKED, b"8000000000000000\r\nxy"),
            "chunk-size-endless": lambda: itertools.chain([CHUNKED], itertools.repeat(b"0" * KIB)),
            "length-overflow": once(OK, b"Content-Length: 18446744073709551618\r\n\r\nxy"),
            "length-largest": once(OK, b"Content-Length: 9223372036854775807\r\n\r\nxy"),
            "head-endless": lambda: itertools.chain(
                [OK], (b"X-%d: " % i + b"x" * KIB + b"\r\n" for i in itertools.count())),
            "trailers-endless": lambda: itertools.chain(
                [CHUNKED, b"2\r\nxy\r\n0\r\n"],
                (b"X-%d: " % i + b"x" * KIB + b"\r\n" for i in itertools.count())),
            "extension-endless": lambda: itertools.chain([CHUNKED, b"2;"],
                                                         itertools.repeat(b"x" * KIB)),
            "extensions-endless": lambda: itertools.chain(
                [CHUNKED], itertools.repeat(b"1;" + b"x" * 60 * KIB + b"\r\nx\r\n")),
            "error-endless": lambda: itertools.chain(
                [b"HTTP/1.1 404 Not Found\r\n\r\n"], itertools.repeat(b"x" * KIB)),
            "line-endless": lambda: itertools.chain([OK, b"X: "], itertools.repeat(b"x" * KIB)),
            "interim-endless": lambda: itertools.repeat(b"HTTP/1.1 103 Early Hints\r\n\r\n"),
        }
        self.server.answers = {f"/{name}": answer for name, answer in table.items()}
        for name in table:
            with self.subTest(name=name):
                result = self.measure("-Request Timeout Interval", "5", self.server.url(f"/{name}"))
                self.assertEqual(result.status, 1, result.errors)
                self.assertLess(result.seconds, 20)
                if not SANITIZED:
                    self.assertLess(result.memory, 64 * MIB)
                self.assertEqual(self.home.finished(), [])
                self.assertNotIn("memory", result.errors)

    def test_a_body_of_tiny_chunks_is_one(self):
        pieces = [CHUNKED, *[b"1\r\nx\r\n" * 10_000] * 700, b"0\r\n\r\n"]
        self.server.answers = {"/tiny": once(*pieces)}
        result = self.measure(self.server.url("/tiny"))
        self.assertEqual(result.status, 0, result.errors)
        self.assertEqual((self.home.downloads / "tiny").read_bytes(), b"x" * 7_000_000)

    def test_cookies_by_the_thousand(self):
        """A head full of them costs no time to speak of, and few go back."""
        lines = b"".join(b"Set-Cookie: c%d=%d\r\n" % (i, i) for i in range(12000))
        body = b"Content-Length: 2\r\nConnection: close\r\n\r\nxy"
        self.server.answers = {"/jar": once(OK + lines + body), "/after": once(OK + body)}
        result = self.measure("-Number Of Concurrent Downloads", "1", self.server.url("/jar"),
                              self.server.url("/after"))
        self.assertEqual(result.status, 0, result.errors)
        self.assertEqual(self.home.finished(), ["after", "jar"])
        self.assertLess(result.cpu, 5)
        sent = [head for head in self.server.heads if head.startswith("GET /after")][0]
        line = [line for line in sent.split("\r\n") if line.startswith("Cookie: ")][0]
        self.assertEqual(line.count("; ") + 1, 180)

    def test_a_page_that_is_a_bomb(self):
        """Read for its links, it is given up long before all of it has been inflated; then it is
        taken for the file itself, as it comes."""
        bomb = gzip.compress(bytes(512 * MIB), 9)
        head = (OK + b"Content-Type: text/html\r\nContent-Encoding: gzip\r\n"
                b"Content-Length: %d\r\n\r\n" % len(bomb))
        self.server.answers = {"/page/": once(head, bomb)}
        rules = json.dumps({"127.0.0.1": {"Query Cascade": ['href="([^"]+)"']}})
        result = self.measure("-Download Page Rules", rules, self.server.url("/page/"))
        self.assertEqual(result.status, 0, result.errors)
        asked = [head for head in self.server.heads if head.startswith("GET /page/")]
        self.assertEqual(["Accept-Encoding: gzip" in head for head in asked], [True, False])
        self.assertEqual((self.home.downloads / "page.html").read_bytes(), bomb)
        if not SANITIZED:
            self.assertLess(result.memory, 96 * MIB)


if __name__ == "__main__":
    unittest.main()
