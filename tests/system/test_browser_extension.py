"""Downloads in real browsers that Orlop takes over, and those that stay."""
import os
import signal
import unittest

from support.browser_case import SERVICE, BrowserCase
from support.chromium import Chromium
from support.firefox import Firefox

from support.home import wait_until

KINDS = ("file", "twice", "signed", "type", "form")
STAYING = ("upload", "blob", "data")
# What a page can try that has no user: events of its own making, and messages to the extension.
ATTACK = """async (extension, link) => {
    const element = document.getElementById(link);
    for (const type of ["contextmenu", "mousedown", "mouseup", "keydown", "dragstart", "copy"])
        element.dispatchEvent(new Event(type, { bubbles: true }));
    window.postMessage({ do: "handOver", addresses: [element.href], origin: {} }, "*");
    const tried = [];
    try {
        await chrome.runtime.sendMessage(extension, { do: "handOver", addresses: [element.href] });
        tried.push("sent");
    } catch {
        tried.push("refused");
    }
    for (const path of ["pages/picker.html", "pages/popup.html"])
        await fetch(extension + path).then(() => tried.push("read"), () => tried.push("refused"));
    return tried;
}"""
HELD_KEY_AND_CLICK = """(link) => {
    for (const type of ["keydown", "click"])
        document.body.dispatchEvent(new (type === "click" ? MouseEvent : KeyboardEvent)(
            type, { bubbles: true, altKey: true, ctrlKey: true, key: "Enter" }));
    document.getElementById(link).click();
}"""


