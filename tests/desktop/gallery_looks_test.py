"""The gallery's states in the looks that a desktop can ask for. What is asserted is little; the pictures are to be
looked at.
"""

import os

import pointer
import sample_screenshots
import stalled_folder
from desktop_test_case import DesktopTestCase, run
from gallery import open_popover, open_window, window
from stalled_folder import stalled

DELETE_TITLE = "Delete Selected Screenshots"


class GalleryLooks:
    def fill(self):
        """87 screenshots; one is wider and one narrower than the cells, and one can't be read."""
        sample_screenshots.fill(self.home.desktop, 87)
        damaged = self.home.desktop / sample_screenshots.name(14)
        status = damaged.stat()
        damaged.write_bytes(b"no image")
        os.utime(damaged, (status.st_atime, status.st_mtime))

    def select(self, gallery, *numbers):
        for number in numbers:
            gallery.click_cell(number)
        gallery.wait_for_text(f"{len(numbers)} selected")

    def save_picture_of_deleting(self, gallery, select, delete, numbers, picture_name):
        """Moves those cells' files to a Trash that doesn't answer until the picture is taken. `select` and `delete` are
        the buttons that begin it.
        """
        files = self.home.trash / "files"
        files.mkdir(parents=True)
        with stalled(files):
            gallery.click_button(select)
            self.select(gallery, *numbers)
            gallery.click_button(delete)
            gallery.wait_for_sheet(DELETE_TITLE)
            gallery.click_button("Delete All")
            gallery.wait_for_button("Deleting...")
            self.save_picture(picture_name, rests=False)
        gallery.wait_for_button(select)
        self.assertTrashed(*(sample_screenshots.name(number) for number in numbers))

    def test_the_popover(self):
        self.fill()
        program = self.start()
        gallery = open_popover(program)
        gallery.wait_for_text("+ 78 more")
        self.assertOnScreen(gallery)
        gallery.point_at_cell(5)
        self.save_picture("popover-grid")
        gallery.click_button("Select Multiple")
        self.select(gallery, 1, 4, 8)
        self.save_picture("popover-selection")
        gallery.click_button("Delete All")
        gallery.wait_for_sheet(DELETE_TITLE)
        self.save_picture("popover-delete-sheet")
        gallery.click_button("Cancel")
        gallery.wait_for_no_sheet()
        gallery.click_button("Cancel")
        gallery.wait_for_text("87 screenshots")
        gallery.click_cell(2)
        gallery.wait_for_sheet("Screenshot Copied")
        self.save_picture("popover-copied")
        gallery.dismiss_copied()

    def test_the_window(self):
        self.fill()
        program = self.start()
        recent = open_popover(program)
        recent.click_button("View All")
        gallery = window(program).wait_until_open()
        recent.wait_until_closed()
        gallery.wait_for_text("SHOWING 30 OF 87")
        self.assertOnScreen(gallery)
        gallery.point_at_cell(9)
        self.save_picture("window-standard")
        for size in ("Compact", "Large", "Standard"):
            gallery.click_option(size)
            pointer.move(self.desktop, (0, 0))
            self.save_picture(f"window-{size.lower()}")
        gallery.click_button("Select")
        self.select(gallery, 2, 9, 10)
        self.save_picture("window-selection")
        gallery.click_button("Delete")
        gallery.wait_for_sheet(DELETE_TITLE)
        self.save_picture("window-delete-sheet")
        gallery.click_button("Cancel")
        gallery.wait_for_no_sheet()
        gallery.click_button("Copy")
        gallery.wait_for_sheet("Screenshot Copied")
        self.save_picture("window-copied")
        gallery.dismiss_copied()
        gallery.press("Load More (57 remaining)")
        gallery.wait_for_text("SHOWING 60 OF 87")
        gallery.click_cell(8, "right")
        program.wait_for_menu("Show in File Manager")
        self.save_picture("window-menu")
        program.click_menu_item("Copy")
        gallery.dismiss_copied()

    def test_the_popover_while_deleting(self):
        self.fill()
        gallery = open_popover(self.start(environment=stalled_folder.environment()))
        gallery.wait_for_text("+ 78 more")
        self.save_picture_of_deleting(gallery, "Select Multiple", "Delete All", (1, 4, 8), "popover-deleting")

    def test_the_window_while_deleting(self):
        self.fill()
        gallery = open_window(self.start(environment=stalled_folder.environment()))
        gallery.wait_for_text("SHOWING 30 OF 87")
        self.save_picture_of_deleting(gallery, "Select", "Delete", (2, 9, 10), "window-deleting")

    def test_while_loading(self):
        self.fill()
        program = self.start(environment=stalled_folder.environment())
        with stalled(self.home.desktop):
            recent = open_popover(program)
            recent.wait_for_text("Loading screenshots...")
            self.save_picture("popover-loading", rests=False)
            recent.press("Expand")
            gallery = window(program).wait_until_open()
            gallery.wait_for_text("Loading your screenshots...")
            self.save_picture("window-loading", rests=False)
        gallery.wait_for_text("SHOWING 30 OF 87")

    def test_without_screenshots(self):
        program = self.start()
        recent = open_popover(program)
        recent.wait_for_text("No screenshots found")
        self.save_picture("popover-empty")
        recent.click_button("Expand")
        gallery = window(program).wait_until_open()
        recent.wait_until_closed()
        gallery.wait_for_text("No Screenshots")
        self.save_picture("window-empty")

    def test_without_access(self):
        sample_screenshots.fill(self.home.pictures, 14)
        self.home.desktop.chmod(0)
        program = self.start(listed=(self.home.downloads, 1))
        recent = open_popover(program)
        recent.click_button("Expand")
        gallery = window(program).wait_until_open()
        recent.wait_until_closed()
        gallery.wait_for_button("Desktop Folder Access Required")
        gallery.wait_for_text("14 SCREENSHOTS")
        self.save_picture("window-access-banner")

    def assertOnScreen(self, gallery):
        x, y, width, height = gallery.rectangle
        screen_width, screen_height = self.desktop.size
        self.assertTrue(0 <= x and x + width <= screen_width and 0 <= y and y + height <= screen_height)

    def picture_path(self, name):
        return super().picture_path(f"gallery-{self.picture_prefix}-{name}")


class GalleryInLight(GalleryLooks, DesktopTestCase):
    desktop_options = {"size": (1280, 1024)}
    picture_prefix = "light"


class GalleryInDark(GalleryLooks, DesktopTestCase):
    desktop_options = {"look": "dark", "size": (1280, 1024)}
    picture_prefix = "dark"


class GalleryInLightAtScaleTwo(GalleryLooks, DesktopTestCase):
    desktop_options = {"scale": 2, "size": (2560, 2048)}
    picture_prefix = "light-scale-2"


class GalleryInDarkAtScaleTwo(GalleryLooks, DesktopTestCase):
    desktop_options = {"look": "dark", "scale": 2, "size": (2560, 2048)}
    picture_prefix = "dark-scale-2"


if __name__ == "__main__":
    run()
