"""accessible_reader.py BUS PROGRAM: for each line on its standard input, prints what the program
tells assistive technologies at that moment, as one line of JSON. Run by the Python that has
python3-dbus."""
import json
import sys

import dbus

ACCESSIBLE = "org.a11y.atspi.Accessible"
PROPERTIES = "org.freedesktop.DBus.Properties"
STATES = {4: "checked", 8: "enabled", 12: "focused", 23: "selected", 25: "showing"}
# Beyond these the test has no interest.
MOST_CHILDREN, GREATEST_DEPTH = 60, 12


def states(node):
    words = node.GetState(dbus_interface=ACCESSIBLE)
    bits = int(words[0]) | int(words[1]) << 32
    return [name for bit, name in STATES.items() if bits >> bit & 1]


def frame(node):
    return [int(number) for number in node.GetExtents(
        dbus.UInt32(0), dbus_interface="org.a11y.atspi.Component")]


def described(bus, service, path, depth):
    """None: gone meanwhile or not to be seen."""
    node = bus.get_object(service, path, introspect=False)
    try:
        shown = states(node)
        if "showing" not in shown:
            return None
        children = node.GetChildren(dbus_interface=ACCESSIBLE)[:MOST_CHILDREN]
        answer = {"role": str(node.GetRoleName(dbus_interface=ACCESSIBLE)),
                  "name": str(node.Get(ACCESSIBLE, "Name", dbus_interface=PROPERTIES)),
                  "frame": frame(node), "states": shown}
    except dbus.DBusException:
        return None
    if depth == GREATEST_DEPTH:
        children = []
    found = (described(bus, *child, depth + 1) for child in children)
    return answer | {"children": [child for child in found if child]}


def main():
    session = dbus.bus.BusConnection(sys.argv[1])
    address = session.get_object("org.a11y.Bus", "/org/a11y/bus").GetAddress(
        dbus_interface="org.a11y.Bus")
    bus = dbus.bus.BusConnection(address)
    root = bus.get_object("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root",
                          introspect=False)
    print("ready", flush=True)
    for _ in sys.stdin:
        windows = []
        for service, path in root.GetChildren(dbus_interface=ACCESSIBLE):
            try:
                program = bus.get_object(service, path, introspect=False)
                if program.Get(ACCESSIBLE, "Name", dbus_interface=PROPERTIES) != sys.argv[2]:
                    continue
                children = program.GetChildren(dbus_interface=ACCESSIBLE)
            except dbus.DBusException:
                continue
            windows += [window for child in children
                        if (window := described(bus, *child, 0))]
        print(json.dumps(windows), flush=True)


main()
