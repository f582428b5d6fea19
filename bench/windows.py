"""What stays of a window in the program's memory: proportional memory (PSS) at rest, and some seconds after the
window was opened and closed again, several times in one run.

    python3 bench/windows.py [--program PROGRAM] [--rounds N]

The screen readers' bridge is off, as it is for somebody who uses none.
"""

import argparse
from pathlib import Path

from rest import ROOT, pass_time, pss_mebibytes  # also finds the modules of the desktop tests

import pointer  # noqa: E402
from home import Home  # noqa: E402
from private_desktop import PrivateDesktop  # noqa: E402
from sample_screenshots import fill  # noqa: E402
from tray import icon_rectangle, registered_item  # noqa: E402
from waiting import wait_until, wait_until_still  # noqa: E402
from windows import all_windows  # noqa: E402

_SETTLING_SECONDS = 10
_SCREENSHOTS = 100
_SETTINGS = "Deskbroom Settings"


def is_open(desktop, title):
    return any(window.title == title and window.instance for window in all_windows(desktop))


def open_settings(desktop, pid):
    icon = wait_until_still(lambda: icon_rectangle(desktop, pid, "deskbroom"), "the panel shows the item")
    pointer.click(desktop, pointer.centre(icon))

    def opened():
        # The menu takes the key once it is open.
        pointer.press_keys(desktop, "ctrl+comma")
        return is_open(desktop, _SETTINGS)

    wait_until(opened, "the settings are open")


def close(desktop, title):
    pointer.press_keys(desktop, "Escape")
    wait_until(lambda: not is_open(desktop, title), f"{title} is closed")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", type=Path, default=ROOT / "build/release/deskbroom")
    parser.add_argument("--rounds", type=int, default=3, help="how often the window is opened and closed")
    options = parser.parse_args()
    with PrivateDesktop(accessibility=False) as desktop, Home() as home:
        fill(home.desktop, _SCREENSHOTS)
        child = desktop.start([options.program.resolve()], home.environment())
        wait_until(lambda: registered_item(desktop, child.pid), "the item is registered")
        pass_time(_SETTLING_SECONDS)
        rest = pss_mebibytes(child.pid)
        print(f"at rest: {rest:.1f} MiB")
        for number in range(1, options.rounds + 1):
            open_settings(desktop, child.pid)
            pass_time(2)
            shown = pss_mebibytes(child.pid)
            close(desktop, _SETTINGS)
            pass_time(_SETTLING_SECONDS)
            after = pss_mebibytes(child.pid)
            print(f"settings, {number}: {shown:.1f} MiB while open, {after:.1f} after closing ({after - rest:+.1f})")
        child.stop()


if __name__ == "__main__":
    main()
