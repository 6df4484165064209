"""A headless sway with an X server and a settings file of its own, as an ordinary user, because it refuses root."""
import glob
import json
import os
import pwd
import shutil
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [HERE, os.path.dirname(HERE)]

import children
from children import wait_until
from virtual_pointer import VirtualPointer

CONFIG = """
xwayland enable
output HEADLESS-1 resolution {width}x{height} position 0 0 background #202020 solid_color
seat seat0 attach "*"
seat seat0 fallback true
seat seat0 xcursor_theme Mine 24
default_border none
focus_follows_mouse no
for_window [title="^client-"] floating enable, border none
"""


class SwaySession:
    width = 1600
    height = 1200

    def __init__(self):
        # Where every user may enter, and short enough for the name of a socket.
        self.folder = tempfile.mkdtemp(prefix="pintle-sway-", dir="/tmp")
        self.runtime = os.path.join(self.folder, "run")
        self.data = os.path.join(self.folder, "share")
        self.config = os.path.join(self.folder, "config")
        self.compositor = None
        for folder in (self.data, self.config):
            os.makedirs(folder)
        os.mkdir(self.runtime, 0o700)
        with open(os.path.join(self.folder, "sway.conf"), "w", encoding="utf-8") as file:
            file.write(CONFIG.format(width=self.width, height=self.height))
        # Everything is inherited from nobody: no variable of this desktop gets in.
        self.environment = {
            "HOME": self.folder, "PATH": os.environ.get("PATH", "/usr/bin:/bin"), "LANG": "C.UTF-8",
            "XDG_RUNTIME_DIR": self.runtime, "XDG_DATA_HOME": self.data, "XDG_CONFIG_HOME": self.config,
            "XDG_CURRENT_DESKTOP": "sway", "XDG_SESSION_TYPE": "wayland", "TMPDIR": self.folder,
            "GSETTINGS_BACKEND": "keyfile", "NO_AT_BRIDGE": "1",
            # Nobody listens there: without an address the first program would start a bus of its own.
            "DBUS_SESSION_BUS_ADDRESS": "unix:path=" + os.path.join(self.runtime, "bus"),
            "WLR_BACKENDS": "headless", "WLR_RENDERER": "pixman", "WLR_LIBINPUT_NO_DEVICES": "1",
            # Else a picture of the screen has no pointer.
            "WLR_NO_HARDWARE_CURSORS": "1",
        }
        self.user = pwd.getpwnam("nobody") if os.getuid() == 0 else None
        if self.user:
            self.make_socket_folder()
            self.give()

    @staticmethod
    def make_socket_folder():
        """As the system makes it: the first X server of an ordinary user would own it."""
        try:
            os.mkdir("/tmp/.X11-unix")
            os.chmod("/tmp/.X11-unix", 0o1777)
        except FileExistsError:
            pass

    def programs(self, folder, *names):
        """A folder of the session with copies of those programs, because its user may not be able to enter `folder`."""
        copies = os.path.join(self.folder, "programs")
        os.makedirs(copies, exist_ok=True)
        for name in names:
            shutil.copy(os.path.join(folder, name), copies)
        return copies

    def give(self):
        """To the user of the session."""
        if not self.user:
            return
        for folder, folders, files in os.walk(self.folder):
            for name in [folder] + [os.path.join(folder, each) for each in folders + files]:
                os.lchown(name, self.user.pw_uid, self.user.pw_gid)

    def words(self, arguments):
        if not self.user:
            return arguments
        # Another user's process forgets that it shall die with its parent.
        return ["setpriv", f"--reuid={self.user.pw_uid}", f"--regid={self.user.pw_gid}", "--clear-groups",
                "--no-new-privs", "--pdeathsig=KILL", *arguments]

    def start(self, name, arguments, **options):
        log = open(os.path.join(self.folder, name + ".log"), "ab")
        return children.start(self.words(arguments), log, env=self.environment, cwd=self.folder, **options)

    def log_text(self, name):
        with open(os.path.join(self.folder, name + ".log"), "rb") as file:
            return file.read().decode(errors="replace")

    def begin(self):
        self.compositor = self.start("sway", ["sway", "-c", os.path.join(self.folder, "sway.conf")])
        wait_until("sway listens", lambda: glob.glob(os.path.join(self.runtime, "sway-ipc*")), 20)
        self.environment["SWAYSOCK"] = glob.glob(os.path.join(self.runtime, "sway-ipc*"))[0]
        wait_until("there is a Wayland socket", lambda: self.sockets(), 20)
        self.environment["WAYLAND_DISPLAY"] = self.sockets()[0]
        self.environment["DISPLAY"] = self.display()
        self.pointer = VirtualPointer(os.path.join(self.runtime, self.environment["WAYLAND_DISPLAY"]))

    def sockets(self):
        return [os.path.basename(each) for each in glob.glob(os.path.join(self.runtime, "wayland-?"))]

    def display(self):
        """The X display that sway has taken, as its children see it."""
        path = os.path.join(self.folder, "display")
        self.sway("exec", f"echo $DISPLAY > {path}.new && mv {path}.new {path}")
        wait_until("sway has an X display", lambda: os.path.exists(path), 20)
        with open(path, encoding="utf-8") as file:
            return file.read().strip()

    def run(self, arguments, **options):
        return subprocess.run(self.words(arguments), env=self.environment, cwd=self.folder, check=True, timeout=30,
                              capture_output=True, **options).stdout

    def sway(self, *words):
        return json.loads(self.run(["swaymsg", "--raw", *words]))

    def settings(self):
        """The text of the file that GSettings keeps here; empty when there is none."""
        try:
            with open(os.path.join(self.config, "glib-2.0", "settings", "keyfile"), encoding="utf-8") as file:
                return file.read()
        except OSError:
            return ""

    def picture(self, left, top, width, height):
        """(width, height, bytes R G B) of a part of the screen in device pixels, with the pointer. The part in points."""
        data = self.run(["grim", "-c", "-t", "ppm", "-g", f"{left},{top} {width}x{height}", "-"])
        magic, width, height, most, pixels = self.ppm(data)
        if magic != b"P6" or most != 255:
            raise RuntimeError("no picture")
        return width, height, pixels

    @staticmethod
    def ppm(data):
        words, at = [], 0
        while len(words) < 4:
            end = at
            while not data[end:end + 1].isspace():
                end += 1
            words.append(data[at:end])
            at = end + 1
        return words[0], int(words[1]), int(words[2]), int(words[3]), data[at:]

    def end(self):
        if self.compositor:
            # Killed it would leave the lock of its X display behind.
            self.compositor.terminate()
            try:
                self.compositor.wait(10)
            except subprocess.TimeoutExpired:
                pass
        children.end_all()
        shutil.rmtree(self.folder, ignore_errors=True)
