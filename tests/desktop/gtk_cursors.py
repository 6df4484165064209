"""A GTK 3 application to point at: a grid of areas, each with another cursor, and a text entry.

Prints "area NAME X Y" (centre, root window) for each area once its window is on the screen, then "ready".
Arguments: the window's title, x and y of its position. Needs the system's Python with gi.
"""
import sys

import gi

gi.require_version("Gtk", "3.0")
gi.require_version("Gdk", "3.0")
from gi.repository import Gdk, GLib, Gtk  # noqa: E402

NAMES = """default text pointer wait progress help crosshair move not-allowed no-drop grab grabbing
all-scroll col-resize row-resize n-resize e-resize s-resize w-resize ne-resize nw-resize se-resize sw-resize
ns-resize ew-resize nesw-resize nwse-resize copy alias context-menu cell vertical-text zoom-in zoom-out
none""".split()
COLUMNS = 7


class Window(Gtk.Window):
    def __init__(self, title, x, y):
        super().__init__(title=title)
        # Nothing blinks, so that two pictures of one place differ by the pointer alone.
        Gtk.Settings.get_default().set_property("gtk-cursor-blink", False)
        self.move(x, y)
        grid = Gtk.Grid(row_spacing=2, column_spacing=2, border_width=4)
        self.areas = []
        for name in NAMES:
            area = Gtk.EventBox()
            area.add(Gtk.Label(label=name))
            area.connect("realize", self.set_cursor, name)
            self.place(grid, name, area)
        self.place(grid, "entry", Gtk.Entry(width_chars=8, text="text"))
        self.add(grid)
        self.connect("destroy", Gtk.main_quit)
        self.show_all()

    def place(self, grid, name, area):
        area.set_size_request(82, 32)
        grid.attach(area, len(self.areas) % COLUMNS, len(self.areas) // COLUMNS, 1, 1)
        self.areas.append((name, area))

    @staticmethod
    def set_cursor(area, name):
        area.get_window().set_cursor(Gdk.Cursor.new_from_name(area.get_display(), name))

    def report(self):
        """Once a frame-managed window keeps its place for two looks, where the areas are."""
        _, x, y = self.get_window().get_origin()
        if not self.get_mapped() or getattr(self, "last", None) != (x, y):
            self.last = (x, y)
            return True
        scale = self.get_scale_factor()
        for name, area in self.areas:
            box = area.get_allocation()
            print("area", name, (x + box.x + box.width // 2) * scale, (y + box.y + box.height // 2) * scale)
        print("ready", flush=True)
        return False


window = Window(sys.argv[1] if len(sys.argv) > 1 else "GTK cursors",
                int(sys.argv[2]) if len(sys.argv) > 3 else 0, int(sys.argv[3]) if len(sys.argv) > 3 else 0)
GLib.timeout_add(60, window.report)
Gtk.main()
