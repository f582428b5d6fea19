"""The settings window as its user meets it."""

import pointer
from shown_window import ShownWindow
from waiting import wait_until, wait_until_still

TITLE = "Deskbroom Settings"
DELAY = "Auto-delete after"
PREVIEW = "Disable floating screenshot preview"
AUTO_COPY = "Auto-copy to clipboard"


class Settings(ShownWindow):
    def __init__(self, program):
        super().__init__(program, "frame", TITLE)

    def sections(self):
        """The sidebar's rows, name to node."""
        return {node.name: node for node in self.things("list item")}

    def selected_section(self):
        return next((name for name, node in self.sections().items() if node.has_state("selected")), None)

    def click_section(self, name):
        row = wait_until(lambda: self.sections().get(name), f"the sidebar has {name}")
        pointer.click(self._desktop, pointer.centre(wait_until_still(row.rectangle, f"{name} stands still")))
        wait_until(lambda: self.selected_section() == name, f"{name} is selected")

    def click_blank(self):
        """Where a page has its padding."""
        x, y, width, height = self.rectangle
        pointer.click(self._desktop, (x + width - 8, y + height - 8))

    def switches(self):
        return {node.name: node for node in self.things("check box")}

    def is_on(self, name):
        return self.switches()[name].has_state("checked")

    def click_switch(self, name):
        pointer.click(self._desktop, pointer.centre(self.switches()[name].rectangle()))

    def wait_for_switch(self, name, is_on):
        wait_until(lambda: self.is_on(name) == is_on, f"{name!r} is {'on' if is_on else 'off'}")

    def delay(self):
        """What the picker shows."""
        return self._picker().description

    def _picker(self):
        return wait_until(
            lambda: next((node for node in self.things("button menu") if node.name == DELAY), None),
            "the picker is there",
        )

    def click_picker(self):
        pointer.click(self._desktop, pointer.centre(self._picker().rectangle()))

    def focused(self):
        """The name of what has the keyboard, or None."""
        for role in ("list item", "check box", "button menu", "push button", "radio button"):
            for node in self.things(role):
                if node.has_state("focused"):
                    return node.name
        return None


def open_settings(program):
    program.click_icon()
    program.click_menu_item("Settings")
    return Settings(program).wait_until_open()
