#!/usr/bin/env python3
"""Applies themes in a headless sway session and compares the pointer that is drawn, over its background and over programs
of five kinds, with the pictures of the theme.

  sway_tour.py --build FOLDER [--quiet] [--pictures FOLDER]
"""
import argparse
import functools
import os
import signal
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [HERE, os.path.dirname(HERE)]

import children
from children import wait_until
from clients import clients_of
from program import Driver
from report import Report
from square_theme import BLUE, MINE, RED, Picture, write_theme
from sway_session import SwaySession
from theme import write_preferences

#: Sides of their pictures in pixels.
SIZES = {RED: (32,), BLUE: (32, 64), MINE: (24, 48)}
#: Where no window is, at both scales.
SPOT = (400, 225)
#: Half a side of the pictures that are taken, in points.
AROUND = 80


class SwayTour:
    def __init__(self, options):
        self.options = options
        self.report = Report(options.quiet)
        self.session = SwaySession()
        self.driver = None
        self.clients = []
        self.scale = 1
        #: Pixels of a point of the X server.
        self.x_density = 1
        self.shots = 0

    # What is drawn.

    def fault(self, theme, role, side, drawn_anew):
        """What is wrong with the pointer now; empty when it is that one."""
        left, top = (max(0, each - AROUND) for each in self.spot)
        self.picture = Picture(*self.session.picture(left, top, 2 * AROUND, 2 * AROUND))
        return self.picture.fault((self.spot[0] - left) * self.scale, (self.spot[1] - top) * self.scale, theme, role,
                                  side, drawn_anew)

    def shows(self, what, theme, points, role="arrow", enlarged=False, again=None, seconds=15):
        """Waits until the pointer is that theme's, as large as said. `enlarged`: by the compositor. `again`: what is done
        every two seconds until then."""
        side = points * self.scale
        deadline = time.monotonic() + seconds
        next_time = time.monotonic() + 2
        while True:
            fault = self.fault(theme, role, side, enlarged or not self.is_as_in_the_file(theme, points, side))
            if not fault or time.monotonic() > deadline:
                break
            if again and time.monotonic() > next_time:
                again()
                next_time = time.monotonic() + 2
            time.sleep(0.05)
        self.report.check(what, not fault, fault)
        if self.options.pictures:
            self.shots += 1
            self.picture.save(os.path.join(self.options.pictures, f"{self.shots:02}-{what.replace(' ', '_')}.ppm"))

    def is_as_in_the_file(self, theme, points, side):
        """Whether its pixels are those of a picture of the file. Of ours that is the one that the X server shows; those
        of other densities are drawn from it."""
        return side in SIZES[theme] and (theme == MINE or side == points * self.x_density)

    def point(self, spot=SPOT):
        self.spot = spot
        self.session.pointer.move(*spot, self.session.width // self.scale, self.session.height // self.scale)

    def client(self, name):
        return next(each for each in self.clients if each.name == name)

    def enter(self, client):
        """From the background."""
        self.point()
        self.point(client.spot())

    def everywhere(self, theme, points):
        """Over the background, over each program that follows now, and over a new one of each that does not."""
        self.point()
        self.shows("over the background", theme, points)
        for client in self.clients:
            if client.follows == "when it is started anew":
                client.anew(self.scale)
            self.enter(client)
            # A busy machine may bring the setting to the program later than the pointer.
            again = functools.partial(self.enter, client) if client.follows == "at the next entry" else None
            self.shows(f"over {client.name}", theme, points, client.role, self.is_enlarged(client), again)
        self.point()

    def at_rest(self, command, theme, points):
        """The pointer over the X program changes without being moved."""
        xterm = self.client("xterm")
        self.enter(xterm)
        self.driver.command(command)
        self.shows(f"at rest over xterm at {command.split()[0]}", theme, points, xterm.role, self.is_enlarged(xterm))

    def is_enlarged(self, client):
        """The X server has one pixel a point here."""
        return client.name == "xterm" and self.scale > 1

    # What is set.

    def setting_is(self, what, expected):
        """Whether the settings file holds exactly that text in the end."""
        try:
            wait_until(what, lambda: self.session.settings() == expected, 15)
        except Exception:
            pass
        self.report.check(what, self.session.settings() == expected, repr(self.session.settings()))

    def names_ours(self):
        return "cursor-theme='Pintle-" in self.session.settings()

    def nothing_is_left(self):
        """Of the themes in the icon folder, which go after the settings."""
        def themes():
            return sorted(os.listdir(os.path.join(self.session.data, "icons")))
        try:
            wait_until("nothing of ours is left", lambda: themes() == [MINE], 15)
        except Exception:
            pass
        self.report.check("nothing of ours is left", themes() == [MINE], str(themes()))

    # The program.

    def start_driver(self):
        self.driver = Driver(self.session, os.path.join(self.programs, "driver"))

    def kill_driver(self):
        os.kill(self.program_id(), signal.SIGKILL)
        self.driver.process.wait()

    def program_id(self):
        return self.driver.process.pid

    def prepare(self):
        data = self.session.data
        for name in (RED, BLUE):
            write_theme(os.path.join(data, "Pintle", "Themes", name, "cursors"), name, SIZES[name])
        write_theme(os.path.join(data, "icons", MINE, "cursors"), MINE, SIZES[MINE])
        # Where compositors look who know no other data folder than the usual one.
        os.mkdir(os.path.join(self.session.folder, ".icons"))
        os.symlink(os.path.join(data, "icons", MINE), os.path.join(self.session.folder, ".icons", MINE))
        settings = os.path.join(self.session.config, "glib-2.0", "settings")
        os.makedirs(settings)
        self.own = f"[org/gnome/desktop/interface]\ncursor-theme='{MINE}'\ncursor-size=24\nclock-show-date=false\n"
        with open(os.path.join(settings, "keyfile"), "w", encoding="utf-8") as file:
            file.write(self.own)
        write_preferences(self.session.config, cursorScale=1.0)
        self.programs = self.session.programs(os.path.join(self.options.build, "tests", "desktop"), "driver",
                                              "pintle-unpack", "qt_cursors")
        self.clients = clients_of(self.session, self.programs)
        self.session.environment |= {"XCURSOR_THEME": MINE, "XCURSOR_SIZE": "24"}
        self.session.give()

    def run(self):
        self.prepare()
        self.session.begin()
        for client in self.clients:
            client.start(self.scale)
        self.report.stage("Before")
        self.everywhere(MINE, 24)

        self.report.stage("A theme")
        self.start_driver()
        self.at_rest("apply " + RED, RED, 32)
        self.everywhere(RED, 32)
        self.report.check("the desktop's setting names it", self.names_ours())
        self.report.stage("A second theme, and another size")
        self.at_rest("apply " + BLUE, BLUE, 32)
        self.at_rest("scale 1.5", BLUE, 48)
        self.everywhere(BLUE, 48)
        self.driver.command("scale 1.0")
        self.point()
        self.shows("and back", BLUE, 32)

        self.report.stage("A screen of scale 2")
        self.rescale(2)
        self.everywhere(BLUE, 32)
        self.at_rest("apply " + RED, RED, 32)
        self.everywhere(RED, 32)
        self.at_rest("reset", MINE, 24)
        self.everywhere(MINE, 24)
        self.at_rest("apply " + BLUE, BLUE, 32)
        self.rescale(1)
        self.shows("and at scale 1", BLUE, 32)

        self.report.stage("A configuration that is loaded again")
        self.session.sway("reload")
        self.shows("the theme stays", BLUE, 32)

        self.report.stage("An X server with twice the pixels")
        self.x_density = 2
        self.session.run(["xrdb", "-nocpp", "-merge", "-"], input=b"Xft.dpi:\t192\n")
        xterm = self.client("xterm")
        self.enter(xterm)
        self.shows("over xterm", BLUE, 64, xterm.role)
        self.driver.command("apply " + RED)
        self.shows("over xterm a theme without such pictures", RED, 64, xterm.role)
        self.point()
        self.shows("over the background as large as before", RED, 32)
        self.at_rest("reset", MINE, 24)
        self.at_rest("apply " + BLUE, BLUE, 64)
        self.session.run(["xrdb", "-remove"])
        self.x_density = 1
        self.shows("as before", BLUE, 32, xterm.role)

        self.report.stage("The end")
        self.at_rest("reset", MINE, 24)
        self.everywhere(MINE, 24)
        self.setting_is("to the byte in the settings", self.own)
        self.nothing_is_left()

        self.report.stage("Killed")
        self.driver.command("apply " + RED)
        self.shows("the theme before", RED, 32)
        self.kill_driver()
        self.shows("a killed program leaves it", RED, 32)
        self.start_driver()
        self.driver.command("apply " + BLUE)
        self.shows("the next one goes on", BLUE, 32)
        self.driver.command("reset")
        self.shows("and still knows what the user had", MINE, 24)
        self.setting_is("to the byte", self.own)

        self.report.stage("A theme that the user chooses meanwhile")
        self.driver.command("apply " + RED)
        self.shows("ours", RED, 32)
        self.session.run(["gsettings", "set", "org.gnome.desktop.interface", "cursor-theme", "Other"])
        self.driver.command("reset")
        wait_until("the size is the user's", lambda: "cursor-size=24" in self.session.settings(), 15)
        self.report.check("stays", "cursor-theme='Other'" in self.session.settings(), self.session.settings())
        self.driver.quit()

        self.report.stage("The next session is one of X11")
        self.session.run(["gsettings", "set", "org.gnome.desktop.interface", "cursor-theme", MINE])
        self.start_driver()
        self.driver.command("apply " + RED)
        self.shows("ours in this session", RED, 32)
        self.kill_driver()
        self.session.environment.pop("WAYLAND_DISPLAY")
        self.session.environment["XDG_SESSION_TYPE"] = "x11"
        self.start_driver()
        self.setting_is("the settings are the user's at its start", self.own)
        self.driver.quit()
        self.nothing_is_left()
        return self.report.close()

    def rescale(self, scale):
        self.session.sway(f"output HEADLESS-1 scale {scale}")
        wait_until("the output has it", lambda: self.session.sway("-t", "get_outputs")[0]["rect"]["width"] ==
                   self.session.width // scale, 10)
        self.scale = scale
        # A pointer that does not move stays at the pixel where it was.
        self.point((1, 1))
        self.point()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    parser.add_argument("--quiet", action="store_true")
    parser.add_argument("--pictures")
    options = parser.parse_args()
    options.build = os.path.abspath(options.build)
    if options.pictures:
        os.makedirs(options.pictures, exist_ok=True)
    children.adopt_orphans()
    tour = SwayTour(options)
    try:
        good = tour.run()
    except Exception:
        for name in ("sway", "driver", *(each.name for each in tour.clients)):
            if os.path.exists(os.path.join(tour.session.folder, name + ".log")):
                print(f"--- {name}\n" + tour.session.log_text(name)[-3000:], file=sys.stderr)
        raise
    finally:
        tour.session.end()
    return 0 if good else 1


if __name__ == "__main__":
    children.run(main)
