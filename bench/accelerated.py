"""One file over several connections, beside the programs that do the same; and putting its parts
together beside `cat`."""
import os
import statistics
import subprocess

from support.home import TERMINAL, Home
from task import GB, MIB, Program, Task, clean_environment, measured, orlop

CHANNELS = 4


def accelerated(task, folder):
    return [*orlop(task, folder), "-Acceleration: Enabled", "YES",
            "-Acceleration: Channels", str(CHANNELS)]


class SplitStream(Task):
    """As fast as the server can."""

    def __init__(self, title, server, source):
        self.title, self.source = title, source
        self.items = [server.url(f"/{source.name}")]

    def programs(self):
        url, part = self.items[0], str(self.expected_bytes() // CHANNELS)
        count = str(CHANNELS)
        return [
            Program("aria2 -x4 -s4", lambda task, folder: [
                "aria2c", "-q", "-x", count, "-s", count, "--file-allocation=none", "-d", folder,
                "-o", "f", url]),
            Program("axel -n4", lambda task, folder: [
                "axel", "-q", "-n", count, "-o", folder / "f", url]),
            Program("wget2 in chunks", lambda task, folder: [
                "wget2", "-q", "--chunk-size", part, "--max-threads", count, "-O", folder / "f",
                url]),
            Program("orlop, 4 channels", accelerated),
        ]

    def expected_bytes(self):
        return self.source.stat().st_size

    def rows(self, programs):
        size = self.expected_bytes() / GB
        base = programs[0]
        for program in programs:
            seconds = program.median("seconds")
            yield (program.name, f"{size / seconds:.2f} GB/s",
                   f"{base.median('seconds') / seconds:.2f} x aria2",
                   f"{program.median('cpu') / size:.2f} CPU-s/GB",
                   f"{program.median('memory') / MIB:.0f} MiB")


class PacedStream(SplitStream):
    """From a server that gives each connection so many bytes a second."""

    def __init__(self, title, server, source, rate):
        super().__init__(title, server, source)
        self.items = [server.url(f"/rate/{rate}/{source.name}")]

    def programs(self):
        return [Program("orlop, 1 connection", orlop), *super().programs()]

    def rows(self, programs):
        quarter = programs[0].median("seconds") / CHANNELS
        for program in programs:
            seconds = program.median("seconds")
            yield (program.name, f"{seconds:.2f} s",
                   f"{seconds / quarter:.3f} of a quarter",
                   f"{program.median('cpu'):.2f} CPU-s")


class Fragments(SplitStream):
    """In how many pieces the file lies on the disk afterwards (`filefrag`)."""

    def programs(self):
        self.extents = {}
        separate = ["-Acceleration: Parts In Place", "NO"]
        return [
            Program("orlop, 1 connection", orlop),
            Program("orlop, parts in place", accelerated),
            Program("orlop, parts joined",
                    lambda task, folder: [*accelerated(task, folder), *separate]),
        ]

    def check(self, program, home):
        super().check(program, home)
        file = home.downloads / self.source.name
        told = subprocess.run(["filefrag", file], capture_output=True, text=True, check=True).stdout
        self.extents.setdefault(program.name, []).append(int(told.split(": ")[1].split()[0]))

    def rows(self, programs):
        for program in programs:
            extents = self.extents[program.name]
            yield (program.name, f"{statistics.median(extents):.0f} extents",
                   f"{min(extents)} to {max(extents)}", f"{program.median('seconds'):.2f} s")


class Joining(Task):
    """Of four parts that are complete."""

    def __init__(self, title, source):
        self.title, self.source = title, source

    def programs(self):
        return [Program("cat", None), Program("cat, synced", None), Program("orlop", None)]

    def run(self, rounds, parent):
        programs = self.programs()
        for _ in range(rounds):
            for program in programs:
                home = Home(parent)
                try:
                    parts = self.write_parts(home)
                    words = {"cat": self.cat(parts), "cat, synced": self.cat(parts, "; sync $0"),
                             "orlop": [TERMINAL, "-Downloads Folder", home.downloads]}
                    os.sync()
                    program.runs.append(measured(words[program.name],
                                                 clean_environment(**home.environment())))
                    joined = home.downloads / "f" if program.name == "orlop" else parts[0]
                    if joined.stat().st_size != self.source.stat().st_size:
                        raise RuntimeError(f"{program.name} joined {joined.stat().st_size} bytes")
                finally:
                    home.close()
        return programs

    @staticmethod
    def cat(parts, then=""):
        return ["/bin/sh", "-c", 'cat "$@" >> "$0"; rm "$@"' + then, *parts]

    def write_parts(self, home):
        size = self.source.stat().st_size // CHANNELS
        folder = home.downloads / "f.orlop"
        folder.mkdir()
        parts = [folder / "f"] + [folder / f"f.orlop-xf-{number}" for number in range(1, CHANNELS)]
        with open(self.source, "rb") as source:
            for part in parts:
                with open(part, "wb") as file:
                    remaining = size
                    while remaining:
                        remaining -= os.sendfile(file.fileno(), source.fileno(), None, remaining)
        os.setxattr(parts[0], "user.orlop.finishing", b"1")
        home.write_queue([{
            "URL": "http://127.0.0.1:9/f", "Response URL": "http://127.0.0.1:9/f", "Name": "f",
            "Paused": False, "Resume Path": str(parts[0]), "Expected Bytes": size * CHANNELS,
            "Acceleration Workers": [
                {"Target": str(part), "Start": number * size, "End": (number + 1) * size - 1}
                for number, part in enumerate(parts) if number]}])
        return parts

    def rows(self, programs):
        base = programs[0].median("seconds")
        for program in programs:
            yield (program.name, f"{program.median('seconds'):.2f} s",
                   f"{program.median('seconds') / base:.2f} x cat",
                   f"{program.median('cpu'):.2f} CPU-s")
