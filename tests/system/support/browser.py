"""What drives a real browser with the extension in it."""
import os
import shutil
import signal
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).parents[3]
SILENCE = 20
ALT, CONTROL = 1, "\ue009"
PLACE = """(id) => {
    const element = document.getElementById(id);
    element.scrollIntoView({ block: "center" });
    const box = element.getBoundingClientRect();
    return [box.x + box.width / 2, box.y + box.height / 2];
}"""
LOADED = "(address) => location.href === address && document.readyState === 'complete'"
UUID = "6f0d7f2c-6b43-4d5c-9b7e-0a4f0f1f7b11"


def pack_extension(folder):
    subprocess.run([sys.executable, ROOT / "scripts/extension", "--unpacked", folder], check=True)


class Browser:
    """One run of a browser over a profile that outlives it. Pages are named by what the browser
    calls them."""

    family = program = ""

    def __init__(self, home, environment, language="en", visible=False):
        self.home, self.visible, self.language = home, visible, language
        self.packed = home.root / "extension"
        pack_extension(self.packed)
        # One that is killed leaves what it had there.
        temporary = home.root / "tmp"
        temporary.mkdir(exist_ok=True)
        self._environment = home.environment(**environment) | {
            "TMPDIR": str(temporary),
            "LANGUAGE": language, "LANG": "de_DE.UTF-8" if language == "de" else "C.UTF-8"}
        self.process = None
        self.prepare()
        self.start()

    @classmethod
    def is_there(cls):
        return shutil.which(cls.program) is not None

    def prepare(self):
        """Makes the profile."""

    def kill(self):
        """At once, with all its processes."""
        if self.process and self.process.poll() is None:
            os.killpg(self.process.pid, signal.SIGKILL)
            self.process.wait()

    close = kill

    def restart(self):
        """After a kill, over the same profile; a browser that was killed may hang at its start."""
        for attempt in range(3):
            self.kill()
            try:
                self.start()
                return
            except (ConnectionError, TimeoutError):
                if attempt == 2:
                    raise

    def _spawn(self, *words, **options):
        with open(self.home.root / f"{self.family}.log", "ab") as log:
            self.process = subprocess.Popen(
                [str(word) for word in words], env=self._environment, cwd=self.home.root,
                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=log,
                start_new_session=True, **options)

    def ask_extension(self, script, *arguments):
        """Runs a function in a page of the extension, with `api` for the browser's interface.
        Answers what its promise gives."""
        return self.evaluate(self.own_page, f"""(async (...given) => {{
            const api = globalThis.browser ?? chrome;
            return await ({script})(...given);
        }})""", *arguments)

    def set(self, **settings):
        self.ask_extension("(changes) => api.storage.local.set(changes)", settings)

    def downloads(self):
        """What the browser itself has, as (name, state)."""
        found = self.ask_extension("() => api.downloads.search({})")
        return [(Path(one["filename"]).name, one["state"]) for one in found]

    def unsettled(self):
        return self.ask_extension("""async () => Object.keys({...await api.storage.local.get(null),
            ...await api.storage.session.get(null)}).filter((key) => key.startsWith("handOver:"))""")
