"""What other programs are told of the icon, over a bus of the test's own."""
import os
import re
import unittest

from support.bus import Bus
from support.case import SystemTest
from support.home import PROGRAMS, wait_until

PROGRAM = PROGRAMS / "orlop"
LISTENER = os.environ.get("ORLOP_ANNOUNCEMENT_LISTENER", PROGRAMS / "orlop_announcement_listener")
POSTED = "com.tarnworks.AIHAnnouncementNotification"
ADDRESSES = [f"http://127.0.0.1:9/{name}" for name in ("a", "b")]


@unittest.skipUnless(PROGRAM.exists(), "built without the desktop program")
class AnnouncementTest(SystemTest):
    def setUp(self):
        super().setUp()
        self.bus = Bus()
        self.addCleanup(self.bus.close)

    def start(self, *arguments, program=PROGRAM):
        process = self.home.start(*arguments, program=program, environment=self.bus.environment |
                                  {"QT_QPA_PLATFORM": "offscreen"})
        self.addCleanup(process.kill)
        return process

    def hear(self, listener, line):
        """Passes over all before the line."""
        for said in listener.stdout:
            if said.decode().strip() == line:
                return
        self.fail(f"{line!r} was not said")

    def emit(self, text):
        self.bus.send("/com/tarnworks/AIH", f"{POSTED}.Posted", text)

    def test_a_listener_sees_each_picture_and_one_that_comes_late_the_last(self):
        messages = self.bus.monitor(f"interface='{POSTED}'")
        early = self.start(program=LISTENER)
        self.hear(early, "ready")
        orlop = self.start("-Auto-Start", "NO", *ADDRESSES)
        self.hear(early, "com.tarnworks.Orlop shows 2")
        late = self.start(program=LISTENER)
        self.hear(late, "com.tarnworks.Orlop shows 2")
        for hostile in ("x", "{", '{"User":"me"}', "[" * 5000):
            self.emit(hostile)
        orlop.terminate()
        orlop.wait(30)
        again = self.start()
        self.hear(late, "com.tarnworks.Orlop shows 2")
        self.assertIsNone(again.poll())
        self.assertRegex(messages(), r'string "\{"Format":"1","Identifier":"com.tarnworks.Orlop",'
                         r'"Image":"(SUkq|TU0A)[A-Za-z0-9+/=]+","User":"[A-Za-z0-9+/]{27}="\}"')

    def test_who_wants_not_to_be_told_of_is_silent(self):
        messages = self.bus.monitor(f"interface='{POSTED}'")
        self.start("-com.tarnworks.AIHDisableAnnouncing", "YES", "-Auto-Start", "NO", *ADDRESSES)
        listener = self.start(program=LISTENER)
        self.hear(listener, "ready")
        wait_until(lambda: len(self.home.queue()) == 2, 30, "the queue")
        self.emit("the end")
        wait_until(lambda: "the end" in messages(), 30, "the end")
        self.assertEqual(len(re.findall("^signal .*Posted", messages(), re.M)), 1, messages())


if __name__ == "__main__":
    unittest.main()
