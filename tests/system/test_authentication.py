"""Names and passwords: who is asked, who gets them, and where they never turn up."""
import os
import signal
import time
import unittest

from support import ntlm
from support.asking import AskingTest
from support.guarded import NAME, PASSWORD, REALM, GuardedApache, GuardedSquid, Lighttpd
from support.home import wait_until
from support.keyring import Keyring
from support.servers import Nginx, TlsNginx, write_random

SIZE = 200_000


class GuardedTest(AskingTest):
    server_class = GuardedApache

    def log_in(self, session, password=PASSWORD, name=NAME, **options):
        super().log_in(session, password, name, **options)


class QuestionTest(GuardedTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.lighttpd = Lighttpd()
        cls.addClassCleanup(cls.lighttpd.close)

    def test_schemes(self):
        for server, path, promise in ((self.server, "/basic/a.bin", "as plain text"),
                                      (self.server, "/digest/b.bin", "securely"),
                                      (self.lighttpd, "/sha256/c.bin", "securely")):
            with self.subTest(path):
                name = path.rpartition("/")[2]
                source = self.serve(name, SIZE)
                (self.lighttpd.content / name).write_bytes(source.read_bytes())
                session = self.session(server.url(path))
                session.wait_for_text(f'You need to log in before downloading "{name}" from '
                                      f'"{REALM}".')
                session.wait_for_text(f"submitted {promise}")
                self.log_in(session)
                self.assertEqual(session.finish(), 0)
                self.assert_downloaded(name, source)

    def test_one_answer_serves_all_and_later_ones_need_none(self):
        """Also where the address names no port, which the server plays the proxy for."""
        names = [f"many-{number}.bin" for number in range(6)]
        for name in names:
            self.serve(name, SIZE)
        for server, environment in ((self.server.url(""), {}),
                                    ("http://club.invalid", {"http_proxy": self.server.url("")})):
            with self.subTest(server):
                before = len(self.server.statuses("/many-"))
                session = self.session("-Number Of Concurrent Downloads", "3",
                                       "-Number Of Concurrent Downloads Per Host", "3",
                                       *(f"{server}/digest/{name}" for name in names),
                                       environment=environment)
                self.log_in(session)
                self.assertEqual(session.finish(), 0)
                self.assertEqual(session.raw.count(b"Name:"), 1)
                for name in names:
                    self.assert_downloaded(name, self.server.content / name)
                    (self.home.downloads / name).unlink()
                statuses = self.server.statuses("/many-")[before:]
                self.assertLessEqual(statuses.count("401"), 3)

    def test_a_stored_challenge_costs_no_round_trip(self):
        names = [f"next-{number}.bin" for number in range(4)]
        for server, folder in ((self.server, "basic"), (self.server, "digest"),
                               (self.lighttpd, "sha256")):
            with self.subTest(folder):
                for name in names:
                    write_random(server.content / name, 1000)
                session = self.session("-Number Of Concurrent Downloads", "1",
                                       *(server.url(f"/{folder}/{name}") for name in names))
                self.log_in(session)
                self.assertEqual(session.finish(), 0)
                # One of the servers writes its log when it has time.
                statuses = wait_until(lambda: server.statuses(f"/{folder}/next-")[4:] and
                                      server.statuses(f"/{folder}/next-"), 20, "the log")
                self.assertEqual(statuses, ["401"] + 4 * ["200"])
                for name in names:
                    (self.home.downloads / name).unlink()

    def test_a_nonce_that_grows_old_asks_nobody(self):
        paths = [f"/stale/old-{number}.bin" for number in range(2)]
        for path in paths:
            self.serve(path.rpartition("/")[2], 600_000)
        session = self.session("-Number Of Concurrent Downloads", "1", "-Throttle: Enabled", "YES",
                               "-Throttle: Limit", "300000", *map(self.server.url, paths))
        self.log_in(session)
        self.assertEqual(session.finish(), 0)
        self.assertEqual(session.raw.count(b"Password:"), 1)
        self.assertEqual(len(self.home.finished()), 2)
        # On a machine with much to do a nonce may be old before it is used for the first time.
        statuses = self.server.statuses("/old-")
        self.assertEqual(statuses.count("200"), 2, statuses)
        self.assertGreaterEqual(statuses.count("401"), 2, statuses)

    def test_nobody_to_ask(self):
        self.serve("lonely.bin", SIZE)
        result = self.home.run(self.server.url("/basic/lonely.bin"), start_new_session=True)
        self.assert_status(result, 1)
        self.assertIn("A name and a password are needed.", result.stderr)
        self.assertEqual(self.home.finished(), [])

    def test_stopped_and_continued_while_asking(self):
        source = self.serve("stopped.bin", SIZE)
        session = self.session(self.server.url("/basic/stopped.bin"))
        session.wait_for_text("Name:")
        session.type(NAME + "\n")
        session.wait_for_text("Password:")
        self.assertFalse(session.echoes())
        session.type("\x1a")
        self.assertTrue(os.WIFSTOPPED(os.waitpid(session.process.pid, os.WUNTRACED)[1]))
        self.assertTrue(session.echoes(), "the shell was left without echo")
        session.process.send_signal(signal.SIGCONT)
        session.wait_for(lambda lines: not session.echoes())
        session.type(PASSWORD + "\n")
        self.assertEqual(session.finish(), 0)
        self.assert_downloaded("stopped.bin", source)
        self.assertNotIn(PASSWORD.encode(), session.raw)

    def test_interrupted_while_asking(self):
        self.serve("halted.bin", SIZE)
        session = self.session(self.server.url("/basic/halted.bin"))
        session.wait_for_text("Name:")
        session.type(NAME + "\n")
        session.wait_for_text("Password:")
        session.type("\x03")
        self.assertLess(session.finish(), 0)
        self.assertTrue(session.echoes(), "the terminal was left without echo")
        self.assertEqual(len(self.home.queue()), 1)


class KeepingTest(GuardedTest):
    def setUp(self):
        super().setUp()
        self.keyring = Keyring(self.home)
        self.addCleanup(self.keyring.close)

    def test_the_desktops_store_remembers(self):
        path = "/digest/kept.bin"
        self.serve("kept.bin", SIZE)
        # A refusal to keep it, a mistake that is not kept, and then for good.
        for arguments, passwords in ((("-Store Passwords In Keychain", "NO"), [PASSWORD]),
                                     ((), ["mistake", PASSWORD]), ((), [])):
            with self.subTest(arguments=arguments, asked=len(passwords)):
                session = self.session(*arguments, self.server.url(path),
                                       environment=self.keyring.environment)
                for times, password in enumerate(passwords, 1):
                    self.log_in(session, password, times=times)
                self.assertEqual(session.finish(), 0)
                self.assertEqual(session.raw.count(b"Password:"), len(passwords))
                (self.home.downloads / "kept.bin").unlink()
        for file in self.home.root.rglob("*"):
            if file.is_file():
                self.assertNotIn(PASSWORD.encode(), file.read_bytes(), file)


    def test_a_store_that_does_not_answer_holds_up_a_login_for_five_seconds(self):
        self.serve("stuck.bin", SIZE)
        self.keyring.freeze()
        begun = time.monotonic()
        result = self.home.run(self.server.url("/basic/stuck.bin"), start_new_session=True,
                               environment=self.keyring.environment)
        self.assert_status(result, 1)
        self.assertIn("A name and a password are needed.", result.stderr)
        self.assertLess(time.monotonic() - begun, 5.5)


class ProxyTest(GuardedTest):
    server_class = Nginx

    def fetch(self, kind, proxy, server, names, passwords):
        environment = {"all_proxy": proxy.address}
        if server.scheme == "https":
            environment["SSL_CERT_FILE"] = str(server.authority.authority)
        session = self.session("-Number Of Concurrent Downloads", "1",
                               *(server.url(f"/{name}") for name in names),
                               environment=environment)
        who = {"name": ntlm.NAME, "domain": ntlm.DOMAIN} if kind == "ntlm" else {"name": NAME}
        for times, password in enumerate(passwords, 1):
            session.wait_for_text("Proxy: " + proxy.place)
            self.log_in(session, password, times=times, **who)
        self.assertEqual(session.finish(), 0)
        self.assertEqual(session.raw.count(b"Password:"), len(passwords))

    def test_schemes(self):
        secure = TlsNginx()
        self.addCleanup(secure.close)
        names = [f"through-{number}.bin" for number in range(3)]
        for name in names:
            self.serve(name, SIZE)
            (secure.content / name).write_bytes((self.server.content / name).read_bytes())
        passwords = ["mistake", PASSWORD]
        for kind in ("basic", "digest", "ntlm"):
            for server in (self.server, secure):
                with self.subTest(kind, scheme=server.scheme):
                    proxy = GuardedSquid(kind)
                    self.addCleanup(proxy.close)
                    self.fetch(kind, proxy, server, names, passwords)
                    for name in names:
                        self.assert_downloaded(name, self.server.content / name)
                        (self.home.downloads / name).unlink()
                    # The first meets a challenge, and so does the mistake. NTLM answers in two
                    # rounds, but once for a connection.
                    statuses = [status for status, _ in proxy.exchanges()]
                    self.assertEqual(statuses.count("407"), 4 if kind == "ntlm" else 2, statuses)
                    self.assertEqual(server.proxy_passwords(), {"-"})
                    # A tunnel is logged when it ends.
                    let_in = wait_until(lambda: {port for status, port in proxy.exchanges()
                                                 if status == "200"}, 20, "the proxy's log")
                    self.assertEqual(len(let_in), 1)


class SecrecyTest(GuardedTest):
    def attributes(self, path):
        return [os.getxattr(path, name) for name in os.listxattr(path)]

    def assert_no_password(self, text, where):
        self.assertNotIn(PASSWORD.encode(), text, where)

    def test_a_password_turns_up_nowhere(self):
        self.serve("quiet.bin", 2_000_000)
        session = self.session("-DQDebugLog", "YES", "-Throttle: Enabled", "YES",
                               "-Throttle: Limit", "1000000", self.server.url("/basic/quiet.bin"))
        self.log_in(session)
        session.wait_for_text("%")
        process = session.process.pid
        for name in ("cmdline", "environ"):
            with open(f"/proc/{process}/{name}", "rb") as file:
                self.assert_no_password(file.read(), name)
        self.assert_folders_are_clean()
        self.assertEqual(session.finish(), 0)
        self.assertEqual(self.home.finished(), ["quiet.bin"])
        self.assert_folders_are_clean()
        self.assert_no_password(session.raw, "the terminal")

    def test_nor_does_that_of_an_address(self):
        self.serve("addressed.bin", SIZE)
        address = self.server.url("/basic/addressed.bin").replace("://", f"://m%C3%BCller:{PASSWORD}@")
        result = self.home.run("-DQDebugLog", "YES", "-Number Of History Items", "0", address)
        self.assert_status(result, 0)
        self.assert_folders_are_clean()
        self.assert_no_password((result.stdout + result.stderr).encode(), "the output")

    def assert_folders_are_clean(self):
        searched = 0
        for path in self.home.root.rglob("*"):
            for value in self.attributes(path):
                self.assert_no_password(value, path)
            if path.is_file() and path.suffix != ".bin":
                self.assert_no_password(path.read_bytes(), path)
                searched += 1
        self.assertGreater(searched, 2)


if __name__ == "__main__":
    unittest.main()
