"""Counts how often a folder has been listed to its end, as the kernel reports it (inotify)."""

import ctypes
import os

_IN_CLOSE_NOWRITE = 0x10
_IN_OPEN = 0x20
_IN_ISDIR = 0x40000000
_EVENT_HEADER_BYTES = 16


class FolderListings:
    """From creation on. A program that has listed a folder since knows what was in it before."""

    def __init__(self, folder):
        libc = ctypes.CDLL(None, use_errno=True)
        self._descriptor = libc.inotify_init1(os.O_NONBLOCK | os.O_CLOEXEC)
        # With the openings between them: the kernel reports equal events in a row as one.
        watch = libc.inotify_add_watch(self._descriptor, os.fsencode(folder), _IN_CLOSE_NOWRITE | _IN_OPEN)
        if watch < 0:
            os.close(self._descriptor)
            raise OSError(ctypes.get_errno(), f"can't watch {folder}")
        self._count = 0

    def count(self):
        try:
            while True:
                self._count += self._own_events(os.read(self._descriptor, 65536))
        except BlockingIOError:
            return self._count

    @staticmethod
    def _own_events(data):
        """How many of the events are closings of the folder itself, not about something in it."""
        count = offset = 0
        while offset < len(data):
            mask = int.from_bytes(data[offset + 4 : offset + 8], "little")
            name_bytes = int.from_bytes(data[offset + 12 : offset + 16], "little")
            count += bool(mask & _IN_CLOSE_NOWRITE and mask & _IN_ISDIR and name_bytes == 0)
            offset += _EVENT_HEADER_BYTES + name_bytes
        return count

    def close(self):
        os.close(self._descriptor)
