"""Real proxies on loopback ports, and what each has been asked."""
import os
import socket
import time

from .servers import Server


class Proxy(Server):
    """A server of no files of its own. It is ready when it takes connections."""

    def _answers(self):
        for _ in range(500):
            if self._process.poll() is not None:
                return False
            try:
                socket.create_connection((self.host, self.port), timeout=5).close()
                return True
            except OSError:
                time.sleep(0.01)
        return False

    @property
    def address(self):
        return f"{self.scheme}://{self.host}:{self.port}"

    @property
    def place(self):
        """As scripts and the desktop's settings write it."""
        return f"{self.host}:{self.port}"

    def asked(self):
        """Method and target of each request, in the order of their ends."""
        raise NotImplementedError


class Squid(Proxy):
    """Forgets nothing and caches nothing."""

    listen = "http_port"
    listen_options = ""

    def __init__(self, access="http_access allow all"):
        self.access_lines = access
        super().__init__()

    def command(self):
        configuration = self.root / "squid.conf"
        user = "proxy" if os.geteuid() == 0 else None
        if user:
            os.chmod(self.root, 0o777)
        configuration.write_text(f"""
{self.listen} {self.host}:{self.port} {self.listen_options}
pid_filename none
{self.access_lines}
cache deny all
logformat plain %rm|%ru|%>Hs|%>p
access_log stdio:{self.log} plain
strip_query_terms off
buffered_logs off
cache_log {self.root}/cache.log
coredump_dir none
netdb_filename none
shutdown_lifetime 0 seconds
max_filedescriptors 1024
{f"cache_effective_user {user}" if user else ""}
""")
        return ["squid", "-N", "-f", str(configuration)]

    def asked(self):
        # Without our own look whether it is there.
        return [request[:2] for request in self.requests() if request[0] != "-"]


class TlsSquid(Squid):
    """Spoken to over TLS."""

    scheme, listen = "https", "https_port"
    host = "127.0.0.1"

    def __init__(self, authority):
        self.listen_options = f"tls-cert={authority.certificate} tls-key={authority.key}"
        super().__init__()


class Tinyproxy(Proxy):
    def __init__(self, more=""):
        self.more = more
        super().__init__()

    def command(self):
        configuration = self.root / "tinyproxy.conf"
        configuration.write_text(f"""
Port {self.port}
Listen {self.host}
Timeout 60
LogFile "{self.log}"
LogLevel Connect
MaxClients 50
{self.more}
""")
        return ["tinyproxy", "-d", "-c", str(configuration)]

    def asked(self):
        lines = self.log.read_text().splitlines() if self.log.exists() else []
        words = [line.split("): ", 1)[1].split() for line in lines if "Request (file" in line]
        return [tuple(request[:2]) for request in words]


class Microsocks(Proxy):
    """SOCKS of version 5."""

    scheme = "socks5"

    def __init__(self, *more):
        self.more = more
        super().__init__()

    def command(self):
        return ["microsocks", "-i", self.host, "-p", str(self.port), *self.more]

    def asked(self):
        """It writes a line for each connection that it has made, on its error output."""
        text = (self.root / "errors").read_text()
        return [("CONNECT", line.rsplit(" ", 1)[1]) for line in text.splitlines()
                if "connected to" in line]
