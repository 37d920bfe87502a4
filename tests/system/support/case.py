"""What the tests share: a home for each test, servers for a whole file of them."""
import unittest

from .home import Home, sha256
from .servers import Nginx, write_random
from .terminal import TerminalSession

MIB = 1 << 20


class SystemTest(unittest.TestCase):
    server_class = Nginx

    @classmethod
    def setUpClass(cls):
        cls.server = cls.server_class()
        cls.addClassCleanup(cls.server.close)

    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.close)

    @classmethod
    def serve(cls, name, size, seed=1):
        """A file on the server, made once. Answers its path there."""
        path = cls.server.content / name
        if not path.exists():
            write_random(path, size, seed)
        return path

    def session(self, *arguments, **options):
        """The program on a terminal of its own."""
        session = TerminalSession(self.home, *arguments, **options)
        self.addCleanup(session.close)
        return session

    def assert_status(self, result, status):
        self.assertEqual(result.returncode, status,
                         f"\n--- output\n{result.stdout}\n--- errors\n{result.stderr}")

    def assert_downloaded(self, name, source):
        path = self.home.downloads / name
        self.assertTrue(path.is_file(), f"{name} is not in {self.home.finished()}")
        self.assertEqual(sha256(path), sha256(source), f"{name} differs from what was served")

    def assert_fetches(self, source, place="/", **options):
        """A run over one file of the server's gets it."""
        self.assert_status(self.home.run(self.server.url(place + source.name), **options), 0)
        self.assert_downloaded(source.name, source)

    def assert_nothing_left(self):
        """No partial data and no queue remain of finished work."""
        self.assertEqual(self.home.leftovers(), [])
        self.assertFalse(self.home.queue_path.exists())
