"""The user picks the folder to watch, in the picker that a click on "Access Failed" opens."""

import os
import unittest

import panels
import pointer
from desktop_test_case import run
from folder_access_test_case import (
    ACCESS_FAILED, ACCESS_GRANTED, SCREENSHOT_FOLDER_REQUIRED, FolderAccessTestCase, launch_lines,
)
from folder_picker import SCREENSHOT_FOLDER_TITLE, FolderPicker
from notifications import click_dunst, dunst_rectangle, dunst_texts
from waiting import holds_for, wait_until

SWITCHED_OFF = "Error: Could not locate Desktop directory"
NOT_VERIFIED = "Could not access the selected folder. Could not verify folder access"


def picked_lines(folder, count):
    """What the program prints when the user has picked the folder, which has so many entries."""
    return [
        f"Successfully created bookmark for: {folder}",
        "Persistent Desktop access stopped",
        f"Persistent Desktop access started: {folder}",
        f"Successfully accessed {count} files in {folder}",
    ]


class PickedFolders(FolderAccessTestCase):
    def setUp(self):
        super().setUp()
        self.home.desktop.rmdir()  # the home then has Downloads, Pictures and Shots
        self.folder = self.home.path / "Shots"
        self.folder.mkdir()
        self.take_screenshot("Screenshot earlier.png", folder=self.folder)

    def assertTakesOver(self, program):
        granted = self.notifications.wait_for(ACCESS_GRANTED)
        self.assertEqual(granted["body"], "Deskbroom now has access to detect screenshots in Shots.")
        self.assertEqual(granted["actions"], ["default", "Open"])
        self.assertEqual(granted["hints"], {"desktop-entry": "org.deskbroom.Deskbroom", "urgency": 1})
        self.wait_until_granted(self.folder)
        self.assertPrints(program, [SWITCHED_OFF, *picked_lines(self.folder, 1)])
        self.assertHolds(program, self.folder)
        self.assertWatchesOnly(program, self.folder, self.home.pictures, self.home.downloads)
        stored = self.home.stored_bookmark()
        self.end(program)
        program = self.start(listed=(self.folder, 2))
        self.assertPrints(program, launch_lines(self.folder))
        self.assertHolds(program, self.folder)
        self.assertEqual(self.home.stored_bookmark(), stored)
        self.assertWatchesOnly(program, self.folder, self.home.pictures, self.home.downloads)
        self.assertEqual(os.listdir(self.folder), ["Screenshot earlier.png"])
        self.assertEqual(self.notifications.titles(), [ACCESS_FAILED, ACCESS_GRANTED])

    def test_with_the_mouse(self):
        program, picker = self.start_where_the_desktop_is_switched_off()
        self.assertIn("Please select your Desktop folder to grant access for screenshot detection", picker.texts)
        picker.click_folder(2)
        picker.click_button("Grant Access")
        picker.wait_until_gone()
        self.assertTakesOver(program)

    def test_with_the_keyboard_alone(self):
        program, picker = self.start_where_the_desktop_is_switched_off()
        picker.type_path(self.folder)
        picker.wait_until_gone()
        self.assertTakesOver(program)

    def assertNothingChanged(self, program, picker):
        picker.wait_until_gone()
        self.assertAsksIn(program, self.home.pictures, self.home.downloads)
        self.assertPrints(
            program, [SWITCHED_OFF, *(f"Screenshot moved to Trash: Screenshot {number}.png" for number in (1, 2))]
        )
        self.assertEqual(self.notifications.titles(), [ACCESS_FAILED])
        self.assertIsNone(self.home.stored_bookmark())

    def test_escape_changes_nothing(self):
        program, picker = self.start_where_the_desktop_is_switched_off()
        picker.close_with("Escape")
        self.assertNothingChanged(program, picker)

    def test_cancel_changes_nothing(self):
        program, picker = self.start_where_the_desktop_is_switched_off()
        picker.click_folder(2)
        picker.click_button("Cancel")
        self.assertNothingChanged(program, picker)

    def test_closing_the_window_changes_nothing(self):
        program, picker = self.start_where_the_desktop_is_switched_off()
        pointer.click(self.desktop, picker.close_button)
        self.assertNothingChanged(program, picker)

    def test_the_question_comes_while_the_picker_is_open(self):
        program, picker = self.start_where_the_desktop_is_switched_off()
        self.assertAsksIn(program, self.home.pictures)
        self.assertFalse(picker.is_gone())

    def test_quitting_with_the_picker_open(self):
        program, _picker = self.start_where_the_desktop_is_switched_off()
        self.end(program)


