"""The program in its cage."""

import os
import signal
import subprocess

from . import processes
from .waiting import DEADLINE

_SANITIZER_OPTIONS = ("ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS")


def sanitizer_options(*more):
    """The run's own options for the sanitizers, with changes to those of the address sanitizer."""
    options = {name: os.environ[name] for name in _SANITIZER_OPTIONS if name in os.environ}
    if "ASAN_OPTIONS" in options:
        # The keyboard library calls strndup, as it may, on names that end with their packet.
        options["ASAN_OPTIONS"] = ":".join([options["ASAN_OPTIONS"], "strict_string_checks=0", *more])
    return options


class Program:
    def __init__(self, session, cage, environment=None, prefix=()):
        """Starts the program. `environment` replaces single variables (None removes one); `prefix` is a command
        that runs it, such as strace."""
        self._errors_path = cage.folder / "stderr"
        self._processes_path = cage.folder / "processes"
        for path in session.sockets():
            cage.reach(path)
        variables = {**cage.environment(), **session.environment()}
        variables.update(sanitizer_options())
        variables.update(environment or {})
        variables = {name: value for name, value in variables.items() if value is not None}
        with self._errors_path.open("wb") as errors, self._processes_path.open("wb") as listing:
            command, descriptors = cage.supervised(*prefix, f"{cage.bundle}/Contents/MacOS/Zentrill")
            # Who supervises has to end others first.
            self._process = processes.start(command, signal.SIGTERM, env=variables, stdin=subprocess.DEVNULL,
                                            stdout=listing, stderr=errors, pass_fds=descriptors)
            for descriptor in descriptors:
                os.close(descriptor)

    def is_running(self):
        return self._process.poll() is None

    def wait(self, seconds=DEADLINE):
        """The exit status; raises subprocess.TimeoutExpired while the program runs on."""
        return self._process.wait(seconds)

    def kill(self):
        processes.end(self._process)

    def errors(self):
        """Everything that it wrote to standard error, without what a tracer says about itself."""
        lines = self._errors_path.read_text(errors="replace").splitlines(keepends=True)
        return "".join(line for line in lines if not line.startswith("strace: "))

    def processes_left(self):
        """The processes that were there in its cage when it had ended: lines of process ID, state and command."""
        lines = self._processes_path.read_text().splitlines()
        return [line.strip() for line in lines if not _is_ours(line)]


def _is_ours(line):
    """The cage's own processes, and what the leak check reads its suppressions with."""
    pid, state, *command = line.split(None, 2)
    if not command:
        return True  # It went while the listing was made.
    command = command[0]
    return (pid == "1" or state.startswith("Z") or "llvm-symbolizer" in command
            or command.startswith(("sh -c # supervisor", "ps -eo pid")))
