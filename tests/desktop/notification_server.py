"""Answers as the desktop's notification server, and prints each Notify that it gets as a line of JSON with the
number that it gave. Runs as a process of its own until it is ended.

    notification_server.py [--plain]    (without markup in the bodies)

Its interface for tests, beside the desktop's: Click(number) does what a click on the notification does there;
Behave(how) has it "answer" from now on, or answer every call with "errors", or stay "silent".
"""

import json
import sys

from gi.repository import Gio, GLib

NAME = "org.freedesktop.Notifications"
PATH = "/org/freedesktop/Notifications"
FOR_TESTS = "org.deskbroom.test.Notifications"
_INTERFACES = """<node>
<interface name="org.freedesktop.Notifications">
  <method name="GetCapabilities"><arg type="as" direction="out"/></method>
  <method name="GetServerInformation">
    <arg type="s" direction="out"/><arg type="s" direction="out"/><arg type="s" direction="out"/>
    <arg type="s" direction="out"/>
  </method>
  <method name="CloseNotification"><arg type="u" direction="in"/></method>
  <method name="Notify">
    <arg type="s" name="application" direction="in"/><arg type="u" name="replaces" direction="in"/>
    <arg type="s" name="icon" direction="in"/><arg type="s" name="title" direction="in"/>
    <arg type="s" name="body" direction="in"/><arg type="as" name="actions" direction="in"/>
    <arg type="a{sv}" name="hints" direction="in"/><arg type="i" name="timeout" direction="in"/>
    <arg type="u" direction="out"/>
  </method>
  <signal name="ActionInvoked"><arg type="u"/><arg type="s"/></signal>
  <signal name="NotificationClosed"><arg type="u"/><arg type="u"/></signal>
</interface>
<interface name="org.deskbroom.test.Notifications">
  <method name="Click"><arg type="u" direction="in"/></method>
  <method name="Behave"><arg type="s" direction="in"/></method>
</interface></node>"""
_FIELDS = ("application", "replaces", "icon", "title", "body", "actions", "hints", "timeout")
_CLOSED_BY_USER = 2


class Server:
    def __init__(self, capabilities):
        self._capabilities = capabilities
        self._behaviour = "answer"
        self._last_number = 0
        self._connection = None

    def register(self, connection, _name):
        self._connection = connection
        notifications, for_tests = Gio.DBusNodeInfo.new_for_xml(_INTERFACES).interfaces
        connection.register_object(PATH, notifications, self._answer, None, None)
        connection.register_object(PATH, for_tests, self._answer_test, None, None)

    def _answer(self, _connection, _sender, _path, _interface, method, parameters, invocation):
        if self._behaviour == "silent":
            return
        if self._behaviour == "errors":
            invocation.return_dbus_error("org.freedesktop.Notifications.Error", "Nothing can be shown")
            return
        answers = {
            "GetCapabilities": lambda: GLib.Variant("(as)", (self._capabilities,)),
            "GetServerInformation": lambda: GLib.Variant("(ssss)", ("recorder", "Deskbroom", "1", "1.2")),
            "CloseNotification": lambda: None,
            "Notify": lambda: GLib.Variant("(u)", (self._record(parameters.unpack()),)),
        }
        invocation.return_value(answers[method]())

    def _record(self, arguments):
        notification = dict(zip(_FIELDS, arguments))
        self._last_number += 1
        number = notification["number"] = notification["replaces"] or self._last_number
        print(json.dumps(notification), flush=True)
        return number

    def _answer_test(self, _connection, _sender, _path, _interface, method, parameters, invocation):
        (argument,) = parameters.unpack()
        if method == "Behave":
            self._behaviour = argument
        else:
            self._emit("ActionInvoked", GLib.Variant("(us)", (argument, "default")))
            self._emit("NotificationClosed", GLib.Variant("(uu)", (argument, _CLOSED_BY_USER)))
        invocation.return_value(None)

    def _emit(self, signal, parameters):
        self._connection.emit_signal(None, PATH, NAME, signal, parameters)


def main(arguments):
    server = Server(["body", "actions"] + ([] if "--plain" in arguments else ["body-markup"]))
    Gio.bus_own_name(Gio.BusType.SESSION, NAME, Gio.BusNameOwnerFlags.NONE, server.register, None, None)
    GLib.MainLoop().run()


if __name__ == "__main__":
    main(sys.argv[1:])
