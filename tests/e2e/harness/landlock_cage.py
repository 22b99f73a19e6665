"""The cage where namespaces are refused: the kernel denies every change outside the case's own folders."""

import os
import subprocess
import sys
import unittest
from pathlib import Path

from .cage import Cage, Spare
from .settings import current

# Where the program looks for tools before it looks into the home.
_TOOL_FOLDERS = ("/usr/local/bin", "/opt/homebrew/bin", "/Applications")
# What the program takes for a running tool, wherever it stands in a process's name or arguments.
_SIGNS_OF_LIFE = {"claude": ["claude"],
                  "codex": ["codex app-server", "Codex (Service)", "Codex (Renderer)", "SkyComputerUseService"]}
_RUNG = {"ZENTRILL_CONFINEMENT": "landlock"}
NO_ENGINE = "unix:///nowhere/docker.sock"
_SUPERVISOR = Path(__file__).with_name("supervisor.py")


def obstacle():
    """Why this cage cannot be made here, or nothing."""
    try:
        tried = subprocess.run([current().confine, "--", "true"], env={**os.environ, **_RUNG}, capture_output=True,
                               text=True)
    except FileNotFoundError:
        return f"Landlock: {current().confine} is not built"
    return f"Landlock: {tried.stderr.strip()}" if tried.returncode else None


class LandlockCage(Cage):
    """The home is a temporary folder, the rest of the machine is in sight and cannot be changed. Nothing can be put
    in a place of the machine, and nothing of it can be hidden: what looks for an engine finds none, and a case that
    a tool of the machine would disturb is skipped. Where the kernel can, there is no network but sockets in files."""

    read_only_refusal = "Permission denied"
    hides_machine = False

    def __init__(self):
        super().__init__(bundle=current().bundle)
        self._writable = []
        (self.folder / "tmp").mkdir()

    def spare(self, name):
        folder = self.folder / name
        if folder not in self._writable:
            folder.mkdir()
            self._writable.append(folder)
        return Spare(folder, str(folder))

    def sample(self, path):
        raise unittest.SkipTest(f"needs {path} of its own, for which namespaces are needed")

    def bind(self, outside, inside):
        self.sample(inside)

    def reach(self, path):
        pass  # Connecting to a socket changes no file.

    def require_absent(self, *tools):
        for tool in tools:
            for folder in _TOOL_FOLDERS:
                if os.path.lexists(path := os.path.join(folder, tool)):
                    raise unittest.SkipTest(f"{path} is installed, which only namespaces can hide")
            self._require_no_process(_SIGNS_OF_LIFE.get(tool, ()))

    @staticmethod
    def _require_no_process(words):
        listing = subprocess.run(["ps", "-axo", "pid,comm,args="], capture_output=True, text=True, check=True).stdout
        for line in listing.splitlines():
            for word in words:
                if word in line:
                    raise unittest.SkipTest(f"process {line.split()[0]} names {word!r}, which only namespaces can hide")

    def environment(self):
        return {**super().environment(), **_RUNG, "TMPDIR": str(self.folder / "tmp"), "DOCKER_HOST": NO_ENGINE}

    def command(self, *command):
        writable = self._writable if self.home_is_read_only else [self.home, *self._writable]
        options = [option for folder in writable for option in ("--write", str(folder))]
        return [str(current().confine), *options, "--", *command], []

    def supervised(self, *command):
        confined, descriptors = self.command(*command)
        options = [] if self.shares_network else ["--without-network"]
        return [sys.executable, "-I", str(_SUPERVISOR), *options, "--", *confined], descriptors
