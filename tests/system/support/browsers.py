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
        x, y = self.evaluate(page, PLACE, element)
        session = self.session(page)
        for kind in "mouseMoved", "mousePressed", "mouseReleased":
            self.call("Input.dispatchMouseEvent", session, type=kind, x=x, y=y, button="left",
                      clickCount=1, modifiers=ALT if leaves else 0)

    click_in_frame = click

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


class Firefox(Browser):
    family, program = "firefox", "firefox-esr"
    origin = f"moz-extension://{UUID}/"

    def prepare(self):
        self.profile = self.home.root / "firefox"
        self.profile.mkdir(exist_ok=True)
        preferences = {
            "extensions.webextensions.uuids": json.dumps({"orlop@tarnworks.com": UUID}),
            "extensions.webextensions.keepStorageOnUninstall": True,
            "extensions.webextensions.keepUuidOnUninstall": True,
            "browser.download.folderList": 2,
            "browser.download.dir": str(self.home.root / "Browser"),
            "browser.download.useDownloadDir": True,
            "browser.download.alwaysOpenPanel": False,
            "browser.download.always_ask_before_handling_new_types": False,
            "browser.shell.checkDefaultBrowser": False,
            "browser.startup.page": 0,
            "browser.sessionstore.resume_from_crash": False,
            "toolkit.startup.max_resumed_crashes": -1,
            "browser.aboutwelcome.enabled": False,
            "datareporting.policy.dataSubmissionEnabled": False,
            "app.update.enabled": False,
            "network.captive-portal-service.enabled": False,
            "network.connectivity-service.enabled": False,
            "dom.disable_open_during_load": False,
            "intl.locale.requested": self.language,
        }
        (self.home.root / "Browser").mkdir(exist_ok=True)
        (self.profile / "user.js").write_text("".join(
            f"user_pref({json.dumps(name)}, {json.dumps(value)});\n"
            for name, value in preferences.items()))

    def start(self):
        self._numbers = itertools.count(1)
        self._socket = None
        (self.profile / "MarionetteActivePort").unlink(missing_ok=True)
        with open(self.profile / "user.js", "a", encoding="utf-8") as file:
            file.write('user_pref("marionette.port", 0);\n')
        self._spawn(self.program, "--marionette", "--remote-allow-system-access", "--no-remote",
                    *([] if self.visible else ["--headless"]), "--profile", self.profile)
        self._socket = wait_until(self._connected, what="Marionette")
        self._read()
        self.call("WebDriver:NewSession", capabilities={"alwaysMatch": {
            "acceptInsecureCerts": True, "unhandledPromptBehavior": "accept"}})
        self.call("WebDriver:SetTimeouts", script=DEADLINE * 1000, pageLoad=DEADLINE * 1000)
        self.call("Addon:Install", path=str(self.packed / "firefox"), temporary=True,
                  allowPrivateBrowsing=True)
        self.own_page = self.open(self.origin + "pages/options.html")

    def _connected(self):
        try:
            port = int((self.profile / "MarionetteActivePort").read_text())
            return socket.create_connection(("127.0.0.1", port), DEADLINE)
        except (OSError, ValueError):
            if self.process.poll() is not None:
                raise ConnectionError("Firefox has ended")
            return None

    def _read(self):
        length = b""
        while not length.endswith(b":"):
            byte = self._socket.recv(1)
            if not byte:
                raise ConnectionError("the browser has gone")
            length += byte
        data = b""
        while len(data) < int(length[:-1]):
            block = self._socket.recv(int(length[:-1]) - len(data))
            if not block:
                raise ConnectionError("the browser has gone")
            data += block
        return json.loads(data)

    def call(self, name, **parameters):
        number = next(self._numbers)
        data = json.dumps([0, number, name, parameters]).encode()
        self._socket.sendall(b"%d:" % len(data) + data)
        _, answered, error, result = self._read()
        assert answered == number
        if error:
            raise AssertionError(f"{name}: {error['error']}: {error['message']}")
        return result

    def kill(self):
        super().kill()
        if self._socket:
            self._socket.close()
            self._socket = None

    close = kill

    def open(self, address):
        page = self.call("WebDriver:NewWindow", type="tab", focus=True)["handle"]
        self.call("WebDriver:SwitchToWindow", handle=page)
        self.call("WebDriver:Navigate", url=address)
        return page

    def page_at(self, part):
        def find():
            for page in self.call("WebDriver:GetWindowHandles"):
                self.call("WebDriver:SwitchToWindow", handle=page, focus=False)
                if part in self.call("WebDriver:GetCurrentURL")["value"]:
                    return page
            return None
        return wait_until(find, what=part)

    def evaluate(self, page, function, *arguments):
        self.call("WebDriver:SwitchToWindow", handle=page, focus=False)
        return self.call("WebDriver:ExecuteScript", script=f"return ({function})(...arguments)",
                         args=list(arguments), sandbox=None, newSandbox=False)["value"]

    def click(self, page, element, leaves=False):
        self.call("WebDriver:SwitchToWindow", handle=page)
        x, y = self.evaluate(page, PLACE, element)
        held = [{"type": "key", "id": "keys", "actions": [{"type": "keyDown", "value": CONTROL},
                 {"type": "pause"}, {"type": "pause"}, {"type": "keyUp", "value": CONTROL}]}]
        pointer = {"type": "pointer", "id": "pointer", "actions": [
            {"type": "pointerMove", "x": round(x), "y": round(y)},
            {"type": "pointerDown", "button": 0}, {"type": "pointerUp", "button": 0}]}
        self.call("WebDriver:PerformActions", actions=(held if leaves else []) + [pointer])

    def click_in_frame(self, page, frame):
        """The link that fills the frame of that id."""
        self.call("WebDriver:SwitchToWindow", handle=page)
        found = self.call("WebDriver:FindElement", using="css selector", value=f"#{frame}")["value"]
        self.call("WebDriver:SwitchToFrame", element=next(iter(found.values())))
        link = self.call("WebDriver:FindElement", using="css selector", value="a")["value"]
        self.call("WebDriver:ElementClick", id=next(iter(link.values())))
        self.call("WebDriver:SwitchToParentFrame")

    def choose_menu(self, page, **chosen):
        """As if the entry were chosen on that page; no browser lets anybody click its own menus."""
        self.call("WebDriver:SwitchToWindow", handle=page)
        self._privileged("""
            const { ExtensionParent } = ChromeUtils.importESModule(
                "resource://gre/modules/ExtensionParent.sys.mjs");
            const extension = ExtensionParent.GlobalManager.getExtension("orlop@tarnworks.com");
            const window = Services.wm.getMostRecentWindow("navigator:browser");
            extension.emit("webext-menu-menuitem-click", arguments[0], window.gBrowser.selectedTab);
        """, chosen)

    def picture(self, page, path, size=None, dark=False):
        self._prefer("layout.css.prefers-color-scheme.content-override", 0 if dark else 1)
        self.call("WebDriver:SwitchToWindow", handle=page)
        if size:
            self.call("WebDriver:SetWindowRect", width=size[0], height=size[1] + 90)
        data = self.call("WebDriver:TakeScreenshot", full=False)["value"]
        Path(path).write_bytes(base64.b64decode(data))

    def _prefer(self, name, value):
        self._privileged("Services.prefs.setIntPref(arguments[0], arguments[1])", name, value)

    def _privileged(self, script, *arguments):
        self.call("Marionette:SetContext", value="chrome")
        self.call("WebDriver:ExecuteScript", args=list(arguments), sandbox="system", script=script)
        self.call("Marionette:SetContext", value="content")
