"""What the program costs at rest, beside nm-tray and Flameshot's tray icon: one run, the same private desktop
with xfce4-panel, one program at a time, so that pages which two of them share are counted to neither's favour.

    bench/rest.py [--program PROGRAM] [--starts N] [--seconds N]

* start: from the start of the process to its registration as a status item; the median of several.
* PSS: proportional memory, all of the process (smaps_rollup).
* context switches: voluntary ones of all threads (/proc/PID/task/*/status).
* timer wake-ups: waits that ended because their time was over. A run of its own under strace counts them:
  poll, select and epoll calls that return 0, futex and condition waits with ETIMEDOUT, sleeps, and reads of
  timer descriptors.
* question: from the file's appearance at its place to the popover's window being mapped.

The screen readers' bridge is off, as it is for somebody who uses none.
"""

import argparse
import re
import statistics
import sys
import tempfile
import threading
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/desktop"))

import pointer  # noqa: E402
from deskbroom import Deskbroom  # noqa: E402
from home import Home  # noqa: E402
from images import png  # noqa: E402
from private_desktop import PrivateDesktop  # noqa: E402
from tray import registered_item  # noqa: E402
from waiting import wait_until, wait_until_still  # noqa: E402
from windows import all_windows  # noqa: E402

_SETTLING_SECONDS = 10
_POPOVERS = 10
_TIMED_WAITS = "poll,ppoll,select,pselect6,epoll_wait,epoll_pwait,epoll_pwait2,futex,nanosleep,clock_nanosleep,read"
# strace prints a call that another thread interrupts in two parts; the result stands in the last.
_TIMED_OUT = re.compile(
    r"(?:\b(?:p?poll|p?select6?|epoll_p?wait2?)\b.* = 0 \(Timeout\)|\bepoll_p?wait2?\b.* = 0$"
    r"|\bfutex\b.* = -1 ETIMEDOUT|\b(?:clock_)?nanosleep\b.* = 0$|\bread\(\d+<anon_inode:\[timerfd\]>.* = 8$)"
)


def pass_time(seconds):
    """Measuring at rest is the one thing that only time can do."""
    threading.Event().wait(seconds)


def pss_mebibytes(pid):
    rollup = Path(f"/proc/{pid}/smaps_rollup").read_text()
    return int(re.search(r"^Pss: +(\d+) kB", rollup, re.MULTILINE)[1]) / 1024


def voluntary_switches(pid):
    """Of each thread that lives."""
    switches = {}
    for status in Path(f"/proc/{pid}/task").glob("*/status"):
        try:
            text = status.read_text()
        except OSError:
            continue
        switches[status.parent.name] = int(re.search(r"^voluntary_ctxt_switches:\s+(\d+)", text, re.MULTILINE)[1])
    return switches


def switches_in(pid, seconds):
    before = voluntary_switches(pid)
    pass_time(seconds)
    after = voluntary_switches(pid)
    return sum(count - before.get(thread, 0) for thread, count in after.items())


class Subject:
    """One of the programs, run with a home of its own on the desktop."""

    def __init__(self, desktop, name, command):
        self.desktop = desktop
        self.name = name
        self.command = command

    def start(self, home, prefix=()):
        return self.desktop.start([*prefix, *self.command], home.environment())

    def milliseconds_to_item(self):
        with Home() as home:
            began = time.monotonic()
            child = self.start(home)
            while registered_item(self.desktop, child.pid) is None:
                if time.monotonic() - began > 30:
                    raise AssertionError(f"{self.name} shows no status item: {child.errors}")
            taken = 1000 * (time.monotonic() - began)
            child.stop()
            return taken

    def timer_wakeups(self, seconds):
        with Home() as home, tempfile.NamedTemporaryFile(prefix="deskbroom-strace-") as log:
            child = self.start(home, ["strace", "-f", "-yy", "-e", f"trace={_TIMED_WAITS}", "-o", log.name])
            pass_time(_SETTLING_SECONDS)
            begin = Path(log.name).stat().st_size
            pass_time(seconds)
            lines = Path(log.name).read_bytes()[begin:].decode("utf-8", "replace").splitlines()
            child.stop()
            return sum(1 for line in lines if _TIMED_OUT.search(line))


def question_window(desktop):
    for window in all_windows(desktop):
        if window.window_class == "Deskbroom" and window.rectangle[2] > 250:
            return window.rectangle
    return None


