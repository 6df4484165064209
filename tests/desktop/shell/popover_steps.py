"""The popover as a person meets it: opening and closing, what assistive programs learn of it, and themes."""
import os
import re
import time

import archives
from application import THEMES

BIBATA, BIBATA_ROW = "bibata-modern-ice", "Bibata Modern Ice"
NUMIX, NUMIX_ROW = "numix-cursor", "Numix Cursor"
FREE = (700, 870)
FILTERS = {"All": ("universal", "rightHanded", "leftHanded"), "Universal": ("universal",),
           "Right": ("universal", "rightHanded"), "Left": ("universal", "leftHanded")}


class PopoverSteps:
    """Steps of the shell tour, which has the desktop, the application and the checks."""

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

    @staticmethod
    def middle(box):
        return box.x + box.width // 2, box.y + box.height // 2
