"""The program as its user meets it on a private desktop."""

import os
from pathlib import Path

from gi.repository import GLib

import pointer
from accessibility import Accessibility
from folder_listings import FolderListings
from tray import icon_place, icon_rectangle, registered_item
from waiting import wait_until, wait_until_still

PREFERENCE_DELAY = "timeframeInMinutes"
PREFERENCE_AUTO_COPY = "autoCopyToClipboard"
_WINDOW_CLASS = "deskbroom"

# What the program prints about access to the watched folder when nothing is wrong.
_ABOUT_ACCESS = (
    "Requesting access to Desktop folder at: ",
    "Desktop folder access granted",
    "Successfully created bookmark for: ",
    "Persistent Desktop access started: ",
    "Persistent Desktop access stopped",
)


class Question:
    """The popover that asks about a screenshot, while it is on screen."""

    TITLE = "Screenshot Taken"

    def __init__(self, seen):
        self._seen = seen

    @property
    def texts(self):
        return [thing.name for thing in self._seen if thing.role == "label" and thing.name]

    @property
    def buttons(self):
        """Their names and rectangles."""
        return {thing.name: thing.rectangle for thing in self._seen if thing.role == "push button"}

    @property
    def identity(self):
        """Another question has another one."""
        return self._seen[0].node.path

    @property
    def rectangle(self):
        """The whole window, shadow included."""
        return self._seen[0].rectangle

    def has_preview(self):
        return any(thing.role == "graphic" for thing in self._seen)

    def press(self, name):
        for thing in self._seen:
            if thing.role == "push button" and thing.name == name:
                thing.node.press()
                return
        raise AssertionError(f"no button {name!r} in {self}")

    def __repr__(self):
        return f"Question({[(thing.role, thing.name) for thing in self._seen]})"


class Deskbroom:
    """One run of the program, in the given home. Stop it before the desktop ends.

    It is there once it watches, which the n-th listing of a folder tells. Without `listed`, a pair of both, it
    is the second of the Desktop: the first is the check whether it can be read.
    """

    def __init__(self, desktop, executable, home, environment=None, listed=None):
        self.desktop = desktop
        self.home = home
        self._status = None
        self.accessibility = Accessibility(desktop.session_bus, desktop.scale)
        folder, times = listed or (home.desktop, 2)
        listings = FolderListings(folder)
        fonts = {"FONTCONFIG_FILE": str(desktop.fonts_of(executable))}
        self.child = desktop.start(
            [Path(executable).resolve()], {**home.environment(), **fonts, **(environment or {})}
        )
        # What is there when the program starts is nothing new to it: tests make their files afterwards.
        wait_until(
            lambda: listings.count() >= times or not self.child.is_running(),
            f"the program lists {folder}; it printed {self.child.lines}",
        )
        listings.close()

    @property
    def pid(self):
        return self.child.pid

    def stop(self):
        """Ends it, unless it was stopped before, and returns its exit status."""
        if self._status is not None:
            return self._status
        self.accessibility.close()
        if self.child.is_running():
            self.child.send_signal(15)
        try:
            self._status = self.child.wait_for_exit(30)
        finally:
            self.child.stop()
        # So that the next run doesn't take this one's place in the panel for its own.
        wait_until(lambda: icon_place(self.desktop, _WINDOW_CLASS) is None, "the panel's place is empty")
        return self._status

    # The panel's item

    def icon(self):
        return icon_rectangle(self.desktop, self.pid, _WINDOW_CLASS)

    def wait_for_icon(self):
        # A panel that has just started moves its items until all of them have their size.
        return wait_until_still(self.icon, "the panel shows the item at its place")

    def wait_for_registration(self):
        return wait_until(lambda: registered_item(self.desktop, self.pid), "the item is registered")

    def click_icon(self, button="left"):
        pointer.click(self.desktop, pointer.centre(self.wait_for_icon()), button)

    # Menus

    def menu(self):
        """The items of the menu that is open, name to node, or None."""
        menu = self.accessibility.open_menu()
        try:
            return {item.name: item for item in menu.children()} if menu else None
        except GLib.Error:
            return None

    def wait_for_menu(self, item):
        """The open menu's items, once it is one that has the item."""

        def opened():
            menu = self.menu()
            return menu if menu and item in menu else None

        return wait_until(opened, f"a menu with {item!r} is open")

    def wait_for_no_menu(self):
        wait_until(lambda: self.accessibility.open_menu() is None, "the menu is gone")

    def click_menu_item(self, name):
        pointer.click(self.desktop, pointer.centre(self.wait_for_menu(name)[name].rectangle()))

    # The question

    def question(self):
        """The question on screen, or None."""
        try:
            seen = self.accessibility.showing(self.pid)
        except GLib.Error:
            return None
        return Question(seen) if any(thing.name == Question.TITLE for thing in seen) else None

    def wait_for_question(self, button=None):
        """The question, once it is on screen (with that button, if one is named)."""

        def asked():
            question = self.question()
            return question if question and (button is None or button in question.buttons) else None

        return wait_until(asked, f"the question is on screen; the program printed {self.child.lines}")

    def answer(self, button):
        """Presses the button of the question, once it is on screen, and returns when that question is gone."""
        question = self.wait_for_question(button)
        question.press(button)

        def is_gone():
            now = self.question()
            return now is None or now.identity != question.identity

        wait_until(is_gone, "the question is gone")

    def wait_for_no_question(self):
        wait_until(lambda: self.question() is None, "the question is gone")

    @property
    def lines(self):
        """What it has printed, but for the lines about access to the watched folder that each run has."""
        return [line for line in self.child.lines if not line.startswith(_ABOUT_ACCESS)]

    def lines_starting_with(self, beginning):
        return [line for line in self.child.lines if line.startswith(beginning)]


def executable():
    """The program under test: the environment's, else the sanitized build's."""
    root = Path(__file__).resolve().parents[2]
    return Path(os.environ.get("DESKBROOM", root / "build/dev/deskbroom"))
