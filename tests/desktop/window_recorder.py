"""What a window shows while something moves in it: picture after picture, straight from the X server."""

import ctypes
import subprocess
import threading
import time

_ALL_PLANES = ctypes.c_ulong(-1)
_Z_PIXMAP = 2
_REST_SECONDS = 0.4


class _Image(ctypes.Structure):
    """The beginning of an XImage."""

    _fields_ = [
        *((name, ctypes.c_int) for name in ("width", "height", "xoffset", "format")),
        ("data", ctypes.c_void_p),
        *((name, ctypes.c_int) for name in ("byte_order", "bitmap_unit", "bitmap_bit_order", "bitmap_pad")),
        *((name, ctypes.c_int) for name in ("depth", "bytes_per_line", "bits_per_pixel")),
    ]


class WindowRecorder:
    """Records until `stop`. A picture is kept when it differs from the one before within `rows`, the part of the
    window's height, from and to as fractions, that counts. `size` is in device pixels.
    """

    def __init__(self, desktop, window, rows):
        self.size = window.rectangle[2:]
        width, height = self.size
        self._window = int(window.id, 16)
        self._counting = slice(*(int(row * height) * width * 4 for row in rows))
        self._display_name = desktop.environment["DISPLAY"].encode()
        self._frames = []
        self._last_change = time.monotonic()
        self._is_ending = False
        self._failure = None
        self._thread = threading.Thread(target=self._record, daemon=True)
        self._thread.start()

    def has_begun(self):
        if self._failure:
            raise self._failure
        return bool(self._frames)

    def is_still(self):
        """Whether nothing has changed for a while."""
        return time.monotonic() - self._last_change > _REST_SECONDS

    def stop(self):
        """The pictures, as bytes of blue, green, red and nothing for each pixel."""
        self._is_ending = True
        self._thread.join()
        return self._frames

    def save(self, frame, path):
        width, height = self.size
        subprocess.run(
            ["convert", "-size", f"{width}x{height}", "-depth", "8", "bgra:-", "-alpha", "off", str(path)],
            input=frame, check=True, timeout=60,
        )

    def _record(self):
        x11 = ctypes.CDLL("libX11.so.6")
        x11.XOpenDisplay.restype = ctypes.c_void_p
        x11.XGetImage.restype = ctypes.POINTER(_Image)
        x11.XGetImage.argtypes = [
            ctypes.c_void_p, ctypes.c_ulong, *[ctypes.c_int] * 2, *[ctypes.c_uint] * 2, ctypes.c_ulong, ctypes.c_int,
        ]
        x11.XDestroyImage.argtypes = [ctypes.POINTER(_Image)]
        x11.XCloseDisplay.argtypes = [ctypes.c_void_p]
        display = x11.XOpenDisplay(self._display_name)
        try:
            while not self._is_ending:
                image = x11.XGetImage(display, self._window, 0, 0, *self.size, _ALL_PLANES, _Z_PIXMAP)
                frame = ctypes.string_at(image.contents.data, self.size[0] * self.size[1] * 4)
                x11.XDestroyImage(image)
                if not self._frames or frame[self._counting] != self._frames[-1][self._counting]:
                    self._frames.append(frame)
                    self._last_change = time.monotonic()
        except ValueError as failure:  # no picture came
            self._failure = failure
        finally:
            x11.XCloseDisplay(display)
