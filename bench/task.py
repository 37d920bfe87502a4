"""What is measured: whole processes in turn, each in a home folder of its own."""
import os
import shutil
import statistics
from dataclasses import dataclass, field
from pathlib import Path

from support.home import TERMINAL, Home
from support.measure import measure

MEMORY = Path("/dev/shm")
GB = 1e9
MIB = 1 << 20


@dataclass
class Program:
    """`command(task, folder)` answers the words that carry out the task into the folder, or None
    if the program is not made for it."""
    name: str
    command: object
    environment: dict = field(default_factory=dict)
    runs: list = field(default_factory=list)

    def median(self, figure):
        return statistics.median(getattr(run, figure) for run in self.runs)


def measured(words, environment):
    run = measure(words, environment)
    if run.status != 0:
        raise RuntimeError(f"{words[0]} ended with {run.status}: {run.errors[-500:]}")
    return run


def clean_environment(**more):
    return {name: value for name, value in os.environ.items()
            if not name.lower().endswith("_proxy")} | more


def orlop(task, folder):
    return [TERMINAL, "-Downloads Folder", folder, "-Number Of Concurrent Downloads", "9",
            "-Number Of Concurrent Downloads Per Host", "0", *task.items]


class Task:
    """What every program does in turn. Answers how much came down, to be checked."""

    items = ()

    def programs(self):
        raise NotImplementedError

    def expected_bytes(self):
        raise NotImplementedError

    def rows(self, programs):
        """Heading and, for each program, its words and figures."""
        raise NotImplementedError

    def run(self, rounds, parent):
        programs = [program for program in self.programs()
                    if shutil.which(str(program.command(self, Path("/"))[0]))]
        for _ in range(rounds):
            for program in programs:
                home = Home(parent)
                try:
                    os.sync()
                    environment = clean_environment(**home.environment(**program.environment))
                    words = program.command(self, home.downloads)
                    program.runs.append(measured(words, environment))
                    self.check(program, home)
                finally:
                    home.close()
        return programs

    def check(self, program, home):
        received = sum(path.stat().st_size for path in home.downloads.rglob("*") if path.is_file())
        if received != self.expected_bytes():
            raise RuntimeError(f"{program.name} fetched {received} bytes")
