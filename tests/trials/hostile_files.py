"""Files of the program's own that were written by somebody else, or by nobody in his right mind."""
import plistlib

from trial import MIB, Broken, Trial, end_of, new_home
from support.servers import Nginx, write_random

ODD = [b"", b"\0" * 5000, b"bplist00" + b"\xff" * 300, b"<plist><array>" * 5000,
       b"<?xml version='1.0'?><!DOCTYPE a [<!ENTITY b 'c'>]><plist><string>&b;</string></plist>",
       plistlib.dumps(7), plistlib.dumps({"URL": "http://127.0.0.1:1/"})]
VALUES = [7, -1, 1 << 62, True, "", "x" * 100_000, "/etc/passwd", "../../x", "~", [], {}, b"\0\xff",
          "file:///etc/passwd", "http://", 0.5]


class HostileFiles(Trial):
    kind = "hostile files"

    def __init__(self, seed):
        super().__init__(seed)
        self.server = Nginx()
        write_random(self.server.content / "file.bin", 2 * MIB, 1)

    def close(self):
        self.server.close()

    def spoil(self, path):
        """Bytes changed or cut off, other values, or something else altogether."""
        data = bytearray(path.read_bytes())
        kind = self.random.randrange(4)
        if kind == 0 or not data:
            return path.write_bytes(self.random.choice(ODD))
        if kind == 1:
            for _ in range(self.random.randint(1, 30)):
                data[self.random.randrange(len(data))] = self.random.randrange(256)
            return path.write_bytes(data)
        if kind == 2:
            return path.write_bytes(data[:self.random.randrange(len(data))])
        try:
            value = plistlib.loads(data)
        except Exception:  # It was spoilt before.
            return None
        record = self.random.choice(value) if isinstance(value, list) and value else value
        if isinstance(record, dict) and record:
            record[self.random.choice(sorted(record))] = self.random.choice(VALUES)
        return path.write_bytes(plistlib.dumps(value))

    def attempt(self):
        home = new_home()
        guard = home.root / "mine.txt"
        guard.write_text("mine")
        try:
            address = self.server.url("/rate/4000000/file.bin")
            process = home.start(*self.random.choice(((), ("-Acceleration: Enabled", "1"))), address)
            try:
                process.wait(self.random.uniform(0.15, 0.4))
            except Exception:
                home.interrupt(process)
            files = [path for folder in (home.support, home.root / "config", home.downloads)
                     for path in folder.rglob("*") if path.is_file() and path.suffix in
                     (".plist", ".orlopinfo", ".json", "") and path.name != "Queue.lock"]
            for path in self.random.sample(files, min(len(files), 2)):
                self.spoil(path)
            end_of(home, home.start(address), "after hostile files")
            if guard.read_text() != "mine":
                raise Broken("a file of the user's was written to")
        finally:
            home.close()
        return 1
