"""Stands for Orlop on the bus where a test needs one that hangs, dies or comes late. Keeps what it
was given in a file, as `ID ADDRESS` lines, and does what the file `mode` beside it says."""
import os
import sys
import time
from pathlib import Path

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME, OBJECT = "com.tarnworks.Orlop", "/com/tarnworks/Orlop"


class TooLate(dbus.DBusException):
    _dbus_error_name = NAME + ".Error.TooLate"


class StandIn(dbus.service.Object):
    def __init__(self, bus, folder):
        super().__init__(bus, OBJECT)
        self._folder = folder
        self._count = 0

    def _records(self):
        path = self._folder / "records"
        lines = path.read_text().splitlines() if path.exists() else []
        return dict(line.split(" ", 1) for line in lines)

    def _write(self, records):
        (self._folder / "records").write_text(
            "".join(f"{key} {address}\n" for key, address in records.items()))

    def _take(self, requests):
        """What becomes of each. Written once for all, for browsers wait only two seconds."""
        with open(self._folder / "requests", "a", encoding="utf-8") as file:
            file.writelines(repr(dbus_plain(request)) + "\n" for request in requests)
        mode_file = self._folder / "mode"
        mode = mode_file.read_text() if mode_file.exists() else ""
        if mode == "hang":
            time.sleep(3)
        if mode == "late":
            raise TooLate("too late")
        if mode == "refuse":
            return [("refused", "Not this one.")] * len(requests)
        records, answers = self._records(), []
        for request in requests:
            key = str(request["id"])
            answers.append(("known" if key in records else "saved", ""))
            records[key] = str(request["address"])
        self._write(records)
        if mode == "die":
            mode_file.write_text("")
            os._exit(1)
        return answers

    @dbus.service.method(NAME, in_signature="a{sv}", out_signature="ss")
    def HandOver(self, request):
        return self._take([request])[0]

    @dbus.service.method(NAME, in_signature="aa{sv}", out_signature="a(ss)")
    def HandOverAll(self, requests):
        return self._take(requests)

    @dbus.service.method(NAME, in_signature="s", out_signature="b")
    def Withdraw(self, key):
        records = self._records()
        records.pop(str(key), None)
        self._write(records)
        return True

    @dbus.service.method(NAME, in_signature="", out_signature="s")
    def BrowserFilter(self):
        return r'"\\.iso$"'

    @dbus.service.method(NAME, in_signature="u", out_signature="")
    def SetRunning(self, count):
        self._count = count
        self.PropertiesChanged(NAME, {"RunningCount": dbus.UInt32(count)}, [])

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
    def Get(self, _interface, _name):
        return dbus.UInt32(self._count)

    @dbus.service.signal(dbus.PROPERTIES_IFACE, signature="sa{sv}as")
    def PropertiesChanged(self, interface, changed, invalidated):
        pass


def dbus_plain(request):
    def plain(value):
        if isinstance(value, dbus.Array):
            return bytes(value)
        return {dbus.String: str, dbus.Boolean: bool}.get(type(value), int)(value)
    return {str(key): plain(value) for key, value in request.items()}


if __name__ == "__main__":
    DBusGMainLoop(set_as_default=True)
    session = dbus.SessionBus()
    owned = dbus.service.BusName(NAME, session, do_not_queue=True)
    stand_in = StandIn(session, Path(sys.argv[1]))
    GLib.MainLoop().run()
