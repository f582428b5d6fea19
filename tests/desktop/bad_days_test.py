"""Files and folders that aren't as they should be. Nothing is lost, and the program goes on."""

import os
import shutil
import unittest

from desktop_test_case import DesktopTestCase, OnXfce4Panel, run
from folder_listings import FolderListings
from images import png
from onboarding import Onboarding
from waiting import wait_until

NAME = "Screenshot_2024-05-01_10-11-12.png"


class BadDays(OnXfce4Panel, DesktopTestCase):
    def assertAsksAndDeletes(self, program, name=NAME):
        """The program is alive and well: it asks about one more screenshot and deletes it."""
        before = len(self.home.trashed())
        path = self.take_screenshot(name)
        program.answer("Delete Now")
        wait_until(lambda: not path.exists(), f"{name!r} is gone; printed: {program.lines}")
        wait_until(lambda: len(self.home.trashed()) == before + 1, f"{name!r} is in the Trash")

    def assertKeepsSpinning(self, content):
        program = self.start()
        self.take_screenshot(content=content)
        program.wait_for_question()
        listings = FolderListings(self.home.desktop)
        self.addCleanup(listings.close)
        (self.home.desktop / "note.txt").write_text("makes the next tick list this folder")
        wait_until(lambda: listings.count() > 0, "a tick later")
        self.assertFalse(program.question().has_preview())
        program.answer("Delete Now")
        program.child.wait_for_line(f"Screenshot moved to Trash: {NAME}")

    def test_a_file_that_is_no_image_is_asked_about_without_a_preview(self):
        self.assertKeepsSpinning(b"This is no image.\n")

    def test_an_image_that_is_cut_short_is_asked_about_without_a_preview(self):
        self.assertKeepsSpinning(png()[:300])

    def test_an_empty_file_is_asked_about_without_a_preview(self):
        self.assertKeepsSpinning(b"")

    def test_names_that_could_do_harm_are_only_names(self):
        program = self.start()
        names = {
            "a line break": "Screenshot one\ntwo.png",
            "markup": "Screenshot <b>&amp;<img src='x'>.png",
            "right to left": "Screenshot \u202egnp.exe\u202c \u05e9\u05dc\u05d5\u05dd.png",
            "255 bytes": "Screenshot " + "\u00e9" * 120 + ".png",
            "a dash in front of words": "Screenshot --help; rm -rf .png",
        }
        self.assertEqual(len(os.fsencode(names["255 bytes"])), 255)
        for count, (kind, name) in enumerate(names.items(), 1):
            with self.subTest(kind):
                self.assertAsksAndDeletes(program, name)
                lines = wait_until(
                    lambda expected=count: len(program.lines) >= expected and program.lines, "a line for it"
                )
                self.assertEqual(len(lines), count, lines)
                self.assertTrue(lines[-1].startswith("Screenshot moved to Trash: Screenshot "), lines[-1])
                self.assertFalse(any(ord(character) < 32 for character in lines[-1]), lines[-1])

    def test_a_name_that_is_not_utf8_is_passed_over_silently(self):
        program = self.start()
        bad = os.fsencode(self.home.desktop) + b"/Screenshot \xff\xfe.png"
        with open(bad, "wb") as file:
            file.write(png())
        self.assertAsksAndDeletes(program)
        self.assertEqual(program.lines, [f"Screenshot moved to Trash: {NAME}"])
        self.assertTrue(os.path.exists(bad))

    def test_a_symbolic_link_goes_and_what_it_points_to_stays(self):
        target = self.home.pictures / "holiday.png"
        target.write_bytes(png())
        program = self.start()
        (self.home.desktop / NAME).symlink_to(target)
        program.answer("Delete Now")
        program.child.wait_for_line(f"Screenshot moved to Trash: {NAME}")
        self.assertTrue(target.exists())
        self.assertTrashed(NAME)

    def test_a_file_that_goes_before_the_answer_is_reported_as_gone(self):
        program = self.start()
        path = self.take_screenshot()
        program.wait_for_question()
        path.unlink()
        program.answer("Delete Now")
        program.child.wait_for_line(f"Failed to delete screenshot: Screenshot '{NAME}' no longer exists")
        self.assertAsksAndDeletes(program, "Screenshot 2.png")

    def test_what_lies_at_the_path_at_the_answer_goes_to_the_trash(self):
        program = self.start()
        path = self.take_screenshot()
        program.wait_for_question()
        replacement = self.home.pictures / "other"
        replacement.write_bytes(b"replaced meanwhile")
        replacement.replace(path)
        program.answer("Delete Now")
        program.child.wait_for_line(f"Screenshot moved to Trash: {NAME}")
        self.assertEqual((self.home.trash / "files" / NAME).read_bytes(), b"replaced meanwhile")

    def test_equal_names_from_two_folders_both_fit_into_the_trash(self):
        self.home.desktop.rmdir()  # without it, the other folders are watched
        program = self.start(listed=(self.home.downloads, 1))
        for folder in (self.home.pictures, self.home.downloads):
            self.take_screenshot(folder=folder)
            program.answer("Delete Now")
        wait_until(lambda: len(self.home.trashed()) == 2, "both are in the Trash")
        self.assertEqual(program.lines_starting_with("Screenshot"), [f"Screenshot moved to Trash: {NAME}"] * 2)

    def test_a_folder_that_vanishes_and_returns_is_watched_again(self):
        program = self.start()
        shutil.rmtree(self.home.desktop)
        listings = FolderListings(self.home.pictures)
        self.addCleanup(listings.close)
        (self.home.pictures / "note.txt").write_text("makes the next tick list this folder")
        wait_until(lambda: listings.count() > 0, "a tick without the Desktop")
        self.home.desktop.mkdir()
        self.assertAsksAndDeletes(program)
        self.assertEqual(
            set(program.lines),
            {"Could not resolve bookmark: No such file or directory", f"Screenshot moved to Trash: {NAME}"},
        )

    @unittest.skipIf(os.geteuid() == 0, "root may write everywhere")
    def test_a_trash_that_cannot_be_written_leaves_the_file_and_one_line(self):
        self.home.trash.mkdir()
        self.home.trash.chmod(0o555)
        program = self.start()
        path = self.take_screenshot()
        program.answer("Delete Now")
        wait_until(lambda: program.lines_starting_with("Failed to delete screenshot: "), "the failure is printed")
        program.wait_for_no_question()
        self.assertEqual(len(program.lines), 1, program.lines)
        self.assertTrue(path.exists())
        self.home.trash.chmod(0o755)
        self.assertAsksAndDeletes(program, "Screenshot 2.png")

    @unittest.skipIf(os.geteuid() == 0, "root may read everywhere")
    def test_a_folder_that_cannot_be_read_is_passed_over_silently(self):
        self.home.desktop.rmdir()
        self.home.pictures.chmod(0)
        program = self.start(listed=(self.home.downloads, 1))
        self.take_screenshot(folder=self.home.downloads)
        program.answer("Delete Now")
        program.child.wait_for_line(f"Screenshot moved to Trash: {NAME}")
        self.assertEqual(
            program.lines,
            ["Error accessing Desktop folder: Desktop folder not found", f"Screenshot moved to Trash: {NAME}"],
        )

    def test_a_thousand_screenshots_at_once_ask_one_question_and_lose_nothing(self):
        program = self.start()
        image = png(64, 40)
        for number in range(1000):
            (self.home.desktop / f"Screenshot {number:04}.png").write_bytes(image)
        program.answer("Keep")
        self.assertEqual(len(os.listdir(self.home.desktop)), 1000)
        self.assertTrashed()
        self.assertAsksAndDeletes(program, "Screenshot after all.png")

    def test_a_huge_image_is_previewed(self):
        image = png(16_000, 12_000)
        program = self.start()
        self.take_screenshot(content=image)
        program.wait_for_question()
        wait_until(lambda: program.question().has_preview(), "the preview is loaded")

    def test_damaged_preferences_are_set_aside_and_the_defaults_hold(self):
        damaged = '{"timeframeInMinutes": 7, "autoCopy'
        self.home.write_preferences(damaged)
        # Without preferences, a user is a new one.
        program = self.start(listed=(self.home.desktop, 1))
        Onboarding(program).wait_until_open().go_through()
        self.take_screenshot()
        program.answer("Keep")
        program.click_icon()
        program.click_menu_item("Deletion Timeframe")
        program.click_menu_item("10 minutes")
        wait_until(lambda: self.home.preferences.exists() and self.home.stored_delay() == 10, "the choice is stored")
        kept = list(self.home.preferences.parent.glob("*.damaged*"))
        self.assertEqual([path.read_text() for path in kept], [damaged])

    def test_a_hidden_file_is_never_asked_about(self):
        program = self.start()
        self.take_screenshot(".Screenshot 1.png")
        self.assertAsksAndDeletes(program)
        self.assertTrue((self.home.desktop / ".Screenshot 1.png").exists())

    def test_an_old_file_that_is_moved_in_is_not_asked_about(self):
        program = self.start()
        old = self.home.path / "old.png"
        old.write_bytes(png())
        os.utime(old, (1_700_000_000, 1_700_000_000))
        shutil.copy2(old, self.home.desktop / "Screenshot old.png")
        self.assertAsksAndDeletes(program)
        self.assertEqual(program.lines, [f"Screenshot moved to Trash: {NAME}"])


if __name__ == "__main__":
    run()
