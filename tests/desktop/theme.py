"""The looks that an applied theme must have: asked from expected_cursor, which decodes the theme's files with the
program's reader, once per scale."""
import os
import plistlib
import shutil
import subprocess

from names import FILES

ICONS = "/usr/share/icons"


class Theme:
    def __init__(self, identifier, package_theme, tools):
        """`identifier` is a row of the catalog; its files are those of an installed icon theme."""
        self.identifier = identifier
        self.source = os.path.join(ICONS, package_theme, "cursors")
        self.tool = os.path.join(tools, "expected_cursor")
        self.known = {}
        #: Pixels that a point has each way.
        self.density = 1

    def install(self, data_home):
        target = os.path.join(data_home, "Pintle", "Themes", self.identifier, "cursors")
        shutil.copytree(self.source, target, symlinks=True)

    def looks(self, name, scale):
        """The frames that an X11 name must show at a scale, one when it stands still, none when the theme has no
        file for it."""
        if (scale, self.density) not in self.known:
            self.known[scale, self.density] = self.ask(scale)
        return self.known[scale, self.density].get(name, [])

    def ask(self, scale):
        names = list(FILES)
        result = subprocess.run([self.tool, self.source, str(scale), str(self.density)], text=True, check=True, capture_output=True,
                                input="".join(",".join(FILES[name]) + "\n" for name in names))
        lines = result.stdout.splitlines()
        return {name: line.split()[1:] for name, line in zip(names, lines)}


def write_preferences(config_home, **values):
    """The preference file as a finished session leaves it."""
    with open(os.path.join(config_home, "com.pintle.app.plist"), "wb") as file:
        plistlib.dump(values, file)
