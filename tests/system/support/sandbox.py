"""Other surroundings for the program under test: a root in memory, as a Flatpak has it."""
import shutil
import subprocess

from .home import PROGRAMS


def sandbox(*arguments, system=("/usr", "/etc")):
    """The beginning of a command that runs there; of the host's folders it has `system`."""
    shown = (part for path in system for part in ("--ro-bind", path, path))
    links = (part for name in ("bin", "lib", "lib64") for part in
             ("--symlink", f"usr/{name}", f"/{name}"))
    return ["bwrap", "--die-with-parent", "--tmpfs", "/", *shown, *links, "--proc", "/proc",
            "--dev", "/dev", *arguments]


def can_sandbox():
    return shutil.which("bwrap") is not None and subprocess.run(
        sandbox("true"), capture_output=True, check=False).returncode == 0


def with_home(home, *names):
    """What shows the programs there, and these folders of a home."""
    shown = (part for name in names for part in
             ("--bind", home.root / name, home.root / name))
    return ["--ro-bind", PROGRAMS, PROGRAMS, *shown]
