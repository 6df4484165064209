#!/usr/bin/env python3
"""The whole story of the application on a private desktop, driven by clicks and keys: tray, popover, settings, about,
second copy, quitting. What it says of itself is read by accessibility, the pointer that it makes is judged by an
independent client, and a picture of each step is kept. Ends with 1 when something is not as it must be.

  shell_tour.py --build FOLDER [--part popover|windows] [--host tint2|xfce4-panel] [--edge top|bottom] [--short]
      [--quiet] [--pictures FOLDER]

--part is one half of the story, so that both can be told beside one another; --short is the demonstration: download,
apply, size, windows, reset. Needs the system's Python with gi.
"""
import argparse
import os
import time
import traceback

from session import ShellDesktop  # first: it finds the modules beside this folder

import archives
import children
import points
from application import Application
from children import wait_until
from judge import Judge
from notifications import Notifications
from input_devices import InputDevices
from popover_steps import BIBATA, FREE, NUMIX, PopoverSteps
from probe import Box
from report import Report
from screen import Screen
from server import Server
from theme import Theme, write_preferences
from tray_hosts import HOSTS
from window_steps import WindowSteps

PARTS = {"popover": ["without_a_tray", "opening", "accessibility", "filters", "download", "failure", "apply", "slider",
                     "system_default", "delete"],
         "windows": ["menu", "settings", "exclusions", "about", "no_answer", "copies", "quitting", "updates", "reset"]}
STARTUP = """[PINTLEAPP] Calling showSystemCursorGuaranteed()
[PINTLEAPP] showSystemCursorGuaranteed() DONE
[PINTLEAPP] setupMenuBar()
[MENUBAR] setupMenuBar() START
[MENUBAR] Status item created:
[MENUBAR] Setting up button...
[MENUBAR] Button configured with action: statusBarClicked
[MENUBAR] Creating popover...
[MENUBAR] Popover created with PopoverView
[MENUBAR] setupMenuBar() DONE
[PINTLEAPP] setupEventMonitor()
[PINTLEAPP] setupNotificationObservers()
[PINTLEAPP] Calling applyLastCursor() SYNCHRONOUSLY
[PINTLEAPP] applyLastCursor() START
[PINTLEAPP] CursorViewModel created
[PINTLEAPP] applyLastCursor() DONE
[PINTLEAPP] applyLastCursor() DONE""".splitlines()


