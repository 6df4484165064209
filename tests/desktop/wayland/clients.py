"""The programs that the tour of sway points at, each in a window of its own at a place of its own."""
import os
import re
import shutil

from children import wait_until

SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "gtk_window.py")


class Client:
    def __init__(self, session, name, role, place, command, follows):
        """`role`: of the pointer over it. `follows`: "at once", "at the next entry" of the pointer, or "when it is
        started anew"."""
        self.session, self.name, self.role, self.place = session, name, role, place
        self.command, self.follows = command, follows
        self.title = "client-" + name
        #: Pixels of a point when it was started.
        self.density = 1

    def start(self, scale):
        """As a child of the compositor, whose environment has the theme. `scale`: the output's."""
        log = os.path.join(self.session.folder, f"{self.name}.log")
        open(log, "wb").close()
        if self.session.user:
            os.chown(log, self.session.user.pw_uid, self.session.user.pw_gid)
        self.density = scale
        command = self.command.format(title=self.title)
        self.session.sway("exec", f"exec env {command} >{log} 2>&1")
        wait_until(self.name + " has a window", self.window, 30)
        self.session.sway(f'[title="^{self.title}$"] move absolute position {self.place[0]} {self.place[1]}')
        wait_until(self.name + " is at its place", lambda: (self.window()["x"], self.window()["y"]) == self.place, 10)

    def window(self):
        """Its place in points; none while it has none."""
        def find(node):
            if node.get("name") == self.title and not node.get("nodes") and node.get("pid"):
                return node
            for each in node.get("nodes", []) + node.get("floating_nodes", []):
                found = find(each)
                if found:
                    return found
            return None
        node = find(self.session.sway("-t", "get_tree"))
        if not node:
            return None
        # Without its title bar.
        frame, inside = node["rect"], node["window_rect"]
        return {"x": frame["x"], "y": frame["y"], "left": frame["x"] + inside["x"], "top": frame["y"] + inside["y"],
                "width": inside["width"], "height": inside["height"]}

    def spot(self):
        """The point to point at."""
        window = self.window()
        if self.name == "qt":
            area = re.compile(r"area IBeam (\d+) (\d+)\n.*ready", re.S)
            found = wait_until("qt is drawn", lambda: area.search(self.session.log_text(self.name)), 20)
            return tuple(round(window[edge] + int(found.group(i)) / self.density)
                         for i, edge in ((1, "left"), (2, "top")))
        return window["left"] + window["width"] // 2, window["top"] + window["height"] * 2 // 3

    def end(self):
        self.session.sway(f'[title="^{self.title}$"] kill')
        wait_until(self.name + " has ended", lambda: not self.window(), 10)

    def anew(self, scale):
        self.end()
        self.start(scale)


def clients_of(session, programs):
    """All of them. They find what they run in the folder `programs`."""
    shutil.copy(SCRIPT, programs)
    gtk = f"GDK_BACKEND=wayland GSK_RENDERER=cairo /usr/bin/python3 {programs}/gtk_window.py"
    entry, anew = "at the next entry", "when it is started anew"
    return [
        Client(session, "foot", "text", (20, 20), "foot -T {title} -w 200x100 sleep 900", anew),
        Client(session, "gtk3", "hand", (260, 20), gtk + " 3.0 {title} pointer", entry),
        Client(session, "gtk4", "hand", (520, 20), gtk + " 4.0 {title} pointer", entry),
        Client(session, "qt", "text", (20, 320),
               f"QT_QPA_PLATFORM=wayland QT_WAYLAND_DISABLE_WINDOWDECORATION=1 {programs}/qt_cursors {{title}}", anew),
        Client(session, "xterm", "text", (540, 320), "xterm -T {title} -geometry 24x6 -e sleep 900", "at once"),
    ]
