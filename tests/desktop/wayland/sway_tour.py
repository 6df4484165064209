#!/usr/bin/env python3
"""Applies themes in a headless sway session and compares the pointer that is drawn with the pictures of the theme.

  sway_tour.py --build FOLDER [--quiet] [--pictures FOLDER]
"""
import argparse
import os
import signal
import struct
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [HERE, os.path.dirname(HERE)]

import children
from children import wait_until
from program import Driver
from report import Report
from sway_session import SwaySession
from theme import write_preferences

#: Rows of the catalog; their files here are plain squares, which show theme and size in every picture.
RED = "bibata-modern-ice"
BLUE = "adwaita-cursors"
COLOURS = {RED: (255, 0, 0), BLUE: (0, 0, 255), "Mine": (0, 255, 0)}
NAMES = ("left_ptr", "default", "xterm", "text", "pointer", "hand2")
SPOT = (200, 150)


def cursor_file(colour, sizes):
    red, green, blue = colour
    pixel = struct.pack("<I", 255 << 24 | red << 16 | green << 8 | blue)
    head = struct.pack("<4sIII", b"Xcur", 16, 0x10000, len(sizes))
    position = 16 + 12 * len(sizes)
    table, chunks = b"", b""
    for size in sizes:
        table += struct.pack("<III", 0xFFFD0002, size, position + len(chunks))
        chunks += struct.pack("<IIIIIIIII", 36, 0xFFFD0002, size, 1, size, size, 0, 0, 0) + pixel * (size * size)
    return head + table + chunks


def write_theme(folder, colour, sizes):
    os.makedirs(folder)
    for name in NAMES:
        with open(os.path.join(folder, name), "wb") as file:
            file.write(cursor_file(colour, sizes))


class SwayTour:
    def __init__(self, options):
        self.options = options
        self.report = Report(options.quiet)
        self.session = SwaySession()
        self.driver = None
        self.shots = 0

    # What is drawn.

    def pointer(self):
        """(colour, width, height) of the square whose upper left corner is the pointer's place; none when there is
        no square of a known colour."""
        self.picture_now = self.session.picture()
        return self.square(int(SPOT[0] * self.scale), int(SPOT[1] * self.scale))

    def square(self, x, y):
        width, height, pixels = self.picture_now

        def at(column, row):
            start = (row * width + column) * 3
            return tuple(pixels[start:start + 3])
        colour = at(x, y)
        name = next((each for each, known in COLOURS.items() if known == colour), None)
        if not name:
            return None
        right, down = x, y
        while right < width and at(right, y) == colour:
            right += 1
        while down < height and at(x, down) == colour:
            down += 1
        return name, right - x, down - y

    def shows(self, what, name, side, seconds=15):
        """Waits until the pointer is that theme's square."""
        expected = (name, side, side)
        seen = None
        deadline = time.monotonic() + seconds
        while time.monotonic() < deadline:
            seen = self.pointer()
            if seen == expected:
                break
            time.sleep(0.1)
        self.report.check(what, seen == expected, f"expected {expected}, drawn {seen}")
        if self.options.pictures:
            self.shots += 1
            path = os.path.join(self.options.pictures, f"{self.shots:02}-{what.replace(' ', '_')}.ppm")
            with open(path, "wb") as file:
                width, height, pixels = self.picture_now
                file.write(b"P6 %d %d 255\n" % (width, height) + pixels)

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
            wait_until("nothing of ours is left", lambda: themes() == ["Mine"], 15)
        except Exception:
            pass
        self.report.check("nothing of ours is left", themes() == ["Mine"], str(themes()))

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
            write_theme(os.path.join(data, "Pintle", "Themes", name, "cursors"), COLOURS[name], (32,))
        write_theme(os.path.join(data, "icons", "Mine", "cursors"), COLOURS["Mine"], (24, 48))
        # Where compositors look who know no other data folder than the usual one.
        os.mkdir(os.path.join(self.session.folder, ".icons"))
        os.symlink(os.path.join(data, "icons", "Mine"), os.path.join(self.session.folder, ".icons", "Mine"))
        settings = os.path.join(self.session.config, "glib-2.0", "settings")
        os.makedirs(settings)
        self.own = "[org/gnome/desktop/interface]\ncursor-theme='Mine'\ncursor-size=24\nclock-show-date=false\n"
        with open(os.path.join(settings, "keyfile"), "w", encoding="utf-8") as file:
            file.write(self.own)
        write_preferences(self.session.config, cursorScale=1.0)
        self.programs = self.session.programs(os.path.join(self.options.build, "tests", "desktop"), "driver",
                                              "pintle-unpack")
        self.session.environment |= {"XCURSOR_THEME": "Mine", "XCURSOR_SIZE": "24"}
        self.session.give()

    def run(self):
        self.scale = 1
        self.prepare()
        self.session.begin()
        self.point()
        self.report.stage("Themes")
        self.shows("the user's own pointer", "Mine", 24)
        self.start_driver()
        self.driver.command("apply " + RED)
        self.shows("the applied theme", RED, 32)
        self.report.check("the desktop's setting names it", self.names_ours())
        self.driver.command("apply " + BLUE)
        self.shows("a second theme", BLUE, 32)
        self.driver.command("scale 1.5")
        self.shows("half as large again", BLUE, 48)
        self.driver.command("scale 1.0")
        self.shows("and back", BLUE, 32)

        self.report.stage("A screen of scale 2")
        self.rescale(2)
        self.driver.command("apply " + RED)
        self.shows("twice the pixels", RED, 64)
        self.rescale(1)
        self.shows("and at scale 1", RED, 32)

        self.report.stage("The end")
        self.driver.command("reset")
        self.shows("a reset brings the user's own back", "Mine", 24)
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
        self.shows("and still knows what the user had", "Mine", 24)
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
        self.session.run(["gsettings", "set", "org.gnome.desktop.interface", "cursor-theme", "Mine"])
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
        self.session.pointer.move(1, 1, self.session.width, self.session.height)
        self.point()

    def point(self):
        self.session.pointer.move(SPOT[0], SPOT[1], self.session.width // self.scale,
                                  self.session.height // self.scale)


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
        for name in ("sway", "driver"):
            if os.path.exists(os.path.join(tour.session.folder, name + ".log")):
                print(f"--- {name}\n" + tour.session.log_text(name)[-3000:], file=sys.stderr)
        raise
    finally:
        tour.session.end()
    return 0 if good else 1


if __name__ == "__main__":
    children.run(main)
