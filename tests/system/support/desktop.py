"""A screen with a window manager and a session of its own, with hands and eyes for it: keys and
pointer, screenshots, and what a program tells assistive technologies."""
import contextlib
import json
import os
import signal
import subprocess
import tempfile
import time
from dataclasses import dataclass, field
from pathlib import Path

from .bus import Bus, mock_interpreter
from .home import wait_until

ARTEFACTS = Path(os.environ.get("ORLOP_SCREENSHOTS", Path(tempfile.gettempdir()) /
                                "orlop-screenshots"))
PORTAL = ("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop")
SETTINGS = "org.freedesktop.portal.Settings"


@dataclass
class Node:
    """A window or a control that can be seen. The frame is in pixels of the screen."""
    role: str
    name: str
    frame: tuple
    states: frozenset
    children: list = field(default_factory=list)

    @property
    def center(self):
        x, y, width, height = self.frame
        return x + width // 2, y + height // 2

    def all(self):
        yield self
        for child in self.children:
            yield from child.all()

    def has_focus(self):
        return any("focused" in node.states for node in self.all())


class Talker:
    """A program that says on its standard output what happens."""

    def __init__(self, process, path):
        self._process, self._path = process, path
        self._heard = 0

    def freeze(self):
        """It answers nobody from now on."""
        self._process.send_signal(signal.SIGSTOP)

    def end(self):
        self._process.kill()
        self._process.wait()

    def text(self):
        """All that it has said."""
        return self._path.read_text()

    def has_said(self, line):
        """Passes over all before the line once it is there."""
        lines = self._path.read_text().splitlines()
        if line not in lines[self._heard:]:
            return False
        self._heard = lines.index(line, self._heard) + 1
        return True

    def hear(self, line):
        wait_until(lambda: self.has_said(line), 30, f"{line!r} in {self._path.read_text()!r}")


