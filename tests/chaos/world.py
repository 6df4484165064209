"""The desktop under chaos: the program, what its pointers must be, and the client that looks."""
import os
import subprocess
import time

import archives
import children
import points
from desktop import Desktop
from library_tour import LibraryDriver
from overlay_tour import (ARROW_NAMES, DesktopWithSession, Picture, install_without, server_image, theme_image)
from server import Server
from theme import Theme, write_preferences
from x_clients import XClients

#: Rows of the catalog that are downloaded, and the installed themes that their archives are made of.
DOWNLOADED = {"numix-cursor": "DMZ-White", "lyra-cursors": "DMZ-Black", "anime-reimu": "Bibata-Modern-Amber"}
#: Only the overlay can show it, because it has no arrow.
WITHOUT_ARROW = "bibata-modern-ice"
#: How long a pointer may take to become what it must be, seconds.
PATIENCE = 8.0
#: A pointer of fewer opaque pixels is none.
FEWEST_PIXELS = 10
FREE = (1460, 860)
AWAY = (2, 2)


class ChaosDesktop(DesktopWithSession):
    """The bus of the session has an address that a later one can have again."""

    def start_bus(self):
        super().start_bus()
        self.start_session_bus()

    def start_session_bus(self):
        path = os.path.join(self.folder, "run", "bus")
        if os.path.exists(path):
            os.remove(path)
        self.applications["session bus"] = children.start(
            ["dbus-daemon", "--session", "--nofork", "--address=unix:path=" + path], self.log("session bus"),
            env=self.environment)
        children.wait_until("the bus listens", lambda: os.path.exists(path))
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + path

    def set_locked_hint(self, locked):
        """What a session manager knows once a lock screen is there, and tells whoever asks later."""
        result = self.call("/org/freedesktop/login1/session/c1", "org.freedesktop.DBus.Mock.UpdateProperties",
                           self.LOGIN + ".Session", f"{{'LockedHint': <{str(locked).lower()}>}}")
        if result.returncode != 0:
            raise RuntimeError("the mock of the session manager refused:\n" + result.stderr)

    def run(self, *words):
        return subprocess.run(words, env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=60, check=False).returncode


