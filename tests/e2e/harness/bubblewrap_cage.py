"""The cage where namespaces can be had: a root of its own."""

import os
import subprocess
from pathlib import Path

from .cage import Cage, Spare
from .settings import current

_HOME = "/home/person"
_PROGRAM = "/srv/program"

# Made anew in the cage instead of shown as they are: what is private, what changes, and where tools are looked for.
_NOT_SHOWN = {"dev", "proc", "sys", "tmp", "run", "home", "root", "srv", "opt", "mnt", "media", "lost+found",
              "Applications"}

# Tells what still runs in the cage at the moment when the program ends, and passes its status on.
_SUPERVISOR = """# supervisor
"$@" > /dev/null
status=$?
ps -eo pid=,stat=,args=
exit $status
"""


def obstacle():
    """Why this cage cannot be made here, or nothing."""
    try:
        tried = subprocess.run(["bwrap", "--ro-bind", "/", "/", "--dev", "/dev", "--proc", "/proc", "--unshare-pid",
                                "--unshare-net", "true"], capture_output=True, text=True)
    except FileNotFoundError:
        return "bwrap is not installed (package bubblewrap)"
    return f"bubblewrap: {tried.stderr.strip()}" if tried.returncode else None


class BubblewrapCage(Cage):
    """System folders are read-only, people's folders and installed tools are not there, processes are out of each
    other's sight, and there is no network unless a case asks for it."""

    read_only_refusal = "Read-only file system"
    hides_machine = True

    def __init__(self):
        super().__init__(home_inside=_HOME, bundle=f"{_PROGRAM}/Zentrill.app")
        self._binds = []
        self._samples = {}

    def spare(self, name):
        return Spare(self.sample(f"/srv/{name}"), f"/srv/{name}")

    def sample(self, path):
        if path not in self._samples:
            folder = self.folder / "samples" / path.strip("/").replace("/", "_")
            folder.mkdir(parents=True)
            self._samples[path] = folder
        return self._samples[path]

    def bind(self, outside, inside):
        self._binds.append(("--ro-bind", str(outside), str(inside)))

    def reach(self, path):
        self._binds.append(("--bind", str(path), str(path)))

    def command(self, *command):
        reading = self._hidden(self._arguments())
        # The bubblewrap process is visible in the cage; its own arguments shall name no tool.
        return ["bwrap", "--args", str(reading), "--", *command], [reading]

    def supervised(self, *command):
        return self.command("sh", "-c", _SUPERVISOR, "sh", *command)

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
        arguments += ["--ro-bind", str(current().bundle), f"{_PROGRAM}/Zentrill.app"]
        arguments += ["--ro-bind" if self.home_is_read_only else "--bind", str(self.home), self.home_inside]
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
