"""A home folder of its own for the program under test, and ways to run it there."""
import hashlib
import os
import plistlib
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

PROGRAMS = Path(os.environ.get("ORLOP_BIN", Path(__file__).parents[3] / "build/dev/bin"))
TERMINAL = PROGRAMS / "orlop-terminal"
SANITIZED = bool(os.environ.get("ORLOP_SANITIZE"))
LONG = os.environ.get("ORLOP_LONG_TESTS", "") not in ("", "0")
# Generous: the machine may be busy with other tests.
DEADLINE = 60


def sha256(path):
    digest = hashlib.sha256()
    with open(path, "rb") as file:
        while block := file.read(1 << 20):
            digest.update(block)
    return digest.hexdigest()


def wait_until(condition, deadline=DEADLINE, what="the condition"):
    """Waits for something that another process brings about. `what`: or what tells it."""
    end = time.monotonic() + deadline
    while not (answer := condition()):
        if time.monotonic() > end:
            missing = what() if callable(what) else what
            raise AssertionError(f"{missing} did not come within {deadline} seconds")
        time.sleep(0.005)
    return answer


class Home:
    """Everything that the program reads from or writes to the user's folders."""

    def __init__(self, parent=None):
        self.root = Path(tempfile.mkdtemp(prefix="orlop-home-", dir=parent))
        self.root.chmod(0o755)
        self.downloads = self.root / "Downloads"
        self.support = self.root / "data/Orlop"
        for name in ("data", "config", "state", "cache", "runtime", "Downloads"):
            (self.root / name).mkdir(mode=0o700)
        (self.root / "config/user-dirs.dirs").write_text(
            'XDG_DOWNLOAD_DIR="$HOME/Downloads"\nXDG_DESKTOP_DIR="$HOME/Desktop"\n')
        self._processes = []

    def close(self):
        for process in self._processes:
            if process.poll() is None:
                process.kill()
            process.wait()
            for stream in (process.stdin, process.stdout, process.stderr):
                if stream:
                    stream.close()
        shutil.rmtree(self.root, ignore_errors=True)

    def environment(self, **more):
        kept = {name: os.environ[name] for name in ("PATH", "ASAN_OPTIONS", "TSAN_OPTIONS",
                                                    "UBSAN_OPTIONS") if name in os.environ}
        return kept | {
            "HOME": str(self.root),
            "LANG": "C.UTF-8",
            "XDG_DATA_HOME": str(self.root / "data"),
            "XDG_CONFIG_HOME": str(self.root / "config"),
            "XDG_STATE_HOME": str(self.root / "state"),
            "XDG_CACHE_HOME": str(self.root / "cache"),
            "XDG_RUNTIME_DIR": str(self.root / "runtime"),
            "DBUS_SESSION_BUS_ADDRESS": "disabled:",
        } | more

    def start(self, *arguments, environment=None, program=TERMINAL, **options):
        """A running program. Its output can be read when it has ended."""
        options = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE,
                   "stderr": subprocess.PIPE} | options
        process = subprocess.Popen([str(program), *map(str, arguments)],
                                   env=self.environment(**(environment or {})),
                                   cwd=self.root, **options)
        self._processes.append(process)
        return process

    def run(self, *arguments, text="", deadline=DEADLINE, **options):
        """Runs to the end, `text` on its standard input."""
        process = self.start(*arguments, stdin=subprocess.PIPE, **options)
        return self.result(process, text, deadline)

    @staticmethod
    def result(process, text="", deadline=DEADLINE):
        """Waits for the end. Answers the exit status and the two outputs."""
        output, errors = process.communicate(text.encode() if process.stdin else None,
                                             timeout=deadline)
        return subprocess.CompletedProcess(process.args, process.returncode,
                                           (output or b"").decode(), (errors or b"").decode())

    def interrupt(self, process, number=signal.SIGINT):
        process.send_signal(number)
        return self.result(process)

    def log_text(self):
        """The store of the log as it stands on disk."""
        return "".join(path.read_text()
                       for path in sorted((self.root / "state/Orlop/Log").glob("*.jsonl")))

    @property
    def queue_path(self):
        return self.support / "Queue.plist"

    def queue(self):
        """The records on disk; an unreadable file is an error."""
        if not self.queue_path.exists():
            return []
        return plistlib.loads(self.queue_path.read_bytes())

    def queued_addresses(self):
        return [record["URL"] for record in self.queue()]

    def write_queue(self, records):
        self.support.mkdir(parents=True, exist_ok=True)
        self.queue_path.write_bytes(plistlib.dumps(records))

    def partial_bytes(self):
        """How much of unfinished downloads lies in the downloads folder."""
        return sum(path.stat().st_size for path in self.downloads.glob("*.orlop/*")
                   # Beginning with a dot: metadata on its way to its name, gone the next moment.
                   if path.name[0] != "." and path.is_file()
                   and not path.name.endswith(".orlopinfo"))

    def finished(self):
        """The names of the files that are complete."""
        return sorted(path.name for path in self.downloads.iterdir() if path.is_file())

    def leftovers(self):
        """What a run has left behind beside finished files."""
        return sorted(str(path.relative_to(self.root)) for folder in
                      (self.downloads, self.support) if folder.exists()
                      for path in folder.rglob("*")
                      if path.suffix == ".orlop" or ".orlop" in path.name or path.name[0] == ".")
