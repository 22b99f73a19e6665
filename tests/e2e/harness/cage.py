"""A machine of which programs can change one home folder and nothing else."""

import shutil
import tempfile
from dataclasses import dataclass
from pathlib import Path


@dataclass
class Spare:
    """A writable folder beside the home."""
    outside: Path
    inside: str  # As programs in the cage see it.


class Cage:
    """Programs in it see the machine without being able to change it; nothing of the machine can be removed even by
    a program that is wrong. There are several forms, because not every machine allows every one.

        cage.home / ".claude"        the person's home folder, seen from outside
        cage.home_inside             the same folder as programs in the cage name it
        cage.spare("notes")          a further folder, for what is to stand elsewhere
        cage.require_absent("npm")   no tool of the machine is found in the place of the case's own

    What a form cannot do skips the case, in one line:

        cage.sample("/Applications") / "Claude.app"  a folder at a place of the machine, writable and empty at first
        cage.bind("/somewhere", "/usr/bin/docker")   something real at another place, read-only
    """

    # What the program is refused with in a home that is read-only.
    read_only_refusal: str
    # Whether tools and processes of the machine are out of sight.
    hides_machine: bool

    def __init__(self, home_inside=None, bundle=None):
        self.folder = Path(tempfile.mkdtemp(prefix="e2e-case-")).resolve()
        self.folder.chmod(0o755)
        self.home = self.folder / "home"
        self.home.mkdir()
        self.home_inside = home_inside or str(self.home)
        self.home_is_read_only = False
        self.shares_network = False
        self.bundle = str(bundle)  # The program's bundle, as seen inside.

    def remove(self):
        shutil.rmtree(self.folder, ignore_errors=True)

    def spare(self, name):
        raise NotImplementedError

    def sample(self, path):
        """An own, writable folder that stands at `path` in the cage; returned as seen from outside."""
        raise NotImplementedError

    def bind(self, outside, inside):
        raise NotImplementedError

    def reach(self, path):
        """Lets programs in the cage use the socket, or the sockets in the folder, at this place of the machine."""
        raise NotImplementedError

    def require_absent(self, *tools):
        """Skips the case where the program would find such a tool of the machine, installed or running, beside or
        in place of the case's own. By the names of executables, and of applications with their ending."""

    def environment(self):
        """Variables that every program in the cage starts with."""
        return {"PATH": "/usr/bin:/bin", "HOME": self.home_inside}

    def command(self, *command):
        """The command that runs `command` in the cage, and the descriptors to pass to it."""
        raise NotImplementedError

    def supervised(self, *command):
        """The same for a command of which no process outlives the cage. It prints what still runs when `command`
        ends, a line of process ID, state and arguments each, and ends with its status."""
        raise NotImplementedError

