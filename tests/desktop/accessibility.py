"""Reading and pressing what is on screen as an assistive technology does: AT-SPI over its own bus.

The protocol is spoken directly: libatspi is bound for life to the first desktop that its process meets.
"""

from dataclasses import dataclass

from gi.repository import Gio, GLib

from bus import call, connect, get_property, process_of

_ACCESSIBLE = "org.a11y.atspi.Accessible"
_ACTION = "org.a11y.atspi.Action"
_COMPONENT = "org.a11y.atspi.Component"
_ROOT = "/org/a11y/atspi/accessible/root"

# Bits of the state set, as numbered by AT-SPI.
_STATES = {"checked": 4, "enabled": 8, "focused": 12, "selected": 23, "showing": 25, "visible": 30}
_SCREEN_COORDINATES = 0


class Node:
    """One accessible object. It may vanish at any moment: GLib.Error from any of its operations says so."""

    def __init__(self, connection, name, path, scale):
        self._connection = connection
        self._name = name
        self.path = path
        self._scale = scale

    def _call(self, interface, method, signature="()", *arguments):
        return call(self._connection, self._name, self.path, interface, method, signature, *arguments)

    def _property(self, interface, name):
        return get_property(self._connection, self._name, self.path, interface, name)

    @property
    def name(self):
        return self._property(_ACCESSIBLE, "Name")

    @property
    def description(self):
        return self._property(_ACCESSIBLE, "Description")

    @property
    def role(self):
        return self._call(_ACCESSIBLE, "GetRoleName")[0]

    def has_state(self, state):
        words = self._call(_ACCESSIBLE, "GetState")[0]
        bit = _STATES[state]
        return bool(words[bit // 32] >> (bit % 32) & 1)

    def children(self):
        return [Node(self._connection, *child, self._scale) for child in self._call(_ACCESSIBLE, "GetChildren")[0]]

    def rectangle(self):
        """(x, y, width, height) on the screen, in device pixels. Toolkits answer in points."""
        points = self._call(_COMPONENT, "GetExtents", "(u)", _SCREEN_COORDINATES)[0]
        return tuple(length * self._scale for length in points)

    def press(self):
        """Does the first thing that the object offers: a button's press."""
        if not self._call(_ACTION, "DoAction", "(i)", 0)[0]:
            raise AssertionError(f"{self.role} {self.name!r} can't be pressed")

    def descendants(self):
        """Everything below, from the top down. What vanishes meanwhile is left out."""
        try:
            children = self.children()
        except GLib.Error:
            return
        for child in children:
            yield child
            yield from child.descendants()


@dataclass
class Seen:
    """What a node was when it was looked at."""

    role: str
    name: str
    rectangle: tuple
    node: Node


class Accessibility:
    """The accessible applications of one desktop. `scale` is its device pixels for a point."""

    def __init__(self, session_bus, scale):
        self._scale = scale
        address = call(session_bus, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")[0]
        self._connection = connect(address)
        self._changes = []
        self._listen()

    def _listen(self):
        def state_changed(_connection, name, path, _interface, _signal, parameters):
            state, is_on = parameters.unpack()[:2]
            self._changes.append((state, bool(is_on), Node(self._connection, name, path, self._scale)))

        self._connection.signal_subscribe(
            None, "org.a11y.atspi.Event.Object", "StateChanged", None, None, Gio.DBusSignalFlags.NONE, state_changed
        )
        for state in "showing", "focused", "selected":
            call(
                self._connection, "org.a11y.atspi.Registry", "/org/a11y/atspi/registry",
                "org.a11y.atspi.Registry", "RegisterEvent", "(s)", f"object:state-changed:{state}",
            )

    def heard(self, state, is_on=True):
        """The nodes that were said to have come into the state, or out of it, the latest last."""
        while GLib.MainContext.default().iteration(False):
            pass
        return [node for changed, on, node in self._changes if (changed, on) == (state, is_on)]

    def close(self):
        if not self._connection.is_closed():
            self._connection.close_sync(None)

    def application(self, pid):
        """The application that the process is, or None while it is not there."""
        try:
            registry = Node(self._connection, "org.a11y.atspi.Registry", _ROOT, self._scale)
            for name, path in registry._call(_ACCESSIBLE, "GetChildren")[0]:
                if process_of(self._connection, name) == pid:
                    return Node(self._connection, name, path, self._scale)
        except GLib.Error:
            pass
        return None

    def showing(self, pid):
        """What the process shows, windows first. What vanishes meanwhile is left out."""
        application = self.application(pid)
        found = []
        for node in application.descendants() if application else ():
            try:
                if node.has_state("showing"):
                    found.append(Seen(node.role, node.name, node.rectangle(), node))
            except GLib.Error:
                continue
        return found

    def open_menu(self):
        """The menu that is open, or None. It stands in no application's tree: its appearance tells of it."""
        for node in reversed(self.heard("showing")):
            try:
                if node.role == "popup menu" and node.has_state("showing"):
                    return node
            except GLib.Error:
                continue
        return None
