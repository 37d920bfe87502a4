"""A session bus with an unlocked secret store on it, in the home folder of a test."""
import shutil
import subprocess
import unittest

from .home import wait_until


class Keyring:
    def __init__(self, home):
        for program in ("dbus-daemon", "gnome-keyring-daemon", "gdbus"):
            if shutil.which(program) is None:
                raise unittest.SkipTest(f"{program} is not installed")
        self._home = home
        self._processes = []
        bus = self._start("dbus-daemon", "--session", "--nofork", "--print-address=1")
        self.environment = {"DBUS_SESSION_BUS_ADDRESS": bus.stdout.readline().decode().strip()}
        daemon = self._start("gnome-keyring-daemon", "--foreground", "--unlock",
                             "--components=secrets")
        daemon.stdin.write(b"key to the keyring")
        daemon.stdin.close()
        wait_until(self._is_unlocked, what="the secret store")

    def _start(self, *words):
        process = subprocess.Popen(words, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   stderr=subprocess.DEVNULL,
                                   env=self._home.environment(**getattr(self, "environment", {})))
        self._processes.append(process)
        return process

    def _is_unlocked(self):
        asked = subprocess.run(
            ["gdbus", "call", "--session", "-d", "org.freedesktop.secrets",
             "-o", "/org/freedesktop/secrets/aliases/default",
             "-m", "org.freedesktop.DBus.Properties.Get",
             "org.freedesktop.Secret.Collection", "Locked"],
            env=self._home.environment(**self.environment), capture_output=True, text=True)
        return "false" in asked.stdout

    def close(self):
        for process in reversed(self._processes):
            process.terminate()
            process.wait()
            for stream in (process.stdin, process.stdout):
                stream.close()
