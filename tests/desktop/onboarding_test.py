"""The first run in use: from the first page to the first question, and what doesn't count as finishing it."""

import panels
import pointer
from desktop_test_case import DesktopTestCase, OnXfce4Panel, run
from folder_access_test_case import ACCESS_GRANTED as ACCESS_GRANTED_NOTIFICATION
from folder_access_test_case import FolderAccessTestCase
from folder_picker import FolderPicker
from onboarding import (
    ACCESS_GRANTED, CONTINUE, ENABLE_NOTIFICATIONS, GET_STARTED, GRANT_FOLDER_ACCESS, LATER, NOT_NOW, NOTIFICATIONS_ON,
    OPEN_SETTINGS, START_USING, TITLE, Onboarding,
)
from settings import open_settings
from waiting import holds_for, wait_until
from windows import all_windows

BACK = "Back"


class FirstRun(OnXfce4Panel, DesktopTestCase):
    def open(self, **options):
        program = self.start_first_run(**options)
        onboarding = Onboarding(program).wait_until_open()
        onboarding.wait_for_page(1)
        return program, onboarding

    def assertAsksAndDeletes(self, program, name="Screenshot after all.png"):
        self.take_screenshot(name)
        program.answer("Delete Now")
        program.child.wait_for_line(f"Screenshot moved to Trash: {name}")

    def test_with_the_mouse_to_the_first_question(self):
        program, onboarding = self.open()
        onboarding.click(GET_STARTED)
        onboarding.wait_for_page(2)
        onboarding.click(ENABLE_NOTIFICATIONS)
        onboarding.wait_for_button(NOTIFICATIONS_ON)
        onboarding.click(CONTINUE)
        onboarding.wait_for_page(3)
        # The Desktop could be read at launch, which is all that there is to grant.
        onboarding.wait_for_button(ACCESS_GRANTED)
        onboarding.click(CONTINUE)
        onboarding.wait_for_page(4)
        self.assertFalse(self.home.has_completed_first_run())
        onboarding.finish()
        self.assertTrue(self.home.has_completed_first_run())
        self.assertAsksAndDeletes(program)

    def test_with_the_keyboard_alone(self):
        program, onboarding = self.open()
        # Return presses the large button while nothing else has the keyboard.
        pointer.press_keys(self.desktop, "Return")
        onboarding.wait_for_page(2)
        pointer.press_keys(self.desktop, "Tab", "Tab", "Tab")
        wait_until(lambda: onboarding.focused() == NOT_NOW, f"{NOT_NOW!r} has the keyboard, not {onboarding.focused()}")
        pointer.press_keys(self.desktop, "space")
        onboarding.wait_for_page(3)
        onboarding.wait_for_button(ACCESS_GRANTED)
        self.tab_to(onboarding, CONTINUE)
        pointer.press_keys(self.desktop, "Return")
        onboarding.wait_for_page(4)
        self.tab_to(onboarding, BACK)
        pointer.press_keys(self.desktop, "space")
        onboarding.wait_for_page(3)
        onboarding.wait_for_button(ACCESS_GRANTED)
        self.tab_to(onboarding, CONTINUE)
        pointer.press_keys(self.desktop, "space")
        onboarding.wait_for_page(4)
        self.tab_to(onboarding, START_USING)
        onboarding.close_with("Return")
        wait_until(self.home.has_completed_first_run, "the first run is finished")
        program.wait_for_icon()

    def tab_to(self, onboarding, name):
        for _ in range(6):
            if onboarding.focused() == name:
                return
            before = onboarding.focused()
            pointer.press_keys(self.desktop, "Tab")
            wait_until(lambda before=before: onboarding.focused() != before, "the keyboard moves on")
        self.fail(f"{name!r} isn't reached")

    def test_a_second_start_shows_none_of_it(self):
        program, onboarding = self.open()
        onboarding.go_through()
        self.assertEqual(program.stop(), 0)
        program = self.start()
        self.assertAsksAndDeletes(program)
        self.assertFalse(Onboarding(program).is_open())

    def test_the_window_has_nothing_to_close_it_with(self):
        _program, onboarding = self.open()
        window = next(window for window in all_windows(self.desktop) if window.title == TITLE and window.instance)
        self.assertEqual(window.rectangle[2:], (560, 680))
        # What Motif's hints offer to do with it.
        hints = self.desktop.run(["xprop", "-id", window.id, "_MOTIF_WM_HINTS"])
        functions = int(hints.split("=")[1].split(",")[1], 16)
        all_of_them, minimize, maximize, close = 0x01, 0x08, 0x10, 0x20
        self.assertEqual(functions & (all_of_them | minimize | maximize | close), 0)
        pointer.press_keys(self.desktop, "Escape")
        pointer.press_keys(self.desktop, "ctrl+w")
        onboarding.click(GET_STARTED)
        onboarding.wait_for_page(2)

    def test_closed_all_the_same_it_is_not_finished(self):
        program, onboarding = self.open()
        onboarding.click(GET_STARTED)
        onboarding.wait_for_page(2)
        window = next(window for window in all_windows(self.desktop) if window.title == TITLE and window.instance)
        self.desktop.run(["xdotool", "windowactivate", "--sync", window.id, "key", "alt+F4"])
        onboarding.wait_until_closed()
        self.assertFalse(self.home.has_completed_first_run())
        # The program is there, and its panel's item too.
        program.wait_for_icon()
        self.assertEqual(program.stop(), 0)
        _program, onboarding = self.open_again()
        onboarding.wait_for_page(1)

    def open_again(self):
        program = self.start(listed=(self.home.desktop, 1))
        return program, Onboarding(program).wait_until_open()

    def test_a_session_that_ends_midway_leaves_it_unfinished(self):
        program, onboarding = self.open()
        onboarding.click(GET_STARTED)
        onboarding.wait_for_page(2)
        self.assertEqual(program.stop(), 0)
        self.assertFalse(self.home.has_completed_first_run())
        self.open_again()[1].wait_for_page(1)

    def test_a_screenshot_taken_meanwhile_is_never_asked_about(self):
        program, onboarding = self.open()
        self.take_screenshot("Screenshot meanwhile.png")
        onboarding.go_through()
        # Longer than the program takes from one look into the folder to the next.
        holds_for(lambda: program.question() is None, "nothing is asked", seconds=3)
        self.assertAsksAndDeletes(program)
        self.assertEqual(self.home.trashed(), ["Screenshot after all.png"])
        self.assertTrue((self.home.desktop / "Screenshot meanwhile.png").exists())

    def test_back_and_forth_fast_ends_on_the_right_page(self):
        _program, onboarding = self.open()
        onboarding.click(GET_STARTED)
        for _ in range(5):
            # Pressed by name, which waits for no motion.
            onboarding.press(BACK)
            onboarding.press(GET_STARTED)
        onboarding.wait_for_page(2)
        self.assertEqual(
            set(onboarding.buttons), {BACK, ENABLE_NOTIFICATIONS, NOT_NOW}, "there is one page, and its buttons"
        )


