#!/usr/bin/python3
"""Shows the playground where there is no display: tour.py PICTURES RUN.SH [OPTION ...] ZENTRILL.APP

On a virtual one it does what a person would do, with real keys: it looks at the panes, selects a tool, types the
code that the window shows, waits for the result and reads the log. Pictures of all of it are left in PICTURES.
"""

import os
import signal
import subprocess
import sys
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tests/e2e"))

from harness import processes  # noqa: E402
from harness.session import Session  # noqa: E402
from harness.waiting import wait_for  # noqa: E402
from harness.window import PANES, Window  # noqa: E402

# In the order in which they are taken.
_PICTURES = {
    "applications": "a tool is selected",
    "confirmation": "the code is typed",
    "result": "what was removed and what was kept",
    "models": "the local models",
    "docker": "the containers and images",
    "console": "the log of it all",
}

# Installed with data and credentials wherever the samples stand, and no running program is ever taken for it.
_TOOL = "Gemini"


class Tour(Window):
    def __init__(self, session, playground, pictures):
        from harness.screen_reader import ScreenReader  # Looks for the session's bus when it is read.
        self.screen = ScreenReader()
        self.display = session.display
        self._playground = playground
        self._pictures = pictures

    def play(self):
        """False where the playground ended by itself, having said why."""
        self.screen.until(lambda: self._has_ended() or self.screen.find("frame", states=["active"]), "the window")
        if self._has_ended():
            return False
        self.wait_idle()
        self.select()
        self.confirm_with_keys()
        self.read_result()
        self.look_around()
        self.display.close_window()
        return True

    def select(self):
        self.press_until("Down", _TOOL)
        self.display.key("space")
        self.screen.wait("check box", _TOOL, states=["checked"])
        self.picture("applications")

    def confirm_with_keys(self):
        self.press_until("Tab", "Uninstall Selected")
        self.display.key("Return")
        self.dialog("Uninstall 1 Application?")
        self.display.type(self.issued_code())
        self.screen.wait("push button", "Uninstall", states=["enabled"])
        self.picture("confirmation")
        self.display.key("Return")

    def read_result(self):
        self.screen.wait("push button", "OK", states=["focused"])  # It takes no key before.
        self.picture("result")
        self.display.key("Return")
        self.screen.wait_gone("dialog")

    def look_around(self):
        self.press_until("Tab", "Applications", role="page tab")
        for pane in ("models", "docker", "console"):
            self.display.key("Down")
            self.screen.wait("page tab", PANES[pane], states=["selected", "focused"])
            self.picture(pane)

    def picture(self, name):
        """A picture of the window once it has come to rest, which is when two look the same."""
        shots = [b""]

        def at_rest():
            shots.append(self._shot())
            return shots[-1] == shots[-2]

        wait_for(at_rest, f"a window at rest, for {name}")
        (self._pictures / f"{name}.png").write_bytes(shots[-1])

    def _shot(self):
        # Without its time, so that pictures of the same are the same.
        return subprocess.run(["import", "-silent", "-window", str(self.display.window()), "-strip", "png:-"],
                              check=True, capture_output=True).stdout

    def _has_ended(self):
        return self._playground.poll() is not None


def tell(pictures):
    print("The removal of a sample, played through with real keys:", file=sys.stderr)
    for name, what in _PICTURES.items():
        print(f"  {pictures / name}.png  {what}", file=sys.stderr)


def leave(number, _):
    sys.exit(128 + number)


def main():
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    pictures = Path(sys.argv[1]).resolve()
    pictures.mkdir(parents=True, exist_ok=True)
    for name in _PICTURES:
        (pictures / f"{name}.png").unlink(missing_ok=True)
    run, arguments = sys.argv[2], sys.argv[3:]
    for number in (signal.SIGHUP, signal.SIGINT, signal.SIGTERM):
        signal.signal(number, leave)
    try:
        session = Session()
    except (AssertionError, ImportError, OSError, RuntimeError) as obstacle:
        sys.exit(f"demo: no virtual display can be had: {obstacle}")
    playground = None
    try:
        os.environ.pop("WAYLAND_DISPLAY", None)
        os.environ["QT_QPA_PLATFORM"] = "xcb"
        playground = processes.start([run, "--session", str(session.runtime), *arguments])
        played = Tour(session, playground, pictures).play()
        status = playground.wait()
        if played and status == 0:
            tell(pictures)
        return status
    except AssertionError as overdue:
        print(f"demo: the tour cannot go on: {overdue}", file=sys.stderr)
        return 1
    finally:
        if playground is not None:
            processes.end(playground)
        session.stop()


sys.exit(main())
