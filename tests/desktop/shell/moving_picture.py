#!/usr/bin/env python3
"""Makes the README's moving picture: the popover changes the pointer, its size and gives the desktop's own back, on a
private desktop, cut out of what the virtual X server draws, pointer included. An independent client judges each pointer
that is shown; ends with 1 when one of them is not what it must be. Needs the system's Python with gi.

  moving_picture.py --build FOLDER PICTURE.webp
"""
import argparse
import os
import subprocess
import tempfile
import threading
import time

from session import ShellDesktop  # first: it finds the modules beside this folder

import children
import points
from application import Application
from children import wait_until
from judge import Judge
from input_devices import InputDevices
from probe import Box
from report import Report
from screen import Screen
from theme import Theme
from tray_hosts import Tint2

CUT = Box(790, 0, 710, 580)
FRAMES_A_SECOND = 12
THEME, ROW = "bibata-modern-ice", "Bibata Modern Ice"


class Recorder:
    """Looks at the drawn screen so often a second and keeps what has changed."""

    def __init__(self, screen, box, folder):
        self.screen, self.box, self.folder = screen, box, folder
        self.frames = []
        self.ends = threading.Event()
        self.thread = threading.Thread(target=self.run)

    def run(self):
        last, start = None, time.monotonic()
        for tick in range(10 ** 6):
            if self.ends.wait(max(0.0, start + tick / FRAMES_A_SECOND - time.monotonic())):
                break
            now = b"".join(self.screen.rows(self.box))
            if now != last:
                last = now
                path = os.path.join(self.folder, f"{len(self.frames):04}.bgra")
                with open(path, "wb") as file:
                    file.write(now)
                self.frames.append((tick, path))
        self.last = tick

    def __enter__(self):
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.ends.set()
        self.thread.join()

    def write(self, picture):
        """Repeats for ever."""
        words = ["convert", "-size", f"{self.box.width}x{self.box.height}", "-depth", "8",
                 *(path for _, path in self.frames)]
        # Without losses it is a third of a GIF's size: most of each frame is what was there before.
        subprocess.run([*words, "-alpha", "off", "-define", "webp:lossless=true", "-define", "webp:method=6", "-loop", "0",
                        picture], check=True)
        ticks = [tick for tick, _ in self.frames] + [self.last]
        starts = [round(1000 * tick / FRAMES_A_SECOND) for tick in ticks]
        set_durations(picture, [end - start for start, end in zip(starts, starts[1:])])
        return self.last / FRAMES_A_SECOND


def set_durations(picture, milliseconds):
    """Writes into a moving WebP how long each frame is shown: the converter gives a frame the time of the one beside it."""
    with open(picture, "r+b") as file:
        data = bytearray(file.read())
        at, durations = 12, iter(milliseconds)
        while at < len(data):
            kind, size = data[at:at + 4], int.from_bytes(data[at + 4:at + 8], "little")
            if kind == b"ANMF":
                data[at + 20:at + 23] = next(durations).to_bytes(3, "little")
            at += 8 + size + size % 2
        if next(durations, None) is not None:
            raise RuntimeError("the converter has left frames out")
        file.seek(0)
        file.write(data)


class Story:
    def __init__(self, desktop, build):
        self.desktop = desktop
        self.input = InputDevices(desktop)
        self.report = Report(quiet=True)
        self.judge = Judge(desktop.probe, self.report)
        self.host = Tint2(desktop, "top")
        self.app = Application(desktop, self.input, self.host, os.path.join(build, "pintle"))
        self.theme = Theme(THEME, "Bibata-Modern-Ice", os.path.join(build, "tests", "desktop"))
        self.at = (0, 0)

    def set_the_stage(self):
        self.input.wallpaper()
        self.desktop.start_xterm("xterm", CUT.x + 16, 60)
        areas = points.qt("Qt", self.desktop.start_qt("Qt", CUT.x + 16, 290))
        self.text = points.xterm("xterm", self.desktop.probe)[0]
        self.hand = next(each for each in areas if each.place == "PointingHand")
        self.judge.desktops_own([self.text, self.hand], self.theme)
        self.theme.install(self.desktop.data)
        self.host.start()
        self.app.start()
        # What is shown for the first time takes longer than a picture has time for.
        self.app.open_popover()
        self.app.row(ROW)
        self.app.close_popover()
        self.at = (CUT.x + 60, 540)
        self.input.do("mousemove", *self.at)

    def glide(self, x, y, steps=9, pause=0.025):
        words = []
        for step in range(1, steps + 1):
            part = step / steps
            eased = part * part * (3 - 2 * part)
            words += ["mousemove", round(self.at[0] + (x - self.at[0]) * eased),
                      round(self.at[1] + (y - self.at[1]) * eased), "sleep", pause]
        self.input.do(*words)
        self.at = (x, y)

    def glide_to(self, box):
        self.glide(box.x + box.width // 2, box.y + box.height // 2)

    def press(self):
        self.input.do("click", 1)

    def pause(self, seconds):
        """For whoever looks at the picture."""
        time.sleep(seconds)

    def show(self, point, theme=None, scale=1.0):
        self.glide(point.x, point.y)
        looks, words = self.judge.expected(point, theme, scale)
        shown, complaint = self.judge.look(looks, words, animated=False)
        self.report.check(f"{point.label} is {words}", not complaint, f"{complaint} {shown}")
        self.pause(0.5)

    def open(self):
        self.glide_to(self.icon)
        self.press()
        wait_until("the popover is open", self.app.popover, 10, 0.02)

    def close(self):
        self.input.key("Escape")

    def story(self):
        self.icon = self.app.icon()
        self.show(self.text)
        self.open()
        self.glide_to(self.app.popover().find("list item", ROW).node.box())
        self.press()
        self.pause(0.3)
        self.close()
        self.show(self.text, self.theme)
        self.show(self.hand, self.theme)
        self.open()
        slider = self.app.popover().find("slider", "Cursor Size").node.box()
        middle, knob = slider.y + slider.height // 2, 8
        start = slider.x + knob + round((slider.width - 2 * knob) / 3)
        self.glide(start, middle)
        self.input.drag((start, middle), (slider.x + slider.width - knob, middle), steps=8, pause=0.03)
        self.at = (slider.x + slider.width - knob, middle)
        self.close()
        self.show(self.text, self.theme, 1.5)
        self.show(self.hand, self.theme, 1.5)
        self.open()
        self.glide_to(self.app.popover().find("push button|button", "System Default").node.box())
        self.press()
        self.pause(0.3)
        self.close()
        self.show(self.hand)
        self.glide(CUT.x + 60, 540)
        self.pause(0.8)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="build folder")
    parser.add_argument("picture")
    options = parser.parse_args()
    build = os.path.abspath(options.build)
    with ShellDesktop(os.path.join(build, "tests", "desktop")) as desktop, tempfile.TemporaryDirectory() as folder:
        story = Story(desktop, build)
        story.set_the_stage()
        with Recorder(Screen(desktop, folder), CUT, folder) as recorder:
            story.story()
        seconds = recorder.write(options.picture)
    print(f"{options.picture}: {len(recorder.frames)} frames, {seconds:.1f} s, {os.path.getsize(options.picture)} bytes")
    return 0 if story.report.close() else 1


if __name__ == "__main__":
    children.run(main)
