#!/usr/bin/env python3
"""Measures the program beside the least tray program that there can be, on a private desktop with a tray.

usage: measure.py BUILD_FOLDER [--quick] [--host NAME]

Both are measured in one run and by the same means. A time that misses its goal is reported and does not fail; a
quotient beyond its gate does. Needs the system's Python with gi.
"""
import argparse
import contextlib
import os
import re
import statistics
import subprocess
import sys
import tempfile
import threading
import time

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
sys.path[:0] = [os.path.join(ROOT, "tests", "desktop", name) for name in ("shell", "", "library")]

import archives  # noqa: E402
import children  # noqa: E402
from application import THEMES, Application  # noqa: E402
from input_devices import InputDevices  # noqa: E402
from server import Server  # noqa: E402
from session import ShellDesktop  # noqa: E402
from theme import Theme, write_preferences  # noqa: E402
from tray_hosts import HOSTS  # noqa: E402

POPOVER_GOAL = 150
BLOCK_GOAL = 50
WAKES_GOAL = 2
#: Of a frame that is in time on a screen of sixty a second, milliseconds.
FRAME = 16
FRAMES = {"QT_LOGGING_RULES": "qt.scenegraph.time.renderloop.debug=true"}
#: Times the plain program's: start to icon, and memory while no window was opened.
GATES = {"start to icon": 6.0, "idle PSS": 4.0, "idle RSS": 3.0}
REST = 20
THEME, THEME_ROW = "bibata-modern-ice", "Bibata Modern Ice"
OTHER_THEME = "adwaita-cursors"
DOWNLOADED, DOWNLOADED_ROW = "numix-cursor", "Numix Cursor"


