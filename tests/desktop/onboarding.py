"""The first-run pages as their user meets them."""

from gi.repository import GLib

import pointer
from folder_listings import FolderListings
from shown_window import ShownWindow
from waiting import wait_until, wait_until_still

TITLE = "Welcome to Deskbroom"
GET_STARTED = "Get Started"
ENABLE_NOTIFICATIONS = "Enable Notifications"
NOT_NOW = "Not now"
NOTIFICATIONS_ON = "Notifications On"
OPEN_SETTINGS = "Open System Settings"
GRANT_FOLDER_ACCESS = "Grant Folder Access"
ACCESS_GRANTED = "Access Granted"
LATER = "I'll do this later"
CONTINUE = "Continue"
START_USING = "Start Using Deskbroom"


class Onboarding(ShownWindow):
    def __init__(self, program):
        super().__init__(program, "frame", TITLE)

    def wait_for_page(self, number):
        """Until it stands still."""
        self.wait_for_text(f"{number} OF 4")
        wait_until_still(self._places, f"page {number} stands still")

    def _places(self):
        """Of the buttons; None while one of them is going."""
        try:
            return [(name, node.rectangle()) for name, node in self.named("push button")]
        except GLib.Error:
            return None

    def click(self, name):
        self.click_button(name)

    def is_enabled(self, name):
        return self.wait_for_button(name).has_state("enabled")

    def focused(self):
        """The name of the button that has the keyboard, or None."""
        return next((node.name for node in self.things("push button") if node.has_state("focused")), None)

    def go_to_last_page(self):
        """By the links that ask for nothing."""
        self.wait_for_page(1)
        self.click(GET_STARTED)
        self.wait_for_page(2)
        self.press(NOT_NOW if NOT_NOW in self.buttons else CONTINUE)
        self.wait_for_page(3)
        wait_until(lambda: {LATER, CONTINUE} & set(self.buttons), "there is a way on")
        self.press(LATER if LATER in self.buttons else CONTINUE)
        self.wait_for_page(4)

    def go_through(self):
        """From the first page until the program watches."""
        self.go_to_last_page()
        self.finish()

    def finish(self):
        """From the last page, until the program watches."""
        listings = FolderListings(self._program.home.desktop)
        self.click(START_USING)
        self.wait_until_closed()
        wait_until(lambda: listings.count() > 0, "the program watches the Desktop")
        listings.close()

    def centre_of(self, name):
        return pointer.centre(self.wait_for_button(name).rectangle())
