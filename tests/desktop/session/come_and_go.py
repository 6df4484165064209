#!/usr/bin/env python3
"""What comes and goes around an applied theme: excluded applications, displays, sleep, the window manager, another
program that changes the desktop's own pointers, and the program's own place at login. Ends with 1 when a pointer or
a log line is not what it must be.

  come_and_go.py --build BUILD_FOLDER [--quiet] [--logs FOLDER]
"""
import argparse
import os
import plistlib
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "shell"))

from session import ShellDesktop  # first: it finds the modules that the others use

import children  # noqa: E402
import points  # noqa: E402
from by_hand import ByHand  # noqa: E402
from desktop import SYSTEM_PYTHON  # noqa: E402
from judge import Judge  # noqa: E402
from report import Report  # noqa: E402
from theme import Theme, write_preferences  # noqa: E402
from tray_hosts import Tint2  # noqa: E402

TAG = "[SystemCursorChanger] "
LOGIN = "org.freedesktop.login1"


class SessionDesktop(ShellDesktop):
    """With a system bus on which a mock of the session manager answers."""

    def start_bus(self):
        super().start_bus()
        bus = children.start(["dbus-daemon", "--session", "--nofork", "--print-address=1"], self.log("system bus"),
                             env=self.environment, stdout=subprocess.PIPE, text=True)
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = bus.stdout.readline().strip()
        self.environment["XDG_SESSION_ID"] = "c1"
        children.start(["timeout", "900", SYSTEM_PYTHON, "-m", "dbusmock", "--system", "--template", "logind"],
                       self.log("logind"), env=self.environment)
        self.wait_for("logind", "answers", lambda: self.mock(
            "/org/freedesktop/login1", "AddSession", "c1", "seat0", "uint32 1000", "user", "true"))

    def mock(self, path, method, *arguments):
        return self.run("gdbus", "call", "--system", "--dest", LOGIN, "--object-path", path, "--method",
                        "org.freedesktop.DBus.Mock." + method, *arguments) == 0

    def run(self, *words):
        return subprocess.run(words, env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=60).returncode


