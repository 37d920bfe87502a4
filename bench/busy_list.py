"""What the desktop program's main thread takes while transfers run in a long list."""
import os
import subprocess
import time
from pathlib import Path

from support.home import PROGRAMS, Home, wait_until
from task import Program, Task, clean_environment

DESKTOP = PROGRAMS / "orlop"


class BusyList(Task):
    """Of `count` paused downloads and `running` that a server paces, in a window under Xvfb."""

    seconds = 20

    def __init__(self, title, server, source, count, running, rate):
        self.title, self.server, self.count, self.running = title, server, count, running
        self.rate = rate
        self.address = server.url(f"/rate/{rate}/{source.name}?")

    def programs(self):
        return [Program("orlop", None)]

    def run(self, rounds, parent):
        program, = self.programs()
        for _ in range(rounds):
            home = Home(parent)
            try:
                home.write_queue(
                    [{"URL": f"{self.address}{number}", "Paused": False}
                     for number in range(self.running)] +
                    [{"URL": f"http://host{number % 50}.invalid/file-{number}.bin", "Paused": True}
                     for number in range(self.count)])
                program.runs.append(self.shares(home))
            finally:
                home.close()
        return [program]

    def shares(self, home):
        """Of one core: the main thread's, and the whole program's."""
        screen = subprocess.Popen(
            ["Xvfb", "-displayfd", "1", "-screen", "0", "1280x1024x24", "-nolisten", "tcp"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        try:
            display = f":{screen.stdout.readline().decode().strip()}"
            process = home.start(
                "-Number Of Concurrent Downloads", self.running,
                "-Number Of Concurrent Downloads Per Host", 0, program=DESKTOP,
                environment=clean_environment(DISPLAY=display, QT_QPA_PLATFORM="xcb") |
                home.environment())
            wait_until(lambda: len(list(home.downloads.glob("*.orlop"))) == self.running,
                       what="all transfers")
            time.sleep(3)
            before = self.ticks(process.pid)
            time.sleep(self.seconds)
            if home.partial_bytes() < self.running * self.rate * self.seconds / 2:
                raise RuntimeError("the transfers did not run")
            spent = [after - earlier
                     for after, earlier in zip(self.ticks(process.pid), before)]
            process.kill()
            return [ticks / os.sysconf("SC_CLK_TCK") / self.seconds for ticks in spent]
        finally:
            screen.kill()
            screen.wait()
            screen.stdout.close()

    @staticmethod
    def ticks(pid):
        def of(path):
            fields = Path(path).read_text().rpartition(")")[2].split()
            return int(fields[11]) + int(fields[12])
        return of(f"/proc/{pid}/task/{pid}/stat"), of(f"/proc/{pid}/stat")

    def rows(self, programs):
        for program in programs:
            for main, whole in program.runs:
                yield (program.name, f"{main:.1%} of a core", "the main thread",
                       f"{whole:.1%}", "the program")
