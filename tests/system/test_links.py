"""Addresses as people hand them over, and what they are told of the rest."""
import contextlib
import re
import select
import shutil
import socket
import struct
import time
import unittest
from pathlib import Path
from urllib.parse import quote

from support.case import MIB, SystemTest
from support.home import PROGRAMS, wait_until

DESKTOP = PROGRAMS / "orlop"
NO_DISPLAY = {"DISPLAY": "", "WAYLAND_DISPLAY": "", "QT_QPA_PLATFORM": ""}


class LinksTest(SystemTest):
    def test_a_mail_on_standard_input_and_as_an_argument(self):
        one, two = self.serve("mail-1.bin", 3000, 1), self.serve("mail-2.bin", 3000, 2)
        mail = (f"Hi Anna,\r\nsee <{self.server.url('/mail-1.bin')}> and\r\n"
                f"({self.server.url('/mail-2.bin')}), or www.example.invalid/x.\r\n")
        result = self.home.run("-", text=mail)
        self.assert_status(result, 1)
        self.assert_downloaded("mail-1.bin", one)
        self.assert_downloaded("mail-2.bin", two)
        self.assertEqual(result.stderr.splitlines(), ["orlop-terminal: no address: Hi Anna,"])
        result = self.home.run(f"look:\n{self.server.url('/mail-1.bin')}")
        self.assert_status(result, 1)
        self.assert_downloaded("mail-1 1.bin", one)
        self.assertIn("Download Complete: mail-1 1.bin", result.stdout, "the name on the disk")

    def test_the_programs_own_schemes_stand_for_addresses(self):
        names = ("plain.bin", "encoded.bin", "linked-1.bin", "linked-2.bin")
        sources = {name: self.serve(name, 3000, number) for number, name in enumerate(names)}
        url = {name: self.server.url("/" + name) for name in names}
        both = quote(f"{url['linked-1.bin']}\n{url['linked-2.bin']}", safe="")
        result = self.home.run(url["plain.bin"].replace("http", "ORLOP", 1),
                               "orlop://encoded/" + quote(url["encoded.bin"], safe=""),
                               "orlop://linked/" + both)
        self.assert_status(result, 1)
        self.assertIn("so 2 were not taken", result.stderr, "nobody can be asked")
        self.assertEqual(self.home.finished(), ["encoded.bin", "plain.bin"])
        for name in self.home.finished():
            self.assert_downloaded(name, sources[name])

    def test_what_is_refused_says_why(self):
        for word, words in (("www.example.invalid/x", "https://www.example.invalid/x"),
                            ("magnet:?xt=1", "no address of http, https or a file"),
                            ("http://h:port/", "no valid address"),
                            ("Hi Anna,", "no address: Hi Anna,")):
            with self.subTest(word=word):
                result = self.home.run(word)
                self.assert_status(result, 2)
                self.assertIn(words, result.stderr)
        result = self.home.run("-Downlods Folder", "/nowhere", self.server.url("/x"))
        self.assert_status(result, 2)
        self.assertIn('did you mean "Downloads Folder"?', result.stderr)

    def test_redirecting_services_are_asked_if_the_setting_says_so(self):
        source = self.serve("wrapped.bin", 3000)
        inner = self.server.url("/wrapped.bin")
        wrapped = f"http://127.0.0.1:9/?u={inner}"
        result = self.home.run("-Skip Redirecting Services", "NO", wrapped)
        self.assert_status(result, 1)
        self.assertEqual(self.home.queued_addresses(), [wrapped])
        self.home.queue_path.unlink()
        self.assert_status(self.home.run(wrapped), 0)
        self.assert_downloaded("wrapped.bin", source)

    def test_an_address_with_blanks_and_umlauts_is_taken_up_again(self):
        source = self.serve("grüße an alle.bin", 3 * MIB)
        address = self.server.url("/rate/800000/grüße an alle.bin")
        first = self.home.start(address)
        wait_until(lambda: self.home.partial_bytes() > 0, what="the first bytes")
        self.home.interrupt(first)
        self.assertEqual(len(self.home.queue()), 1)
        result = self.home.run(address)
        self.assert_status(result, 0)
        self.assertIn("Already in the list", result.stdout)
        self.assertEqual(self.home.finished(), [source.name])

    def test_many_files_and_system_folders_are_not_taken_in_silence(self):
        folder = self.home.root / "many"
        folder.mkdir()
        for number in range(101):
            (folder / f"{number}.bin").write_bytes(b"x")
        result = self.home.run(folder)
        self.assert_status(result, 1)
        self.assertIn("more than 100 files", result.stderr)
        self.assertEqual(self.home.finished(), [])
        result = self.home.run("/opt/")
        self.assert_status(result, 1)
        self.assertIn("nothing to download in /opt", result.stderr)

    def test_a_document_is_no_list(self):
        self.serve("mentioned.bin", 3000)
        document = self.home.root / "notes.txt"
        document.write_text(f"Dear all,\nsee {self.server.url('/mentioned.bin')}.\nBye\n")
        result = self.home.run(document)
        self.assert_status(result, 1)
        self.assertIn("1 address in notes.txt.", result.stderr)
        self.assertEqual(self.home.finished(), [])


