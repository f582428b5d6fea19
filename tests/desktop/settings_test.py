"""The settings window in use: what is changed there takes effect at once, and is kept."""

import panels
import pointer
import sample_screenshots
from desktop_test_case import DesktopTestCase, OnXfce4Panel, run
from folder_access_test_case import ACCESS_GRANTED, FolderAccessTestCase
from folder_picker import FolderPicker
from images import png
from other_window import OtherWindow
from settings import AUTO_COPY, DELAY, PREVIEW, TITLE, open_settings
from waiting import wait_until
from windows import all_windows

PLASMA = {"XDG_CURRENT_DESKTOP": "KDE"}


class SettingsWindow(OnXfce4Panel, DesktopTestCase):
    def windows(self):
        return [window for window in all_windows(self.desktop) if window.title == TITLE and window.instance]

    def test_asked_for_twice_it_is_one_window(self):
        program = self.start()
        settings = open_settings(program)
        settings.click_section("About")
        open_settings(program)
        self.assertEqual(settings.selected_section(), "About")
        self.assertEqual(len(self.windows()), 1)

    def test_opened_again_it_begins_with_the_general_page(self):
        program = self.start()
        settings = open_settings(program)
        settings.click_section("Gallery")
        for key in ("Escape", "ctrl+w"):
            settings.close_with(key)
            settings = open_settings(program)
            self.assertEqual(settings.selected_section(), "General")
            settings.click_section("About")

    def test_it_has_its_size_and_keeps_it(self):
        settings = open_settings(self.start())
        self.assertEqual(settings.rectangle[2:], (640, 480))
        hints = self.desktop.run(["xprop", "-id", self.windows()[0].id, "WM_NORMAL_HINTS"])
        self.assertIn("minimum size: 640 by 480", hints)
        self.assertIn("maximum size: 640 by 480", hints)

    def test_a_delay_that_is_picked_is_the_next_questions(self):
        program = self.start()
        settings = open_settings(program)
        self.assertEqual(settings.delay(), "5 minutes")
        settings.click_picker()
        self.assertEqual(self.checked(program.wait_for_menu("60 minutes")), ["5 minutes"])
        program.click_menu_item("30 minutes")
        wait_until(lambda: self.home.stored_delay() == 30, "30 minutes are stored")
        wait_until(lambda: settings.delay() == "30 minutes", "the picker shows 30 minutes")
        self.take_screenshot()
        self.assertIn("Delete in 30 min", program.wait_for_question("Keep").buttons)
        program.answer("Keep")

    def test_a_delay_that_is_not_offered_is_kept_until_one_is_picked(self):
        program = self.start(delay=15)
        settings = open_settings(program)
        self.assertEqual(settings.delay(), "15 minutes")
        settings.click_picker()
        self.assertEqual(self.checked(program.wait_for_menu("60 minutes")), [])
        pointer.press_keys(self.desktop, "Escape")
        program.wait_for_no_menu()
        self.assertEqual(self.home.stored_delay(), 15)

    def test_the_picker_follows_the_menu_in_the_panel(self):
        program = self.start()
        settings = open_settings(program)
        program.click_icon()
        program.click_menu_item("Deletion Timeframe")
        program.click_menu_item("10 minutes")
        wait_until(lambda: settings.delay() == "10 minutes", "the picker shows 10 minutes")

    def test_the_clipboard_switch_acts_on_the_next_screenshot(self):
        program = self.start()
        settings = open_settings(program)
        self.assertFalse(settings.is_on(AUTO_COPY))
        settings.click_switch(AUTO_COPY)
        settings.wait_for_switch(AUTO_COPY, True)
        self.assertIs(self.home.stored_preferences()["autoCopyToClipboard"], True)
        content = png(colour=(0, 128, 0))
        self.take_screenshot(content=content)
        program.answer("Keep")
        copied = self.desktop.run_for_bytes(["xclip", "-o", "-selection", "clipboard", "-t", "image/png"])
        self.assertEqual(copied, content)
        settings.click_switch(AUTO_COPY)
        settings.wait_for_switch(AUTO_COPY, False)
        self.assertIs(self.home.stored_preferences()["autoCopyToClipboard"], False)

    def test_the_preview_switch_is_spectacles_own_on_plasma(self):
        settings_file = self.home.config / "spectaclerc"
        before = "# kept\n[General]\nclipboardGroup=PostScreenshotCopyImage\n\n[GuiConfig]\nquitAfterSaveCopyExport=true\n"
        settings_file.write_text(before)
        program = self.start(environment=PLASMA, listed=(self.home.pictures, 2))
        settings = open_settings(program)
        self.assertFalse(settings.is_on(PREVIEW))
        settings.click_switch(PREVIEW)
        settings.wait_for_switch(PREVIEW, True)
        changed = before.replace("CopyImage\n", "CopyImage\nautoSaveImage=true\n")
        self.assertEqual(settings_file.read_text(), changed)
        settings.click_switch(PREVIEW)
        settings.wait_for_switch(PREVIEW, False)
        self.assertEqual(settings_file.read_text(), changed.replace("=true\n", "=false\n", 1))
        self.assertFalse((self.home.config / "Deskbroom/AppPreferences.json").exists())

    def test_the_preview_switch_tells_what_another_program_has_set(self):
        settings_file = self.home.config / "spectaclerc"
        settings_file.write_text("[General]\nautoSaveImage=text\n")
        program = self.start(environment=PLASMA, listed=(self.home.pictures, 2))
        settings = open_settings(program)
        self.assertFalse(settings.is_on(PREVIEW))
        other = OtherWindow(self.desktop, (100, 600, 300, 100))
        pointer.click(self.desktop, pointer.centre(other.rectangle))
        wait_until(other.has_keyboard, "the other window is active")
        settings_file.write_text("[General]\nautoSaveImage=true\n")
        # Read afresh when the window is activated, and not before.
        self.assertFalse(settings.is_on(PREVIEW))
        settings.click_blank()
        settings.wait_for_switch(PREVIEW, True)

    def test_a_refused_change_leaves_the_switch_at_what_holds(self):
        settings_file = self.home.config / "spectaclerc"
        settings_file.write_text("[General]\nautoSaveImage=false\n")
        settings_file.chmod(0o400)
        program = self.start(environment=PLASMA, listed=(self.home.pictures, 2))
        settings = open_settings(program)
        settings.click_switch(PREVIEW)
        program.child.wait_for_line(
            "Failed to write Spectacle's preferences: "
            'Error Domain=NSCocoaErrorDomain Code=257 "Permission denied"'
        )
        settings.wait_for_switch(PREVIEW, False)

    def test_the_keyboard_alone_reaches_and_works_every_control(self):
        sample_screenshots.fill(self.home.desktop, 4)
        program = self.start()
        settings = open_settings(program)
        settings.wait_for_button("Change…")
        reached = []
        for _ in range(5):
            pointer.press_keys(self.desktop, "Tab")
            wait_until(lambda: settings.focused() not in (None, *reached[-1:]), "the keyboard moves on")
            reached.append(settings.focused())
            if reached[-1] == "Change…":
                pointer.press_keys(self.desktop, "space")
                FolderPicker(program).close_with("Escape")
                wait_until(lambda: settings.focused() == "Change…", "the keyboard is back at the button")
            elif reached[-1] == DELAY:
                pointer.press_keys(self.desktop, "space")
                program.wait_for_menu("60 minutes")
                pointer.press_keys(self.desktop, "Up", "Return")
                wait_until(lambda: settings.delay() == "1 minute", "the picker shows 1 minute")
            elif reached[-1] in (PREVIEW, AUTO_COPY):
                pointer.press_keys(self.desktop, "space")
                settings.wait_for_switch(reached[-1], True)
        self.assertEqual(reached, ["General", "Change…", DELAY, PREVIEW, AUTO_COPY])
        for _ in range(4):
            pointer.press_keys(self.desktop, "shift+Tab")
        wait_until(lambda: settings.focused() == "General", "the keyboard is back in the sidebar")
        pointer.press_keys(self.desktop, "Down")
        settings.wait_for_text("4 SCREENSHOTS")
        self.assertEqual(settings.focused(), "Gallery")
        pointer.press_keys(self.desktop, "End")
        settings.wait_for_text("Keeps your desktop clean by automatically managing your screenshots.")

    def test_tab_goes_round_through_the_gallery_page_without_screenshots(self):
        settings = open_settings(self.start())
        settings.click_section("Gallery")
        settings.wait_for_text("0 SCREENSHOTS")
        for name in ("Gallery", "Standard", "Refresh", "Gallery"):
            pointer.press_keys(self.desktop, "Tab")
            wait_until(lambda wanted=name: settings.focused() == wanted, f"the keyboard is at {name}")

    def test_the_gallery_page_deletes_what_is_selected(self):
        sample_screenshots.fill(self.home.desktop, 5)
        program = self.start()
        settings = open_settings(program)
        settings.click_section("Gallery")
        settings.wait_for_text("5 SCREENSHOTS")
        settings.click_button("Select")
        cell = settings.things("list", "showing")[-1].children()[0]
        pointer.click(self.desktop, pointer.centre(cell.rectangle()))
        settings.click_button("Delete")
        settings.click_button("Delete All")
        settings.wait_for_text("4 SCREENSHOTS")
        self.assertTrashed(sample_screenshots.name(1))

    def checked(self, menu):
        return [name for name, node in menu.items() if node.has_state("checked")]


