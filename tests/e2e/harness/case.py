"""What every case begins with."""

import re
import unittest

from . import tree
from .cages import make_cage
from .program import Program
from .screen_reader import ScreenReader
from .session import Session
from .waiting import Overdue, wait_for

PANES = {"apps": "Applications", "models": "Local Models", "docker": "Docker", "console": "Activity Console"}
_CODE = re.compile(r"^[0-9]{8}$")
_LOG_TIME = re.compile(r"^\[\d\d:\d\d:\d\d\] ")


class Case(unittest.TestCase):
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

    def launch(self, **options):
        """Starts the program and waits for its window."""
        self.program = Program(self.session, self.cage, **options)
        self.addCleanup(self._say_errors)
        self.addCleanup(self.program.kill)
        self.screen = ScreenReader()
        self.screen.until(lambda: self.screen.find("frame", states=["active"]) or not self.program.is_running(),
                          "the window")
        self.assertTrue(self.program.is_running(), "the program ended")

    def wait_idle(self):
        """Until nothing runs."""
        self.screen.until(lambda: self.screen.find("push button", "Scan System") is not None
                          and self.screen.find("push button", "Cancel") is None, "an idle program")

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

    # The window

    def show_pane(self, pane):
        """"apps", "models", "docker" or "console", by a press on its tab."""
        self.screen.wait(name=PANES[pane], role="page tab").press()
        self.screen.wait("page tab", PANES[pane], states=["selected"])

    def application_row(self, display_name):
        return self.screen.wait("check box", display_name)

    def show_row(self, display_name):
        """Moves down the list until that row is in sight."""
        self.screen.wait("list", "Applications").grab_focus()
        self.display.key("Home")

        def in_sight():
            if self.screen.find("check box", display_name):
                return True
            self.display.key("Down")
            return False

        self.screen.until(in_sight, f"the row {display_name}")

    def select_application(self, display_name):
        row = self.application_row(display_name)
        row.press()
        self.screen.wait("check box", display_name, states=["checked"])

    def set_shield(self, on):
        """The Safety Shield switch, by a press where it stands otherwise."""
        shield = re.compile("^Safety Shield")
        switch = self.screen.wait("check box", shield)
        if ("checked" in switch.states) != on:
            switch.press()
        self.screen.until(lambda: ("checked" in self.screen.find("check box", shield).states) == on, "the shield")

    def press(self, name):
        self.screen.wait("push button", name, states=["enabled"]).press()

    def dialog(self, title):
        """The modal of that title, as soon as it is shown."""
        return self.screen.wait("dialog", title)

    def issued_code(self):
        return self.screen.wait(name="Confirmation code", description=_CODE).description

    def confirm(self, action_title):
        """Types the code that the modal shows with real key presses and presses the button."""
        self.display.type(self.issued_code())
        self.press(action_title)

    def result(self, title):
        """The result modal of that title, once it is shown."""
        return self.dialog(title)

    def result_lines(self):
        """The message of the shown result, line by line."""
        return self._lines("Message")

    def error_lines(self):
        return self._lines("Errors")

    def dismiss_result(self):
        self.press("OK")
        self.screen.wait_gone("push button", "OK")

    def log(self):
        """The activity log without its times; shows the console's pane. Only the rows near those in sight exist on
        the bus, so this is for logs of up to some thirty lines."""
        self.show_pane("console")
        return [_LOG_TIME.sub("", line) for line in self._lines("Activity log")]

    def _lines(self, list_name):
        shown = self.screen.find("list", list_name)
        return [row.name for row in shown.children() if row.role == "list item"] if shown else []

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
