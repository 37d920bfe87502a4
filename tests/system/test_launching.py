"""The program as a desktop starts it: by its entry, over the bus, with what it is to open, and by
the entry's actions."""
import re
import unittest

from support.case import MIB, SystemTest
from support.desktop import Desktop
from support.home import PROGRAMS, wait_until
from support.native_host import read_services_again

PROGRAM = PROGRAMS / "orlop"
SERVICE = ("com.tarnworks.Orlop", "/com/tarnworks/Orlop")


@unittest.skipUnless(PROGRAM.exists(), "built without the desktop program")
class LaunchingTest(SystemTest):
    def setUp(self):
        super().setUp()
        self.desktop = Desktop("Orlop")
        self.addCleanup(self.desktop.close)
        self.environment = self.home.environment(**self.desktop.environment)
        wrapper = self.home.root / "orlop"
        wrapper.write_text("#!/bin/sh\n" + "".join(
            f"export {name}='{value}'\n" for name, value in self.environment.items())
            + f"exec {PROGRAM} \"$@\"\n")
        wrapper.chmod(0o755)
        (self.desktop.bus.folder / "services/com.tarnworks.Orlop.service").write_text(
            f"[D-BUS Service]\nName={SERVICE[0]}\nExec={wrapper} --background\n")
        read_services_again(self.desktop.bus)
        self.addCleanup(self.end)

    def end(self):
        if self.desktop.bus.has_owner(SERVICE[0]):
            self.act("quit")
            wait_until(lambda: not self.desktop.bus.has_owner(SERVICE[0]), what="the end")

    def launch(self, *items):
        """As a click on the entry, or on a link or file that it is for."""
        return self.home.run("launch", SERVICE[0], *items, program="gapplication",
                             environment=self.desktop.environment)

    def act(self, action):
        """As a click on an action of the entry, where it is done without the bus."""
        return self.home.run(f"--{action}", program=PROGRAM, environment=self.desktop.environment)

    def statuses(self):
        answer = self.desktop.bus.call(*SERVICE, SERVICE[0] + ".List")
        return dict(re.findall(r"'address': <'[^']*\?(\w+)'.*?'status': <'(\w+)'", answer))

    def test_the_entry_starts_it_opens_what_it_is_for_and_has_its_actions(self):
        self.serve("slow.bin", 4 * MIB)
        slow = self.server.url("/rate/1000/slow.bin")
        for action in ("pause-all", "quit"):
            self.assert_status(self.act(action), 3)
        self.assert_status(self.launch(), 0)
        self.desktop.wait_for("frame")
        self.assert_status(self.launch(slow.replace("http", "orlop", 1) + "?link"), 0)
        request = self.home.root / "request one.obp"
        request.write_text('<plist version="1.0"><dict><key>DQOBPSourceURL</key>'
                           f"<string>{slow}?request</string></dict></plist>")
        self.assert_status(self.launch(request.as_uri()), 0)
        wait_until(lambda: set(self.statuses()) == {"link", "request"}, what="both")
        self.desktop.copy(f"look at {slow}?copied please")
        self.assert_status(self.act("add-from-clipboard"), 0)
        wait_until(lambda: "copied" in self.statuses(), what="the address in the clipboard")
        wait_until(lambda: set(self.statuses().values()) != {"paused"}, what="a start")
        self.assert_status(self.act("pause-all"), 0)
        self.assertEqual(set(self.statuses().values()), {"paused"})
        answer = self.desktop.bus.call(
            *SERVICE, "org.freedesktop.Application.ActivateAction", "nothing", "[]", "{}")
        self.assertEqual(answer, "", "there is no such action")
        self.assert_status(self.act("quit"), 0)
        wait_until(lambda: not self.desktop.bus.has_owner(SERVICE[0]), what="the end")

    def test_adding_from_the_clipboard_starts_it_if_need_be(self):
        source = self.serve("copied.bin", 5000)
        self.desktop.copy(self.server.url("/copied.bin"))
        program = self.home.start("--add-from-clipboard", program=PROGRAM,
                                  environment=self.desktop.environment)
        wait_until(lambda: self.home.finished() == ["copied.bin"], what="the file")
        self.assert_downloaded("copied.bin", source)
        self.assert_status(self.act("quit"), 0)
        self.assert_status(self.home.result(program), 0)


if __name__ == "__main__":
    unittest.main()
