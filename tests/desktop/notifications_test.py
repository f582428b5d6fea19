"""What a click on "Screenshot Folder Access Required" does, and notification servers that are no help."""

import time

import panels
from desktop_test_case import run
from folder_access_test_case import (
    ACCESS_FAILED, ACCESS_GRANTED, SCREENSHOT_FOLDER_REQUIRED, FolderAccessTestCase,
)
from notifications import RecordedNotifications
from settings import Settings
from waiting import holds_for, wait_until

# Records its arguments and, as GNOME's does, lists its pages on request.
_SETTINGS_PROGRAM = """#!/bin/sh
if [ "$1" = --list ]; then
    printf 'Available panels:\\n\\tprivacy\\n\\tsound\\n'
    exit
fi
printf '%s\\n' "${0##*/} $*" >> "$HOME/settings-opened"
"""


class SettingsPanes(FolderAccessTestCase):
    COMMANDS = {
        "GNOME": "gnome-control-center privacy",
        "KDE": "systemsettings kcm_recentFiles",
        "XFCE": "xfce4-settings-manager",
        "X-Cinnamon": "cinnamon-settings privacy",
        "MATE": "mate-control-center",
        "LXQt": "lxqt-config",
    }

    def setUp(self):
        super().setUp()
        # A folder that is gone, and is the folder on every desktop, whatever its capture tool.
        program, folder = self.start_with_picked_folder()
        self.end(program)
        folder.rmdir()

    def start_on(self, desktop, *programs):
        """With the settings programs installed."""
        folder = self.home.path / "bin"
        folder.mkdir(exist_ok=True)
        for program in programs:
            (folder / program).write_text(_SETTINGS_PROGRAM)
            (folder / program).chmod(0o755)
        path = f"{folder}:{self.desktop.environment['PATH']}"
        return self.start_without_access(environment={"XDG_CURRENT_DESKTOP": desktop, "PATH": path})

    def opened(self):
        try:
            return (self.home.path / "settings-opened").read_text().splitlines()
        except FileNotFoundError:
            return []

    def test_a_click_opens_the_pane_of_the_running_desktop(self):
        for count, (desktop, command) in enumerate(self.COMMANDS.items(), 1):
            with self.subTest(desktop):
                program = self.start_on(desktop, command.split()[0])
                self.notifications.click(self.notifications.wait_for(SCREENSHOT_FOLDER_REQUIRED, count))
                wait_until(lambda expected=count: len(self.opened()) >= expected, f"{command} is started")
                self.assertEqual(self.opened()[-1].strip(), command)
                self.end(program)

    def test_a_click_without_that_program_opens_the_own_settings(self):
        program = self.start_on("LXQt")
        self.notifications.click(self.notifications.wait_for(SCREENSHOT_FOLDER_REQUIRED))
        Settings(program).wait_until_open().wait_for_button("Grant Access")
        self.end(program)


class UnhelpfulServers(FolderAccessTestCase):
    """With a panel, whose item must go on answering."""

    desktop_options = {"panel": panels.XFCE4_PANEL, "notification_server": "recorder"}

    # A launch that waited for the server would take six: one for its capabilities, five for the notification.
    LAUNCH_SECONDS = 4

    def assertLivesOn(self, program):
        self.assertAsksIn(program, self.home.pictures)
        program.click_icon()
        program.click_menu_item("Deletion Timeframe")
        program.click_menu_item("60 minutes")
        wait_until(lambda: self.home.stored_delay() == 60, "the choice is stored")

    def start_where_the_desktop_is_missing(self):
        self.home.desktop.rmdir()
        begun = time.monotonic()
        program = self.start_without_access()
        self.assertLess(time.monotonic() - begun, self.LAUNCH_SECONDS)
        return program

    def lines_about_notifications(self, program):
        return program.lines_starting_with("Error showing notification: ")

    def test_a_server_that_never_answers(self):
        self.notifications.behave("silent")
        program = self.start_where_the_desktop_is_missing()
        self.assertLivesOn(program)
        wait_until(lambda: self.lines_about_notifications(program), "it has given up")
        self.assertEqual(len(self.lines_about_notifications(program)), 1)
        self.end(program)

    def test_a_server_that_never_answers_delays_no_quitting(self):
        self.notifications.behave("silent")
        program = self.start_where_the_desktop_is_missing()
        begun = time.monotonic()
        self.end(program)
        self.assertLess(time.monotonic() - begun, self.LAUNCH_SECONDS)

    def test_a_server_that_answers_with_errors(self):
        self.notifications.behave("errors")
        program = self.start_where_the_desktop_is_missing()
        wait_until(lambda: self.lines_about_notifications(program), "it is told")
        self.assertIn('"Nothing can be shown"', self.lines_about_notifications(program)[0])
        self.assertLivesOn(program)
        self.end(program)

    def test_a_server_that_restarts(self):
        self.home.switch_off_desktop()
        program = self.start_without_access()
        failed = self.notifications.wait_for(ACCESS_FAILED)
        self.restart_server()
        # The number means nothing to the program any more.
        self.notifications.click(failed)
        holds_for(lambda: not self.shows_picker(program), "no picker", seconds=1)
        self.assertLivesOn(program)
        self.end(program)

    def test_a_server_that_restarts_while_the_picker_is_open(self):
        program, picker = self.start_where_the_desktop_is_switched_off()
        self.restart_server()
        self.pick(program, picker, self.home.downloads)
        granted = self.notifications.wait_for(ACCESS_GRANTED)
        self.assertEqual((granted["replaces"], granted["number"]), (0, 1))
        self.assertWatchesOnly(program, self.home.downloads, self.home.pictures)
        self.end(program)

    def restart_server(self):
        self.desktop.stop_notification_server()
        self.desktop.start_notification_server()
        self.notifications = RecordedNotifications(self.desktop)

    def shows_picker(self, program):
        return any(thing.role == "dialog" for thing in program.accessibility.showing(program.pid))


class PlainServer(FolderAccessTestCase):
    """A server whose bodies have no markup gets them as they are."""

    desktop_options = {"panel": panels.NO_PANEL, "notification_server": "plain-recorder"}

    def test_a_name_with_markup_is_handed_over_as_it_is(self):
        program, folder = self.start_with_picked_folder("<b>&amp;")
        self.assertEqual(
            self.notifications.wait_for(ACCESS_GRANTED)["body"],
            "Deskbroom now has access to detect screenshots in <b>&amp;.",
        )
        self.assertWatchesOnly(program, folder, self.home.pictures)


if __name__ == "__main__":
    run()
