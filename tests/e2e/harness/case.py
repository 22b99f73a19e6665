"""What every case begins with."""

import os
import subprocess
import unittest

from . import tree
from .cages import make_cage
from .program import Program, sanitizer_options
from .screen_reader import ScreenReader
from .session import Session
from .waiting import Overdue, wait_for
from .window import Window


class Case(Window, unittest.TestCase):
    """A home folder of its own in a cage; the program is started with `start()` and has to be ended by the case
    itself, with `close()` where nothing else ends it."""

    longMessage = True
    maxDiff = None

    def setUp(self):
        self.session = Session.shared()
        self.display = self.session.display
        self.cage = make_cage()
        self.addCleanup(self.cage.remove)
        self.home = self.cage.home
        self.program = None
        self.screen = None

    # The program

    def start(self, **options):
        """Starts the program and waits until its first scan is published."""
        self.launch(**options)
        self.wait_idle()

    def start_traced(self, *options):
        """The same under strace with these options, its children too; skips the case where nobody may trace."""
        command, descriptors = self.cage.command("strace", "-f", "-qq", "-o", "/dev/null", "true")
        tried = subprocess.run(command, pass_fds=descriptors, env=self.cage.environment(), capture_output=True,
                               text=True)
        for descriptor in descriptors:
            os.close(descriptor)
        if tried.returncode:
            self.skipTest(f"no program can be traced here: {tried.stderr.strip()}")
        self.start(prefix=("strace", "-f", "-qq", "--seccomp-bpf", "-o", "/dev/null", *options),
                   # The leak check cannot work while another program traces.
                   environment=sanitizer_options("detect_leaks=0"))

    def launch(self, **options):
        """Starts the program and waits for its window."""
        self.program = Program(self.session, self.cage, **options)
        self.addCleanup(self._say_errors)
        self.addCleanup(self.program.kill)
        self.screen = ScreenReader()
        self.screen.until(lambda: self.screen.find("frame", states=["active"]) or not self.program.is_running(),
                          "the window")
        self.assertTrue(self.program.is_running(), "the program ended")

    def close(self, window=None):
        """Closes the window and checks that the program ended well."""
        self.display.close_window(window)
        self.expect_end()

    def expect_end(self, status=0, seconds=60):
        """Waits for the program's end and checks how it ended."""
        self.assertEqual(self.program.wait(seconds), status, f"exit status; it said: {self.program.errors()}")
        self.assertEqual(self.program.errors(), "", "what the program wrote to standard error")
        self.assertEqual(self.program.processes_left(), [], "processes that the program left behind")

    def move_window_until_kept(self, is_kept=None):
        """The program keeps the frame of a window that has come to rest in another place."""
        is_kept = is_kept or (self.home / "Library/Preferences/com.user.Zentrill.plist").exists
        for place in range(40, 400, 10):
            self.display.move_window(place, place)
            try:
                return wait_for(is_kept, "the window's frame", 2)
            except Overdue:
                continue
        self.fail("a moved window's frame is not kept")

    def _say_errors(self):
        if self._outcome is not None and self.program.errors():
            print("The program wrote to standard error:", self.program.errors(), sep="\n")

    # What the program finds

    def install_tool(self, name, script):
        """A shell script of the person's own, which goes before the machine's tool of that name."""
        self.cage.require_absent(name)
        tool = self.home / ".local/bin" / name
        tool.parent.mkdir(parents=True, exist_ok=True)
        tool.write_text(f"#!/bin/sh\n{script}")
        tool.chmod(0o755)

    # The disk

    def disk(self):
        """Everything in the home folder; see tree.listing."""
        return tree.listing(self.home)

    def assert_only_gone(self, before, gone, ignoring=()):
        """The home folder is what it was, but for the paths in `gone`, which are no more, and those of `ignoring`,
        which somebody else wrote."""
        after = {path: entry for path, entry in self.disk().items() if path not in ignoring}
        self.assertEqual(sorted(set(before) - set(after)), sorted(gone), "what has gone")
        self.assertEqual({path: entry for path, entry in after.items() if before.get(path) != entry}, {},
                         "what is new or changed")
