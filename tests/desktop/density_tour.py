#!/usr/bin/env python3
"""The tour of dense screens: Xft.dpi of 192 and 144 without a settings manager, then a settings manager with a window
scaling factor of 2 and one with large texts alone. Each changes while the program runs. GTK 3, Qt and xterm show
the registered theme, and at the end the overlay draws one that no registration takes. Ends with 1 when a pointer
is not what it must be.

  density_tour.py --build BUILD_FOLDER [--quiet] [--pictures FOLDER]
"""
import argparse
import os
import signal
import subprocess

import children
import points
from desktop import DESKTOP_SIZE, DESKTOP_THEME, Desktop
from judge import Judge
from overlay_tour import ARROW_NAMES, FREE_CORNER, OverlayTour, install_without, theme_image
from program import Driver
from report import Report
from theme import Theme, write_preferences

THEME = ("bibata-modern-ice", "Bibata-Modern-Ice")
#: The same pictures without an arrow: only the overlay shows them.
WITHOUT_ARROW = "bibata-modern-classic"
#: What is looked at of each application.
GTK_PLACES = ("default", "pointer", "entry", "wait", "grab")
QT_PLACES = ("Arrow", "PointingHand", "SizeVer", "LineEdit", "OpenHand")


class DensityTour:
    def __init__(self, desktop, options):
        self.desktop = desktop
        self.options = options
        self.report = Report(options.quiet)
        self.tools = os.path.join(options.build, "tests", "desktop")
        self.theme = Theme(*THEME, self.tools)
        self.judge = Judge(desktop.probe, self.report, options.pictures)
        self.settings = os.path.join(desktop.folder, "xsettings")
        self.driver = None
        self.points = []

    def set_dpi(self, dpi):
        self.desktop.probe.add_resource(f"Xft.dpi:\t{dpi}")

    def publish(self, **numbers):
        with open(self.settings, "w") as file:
            file.write("".join(f"{name.replace('_', '/')} {value}\n" for name, value in numbers.items()))
        if "settings" in self.desktop.applications:
            self.desktop.applications["settings"].send_signal(signal.SIGHUP)
        else:
            self.desktop.start("settings", ["xsettingsd", "-c", self.settings])

    def open_applications(self, number):
        """New ones: a toolkit takes the scale with which it starts."""
        desktop = self.desktop
        for name in [name for name in desktop.applications if name.startswith(("GTK", "Qt"))]:
            desktop.stop(name)
        gtk = points.gtk(f"GTK {number}", desktop.start_gtk(f"GTK {number}", 20, 10))
        qt = points.qt(f"Qt {number}", desktop.start_qt(f"Qt {number}", 300, 240))
        self.points = ([p for p in points.xterm("xterm", desktop.probe)] +
                       [p for p in gtk if p.place in GTK_PLACES] + [p for p in qt if p.place in QT_PLACES])
        for point in self.points:
            self.judge.names[point.label] = point.name
            self.judge.own[point.label] = desktop.probe.library(DESKTOP_THEME, DESKTOP_SIZE, point.name)

    def stage(self, title, density, scale=1.0):
        self.theme.density = density
        self.judge.stage(f"{title}: {density} pixels a point", self.points, self.theme, scale)
        self.keep_picture(title)

    def keep_picture(self, title):
        screen = "xwd:" + os.path.join(self.desktop.drawn, "Xvfb_screen0")
        subprocess.run(["convert", screen, os.path.join(self.options.pictures, title.replace(" ", "-") + ".png")],
                       check=True)

    def check_files_own_pictures(self):
        """At twice the density the pixels are those that the theme's own drawing of twice the size has; the hotspot
        stays that of the smaller one."""
        def without_hotspots(looks):
            return {(look.split("+")[0], look.split(":")[1]) for look in looks}

        self.report.stage("The pixels of the theme's own larger drawings")
        for name in ("left_ptr", "xterm", "pointer", "watch"):
            expected = without_hotspots(self.theme.looks(name, 1.0))
            own = without_hotspots(self.desktop.probe.library(THEME[1], 64, name))
            self.report.check(f"{name}: the drawing of 64 pixels", expected and expected <= own)

    def registered(self):
        self.set_dpi(192)
        self.open_applications(1)
        self.driver = Driver(self.desktop, os.path.join(self.tools, "driver"))
        self.driver.command("apply " + THEME[0])
        self.stage("Xft.dpi 192", 2)
        self.check_files_own_pictures()
        self.driver.command("scale 1.5")
        self.stage("Xft.dpi 192 at 1.5", 2, 1.5)
        self.driver.command("scale 1.0")
        self.set_dpi(144)
        self.stage("Xft.dpi 144", 1.5)
        self.publish(Xft_DPI=192 * 1024, Gdk_WindowScalingFactor=1)
        self.stage("Large texts alone", 1)
        self.publish(Xft_DPI=192 * 1024, Gdk_WindowScalingFactor=2)
        self.open_applications(2)
        self.stage("Window scaling factor 2", 2)

    def overlay(self):
        self.report.stage("The overlay at 2 pixels a point")
        self.driver.command("apply " + WITHOUT_ARROW)
        tour = OverlayTour(self.desktop, self.options)
        tour.report = self.report
        for point in self.points:
            name = point.name
            picture = theme_image(os.path.join(self.tools, "expected_cursor"), name, 2)
            if picture is None or name in ARROW_NAMES or len(self.theme.looks(name, 1.0)) > 1:
                continue
            tour.images[name] = picture
            tour.check_theme(f"{point.label}: the theme's {name}", point, name)
        self.keep_picture("overlay")
        self.driver.command("reset")
        tour.check_own("after a reset the desktop's own pointer", self.points[0])
        self.report.check("the driver quits without an error", self.driver.quit() == 0)

    def run(self):
        self.theme.install(self.desktop.data)
        install_without(self.desktop.data, WITHOUT_ARROW, ARROW_NAMES)
        write_preferences(self.desktop.config, restoreOnQuit=False, applyOnLaunch=False,
                          useSystemCursorForMissing=False)
        self.desktop.start_xterm("xterm", 20, 470)
        self.desktop.probe.move(*FREE_CORNER)
        self.registered()
        self.overlay()
        return self.report.close()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="build folder")
    parser.add_argument("--quiet", action="store_true", help="print only failures")
    parser.add_argument("--pictures", help="folder for pictures and logs (default: BUILD/tour/density)")
    options = parser.parse_args()
    options.build = os.path.abspath(options.build)
    options.pictures = os.path.abspath(options.pictures or os.path.join(options.build, "tour", "density"))
    os.makedirs(options.pictures, exist_ok=True)
    with Desktop(os.path.join(options.build, "tests", "desktop")) as desktop:
        tour = DensityTour(desktop, options)
        try:
            good = tour.run()
        finally:
            desktop.keep_logs(options.pictures, "driver", "server", "settings")
    print(f"Pictures and logs: {options.pictures}")
    return 0 if good else 1


if __name__ == "__main__":
    children.run(main)
