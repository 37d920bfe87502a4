"""Sleep, notifications and the launcher, on a bus of their own; and a desktop without any."""
import socket
import time
import unittest
from pathlib import Path

from support.bus import LOGIN, NOTIFICATIONS, PORTAL, Bus
from support.case import MIB, SystemTest
from support.home import PROGRAMS, wait_until

# A window before the user needs no notifications.
HIDDEN = ("-Application Mode: Dock: Main Window Visible On Launch", "NO")
DESKTOP = PROGRAMS / "orlop"


class DesktopServicesTest(SystemTest):
    def setUp(self):
        super().setUp()
        self.bus = Bus()
        self.addCleanup(self.bus.close)

    def prepare_for_sleep(self, begins):
        self.bus.emit(LOGIN, "org.freedesktop.login1.Manager", "PrepareForSleep", "b", begins)

    def test_downloads_are_paused_and_saved_before_sleep_and_go_on_after_it(self):
        self.bus.mock("logind", LOGIN)
        source = self.serve("night.bin", 2 * MIB)
        program = self.home.start("-Auto-Resume After Sleep: Delay", 0,
                                  self.server.url("/rate/1000000/night.bin"),
                                  environment=self.bus.environment)
        wait_until(lambda: self.home.partial_bytes() > 0, what="the first bytes")
        wait_until(lambda: self.bus.inhibitors() == ["idle block", "sleep:shutdown delay"],
                   what="both inhibitors")
        self.prepare_for_sleep("true")
        wait_until(lambda: self.bus.inhibitors() == [], what="leave to sleep")
        record, = self.home.queue()
        self.assertFalse(record["Paused"], "it goes on by itself even after a dead battery")
        self.assertTrue(Path(record["Resume Path"]).expanduser().name)
        asleep = self.home.partial_bytes()
        self.assertGreater(asleep, 0)
        self.assertLess(asleep, 2 * MIB)
        self.prepare_for_sleep("false")
        wait_until(lambda: "sleep:shutdown delay" in self.bus.inhibitors(), what="the next delay")
        self.assert_status(self.home.result(program), 0)
        self.assert_downloaded("night.bin", source)
        self.assertEqual(self.bus.inhibitors(), [])

    def test_desktops_with_a_clock_of_their_own_are_asked_to_stay_awake_meanwhile(self):
        request = f"{PORTAL[1]}/request/1"
        calls = self.bus.mock_method(PORTAL, "org.freedesktop.portal.Inhibit", "Inhibit",
                                     "sua{sv}", "o", f"ret = dbus.ObjectPath('{request}')")
        closed = self.bus.monitor("interface='org.freedesktop.portal.Request'")
        source = self.serve("awake.bin", MIB)
        program = self.home.start(self.server.url("/rate/1000000/awake.bin"),
                                  environment=self.bus.environment)
        asked = wait_until(lambda: [line for line in calls() if " Inhibit " in line],
                           what="the request")
        self.assertRegex(asked[0], r'Inhibit "" 4 .*"Downloads are going on\."')
        self.assert_status(self.home.result(program), 0)
        self.assert_downloaded("awake.bin", source)
        wait_until(lambda: f"path={request}; interface=org.freedesktop.portal.Request; "
                           "member=Close" in closed(), what="the end of the request")
        self.assertEqual(len([line for line in calls() if " Inhibit " in line]), 1)

    @unittest.skipUnless(DESKTOP.exists(), "built without the desktop program")
    def test_a_notification_server_that_begins_anew_hears_no_numbers_of_the_former(self):
        calls = self.bus.mock("notification_daemon", NOTIFICATIONS)
        for name in ("former", "later"):
            self.serve(f"{name}.bin", 1000)
        program = self.home.start(
            *HIDDEN, "-Coalesce User Notifications", "YES",
            self.server.url("/former.bin"), program=DESKTOP,
            environment={"QT_QPA_PLATFORM": "offscreen"} | self.bus.environment)
        wait_until(lambda: any('"Download Complete"' in line for line in calls()), what="the first")
        self.bus.end_last_mock(NOTIFICATIONS)
        calls = self.bus.mock("notification_daemon", NOTIFICATIONS)
        self.assert_status(self.home.run("add", self.server.url("/later.bin"),
                                         environment=self.bus.environment), 0)
        shown = wait_until(lambda: [line for line in calls() if " Notify " in line],
                           what="a notification")
        self.assertIn(' "Orlop" 0 ', shown[0])
        self.assert_status(self.home.interrupt(program), 0)

    @unittest.skipUnless(DESKTOP.exists(), "built without the desktop program")
    def test_notifications_and_the_launcher_tell_how_it_went(self):
        calls = self.bus.mock("notification_daemon", NOTIFICATIONS)
        launcher = self.bus.monitor("interface='com.canonical.Unity.LauncherEntry'")
        self.serve("a&b.bin", MIB // 2)
        result = self.run_desktop("-Auto-Quit", "YES", *HIDDEN,
                                  self.server.url("/rate/500000/a&b.bin"),
                                  environment=self.bus.environment)
        self.assert_status(result, 0)
        shown = [line for line in calls() if " Notify " in line]
        self.assertEqual(len(shown), 3, shown)
        for line, words in zip(shown, ((' "Added to Queue"', '"a&amp;b.bin"'),
                                       (' "Download Complete"', '"a&amp;b.bin"'),
                                       (' "Download Complete"', '"Done"'))):
            for word in words:
                self.assertIn(word, line)
        updates = launcher().split("signal ")
        self.assertTrue(all("application://com.tarnworks.Orlop.desktop" in update
                            for update in updates if "LauncherEntry" in update))
        self.assertRegex(launcher(), r'"progress-visible"\s+variant\s+boolean true')
        self.assertRegex(launcher(), r'"count"\s+variant\s+int64 1')
        self.assertRegex(updates[-1], r'"count-visible"\s+variant\s+boolean false')

    @unittest.skipUnless(DESKTOP.exists(), "built without the desktop program")
    def test_a_notification_shows_its_file_in_the_folder_as_long_as_somebody_is_there(self):
        calls = self.bus.mock("notification_daemon", NOTIFICATIONS, capabilities="body actions")
        shown = self.bus.monitor("interface='org.freedesktop.FileManager1'")
        self.serve("found.bin", 1000)
        program = self.home.start(
            *HIDDEN, self.server.url("/found.bin"), program=DESKTOP,
            environment={"QT_QPA_PLATFORM": "offscreen"} | self.bus.environment)
        wait_until(lambda: any("Show in Folder" in line for line in calls()), what="the button")
        for number in range(1, 4):
            self.bus.emit(NOTIFICATIONS, NOTIFICATIONS[0], "ActionInvoked", "us",
                          f"uint32 {number}", "'reveal'")
        wait_until(lambda: "found.bin" in shown(), what="the file manager's call")
        self.assert_status(self.home.interrupt(program), 0)
        wait_until(lambda: "Show in Folder" not in next(
            line for line in reversed(calls()) if "Complete" in line and "found.bin" in line),
            what="a notification without buttons")

    @unittest.skipUnless(DESKTOP.exists(), "built without the desktop program")
    def test_a_desktop_without_services_says_so_once(self):
        for name in ("one", "two"):
            self.serve(f"{name}.bin", 5000)
        nowhere = {"DBUS_SYSTEM_BUS_ADDRESS": "disabled:"}
        self.assert_status(self.run_desktop(
            "-Auto-Quit", "YES", *(self.server.url(f"/{name}.bin") for name in ("one", "two")),
            environment=nowhere), 0)
        self.assertEqual(self.home.finished(), ["one.bin", "two.bin"])
        log = "".join(path.read_text() for path in (self.home.root / "state").rglob("*")
                      if path.is_file())
        for complaint in ("the machine's sleep is not known of", "notifications are not shown"):
            self.assertEqual(log.count(complaint), 1, log)

    def run_desktop(self, *arguments, environment):
        return self.home.run(*arguments, program=DESKTOP,
                             environment={"QT_QPA_PLATFORM": "offscreen"} | environment)


class MuteBusTest(SystemTest):
    def assert_goes_on_without(self, mute):
        source = self.serve("unheard.bin", 1000)
        address = f"unix:path={mute.getsockname()}"
        begun = time.monotonic()
        self.assert_fetches(source, environment={"DBUS_SESSION_BUS_ADDRESS": address,
                                                 "DBUS_SYSTEM_BUS_ADDRESS": address})
        self.assertLess(time.monotonic() - begun, 3)
        self.assertIn("going on without the bus", self.home.log_text())

    def test_buses_that_take_connections_and_say_nothing(self):
        with socket.socket(socket.AF_UNIX) as mute:
            mute.bind(str(self.home.root / "bus"))
            mute.listen()
            self.assert_goes_on_without(mute)

    def test_buses_that_do_not_even_take_connections(self):
        with socket.socket(socket.AF_UNIX) as mute, socket.socket(socket.AF_UNIX) as first:
            mute.bind(str(self.home.root / "bus"))
            mute.listen(0)
            first.connect(mute.getsockname())
            self.assert_goes_on_without(mute)


if __name__ == "__main__":
    unittest.main()
