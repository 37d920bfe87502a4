"""A site that gives its files only to who asks as the browser did: with a cookie, a referrer, by a
form, after redirects, by links that it has signed and that expire."""
import hashlib
import hmac
import random
import threading
import time
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import parse_qs, quote, urlsplit

SECRET = b"of the site"
COOKIE = "session=a1b2c3"
OTHER_COOKIES = {"framed": "framed=1", "mine": "visitor=private"}
SIZE = 50_000


def content(name, size=SIZE):
    return random.Random(name).randbytes(size)


def signature(name, expires):
    return hmac.new(SECRET, f"{name} {expires}".encode(), hashlib.sha256).hexdigest()


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *_arguments):
        pass

    def _send(self, status, body=b"", **headers):
        self.send_response(status)
        for name, value in headers.items():
            self.send_header(name.replace("_", "-"), value)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        if self.command != "HEAD":
            self.wfile.write(body)

    def _frame(self):
        """Of another site within the page; its cookie counts only there."""
        name, = [name for name in self.server.names if name.startswith("frame")]
        self._send(200, f"<a style='position:fixed;inset:0' href='/framed/{name}'>{name}</a>"
                   "<script>onmousemove = () => parent.postMessage('pointed', '*');"
                   "requestAnimationFrame(() => requestAnimationFrame(() => "
                   "parent.postMessage('shown', '*')))</script>".encode(), Content_Type="text/html",
                   Set_Cookie="framed=1; SameSite=None; Secure; Partitioned; Path=/")

    def _page(self, visitor):
        names = self.server.names
        now = int(time.time()) + 600
        links = "".join(
            f'<p><a id="{kind}-{name}" href="{address}">{kind} {name}</a></p>'
            for name in names for kind, address in (
                ("file", f"/file/{name}"), ("twice", f"/twice/{name}"),
                ("signed", f"/signed/{name}?expires={now}&signature={signature(name, now)}"),
                ("type", f"/type/{name}"), ("open", f"/open/{name}"),
                ("mine", f"/mine/{name}")))
        forms = "".join(
            f'<form method="post" action="/form/{name}"><input name="word" value="schön &amp; gut">'
            f'<button id="form-{name}">{name}</button></form>'
            f'<form method="post" enctype="multipart/form-data" action="/upload/{name}">'
            f'<input name="word" value="x"><button id="upload-{name}">{name}</button></form>'
            for name in names)
        # The blob is under way long enough to be held by mistake.
        blob = ("<a id='blob' download='blob.bin'>blob</a><a id='data' download='data.bin' "
                "href='data:application/octet-stream,abc'>data</a>"
                "<script>blob.href = URL.createObjectURL(new Blob([new Uint8Array(64 << 20)]))</script>"
                "<img src='/open/picture.png' alt='<b>not bold</b>'>")
        body = ("<!DOCTYPE html><meta charset='utf-8'><title>Site &lt;b&gt;</title>" + links + forms
                + blob + f"<iframe id='frame' src='http://localhost:{self.server.server_port}/frame'>"
                "</iframe><script>onmessage = ({ data }) => { document.body.dataset[data] = 1 }</script>"
                ).encode()
        cookie = f"visitor={visitor}" if visitor else COOKIE
        self._send(200, body, Content_Type="text/html; charset=utf-8", Set_Cookie=cookie + "; Path=/")

    def _file(self, name, **headers):
        self._send(200, content(name, self.server.size), Content_Type="application/octet-stream",
                   **({"Content_Disposition": f"attachment; filename*=UTF-8''{quote(name)}"} | headers))

    def _is_known(self):
        return (COOKIE in self.headers.get("Cookie", "")
                and "/page" in self.headers.get("Referer", ""))

    def do_GET(self):
        address = urlsplit(self.path)
        _, kind, *rest = address.path.split("/")
        name = rest[0] if rest else ""
        query = parse_qs(address.query)
        if kind == "page":
            self._page(query.get("visitor", [""])[0])
        elif kind == "frame":
            self._frame()
        elif kind == "open" or kind in OTHER_COOKIES and (
                OTHER_COOKIES[kind] in self.headers.get("Cookie", "")):
            self._file(name)
        elif kind == "stall":
            self.send_response(200)
            self.send_header("Content-Length", str(SIZE))
            self.end_headers()
            self.server.stopping.wait()
        elif kind == "type" and self._is_known():
            self._send(200, content(name), Content_Type="application/x-of-no-browser")
        elif kind == "file" and self._is_known():
            self._file(name)
        elif kind == "twice" and self._is_known():
            self._send(302, Location=f"/once/{name}")
        elif kind == "once":
            expires = int(time.time()) + 600
            self._send(307, Location=f"/signed/{name}?expires={expires}"
                                     f"&signature={signature(name, expires)}")
        elif kind == "signed" and query.get("signature") == [
                signature(name, query["expires"][0])] and float(query["expires"][0]) > time.time():
            self._file(name)
        else:
            self._send(403, b"not like this", Content_Type="text/plain")

    do_HEAD = do_GET

    def do_POST(self):
        body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        _, kind, name = self.path.split("/")
        if kind == "upload" or (self._is_known() and parse_qs(body.decode()).get("word")
                                == ["schön & gut"]):
            self._file(name)
        else:
            self._send(403, b"not like this", Content_Type="text/plain")


class SiteServer(ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, *_arguments):
        """A browser or Orlop was killed while it was served."""


class DownloadSite:
    def __init__(self, names, size=SIZE):
        self._server = SiteServer(("127.0.0.1", 0), Handler)
        self._server.names, self._server.size = names, size
        self._server.stopping = threading.Event()
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def url(self, path):
        return f"http://127.0.0.1:{self._server.server_port}{path}"

    def close(self):
        self._server.stopping.set()
        self._server.shutdown()
        self._server.server_close()
