"""The gallery, in the popover and in its window: what is shown, copied, selected and thrown away."""

import subprocess

import pointer
import sample_screenshots
from desktop_test_case import DesktopTestCase, OnTint2, OnXfce4Panel, run
from drop_target import DropTarget
from gallery import open_popover, open_window
from other_window import OtherWindow
from waiting import wait_until, wait_until_still

DELETE_TITLE = "Delete Selected Screenshots"


class GalleryTestCase(DesktopTestCase):
    def fill(self, count, first=1):
        return sample_screenshots.fill(self.home.desktop, count, first)

    def clipboard(self, kind):
        """The clipboard's contents, read by another program."""
        return subprocess.run(
            ["xclip", "-o", "-selection", "clipboard", "-t", kind],
            env=self.desktop.environment, capture_output=True, check=True, timeout=20,
        ).stdout


class InThePopover:
    """On every panel."""

    def test_it_shows_nine_and_how_many_more_there_are(self):
        self.fill(12)
        program = self.start()
        gallery = open_popover(program)
        gallery.wait_for_text("12 screenshots")
        self.assertEqual(len(gallery.all_cells()), 9)
        self.assertIn("+ 3 more", gallery.texts)
        self.save_picture("gallery-popover")

    def test_a_click_copies_the_screenshot(self):
        names = self.fill(3)
        program = self.start()
        gallery = open_popover(program)
        gallery.click_cell(2)
        self.assertEqual(gallery.dismiss_copied(), f"'{names[1]}' has been copied to your clipboard")
        self.assertEqual(self.clipboard("image/png"), (self.home.desktop / names[1]).read_bytes())
        self.assertTrue(gallery.is_open())

    def test_a_click_inside_leaves_it_open_and_one_elsewhere_closes_it(self):
        self.fill(3)
        other = OtherWindow(self.desktop)
        self.addCleanup(other.close)
        program = self.start()
        gallery = open_popover(program)
        gallery.wait_for_text("3 screenshots")
        gallery.click_button("Select Multiple")
        gallery.wait_for_text("0 selected")
        pointer.click(self.desktop, pointer.centre(other.rectangle))
        gallery.wait_until_closed()
        wait_until(lambda: other.presses() == 1, "the click reaches the other window")

    def test_a_question_takes_its_place(self):
        self.fill(3)
        program = self.start()
        gallery = open_popover(program)
        self.take_screenshot()
        program.wait_for_question()
        gallery.wait_until_closed()
        program.answer("Keep")

    def test_it_expands_to_the_window(self):
        self.fill(12)
        program = self.start()
        gallery = open_window(program)
        gallery.wait_for_text("12 SCREENSHOTS")
        self.assertEqual(len(gallery.all_cells()), 12)

    def test_tab_goes_round_through_every_control(self):
        self.fill(3)
        program = self.start()
        gallery = open_popover(program)
        gallery.wait_for_text("3 screenshots")
        gallery.click_button("Select Multiple")
        gallery.wait_for_text("0 selected")
        gallery.wait_for_stops("Tab", "View All", "Copy All", "Cancel", "cell 1")
        gallery.wait_for_stops("shift+Tab", "Cancel", "Copy All", "View All", "cell 1")
        pointer.press_keys(self.desktop, "Escape")
        gallery.wait_for_text("3 screenshots")
        gallery.wait_for_stops("Tab", "View All", "Select Multiple", "Refresh", "Expand", "cell 1")

    def test_tab_goes_round_where_there_is_nothing(self):
        gallery = open_popover(self.start())
        gallery.wait_for_text("0 screenshots")
        # It has the keyboard from the first click into it.
        pointer.click(self.desktop, pointer.centre(gallery.rectangle))
        gallery.wait_for_stops("Tab", "Expand", "Refresh", "Expand")
        gallery.wait_for_stops("shift+Tab", "Refresh", "Expand")


class PopoverOnXfce4Panel(OnXfce4Panel, InThePopover, GalleryTestCase):
    pass


class PopoverOnTint2(OnTint2, InThePopover, GalleryTestCase):
    pass