class Desktop:
    """`scale`: pixels for each unit of the interface."""

    def __init__(self, program, size="1400x900", scale=1):
        self._stack = contextlib.ExitStack()
        self.display = ""
        self.scale = scale
        self.session = {}  # What makes a program part of one, in its environment.
        self._program = program
        self._runtime = self._stack.enter_context(
            tempfile.TemporaryDirectory(prefix="orlop-desktop-"))
        try:
            self._start_screen(size)
            self.bus = Bus(self._own_environment())
            self._stack.callback(self.bus.close)
            self._manager = self._start("openbox", "--sm-disable")
            wait_until(lambda: b"_NET_SUPPORTED(ATOM)" in self._run(
                "xprop", "-root", "_NET_SUPPORTED").stdout, what="the window manager")
            self._reader = self._start(
                mock_interpreter(), Path(__file__).parent / "accessible_reader.py",
                self.bus.address, program, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                text=True)
            if self._reader.stdout.readline() != "ready\n":
                raise RuntimeError("the assistive technology does not start")
        except BaseException:
            self.close()
            raise

    def _own_environment(self):
        return {"PATH": os.environ["PATH"], "HOME": self._runtime, "LANG": "C.UTF-8",
                "XDG_RUNTIME_DIR": self._runtime, "DISPLAY": self.display}

    def _start_screen(self, size):
        reading, writing = os.pipe()
        with open(reading, encoding="ascii") as number:
            try:
                self._start("Xvfb", "-screen", "0", f"{size}x24", "-nolisten", "tcp", "-noreset",
                            "-displayfd", writing, pass_fds=(writing,))
            finally:
                os.close(writing)
            self.display = ":" + number.readline().strip()

    def _start(self, *words, **options):
        options = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL,
                   "stderr": subprocess.DEVNULL, "env": self._own_environment()} | options
        process = subprocess.Popen([str(word) for word in words], **options)
        self._stack.callback(self._end, process)
        return process

    @staticmethod
    def _end(process):
        process.kill()
        process.wait()
        for stream in (process.stdin, process.stdout):
            if stream:
                stream.close()

    def _run(self, *words, **options):
        return subprocess.run([str(word) for word in words], env=self._own_environment(),
                              capture_output=True, timeout=60, check=False, **options)

    def close(self):
        self._stack.close()

    @property
    def environment(self):
        """For programs that are to appear here."""
        return self.bus.environment | {
            "DISPLAY": self.display, "QT_QPA_PLATFORM": "xcb", "QT_SCALE_FACTOR": str(self.scale),
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"} | self.session

    def start(self, program, *arguments):
        """Something else that shows windows here and tells by lines what happens."""
        said = Path(self._runtime) / f"said-{len(list(Path(self._runtime).iterdir()))}"
        with open(said, "wb") as output:
            process = self._start(program, *arguments, stdout=output,
                                  env=self._own_environment() | self.environment)
        return Talker(process, said)

    # What is seen.

    def nodes(self):
        """All that the program shows, windows first to last."""
        self._reader.stdin.write("\n")
        self._reader.stdin.flush()
        return [node for window in json.loads(self._reader.stdout.readline())
                for node in self._node(window).all()]

    def _node(self, description):
        # Qt tells assistive technologies units of the interface.
        frame = tuple(round(number * self.scale) for number in description["frame"])
        return Node(description["role"], description["name"], frame,
                    frozenset(description["states"]),
                    [self._node(child) for child in description["children"]])

    def find(self, role, name=None):
        """A window may say how far it has come before its name."""
        return next((node for node in self.nodes() if node.role == role and
                     (name is None or node.name == name or
                      (role == "frame" and node.name.endswith(f" – {name}")))), None)

    def wait_for(self, role, name=None):
        return wait_until(lambda: self.find(role, name), 30, f"{role} {name!r}")

    def wait_for_dialog(self, name):
        """Until keys go to it."""
        return wait_until(lambda: next((node for node in self.nodes() if node.role == "dialog"
                                        and node.name == name and node.has_focus()), None),
                          30, f"dialog {name!r}")

    def wait_for_focus(self):
        """Keys go to the program."""
        wait_until(lambda: any(node.has_focus() for node in self.nodes()), 30, "the focus")

    def wait_until_gone(self, role, name=None):
        wait_until(lambda: not self.find(role, name), 30, f"the end of {role} {name!r}")

    def screenshot(self, name):
        ARTEFACTS.mkdir(parents=True, exist_ok=True)
        path = ARTEFACTS / f"{name}.png"
        self._run("import", "-display", self.display, "-window", "root", path)
        return path

    def shades(self, frame):
        """How bright it is in each of 64 parts of the frame, 0 to 255."""
        x, y, width, height = frame
        shot = self._run("import", "-display", self.display, "-window", "root", "-crop",
                         f"{width}x{height}+{x}+{y}", "+repage", "-colorspace", "Gray", "-resize",
                         "8x8!", "-depth", "8", "gray:-")
        return list(shot.stdout)

    # What is done.

    def _xdotool(self, *words):
        self._run("xdotool", *words)

    def move(self, place):
        self._xdotool("mousemove", *place)

    def click(self, what):
        self._xdotool("mousemove", *self._place(what), "click", 1)

    def turn_wheel_down(self, what, notches):
        self._xdotool("mousemove", *self._place(what), "click", "--repeat", notches, 5)

    def press(self, what):
        self._xdotool("mousemove", *self._place(what), "mousedown", 1)

    def release(self):
        self._xdotool("mouseup", 1)

    def glide(self, start, end):
        """Moves the pointer in steps, as a hand does."""
        words = []
        for step in range(1, 13):
            words += ["mousemove"] + [round(a + (b - a) * step / 12) for a, b in zip(start, end)]
        self._xdotool(*words)

    def drag_over(self, start, end, is_over, is_pressed=lambda: True):
        """Presses, moves there as unsteadily as a hand, and holds on until `is_over` says that the
        other side has noticed. `is_pressed`: the program below has heard of it. A hand that sees
        nothing happen gives up and begins anew: a busy program may begin its drag when the pointer
        is far away already, and now and then one hears of no more moves at all."""
        def begin():
            self.press(start)
            wait_until(is_pressed, 30, f"the press at {start}")

        def begin_anew():
            self.key("Escape")
            self.release()
            begin()

        begin()
        wait_until(lambda: self.glide(start, end) or self._tremble(end, is_over) or begin_anew(), 40,
                   lambda: f"an effect at {end} in {self.screenshot('drag-without-effect')}")

    def drag(self, start, end, is_over, is_pressed=lambda: True):
        """Lets go as soon as it is over its end."""
        self.drag_over(start, end, is_over, is_pressed)
        self.release()

    def _tremble(self, place, is_over):
        resting = time.monotonic() + 4
        while time.monotonic() < resting:
            if any(self.move(near) or is_over() for near in self.about(place)):
                return True
        return False

    @staticmethod
    def about(place):
        """Places between which a hand trembles."""
        return (place[0] + 1, place[1]), place

    @staticmethod
    def _place(what):
        return what.center if isinstance(what, Node) else what

    def key(self, *keys):
        self._xdotool("key", *keys)

    def hold(self, key):
        self._xdotool("keydown", key)

    def let_go(self, key):
        self._xdotool("keyup", key)

    def type(self, text):
        self._xdotool("type", "--delay", 5, "--", text)

    def menu(self, *titles):
        """Opens menus from the bar and chooses the last."""
        for title in titles:
            self.click(self.wait_for("menu item", title))

    def copy(self, text):
        """Puts the text on the clipboard."""
        process = self._start("xclip", "-quiet", "-selection", "clipboard", stdin=subprocess.PIPE)
        process.stdin.write(text.encode())
        process.stdin.close()
        wait_until(lambda: self._run("xclip", "-selection", "clipboard", "-o").stdout.decode()
                   == text, what="the clipboard")

    def place_window(self, title, frame):
        self._xdotool("search", "--onlyvisible", "--name", f"(^| – ){title}$", "windowmove", *frame[:2],
                      "windowsize", *frame[2:])

    def prefer(self, dark):
        """Tells programs whether the user wants the dark, from now on."""
        value = f"uint32 {int(dark)}"
        if not hasattr(self, "_prefers"):
            self._prefers = self._start(
                mock_interpreter(), "-m", "dbusmock", "--session", *PORTAL, SETTINGS,
                env=self._own_environment() | self.bus.environment)
            wait_until(lambda: self.bus.call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                              "org.freedesktop.DBus.NameHasOwner", PORTAL[0])
                       == "(true,)", what="the portal")
        self.bus.call(*PORTAL, "org.freedesktop.DBus.Mock.AddMethod", SETTINGS, "Read", "ss", "v",
                       f"ret = dbus.UInt32({int(dark)}, variant_level=2)")
        self.bus.emit(PORTAL, SETTINGS, "SettingChanged", "ssv",
                       "'org.freedesktop.appearance'", "'color-scheme'", f"<{value}>")
