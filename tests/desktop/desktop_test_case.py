"""What every desktop test starts from: a private desktop for the class, a fresh home and program for the test."""

import os
import shutil
import unittest
from pathlib import Path

import panels
from deskbroom import PREFERENCE_AUTO_COPY, PREFERENCE_DELAY, Deskbroom, executable
from home import Home
from images import png
from private_desktop import PrivateDesktop

_SANITIZER_WORDS = ("runtime error:", "ERROR: AddressSanitizer", "ERROR: LeakSanitizer")


class DesktopTestCase(unittest.TestCase):
    """A program that a test started must still end with status 0 and without a sanitizer's complaint."""

    desktop_options = {}

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.desktop = cls.enterClassContext(PrivateDesktop(**cls.desktop_options))

    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self._programs = []

    def tearDown(self):
        for program in self._programs:
            with self.subTest(program=program.pid):
                self.assertEqual(program.stop(), 0, "\n".join(program.child.errors))
                for line in program.child.errors:
                    self.assertFalse(any(words in line for words in _SANITIZER_WORDS), line)

    def start(self, delay=None, auto_copy=None, environment=None, listed=None):
        """Starts the program and returns once it watches: see Deskbroom."""
        stored = {PREFERENCE_DELAY: delay, PREFERENCE_AUTO_COPY: auto_copy}
        stored = {key: value for key, value in stored.items() if value is not None}
        if stored:
            self.home.store_preferences(**stored)
        program = Deskbroom(self.desktop, executable(), self.home, environment, listed)
        self._programs.append(program)
        return program

    def start_first_run(self, **options):
        """Starts the program for a user who has never gone through its pages; until he has, it doesn't watch."""
        self.home.forget_first_run()
        return self.start(**{"listed": (self.home.desktop, 1)} | options)

    def take_screenshot(self, name="Screenshot_2024-05-01_10-11-12.png", content=None, folder=None):
        """In the folder, or on the Desktop."""
        path = (folder or self.home.desktop) / name
        path.write_bytes(png() if content is None else content)
        return path

    def save_picture(self, name, rests=True):
        """See PrivateDesktop."""
        path = self.picture_path(name)
        if path:
            self.desktop.save_picture(path, rests)

    def picture_path(self, name):
        """Where to, or None where no pictures are wanted."""
        folder = os.environ.get("DESKBROOM_PICTURES")
        return Path(folder) / f"{self.desktop.panel}-{name}.png" if folder else None

    def assertTrashed(self, *names):
        self.assertEqual(self.home.trashed(), sorted(names))


class OnXfce4Panel:
    """Status notifier items; xfwm4 with its own compositor."""

    desktop_options = {"panel": panels.XFCE4_PANEL, "window_manager": "xfwm4"}


class OnTint2:
    """An XEmbed tray; openbox with picom."""

    desktop_options = {"panel": panels.TINT2, "window_manager": "openbox"}


def run():
    """As unittest.main, with whatever the private desktops need checked beforehand."""
    for tool in ("Xvfb", "dbus-daemon", "xdotool"):
        if shutil.which(tool) is None:
            raise SystemExit(f"{tool} is not installed: ./test installs what the desktop tests need")
    unittest.main(verbosity=2)
