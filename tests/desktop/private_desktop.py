"""A desktop of its own: X server, session bus, window manager, compositor, panel, notification server and
accessibility bus, in a home of its own. Nothing of the caller's session is used, and nothing outlives it.
"""

import os
import shutil
import signal
import subprocess
import sys
import tempfile
from pathlib import Path
from xml.sax.saxutils import escape

import panels
from bus import call, connect
from child import Child
from home import Home
from images import png
from waiting import wait_until
from x_display import selection_has_owner

_HERE = Path(__file__).resolve().parent
_MARK = "DESKBROOM_PRIVATE_DESKTOP"
_MOST_FRAMES = 20
_MOST_FRAMES_IN_MOTION = 5
_AT_SPI_LAUNCHER = "/usr/libexec/at-spi-bus-launcher"

_NOTIFICATIONS = "org.freedesktop.Notifications"
_BUS_CONFIGURATION = """<busconfig>
<type>session</type>
<listen>unix:path={socket}</listen>
<auth>EXTERNAL</auth>
<servicedir>{services}</servicedir>
<policy context="default">
<allow send_destination="*" eavesdrop="true"/>
<allow eavesdrop="true"/>
<allow own="*"/>
</policy>
</busconfig>
"""
_DUNSTRC = """[global]
scale = {scale}
font = sans 10
width = 340
origin = bottom-right
offset = 16x44
padding = 12
horizontal_padding = 14
corner_radius = 8
frame_width = 0
mouse_left_click = do_action, close_current
[urgency_normal]
timeout = 0
background = "{background}"
foreground = "{foreground}"
"""
_DUNST_COLOURS = {
    "light": {"background": "#f6f7f9", "foreground": "#1d1f23"},
    "dark": {"background": "#2a2c30", "foreground": "#f1f2f4"},
}