class Round:
    def __init__(self, desktop, options):
        self.desktop = desktop
        self.report = Report(options.quiet)
        self.judge = Judge(desktop.probe, self.report)
        self.tools = os.path.join(options.build, "tests", "desktop")
        self.theme = Theme("bibata-modern-ice", "Bibata-Modern-Ice", self.tools)
        self.program = os.path.join(options.build, "pintle")
        self.host = Tint2(desktop, "bottom")
        self.entry = os.path.join(desktop.config, "autostart", "com.pintle.app.desktop")

    def lines(self):
        """What the program has logged, without the words that the log puts before a line."""
        text = self.desktop.log_text("pintle")
        return [line[line.index("["):] for line in text.splitlines() if "[" in line]

    def count(self, line):
        return sum(1 for each in self.lines() if each.endswith(line))

    def expect_line(self, line, cause):
        """Runs `cause` and waits for one more line of the log."""
        before = self.count(line)
        cause()
        try:
            children.wait_until(line, lambda: self.count(line) > before)
        except TimeoutError:
            self.report.check("logs " + line, False, "\n".join(self.lines()[-8:]))
        else:
            self.report.check("logs " + line, True)

    def activate(self, title):
        self.desktop.run("xdotool", "search", "--onlyvisible", "--name", f"^{title}$", "windowactivate", "--sync")

    def start_application(self, title, name, x, y):
        """A terminal under another application's name, in front once it is on the screen."""
        self.desktop.start(title, ["xterm", "-class", name, "-title", title, "-geometry", f"20x3+{x}+{y}", "-e",
                                   "sleep", "100000"])
        self.desktop.wait_for(title, "is on the screen", lambda: self.desktop.probe.window(title))

    def open_applications(self):
        desktop = self.desktop
        desktop.start_xterm("xterm", 20, 40)
        gtk = points.gtk("GTK", desktop.start_gtk("GTK", 440, 40))
        qt = points.qt("Qt", desktop.start_qt("Qt", 440, 440))
        frame = points.window_manager("xterm", desktop.probe)
        everything = points.xterm("xterm", desktop.probe) + gtk + qt + frame + points.root(1460, 860)
        self.points = [point for point in everything if not point.exception]
        self.report.stage("Before")
        self.judge.desktops_own(self.points, self.theme)
        # Where the theme has a pointer: the others change with the desktop's own theme.
        self.covered = [point for point in self.points if self.theme.looks(self.judge.names[point.label], 1.0)]

    def start(self):
        self.report.stage("The entry of a program that has been moved")
        write_preferences(self.desktop.config, launchAtLogin=True, excludedApps=["Solitaire"])
        os.makedirs(os.path.dirname(self.entry), exist_ok=True)
        with open(self.entry, "w") as file:
            file.write('[Desktop Entry]\nType=Application\nName=Pintle\nExec="/old/place/pintle"\n')
        self.host.start()
        self.driver = ByHand(self.desktop, self.host, self.program)
        with open(self.entry) as file:
            self.report.check("the entry starts the program where it is", f'Exec="{self.program}"' in file.read())
        self.report.check("it is valid", self.desktop.run("desktop-file-validate", self.entry) == 0)
        self.report.check("its writing is logged", self.count("[LaunchAgent] Created plist at: " + self.entry) == 1)
        with open(os.path.join(self.desktop.config, "com.pintle.app.plist"), "rb") as file:
            self.report.check("the place is stored", plistlib.load(file).get("loginItemPath") == self.program)

    def themed(self, title, among=None):
        self.judge.stage(title, among or self.points, self.theme)

    def own(self, title):
        self.judge.stage(title, self.points)

    def exclusions(self):
        self.driver.command("apply " + self.theme.identifier)
        self.themed("Applied")
        self.expect_line(TAG + "Suspended for excluded app: teamviewer QuickSupport",
                         lambda: self.start_application("remote", "teamviewer QuickSupport", 20, 640))
        self.own("An excluded application in front")
        self.expect_line(TAG + "Resumed after excluded app", lambda: self.activate("xterm"))
        self.themed("It is left")
        self.start_application("cards", "Solitaire Deluxe", 20, 740)
        self.activate("cards")
        self.themed("A name that only begins with one of the user's list", self.covered[:4])
        self.expect_line(TAG + "Suspended for excluded app: Solitaire",
                         lambda: self.start_application("game", "Solitaire", 300, 740))
        self.own("An application of the user's list in front")
        self.expect_line(TAG + "Resumed after excluded app", lambda: self.desktop.run(
            "xdotool", "search", "--onlyvisible", "--name", "^xterm$", "windowactivate", "--sync"))
        self.themed("Back in the terminal", self.covered)

    def displays(self):
        line = TAG + "Re-applied after display change"

        def two_changes():
            self.desktop.run("xrandr", "--setmonitor", "LEFT", "750/200x900/240+0+0", "screen")
            time.sleep(0.5)
            self.desktop.run("xrandr", "--setmonitor", "RIGHT", "750/200x900/240+750+0", "none")

        self.report.stage("Two display changes half a second apart")
        self.expect_line(line, two_changes)
        time.sleep(1.5)
        self.report.check("they are one re-apply", self.count(line) == 1)
        self.expect_line(line, lambda: self.desktop.run("xrandr", "--delmonitor", "RIGHT"))
        self.themed("After the display changes", self.covered)

    def sessions(self):
        def sleep(sleeping):
            self.desktop.mock("/org/freedesktop/login1", "EmitSignal", LOGIN + ".Manager", "PrepareForSleep", "b",
                              f"[<{sleeping}>]")

        def active(value):
            self.desktop.mock("/org/freedesktop/login1/session/c1", "UpdateProperties", LOGIN + ".Session",
                              f"{{'Active': <{value}>}}")

        self.report.stage("Sleep and sessions")
        sleep("true")
        self.expect_line(TAG + "Re-applied after NSWorkspaceDidWakeNotification", lambda: sleep("false"))
        active("false")
        self.expect_line(TAG + "Re-applied after NSWorkspaceSessionDidBecomeActiveNotification",
                         lambda: active("true"))
        self.expect_line(TAG + "Re-applied after NSWorkspaceScreensDidWakeNotification",
                         lambda: (self.desktop.run("xset", "s", "activate"), self.desktop.run("xset", "s", "reset")))
        self.themed("After them", self.covered)

    def disturbances(self):
        line = TAG + "Re-applied after pointer change"
        self.report.stage("Others change the pointers")
        self.expect_line(line, lambda: self.desktop.run("openbox", "--restart"))
        self.themed("The window manager has started again", self.covered)
        self.expect_line(line, lambda: self.desktop.probe.add_resource("Xcursor.theme:\tDMZ-Black"))
        self.themed("Another theme in the resources", self.covered)
        settings = os.path.join(self.desktop.folder, "xsettingsd")
        with open(settings, "w") as file:
            file.write('Gtk/CursorThemeName "DMZ-White"\nGtk/CursorThemeSize 32\n')
        self.expect_line(line, lambda: self.desktop.start("settings", ["xsettingsd", "-c", settings]))
        self.themed("Another theme by a settings manager", self.covered)

    def run(self):
        self.theme.install(self.desktop.data)
        self.open_applications()
        self.start()
        self.exclusions()
        self.displays()
        self.sessions()
        self.disturbances()
        self.report.stage("The end")
        self.report.check("the program quits without an error", self.driver.quit() == 0)
        return self.report.close()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="build folder")
    parser.add_argument("--quiet", action="store_true", help="print only failures")
    parser.add_argument("--logs", help="folder that gets the program's log")
    options = parser.parse_args()
    options.build = os.path.abspath(options.build)
    with SessionDesktop(os.path.join(options.build, "tests", "desktop")) as desktop:
        tour = Round(desktop, options)
        try:
            good = tour.run()
        finally:
            desktop.keep_logs(options.logs, "pintle")
    return 0 if good else 1


if __name__ == "__main__":
    children.run(main)