class World:
    def __init__(self, desktop, options):
        self.desktop = desktop
        self.tools = os.path.join(options.build, "tests", "desktop")
        self.program = os.path.join(options.build, "pintle")
        self.driver = None
        self.theme, self.scale = None, 1.0
        #: While locked or asleep the overlay makes way for the desktop's own pointer.
        self.reasons_to_pause = set()
        self.compositor = False
        #: A second copy that was started while there was no bus.
        self.copy = None
        self.looks = self.second_looks = self.lost = self.wrong = self.crashes = self.lives = 0
        self.images = {}
        self.themes = {name: Theme(name, package, self.tools) for name, package in DOWNLOADED.items()}

    # Beginnings and ends.

    def open(self):
        desktop = self.desktop
        www = os.path.join(desktop.folder, "www")
        self.temporary = os.path.join(desktop.folder, "tmp")
        for folder in (www, self.temporary):
            os.makedirs(folder)
        archives.write_all(www, DOWNLOADED)
        self.server = Server(www, desktop.log("web server"))
        desktop.environment["TMPDIR"] = self.temporary
        desktop.environment["PINTLE_MIRROR"] = f"http://127.0.0.1:{self.server.port}"
        desktop.run("xsetroot", "-solid", "#51687a")
        desktop.start_xterm("xterm", 20, 40)
        areas = desktop.start_qt("Qt", 440, 300)
        self.offsets = {}
        client, _ = desktop.probe.window("Qt")
        for point in points.qt("Qt", areas):
            if point.place in ("PointingHand", "SizeVer", "ClosedHand"):
                self.offsets[point.place] = (point.x - client.x, point.y - client.y, point.name)
        install_without(desktop.data, WITHOUT_ARROW, ARROW_NAMES)
        self.own = {}
        for name, place in self.places().items():
            desktop.probe.move(*place)
            shown = desktop.probe.settle(300, 3000)
            self.own[name] = {shown.look, *desktop.probe.library("Adwaita", 24, name)}
        self.clients = XClients(desktop.environment["DISPLAY"])
        write_preferences(desktop.config, restoreOnQuit=False, applyOnLaunch=True, useSystemCursorForMissing=False)
        self.start()

    def start(self):
        """A full disk ends no program by a signal: that is only how this one is made full."""
        self.driver = LibraryDriver.__new__(LibraryDriver)
        self.driver.desktop = self.desktop
        self.driver.process = self.desktop.start(
            "driver", ["sh", "-c", 'trap "" XFSZ; exec "$0"', os.path.join(self.tools, "driver")],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.driver.row(WITHOUT_ARROW)
        self.lives += 1
        # Nothing starts while the machine sleeps.
        self.reasons_to_pause.discard("sleep")
        self.connection_was_killed = False

    def ended_by_itself(self):
        if not self.driver or self.driver.process.poll() is None:
            return False
        self.crashes += 1
        return True

    def kill_driver(self):
        self.driver.process.kill()
        self.driver.process.wait()

    def begin_again(self):
        """After a fault: from System Default, so that one fault is not counted twice."""
        if self.copy:
            self.copy.kill()
            self.copy.wait()
            self.copy = None
        if self.driver.process.poll() is None:
            try:
                self.driver.command("reset")
            except (RuntimeError, TimeoutError):
                self.kill_driver()
        if self.driver.process.poll() is not None:
            self.start()
            self.driver.command("reset")
        self.theme = None
        time.sleep(1.0)

    # What must be seen.

    def is_installed(self, identifier):
        return os.path.isdir(os.path.join(self.desktop.data, "Pintle", "Themes", identifier, "cursors"))

    def expected_words(self):
        state = "+".join(sorted(self.reasons_to_pause) + (["compositor"] if self.compositor else []))
        return f"{self.theme or 'System Default'} at {self.scale} {state}".rstrip()

    def places(self):
        """The X11 name that is asked for, and where; a window manager may have moved the windows."""
        probe = self.desktop.probe
        found = {point.name: (point.x, point.y) for point in points.xterm("xterm", probe)[:1]}
        client, _ = probe.window("Qt")
        for x, y, name in self.offsets.values():
            found[name] = (client.x + x, client.y + y)
        return found

    def complaint(self, chance):
        """What is wrong with the pointer at two of the places; empty when nothing is."""
        places = self.places()
        for name in chance.sample(sorted(places), 2):
            self.looks += 1
            wrong = self.look(name, places[name])
            if wrong:
                # GTK and Qt change a window's cursor as the pointer moves, which can be lost until it moves again.
                self.second_looks += 1
                print(f"     once more: {wrong}", flush=True)
                self.desktop.probe.move(*AWAY)
                time.sleep(0.3)
                wrong = self.look(name, places[name])
            if wrong:
                self.wrong += 1
                if not self.within(lambda place=places[name]: self.is_any_pointer(place), 2.0):
                    self.lost += 1
                    wrong = "NO POINTER; " + wrong
                return wrong
        return ""

    def look(self, name, place):
        self.desktop.probe.move(*place)
        if self.theme == WITHOUT_ARROW and not self.reasons_to_pause:
            if self.within(lambda: self.draws(self.image(name), place)):
                return ""
            return f"{name} is not drawn by the overlay at {place}: {self.seen()}"
        looks = (self.themes[self.theme].looks(name, self.scale)
                 if self.theme and self.theme != WITHOUT_ARROW else self.own[name])
        if self.within(lambda: self.desktop.probe.read().look in looks and self.shows_servers(place)):
            return ""
        return f"{name} at {place} is not {sorted(looks)[0]}: {self.seen()}"

    def seen(self):
        return f"{self.desktop.probe.read()}, {self.overlays()} overlays"

    @staticmethod
    def within(question, seconds=PATIENCE):
        try:
            return children.wait_until("", question, seconds, 0.05)
        except TimeoutError:
            return False

    def overlays(self):
        return int(self.desktop.probe.ask("overlays").split()[1])

    def image(self, name):
        if (name, self.scale) not in self.images:
            self.images[name, self.scale] = theme_image(os.path.join(self.tools, "expected_cursor"), name,
                                                        scale=self.scale)
        return self.images[name, self.scale]

    def draws(self, image, place):
        return image.different(Picture(self.desktop), place[0] - image.x, place[1] - image.y,
                               255 if self.compositor else 128) == 0

    def shows_servers(self, place):
        """Whether what the server calls its pointer is really on the screen."""
        shown = self.desktop.probe.ask("read").split()
        if shown[0] != "cursor" or self.overlays():
            return False
        image = server_image(self.desktop.probe, os.path.join(self.desktop.folder, "pointer.pam"))
        hotspot = shown[1].split(":")[0].split("+")[1:]
        opaque = sum(1 for at in range(3, len(image.data), 4) if image.data[at] == 255)
        return opaque > FEWEST_PIXELS and image.different(
            Picture(self.desktop), place[0] - int(hotspot[0]), place[1] - int(hotspot[1]), 255) == 0

    def is_any_pointer(self, place):
        return self.shows_servers(place) or (self.overlays() == 1 and any(
            self.draws(self.image(name), place) for name in self.own))
