"""Access to the watched folder: how the program gets, keeps and finds it again. The folder is the Desktop unless
the user picks another one.
"""

import os

from desktop_test_case import run
from folder_access_test_case import (
    DESKTOP_REQUIRED, SCREENSHOT_FOLDER_REQUIRED, FolderAccessTestCase, launch_lines,
)

NOT_FOUND = "Error accessing Desktop folder: Desktop folder not found"
STOPPED = "Persistent Desktop access stopped"


class AccessAtLaunch(FolderAccessTestCase):
    def test_the_first_run_takes_the_desktop_and_watches_it_alone(self):
        program = self.start()
        self.assertPrints(program, launch_lines(self.home.desktop))
        self.assertHolds(program, self.home.desktop)
        self.assertTrue(self.home.stored_bookmark())
        self.assertWatchesOnly(program, self.home.desktop, self.home.pictures, self.home.downloads)
        self.end(program)
        self.assertEqual(program.child.lines.count(STOPPED), 2)
        self.assertEqual(self.notifications.all(), [])

    def test_the_second_run_makes_the_bookmark_anew_and_reports_nothing_that_was_there(self):
        self.end(self.start())
        stored = self.home.stored_bookmark()
        self.home.store_preferences()
        self.take_screenshot("Screenshot earlier.png")
        program = self.start()
        self.assertPrints(program, launch_lines(self.home.desktop))
        self.assertEqual(self.home.stored_bookmark(), stored)
        self.assertHolds(program, self.home.desktop)
        self.assertAsksIn(program, self.home.desktop)
        self.assertEqual(program.lines, ["Screenshot moved to Trash: Screenshot 1.png"])
        self.assertEqual(os.listdir(self.home.desktop), ["Screenshot earlier.png"])

    def test_a_desktop_that_moved_in_the_settings_is_followed(self):
        self.end(self.start())
        other = self.home.path / "Schreibtisch"
        other.mkdir()
        self.home.set_desktop("$HOME/Schreibtisch")
        program = self.start(listed=(other, 2))
        self.assertPrints(program, launch_lines(other))
        self.assertWatchesOnly(program, other, self.home.desktop, self.home.pictures)

    def test_where_the_capture_tool_saves_elsewhere_that_folder_is_watched_alone(self):
        folder = self.home.pictures / "Screenshots"
        folder.mkdir()
        program = self.start(listed=(folder, 2), environment={"XDG_CURRENT_DESKTOP": "GNOME"})
        self.assertPrints(program, launch_lines(folder))
        self.assertWatchesOnly(program, folder, self.home.desktop, self.home.pictures)
        self.end(program)

    def test_the_capture_tools_folder_is_made_as_the_tool_would(self):
        folder = self.home.pictures / "Screenshots"
        program = self.start(listed=(self.home.downloads, 1), environment={"XDG_CURRENT_DESKTOP": "GNOME"})
        program.child.wait_for_line(f"Persistent Desktop access started: {folder}")
        self.assertTrue(folder.is_dir())
        self.end(program)


class MovedFolders(FolderAccessTestCase):
    def standard_folders(self):
        return self.home.desktop, self.home.pictures, self.home.downloads

    def move(self, folder, name):
        return folder.rename(folder.parent / name)

    def assertFollows(self, moved):
        """The Desktop isn't there at the launch: access goes where its folder went."""
        count = self.notifications.titles().count(DESKTOP_REQUIRED)
        program = self.start(listed=(moved, 1))
        self.assertPrints(
            program,
            [
                f"Requesting access to Desktop folder at: {self.home.desktop}",
                NOT_FOUND,
                f"Refreshed stale bookmark for: {moved}",
                f"Persistent Desktop access started: {moved}",
            ],
        )
        self.notifications.wait_for(DESKTOP_REQUIRED, count + 1)
        self.assertHolds(program, moved)
        self.assertWatchesOnly(program, moved, self.home.pictures)
        return program

    def assertReportsNothingAboutTheMove(self, program):
        """Without a line, the three standard folders are watched."""
        before = len([line for line in program.child.lines if not line.startswith("Screenshot")])
        self.assertAsksIn(program, self.home.pictures, self.home.downloads)
        self.assertEqual(before, len([line for line in program.child.lines if not line.startswith("Screenshot")]))

    def test_a_desktop_renamed_while_the_program_runs_is_followed_at_the_next_launch(self):
        program = self.start()
        moved = self.move(self.home.desktop, "Desktop, earlier")
        self.assertReportsNothingAboutTheMove(program)
        self.assertHolds(program, moved)
        self.end(program)
        self.assertFollows(moved)

    def test_a_desktop_renamed_while_the_program_is_away_is_followed(self):
        self.end(self.start())
        program = self.assertFollows(self.move(self.home.desktop, "Desktop, earlier"))
        self.end(program)

    def test_a_picked_folder_renamed_while_the_program_runs_keeps_its_role(self):
        program, folder = self.start_with_picked_folder()
        moved = self.move(folder, "Shots, renamed")
        self.assertReportsNothingAboutTheMove(program)
        self.assertAsksIn(program, moved)
        self.end(program)
        program = self.start(listed=(moved, 2))
        self.assertPrints(program, launch_lines(moved))
        self.assertWatchesOnly(program, moved, self.home.pictures)

    def test_a_picked_folder_renamed_while_the_program_is_away_keeps_its_role(self):
        program, folder = self.start_with_picked_folder()
        self.end(program)
        moved = self.move(folder, "Shots, renamed")
        program = self.start(listed=(moved, 2))
        self.assertPrints(program, launch_lines(moved))
        self.assertHolds(program, moved)
        self.assertWatchesOnly(program, moved, self.home.pictures)


