"""The settings' pages in the looks that a desktop can ask for. What is asserted is little; the pictures are to be
looked at.
"""

import pointer
import sample_screenshots
from desktop_test_case import DesktopTestCase, run
from settings import DELAY, open_settings


class SettingsLooks:
    def test_the_pages(self):
        sample_screenshots.fill(self.home.desktop, 40)
        program = self.start(auto_copy=True)
        settings = open_settings(program)
        settings.wait_for_text("Granted")
        pointer.move(self.desktop, (0, 0))
        self.save_picture("general-granted")
        settings.click_section("Gallery")
        settings.wait_for_text("40 SCREENSHOTS")
        pointer.move(self.desktop, (0, 0))
        self.save_picture("gallery")
        settings.click_section("About")
        settings.wait_for_text("Deskbroom")
        pointer.move(self.desktop, (0, 0))
        self.save_picture("about")

    def test_without_access_and_with_the_keyboard(self):
        self.home.desktop.chmod(0)
        program = self.start(listed=(self.home.downloads, 1))
        settings = open_settings(program)
        settings.wait_for_button("Grant Access")
        pointer.move(self.desktop, (0, 0))
        self.save_picture("general-not-granted")
        pointer.press_keys(self.desktop, "Tab")
        self.save_picture("general-focus-sidebar")
        pointer.press_keys(self.desktop, "Tab", "Tab")
        self.assertEqual(settings.focused(), DELAY)
        self.save_picture("general-focus-picker")
        pointer.press_keys(self.desktop, "space")
        program.wait_for_menu("60 minutes")
        self.save_picture("picker-menu")
        pointer.press_keys(self.desktop, "Escape")
        program.wait_for_no_menu()
        pointer.press_keys(self.desktop, "Tab")
        self.save_picture("general-focus-switch")

    def save_picture(self, name):
        super().save_picture(f"settings-{self.picture_prefix}-{name}")


class SettingsInLight(SettingsLooks, DesktopTestCase):
    desktop_options = {}
    picture_prefix = "light"


class SettingsInDark(SettingsLooks, DesktopTestCase):
    desktop_options = {"look": "dark"}
    picture_prefix = "dark"


class SettingsInLightAtScaleTwo(SettingsLooks, DesktopTestCase):
    desktop_options = {"scale": 2, "size": (2560, 2048)}
    picture_prefix = "light-scale-2"


class SettingsInDarkAtScaleTwo(SettingsLooks, DesktopTestCase):
    desktop_options = {"look": "dark", "scale": 2, "size": (2560, 2048)}
    picture_prefix = "dark-scale-2"


if __name__ == "__main__":
    run()
