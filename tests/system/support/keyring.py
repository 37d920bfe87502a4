"""A session bus with an unlocked secret store on it, in the home folder of a test."""
import shutil
import signal
import subprocess
import unittest

from .bus import Bus
from .home import wait_until

SERVICE = "org.freedesktop.secrets"


class Keyring:
    def __init__(self, home):
        if shutil.which("gnome-keyring-daemon") is None:
            raise unittest.SkipTest("gnome-keyring-daemon is not installed")
        self._bus = Bus(home.environment())
        self.environment = {"DBUS_SESSION_BUS_ADDRESS": self._bus.address}
        self._daemon = subprocess.Popen(
            ["gnome-keyring-daemon", "--foreground", "--unlock", "--components=secrets"],
            stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            env=home.environment(**self.environment))
        self._daemon.stdin.write(b"key to the keyring")
        self._daemon.stdin.close()
        # A call before it is there would make the bus start another, which stays locked.
        wait_until(lambda: self._bus.has_owner(SERVICE), what="the secret store")
        wait_until(self._is_unlocked, what="the unlocked secret store")

    def _is_unlocked(self):
        return "false" in self._bus.call(
            SERVICE, "/org/freedesktop/secrets/aliases/default",
            "org.freedesktop.DBus.Properties.Get", "org.freedesktop.Secret.Collection", "Locked")

    def freeze(self):
        """It answers nobody from now on."""
        self._daemon.send_signal(signal.SIGSTOP)

    def close(self):
        self._daemon.send_signal(signal.SIGCONT)
        self._daemon.terminate()
        self._daemon.wait()
        self._bus.close()
