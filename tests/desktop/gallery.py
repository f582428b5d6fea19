"""The gallery as its user meets it: in the popover under the status item, and in its window."""

from gi.repository import GLib

import pointer
from waiting import wait_until, wait_until_still

POPOVER_TITLE = "Recent Screenshots"
WINDOW_TITLE = "Screenshot Gallery"


class Gallery:
    """One of the two, known by the accessible name of what tells it: see `popover` and `window`."""

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

    @property
    def texts(self):
        return [node.name for node in self.things("label")]

    @property
    def buttons(self):
        """Their names, and the nodes that have them."""
        return {node.name: node for node in self.things("push button")}

    @property
    def rectangle(self):
        return self._root().rectangle()

    def cells(self):
        """The cells on screen, in their order."""
        return self.things("list item")

    def all_cells(self):
        """Those that are out of sight too."""
        lists = self.things("list")
        return lists[0].children() if lists else []

    def cell(self, number):
        """The cell with that number, counted from 1."""
        return wait_until(lambda: (cells := self.all_cells()) and cells[number - 1], f"there is cell {number}")

    def selected(self):
        """The numbers of the selected cells, counted from 1."""
        return [number for number, cell in enumerate(self.all_cells(), 1) if cell.has_state("selected")]

    def focused(self):
        """The number of the cell that has the keyboard, or None."""
        return next((number for number, cell in enumerate(self.all_cells(), 1) if cell.has_state("focused")), None)

    def wait_for_text(self, text):
        wait_until(lambda: text in self.texts, f"{text!r} is shown, not only {self.texts}")

    def wait_for_button(self, name):
        return wait_until(lambda: self.buttons.get(name), f"the button {name!r} is there, not only {list(self.buttons)}")

    def press(self, name):
        self.wait_for_button(name).press()

    def click_button(self, name):
        button = self.wait_for_button(name)
        pointer.click(self._desktop, pointer.centre(wait_until_still(button.rectangle, f"{name!r} stands still")))

    def click_option(self, name):
        """One of a picker's."""
        option = wait_until(
            lambda: next((node for node in self.things("radio button") if node.name == name), None), f"{name} is offered"
        )
        pointer.click(self._desktop, pointer.centre(option.rectangle()))
        wait_until(lambda: option.has_state("checked"), f"{name} is chosen")

    def click_cell(self, number, button="left"):
        # The list may still be coming in.
        cell = self.cell(number)
        pointer.click(self._desktop, pointer.centre(wait_until_still(cell.rectangle, "the cell stands still")), button)

    def point_at_cell(self, number):
        pointer.move(self._desktop, pointer.centre(self.cell(number).rectangle()))

    def sheet(self):
        """The sheet that stands on it, or None."""
        return next(iter(self.things("dialog") + self.things("alert")), None)

    def wait_for_sheet(self, title):
        return wait_until(
            lambda: (sheet := self.sheet()) and sheet.name == title and sheet, f"the sheet {title!r} is there"
        )

    def wait_for_no_sheet(self):
        wait_until(lambda: self.sheet() is None, "the sheet is gone")

    def dismiss_copied(self):
        """Returns the message."""
        message = self.wait_for_sheet("Screenshot Copied").description
        self.press("OK")
        self.wait_for_no_sheet()
        return message


def popover(program):
    """The gallery under the status item."""
    return Gallery(program, "label", POPOVER_TITLE)


def window(program):
    return Gallery(program, "frame", WINDOW_TITLE)


def open_popover(program):
    program.click_icon()
    program.click_menu_item("Gallery")
    return popover(program).wait_until_open()


def open_window(program):
    recent = open_popover(program)
    recent.click_button("Expand")
    opened = window(program).wait_until_open()
    recent.wait_until_closed()
    return opened
