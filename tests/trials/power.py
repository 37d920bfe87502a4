"""Power cuts: a file system on a loop device that is shut down in the middle of a run, loses what it
had not written, and is mounted again after its recovery."""
import fcntl
import os
import shutil
import struct
import subprocess
import tempfile
import time
import uuid
from pathlib import Path

from trial import FAULTS
from ways import DisturbedTransfers

# EXT4_IOC_SHUTDOWN and XFS_IOC_GOINGDOWN are the same call; 2: without writing the journal.
SHUT_DOWN, WITHOUT_JOURNAL = 0x8004587D, 2
MAKERS = {"ext4": ("mkfs.ext4", "-q", "-F"), "xfs": ("mkfs.xfs", "-q", "-f")}


class NotPossible(Exception):
    """The system lets us have no disk to shut down."""


def do(*words):
    made = subprocess.run([str(word) for word in words], capture_output=True, text=True, check=False)
    if made.returncode != 0:
        raise NotPossible(f"{words[0]}: {made.stderr.strip()}")
    return made.stdout.strip()


class Disk:
    def __init__(self, kind):
        self.folder = Path(tempfile.mkdtemp(prefix="orlop-power-"))
        self.image, self.root = self.folder / "image", self.folder / "root"
        self.root.mkdir()
        self.boot = self.folder / "boot"
        # In memory on a real machine: it does not fail with the disk, and is gone after a cut.
        self.runtime = self.folder / "runtime"
        self.device = ""
        try:
            with open(self.image, "wb") as file:
                file.truncate(400 << 20)
            # A sandbox that another test starts has all mounts as well: what we unmount must go
            # there too, or the next mount finds the file system that was shut down.
            do("mount", "--bind", self.folder, self.folder)
            do("mount", "--make-shared", self.folder)
            do(*MAKERS[kind], self.image)
            # The same one all the time: two of one file would not know of each other's writes.
            self.device = do("losetup", "--find", "--show", self.image)
            self.mount()
        except (NotPossible, OSError):
            self.close()
            raise

    def mount(self):
        self.boot.write_text(f"{uuid.uuid4()}\n")
        shutil.rmtree(self.runtime, ignore_errors=True)
        self.runtime.mkdir(mode=0o700)
        do("mount", self.device, self.root)

    def cut(self):
        root = os.open(self.root, os.O_RDONLY)
        try:
            fcntl.ioctl(root, SHUT_DOWN, struct.pack("I", WITHOUT_JOURNAL))
        finally:
            os.close(root)

    def recover(self):
        do("umount", self.root)
        self.mount()

    def close(self):
        for words in (("umount", "-l", self.root), ("losetup", "-d", self.device),
                      ("umount", "-l", self.folder)):
            subprocess.run(words, capture_output=True, check=False)
        shutil.rmtree(self.folder, ignore_errors=True)


class PowerCuts(DisturbedTransfers):
    kind = "power cuts"

    def __init__(self, seed):
        super().__init__(seed)
        self.disk = None

    def home_options(self):
        return {"parent": self.disk.root}

    def attempt(self):
        kind = self.random.choice([kind for kind, words in MAKERS.items() if shutil.which(words[0])])
        self.disk = Disk(kind)
        try:
            return super().attempt()
        finally:
            self.disk.close()

    def disturbed(self, home, arguments):
        # What the test itself has made is older than any cut.
        do("sync", "-f", home.root)
        process = home.start(*arguments, environment={"LD_PRELOAD": FAULTS,
                                                      "FAULT_BOOT_ID": str(self.disk.boot),
                                                      "XDG_RUNTIME_DIR": str(self.disk.runtime)})
        time.sleep(self.random.uniform(0.01, self.random.choice((0.05, 0.15, 0.5))))
        self.disk.cut()
        process.kill()
        process.wait()
        for stream in (process.stdout, process.stderr):
            stream.close()
        self.disk.recover()
        return process

    @staticmethod
    def is_possible():
        try:
            disk = Disk("ext4")
        except (NotPossible, OSError) as reason:
            return str(reason)
        try:
            disk.cut()
            disk.recover()
            return ""
        except (NotPossible, OSError) as reason:
            return str(reason)
        finally:
            disk.close()


