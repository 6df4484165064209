#!/usr/bin/env python3
"""Everything that can happen to the program on a desktop, in an order that a seed chooses: it applies, scales, deletes,
downloads, and meanwhile the window manager, the compositor, the bus and its own connections are killed, the disk is
full, monitors come and go, the screen is locked, the machine sleeps and second copies start. After each step an
independent client says whether a pointer is on the screen and the right one; from time to time memory, descriptors and
what the X server keeps are counted. Ends with 1 when a pointer was lost or wrong, the program ended by itself or
something grew.

  chaos.py --build FOLDER [--minutes N] [--seed N] [--logs FOLDER]
"""
import argparse
import os
import random
import subprocess
import sys
import time
import traceback

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[1:1] = [os.path.join(HERE, "..", "desktop"), os.path.join(HERE, "..", "desktop", "library")]

import children  # noqa: E402
from deeds import Deeds  # noqa: E402
from growth import Growth  # noqa: E402
from world import ChaosDesktop, World  # noqa: E402

#: What is counted is counted after so many steps, and only when all is quiet.
STEPS_BETWEEN_COUNTS = 15
#: What a program that is gone or hangs looks like from here; no window is none.
FAULTS = (RuntimeError, OSError, TypeError, subprocess.SubprocessError)


class Chaos:
    def __init__(self, desktop, options):
        self.options = options
        self.world = World(desktop, options)
        self.growth = Growth(self.world)
        self.deeds = Deeds(self.world)
        self.chance = random.Random(options.seed)
        self.failures = []
        self.counts = {}
        self.lives = 0

    def failed(self, what):
        self.failures.append(what)
        print(f"FAILED {what}", flush=True)

    def attempt(self, what, deed):
        """The answer of a deed; after a fault none, and from then on System Default."""
        try:
            return deed()
        except FAULTS as error:
            self.failed(f"{what}: {error}\n" + "".join(traceback.format_tb(error.__traceback__)[-2:]))
            self.world.begin_again()
            return None

    def step(self, number):
        if self.world.lives != self.lives:
            # What a life needs once is not what grows.
            self.attempt("warming up", self.deeds.warm_up)
            self.lives = self.world.lives
        name, deed = self.deeds.choose(self.chance)
        self.counts[name] = self.counts.get(name, 0) + 1
        begun = time.monotonic()
        detail, complaint = "", ""
        try:
            detail = deed(self.chance) or ""
            complaint = self.world.complaint(self.chance)
        except FAULTS as error:
            complaint = f"{error}\n" + "".join(traceback.format_tb(error.__traceback__)[-2:])
        print(f"{number:4} {time.monotonic() - begun:5.1f} s  {name} {detail}  -> {self.world.expected_words()}",
              flush=True)
        if self.world.ended_by_itself():
            complaint = f"the program ended with {self.world.driver.process.returncode}: {complaint}"
        if complaint:
            self.failed(f"step {number}, {name} {detail}: {complaint}")
            self.world.begin_again()

    def run(self):
        print(f"seed {self.options.seed}", flush=True)
        self.world.open()
        end = time.monotonic() + self.options.minutes * 60
        number = 0
        while time.monotonic() < end:
            number += 1
            self.step(number)
            if number % STEPS_BETWEEN_COUNTS == 0:
                self.count()
                self.attempt("applying again", lambda: self.deeds.apply(self.chance))
        self.count()
        complaint = self.world.complaint(self.chance)
        if complaint:
            self.failed("at the end: " + complaint)
        status = self.world.driver.quit()
        if status != 0:
            self.failed(f"the program quits with {status}")
        self.world.driver = None
        return self.close(number)

    def count(self):
        self.attempt("being calm", self.deeds.calm)
        print("     counted " + str(self.attempt("counting", self.growth.count)), flush=True)

    def close(self, steps):
        for what in self.growth.complaints():
            self.failed(what)
        print("\n" + ", ".join(f"{name} {count}" for name, count in sorted(self.counts.items())))
        for failure in self.failures:
            print("FAILED " + failure)
        print(f"{steps} steps, {self.world.looks} looks, {self.world.second_looks} second looks, "
              f"{self.world.lost} lost pointers, {self.world.wrong} wrong pointers, {self.world.crashes} crashes, "
              f"{self.world.lives} starts, {len(self.failures)} failures, seed {self.options.seed}", flush=True)
        print(self.growth.words(), flush=True)
        return not self.failures


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="build folder")
    parser.add_argument("--minutes", type=float, default=2)
    parser.add_argument("--seed", type=int, default=random.randrange(1 << 30))
    parser.add_argument("--logs", help="folder for the logs")
    options = parser.parse_args()
    options.build = os.path.abspath(options.build)
    with ChaosDesktop(os.path.join(options.build, "tests", "desktop")) as desktop:
        chaos = Chaos(desktop, options)
        try:
            good = chaos.run()
        finally:
            desktop.keep_logs(options.logs, "driver", "server", "window manager", "web server")
    return 0 if good else 1


if __name__ == "__main__":
    children.run(main)
