"""Only servers that a trusted authority vouches for are believed."""
import unittest

from support.case import MIB, SystemTest
from support.home import TERMINAL
from support.hostile import TlsSpeaker
from support.sandbox import can_sandbox, sandbox, with_home
from support.servers import TlsNginx


class TlsTest(SystemTest):
    server_class = TlsNginx

    def test_a_trusted_authority(self):
        source = self.serve("secret.bin", 3 * MIB)
        trust = {"SSL_CERT_FILE": str(self.server.authority.authority)}
        self.assert_fetches(source, environment=trust)

    @unittest.skipUnless(can_sandbox(), "no namespaces for another file system")
    def test_the_authorities_of_another_distribution(self):
        source = self.serve("elsewhere.bin", MIB)
        for place, status in (("/etc/some/bundle.crt", 1), ("/etc/pki/tls/certs/ca-bundle.crt", 0)):
            command = sandbox(*with_home(self.home, "."), "--ro-bind",
                              self.server.authority.authority, place, TERMINAL,
                              self.server.url(f"/{source.name}"), system=("/usr",))
            self.assert_status(self.home.run(*command[1:], program=command[0]), status)
        self.assert_downloaded(source.name, source)

    def test_a_kept_connection_serves_the_next_file(self):
        for name in "one.bin", "two.bin":
            self.serve(name, MIB)
        result = self.home.run("-Number Of Concurrent Downloads", "1",
                               *map(self.server.url, ("/one.bin", "/two.bin")),
                               environment={"SSL_CERT_FILE": str(self.server.authority.authority)})
        self.assert_status(result, 0)
        first, second = self.server.connections()[-2:]
        self.assertEqual(first, second)

    def test_certificates_that_are_not_believed(self):
        unknown = "Nobody who is trusted vouches for the server’s certificate."
        cases = {
            "certificate has expired":
                ("The certificate of the server has expired", {"days": -1}),
            "no alternative certificate subject name matches":
                ("The certificate is not valid for this host.",
                 {"names": "DNS:elsewhere.invalid"}),
            "self-signed certificate": (unknown, {"signs": False}),
            "unable to get local issuer certificate": (unknown, {}),
        }
        for reason, (sentence, certificate) in cases.items():
            with self.subTest(reason):
                server = TlsNginx(**certificate)
                self.addCleanup(server.close)
                trust = {"SSL_CERT_FILE": str(server.authority.authority)} if certificate else {}
                result = self.home.run(server.url("/secret.bin"), environment=trust)
                self.assert_status(result, 1)
                self.assertIn(sentence, result.stderr)
                self.assertNotIn("/secret.bin", [request[1] for request in server.requests()])
                self.assertEqual((self.home.finished(), self.home.partial_bytes()), ([], 0))
        # What only those who look for it want to know.
        log = self.home.log_text()
        for reason in cases:
            self.assertIn(reason, log)
        self.assertEqual(log.count("A connection failure occurred: SSL problem (Possible causes may"
                                   " include a bad/expired/self-signed certificate, clock set to "
                                   "wrong date)"), len(cases))


class TlsEndTest(SystemTest):
    """An end that the server did not announce may be the work of somebody on the way."""
    server_class = TlsSpeaker
    OK = b"HTTP/1.1 200 OK\r\n"

    def fetch(self, *paths):
        return self.home.run("-Number Of Concurrent Downloads", "1", *map(self.server.url, paths),
                             environment={"SSL_CERT_FILE": str(self.server.authority.authority)})

    def test_only_an_announced_end_ends_a_body_without_a_length(self):
        notice = self.server.end_notice
        whole = {
            "announced": (self.OK + b"\r\n", b"whole", notice),
            "length": (self.OK + b"Content-Length: 5\r\n\r\n", b"whole"),
            "chunked": (self.OK + b"Transfer-Encoding: chunked\r\n\r\n", b"5\r\nwhole\r\n0\r\n\r\n"),
        }
        for name, pieces in whole.items():
            with self.subTest(name):
                self.server.answers = {f"/{name}": lambda pieces=pieces: pieces}
                self.assert_status(self.fetch(f"/{name}"), 0)
                self.assertEqual((self.home.downloads / name).read_bytes(), b"whole")
        self.server.answers = {"/cut": lambda: (self.OK + b"\r\n", b"whole")}
        result = self.fetch("/cut")
        self.assert_status(result, 1)
        self.assertNotIn("cut", self.home.finished())

    def test_what_a_record_holds_behind_a_body_is_no_answer(self):
        self.server.keeps = True
        self.addCleanup(setattr, self.server, "keeps", False)
        head = self.OK + b"Content-Length: 5\r\n\r\n"
        self.server.answers = {"/first": lambda: (head, b"first" + head + b"wrong"),
                               "/other": lambda: (head, b"other")}
        self.assert_status(self.fetch("/first", "/other"), 0)
        for name in ("first", "other"):
            self.assertEqual((self.home.downloads / name).read_bytes(), name.encode())


if __name__ == "__main__":
    unittest.main()
