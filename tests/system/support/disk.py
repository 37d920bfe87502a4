"""A small disk of its own, where the system lets us mount one."""
import subprocess
import unittest


class SmallDisk:
    """A file system in memory, mounted on a folder."""

    def __init__(self, folder, size):
        self.folder = folder
        made = subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={size},mode=0755", "orlop-test",
                               str(folder)], capture_output=True, text=True)
        if made.returncode != 0:
            raise unittest.SkipTest(f"no disk can be mounted here: {made.stderr.strip()}")

    def remount(self, options):
        subprocess.run(["mount", "-o", f"remount,{options}", str(self.folder)], check=True)

    def close(self):
        subprocess.run(["umount", "-l", str(self.folder)], check=False)
