"""The first-run pages in the looks that a desktop can ask for, and what moves on them. What is asserted is little;
the pictures are to be looked at.
"""

import os
from pathlib import Path

import pointer
from desktop_test_case import DesktopTestCase, run
from onboarding import (
    ACCESS_GRANTED, CONTINUE, ENABLE_NOTIFICATIONS, GET_STARTED, LATER, NOT_NOW, NOTIFICATIONS_ON, OPEN_SETTINGS, TITLE,
    Onboarding,
)
from waiting import wait_until
from window_recorder import WindowRecorder
from windows import all_windows

# Where a page is without its buttons, of the window's height.
_PAGE_ROWS = (0.15, 0.8)
_KEPT_FRAMES = 6


class OnboardingLooks:
    def open(self, **options):
        onboarding = Onboarding(self.start_first_run(**options)).wait_until_open()
        onboarding.wait_for_page(1)
        pointer.move(self.desktop, (0, 0))
        return onboarding

    def test_the_pages(self):
        onboarding = self.open()
        onboarding.wait_for_text("Thanks for downloading.")
        self.save_picture("1-welcome")
        onboarding.click(GET_STARTED)
        onboarding.wait_for_page(2)
        pointer.move(self.desktop, (0, 0))
        self.save_picture("2-notifications")
        onboarding.click(ENABLE_NOTIFICATIONS)
        onboarding.wait_for_button(NOTIFICATIONS_ON)
        self.assertFalse(onboarding.is_enabled(NOTIFICATIONS_ON))
        pointer.move(self.desktop, (0, 0))
        self.save_picture("2-notifications-authorized")
        onboarding.click(CONTINUE)
        onboarding.wait_for_page(3)
        onboarding.wait_for_button(ACCESS_GRANTED)
        pointer.move(self.desktop, (0, 0))
        self.save_picture("3-folder-granted")
        onboarding.click(CONTINUE)
        onboarding.wait_for_page(4)
        pointer.move(self.desktop, (0, 0))
        self.save_picture("4-done")
        pointer.press_keys(self.desktop, "Tab")
        self.save_picture("4-done-focus")

    def test_without_access(self):
        self.home.desktop.chmod(0)
        # Nothing can be listed, so the Pictures, where the program looks last, aren't either.
        onboarding = self.open(listed=(self.home.path, 0))
        onboarding.click(GET_STARTED)
        onboarding.wait_for_page(2)
        onboarding.click(NOT_NOW)
        onboarding.wait_for_page(3)
        onboarding.wait_for_button(LATER)
        pointer.move(self.desktop, (0, 0))
        self.save_picture("3-folder")

    def test_without_a_notification_server(self):
        self.desktop.stop_notification_server()
        self.addCleanup(self.desktop.start_notification_server)
        onboarding = self.open()
        onboarding.click(GET_STARTED)
        onboarding.wait_for_page(2)
        onboarding.click(ENABLE_NOTIFICATIONS)
        onboarding.wait_for_button(OPEN_SETTINGS)
        pointer.move(self.desktop, (0, 0))
        self.save_picture("2-notifications-denied")

    def test_where_the_tool_saves_nothing_by_itself(self):
        onboarding = self.open(listed=(self.home.pictures, 1), environment={"XDG_CURRENT_DESKTOP": "MATE"})
        onboarding.go_to_last_page()
        onboarding.wait_for_text(
            "When MATE asks where to save a screenshot, press Save, and Deskbroom sees it at once."
        )
        pointer.move(self.desktop, (0, 0))
        self.save_picture("4-done-advice")

    def test_the_pages_slide(self):
        onboarding = self.open()
        self.keep_between("transition", *self.record(lambda: onboarding.click(GET_STARTED), onboarding, "2 OF 4"))

    def test_the_icon_springs(self):
        onboarding = self.open()
        onboarding.click(GET_STARTED)
        onboarding.wait_for_page(2)
        self.keep_between("spring", *self.record(lambda: onboarding.click("Back"), onboarding, "1 OF 4"))

    def record(self, act, onboarding, caption):
        """Pictures of the window from before `act` until the page with the caption stands still, each different
        from the one before between the header and the buttons, which only the page's motion changes.
        """
        window = next(window for window in all_windows(self.desktop) if window.title == TITLE and window.instance)
        recorder = WindowRecorder(self.desktop, window, _PAGE_ROWS)
        wait_until(recorder.has_begun, "the recording has begun")
        act()
        onboarding.wait_for_text(caption)
        wait_until(recorder.is_still, "the page stands still")
        return recorder, recorder.stop()

    def keep_between(self, name, recorder, frames):
        self.assertGreater(len(frames), 3, "pictures between the first and the last were seen")
        folder = os.environ.get("DESKBROOM_PICTURES")
        between = frames[1:-1]
        for number, frame in enumerate(between[:: max(1, len(between) // _KEPT_FRAMES)] if folder else (), 1):
            recorder.save(
                frame, Path(folder) / f"{self.desktop.panel}-onboarding-{self.picture_prefix}-{name}-{number}.png"
            )

    def save_picture(self, name):
        super().save_picture(f"onboarding-{self.picture_prefix}-{name}")


class OnboardingInLight(OnboardingLooks, DesktopTestCase):
    desktop_options = {"size": (1280, 1024), "activatable_notifications": False}
    picture_prefix = "light"


class OnboardingInDark(OnboardingLooks, DesktopTestCase):
    desktop_options = {"look": "dark", "size": (1280, 1024), "activatable_notifications": False}
    picture_prefix = "dark"


class OnboardingInLightAtScaleTwo(OnboardingLooks, DesktopTestCase):
    desktop_options = {"scale": 2, "size": (2560, 2048), "activatable_notifications": False}
    picture_prefix = "light-scale-2"


class OnboardingInDarkAtScaleTwo(OnboardingLooks, DesktopTestCase):
    desktop_options = {"look": "dark", "scale": 2, "size": (2560, 2048), "activatable_notifications": False}
    picture_prefix = "dark-scale-2"


if __name__ == "__main__":
    run()
