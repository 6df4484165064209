"""What is installed beside the program is valid, agrees with itself, and lands where desktops look for it."""
import configparser
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
NAME = "com.pintle.app"
BUILD = pathlib.Path(sys.argv.pop(1)) if len(sys.argv) > 1 else None


class Packaging(unittest.TestCase):
    def test_the_desktop_entry_is_valid(self):
        check = subprocess.run(["desktop-file-validate", HERE / f"{NAME}.desktop"], capture_output=True, text=True)
        self.assertEqual((check.returncode, check.stdout), (0, ""))

    def test_the_description_names_the_entry_and_the_program_that_it_starts(self):
        entry = configparser.ConfigParser(interpolation=None)
        entry.read(HERE / f"{NAME}.desktop")
        component = xml.parse(HERE / f"{NAME}.metainfo.xml").getroot()
        self.assertEqual(component.findtext("id"), NAME)
        self.assertEqual(component.findtext("launchable"), f"{NAME}.desktop")
        self.assertEqual(component.findtext("provides/binary"), entry["Desktop Entry"]["Exec"])
        self.assertEqual(component.findtext("summary"), entry["Desktop Entry"]["Comment"])

    def test_the_windows_carry_the_name_of_the_entry(self):
        root = (ROOT / "app/qt/root_linux.cpp").read_text()
        named = re.search(r'setDesktopFileName\(QStringLiteral\("([^"]+)"\)\)', root)
        self.assertEqual(named and named.group(1), NAME)

    @unittest.skipUnless(BUILD, "needs a build")
    def test_everything_is_installed_where_desktops_look_for_it(self):
        with tempfile.TemporaryDirectory() as prefix:
            # Without the program, which need not be built for this.
            done = subprocess.run(["cmake", "-DCMAKE_INSTALL_COMPONENT=desktop", f"-DCMAKE_INSTALL_PREFIX={prefix}/usr",
                                   "-P", BUILD / "cmake_install.cmake"], capture_output=True, text=True)
            self.assertEqual(done.returncode, 0, done.stderr)
            share = pathlib.Path(prefix) / "usr/share"
            for file in (f"applications/{NAME}.desktop", f"metainfo/{NAME}.metainfo.xml",
                         f"icons/hicolor/scalable/apps/{NAME}.svg"):
                self.assertTrue((share / file).is_file(), file)


if __name__ == "__main__":
    unittest.main()
