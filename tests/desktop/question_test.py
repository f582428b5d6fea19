"""The question about a new screenshot, and its answers."""

import hashlib
import subprocess

import pointer
from desktop_test_case import DesktopTestCase, OnTint2, OnXfce4Panel, run
from other_window import OtherWindow
from tray import registered_item
from waiting import wait_until

NAME = "Screenshot_2024-05-01_10-11-12.png"


class Answers:
    def ask(self, **preferences):
        """A program with its question on screen about a new screenshot; returns both."""
        program = self.start(**preferences)
        program.wait_for_icon()
        self.take_screenshot(NAME)
        return program, program.wait_for_question()

    def test_the_question_shows_its_texts_and_a_preview(self):
        program, _question = self.ask()
        question = wait_until(
            lambda: (asked := program.question()) and asked.has_preview() and asked, "the preview is loaded"
        )
        self.assertEqual(
            sorted(question.texts), ["Screenshot Taken", "What would you like to do with this screenshot?"], question
        )
        self.assertEqual(sorted(question.buttons), ["Delete Now", "Delete in 5 min", "Keep"])
        self.save_picture("question")

    def test_delete_now_moves_the_file_to_the_trash(self):
        program, question = self.ask()
        program.answer("Delete Now")
        program.child.wait_for_line(f"Screenshot moved to Trash: {NAME}")
        self.assertTrashed(NAME)
        self.assertFalse((self.home.desktop / NAME).exists())
        program.wait_for_no_question()

    def test_the_pointer_can_press_a_button(self):
        program, _question = self.ask()

        def pressed():  # the first 300 ms ignore it, and the preview moves the buttons when it comes
            question = program.question()
            if question:
                pointer.click(self.desktop, pointer.centre(question.buttons["Delete Now"]))
            return self.home.trashed() == [NAME]

        wait_until(pressed, "Delete Now is pressed")
        program.child.wait_for_line(f"Screenshot moved to Trash: {NAME}")
        program.wait_for_no_question()

    def test_delete_later_with_a_stored_delay_of_0_runs_at_once(self):
        program = self.start(delay=0)
        self.take_screenshot(NAME)
        program.answer("Delete in 0 min")
        program.child.wait_for_line(f"Screenshot moved to Trash: {NAME}")
        self.assertEqual(program.lines[0], f"Scheduled deletion of {NAME} in 0 minute")
        self.assertTrashed(NAME)

    def test_keep_leaves_the_file_and_prints_nothing(self):
        program, question = self.ask()
        question.press("Keep")
        program.wait_for_no_question()
        self.assertEqual(program.stop(), 0)
        self.assertEqual(program.lines, [])
        self.assertTrue((self.home.desktop / NAME).exists())
        self.assertTrashed()

    def test_an_outside_click_closes_it_and_reaches_what_was_clicked(self):
        with_window = OtherWindow(self.desktop)
        self.addCleanup(with_window.close)
        program, _question = self.ask()
        pointer.click(self.desktop, pointer.centre(with_window.rectangle))
        program.wait_for_no_question()
        wait_until(lambda: with_window.presses() == 1, "the click reaches the other window")
        self.assertTrue((self.home.desktop / NAME).exists())
        self.assertTrashed()

    def test_typing_elsewhere_arrives_there_and_answers_nothing(self):
        text = "Hello, is this all?  y n q \r"
        other = OtherWindow(self.desktop)
        self.addCleanup(other.close)
        pointer.click(self.desktop, pointer.centre(other.rectangle))
        wait_until(other.has_keyboard, "the other window has the keyboard")
        program, _question = self.ask()
        pointer.type_text(self.desktop, text)
        wait_until(lambda: len(other.typed()) >= len(text), f"all is typed; so far {other.typed()!r}")
        self.assertEqual(other.typed(), text)
        self.assertTrue(other.has_keyboard())
        self.assertIsNotNone(program.question())
        self.assertTrue((self.home.desktop / NAME).exists())
        self.assertEqual(program.lines, [])

    def test_a_newer_screenshot_replaces_the_question_and_the_earlier_is_kept(self):
        program, first = self.ask()
        self.take_screenshot("Screenshot 2.png")

        def newer_question():
            question = program.question()
            return question if question and question.identity != first.identity else None

        wait_until(newer_question, "a new question").press("Delete Now")
        program.child.wait_for_line("Screenshot moved to Trash: Screenshot 2.png")
        self.assertTrashed("Screenshot 2.png")
        self.assertTrue((self.home.desktop / NAME).exists())

    def test_auto_copy_fills_the_clipboard_before_it_asks(self):
        program, _question = self.ask(auto_copy=True)
        copied = subprocess.run(
            ["xclip", "-o", "-selection", "clipboard", "-t", "image/png"],
            env=self.desktop.environment, capture_output=True, check=True, timeout=20,
        ).stdout
        program.child.wait_for_line(f"Copied screenshot to clipboard: {NAME}")
        self.assertEqual(self.pixels(copied), self.pixels((self.home.desktop / NAME).read_bytes()))

    def pixels(self, image):
        drawn = subprocess.run(["convert", "-", "rgba:-"], input=image, capture_output=True, check=True, timeout=20)
        return hashlib.sha256(drawn.stdout).hexdigest()


class AnswersOnXfce4Panel(OnXfce4Panel, Answers, DesktopTestCase):
    def test_the_delay_at_the_answer_counts_not_the_one_at_the_question(self):
        program, question = self.ask()
        # A click on the item would only give the question the keyboard; the panel's own menu is still there.
        registered_item(self.desktop, program.pid).choose("Deletion Timeframe")
        program.click_menu_item("30 minutes")
        wait_until(lambda: self.home.stored_delay() == 30, "the delay is stored")
        question.press("Delete in 5 min")
        program.child.wait_for_line(f"Scheduled deletion of {NAME} in 30 minutes")


class AnswersOnTint2(OnTint2, Answers, DesktopTestCase):
    def test_the_delay_at_the_answer_counts_not_the_one_at_the_question(self):
        program, question = self.ask()
        program.click_icon("right")
        program.click_menu_item("Deletion Timeframe")
        program.click_menu_item("30 minutes")
        wait_until(lambda: self.home.stored_delay() == 30, "the delay is stored")
        question.press("Delete in 5 min")
        program.child.wait_for_line(f"Scheduled deletion of {NAME} in 30 minutes")


if __name__ == "__main__":
    run()
