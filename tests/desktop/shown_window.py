"""A window of the program as an assistive technology reads it and a pointer reaches it."""

from gi.repository import GLib

import pointer
from waiting import wait_until, wait_until_still


class ShownWindow:
    """A window of the program, known by its title, or by the label in it that tells a popover."""

    def __init__(self, program, role, name):
        self._program = program
        self._desktop = program.desktop
        self._role = role
        self._name = name

    def _root(self):
        """The top-level window, or None while it isn't on screen."""
        application = self._program.accessibility.application(self._program.pid)
        if application is None:
            return None
        try:
            for window in application.children():
                if not window.has_state("showing"):
                    continue
                if self._role == "frame" and window.name == self._name:
                    return window
                if self._role == "label" and any(node.name == self._name for node in window.descendants()):
                    return window
        except GLib.Error:
            pass
        return None

    def is_open(self):
        return self._root() is not None

    def wait_until_open(self):
        wait_until(self.is_open, f"{self._name} is on screen; the program printed {self._program.child.lines}")
        return self

    def wait_until_closed(self):
        wait_until(lambda: not self.is_open(), f"{self._name} is gone")

    def close_with(self, key):
        """Released when the window has gone: the toolkit's bridge to assistive technologies (6.4) leaks the release
        of a key whose window goes meanwhile.
        """
        with pointer.holding(self._desktop, key):
            self.wait_until_closed()

    def things(self, role, state="showing"):
        """All of that role that are on screen, as nodes."""
        root = self._root()
        found = []
        for node in root.descendants() if root else ():
            try:
                if node.role == role and node.has_state(state):
                    found.append(node)
            except GLib.Error:
                continue
        return found

    def named(self, role):
        """All of that role that are on screen, as pairs of name and node. What vanishes meanwhile is left out."""
        found = []
        for node in self.things(role):
            try:
                found.append((node.name, node))
            except GLib.Error:
                continue
        return found

    @property
    def texts(self):
        return [name for name, _node in self.named("label")]

    @property
    def buttons(self):
        """Their names, and the nodes that have them."""
        return dict(self.named("push button"))

    @property
    def rectangle(self):
        return self._root().rectangle()

    def wait_for_text(self, text):
        wait_until(lambda: text in self.texts, f"{text!r} is shown, not only {self.texts}")

    def wait_for_button(self, name):
        return wait_until(lambda: self.buttons.get(name), f"the button {name!r} is there, not only {list(self.buttons)}")

    def press(self, name):
        self.wait_for_button(name).press()

    def click_button(self, name):
        button = self.wait_for_button(name)
        pointer.click(self._desktop, pointer.centre(wait_until_still(button.rectangle, f"{name!r} stands still")))
