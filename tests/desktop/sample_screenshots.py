"""Screenshots that look like some: windows with bars, columns and lines of text, each in colours of its own."""

import colorsys
import os
import random
import struct
import zlib
from datetime import datetime, timedelta

_NEWEST = datetime(2024, 11, 14, 9, 41, 7)


def _rgb(hue, saturation, value):
    return bytes(int(255 * part) for part in colorsys.hsv_to_rgb(hue % 1, saturation, value))


class _Canvas:
    def __init__(self, width, height, colour):
        self._width = width
        self._height = height
        self._rows = [bytearray(colour * width) for _y in range(height)]

    def fill(self, left, top, right, bottom, colour):
        left = max(0, left)
        right = max(left, min(self._width, right))
        for y in range(max(0, top), min(self._height, bottom)):
            self._rows[y][3 * left : 3 * right] = colour * (right - left)

    def png(self):
        def chunk(kind, data):
            return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

        header = struct.pack(">IIBBBBB", self._width, self._height, 8, 2, 0, 0, 0)
        data = zlib.compress(b"".join(b"\0" + row for row in self._rows), 1)
        return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", data) + chunk(b"IEND", b"")


def picture(number, size=(640, 400)):
    """The bytes of the PNG file with that number: the same number, the same picture."""
    width, height = size
    chance = random.Random(number)
    hue = (number * 0.381966) % 1
    is_dark = number % 3 == 2
    ground = _rgb(hue, 0.25, 0.16) if is_dark else _rgb(hue, 0.03, 0.98)
    text = _rgb(hue, 0.15, 0.7) if is_dark else _rgb(hue, 0.3, 0.35)
    accent = _rgb(hue, 0.65, 0.85)
    canvas = _Canvas(width, height, ground)
    canvas.fill(0, 0, width, 26, _rgb(hue, 0.35, 0.3 if is_dark else 0.9))
    for dot in range(3):
        canvas.fill(12 + 18 * dot, 8, 22 + 18 * dot, 18, _rgb(hue + dot / 3, 0.5, 0.8))
    sidebar = chance.choice((0, 120, 160))
    canvas.fill(0, 26, sidebar, height, _rgb(hue, 0.2, 0.22 if is_dark else 0.93))
    if number % 2:
        canvas.fill(sidebar + 24, 50, width - 24, 170, accent)
        canvas.fill(sidebar + 44, 90, sidebar + 200, 104, _rgb(hue, 0.05, 1))
    top = 190 if number % 2 else 50
    for line in range(top, height - 16, 18):
        canvas.fill(sidebar + 24, line, sidebar + 24 + chance.randint(120, max(121, width - sidebar - 60)), line + 7, text)
    for row in range(44, height - 20, 26):
        canvas.fill(14, row, min(sidebar - 14, 14 + chance.randint(40, 90)), row + 8, text)
    return canvas.png()


def name(number):
    """Numbered from 1, the newest, backwards."""
    moment = _NEWEST - timedelta(minutes=7 * (number - 1))
    return moment.strftime("Screenshot from %Y-%m-%d %H-%M-%S.png")


def fill(folder, count, first=1):
    """Puts screenshots into the folder, the first the newest, all of them older than an hour; returns their
    names, newest first.
    """
    names = []
    for number in range(first, first + count):
        path = folder / name(number)
        # Wider than 2.5 : 1 and narrower than 1 : 2 are shown whole.
        size = {20: (900, 240), 27: (300, 700)}.get(number, (640, 400))
        path.write_bytes(picture(number, size))
        age = 3600 + 60 * number
        then = path.stat().st_mtime - age
        os.utime(path, (then, then))
        names.append(path.name)
    return names
