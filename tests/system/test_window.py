"""The desktop program in a real window, with the hands and eyes of a user: pointer, keys, what is
on the screen and what assistive technologies are told. Screenshots of each state are kept."""
import itertools
import os
import plistlib
import unittest

from support.case import MIB, SystemTest
from support.desktop import Desktop
from support.home import PROGRAMS, wait_until

PROGRAM = PROGRAMS / "orlop"
PARTNER = os.environ.get("ORLOP_DRAG_PARTNER", PROGRAMS / "orlop_drag_partner")
PARTNERS_WINDOW = (120, 80)

LETTERS = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
ACCENTED = "åƀçđéƒğĥíĵķĺɱñöþɋŕšţûṽŵẋýžÅƁÇĐÉƑĞĤÍĴĶĹṀÑÖÞɊŔŠŢÛṼŴẊÝŽ"


def pseudo(text):
    """As the program's made-up language for tests says it."""
    return text.translate(str.maketrans(LETTERS, ACCENTED)) + "·" * (len(text) // 4 + 1)


@unittest.skipUnless(PROGRAM.exists(), "built without the desktop program")
class WindowTest(SystemTest):
    is_mirrored, list_name = False, "Downloads"

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.slow = cls.serve("slow.iso", 8 * MIB)
        cls.serve("dropped.txt", 1000)
        cls.quick = cls.serve("quick.pdf", 20_000)
        for number in (1, 2):
            cls.serve(f"part-{number}.zip", 10_000, number)

    def use(self, shots, *arguments, **options):
        """A desktop of its own; `shots` begins the names of its screenshots."""
        self.shots, self.arguments = shots, arguments
        self.desktop = Desktop("Orlop", **options)
        self.addCleanup(self.desktop.close)
        self.addCleanup(self.shoot, "last")

    def shoot(self, name):
        self.desktop.screenshot(f"{self.shots}-{name}")

    def start(self, *addresses):
        program = self.home.start(*self.arguments, *addresses, program=PROGRAM,
                                  environment=self.desktop.environment)
        self.desktop.wait_for_focus()
        return program

    def wait_for_first_rows(self, *names):
        """With the first rows the window springs, a little too far and back."""
        self.wait_for_rows(*names)
        wait_until(lambda: len({self.desktop.find("frame").frame for _ in range(5)}) == 1, 30,
                   "the window's rest")

    def slow_address(self):
        return self.server.url("/rate/20000/slow.iso")

    def setting(self, key):
        path = self.home.root / "config/Orlop/com.tarnworks.Orlop.plist"
        return plistlib.loads(path.read_bytes()).get(key) if path.exists() else None

    def wait_for_setting(self, key, value):
        wait_until(lambda: self.setting(key) == value, 30, f"{key} on disk")

    def rows(self):
        """The names in the list, in order."""
        rows = self.desktop.find("list", self.list_name)
        return [] if rows is None else [row.name.split(",")[0] for row in rows.children]

    def wait_for_rows(self, *names):
        wait_until(lambda: self.rows() == list(names), 30, f"the rows {names}")

    def row(self, name):
        return wait_until(lambda: next(
            (node for node in self.desktop.nodes() if node.role == "list item"
             and node.name.startswith(f"{name},")), None), 30, f"the row {name}")

    def wait_for_state(self, name, state):
        return wait_until(lambda: state in self.row(name).name, 30, f"{name}: {state}")

    def on_row(self, name, units):
        """A place so many units from the leading edge of the row, or the trailing if negative."""
        x, y, width, height = self.row(name).frame
        from_left = (units > 0) != self.is_mirrored
        distance = round(abs(units) * self.desktop.scale)
        return x + distance if from_left else x + width - distance, y + height // 2

    def first_button(self, name):
        return self.on_row(name, -(12 + 18 + 7))

    def icon(self, name):
        return self.on_row(name, 18)

    def tremble(self, place, until):
        """Moves the pointer about a place."""
        places = itertools.cycle(self.desktop.about(place))
        wait_until(lambda: self.desktop.move(next(places)) or until(), 30, f"an effect at {place}")

    def use_partner(self, *addresses):
        partner = self.desktop.start(PARTNER, *addresses)
        self.tremble(PARTNERS_WINDOW, lambda: partner.has_said("ready"))
        return partner


class WholeUseTest(WindowTest):
    def test_from_the_first_start_to_the_last_quit(self):
        self.use("light")
        program = self.start()
        self.shoot("empty")
        self.assert_all_controls_have_names()
        self.paste_addresses()
        self.enter_addresses()
        self.drop_addresses()
        self.pause_and_resume()
        self.filter_rows()
        self.sort_rows()
        self.reorder_rows()
        self.desktop.key("ctrl+comma")
        self.define_rule()
        self.drag_file_out()
        self.remove_and_clear()
        self.quit_while_downloading(program)
        self.start_again()

    def assert_all_controls_have_names(self):
        interactive = ("push button", "check box", "radio button", "text", "combo box", "list")
        nameless = [node for node in self.desktop.nodes()
                    if node.role in interactive and not node.name]
        # The sign in the filter field is no button of its own.
        field = self.desktop.find("text", "Filter").frame
        self.assertEqual([node for node in nameless if not (
            field[0] <= node.center[0] < field[0] + field[2])], [])

    def paste_addresses(self):
        self.desktop.copy(f"{self.slow_address()}\n{self.server.url('/quick.pdf')}\n")
        self.desktop.key("ctrl+v")
        self.wait_for_first_rows("slow.iso", "quick.pdf")
        self.wait_for_state("quick.pdf", "Complete")
        self.assert_downloaded("quick.pdf", self.quick)
        self.wait_for_state("slow.iso", "Downloading")
        self.shoot("running")

    def enter_addresses(self):
        self.desktop.key("ctrl+n")
        panel = self.desktop.wait_for_dialog("Add Addresses")
        self.desktop.key("ctrl+a")
        self.desktop.type(self.server.url("/status/404"))
        self.desktop.key("Return")
        self.desktop.type(self.server.url("/part-{1-2}.zip"))
        self.shoot("panel")
        self.desktop.key("ctrl+Return")
        self.desktop.wait_until_gone("dialog", panel.name)
        self.wait_for_rows("slow.iso", "quick.pdf", "404.html", "part-1.zip", "part-2.zip")
        self.wait_for_state("404.html", "Aborted")
        self.wait_for_state("part-2.zip", "Complete")

    def drop_addresses(self):
        before = self.rows()
        self.desktop.hold("shift")
        partner = self.drag_in("unwanted.txt")
        self.desktop.wait_for_dialog("Choose Folder")
        # Not before: what is dropped is asked of it afterwards.
        partner.end()
        self.desktop.let_go("shift")
        self.shoot("choose-folder")
        self.desktop.key("Escape")
        self.desktop.wait_until_gone("dialog", "Choose Folder")
        self.wait_for_rows(*before)
        self.drag_in("dropped.txt")
        self.wait_for_rows(*before, "dropped.txt")

    def drag_in(self, name):
        partner = self.use_partner(self.server.url(f"/rate/1/{name}"))
        self.desktop.drag(PARTNERS_WINDOW, self.desktop.find("list", "Downloads").center,
                          lambda: partner.has_said("offered 1"),
                          lambda: partner.has_said("pressed"))
        return partner

    def pause_and_resume(self):
        self.desktop.click(self.first_button("slow.iso"))
        self.wait_for_state("slow.iso", "Paused")
        self.desktop.click(self.first_button("slow.iso"))
        self.wait_for_state("slow.iso", "Downloading")
        # Pressed, and left again before letting go: nothing.
        self.desktop.press(self.first_button("slow.iso"))
        self.shoot("pressed")
        self.desktop.move(self.desktop.find("label").center)
        self.desktop.release()
        self.desktop.click(self.row("404.html"))
        self.assertIn("Downloading", self.row("slow.iso").name)

    def filter_rows(self):
        before = self.rows()
        self.desktop.key("ctrl+f")
        self.desktop.type("part")
        self.wait_for_rows("part-1.zip", "part-2.zip")
        self.desktop.click(self.desktop.wait_for("check box", "Search: URL"))
        self.desktop.type("-2")
        self.wait_for_rows("part-2.zip")
        self.wait_for_setting("Toolbar Filter Criterion", "URL")
        self.shoot("filtered")
        self.desktop.key("Escape")
        self.wait_for_rows(*before)
        self.desktop.wait_until_gone("check box", "Search: URL")

    def sort_rows(self):
        before = self.rows()
        self.desktop.menu("View", "Sort by")
        self.desktop.wait_for("menu item", "Name")
        self.shoot("menu")
        self.desktop.menu("Name")
        self.wait_for_rows(*sorted(before))
        self.desktop.key("ctrl+1")
        self.wait_for_rows(*before)

    def reorder_rows(self):
        *others, last = self.rows()
        first = self.row(others[0]).frame
        self.desktop.drag(self.icon(last), (self.icon(last)[0], first[1] + 4), lambda: True)
        self.wait_for_rows(last, *others)

    def define_rule(self):
        self.desktop.click(self.desktop.wait_for("push button", "Define Rule..."))
        editor = self.desktop.wait_for_dialog("Define Rule")
        self.desktop.type("127.0.0.1")
        self.desktop.key("Tab")
        self.desktop.type("iso")
        self.desktop.key("alt+d", "space")
        self.desktop.wait_for("list item", "Default Downloads Folder")
        self.desktop.key("Down", "Return")
        self.desktop.wait_until_gone("list item", "Default Downloads Folder")
        self.shoot("rule")
        self.desktop.key("Return")
        self.desktop.wait_until_gone("dialog", editor.name)
        wait_until(lambda: "iso" in str(self.setting("Rules")), 30, "the rule on disk")
        self.desktop.key("Escape")
        self.desktop.wait_until_gone("frame", "Settings")

    def drag_file_out(self):
        partner = self.use_partner()
        self.desktop.drag(self.icon("quick.pdf"), PARTNERS_WINDOW, lambda: partner.has_said("asked again"))
        partner.hear("dropped " + (self.home.downloads / "quick.pdf").as_uri())

    def remove_and_clear(self):
        self.desktop.click(self.row("404.html"))
        self.desktop.key("Delete")
        self.wait_for_rows("dropped.txt", "slow.iso", "quick.pdf", "part-1.zip", "part-2.zip")
        self.desktop.click(self.desktop.wait_for("push button", "Clear"))
        self.wait_for_rows("dropped.txt", "slow.iso")

    def quit_while_downloading(self, program):
        self.desktop.place_window("Orlop", (150, 120, 520, 380))
        self.placed = wait_until(lambda: (
            frame := self.desktop.find("frame", "Orlop").frame)[2:] == (520, 380) and frame, 30,
            "the new frame")
        self.desktop.key("ctrl+q")
        alert = self.desktop.wait_for("alert message")
        self.shoot("alert")
        self.assertEqual([node.name for node in alert.all() if node.role == "push button"],
                         ["Quit", "Cancel"])
        self.desktop.key("Return")
        self.assert_status(self.home.result(program), 0)
        self.assertEqual(self.home.queued_addresses(),
                         [self.server.url("/rate/1/dropped.txt"), self.slow_address()])
        self.assertGreater(self.home.partial_bytes(), 0)
        ranges = [request[3] for request in self.server.requests() if "slow.iso" in request[1]]
        self.assertEqual(ranges[0], "-")
        self.assertTrue(all(given.startswith("bytes=") for given in ranges[1:]), ranges)

    def start_again(self):
        program = self.start()
        self.wait_for_rows("dropped.txt", "slow.iso")
        self.assertEqual(self.desktop.find("frame", "Orlop").frame, self.placed)
        self.desktop.click(self.first_button("slow.iso"))
        self.wait_for_state("slow.iso", "Paused")
        self.desktop.click(self.first_button("dropped.txt"))
        self.desktop.key("ctrl+q")
        self.assert_status(self.home.result(program), 0)


class LooksTest(WindowTest):
    """One pass each through list, filter and settings."""

    def pass_through(self, said=lambda text: text):
        program = self.start(self.slow_address(), self.server.url("/quick.pdf"),
                             self.server.url("/status/404"))
        self.wait_for_first_rows("slow.iso", "quick.pdf", "404.html")
        self.wait_for_state("slow.iso", said("Downloading").rstrip("·"))
        self.desktop.click(self.first_button("slow.iso"))
        self.wait_for_state("slow.iso", said("Paused"))
        self.shoot("paused")
        self.desktop.click(self.first_button("slow.iso"))
        self.wait_for_state("slow.iso", said("Downloading").rstrip("·"))
        self.desktop.click(self.row("quick.pdf"))
        self.shoot("selected")
        self.desktop.key("ctrl+f")
        self.desktop.type("ISO")
        self.wait_for_rows("slow.iso")
        self.shoot("filtered")
        self.desktop.key("Escape", "ctrl+comma")
        self.desktop.wait_for("frame", said("Settings"))
        self.shoot("settings")
        self.desktop.key("Escape")
        self.desktop.wait_until_gone("frame", said("Settings"))
        return program

    def quit(self, program):
        self.desktop.key("ctrl+q")
        self.desktop.wait_for("alert message")
        self.shoot("alert")
        self.desktop.key("Return")
        self.assert_status(self.home.result(program), 0)

    def brightness(self):
        shades = self.desktop.shades(self.desktop.find("list").frame)
        return sum(shades) / len(shades)

    def test_in_the_dark_at_twice_the_scale_and_in_the_light_again(self):
        self.use("dark", scale=2)
        self.desktop.prefer(dark=True)
        program = self.pass_through()
        wait_until(lambda: self.brightness() < 90, 30, "the dark")
        self.shoot("list")
        self.desktop.prefer(dark=False)
        wait_until(lambda: self.brightness() > 160, 30, "the light")
        self.desktop.prefer(dark=True)
        wait_until(lambda: self.brightness() < 90, 30, "the dark again")
        self.quit(program)

    def test_from_right_to_left_at_a_broken_scale(self):
        self.use("right-to-left", "-Pseudo Locale", "2", scale=1.25)
        self.is_mirrored, self.list_name = True, pseudo("Downloads")
        program = self.pass_through(pseudo)
        edge = self.desktop.find("frame").frame[0]
        self.assertLess(self.desktop.find("text", pseudo("Filter")).frame[0] - edge, 60)
        self.quit(program)


if __name__ == "__main__":
    unittest.main()