def button_offsets(program):
    """Where the buttons are in the question's window, read once on a desktop whose screens can be read."""
    with PrivateDesktop() as desktop, Home() as home:
        deskbroom = Deskbroom(desktop, program, home)
        (home.desktop / "Screenshot 1.png").write_bytes(png())
        deskbroom.wait_for_question()
        question = wait_until(
            lambda: (asked := deskbroom.question()) and asked.has_preview() and asked, "the preview is loaded"
        )
        left, top = question.rectangle[:2]
        offsets = {}
        for name, rectangle in question.buttons.items():
            x, y = pointer.centre(rectangle)
            offsets[name] = (x - left, y - top)
        deskbroom.stop()
        return offsets


def ask_and_answer(desktop, home, offsets):
    """Ten questions that come and go, by turns kept and deleted; the milliseconds that each took to come."""
    taken = []
    for number in range(_POPOVERS):
        path = home.desktop / f"Screenshot {number}.png"
        content = png()
        began = time.monotonic()
        path.write_bytes(content)
        window = wait_until(lambda: question_window(desktop), "the question is on screen")
        taken.append(1000 * (time.monotonic() - began))
        # It ignores the mouse at first, and grows when its preview comes.
        window = wait_until_still(lambda: question_window(desktop), "the question has its size", still_for=0.6)
        button = "Delete Now" if number % 2 else "Keep"

        def answered(window=window, button=button):
            x, y = offsets[button]
            if question_window(desktop):
                pointer.click(desktop, (window[0] + x, window[1] + y))
            return question_window(desktop) is None

        wait_until(answered, "the question is gone")
        if button == "Delete Now":
            wait_until(lambda path=path: not path.exists(), "the file is deleted")
    return taken


def measure(subject, options, offsets):
    """A row of the table, by column; and how long the questions took, for ours."""
    row = {"start (ms)": statistics.median(subject.milliseconds_to_item() for _ in range(options.starts))}
    questions = []
    with Home() as home:
        child = subject.start(home)
        wait_until(lambda: registered_item(subject.desktop, child.pid), f"{subject.name} shows its item")
        pass_time(_SETTLING_SECONDS)
        row["switches/min"] = switches_in(child.pid, options.seconds) * 60 / options.seconds
        row["PSS (MiB)"] = pss_mebibytes(child.pid)
        if offsets:
            questions = ask_and_answer(subject.desktop, home, offsets)
            pass_time(_SETTLING_SECONDS)
            row["PSS after 10 questions"] = pss_mebibytes(child.pid)
        child.stop()
    row["timer wake-ups/min"] = subject.timer_wakeups(options.seconds) * 60 / options.seconds
    return row, questions


def print_table(rows, reference):
    columns = list(dict.fromkeys(column for row in rows.values() for column in row))
    print(f"{'':24}" + "".join(f"{name:>14}" for name in rows) + f"{'ratio to ' + reference:>22}")
    ours = rows["deskbroom"]
    for column in columns:
        values = "".join(f"{row[column]:14.1f}" if column in row else f"{'':14}" for row in rows.values())
        base = rows[reference].get(column, rows[reference]["PSS (MiB)"] if "PSS" in column else None)
        ratio = f"{ours[column] / base:22.2f}" if base else f"{'':22}"
        print(f"{column:24}{values}{ratio}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", type=Path, default=ROOT / "build/release/deskbroom")
    parser.add_argument("--starts", type=int, default=9, help="how often each program is started for its median")
    parser.add_argument("--seconds", type=int, default=60, help="how long each program is watched at rest")
    options = parser.parse_args()
    program = options.program.resolve()
    offsets = button_offsets(program)
    rows = {}
    with PrivateDesktop(accessibility=False) as desktop:
        for name, command in (("nm-tray", ["nm-tray"]), ("flameshot", ["flameshot"]), ("deskbroom", [program])):
            print(f"measuring {name}", file=sys.stderr, flush=True)
            subject = Subject(desktop, name, command)
            rows[name], questions = measure(subject, options, offsets if name == "deskbroom" else None)
    print_table(rows, "nm-tray")
    print(
        f"question after its file appears: median {statistics.median(questions):.0f} ms,"
        f" longest {max(questions):.0f} ms of {len(questions)} (the poll is 2000 ms)"
    )


if __name__ == "__main__":
    main()
