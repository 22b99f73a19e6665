"""The one message that xdotool has no word for."""

import ctypes

_CLIENT_MESSAGE = 33


xlib = ctypes.CDLL("libX11.so.6")
xlib.XOpenDisplay.restype = ctypes.c_void_p
xlib.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
xlib.XInternAtom.restype = ctypes.c_ulong
xlib.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long, ctypes.c_void_p]
xlib.XCloseDisplay.argtypes = [ctypes.c_void_p]


class _ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5),
                ("padding", ctypes.c_long * 24)]  # An XEvent is longer than each of its kinds.


def ask_to_close(display_name, window):
    """Sends WM_DELETE_WINDOW to the window."""
    display = xlib.XOpenDisplay(display_name.encode())
    if not display:
        raise RuntimeError(f"no display {display_name}")
    message = _ClientMessage(type=_CLIENT_MESSAGE, window=window, format=32,
                             message_type=xlib.XInternAtom(display, b"WM_PROTOCOLS", 0))
    message.data[0] = xlib.XInternAtom(display, b"WM_DELETE_WINDOW", 0)
    xlib.XSendEvent(display, window, 0, 0, ctypes.byref(message))
    xlib.XCloseDisplay(display)
