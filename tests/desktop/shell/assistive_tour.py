#!/usr/bin/env python3
"""The story of the application for somebody who neither sees nor points nor types: a theme is found, downloaded, worn,
made larger, kept from one program, deleted, and everything is reset, by what the accessibility bus offers alone:
actions, values, texts and the focus. Roles, names, states and their order are read on the way. An independent client
judges the pointers. Ends with 1 when something is not as it must be.

  assistive_tour.py --build FOLDER [--quiet] [--pictures FOLDER]

Needs the system's Python with gi.
"""
import argparse
import contextlib
import os
import re
import time

from session import ShellDesktop  # first: it finds the modules beside this folder

import accessible
import archives
import children
import points
from application import THEMES, Application
from children import wait_until
from judge import Judge
from probe import Box
from report import Report
from screen import Screen
from server import Server
from theme import Theme

AMBER, AMBER_ROW = "bibata-modern-amber", "Bibata Modern Amber"
ALL_ROWS = 77
BUTTON = "push button|button"
DELETE = "Delete downloaded theme"
#: The line of the log that begins a download.
DOWNLOADS = "[DOWNLOAD] downloadTheme() CALLED for theme: "
#: Roles that only hold others.
HOLDERS = ("filler", "panel", "frame", "window", "dialog", "application", "grouping", "section", "redundant object")
POPOVER = [("heading", "Pintle"), (BUTTON, "Settings"), (BUTTON, "About Pintle"), (BUTTON, "Quit Pintle"),
           ("radio button", "All"), ("radio button", "Universal"), ("radio button", "Right"), ("radio button", "Left"),
           ("list", THEMES), ("slider", "Cursor Size"), ("label", "100%"), (BUTTON, "System Default"),
           (BUTTON, "Reset")]
SETTINGS = ["Startup", "Launch at Login", "Behavior", "Apply Last Cursor on Launch", "Restore System Cursor on Quit",
            "Use Themed Cursor in Fullscreen", "Use System Cursor for Missing Types",
            "System Cursor During Screen Sharing", "Interface Style", "Total Glass Mode", "Cursor Size", "75%", "100%",
            "125%", "150%", "Exclusions", "Add app to exclusion list", "No exclusions added", "Reset",
            "Reset Application"]


class Announcements:
    """What is said besides the tree: in the tree for a moment, or as an event where the toolkit has one."""

    def __init__(self, app, accessibility):
        self.app, self.said = app, []
        bus = accessibility.bus
        accessible.call(bus, accessible.ROOT[0], "/org/a11y/atspi/registry", accessible.ROOT[0], "RegisterEvent", "(s)",
                        "object:announcement")
        bus.signal_subscribe(None, accessible.INTERFACE + "Event.Object", "Announcement", None, None,
                             accessible.Gio.DBusSignalFlags.NONE,
                             lambda *event: self.said.append(str(event[5].unpack()[3])))

    def heard(self, words):
        context = accessible.GLib.MainContext.default()
        while context.iteration(False):
            pass
        note = self.app.look().find("notification")
        if note and note.name and note.name not in self.said[-1:]:
            self.said.append(note.name)
        return any(re.search(words, each) for each in self.said)


