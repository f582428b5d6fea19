"""What only an X client can ask, and no small tool prints."""

import ctypes


def selection_has_owner(display_name, selection):
    """Whether some client owns the selection, as a compositor owns _NET_WM_CM_S0."""
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XInternAtom.restype = x11.XGetSelectionOwner.restype = ctypes.c_ulong
    x11.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
    x11.XGetSelectionOwner.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
    x11.XCloseDisplay.argtypes = [ctypes.c_void_p]
    display = x11.XOpenDisplay(display_name.encode())
    if not display:
        raise AssertionError(f"no display {display_name}")
    try:
        return x11.XGetSelectionOwner(display, x11.XInternAtom(display, selection.encode(), False)) != 0
    finally:
        x11.XCloseDisplay(display)
