"""A text field over a label, for the tests of accessibility: prints the root window pixels of the middle of
both once they are drawn."""
import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import GLib, Gtk  # noqa: E402

title, x, y = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
window = Gtk.Window(title=title)
box = Gtk.Box(orientation=Gtk.Orientation.VERTICAL, homogeneous=True)
entry = Gtk.Entry()
label = Gtk.Label(label="label")
box.add(entry)
box.add(label)
window.add(box)
window.set_default_size(200, 120)
window.show_all()
window.move(x, y)


def report():
    words = []
    for widget in (entry, label):
        area = widget.get_allocation()
        _, left, top = window.get_window().get_origin()
        words += [left + area.x + area.width // 2, top + area.y + area.height // 2]
    print(*words, flush=True)


GLib.timeout_add(500, report)
Gtk.main()
