"""An installation from the sources: the bus and the desktop find what is in its prefix."""
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

from support.home import PROGRAMS


@unittest.skipUnless((PROGRAMS / "orlop").exists(), "built without the desktop program")
class InstallTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="orlop-prefix-")
        self.addCleanup(folder.cleanup)
        self.prefix = Path(folder.name)
        result = subprocess.run(["cmake", "--install", PROGRAMS.parent, "--prefix", self.prefix],
                                capture_output=True, text=True, check=False)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)

    def test_the_bus_starts_the_program_that_was_installed(self):
        service = (self.prefix / "share/dbus-1/services/com.tarnworks.Orlop.service").read_text()
        self.assertIn(f"\nExec={self.prefix}/bin/orlop --background\n", service)
        self.assertTrue((self.prefix / "bin/orlop").is_file())

    def test_desktops_know_the_types_and_their_program(self):
        request = self.prefix / "some.obp"
        request.write_text("<plist/>")
        environment = os.environ | {"XDG_DATA_DIRS": f"{self.prefix}/share",
                                    "XDG_DATA_HOME": str(self.prefix / "data"),
                                    "XDG_CONFIG_HOME": str(self.prefix / "config"),
                                    "PATH": f"{self.prefix}/bin:{os.environ['PATH']}",
                                    "GIO_USE_VFS": "local"}
        kind = "application/x-orlop-request"
        for command in (["gio", "info", "-a", "standard::content-type", request],
                        ["gio", "mime", kind]):
            told = subprocess.run(command, env=environment, capture_output=True, text=True,
                                  check=True).stdout
            self.assertIn(kind, told)
        self.assertIn("com.tarnworks.Orlop.desktop", told)


if __name__ == "__main__":
    unittest.main()
