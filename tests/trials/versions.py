"""Servers whose file changes, that lie about ranges, or that stop in the middle."""
import hashlib
import re
import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

from trial import MIB, Broken, Trial, check_queue, end_of, new_home
from ways import ACCELERATED, APART
from support.home import sha256

LENGTHS = (3 * MIB, 3 * MIB, 3 * MIB + 1, 2 * MIB)


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *_):
        pass

    def do_GET(self):
        trial = self.server.trial
        with trial.lock:
            trial.maybe_change()
            number, lie = trial.version, trial.random.choice(trial.lies)
            cut = trial.random.randint(0, 3 * MIB) if trial.random.random() < trial.cuts else None
        body = trial.versions[number]
        first, last = 0, len(body) - 1
        asked = re.match(r"bytes=(\d+)-(\d*)$", self.headers.get("Range", ""))
        condition = self.headers.get("If-Range")
        tag = trial.tag(number)
        if asked and lie != "ignores ranges" and condition in (None, tag, trial.date(number)):
            first = min(int(asked[1]), last)
            last = min(int(asked[2] or last), last)
            if lie == "other offset" and first > 10:
                first -= 10
            self.send_response(206)
            total = len(body) + (5 if lie == "other total" else 0)
            self.send_header("Content-Range", f"bytes {first}-{last}/{total}")
        else:
            self.send_response(200)
            if lie == "range in a whole answer" and asked:
                self.send_header("Content-Range", f"bytes {first}-{last}/{len(body)}")
        part = body[first:last + 1]
        self.send_header("Accept-Ranges", "bytes")
        if tag:
            self.send_header("ETag", tag)
        if trial.date(number):
            self.send_header("Last-Modified", trial.date(number))
        is_chunked = lie == "chunked"
        self.send_header(*(("Transfer-Encoding", "chunked") if is_chunked else
                           ("Content-Length", str(len(part)))))
        self.end_headers()
        self.close_connection = True
        sent = part if cut is None else part[:cut]
        try:
            if is_chunked:
                self.wfile.write(b"%x\r\n" % max(len(part), 1) + (sent or b""))
                if len(sent) == len(part) and part:
                    self.wfile.write(b"\r\n0\r\n\r\n")
            else:
                self.wfile.write(sent)
        except OSError:
            pass


class Versions(Trial):
    kind = "versions, ranges and truncation"
    lies = ("", "", "", "ignores ranges", "other offset", "other total", "range in a whole answer",
            "chunked")

    def __init__(self, seed):
        super().__init__(seed)
        self.lock = threading.Lock()
        self.server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.server.trial = self
        self.server.daemon_threads = True
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        self.versions = [hashlib.shake_128(bytes([number])).digest(length)
                         for number, length in enumerate(LENGTHS)]
        self.wanted = {hashlib.sha256(body).hexdigest() for body in self.versions}
        self.version, self.changes, self.cuts, self.told = 0, 0.0, 0.0, "both"

    def close(self):
        self.server.shutdown()
        self.server.server_close()

    def tag(self, number):
        """What shows another version: nobody can tell apart what says nothing of itself."""
        return {"both": f'"{number}"', "tag": f'"{number}"', "weak": f'W/"{number}"'}.get(self.told)

    def date(self, number):
        return f"Mon, 0{number + 1} Jan 2024 10:00:00 GMT" if self.told in ("both", "date") else None

    def maybe_change(self):
        if self.random.random() < self.changes:
            self.version = self.random.randrange(len(self.versions))

    def attempt(self):
        self.told = self.random.choice(("both", "tag", "weak", "date"))
        self.changes = self.random.choice((0, 0.2, 0.6))
        self.cuts = self.random.choice((0.3, 0.7))
        settings = self.random.choice(((), ACCELERATED, ACCELERATED + APART))
        address = f"http://127.0.0.1:{self.server.server_port}/file.bin"
        home = new_home()
        try:
            for run in range(6):
                if run >= 4:
                    self.changes = self.cuts = 0
                end_of(home, home.start(*settings, address), self.told)
                check_queue(home, self.told)
                for name in home.finished():
                    if sha256(home.downloads / name) not in self.wanted:
                        raise Broken(f"{self.told}, {settings}: {name} is no version of the file")
                if home.finished():
                    break
        finally:
            home.close()
        return 1
