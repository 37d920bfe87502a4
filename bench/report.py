"""What a run of the benchmarks says: on the terminal, and as a page of the docs."""
import os
import platform
import statistics
import subprocess
import time
from pathlib import Path

INTRODUCTION = """# Performance

Written by `scripts/bench --write-docs`; do not edit. Whole processes in turn against an nginx on
loopback, each in a home folder of its own, {rounds} rounds, medians. "Spread" is how far the slowest
round lies above the fastest, in percent of the median: differences below that of both rows say
nothing.

{machine}
"""


def machine():
    words = dict(line.split(":", 1) for line in
                 subprocess.run(["lscpu"], capture_output=True, text=True, check=True,
                                env=os.environ | {"LC_ALL": "C"}).stdout.splitlines()
                 if ":" in line)
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") >> 30
    busy = os.getloadavg()[0]
    linux = ".".join(platform.release().split(".")[:2])
    return (f"{time.strftime('%Y-%m-%d')}: {words['Model name'].strip()}, {os.cpu_count()} "
            f"processors, {memory} GiB, Linux {linux}; load when it began: {busy:.1f}.")


def spread(program):
    seconds = [run.seconds for run in program.runs if hasattr(run, "seconds")]
    if len(seconds) < 2:
        return ""
    return f"{(max(seconds) - min(seconds)) / statistics.median(seconds) * 100:.0f} %"


class Report:
    def __init__(self, rounds):
        self.text = INTRODUCTION.format(rounds=rounds, machine=machine())

    def add(self, task, programs):
        rows = [(*row, spread(program)) for program, row in zip(programs, task.rows(programs))]
        self.print_table(task.title, rows)
        # Figures without a heading say by their unit what they are.
        width = len(rows[0])
        lines = [("program", *[""] * (width - 2), "spread"), (":--", *["--:"] * (width - 1)), *rows]
        self.text += f"\n## {task.title}\n\n" + "".join(
            "| " + " | ".join(line) + " |\n" for line in lines)

    @staticmethod
    def print_table(title, rows):
        print(f"\n{title}")
        widths = [max(map(len, column)) for column in zip(*rows)]
        for row in rows:
            name, *others = row
            print("  " + name.ljust(widths[0]) + "  " +
                  "  ".join(text.rjust(width) for text, width in zip(others, widths[1:])),
                  flush=True)

    def write(self, path: Path):
        path.write_text(self.text)
