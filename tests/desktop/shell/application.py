"""The built application as a person meets it: its item in the tray, its windows by what they say of themselves, its
log and its preference file."""
import contextlib
import os
import plistlib
import re
import time

import accessible
from children import wait_until

READY = "[PINTLEAPP] applyLastCursor() DONE"
THEMES = "Themes"


class Application:
    def __init__(self, desktop, input_devices, host, program):
        self.desktop, self.input, self.host, self.program = desktop, input_devices, host, program
        self.process = None
        self.node = None
        self.begun = 0

    # The process.

    def start(self, **options):
        """Starts a copy that stays, and waits for the end of its start-up."""
        if self.process and self.is_running():
            self.kill()
        self.begun = len(self.all_lines())
        self.process = self.desktop.start("pintle", [self.program], **options)
        self.node = None
        self.desktop.wait_for("pintle", "has started", lambda: self.count(READY) == 2)

    def start_another(self):
        """Starts a second copy and answers how it ended."""
        return self.desktop.start("second copy", [self.program]).wait(20)

    def is_running(self):
        return self.process.poll() is None

    def ended(self, seconds=20):
        """The status with which the process ends."""
        return self.process.wait(seconds)

    def kill(self):
        self.process.kill()
        self.process.wait()

    # The log, from the last start on.

    def all_lines(self):
        return [line[line.index("["):] for line in self.desktop.log_text("pintle").splitlines() if "[" in line]

    def lines(self):
        return self.all_lines()[self.begun:]

    def count(self, line):
        """Of lines that are this one or begin with it."""
        return sum(1 for each in self.lines() if each.startswith(line))

    # What it keeps.

    def preferences(self):
        try:
            with open(os.path.join(self.desktop.config, "com.pintle.app.plist"), "rb") as file:
                return plistlib.load(file)
        except FileNotFoundError:
            return {}

    # What is on the screen.

    def look(self):
        """Everything that it shows."""
        if not self.node:
            self.node = wait_until("the program tells what it shows",
                                   lambda: self.desktop.accessibility.application(self.process.pid))
        for _ in range(20):
            with contextlib.suppress(accessible.Refused):
                return self.node.look()
        return self.node.look()

    def window_of(self, seen):
        """The top of the window in which something stands."""
        while seen.parent and seen.parent.parent:
            seen = seen.parent
        return seen

    def popover(self):
        """The popover while it is shown; none otherwise."""
        themes = self.look().find("list", THEMES)
        return self.window_of(themes) if themes else None

    def window(self, name):
        """Settings or about while it is shown; none otherwise."""
        return next((child for child in self.look().children if child.name == name and
                     ("showing" in child.states)), None)

    def shows(self, role, name):
        return self.look().find(role, name)

    def wait_for(self, role, name, seconds=10, **options):
        return wait_until(f"{role or 'something'} {name!r} is shown",
                          lambda: self.look().find(role, name, **options), seconds, 0.05)

    def wait_gone(self, what, question, seconds=10):
        wait_until(what + " is gone", lambda: not question(), seconds, 0.05)

    @staticmethod
    def place(seen):
        """Where something is once it stands still."""
        last = seen.node.box()

        def still():
            nonlocal last
            time.sleep(0.06)
            before, last = last, seen.node.box()
            return last == before
        wait_until(f"{seen.role} {seen.name} stands still", still, 5)
        return last

    def scrolled_to(self, seen):
        """Where something is once the wheel has brought it fully into its window."""
        top = self.window_of(seen)
        for _ in range(40):
            frame, box = top.node.box(), self.place(seen)
            low, high = frame.y + 30, frame.y + frame.height - 6
            if box.y >= low and box.y + box.height <= high:
                break
            self.input.do("mousemove", frame.x + frame.width - 12, frame.y + frame.height // 2)
            self.input.wheel(1 if box.y + box.height > high else -1)
        return box

    def click(self, role, name, button=1, scroll=False):
        """Clicks on the middle of a control once it is shown; answers what it was."""
        seen = self.wait_for(role, name)
        self.input.click_on(self.scrolled_to(seen) if scroll else seen.node.box(), button)
        return seen

    # What a person does with it.

    def icon(self):
        return wait_until("the item is in the tray", self.host.icon)

    def open_popover(self):
        self.input.click_on(self.icon())
        return wait_until("the popover is open", self.popover, 10, 0.05)

    def close_popover(self):
        if self.popover():
            self.input.click_on(self.icon())
            self.wait_gone("the popover", self.popover)

    def opened(self):
        return self.popover() or self.open_popover()

    def rows_at_rest(self):
        """Name of each row that is shown to the row and its place, once the list no longer moves."""
        rows, last = {}, None

        def still():
            nonlocal rows, last
            before, last = last, None
            # A row that was scrolled out of sight is gone.
            with contextlib.suppress(accessible.Refused):
                rows = {row.name: (row, row.node.box()) for row in self.popover().find_all("list item")}
                last = {name: box for name, (_, box) in rows.items()}
            return bool(last) and last == before
        wait_until("the list stands still", still, 20, 0.06)
        return rows

    def row(self, name):
        """A row of the list, which is scrolled until all of it is seen."""
        themes = self.popover().find("list", THEMES).node.box()
        self.input.do("mousemove", themes.x + themes.width // 2, themes.y + themes.height // 2)
        up, before, unchanged = True, None, 0
        for _ in range(200):
            rows = self.rows_at_rest()
            if name in rows:
                seen, box = rows[name]
                if box.y >= themes.y and box.y + box.height <= themes.y + themes.height:
                    return seen
                up, step = False, -1 if box.y < themes.y else 1
            else:
                places = {row: box for row, (_, box) in rows.items()}
                if places == before and up:
                    up = False
                elif places == before:
                    unchanged += 1
                else:
                    unchanged = 0
                if unchanged == 5:
                    break
                before, step = places, -120 if up else 1
            self.scroll([row for row, _ in rows.values()], step)
        raise RuntimeError(f"there is no row {name}")

    def scroll(self, rows, step):
        """Turns the wheel over rows, and waits until they have moved, if they can, and stand still: a list in motion
        runs past what is looked for, and so do larger steps."""
        middle = rows[len(rows) // 2]
        with contextlib.suppress(accessible.Refused):
            before = middle.node.box()
            self.input.wheel(step)
            with contextlib.suppress(TimeoutError):
                wait_until("the rows move", lambda: middle.node.box() != before, 1, 0.01)
            self.place(middle)

    def row_says(self, name):
        seen = self.look().find("list item", name)
        return seen.description if seen else ""

    def wait_row(self, name, words, seconds=30):
        """Waits until a row says something; `words` is an expression. Answers everything it said meanwhile."""
        said = []

        def question():
            now = self.row_says(name)
            if not said or said[-1] != now:
                said.append(now)
            return re.search(words, now)
        try:
            wait_until(f"the row {name} says {words}", question, seconds, 0.01)
        except TimeoutError as error:
            raise TimeoutError(f"{error}; it said {said}") from None
        return said