class GalleryWindow(OnXfce4Panel, GalleryTestCase):
    # Wide enough for another window beside the gallery's.
    desktop_options = {**OnXfce4Panel.desktop_options, "size": (1600, 1024)}

    def open(self, count):
        """Returns the program, the window and the names of the files, newest first."""
        names = self.fill(count)
        program = self.start()
        return program, open_window(program), names

    def test_three_that_are_selected_go_to_the_trash_once_that_is_confirmed(self):
        program, gallery, names = self.open(8)
        gallery.click_button("Select")
        for number in (2, 3, 5):
            gallery.click_cell(number)
        gallery.wait_for_text("3 selected")
        self.assertEqual(gallery.selected(), [2, 3, 5])
        gallery.click_button("Delete")
        sheet = gallery.wait_for_sheet(DELETE_TITLE)
        self.assertEqual(sheet.description, "Are you sure you want to move 3 screenshots to the Trash?")
        self.assertTrashed()
        gallery.click_button("Delete All")
        gallery.wait_for_text("5 SCREENSHOTS")
        self.assertTrashed(names[1], names[2], names[4])
        self.assertEqual(gallery.selected(), [])
        self.assertIn("Select", gallery.buttons)

    def test_cancelling_the_confirmation_keeps_all(self):
        program, gallery, names = self.open(3)
        gallery.click_button("Select")
        gallery.click_cell(1)
        gallery.wait_for_text("1 selected")
        gallery.click_button("Delete")
        sheet = gallery.wait_for_sheet(DELETE_TITLE)
        self.assertEqual(sheet.description, "Are you sure you want to move 1 screenshot to the Trash?")
        pointer.press_keys(self.desktop, "Escape")
        gallery.wait_for_no_sheet()
        self.assertEqual(gallery.selected(), [1])
        pointer.press_keys(self.desktop, "Escape")
        gallery.wait_for_text("3 SCREENSHOTS")
        self.assertTrue(gallery.is_open())
        gallery.close_with("Escape")
        self.assertTrashed()

    def test_five_of_forty_that_go_are_replaced_by_the_next(self):
        program, gallery, names = self.open(40)
        gallery.wait_for_text("SHOWING 30 OF 40")
        gallery.click_button("Select")
        for number in range(1, 6):
            gallery.click_cell(number)
        gallery.wait_for_text("5 selected")
        gallery.click_button("Delete")
        gallery.wait_for_sheet(DELETE_TITLE)
        gallery.click_button("Delete All")
        gallery.wait_for_text("SHOWING 30 OF 35")
        self.assertEqual(len(gallery.all_cells()), 30)
        self.assertIn("Load More (5 remaining)", gallery.buttons)
        self.assertTrashed(*names[:5])

    def test_more_are_loaded_on_demand(self):
        program, gallery, names = self.open(31)
        gallery.wait_for_text("Showing 30 of 31 screenshots")
        gallery.press("Load More (1 remaining)")
        gallery.wait_for_text("31 SCREENSHOTS")
        self.assertEqual(len(gallery.all_cells()), 31)
        self.assertNotIn("Showing 30 of 31 screenshots", gallery.texts)

    def test_several_that_are_copied_arrive_as_their_files(self):
        program, gallery, names = self.open(4)
        gallery.click_button("Select")
        gallery.click_cell(1)
        gallery.click_cell(3)
        gallery.wait_for_text("2 selected")
        gallery.click_button("Copy")
        self.assertEqual(gallery.dismiss_copied(), "2 screenshots copied to your clipboard")
        uris = [(self.home.desktop / names[index]).as_uri() for index in (0, 2)]
        self.assertEqual(self.clipboard("text/uri-list").decode().split(), uris)
        self.assertEqual(gallery.selected(), [])

    def test_a_refresh_shows_what_changed_outside(self):
        program, gallery, names = self.open(3)
        gallery.wait_for_text("3 SCREENSHOTS")
        (self.home.desktop / names[0]).unlink()
        sample_screenshots.fill(self.home.downloads, 2, first=10)
        gallery.click_button("Refresh")
        gallery.wait_for_text("4 SCREENSHOTS")

    def test_the_keyboard_alone_does_it_all(self):
        program, gallery, names = self.open(8)
        gallery.wait_for_text("8 SCREENSHOTS")
        pointer.press_keys(self.desktop, "Home", "Right", "Down")
        wait_until(lambda: gallery.focused() == 8, f"cell 8 has the keyboard, not {gallery.focused()}")
        self.save_picture("gallery-window-focus")
        pointer.press_keys(self.desktop, "Return")
        self.assertEqual(gallery.wait_for_sheet("Screenshot Copied").description,
                         f"'{names[7]}' has been copied to your clipboard")
        pointer.press_keys(self.desktop, "Return")
        gallery.wait_for_no_sheet()
        # The selection mode's button is before the grid.
        for _tab in range(8):
            if gallery.buttons["Select"].has_state("focused"):
                break
            pointer.press_keys(self.desktop, "shift+Tab")
        pointer.press_keys(self.desktop, "space")
        gallery.wait_for_text("0 selected")
        pointer.press_keys(self.desktop, "ctrl+a")
        gallery.wait_for_text("8 selected")
        pointer.press_keys(self.desktop, "Delete")
        gallery.wait_for_sheet(DELETE_TITLE)
        pointer.press_keys(self.desktop, "Tab", "space")
        gallery.wait_for_text("0 SCREENSHOTS")
        self.assertTrashed(*names)

    def test_tab_goes_round_through_every_control(self):
        program, gallery, names = self.open(31)
        gallery.wait_for_text("SHOWING 30 OF 31")
        pointer.press_keys(self.desktop, "Home")
        more = "Load More (1 remaining)"
        gallery.wait_for_stops("Tab", more, "Standard", "Refresh", "Select", "cell 1", more)
        gallery.wait_for_stops("shift+Tab", "cell 1", "Select", "Refresh", "Standard", more, "cell 1", "Select")
        pointer.press_keys(self.desktop, "space")
        gallery.wait_for_text("0 selected")
        gallery.wait_for_stops("Tab", more, "Standard", "Copy", "Cancel", "cell 1", more)

    def test_more_that_the_keyboard_loads_leave_it_in_the_grid(self):
        program, gallery, names = self.open(31)
        gallery.wait_for_text("SHOWING 30 OF 31")
        pointer.press_keys(self.desktop, "Home")
        gallery.wait_for_stops("Tab", "Load More (1 remaining)")
        pointer.press_keys(self.desktop, "space")
        gallery.wait_for_text("31 SCREENSHOTS")
        self.assertEqual(gallery.focused_control(), "cell 1")
        gallery.wait_for_stops("End", "cell 31")

    def test_another_grid_size_keeps_the_focused_cell_in_sight(self):
        program, gallery, names = self.open(30)
        gallery.click_option("Large")
        pointer.press_keys(self.desktop, "End")
        wait_until(lambda: gallery.focused() == 30, "cell 30 has the keyboard")
        for size in ("Standard", "Large", "Compact", "Large"):
            gallery.click_option(size)
            self.assertTrue(self.is_in_sight(gallery, gallery.cell(30)), size)
        self.save_picture("gallery-window-larger-while-scrolled")

    def test_tab_brings_the_cell_it_comes_to_into_sight(self):
        program, gallery, names = self.open(31)
        gallery.wait_for_text("SHOWING 30 OF 31")
        gallery.click_option("Large")
        pointer.press_keys(self.desktop, "Home")
        more = "Load More (1 remaining)"
        gallery.wait_for_stops("Tab", more)
        self.assertTrue(self.is_in_sight(gallery, gallery.buttons[more]))
        gallery.wait_for_stops("shift+Tab", "cell 1")
        self.assertTrue(self.is_in_sight(gallery, gallery.cell(1)))
        self.save_picture("gallery-window-focus-brought-into-sight")
        pointer.press_keys(self.desktop, "End")
        gallery.wait_for_stops("shift+Tab", "Select", "Refresh", "Large")
        gallery.wait_for_stops("Tab", "Refresh", "Select", "cell 30")
        self.assertTrue(self.is_in_sight(gallery, gallery.cell(30)))

    def is_in_sight(self, gallery, node):
        """Whether all of it is in the window."""
        _x, top, _width, height = gallery.rectangle
        _x, node_top, _width, node_height = wait_until_still(node.rectangle, "it stands still")
        return top <= node_top and node_top + node_height <= top + height

    def test_tab_goes_round_where_there_is_nothing(self):
        program, gallery, names = self.open(0)
        gallery.wait_for_text("0 SCREENSHOTS")
        self.assertIsNone(gallery.focused_control())
        gallery.wait_for_stops("Tab", "Standard", "Refresh", "Standard")
        gallery.wait_for_stops("shift+Tab", "Refresh", "Standard")

    def test_a_pointer_that_empties_it_leaves_no_focus_ring(self):
        program, gallery, names = self.open(2)
        gallery.click_button("Select")
        gallery.click_cell(1)
        gallery.click_cell(2)
        gallery.wait_for_text("2 selected")
        gallery.click_button("Delete")
        gallery.wait_for_sheet(DELETE_TITLE)
        gallery.click_button("Delete All")
        gallery.wait_for_text("No Screenshots")
        self.assertTrashed(*names)
        self.assertIsNone(gallery.focused_control())
        self.save_picture("gallery-window-emptied")
        gallery.wait_for_stops("Tab", "Standard")

    def test_a_screen_reader_is_told_where_the_keyboard_is_and_what_it_selects(self):
        program, gallery, names = self.open(4)
        gallery.wait_for_text("4 SCREENSHOTS")
        paths = [cell.path for cell in gallery.all_cells()]

        def wait_to_hear(state, number, is_on=True):
            def is_latest():
                heard = program.accessibility.heard(state, is_on)
                return heard and heard[-1].path == paths[number - 1]

            wait_until(is_latest, f"cell {number} is said to be {state}: {is_on}")

        pointer.press_keys(self.desktop, "Home", "Right")
        wait_to_hear("focused", 2)
        pointer.press_keys(self.desktop, "End")
        wait_to_hear("focused", 4)
        gallery.press("Select")
        gallery.wait_for_text("0 selected")
        pointer.press_keys(self.desktop, "space")
        wait_to_hear("selected", 4)
        pointer.press_keys(self.desktop, "space")
        wait_to_hear("selected", 4, is_on=False)
        pointer.press_keys(self.desktop, "space", "Delete")
        gallery.wait_for_sheet(DELETE_TITLE)
        gallery.press("Delete All")
        gallery.wait_for_text("3 SCREENSHOTS")
        # What has gone took the keyboard's place with it.
        wait_to_hear("focused", 3)

    def test_a_thumbnail_that_is_dragged_out_drops_its_file(self):
        program, gallery, names = self.open(3)
        gallery.wait_for_text("3 SCREENSHOTS")
        target = DropTarget(self.desktop, (20, 300, 150, 150))
        self.addCleanup(target.close)
        pointer.drag(
            self.desktop, pointer.centre(gallery.cell(2).rectangle()), target.centre,
            lambda: target.wait_for_line("entered"),
        )
        target.wait_for_line(f"dropped: {(self.home.desktop / names[1]).as_uri()}")
        # Copying is all that may happen to it.
        target.wait_for_line("possible actions: 1")
        self.assertTrue((self.home.desktop / names[1]).exists())
        self.assertIsNone(gallery.sheet())

    def test_the_menu_of_a_thumbnail_moves_it_to_the_trash(self):
        program, gallery, names = self.open(3)
        gallery.click_cell(2, "right")
        program.click_menu_item("Move to Trash")
        sheet = gallery.wait_for_sheet(DELETE_TITLE)
        self.assertEqual(sheet.description, "Are you sure you want to move 1 screenshot to the Trash?")
        gallery.click_button("Delete All")
        gallery.wait_for_text("2 SCREENSHOTS")
        self.assertTrashed(names[1])

    def test_one_that_is_no_image_stands_among_the_others(self):
        (self.home.desktop / "Screenshot broken.png").write_bytes(b"no image")
        program, gallery, names = self.open(2)
        gallery.wait_for_text("3 SCREENSHOTS")
        gallery.click_cell(1)
        self.assertEqual(gallery.dismiss_copied(), "'Screenshot broken.png' has been copied to your clipboard")
        program.child.wait_for_line(f"Failed to load image from {self.home.desktop / 'Screenshot broken.png'}")

    def test_asked_for_again_it_is_the_same_window(self):
        program, gallery, names = self.open(2)
        again = open_popover(program)
        again.click_button("View All")
        again.wait_until_closed()
        self.assertTrue(gallery.is_open())
        titles = [node.name for node in program.accessibility.application(program.pid).children()
                  if node.has_state("showing")]
        self.assertEqual(titles.count("Screenshot Gallery"), 1)


if __name__ == "__main__":
    run()
