"""The host that browsers start: what it takes, whom it obeys, and what it says when Orlop hangs,
dies or is not there."""
import ast
import base64
import json
import random
import shutil
import struct
import time
import unittest
from pathlib import Path

from support.bus import Bus, mock_interpreter
from support.home import DEADLINE, Home, wait_until
from support.native_host import HOST, STAND_IN, NativeHost, bus_with_service, read_services_again

ADDRESS = "http://127.0.0.1/x.bin"


class BrowserHostTest(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.close)
        self.state = self.home.root / "stand-in"
        self.state.mkdir()
        self.bus = bus_with_service(self.home, mock_interpreter(), STAND_IN, self.state)
        self.addCleanup(self.bus.close)

    def host(self, **options):
        return NativeHost(self.home, self.bus.environment, **options)

    def mode(self, text):
        (self.state / "mode").write_text(text)

    def records(self):
        path = self.state / "records"
        return path.read_text().split()[::2] if path.exists() else []

    def warm(self, host):
        """Orlop is started for the first that is asked of it, which here costs no test its time."""
        wait_until(lambda: "filter" in host.ask("filter"), what="Orlop, started when it was needed")

    def test_everything_of_a_request_arrives_once(self):
        host = self.host()
        self.warm(host)
        body = bytes(range(256))
        request = {"id": "a.b_c-1", "address": ADDRESS + "?q=ä", "finalAddress": ADDRESS,
                   "referrer": "http://127.0.0.1/page", "cookies": "a=1; b=2",
                   "userAgent": "Browser/1", "method": "POST",
                   "body": base64.b64encode(body).decode(), "contentType": "text/plain",
                   "name": "größe.bin", "size": 1 << 40, "page": "http://127.0.0.1/page",
                   "private": True}
        answer = host.ask("handOver", within=2000, request=request)
        self.assertEqual(answer, {"outcome": "ok", "text": ""})
        received = ast.literal_eval((self.state / "requests").read_text())
        self.assertLess(received.pop("deadline"), 2000)
        self.assertEqual(received, request | {"body": body})
        self.assertEqual(host.hand_over("a.b_c-1"), "known")
        self.assertEqual(self.records(), ["a.b_c-1"])
        many = [{"id": f"m{number}", "address": ADDRESS} for number in range(500)] + [request]
        answers = host.ask("handOverAll", within=2000, requests=many)["outcomes"]
        self.assertEqual([one["outcome"] for one in answers], ["ok"] * 500 + ["known"])
        self.assertEqual(host.ask("filter"), {"filter": r'"\\.iso$"'})
        self.mode("refuse")
        self.assertEqual(host.ask("handOver", within=2000, request=request),
                         {"outcome": "refused", "text": "Not this one."})
        host.process.stdin.close()
        self.assertEqual(host.process.wait(DEADLINE), 0)

    def test_no_answer_in_time_is_withdrawn(self):
        host = self.host()
        self.warm(host)
        self.mode("hang")
        begin = time.monotonic()
        self.assertEqual(host.hand_over("late"), "timeout")
        self.assertLess(time.monotonic() - begin, 2.5)
        self.assertEqual(host.ask("withdraw", id="late"), {"gone": True})
        wait_until(lambda: self.records() == [], what="the withdrawal")
        self.assertTrue((self.state / "requests").exists())
        self.mode("late")
        self.assertEqual(host.hand_over("later"), "timeout")
        self.assertEqual(self.records(), [])

    def test_orlop_dies_after_it_has_saved(self):
        host = self.host()
        self.warm(host)
        self.mode("die")
        self.assertEqual(host.hand_over("saved"), "known", "it was asked again and started for it")
        self.assertEqual(self.records(), ["saved"])

    def test_nobody_there(self):
        (self.bus.folder / "services/com.tarnworks.Orlop.service").unlink()
        read_services_again(self.bus)
        host = self.host()
        self.assertEqual(host.hand_over("nobody"), "unreachable")
        self.assertEqual(host.ask("filter")["error"], "unreachable")
        self.bus.close()
        self.assertIn(host.hand_over("no-bus"), ("unreachable", "timeout"))
        other = NativeHost(self.home, {})
        self.assertEqual(other.hand_over("never-a-bus"), "unreachable")

    def test_the_bus_dies_while_orlop_is_asked(self):
        host = self.host()
        self.warm(host)
        self.mode("hang")
        host.send({"call": 77, "do": "handOver", "within": 2000,
                   "request": {"id": "x", "address": ADDRESS}})
        wait_until(lambda: (self.state / "requests").exists(), what="the request")
        self.bus.close()
        self.assertEqual(host.read()["outcome"], "timeout")

    def test_the_running_count(self):
        host = self.host()
        self.assertEqual(host.ask("subscribe"), {})
        self.assertEqual(host.read(), {"event": "running", "here": False, "count": 0})
        self.assertFalse(self.bus.has_owner("com.tarnworks.Orlop"), "watching starts nobody")
        self.warm(host)
        seen = [host.read()]
        for count in 3, 1:
            self.bus.call("com.tarnworks.Orlop", "/com/tarnworks/Orlop",
                          "com.tarnworks.Orlop.SetRunning", str(count))
            while seen[-1]["count"] != count:
                seen.append(host.read())
        self.assertTrue(all(event["here"] for event in seen))

    def test_whom_it_obeys(self):
        callers = [("chrome-extension://abcdefghijklmnopabcdefghijklmnop/",),
                   ("/x/com.tarnworks.orlop.json", "other@example.org"),
                   ("moz-extension://x/",), ("https://example.org/",)]
        for caller in callers:
            with self.subTest(caller=caller):
                host = self.host(caller=caller)
                self.assertIsNone(host.read())
                self.assertEqual(host.process.wait(DEADLINE), 1)
        manifest = json.loads(self.home.run("--print-manifest", program=HOST).stdout)
        origin, = manifest["allowed_origins"]
        self.warm(self.host())
        self.assertEqual(self.host(caller=(origin, "--parent-window=0")).hand_over("o"), "ok")
        for words in ([], ["--instal"], ["x"], ["--install", "--browser"]):
            self.assertEqual(self.home.run(*words, program=HOST).returncode, 2, words)

    def test_bad_messages_are_refused_and_make_nothing(self):
        host = self.host()
        good = {"id": "i", "address": ADDRESS}
        bad_requests = [
            {}, {"id": "i"}, {"address": ADDRESS}, good | {"unknown": 1}, good | {"id": ""},
            good | {"id": "a" * 129}, good | {"id": "ä"}, good | {"id": 7},
            good | {"address": "file:///etc/passwd"}, good | {"address": "javascript:alert(1)"},
            good | {"address": "http://"}, good | {"address": "http://a/\r\nX: y"},
            good | {"address": "http://a/" + "x" * 40000}, good | {"cookies": "a=1\r\nX: y"},
            good | {"cookies": ["a"]}, good | {"userAgent": "a\x00b"}, good | {"method": "PUT"},
            good | {"body": "AAAA"}, good | {"method": "POST", "body": "*"},
            good | {"size": -1}, good | {"size": 1.5}, good | {"size": "1"}, good | {"size": 1 << 60},
            good | {"private": "yes"}, good | {"page": "about:blank"}, good | {"name": "\u0007"},
            good | {"deadline": 1 << 31}]
        for request in bad_requests:
            with self.subTest(request=str(request)[:80]):
                answer = host.ask("handOver", within=2000, request=request)
                self.assertEqual(answer["error"], "invalid")
                answer = host.ask("handOverAll", within=2000, requests=[good, request])
                self.assertEqual(answer["error"], "invalid")
        for message in ({"do": "show"}, {"call": 1}, {"call": 1, "do": "sudo"},
                        {"call": 1, "do": "handOver", "request": good},
                        {"call": 1, "do": "show", "id": "x"}, {"call": -1, "do": "show"},
                        {"call": 1, "do": "handOver", "within": 60000, "request": good},
                        {"call": 1, "do": "handOverAll", "within": 1, "requests": [good] * 1001},
                        b"[]", b"nonsense", b'{"call":1,"call":1,"do":"show"}', b"\xff",
                        b'{"call":1,"do":' + b"[" * 60000):
            with self.subTest(message=str(message)[:80]):
                host.send(message)
                self.assertEqual(host.read()["error"], "invalid")
        self.assertFalse((self.state / "requests").exists())
        self.warm(host)
        self.assertEqual(host.hand_over("still-works"), "ok")

    def test_lengths_that_lie_end_it(self):
        for data in (struct.pack("=I", 0), struct.pack("=I", (1 << 20) + 1), b"\xff" * 64,
                     random.Random(1).randbytes(5000)):
            host = self.host()
            host.send_bytes(data)
            self.assertEqual(host.read()["error"], "invalid")
            self.assertIsNone(host.read())
            self.assertEqual(host.process.wait(DEADLINE), 1)
        host = self.host()
        message = {"call": 1, "do": "show", "id": "x" * ((1 << 20) - 60)}
        data = json.dumps(message).encode()
        self.assertLessEqual(len(data), 1 << 20)
        for at in range(0, len(data) + 4, 100_000):
            host.send_bytes((struct.pack("=I", len(data)) + data)[at:at + 100_000])
        self.assertEqual(host.read()["error"], "invalid", "the largest that is read")
        host.send_bytes(struct.pack("=I", 50) + b"{")
        host.process.stdin.close()
        self.assertIsNone(host.read(), "half a message is none")

    def test_nothing_of_a_request_is_logged(self):
        host = self.host()
        host.hand_over("quiet", cookies="session=topsecret")
        host.ask("handOver", within=1, request={"id": "quiet", "cookies": "topsecret"})
        host.process.stdin.close()
        self.assertEqual(host.process.wait(DEADLINE), 0)
        self.assertEqual(host.process.stderr.read(), b"")
        self.assertNotIn("topsecret", self.home.log_text())


