"""A machine that is read-only but for one home folder."""

import os
import shutil
import tempfile
from pathlib import Path

from .settings import current

HOME = "/home/person"
PROGRAM = "/srv/program"

# Made anew in the cage instead of shown as they are: what is private, what changes, and where tools are looked for.
_NOT_SHOWN = {"dev", "proc", "sys", "tmp", "run", "home", "root", "srv", "opt", "mnt", "media", "lost+found",
              "Applications"}


class Cage:
    """Programs in it see the machine's system folders without being able to change them; nothing of the machine
    can be removed even by a program that is wrong. No tool that the program looks for is installed, unless a
    case puts a sample of it there:

        cage.home / ".claude"                        the person's home folder, seen from outside
        cage.sample("/Applications") / "Claude.app"  another folder of the machine, writable and empty at first
        cage.bind("/somewhere", "/usr/bin/docker")   something real, read-only
    """

    def __init__(self):
        self.folder = Path(tempfile.mkdtemp(prefix="e2e-case-"))
        self.folder.chmod(0o755)
        self.home = self.folder / "home"
        self.home.mkdir()
        self.home_is_read_only = False
        self.bundle = f"{PROGRAM}/Zentrill.app"
        self.shares_network = False
        self._binds = []
        self._samples = {}
        self._arguments_file = None

    def remove(self):
        shutil.rmtree(self.folder, ignore_errors=True)

    def sample(self, path):
        """An own, writable folder that stands at `path` in the cage; returned as seen from outside."""
        if path not in self._samples:
            folder = self.folder / "samples" / path.strip("/").replace("/", "_")
            folder.mkdir(parents=True)
            self._samples[path] = folder
        return self._samples[path]

    def bind(self, outside, inside, writable=False):
        self._binds.append(("--bind" if writable else "--ro-bind", str(outside), inside))

    def command(self, *command):
        """The command that runs `command` in the cage, and the descriptors to pass to it."""
        reading = self._hidden(self._arguments())
        # The bubblewrap process is visible in the cage; its own arguments shall name no tool.
        return ["bwrap", "--args", str(reading), "--", *command], [reading]

    def _arguments(self):
        arguments = ["--tmpfs", "/"]
        for entry in sorted(Path("/").iterdir()):
            if entry.name in _NOT_SHOWN:
                continue
            if entry.is_symlink():
                arguments += ["--symlink", os.readlink(entry), str(entry)]
            elif entry.is_dir():
                arguments += ["--ro-bind", str(entry), str(entry)]
        arguments += ["--dev", "/dev", "--proc", "/proc", "--tmpfs", "/tmp", "--tmpfs", "/run", "--tmpfs", "/home"]
        arguments += ["--tmpfs", "/usr/local/bin"]
        if os.path.exists("/usr/bin/docker"):
            arguments += ["--ro-bind", "/dev/null", "/usr/bin/docker"]
        arguments += ["--ro-bind", str(current().source), str(current().source)]
        arguments += ["--ro-bind", str(current().bundle), f"{PROGRAM}/Zentrill.app"]
        arguments += ["--ro-bind" if self.home_is_read_only else "--bind", str(self.home), HOME]
        for inside, outside in self._samples.items():
            arguments += ["--bind", str(outside), inside]
        for bind in self._binds:
            arguments += bind
        arguments += ["--remount-ro", "/", "--remount-ro", "/home", "--chdir", "/"]
        arguments += ["--unshare-pid", "--new-session", "--die-with-parent"]
        if not self.shares_network:
            arguments += ["--unshare-net"]
        return arguments

    @staticmethod
    def _hidden(arguments):
        reading, writing = os.pipe()
        with os.fdopen(writing, "wb") as stream:
            stream.write(b"".join(argument.encode() + b"\0" for argument in arguments))
        return reading
