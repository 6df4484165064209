"""A desktop that shows passing messages: remembers what it was asked to show."""
import re

import accessible
from desktop import SYSTEM_PYTHON

NAME = "org.freedesktop.Notifications"


class Notifications:
    def __init__(self, desktop):
        self.desktop = desktop
        desktop.start("notifications", ["timeout", "900", SYSTEM_PYTHON, "-m", "dbusmock", "--session", "--template",
                                        "notification_daemon"])
        desktop.wait_for("notifications", "is on the bus", self.is_there)

    def is_there(self):
        return accessible.call(self.desktop.session, "org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                               "NameHasOwner", "(s)", NAME)[0]

    def shown(self):
        """The lines of the log that each stand for one message."""
        return re.findall(r"^.* Notify .*$", self.desktop.log_text("notifications"), re.M)