class FirstRunOnASmallScreen(DesktopTestCase):
    desktop_options = {"size": (1024, 600)}

    def test_every_page_shows_its_buttons(self):
        program = self.start_first_run()
        onboarding = Onboarding(program).wait_until_open()
        for number, way_on in enumerate((GET_STARTED, NOT_NOW, CONTINUE, START_USING), 1):
            onboarding.wait_for_page(number)
            onboarding.wait_for_button(way_on)
            self.save_picture(f"onboarding-small-{number}")
            for name, button in onboarding.buttons.items():
                x, y, width, height = button.rectangle()
                self.assertTrue(0 <= x and x + width <= 1024 and 0 <= y and y + height <= 600, name)
            onboarding.click(way_on)
        onboarding.wait_until_closed()


class FolderInTheFirstRun(FolderAccessTestCase):
    desktop_options = {"panel": panels.XFCE4_PANEL, "window_manager": "xfwm4", "notification_server": "recorder"}

    def open_folder_page(self):
        self.home.forget_first_run()
        self.home.switch_off_desktop()
        program = self.start(listed=(self.home.path, 0))
        onboarding = Onboarding(program).wait_until_open()
        onboarding.wait_for_page(1)
        onboarding.click(GET_STARTED)
        onboarding.wait_for_page(2)
        onboarding.click(NOT_NOW)
        onboarding.wait_for_page(3)
        onboarding.wait_for_button(GRANT_FOLDER_ACCESS)
        return program, onboarding

    def test_a_folder_that_is_picked_is_watched_from_then_on(self):
        folder = self.home.path / "Shots"
        folder.mkdir()
        program, onboarding = self.open_folder_page()
        onboarding.click(GRANT_FOLDER_ACCESS)
        self.pick(program, FolderPicker(program), folder)
        onboarding.wait_for_button(ACCESS_GRANTED)
        self.assertFalse(onboarding.is_enabled(ACCESS_GRANTED))
        # While the pages are still open.
        self.assertAsksIn(program, folder)
        onboarding.click(CONTINUE)
        onboarding.wait_for_page(4)
        onboarding.click(START_USING)
        onboarding.wait_until_closed()
        self.assertAsksIn(program, folder)

    def test_a_picker_that_is_cancelled_ten_times_changes_nothing(self):
        program, onboarding = self.open_folder_page()
        for _ in range(10):
            onboarding.click(GRANT_FOLDER_ACCESS)
            FolderPicker(program).close_with("Escape")
        onboarding.wait_for_button(LATER)
        self.assertTrue(onboarding.is_enabled(GRANT_FOLDER_ACCESS))
        self.assertNotIn(ACCESS_GRANTED_NOTIFICATION, self.notifications.titles())
        onboarding.click(LATER)
        onboarding.wait_for_page(4)

    def test_a_folder_that_is_granted_in_the_settings_meanwhile_shows(self):
        folder = self.home.path / "Shots"
        folder.mkdir()
        program, onboarding = self.open_folder_page()
        settings = open_settings(program)
        settings.click_button("Grant Access")
        self.pick(program, FolderPicker(program), folder)
        onboarding.wait_for_button(ACCESS_GRANTED)
        onboarding.wait_for_button(CONTINUE)


