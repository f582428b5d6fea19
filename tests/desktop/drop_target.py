"""Another program's window that things can be dropped on."""

import os
from pathlib import Path

from windows import all_windows
from waiting import wait_until


class DropTarget:
    """`area` is (x, y, width, height) without the frame, in points."""

    TITLE = "Drop Target"

    def __init__(self, desktop, area):
        program = Path(os.environ["DESKBROOM"]).parent / "tests/drop_target"
        self._child = desktop.start([program, *map(str, area)])
        window = wait_until(
            lambda: next((w for w in all_windows(desktop) if w.title == self.TITLE), None), "the target is on screen"
        )
        x, y, width, height = window.rectangle
        self.centre = x + width // 2, y + height // 2

    def wait_for_line(self, line):
        self._child.wait_for_line(line)

    def close(self):
        self._child.stop()
