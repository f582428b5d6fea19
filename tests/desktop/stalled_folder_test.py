"""Folders that stop answering, as those on a network whose server goes away, and answer again."""

import panels
import sample_screenshots
import stalled_folder
from desktop_test_case import run
from folder_access_test_case import ACCESS_FAILED, FolderAccessTestCase
from folder_picker import FolderPicker
from gallery import open_popover, open_window
from settings import AUTO_COPY, open_settings
from stalled_folder import stalled


class StalledFolders(FolderAccessTestCase):
    desktop_options = {
        "panel": panels.XFCE4_PANEL,
        "window_manager": "xfwm4",
        "notification_server": "recorder",
    }

    def start(self, **options):
        return super().start(environment=stalled_folder.environment(), **options)

    def test_what_comes_meanwhile_is_asked_about_afterwards(self):
        program = self.start()
        with stalled(self.home.desktop):
            path = self.take_screenshot()
            gallery = open_popover(program)
            gallery.wait_for_text("Loading screenshots...")
            gallery.close_with("Escape")
        program.answer("Delete Now")
        program.child.wait_for_line(f"Screenshot moved to Trash: {path.name}")

    def test_the_gallery_shows_what_is_there_once_it_answers(self):
        sample_screenshots.fill(self.home.desktop, 5)
        program = self.start()
        with stalled(self.home.desktop):
            gallery = open_window(program)
            gallery.wait_for_text("Loading your screenshots...")
            gallery.close_with("Escape")
            gallery = open_window(program)
            gallery.wait_for_text("Loading your screenshots...")
        gallery.wait_for_text("5 SCREENSHOTS")

    def test_the_settings_work_and_claim_nothing_about_it(self):
        program = self.start()
        with stalled(self.home.desktop):
            settings = open_settings(program)
            settings.click_switch(AUTO_COPY)
            settings.wait_for_switch(AUTO_COPY, True)
            self.assertNotIn("Granted", settings.texts)
            self.assertNotIn("Grant Access", settings.buttons)
            self.save_picture("settings-unanswered")
        settings.wait_for_text("Granted")

    def test_another_folder_can_be_picked_meanwhile(self):
        folder = self.home.path / "Shots"
        folder.mkdir()
        program = self.start()
        with stalled(self.home.desktop):
            (self.home.desktop / "note.txt").write_text("makes the watcher list the folder, and hang")
            settings = open_settings(program)
            settings.click_button("Change…")
            self.pick(program, FolderPicker(program), folder)
            settings.wait_for_text("Granted")
            self.assertAsksIn(program, folder)

    def test_a_folder_can_be_picked_from_the_notification_where_none_answers(self):
        folder = self.home.path / "Shots"
        folder.mkdir()
        self.home.switch_off_desktop()
        program = self.start_without_access()
        failure = self.notifications.wait_for(ACCESS_FAILED)
        with stalled(self.home.pictures), stalled(self.home.downloads):
            (self.home.pictures / "note.txt").write_text("makes the watcher list the folder, and hang too")
            # Two listings that hang leave no thread for another.
            for _ in range(2):
                gallery = open_window(program)
                gallery.wait_for_text("Loading your screenshots...")
                gallery.close_with("Escape")
            self.notifications.click(failure)
            self.pick(program, FolderPicker(program), folder)

    def test_the_program_ends_all_the_same(self):
        program = self.start()
        with stalled(self.home.desktop):
            open_window(program).wait_for_text("Loading your screenshots...")
            self.assertEqual(program.stop(), 0)


if __name__ == "__main__":
    run()
