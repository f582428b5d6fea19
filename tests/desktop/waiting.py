"""Waiting for conditions. Nothing else in the desktop tests waits, and nothing sleeps."""

import threading
import time

_POLL_SECONDS = 0.02

# Long enough for a machine that does much else. Who waits for what comes, waits no longer than it takes.
PATIENCE_SECONDS = 60


def wait_until(condition, what, seconds=PATIENCE_SECONDS):
    """Returns the first true value of `condition()`; fails with `what` when there is none in time."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise AssertionError(f"not within {seconds} s: {what}")
        threading.Event().wait(_POLL_SECONDS)


def holds_for(condition, what, seconds):
    """Fails with `what` as soon as `condition()` is false within the next seconds."""
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        if not condition():
            raise AssertionError(f"did not last for {seconds} s: {what}")
        threading.Event().wait(_POLL_SECONDS)


def wait_until_still(read, what, still_for=0.4, seconds=PATIENCE_SECONDS):
    """Returns what `read()` gives once that is true and hasn't changed for `still_for` seconds."""
    since = time.monotonic()
    last = None

    def still():
        nonlocal since, last
        value = read()
        if value != last:
            since, last = time.monotonic(), value
        return value if value and time.monotonic() - since >= still_for else None

    return wait_until(still, what, seconds)
