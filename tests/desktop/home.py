"""A user's home folder that is made for a test and goes with it."""

import json
import os
import shutil
import tempfile
from pathlib import Path

PREFERENCE_FIRST_RUN = "hasCompletedOnboarding"
_USER_FOLDERS = {"DESKTOP": "Desktop", "PICTURES": "Pictures", "DOWNLOAD": "Downloads"}


class Home:
    """Every XDG base and user directory lies in it. Use as a context manager, or call `remove`.

    Its user has gone through the program's first-run pages, unless `forget_first_run` is called.
    """

    def __init__(self):
        root = os.environ.get("DESKBROOM_TEST_ROOT", tempfile.gettempdir())
        self.path = Path(tempfile.mkdtemp(prefix="deskbroom-home-", dir=root))
        self.config = self.path / ".config"
        self.data = self.path / ".local/share"
        self.desktop, self.pictures, self.downloads = (self.path / name for name in _USER_FOLDERS.values())
        for folder in (self.config, self.data, self.desktop, self.pictures, self.downloads):
            folder.mkdir(parents=True)
        self.set_desktop(f"$HOME/{_USER_FOLDERS['DESKTOP']}")
        self.store_preferences()

    def set_desktop(self, value):
        """In the settings of the XDG user directories."""
        values = {key: f"$HOME/{name}" for key, name in _USER_FOLDERS.items()} | {"DESKTOP": value}
        (self.config / "user-dirs.dirs").write_text(
            "".join(f'XDG_{key}_DIR="{path}"\n' for key, path in values.items())
        )

    def switch_off_desktop(self):
        """As those settings have it: a folder that is the home itself is none."""
        self.set_desktop("$HOME")

    @property
    def preferences(self):
        return self.config / "Deskbroom/Deskbroom.json"

    @property
    def trash(self):
        return self.data / "Trash"

    def trashed(self):
        """The names of the files in the Trash."""
        try:
            return sorted(os.listdir(self.trash / "files"))
        except FileNotFoundError:
            return []

    def stored_preferences(self):
        try:
            return json.loads(self.preferences.read_text())
        except FileNotFoundError:
            return {}

    def stored_delay(self):
        """In minutes, or None when none is stored."""
        return self.stored_preferences().get("timeframeInMinutes")

    def stored_bookmark(self):
        """Of the watched folder, or None when none is stored."""
        return self.stored_preferences().get("DesktopFolderBookmark")

    def store_preferences(self, **values):
        """These, in the place of all that were there."""
        self.write_preferences(json.dumps({PREFERENCE_FIRST_RUN: True} | values))

    def forget_first_run(self):
        self.preferences.unlink()

    def has_completed_first_run(self):
        return self.stored_preferences().get(PREFERENCE_FIRST_RUN) is True

    def write_preferences(self, text):
        self.preferences.parent.mkdir(parents=True, exist_ok=True)
        self.preferences.write_text(text)

    def environment(self):
        return {
            "HOME": str(self.path),
            "XDG_CONFIG_HOME": str(self.config),
            "XDG_DATA_HOME": str(self.data),
            "XDG_STATE_HOME": str(self.path / ".local/state"),
            "XDG_CACHE_HOME": str(self.path / ".cache"),
        }

    def remove(self):
        def make_removable(_function, path, _error):
            os.chmod(os.path.dirname(path), 0o700)
            if os.path.isdir(path) and not os.path.islink(path):
                os.chmod(path, 0o700)
                shutil.rmtree(path, ignore_errors=True)
            else:
                os.unlink(path)

        shutil.rmtree(self.path, onerror=make_removable)

    def __enter__(self):
        return self

    def __exit__(self, *_exception):
        self.remove()
