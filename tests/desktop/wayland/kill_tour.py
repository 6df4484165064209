#!/usr/bin/env python3
"""Kills the program at random moments of applying, scaling and resetting in a headless sway session. What the desktop's
setting names must always be there, and the next start's reset must bring the user's own setting back to the byte.

  kill_tour.py --build FOLDER [--kills 20] [--seed 1] [--quiet]
"""
import argparse
import collections
import json
import os
import random
import re
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [HERE, os.path.dirname(HERE)]

import children
from children import wait_until
from square_theme import BLUE, MINE, RED
from sway_tour import SwayTour

SCALES = ("0.75", "1.25", "1.5")
#: What the user may have set; none: not set.
OWN = ((MINE, 24), (MINE, 48), (MINE, None), (None, None), ("Other theme", 33))
SCHEMA = "org.gnome.desktop.interface"


class KillTour(SwayTour):
    def __init__(self, options):
        super().__init__(options)
        self.random = random.Random(options.seed)
        #: Seconds that each kind of change takes until the settings have it.
        self.lasts = {}
        self.moments = collections.Counter()

    # What is on the disk.

    def theme_now(self):
        found = re.search(r"cursor-theme='(Pintle-\w)'", self.session.settings())
        return found.group(1) if found else None

    def notes(self):
        """The user's setting as it is noted; none where there is no whole note."""
        for name in ("pointer_setting.json", "pointer_setting.json.copy"):
            try:
                with open(os.path.join(self.session.data, "Pintle", name), encoding="utf-8") as file:
                    return json.load(file)
            except (OSError, ValueError):
                continue
        return None

    def harm(self):
        """What a killed program may not leave; empty when nothing."""
        name = self.theme_now()
        if not name:
            return "" if self.session.settings() == self.own else f"a lost setting: {self.session.settings()!r}"
        if not self.notes():
            return f"{name} in force without a note of what was there"
        if not os.path.exists(os.path.join(self.session.data, "icons", name, "cursors", "left_ptr")):
            return f"{name} in force without a folder"
        return ""

    def is_own(self):
        icons = [each for each in os.listdir(os.path.join(self.session.data, "icons")) if "Pintle" in each]
        return self.session.settings() == self.own and not icons and not self.notes()

    def is_applied(self):
        return self.theme_now() is not None and self.theme_now() != self.before

    # What is done.

    def send(self, command):
        self.driver.process.stdin.write(command.encode() + b"\n")
        self.driver.process.stdin.flush()

    def change(self):
        """The commands of a random change, and its kind."""
        kind = self.random.choice(("apply", "apply", "scale", "reset", "several"))
        themes = self.random.sample((RED, BLUE), 2)
        return kind, {"apply": [f"apply {themes[0]}"], "scale": [f"scale {self.random.choice(SCALES)}"],
                      "reset": ["reset"],
                      "several": [f"apply {themes[0]}", f"scale {self.random.choice(SCALES)}", "reset",
                                  f"apply {themes[1]}"]}[kind]

    def ready(self):
        """Waits until the program takes commands."""
        self.driver.command("scale 1.0")

    def settle(self):
        """A theme is in force, where the next change needs one."""
        self.before = self.theme_now()
        self.driver.command("apply " + self.random.choice((RED, BLUE)))
        wait_until("a theme is applied", self.is_applied, 20)

    def reset(self):
        """With all that follows from it: the end of the program waits for that. What is wrong afterwards."""
        self.driver.command("reset")
        self.driver.quit()
        return "" if self.is_own() else f"not back: {self.session.settings()!r}, {self.listing()}, {self.notes()}"

    def choose_own(self):
        """The user sets something else while the desktop is his own."""
        theme, size = self.random.choice(OWN)
        for key, value in (("cursor-theme", theme), ("cursor-size", size)):
            self.session.run(["gsettings", "reset", SCHEMA, key] if value is None else
                             ["gsettings", "set", SCHEMA, key, str(value)])
        self.own = self.session.settings()

    def measure(self):
        self.before = None
        begin = time.monotonic()
        self.start_driver()
        self.ready()
        self.lasts["start"] = time.monotonic() - begin
        begin = time.monotonic()
        self.driver.command("apply " + RED)
        wait_until("a theme is applied", self.is_applied)
        applied = time.monotonic()
        begin_reset = time.monotonic()
        self.driver.command("reset")
        wait_until("the user's own is back", self.is_own)
        for kind in ("apply", "scale", "several"):
            self.lasts[kind] = applied - begin
        self.lasts["several"] *= 2
        self.lasts["reset"] = time.monotonic() - begin_reset
        self.driver.quit()

    def one(self, number):
        if self.random.random() < 0.25:
            self.choose_own()
        self.start_driver()
        self.ready()
        kind, commands = self.change()
        if kind in ("scale", "reset"):
            self.settle()
        before = (self.session.settings(), self.notes(), self.listing())
        delay = self.random.uniform(0.2, 1.3) * self.lasts[kind]
        for command in commands:
            self.send(command)
        time.sleep(delay)
        self.kill_driver()
        after = (self.session.settings(), self.notes(), self.listing())
        same = sum(a == b for a, b in zip(before, after))
        self.moments[f"{kind}: " + ("nothing was done yet" if same == 3 else "on its way")] += 1
        harm = self.harm()
        self.start_driver()
        if self.random.random() < 0.25:
            # The next one dies as well, while it starts.
            time.sleep(self.random.uniform(0, self.lasts["start"] + self.lasts["apply"]))
            self.kill_driver()
            harm = harm or self.harm()
            self.start_driver()
        harm = harm or self.reset()
        if harm:
            self.report.check(f"kill {number} ({kind} after {delay * 1000:.0f} ms)", False, harm)
        return not harm

    def listing(self):
        icons = os.path.join(self.session.data, "icons")
        return sorted(os.path.join(folder, name)[len(icons):] for folder, _, names in os.walk(icons) for name in names)

    def run(self):
        self.prepare()
        self.session.begin()
        self.point()
        self.report.stage(f"{self.options.kills} kills, seed {self.options.seed}")
        self.measure()
        done = 0
        for number in range(1, self.options.kills + 1):
            if not self.one(number):
                break
            done = number
        self.report.check(f"{done} of {self.options.kills} kills left the user's own to the byte",
                          done == self.options.kills)
        print("  " + ", ".join(f"{kind} lasts {1000 * seconds:.0f} ms" for kind, seconds in self.lasts.items()))
        for moment, count in sorted(self.moments.items()):
            print(f"  {count:4} {moment}")
        return self.report.close()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    parser.add_argument("--kills", type=int, default=20)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--quiet", action="store_true")
    options = parser.parse_args()
    options.build = os.path.abspath(options.build)
    options.pictures = None
    children.adopt_orphans()
    tour = KillTour(options)
    try:
        good = tour.run()
    finally:
        tour.session.end()
    return 0 if good else 1


if __name__ == "__main__":
    children.run(main)
