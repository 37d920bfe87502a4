"""A message bus of its own, with mocks of the desktop's services on it (python3-dbusmock)."""
import json
import re
import shutil
import signal
import subprocess
import sys
import tempfile
from pathlib import Path

from .home import wait_until

# No service but those that are named here is started over a bus of a test: what else is installed
# on a machine, a notification daemon or a portal, would meddle.
SERVICES = Path("/usr/share/dbus-1/services")
STARTED_OVER_IT = ("org.a11y.Bus.service",)
CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:path={folder}/bus</listen>
{services}<policy context="default">
<allow user="*"/><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/>
<allow own="*"/></policy></busconfig>"""

LOGIN = ("org.freedesktop.login1", "/org/freedesktop/login1")
NOTIFICATIONS = ("org.freedesktop.Notifications", "/org/freedesktop/Notifications")
PORTAL = ("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop")


def mock_interpreter():
    """The Python that has python3-dbusmock, which is Debian's own."""
    for python in (sys.executable, "/usr/bin/python3"):
        if subprocess.run([python, "-c", "import dbusmock"], capture_output=True,
                          check=False).returncode == 0:
            return python
    raise AssertionError("python3-dbusmock is not installed")


class Bus:
    """Stands for both the session's and the system's bus. `environment` is that of the services
    which are started over it; those of its data folder are, too."""

    def __init__(self, environment=None):
        self._processes = []
        self._folder = tempfile.TemporaryDirectory(prefix="orlop-bus-")
        self.folder = Path(self._folder.name)
        (self.folder / "services").mkdir()
        for service in STARTED_OVER_IT:
            if (SERVICES / service).exists():
                shutil.copy(SERVICES / service, self.folder / "services")
        folders = [self.folder / "services"]
        if environment and "XDG_DATA_HOME" in environment:
            folders.append(Path(environment["XDG_DATA_HOME"]) / "dbus-1/services")
        services = "".join(f"<servicedir>{folder}</servicedir>" for folder in folders)
        (self.folder / "configuration").write_text(
            CONFIGURATION.format(folder=self.folder, services=services))
        daemon = self._start("dbus-daemon", "--nofork", "--print-address", "--config-file",
                             self.folder / "configuration", stdout=subprocess.PIPE,
                             env=environment)
        self.address = daemon.stdout.readline().decode().strip()
        self.environment = {"DBUS_SESSION_BUS_ADDRESS": self.address,
                            "DBUS_SYSTEM_BUS_ADDRESS": self.address}

    def _start(self, *arguments, **options):
        process = subprocess.Popen([str(argument) for argument in arguments],
                                   **({"stderr": subprocess.DEVNULL} | options))
        self._processes.append(process)
        return process

    def silence(self):
        """It takes what comes and answers nobody from now on."""
        self._processes[0].send_signal(signal.SIGSTOP)

    def close(self):
        for process in reversed(self._processes):
            process.kill()
            process.wait()
            if process.stdout:
                process.stdout.close()
        self._folder.cleanup()

    def mock(self, template, service, **parameters):
        """Runs a mock of a template with these parameters. Answers a function that gives the calls
        it has had so far, a line each."""
        return self._mock(service, "--template", template, "--parameters", json.dumps(parameters))

    def mock_method(self, service, interface, name, takes, answers, code):
        """Runs a mock with a single method (AddMethod of dbusmock). Answers what `mock` does."""
        calls = self._mock(service, *service, interface)
        self.call(*service, "org.freedesktop.DBus.Mock.AddMethod", interface, name, takes, answers,
                  code)
        return calls

    def _mock(self, service, *what):
        log = self.folder / f"mock-{len(self._processes)}"
        self._start(mock_interpreter(), "-m", "dbusmock", "--session", "--logfile", log, *what,
                    env=self.environment | {"PATH": "/usr/bin:/bin"})
        wait_until(lambda: self.has_owner(service[0]), what=service[0])
        return lambda: log.read_text().splitlines() if log.exists() else []

    def end_last_mock(self, service):
        process = self._processes.pop()
        process.kill()
        process.wait()
        wait_until(lambda: not self.has_owner(service[0]), what="its end")

    def has_owner(self, name):
        return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                         "org.freedesktop.DBus.NameHasOwner", name) == "(true,)"

    def call(self, destination, path, method, *arguments):
        """What `gdbus call` answers, in its own notation."""
        result = subprocess.run(
            ["gdbus", "call", "--address", self.address, "--dest", destination,
             "--object-path", path, "--method", method, *arguments],
            capture_output=True, text=True, check=False)
        return result.stdout.strip()

    def send(self, path, signal, *texts):
        """A signal from nobody in particular."""
        subprocess.run(["dbus-send", f"--bus={self.address}", "--type=signal", path, signal,
                        *(f"string:{text}" for text in texts)], capture_output=True, check=True)

    def emit(self, service, interface, signal, signature, *arguments):
        self.call(*service, "org.freedesktop.DBus.Mock.EmitSignal", interface, signal, signature,
                  "[" + ", ".join(f"<{argument}>" for argument in arguments) + "]")

    def inhibitors(self):
        """What is held back at the moment, as "WHAT MODE"."""
        held = self.call(*LOGIN, "org.freedesktop.login1.Manager.ListInhibitors")
        return sorted(" ".join(lock) for lock in
                      re.findall(r"\('([^']*)', 'Orlop', '[^']*', '([^']*)'", held))

    def monitor(self, rule):
        """Answers a function that gives all messages that match, as `dbus-monitor` prints them."""
        log = Path(self._folder.name) / "monitor"
        with open(log, "wb") as output:
            self._start("dbus-monitor", "--address", self.address, rule, stdout=output)
        wait_until(lambda: "NameAcquired" in log.read_text(), what="the monitor")
        return log.read_text
