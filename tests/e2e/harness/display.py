"""A virtual screen of its own, with a keyboard and a mouse."""

import os
import random
import subprocess
import time

from . import processes, x11
from .settings import current
from .waiting import wait_for

WINDOW_TITLE = "Zentrill - Environment Cleaner"
_SIZE = "1280x900x24"
# Presses that are further apart, in seconds or in points, are two clicks and no double click.
_DOUBLE_CLICK_TIME = 0.45
_DOUBLE_CLICK_REACH = 10


class Display:
    _clicked = (0, 0, float("-inf"))

    def __init__(self):
        # Not the first free number: a server that ends takes the socket of the next one on its number with it.
        for number in random.sample(range(1000, 60000), 5):
            self._server = self._started(number)
            if self._server is not None:
                self.name = f":{number}"
                self.socket = f"/tmp/.X11-unix/X{number}"
                return
        raise RuntimeError("Xvfb did not start")

    @staticmethod
    def _started(number):
        """The server, ready for clients, or nothing."""
        reading, writing = os.pipe()
        try:
            # A server that resets itself when its last client leaves would refuse who comes meanwhile.
            server = processes.start(
                ["Xvfb", f":{number}", "-displayfd", str(writing), "-screen", "0", _SIZE, "-nolisten", "tcp",
                 "-noreset"],
                pass_fds=[writing], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        finally:
            os.close(writing)
        with os.fdopen(reading) as answer:
            if answer.readline().strip():
                return server
        processes.end(server)
        return None

    def stop(self):
        processes.end(self._server)

    @staticmethod
    def size():
        """Its width and height."""
        return tuple(int(number) for number in _SIZE.split("x")[:2])

    def run(self, *command):
        return subprocess.run(command, check=True, capture_output=True, text=True,
                              env={**os.environ, "DISPLAY": self.name}).stdout

    def key(self, *keys):
        """Presses keys by their X names, one after the other: key("Tab", "ctrl+v")."""
        self.run("xdotool", "key", "--clearmodifiers", *keys)

    def type(self, text):
        self.run("xdotool", "type", "--delay", "20", text)

    def click(self, x, y, button=1, *before):
        """A press of its own, never the second one of a double click. `before` is what xdotool does right before it
        over the same point."""
        last_x, last_y, last = self._clicked
        if abs(x - last_x) + abs(y - last_y) <= _DOUBLE_CLICK_REACH:
            wait_for(lambda: time.monotonic() > last + _DOUBLE_CLICK_TIME, "the end of a double click")
        self.run("xdotool", "mousemove", str(x), str(y), *before, "click", str(button))
        self._clicked = (x, y, time.monotonic())

    def point(self, x, y):
        """Moves the pointer there."""
        self.run("xdotool", "mousemove", str(x), str(y))

    def wheel(self, x, y, notches):
        """Turns the wheel over a point, away from the person where `notches` is negative."""
        self.run("xdotool", "mousemove", str(x), str(y), "click", "--repeat", str(abs(notches)), "--delay", "15",
                 "5" if notches > 0 else "4")

    def press_key(self, key, repeats=0):
        """Holds a key down until the server has repeated it that often, in the program's window or in that of the
        desktop that shows it."""
        self._presses = x11.KeyPresses(self.name, self.window() or int(self.run("xdotool", "getwindowfocus")))
        self.run("xdotool", "keydown", key)
        self.wait_for_repeats(repeats)

    def wait_for_repeats(self, repeats):
        """So many repetitions of the held key, from now on."""
        before = self._presses.count()
        wait_for(lambda: self._presses.count() >= before + repeats, f"{repeats} repetitions of a held key")

    def release_key(self, key):
        self.run("xdotool", "keyup", key)
        self._presses.end()

    def set_resources(self, text):
        """What a desktop tells every program of its settings, such as "Xft.dpi:\\t120"."""
        self.run("xprop", "-root", "-format", "RESOURCE_MANAGER", "8s", "-set", "RESOURCE_MANAGER", text)

    def window_size(self):
        """Width and height of the program's window in pixels."""
        lines = self.run("xdotool", "getwindowgeometry", "--shell", str(self.window())).splitlines()
        values = dict(line.split("=") for line in lines)
        return int(values["WIDTH"]), int(values["HEIGHT"])

    def window(self):
        """The number of the program's window, or nothing."""
        return self.find_window("--name", f"^{WINDOW_TITLE}$")

    def find_window(self, kind, pattern):
        """The number of the first window of which the "--name" or "--class" fits the pattern, or nothing."""
        found = subprocess.run(["xdotool", "search", "--onlyvisible", kind, pattern],
                               capture_output=True, text=True, env={**os.environ, "DISPLAY": self.name})
        return int(found.stdout.split()[0]) if found.stdout.split() else None

    def move_window(self, x, y):
        self.run("xdotool", "windowmove", "--sync", str(self.window()), str(x), str(y))

    def close_window(self, window=None):
        """What a window manager sends when the window's closing button is pressed. Who cannot lose time looks the
        window up before."""
        x11.ask_to_close(self.name, window or self.window())

    def picture(self, name):
        """Leaves a picture of the window among the build's pictures."""
        self.run("import", "-silent", "-window", str(self.window() or "root"),
                 str(current().pictures / f"{name}.png"))
