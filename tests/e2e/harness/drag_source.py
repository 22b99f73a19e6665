"""Another program, from which a person drags something into the window."""

import os
import select
import subprocess

from . import processes
from .program import sanitizer_options
from .settings import current
from .waiting import DEADLINE, Overdue

# Where its two windows stand, right of the program's.
_SOURCE = (1100, 150)
_TARGET = (1100, 400)


class DragSource:
    """Offers a text or a file: DragSource(display, "text", "1234"). It has a place of its own that takes every drop."""

    def __init__(self, display, kind, what):
        self._display = display
        self._process = processes.start(
            [str(current().programs / "zentrill_drag_source"), kind, what],
            env={**os.environ, **sanitizer_options(), "DISPLAY": display.name, "QT_QPA_PLATFORM": "xcb"},
            # Nothing is read ahead, so that waiting for output is waiting for what is not read yet.
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, bufsize=0)
        self._expect("ready")

    def stop(self):
        processes.end(self._process)
        self._process.stdout.close()

    def drop_on_own_target(self):
        """Fails unless the drag is taken; how it ended."""
        self._drag_to(_TARGET)
        self._expect("entered")
        self._display.run("xdotool", "mouseup", "1")
        self._expect("dropped")
        return self._read()

    def drop_on(self, point):
        """How it ended: "ended 0" where nobody took it."""
        self._drag_to(point)
        # Whoever takes drops has been asked, and asked again, by the end of this way.
        for step in range(-6, 7):
            self._display.run("xdotool", "mousemove", "--sync", str(point[0] + step), str(point[1]))
        self._display.run("xdotool", "mousemove", "--sync", *map(str, point), "mouseup", "1")
        return self._read()

    def _drag_to(self, point):
        x, y = _SOURCE
        self._display.run("xdotool", "mousemove", "--sync", str(x), str(y), "mousedown", "1",
                          "mousemove", "--sync", str(x - 30), str(y), "mousemove", "--sync", str(x - 60), str(y))
        self._expect("dragging")
        self._display.run("xdotool", "mousemove", "--sync", str(point[0] + 8), str(point[1]),
                          "mousemove", "--sync", *map(str, point))

    def _expect(self, line):
        said = self._read()
        if said != line:
            raise AssertionError(f"the drag source said {said!r} instead of {line!r}")

    def _read(self):
        if not select.select([self._process.stdout], [], [], DEADLINE)[0]:
            raise Overdue(f"not within {DEADLINE:g} s: a word of the drag source")
        return self._process.stdout.readline().decode().strip()
