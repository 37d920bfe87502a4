"""Programs without windows load nothing that belongs to windows."""
import subprocess
import unittest

from support.home import PROGRAMS


class LibrariesTest(unittest.TestCase):
    def test_no_window_system(self):
        for program in ("orlop-terminal", "orlop-defaults", "orlop-log"):
            path = PROGRAMS / program
            if program != "orlop-terminal" and not path.exists():
                continue
            loaded = subprocess.run(["ldd", path], capture_output=True, text=True,
                                    check=True).stdout
            self.assertIn("libQt6Core", loaded)
            for library in ("Qt6Gui", "Qt6Widgets", "libX11", "libwayland"):
                self.assertNotIn(library, loaded, program)


if __name__ == "__main__":
    unittest.main()
