"""The panels in whose trays the program must live: one that embeds an item's own window and one that draws items
which register over the message bus. Both stand on the private desktop with settings of the tour."""
import os

import accessible

WATCHER = "org.kde.StatusNotifierWatcher"
HEIGHT = 30

TINT2 = """panel_items = TS
panel_position = {edge} center horizontal
panel_size = 100% {height}
panel_layer = top
strut_policy = follow_size
systray_icon_size = 22
systray_sort = right2left
background_color = {background} 100
rounded = 0
panel_background_id = 1
wm_menu = 0
"""

XFCE4_PANEL = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="{dark}"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p={edge};x=750;y={y}"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="icon-size" type="uint" value="22"/>
      <property name="size" type="uint" value="{height}"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/><value type="int" value="2"/></property>
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
  </property>
</channel>
"""


class Tint2:
    """Embeds the item's own window."""
    name = "tint2"

    def __init__(self, desktop, edge="top", dark=True):
        self.desktop, self.edge = desktop, edge
        settings = os.path.join(desktop.folder, "tint2rc")
        with open(settings, "w") as file:
            file.write(TINT2.format(edge=edge, height=HEIGHT, background="#202020" if dark else "#f0f0f0"))
        self.command = ["tint2", "-c", settings]

    def start(self):
        self.process = self.desktop.start(self.name, self.command)
        self.desktop.wait_for(self.name, "has a tray", lambda: self.desktop.probe.owns("_NET_SYSTEM_TRAY_S0"))

    def stop(self):
        self.desktop.stop(self.name)
        self.desktop.wait_for(self.name, "has left", lambda: not self.desktop.probe.owns("_NET_SYSTEM_TRAY_S0"))

    def is_docked(self):
        """Whether the item is in the tray: a quick question."""
        return self.icon() is not None

    def icon(self):
        """Where the item is; none while it is not there."""
        # Some toolkits say of each of their windows that it could be embedded.
        boxes = [box for _, box in self.desktop.probe.embedded() if 4 < box.width <= HEIGHT and 4 < box.height <= HEIGHT]
        return boxes[0] if boxes else None


class Xfce4Panel:
    """Draws the item from what it says over the message bus."""
    name = "xfce4-panel"

    def __init__(self, desktop, edge="top", dark=True):
        self.desktop, self.edge = desktop, edge
        folder = os.path.join(desktop.config, "xfce4", "xfconf", "xfce-perchannel-xml")
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, "xfce4-panel.xml"), "w") as file:
            file.write(XFCE4_PANEL.format(edge=6 if edge == "top" else 8, y=15 if edge == "top" else 885,
                                          height=HEIGHT, dark=str(dark).lower()))

    def start(self):
        # The panel reports where its buttons are by accessibility.
        self.process = self.desktop.start(self.name, ["env", "--unset=NO_AT_BRIDGE", self.name, "--disable-wm-check"])
        self.desktop.wait_for(self.name, "has a tray", self.is_ready)

    def is_ready(self):
        try:
            return accessible.call(self.desktop.session, WATCHER, "/StatusNotifierWatcher",
                                   "org.freedesktop.DBus.Properties", "Get", "(ss)", WATCHER,
                                   "IsStatusNotifierHostRegistered")[0]
        except accessible.Refused:
            return False

    def stop(self):
        self.desktop.stop(self.name)

    def items(self):
        return accessible.call(self.desktop.session, WATCHER, "/StatusNotifierWatcher",
                               "org.freedesktop.DBus.Properties", "Get", "(ss)", WATCHER,
                               "RegisteredStatusNotifierItems")[0]

    def is_docked(self):
        return bool(self.items())

    def icon(self):
        """The tray's own box, which holds this one item; none while there is none."""
        try:
            if not self.items():
                return None
            panel = self.desktop.accessibility.application(self.process.pid)
            boxes = [each.node.box() for each in panel.look().find_all("panel")] if panel else []
        except accessible.Refused:
            return None
        narrow = [box for box in boxes if 16 <= box.width < 100]
        return narrow[-1] if narrow else None


HOSTS = {host.name: host for host in (Tint2, Xfce4Panel)}
