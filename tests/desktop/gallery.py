"""The gallery as its user meets it: in the popover under the status item, and in its window."""

import pointer
from shown_window import ShownWindow
from waiting import wait_until, wait_until_still

POPOVER_TITLE = "Recent Screenshots"
WINDOW_TITLE = "Screenshot Gallery"


class Gallery(ShownWindow):
    """One of the two: see `popover` and `window`."""

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

    def focused_control(self):
        """The name of what has the keyboard: a button's, an option's, "cell 1" and so on, or None."""
        number = self.focused()
        if number is not None:
            return f"cell {number}"
        controls = self.named("push button") + self.named("radio button")
        return next((name for name, node in controls if node.has_state("focused")), None)

    def wait_for_stops(self, key, *names):
        """The key takes the keyboard there, one after the other."""
        for name in names:
            pointer.press_keys(self._desktop, key)
            wait_until(lambda wanted=name: self.focused_control() == wanted, f"{key} takes the keyboard to {name}")

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
