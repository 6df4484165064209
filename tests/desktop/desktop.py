"""A private desktop: a virtual X server that draws into a file, a message bus, a home folder, a window manager
and applications. Nothing of the user's own session is read or changed, and nothing is left running."""
import os
import shutil
import subprocess
import tempfile

import children
from probe import Probe

HERE = os.path.dirname(os.path.abspath(__file__))
SCREEN = "1500x900"
#: The desktop's own cursor theme, so that a pointer which is not the tried theme's shows by its pixels.
DESKTOP_THEME = "Adwaita"
DESKTOP_SIZE = 24
SYSTEM_PYTHON = "/usr/bin/python3"
WINDOW_MANAGERS = {
    "openbox": ["openbox", "--sm-disable"],
    "xfwm4": ["xfwm4", "--sm-client-disable", "--compositor=off"],
    "icewm": ["icewm", "--nobg", "--config=" + os.path.join(HERE, "icewm_preferences")],
}


class Desktop:
    def __init__(self, tools, window_manager="openbox"):
        """`tools` is the folder of pointer_probe and qt_cursors."""
        self.tools = tools
        self.window_manager = window_manager
        self.folder = tempfile.mkdtemp(prefix="pintle-tour-")
        self.home = os.path.join(self.folder, "home")
        self.data = os.path.join(self.home, ".local", "share")
        self.config = os.path.join(self.home, ".config")
        self.drawn = os.path.join(self.folder, "screen")
        self.applications = {}
        self.logs = []

    def __enter__(self):
        children.adopt_orphans()
        try:
            self.make_home()
            self.environment = self.make_environment()
            self.start_server()
            self.start_bus()
            self.probe = Probe(os.path.join(self.tools, "pointer_probe"), self.environment, self.log("probe"))
            # An xterm that was started while no cursor theme was set has unnamed font cursors for good.
            self.start_xterm("unthemed xterm", 20, 640)
            for key, value in (("theme", DESKTOP_THEME), ("size", DESKTOP_SIZE)):
                self.probe.add_resource(f"Xcursor.{key}:\t{value}")
            self.start_window_manager()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        children.end_all()
        for log in self.logs:
            log.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    def log(self, name):
        file = open(os.path.join(self.folder, name + ".log"), "ab", buffering=0)
        self.logs.append(file)
        return file

    def log_text(self, name):
        try:
            with open(os.path.join(self.folder, name + ".log"), errors="replace") as file:
                return file.read()
        except FileNotFoundError:
            return ""

    def keep_logs(self, folder, *names):
        """Copies those that were written into a folder; none: nobody wants them."""
        if not folder:
            return
        os.makedirs(folder, exist_ok=True)
        for name in names:
            source = os.path.join(self.folder, name + ".log")
            if os.path.exists(source):
                shutil.copy(source, os.path.join(folder, name + ".log"))

    def make_home(self):
        for folder in (self.data, self.config, self.drawn, os.path.join(self.home, ".icons", "default"),
                       os.path.join(self.home, ".cache")):
            os.makedirs(folder)
        os.makedirs(os.path.join(self.folder, "run"), mode=0o700)
        with open(os.path.join(self.home, ".icons", "default", "index.theme"), "w") as file:
            file.write(f"[Icon Theme]\nInherits={DESKTOP_THEME}\n")

    def make_environment(self):
        kept = {key: value for key, value in os.environ.items()
                if key in ("PATH", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS")}
        return kept | {
            "HOME": self.home,
            "XDG_DATA_HOME": self.data,
            "XDG_CONFIG_HOME": self.config,
            "XDG_CACHE_HOME": os.path.join(self.home, ".cache"),
            "XDG_RUNTIME_DIR": os.path.join(self.folder, "run"),
            "XDG_SESSION_TYPE": "x11",
            "LANG": "C.UTF-8",
            "QT_QPA_PLATFORM": "xcb",
            # Accessibility would start services of its own for each application.
            "NO_AT_BRIDGE": "1",
            "GSETTINGS_BACKEND": "memory",
        }

    def start_server(self):
        reading, writing = os.pipe()
        self.server = children.start(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", SCREEN + "x24", "-fbdir", self.drawn, "-noreset",
             "-nolisten", "tcp"], self.log("server"), env=self.environment, pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as answer:
            number = answer.readline().strip()
        if not number:
            raise RuntimeError("the virtual X server did not start:\n" + self.log_text("server"))
        self.environment["DISPLAY"] = ":" + number

    def start_bus(self):
        bus = children.start(["dbus-daemon", "--session", "--nofork", "--print-address=1"], self.log("bus"),
                             env=self.environment, stdout=subprocess.PIPE, text=True)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def start_window_manager(self):
        self.start("window manager", WINDOW_MANAGERS[self.window_manager])
        self.wait_for("window manager", "manages the display", self.probe.has_window_manager)

    def start(self, name, arguments, **options):
        process = children.start(arguments, self.log(name), env=self.environment, **options)
        self.applications[name] = process
        return process

    def start_xterm(self, title, x, y):
        self.start(title, ["xterm", "-title", title, "-geometry", f"44x8+{x}+{y}", "-sb", "-rightbar", "-e",
                           "sleep", "100000"])
        self.wait_for(title, "is on the screen", lambda: self.probe.window(title))

    def wait_for(self, name, state, question):
        """Waits until `question()` has an answer; what the application said goes into the error."""
        try:
            children.wait_until(f"{name} {state}", question)
        except TimeoutError as error:
            raise RuntimeError(f"{error}\n{self.log_text(name)[-1500:]}") from None

    def start_with_areas(self, title, arguments):
        """Starts an application that reports its areas; answers a dictionary name -> (x, y)."""
        process = self.start(title, arguments, stdout=subprocess.PIPE, text=True)
        areas = {}
        while True:
            line = process.stdout.readline()
            if not line:
                raise RuntimeError(title + " did not start:\n" + self.log_text(title))
            words = line.split()
            if words[0] == "ready":
                return areas
            areas[words[1]] = (int(words[2]), int(words[3]))

    def start_gtk(self, title, x, y):
        script = os.path.join(HERE, "gtk_cursors.py")
        return self.start_with_areas(title, [SYSTEM_PYTHON, script, title, str(x), str(y)])

    def start_qt(self, title, x, y):
        return self.start_with_areas(title, [os.path.join(self.tools, "qt_cursors"), title, str(x), str(y)])

    def stop(self, name):
        process = self.applications.pop(name)
        process.kill()
        process.wait()
