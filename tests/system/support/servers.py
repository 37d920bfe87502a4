"""Real web servers on loopback ports of the system's choice, each stopped by its process id."""
import base64
import hashlib
import os
import random
import shutil
import socket
import ssl
import subprocess
import tempfile
import time
import urllib.error
import urllib.request
from pathlib import Path


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def has_ipv6():
    try:
        with socket.socket(socket.AF_INET6) as probe:
            probe.bind(("::1", 0))
        return True
    except OSError:
        return False


def write_random(path, size, seed=1):
    """A file whose bytes differ all over, the same for the same seed."""
    source = random.Random(seed)
    with open(path, "wb") as file:
        while size > 0:
            block = source.randbytes(min(size, 1 << 20))
            file.write(block)
            size -= len(block)
    return path


class Authority:
    """A certificate authority of our own and, by openssl, a server's certificate for these names
    and so many days, signed by the authority or by the server itself."""

    def __init__(self, folder, names="DNS:localhost,IP:127.0.0.1", days=2, signs=True):
        self.folder = Path(folder)
        self.authority = self.folder / "authority.pem"
        self.certificate = self.folder / "server.pem"
        self.key = self.folder / "server.key"
        self._openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2",
                      "-subj", f"/CN=Orlop test authority {os.urandom(4).hex()}", "-keyout", self.folder / "authority.key",
                      "-out", self.authority)
        self._openssl("req", "-newkey", "rsa:2048", "-nodes", "-subj", "/CN=localhost",
                      "-keyout", self.key, "-out", self.folder / "server.csr")
        extensions = self.folder / "extensions"
        extensions.write_text(f"subjectAltName={names}\n")
        signing = ["-CA", self.authority, "-CAkey", self.folder / "authority.key",
                   "-CAcreateserial"] if signs else ["-signkey", self.key]
        # Newer releases refuse to count days backwards.
        knows_dates = "-not_after" in subprocess.run(["openssl", "x509", "-help"], check=False,
                                                     capture_output=True, text=True).stderr
        span = ["-not_before", "20250101000000Z", "-not_after", "20250102000000Z"] if (
            days < 0 and knows_dates) else ["-days", days]
        self._openssl("x509", "-req", "-in", self.folder / "server.csr", *signing, *span,
                      "-extfile", extensions, "-out", self.certificate)

    @staticmethod
    def _openssl(*arguments):
        subprocess.run(["openssl", *map(str, arguments)], check=True, capture_output=True)


class Server:
    """Files below `content`, served until `close`. Ports can be taken between the choice and the
    start, so a start that fails is tried again with another."""

    scheme, host = "http", "127.0.0.1"

    def __init__(self):
        self.root = Path(tempfile.mkdtemp(prefix="orlop-server-"))
        self.root.chmod(0o755)
        self.content = self.root / "content"
        self.content.mkdir()
        self.log = self.root / "access.log"
        self._process = None
        self.prepare()
        for _ in range(5):
            self.port = free_port()
            with open(self.root / "errors", "ab") as errors:
                self._process = subprocess.Popen(self.command(), stdin=subprocess.DEVNULL,
                                                 stdout=subprocess.DEVNULL, stderr=errors)
            if self._answers():
                return
            self._stop()
        raise RuntimeError("".join(path.read_text(errors="replace") for path in (
            self.root / "errors", self.root / "cache.log") if path.exists()))

    def prepare(self):
        """What must be there before the first start."""

    def command(self):
        raise NotImplementedError

    def _answers(self):
        context = ssl._create_unverified_context() if self.scheme == "https" else None
        for _ in range(500):
            if self._process.poll() is not None:
                return False
            try:
                urllib.request.build_opener(
                    urllib.request.ProxyHandler({}),
                    urllib.request.HTTPSHandler(context=context)).open(self.url("/"), timeout=5)
                return True
            except urllib.error.HTTPError:
                return True
            except OSError:
                time.sleep(0.01)
        return False

    def _stop(self):
        self._process.terminate()
        self._process.wait()

    def close(self):
        self._stop()
        shutil.rmtree(self.root, ignore_errors=True)

    @property
    def pid(self):
        return self._process.pid

    def url(self, path):
        return f"{self.scheme}://{self.host}:{self.port}{path}"

    def requests(self):
        """Method, target, status, "Range" and bytes of the body of each finished request."""
        if not self.log.exists():
            return []
        return [tuple(line.split("|")) for line in self.log.read_text().splitlines()]

    def statuses(self, part):
        """Of the requests whose targets have that part, in the order of their ends."""
        return [request[2] for request in self.requests() if part in request[1]]


secret = "of the tests"


