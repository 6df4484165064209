"""A private desktop for the application's windows: with accessibility and, once asked for, a tray host."""
import os
import sys

ABOVE = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path[1:1] = [ABOVE, os.path.join(ABOVE, "library")]

import accessible  # noqa: E402
from desktop import Desktop  # noqa: E402


class ShellDesktop(Desktop):
    def make_environment(self):
        return super().make_environment() | {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}

    def start_bus(self):
        super().start_bus()
        self.session = accessible.connect(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        self.accessibility = accessible.Accessibility(self.session)
