"""How many connections a server sees for many files."""
import unittest

from support.case import SystemTest
from support.home import wait_until
from support.proxies import Squid
from support.servers import TlsNginx


class KeptConnectionsTest(SystemTest):
    def fetch(self, server, count, at_once, **environment):
        """Answers how many connections `count` small files took."""
        for number in range(count):
            (server.content / f"small-{number:04}.bin").write_bytes(b"%d" % number * 100)
        before = len(server.connections())
        addresses = self.home.root / "addresses.txt"
        addresses.write_text("".join(server.url(f"/small-{number:04}.bin\n")
                                     for number in range(count)))
        result = self.home.run("-Number Of Concurrent Downloads", at_once,
                               "-Number Of Concurrent Downloads Per Host", 0, addresses,
                               environment=environment)
        self.assert_status(result, 0)
        self.assertEqual(len(self.home.finished()), count)
        wait_until(lambda: len(server.connections()) == before + count, 5, "every request's line")
        return len(set(server.connections()[before:]))

    def test_as_many_as_transfers_at_once(self):
        self.assertEqual(self.fetch(self.server, 1000, 9), 9)

    def test_over_tls_and_through_a_proxy(self):
        secure, squid = TlsNginx(), Squid()
        self.addCleanup(secure.close)
        self.addCleanup(squid.close)
        trust = {"SSL_CERT_FILE": str(secure.authority.authority)}
        self.assertEqual(self.fetch(secure, 60, 3, **trust), 3)
        for path in self.home.downloads.iterdir():
            path.unlink()
        self.assertEqual(self.fetch(secure, 60, 3, https_proxy=squid.address, **trust), 3)
        wait_until(lambda: len(squid.asked()) == 3, 5, "each tunnel's line")


if __name__ == "__main__":
    unittest.main()