class ManifestTest(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.close)

    def manifests(self):
        return sorted(str(path.relative_to(self.home.root))
                      for path in self.home.root.rglob("com.tarnworks.orlop.json"))

    def test_install_and_uninstall(self):
        result = self.home.run("--install", program=HOST)
        self.assertEqual(self.manifests(), [], result.stdout)
        for folder in ".mozilla", "config/chromium", "config/BraveSoftware/Brave-Browser":
            (self.home.root / folder).mkdir(parents=True)
        result = self.home.run("--install", program=HOST)
        self.assertEqual(result.returncode, 0)
        self.assertEqual(self.manifests(), [
            ".mozilla/native-messaging-hosts/com.tarnworks.orlop.json",
            "config/BraveSoftware/Brave-Browser/NativeMessagingHosts/com.tarnworks.orlop.json",
            "config/chromium/NativeMessagingHosts/com.tarnworks.orlop.json"])
        for path in self.manifests():
            manifest = json.loads((self.home.root / path).read_text())
            self.assertEqual(Path(manifest["path"]), HOST.resolve())
            self.assertEqual("allowed_extensions" in manifest, ".mozilla" in path)
            self.assertIn(path, result.stdout)
        self.home.run("--install", "--browser", "vivaldi", "--browser", "firefox", program=HOST)
        self.assertEqual(len(self.manifests()), 4)
        self.assertEqual(self.home.run("--install", "--browser", "lynx", program=HOST).returncode, 1)
        self.assertIn("removed", self.home.run("--uninstall", program=HOST).stdout)
        self.assertEqual(self.manifests(), [])

    def test_the_bus_starts_what_lies_beside_it(self):
        folder = self.home.root / "some where/bin"
        folder.mkdir(parents=True)
        host = Path(shutil.copy(HOST, folder))
        self.assertEqual(self.home.run("--install", program=host).returncode, 0)
        service = self.home.root / "data/dbus-1/services/com.tarnworks.Orlop.service"
        self.assertFalse(service.exists(), "there is no Orlop")

        (folder / "orlop").write_text(
            f"#!/bin/sh\n[ \"$*\" = --background ] && exec {mock_interpreter()} {STAND_IN} "
            f"'{self.home.root}'\n")
        (folder / "orlop").chmod(0o755)
        bus = Bus(self.home.environment())
        self.addCleanup(bus.close)
        result = self.home.run("--install", program=host, environment=bus.environment)
        self.assertIn(f"Session bus: {service}\n", result.stdout)
        caller = NativeHost(self.home, bus.environment)
        wait_until(lambda: "filter" in caller.ask("filter"), what="Orlop, started by the bus")

        everybody = self.home.root / "share/dbus-1/services" / service.name
        everybody.parent.mkdir(parents=True)
        everybody.write_text(service.read_text())
        shared = bus.environment | {"XDG_DATA_DIRS": str(self.home.root / "share")}
        result = self.home.run("--install", program=host, environment=shared)
        self.assertIn(f"Session bus: {service} removed\n", result.stdout)
        everybody.write_text("[D-BUS Service]\nExec=/usr/bin/env orlop\n")
        self.home.run("--install", program=host, environment=shared)
        self.assertTrue(service.exists(), "that of all users is another")

        self.home.run("--uninstall", "--browser", "firefox", program=host)
        self.assertTrue(service.exists())
        self.home.run("--uninstall", program=host)
        self.assertFalse(service.exists())

    def test_a_path_that_the_bus_cannot_be_told_of(self):
        folder = self.home.root / 'some "where"'
        folder.mkdir()
        host = Path(shutil.copy(HOST, folder))
        (folder / "orlop").touch(0o755)
        result = self.home.run("--install", program=host)
        self.assertEqual(result.returncode, 1)
        self.assertIn("Session bus: cannot be told of", result.stdout)
        self.assertEqual(list(self.home.root.rglob("*.service")), [])


if __name__ == "__main__":
    unittest.main()
