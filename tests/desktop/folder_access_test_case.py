"""What the tests about access to the watched folder share."""

import os

import panels
from desktop_test_case import DesktopTestCase
from folder_listings import FolderListings
from folder_picker import FolderPicker
from notifications import RecordedNotifications
from waiting import wait_until

ACCESS_FAILED = "Access Failed"
ACCESS_GRANTED = "Access Granted"
DESKTOP_REQUIRED = "Desktop Folder Access Required"
SCREENSHOT_FOLDER_REQUIRED = "Screenshot Folder Access Required"


def launch_lines(folder):
    """What the program prints at launch when the folder can be read."""
    return [
        f"Requesting access to Desktop folder at: {folder}",
        "Desktop folder access granted",
        f"Successfully created bookmark for: {folder}",
        "Persistent Desktop access stopped",
        f"Persistent Desktop access started: {folder}",
    ]


class FolderAccessTestCase(DesktopTestCase):
    """On a desktop whose notification server records, unless the class says otherwise."""

    desktop_options = {"panel": panels.NO_PANEL, "notification_server": "recorder"}

    def setUp(self):
        super().setUp()
        if self.desktop_options["notification_server"] != "dunst":
            self.notifications = RecordedNotifications(self.desktop)
        self.screenshots = 0

    def start_without_access(self, **options):
        """As `start`, where the Desktop can't be read: the last folder to be listed is then Downloads."""
        return self.start(listed=(self.home.downloads, 1), **options)

    def start_where_the_desktop_is_switched_off(self):
        """Returns the program and its picker, which the user has opened."""
        self.home.switch_off_desktop()
        program = self.start_without_access()
        self.notifications.click(self.notifications.wait_for(ACCESS_FAILED))
        return program, FolderPicker(program)

    def start_with_picked_folder(self, name="Shots"):
        """Returns the program and the folder, which the user has picked in this run."""
        folder = self.home.path / name
        folder.mkdir(parents=True)
        program, picker = self.start_where_the_desktop_is_switched_off()
        self.pick(program, picker, folder)
        return program, folder

    def pick(self, program, picker, folder):
        """With the keyboard, and returns once the folder is watched."""
        picker.type_path(folder)
        self.wait_until_granted(folder)

    def wait_until_granted(self, folder):
        """Until the program watches a folder that was picked."""
        self.notifications.wait_for(ACCESS_GRANTED)
        # The dialog and the check have listed it before. Whoever lists it now is the new watcher.
        listings = FolderListings(folder)
        note = folder / "note.txt"
        note.write_text("makes the next tick list this folder")
        wait_until(lambda: listings.count() > 0, f"the program watches {folder}")
        listings.close()
        note.unlink()

    def end(self, program):
        self.assertEqual(program.stop(), 0, program.child.errors)
        self.assertEqual(program.child.lines[-1], "Persistent Desktop access stopped")

    def assertPrints(self, program, lines):
        """These and no others."""
        wait_until(lambda: program.child.lines == lines, f"it prints {lines}; it printed {program.child.lines}")

    def assertAsksIn(self, program, *folders):
        """Takes a screenshot in each and has it deleted."""
        for folder in folders:
            self.screenshots += 1
            name = f"Screenshot {self.screenshots}.png"
            self.take_screenshot(name, folder=folder)
            program.answer("Delete Now")
            program.child.wait_for_line(f"Screenshot moved to Trash: {name}")

    def assertWatchesOnly(self, program, folder, *others):
        """The tick that finds a screenshot in the folder doesn't look into the others, which have one too."""
        listings = [FolderListings(other) for other in others]
        for other in others:
            self.take_screenshot(f"Screenshot {os.path.basename(other)}.png", folder=other)
        self.assertAsksIn(program, folder)
        self.assertEqual([listing.count() for listing in listings], [0] * len(others))
        for listing in listings:
            listing.close()

    def held_folders(self, program):
        """What the program has open below the home."""
        folder = f"/proc/{program.pid}/fd"
        found = []
        for descriptor in os.listdir(folder):
            try:
                target = os.readlink(f"{folder}/{descriptor}")
            except FileNotFoundError:
                continue
            if target.startswith(f"{self.home.path}/") and os.path.isdir(target):
                found.append(target)
        return found

    def assertHolds(self, program, *folders):
        wanted = [str(folder) for folder in folders]
        wait_until(
            lambda: self.held_folders(program) == wanted, f"it holds {wanted}, not {self.held_folders(program)}"
        )
