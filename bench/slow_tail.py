#!/usr/bin/env python3
"""bench/slow_tail.py [--region] [--size MIB] [--rate MIB]: the film of a file over four connections,
one of which gets a tenth of what the others get: what each brought in each half second, and how the
time compares with the ideal. With --region it is the last quarter of the file that is slow, whoever
asks for it. Runs the release build."""
import argparse
import os
import re
import socketserver
import sys
import threading
import time
from http.server import BaseHTTPRequestHandler
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
os.environ.setdefault("ORLOP_BIN", str(ROOT / "build/release/bin"))
sys.dont_write_bytecode = True
sys.path[:0] = [str(ROOT / "tests/system"), str(ROOT / "bench")]

from accelerated import CHANNELS  # noqa: E402
from support.home import TERMINAL, Home  # noqa: E402
from task import MEMORY, MIB, clean_environment, measured  # noqa: E402

SLOWNESS = 10
STEP = 0.02
FRAME = 0.5


class PacedServer(socketserver.ThreadingMixIn, socketserver.TCPServer):
    """Gives each connection `rate` bytes a second, and what is slow a tenth of it."""
    daemon_threads = allow_reuse_address = True

    def __init__(self, content, rate, is_region):
        super().__init__(("127.0.0.1", 0), Handler)
        self.content, self.rate, self.is_region = content, rate, is_region
        self.lock, self.connections, self.sent = threading.Lock(), 0, []

    def rate_at(self, connection, offset):
        is_slow = (offset >= len(self.content) * 3 // 4 if self.is_region else connection == 1)
        return self.rate // SLOWNESS if is_slow else self.rate


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def setup(self):
        super().setup()
        with self.server.lock:
            self.number = self.server.connections
            self.server.connections += 1

    def do_GET(self):
        content, begin = self.server.content, 0
        end = len(content)
        asked = re.fullmatch(r"bytes=(\d+)-(\d*)", self.headers.get("Range", ""))
        self.send_response(206 if asked else 200)
        if asked:
            begin, end = int(asked[1]), int(asked[2]) + 1 if asked[2] else end
            self.send_header("Content-Range", f"bytes {begin}-{end - 1}/{len(content)}")
        self.send_header("Accept-Ranges", "bytes")
        self.send_header("ETag", '"film"')
        self.send_header("Content-Length", str(end - begin))
        self.end_headers()
        due = time.monotonic()
        while begin < end:
            count = min(max(int(self.server.rate_at(self.number, begin) * STEP), 1), end - begin)
            try:
                self.wfile.write(content[begin:begin + count])
            except OSError:
                return
            with self.server.lock:
                self.server.sent.append((time.monotonic(), self.number, count))
            begin += count
            due += STEP
            time.sleep(max(due - time.monotonic(), 0))

    def log_message(self, *_):
        pass


def film(server):
    """Rows of MiB a second, a column for each connection that brought something."""
    began = server.sent[0][0]
    frames = {}
    for moment, number, count in server.sent:
        frame = frames.setdefault(int((moment - began) / FRAME), {})
        frame[number] = frame.get(number, 0) + count
    numbers = sorted({number for frame in frames.values() for number in frame})
    print("  time  " + "".join(f"  conn {number}" for number in numbers) + "   in all")
    for index in sorted(frames):
        rates = [frames[index].get(number, 0) / FRAME / MIB for number in numbers]
        print(f"  {index * FRAME:4.1f} s" + "".join(f"{rate:8.2f}" for rate in rates) +
              f"{sum(rates):9.2f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--region", action="store_true")
    parser.add_argument("--size", type=int, default=64, help="MiB, 64 if not given")
    parser.add_argument("--rate", type=int, default=4, help="MiB a second and connection")
    options = parser.parse_args()
    server = PacedServer(os.urandom(options.size * MIB), options.rate * MIB, options.region)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    home = Home(MEMORY)
    try:
        run = measured(
            [TERMINAL, "-Downloads Folder", home.downloads, "-Acceleration: Enabled", "YES",
             "-Acceleration: Channels", CHANNELS,
             f"http://127.0.0.1:{server.server_address[1]}/film.bin"],
            clean_environment(**home.environment()))
        if (home.downloads / "film.bin").read_bytes() != server.content:
            raise RuntimeError("the file differs")
    finally:
        home.close()
        server.shutdown()
    film(server)
    fast = options.size / options.rate
    ideal = (fast * 3 / 4 / CHANNELS + fast / 4 * SLOWNESS / CHANNELS if options.region
             else fast / (CHANNELS - 1 + 1 / SLOWNESS))
    print(f"{run.seconds:.2f} s, ideal {ideal:.2f} s: {run.seconds / ideal:.3f}")


if __name__ == "__main__":
    main()
