"""The status item as the desktop has it: on the panel, and in the registry of status items."""

from gi.repository import GLib

import panels
from bus import call, get_property, process_of
from windows import all_windows

_WATCHER = "org.kde.StatusNotifierWatcher"
_WATCHER_PATH = "/StatusNotifierWatcher"
_ITEM = "org.kde.StatusNotifierItem"
_MENU = "com.canonical.dbusmenu"


class RegisteredItem:
    """A status item that has registered itself with the panel's watcher."""

    def __init__(self, session_bus, name, path):
        self._session_bus = session_bus
        self._name = name
        self._path = path

    def property(self, name):
        return get_property(self._session_bus, self._name, self._path, _ITEM, name)

    def activate(self, x, y):
        call(self._session_bus, self._name, self._path, _ITEM, "Activate", "(ii)", x, y)

    def _menu(self, method, signature, *arguments):
        return call(self._session_bus, self._name, self.property("Menu"), _MENU, method, signature, *arguments)

    def menu_layout(self):
        """The exported menu's items, as (id, properties) from the top down."""
        _revision, (_id, _properties, children) = self._menu("GetLayout", "(iias)", 0, -1, [])
        return [(item_id, properties) for item_id, properties, _children in children]

    def choose(self, label):
        """Presses an item of the exported menu, as a panel does."""
        for item_id, properties in self.menu_layout():
            if properties.get("label", "").replace("_", "") == label:
                self._menu("Event", "(isvu)", item_id, "clicked", GLib.Variant("i", 0), 0)
                return
        raise AssertionError(f"no menu item {label!r} in {self.menu_layout()}")


def registered_item(desktop, pid):
    """The item of the process, or None while it isn't registered."""
    bus = desktop.session_bus
    try:
        items = get_property(bus, _WATCHER, _WATCHER_PATH, _WATCHER, "RegisteredStatusNotifierItems")
        for item in items:
            name, slash, path = item.partition("/")
            if process_of(bus, name) == pid:
                return RegisteredItem(bus, name, slash + path)
    except GLib.Error:
        pass
    return None


def icon_place(desktop, window_class):
    """The part of the tray that is in use: with one program's item in it, that item's rectangle. Or None."""
    if desktop.panel == panels.XFCE4_PANEL:
        host, inside = "wrapper-2.0", "Xfce4-panel"  # the tray is a process of its own
    elif desktop.panel == panels.TINT2:
        host, inside = window_class, "Tint2"
    else:
        return None
    for window in all_windows(desktop):
        if window.instance == host and window.lies_in(inside) and window.rectangle[2] > 8:
            return window.rectangle
    return None


def icon_rectangle(desktop, pid, window_class):
    """Where the panel shows the item of the process, or None while it doesn't."""
    if desktop.panel == panels.XFCE4_PANEL and registered_item(desktop, pid) is None:
        return None
    rectangle = icon_place(desktop, window_class)
    return rectangle if rectangle and _is_painted(desktop, rectangle) else None


def _is_painted(desktop, rectangle):
    """A panel keeps room for an item before it shows it, and takes no click for it until then."""
    x, y, width, height = rectangle
    area = f"{width}x{height}+{x}+{y}"
    colours = desktop.run(["import", "-silent", "-window", "root", "-crop", area, "-format", "%k", "info:"])
    return int(colours) > 2  # the panel's own, and that of a line at its edge
