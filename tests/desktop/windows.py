"""The X windows of a private desktop, as the server has them."""

import re
import subprocess
from dataclasses import dataclass, field

from waiting import wait_until

_LINE = re.compile(
    r'^(?P<indent> +)(?P<id>0x[0-9a-f]+) (?P<title>".*"|\(has no name\)): '
    r'\((?:"(?P<instance>[^"]*)" "(?P<window_class>[^"]*)")?.*?\) +'
    r"(?P<width>\d+)x(?P<height>\d+)\+-?\d+\+-?\d+ +\+(?P<x>-?\d+)\+(?P<y>-?\d+)$"
)


@dataclass
class Window:
    """Position and size are in device pixels of the screen; `ancestors` go from the root window down."""

    id: str
    title: str
    instance: str
    window_class: str
    rectangle: tuple
    depth: int
    ancestors: list = field(default_factory=list, repr=False)

    def lies_in(self, window_class):
        return any(ancestor.window_class == window_class for ancestor in self.ancestors)


def _tree(desktop):
    """xwininfo's listing, or None: it gives up when a window goes away under its eyes."""
    try:
        return desktop.run(["xwininfo", "-root", "-tree"])
    except subprocess.CalledProcessError:
        return None


def all_windows(desktop):
    windows = []
    above = []
    for line in wait_until(lambda: _tree(desktop), "the windows are listed").splitlines():
        match = _LINE.match(line)
        if not match:
            continue
        depth = len(match["indent"])
        while above and above[-1].depth >= depth:
            above.pop()
        window = Window(
            match["id"],
            match["title"].strip('"'),
            match["instance"] or "",
            match["window_class"] or "",
            tuple(int(match[name]) for name in ("x", "y", "width", "height")),
            depth,
            list(above),
        )
        windows.append(window)
        above.append(window)
    return windows
