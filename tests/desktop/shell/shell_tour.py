#!/usr/bin/env python3
"""The whole story of the application on a private desktop, driven by clicks and keys: tray, popover, settings, about,
second copy, quitting. What it says of itself is read by accessibility, the pointer that it makes is judged by an
independent client, and a picture of each step is kept. Ends with 1 when something is not as it must be.

  shell_tour.py --build FOLDER [--host tint2|xfce4-panel] [--edge top|bottom] [--short] [--quiet] [--pictures FOLDER]

--short is the demonstration: download, apply, size, windows, reset. Needs the system's Python with gi.
"""
import argparse
import os
import re
import time
import traceback

from session import ShellDesktop  # first: it finds the modules beside this folder

import archives
import children
import points
from application import THEMES, Application
from children import wait_until
from judge import Judge
from notifications import Notifications
from input_devices import InputDevices
from probe import Box
from report import Report
from screen import Screen
from server import Server
from theme import Theme, write_preferences
from tray_hosts import HOSTS
from updates import HOST, PORT, Browser, VersionServer

BIBATA, BIBATA_ROW = "bibata-modern-ice", "Bibata Modern Ice"
NUMIX, NUMIX_ROW = "numix-cursor", "Numix Cursor"
FREE = (700, 870)
STARTUP = """[PINTLEAPP] Calling showSystemCursorGuaranteed()
[PINTLEAPP] showSystemCursorGuaranteed() DONE
[PINTLEAPP] setupMenuBar()
[MENUBAR] setupMenuBar() START
[MENUBAR] Status item created:
[MENUBAR] Setting up button...
[MENUBAR] Button configured with action: statusBarClicked
[MENUBAR] Creating popover...
[MENUBAR] Popover created with PopoverView
[MENUBAR] setupMenuBar() DONE
[PINTLEAPP] setupEventMonitor()
[PINTLEAPP] setupNotificationObservers()
[PINTLEAPP] Calling applyLastCursor() SYNCHRONOUSLY
[PINTLEAPP] applyLastCursor() START
[PINTLEAPP] CursorViewModel created
[PINTLEAPP] applyLastCursor() DONE
[PINTLEAPP] applyLastCursor() DONE""".splitlines()
MENU = ["Settings...", "About Pintle", "Check for Updates...", "Quit Pintle"]
FILTERS = {"All": ("universal", "rightHanded", "leftHanded"), "Universal": ("universal",),
           "Right": ("universal", "rightHanded"), "Left": ("universal", "leftHanded")}
TOGGLES = {"Launch at Login": "launchAtLogin", "Apply Last Cursor on Launch": "applyOnLaunch",
           "Restore System Cursor on Quit": "restoreOnQuit",
           "Use Themed Cursor in Fullscreen": "alwaysUseThemedCursor",
           "Use System Cursor for Missing Types": "useSystemCursorForMissing",
           "System Cursor During Screen Sharing": "pauseWhenScreenShared", "Total Glass Mode": "glassMode"}