class FolderInSettings(FolderAccessTestCase):
    desktop_options = {
        "panel": panels.XFCE4_PANEL,
        "window_manager": "xfwm4",
        "notification_server": "recorder",
    }

    def test_access_is_granted_by_picking_a_folder(self):
        folder = self.home.path / "Shots"
        folder.mkdir()
        self.home.switch_off_desktop()
        program = self.start_without_access()
        settings = open_settings(program)
        settings.click_button("Grant Access")
        self.pick(program, FolderPicker(program), folder)
        settings.wait_for_text("Granted")
        self.assertNotIn("Grant Access", settings.buttons)
        self.assertAsksIn(program, folder)

    def test_a_cancelled_picker_leaves_the_button(self):
        self.home.switch_off_desktop()
        program = self.start_without_access()
        settings = open_settings(program)
        settings.click_button("Grant Access")
        picker = FolderPicker(program)
        picker.close_with("Escape")
        settings.wait_for_button("Grant Access")
        self.assertNotIn("Granted", settings.texts)
        self.assertNotIn(ACCESS_GRANTED, self.notifications.titles())

    def test_access_is_granted_with_the_keyboard_alone(self):
        folder = self.home.path / "Shots"
        folder.mkdir()
        self.home.switch_off_desktop()
        program = self.start_without_access()
        settings = open_settings(program)
        settings.wait_for_button("Grant Access")
        for name in ("General", "Grant Access"):
            pointer.press_keys(self.desktop, "Tab")
            wait_until(lambda wanted=name: settings.focused() == wanted, f"the keyboard is at {name}")
        pointer.press_keys(self.desktop, "space")
        self.pick(program, FolderPicker(program), folder)
        settings.wait_for_text("Granted")
        wait_until(lambda: settings.focused() == "Change…", "the keyboard stays with the folder's button")

    def test_the_folder_can_be_changed_later(self):
        folder = self.home.path / "Shots"
        folder.mkdir()
        program = self.start()
        settings = open_settings(program)
        settings.wait_for_text("Granted")
        settings.click_button("Change…")
        self.pick(program, FolderPicker(program), folder)
        settings.wait_for_text("Granted")
        self.assertHolds(program, folder)
        self.assertWatchesOnly(program, folder, self.home.desktop)

    def test_a_folder_that_is_taken_away_is_seen_when_the_window_is_activated(self):
        program = self.start()
        settings = open_settings(program)
        settings.wait_for_text("Granted")
        self.home.desktop.chmod(0)
        try:
            other = OtherWindow(self.desktop, (100, 600, 300, 100))
            pointer.click(self.desktop, pointer.centre(other.rectangle))
            self.assertIn("Change…", settings.buttons)
            open_settings(program)
            settings.wait_for_button("Grant Access")
        finally:
            self.home.desktop.chmod(0o755)


if __name__ == "__main__":
    run()
