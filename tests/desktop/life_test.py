"""How the program starts and ends, and what it lives through."""

import os
import signal

import panels
import pointer
from deskbroom import executable
from desktop_test_case import DesktopTestCase, OnXfce4Panel, run
from waiting import wait_until
from windows import all_windows

NAME = "Screenshot_2024-05-01_10-11-12.png"


class Life(OnXfce4Panel, DesktopTestCase):
    def assertEndsCleanly(self, program):
        program.child.send_signal(signal.SIGTERM)
        self.assertEqual(program.child.wait_for_exit(), 0, program.child.errors)

    def test_sigterm_at_rest(self):
        program = self.start()
        program.wait_for_icon()
        self.assertEndsCleanly(program)

    def test_sigterm_as_soon_as_it_watches(self):
        self.assertEndsCleanly(self.start())

    def test_sigterm_with_the_question_on_screen(self):
        program = self.start()
        path = self.take_screenshot()
        program.wait_for_question()
        self.assertEndsCleanly(program)
        self.assertTrue(path.exists())

    def test_sigterm_with_a_menu_open(self):
        program = self.start()
        program.click_icon()
        program.wait_for_menu("Gallery")
        self.assertEndsCleanly(program)

    def test_sigterm_with_a_deletion_waiting_drops_it(self):
        program = self.start()
        path = self.take_screenshot()
        program.answer("Delete in 5 min")
        program.child.wait_for_line(f"Scheduled deletion of {NAME} in 5 minutes")
        self.assertEndsCleanly(program)
        self.assertTrue(path.exists())
        self.assertTrashed()

    def test_sigterm_right_after_delete_now_leaves_the_file_in_one_place(self):
        program = self.start()
        path = self.take_screenshot()
        program.wait_for_question().press("Delete Now")
        self.assertEndsCleanly(program)
        self.assertNotEqual(path.exists(), self.home.trashed() == [NAME])

    def test_a_second_start_opens_the_menu_of_the_first_and_ends_with_status_0(self):
        first = self.start()
        first.wait_for_icon()
        second = self.desktop.start([executable()], self.home.environment())
        self.assertEqual(second.wait_for_exit(), 0, second.errors)
        self.assertEqual(second.lines, [])
        first.wait_for_menu("Gallery")
        pointer.press_keys(self.desktop, "Escape")
        first.wait_for_no_menu()
        self.take_screenshot()
        first.answer("Delete Now")
        first.child.wait_for_line(f"Screenshot moved to Trash: {NAME}")

    def test_screenshots_taken_while_it_is_away_are_not_asked_about(self):
        self.take_screenshot("Screenshot earlier.png")
        program = self.start()
        self.take_screenshot()
        program.answer("Delete Now")
        program.child.wait_for_line(f"Screenshot moved to Trash: {NAME}")
        self.assertEqual(os.listdir(self.home.desktop), ["Screenshot earlier.png"])


class WithoutBus(DesktopTestCase):
    """The accessibility bus goes with the session bus, so this one looks at the X server alone. xfwm4 would go too."""

    desktop_options = {"panel": panels.NO_PANEL, "window_manager": "openbox"}

    def question_window(self):
        for window in all_windows(self.desktop):
            if window.window_class == "Deskbroom" and window.rectangle[2] > 250:
                return window.rectangle
        return None

    def test_it_goes_on_when_the_session_bus_goes_away(self):
        program = self.start()
        self.take_screenshot("Screenshot 1.png")
        question = program.wait_for_question()
        wait_until(lambda: program.question().has_preview(), "the preview is loaded")
        delete_now = pointer.centre(program.question().buttons["Delete Now"])
        with_preview = self.question_window()
        question.press("Keep")
        wait_until(lambda: self.question_window() is None, "the question is gone")
        self.desktop.stop_session_bus()
        self.assertTrue(program.child.is_running())
        self.take_screenshot(NAME)
        wait_until(lambda: self.question_window() == with_preview, "the question is on screen, with its preview")

        def answered():
            pointer.click(self.desktop, delete_now)
            return self.home.trashed() == [NAME]

        wait_until(answered, "the file is in the Trash")
        program.child.wait_for_line(f"Screenshot moved to Trash: {NAME}")


if __name__ == "__main__":
    run()
