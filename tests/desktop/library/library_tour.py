#!/usr/bin/env python3
"""Downloads, applies and deletes themes for real: a server on this machine, a private desktop, and the driver.

  library_tour.py --build FOLDER [--quiet] [--kill-loop ROUNDS]
"""
import argparse
import glob
import os
import plistlib
import random
import subprocess
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [HERE, os.path.dirname(HERE)]

import archives
import children
import points
from children import wait_until
from desktop import Desktop
from judge import Judge
from program import Driver
from report import Report
from server import Server
from theme import Theme, write_preferences


class LibraryDriver(Driver):
    def row(self, identifier):
        """The state of a row as a dictionary."""
        self.process.stdin.write(f"row {identifier}\n".encode())
        self.process.stdin.flush()
        words, status, error = self.process.stdout.readline().decode().rstrip("\n").split("\t")
        if self.process.stdout.readline().decode().strip() != "ok row " + identifier:
            raise RuntimeError("no row " + identifier)
        state = dict(word.split("=") for word in words.split()[2:])
        return state | {"status": status, "error": error}

    def reset_all(self):
        """Answers what was printed before the answer."""
        self.process.stdin.write(b"reset-all\n")
        self.process.stdin.flush()
        printed = []
        while not printed or printed[-1] != "ok reset-all":
            line = self.process.stdout.readline().decode()
            if not line:
                raise RuntimeError("the driver ended at the reset")
            printed.append(line.rstrip("\n"))
        return printed[:-1]

    def download(self, identifier):
        """Downloads and waits for the end; answers the row."""
        self.command("download " + identifier)
        return self.ended(identifier)

    def ended(self, identifier):
        wait_until(f"the download of {identifier} ends", lambda: self.settled(identifier), seconds=60)
        return self.row(identifier)

    def settled(self, identifier):
        row = self.row(identifier)
        return row["downloading"] == "0" and (row["error"] or row["preview"] == "1")

    def delete(self, identifier):
        self.command("delete " + identifier)
        wait_until(f"{identifier} is deleted", lambda: self.row(identifier)["downloaded"] == "0")


