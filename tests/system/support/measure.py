"""What a whole process took."""
import json
import subprocess
import sys
from dataclasses import dataclass

# A process inherits the peak memory of the one that forks it, so a small one stands between.
LAUNCHER = """
import os, sys, time
began = time.monotonic()
child = os.fork()
if child == 0:
    os.execvp(sys.argv[1], sys.argv[1:])
status, usage = os.wait4(child, 0)[1:]
print([os.waitstatus_to_exitcode(status), time.monotonic() - began,
       usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024])
"""


@dataclass
class Measurement:
    """Seconds, seconds of CPU, peak memory in bytes."""
    status: int
    seconds: float
    cpu: float
    memory: int
    errors: str


def measure(words, environment, deadline=600):
    """Runs a program whose standard output nobody needs. Peaks below some 5 MiB are not seen."""
    launched = subprocess.run(
        [sys.executable, "-I", "-S", "-c", LAUNCHER, "/bin/sh", "-c", 'exec "$@" >/dev/null', "sh",
         *map(str, words)],
        stdin=subprocess.DEVNULL, capture_output=True, text=True, env=environment,
        timeout=deadline)
    return Measurement(*json.loads(launched.stdout), launched.stderr)
