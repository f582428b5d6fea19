"""Image files for the tests to find."""

import struct
import zlib


def png(width=640, height=400, colour=(200, 60, 52)):
    """The bytes of a PNG file: a field of the colour that darkens from top to bottom."""
    compressor = zlib.compressobj(1)
    data = []
    for y in range(height):
        shade = 1 - y / (2 * height)
        data.append(compressor.compress(b"\0" + bytes(int(part * shade) for part in colour) * width))
    data.append(compressor.flush())

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return (
        b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", b"".join(data)) + chunk(b"IEND", b"")
    )
