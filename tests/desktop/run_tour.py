#!/usr/bin/env python3
"""The pointer tour: real applications on a private X desktop, the program under test, used by clicks, and an
independent client that says which pointer is shown where. Ends with 1 when one of them is not what it must be.
Needs the system's Python with gi.

  run_tour.py --build BUILD_FOLDER [--short] [--quiet] [--window-manager NAME] [--pictures FOLDER]

--short is the demonstration: apply, scale, reset. The full tour adds a second theme, applications that start
later, `kill -9` and restarts.
"""
import argparse
import os
import sys
import time

sys.path.insert(1, os.path.join(os.path.dirname(os.path.abspath(__file__)), "shell"))

from session import ShellDesktop  # first: it finds the modules that the others use

import children
import points
from by_hand import ByHand
from desktop import WINDOW_MANAGERS
from judge import Judge
from pictures import Pictures
from program import Pintle
from report import Report
from theme import Theme, write_preferences
from tray_hosts import Tint2

FREE_CORNER = (1460, 860)


class Tour:
    def __init__(self, desktop, options):
        self.desktop = desktop
        self.options = options
        self.report = Report(options.quiet)
        self.judge = Judge(desktop.probe, self.report, options.pictures)
        self.pictures = Pictures(desktop, options.pictures)
        self.tools = os.path.join(options.build, "tests", "desktop")
        self.theme = Theme("bibata-modern-ice", "Bibata-Modern-Ice", self.tools)
        self.other_theme = Theme("adwaita-cursors", "DMZ-White", self.tools)
        self.host = Tint2(desktop, "bottom")
        self.driver = None

    def open_applications(self):
        desktop = self.desktop
        desktop.start_xterm("xterm", 20, 40)
        gtk = points.gtk("GTK", desktop.start_gtk("GTK", 440, 40))
        qt = points.qt("Qt", desktop.start_qt("Qt", 440, 440))
        xterm = points.xterm("xterm", desktop.probe)
        frame = points.window_manager("xterm", desktop.probe)
        self.points = (xterm + points.xterm("unthemed xterm", desktop.probe, themed=False) + gtk + qt + frame +
                       points.root(*FREE_CORNER))
        by_label = {point.label: point for point in self.points}
        self.drawn_points = [by_label[label] for label in ("xterm: text", "GTK: help", "Qt: OpenHand")]

    def start_driver(self):
        self.driver = ByHand(self.desktop, self.host, os.path.join(self.options.build, "pintle"))

    def stage(self, title, theme=None, scale=1.0, among=None):
        self.judge.stage(title, among or self.points, theme, scale)

    def demonstration(self):
        self.report.stage("Before: the desktop's own pointers")
        self.judge.desktops_own(self.points, self.theme)
        before = self.pictures.take("before", self.drawn_points)
        self.start_driver()
        self.driver.command("apply " + self.theme.identifier)
        self.stage("Applied at 1.0", self.theme)
        applied = self.pictures.take("applied-1.0", self.drawn_points)
        self.driver.command("scale 1.5")
        self.stage("Applied at 1.5", self.theme, 1.5)
        scaled = self.pictures.take("applied-1.5", self.drawn_points)
        self.driver.command("reset")
        self.stage("After the reset")
        after = self.pictures.take("after-reset", self.drawn_points)
        self.pictures.side_by_side()
        self.report.stage("The really drawn pictures")
        for index, point in enumerate(self.drawn_points):
            different = len({before[index], applied[index], scaled[index]}) == 3
            self.report.check(f"{point.label}: before, 1.0 and 1.5 look different", different)
            self.report.check(f"{point.label}: after the reset as before", after[index] == before[index])

    def later(self):
        """A second theme instead of the first, and applications that start while a theme is in force."""
        self.driver.command("scale 1.0")
        self.driver.command("apply " + self.theme.identifier)
        self.stage("Applied again after the reset", self.theme)
        self.driver.command("apply " + self.other_theme.identifier)
        self.stage("Another theme straight after", self.other_theme)
        self.driver.command("apply " + self.theme.identifier)
        self.stage("Back to the first theme", self.theme)
        self.desktop.start_xterm("late xterm", 20, 240)
        self.desktop.stop("GTK")
        gtk = points.gtk("late GTK", self.desktop.start_gtk("late GTK", 440, 40))
        self.desktop.stop("Qt")
        qt = points.qt("late Qt", self.desktop.start_qt("late Qt", 440, 440))
        late = [point for point in points.xterm("late xterm", self.desktop.probe) + gtk + qt if not point.exception]
        self.judge.same_names(late)
        self.stage("Applications started after the apply", self.theme, among=late)
        self.points = [point for point in self.points if point.application not in ("GTK", "Qt")] + late

    def restarts(self):
        held = [point for point in self.points if self.judge.is_held_by_server(point)]
        pintle = os.path.join(self.options.build, "pintle")
        self.driver.kill()
        self.stage("kill -9: what the server holds", self.theme, among=held)
        write_preferences(self.desktop.config, currentThemeId=self.theme.identifier, cursorScale=1.5)
        program = Pintle(self.desktop, pintle)
        self.stage("Started again, from the preference file, at 1.5", self.theme, 1.5)
        program.kill()
        write_preferences(self.desktop.config, currentThemeId=self.theme.identifier, cursorScale=1.0)
        program = Pintle(self.desktop, pintle)
        self.stage("kill -9 and started again at 1.0", self.theme)
        second = Pintle(self.desktop, pintle)
        self.report.stage("A second copy")
        self.report.check("it ends at once and without an error", second.process.wait(20) == 0)
        self.report.check("the first stays", program.is_running())
        self.report.stage("SIGTERM")
        self.report.check("the program dies by the signal", program.terminate())
        self.stage("After SIGTERM: the theme stays in force", self.theme, among=held)
        self.start_driver()
        self.driver.command("reset")
        self.stage("Reset by a new process")
        self.report.stage("The end")
        self.report.check("the program quits without an error", self.driver.quit() == 0)

    def kill_loop(self, rounds):
        """Killed at ever later moments of its start; the pointer stays readable, and the last start is whole."""
        pintle = os.path.join(self.options.build, "pintle")
        self.report.stage(f"{rounds} starts, each killed a little later")
        self.judge.desktops_own(self.points, self.theme)
        write_preferences(self.desktop.config, currentThemeId=self.theme.identifier, cursorScale=1.0)
        xterm = self.drawn_points[0]
        self.desktop.probe.move(xterm.x, xterm.y)
        for number in range(rounds):
            program = Pintle(self.desktop, pintle)
            time.sleep(0.6 * number / rounds)
            alive = program.is_running()
            program.kill()
            shown = self.desktop.probe.settle(40, 400)
            known = shown.look in self.judge.own[xterm.label] + self.theme.looks("xterm", 1.0)
            self.report.check(f"start {number + 1}: the pointer is one of the two", alive and known, shown.look)
        Pintle(self.desktop, pintle)
        self.stage("The start after them", self.theme)

    def run(self):
        for theme in (self.theme, self.other_theme):
            theme.install(self.desktop.data)
        self.host.start()
        self.open_applications()
        if self.options.kill_loop:
            self.kill_loop(self.options.kill_loop)
        else:
            self.demonstration()
            if not self.options.short:
                self.later()
                self.restarts()
        return self.report.close()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="build folder")
    parser.add_argument("--short", action="store_true", help="apply, scale and reset only")
    parser.add_argument("--quiet", action="store_true", help="print only failures and exceptions")
    parser.add_argument("--kill-loop", type=int, metavar="N", help="instead: N starts killed at ever later moments")
    parser.add_argument("--window-manager", choices=WINDOW_MANAGERS, default="openbox")
    parser.add_argument("--pictures", help="folder for pictures and logs (default: BUILD/tour)")
    options = parser.parse_args()
    options.build = os.path.abspath(options.build)
    options.pictures = os.path.abspath(options.pictures or os.path.join(options.build, "tour"))
    with ShellDesktop(os.path.join(options.build, "tests", "desktop"), options.window_manager) as desktop:
        tour = Tour(desktop, options)
        try:
            good = tour.run()
        finally:
            desktop.keep_logs(options.pictures, "pintle", "server")
    print(f"Pictures and logs: {options.pictures}")
    return 0 if good else 1


if __name__ == "__main__":
    children.run(main)
