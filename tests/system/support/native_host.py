"""The browser's side of native messaging, and a bus that starts a given program as Orlop."""
import json
import os
import select
import struct
import time
from pathlib import Path

from .bus import Bus
from .home import DEADLINE, PROGRAMS

HOST = PROGRAMS / "orlop-browser"
STAND_IN = Path(__file__).with_name("orlop_stand_in.py")
EXTENSION = "orlop@tarnworks.com"


def bus_with_service(home, *command):
    """A bus on which a call to Orlop starts that command."""
    bus = Bus(home.environment())
    (bus.folder / "services/com.tarnworks.Orlop.service").write_text(
        "[D-BUS Service]\nName=com.tarnworks.Orlop\nExec=" + " ".join(map(str, command)) + "\n")
    read_services_again(bus)
    return bus


def read_services_again(bus):
    bus.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.ReloadConfig")


class NativeHost:
    def __init__(self, home, environment, caller=("/x/com.tarnworks.orlop.json", EXTENSION)):
        self.process = home.start(*caller, program=HOST, environment=environment,
                                  stdin=-1, stdout=-1, stderr=-1)
        self._number = 0
        self._bytes = b""

    def send_bytes(self, data):
        self.process.stdin.write(data)
        self.process.stdin.flush()

    def send(self, message):
        data = message if isinstance(message, bytes) else json.dumps(message).encode()
        self.send_bytes(struct.pack("=I", len(data)) + data)

    def read(self, deadline=DEADLINE):
        """The next message; nothing: the host has ended."""
        end = time.monotonic() + deadline
        while True:
            if len(self._bytes) >= 4:
                length, = struct.unpack("=I", self._bytes[:4])
                if len(self._bytes) >= 4 + length:
                    data, self._bytes = self._bytes[4:4 + length], self._bytes[4 + length:]
                    return json.loads(data)
            ready, _, _ = select.select([self.process.stdout], [], [],
                                        max(0, end - time.monotonic()))
            if not ready:
                raise AssertionError("the host said nothing")
            data = os.read(self.process.stdout.fileno(), 1 << 16)
            if not data:
                if self._bytes:
                    raise AssertionError(f"half a message at the end: {self._bytes}")
                return None
            self._bytes += data

    def ask(self, do, **fields):
        """The answer to a call, without its number; events before it are dropped."""
        self._number += 1
        self.send({"call": self._number, "do": do} | fields)
        while (answer := self.read()) is not None:
            if answer.get("call") == self._number:
                return {name: value for name, value in answer.items() if name != "call"}
        raise AssertionError("the host has ended")

    def hand_over(self, key, within=2000, **fields):
        request = {"id": key, "address": "http://127.0.0.1/x.bin"} | fields
        return self.ask("handOver", within=within, request=request)["outcome"]
