"""The program on a Wayland desktop: the same cases, with its window, its keys and their times from the compositor, and
with npm where they remove what it has installed."""

import subprocess
import unittest

from cases.keyboard import KeyboardAlone
from cases.keys import HeldKeyOnARow, ReturnTwiceInAConfirmation
from harness import weston
from harness.program import sanitizer_options
from harness.session import Session
from harness.settings import current
from harness.waiting import wait_for


class OnWayland:
    """Before a case: it runs on such a desktop, and skips where there is none."""

    def setUp(self):
        obstacle = weston.obstacle()
        if obstacle:
            raise unittest.SkipTest(obstacle)
        self.weston = weston.Weston(Session.shared())
        self.addCleanup(self.weston.stop)
        super().setUp()

    def launch(self, **options):
        # The graphics driver that Qt tries is gone again when leaks are looked for. Who called it, a whole stack tells.
        stacks = sanitizer_options("fast_unwind_on_malloc=0")
        super().launch(**options, environment={**self.weston.environment(), **stacks})
        self.assertIsNone(self.display.window(), "a window of the X screen")
        self.assertIn(f"of {self._menu_entry()},", self.weston.window() or "")
        self.display.picture(f"wayland-{type(self).__name__}")

    def close(self, window=None):
        """Presses the closing button of the frame, which the toolkit draws itself here."""
        pointed_at = None

        def has_ended():
            # The frame learns from moves alone where the pointer is, so that is there before it presses.
            nonlocal pointed_at
            button = self.weston.closing_button()
            if button is None:
                pass  # It is closed already, and the program about to end.
            elif button == pointed_at:
                self.display.click(*button)
            else:
                self.display.point(*button)
                pointed_at = button
            try:
                self.program.wait(1)
            except subprocess.TimeoutExpired:
                return False
            return True

        wait_for(has_ended, "the program's end")
        self.expect_end()

    @staticmethod
    def _menu_entry():
        entry, = (current().source / "packaging/desktop").glob("*.desktop")
        return entry.stem


class WaylandRemoval(OnWayland, KeyboardAlone):
    pass


class WaylandHeldKey(OnWayland, HeldKeyOnARow):
    pass


class WaylandReturnTwice(OnWayland, ReturnTwiceInAConfirmation):
    pass
