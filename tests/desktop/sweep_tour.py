#!/usr/bin/env python3
"""A pointer that goes over a web page with every cursor that pages can ask for, in a browser that gives its cursors no
names. Says by the server's cursor events for how long the desktop's own pointer showed where the theme's must be. Ends
with 1 when that is long enough to be seen.

  sweep_tour.py --build BUILD_FOLDER [--quiet] [--logs FOLDER] [--dwell MS]
"""
import argparse
import os
import subprocess
from dataclasses import dataclass

import children
from desktop import Desktop
from program import Driver
from report import Report
from theme import Theme

TITLE = "Every cursor"
CURSORS = ("default context-menu help pointer progress wait cell crosshair text vertical-text alias copy move no-drop "
           "not-allowed grab grabbing e-resize n-resize ne-resize nw-resize s-resize se-resize sw-resize w-resize "
           "ew-resize ns-resize nesw-resize nwse-resize col-resize row-resize all-scroll zoom-in zoom-out").split()
COLUMNS, WIDTH, HEIGHT = 6, 120, 80
ROWS = -(-len(CURSORS) // COLUMNS)
BROWSER = ["chromium", "--no-sandbox", "--no-first-run", "--no-default-browser-check", "--disable-gpu",
           "--disable-extensions", "--disable-background-networking", "--disable-component-update", "--disable-sync",
           "--disable-dev-shm-usage", "--password-store=basic", "--window-position=100,60"]
#: Longer than that a picture is drawn on every screen at least once, microseconds.
VISIBLE = 17000
#: How many of the changes may last as long: on a loaded machine the program itself has to wait for its turn.
MOST_VISIBLE = 0.25
SWEEPS = 3


@dataclass
class Change:
    """One visit of a point: for how long the desktop's pointer showed, in microseconds, and what stayed."""
    cursor: str
    flash: int
    last: str


def page():
    cells = "".join(f'<div style="cursor:{cursor}">{cursor}</div>' for cursor in CURSORS)
    return (f"<!DOCTYPE html><title>{TITLE}</title><style>"
            f"body{{margin:0;position:fixed;left:0;bottom:0;width:{COLUMNS * WIDTH}px;display:grid;"
            f"grid-template-columns:repeat({COLUMNS},{WIDTH}px);grid-auto-rows:{HEIGHT}px;user-select:none}}"
            f"</style><body>{cells}</body>")


class SweepTour:
    def __init__(self, desktop, options):
        self.desktop = desktop
        self.options = options
        self.report = Report(options.quiet)
        self.theme = Theme("bibata-modern-ice", "Bibata-Modern-Ice", desktop.tools)

    def open_browser(self):
        folder = os.path.join(self.desktop.folder, "browser")
        os.makedirs(folder)
        file = os.path.join(folder, "page.html")
        with open(file, "w") as text:
            text.write(page())
        self.desktop.start("browser", BROWSER + [f"--user-data-dir={folder}/profile", f"--app=file://{file}",
                                                 f"--window-size={COLUMNS * WIDTH},{ROWS * HEIGHT + 60}"])
        try:
            children.wait_until("the page is on the screen", lambda: self.desktop.probe.window(TITLE), 90)
        except TimeoutError as error:
            raise RuntimeError(f"{error}\n{self.desktop.log_text('browser')[-1500:]}") from None
        client, _ = self.desktop.probe.window(TITLE)
        bottom = client.y + client.height
        self.points = [(client.x + WIDTH // 2 + WIDTH * (index % COLUMNS),
                        bottom - HEIGHT * ROWS + HEIGHT // 2 + HEIGHT * (index // COLUMNS))
                       for index in range(len(CURSORS))]

    def page_answers(self):
        """The browser shows the page's cursors, and not yet only its own arrow."""
        text = CURSORS.index("text")
        for index in (text, text + 1):
            self.desktop.probe.move(*self.points[index])
            shown = self.desktop.probe.settle(100, 1000)
        return shown.look and shown.look != self.arrow

    def own_pictures(self):
        """What the desktop shows for each cursor before anything is applied."""
        self.desktop.probe.move(*self.points[0])
        self.arrow = self.desktop.probe.settle(100, 1000).look
        children.wait_until("the page answers the pointer", self.page_answers, 60)
        own = set()
        for x, y in self.points:
            self.desktop.probe.move(x, y)
            own.update(self.desktop.probe.frames(3, 150) or [])
            own.add(self.desktop.probe.settle(60, 300).look)
        return own - {""}

    def sweep(self, own):
        words = [os.path.join(self.desktop.tools, "pointer_sweep"), str(self.options.dwell)]
        for x, y in self.points:
            words += [str(x), str(y)]
        result = subprocess.run(words, env=self.desktop.environment, check=True, capture_output=True, text=True,
                                timeout=120)
        changes, shown_since, at = [], None, 0

        def shows_other(now):
            nonlocal shown_since
            if shown_since is not None and changes:
                changes[-1].flash += now - shown_since
            shown_since = None

        for line in result.stdout.splitlines():
            kind, time, *rest = line.split(" ", 3)
            at = int(time)
            if kind == "point":
                # What still shows there is the page's answer to the last point.
                if shown_since is not None:
                    shows_other(at)
                changes.append(Change(CURSORS[len(changes)], 0, changes[-1].last if changes else "-"))
                continue
            shows_other(at)
            look, name = rest[0], rest[1] if len(rest) > 1 else ""
            # None of the theme's pointers is without a name.
            if look in own or (look == "-" and not name):
                shown_since = at
            if changes:
                changes[-1].last = look if look != "-" else name
        shows_other(at + 1000 * self.options.dwell if shown_since is not None else at)
        return changes

    def run(self):
        self.report.stage("The page before a theme")
        self.theme.install(self.desktop.data)
        self.open_browser()
        own = self.own_pictures()
        self.report.check("the browser has a pointer for nearly each", len(own) > len(CURSORS) // 2, f"{len(own)}")
        driver = Driver(self.desktop, os.path.join(self.desktop.tools, "driver"))
        self.desktop.probe.move(5, 5)
        driver.command("apply " + self.theme.identifier)
        arrow = self.desktop.probe.wait_for(self.theme.looks("left_ptr", 1.0), 20000)
        self.report.check("the theme is in force", arrow.look in self.theme.looks("left_ptr", 1.0), arrow.look)
        for number in range(SWEEPS):
            self.judge(f"Sweep {number + 1}", self.sweep(own), own)
        driver.quit()
        return self.report.close()

    def judge(self, title, changes, own):
        self.report.stage(title)
        flashes = [change.flash for change in changes if change.flash > 0]
        share = sum(flashes) / (1000 * self.options.dwell * len(changes))
        mean = sum(change.flash for change in changes) / len(changes) / 1000
        visible = sum(1 for flash in flashes if flash >= VISIBLE)
        print(f"  {len(changes)} changes, {len(flashes)} flashes, {visible} of a frame or longer; the desktop's own "
              f"{100 * share:.2f} % of the time, {mean:.2f} ms a change, at most {max(flashes, default=0) / 1000:.1f} ms",
              flush=True)
        if not self.options.quiet:
            for change in changes:
                print(f"    {change.cursor:15} {change.flash / 1000:8.2f} ms  then {change.last}")
        self.report.check("most changes cannot be seen", visible <= MOST_VISIBLE * len(changes),
                          f"{visible} of {len(changes)} lasted {VISIBLE / 1000:.0f} ms or more")
        stayed = [change.cursor for change in changes if change.last in own]
        self.report.check("no pointer stays the desktop's", not stayed, " ".join(stayed))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="build folder")
    parser.add_argument("--quiet", action="store_true", help="print only sums and failures")
    parser.add_argument("--logs", help="folder for the logs")
    parser.add_argument("--dwell", type=int, default=230, help="how long the pointer stays at a point, milliseconds")
    options = parser.parse_args()
    options.build = os.path.abspath(options.build)
    with Desktop(os.path.join(options.build, "tests", "desktop")) as desktop:
        tour = SweepTour(desktop, options)
        try:
            good = tour.run()
        finally:
            desktop.keep_logs(options.logs, "driver", "server", "browser")
    return 0 if good else 1


if __name__ == "__main__":
    children.run(main)
