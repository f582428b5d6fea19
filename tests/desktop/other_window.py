"""Another program's window, which tells what reaches it."""

import re

from waiting import wait_until
from windows import all_windows

_CHARACTER = re.compile(r'XLookupString gives 1 bytes: \(([0-9a-f]{2})\)')


class OtherWindow:
    """xev: prints every event that it is sent. `area` is (x, y, width, height) without the frame."""

    TITLE = "Event Tester"

    def __init__(self, desktop, area=(100, 300, 400, 300)):
        x, y, width, height = area
        self._child = desktop.start(["xev", "-geometry", f"{width}x{height}+{x}+{y}"])
        wait_until(lambda: self._count("MapNotify"), "the other window is on screen")
        window = wait_until(
            lambda: next((w for w in all_windows(desktop) if w.title == self.TITLE), None), "the other window is listed"
        )
        self.rectangle = window.rectangle
        self._desktop = desktop

    def _blocks(self, event):
        """The lines of each event of the kind."""
        block = None
        for line in [*self._child.lines, ""]:
            if line.startswith(event + " event"):
                block = []
            elif block is not None and not line.startswith(" "):
                yield block
                block = None
            if block is not None:
                block.append(line)

    def _count(self, event):
        return sum(1 for _block in self._blocks(event))

    def presses(self):
        return self._count("ButtonPress")

    def has_keyboard(self):
        return self._count("FocusIn") > self._count("FocusOut")

    def typed(self):
        """All characters typed into it so far."""
        characters = (_CHARACTER.search("\n".join(block)) for block in self._blocks("KeyPress"))
        return "".join(chr(int(match[1], 16)) for match in characters if match)

    def close(self):
        self._child.stop()
