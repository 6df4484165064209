"""Looks at every point of a stage and judges what is shown."""
import os

from desktop import DESKTOP_SIZE, DESKTOP_THEME
from names import RELATIVES

#: How long a pointer may take to become what it must be, milliseconds.
PATIENCE = 3000
#: The same once so many looks have failed that waiting for each adds nothing.
SHORT_PATIENCE = 300
MANY_FAILURES = 12
ARROW = "left_ptr"
#: Where the pointer goes before a second look: over the bare root window.
AWAY = (2, 2)


class Judge:
    def __init__(self, probe, report, artefacts=None):
        """`artefacts` is a folder for the pixels of pointers that failed."""
        self.probe = probe
        self.artefacts = artefacts
        self.report = report
        self.own = {}
        self.names = {}
        #: Applications whose cursors have no names.
        self.nameless = set()

    def patience(self):
        return SHORT_PATIENCE if len(self.report.failures) > MANY_FAILURES else PATIENCE

    def failed(self, point, shown, verdict):
        self.report.row(point, shown, verdict, failed=True)
        if self.artefacts:
            self.probe.save_pixels(os.path.join(self.artefacts, f"failed-{len(self.report.failures)}.pam"))

    def desktops_own(self, points, theme, scale=1.0):
        """First stage: learns the desktop's own pointers, and checks that they differ from the theme's."""
        for point in points:
            self.probe.move(point.x, point.y)
            shown = self.probe.settle(80, 600)
            if not point.exception and shown.look not in self.library(self.shown_name(point, shown)):
                # A loaded machine may still show the pointer of the place before.
                shown = self.probe.settle(500, PATIENCE)
            name = self.shown_name(point, shown)
            self.names[point.label] = name
            library = self.library(name)
            self.own[point.label] = library if shown.look in library else [shown.look]
            if not shown.name and len(library) == 1:
                self.nameless.add(point.application)
            if not shown.look:
                self.failed(point, shown, "the server tells nothing of it")
            elif point.exception:
                self.report.row(point, shown, "exception: " + point.exception, exception=True)
            elif name and not library and shown.name == name:
                # Drawn from the cursor font under a name that the desktop's theme lacks. A reset can only give it what
                # the theme has for the shape.
                self.own[point.label] += self.relatives_looks(name)
                self.report.row(point, shown, "from the cursor font")
            elif not name or shown.look not in library:
                self.failed(point, shown, f"not {DESKTOP_THEME}'s {name or 'anything'}")
            elif shown.look in theme.looks(name, scale):
                self.failed(point, shown, "cannot be told from the theme's")
            else:
                self.report.row(point, shown, "the desktop's own")

    def library(self, name):
        return self.probe.library(DESKTOP_THEME, DESKTOP_SIZE, name) if name else []

    def relatives_looks(self, name):
        """What the desktop's theme has under the other names of a shape; some themes draw some of them as the arrow,
        which then is not meant."""
        arrow = self.library(ARROW)
        return [look for other in RELATIVES.get(name, []) for look in self.library(other) if look not in arrow]

    def shown_name(self, point, shown):
        """The name that a shown pointer stands for: the one the application asks for, and where the desktop's theme
        lacks it or draws it as another, the one that the application took instead."""
        name = point.name or shown.name
        library = self.library(name)
        relatives = RELATIVES.get(name, [])
        if not library:
            # A window for which nothing was found shows the arrow of what lies under it.
            if shown.name in [ARROW, *relatives]:
                return shown.name
            if not shown.name:
                return next((other for other in relatives if shown.look in self.library(other)), name)
        # Nobody can tell a copy of the arrow that has no name from the arrow.
        is_copy = not shown.name and shown.look in library and shown.look in self.library(ARROW)
        return ARROW if is_copy else name

    def expected(self, point, theme, scale):
        """The looks a point must have and the words for them. A name for which the theme has no file, and a name
        that is in no row, keep the desktop's own."""
        looks = theme.looks(self.names[point.label], scale) if theme else []
        if looks:
            return looks, f"{theme.identifier} at {scale}"
        return self.own[point.label], "the desktop's own" + (" (the theme has none)" if theme else "")

    def stage(self, title, points, theme=None, scale=1.0):
        """Every point shows the theme's pointer, or with no theme the desktop's own."""
        self.report.stage(title)
        for point in points:
            self.probe.move(point.x, point.y)
            if point.exception:
                self.look_at_exception(point)
                continue
            looks, words = self.expected(point, theme, scale)
            shown, complaint = self.look(looks, words, animated=bool(theme) and len(looks) > 1)
            if complaint:
                # GTK changes the cursor of one window as the pointer moves over it, and a change in the very moment
                # in which another program looks can be lost until the pointer moves again.
                self.probe.move(*AWAY)
                self.probe.move(point.x, point.y)
                self.report.second_look(point, complaint)
                shown, complaint = self.look(looks, words, animated=bool(theme) and len(looks) > 1)
            if complaint:
                self.failed(point, shown, complaint)
                continue
            if theme and len(looks) > 1:
                words += f", animated ({len(looks)} frames)"
            self.report.row(point, shown, words)

    def look(self, looks, words, animated):
        """What is shown, and what is wrong with it (empty when nothing is)."""
        shown = self.probe.wait_for(looks, self.patience())
        if shown.look not in looks:
            return shown, f"NOT {words}: shows {shown.look or 'nothing'}, not {looks[0]}"
        if animated:
            frames = self.probe.frames(3, 3000)
            strange = [frame for frame in frames if frame not in looks]
            if len(frames) < 2 or strange:
                return shown, (f"does not animate: {len(frames)} frames seen, "
                               f"{len(strange)} of them not the theme's")
        return shown, ""

    def look_at_exception(self, point):
        shown = self.probe.settle(60, 400)
        if point.untouched and shown.look not in self.own[point.label]:
            self.failed(point, shown, "was changed although it " + point.exception)
        else:
            self.report.row(point, shown, "exception: " + point.exception, exception=True)

    def same_names(self, points):
        """For applications that started late: what was learned of the same places of the first ones."""
        for point in points:
            first = point.label.removeprefix("late ")
            self.names[point.label] = self.names[first]
            self.own[point.label] = self.own[first]

    def is_held_by_server(self, point):
        """Whether the pointer stays the theme's while no copy of the program runs. Not GTK's, which defines its
        cursors for the device anew each time the pointer crosses a window, nor those without names, of which the
        server knows only by the window."""
        application = point.application.removeprefix("late ")
        return not application.startswith("GTK") and application not in self.nameless
