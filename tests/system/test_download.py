"""An address becomes a file, byte for byte."""
import unittest
import urllib.parse

from support.case import MIB, SystemTest
from support.servers import free_port


class DownloadTest(SystemTest):
    def test_every_kind_of_answer(self):
        source = self.serve("movie.bin", 3 * MIB + 17)
        for index, place in enumerate(("/", "/rate/20000000/", "/chunked/", "/noranges/", "/to/")):
            with self.subTest(place=place):
                result = self.home.run(self.server.url(place + "movie.bin"))
                self.assert_status(result, 0)
                self.assert_downloaded("movie.bin" if index == 0 else f"movie {index}.bin", source)
        self.assert_nothing_left()

    def test_sizes_at_the_edges(self):
        for size in (1, 65535, 65536, 256 * 1024, MIB + 1):
            with self.subTest(size=size):
                source = self.serve(f"size-{size}.bin", size)
                self.assert_fetches(source)

    def test_names_in_other_scripts(self):
        for name in ("Ünïcode ñame.bin", "日本語.bin", "a b&c.bin", "100%.bin"):
            with self.subTest(name=name):
                source = self.serve(name, 100)
                result = self.home.run(self.server.url("/" + urllib.parse.quote(name)))
                self.assert_status(result, 0)
                self.assert_downloaded(name, source)

    def test_a_list_on_standard_input(self):
        sources = [self.serve(f"list-{number}.bin", 2000 + number, seed=number)
                   for number in range(40)]
        lines = "".join(f"{self.server.url('/' + source.name)}\n" for source in sources)
        result = self.home.run("-", text=f"\r\n  \n{lines}not an address\n")
        self.assert_status(result, 1)
        self.assertEqual(result.stderr, "orlop-terminal: no address: not an address\n")
        for source in sources:
            self.assert_downloaded(source.name, source)
        self.assertEqual(result.stdout.count("Download Complete"), len(sources))
        self.assert_nothing_left()

    def test_a_list_in_a_file(self):
        source = self.serve("listed.bin", 5000)
        listing = self.home.root / "list.txt"
        listing.write_text(self.server.url("/listed.bin") + "\n")
        self.assert_status(self.home.run("list.txt"), 0)
        self.assert_downloaded("listed.bin", source)
        self.assertTrue(listing.exists())

    def test_what_cannot_be_opened_is_named(self):
        for name, data in (("foreign.orlop/Archive.orlopinfo", "no metadata"), ("empty.txt", "\n"),
                           ("folder/.hidden", "")):
            with self.subTest(name=name):
                path = self.home.root / name
                path.parent.mkdir(exist_ok=True)
                path.write_text(data)
                given = self.home.root / name.split("/")[0]
                result = self.home.run(given)
                self.assert_status(result, 1)
                self.assertRegex(result.stderr, f"^orlop-terminal: There is no.*{given}")

    def test_a_list_that_is_given_again_takes_up_what_failed(self):
        source = self.server.content / "late.bin"
        (self.home.root / "list.txt").write_text(self.server.url("/late.bin"))
        self.assert_status(self.home.run("list.txt"), 1)
        source.write_bytes(b"here now")
        self.assert_status(self.home.run("list.txt"), 0)
        self.assert_downloaded("late.bin", source)

    def test_settings_of_one_run(self):
        source = self.serve("elsewhere.bin", 5000)
        folder = self.home.root / "elsewhere"
        result = self.home.run("-Downloads Folder", folder, self.server.url("/elsewhere.bin"))
        self.assert_status(result, 0)
        self.assertEqual((folder / "elsewhere.bin").read_bytes(), source.read_bytes())
        stored = list((self.home.root / "config").rglob("*.plist"))
        self.assertFalse(any(b"elsewhere" in path.read_bytes() for path in stored))


class FailureTest(SystemTest):
    def test_a_refused_connection(self):
        result = self.home.run(f"http://127.0.0.1:{free_port()}/gone.bin")
        self.assert_status(result, 1)
        self.assertIn("gone.bin", result.stderr)
        self.assertEqual(self.home.finished(), [])

    def test_an_error_page_is_no_file(self):
        for number in (404, 500):
            with self.subTest(status=number):
                result = self.home.run(self.server.url(f"/status/{number}"))
                self.assert_status(result, 1)
                self.assertIn(str(number), result.stderr)
                self.assertEqual(self.home.finished(), [])


class UsageTest(SystemTest):
    def test_help_and_version(self):
        for option, text in (("--help", "Usage: orlop-terminal"), ("--version", "0.")):
            result = self.home.run(option)
            self.assert_status(result, 0)
            self.assertIn(text, result.stdout)

    def test_bad_usage_starts_nothing(self):
        good = self.server.url("/")
        for words in (["--nonsense"], ["-Auto-Start"], ["no such thing"], [good, "nonsense"],
                      ["-", "-"], ["-o", "file", good]):
            with self.subTest(words=words):
                result = self.home.run(*words)
                self.assert_status(result, 2)
                self.assertTrue(result.stderr.startswith("orlop-terminal: "))
                self.assertEqual(self.home.queued_addresses(), [])


if __name__ == "__main__":
    unittest.main()
