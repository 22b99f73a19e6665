"""Writing into a field over the accessibility bus itself.

libatspi asks first whether a field offers to be written; the bus takes the calls either way, and so must the test.
"""

from gi.repository import Gio, GLib

_INTERFACE = "org.a11y.atspi.EditableText"


class EditableText:
    def __init__(self, element):
        self._owner, self._path = element.address
        session = Gio.bus_get_sync(Gio.BusType.SESSION)
        address = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None,
                                    Gio.DBusCallFlags.NONE, 5000)[0]
        self._bus = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)

    def set_contents(self, text):
        return self._call("SetTextContents", GLib.Variant("(s)", (text,)))

    def insert(self, position, text):
        return self._call("InsertText", GLib.Variant("(isi)", (position, text, len(text))))

    def paste(self, position):
        return self._call("PasteText", GLib.Variant("(i)", (position,)))

    def delete(self, start, end):
        return self._call("DeleteText", GLib.Variant("(ii)", (start, end)))

    def cut(self, start, end):
        return self._call("CutText", GLib.Variant("(ii)", (start, end)))

    def _call(self, method, arguments):
        """Whether the program claims to have done it; only the field tells whether it did."""
        try:
            return self._bus.call_sync(self._owner, self._path, _INTERFACE, method, arguments, None,
                                       Gio.DBusCallFlags.NONE, 5000)[0]
        except GLib.Error as error:
            if error.matches(Gio.dbus_error_quark(), Gio.DBusError.NO_REPLY):
                raise
            return False
