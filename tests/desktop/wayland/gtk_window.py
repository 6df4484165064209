"""A GTK application to point at: a window with one cursor. Arguments: GTK's version, title, cursor's name. Needs the
system's Python with gi."""
import sys

import gi

version, title, name = sys.argv[1:]
gi.require_version("Gtk", version)
from gi.repository import Gtk  # noqa: E402


def show(application):
    window = Gtk.ApplicationWindow(application=application, title=title, default_width=200, default_height=100)
    window.present()
    if version == "4.0":
        window.set_cursor_from_name(name)
        return
    gi.require_version("Gdk", "3.0")
    from gi.repository import Gdk
    window.get_window().set_cursor(Gdk.Cursor.new_from_name(window.get_display(), name))


application = Gtk.Application()
application.connect("activate", show)
application.run()
