"""Folders that don't answer, as those on a network whose server is away."""

import contextlib
import fcntl
import os
from pathlib import Path


@contextlib.contextmanager
def stalled(folder):
    """Meanwhile a program with this environment that lists the folder, or moves something into it, waits."""
    descriptor = os.open(folder, os.O_RDONLY | os.O_DIRECTORY)
    try:
        fcntl.flock(descriptor, fcntl.LOCK_EX)
        yield
    finally:
        os.close(descriptor)


def environment():
    library = Path(os.environ["DESKBROOM"]).parent / "tests/libstalled_folders.so"
    # The sanitizer's own library would have to be the first, but calls nothing that is changed here.
    options = ":".join(filter(None, (os.environ.get("ASAN_OPTIONS"), "verify_asan_link_order=0")))
    return {"LD_PRELOAD": str(library), "ASAN_OPTIONS": options}
