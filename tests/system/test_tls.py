"""Only servers that a trusted authority vouches for are believed."""
import unittest

from support.case import MIB, SystemTest
from support.servers import TlsNginx


class TlsTest(SystemTest):
    server_class = TlsNginx

    def test_a_trusted_authority(self):
        source = self.serve("secret.bin", 3 * MIB)
        result = self.home.run(self.server.url("/secret.bin"),
                               environment={"SSL_CERT_FILE": str(self.server.authority.authority)})
        self.assert_status(result, 0)
        self.assert_downloaded("secret.bin", source)

    def test_an_unknown_authority(self):
        self.serve("secret.bin", 3 * MIB)
        before = self.server.requests()
        result = self.home.run(self.server.url("/secret.bin"))
        self.assert_status(result, 1)
        self.assertIn("secret.bin", result.stderr)
        self.assertEqual(self.home.finished(), [])
        self.assertEqual(self.server.requests(), before)

    def test_a_certificate_for_another_name(self):
        self.serve("secret.bin", 3 * MIB)
        address = self.server.url("/secret.bin").replace("localhost", "localhost.localdomain")
        result = self.home.run(address,
                               environment={"SSL_CERT_FILE": str(self.server.authority.authority)})
        self.assert_status(result, 1)
        self.assertEqual(self.home.finished(), [])


if __name__ == "__main__":
    unittest.main()