class LibraryTour:
    def __init__(self, desktop, options):
        self.desktop = desktop
        self.options = options
        self.report = Report(options.quiet)
        self.tools = os.path.join(options.build, "tests", "desktop")
        self.judge = Judge(desktop.probe, self.report)
        self.themes = os.path.join(desktop.data, "Pintle", "Themes")
        self.temporary = os.path.join(desktop.folder, "tmp")
        self.www = os.path.join(desktop.folder, "www")
        for folder in (self.temporary, self.www):
            os.makedirs(folder)
        archives.write_all(self.www)
        desktop.environment["TMPDIR"] = self.temporary
        self.server = Server(self.www, desktop.log("web server"))
        self.mirror(f"http://127.0.0.1:{self.server.port}")

    def mirror(self, address):
        self.desktop.environment["PINTLE_MIRROR"] = address

    def start_driver(self, *prefix):
        driver = LibraryDriver.__new__(LibraryDriver)
        driver.desktop = self.desktop
        driver.process = self.desktop.start("driver", [*prefix, os.path.join(self.tools, "driver")],
                                            stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        return driver

    def preferences(self):
        try:
            with open(os.path.join(self.desktop.config, "com.pintle.app.plist"), "rb") as file:
                return plistlib.load(file)
        except FileNotFoundError:
            return {}

    def leftovers(self):
        return (glob.glob(os.path.join(self.themes, ".extract-*")) +
                glob.glob(os.path.join(self.temporary, "pintle-*")))

    def check_clean(self, what):
        self.report.check(what + " leaves nothing behind", not self.leftovers(), str(self.leftovers()))

    def is_whole(self, identifier, package_theme):
        """Whether every file of the theme is there, with its bytes, and nothing leads out of it."""
        folder = os.path.join(self.themes, identifier, "cursors")
        own = os.path.realpath(folder) + os.sep
        for name in archives.cursors_of(package_theme):
            path = os.path.join(folder, name)
            with open(os.path.join(archives.ICONS, package_theme, "cursors", name), "rb") as file:
                expected = file.read()
            if not os.path.realpath(path).startswith(own) or not os.path.isfile(path):
                return False
            with open(path, "rb") as file:
                if file.read() != expected:
                    return False
        return os.listdir(os.path.join(self.themes, identifier)) == ["cursors"]

    def layouts(self):
        for identifier, _, package_theme in archives.LAYOUTS:
            self.report.stage(f"{identifier}, built from {package_theme}")
            row = self.driver.download(identifier)
            self.report.check("it is downloaded and has a preview",
                              row["downloaded"] == "1" and row["preview"] == "1" and not row["error"], str(row))
            self.report.check("bar and status are back", row["progress"] == "0" and not row["status"], str(row))
            self.report.check("it is whole", self.is_whole(identifier, package_theme))
            self.check_clean("a download")
            self.driver.command("apply " + identifier)
            theme = Theme(identifier, package_theme, self.tools)
            self.judge.stage(f"{identifier} applied", self.points, theme)
            self.driver.delete(identifier)
            self.judge.stage(f"{identifier} deleted: the desktop's own are back", self.points)
            self.report.check("its folder is gone", not os.path.exists(os.path.join(self.themes, identifier)))
            self.report.check("the theme is forgotten", "currentThemeId" not in self.preferences())

    def another_theme(self):
        self.report.stage("Deleting a theme that is not in use")
        self.driver.download("bibata-modern-ice")
        self.driver.download("numix-cursor")
        self.driver.command("apply bibata-modern-ice")
        theme = Theme("bibata-modern-ice", "Bibata-Modern-Ice", self.tools)
        self.judge.stage("Applied", self.points, theme)
        self.driver.delete("numix-cursor")
        self.judge.stage("The other one deleted", self.points, theme)
        self.driver.delete("bibata-modern-ice")

    def expect_failure(self, driver, what, text, identifier="bibata-modern-ice"):
        row = driver.download(identifier)
        self.report.check(f"{what} is told in the row", text in row["error"] and row["downloaded"] == "0", str(row))
        stored = self.preferences().get("themeDownloadErrors", {}).get(identifier, "")
        self.report.check(f"{what} is stored", stored.replace("\n", " ") == row["error"] and stored, stored)
        self.check_clean(what)
        self.report.check(f"{what} leaves no theme", not os.path.exists(os.path.join(self.themes, identifier)))

    def expect_retry(self, driver, what):
        row = driver.download("bibata-modern-ice")
        self.report.check(f"a retry after {what} works", row["downloaded"] == "1", str(row))
        self.report.check("its stored error is gone",
                          "bibata-modern-ice" not in self.preferences().get("themeDownloadErrors", {}))
        driver.delete("bibata-modern-ice")

    def faults(self):
        self.report.stage("Faults of the server")
        for behaviour, text in (("404", "HTTP 404"), ("500", "HTTP 500"), ("204", "HTTP 204"),
                                ("loop", "Too many redirects"), ("elsewhere", "Refused a redirect"),
                                ("reset", ""), ("short", ""), ("nohttp", "")):
            self.server.behave(behaviour)
            self.expect_failure(self.driver, behaviour, text)
            self.server.behave("well")
            self.expect_retry(self.driver, behaviour)
        self.server.behave("redirect")
        self.expect_retry(self.driver, "a redirect")
        self.server.behave("well")

        self.report.stage("Archives that are none")
        archive = os.path.join(self.www, os.path.basename(archives.address_of("bibata-modern-ice")))
        with open(archive, "rb") as file:
            whole = file.read()
        for what, content, text in (("words", b"no archive\n" * 500, "Extraction failed: "),
                                    ("a cut archive", whole[:-1000], "Extraction failed: "),
                                    ("an empty file", b"", "No XCursor files")):
            with open(archive, "wb") as file:
                file.write(content)
            row = self.driver.download("bibata-modern-ice")
            self.report.check(f"{what} fails", text in row["error"] or "Extraction failed" in row["error"], str(row))
            self.check_clean(what)
        with open(archive, "wb") as file:
            file.write(whole)
        self.expect_retry(self.driver, "a broken archive")

        self.report.stage("A themes folder that cannot be written to")
        os.rename(self.themes, self.themes + ".away")
        with open(self.themes, "w", encoding="utf-8") as file:
            file.write("in the way")
        row = self.driver.download("bibata-modern-ice")
        self.report.check("it is told in the row", row["error"] == "Not a directory", str(row))
        os.remove(self.themes)
        os.rename(self.themes + ".away", self.themes)
        self.check_clean("it")
        self.expect_retry(self.driver, "it")

    def together(self):
        self.report.stage("Downloads at the same time")
        self.server.behave("slow")
        for identifier in ("bibata-modern-ice", "bibata-modern-ice", "numix-cursor"):
            self.driver.command("download " + identifier)
        wait_until("bytes arrive", lambda: self.driver.row("numix-cursor")["status"].startswith("Downloading"))
        for identifier in ("bibata-modern-ice", "numix-cursor"):
            self.driver.ended(identifier)
        wait_until("both are through", lambda: not self.leftovers())
        time.sleep(0.5)
        self.server.behave("well")
        self.report.check("the first is whole", self.is_whole("bibata-modern-ice", "Bibata-Modern-Ice"))
        self.report.check("the second is whole", self.is_whole("numix-cursor", "DMZ-White"))
        for identifier in ("bibata-modern-ice", "numix-cursor"):
            self.driver.delete(identifier)

    def reset_all(self):
        self.report.stage("A full reset while work is under way")
        self.driver.download("numix-cursor")
        self.driver.command("apply numix-cursor")
        self.judge.stage("Applied", self.points, Theme("numix-cursor", "DMZ-White", self.tools))
        self.driver.command("scale 1.5")
        self.driver.command("download lyra-cursors")
        self.server.behave("slow")
        self.driver.command("download bibata-modern-ice")
        self.driver.command("apply numix-cursor")
        around = os.path.dirname(self.themes)
        beside = sorted(set(os.listdir(around)) - {"Themes"})
        printed = self.driver.reset_all()
        self.judge.stage("Reset: the desktop's own", self.points)
        time.sleep(2.5)
        self.server.behave("well")
        self.report.check("the themes folder is gone", not os.path.exists(self.themes))
        self.report.check("what lies beside it stays", sorted(os.listdir(around)) == beside,
                          f"{os.listdir(around)} was {beside}")
        print(f"  beside the themes: {beside}", flush=True)
        self.report.check("the preferences are new", self.preferences() == {"cursorScale": 1.0},
                          str(self.preferences()))
        self.check_clean("a reset")
        self.report.check("its lines are printed in their order", printed == [
            "[RESET] " + 36 * "━", "[RESET] Starting full app reset...",
            "[RESET] ✅ Deleted all themes from: " + self.themes, "[RESET] ✅ Cleared UserDefaults",
            "[RESET] ✅ Reset CursorSettings", "[RESET] ✅ Reset cursor to system default",
            "[RESET] Full reset completed!"], str(printed))

    def other_starts(self):
        self.driver.quit()
        self.report.stage("Programs that start under other conditions")
        key, certificate = (os.path.join(self.desktop.folder, name) for name in ("key.pem", "certificate.pem"))
        subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj",
                        "/CN=127.0.0.1", "-keyout", key, "-out", certificate], check=True, capture_output=True)
        secure = Server(self.www, self.desktop.log("secure server"), "--certificate", certificate, "--key", key)
        conditions = (("a certificate that does not verify", f"https://127.0.0.1:{secure.port}", "certificate", ()),
                      ("nobody listening", "http://127.0.0.1:9", "", ()),
                      ("plain http to another machine", "http://192.0.2.1:80", "Plain http", ()),
                      ("a full disk", f"http://127.0.0.1:{self.server.port}", "File too large",
                       ("prlimit", "--fsize=300000")))
        for what, mirror, text, prefix in conditions:
            self.mirror(mirror)
            driver = self.start_driver(*prefix)
            self.expect_failure(driver, what, text)
            driver.quit()
            self.mirror(f"http://127.0.0.1:{self.server.port}")
            driver = self.start_driver()
            self.report.check(f"the error of {what} is shown at the next start",
                              driver.row("bibata-modern-ice")["error"] != "")
            self.expect_retry(driver, what)
            driver.quit()

    def kill_loop(self, rounds):
        self.report.stage(f"Killed at {rounds} random points")
        write_preferences(self.desktop.config, excludedApps=["Editor"], cursorScale=1.25, applyOnLaunch=False)
        seed = int(os.environ.get("PINTLE_SEED", "0")) or random.randrange(1 << 30)
        print(f"PINTLE_SEED={seed}", flush=True)
        chance = random.Random(seed)
        states = []
        for number in range(rounds):
            self.server.behave(chance.choice(("well", "well", "slow")))
            driver = self.start_driver()
            driver.row("bibata-modern-ice")
            driver.command("download bibata-modern-ice")
            time.sleep(chance.random() * chance.choice((0.1, 0.5, 1.5)))
            driver.kill()
            found = self.leftovers()
            # What a living process of the dead run still does must not matter.
            driver = self.start_driver()
            row = driver.row("bibata-modern-ice")
            there = os.path.exists(os.path.join(self.themes, "bibata-modern-ice"))
            whole = there and self.is_whole("bibata-modern-ice", "Bibata-Modern-Ice")
            states.append(("whole" if there else "absent") + ("+leftovers" if found else ""))
            self.report.check(f"round {number}: whole or absent", whole == there == (row["downloaded"] == "1"),
                              f"{row} there={there} whole={whole}")
            try:
                wait_until("the leftovers are gone", lambda: not self.leftovers())
            except TimeoutError:
                self.check_clean(f"round {number}")
            settings = self.preferences()
            self.report.check(f"round {number}: no setting is lost",
                              settings.get("excludedApps") == ["Editor"] and settings.get("cursorScale") == 1.25,
                              str(settings))
            if there:
                driver.delete("bibata-modern-ice")
            driver.quit()
        counts = {state: states.count(state) for state in sorted(set(states))}
        print(f"After the kills: {counts}", flush=True)
        self.report.check("more than one moment was hit", len(counts) > 1, str(counts))

    def run(self):
        if self.options.kill_loop:
            self.kill_loop(self.options.kill_loop)
            return
        self.desktop.start_xterm("xterm", 20, 40)
        self.points = points.xterm("xterm", self.desktop.probe) + points.root(1460, 860)
        self.driver = self.start_driver()
        self.report.stage("Before: the desktop's own pointers")
        self.judge.desktops_own(self.points, Theme("bibata-modern-ice", "Bibata-Modern-Ice", self.tools))
        self.layouts()
        self.another_theme()
        self.faults()
        self.together()
        self.reset_all()
        self.other_starts()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True)
    parser.add_argument("--quiet", action="store_true")
    parser.add_argument("--kill-loop", type=int, default=0)
    parser.add_argument("--logs")
    options = parser.parse_args()
    options.build = os.path.abspath(options.build)
    with Desktop(os.path.join(options.build, "tests", "desktop")) as desktop:
        tour = LibraryTour(desktop, options)
        try:
            tour.run()
        finally:
            desktop.keep_logs(options.logs, "driver", "web server")
        return 0 if tour.report.close() else 1


if __name__ == "__main__":
    children.run(main)