class Nginx(Server):
    """Beside the files themselves: /rate/SPEED/FILE sends SPEED bytes a second, /chunked/FILE has
    no length, /noranges/FILE refuses ranges, /status/NUMBER answers that status, /to/FILE
    redirects, /uneven/FILE is slow on every fourth connection or so, /limit/NUMBER/FILE serves 1 to 3 requests at a time, slowly, and refuses others,
    what `signed` answers serves a file slowly and for a while."""

    listen_options = ""
    tls_lines = ""

    def connections(self):
        """The number of the connection of each finished request."""
        return (self.root / "connections.log").read_text().split()

    def proxy_passwords(self):
        """What was sent here that was meant for a proxy, "-" for nothing."""
        return set((self.root / "passwords.log").read_text().splitlines())

    def cookies_of(self, path):
        """What came with the requests for it that have ended."""
        lines = (self.root / "cookies.log").read_text().splitlines()
        return [line.split("|")[1] for line in lines if line.split("|")[0] == path]

    def signed(self, name, seconds):
        """An address for the file that is good for so many seconds from now."""
        path, expires = f"/signed/{name}", int(time.time()) + seconds
        digest = hashlib.md5(f"{expires}{path} {secret}".encode()).digest()
        signature = base64.urlsafe_b64encode(digest).decode().rstrip("=")
        return self.url(f"{path}?md5={signature}&expires={expires}")

    def is_idle(self):
        """Whether nobody is being served."""
        with urllib.request.build_opener(urllib.request.ProxyHandler({})).open(
                self.url("/connections"), timeout=5) as answer:
            return b"Active connections: 1 " in answer.read()

    def listen_lines(self):
        """Whoever is given a name may take either of its addresses, and no other."""
        addresses = ["127.0.0.1"] + (["[::1]"] if self.host == "localhost" and has_ipv6() else [])
        return " ".join(f"listen {address}:{self.port}{self.listen_options};"
                        for address in addresses)

    def command(self):
        configuration = self.root / "nginx.conf"
        configuration.write_text(f"""
daemon off;
master_process off;
worker_rlimit_nofile 8192;
pid {self.root}/pid;
error_log {self.root}/errors;
events {{ worker_connections 2048; }}
http {{
    default_type application/octet-stream;
    log_format plain '$request_method|$request_uri|$status|$http_range|$body_bytes_sent';
    access_log {self.log} plain;
    log_format numbers '$connection';
    access_log {self.root}/connections.log numbers;
    log_format passwords '$http_proxy_authorization';
    access_log {self.root}/passwords.log passwords;
    log_format cookies '$request_uri|$http_cookie';
    access_log {self.root}/cookies.log cookies;
    map $connection $uneven {{ default 1500000; "~[048]$" 100000; }}
    limit_conn_zone $server_addr zone=one:1m;
    limit_conn_zone $server_addr zone=two:1m;
    limit_conn_zone $server_addr zone=three:1m;
    sendfile on;
    keepalive_requests 100000;
    client_body_temp_path {self.root}/body;
    proxy_temp_path {self.root}/proxy;
    fastcgi_temp_path {self.root}/fastcgi;
    uwsgi_temp_path {self.root}/uwsgi;
    scgi_temp_path {self.root}/scgi;
    server {{
        {self.listen_lines()}
        {self.tls_lines}
        root {self.content};
        location ~ ^/rate/(?<speed>[0-9]+)/(?<file>.+)$ {{
            set $limit_rate $speed;
            alias {self.content}/$file;
        }}
        location /uneven/ {{
            set $limit_rate $uneven;
            alias {self.content}/;
        }}
        location /chunked/ {{
            alias {self.content}/;
            sub_filter_types *;
            sub_filter_once off;
            sub_filter 'never in random bytes' '';
        }}
        location /noranges/ {{ alias {self.content}/; max_ranges 0; }}
        location ~ ^/to/(?<file>.+)$ {{ return 302 /$file; }}
        location /signed/ {{
            secure_link $arg_md5,$arg_expires;
            secure_link_md5 "$secure_link_expires$uri {secret}";
            if ($secure_link = "") {{ return 403; }}
            if ($secure_link = "0") {{ return 410; }}
            alias {self.content}/;
            limit_rate 400k;
        }}
        location /limit/1/ {{ alias {self.content}/; limit_rate 400k; limit_conn one 1; }}
        location /limit/2/ {{ alias {self.content}/; limit_rate 400k; limit_conn two 2; }}
        location /limit/3/ {{ alias {self.content}/; limit_rate 400k; limit_conn three 3; }}
        location /connections {{ stub_status; access_log off; }}
        location /status/404 {{ return 404; }}
        location /status/500 {{ return 500; }}
    }}
}}
""")
        return ["nginx", "-e", str(self.root / "errors"), "-p", str(self.root),
                "-c", str(configuration)]


class TlsNginx(Nginx):
    scheme, host = "https", "localhost"
    listen_options = " ssl"

    def __init__(self, **certificate):
        self._certificate = certificate
        super().__init__()

    def prepare(self):
        self.authority = Authority(self.root, **self._certificate)
        self.tls_lines = (f"ssl_certificate {self.authority.certificate};"
                          f" ssl_certificate_key {self.authority.key};")


class Apache(Server):
    modules = Path("/usr/lib/apache2/modules")

    def command(self):
        user = "User www-data\nGroup www-data" if os.geteuid() == 0 else ""
        configuration = self.root / "apache.conf"
        configuration.write_text(f"""
LoadModule mpm_event_module {self.modules}/mod_mpm_event.so
LoadModule authz_core_module {self.modules}/mod_authz_core.so
ServerRoot {self.root}
ServerName localhost
PidFile {self.root}/pid
Listen 127.0.0.1:{self.port}
ErrorLog {self.root}/errors
LogFormat "%m|%U|%>s|%{{Range}}i|%B" plain
CustomLog {self.log} plain
DocumentRoot {self.content}
Mutex fcntl:{self.root}
DefaultRuntimeDir {self.root}
StartServers 1
{user}
""")
        return ["apache2", "-DFOREGROUND", "-f", str(configuration)]
