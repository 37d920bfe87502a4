"""The status item in a panel, its menu, and the drop target, on a screen of their own."""
import os
import re
import unittest
from pathlib import Path

from support.bus import mock_interpreter
from support.case import SystemTest
from support.home import PROGRAMS, wait_until
from support.desktop import Desktop

PROGRAM = PROGRAMS / "orlop"
PARTNER = os.environ.get("ORLOP_DRAG_PARTNER", PROGRAMS / "orlop_drag_partner")
PARTNERS_WINDOW = (120, 80)
PANEL = Path(__file__).parent / "support" / "status_notifier.py"
ITEM = "org.kde.StatusNotifierItem"
TARGET = "Orlop Drop Target"
BY_HAND = ("-Auto-Start", "NO")
ABSENCE = "the desktop shows no status item; the window comes back"


@unittest.skipUnless(PROGRAM.exists(), "built without the desktop program")
class StatusItemTest(SystemTest):
    def setUp(self):
        super().setUp()
        self.desktop = Desktop("Orlop")
        self.addCleanup(self.desktop.close)

    def start_panel(self):
        panel = self.desktop.start(mock_interpreter(), PANEL)
        panel.hear("ready")
        return panel

    def start(self, *arguments):
        program = self.home.start(*BY_HAND, *arguments, program=PROGRAM,
                                  environment=self.desktop.environment)
        self.addCleanup(program.kill)
        return program

    def item(self, panel):
        """The bus name of the item that the panel shows."""
        return wait_until(lambda: re.search(r"^item (\S+)", panel.text(), re.M), 30, "the item")[1]

    def ask(self, item, prop):
        return self.desktop.bus.call(item, "/StatusNotifierItem",
                                     "org.freedesktop.DBus.Properties.Get", ITEM, prop)

    def do(self, item, method):
        self.desktop.bus.call(item, "/StatusNotifierItem", f"{ITEM}.{method}", "0", "0")

    def window(self):
        return self.desktop.find("frame", "Orlop")

    def wait_for_absence(self):
        """The log says once that no panel shows the item."""
        wait_until(lambda: ABSENCE in self.home.log_text(), 30, "the line in the log")
        self.assertEqual(self.home.log_text().count(ABSENCE), 1)

    def test_the_item_shows_totals_and_obeys_and_the_window_comes_back_without_it(self):
        panel = self.start_panel()
        self.start("-Application Mode", 1, "http://127.0.0.1:9/a.bin", "http://127.0.0.1:9/b.bin")
        item = self.item(panel)
        wait_until(lambda: "Orlop: 2 downloads" in self.ask(item, "ToolTip"), 30, "the totals")
        self.assertRegex(self.ask(item, "IconPixmap"), r"\(64, 64, ")
        self.assertIsNone(self.window(), "nothing comes forward by itself")
        self.desktop.move((700, 500))
        self.do(item, "Activate")
        # Menus without a window are not told to assistive technologies.
        wait_until(lambda: self.desktop.key("d") or self.window(), 30, "what D in the menu opens")
        self.desktop.wait_for_focus()
        self.desktop.key("ctrl+w")
        self.desktop.wait_until_gone("frame", "Orlop")
        self.assertEqual(self.home.log_text().count(ABSENCE), 0)
        panel.end()
        self.desktop.wait_for("frame", "Orlop")
        self.wait_for_absence()
        self.assertIsNone(self.desktop.find("frame", TARGET))
        self.item(self.start_panel())
        self.desktop.wait_for("frame", TARGET)

    def test_the_middle_button_pauses_and_resumes_all(self):
        panel = self.start_panel()
        self.serve("slow.bin", 4_000_000)
        self.start("-Application Mode", 2, self.server.url("/rate/100000/slow.bin"))
        item = self.item(panel)
        self.do(item, "SecondaryActivate")
        wait_until(lambda: self.home.partial_bytes() > 0, 30, "the first bytes")
        self.do(item, "SecondaryActivate")
        wait_until(lambda: self.home.queue()[0]["Paused"], 30, "the pause")
        self.do(item, "SecondaryActivate")
        wait_until(lambda: not self.home.queue()[0]["Paused"], 30, "the resumption")

    def test_without_a_panel_the_window_comes_up_by_itself(self):
        self.start("-Application Mode", 1)
        self.desktop.wait_for("frame", "Orlop")
        self.wait_for_absence()
        self.item(self.start_panel())
        self.wait_for_absence()

    def test_a_panel_that_never_answers_counts_as_none(self):
        self.start_panel().freeze()
        self.start("-Application Mode", 1)
        self.desktop.wait_for("frame", "Orlop")
        self.wait_for_absence()

    def target_at(self, axis, place):
        """The target, once it lies there. A slow window manager may tell of where it was before, so
        that nobody asks again."""
        def found():
            target = self.desktop.find("frame", TARGET)
            return target if target and target.frame[axis] == place else None
        return wait_until(found, 30, f"the drop target at {place}")

    def placed_target(self):
        return self.target_at(0, 1400 - 48)

    def test_the_drop_target_takes_addresses_springs_open_and_sticks_to_edges(self):
        self.start("-Drop Target", 1, "-Application Mode: Dock: Main Window Visible On Launch",
                   "NO")
        target = self.placed_target()
        self.assertEqual(target.frame[2:], (48, 48))
        self.desktop.screenshot("drop-target")
        # Dragged near the lower edge.
        self.desktop.press(target)
        self.desktop.glide(target.center, (600, 870))
        self.desktop.release()
        target = self.target_at(1, 900 - 48)
        self.assertTrue(560 < target.frame[0] < 600, target.frame)
        # A drag that rests on it brings the window up.
        partner = self.desktop.start(PARTNER, "http://127.0.0.1:9/dropped.bin")
        self.desktop.move(PARTNERS_WINDOW)
        partner.hear("ready")
        self.assertIsNone(self.window())
        self.desktop.drag_over(PARTNERS_WINDOW, target.center, self.window,
                               lambda: partner.has_said("pressed"))
        self.desktop.screenshot("drop-target-spring")
        self.desktop.release()
        partner.hear("done 1")
        wait_until(lambda: "dropped.bin" in str(self.home.queued_addresses()), 30, "the download")
        # By a click as well.
        self.desktop.wait_for_focus()
        self.desktop.key("ctrl+w")
        self.desktop.wait_until_gone("frame", "Orlop")
        self.desktop.click(target)
        self.desktop.wait_for("frame", "Orlop")

    def test_the_drop_target_refuses_what_holds_no_address(self):
        self.start("-Drop Target", 1)
        target = self.placed_target()
        partner = self.desktop.start(PARTNER, "mailto:somebody@a.example")
        self.desktop.move(PARTNERS_WINDOW)
        partner.hear("ready")
        plain = self.desktop.shades(target.frame)
        self.desktop.drag(PARTNERS_WINDOW, target.center,
                          lambda: self.desktop.shades(target.frame) != plain,
                          lambda: partner.has_said("pressed"))
        partner.hear("done 0")

    def test_the_drop_target_keeps_out_of_the_way_of_what_fills_the_screen(self):
        self.start("-Drop Target", 1)
        self.desktop.wait_for("frame", TARGET)
        self.desktop.wait_for_focus()
        self.desktop.key("F11")
        self.desktop.wait_until_gone("frame", TARGET)
        self.desktop.key("F11")
        self.desktop.wait_for("frame", TARGET)


if __name__ == "__main__":
    unittest.main()
