"""Killed at random moments, and at chosen calls."""
import errno
import resource
import signal
import time

from trial import FAULTS
from ways import DisturbedTransfers

CALLS = ("open", "write", "pwrite", "pwrite64", "copy_file_range", "fsync", "fdatasync", "ftruncate",
         "rename", "renameat2", "linkat", "unlink", "mkdir", "fsetxattr", "lsetxattr")


class RandomKills(DisturbedTransfers):
    kind = "random kills"

    def disturbed(self, home, arguments):
        process = home.start(*arguments)
        time.sleep(self.random.uniform(0.005, self.random.choice((0.04, 0.1, 0.3))))
        process.kill()
        return process


class Faults(DisturbedTransfers):
    """Harm at one call, by the preloaded library."""

    def harm(self):
        """What the library is told about the harm beside its place."""
        raise NotImplementedError

    def disturbed(self, home, arguments):
        calls = self.random.sample(CALLS, self.random.randint(1, 3))
        most = self.random.choice((4, 15, 60))
        return home.start(*arguments, environment={
            "LD_PRELOAD": FAULTS, "FAULT_CALLS": ",".join(calls), **self.harm(),
            "FAULT_COUNT": str(self.count(home)), "FAULT_AT": str(self.random.randint(1, most))})

    @staticmethod
    def count(home):
        return home.root / "harms"

    def harms_of(self, home, process):
        count = self.count(home)
        harms = count.stat().st_size if count.exists() else 0
        count.unlink(missing_ok=True)
        return harms


class CallKills(Faults):
    kind = "kills at calls"

    def harm(self):
        return {"FAULT_ACTION": self.random.choice(("before", "after"))}


class Errors(Faults):
    kind = "failing and short calls"
    # What could neither be written down nor removed.
    may_leave_strays = True

    def harm(self):
        """Once, or again and again."""
        action = self.random.choice(("short", *(str(number) for number in (
            errno.EIO, errno.ENOSPC, errno.EINTR, errno.EACCES, errno.EMFILE, errno.ENOMEM,
            errno.EDQUOT, errno.EROFS, errno.ENOTSUP))))
        every = self.random.choice((None, None, 2, 5, 20))
        return {"FAULT_ACTION": action} | ({"FAULT_EVERY": str(every)} if every else {})


class Signals(DisturbedTransfers):
    kind = "signals and limits"

    def limits(self):
        kind, low, high = self.random.choice((
            (resource.RLIMIT_FSIZE, 1000, 4_000_000), (resource.RLIMIT_NOFILE, 24, 64),
            (None, 0, 0), (None, 0, 0)))
        if kind is None:
            return None
        limit = self.random.randint(low, high)
        return lambda: resource.setrlimit(kind, (limit, resource.getrlimit(kind)[1]))

    def disturbed(self, home, arguments):
        process = home.start(*arguments, preexec_fn=self.limits())
        for _ in range(self.random.randint(1, 3)):
            time.sleep(self.random.uniform(0.01, 0.2))
            number = self.random.choice((signal.SIGINT, signal.SIGTERM, signal.SIGHUP,
                                         signal.SIGSTOP, signal.SIGWINCH, signal.SIGPIPE))
            process.send_signal(number)
            if number == signal.SIGSTOP:
                time.sleep(self.random.uniform(0.01, 0.1))
                process.send_signal(signal.SIGCONT)
        return process


