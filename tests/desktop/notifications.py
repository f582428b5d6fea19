"""The user notifications of a desktop: what its recorder got, or what dunst shows."""

import json

import pointer
from bus import call
from notification_server import FOR_TESTS, NAME, PATH
from waiting import wait_until, wait_until_still
from windows import all_windows


class RecordedNotifications:
    """What the desktop's recorder has got since this was made. Each is a dictionary of Notify's arguments."""

    def __init__(self, desktop):
        self._desktop = desktop
        self._earlier = len(self._lines())
        self.behave("answer")

    def _lines(self):
        return self._desktop.notification_server.lines

    def all(self):
        return [json.loads(line) for line in self._lines()[self._earlier :]]

    def titles(self):
        return [notification["title"] for notification in self.all()]

    def wait_for(self, title, count=1):
        """The count-th notification of that title."""
        found = wait_until(
            lambda: ([n for n in self.all() if n["title"] == title][count - 1 :] or [None])[0],
            f"notification {count} of the title {title!r}; there are {self.all()}",
        )
        return found

    def click(self, notification):
        self._tell("Click", "(u)", notification["number"])

    def behave(self, how):
        """ "answer", "errors" or "silent"."""
        self._tell("Behave", "(s)", how)

    def _tell(self, method, signature, argument):
        call(self._desktop.session_bus, NAME, PATH, FOR_TESTS, method, signature, argument)


def dunst_rectangle(desktop):
    """Where dunst shows its notifications, or None while it shows none."""
    for window in all_windows(desktop):
        if window.title == "Dunst" and window.rectangle[3] > 20 and is_mapped(desktop, window):
            return window.rectangle
    return None


def is_mapped(desktop, window):
    return "IsViewable" in desktop.run(["xwininfo", "-id", window.id])


def click_dunst(desktop):
    """A real click on the notification that dunst shows."""
    rectangle = wait_until_still(lambda: dunst_rectangle(desktop), "dunst shows a notification")
    pointer.click(desktop, pointer.centre(rectangle))


def dunst_texts(desktop):
    """The bodies of all notifications that dunst has closed, the newest first."""
    groups = json.loads(desktop.run(["dunstctl", "history"]))["data"]
    return [notification["body"]["data"] for group in groups for notification in group]
