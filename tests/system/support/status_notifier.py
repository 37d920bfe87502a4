"""status_notifier.py: a panel that shows status items: org.kde.StatusNotifierWatcher with a
host, on the session bus. Says which items come."""
import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

NAME = "org.kde.StatusNotifierWatcher"


INTROSPECTION = "org.freedesktop.DBus.Introspectable"
HEAD = f'<interface name="{NAME}">'
PROPERTY = '<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>'


class Watcher(dbus.service.Object):
    # Those who look at interfaces first do not find properties otherwise.
    @dbus.service.method(INTROSPECTION, out_signature="s", path_keyword="object_path",
                         connection_keyword="connection")
    def Introspect(self, object_path, connection):
        return super().Introspect(object_path, connection).replace(HEAD, HEAD + PROPERTY)

    @dbus.service.method(NAME, in_signature="s", sender_keyword="sender")
    def RegisterStatusNotifierItem(self, item, sender):
        print("item", sender, item, flush=True)

    @dbus.service.method("org.freedesktop.DBus.Properties", in_signature="ss", out_signature="v")
    def Get(self, _interface, name):
        return {"IsStatusNotifierHostRegistered": dbus.Boolean(True, variant_level=1),
                "ProtocolVersion": dbus.Int32(0, variant_level=1)}[name]

    @dbus.service.signal(NAME)
    def StatusNotifierHostRegistered(self):
        pass


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
name = dbus.service.BusName(NAME, bus)
watcher = Watcher(name, "/StatusNotifierWatcher")
loop = GLib.MainLoop()
print("ready", flush=True)
loop.run()
