"""Real pointer and keyboard events through the X server's test extension. Positions are device pixels."""

from contextlib import contextmanager

_BUTTONS = {"left": "1", "middle": "2", "right": "3"}


def centre(rectangle):
    x, y, width, height = rectangle
    return x + width // 2, y + height // 2


def move(desktop, position):
    desktop.run(["xdotool", "mousemove", "--sync", *map(str, position)])


def click(desktop, position, button="left"):
    x, y = map(str, position)
    desktop.run(["xdotool", "mousemove", x, y, "click", _BUTTONS[button]])


def double_click(desktop, position):
    x, y = map(str, position)
    desktop.run(["xdotool", "mousemove", x, y, "click", "--repeat", "2", "--delay", "60", _BUTTONS["left"]])


def type_text(desktop, text):
    desktop.run(["xdotool", "type", "--delay", "5", text])


def press_keys(desktop, *keys):
    desktop.run(["xdotool", "key", *keys])


@contextmanager
def holding(desktop, key):
    desktop.run(["xdotool", "keydown", key])
    try:
        yield
    finally:
        desktop.run(["xdotool", "keyup", key])


def drag(desktop, start, end, wait_until_accepted):
    """With the left button, in enough steps that the toolkits on both sides take part; drops once the function
    has returned.
    """
    desktop.run(["xdotool", "mousemove", "--sync", *map(str, start), "mousedown", "1"])
    for step in range(1, 11):
        position = [round(a + (b - a) * step / 10) for a, b in zip(start, end)]
        desktop.run(["xdotool", "mousemove", "--sync", *map(str, position)])
    wait_until_accepted()
    desktop.run(["xdotool", "mousemove_relative", "--sync", "2", "2", "mouseup", "1"])
