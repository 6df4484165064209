"""The places at which the tour looks, and what is known of each before anything is measured."""
from dataclasses import dataclass

#: Qt's names for its shapes; a shape without a name of its own is drawn from the cursor font.
QT_NAMES = {
    "Arrow": "left_ptr", "Cross": "cross", "Wait": "wait", "IBeam": "text", "SizeVer": "size_ver",
    "SizeHor": "size_hor", "SizeBDiag": "size_bdiag", "SizeFDiag": "size_fdiag", "SizeAll": "size_all",
    "SplitV": "row-resize", "SplitH": "col-resize", "PointingHand": "pointer", "Forbidden": "not-allowed",
    "WhatsThis": "help", "Busy": "progress", "OpenHand": "openhand", "ClosedHand": "grabbing",
    "DragCopy": "dnd-copy", "DragMove": "dnd-move", "DragLink": "dnd-link", "LineEdit": "text", "Link": "pointer",
}
UNNAMED = "a font cursor without a name: no client can replace it by name"
BLANK = "hides the pointer on purpose and must stay as it is"


@dataclass(frozen=True)
class Point:
    application: str
    place: str
    x: int
    y: int
    #: The X11 name under which the application asks for its cursor; empty: as read before the first apply.
    name: str = ""
    #: Why this pointer does not become the theme's; empty for all others.
    exception: str = ""
    #: Whether an exception must stay pixel for pixel what it was.
    untouched: bool = False

    @property
    def label(self):
        return f"{self.application}: {self.place}"


def gtk(title, areas):
    def point(place, x, y):
        if place == "none":
            return Point(title, place, x, y, exception=BLANK, untouched=True)
        return Point(title, place, x, y, "text" if place == "entry" else place)
    return [point(place, *where) for place, where in areas.items()]


def qt(title, areas):
    def point(place, x, y):
        if place == "Blank":
            return Point(title, place, x, y, exception=BLANK, untouched=True)
        if place == "UpArrow":
            return Point(title, place, x, y, exception=UNNAMED)
        return Point(title, place, x, y, QT_NAMES[place])
    return [point(place, *where) for place, where in areas.items()]


def xterm(title, probe, themed=True):
    client, _ = probe.window(title)
    middle = client.y + client.height // 2
    text = client.x + client.width // 3, middle
    bar = client.x + client.width - 5, middle
    if not themed:
        return [Point(title, "text", *text, exception=UNNAMED), Point(title, "scroll bar", *bar, exception=UNNAMED)]
    return [Point(title, "text", *text, "xterm"), Point(title, "scroll bar", *bar, "sb_v_double_arrow")]


def window_manager(title, probe):
    """The parts of a frame. Their names are the window manager's own choice, so they are read, not known."""
    client, frame = probe.window(title)
    left, top = frame.x, frame.y
    right, bottom = frame.x + frame.width - 1, frame.y + frame.height - 1
    across, down = frame.x + frame.width // 2, client.y + client.height // 2
    places = {
        "title bar": (across, (frame.y + client.y) // 2),
        "top edge": (across, top),
        "left edge": (left, down),
        "right edge": (right, down),
        "bottom edge": (across, bottom),
        "top left corner": (left, top),
        "top right corner": (right, top),
        "bottom left corner": (left, bottom),
        "bottom right corner": (right, bottom),
    }
    return [Point("window manager", place, *where) for place, where in places.items()]


def root(x, y):
    return [Point("window manager", "desktop", x, y)]
