#!/usr/bin/env python3
"""The overlay's tour: themes that no registration takes, because they have no arrow, on a private X desktop. Says
by the really drawn pixels whether the theme's image or the server's own pointer is on the screen. Ends with 1
when one of them is not what it must be.

  overlay_tour.py --build BUILD_FOLDER [--quiet] [--window-manager NAME] [--pictures FOLDER]
"""
import argparse
import os
import shutil
import signal
import subprocess
import time

import children
import points
from desktop import SCREEN, WINDOW_MANAGERS, Desktop
from names import FILES
from program import Driver
from report import Report
from theme import ICONS, Theme, write_preferences

REGISTERED = ("adwaita-cursors", "DMZ-White")
WITHOUT_ARROW = "bibata-modern-ice"
WITHOUT_ARROW_AND_TEXT = "bibata-modern-classic"
SOURCE = os.path.join(ICONS, "Bibata-Modern-Ice", "cursors")
ARROW_NAMES = ["left_ptr", "default", "arrow", "top_left_arrow"]
TEXT_NAMES = ["xterm", "text", "ibeam"]
FREE_CORNER = (1400, 860)
SECONDS = 8.0


class Picture:
    """What the virtual server has drawn, the pointer included, at the moment it is made."""

    def __init__(self, desktop):
        with open(os.path.join(desktop.drawn, "Xvfb_screen0"), "rb") as file:
            data = file.read()
        words = [int.from_bytes(data[i:i + 4], "big") for i in range(0, 100, 4)]
        self.width, self.height, self.line = words[4], words[5], words[12]
        self.pixels = memoryview(data)[words[0] + words[19] * 12:]

    def at(self, x, y):
        """Red, green, blue; none outside the screen."""
        if not (0 <= x < self.width and 0 <= y < self.height):
            return None
        start = y * self.line + x * 4
        blue, green, red = self.pixels[start:start + 3]
        return red, green, blue


class Image:
    """Premultiplied RGBA pixels and a hotspot."""

    def __init__(self, width, height, x, y, data):
        self.width, self.height, self.x, self.y, self.data = width, height, x, y, data

    def different(self, picture, left, top, threshold, under=None):
        """How many pixels of at least that alpha are drawn otherwise, and of the others, when `under` holds what
        lies there, how many are not its pixels."""
        wrong = 0
        for row in range(self.height):
            for column in range(self.width):
                start = (row * self.width + column) * 4
                red, green, blue, alpha = self.data[start:start + 4]
                drawn = picture.at(left + column, top + row)
                if drawn is None:
                    continue
                if alpha >= threshold:
                    wrong += drawn != (red, green, blue)
                elif under is not None:
                    wrong += drawn != under.at(left + column, top + row)
        return wrong


def theme_image(tool, name, density=1, scale=1.0):
    """The first frame of what the reader makes of the theme's file for an X11 name; none without one."""
    result = subprocess.run([tool, SOURCE, str(scale), str(density), "pixels"], input=",".join(FILES[name]) + "\n",
                            text=True, check=True, capture_output=True).stdout.split()
    if len(result) < 3:
        return None
    size, x, y = result[1].split("+")
    width, height = size.split("x")
    return Image(int(width), int(height), int(x), int(y), bytes.fromhex(result[2]))


def server_image(probe, path):
    """The pointer's picture as the server reports it, opaque pixels alone."""
    probe.ask("pixels", path)
    with open(path, "rb") as file:
        head, data = file.read().split(b"ENDHDR\n", 1)
    words = head.split()
    return Image(int(words[words.index(b"WIDTH") + 1]), int(words[words.index(b"HEIGHT") + 1]), 0, 0, data)


def install_without(data_home, identifier, missing):
    target = os.path.join(data_home, "Pintle", "Themes", identifier, "cursors")
    # Whole files instead of links, which would otherwise lead to what is removed.
    shutil.copytree(SOURCE, target)
    for name in missing:
        path = os.path.join(target, name)
        if os.path.exists(path):
            os.remove(path)


