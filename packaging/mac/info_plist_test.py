"""The bundle's property list, filled in as the build does it, is one and says what the program relies on.

  info_plist_test.py VERSION BUILD DEPLOYMENT_TARGET
"""
import os
import plistlib
import re
import sys
import unittest

FOLDER = os.path.dirname(os.path.abspath(__file__))


class InfoPlistTest(unittest.TestCase):
    values = {}

    def test_the_list_says_what_the_program_relies_on(self):
        with open(os.path.join(FOLDER, "Info.plist.in"), encoding="utf-8") as file:
            text = re.sub(r"\$\{(\w+)\}", lambda name: self.values[name.group(1)], file.read())
        info = plistlib.loads(text.encode())
        # The preferences, the login item and the messages between copies hang on this name.
        self.assertEqual(info["CFBundleIdentifier"], "com.pintle.app")
        self.assertIs(info["LSUIElement"], True)
        self.assertEqual(info["LSMinimumSystemVersion"], "13.3")
        self.assertRegex(info["CFBundleShortVersionString"], r"^\d+\.\d+\.\d+$")
        self.assertRegex(info["CFBundleVersion"], r"^\d+$")
        self.assertEqual(info["CFBundleExecutable"], "Pintle")
        self.assertEqual(info["CFBundlePackageType"], "APPL")
        self.assertEqual(info["CFBundleIconFile"], "Pintle.icns")


if __name__ == "__main__":
    version, build, target = sys.argv[1:4]
    InfoPlistTest.values = {"PROJECT_VERSION": version, "PINTLE_BUILD": build,
                            "CMAKE_OSX_DEPLOYMENT_TARGET": target, "MACOSX_BUNDLE_EXECUTABLE_NAME": "Pintle"}
    unittest.main(argv=sys.argv[:1])
