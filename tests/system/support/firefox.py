"""Firefox, driven by Marionette."""
import base64
import itertools
import json
import socket
import sys
from pathlib import Path

from .browser import CONTROL, PLACE, UUID, Browser
from .home import DEADLINE, wait_until


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
