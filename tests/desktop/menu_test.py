"""The menus under the status item, and the one that a panel opens itself."""

import pointer
from desktop_test_case import DesktopTestCase, OnTint2, OnXfce4Panel, run
from folder_listings import FolderListings
from other_window import OtherWindow
from tray import registered_item
from waiting import wait_until
from windows import all_windows

MAIN_MENU = ["Gallery", "Deletion Timeframe", "Settings", "Check for Updates…", "Quit Deskbroom"]
TIMEFRAME_MENU = ["1 minute", "5 minutes", "10 minutes", "30 minutes", "60 minutes"]


class Menus:
    def test_a_click_opens_the_main_menu_beside_the_panel(self):
        program = self.start()
        icon = program.wait_for_icon()
        program.click_icon()
        menu = program.wait_for_menu("Gallery")
        from_above = sorted((item.rectangle()[1], name) for name, item in menu.items() if name)
        self.assertEqual([name for _y, name in from_above], MAIN_MENU)
        top = from_above[0][0]
        self.assertGreaterEqual(top, icon[1] + icon[3] - 1)
        self.assertLess(top, icon[1] + icon[3] + 20)
        self.save_picture("menu")
        pointer.press_keys(self.desktop, "Escape")
        program.wait_for_no_menu()

    def test_the_timeframe_menu_checks_the_current_delay_and_changes_it(self):
        program = self.start(delay=10)
        for before, chosen in ((10, 60), (60, 1)):
            program.click_icon()
            program.click_menu_item("Deletion Timeframe")
            menu = program.wait_for_menu(TIMEFRAME_MENU[0])
            self.assertEqual(list(menu), TIMEFRAME_MENU)
            checked = [name for name, item in menu.items() if item.has_state("checked")]
            self.assertEqual([int(name.split()[0]) for name in checked], [before])
            self.save_picture("timeframe-menu")
            program.click_menu_item(next(name for name in TIMEFRAME_MENU if int(name.split()[0]) == chosen))
            wait_until(lambda expected=chosen: self.home.stored_delay() == expected, "the choice is stored")
            program.wait_for_no_menu()

    def test_a_delay_that_is_not_offered_leaves_every_item_unchecked(self):
        program = self.start(delay=7)
        program.click_icon()
        program.click_menu_item("Deletion Timeframe")
        menu = program.wait_for_menu(TIMEFRAME_MENU[0])
        self.assertFalse(any(item.has_state("checked") for item in menu.values()))
        pointer.press_keys(self.desktop, "Escape")
        program.wait_for_no_menu()

    def test_a_key_of_the_menu_acts_while_it_is_open(self):
        program = self.start()
        program.click_icon()
        program.wait_for_menu("Quit Deskbroom")
        pointer.press_keys(self.desktop, "ctrl+t")
        program.wait_for_menu(TIMEFRAME_MENU[0])
        pointer.press_keys(self.desktop, "Escape")
        program.wait_for_no_menu()

    def test_a_click_elsewhere_closes_the_menu(self):
        other = OtherWindow(self.desktop)
        self.addCleanup(other.close)
        program = self.start()
        program.click_icon()
        program.wait_for_menu("Gallery")
        pointer.click(self.desktop, pointer.centre(other.rectangle))
        program.wait_for_no_menu()

    def test_a_screenshot_taken_meanwhile_is_asked_about_when_the_menu_has_gone(self):
        program = self.start()
        program.click_icon()
        program.wait_for_menu("Gallery")
        listings = FolderListings(self.home.desktop)
        self.addCleanup(listings.close)
        self.take_screenshot()
        wait_until(lambda: listings.count() > 0, "the program lists the Desktop")
        self.assertIsNotNone(program.menu())
        self.assertIsNone(program.question())
        pointer.press_keys(self.desktop, "Escape")
        program.answer("Keep")

    def test_quit_ends_the_program(self):
        program = self.start()
        program.click_icon()
        program.click_menu_item("Quit Deskbroom")
        self.assertEqual(program.child.wait_for_exit(), 0)


class MenusOnXfce4Panel(OnXfce4Panel, Menus, DesktopTestCase):
    def test_the_exported_menu_has_the_same_items(self):
        program = self.start()
        program.wait_for_icon()
        layout = registered_item(self.desktop, program.pid).menu_layout()
        labels = [properties["label"] for _id, properties in layout if properties.get("type") != "separator"]
        self.assertEqual([label.replace("_", "") for label in labels], MAIN_MENU)

    def test_the_exported_menu_changes_the_timeframe_and_quits(self):
        program = self.start()
        program.wait_for_icon()
        item = registered_item(self.desktop, program.pid)
        item.choose("Deletion Timeframe")
        program.click_menu_item("30 minutes")
        wait_until(lambda: self.home.stored_delay() == 30, "the choice is stored")
        item.choose("Quit Deskbroom")
        self.assertEqual(program.child.wait_for_exit(), 0)

    def test_the_panels_own_menu_quits_the_program(self):
        program = self.start()
        program.wait_for_icon()
        program.click_icon("right")

        def panel_menu():
            for window in all_windows(self.desktop):
                if window.instance == "wrapper-2.0" and window.rectangle[3] > 100:
                    return window.rectangle
            return None

        x, y, width, height = wait_until(panel_menu, "the panel's menu is open")
        self.save_picture("panel-menu")
        # Its last item is the lowest row; the panel's menus can't be read through its tray's process.
        pointer.click(self.desktop, (x + width // 2, y + height - 16))
        self.assertEqual(program.child.wait_for_exit(), 0)


class MenusOnTint2(OnTint2, Menus, DesktopTestCase):
    pass


if __name__ == "__main__":
    run()