class OverlayTour:
    def __init__(self, desktop, options):
        self.desktop = desktop
        self.options = options
        self.report = Report(options.quiet)
        self.tools = os.path.join(options.build, "tests", "desktop")
        self.driver = None
        self.images = {}
        self.stages = 0

    # What is seen.

    def image(self, name):
        if name not in self.images:
            self.images[name] = theme_image(os.path.join(self.tools, "expected_cursor"), name)
        return self.images[name]

    def overlays(self):
        return int(self.desktop.probe.ask("overlays").split()[1])

    def draws_theme(self, point, name, under=None, blended=False):
        """Whether the theme's image lies pixel by pixel on the point. Blended, only opaque pixels are compared."""
        image = self.image(name)
        return image.different(Picture(self.desktop), point.x - image.x, point.y - image.y,
                               255 if blended else 128, None if blended else under) == 0

    def shows_own_pointer(self, point):
        """Whether the server draws its own pointer, and no overlay is there."""
        path = os.path.join(self.desktop.folder, "pointer.pam")
        image = server_image(self.desktop.probe, path)
        shown = self.desktop.probe.ask("read").split()
        hotspot = shown[1].split(":")[0].split("+")[1:] if shown[0] == "cursor" else ["0", "0"]
        opaque = sum(1 for i in range(3, len(image.data), 4) if image.data[i] == 255)
        return (self.overlays() == 0 and opaque > 10 and
                image.different(Picture(self.desktop), point.x - int(hotspot[0]), point.y - int(hotspot[1]),
                                255) == 0)

    def within(self, question, seconds=SECONDS):
        try:
            return children.wait_until("", question, seconds, 0.05)
        except TimeoutError:
            return False

    def check_theme(self, what, point=None, name="xterm", **options):
        point = point or self.text
        self.desktop.probe.move(point.x, point.y)
        self.report.check(what, self.within(lambda: self.draws_theme(point, name, **options)))

    def check_own(self, what, point=None):
        point = point or self.text
        self.desktop.probe.move(point.x, point.y)
        self.report.check(what, self.within(lambda: self.shows_own_pointer(point)))

    def keep_picture(self, name):
        subprocess.run(["convert", "xwd:" + os.path.join(self.desktop.drawn, "Xvfb_screen0"),
                        os.path.join(self.options.pictures, name + ".png")], check=True)

    # What is done.

    def start_driver(self, theme=WITHOUT_ARROW, **preferences):
        write_preferences(self.desktop.config, restoreOnQuit=False, applyOnLaunch=False,
                          **({"useSystemCursorForMissing": False} | preferences))
        self.driver = Driver(self.desktop, os.path.join(self.tools, "driver"))
        if theme:
            self.driver.command("apply " + theme)

    def end_driver(self):
        if self.driver:
            self.driver.kill()
            self.driver = None

    def open_applications(self):
        desktop = self.desktop
        desktop.start_xterm("xterm", 20, 40)
        self.text = points.xterm("xterm", desktop.probe)[0]
        gtk = {p.place: p for p in points.gtk("GTK", desktop.start_gtk("GTK", 440, 40))}
        qt = {p.place: p for p in points.qt("Qt", desktop.start_qt("Qt", 440, 440))}
        frame = points.window_manager("xterm", desktop.probe)
        scroll_bar = points.xterm("xterm", desktop.probe)[1]
        self.places = [
            (self.text, "xterm"), (scroll_bar, "sb_v_double_arrow"),
            (gtk["pointer"], "pointer"), (gtk["crosshair"], "crosshair"), (gtk["not-allowed"], "not-allowed"),
            (gtk["help"], "help"), (gtk["entry"], "text"), (gtk["n-resize"], "n-resize"),
            (qt["PointingHand"], "pointer"), (qt["SizeVer"], "size_ver"), (qt["ClosedHand"], "grabbing"),
            (qt["LineEdit"], "text"),
            *self.framed(frame),
            (self.gtk4_point("GTK 4", "crosshair"), "crosshair"),
        ]

    def framed(self, frame):
        """The parts of a window's frame whose cursors, the window manager's own choice, the theme has."""
        found = []
        for point in frame:
            self.desktop.probe.move(point.x, point.y)
            name = self.desktop.probe.settle(150, 1000).name
            if name in FILES and name not in ARROW_NAMES and self.image(name):
                found.append((point, name))
        self.report.check("the window manager's frame has such a part", found)
        return found

    def gtk4_point(self, title, name):
        self.desktop.environment["GSK_RENDERER"] = "cairo"
        script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "gtk4_cursor.py")
        self.desktop.start(title, ["/usr/bin/python3", script, title, name])
        self.desktop.wait_for(title, "is on the screen", lambda: self.desktop.probe.window(title))
        time.sleep(0.5)
        area, _ = self.desktop.probe.window(title)
        return points.Point(title, name, area.x + area.width // 2, area.y + area.height * 3 // 4)

    def all_places(self, stage):
        """The theme's image, pixel by pixel, wherever an application shows a cursor that the theme has."""
        self.report.stage(stage)
        for point, name in self.places:
            self.desktop.probe.move(*FREE_CORNER)
            time.sleep(0.15)
            under = Picture(self.desktop) if point.application in ("xterm", "window manager") else None
            self.check_theme(f"{point.label}: the theme's {name}", point, name, under=under)
            self.stages += 1
            self.keep_picture(f"overlay-{self.stages:02}-{point.application}-{point.place}".replace(" ", "-"))

    def clicks(self):
        self.report.stage("Clicks go through")
        self.desktop.start_xterm("other xterm", 20, 240)
        probe = self.desktop.probe
        self.desktop.wait_for("other xterm", "is active", lambda: probe.ask("active") == "active other xterm")
        other = points.xterm("other xterm", probe)[0]
        for point, title in ((self.text, "xterm"), (other, "other xterm")):
            self.check_theme(f"{title}: the overlay is drawn", point)
            self.report.check("and takes no focus", probe.ask("active") != "active " + title)
            probe.ask("click")
            self.report.check(f"a click on {title} makes it active",
                              self.within(lambda wanted=title: probe.ask("active") == "active " + wanted))
        self.desktop.stop("other xterm")

    def steps_aside(self):
        report, desktop, probe = self.report, self.desktop, self.desktop.probe
        report.stage("Where the desktop's own pointer belongs")
        desktop.start("remote", ["xterm", "-class", "TeamViewer", "-title", "remote", "-geometry", "20x4+20+640", "-e",
                                 "sleep", "1000"])
        desktop.wait_for("remote", "is active", lambda: probe.ask("active") == "active remote")
        self.check_own("an excluded application is in front")
        desktop.stop("remote")
        self.check_theme("another application is in front again")

        desktop.start("film", ["xterm", "-fullscreen", "-title", "film", "-e", "sleep", "1000"])
        desktop.wait_for("film", "fills the screen", lambda: (probe.window("film") or [None, None])[0] and
                         probe.window("film")[0].width >= int(SCREEN.split("x")[0]))
        self.check_own("a window fills the screen")
        desktop.stop("film")
        self.check_theme("the full-screen window is gone")

        probe.ask("cover", "i3lock", self.text.x - 60, self.text.y - 40, 120, 80)
        self.check_own("over a locker's window")
        self.check_theme("beside a locker's window", self.places[2][0], "pointer")
        probe.ask("uncover")
        self.check_theme("the locker's window is gone")

    def displays(self):
        self.report.stage("Two displays")
        width, height = (int(side) for side in SCREEN.split("x"))
        half = width // 2
        for name, x, output in (("LEFT", 0, "screen"), ("RIGHT", half, "none")):
            subprocess.run(["xrandr", "--setmonitor", name, f"{half}/200x{height}/240+{x}+0", output], check=True,
                           env=self.desktop.environment)
        for point, name in (self.places[0], self.places[2], self.places[10]):
            self.check_theme(f"{point.label} at {point.x}, {point.y}", point, name)
            self.report.check("one overlay is visible", self.within(lambda: self.overlays() == 1))
        for name in ("RIGHT", "LEFT"):
            subprocess.run(["xrandr", "--delmonitor", name], check=True, env=self.desktop.environment)
        self.check_theme("one display again")

    def compositor(self):
        self.report.stage("A compositor")
        self.desktop.start("compositor", ["picom", "--backend", "xrender", "--config", "/dev/null"])
        time.sleep(1.0)
        self.check_theme("blended over the screen", blended=True)
        self.keep_picture("overlay-compositor")
        self.desktop.stop("compositor")
        self.check_theme("after the compositor was killed")

    def sleep_and_lock(self):
        self.report.stage("Sleep and lock")
        for what, pause, resume in (
                ("sleep", ("manager", "PrepareForSleep", "true"), ("manager", "PrepareForSleep", "false")),
                ("lock", ("session", "Lock"), ("session", "Unlock"))):
            self.desktop.login_signal(*pause)
            self.check_own(f"while there is {what}")
            self.desktop.login_signal(*resume)
            self.check_theme(f"after {what}")

    def ends(self):
        """However the program ends, the pointer is on the screen."""
        self.report.stage("Every end leaves a pointer")
        self.driver.command("reset")
        self.check_own("after a reset")
        self.end_driver()
        for number in (signal.SIGKILL, signal.SIGSEGV, signal.SIGABRT, signal.SIGTERM):
            self.start_driver()
            self.check_theme(f"before {signal.Signals(number).name}")
            self.driver.process.send_signal(number)
            self.driver.process.wait(20)
            self.check_own(f"after {signal.Signals(number).name}")
            self.driver = None
        self.start_driver()
        self.check_theme("before SIGSTOP")
        self.driver.process.send_signal(signal.SIGSTOP)
        other, name = self.places[2]
        self.desktop.probe.move(other.x, other.y)
        time.sleep(0.5)
        self.driver.process.send_signal(signal.SIGCONT)
        self.report.check("a second after SIGCONT the pointer is right",
                          self.within(lambda: self.draws_theme(other, name), 1.0))
        self.report.check("the driver quits without an error", self.driver.quit() == 0)
        self.check_own("after the end")
        self.driver = None

    def missing_cursors(self):
        self.report.stage("A theme without an I-beam")
        self.start_driver(WITHOUT_ARROW_AND_TEXT, useSystemCursorForMissing=True)
        self.check_theme("a cursor that the theme has", self.places[2][0], "pointer")
        own = self.desktop.probe.library("Adwaita", 24, "xterm")
        self.check_own("over text with the setting on: the desktop's own pointer")
        self.report.check("and that is its I-beam", self.desktop.probe.read().look in own)
        self.end_driver()
        self.start_driver(WITHOUT_ARROW_AND_TEXT, useSystemCursorForMissing=False)
        self.check_theme("a cursor that the theme has", self.places[2][0], "pointer")
        self.desktop.probe.move(self.text.x, self.text.y)
        self.report.check("over text with the setting off: an image of the theme",
                          self.within(lambda: self.overlays() == 1 and not self.draws_theme(self.text, "xterm")))
        self.end_driver()

    def run(self):
        registered = Theme(*REGISTERED, self.tools)
        registered.install(self.desktop.data)
        install_without(self.desktop.data, WITHOUT_ARROW, ARROW_NAMES)
        install_without(self.desktop.data, WITHOUT_ARROW_AND_TEXT, ARROW_NAMES + TEXT_NAMES)
        self.report.stage("Before")
        self.open_applications()
        self.start_driver()
        self.all_places("From the bare desktop")
        self.clicks()
        self.steps_aside()
        self.displays()
        self.compositor()
        self.sleep_and_lock()
        self.ends()
        self.missing_cursors()
        self.start_driver(registered.identifier)
        self.desktop.probe.move(self.text.x, self.text.y)
        self.desktop.probe.wait_for(registered.looks("xterm", 1.0), 5000)
        self.driver.command("apply " + WITHOUT_ARROW)
        self.all_places("Over a registered theme")
        self.driver.command("apply " + registered.identifier)
        self.check_own("the registered theme takes over")
        self.report.check("and its I-beam is shown",
                          self.desktop.probe.wait_for(registered.looks("xterm", 1.0), 5000).look in
                          registered.looks("xterm", 1.0))
        return self.report.close()


class DesktopWithSession(Desktop):
    """And with a mock of the session manager on a system bus of its own."""

    LOGIN = "org.freedesktop.login1"

    def start_bus(self):
        super().start_bus()
        session = self.environment["DBUS_SESSION_BUS_ADDRESS"]
        super().start_bus()
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self.environment["DBUS_SESSION_BUS_ADDRESS"]
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = session
        self.environment["XDG_SESSION_ID"] = "c1"
        self.start("login", ["/usr/bin/python3", "-m", "dbusmock", "--system", "--template", "logind"])
        self.wait_for("login", "answers", self.add_session)

    def call(self, path, method, *arguments):
        return subprocess.run(["gdbus", "call", "--system", "--dest", self.LOGIN, "--object-path", path, "--method",
                               method, *arguments], env=self.environment, capture_output=True, text=True, check=False)

    def add_session(self):
        return self.call("/org/freedesktop/login1", "org.freedesktop.DBus.Mock.AddSession", "c1", "seat0", "1000",
                         "user", "true").returncode == 0

    def login_signal(self, of, name, *arguments):
        session = of == "session"
        path = "/org/freedesktop/login1" + ("/session/c1" if session else "")
        result = self.call(path, "org.freedesktop.DBus.Mock.EmitSignal",
                           self.LOGIN + (".Session" if session else ".Manager"), name,
                           "b" if arguments else "", "[" + ", ".join(f"<{each}>" for each in arguments) + "]")
        if result.returncode != 0:
            raise RuntimeError("the mock of the session manager refused:\n" + result.stderr)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="build folder")
    parser.add_argument("--quiet", action="store_true", help="print only failures")
    parser.add_argument("--window-manager", choices=WINDOW_MANAGERS, default="openbox")
    parser.add_argument("--pictures", help="folder for pictures and logs (default: BUILD/tour)")
    options = parser.parse_args()
    options.build = os.path.abspath(options.build)
    options.pictures = os.path.abspath(options.pictures or os.path.join(options.build, "tour", "overlay_tour"))
    os.makedirs(options.pictures, exist_ok=True)
    with DesktopWithSession(os.path.join(options.build, "tests", "desktop"), options.window_manager) as desktop:
        tour = OverlayTour(desktop, options)
        try:
            good = tour.run()
        finally:
            desktop.keep_logs(options.pictures, "driver", "server")
    print(f"Pictures and logs: {options.pictures}")
    return 0 if good else 1


if __name__ == "__main__":
    children.run(main)
