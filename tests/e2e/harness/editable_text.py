"""Writing into a field over the accessibility bus itself.

libatspi asks first whether a field offers to be written; the bus takes the calls either way, and so must the test.
"""

from gi.repository import Gio, GLib

from . import accessibility_bus as bus


class EditableText:
    def __init__(self, element):
        self._target = element.target

    def set_contents(self, text):
        return self._call("SetTextContents", "s", text)

    def insert(self, position, text):
        return self._call("InsertText", "isi", position, text, len(text))

    def paste(self, position):
        return self._call("PasteText", "i", position)

    def delete(self, start, end):
        return self._call("DeleteText", "ii", start, end)

    def cut(self, start, end):
        return self._call("CutText", "ii", start, end)

    def _call(self, method, signature, *arguments):
        """Whether the program claims to have done it; only the field tells whether it did."""
        try:
            return bus.call(self._target, "atspi.EditableText", method, signature, *arguments)
        except GLib.Error as error:
            if error.matches(Gio.dbus_error_quark(), Gio.DBusError.NO_REPLY):
                raise
            return False
