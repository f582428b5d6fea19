"""The dialog in which the user picks the folder to watch."""

from gi.repository import GLib

import pointer
from waiting import wait_until, wait_until_still

DESKTOP_TITLE = "Select Desktop Folder"
SCREENSHOT_FOLDER_TITLE = "Select Screenshot Folder"


class FolderPicker:
    """On screen when it is made."""

    def __init__(self, program, title=DESKTOP_TITLE):
        self._program = program
        self._title = title
        wait_until_still(
            lambda: [thing.rectangle for thing in self._seen()],
            f"the picker {title!r} is on screen; the program printed {program.child.lines}",
        )
        wait_until(lambda: self._find("text").node.has_state("focused"), "the picker has the keyboard")

    def _seen(self):
        """What it shows, its window first."""
        try:
            seen = self._program.accessibility.showing(self._program.pid)
        except GLib.Error:
            return []
        return seen if any(thing.name == self._title and thing.role == "dialog" for thing in seen) else []

    def _find(self, role, name=None):
        return wait_until(
            lambda: next((thing for thing in self._seen() if thing.role == role and name in (None, thing.name)), None),
            f"the picker shows a {role} {name or ''}: {[(thing.role, thing.name) for thing in self._seen()]}",
        )

    @property
    def texts(self):
        return [thing.name for thing in self._seen() if thing.role == "label"]

    @property
    def buttons(self):
        """Their names and rectangles."""
        return {thing.name: thing.rectangle for thing in self._seen() if thing.role == "push button"}

    @property
    def rectangle(self):
        """Without the frame."""
        return self._find("dialog").rectangle

    @property
    def close_button(self):
        """The place of the window manager's: above the right corner."""
        x, y, width, _height = self.rectangle
        return x + width - 11, y - 13

    def is_gone(self):
        return not self._seen()

    def wait_until_gone(self):
        wait_until(self.is_gone, "the picker is gone")

    def _row(self, number):
        """The middle of a row of the list, counted from 0: assistive technologies see the first one alone."""
        x, y, width, height = wait_until(
            lambda: self._find("list", "Folders").node.children(), "there are folders"
        )[0].rectangle()
        return x + width // 2, y + height // 2 + number * height

    def click_folder(self, row):
        pointer.click(self._program.desktop, self._row(row))

    def open_folder(self, row):
        pointer.double_click(self._program.desktop, self._row(row))

    def wait_for_directory(self, path):
        """Until it shows what is in the folder."""
        self._find("combo box", str(path))

    def click_button(self, name):
        pointer.click(self._program.desktop, pointer.centre(self._find("push button", name).rectangle))

    def type_path(self, path):
        """With the keyboard, to the Enter key."""
        pointer.type_text(self._program.desktop, str(path))
        self.close_with("Return")

    def close_with(self, key):
        """Released when the dialog has gone: the toolkit's bridge to assistive technologies (6.4) leaks the release
        of a key whose window goes meanwhile.
        """
        with pointer.holding(self._program.desktop, key):
            self.wait_until_gone()