class AssistiveTour:
    def __init__(self, desktop, options):
        self.desktop, self.options = desktop, options
        self.report = Report(options.quiet)
        self.check = self.report.check
        self.judge = Judge(desktop.probe, self.report, options.pictures)
        self.screen = Screen(desktop, options.pictures)
        self.tools = os.path.join(options.build, "tests", "desktop")
        # Neither a mouse nor a tray.
        self.app = Application(desktop, None, None, os.path.join(options.build, "pintle"))
        self.theme = Theme(AMBER, "Bibata-Modern-Amber", self.tools)

    # What an assistive program does.

    def act(self, seen, action="Press"):
        self.check(f"{seen.role} {seen.name} offers {action}", action in seen.node.actions(), str(seen.node.actions()))
        seen.node.act(action)

    def press(self, role, name, action="Press"):
        self.act(self.app.wait_for(role, name), action)

    def expect(self, what, question, seconds=10):
        try:
            wait_until(what, question, seconds, 0.05)
        except TimeoutError:
            self.check(what, False)
            return
        self.check(what, True)

    def keep(self, name, seen):
        self.screen.picture(name, seen.node.box() if seen else Box(0, 0, self.screen.width, self.screen.height))
        with open(os.path.join(self.options.pictures, name + ".txt"), "w", encoding="utf-8") as file:
            file.write(seen.written() + "\n" if seen else "")

    def open_popover(self):
        """As a launcher does it: a second copy asks the first one."""
        if not self.app.popover():
            self.check("a second copy ends without an error", self.app.start_another() == 0)
        return wait_until("the popover is open", self.app.popover, 10, 0.05)

    def pointer(self, title, theme=None, scale=1.0):
        self.judge.stage(title, self.points, theme, scale)

    # The story.

    def set_the_stage(self):
        desktop = self.desktop
        www = os.path.join(desktop.folder, "www")
        os.makedirs(www)
        archive = os.path.join(www, os.path.basename(archives.address_of(AMBER)))
        archives.Tree().theme("Bibata-Modern-Amber/cursors", "Bibata-Modern-Amber").write(archive)
        self.server = Server(www, desktop.log("web server"))
        # A name that nobody can look up, as without a network.
        desktop.environment |= {"PINTLE_MIRROR": "https://pintle.invalid", "RES_OPTIONS": "timeout:1 attempts:1"}
        desktop.start_xterm("xterm", 20, 80)
        qt = points.qt("Qt", desktop.start_qt("Qt", 20, 330))
        wanted = ("PointingHand", "LineEdit", "Arrow")
        self.points = points.xterm("xterm", desktop.probe)[:1] + [each for each in qt if each.place in wanted]
        self.report.stage("Before: the desktop's own pointers")
        self.judge.desktops_own(self.points, self.theme)
        self.app.start()
        self.announcements = Announcements(self.app, desktop.accessibility)

    def tree(self):
        self.report.stage("The popover's tree")
        popover = self.open_popover()
        self.keep("popover", popover)
        shown = [each for each in popover.all() if "showing" in each.states]
        places = []
        for role, name in POPOVER:
            found = [at for at, each in enumerate(shown) if each.role in role.split("|") and each.name == name]
            self.check(f"there is one {role} {name}", len(found) == 1, str(found))
            places += found[:1]
        self.check("they stand in the order in which they are seen", places == sorted(places), str(places))
        self.complete(popover)
        row = popover.find("list item")
        self.check("a row tells author, licence, hand and state", bool(re.match(
            r".+, .+, (Universal|Right|Left), (Animated cursors, )?Click to download", row.description)),
            row.description)
        self.check("nothing is worn", not list(popover.find_all("list item", state="checked")))
        self.check("one filter is chosen", [each.name for each in popover.find_all("radio button", state="checked")]
                   == ["All"])

    def complete(self, window):
        """Whatever is shown and can be acted on has a name and can be given the focus."""
        for each in window.all():
            if "showing" not in each.states or each.role in HOLDERS:
                continue
            self.check(f"a {each.role} has a name", bool(each.name), each.description)
            if each.role in ("push button", "button", "radio button", "check box", "slider", "list item", "text"):
                self.check(f"{each.role} {each.name} takes the focus", "focusable" in each.states)

    def filter(self):
        self.report.stage("Filters")
        self.press("radio button", "Left")
        self.expect("Left is chosen", lambda: "checked" in self.app.look().find("radio button", "Left").states)
        self.expect("all rows are for it", lambda: all(
            re.search(", (Left|Universal), ", each.description) for each in self.app.popover().find_all("list item")))
        self.press("radio button", "All")
        self.expect("All is chosen", lambda: "checked" in self.app.look().find("radio button", "All").states)

    def walk(self):
        """By the focus alone every row comes into the tree, is marked and in sight."""
        self.report.stage("Every row is found")
        names, end = [], time.monotonic() + 100
        while len(names) < ALL_ROWS and time.monotonic() < end:
            rows = list(self.app.popover().find_all("list item", showing=False))
            names += [row.name for row in rows if row.name not in names]
            last = rows[-1]
            last.node.focus()
            wait_until(f"{last.name} has the focus", lambda: "focused" in last.node.look(0).states, 5)
            themes, box = self.app.popover().find("list", THEMES).node.box(), self.app.place(last)
            self.check(f"{last.name} is in sight",
                       box.y >= themes.y and box.y + box.height <= themes.y + themes.height, f"{box} {themes}")
        self.check("all themes are listed", len(names) == ALL_ROWS, str(len(names)))

    def row(self, name):
        """Walks up by the focus until the row is in the tree."""
        for _ in range(2 * ALL_ROWS):
            popover = self.app.popover()
            found = popover.find("list item", name, showing=False)
            if found:
                found.node.focus()
                wait_until(f"{name} has the focus", lambda: "focused" in found.node.look(0).states, 5)
                places = [row.node.box().y for row in self.app.popover().find_all("list item")]
                self.check("the rows are in their order", places == sorted(places), str(places))
                return self.app.wait_for("list item", name)
            popover.find("list item", showing=False).node.focus()
        raise RuntimeError(f"there is no row {name}")

    def no_network(self):
        self.report.stage("Finding Amber, without a network")
        self.act(self.row(AMBER_ROW))
        self.app.wait_row(AMBER_ROW, "Error - Tap to retry", 20)
        line = self.app.wait_for("alert message|alert|notification", "There is no network")
        retry = line.find(BUTTON, "Retry")
        self.check("the line offers Retry", bool(retry))
        popover = self.app.popover()
        self.check("it stands between the filter and the rows", [
            each.name for each in popover.all() if each.name in ("Left", line.name, THEMES)] ==
            ["Left", line.name, THEMES])
        self.check("nothing of the progress is left",
                   not popover.find("list item", AMBER_ROW).find("progress bar"))
        self.keep("no-network", popover)
        tries = self.app.count(DOWNLOADS)
        self.act(retry)
        self.expect("Retry tries again", lambda: self.app.count(DOWNLOADS) > tries)
        self.app.wait_row(AMBER_ROW, "Error - Tap to retry", 20)
        self.press(BUTTON, "Quit Pintle")
        self.check("it ends without an error", self.app.ended() == 0)

    def download(self):
        self.report.stage("Downloading it")
        self.desktop.environment["PINTLE_MIRROR"] = f"http://127.0.0.1:{self.server.port}"
        self.app.start()
        self.open_popover()
        self.server.behave("held")
        self.act(self.row(AMBER_ROW))
        self.app.wait_row(AMBER_ROW, r"Downloading \d+%", 20)
        bar = self.app.wait_for("progress bar", AMBER_ROW)
        self.check("its bar tells how far it is", bool(re.fullmatch(r"\d+%", bar.description)), bar.description)
        self.keep("downloading", self.app.popover())
        self.server.behave("well")
        self.app.wait_row(AMBER_ROW, r"^(?!.*(Downloading|Connecting|Extracting|Starting|Click))", 60)
        self.expect("it is said that it is downloaded", lambda: self.announcements.heard(f"{AMBER_ROW}.*Downloaded"))
        self.check("it is not yet worn", "checked" not in self.row(AMBER_ROW).states)

    def wear(self):
        self.report.stage("Wearing it")
        self.act(self.row(AMBER_ROW))
        self.expect("its row is checked", lambda: "checked" in self.row(AMBER_ROW).states)
        self.expect("it is said that it is applied", lambda: self.announcements.heard(f"{AMBER_ROW}.*Applied"))
        self.check("System Default no longer says that it is in force",
                   "in use" not in self.app.wait_for(BUTTON, "System Default").description)
        self.keep("worn", self.app.popover())
        self.pointer("Worn", self.theme)

    def size(self):
        self.report.stage("125 percent")
        self.open_popover()
        slider = self.app.wait_for("slider", "Cursor Size")
        self.check("the slider tells value and range", (slider.node.value(), *slider.node.range()) == (1.0, 0.75, 1.5),
                   f"{slider.node.value()} {slider.node.range()}")
        slider.node.set_value(1.25)
        self.expect("it is stored", lambda: self.app.preferences().get("cursorScale") == 1.25)
        self.expect("its description tells it", lambda: "125%" in self.app.look().find("slider").description)
        self.pointer("At 125 %", self.theme, 1.25)
        self.open_popover()
        self.press("slider", "Cursor Size", "Increase")
        self.expect("one step more", lambda: abs(self.app.preferences().get("cursorScale") - 1.3) < 0.001)
        self.press("slider", "Cursor Size", "Decrease")
        self.expect("one step less", lambda: abs(self.app.preferences().get("cursorScale") - 1.25) < 0.001)

    def settings(self):
        self.report.stage("Settings")
        self.open_popover()
        self.press(BUTTON, "Settings")
        window = wait_until("its window", lambda: self.app.window("Settings"), 10)
        self.expect("the popover is gone", lambda: not self.app.popover())
        self.keep("settings", window)
        self.complete(window)
        names = [each.name for each in window.all()]
        places, after = [], 0
        for name in SETTINGS:
            self.check(f"{name} comes where it is seen", name in names[after:], str(names[after:]))
            after = names.index(name, after) + 1 if name in names[after:] else after
        toggle = window.find("check box", "Restore System Cursor on Quit", showing=False)
        for wanted in (True, False):
            self.act(toggle, "Press" if wanted else "Toggle")
            self.expect(f"a switch is {'on' if wanted else 'off'} and stored", lambda wanted=wanted: (
                self.app.preferences().get("restoreOnQuit") == wanted and
                ("checked" in toggle.node.look(0).states) == wanted))
        self.check("the size is chosen", "checked" in window.find(None, "125%", showing=False).states)

    def exclusion(self):
        self.report.stage("Excluding a program")
        self.act(self.app.window("Settings").find(BUTTON, "Add app to exclusion list", showing=False))
        field = wait_until("the field", lambda: self.app.window("Settings").find("text|entry", state="editable"), 10)
        self.check("the field has a name", field.name == "App name (e.g., Safari)", field.name)
        field.node.write(" Solitaire ")
        self.expect("it has the text", lambda: field.node.text() == " Solitaire ")
        self.act(field)
        self.expect("it is stored", lambda: self.app.preferences().get("excludedApps") == ["Solitaire"])
        self.expect("it is listed", lambda: self.app.window("Settings").find("list item", "Solitaire", showing=False))
        self.keep("excluded", self.app.window("Settings"))
        lines = self.app.count("[SystemCursorChanger] Suspended for excluded app: Solitaire")
        self.desktop.start("game", ["xterm", "-class", "Solitaire", "-title", "game", "-geometry", "20x3+500+80", "-e",
                                    "sleep", "100000"])
        self.expect("the program in front has its own pointers",
                    lambda: self.app.count("[SystemCursorChanger] Suspended for excluded app: Solitaire") > lines)
        self.pointer("An excluded program in front")
        self.desktop.stop("game")
        self.expect("the others have the theme again",
                    lambda: self.app.count("[SystemCursorChanger] Resumed after excluded app") > 0)
        self.act(self.app.window("Settings").find(BUTTON, "Remove Solitaire", showing=False))
        self.expect("it is removed", lambda: not self.app.preferences().get("excludedApps"))

    def delete(self):
        self.report.stage("Deleting it")
        self.open_popover()
        self.check("it is worn at 125 %", "checked" in self.row(AMBER_ROW).states)
        row = self.row(AMBER_ROW)
        button = wait_until("its delete button", lambda: self.row(AMBER_ROW).find(BUTTON, DELETE), 5)
        self.check("no other row offers it",
                   [each.parent.name for each in self.app.popover().find_all(BUTTON, DELETE)] == [row.name])
        self.act(button)
        self.app.wait_row(AMBER_ROW, "Click to download")
        self.check("its folder is gone", not os.path.exists(
            os.path.join(self.desktop.data, "Pintle", "Themes", AMBER)))
        self.pointer("The desktop's own again")

    def reset(self):
        self.report.stage("Reset Application")
        self.open_popover()
        self.press(BUTTON, "Settings")
        wait_until("its window", lambda: self.app.window("Settings"), 10)
        reset = self.app.wait_for(BUTTON, "Reset Application", showing=False)
        self.act(reset)
        self.app.wait_for(BUTTON, "Reset & Quit")
        alert = self.app.look().find("alert|alert message|dialog", "Reset Application?")
        self.check("an alert says what it asks", bool(alert) and "This will delete all downloaded themes" in
                   alert.description, alert and alert.description)
        cancel = self.app.window_of(alert).find(BUTTON, "Cancel")
        self.check("the focus is on Cancel", "focused" in cancel.states)
        self.act(cancel)
        self.app.wait_gone("the question", lambda: self.app.shows(BUTTON, "Reset & Quit"))
        self.check("Cancel changes nothing", self.app.preferences().get("cursorScale") == 1.25)
        self.act(self.app.wait_for(BUTTON, "Reset Application", showing=False))
        self.press(BUTTON, "Reset & Quit")
        self.app.wait_for(None, re.compile("Reset Complete"))
        self.press(BUTTON, "Quit")
        self.check("it ends without an error", self.app.ended() == 0)
        self.check("the size is back", self.app.preferences().get("cursorScale", 1.0) == 1.0,
                   str(self.app.preferences()))
        self.pointer("The desktop's own")

    def run(self):
        self.set_the_stage()
        for step in (self.tree, self.filter, self.walk, self.no_network, self.download, self.wear, self.size,
                     self.settings, self.exclusion, self.delete, self.reset):
            begun = time.monotonic()
            try:
                step()
            except (TimeoutError, RuntimeError, AttributeError, StopIteration, IndexError,
                    accessible.Refused) as error:
                self.check(f"{step.__name__} comes to its end", False, str(error))
                with contextlib.suppress(accessible.Refused, OSError):
                    self.keep("broken-" + step.__name__, self.app.look())
            print(f"  ({step.__name__}: {time.monotonic() - begun:.1f} s)", flush=True)
        return self.report.close()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="build folder")
    parser.add_argument("--quiet", action="store_true", help="print only failures")
    parser.add_argument("--pictures", help="folder for pictures, trees and logs (default: BUILD/tour)")
    options = parser.parse_args()
    options.build = os.path.abspath(options.build)
    options.pictures = os.path.abspath(options.pictures or os.path.join(options.build, "tour"))
    os.makedirs(options.pictures, exist_ok=True)
    with ShellDesktop(os.path.join(options.build, "tests", "desktop")) as desktop:
        tour = AssistiveTour(desktop, options)
        try:
            good = tour.run()
        finally:
            desktop.keep_logs(options.pictures, "pintle", "web server")
    print(f"Pictures, trees and logs: {options.pictures}")
    return 0 if good else 1


if __name__ == "__main__":
    children.run(main)
