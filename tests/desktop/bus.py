"""Calls on a private message bus. Each desktop has connections of its own, never the caller's session bus."""

from gi.repository import Gio, GLib

_TIMEOUT_MILLISECONDS = 10_000


def connect(address):
    flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
    connection.set_exit_on_close(False)
    return connection


def call(connection, name, path, interface, method, signature="()", *arguments):
    """The unpacked answer as a tuple; GLib.Error when the call fails."""
    answer = connection.call_sync(
        name,
        path,
        interface,
        method,
        GLib.Variant(signature, arguments),
        None,
        Gio.DBusCallFlags.NONE,
        _TIMEOUT_MILLISECONDS,
        None,
    )
    return answer.unpack()


def get_property(connection, name, path, interface, property_name):
    return call(
        connection, name, path, "org.freedesktop.DBus.Properties", "Get", "(ss)", interface, property_name
    )[0]


def process_of(connection, name):
    """The process id of the name's owner."""
    return call(
        connection, "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetConnectionUnixProcessID", "(s)", name
    )[0]
