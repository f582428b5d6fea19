"""Shows the program at work where there is no desktop: opens a private one, goes through the first-run pages,
takes a real screenshot, has the question asked and answers it. Every stage is printed and kept as a picture; a
stage that doesn't come ends it.

    demonstration.py PROGRAM PICTURE_FOLDER [--dark] [--scale N] [--bottom]
"""

import argparse
import os
import sys
import time
from pathlib import Path

import pointer
from bus import call
from deskbroom import Deskbroom
from onboarding import ACCESS_GRANTED, CONTINUE, ENABLE_NOTIFICATIONS, GET_STARTED, Onboarding
from private_desktop import PrivateDesktop
from waiting import wait_until
from windows import all_windows

_POINTS = (1280, 800)


class Stages:
    """Prints what happened, numbered, beside the name of its picture."""

    def __init__(self, desktop, folder):
        self._desktop = desktop
        self._folder = folder
        self._number = 0

    def done(self, what, picture):
        self._number += 1
        path = self._folder / f"{self._number}-{picture}.png"
        self._desktop.save_picture(path)
        print(f"{self._number}. {what:<68} {path}", flush=True)


def notify(desktop, summary, body):
    """Has the notification server say it, so that it stands in the picture."""
    call(
        desktop.session_bus, "org.freedesktop.Notifications", "/org/freedesktop/Notifications",
        "org.freedesktop.Notifications", "Notify", "(susssasa{sv}i)",
        "ls", 0, "", summary, body, [], {}, 0,
    )
    wait_until(
        lambda: any(window.title == "Dunst" and window.rectangle[3] > 20 for window in all_windows(desktop)),
        "the notification is on screen",
    )


def take_screenshot(desktop):
    """With Xfce's own tool, under the name that it would give; returns the file's path."""
    path = desktop.home.desktop / time.strftime("Screenshot_%Y-%m-%d_%H-%M-%S.png")
    # Given a folder alone, it would open a dialog first.
    desktop.run(["xfce4-screenshooter", "--fullscreen", "--save", str(path)])
    return path


def go_through_first_run(program, stages):
    pages = Onboarding(program).wait_until_open()
    pages.wait_for_page(1)
    stages.done("A new user is welcomed.", "welcome")
    pages.click(GET_STARTED)
    pages.wait_for_page(2)
    pages.click(ENABLE_NOTIFICATIONS)
    pages.wait_for_button(CONTINUE)
    stages.done("Notifications are switched on.", "notifications")
    pages.click(CONTINUE)
    pages.wait_for_page(3)
    pages.wait_for_button(ACCESS_GRANTED)
    stages.done("The Desktop folder can be read.", "folder")
    pages.click(CONTINUE)
    pages.wait_for_page(4)
    stages.done("That is all.", "done")
    pages.finish()


def demonstrate(desktop, program, stages):
    go_through_first_run(program, stages)
    program.wait_for_icon()
    program.child.wait_for_line(f"Persistent Desktop access started: {desktop.home.desktop}")
    stages.done("The panel shows Deskbroom, which watches the Desktop folder.", "panel")

    program.click_icon()
    program.wait_for_menu("Gallery")
    stages.done("A click on it opens its menu.", "menu")

    program.click_menu_item("Deletion Timeframe")
    program.wait_for_menu("5 minutes")
    stages.done("Deletion Timeframe offers its delays; 5 minutes is checked.", "timeframe-menu")
    pointer.press_keys(desktop, "Escape")
    program.wait_for_no_menu()

    screenshot = take_screenshot(desktop)
    program.wait_for_question()
    wait_until(lambda: program.question() and program.question().has_preview(), "the preview is loaded")
    stages.done(f"{screenshot.name} is taken: Deskbroom asks.", "question")

    program.answer("Delete Now")
    program.child.wait_for_line(f"Screenshot moved to Trash: {screenshot.name}")
    wait_until(lambda: not os.listdir(desktop.home.desktop), "the Desktop is empty")
    wait_until(lambda: desktop.home.trashed() == [screenshot.name], "the file is in the Trash")
    notify(desktop, "Desktop: empty", f"Trash: {', '.join(desktop.home.trashed())}")
    stages.done("Delete Now: the Desktop is empty, the file is in the Trash.", "trash")

    program.click_icon()
    program.click_menu_item("Quit Deskbroom")
    status = program.child.wait_for_exit()
    if status != 0:
        raise AssertionError(f"the program ended with status {status}")
    print("Quit Deskbroom: it has ended. What it printed:")
    for line in program.child.lines:
        print(f"   {line}")


def main():
    parser = argparse.ArgumentParser(prog="./run")
    parser.add_argument("program", type=Path)
    parser.add_argument("pictures", type=Path)
    parser.add_argument("--dark", action="store_true", help="the desktop prefers the dark look")
    parser.add_argument("--scale", type=int, default=1, help="device pixels for a point")
    parser.add_argument("--bottom", action="store_true", help="the panel is at the bottom")
    options = parser.parse_args()
    with PrivateDesktop(
        look="dark" if options.dark else "light",
        scale=options.scale,
        size=tuple(length * options.scale for length in _POINTS),
        panel_edge="bottom" if options.bottom else "top",
    ) as desktop:
        desktop.home.forget_first_run()
        program = Deskbroom(desktop, options.program, desktop.home, listed=(desktop.home.desktop, 1))
        try:
            demonstrate(desktop, program, Stages(desktop, options.pictures))
        except AssertionError as failure:
            printed = [*program.child.lines, *program.child.errors]
            print(f"{failure}\nThe program printed:", *printed, sep="\n   ", file=sys.stderr)
            return 1
        finally:
            program.stop()
    return 0


if __name__ == "__main__":
    sys.exit(main())