class ShellTour:
    def __init__(self, desktop, options):
        self.desktop, self.options = desktop, options
        self.report = Report(options.quiet)
        self.judge = Judge(desktop.probe, self.report, options.pictures)
        self.input = InputDevices(desktop)
        self.screen = Screen(desktop, options.pictures)
        self.host = HOSTS[options.host](desktop, options.edge)
        self.tools = os.path.join(options.build, "tests", "desktop")
        self.app = Application(desktop, self.input, self.host, os.path.join(options.build, "pintle"))
        self.theme = Theme(BIBATA, "Bibata-Modern-Ice", self.tools)
        self.numix = Theme(NUMIX, "DMZ-White", self.tools)
        self.check = self.report.check

    # The stage.

    def set_the_stage(self):
        desktop = self.desktop
        www = os.path.join(desktop.folder, "www")
        os.makedirs(www)
        archives.write_all(www, (BIBATA, NUMIX))
        self.server = Server(www, desktop.log("web server"))
        desktop.environment["PINTLE_MIRROR"] = f"http://127.0.0.1:{self.server.port}"
        self.input.wallpaper()
        desktop.start_xterm("xterm", 20, 80)
        qt = points.qt("Qt", desktop.start_qt("Qt", 20, 330))
        wanted = ("OpenHand", "PointingHand", "LineEdit", "Arrow")
        self.points = points.xterm("xterm", desktop.probe)[:1] + [each for each in qt if each.place in wanted]
        self.report.stage("Before: the desktop's own pointers")
        self.judge.desktops_own(self.points, self.theme)

    def pointer(self, title, theme=None, scale=1.0, among=None):
        self.judge.stage(title, among or self.points, theme, scale)
        self.input.do("mousemove", *FREE)

    def picture(self, name, box=None):
        self.screen.still(box or Box(0, 0, self.screen.width, self.screen.height))
        return self.screen.picture(name, box)

    def expect(self, what, question, seconds=10):
        """Waits for a statement to become true."""
        try:
            wait_until(what, question, seconds, 0.05)
        except TimeoutError:
            self.check(what, False)
            return False
        self.check(what, True)
        return True

    def expect_line(self, line, cause, seconds=10):
        before = self.app.count(line)
        cause()
        self.expect("logs " + line, lambda: self.app.count(line) > before, seconds)

    # Start.

    def without_a_tray(self):
        self.report.stage("No tray yet")
        self.notifications = Notifications(self.desktop)
        self.app.start()
        self.check("the start-up's lines come in their order", self.in_order(STARTUP),
                   "\n".join(line for line in self.app.lines() if line.startswith(("[MENU", "[PINTLEAPP"))))
        self.check("a second copy ends at once and without an error", self.app.start_another() == 0)
        self.expect("it made the first one show its popover", self.app.popover)
        self.expect("the missing tray is told in a message", self.notifications.shown)
        self.picture("no-tray")
        self.check("another second copy ends as well", self.app.start_another() == 0)
        self.check("the open popover stays open", bool(self.app.popover()))
        self.input.key("Escape")
        self.app.wait_gone("the popover", self.app.popover)
        self.host.start()
        self.expect("a tray that comes later gets the item", self.host.icon)
        time.sleep(0.5)
        self.check("the message came once", len(self.notifications.shown()) == 1, str(self.notifications.shown()))
        self.picture("tray")

    def in_order(self, wanted):
        lines = iter(self.app.lines())
        return all(any(line.startswith(want) for line in lines) for want in wanted)

    # The popover.

    def opening(self):
        self.report.stage("The popover opens and closes")
        icon = self.app.icon()
        popover = self.app.open_popover()
        box = self.box_of(popover)
        self.picture("popover", box)
        self.picture("popover-on-the-desktop")
        self.check_place(icon, box)
        for way, close in (("a second click on the item", lambda: self.input.click_on(icon)),
                           ("a press on the desktop", lambda: self.input.click(*FREE)),
                           ("a press on another application", lambda: self.input.click(120, 130)),
                           ("a right press elsewhere", lambda: self.input.click(120, 130, 3)),
                           ("Escape", lambda: self.input.key("Escape"))):
            self.app.opened()
            close()
            self.expect(way + " closes it", lambda: not self.app.popover())
            time.sleep(0.4)
            self.check("and it stays closed", not self.app.popover())
        shown = self.app.count("[MENUBAR] Showing popover...")
        self.app.open_popover()
        self.check("one click shows it once", self.app.count("[MENUBAR] Showing popover...") == shown + 1)

    @staticmethod
    def box_of(seen):
        return seen.node.box()

    def check_place(self, icon, box):
        below = icon.y < self.screen.height // 2
        gap = box.y - (icon.y + icon.height) if below else icon.y - (box.y + box.height)
        beside = abs(box.x + box.width // 2 - (icon.x + icon.width // 2))
        at_edge = box.x + box.width >= self.screen.width - 40
        self.check("it is 340 wide", 340 <= box.width <= 400, str(box))
        self.check("it hangs from the panel", 0 <= gap <= 24 or self.host.name != "tint2", f"{icon} {box}")
        self.check("it is under the item, or at the edge of the screen", beside < 20 or at_edge, f"{icon} {box}")
        self.check("all of it is on the screen", box.x >= 0 and box.x + box.width <= self.screen.width and
                   box.y >= 0 and box.y + box.height <= self.screen.height, str(box))

    def accessibility(self):
        self.report.stage("What an assistive program learns of the popover")
        popover = self.app.opened()
        self.keep_text("popover-tree", popover.written())
        nameless = [each.role for each in popover.all() if {"focusable", "showing"} <= each.states and not each.name and
                    each.role not in ("frame", "window", "dialog", "filler", "panel", "list")]
        self.check("every control that is shown has a name", not nameless, str(nameless))
        for role, name in (("push button|button", "Settings"), ("push button|button", "About Pintle"),
                           ("push button|button", "Quit Pintle"), ("radio button", "All"),
                           ("radio button", "Universal"), ("radio button", "Right"), ("radio button", "Left"),
                           ("list", THEMES), ("slider", "Cursor Size"), ("push button|button", "System Default"),
                           ("push button|button", "Reset")):
            seen = popover.find(role, name)
            self.check(f"there is a {role} {name}", bool(seen))
            if seen and role != "list":
                self.check(f"{name} can be reached by keyboard", "focusable" in seen.states, str(seen.states))
        filters = {name: popover.find("radio button", name) for name in FILTERS}
        checked = [name for name, seen in filters.items() if seen and "checked" in seen.states]
        self.check("one filter is chosen: All", checked == ["All"], str(checked))
        row = popover.find("list item")
        self.check("a row tells author, licence, hand and state", bool(re.match(
            r".+, .+, (Universal|Right|Left), (Animated cursors, )?Click to download", row.description)),
            row.description)
        self.check("a row can be chosen and is not", "checked" not in row.states)
        slider = popover.find("slider", "Cursor Size").node
        self.check("the slider tells value and range", (slider.value(), *slider.range()) == (1.0, 0.75, 1.5),
                   f"{slider.value()} {slider.range()}")
        self.tab_order()

    def focused(self):
        focused = [each for each in self.app.look().find_all(state="focused") if each.role not in ("frame", "window")]
        return focused[-1] if focused else None

    def tab_order(self):
        """One way round by Tab, begun wherever the keyboard was."""
        met = []
        for _ in range(24):
            self.input.key("Tab")
            time.sleep(0.08)
            seen = self.focused()
            name = seen.name if seen else ""
            if met and name == met[0]:
                break
            met.append(name)
        self.check("Tab has a focus everywhere", all(met), str(met))
        order = ["Settings", "About Pintle", "Quit Pintle", "All", None, "Cursor Size", "System Default", "Reset"]
        start = met.index("Settings") if "Settings" in met else 0
        turned = met[start:] + met[:start]
        holds = len(turned) == len(order) and all(want in (None, got) for want, got in zip(order, turned))
        self.check("Tab goes from the top to the bottom", holds, str(turned))
        self.picture("focus", self.box_of(self.app.popover()))

    def keep_text(self, name, text):
        with open(os.path.join(self.options.pictures, name + ".txt"), "w", encoding="utf-8") as file:
            file.write(text + "\n")

    def filters(self):
        self.report.stage("Filters")
        with open(archives.CATALOG, encoding="utf-8") as file:
            hands = re.findall(r'", (\w+)\}', file.read())
        self.app.opened()
        for name in ("Universal", "Right", "Left", "All"):
            count = sum(hands.count(hand) for hand in FILTERS[name])
            line = f"[VIEWMODEL] filteredThemes called: filter={name}, total={len(hands)}, filtered={count}"
            self.expect_line(line, lambda name=name: self.app.click("radio button", name))
            self.expect(f"{name} is chosen",
                        lambda name=name: "checked" in self.app.look().find("radio button", name).states)
            words = {"universal": "Universal", "rightHanded": "Right", "leftHanded": "Left"}
            allowed = {words[hand] for hand in FILTERS[name]}

            def only_these(allowed=allowed):
                rows = [row.description for row in self.app.popover().find_all("list item")]
                return rows and all(any(f", {word}" in each for word in allowed) for each in rows)
            self.expect(f"{name} shows no other hand", only_these)
            if name != "All":
                self.picture("filter-" + name.lower(), self.box_of(self.app.popover()))

    # Themes.

    def download(self):
        self.report.stage("Downloading a theme")
        self.app.opened()
        self.server.behave("held")
        row = self.app.row(BIBATA_ROW)
        self.input.click_on(row.node.box())
        said = self.app.wait_row(BIBATA_ROW, r"Downloading \d+%", 20)
        self.picture_now("downloading")
        bar = self.app.look().find("progress bar", BIBATA_ROW)
        self.check("its bar tells how far it is", bool(bar) and re.fullmatch(r"\d+%", bar.description),
                   bar and bar.description)
        self.server.behave("well")
        said += self.app.wait_row(BIBATA_ROW, r"^(?!.*(Downloading|Connecting|Extracting|Starting|Click))", 60)
        percents = [int(each) for each in re.findall(r"Downloading (\d+)%", " ".join(said))]
        self.check("the row told its progress in growing steps",
                   percents and percents == sorted(percents), str(said))
        for line in (f"[UI] BUTTON ACTION FIRED for theme: {BIBATA_ROW}",
                     f"[UI] handleTap() called for theme: {BIBATA_ROW}, isDownloaded: 0",
                     "[UI] Theme NOT downloaded, calling downloadTheme()"):
            self.check("logs " + line, self.app.count(line) == 1)
        self.picture("downloaded", self.box_of(self.app.popover()))
        self.check("a downloaded theme is not yet in force", self.app.preferences().get("currentThemeId") is None)

    def picture_now(self, name):
        self.screen.picture(name, self.box_of(self.app.popover()))

    def failure(self):
        self.report.stage("A download that fails")
        self.app.opened()
        self.server.behave("500")
        self.input.click_on(self.app.row(NUMIX_ROW).node.box())
        self.app.wait_row(NUMIX_ROW, "Error - Tap to retry, .*HTTP 500")
        self.picture("error", self.box_of(self.app.popover()))
        self.server.behave("well")
        self.input.click_on(self.app.row(NUMIX_ROW).node.box())
        self.app.wait_row(NUMIX_ROW, r"^(?!.*(Error|Downloading|Connecting|Extracting|Starting|Click))", 60)
        self.check("a tap on the row tries again, and it works", True)
        self.check("its error is forgotten", NUMIX not in self.app.preferences().get("themeDownloadErrors", {}))

    def apply(self):
        self.report.stage("Applying by a click")
        self.app.opened()
        self.input.click_on(self.app.row(BIBATA_ROW).node.box())
        self.expect("the row is marked as the one in force", lambda: "checked" in self.app.row(BIBATA_ROW).states)
        self.picture("applied", self.box_of(self.app.popover()))
        self.app.close_popover()
        self.pointer("Applied", self.theme)
        self.check("it is remembered", self.app.preferences().get("currentThemeId") == BIBATA)

    def slider(self):
        self.report.stage("Dragging the size from 1.0 to 1.5")
        self.app.opened()
        slider = self.app.wait_for("slider", "Cursor Size")
        box = slider.node.box()
        applied = self.app.count("[CursorViewModel] Scale applied:")
        registered = self.app.count("[SystemCursorChanger] Registered")
        knob = 8
        width = box.width - 2 * knob
        start = box.x + knob + round(width * (1.0 - 0.75) / 0.75), box.y + box.height // 2
        self.input.drag(start, (box.x + box.width + 6, start[1]), steps=20, pause=0.05)
        self.expect("it ends at 1.5", lambda: abs(slider.node.value() - 1.5) < 0.001)
        self.expect("and is stored", lambda: self.app.preferences().get("cursorScale") == 1.5)
        time.sleep(1.0)
        sets = (self.app.count("[CursorViewModel] Scale applied:") - applied,
                self.app.count("[SystemCursorChanger] Registered") - registered)
        print(f"  the drag applied {sets[0]} sets by scale, {sets[1]} registrations", flush=True)
        point = self.points[0]
        self.desktop.probe.move(point.x, point.y)
        self.desktop.probe.settle(100, 800)
        frames = self.desktop.probe.frames(2, 1500)
        self.check("one second after the last step nothing moves", len(frames) == 1, str(frames))
        later = (self.app.count("[CursorViewModel] Scale applied:") - applied,
                 self.app.count("[SystemCursorChanger] Registered") - registered)
        self.check("and nothing is applied any more", later == sets, f"{sets} {later}")
        self.picture("one-and-a-half", self.box_of(self.app.opened()))
        self.app.close_popover()
        self.pointer("At 1.5", self.theme, 1.5)
        self.app.open_popover()
        self.app.click("push button|button", "Reset")
        self.expect("Reset brings the size back", lambda: self.app.preferences().get("cursorScale") == 1.0)
        self.app.close_popover()
        self.pointer("At 1.0 again", self.theme)

    def system_default(self):
        self.report.stage("System Default, and back")
        self.app.opened()
        self.app.click("push button|button", "System Default")
        self.expect("no row is marked", lambda: not list(self.app.popover().find_all("list item", state="checked")))
        self.app.close_popover()
        self.pointer("The desktop's own")
        self.app.open_popover()
        self.input.click_on(self.app.row(BIBATA_ROW).node.box())
        self.expect("the row is marked again", lambda: "checked" in self.app.row(BIBATA_ROW).states)

    def delete(self):
        self.report.stage("Deleting a theme")
        self.app.opened()
        row = self.app.row(NUMIX_ROW)
        self.input.point(*self.middle(row.node.box()))
        button = self.app.wait_for("push button|button", re.compile("^Delete downloaded theme"))
        self.picture("delete", self.box_of(self.app.popover()))
        self.input.click_on(button.node.box())
        self.app.wait_row(NUMIX_ROW, "Click to download")
        self.check("its folder is gone", not os.path.exists(os.path.join(self.themes_folder(), NUMIX)))
        self.check("the one in force stays", "checked" in self.app.row(BIBATA_ROW).states)

    def themes_folder(self):
        return os.path.join(self.desktop.data, "Pintle", "Themes")

    @staticmethod
    def middle(box):
        return box.x + box.width // 2, box.y + box.height // 2

    # Menu and windows.

    def open_menu(self):
        """By a right click; answers title to entry, in their order. The keyboard goes to the first entry."""
        self.app.close_popover()
        self.input.click_on(self.app.icon(), 3)

        def opened():
            if self.menu_items():
                return True
            self.input.key("Down")
            return False
        wait_until("the menu is open", opened, 10, 0.15)
        return self.menu_items()

    def menu_items(self):
        menu = self.desktop.accessibility.menu()
        return {each.name: each for each in menu.find_all("menu item") if each.name} if menu else {}

    def menu_item(self, title):
        """Chooses from the menu as a person does."""
        self.input.click_on(self.open_menu()[title].node.box())

    def menu(self):
        self.report.stage("The menu")
        items = list(self.open_menu())
        self.check("the right button opens it, with its titles in their order", items == MENU, str(items))
        self.picture("menu")
        self.check("the popover stays closed", not self.app.popover())
        self.input.key("Escape")
        self.expect("Escape closes it", lambda: not self.menu_items())
        self.input.click_on(self.app.icon())
        self.expect("the next left click opens the popover", self.app.popover)
        self.check("and not the menu", not self.menu_items())

    def settings(self):
        self.report.stage("Settings")
        self.menu_item("Settings...")
        self.expect("the menu opens it", lambda: self.app.window("Settings"))
        self.input.key("ctrl+w")
        self.expect("Control and W close it", lambda: not self.app.window("Settings"))
        self.app.opened()
        self.app.click("push button|button", "Settings")
        self.expect("the popover's button opens it", lambda: self.app.window("Settings"))
        self.check("and closes the popover", not self.app.popover())
        window = self.app.window("Settings")
        box = self.box_of(window)
        self.picture("settings", box)
        self.picture("settings-on-the-desktop")
        self.keep_text("settings-tree", window.written())
        self.check("it is 480 by 760 where there is room", box.width == 480 and box.height >= 700, str(box))
        nameless = [each.role for each in window.all() if {"focusable", "showing"} <= each.states and not each.name and
                    each.role not in ("frame", "window", "dialog", "filler", "panel")]
        self.check("every control has a name", not nameless, str(nameless))
        for title, key in TOGGLES.items():
            self.toggle(title, key)
        self.scale_buttons()

    def toggle(self, title, key):
        seen = self.app.wait_for(None, title, showing=False)
        before = "checked" in seen.states
        for wanted in (not before, before):
            self.input.click_on(self.app.scrolled_to(seen))
            self.expect(f"{title} is {'on' if wanted else 'off'} and stored",
                        lambda wanted=wanted: self.app.preferences().get(key) == wanted and
                        ("checked" in self.again(seen)) == wanted)

    @staticmethod
    def again(seen):
        return seen.node.look(0).states

    def scale_buttons(self):
        button = self.app.wait_for(None, "125%", showing=False)
        self.input.click_on(self.app.scrolled_to(button))
        self.expect("125% is stored", lambda: self.app.preferences().get("cursorScale") == 1.25)
        self.picture("settings-lower", self.box_of(self.app.window("Settings")))
        self.pointer("At 1.25 by the button", self.theme, 1.25)
        button = self.app.wait_for(None, "100%", showing=False)
        self.input.click_on(self.app.scrolled_to(button))
        self.expect("100% is stored", lambda: self.app.preferences().get("cursorScale") == 1.0)
        self.pointer("At 1.0 by the button", self.theme)

    def exclusions(self):
        self.report.stage("Excluding an application")
        settings = self.app.window("Settings")
        self.check("the list is empty", bool(settings.find(None, "No exclusions added", showing=False)))
        self.input.click_on(self.app.scrolled_to(self.app.wait_for(None, "Add app to exclusion list", showing=False)))
        field = self.app.wait_for("text|entry", None, state="editable")
        self.check("the field has its placeholder", any("App name (e.g., Safari)" in (each.name, each.description)
                                                        for each in settings.node.look().all()))
        self.input.click_on(self.app.scrolled_to(field))
        self.input.write("   ")
        self.input.key("Return")
        time.sleep(0.3)
        self.check("blanks add nothing and leave the field open",
                   bool(self.app.look().find("text|entry", None, state="editable")) and
                   not self.app.preferences().get("excludedApps"))
        self.input.write(" Solitaire ")
        self.picture("exclusion-field", self.box_of(self.app.window("Settings")))
        self.input.key("Return")
        self.expect("the name is stored without its blanks",
                    lambda: self.app.preferences().get("excludedApps") == ["Solitaire"])
        self.expect("the name is listed", lambda: self.app.look().find(None, "Remove Solitaire", showing=False))
        self.picture("excluded", self.box_of(self.app.window("Settings")))
        self.expect_line("[SystemCursorChanger] Suspended for excluded app: Solitaire", self.open_game)
        self.pointer("An excluded application in front")
        self.expect_line("[SystemCursorChanger] Resumed after excluded app", lambda: self.input.click(120, 130))
        self.pointer("It is left", self.theme)
        self.desktop.stop("game")
        self.menu_item("Settings...")
        self.app.wait_for("frame|window|dialog", "Settings")
        remove = self.app.wait_for(None, "Remove Solitaire", showing=False)
        self.input.click_on(self.app.scrolled_to(remove))
        self.expect("it is removed", lambda: not self.app.preferences().get("excludedApps"))
        self.input.key("ctrl+w")
        self.expect("Control and W close the window", lambda: not self.app.window("Settings"))

    def open_game(self):
        self.desktop.start("game", ["xterm", "-class", "Solitaire", "-title", "game", "-geometry", "20x3+500+80",
                                    "-e", "sleep", "100000"])
        self.desktop.wait_for("game", "is on the screen", lambda: self.desktop.probe.window("game"))

    def about(self):
        self.report.stage("About")
        self.menu_item("About Pintle")
        self.expect("the menu opens it", lambda: self.app.window("About Pintle"))
        words = ["Pintle", "Version 0.1.0", "A modern cursor manager for macOS", "Features", "Custom cursor themes",
                 "Adjustable cursor size", "Auto-apply on launch", "Menu bar integration"]
        self.expect("it says what it must", lambda: self.texts("About Pintle", words) == words)
        window = self.app.window("About Pintle")
        box = self.box_of(window)
        self.check("its content is 300 by 480", (box.width, box.height) == (300, 480), str(box))
        self.check("its contact is a link or a button", bool(window.find("link|push button|button",
                                                                        re.compile("Contact"))))
        time.sleep(1.0)
        self.picture("about", box)
        self.keep_text("about-tree", window.written())
        self.input.key("ctrl+w")
        self.expect("Control and W close it", lambda: not self.app.window("About Pintle"))
        self.app.open_popover()
        self.input.key("ctrl+w")
        time.sleep(0.3)
        self.check("the popover takes no notice of them", bool(self.app.popover()))
        self.app.click("push button|button", "About Pintle")
        self.expect("the popover's button opens it as well", lambda: self.app.window("About Pintle"))
        self.input.key("ctrl+w")
        self.app.wait_gone("the window", lambda: self.app.window("About Pintle"))

    def texts(self, title, among):
        """Those of some texts that a window shows, in its order."""
        window = self.app.window(title)
        return list(dict.fromkeys(each for each in window.texts() if each in among)) if window else []

    def no_answer(self):
        self.report.stage("Asking for updates without a network")
        self.menu_item("Check for Updates...")
        self.app.wait_for(None, re.compile("Could not check for updates"))
        shown = " ".join(self.app.look().texts())
        self.check("it says what to do", "Check your internet connection and try again." in shown, shown)
        self.picture("no-answer")
        self.input.key("Return")
        self.app.wait_gone("the message", lambda: self.app.shows(None, re.compile("Could not check for updates")))

    def updates(self):
        """With a copy of the program that was built to ask a server on this machine."""
        self.report.stage("A newer version")
        browser, server = Browser(self.desktop), VersionServer()
        ordinary = self.app.program
        self.app.program = os.path.join(self.tools, "shell", "pintle_updates")
        try:
            self.app.start()
            self.app.opened()
            self.app.click("push button|button", "Update 9.4.0")
            self.expect("the button opens the download page",
                        lambda: browser.addresses() == [f"http://{HOST}:{PORT}/download.php"])
            self.picture("update", self.box_of(self.app.opened()))
            self.menu_item("Check for Updates...")
            self.app.wait_for(None, re.compile("Pintle 9.4.0 is available"))
            shown = " ".join(self.app.look().texts())
            self.check("it tells both versions", "You have version 0.1.0. Download the new version and replace Pintle in "
                       "Applications." in shown, shown)
            self.picture("update-answer")
            self.app.click("push button|button", "Later")
            self.app.wait_gone("the message", lambda: self.app.shows("push button|button", "Later"))
            self.check("Later opens nothing", len(browser.addresses()) == 1)
            self.menu_item("Check for Updates...")
            self.app.click("push button|button", "Download")
            self.expect("Download opens the page", lambda: len(browser.addresses()) == 2)
            self.menu_item("Quit Pintle")
            self.check("it ends without an error", self.app.ended() == 0)
        finally:
            self.app.program = ordinary
            server.close()

    # Ends.

    def copies(self):
        self.report.stage("A second copy, and one that was killed")
        self.app.close_popover()
        self.check("a second copy ends without an error", self.app.start_another() == 0)
        self.expect("the first one shows its popover", self.app.popover)
        self.check("a second copy ends again", self.app.start_another() == 0)
        time.sleep(0.3)
        self.check("the open popover stays open", bool(self.app.popover()))
        self.input.key("Escape")
        self.app.kill()
        self.pointer("kill -9: the theme stays in force", self.theme,
                     among=[each for each in self.points if self.judge.is_held_by_server(each)])
        self.app.start()
        self.check("the next start is the first copy again", self.app.is_running())
        self.check("and a second copy ends again", self.app.start_another() == 0)
        self.expect("having shown the popover", self.app.popover)
        self.app.icon()
        self.app.close_popover()
        self.pointer("After the start", self.theme)

    def quitting(self):
        self.report.stage("Quitting without restoring")
        self.menu_item("Quit Pintle")
        self.check("it ends without an error", self.app.ended() == 0)
        self.check("it says so twice", self.app.count("[AppDelegate] System cursor restored") >= 2)
        self.pointer("The theme stays in force", self.theme)
        self.report.stage("Quitting with restoring")
        write_preferences(self.desktop.config, **(self.app.preferences() | {"restoreOnQuit": True}))
        self.app.start()
        self.app.open_popover()
        self.app.click("push button|button", "Quit Pintle")
        self.check("it ends without an error", self.app.ended() == 0)
        self.pointer("The desktop's own")

    def reset(self):
        self.report.stage("Reset Application")
        self.app.start()
        self.pointer("The theme again", self.theme)
        self.open_reset()
        self.picture("reset-question")
        before = self.app.preferences()
        shown = " ".join(self.app.look().texts())
        for words in ("Reset Application?", "This will delete all downloaded themes, reset all settings to defaults, "
                      "and restore the system cursor. Pintle will quit after reset."):
            self.check(f"it asks: {words}", words in shown, shown)
        self.app.click("push button|button", "Cancel")
        self.app.wait_gone("the question", lambda: self.app.shows("push button|button", "Reset & Quit"))
        self.check("Cancel changes nothing", self.app.preferences() == before and
                   os.path.exists(os.path.join(self.themes_folder(), BIBATA)) and self.app.is_running())
        self.input.click_on(self.app.scrolled_to(self.app.wait_for("push button|button", "Reset Application")))
        self.app.click("push button|button", "Reset & Quit")
        self.app.wait_for(None, re.compile("Reset Complete"))
        self.picture("reset-complete")
        self.check("it says that it quits", "Application has been reset. Pintle will now quit. Launch it again to "
                   "start fresh." in " ".join(self.app.look().texts()))
        self.app.click("push button|button", "Quit")
        self.check("it ends without an error", self.app.ended() == 0)
        self.pointer("The desktop's own")
        self.check("the themes are gone", not os.path.exists(self.themes_folder()))
        self.check("the preferences are new", "currentThemeId" not in self.app.preferences() and
                   "restoreOnQuit" not in self.app.preferences(), str(self.app.preferences()))

    def open_reset(self):
        self.menu_item("Settings...")
        button = self.app.wait_for("push button|button", "Reset Application", showing=False)
        self.input.click_on(self.app.scrolled_to(button))
        self.app.wait_for("push button|button", "Reset & Quit")

    # The story.

    def story(self):
        self.set_the_stage()
        if self.options.only and "without_a_tray" not in self.options.only:
            self.theme.install(self.desktop.data)
            write_preferences(self.desktop.config, currentThemeId=BIBATA)
            self.host.start()
            self.app.start()
        self.attempt(self.without_a_tray)
        for step in (self.opening, self.accessibility, self.filters, self.download, self.failure, self.apply,
                     self.slider, self.system_default, self.delete, self.menu, self.settings, self.exclusions,
                     self.about, self.no_answer, self.copies, self.quitting, self.updates, self.reset):
            self.attempt(step)

    def demonstration(self):
        self.set_the_stage()
        self.host.start()
        self.app.start()
        for step in (self.download, self.apply, self.slider, self.settings, self.about, self.reset):
            self.attempt(step)

    def attempt(self, step):
        """A step that breaks is one failure; the next ones begin from a closed popover."""
        if self.options.only and step.__name__ not in self.options.only:
            return
        begun = time.monotonic()
        try:
            step()
        except (TimeoutError, RuntimeError, AttributeError, StopIteration) as error:
            self.check(f"{step.__name__} comes to its end", False,
                       f"{error}\n" + "".join(traceback.format_tb(error.__traceback__)[-3:]))
            self.screen.picture("broken-" + step.__name__)
            if self.app.process and not self.app.is_running():
                self.check("the program is still there", False, f"it ended with {self.app.process.returncode}")
                self.app.start()
            self.input.key("Escape")
        print(f"  ({step.__name__}: {time.monotonic() - begun:.1f} s)", flush=True)

    def run(self):
        if self.options.short:
            self.demonstration()
        else:
            self.story()
        return self.report.close()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="build folder")
    parser.add_argument("--host", choices=HOSTS, default="tint2")
    parser.add_argument("--edge", choices=("top", "bottom"), default="top")
    parser.add_argument("--short", action="store_true")
    parser.add_argument("--only", metavar="STEP", nargs="+", help="these steps of the story alone")
    parser.add_argument("--quiet", action="store_true", help="print only failures")
    parser.add_argument("--pictures", help="folder for pictures and logs (default: BUILD/tour)")
    options = parser.parse_args()
    options.build = os.path.abspath(options.build)
    options.pictures = os.path.abspath(options.pictures or os.path.join(options.build, "tour"))
    with ShellDesktop(os.path.join(options.build, "tests", "desktop")) as desktop:
        tour = ShellTour(desktop, options)
        try:
            good = tour.run()
        finally:
            desktop.keep_logs(options.pictures, "pintle", "web server", "notifications", options.host)
    print(f"Pictures and logs: {options.pictures}")
    return 0 if good else 1


if __name__ == "__main__":
    children.run(main)
