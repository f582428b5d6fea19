"""Panels that come late, go and come back, stand at the bottom, or aren't there at all."""

import panels
from desktop_test_case import DesktopTestCase, OnTint2, OnXfce4Panel, run
from waiting import wait_until

NAME = "Screenshot_2024-05-01_10-11-12.png"


class ComingAndGoing:
    def assertHangsOnIcon(self, program):
        """The question is centred under the item as far as the screen allows."""
        x, y, width, _height = program.wait_for_icon()
        self.take_screenshot()
        window_x, window_y, window_width, _window_height = program.wait_for_question().rectangle
        self.assertTrue(window_x < x + width // 2 < window_x + window_width)
        self.assertLess(abs(window_y - (y + _height)), 20)

    def test_the_item_comes_back_when_the_panel_restarts(self):
        program = self.start()
        program.wait_for_icon()
        self.desktop.stop_panel()
        self.desktop.start_panel()
        program.wait_for_icon()
        program.click_icon()
        program.wait_for_menu("Gallery")

    def test_a_panel_that_starts_later_shows_the_item(self):
        self.desktop.stop_panel()
        program = self.start()
        self.desktop.start_panel()
        self.assertHangsOnIcon(program)

    def test_the_question_hangs_on_the_item(self):
        self.assertHangsOnIcon(self.start())

    def test_it_still_asks_while_the_panel_is_away(self):
        program = self.start()
        program.wait_for_icon()
        self.desktop.stop_panel()
        self.addCleanup(self.desktop.start_panel)
        self.take_screenshot()
        program.answer("Delete Now")
        program.child.wait_for_line(f"Screenshot moved to Trash: {NAME}")


class ComingAndGoingOnXfce4Panel(OnXfce4Panel, ComingAndGoing, DesktopTestCase):
    pass


class ComingAndGoingOnTint2(OnTint2, ComingAndGoing, DesktopTestCase):
    pass


class WithoutPanel(DesktopTestCase):
    desktop_options = {"panel": panels.NO_PANEL}

    def test_it_asks_in_the_top_right_corner(self):
        program = self.start()
        self.take_screenshot()
        x, y, width, _height = program.wait_for_question().rectangle
        screen_width = self.desktop.size[0]
        self.assertLess(abs(x + width - screen_width), 40)
        self.assertLess(abs(y), 40)
        self.save_picture("question")
        program.question().press("Delete Now")
        program.child.wait_for_line(f"Screenshot moved to Trash: {NAME}")


class WithBottomPanel(DesktopTestCase):
    desktop_options = {"panel": panels.XFCE4_PANEL, "panel_edge": "bottom"}

    def test_the_question_stands_above_the_panel(self):
        program = self.start()
        x, y, width, _height = program.wait_for_icon()
        self.take_screenshot()
        question = program.wait_for_question()
        wait_until(lambda: program.question().has_preview(), "the preview is loaded")
        keep_x, keep_y, _keep_width, keep_height = question.buttons["Keep"]
        self.assertLess(keep_y + keep_height, y)
        self.save_picture("bottom-question")


class OnTwoMonitors(DesktopTestCase):
    desktop_options = {
        "panel": panels.XFCE4_PANEL,
        "size": (1600, 600),
        "monitors": ((0, 0, 800, 600), (800, 0, 800, 600)),
    }

    def test_the_question_is_on_the_monitor_that_has_the_panel(self):
        program = self.start()
        icon = program.wait_for_icon()
        self.take_screenshot()
        buttons = program.wait_for_question().buttons
        for name, (x, _y, width, _height) in buttons.items():
            self.assertEqual(x // 800, icon[0] // 800, name)
            self.assertEqual((x + width) // 800, icon[0] // 800, name)
        self.save_picture("two-monitors-question")


if __name__ == "__main__":
    run()
