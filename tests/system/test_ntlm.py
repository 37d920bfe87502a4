"""NTLM, which belongs to a connection, against a server that asks a domain controller."""
import unittest

from support import ntlm
from support.asking import AskingTest
from support.guarded import PASSWORD, NtlmOrigin

SIZE = 200_000
# A server's user writes the domain before the name.
WHO = f"{ntlm.DOMAIN}\\{ntlm.NAME}"


class NtlmTest(AskingTest):
    server_class = NtlmOrigin

    def ask(self, *paths, answers=()):
        """A run over files on the server, one after the other; the answers to its questions."""
        for path in paths:
            self.serve(path.rpartition("/")[2], SIZE)
        session = self.session("-Number Of Concurrent Downloads", "1",
                               *map(self.server.url, paths))
        for times, (name, password) in enumerate(answers, 1):
            self.log_in(session, password, name, domain="", times=times)
        return session

    def test_one_handshake_serves_all_files(self):
        names = [f"file-{number}.bin" for number in range(3)]
        session = self.ask(*(f"/{name}" for name in names), answers=[(WHO, PASSWORD)])
        self.assertEqual(session.finish(), 0)
        self.assertIn(b"You need to log in before downloading \"file-0.bin\".", session.raw)
        for name in names:
            self.assert_downloaded(name, self.server.content / name)
        first, *others = [self.server.exchanges(name) for name in names]
        self.assertEqual([row[:2] for row in first],
                         [("401", "-"), ("401", "NTLM1"), ("200", "NTLM3")])
        for rows in others:
            self.assertEqual(rows, [("200", "-", first[-1][2])])

    def test_a_wrong_password_is_asked_about_again(self):
        for path in "/wrong.bin", "/late-domain.bin":
            wrong = (WHO, "mistake") if path == "/wrong.bin" else (ntlm.NAME, PASSWORD)
            with self.subTest(path):
                session = self.ask(path, answers=[wrong, (WHO, PASSWORD)])
                self.assertEqual(session.finish(), 0)
                self.assert_downloaded(path[1:], self.server.content / path[1:])
                self.assertLessEqual(len(self.server.exchanges(path[1:])), 6)

    def test_giving_up(self):
        session = self.ask("/hopeless.bin", answers=[(WHO, "mistake"), (WHO, "another")])
        session.wait_for(lambda lines: sum("Name:" in line for line in lines) == 3)
        session.type("\n")
        self.assertEqual(session.finish(), 1)
        self.assertIn(b"A name and a password are needed.", session.raw)
        self.assertEqual(self.home.finished(), [])
        self.assertLessEqual(len(self.server.exchanges("hopeless.bin")), 6)

    def test_a_server_that_forbids(self):
        session = self.ask("/forbidden/locked.bin", answers=[(WHO, "mistake")])
        self.assertEqual(session.finish(), 1)
        self.assertEqual(session.raw.count(b"Password:"), 1)

    def test_a_server_that_closes_the_connection_in_the_handshake(self):
        for folder in "half", "late":
            with self.subTest(folder):
                session = self.ask(f"/{folder}/{folder}.bin", answers=[(WHO, PASSWORD)])
                self.assertEqual(session.finish(), 1)
                self.assertEqual(self.home.finished(), [])
                self.assertLessEqual(len(self.server.exchanges(f"{folder}.bin")), 8)


if __name__ == "__main__":
    unittest.main()
