"""A desktop session: a display, a session bus and the accessibility bus, switched on as a screen reader does."""

import os
import shutil
import socket
import tempfile
from pathlib import Path

from . import processes
from .display import Display
from .waiting import wait_for

_LAUNCHERS = ["/usr/libexec/at-spi-bus-launcher", "/usr/lib/at-spi2-core/at-spi-bus-launcher"]


class Session:
    """One for each test process: libatspi connects once."""

    _shared = None

    @classmethod
    def shared(cls):
        if cls._shared is None:
            cls._shared = cls()
        return cls._shared

    @classmethod
    def end_shared(cls):
        if cls._shared is not None:
            cls._shared.stop()
            cls._shared = None

    def __init__(self):
        self.folder = Path(tempfile.mkdtemp(prefix="e2e-session-"))
        self.runtime = self.folder / "run"
        self.runtime.mkdir(mode=0o700)
        (self.folder / "home").mkdir()
        self.bus_address = f"unix:path={self.runtime}/bus"
        self.display = None
        self._helpers = []
        try:
            self.display = Display()
            self._start_buses()
            self._announce_screen_reader()
        except BaseException:
            self.stop()
            raise

    def stop(self):
        for helper in reversed(self._helpers):
            processes.end(helper)
        if self.display is not None:
            self.display.stop()
        shutil.rmtree(self.folder, ignore_errors=True)

    def environment(self):
        """What a program of this session finds in its environment."""
        return {"DISPLAY": self.display.name, "DBUS_SESSION_BUS_ADDRESS": self.bus_address,
                "XDG_RUNTIME_DIR": str(self.runtime), "LANG": "C.UTF-8"}

    def sockets(self):
        """Where a program of this session finds its buses and its display."""
        return [self.runtime, self.display.socket]

    def _start_buses(self):
        environment = {**self.environment(), "HOME": str(self.folder / "home"), "PATH": "/usr/bin:/bin",
                       "GSETTINGS_BACKEND": "memory"}
        log = (self.folder / "log").open("w")
        self._helpers.append(processes.start(
            ["dbus-daemon", "--session", "--nofork", "--nopidfile", f"--address={self.bus_address}"],
            env=environment, stdout=log, stderr=log))
        wait_for(self._bus_listens, "the session bus")
        launcher = next((path for path in _LAUNCHERS if os.path.exists(path)), None)
        if launcher is None:
            raise RuntimeError("at-spi2-core is not installed")
        self._helpers.append(processes.start([launcher, "--launch-immediately"],
                                             env=environment, stdout=log, stderr=log))

    def _bus_listens(self):
        """Its socket's file is there a moment before anybody can connect."""
        if self._helpers[0].poll() is not None:
            raise RuntimeError(f"the session bus does not start: {(self.folder / 'log').read_text()}")
        with socket.socket(socket.AF_UNIX) as client:
            return client.connect_ex(str(self.runtime / "bus")) == 0

    def _announce_screen_reader(self):
        # libatspi reads the environment of its own process.
        os.environ.update(self.environment())
        from gi.repository import Gio, GLib
        bus = Gio.bus_get_sync(Gio.BusType.SESSION)

        def announced():
            try:
                for name in ("IsEnabled", "ScreenReaderEnabled"):
                    bus.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
                                  GLib.Variant("(ssv)", ("org.a11y.Status", name, GLib.Variant("b", True))),
                                  None, Gio.DBusCallFlags.NONE, 5000)
                return True
            except GLib.Error:
                return False

        wait_for(announced, "the accessibility bus")
