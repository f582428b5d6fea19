"""The screens in the looks that a desktop can ask for. What is asserted is little; the pictures are to be looked at."""

import panels
import pointer
from desktop_test_case import DesktopTestCase, run
from folder_picker import FolderPicker
from notifications import click_dunst, dunst_rectangle
from waiting import wait_until


class Looks:
    def test_question_and_menus(self):
        program = self.start(delay=60)
        program.click_icon()
        program.wait_for_menu("Gallery")
        self.save_picture("menu")
        program.click_menu_item("Deletion Timeframe")
        program.wait_for_menu("60 minutes")
        self.save_picture("timeframe-menu")
        program.click_menu_item("60 minutes")
        program.wait_for_no_menu()
        self.take_screenshot()
        program.wait_for_question("Delete in 60 min")
        wait_until(lambda: program.question().has_preview(), "the preview is loaded")
        self.save_picture("question")
        self.assertOnScreen(program.question().buttons)
        program.answer("Keep")
        self.take_screenshot("Screenshot 2.png", b"no image")
        program.wait_for_question()
        self.save_picture("question-loading")

    def test_folder_access(self):
        self.home.switch_off_desktop()
        folder = self.home.path / "My screenshots"
        folder.mkdir()
        program = self.start(listed=(self.home.downloads, 1))
        self.save_notification("access-failed")
        click_dunst(self.desktop)
        picker = FolderPicker(program)
        self.save_picture("folder-picker")
        self.assertOnScreen(picker.buttons)
        self.assertEqual(self.is_dark(picker.rectangle), self.desktop.look == "dark")
        pointer.type_text(self.desktop, str(folder))
        self.save_picture("folder-picker-typing")
        picker.close_with("Return")
        self.save_notification("access-granted")
        click_dunst(self.desktop)

    def test_access_required(self):
        self.home.desktop.rmdir()
        self.start(listed=(self.home.downloads, 1))
        self.save_notification("access-required")
        click_dunst(self.desktop)

    def save_notification(self, name):
        wait_until(lambda: dunst_rectangle(self.desktop), f"{name} is on screen")
        self.save_picture(f"notification-{name}")

    def is_dark(self, rectangle):
        x, y, width, height = rectangle
        area = f"{width}x{height}+{x}+{y}"
        mean = self.desktop.run(
            ["import", "-silent", "-window", "root", "-crop", area, "-format", "%[fx:mean]", "info:"]
        )
        return float(mean) < 0.5

    def assertOnScreen(self, rectangles):
        screen_width, screen_height = self.desktop.size
        for name, (x, y, width, height) in rectangles.items():
            self.assertTrue(0 <= x and x + width <= screen_width and 0 <= y and y + height <= screen_height, name)

    def save_picture(self, name):
        super().save_picture(f"{self.picture_prefix}-{name}")


class DarkLook(Looks, DesktopTestCase):
    desktop_options = {"look": "dark"}
    picture_prefix = "dark"


class DarkScaleTwo(Looks, DesktopTestCase):
    desktop_options = {"look": "dark", "scale": 2, "size": (2560, 1600)}
    picture_prefix = "dark-scale-2"


class ScaleTwo(Looks, DesktopTestCase):
    desktop_options = {"scale": 2, "size": (2560, 1600)}
    picture_prefix = "scale-2"


class WithoutCompositor(Looks, DesktopTestCase):
    desktop_options = {"panel": panels.TINT2, "window_manager": "openbox", "compositor": False}
    picture_prefix = "opaque"


if __name__ == "__main__":
    run()
