"""A file manager on the session's bus, which writes down what it is asked to show."""

import subprocess
import sys
import tempfile
from pathlib import Path

from . import processes
from .waiting import wait_for

_NAME = "org.freedesktop.FileManager1"
_SCRIPT = """
import sys
from gi.repository import Gio, GLib

NAME = "org.freedesktop.FileManager1"
INTERFACE = ('<node><interface name="' + NAME + '"><method name="ShowItems">'
             '<arg type="as" direction="in"/><arg type="s" direction="in"/></method></interface></node>')

def called(connection, sender, path, interface, method, arguments, invocation):
    with open(sys.argv[1], "a") as notes:
        notes.writelines(uri + chr(10) for uri in arguments.unpack()[0])
    invocation.return_value(None)

def acquired(connection, name):
    node = Gio.DBusNodeInfo.new_for_xml(INTERFACE)
    connection.register_object("/org/freedesktop/FileManager1", node.interfaces[0], called, None, None)

Gio.bus_own_name(Gio.BusType.SESSION, NAME, Gio.BusNameOwnerFlags.NONE, acquired,
                 lambda *_: open(sys.argv[1], "a").close(), None)
GLib.MainLoop().run()
"""


class FileManager:
    def __init__(self, session):
        self._folder = tempfile.TemporaryDirectory(prefix="e2e-file-manager-")
        self._notes = Path(self._folder.name) / "notes"
        self._process = processes.start([sys.executable, "-c", _SCRIPT, str(self._notes)],
                                        env={**session.environment(), "PATH": "/usr/bin:/bin"},
                                        stdout=subprocess.DEVNULL)
        wait_for(self._notes.exists, "the file manager")

    def stop(self):
        processes.end(self._process)
        self._folder.cleanup()

    def shown(self):
        """The URIs that it was asked to show, in order."""
        return self._notes.read_text().splitlines()


def can_be_started():
    """Whether the session's bus would start one of the machine's."""
    from gi.repository import Gio
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    return _NAME in bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                  "ListActivatableNames", None, None, Gio.DBusCallFlags.NONE, -1)[0]
