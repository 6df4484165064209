"""Talks to pointer_probe, the independent X client that says which pointer is shown."""
import subprocess
from dataclasses import dataclass

import children


@dataclass(frozen=True)
class Shown:
    """What the server shows for the pointer; `look` is size+hotspot:hash, empty when it gives no answer."""
    look: str = ""
    name: str = ""

    @property
    def size(self):
        return self.look.split("+")[0] if self.look else "-"


@dataclass(frozen=True)
class Box:
    x: int
    y: int
    width: int
    height: int


class Probe:
    def __init__(self, program, environment, log):
        self.process = children.start([program], log, env=environment, stdin=subprocess.PIPE,
                                      stdout=subprocess.PIPE, text=True)

    def ask(self, *words):
        self.process.stdin.write(" ".join(str(word) for word in words) + "\n")
        self.process.stdin.flush()
        answer = self.process.stdout.readline().rstrip("\n")
        if not answer:
            raise RuntimeError("pointer_probe has ended; did the X server?")
        return answer

    def _shown(self, *words):
        answer = self.ask(*words).split(" ", 2)
        return Shown(answer[1], answer[2] if len(answer) > 2 else "") if answer[0] == "cursor" else Shown()

    def move(self, x, y):
        self.ask("move", x, y)

    def read(self):
        return self._shown("read")

    def wait_for(self, looks, milliseconds):
        return self._shown("await", milliseconds, *looks)

    def settle(self, quiet, milliseconds):
        return self._shown("settle", quiet, milliseconds)

    def frames(self, count, milliseconds):
        return self.ask("frames", count, milliseconds).split()[1:]

    def library(self, theme, size, name):
        """The looks of a name in an installed theme as libXcursor loads it; empty when no theme has it."""
        return self.ask("library", theme, size, name).split()[1:]

    def save_pixels(self, path):
        return self.ask("pixels", path) == "ok"

    def window(self, title):
        """Client and frame box of the mapped window of that title, or none."""
        words = self.ask("window", title).split()
        if words[0] != "window":
            return None
        numbers = [int(word) for word in words[1:]]
        return Box(*numbers[:4]), Box(*numbers[4:])

    def _windows(self, *words):
        numbers = [int(word) for word in self.ask(*words).split()[1:]]
        return [(numbers[at], Box(*numbers[at + 1:at + 5])) for at in range(0, len(numbers), 5)]

    def windows(self, window_class):
        """(id, box) of each mapped window of a class."""
        return self._windows("windows", window_class)

    def embedded(self):
        """(id, box) of each mapped window that sits in a tray."""
        return self._windows("embedded")

    def owns(self, selection):
        return self.ask("owner", selection) == "yes"

    def pings(self, window, milliseconds):
        """How often a window's program answered, and its longest silence in milliseconds."""
        count, longest = self.ask("pings", window, milliseconds).split()[1:]
        return int(count), int(longest) / 1000

    def active_title(self):
        return self.ask("active").partition(" ")[2]

    def has_window_manager(self):
        return self.ask("wm") == "yes"

    def add_resource(self, line):
        self.ask("resource", line)
