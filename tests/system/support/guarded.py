"""Servers and proxies that want to know who is there: NAME, or who ntlm.py says, by PASSWORD."""
import hashlib
import shutil
import subprocess
from pathlib import Path

from . import ntlm
from .proxies import Squid
from .servers import Apache, Server

REALM = "The Club"
NAME = "müller"
# Searched for wherever it must not turn up.
PASSWORD = "kanarienvogel-4711"


def htdigest_line(name, realm, password, algorithm="md5"):
    digest = hashlib.new(algorithm, f"{name}:{realm}:{password}".encode()).hexdigest()
    return f"{name}:{realm}:{digest}\n"


def plain_line(name, password):
    """Apache's own form of an unsalted hash."""
    made = subprocess.run(["openssl", "passwd", "-apr1", "-stdin"], input=password.encode(),
                          capture_output=True, check=True).stdout.decode().strip()
    return f"{name}:{made}\n"


class GuardedApache(Apache):
    """/basic/FILE and /digest/FILE are guarded, and /stale/FILE has nonces that live for a second.
    Who has been let in once gets a cookie with the password in it."""

    def prepare(self):
        (self.root / "basic").write_text(plain_line(NAME, PASSWORD))
        (self.root / "digest").write_text(htdigest_line(NAME, REALM, PASSWORD))

    def command(self):
        words = super().command()
        modules = "\n".join(
            f"LoadModule {name}_module {self.modules}/mod_{name}.so" for name in
            ("auth_basic", "auth_digest", "authn_core", "authn_file", "authz_user", "alias",
             "headers"))
        lifetimes = (("digest", 300), ("stale", 1))
        digests = "\n".join(f"""
<Location /{name}>
    AuthType Digest
    AuthName "{REALM}"
    AuthDigestProvider file
    AuthUserFile {self.root}/digest
    AuthDigestNonceLifetime {seconds}
    Require valid-user
</Location>""" for name, seconds in lifetimes)
        with open(self.root / "apache.conf", "a", encoding="utf-8") as configuration:
            configuration.write(f"""
{modules}
Alias /basic {self.content}
Alias /digest {self.content}
Alias /stale {self.content}
<LocationMatch /basic/>
    AuthType Basic
    AuthName "{REALM}"
    AuthBasicProvider file
    AuthUserFile {self.root}/basic
    Require valid-user
    Header always set Set-Cookie "session={PASSWORD}; Path=/"
</LocationMatch>{digests}
""")
        return words


class Lighttpd(Server):
    """Everything below /sha256 is guarded by Digest with SHA-256."""

    def prepare(self):
        (self.root / "users").write_text(htdigest_line(NAME, REALM, PASSWORD, "sha256"))

    def command(self):
        configuration = self.root / "lighttpd.conf"
        configuration.write_text(f"""
server.document-root = "{self.content}"
server.port = {self.port}
server.bind = "127.0.0.1"
server.errorlog = "{self.root}/errors"
server.modules = ("mod_auth", "mod_authn_file", "mod_alias", "mod_accesslog")
accesslog.filename = "{self.log}"
accesslog.format = "%m|%U|%s"
alias.url = ("/sha256" => "{self.content}")
auth.backend = "htdigest"
auth.backend.htdigest.userfile = "{self.root}/users"
auth.require = ("/sha256" => ("method" => "digest", "algorithm" => "SHA-256",
                              "realm" => "{REALM}", "require" => "valid-user"))
""")
        return ["lighttpd", "-D", "-f", str(configuration)]


class GuardedSquid(Squid):
    """A proxy that lets nobody through without a password. `kind`: basic, digest or ntlm, which
    knows another name."""

    helpers = "/usr/lib/squid"

    def __init__(self, kind):
        self._kind = kind
        super().__init__()

    def prepare(self):
        users = self.root / "users"
        kind, helpers = self._kind, self.helpers
        users.write_text({"basic": plain_line(NAME, PASSWORD),
                          "digest": htdigest_line(NAME, REALM, PASSWORD),
                          "ntlm": PASSWORD}[kind])
        # Where the proxy's own user can read it.
        judge = shutil.copy(ntlm.__file__, self.root)
        helper = {"basic": f"{helpers}/basic_ncsa_auth {users}",
                  "digest": f"{helpers}/digest_file_auth -c {users}",
                  "ntlm": f"/usr/bin/env python3 -B {judge} {users}"}[kind]
        realm = "" if kind == "ntlm" else f"auth_param {kind} realm {REALM}"
        self.access_lines = f"""
auth_param {kind} program {helper}
auth_param {kind} children 1 startup=1
{realm}
acl known proxy_auth REQUIRED
http_access allow known
http_access deny all
"""

    def exchanges(self):
        """Status of each request, and the port that it came from."""
        return [request[2:4] for request in self.requests() if request[0] != "-"]


class NtlmOrigin(Server):
    """A web server that wants NTLM, as ntlm_origin.js tells."""

    packages = Path(__file__).parents[3] / "build/node/node_modules"

    def prepare(self):
        if not self.packages.exists():
            raise RuntimeError("scripts/setup gets the server that this test needs")
        self.controller = ntlm.Controller(PASSWORD)

    def command(self):
        script = Path(__file__).parents[1] / "node/ntlm_origin.js"
        return ["node", str(script), str(self.packages), str(self.port), str(self.content),
                str(self.log), str(self.controller.port)]

    def close(self):
        super().close()
        self.controller.close()

    def exchanges(self, name):
        """Status, kind of authorization and connection of each request for a file."""
        return [line[1:] for line in self.requests() if line[0].endswith("/" + name)]
