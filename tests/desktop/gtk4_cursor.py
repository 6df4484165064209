"""A GTK 4 application to point at: one area with one cursor, and its title is its only argument besides the
cursor's name. Where its window lies is the onlooker's to find out. Needs the system's Python with gi."""
import sys

import gi

gi.require_version("Gtk", "4.0")
from gi.repository import Gtk  # noqa: E402

title, name = sys.argv[1:]


def show(application):
    window = Gtk.ApplicationWindow(application=application, title=title, default_width=200, default_height=120)
    area = Gtk.DrawingArea(hexpand=True, vexpand=True)
    area.set_cursor_from_name(name)
    window.set_child(area)
    window.present()


application = Gtk.Application()
application.connect("activate", show)
application.run()
