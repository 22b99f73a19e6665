"""What xdotool has no word for."""

import ctypes

_CLIENT_MESSAGE = 33
_KEY_PRESS = 2
_KEY_PRESS_MASK = 1


xlib = ctypes.CDLL("libX11.so.6")
xlib.XOpenDisplay.restype = ctypes.c_void_p
xlib.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
xlib.XInternAtom.restype = ctypes.c_ulong
xlib.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long, ctypes.c_void_p]
xlib.XCloseDisplay.argtypes = [ctypes.c_void_p]
xlib.XSelectInput.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_long]
xlib.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
xlib.XPending.argtypes = [ctypes.c_void_p]
xlib.XNextEvent.argtypes = [ctypes.c_void_p, ctypes.c_void_p]


class _ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5),
                ("padding", ctypes.c_long * 24)]  # An XEvent is longer than each of its kinds.


def _opened(name):
    display = xlib.XOpenDisplay(name.encode())
    if not display:
        raise RuntimeError(f"no display {name}")
    return display


def ask_to_close(display_name, window):
    """Sends WM_DELETE_WINDOW to the window."""
    display = _opened(display_name)
    message = _ClientMessage(type=_CLIENT_MESSAGE, window=window, format=32,
                             message_type=xlib.XInternAtom(display, b"WM_PROTOCOLS", 0))
    message.data[0] = xlib.XInternAtom(display, b"WM_DELETE_WINDOW", 0)
    xlib.XSendEvent(display, window, 0, 0, ctypes.byref(message))
    xlib.XCloseDisplay(display)


class KeyPresses:
    """Counts the key presses that reach a window from now on, those that the server makes of a held key included."""

    def __init__(self, display_name, window):
        self._display = _opened(display_name)
        self._count = 0
        xlib.XSelectInput(self._display, window, _KEY_PRESS_MASK)
        xlib.XSync(self._display, False)

    def count(self):
        event = (ctypes.c_long * 24)()
        while xlib.XPending(self._display):
            xlib.XNextEvent(self._display, ctypes.byref(event))
            # The kind is an int at the beginning.
            self._count += (event[0] & 0xFFFFFFFF) == _KEY_PRESS
        return self._count

    def end(self):
        xlib.XCloseDisplay(self._display)
