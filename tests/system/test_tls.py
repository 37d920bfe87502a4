"""Only servers that a trusted authority vouches for are believed."""
import unittest

from support.case import MIB, SystemTest
from support.servers import TlsNginx


class TlsTest(SystemTest):
    server_class = TlsNginx

    def test_a_trusted_authority(self):
        source = self.serve("secret.bin", 3 * MIB)
        trust = {"SSL_CERT_FILE": str(self.server.authority.authority)}
        self.assert_fetches(source, environment=trust)

    def test_certificates_that_are_not_believed(self):
        cases = {
            "certificate has expired": {"days": -1},
            "no alternative certificate subject name matches": {"names": "DNS:elsewhere.invalid"},
            "self-signed certificate": {"signs": False},
            "unable to get local issuer certificate": {},
        }
        for reason, certificate in cases.items():
            with self.subTest(reason):
                server = TlsNginx(**certificate)
                self.addCleanup(server.close)
                trust = {"SSL_CERT_FILE": str(server.authority.authority)} if certificate else {}
                result = self.home.run(server.url("/secret.bin"), environment=trust)
                self.assert_status(result, 1)
                self.assertIn(reason, result.stderr)
                self.assertNotIn("/secret.bin", [request[1] for request in server.requests()])
                self.assertEqual((self.home.finished(), self.home.partial_bytes()), ([], 0))
        # The general words, which the window shows.
        log = self.home.log_text()
        self.assertEqual(log.count("A connection failure occurred: SSL problem (Possible causes may"
                                   " include a bad/expired/self-signed certificate, clock set to "
                                   "wrong date)"), len(cases))


if __name__ == "__main__":
    unittest.main()
