"""The drawn screen, read from the file into which the virtual X server draws: with the pointer, as a person sees
it."""
import hashlib
import mmap
import os
import struct
import subprocess
import time

from children import wait_until


class Screen:
    def __init__(self, desktop, folder):
        self.file = os.path.join(desktop.drawn, "Xvfb_screen0")
        self.folder = folder
        self.number = 0
        os.makedirs(folder, exist_ok=True)
        for name in os.listdir(folder):
            if name.endswith(".png"):
                os.remove(os.path.join(folder, name))
        with open(self.file, "rb") as file:
            self.bytes = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)
        head = struct.unpack(">25I", self.bytes[:100])
        self.width, self.height, self.stride = head[4], head[5], head[12]
        self.pixels = head[0] + head[19] * 12

    def rows(self, box):
        left, right = max(box.x, 0), min(box.x + box.width, self.width)
        for y in range(max(box.y, 0), min(box.y + box.height, self.height)):
            start = self.pixels + y * self.stride
            yield self.bytes[start + left * 4:start + right * 4]

    def hash(self, box):
        digest = hashlib.blake2b()
        for row in self.rows(box):
            digest.update(row)
        return digest.hexdigest()

    def colours(self, box):
        found = set()
        for row in self.rows(box):
            found.update(struct.unpack(f"<{len(row) // 4}I", row))
        return len({colour & 0xffffff for colour in found})

    def still(self, box, quiet=0.25, seconds=5):
        """Waits until nothing has changed in the box for `quiet` seconds; false when that never comes."""
        last, since, end = None, time.monotonic(), time.monotonic() + seconds
        while time.monotonic() < end:
            now = self.hash(box)
            if now != last:
                last, since = now, time.monotonic()
            elif time.monotonic() - since >= quiet:
                return True
            time.sleep(0.02)
        return False

    def picture(self, name, box=None):
        """Keeps a picture of the screen, or of a box of it, numbered in the order of the story."""
        self.number += 1
        path = os.path.join(self.folder, f"{self.number:02}-{name}.png")
        crop = ["-crop", f"{box.width}x{box.height}+{box.x}+{box.y}", "+repage"] if box else []
        subprocess.run(["convert", "xwd:" + self.file, *crop, "-define", "png:compression-level=1", path], check=True)
        return path

    def wait_changed(self, what, box, before, seconds=10):
        wait_until(what, lambda: self.hash(box) != before, seconds)
