"""Menu, windows and messages as a person meets them."""
import os
import re
import time

from children import wait_until
from popover_steps import BIBATA
from updates import HOST, PORT, Browser, VersionServer

MENU = ["Settings...", "About Pintle", "Check for Updates...", "Quit Pintle"]
TOGGLES = {"Launch at Login": "launchAtLogin", "Apply Last Cursor on Launch": "applyOnLaunch",
           "Restore System Cursor on Quit": "restoreOnQuit",
           "Use Themed Cursor in Fullscreen": "alwaysUseThemedCursor",
           "Use System Cursor for Missing Types": "useSystemCursorForMissing",
           "System Cursor During Screen Sharing": "pauseWhenScreenShared", "Total Glass Mode": "glassMode"}


class WindowSteps:
    """Steps of the shell tour, which has the desktop, the application and the checks."""

    # The menu.

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

    # Windows.

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

    # Updates, and the reset.

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
