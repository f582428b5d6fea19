"""Answers as the desktop's settings portal: `settings_portal.py dark` or `light` says which look is preferred.

Runs as a process of its own until it is ended.
"""

import sys

from gi.repository import Gio, GLib

_NAMESPACE = "org.freedesktop.appearance"
_KEY = "color-scheme"
_SCHEMES = {"dark": 1, "light": 2}
_INTERFACE = """<node><interface name="org.freedesktop.portal.Settings">
  <method name="Read">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/>
  </method>
  <method name="ReadAll"><arg type="as" direction="in"/><arg type="a{sa{sv}}" direction="out"/></method>
  <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
  <property name="version" type="u" access="read"/>
</interface></node>"""


def main(look):
    scheme = GLib.Variant("u", _SCHEMES[look])

    def answer(_connection, _sender, _path, _interface, method, parameters, invocation):
        if method == "ReadAll":
            invocation.return_value(GLib.Variant("(a{sa{sv}})", ({_NAMESPACE: {_KEY: scheme}},)))
        elif tuple(parameters.unpack()) == (_NAMESPACE, _KEY):
            # Read wraps its answer twice; portals have kept this for their clients' sake.
            invocation.return_value(GLib.Variant("(v)", (GLib.Variant("v", scheme),)))
        else:
            invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "Requested setting not found")

    def register(connection, _name):
        connection.register_object(
            "/org/freedesktop/portal/desktop",
            Gio.DBusNodeInfo.new_for_xml(_INTERFACE).interfaces[0],
            answer,
            lambda *_request: GLib.Variant("u", 1),
            None,
        )

    Gio.bus_own_name(
        Gio.BusType.SESSION, "org.freedesktop.portal.Desktop", Gio.BusNameOwnerFlags.NONE, register, None, None
    )
    GLib.MainLoop().run()


if __name__ == "__main__":
    main(sys.argv[1])