class ExtensionTests:
    names = [f"{kind}.bin" for kind in KINDS + STAYING] + [
        f"{word}.bin" for word in ("held", "faked", "never", "small", "some", "slow", "cold",
                                   "pick-1", "pick-2", "moved", "mine", "frame", "link",
                                   "media", "selected", "worker")]

    def setUp(self):
        # A busy machine starts it in more time than a browser's download is held for.
        self.orlop.start()
        self.address = self.site.url(f"/page?{self.id()}")
        self.page = self.browser.open(self.address)

    def settings(self, **changes):
        before = self.browser.ask_extension("(names) => api.storage.local.get(names)",
                                            list(changes))
        self.browser.set(**changes)
        forgotten = [name for name in changes if name not in before]
        self.addCleanup(self.browser.ask_extension,
                        "(names) => api.storage.local.remove(names)", forgotten)
        self.addCleanup(self.browser.set, **before)

    def click(self, kind, **options):
        self.browser.click(self.page, f"{kind}-{kind}.bin", **options)

    def test_what_needs_cookies_referrers_forms_and_redirects(self):
        for kind in KINDS:
            self.click(kind)
            with self.subTest(kind=kind):
                self.assert_in_orlop(f"{kind}.bin")

    def test_cookies_of_private_windows_and_of_frames(self):
        # Browsers draw a frame only when it is in sight.
        wait_until(lambda: self.browser.evaluate(self.page, """() => {
            document.getElementById("frame").scrollIntoView({ block: "center" });
            return document.body.dataset.shown; }"""), what="the frame")
        self.browser.click_in_frame(self.page, "frame")
        self.assert_in_orlop("frame.bin")
        address = self.site.url("/page?visitor=private")
        self.browser.ask_extension(
            "async (url) => { await api.windows.create({ url, incognito: true }); }", address)
        private = self.browser.page_at("visitor=private")
        wait_until(lambda: self.browser.evaluate(
            private, "() => document.readyState === 'complete' && document.links.length > 0"),
            what="the private window")
        self.browser.click(private, "mine-mine.bin")
        self.assert_in_orlop("mine.bin")
        kept = self.browser.ask_extension("() => api.storage.local.get(null)")
        self.assertNotIn("mine.bin", str(kept))

    def test_what_cannot_be_repeated_stays(self):
        self.click("upload")
        self.assert_in_browser("upload.bin")
        for kind in "blob", "data":
            self.browser.click(self.page, kind)
            self.assert_in_browser(f"{kind}.bin")

    def test_rules(self):
        self.browser.click(self.page, "file-held.bin", leaves=True)
        self.assert_in_browser("held.bin")
        for name, settings in (("never.bin", {"never": "127.0.0.1"}),
                               ("small.bin", {"leastMebibytes": 1}),
                               ("some.bin", {"which": "some", "types": "zip iso"})):
            with self.subTest(name=name):
                self.settings(**settings)
                self.browser.click(self.page, f"file-{name}")
                self.assert_in_browser(name)
                self.doCleanups()

    def test_a_page_that_fakes_clicks(self):
        before = self.in_orlop()
        tried = self.browser.evaluate(self.page, ATTACK, self.browser.origin, "file-faked.bin")
        self.assertEqual(tried, ["refused"] * 3)
        self.assertEqual(self.browser.unsettled(), [])
        self.assertEqual(self.in_orlop(), before)
        # A download that the page began by itself is an ordinary one, and its key counts for nothing.
        self.browser.evaluate(self.page, HELD_KEY_AND_CLICK, "file-faked.bin")
        self.assert_in_orlop("faked.bin")

    def test_orlop_does_not_run(self):
        self.orlop.kill()
        self.browser.click(self.page, "file-cold.bin")
        wait_until(self.orlop.process, what="the start")
        wait_until(lambda: "cold.bin" in self.in_orlop() + self.in_browser(), what="the file")
        wait_until(lambda: not self.browser.unsettled() and not self.home.queue(), what="an end")
        self.assertEqual((self.in_orlop() + self.in_browser()).count("cold.bin"), 1)

    def test_orlop_hangs(self):
        process = self.orlop.process()
        os.kill(process, signal.SIGSTOP)
        try:
            self.browser.click(self.page, "file-slow.bin")
            wait_until(lambda: "slow.bin" in self.in_browser(), 10, "the browser's own download")
            self.assertEqual(len(self.browser.unsettled()), 1, "it is owed a withdrawal")
        finally:
            os.kill(process, signal.SIGCONT)
        self.assert_in_browser("slow.bin")
        wait_until(lambda: not self.home.queue(), what="the withdrawal")
        self.assert_in_browser("slow.bin")

    def test_the_picker(self):
        tab = self.browser.ask_extension(
            "async (url) => (await api.tabs.query({})).find((tab) => tab.url === url).id",
            self.address)
        self.browser.ask_extension(
            "(tabId) => { api.runtime.sendMessage({ do: 'pick', tabId }); }", tab)
        picker = self.browser.page_at("picker.html")
        wait_until(lambda: self.browser.evaluate(
            picker, "() => document.querySelectorAll('li').length") > 20, what="the links")
        chosen = self.browser.evaluate(picker, """(wanted) => {
            const chosen = [];
            for (const row of document.querySelectorAll("li")) {
                const box = row.querySelector("input");
                const isWanted = wanted.some((part) => row.textContent.includes(part));
                if (box.checked !== isWanted) box.click();
                if (isWanted) chosen.push(row.querySelector("small").textContent);
            }
            return [chosen, document.querySelectorAll("li b").length,
                    document.body.textContent.includes("<b>not bold</b>"),
                    document.getElementById("page").textContent];
        }""", ["/file/pick-1.bin", "/file/pick-2.bin"])
        self.assertEqual(chosen, [[self.site.url(f"/file/pick-{n}.bin") for n in (1, 2)], 0, True,
                                  "Site <b>"], "text of the page is text")
        self.browser.click(picker, "handOver")
        self.assert_in_orlop("pick-1.bin", "pick-2.bin")

    def test_menus(self):
        self.browser.choose_menu(self.page, menuItemId="link", editable=False,
                                 linkUrl=self.site.url("/file/link.bin"))
        self.assert_in_orlop("link.bin")
        self.browser.choose_menu(self.page, menuItemId="media", editable=False,
                                 srcUrl=self.site.url("/file/media.bin"))
        self.assert_in_orlop("media.bin")
        self.browser.evaluate(self.page, """() => getSelection().selectAllChildren(
            document.getElementById("file-selected.bin"))""")
        self.browser.choose_menu(self.page, menuItemId="selection", editable=False)
        self.assert_in_orlop("selected.bin")

    def test_the_count_on_the_button(self):
        def badge():
            return self.browser.ask_extension("() => api.action.getBadgeText({})")
        self.orlop.bus.call(*SERVICE, f"{SERVICE[0]}.Add", self.site.url("/stall/count.bin"), "{}")
        wait_until(lambda: badge() == "1", what="the count")
        identity, = [record["Identity"] for record in self.home.queue()]
        self.orlop.bus.call(*SERVICE, f"{SERVICE[0]}.Remove", f"['{identity}']")
        wait_until(lambda: badge() == "", what="no count")

    def test_a_browser_that_does_not_know_the_host(self):
        kept = {path: path.read_bytes() for place in (".mozilla", "config")
                for path in (self.home.root / place).rglob("com.tarnworks.orlop.json")}
        for path in kept:
            path.unlink()
        try:
            self.browser.restart()
            self.page = self.browser.open(self.site.url("/page"))
            self.browser.click(self.page, "file-moved.bin")
            self.assert_in_browser("moved.bin")
            self.assertTrue(self.browser.ask_extension(
                "async () => (await api.storage.session.get('orlop')).orlop.isMissing"))
        finally:
            for path, data in kept.items():
                path.write_bytes(data)
            self.browser.restart()

class ChromiumTest(ExtensionTests, BrowserCase):
    family = Chromium

    def test_the_worker_dies_while_orlop_is_asked(self):
        process = self.orlop.process()
        os.kill(process, signal.SIGSTOP)
        try:
            self.browser.click(self.page, "file-worker.bin")
            journal = wait_until(self.browser.unsettled, what="the journal")
            self.browser.end_worker()
        finally:
            os.kill(process, signal.SIGCONT)
        self.browser.ask_extension("() => api.runtime.sendMessage({ do: 'connect' })")
        self.assertEqual(len(journal), 1)
        wait_until(lambda: not self.browser.unsettled() and not self.home.queue(), what="an end")
        # The browser goes on by itself when the worker has died.
        wait_until(lambda: "worker.bin" in self.in_orlop() + self.in_browser(), what="the file")
        self.assertEqual((self.in_orlop() + self.in_browser()).count("worker.bin"), 1)

class FirefoxTest(ExtensionTests, BrowserCase):
    family = Firefox

if __name__ == "__main__":
    unittest.main()