@unittest.skipIf(os.geteuid() == 0, "root may read everywhere")
class RefusedFolders(FolderAccessTestCase):
    def setUp(self):
        super().setUp()
        self.locked = self.home.path / "Locked"
        self.locked.mkdir(0)
        self.good = self.home.path / "Good"
        self.good.mkdir()

    def test_each_refusal_says_so_and_a_click_on_it_opens_the_picker_again(self):
        program, picker = self.start_where_the_desktop_is_switched_off()
        first = self.notifications.wait_for(ACCESS_FAILED)
        self.assertEqual(first["body"], "Could not access the selected folder. Could not locate Desktop directory")
        picker.type_path(self.locked)
        for count in (2, 3):
            refused = self.notifications.wait_for(ACCESS_FAILED, count)
            self.assertEqual(
                refused,
                {
                    "application": "Deskbroom",
                    "replaces": 0,  # the one before was clicked, so it is gone
                    "icon": "org.deskbroom.Deskbroom",
                    "title": ACCESS_FAILED,
                    "body": NOT_VERIFIED,
                    "actions": ["default", "Open"],
                    "hints": {"desktop-entry": "org.deskbroom.Deskbroom", "urgency": 1},
                    "timeout": -1,
                    "number": refused["number"],
                },
            )
            self.notifications.click(refused)
            # What was picked has the Desktop's role already.
            picker = FolderPicker(program, SCREENSHOT_FOLDER_TITLE)
            self.assertIn("Please select your screenshot folder to grant access for screenshot detection", picker.texts)
            if count == 2:
                picker.type_path(self.locked)
        self.pick(program, picker, self.good)
        self.assertWatchesOnly(program, self.good, self.home.desktop, self.home.pictures)

    def test_a_refused_folder_is_required_at_the_next_launch(self):
        program, picker = self.start_where_the_desktop_is_switched_off()
        picker.type_path(self.locked)
        self.notifications.wait_for(ACCESS_FAILED, 2)
        self.assertPrints(
            program,
            [
                SWITCHED_OFF,
                f"Successfully created bookmark for: {self.locked}",
                "Persistent Desktop access stopped",
                "startAccessingSecurityScopedResource returned false for Desktop bookmark",
                "Could not start accessing security-scoped resource",
            ],
        )
        self.end(program)
        program = self.start(listed=(self.home.path, 0))
        required = self.notifications.wait_for(SCREENSHOT_FOLDER_REQUIRED)
        self.assertEqual(
            required["body"], "Deskbroom needs access to your screenshot folder. Click to open System Settings."
        )
        self.assertEqual(program.child.lines[0], f"Requesting access to Desktop folder at: {self.locked}")

    def test_a_second_click_on_a_notification_does_nothing(self):
        program, picker = self.start_where_the_desktop_is_switched_off()
        picker.close_with("Escape")
        self.notifications.click(self.notifications.wait_for(ACCESS_FAILED))
        holds_for(picker.is_gone, "no picker", seconds=1)
        self.assertTrue(program.child.is_running())


class HostileFolderNames(FolderAccessTestCase):
    def pick_by_hand(self, name):
        """With the mouse, because no keyboard types such names. Returns the program and the folder."""
        folder = self.home.path / "Only" / name
        folder.mkdir(parents=True)
        self.home.desktop.rmdir()
        program, picker = self.start_where_the_desktop_is_switched_off()
        picker.open_folder(1)  # of Downloads, Only, Pictures
        picker.wait_for_directory(folder.parent)
        picker.click_folder(0)
        picker.click_button("Grant Access")
        self.wait_until_granted(folder)
        return program, folder

    def assertNamed(self, name, in_notification, in_lines):
        program, folder = self.pick_by_hand(name)
        granted = self.notifications.wait_for(ACCESS_GRANTED)
        self.assertEqual(granted["body"], f"Deskbroom now has access to detect screenshots in {in_notification}.")
        shown = f"{folder.parent}/{in_lines}"
        self.assertPrints(program, [SWITCHED_OFF, *picked_lines(shown, 0)])
        self.assertWatchesOnly(program, folder, self.home.pictures)
        self.end(program)
        program = self.start(listed=(folder, 2))
        self.assertPrints(program, launch_lines(shown))

    def test_markup(self):
        name = "<b>&amp;"
        self.assertNamed(name, "&lt;b&gt;&amp;amp;", name)

    def test_a_line_break(self):
        self.assertNamed("one\ntwo", "one\ntwo", r"one\ntwo")

    def test_right_to_left(self):
        # The notification leaves out what would turn the rest of its text round.
        self.assertNamed("\u202egnp\u05e9\u05dc", "gnp\u05e9\u05dc", "\\u202egnp\u05e9\u05dc")

    def test_200_bytes(self):
        name = "\u00e9" * 100
        self.assertNamed(name, name, name)


@unittest.skipIf(os.geteuid() == 0, "root may read everywhere")
class RefusedFoldersOnDunst(FolderAccessTestCase):
    """With a server that people use, and a panel."""

    desktop_options = {"panel": panels.XFCE4_PANEL, "notification_server": "dunst"}

    def test_a_click_on_access_failed_opens_the_picker(self):
        self.home.switch_off_desktop()
        locked = self.home.path / "Locked"
        locked.mkdir(0)
        program = self.start_without_access()
        click_dunst(self.desktop)
        FolderPicker(program).type_path(locked)
        click_dunst(self.desktop)
        self.assertEqual(dunst_texts(self.desktop)[0], NOT_VERIFIED)
        picker = FolderPicker(program, SCREENSHOT_FOLDER_TITLE)
        picker.type_path(self.home.pictures)
        click_dunst(self.desktop)
        wait_until(lambda: dunst_rectangle(self.desktop) is None, "the grant is gone")
        granted = "Deskbroom now has access to detect screenshots in Pictures."
        self.assertEqual(dunst_texts(self.desktop)[0], granted)
        self.assertTrue(picker.is_gone())


if __name__ == "__main__":
    run()
