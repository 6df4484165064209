"""Moves the pointer, presses its buttons and types, as a person at the desktop does."""
import subprocess


class InputDevices:
    def __init__(self, desktop):
        self.desktop = desktop

    def do(self, *words):
        subprocess.run(["xdotool", *map(str, words)], env=self.desktop.environment, check=True,
                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, timeout=30)

    def wallpaper(self, colour="#51687a"):
        subprocess.run(["xsetroot", "-solid", colour], env=self.desktop.environment, check=True)

    def point(self, x, y):
        """Comes from beside, so that what is under the pointer sees it move."""
        self.do("mousemove", x - 3, y - 2, "mousemove", x, y)

    def click(self, x, y, button=1):
        self.do("mousemove", x - 3, y - 2, "mousemove", x, y, "sleep", 0.03, "click", button)

    def click_on(self, box, button=1):
        self.click(box.x + box.width // 2, box.y + box.height // 2, button)

    def drag(self, start, end, steps=12, pause=0.03):
        """Presses at the point `start` and lets go at `end`, with so many stops on the way."""
        words = ["mousemove", *start, "sleep", 0.05, "mousedown", 1]
        for step in range(1, steps + 1):
            words += ["sleep", pause, "mousemove", *(round(a + (b - a) * step / steps) for a, b in zip(start, end))]
        self.do(*words, "sleep", pause, "mouseup", 1)

    def wheel(self, clicks, pause=0.01):
        """Down for positive numbers."""
        self.do("click", "--repeat", abs(clicks), "--delay", round(pause * 1000), 5 if clicks > 0 else 4)

    def key(self, *keys):
        self.do("key", "--clearmodifiers", *keys)

    def write(self, text):
        self.do("type", "--delay", 5, text)
