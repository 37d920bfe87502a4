"""Chromium, driven through its debugging pipe."""
import base64
import itertools
import json
import os
import threading
from pathlib import Path

from .browser import ALT, LOADED, PLACE, SILENCE, Browser
from .home import wait_until


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
        self.call("Extensions.loadUnpacked", path=str(self.packed / "chromium"),
                  enableInIncognito=True)
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
        """Answers take moments; a browser that is silent for longer hangs."""
        number = next(self._numbers)
        message = {"id": number, "method": method, "params": parameters}
        if session:
            message["sessionId"] = session
        os.write(self._writing, json.dumps(message).encode() + b"\0")
        with self._arrived:
            self._arrived.wait_for(
                lambda: number in self._answers or "end" in self._answers, SILENCE)
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
        wait_until(lambda: self.evaluate(target, LOADED, address), what=address)
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

    def click(self, page, element, leaves=False):
        """As a person does, with the pointer, on what has that id; `leaves` with the key held that
        leaves a download to the browser."""
        place = self.evaluate(page, PLACE, element)
        for kind in "mouseMoved", "mousePressed", "mouseReleased":
            self._send_mouse(page, place, kind, modifiers=ALT if leaves else 0)

    def click_in_frame(self, page, frame):
        """The link that fills the frame of that id. A frame of another site is drawn by a process of
        its own, and gets no clicks until the browser knows where it lies."""
        place = self.evaluate(page, PLACE, frame)

        def is_pointed_at():
            self._send_mouse(page, place, "mouseMoved")
            return self.evaluate(page, "() => document.body.dataset.pointed")
        wait_until(is_pointed_at, what="the pointer in the frame")
        for kind in "mousePressed", "mouseReleased":
            self._send_mouse(page, place, kind)

    def _send_mouse(self, page, place, kind, modifiers=0):
        self.call("Input.dispatchMouseEvent", self.session(page), type=kind, x=place[0], y=place[1],
                  button="left", clickCount=1, modifiers=modifiers)

    def _worker(self):
        return next((one["targetId"] for one in self.targets()
                     if one["type"] == "service_worker"), None)

    def end_worker(self):
        """As the browser does with one that is idle, but at once."""
        self.call("Target.closeTarget", targetId=self._worker())
        wait_until(lambda: self._worker() is None, what="its end")

    def choose_menu(self, page, **chosen):
        """As if the entry were chosen on that page; no browser lets anybody click its own menus."""
        worker = wait_until(self._worker, what="the worker")
        address = self.evaluate(page, "() => location.href")
        self.evaluate(worker, """async (chosen, address) => {
            const tabs = await chrome.tabs.query({});
            chrome.contextMenus.onClicked.dispatch(chosen, tabs.find((tab) => tab.url === address));
        }""", chosen, address)

    def picture(self, page, path, size=None, dark=False):
        session = self.session(page)
        if size:
            self.call("Emulation.setDeviceMetricsOverride", session, width=size[0], height=size[1],
                      deviceScaleFactor=1, mobile=False)
        self.call("Emulation.setEmulatedMedia", session, features=[
            {"name": "prefers-color-scheme", "value": "dark" if dark else "light"}])
        data = self.call("Page.captureScreenshot", session)["data"]
        Path(path).write_bytes(base64.b64decode(data))
