"""A deletion that waits its minute. It takes that minute, so it stands alone."""

import time

from desktop_test_case import DesktopTestCase, OnTint2, OnXfce4Panel, run

NAME = "Screenshot_2024-05-01_10-11-12.png"


class InAMinute:
    def test_delete_later_with_a_delay_of_1_minute_deletes_a_minute_after_the_answer(self):
        program = self.start(delay=1)
        self.take_screenshot(NAME)
        program.answer("Delete in 1 min")
        answered = time.monotonic()
        program.child.wait_for_line(f"Scheduled deletion of {NAME} in 1 minute")
        program.wait_for_no_question()
        self.assertTrue((self.home.desktop / NAME).exists())
        program.child.wait_for_line(f"Screenshot moved to Trash: {NAME}", seconds=90)
        self.assertGreaterEqual(time.monotonic() - answered, 59)
        self.assertTrashed(NAME)


class InAMinuteOnXfce4Panel(OnXfce4Panel, InAMinute, DesktopTestCase):
    pass


class InAMinuteOnTint2(OnTint2, InAMinute, DesktopTestCase):
    pass


if __name__ == "__main__":
    run()
