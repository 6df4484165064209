"""The application under test for tours that are about pointers: their few commands, each done with the controls that a
person has for it."""
import os
import re
import sys

sys.path.insert(1, os.path.dirname(os.path.abspath(__file__)))

import archives  # noqa: E402
from application import Application  # noqa: E402
from children import wait_until  # noqa: E402
from input_devices import InputDevices  # noqa: E402

FREE = (700, 860)
SMALLEST, LARGEST, KNOB = 0.75, 1.5, 8


def row_names():
    """Id to the name that its row shows."""
    with open(archives.CATALOG, encoding="utf-8") as file:
        return dict(re.findall(r'^\{"([^"]+)", "([^"]+)"', file.read(), re.M))


class ByHand:
    def __init__(self, desktop, host, program):
        self.input = InputDevices(desktop)
        self.app = Application(desktop, self.input, host, program)
        self.app.start()
        self.names = row_names()

    @property
    def process(self):
        return self.app.process

    def command(self, text):
        """"apply ID", "scale S", "reset"."""
        words = text.split()
        getattr(self, words[0])(*words[1:])
        self.app.close_popover()
        self.input.do("mousemove", *FREE)

    def apply(self, identifier):
        name = self.names[identifier]
        self.app.opened()
        self.input.click_on(self.app.row(name).node.box())
        wait_until(f"{name} is in force", lambda: "checked" in self.app.row(name).states, 10, 0.05)

    def reset(self):
        self.app.opened()
        self.app.click("push button|button", "System Default")
        wait_until("no theme is in force", lambda: not self.app.preferences().get("currentThemeId"), 10, 0.05)

    def scale(self, wanted):
        """Drags the knob from where it is."""
        self.app.opened()
        slider = self.app.wait_for("slider", "Cursor Size").node
        box, wanted = slider.box(), float(wanted)

        def place(value):
            return round(box.x + KNOB + (box.width - 2 * KNOB) * (value - SMALLEST) / (LARGEST - SMALLEST))
        height = box.y + box.height // 2
        self.input.drag((place(slider.value()), height), (place(wanted), height))
        wait_until(f"the slider is at {wanted}", lambda: abs(slider.value() - wanted) < 0.001, 5, 0.05)

    def quit(self, seconds=20):
        self.app.opened()
        self.app.click("push button|button", "Quit Pintle")
        return self.app.ended(seconds)

    def kill(self):
        self.app.kill()
