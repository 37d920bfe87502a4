"""Real browsers with the extension in them: Chromium by its debugging pipe, Firefox by Marionette."""
import base64
import itertools
import json
import os
import shutil
import signal
import socket
import subprocess
import sys
import threading
from pathlib import Path

from .home import DEADLINE, wait_until

ROOT = Path(__file__).parents[3]
PLACE = """(id) => {
    const element = document.getElementById(id);
    element.scrollIntoView({ block: "center" });
    const box = element.getBoundingClientRect();
    return [box.x + box.width / 2, box.y + box.height / 2];
}"""
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
        self._environment = home.environment(**environment) | {
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

    def _spawn(self, *words, **options):
        self.process = subprocess.Popen(
            [str(word) for word in words], env=self._environment, cwd=self.home.root,
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, start_new_session=True,
            stderr=open(self.home.root / f"{self.family}.log", "ab"), **options)

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


class Chromium(Browser):
    family = program = "chromium"
    extension = "cllkkaiadkhffhkbagegjfpekdofdkjn"
    origin = f"chrome-extension://{extension}/"

    def prepare(self):
        self.profile = self.home.root / "config/chromium"
        defaults = self.profile / "Default"
        defaults.mkdir(parents=True, exist_ok=True)
        (defaults / "Preferences").write_text(json.dumps({
            "download": {"default_directory": str(self.home.root / "Browser"),
                         "prompt_for_download": False},
            "extensions": {"ui": {"developer_mode": True}},
            "intl": {"selected_languages": self.language},
            "profile": {"default_content_setting_values": {"automatic_downloads": 1}}}))

    def start(self):
        to_browser, self._writing = os.pipe()
        self._reading, from_browser = os.pipe()

        def place():
            os.dup2(to_browser, 1000)
            os.dup2(from_browser, 1001)
            os.dup2(1000, 3)
            os.dup2(1001, 4)

        self._spawn(
            self.program, f"--user-data-dir={self.profile}", "--remote-debugging-pipe",
            "--enable-unsafe-extension-debugging", "--no-sandbox", "--no-first-run",
            "--disable-gpu", "--disable-dev-shm-usage", "--password-store=basic",
            "--disable-background-networking", "--disable-component-update",
            "--disable-features=DownloadBubble,InsecureDownloadWarnings", f"--lang={self.language}",
            *([] if self.visible else ["--headless=new"]), "about:blank",
            pass_fds=(3, 4, to_browser, from_browser), preexec_fn=place)
        os.close(to_browser)
        os.close(from_browser)
        self._numbers = itertools.count(1)
        self._answers = {}
        self._sessions = {}
        self._arrived = threading.Condition()
        threading.Thread(target=self._listen, daemon=True).start()
        self.call("Extensions.loadUnpacked", path=str(self.packed / "chromium"))
        self.own_page = self.open(self.origin + "pages/options.html")

    def _listen(self):
        pending = b""
        with open(self._reading, "rb", buffering=0) as stream:
            while data := stream.read(1 << 16):
                *messages, pending = (pending + data).split(b"\0")
                with self._arrived:
                    for message in map(json.loads, messages):
                        self._answers[message.get("id")] = message
                    self._arrived.notify_all()
        with self._arrived:
            self._answers["end"] = True
            self._arrived.notify_all()

    def call(self, method, session=None, **parameters):
        number = next(self._numbers)
        message = {"id": number, "method": method, "params": parameters}
        if session:
            message["sessionId"] = session
        os.write(self._writing, json.dumps(message).encode() + b"\0")
        with self._arrived:
            self._arrived.wait_for(
                lambda: number in self._answers or "end" in self._answers, DEADLINE)
        answer = self._answers.pop(number, None)
        if answer is None:
            raise ConnectionError(f"{method}: the browser said nothing")
        if "error" in answer:
            raise AssertionError(f"{method}: {answer['error']}")
        return answer["result"]

    def kill(self):
        super().kill()
        if self._writing >= 0:
            os.close(self._writing)
            self._writing = -1

    close = kill

    def targets(self):
        return self.call("Target.getTargets")["targetInfos"]

    def session(self, target):
        if target not in self._sessions:
            self._sessions[target] = self.call(
                "Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        return self._sessions[target]

    def open(self, address):
        target = self.call("Target.createTarget", url=address)["targetId"]
        wait_until(lambda: self.evaluate(target, "() => document.readyState") == "complete"
                   and self.evaluate(target, "() => location.href") != "about:blank",
                   what=address)
        return target

    def page_at(self, part):
        """The page whose address has that part, once there is one."""
        def find():
            return next((one["targetId"] for one in self.targets()
                         if one["type"] == "page" and part in one["url"]), None)
        return wait_until(find, what=part)

    def evaluate(self, page, function, *arguments):
        words = ", ".join(map(json.dumps, arguments))
        result = self.call("Runtime.evaluate", self.session(page), expression=f"({function})({words})",
                           awaitPromise=True, returnByValue=True, userGesture=True)
        if "exceptionDetails" in result:
            raise AssertionError(result["exceptionDetails"])
        return result["result"].get("value")

    def click(self, page, element, alt=False):
        """As a person does, with the pointer, on what has that id."""
        x, y = self.evaluate(page, PLACE, element)
        session = self.session(page)
        for kind in "mouseMoved", "mousePressed", "mouseReleased":
            self.call("Input.dispatchMouseEvent", session, type=kind, x=x, y=y, button="left",
                      clickCount=1, modifiers=1 if alt else 0)

    def picture(self, page, path, size=None, dark=False):
        session = self.session(page)
        if size:
            self.call("Emulation.setDeviceMetricsOverride", session, width=size[0], height=size[1],
                      deviceScaleFactor=1, mobile=False)
        self.call("Emulation.setEmulatedMedia", session, features=[
            {"name": "prefers-color-scheme", "value": "dark" if dark else "light"}])
        data = self.call("Page.captureScreenshot", session)["data"]
        Path(path).write_bytes(base64.b64decode(data))
