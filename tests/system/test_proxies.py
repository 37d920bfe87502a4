"""Proxies as users set them: by the environment, the desktop and scripts, against real ones."""
import contextlib
import os
import time
import unittest
from pathlib import Path

from support.case import MIB, SystemTest
from support.home import PROGRAMS, wait_until
from support.proxies import Microsocks, Squid, Tinyproxy, TlsSquid
from support.servers import TlsNginx, free_port


def script(body):
    return f"function FindProxyForURL(url, host) {{ {body} }}"


def open_paths(pid):
    """What a running process has open; some of it may be closed while it is listed."""
    paths = set()
    for entry in Path(f"/proc/{pid}/fd").iterdir():
        with contextlib.suppress(FileNotFoundError):
            paths.add(entry.readlink())
    return paths


class ProxyTest(SystemTest):
    """A plain server, one with TLS, and proxies in front of both."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.secure = TlsNginx()
        cls.addClassCleanup(cls.secure.close)
        cls.source = cls.serve("file.bin", MIB)
        (cls.secure.content / "file.bin").write_bytes(cls.source.read_bytes())
        cls.trust = {"SSL_CERT_FILE": str(cls.secure.authority.authority)}
        cls.squid = cls.start_proxy(Squid)

    @classmethod
    def start_proxy(cls, kind, *arguments):
        proxy = kind(*arguments)
        cls.addClassCleanup(proxy.close)
        return proxy

    def fetch(self, url, status=0, **variables):
        """Downloads in a way that the tests tell apart, in a folder with no file from before."""
        (self.home.downloads / "file.bin").unlink(missing_ok=True)
        result = self.home.run(url, environment=self.trust | variables)
        self.assert_status(result, status)
        if status == 0:
            self.assert_downloaded("file.bin", self.source)
        else:
            self.assertEqual(self.home.finished(), [])
        return result

    def assert_asked(self, proxy, url, times=1):
        """What is written down of the last downloads, which may come a little late."""
        host = url.split("/")[2]
        expected = ("CONNECT", host) if url.startswith("https:") or proxy.scheme == "socks5" \
            else ("GET", url)
        wait_until(lambda: proxy.asked().count(expected) == times, 5,
                   f"{times} x {expected} in {proxy.asked()}")

    def urls(self, name="file.bin"):
        return self.server.url(f"/{name}"), self.secure.url(f"/{name}")

    def write_script(self, text, name="proxy.pac", encoding="utf-8"):
        path = self.home.root / name
        path.write_bytes(text.encode(encoding))
        return path


class EnvironmentTest(ProxyTest):
    def test_each_kind_with_each_scheme(self):
        proxies = [self.squid, self.start_proxy(Tinyproxy), self.start_proxy(Microsocks),
                   self.start_proxy(TlsSquid, self.secure.authority)]
        for proxy in proxies:
            for url in self.urls():
                with self.subTest(proxy=type(proxy).__name__, url=url):
                    before = len(proxy.asked())
                    self.fetch(url, all_proxy=proxy.address)
                    self.assert_asked(proxy, url)
                    self.assertEqual(len(proxy.asked()), before + 1)

    def test_a_password_in_the_address(self):
        proxies = [self.start_proxy(Tinyproxy, "BasicAuth me geheim9"),
                   self.start_proxy(Microsocks, "-u", "me", "-P", "geheim9")]
        for proxy in proxies:
            for url in self.urls("file.bin?password"):
                for entrance, status in ("me:g%65heim9@", 0), ("me:wrong@", 1), ("", 1):
                    with self.subTest(proxy=type(proxy).__name__, url=url, entrance=entrance):
                        address = proxy.address.replace("//", f"//{entrance}")
                        self.fetch(url, status, all_proxy=address)
                        self.assertNotIn("geheim9", self.home.log_text())

    def test_which_variable_counts(self):
        nowhere = f"http://127.0.0.1:{free_port()}"
        here = self.squid.address
        plain, secure = self.urls("file.bin?variables")
        table = [
            (plain, {"http_proxy": here, "https_proxy": nowhere, "all_proxy": nowhere}, True),
            (secure, {"HTTPS_PROXY": here, "http_proxy": nowhere, "all_proxy": nowhere}, True),
            (plain, {"http_proxy": "", "ALL_PROXY": here}, True),
            (plain, {"http_proxy": here[len("http://"):], "auto_proxy": "file:///nowhere"}, True),
            (plain, {"http_proxy": nowhere, "no_proxy": "example.org,127.0.0.0/8"}, False),
            (secure, {"https_proxy": nowhere, "NO_PROXY": "localhost"}, False),
            (plain, {"all_proxy": nowhere, "no_proxy": "*"}, False),
        ]
        for url, variables, is_asked in table:
            with self.subTest(variables=variables):
                before = len(self.squid.asked())
                self.fetch(url, **variables)
                wait_until(lambda: len(self.squid.asked()) == before + is_asked, 5, "the proxy")

    def test_proxies_that_do_not_work(self):
        denying = self.start_proxy(Squid, "http_access deny all")
        url, secure = self.urls()
        before = self.server.requests(), self.secure.requests()
        for address in [f"http://127.0.0.1:{free_port()}", f"socks5://127.0.0.1:{free_port()}",
                        "http://no-such-proxy.invalid:3128", denying.address,
                        "gopher://127.0.0.1:70", "http://:3128", "http://127.0.0.1:99999"]:
            for target in url, secure:
                with self.subTest(address=address, target=target):
                    self.fetch(target, status=1, all_proxy=address)
        result = self.fetch(url, status=1, all_proxy="gopher://127.0.0.1:70")
        self.assertIn("Unable to obtain information on proxy servers needed for request",
                      result.stderr + self.home.log_text())
        self.assertEqual((self.server.requests(), self.secure.requests()), before)


class DesktopTest(ProxyTest):
    def shared_settings(self, text):
        folder = self.home.root / "config/glib-2.0/settings"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "keyfile").write_text(text)
        return {"GSETTINGS_BACKEND": "keyfile", "XDG_CURRENT_DESKTOP": "GNOME"}

    def kde_settings(self, text):
        (self.home.root / "config/kioslaverc").write_text(f"[Proxy Settings]\n{text}")
        return {"XDG_CURRENT_DESKTOP": "KDE"}

    def test_settings(self):
        host, port = self.squid.host, self.squid.port
        microsocks = self.start_proxy(Microsocks)
        pac = self.write_script(script(f'return "PROXY {self.squid.place}";'))
        root, sub = "[system/proxy]\nmode=", "[system/proxy/"
        manual = f"{root}'manual'\nignore-hosts=['10.0.0.0/8']\n"
        http = f"{manual}{sub}http]\nhost='{host}'\nport={port}\n"
        plain, secure = self.urls("file.bin?desktop")
        shared, kde = self.shared_settings, self.kde_settings
        table = [
            (shared, http, plain, self.squid),
            (shared, http, secure, self.squid),
            (shared, f"{manual}{sub}socks]\nhost='{host}'\nport={microsocks.port}\n", plain,
             microsocks),
            (shared, http.replace("10.0.0.0", "127.0.0.0"), plain, None),
            (shared, http.replace("manual", "none"), plain, None),
            (shared, f"{root}'auto'\nautoconfig-url='{pac.as_uri()}'\n", secure, self.squid),
            (kde, f"ProxyType=1\nhttpProxy=http://{host} {port}\n", plain, self.squid),
            (kde, f"ProxyType=1\nsocksProxy=socks://{host} {microsocks.port}\n", secure,
             microsocks),
            (kde, f"ProxyType=1\nhttpProxy=http://{host} {port}\nNoProxyFor=a.b,127.0.0.1\n",
             plain, None),
            (kde, f"ProxyType=2\nProxy Config Script={pac}\n", plain, self.squid),
            (kde, f"ProxyType=0\nhttpProxy=http://{host} {port}\n", plain, None),
        ]
        for write, text, url, proxy in table:
            with self.subTest(text=text, url=url):
                before = len(self.squid.asked()), len(microsocks.asked())
                self.fetch(url, **write(text))
                expected = (before[0] + (proxy is self.squid), before[1] + (proxy is microsocks))
                wait_until(lambda: (len(self.squid.asked()), len(microsocks.asked())) == expected,
                           5, "the proxy")

    def test_the_environment_goes_before_the_desktop(self):
        settings = self.shared_settings("[system/proxy]\nmode='manual'\n"
                                        "[system/proxy/http]\nhost='127.0.0.1'\n"
                                        f"port={free_port()}\n")
        url = self.server.url("/file.bin?order")
        self.fetch(url, http_proxy=self.squid.address, **settings)
        self.assert_asked(self.squid, url)
        self.fetch(url, no_proxy="127.0.0.1", **settings)


class ScriptTest(ProxyTest):
    def children(self):
        """The processes that run scripts for the program, or look names up for those."""
        found = []
        for folder in Path("/proc").glob("[0-9]*"):
            try:
                if (folder / "exe").resolve() == PROGRAMS.resolve() / "orlop-proxy-script":
                    found.append(folder)
            except OSError:
                pass
        return found

    def test_where_scripts_come_from(self):
        microsocks = self.start_proxy(Microsocks)
        text = script(f"""
            // Größe
            if (url.substring(0, 6) == "https:")
                return url == "https://localhost:{self.secure.port}/" &&
                    isInNet(dnsResolve(host), "127.0.0.0", "255.0.0.0") &&
                    localHostOrDomainIs(host, "localhost.localdomain") && !dnsDomainLevels(host)
                    ? "SOCKS {microsocks.place}; DIRECT" : "DIRECT";
            return shExpMatch(url, "*/file.bin?*") && isInNet(host, "127.0.0.1", "255.255.255.255")
                && !isPlainHostName(host) ? "PROXY {self.squid.place}" : "DIRECT";""")
        (self.server.content / "proxy.pac").write_bytes(text.encode())
        sources = [self.write_script(text).as_uri(),
                   self.write_script(text, "latin1.pac", "latin-1").as_uri(),
                   str(self.write_script(text)), self.server.url("/proxy.pac"),
                   self.server.url("/to/proxy.pac"), self.server.url("/chunked/proxy.pac")]
        for times, source in enumerate(sources, 1):
            plain, secure = self.urls("file.bin?script")
            with self.subTest(source=source):
                self.fetch(plain, auto_proxy=source)
                self.assert_asked(self.squid, plain, times)
                self.fetch(secure, auto_proxy=source)
                self.assert_asked(microsocks, secure, times)
        self.assertEqual(self.children(), [])

    def test_scripts_that_name_no_proxy(self):
        """The way is direct, and the log says why."""
        (self.server.content / "huge.pac").write_bytes(b" " * 2 * MIB)
        nothing = self.server.url("/missing.pac")
        endless = self.write_script(script("while (true) {}"), "endless.pac")
        table = {
            str(self.write_script(script('return "DIRECT"'), "direct.pac")): "",
            str(self.write_script(script("return null"), "null.pac")): "",
            str(self.write_script(script("throw 'no'"), "throws.pac")): "has failed: no",
            str(self.write_script("function (", "wrong.pac")): "has failed: line 1: SyntaxError",
            str(self.write_script("", "empty.pac")): "FindProxyForURL is not a function",
            str(self.write_script(script("return 7"), "number.pac")): "answered no text",
            str(self.write_script(script("var a = 'x'; for (;;) a += a;"), "large.pac")):
                "it was ended",
            str(self.write_script(script("for (;;) alert('spam');"), "spam.pac")):
                "it says too much",
            str(endless): "it was ended",
            nothing: "has failed",
            self.server.url("/huge.pac"): "",
            f"http://127.0.0.1:{free_port()}/": "",
            "file:///nowhere/proxy.pac": "",
            "ftp://127.0.0.1/proxy.pac": "",
            str(self.write_script("", "a").parent): "",
        }
        asked = self.squid.asked()
        for source, message in table.items():
            with self.subTest(source=source):
                began = time.monotonic()
                self.fetch(self.server.url("/file.bin?direct"), auto_proxy=source)
                self.assertIn(message, self.home.log_text())
                self.assertLess(time.monotonic() - began, 12)
        self.assertEqual(self.squid.asked(), asked)
        self.assertEqual(self.children(), [])

    def test_a_script_has_nothing_to_reach(self):
        """While one runs, its process holds nothing of ours and is locked in."""
        endless = self.write_script(script("for (;;) { dnsResolve('localhost'); }"))
        process = self.home.start(self.server.url("/file.bin?locked"),
                                  environment={"auto_proxy": str(endless)})
        children = wait_until(lambda: len(self.children()) == 2 and self.children(), 20,
                              "the script's process")
        running = [child for child in children if "Seccomp:\t2" in (child / "status").read_text()]
        self.assertEqual(len(running), 1)
        self.assertEqual((running[0] / "environ").read_bytes(), b"")
        self.assertEqual(os.readlink(running[0] / "cwd"), "/")
        kinds = sorted(os.readlink(entry).split(":")[0] for entry in (running[0] / "fd").iterdir())
        self.assertNotIn("proxy.pac", " ".join(kinds))
        for kind in kinds:
            self.assertRegex(kind, r"^(/dev/null|pipe|socket|/memfd|anon_inode|.*deleted\)?$)")
        self.assert_status(self.home.result(process), 0)
        self.assertEqual(self.children(), [])

    def test_a_file_that_does_not_come(self):
        """A pipe that nobody writes to is given up after the time-out, and so is the program."""
        pipe = self.home.root / "pipe.pac"
        os.mkfifo(pipe)
        holder = os.open(pipe, os.O_RDWR)
        self.addCleanup(os.close, holder)
        url = self.server.url("/file.bin?pipe")
        result = self.home.run("-Request Timeout Interval", "1", url,
                               environment={"auto_proxy": str(pipe)})
        self.assert_status(result, 0)
        self.assert_downloaded("file.bin", self.source)
        process = self.home.start(self.server.url("/file.bin?again"),
                                  environment={"auto_proxy": str(pipe)})
        wait_until(lambda: pipe in open_paths(process.pid), 20, "the reading")
        began = time.monotonic()
        self.home.interrupt(process)
        self.assertLess(time.monotonic() - began, 10)


if __name__ == "__main__":
    unittest.main()
