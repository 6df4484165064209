"""check_dependencies.py finds each kind of wrong dependency and lets the right ones through."""
import os
import tempfile
import unittest

import check_dependencies


def complaints(path, *lines):
    return [text for _, text in check_dependencies.problems_in(path, lines)]


class DependenciesTest(unittest.TestCase):
    def test_a_dependency_down_is_right(self):
        self.assertEqual(complaints("apply/a.cpp", '#include "apply/a.h"', '#include "cursor/b.h"',
                                    '#include "platform/log.h"', "#include <vector>", "#include <fmt/format.h>"), [])

    def test_a_dependency_up_is_wrong(self):
        for path, target in (("base/a.h", "platform/log.h"), ("platform/log.h", "cursor/a.h"),
                             ("cursor/a.cpp", "settings/a.h"), ("settings/a.cpp", "themes/a.h"),
                             ("themes/a.cpp", "apply/a.h"), ("apply/a.cpp", "app/a.h"), ("app/a.cpp", "app/quick/a.h")):
            self.assertEqual(len(complaints(path, f'#include "{target}"')), 1, path)

    def test_the_core_includes_no_backend(self):
        self.assertEqual(len(complaints("apply/a.cpp", '#include "platform/x11/a.h"')), 1)
        self.assertEqual(len(complaints("app/a.cpp", '#include "platform/fake/a.h"')), 1)

    def test_a_backend_includes_base_interfaces_and_itself_only(self):
        path = "platform/x11/a.cpp"
        self.assertEqual(complaints(path, '#include "base/a.h"', '#include "platform/log.h"',
                                    '#include "platform/x11/b.h"', "#include <X11/Xlib.h>"), [])
        for target in ("cursor/a.h", "apply/a.h", "platform/qt/a.h", "platform/fake/a.h", "app/quick/a.h"):
            self.assertEqual(len(complaints(path, f'#include "{target}"')), 1, target)

    def test_a_backend_includes_those_it_is_built_on(self):
        self.assertEqual(complaints("platform/x11/a.cpp", '#include "platform/freedesktop/a.h"'), [])
        self.assertEqual(len(complaints("platform/freedesktop/a.cpp", '#include "platform/x11/a.h"')), 1)

    def test_the_root_includes_backends_but_no_fake(self):
        self.assertEqual(complaints("app/root/main.cpp", '#include "platform/x11/a.h"', '#include "app/a.h"',
                                    "#include <QApplication>"), [])
        self.assertEqual(len(complaints("app/root/main.cpp", '#include "platform/fake/a.h"')), 1)

    def test_the_views_include_the_toolkits_backend_only(self):
        self.assertEqual(complaints("app/quick/a.cpp", '#include "platform/qt/a.h"'), [])
        self.assertEqual(len(complaints("app/quick/a.cpp", '#include "platform/x11/a.h"')), 1)

    def test_the_core_names_no_toolkit_and_no_window_system(self):
        for header in ("<QString>", "<QtCore/QString>", "<X11/Xlib.h>", "<xcb/xcb.h>", "<qglobal.h>",
                       "<CoreGraphics/CoreGraphics.h>", '"X11/Xlib.h"'):
            self.assertEqual(len(complaints("themes/a.cpp", "#include " + header)), 1, header)

    def test_the_core_does_not_ask_for_its_platform(self):
        for line in ("#ifdef __linux__", "#if defined(__APPLE__)", "#elif defined(_WIN32)", "#ifdef Q_OS_LINUX"):
            self.assertEqual(len(complaints("cursor/a.cpp", line)), 1, line)
        self.assertEqual(complaints("platform/qt/a.cpp", "#ifdef __linux__"), [])
        self.assertEqual(complaints("cursor/a.cpp", "#if defined(__clang__)", "#ifndef NDEBUG"), [])

    def test_includes_run_from_the_root(self):
        self.assertEqual(len(complaints("cursor/a.cpp", '#include "a.h"')), 1)
        self.assertEqual(len(complaints("cursor/a.cpp", '#include "../base/a.h"')), 1)
        self.assertEqual(complaints("platform/qt/a.cpp", '#include "a.moc"'), [])

    def test_tests_and_benches_include_everything(self):
        self.assertEqual(complaints("tests/cursor/a.cpp", '#include "platform/x11/a.h"', '#include "app/a.h"'), [])

    def test_a_wrong_include_in_a_tree_is_reported_with_its_place(self):
        with tempfile.TemporaryDirectory() as root:
            for path, text in (("base/a.h", '#pragma once\n#include "apply/a.h"\n'), ("build/base/a.h", "bad")):
                os.makedirs(os.path.dirname(os.path.join(root, path)))
                with open(os.path.join(root, path), "w") as file:
                    file.write(text)
            self.assertEqual(check_dependencies.check(root), ['base/a.h:2: base must not include "apply/a.h"'])


if __name__ == "__main__":
    unittest.main()