class NotificationsPage(FolderAccessTestCase):
    """With notification servers that come and go."""

    desktop_options = {
        "panel": panels.XFCE4_PANEL,
        "window_manager": "xfwm4",
        "notification_server": "recorder",
        "activatable_notifications": False,
    }

    def open_page(self):
        self.home.forget_first_run()
        program = self.start(listed=(self.home.desktop, 1))
        onboarding = Onboarding(program).wait_until_open()
        onboarding.wait_for_page(1)
        onboarding.click(GET_STARTED)
        onboarding.wait_for_page(2)
        return program, onboarding

    def test_without_a_server_the_settings_are_offered_and_the_user_can_go_on(self):
        self.desktop.stop_notification_server()
        self.addCleanup(self.start_server_again)
        _program, onboarding = self.open_page()
        onboarding.click(ENABLE_NOTIFICATIONS)
        onboarding.wait_for_button(OPEN_SETTINGS)
        onboarding.click(CONTINUE)
        onboarding.wait_for_page(3)

    def test_a_server_that_comes_while_the_page_is_shown_is_seen(self):
        self.desktop.stop_notification_server()
        _program, onboarding = self.open_page()
        onboarding.click(ENABLE_NOTIFICATIONS)
        onboarding.wait_for_button(OPEN_SETTINGS)
        self.desktop.start_notification_server()
        onboarding.wait_for_button(NOTIFICATIONS_ON)
        self.assertFalse(onboarding.is_enabled(NOTIFICATIONS_ON))

    def test_the_state_is_asked_for_anew_each_time_that_the_page_is_shown(self):
        _program, onboarding = self.open_page()
        onboarding.click(ENABLE_NOTIFICATIONS)
        onboarding.wait_for_button(NOTIFICATIONS_ON)
        onboarding.click(BACK)
        onboarding.wait_for_page(1)
        onboarding.click(GET_STARTED)
        onboarding.wait_for_page(2)
        onboarding.wait_for_button(NOTIFICATIONS_ON)
        onboarding.wait_for_button(CONTINUE)

    def start_server_again(self):
        self.desktop.start_notification_server()


if __name__ == "__main__":
    run()
