"""Each failure is told in a plain sentence: on the terminal, in a row's tool tip and to assistive
technologies, in the user's language. Screenshots of all of them are kept."""
import unittest

from support.case import SystemTest
from support.desktop import Desktop
from support.home import PROGRAMS, wait_until
from support.hostile import Speaker, TlsSpeaker
from support.servers import TlsNginx, free_port

PROGRAM = PROGRAMS / "orlop"
OK = b"HTTP/1.1 200 OK\r\n"
TECHNICAL = ("0x", "::", "DQ", "HTTPR", "libcurl", "SSL", "errno", "OpenSSL", "curl")
ENGLISH = {
    "nobody": "There is no server of this name. Check the address and your connection.",
    "closed": "The server refused the connection. Try again later.",
    "cut": "The server closed the connection after 500 KB of 1 MB.",
    "odd": "The server’s answer cannot be used.",
    "round": "The address leads on to others without end.",
    "silent": "The server stopped answering. Try again later.",
    "other-host": "The certificate is not valid for this host.",
    "expired": "The certificate of the server has expired, or the clock is wrong.",
    "unannounced": "The server closed the connection.",
    "untrusted": "Nobody who is trusted vouches for the server’s certificate.",
}
GERMAN = {
    "nobody": "Es gibt keinen Server dieses Namens. Prüfen Sie die Adresse und Ihre Verbindung.",
    "closed": "Der Server hat die Verbindung abgelehnt. Versuchen Sie es später noch einmal.",
    "cut": "Der Server hat die Verbindung nach 500 kB von 1 MB geschlossen.",
    "odd": "Die Antwort des Servers ist nicht zu gebrauchen.",
    "round": "Die Adresse führt endlos zu anderen weiter.",
    "silent": "Der Server antwortet nicht mehr. Versuchen Sie es später noch einmal.",
    "other-host": "Das Zertifikat gilt nicht für diesen Server.",
    "expired": "Das Zertifikat des Servers ist abgelaufen, oder die Uhr geht falsch.",
    "unannounced": "Der Server hat die Verbindung geschlossen.",
    "untrusted": "Niemand, dem vertraut wird, bürgt für das Zertifikat des Servers.",
}


class FailureTest(SystemTest):
    server_class = Speaker

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.secure = TlsSpeaker()
        cls.addClassCleanup(cls.secure.close)
        cls.secure.answers = {"/unannounced": lambda: (OK + b"\r\n", b"half")}
        cls.server.answers = {
            "/cut": lambda: (OK + b"Content-Length: 1000000\r\n\r\n", bytes(500_000)),
            "/odd": lambda: (OK + b"Content-Length: 1\r\nContent-Length: 2\r\n\r\nxy",),
            "/round": lambda: (b"HTTP/1.1 302 Found\r\nLocation: /round\r\n"
                               b"Content-Length: 0\r\n\r\n",),
            "/silent": lambda: (lambda peer: peer.recv(1),),
        }
        cls.authorities = {}
        for name, certificate in {"other-host": {"names": "DNS:elsewhere.invalid"},
                                  "expired": {"days": -1}}.items():
            server = TlsNginx(**certificate)
            cls.addClassCleanup(server.close)
            cls.authorities[name] = server
        # All that are to be trusted, in one file.
        trusted = cls.secure.authority.authority.parent / "trusted.pem"
        trusted.write_text("".join(one.authority.authority.read_text()
                                   for one in (cls.secure, *cls.authorities.values())))
        cls.trust = {"SSL_CERT_FILE": str(trusted)}
        untrusted = TlsNginx()
        cls.addClassCleanup(untrusted.close)
        cls.addresses = {
            "nobody": "http://name.invalid/nobody",
            "closed": f"http://127.0.0.1:{free_port()}/closed",
            **{name: cls.server.url(f"/{name}") for name in ("cut", "odd", "round", "silent")},
            **{name: server.url(f"/{name}") for name, server in cls.authorities.items()},
            "unannounced": cls.secure.url("/unannounced"),
            "untrusted": untrusted.url("/untrusted"),
        }
        cls.options = ("-Request Timeout Interval", "3")

    def test_on_the_terminal(self):
        result = self.home.run(*self.options, *self.addresses.values(), environment=self.trust)
        self.assert_status(result, 1)
        for name, sentence in ENGLISH.items():
            self.assertIn(f"Download Failed: {name} - {sentence}", result.stderr)
        for word in TECHNICAL:
            self.assertNotIn(word, result.stderr)

    def test_a_proxy_that_does_not_lead_on(self):
        proxy = Speaker()
        self.addCleanup(proxy.close)
        proxy.answers = {"far.invalid:443": lambda: (
            b"HTTP/1.1 502 Bad Gateway\r\nSet-Cookie: stolen=1\r\nContent-Length: 0\r\n\r\n",)}
        place = f"127.0.0.1:{proxy.port}"
        result = self.home.run("https://far.invalid/file",
                               environment={"https_proxy": f"http://{place}"})
        self.assert_status(result, 1)
        self.assertIn(f"The proxy {place} answered 502.", result.stderr)

    @unittest.skipUnless(PROGRAM.exists(), "built without the desktop program")
    def test_in_the_window(self):
        for language, sentences in (("en_US", ENGLISH), ("de_DE", GERMAN)):
            # Half of them at a time: only what is in sight is told.
            rows = list(sentences.items())
            for some in dict(rows[:5]), dict(rows[5:]):
                with self.subTest(language, first=next(iter(some))):
                    self.check_window(language, some)

    def check_window(self, language, sentences):
        self.setUp()
        desktop = Desktop("Orlop")
        self.addCleanup(desktop.close)
        program = self.home.start(*self.options, *(self.addresses[name] for name in sentences),
                                  program=PROGRAM,
                                  environment=desktop.environment | self.trust |
                                  {"LC_ALL": f"{language}.UTF-8"})
        def row(name):
            return next((node for node in desktop.nodes() if node.role == "list item" and
                         node.name.startswith(f"{name},")), None)

        for name, sentence in sentences.items():
            wait_until(lambda: row(name) and row(name).name.endswith(sentence), 60,
                       f"{sentence!r} for {name}")
            for word in TECHNICAL:
                self.assertNotIn(word, row(name).name)
        for name, sentence in sentences.items():
            desktop.move((2, 2))
            desktop.wait_until_gone("tool tip")
            desktop.move(row(name).center)
            tip = desktop.wait_for("tool tip")
            self.assertTrue(tip.name.replace("\n", " ").endswith(sentence), tip.name)
            desktop.screenshot(f"failure-{language}-{name}")
        program.terminate()
        program.wait(30)


if __name__ == "__main__":
    unittest.main()
