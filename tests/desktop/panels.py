"""The panels of a private desktop, each with a configuration of its own: one bar with a tray and a clock."""

from pathlib import Path

XFCE4_PANEL = "xfce4-panel"
TINT2 = "tint2"
NO_PANEL = "none"

# In xfce4-panel's position words, 6 is the top edge and 10 the bottom.
_XFCE_POSITION = {"top": "p=6;x=0;y=0", "bottom": "p=10;x=0;y=0"}

_XFCE4_PANEL_XML = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="{dark}"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="{position}"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="icon-size" type="uint" value="{icon_size}"/>
      <property name="size" type="uint" value="{size}"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
        <value type="int" value="2"/>
        <value type="int" value="3"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-2" type="string" value="systray">
      <property name="square-icons" type="bool" value="true"/>
    </property>
    <property name="plugin-3" type="string" value="clock"/>
  </property>
</channel>
"""

_TINT2RC = """rounded = 0
border_width = 0
background_color = {background} 100
border_color = {background} 100

panel_items = FSC
panel_size = 100% {size}
panel_position = {edge} center horizontal
panel_background_id = 1
panel_layer = top
strut_policy = follow_size
wm_menu = 0

systray = 1
systray_padding = 4 2 4
systray_sort = ascending
systray_icon_size = {icon_size}

time1_format = %H:%M
time1_font = Sans 9
clock_font_color = {text} 100
clock_padding = 8 0
"""


def write_configuration(panel, config_home, edge, dark, scale):
    """Writes what the panel reads at its start and returns the command that starts it."""
    if panel == XFCE4_PANEL:
        folder = Path(config_home) / "xfce4/xfconf/xfce-perchannel-xml"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "xfce4-panel.xml").write_text(
            _XFCE4_PANEL_XML.format(
                dark="true" if dark else "false", position=_XFCE_POSITION[edge], size=28, icon_size=16
            )
        )
        return ["xfce4-panel", "--disable-wm-check"]
    if panel == TINT2:
        path = Path(config_home) / "tint2/tint2rc"
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(
            _TINT2RC.format(
                edge=edge,
                size=28 * scale,
                icon_size=20 * scale,
                background="#2b2e33" if dark else "#eceff3",
                text="#f1f2f4" if dark else "#1d1f23",
            )
        )
        return ["tint2", "-c", str(path)]
    raise ValueError(f"no such panel: {panel}")