class Bench:
    def __init__(self, desktop, host, options):
        self.desktop, self.host, self.options = desktop, host, options
        self.input = InputDevices(desktop)
        self.programs = {"plain": os.path.join(options.build, "bench", "shell", "plain_tray"),
                         "pintle": os.path.join(options.build, "pintle")}
        self.missed = []

    def start(self, side):
        """Answers the process and the milliseconds until its icon was in the tray."""
        self.desktop.wait_for(side, "finds an empty tray", lambda: not self.host.icon())
        begun = time.monotonic()
        process = self.desktop.start(side, [self.programs[side]])
        children.wait_until("the icon", self.host.is_docked, step=0.001)
        return process, (time.monotonic() - begun) * 1000

    def stop(self, process):
        process.terminate()
        process.wait(20)

    @staticmethod
    def memory(process):
        """PSS and RSS in KB."""
        with open(f"/proc/{process.pid}/smaps_rollup") as file:
            words = dict(line.split()[:2] for line in list(file)[1:])
        return int(words["Pss:"]), int(words["Rss:"])

    def settled_memory(self, process):
        before = self.memory(process)
        while True:
            time.sleep(1)
            now = self.memory(process)
            if abs(now[0] - before[0]) < 64:
                return now
            before = now

    def starts(self):
        times = {side: [] for side in self.programs}
        memory = {side: [] for side in self.programs}
        for number in range(3 if self.options.quick else 7):
            for side in self.programs:
                process, milliseconds = self.start(side)
                times[side].append(milliseconds)
                if number in (1, 2):
                    memory[side].append(self.settled_memory(process))
                self.stop(process)
        for side in self.programs:
            del times[side][0]
        self.compare("start to icon", *(statistics.median(times[side]) for side in self.programs), "ms")
        for index, what in enumerate(("idle PSS", "idle RSS")):
            self.compare(what, *(min(each[index] for each in memory[side]) / 1024 for side in self.programs), "MB")

    def compare(self, what, plain, ours, unit):
        value, gate = ours / plain, GATES[what]
        word = "goal" if value <= 1.05 else "over the goal" if value <= gate else "MISSES THE GATE"
        if value > gate:
            self.missed.append(what)
        print(f"{'shell/' + what:<28}{plain:>10.1f} {unit}{ours:>10.1f} {unit}{value:>8.2f}x{gate:>8}{1:>8}  {word}",
              flush=True)

    @staticmethod
    def report(what, value, goal, unit, note=""):
        word = "goal" if value <= goal else "over the goal"
        print(f"{'shell/' + what:<28}{'':>13}{value:>10.1f} {unit}{'':>9}{'':>8}{goal:>8}  {word}{note}", flush=True)

    def clicks(self, icon):
        """Click to panel for both, in turns; the first click of each program is kept apart, for it loads the rest."""
        rounds = 2 if self.options.quick else 8
        done = subprocess.run([os.path.join(self.options.build, "bench", "shell", "popover_clock"),
                               str(icon.x + icon.width // 2), str(icon.y + icon.height // 2), str(rounds)],
                              env=self.desktop.environment, capture_output=True, text=True, check=False)
        found = [[int(word) for word in line.split()[1:]] for line in done.stdout.splitlines()]
        if not found or done.returncode != 0:
            raise RuntimeError("no panel came at a click on the icon: " + done.stdout)
        first = [value / 1000 for value in found[0][:3]]
        later = [statistics.median(each[index] / 1000 for each in found[1:]) for index in range(3)]
        return first, later, found[-1]

    @staticmethod
    def longest(node, milliseconds, cause):
        """The longest silence of the program while `cause` runs: its main thread answers these questions."""
        worker = threading.Thread(target=cause)
        begun, longest, count = time.monotonic(), 0.0, 0
        worker.start()
        while worker.is_alive() or time.monotonic() - begun < milliseconds / 1000:
            asked = time.monotonic()
            node.ask("Accessible", "GetState")
            longest, count = max(longest, time.monotonic() - asked), count + 1
            time.sleep(0.002)
        worker.join()
        return longest * 1000, count

    def blocks(self, process):
        """Rows are found before the clock runs, for the finding keeps the program busy."""
        app = Application(self.desktop, self.input, self.host, self.programs["pintle"])
        app.process = process
        app.open_popover()
        top = app.popover().find("list", THEMES).node.box()

        def scroll():
            self.input.point(top.x + top.width // 2, top.y + top.height // 2)
            for clicks in (40, -40, 40, -40):
                self.input.wheel(clicks)

        def click(name):
            box = app.row(name).node.box()
            return lambda: self.input.click_on(box)
        quiet, count = self.longest(app.node, 1500, lambda: None)
        print(f"the popover at rest answers {count} questions, the slowest after {quiet:.1f} ms", flush=True)
        for what, prepare, milliseconds in (("scrolling", lambda: scroll, 4000),
                                            ("applying", lambda: click(THEME_ROW), 3000),
                                            ("downloading", lambda: click(DOWNLOADED_ROW), 5000)):
            longest, _ = self.longest(app.node, milliseconds, prepare())
            self.report("block while " + what, longest, BLOCK_GOAL, "ms")
        app.close_popover()

    def drawn(self):
        """What each frame took so far, in milliseconds, as the toolkit measures it."""
        return [int(each) for each in re.findall(r"Frame rendered with '\w+' renderloop in (\d+)ms",
                                                 self.desktop.log_text("pintle"))]

    def frames(self):
        """Frames that come late while a person does what moves. The first one of a window is left out: it makes what
        it draws."""
        self.desktop.environment |= FRAMES
        process, _ = self.start("pintle")
        for name in FRAMES:
            del self.desktop.environment[name]
        app = Application(self.desktop, self.input, self.host, self.programs["pintle"])
        app.process = process
        children.wait_until("the icon", self.host.icon)

        def filters():
            for name in ("Left", "Universal", "Right", "All"):
                app.click("radio button", name)
                time.sleep(0.4)

        def over_rows():
            box = app.popover().find("list", THEMES).node.box()
            for y in range(box.y + 6, box.y + box.height - 6, 12):
                self.input.point(box.x + box.width // 2, y)

        def scroll():
            for clicks in (20, -20):
                self.input.wheel(clicks)

        def apply(row):
            self.input.click_on(app.row(row).node.box())

        def size():
            box = app.popover().find("slider", "Cursor Size").node.box()
            middle = box.y + box.height // 2
            self.input.drag((box.x + 8 + box.width // 3, middle), (box.x + box.width - 8, middle), steps=20, pause=0.02)

        def settings():
            app.click("push button|button", "Settings")
            children.wait_until("the settings", lambda: app.window("Settings"))

        late, count, slowest, named = 0, 0, 0, []
        for what, cause, opens in (("opening", app.open_popover, True), ("opening again", app.open_popover, True),
                                   ("filters", filters, False), ("pointing at rows", over_rows, False),
                                   ("scrolling", scroll, False), ("applying", lambda: apply(THEME_ROW), False),
                                   ("size", size, False), ("settings", settings, True)):
            if what == "opening again":
                app.close_popover()
            before = len(self.drawn())
            cause()
            time.sleep(1)
            taken = self.drawn()[before + opens:]
            over = [each for each in taken if each > FRAME]
            late, count, slowest = late + len(over), count + len(taken), max([slowest, *taken])
            if over:
                named.append(f"{what} {len(over)}")
        if not count:
            raise RuntimeError("the program does not say what its frames take")
        self.report(f"frames over {FRAME} ms", late, 0, "", f" (of {count}, the slowest {slowest} ms"
                    f"{': ' if named else ''}{', '.join(named)})")
        self.stop(process)

    def threads(self, process):
        """Thread id to name and how often it was woken."""
        found = {}
        for task in os.listdir(f"/proc/{process.pid}/task"):
            with contextlib.suppress(OSError):
                with open(f"/proc/{process.pid}/task/{task}/comm") as file:
                    name = file.read().strip()
                with open(f"/proc/{process.pid}/task/{task}/status") as file:
                    found[task] = name, int(re.search(r"^voluntary_ctxt_switches:\s+(\d+)", file.read(), re.M)[1])
        return found

    def rest(self, process, what):
        seconds = 5 if self.options.quick else REST
        time.sleep(3)
        before = self.threads(process)
        time.sleep(seconds)
        after = self.threads(process)
        wakes = {task: (after[task][0], (after[task][1] - before.get(task, ("", 0))[1]) / seconds) for task in after}
        total = sum(count for _, count in wakes.values())
        named = "; ".join(f"{name} {count:.1f}" for name, count in wakes.values() if count)
        self.report("wake-ups a second " + what, total, WAKES_GOAL, "/s", f" ({named})" if named else "")
        if total > 0.05:
            self.name_wakes(process, seconds)

    def name_wakes(self, process, seconds):
        """What each thread waited for when it was woken, and on which files."""
        log = os.path.join(self.desktop.folder, "trace")
        tracer = self.desktop.start("strace", ["timeout", str(seconds), "strace", "-f", "-yy", "-e",
                                               "trace=poll,ppoll,epoll_wait,select,pselect6,clock_nanosleep,futex,"
                                               "read,recvmsg", "-o", log, "-p", str(process.pid)])
        tracer.wait(seconds + 20)
        counts = {}
        try:
            with open(log) as file:
                lines = file.read().splitlines()
        except FileNotFoundError:
            return
        for line in lines:
            match = re.match(r"(\d+) +(?:<\.\.\. )?(\w+)(.*)", line)
            if match and match[2] in ("poll", "ppoll", "epoll_wait", "select", "clock_nanosleep"):
                ready = re.search(r"\(\[\{(fd=.*)\}\]\)$|= 0 \(Timeout\)|<unfinished|= \d+", line)
                woke = re.findall(r"fd=\d+<([^>]*)>, revents", line)
                reason = ", ".join(woke) if woke else "timeout" if "Timeout" in line else ""
                if ready and reason:
                    key = f"thread {match[1]} {match[2]}: {reason}"
                    counts[key] = counts.get(key, 0) + 1
        for key, count in sorted(counts.items(), key=lambda each: -each[1])[:12]:
            print(f"    {count / seconds:5.2f}/s {key}", flush=True)

    def run(self):
        self.starts()
        plain, _ = self.start("plain")
        icon = children.wait_until("the icon", self.host.icon)
        first, later, _ = self.clicks(icon)
        print(f"plain panel: first click {first[1]:.1f} ms, later {later[1]:.1f} ms to be painted", flush=True)
        self.rest(plain, "of the plain one")
        self.stop(plain)

        for identifier, package in ((THEME, "Bibata-Modern-Ice"), (OTHER_THEME, "DMZ-White")):
            Theme(identifier, package, os.path.join(self.options.build, "tests", "desktop")).install(self.desktop.data)
        write_preferences(self.desktop.config, currentThemeId=OTHER_THEME, cursorScale=1.0)
        pintle, _ = self.start("pintle")
        icon = children.wait_until("the icon", self.host.icon)
        self.input.do("mousemove", 700, 800)
        self.rest(pintle, "at rest, a theme in force")
        pss, rss = self.settled_memory(pintle)
        print(f"with a theme in force: PSS {pss / 1024:.1f} MB, RSS {rss / 1024:.1f} MB", flush=True)
        first, later, _ = self.clicks(icon)
        self.report("first click to popover", first[1], POPOVER_GOAL, "ms", f" (there after {first[0]:.0f} ms)")
        self.report("click to popover", later[1], POPOVER_GOAL, "ms",
                    f" (there after {later[0]:.0f} ms, at rest after {later[2]:.0f} ms)")
        self.blocks(pintle)
        self.input.do("mousemove", 700, 800)
        self.rest(pintle, "after a popover")
        pss, rss = self.settled_memory(pintle)
        print(f"after a popover: PSS {pss / 1024:.1f} MB, RSS {rss / 1024:.1f} MB", flush=True)
        self.stop(pintle)
        self.frames()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build")
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--host", choices=HOSTS, default="tint2")
    options = parser.parse_args()
    options.build = os.path.abspath(options.build)
    with ShellDesktop(os.path.join(options.build, "tests", "desktop")) as desktop, \
            tempfile.TemporaryDirectory() as archive_folder:
        archives.write_all(archive_folder, (DOWNLOADED,))
        server = Server(archive_folder, desktop.log("web server"))
        desktop.environment["PINTLE_MIRROR"] = f"http://127.0.0.1:{server.port}"
        host = HOSTS[options.host](desktop)
        host.start()
        bench = Bench(desktop, host, options)
        bench.run()
    if bench.missed and not options.quick:
        print("missed: " + ", ".join(bench.missed))
        return 1
    return 0


if __name__ == "__main__":
    children.run(main)
