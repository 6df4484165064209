"""What is installed beside the program is valid, agrees with itself, and lands where desktops look for it.

  packaging_test.py [BUILD_FOLDER_OF_THIS_FOLDER MAKE_APP_ICON]
"""
import configparser
import gzip
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
sys.path.insert(1, str(HERE))

import make_documents  # noqa: E402

NAME = make_documents.NAME
BUILD = pathlib.Path(sys.argv.pop(1)) if len(sys.argv) > 1 else None
DRAWER = pathlib.Path(sys.argv.pop(1)) if len(sys.argv) > 1 else None
SIDES = (16, 22, 24, 32, 48, 64, 128, 256)


def side_of(png):
    width, height = struct.unpack_from(">II", png, 16)
    return width if png[:8] == b"\x89PNG\r\n\x1a\n" and width == height else None


def pixels(png):
    return subprocess.run(["convert", png, "-depth", "8", "RGBA:-"], check=True, capture_output=True).stdout


class Packaging(unittest.TestCase):
    def entry(self):
        entry = configparser.ConfigParser(interpolation=None)
        entry.read(HERE / f"{NAME}.desktop")
        return entry["Desktop Entry"]

    def test_the_desktop_entry_is_valid(self):
        check = subprocess.run(["desktop-file-validate", HERE / f"{NAME}.desktop"], capture_output=True, text=True)
        self.assertEqual((check.returncode, check.stdout), (0, ""))

    def test_the_description_names_the_entry_and_the_program_that_it_starts(self):
        component = xml.parse(HERE / f"{NAME}.metainfo.xml.in").getroot()
        self.assertEqual(component.findtext("id"), NAME)
        self.assertEqual(component.findtext("launchable"), f"{NAME}.desktop")
        self.assertEqual(component.findtext("provides/binary"), self.entry()["Exec"])
        self.assertEqual(component.findtext("summary"), self.entry()["Comment"])

    def test_the_windows_carry_the_name_of_the_entry(self):
        root = (ROOT / "app/root/backend_freedesktop.cpp").read_text()
        named = re.search(r'setDesktopFileName\(QStringLiteral\("([^"]+)"\)\)', root)
        self.assertEqual(named and named.group(1), NAME)

    def test_every_place_that_names_a_version_or_the_licence_names_the_same(self):
        version = re.search(r"^project\(Pintle VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text(), re.M).group(1)
        changes = make_documents.changes((ROOT / "CHANGELOG.md").read_text())
        self.assertEqual(changes[0][0], version)
        self.assertTrue(all(entries for _, _, entries in changes))
        licence = " ".join((ROOT / "LICENSE").read_text().split("\n\n", 2)[2].split())
        stanza = (HERE / "copyright").read_text().split("\n\n")[3]
        self.assertEqual(" ".join(stanza.split("\n", 1)[1].replace("\n .\n", "\n").split()), licence)
        component = xml.parse(HERE / f"{NAME}.metainfo.xml.in").getroot()
        self.assertEqual(component.findtext("project_license"), "MIT")

    def test_changes_become_the_list_of_the_package_and_of_software_centres(self):
        changes = make_documents.changes("# C\n\nwords\n\n## 2.0 (2026-02-03)\n\n- One <a>\n  two\n- Three\n\n"
                                         "## 1.0 (2026-01-01)\n\n- First\n")
        self.assertEqual([(version, entries) for version, _, entries in changes],
                         [("2.0", ["One <a> two", "Three"]), ("1.0", ["First"])])
        self.assertEqual(make_documents.debian_changelog(changes, "deb12", "N <n@n.invalid>"),
                         "pintle (2.0~deb12) unstable; urgency=medium\n\n  * One <a> two\n  * Three\n\n"
                         " -- N <n@n.invalid>  Tue, 03 Feb 2026 12:00:00 +0000\n\n"
                         "pintle (1.0~deb12) unstable; urgency=medium\n\n  * First\n\n"
                         " -- N <n@n.invalid>  Thu, 01 Jan 2026 12:00:00 +0000\n")
        releases = xml.fromstring(make_documents.releases(changes))
        self.assertEqual([each.get("version") for each in releases], ["2.0", "1.0"])
        self.assertEqual(releases.findtext("release/description/ul/li"), "One <a> two")

    def test_the_symbolic_icon_can_be_coloured_by_whoever_shows_it(self):
        drawing = xml.parse(HERE / f"{NAME}-symbolic.svg").getroot()
        self.assertEqual((drawing.get("width"), drawing.get("viewBox")), ("16", "0 0 16 16"))
        for shape in drawing.iter():
            self.assertIsNone(shape.get("stroke"), "only what is filled gets the colour")

    @unittest.skipUnless(DRAWER, "needs a build")
    def test_each_icon_of_a_fixed_size_is_the_drawing_in_that_size(self):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([DRAWER, ROOT / "app/quick/icons/app.svg", folder, *map(str, SIDES)], check=True)
            self.assertEqual({path.name for path in (HERE / "icons").iterdir()}, {f"{side}.png" for side in SIDES})
            for side in SIDES:
                kept = HERE / "icons" / f"{side}.png"
                self.assertEqual(side_of(kept.read_bytes()), side)
                # Toolkits round in their own ways, so the drawings are near and not equal.
                near = [abs(a - b) for a, b in zip(pixels(kept), pixels(pathlib.Path(folder) / kept.name))]
                self.assertLess(max(near), 40, kept.name)
                self.assertLess(sum(near) / len(near), 1, kept.name)

    @unittest.skipUnless(BUILD, "needs a build")
    def test_everything_is_installed_where_desktops_look_for_it(self):
        with tempfile.TemporaryDirectory() as prefix:
            # Without the program, which need not be built for this.
            done = subprocess.run(["cmake", "-DCMAKE_INSTALL_COMPONENT=desktop", f"-DCMAKE_INSTALL_PREFIX={prefix}/usr",
                                   "-P", BUILD / "cmake_install.cmake"], capture_output=True, text=True)
            self.assertEqual(done.returncode, 0, done.stderr)
            share = pathlib.Path(prefix) / "usr/share"
            icons = "icons/hicolor"
            for file in (f"applications/{NAME}.desktop", f"metainfo/{NAME}.metainfo.xml", "man/man1/pintle.1.gz",
                         "doc/pintle/copyright", "doc/pintle/changelog.gz",
                         f"{icons}/scalable/apps/{NAME}.svg", f"{icons}/symbolic/apps/{NAME}-symbolic.svg",
                         *(f"{icons}/{side}x{side}/apps/{NAME}.png" for side in SIDES)):
                self.assertTrue((share / file).is_file(), file)
            for packed in (share / "man/man1/pintle.1.gz", share / "doc/pintle/changelog.gz"):
                self.assertEqual(packed.read_bytes()[4:8], bytes(4), f"{packed.name} carries a time")
                self.assertTrue(gzip.decompress(packed.read_bytes()))


if __name__ == "__main__":
    unittest.main()
