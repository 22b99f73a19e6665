"""Calls over the accessibility bus.

Made directly, because libatspi asks one thing at a time: a child, its role, how many children it has. Each answer takes
a way through three processes, and cases that look all the time kept a machine busy with little else.
"""

import functools

from gi.repository import Gio, GLib

_REGISTRY = "org.a11y.atspi.Registry"
_ROOT = "/org/a11y/atspi/accessible/root"
_NOTHING = "/org/a11y/atspi/null"


def call(target, interface, method, signature="", *arguments):
    """The only value that `method` returns, or all of them in a tuple. `target` is a bus name and a path. Raises
    GLib.Error where the program refuses, is gone, or has not answered for half a minute."""
    owner, path = target
    given = GLib.Variant(f"({signature})", arguments) if signature else None
    values = _connection().call_sync(owner, path, f"org.a11y.{interface}" if interface.startswith("atspi.") else interface,
                                     method, given, None, Gio.DBusCallFlags.NONE, -1).unpack()
    return values[0] if len(values) == 1 else values


def read(target, interface, name):
    """A property."""
    return call(target, "org.freedesktop.DBus.Properties", "Get", "ss", f"org.a11y.{interface}", name)


def children(target):
    return [(owner, path) for owner, path in call(target, "atspi.Accessible", "GetChildren") if path != _NOTHING]


def applications():
    return children((_REGISTRY, _ROOT))


@functools.cache
def _connection():
    session = Gio.bus_get_sync(Gio.BusType.SESSION)
    address = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None,
                                Gio.DBusCallFlags.NONE, -1)[0]
    return Gio.DBusConnection.new_for_address_sync(
        address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
