"""Desktops that aren't there or can't be read: the user is told, and the other folders are watched meanwhile."""

import os
import unittest

from desktop_test_case import run
from folder_access_test_case import DESKTOP_REQUIRED, FolderAccessTestCase, launch_lines
from waiting import wait_until


class UnusableDesktops(FolderAccessTestCase):
    def assertTellsAndWatchesTheOthers(self, reason):
        program = self.start_without_access()
        self.assertPrints(
            program,
            [
                f"Requesting access to Desktop folder at: {self.home.desktop}",
                f"Error accessing Desktop folder: {reason}",
            ],
        )
        self.assertEqual(
            self.notifications.wait_for(DESKTOP_REQUIRED),
            {
                "application": "Deskbroom",
                "replaces": 0,
                "icon": "org.deskbroom.Deskbroom",
                "title": DESKTOP_REQUIRED,
                "body": "Deskbroom needs access to your Desktop folder. Click to open System Settings.",
                "actions": ["default", "Open"],
                "hints": {"desktop-entry": "org.deskbroom.Deskbroom", "urgency": 1},
                "timeout": -1,
                "number": self.notifications.all()[0]["number"],
            },
        )
        self.assertIsNone(self.home.stored_bookmark())
        self.assertHolds(program)
        self.assertAsksIn(program, self.home.pictures, self.home.downloads)
        self.assertEqual(len(self.notifications.all()), 1)
        self.end(program)

    def test_missing(self):
        self.home.desktop.rmdir()
        self.assertTellsAndWatchesTheOthers("Desktop folder not found")

    def test_a_file(self):
        self.home.desktop.rmdir()
        self.home.desktop.write_text("not a folder")
        self.assertTellsAndWatchesTheOthers("Desktop folder not found")

    def test_a_dangling_link(self):
        self.home.desktop.rmdir()
        self.home.desktop.symlink_to("nowhere")
        self.assertTellsAndWatchesTheOthers("Desktop folder not found")

    @unittest.skipIf(os.geteuid() == 0, "root may read everywhere")
    def test_unreadable(self):
        self.home.desktop.chmod(0)
        self.assertTellsAndWatchesTheOthers("Permission denied - please grant folder access in System Settings")

    @unittest.skipIf(os.geteuid() == 0, "root may enter everywhere")
    def test_one_that_can_be_listed_but_not_entered_is_watched_and_not_held(self):
        self.home.desktop.chmod(0o400)
        program = self.start()
        refused = "startAccessingSecurityScopedResource returned false for Desktop bookmark"
        program.child.wait_for_line(refused)
        expected = [*launch_lines(self.home.desktop)[:-1], refused]
        self.assertEqual(list(dict.fromkeys(program.child.lines)), expected)  # it tries more than once
        self.assertHolds(program)
        self.home.desktop.chmod(0o700)
        self.assertAsksIn(program, self.home.desktop)
        self.assertEqual(self.notifications.all(), [])

    def test_one_that_appears_later_is_watched(self):
        self.home.desktop.rmdir()
        program = self.start_without_access()
        self.home.desktop.mkdir()
        self.assertAsksIn(program, self.home.desktop, self.home.pictures)
        wait_until(lambda: self.notifications.titles() == [DESKTOP_REQUIRED], "there is one notification")


if __name__ == "__main__":
    run()
