"""Folders that a sandbox hides: what may not be reached is not replaced by one that is gone with the
process, and what the user unlocked is reached where the portal shows it."""
import plistlib
import unittest

from support.case import MIB, SystemTest
from support.home import TERMINAL
from support.sandbox import can_sandbox, sandbox, with_home

INFO = "[Application]\nname=com.tarnworks.Orlop\n"
DOCUMENT = "/run/document"


@unittest.skipUnless(can_sandbox(), "no namespaces for a sandbox")
class SandboxTest(SystemTest):
    def download(self, source):
        info = self.home.root / "info"
        info.write_text(INFO)
        document = self.home.root / "document"
        document.mkdir(exist_ok=True)
        command = sandbox(*with_home(self.home, "data", "config", "state", "cache", "runtime"),
                          "--ro-bind", info, "/.flatpak-info", "--bind", document, DOCUMENT,
                          TERMINAL, self.server.url(f"/{source.name}"))
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