class SecondStartTest(SystemTest):
    def setUp(self):
        super().setUp()
        self.serve("slow.bin", 3 * MIB)
        self.handed = self.serve("handed.bin", 5000)
        self.first = self.home.start(self.server.url("/rate/1000000/slow.bin"))
        wait_until(lambda: self.home.partial_bytes() > 0, what="the first bytes")

    def test_settings_are_not_dropped(self):
        result = self.home.run("-Downloads Folder", "/tmp", self.server.url("/handed.bin"))
        self.assert_status(result, 1)
        self.assertIn('-"Downloads Folder"', result.stderr)
        self.assert_status(self.home.result(self.first), 0)
        self.assertEqual(self.home.finished(), ["slow.bin"])

    def test_what_was_handed_over_outlives_a_kill_of_its_owner(self):
        for number in range(12):
            address = self.server.url(f"/rate/1000/slow.bin?{number}")
            self.assert_status(self.home.run(address), 0)
            self.first.kill()
            self.first.wait()
            self.assertIn(address, self.home.queued_addresses(), f"round {number}")
            self.home.queue_path.unlink()
            shutil.rmtree(self.home.downloads)
            self.home.downloads.mkdir()
            # What is there already would make it seem to run before it has the queue.
            self.first = self.home.start(self.server.url("/rate/1000000/slow.bin"))
            wait_until(lambda: self.home.partial_bytes() > 0, what="the first bytes")

    def test_a_flood_fills_no_memory_and_keeps_nobody_out(self):
        (path,) = (self.home.root / "runtime").rglob("*.socket")
        message = b"\0\0" + b"http://a.example/" + b"x" * (4 << 20)
        message = struct.pack(">I", len(message[:4 << 20])) + message[:4 << 20]
        flood = []
        for _ in range(300):
            flood.append(socket.socket(socket.AF_UNIX))
            flood[-1].setblocking(False)
            with contextlib.suppress(OSError):
                flood[-1].connect(str(path))
        left = {one: memoryview(message) for one in flood}
        started = time.monotonic()
        handing_over = self.home.start(self.server.url("/handed.bin"))
        while left and time.monotonic() < started + 20:
            for one in select.select([], list(left), [], 0.1)[1]:
                try:
                    left[one] = left[one][one.send(left[one]):]
                except OSError:
                    left[one] = b""
                if not left[one]:
                    del left[one]
        result = self.home.result(handing_over)
        self.assert_status(result, 0)
        for one in flood:
            one.close()
        peak = re.search(r"VmHWM:\s+(\d+) kB", Path(f"/proc/{self.first.pid}/status").read_text())
        self.assertLess(int(peak[1]), 150 << 10)
        wait_until(lambda: "handed.bin" in self.home.finished(), what="the file")

    @unittest.skipUnless(DESKTOP.exists(), "built without the desktop program")
    def test_the_window_program_needs_no_display_to_hand_over(self):
        result = self.home.run(self.server.url("/handed.bin"), program=DESKTOP,
                               environment=NO_DISPLAY)
        self.assert_status(result, 0)
        self.assert_status(self.home.result(self.first), 0)
        self.assert_downloaded("handed.bin", self.handed)


@unittest.skipUnless(DESKTOP.exists(), "built without the desktop program")
class NoDisplayTest(SystemTest):
    def test_says_what_to_use_in_one_line(self):
        for display in ("", ":4711"):
            result = self.home.run("http://127.0.0.1:9/x", program=DESKTOP,
                                   environment=NO_DISPLAY | {"DISPLAY": display})
            self.assert_status(result, 1)
            self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
            self.assertIn("orlop-terminal", result.stderr)


if __name__ == "__main__":
    unittest.main()
