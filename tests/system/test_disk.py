"""A full disk, a folder that cannot be written to, a folder that goes away: told in clear words,
and nothing that was received is lost."""
import os
import resource
import shutil
import unittest

from support.case import MIB, SystemTest
from support.disk import SmallDisk
from support.home import sha256, wait_until


class FullDiskTest(SystemTest):
    def test_goes_on_when_there_is_space_again(self):
        source = self.serve("large.bin", 12 * MIB)
        address = self.server.url("/large.bin")
        disk = SmallDisk(self.home.downloads, "4m")
        self.addCleanup(disk.close)

        result = self.home.run(address)
        self.assert_status(result, 1)
        self.assertIn("The disk is full: ", result.stderr)
        self.assertGreater(self.home.partial_bytes(), 3 * MIB)
        self.assertEqual(self.home.queued_addresses(), [address])

        disk.remount("size=64m")
        self.assert_status(self.home.run(address), 0)
        self.assert_downloaded("large.bin", source)
        self.assert_nothing_left()
        self.assertTrue(self.server.requests()[-1][3].startswith("bytes="), "not resumed")

    def test_a_file_that_does_not_fit_where_it_is_to_go_waits_whole(self):
        source = self.serve("wide.bin", 12 * MIB)
        address = self.server.url("/wide.bin")
        disk = SmallDisk(self.home.downloads, "4m")
        self.addCleanup(disk.close)

        elsewhere = ("-Intermediates Location", "0")
        for _ in range(2):
            result = self.home.run(*elsewhere, address)
            self.assert_status(result, 1)
            self.assertIn("The disk is full: 4", result.stderr)
            self.assertEqual(self.home.finished(), [])
            self.assertEqual(self.home.queued_addresses(), [address])
        disk.remount("size=64m")
        self.assert_status(self.home.run(*elsewhere, address), 0)
        self.assert_downloaded("wide.bin", source)
        self.assert_nothing_left()
        self.assertEqual(self.server.statuses("wide"), ["200"])

    def test_a_full_disk_under_the_queue_keeps_the_old_queue(self):
        source = self.serve("small.bin", 200_000)
        self.home.support.mkdir(parents=True)
        disk = SmallDisk(self.home.support, "16k")
        self.addCleanup(disk.close)
        old = [{"URL": f"http://127.0.0.1:1/{number:020}", "Paused": True} for number in range(20)]
        self.home.write_queue(old)
        (self.home.support / "filler").write_bytes(bytes(16384 - 8192))

        result = self.home.run(self.server.url("/small.bin"))
        self.assert_downloaded("small.bin", source)
        self.assertIn("queue", result.stderr.lower())
        self.assertEqual(self.home.queue(), old)


class LockedQueueTest(SystemTest):
    def put_a_folder_in_its_place(self, path):
        """Though the program may be writing it anew."""
        folder = self.home.root / "folder"
        (folder / "in the way").mkdir(parents=True)

        def is_put():
            path.unlink(missing_ok=True)
            try:
                os.rename(folder, path)
            except OSError:
                return False
            return True
        wait_until(is_put, what="the folder in place of the queue's file")

    def test_a_queue_that_cannot_be_removed_is_told(self):
        source = self.serve("last.bin", 2 * MIB)
        process = self.home.start(self.server.url("/rate/2000000/last.bin"))
        wait_until(lambda: self.home.queued_addresses() and self.home.partial_bytes(),
                   what="the queue's file")
        self.put_a_folder_in_its_place(self.home.queue_path)
        result = self.home.result(process)
        self.assert_downloaded("last.bin", source)
        self.assertIn("The queue’s file cannot be removed: A folder lies in its place. What is "
                      "done may come back at the next start.", result.stderr)


class FileSizeLimitTest(SystemTest):
    def test_a_limit_on_the_size_of_files_ends_the_download_and_not_the_program(self):
        source = self.serve("limited.bin", 12 * MIB)
        address = self.server.url("/limited.bin")
        limit = 4 * MIB
        result = self.home.run(address, preexec_fn=lambda: resource.setrlimit(
            resource.RLIMIT_FSIZE, (limit, resource.RLIM_INFINITY)))
        self.assert_status(result, 1)
        self.assertIn("too large for its disk", result.stderr)
        self.assertEqual(self.home.partial_bytes(), limit)
        self.assertEqual(self.home.queued_addresses(), [address])
        self.assert_status(self.home.run(address), 0)
        self.assert_downloaded("limited.bin", source)
        self.assertTrue(self.server.requests()[-1][3].startswith("bytes="), "not resumed")


class ReadOnlyFolderTest(SystemTest):
    def test_the_file_stays_in_the_programs_own_folder_and_it_says_so(self):
        source = self.serve("guarded.bin", 2 * MIB)
        disk = SmallDisk(self.home.downloads, "16m")
        self.addCleanup(disk.close)
        disk.remount("ro")
        for _ in range(2):
            result = self.home.run(self.server.url("/guarded.bin"))
            self.assert_status(result, 0)
            self.assertIn("in ~/data/Orlop", result.stdout)
        kept = sorted(self.home.support.rglob("guarded*.bin"))
        self.assertEqual([sha256(path) for path in kept], [sha256(source)] * 2)


class VanishedFolderTest(SystemTest):
    def test_made_anew_at_the_start(self):
        source = self.serve("lonely.bin", MIB)
        self.home.downloads.rmdir()
        self.assert_fetches(source)

    def test_during_a_download(self):
        """Whether it ends well or not, what it calls complete is complete, and the next run gets
        the file."""
        source = self.serve("uprooted.bin", 3 * MIB)
        address = self.server.url("/rate/2000000/uprooted.bin")
        process = self.home.start(address)
        wait_until(lambda: self.home.partial_bytes() > 500_000, what="the first bytes")
        # The program may be writing its metadata into it at this very moment.
        wait_until(lambda: not shutil.rmtree(self.home.downloads, ignore_errors=True)
                   and not self.home.partial_bytes(), what="the end of the folder")
        result = self.home.result(process)
        self.assertIn(result.returncode, (0, 1))
        if result.returncode == 1:
            self.assertIn("uprooted.bin", result.stderr)
            self.assert_status(self.home.run(address), 0)
        self.assert_downloaded("uprooted.bin", source)


if __name__ == "__main__":
    unittest.main()
