"""A Wayland desktop: Weston in a window of a virtual X screen, whose keys and pointer reach programs through it."""

import os
import re
import shutil
import subprocess

from . import processes
from .waiting import wait_for

_PROGRAMS = {"weston": "weston", "weston-debug": "weston"}
# Nothing on the screen but the program's window, and nothing that moves.
_CONFIGURATION = """[core]
idle-time=0
[shell]
panel-position=none
locking=false
animation=none
startup-animation=none
close-animation=none
[input-method]
path=
"""


def obstacle():
    """Why there is no such desktop here, or nothing."""
    for program, package in _PROGRAMS.items():
        if shutil.which(program) is None:
            return f"{program} is not installed (package {package})"
    plugins = subprocess.run(["qmake6", "-query", "QT_INSTALL_PLUGINS"], capture_output=True, text=True).stdout.strip()
    if not os.path.exists(f"{plugins}/platforms/libqwayland-generic.so"):
        return "the toolkit's part for Wayland is not installed (package qt6-wayland)"
    return None


class Weston:
    """Fills the screen of the session's display but for its last row, and has its keyboard from the start."""

    def __init__(self, session):
        self._display = session.display
        self._runtime = session.runtime
        self.name = "wayland-zentrill"
        configuration = session.folder / "weston.ini"
        configuration.write_text(_CONFIGURATION)
        self._log = session.folder / "weston.log"
        width, height = self._display.size()
        with self._log.open("w") as log:
            self._compositor = processes.start(
                ["weston", "--backend=x11-backend.so", "--use-pixman", f"--width={width}", f"--height={height - 1}",
                 f"--socket={self.name}", f"--config={configuration}", "--debug"],
                env={**session.environment(), "HOME": str(session.folder / "home"), "PATH": "/usr/bin:/bin"},
                stdout=log, stderr=log)
        try:
            window = str(wait_for(lambda: (self._runtime / self.name).exists() and self._window(), "Weston"))
            self._display.run("xdotool", "windowmove", window, "0", "0", "windowfocus", "--sync", window)
            # It follows the pointer once that has come in over an edge, for which there is one below it.
            self._display.point(0, height - 1)
        except BaseException:
            self.stop()
            raise

    def stop(self):
        processes.end(self._compositor)

    def environment(self):
        """What makes a program come to this desktop."""
        return {"DISPLAY": None, "WAYLAND_DISPLAY": self.name, "XDG_SESSION_TYPE": "wayland"}

    def window(self):
        """The compositor's own words about the one window that it shows, or nothing while it shows none."""
        environment = {**os.environ, "WAYLAND_DISPLAY": self.name, "XDG_RUNTIME_DIR": str(self._runtime)}
        scene = subprocess.run(["weston-debug", "scene-graph"], env=environment, capture_output=True, text=True,
                               check=True).stdout
        # A view is a line at the margin, followed by lines about it.
        windows = [view for view in re.split(r"\n\s*View ", scene) if "xdg_toplevel" in view]
        if len(windows) > 1:
            raise RuntimeError(f"more than one window:\n{scene}")
        return windows[0] if windows else None

    def closing_button(self):
        """Where on the screen the frame that the toolkit draws has its closing button; nothing without a window."""
        window = self.window()
        if window is None:
            return None
        _, top, right, _ = map(int, re.search(r"position: \((-?\d+), (-?\d+)\) -> \((-?\d+), (-?\d+)\)",
                                              window).groups())
        return right - 17, top + 15

    def _window(self):
        if self._compositor.poll() is not None:
            raise RuntimeError(f"Weston does not start: {self._log.read_text()}")
        return self._display.find_window("--class", "^weston")
