"""A program on a pseudo terminal that it controls, seen through a terminal emulator."""
import codecs
import fcntl
import os
import pty
import select
import struct
import subprocess
import termios
import time

from .home import DEADLINE
from .screen import Screen


class TerminalSession:
    def __init__(self, home, *arguments, columns=80, lines=24, reflows=True, environment=None,
                 **options):
        self.screen = Screen(columns, lines, reflows)
        self.raw = b""
        self.drawings = 0
        self._decoder = codecs.getincrementaldecoder("utf-8")()
        self._master, slave = pty.openpty()
        self._set_size(columns, lines)
        self.process = home.start(
            *arguments, environment={"TERM": "xterm-256color"} | (environment or {}),
            stdin=slave, stdout=slave, stderr=slave, start_new_session=True,
            preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY, 0), **options)
        os.close(slave)

    def _set_size(self, columns, lines):
        fcntl.ioctl(self._master, termios.TIOCSWINSZ, struct.pack("HHHH", lines, columns, 0, 0))

    def close(self):
        if self._master >= 0:
            os.close(self._master)
            self._master = -1

    def resize(self, columns, lines):
        """What was written before the change is shown at the old size, as in a real terminal."""
        self.pump(0)
        self.screen.resize(columns, lines)
        self._set_size(columns, lines)

    def type(self, text):
        os.write(self._master, text.encode())

    def echoes(self):
        """Whether the terminal shows what is typed."""
        return bool(termios.tcgetattr(self._master)[3] & termios.ECHO)

    def pump(self, seconds):
        """Shows what the program writes within that time. False: it has closed the terminal."""
        readable, _, _ = select.select([self._master], [], [], seconds)
        if not readable:
            return True
        try:
            received = os.read(self._master, 1 << 16)
        except OSError:
            return False
        self.raw += received
        self.drawings += 1
        self.screen.feed(self._decoder.decode(received))
        return bool(received)

    def wait_for(self, condition, deadline=DEADLINE):
        """Reads until `condition(lines)` holds for the visible lines. Answers what it answers."""
        end = time.monotonic() + deadline
        while not (answer := condition(self.screen.text())):
            if time.monotonic() > end or not self.pump(0.05):
                if answer := condition(self.screen.text()):
                    return answer
                raise AssertionError("the screen never came to be as expected:\n" +
                                     "\n".join(self.screen.everything()))
        return answer

    def wait_for_text(self, text, deadline=DEADLINE):
        return self.wait_for(lambda lines: any(text in line for line in lines), deadline)

    def finish(self, deadline=DEADLINE):
        """Reads until the program has ended. Answers its exit status."""
        end = time.monotonic() + deadline
        while self.pump(0.05):
            if self.process.poll() is not None and not select.select([self._master], [], [], 0)[0]:
                break
            if time.monotonic() > end:
                raise subprocess.TimeoutExpired(self.process.args, deadline)
        return self.process.wait(max(1, end - time.monotonic()))
