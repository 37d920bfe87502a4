"""Downloads whose partial file lies on a volume that is away, and that comes back. Volumes are
mounted in a namespace of the test's own, where the kernel allows that."""
import subprocess
import sys
import unittest

from support.case import MIB, SystemTest
from support.desktop import Desktop
from support.home import PROGRAMS, TERMINAL, wait_until

PROGRAM = PROGRAMS / "orlop"
VOLUME = "/mnt/stick"
# The folder of volumes is the test's own, with the volume in it if there is one; then the program
# takes the shell's place. It stays its user, for as another one no bus would have it.
INSIDE = ("unshare", "--user", "--map-current-user", "--keep-caps", "--mount", "sh", "-c",
          'mount -t tmpfs none /mnt && if [ "$STICK" ]; then mkdir /mnt/stick && '
          'mount --bind "$STICK" /mnt/stick; fi && exec "$@"', "sh")

# In a process that has entered the namespaces of another, and may mount there until it starts
# something else.
MOUNT = """
import ctypes, os, sys
process, source, target = sys.argv[1:]
system = ctypes.CDLL(None, use_errno=True)
for kind in "user", "mnt":
    with open(f"/proc/{process}/ns/{kind}") as namespace:
        assert system.setns(namespace.fileno(), 0) == 0, os.strerror(ctypes.get_errno())
os.makedirs(target, exist_ok=True)
MS_BIND = 4096
assert system.mount(source.encode(), target.encode(), None, MS_BIND, None) == 0, os.strerror(
    ctypes.get_errno())
"""


def can_mount():
    return subprocess.run([*INSIDE, "true"], capture_output=True, check=False).returncode == 0


@unittest.skipUnless(can_mount(), "no namespaces for mounts")
class VolumeTest(SystemTest):
    def setUp(self):
        super().setUp()
        self.stick = self.home.root / "stick"
        self.stick.mkdir()

    def begin(self, *names):
        """Downloads of which a part lies on the volume, which is away then."""
        for name in names:
            self.serve(name, MIB)
        run = self.start("-Downloads Folder", VOLUME,
                         *(self.server.url(f"/rate/100000/{name}") for name in names),
                         environment={"STICK": str(self.stick)})
        wait_until(lambda: sum(path.stat().st_size > 0
                               for path in self.stick.glob("*.orlop/*.bin")) == len(names), 30,
                   "partial files")
        self.home.interrupt(run)
        self.home.result(run)
        self.assertEqual(len(self.home.queue()), len(names))

    def start(self, *arguments, program=TERMINAL, **options):
        return self.home.start(*INSIDE[1:], program, *arguments, program=INSIDE[0], **options)

    def mount(self, process):
        subprocess.run([sys.executable, "-c", MOUNT, str(process.pid), self.stick, VOLUME],
                       check=True, timeout=30)

    def test_a_terminal_tells_a_line_for_each_and_fails(self):
        names = ("far.bin", "other.bin")
        self.begin(*names)
        result = self.home.result(self.start(*(self.server.url(f"/rate/100000/{name}")
                                               for name in names)))
        self.assert_status(result, 1)
        for name in names:
            self.assertIn(f"{name} cannot go on: what has come of it lies on {VOLUME}, which is "
                          "not available.", result.stderr)
        self.assertEqual(len(self.home.queue()), 2, "they wait")

    @unittest.skipUnless(PROGRAM.exists(), "built without the desktop program")
    def test_a_window_alerts_once_and_offers_to_go_on(self):
        self.begin("far.bin")
        desktop = Desktop("Orlop")
        self.addCleanup(desktop.close)
        process = self.start(program=PROGRAM, environment=desktop.environment)
        self.addCleanup(process.kill)
        desktop.wait_for("label", "Cannot resume downloading")
        text = next(node.name for node in desktop.nodes() if node.name.startswith("The partial"))
        self.assertTrue(text.endswith("\n\nfar.bin"), text)
        desktop.screenshot("missing-volume")
        desktop.key("Return")
        desktop.wait_until_gone("label", "Cannot resume downloading")
        self.mount(process)
        button = desktop.wait_for("push button", "Resume")
        desktop.wait_for("label", "far.bin can go on: its volume is back.")
        desktop.screenshot("volume-back")
        desktop.click(button)
        desktop.wait_until_gone("push button", "Resume")
        self.assert_completed()

    @unittest.skipUnless(PROGRAM.exists(), "built without the desktop program")
    def test_with_auto_resume_it_goes_on_by_itself(self):
        self.begin("far.bin")
        process = self.start("-Auto-Resume", "YES", program=PROGRAM,
                             environment={"QT_QPA_PLATFORM": "offscreen"})
        self.addCleanup(process.kill)
        wait_until(lambda: "waits for the volume" in self.home.log_text(), 30, "the log line")
        self.mount(process)
        self.assert_completed()

    def assert_completed(self):
        wait_until(lambda: self.home.finished() == ["far.bin"], 60, "the file")
        self.assert_downloaded("far.bin", self.server.content / "far.bin")
        wait_until(lambda: not list(self.stick.iterdir()), 30, "the end of the bundle")


if __name__ == "__main__":
    unittest.main()
