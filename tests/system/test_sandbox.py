"""Folders that a sandbox hides: what may not be reached is not replaced by one that is gone with the
process, and what the user unlocked is reached where the portal shows it."""
import plistlib
import shutil
import subprocess
import unittest

from support.case import MIB, SystemTest
from support.home import PROGRAMS, TERMINAL

INFO = "[Application]\nname=com.tarnworks.Orlop\n"
DOCUMENT = "/run/document"


def sandbox(*arguments):
    """As a Flatpak has it: a root in memory, of the host's folders only those that are named."""
    system = (part for path in ("/usr", "/etc") for part in ("--ro-bind", path, path))
    links = (part for name in ("bin", "lib", "lib64") for part in
             ("--symlink", f"usr/{name}", f"/{name}"))
    return ["bwrap", "--die-with-parent", "--tmpfs", "/", *system, *links, "--proc", "/proc",
            "--dev", "/dev", *arguments]


def can_sandbox():
    return shutil.which("bwrap") is not None and subprocess.run(
        sandbox("true"), capture_output=True, check=False).returncode == 0


@unittest.skipUnless(can_sandbox(), "no namespaces for a sandbox")
class SandboxTest(SystemTest):
    def download(self, source):
        info = self.home.root / "info"
        info.write_text(INFO)
        document = self.home.root / "document"
        document.mkdir(exist_ok=True)
        shown = (part for name in ("data", "config", "state", "cache", "runtime") for part in
                 ("--bind", self.home.root / name, self.home.root / name))
        command = sandbox("--ro-bind", PROGRAMS, PROGRAMS, "--ro-bind", info, "/.flatpak-info",
                          *shown, "--bind", document, DOCUMENT, TERMINAL,
                          self.server.url(f"/{source.name}"))
        return self.home.run(*command[1:], program=command[0])

    def test_nothing_is_written_where_the_sandbox_would_lose_it(self):
        source = self.serve("hidden.bin", MIB)
        result = self.download(source)
        self.assert_status(result, 1)
        self.assertIn("The sandbox keeps Orlop out of the folder.", result.stdout + result.stderr)
        self.assertEqual(len(self.home.queue()), 1)

    def test_an_unlocked_folder_is_reached_where_the_portal_shows_it(self):
        source = self.serve("shown.bin", 3 * MIB)
        settings = self.home.root / "config/Orlop/com.tarnworks.Orlop.plist"
        settings.parent.mkdir()
        settings.write_bytes(plistlib.dumps({"Security-Scoped Bookmarks": {
            str(self.home.root): DOCUMENT.encode()}}))
        self.assert_status(self.download(source), 0)
        self.assertEqual((self.home.root / "document/Downloads/shown.bin").read_bytes(),
                         source.read_bytes())
        self.assertEqual(sorted(path.name for path in
                                (self.home.root / "document/Downloads").iterdir()), ["shown.bin"])
        self.assertEqual(self.home.finished(), [])


if __name__ == "__main__":
    unittest.main()