class PrivateDesktop:
    """Use as a context manager.

    panel: one of the names in `panels`; window_manager: "xfwm4" or "openbox"; compositor: whether windows
    can be translucent; size: of the screen, in device pixels; scale: device pixels for a point;
    panel_edge: "top" or "bottom"; look: "light" or "dark"; accessibility: whether screens can be read;
    monitors: rectangles (x, y, width, height) that the screen is divided into; notification_server: "dunst",
    or "recorder", which shows nothing (see notifications.py), or "plain-recorder", which knows no markup;
    activatable_notifications: whether the bus starts an installed server when none runs.
    """

    def __init__(
        self,
        panel=panels.XFCE4_PANEL,
        window_manager="xfwm4",
        compositor=True,
        size=(1280, 800),
        scale=1,
        look="light",
        panel_edge="top",
        accessibility=True,
        monitors=(),
        notification_server="dunst",
        activatable_notifications=True,
    ):
        self.panel = panel
        self.size = size
        self.scale = scale
        self.look = look
        self._window_manager_name = window_manager
        self._compositor = compositor
        self._panel_edge = panel_edge
        self._accessibility = accessibility
        self._monitors = monitors
        self._notification_server_name = notification_server
        self._activatable_notifications = activatable_notifications
        self.notification_server = None
        self._children = []
        self._panel_child = None
        self._bus_child = None
        self._session_bus = None

    # Life

    def __enter__(self):
        self._runtime = Path(tempfile.mkdtemp(prefix="deskbroom-run-"))
        self.home = Home()
        self.environment = self._base_environment()
        try:
            self._start_x_server()
            self._start_session_bus()
            if self._accessibility:
                self._start([_AT_SPI_LAUNCHER, "--launch-immediately"])
                wait_until(lambda: self.owns_name("org.a11y.Bus"), "the accessibility bus is there")
            self._start([sys.executable, str(_HERE / "settings_portal.py"), self.look])
            wait_until(lambda: self.owns_name("org.freedesktop.portal.Desktop"), "the settings portal is there")
            self._divide_into_monitors()
            self._start_window_manager()
            self.start_notification_server()
            if self.panel != panels.NO_PANEL:
                self.start_panel()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_exception):
        if self._session_bus is not None and not self._session_bus.is_closed():
            self._session_bus.close_sync(None)
        for child in reversed(self._children):
            child.stop()
        self._end_what_children_left()
        shutil.rmtree(self._runtime, ignore_errors=True)
        self.home.remove()

    def _base_environment(self):
        kept = ("PATH", "LANG", "TZ", "USER", "LOGNAME", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS")
        environment = {name: os.environ[name] for name in kept if name in os.environ}
        environment.update(self.home.environment())
        environment.update(
            {
                _MARK: str(self._runtime),
                "XDG_RUNTIME_DIR": str(self._runtime),
                "XDG_SESSION_TYPE": "x11",
                "FONTCONFIG_FILE": str(_HERE / "fonts.conf"),
                "GTK_THEME": "Adwaita:dark" if self.look == "dark" else "Adwaita",
                "GVFS_DISABLE_FUSE": "1",  # a mount would outlive the desktop
                "QT_SCALE_FACTOR": str(self.scale),
                "GDK_SCALE": str(self.scale),
            }
        )
        if self._accessibility:
            environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        else:
            environment["NO_AT_BRIDGE"] = "1"
            environment["QT_ACCESSIBILITY"] = "0"
        return environment

    def _start(self, command, **options):
        child = Child(command, self.environment, **options)
        self._children.append(child)
        return child

    def _start_x_server(self):
        reading, writing = os.pipe()
        width, height = self.size
        self._start(
            ["Xvfb", "-displayfd", str(writing), "-noreset", "-nolisten", "tcp"]
            + ["-dpi", str(96), "-screen", "0", f"{width}x{height}x24"],
            pass_fds=(writing,),
        )
        os.close(writing)
        # To the line's end: a server that can't write its number whole is ended by SIGPIPE.
        with os.fdopen(reading) as numbers:
            number = numbers.readline().strip()
        if not number:
            raise AssertionError("Xvfb didn't start")
        self.environment["DISPLAY"] = f":{number}"
        # A key that is held until something has happened is pressed once, however long that takes.
        self.run(["xset", "r", "off"])

    def _start_session_bus(self):
        socket = self._runtime / "bus"
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={socket}"
        self._bus_child = self._start(
            ["dbus-daemon", f"--config-file={self._bus_configuration(socket)}", "--nofork", "--nopidfile"]
            + ["--print-address"]
        )
        # Its socket is there before it listens.
        wait_until(lambda: self._bus_child.lines, "the session bus says its address")

    def _bus_configuration(self, socket):
        """As a session's own, but that it may start no notification server where that wasn't asked for."""
        services = self._runtime / "services"
        services.mkdir()
        for service in Path("/usr/share/dbus-1/services").glob("*.service"):
            if self._activatable_notifications or f"Name={_NOTIFICATIONS}\n" not in service.read_text():
                (services / service.name).symlink_to(service)
        path = self._runtime / "bus.conf"
        path.write_text(_BUS_CONFIGURATION.format(socket=socket, services=services))
        return path

    def _divide_into_monitors(self):
        for index, (x, y, width, height) in enumerate(self._monitors):
            output = "screen" if index == 0 else "none"
            geometry = f"{width}/{width // 4}x{height}/{height // 4}+{x}+{y}"
            self.run(["xrandr", "--setmonitor", f"monitor-{index}", geometry, output])

    def _start_window_manager(self):
        xfwm4 = self._window_manager_name == "xfwm4"
        if xfwm4:
            self._start(["xfwm4", f"--compositor={'on' if self._compositor else 'off'}"])
        else:
            self._start([self._window_manager_name])
        wait_until(
            lambda: "window id" in self.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"]), "a window manager is there"
        )
        if self._compositor and not xfwm4:
            self._start(["picom", "--backend", "xrender", "--config", "/dev/null"])
        if self._compositor:
            display = self.environment["DISPLAY"]
            wait_until(lambda: selection_has_owner(display, "_NET_WM_CM_S0"), "a compositor is there")
        wallpaper = self._runtime / "wallpaper.png"
        wallpaper.write_bytes(png(320, 200, (58, 74, 96) if self.look == "dark" else (150, 180, 208)))
        self.run(["feh", "--no-fehbg", "--bg-fill", str(wallpaper)])

    def _end_what_children_left(self):
        """Services that the bus started aren't our children: their environment tells that they are ours."""
        mark = f"{_MARK}={self._runtime}".encode()
        for folder in Path("/proc").glob("[0-9]*"):
            try:
                if mark in (folder / "environ").read_bytes().split(b"\0"):
                    os.kill(int(folder.name), signal.SIGKILL)
            except OSError:
                continue

    # The session bus

    @property
    def session_bus(self):
        if self._session_bus is None or self._session_bus.is_closed():
            self._session_bus = connect(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        return self._session_bus

    def owns_name(self, name):
        return call(self.session_bus, "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "NameHasOwner", "(s)", name)[0]

    def stop_session_bus(self):
        self._bus_child.stop()

    # Notifications

    def start_notification_server(self):
        """Returns its process."""
        if self._notification_server_name == "dunst":
            configuration = self._runtime / "dunstrc"
            configuration.write_text(_DUNSTRC.format(scale=self.scale, **_DUNST_COLOURS[self.look]))
            command = ["dunst", "-config", str(configuration)]
        else:
            is_plain = self._notification_server_name == "plain-recorder"
            command = [sys.executable, "-B", str(_HERE / "notification_server.py"), *(["--plain"] if is_plain else [])]
        self.notification_server = self._start(command)
        wait_until(lambda: self.owns_name("org.freedesktop.Notifications"), f"{command[0]} serves notifications")
        return self.notification_server

    def stop_notification_server(self):
        self.notification_server.stop()
        self._children.remove(self.notification_server)

    # The panel

    def start_panel(self):
        command = panels.write_configuration(
            self.panel, self.home.config, self._panel_edge, self.look == "dark", self.scale
        )
        self._panel_child = self._start(command)
        if self.panel == panels.XFCE4_PANEL:
            watcher = "org.kde.StatusNotifierWatcher"
            wait_until(lambda: self.owns_name(watcher), "xfce4-panel watches for status items")
        else:
            tray = "_NET_SYSTEM_TRAY_S0"
            wait_until(lambda: selection_has_owner(self.environment["DISPLAY"], tray), "tint2 has a tray")

    def stop_panel(self):
        self._panel_child.stop()
        self._children.remove(self._panel_child)

    # Programs

    def fonts_of(self, program):
        """The path of a fontconfig file with this desktop's fonts and those that are built with the program."""
        path = self._runtime / "fonts.conf"
        files = (_HERE / "fonts.conf", Path(program).resolve().parent / "fonts.conf")
        includes = "".join(f'<include ignore_missing="yes">{escape(str(file))}</include>' for file in files)
        path.write_text(f"<fontconfig>{includes}</fontconfig>\n")
        return path

    def run(self, command, **options):
        """Runs a tool to its end on this desktop and returns its output as text. Options: subprocess.run's."""
        return self.run_for_bytes(command, **options).decode("utf-8", "backslashreplace")

    def run_for_bytes(self, command, **options):
        return subprocess.run(
            command, env=self.environment, capture_output=True, check=True, timeout=60, **options
        ).stdout

    def start(self, command, environment=None):
        """Starts a program that runs until the desktop ends, or until it is stopped."""
        child = Child(command, {**self.environment, **(environment or {})})
        self._children.append(child)
        return child

    def save_picture(self, path, rests=True):
        """What the screen shows, as a PNG file, once nothing moves any more: a fade, say. What never `rests` is taken
        as it is after some pictures.
        """
        most = _MOST_FRAMES if rests else _MOST_FRAMES_IN_MOTION
        frames = []

        def is_still():
            frames.append(self._frame())
            return frames[-3:].count(frames[-1]) == 3 or len(frames) == most

        wait_until(is_still, "pictures are taken")
        Path(path).parent.mkdir(parents=True, exist_ok=True)
        subprocess.run(["convert", "ppm:-", str(path)], input=frames[-1], check=True, timeout=60)

    def _frame(self):
        return self.run_for_bytes(["import", "-silent", "-window", "root", "-strip", "ppm:-"])