class ShellTour(PopoverSteps, WindowSteps):
    def __init__(self, desktop, options):
        self.desktop, self.options = desktop, options
        self.report = Report(options.quiet)
        self.judge = Judge(desktop.probe, self.report, options.pictures)
        self.input = InputDevices(desktop)
        self.screen = Screen(desktop, options.pictures)
        self.host = HOSTS[options.host](desktop, options.edge)
        self.tools = os.path.join(options.build, "tests", "desktop")
        self.app = Application(desktop, self.input, self.host, os.path.join(options.build, "pintle"))
        self.theme = Theme(BIBATA, "Bibata-Modern-Ice", self.tools)
        self.numix = Theme(NUMIX, "DMZ-White", self.tools)
        self.check = self.report.check

    # The stage.

    def set_the_stage(self):
        desktop = self.desktop
        www = os.path.join(desktop.folder, "www")
        os.makedirs(www)
        archives.write_all(www, (BIBATA, NUMIX))
        self.server = Server(www, desktop.log("web server"))
        desktop.environment["PINTLE_MIRROR"] = f"http://127.0.0.1:{self.server.port}"
        self.input.wallpaper()
        desktop.start_xterm("xterm", 20, 80)
        qt = points.qt("Qt", desktop.start_qt("Qt", 20, 330))
        wanted = ("OpenHand", "PointingHand", "LineEdit", "Arrow")
        self.points = points.xterm("xterm", desktop.probe)[:1] + [each for each in qt if each.place in wanted]
        self.report.stage("Before: the desktop's own pointers")
        self.judge.desktops_own(self.points, self.theme)

    def pointer(self, title, theme=None, scale=1.0, among=None):
        self.judge.stage(title, among or self.points, theme, scale)
        self.input.do("mousemove", *FREE)

    def held_points(self):
        return [each for each in self.points if self.judge.is_held_by_server(each)]

    def picture(self, name, box=None):
        self.screen.still(box or Box(0, 0, self.screen.width, self.screen.height))
        return self.screen.picture(name, box)

    @staticmethod
    def box_of(seen):
        return seen.node.box()

    def keep_text(self, name, text):
        with open(os.path.join(self.options.pictures, name + ".txt"), "w", encoding="utf-8") as file:
            file.write(text + "\n")

    def themes_folder(self):
        return os.path.join(self.desktop.data, "Pintle", "Themes")

    def expect(self, what, question, seconds=10):
        """Waits for a statement to become true."""
        try:
            wait_until(what, question, seconds, 0.05)
        except TimeoutError:
            self.check(what, False)
            return False
        self.check(what, True)
        return True

    def expect_line(self, line, cause, seconds=10):
        before = self.app.count(line)
        cause()
        self.expect("logs " + line, lambda: self.app.count(line) > before, seconds)

    # Start and end.

    def without_a_tray(self):
        self.report.stage("No tray yet")
        self.notifications = Notifications(self.desktop)
        self.app.start()
        self.check("the start-up's lines come in their order", self.in_order(STARTUP),
                   "\n".join(line for line in self.app.lines() if line.startswith(("[MENU", "[PINTLEAPP"))))
        self.check("a second copy ends at once and without an error", self.app.start_another() == 0)
        self.expect("it made the first one show its popover", self.app.popover)
        self.expect("the missing tray is told in a message", self.notifications.shown)
        self.picture("no-tray")
        self.check("another second copy ends as well", self.app.start_another() == 0)
        self.check("the open popover stays open", bool(self.app.popover()))
        self.input.key("Escape")
        self.app.wait_gone("the popover", self.app.popover)
        self.host.start()
        self.expect("a tray that comes later gets the item", self.host.icon)
        time.sleep(0.5)
        self.check("the message came once", len(self.notifications.shown()) == 1, str(self.notifications.shown()))
        self.picture("tray")

    def in_order(self, wanted):
        lines = iter(self.app.lines())
        return all(any(line.startswith(want) for line in lines) for want in wanted)

    def copies(self):
        self.report.stage("A second copy, and one that was killed")
        self.app.close_popover()
        self.check("a second copy ends without an error", self.app.start_another() == 0)
        self.expect("the first one shows its popover", self.app.popover)
        self.check("a second copy ends again", self.app.start_another() == 0)
        time.sleep(0.3)
        self.check("the open popover stays open", bool(self.app.popover()))
        self.input.key("Escape")
        self.app.kill()
        self.pointer("kill -9: the theme stays in force", self.theme, among=self.held_points())
        self.app.start()
        self.check("the next start is the first copy again", self.app.is_running())
        self.check("and a second copy ends again", self.app.start_another() == 0)
        self.expect("having shown the popover", self.app.popover)
        self.app.icon()
        self.app.close_popover()
        self.pointer("After the start", self.theme)

    def quitting(self):
        self.report.stage("Quitting without restoring")
        self.menu_item("Quit Pintle")
        self.check("it ends without an error", self.app.ended() == 0)
        self.check("it says so twice", self.app.count("[AppDelegate] System cursor restored") >= 2)
        self.pointer("The theme stays in force", self.theme, among=self.held_points())
        self.report.stage("Quitting with restoring")
        write_preferences(self.desktop.config, **(self.app.preferences() | {"restoreOnQuit": True}))
        self.app.start()
        self.app.open_popover()
        self.app.click("push button|button", "Quit Pintle")
        self.check("it ends without an error", self.app.ended() == 0)
        self.pointer("The desktop's own")

    # The story.

    def story(self):
        self.set_the_stage()
        if self.options.only and "without_a_tray" not in self.options.only:
            self.theme.install(self.desktop.data)
            write_preferences(self.desktop.config, currentThemeId=BIBATA)
            self.host.start()
            self.app.start()
            wait_until("the tray passes clicks on", self.passes_clicks_on)
            self.app.close_popover()
        for step in PARTS["popover"] + PARTS["windows"]:
            self.attempt(step)

    def passes_clicks_on(self):
        """A tray may have its place for the item before it knows the item."""
        if not self.app.popover():
            self.input.click_on(self.app.icon())
        try:
            return wait_until("the popover is open", self.app.popover, 2, 0.05)
        except TimeoutError:
            return None

    def demonstration(self):
        self.set_the_stage()
        self.host.start()
        self.app.start()
        for step in ("download", "apply", "slider", "settings", "about", "reset"):
            self.attempt(step)

    def attempt(self, step):
        """A step that breaks is one failure; the next ones begin from a closed popover."""
        if self.options.only and step not in self.options.only:
            return
        begun = time.monotonic()
        try:
            getattr(self, step)()
        except (TimeoutError, RuntimeError, AttributeError, StopIteration) as error:
            self.check(f"{step} comes to its end", False,
                       f"{error}\n" + "".join(traceback.format_tb(error.__traceback__)[-3:]))
            self.screen.picture("broken-" + step)
            if self.app.process and not self.app.is_running():
                self.check("the program is still there", False, f"it ended with {self.app.process.returncode}")
                self.app.start()
            self.input.key("Escape")
        print(f"  ({step}: {time.monotonic() - begun:.1f} s)", flush=True)

    def run(self):
        if self.options.short:
            self.demonstration()
        else:
            self.story()
        return self.report.close()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="build folder")
    parser.add_argument("--host", choices=HOSTS, default="tint2")
    parser.add_argument("--edge", choices=("top", "bottom"), default="top")
    parser.add_argument("--short", action="store_true")
    parser.add_argument("--part", choices=PARTS)
    parser.add_argument("--only", metavar="STEP", nargs="+", help="these steps of the story alone")
    parser.add_argument("--quiet", action="store_true", help="print only failures")
    parser.add_argument("--pictures", help="folder for pictures and logs (default: BUILD/tour)")
    options = parser.parse_args()
    if options.part:
        options.only = PARTS[options.part]
    options.build = os.path.abspath(options.build)
    options.pictures = os.path.abspath(options.pictures or os.path.join(options.build, "tour"))
    with ShellDesktop(os.path.join(options.build, "tests", "desktop")) as desktop:
        tour = ShellTour(desktop, options)
        try:
            good = tour.run()
        finally:
            desktop.keep_logs(options.pictures, "pintle", "web server", "notifications", options.host)
    print(f"Pictures and logs: {options.pictures}")
    return 0 if good else 1


if __name__ == "__main__":
    children.run(main)