class ReplacedFolders(FolderAccessTestCase):
    def replace(self, folder):
        """Another folder at the same path; returns where the first one is."""
        moved = folder.rename(folder.parent / f"{folder.name}, earlier")
        folder.mkdir()
        return moved

    def make_anew(self, folder):
        folder.rmdir()
        folder.mkdir()

    def test_a_desktop_replaced_while_the_program_runs_is_watched_with_the_others(self):
        program = self.start()
        moved = self.replace(self.home.desktop)
        self.assertAsksIn(program, self.home.desktop, self.home.pictures, self.home.downloads)
        self.assertHolds(program, moved)
        self.end(program)
        program = self.start()
        self.assertPrints(program, launch_lines(self.home.desktop))
        self.assertWatchesOnly(program, self.home.desktop, moved, self.home.pictures)

    def test_a_desktop_replaced_while_the_program_is_away_is_the_desktop(self):
        self.end(self.start())
        moved = self.replace(self.home.desktop)
        program = self.start()
        self.assertPrints(program, launch_lines(self.home.desktop))
        self.assertWatchesOnly(program, self.home.desktop, moved, self.home.pictures)

    def test_a_desktop_deleted_and_made_again_is_watched(self):
        program = self.start()
        self.make_anew(self.home.desktop)
        self.assertAsksIn(program, self.home.desktop, self.home.pictures)
        self.end(program)
        self.make_anew(self.home.desktop)
        program = self.start()
        self.assertPrints(program, launch_lines(self.home.desktop))
        self.assertWatchesOnly(program, self.home.desktop, self.home.pictures)

    def test_a_picked_folder_replaced_while_the_program_runs_goes_on_under_its_new_name(self):
        program, folder = self.start_with_picked_folder()
        moved = self.replace(folder)
        self.assertAsksIn(program, moved, self.home.pictures)
        self.end(program)
        program = self.start(listed=(moved, 2))
        self.assertPrints(program, launch_lines(moved))
        self.assertWatchesOnly(program, moved, folder, self.home.pictures)

    def test_a_picked_folder_replaced_while_the_program_is_away_goes_on_under_its_new_name(self):
        program, folder = self.start_with_picked_folder()
        self.end(program)
        moved = self.replace(folder)
        program = self.start(listed=(moved, 2))
        self.assertPrints(program, launch_lines(moved))
        self.assertWatchesOnly(program, moved, folder, self.home.pictures)

    def test_a_picked_folder_deleted_and_made_again_stays_picked(self):
        program, folder = self.start_with_picked_folder()
        self.make_anew(folder)
        self.assertAsksIn(program, folder, self.home.pictures)
        self.end(program)
        self.make_anew(folder)
        program = self.start(listed=(folder, 2))
        self.assertPrints(program, launch_lines(folder))
        self.assertWatchesOnly(program, folder, self.home.pictures)

    def test_a_picked_folder_that_is_away_at_launch_stays_picked(self):
        program, folder = self.start_with_picked_folder("Drive/Shots")
        self.end(program)
        unplugged = folder.parent.rename(self.home.path / "Unplugged")
        program = self.start_without_access()
        self.assertEqual(
            program.child.lines[:3],
            [
                f"Requesting access to Desktop folder at: {folder}",
                NOT_FOUND,
                'Failed to start persistent Desktop access: Error Domain=NSCocoaErrorDomain Code=4 '
                '"No such file or directory"',
            ],
        )
        self.notifications.wait_for(SCREENSHOT_FOLDER_REQUIRED)
        self.assertAsksIn(program, self.home.pictures)
        self.end(program)
        unplugged.rename(folder.parent)
        program = self.start(listed=(folder, 2))
        self.assertPrints(program, launch_lines(folder))
        self.assertHolds(program, folder)
        self.assertWatchesOnly(program, folder, self.home.pictures)


if __name__ == "__main__":
    run()
