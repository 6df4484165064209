"""The tour's judgement on made-up pointers: what it must let through and what it must not."""
import contextlib
import io
import os
import subprocess
import sys
import unittest

import children
from judge import Judge
from points import Point
from probe import Shown
from report import Report

POINT = Point("xterm", "text", 1, 1, "xterm")
BLANK = Point("Qt", "Blank", 1, 1, exception="hides the pointer on purpose", untouched=True)


class FakeTheme:
    identifier = "a-theme"

    def __init__(self, *looks):
        self.all = list(looks)

    def looks(self, name, scale):
        return self.all if name in ("xterm", "left_ptr") else []


class FakeProbe:
    def __init__(self, before, after=None, frames=(), name="xterm", libraries=None):
        """`libraries`: the looks that the desktop's theme has for each name; none: "own" for all."""
        self.name = name
        self.libraries = libraries
        self.shown = before
        self.after = after
        self.seen = list(frames)

    def move(self, x, y):
        pass

    def settle(self, quiet, limit):
        return Shown(self.shown, self.name)

    def library(self, theme, size, name):
        return ["own"] if self.libraries is None else self.libraries.get(name, [])

    def wait_for(self, looks, limit):
        return Shown(self.after, "xterm")

    def frames(self, count, limit):
        return self.seen


def failures(probe, theme, point=POINT, apply=True):
    """The failed rows of a first look and, unless given otherwise, a look after an apply."""
    with contextlib.redirect_stdout(io.StringIO()):
        report = Report()
        judge = Judge(probe, report)
        report.stage("before")
        judge.desktops_own([point], theme)
        if apply:
            probe.shown = probe.after
            judge.stage("applied", [point], theme)
    return report.failures


class JudgeTest(unittest.TestCase):
    def test_the_themes_pointer_is_good(self):
        self.assertEqual(failures(FakeProbe("own", "new"), FakeTheme("new")), [])

    def test_a_pointer_that_stays_the_desktops_own_is_found(self):
        self.assertEqual(len(failures(FakeProbe("own", "own"), FakeTheme("new"))), 1)

    def test_a_pointer_that_the_server_does_not_report_is_found(self):
        self.assertEqual(len(failures(FakeProbe("own", ""), FakeTheme("new"))), 1)

    def test_a_name_that_the_theme_lacks_keeps_the_desktops_own(self):
        self.assertEqual(failures(FakeProbe("own", "own"), FakeTheme()), [])

    def test_an_animation_that_stands_still_is_found(self):
        theme = FakeTheme("one", "two")
        self.assertEqual(failures(FakeProbe("own", "one", ["one", "two"]), theme), [])
        self.assertEqual(len(failures(FakeProbe("own", "one", ["one"]), theme)), 1)

    def test_a_frame_that_is_not_the_themes_is_found(self):
        self.assertEqual(len(failures(FakeProbe("own", "one", ["one", "own"]), FakeTheme("one", "two"))), 1)

    def test_a_desktop_that_looks_like_the_theme_proves_nothing(self):
        self.assertEqual(len(failures(FakeProbe("own"), FakeTheme("own"), apply=False)), 1)

    def test_a_hidden_pointer_that_was_changed_is_found(self):
        self.assertEqual(failures(FakeProbe("empty", "empty"), FakeTheme("new"), BLANK), [])
        self.assertEqual(len(failures(FakeProbe("empty", "new"), FakeTheme("new"), BLANK)), 1)


    def test_another_name_of_the_shape_does_for_one_that_the_desktop_lacks(self):
        asked = Point("Qt", "IBeam", 1, 1, "ibeam")
        for name in ("", "xterm"):
            probe = FakeProbe("beam", "new", name=name, libraries={"left_ptr": ["arrow"], "xterm": ["beam"]})
            self.assertEqual(failures(probe, FakeTheme("new"), asked), [])
        for name in ("", "ibeam", "watch"):
            probe = FakeProbe("strange", "beam", name=name, libraries={"left_ptr": ["arrow"], "xterm": ["beam"]})
            self.assertNotEqual(failures(probe, FakeTheme("new"), asked), [])

    def test_a_copy_of_the_arrow_without_a_name_becomes_the_themes_arrow(self):
        asked = Point("Qt", "DragMove", 1, 1, "dnd-move")
        libraries = {"left_ptr": ["arrow"], "dnd-move": ["arrow"]}
        self.assertEqual(failures(FakeProbe("arrow", "new", name="", libraries=libraries), FakeTheme("new"), asked), [])
        stays = FakeProbe("arrow", "arrow", name="", libraries=libraries)
        self.assertEqual(len(failures(stays, FakeTheme("new"), asked)), 1)

    def test_the_server_holds_what_has_a_name(self):
        judge = Judge(FakeProbe("own", name=""), Report(True))
        with contextlib.redirect_stdout(io.StringIO()):
            judge.desktops_own([POINT], FakeTheme("new"))
        self.assertFalse(judge.is_held_by_server(POINT))
        self.assertFalse(judge.is_held_by_server(Point("late xterm", "text", 1, 1, "xterm")))
        self.assertTrue(judge.is_held_by_server(Point("Qt", "Arrow", 1, 1, "left_ptr")))
        self.assertFalse(judge.is_held_by_server(Point("GTK", "text", 1, 1, "text")))


class ChildrenTest(unittest.TestCase):
    def test_no_descendant_is_left(self):
        children.adopt_orphans()
        shell = children.start(["sh", "-c", "sleep 1000 & echo $!; wait"], subprocess.DEVNULL,
                               stdout=subprocess.PIPE, text=True)
        grandchild = int(shell.stdout.readline())
        shell.kill()
        children.end_all()
        with self.assertRaises(ProcessLookupError):
            os.kill(grandchild, 0)
        shell.stdout.close()
        shell.wait()


if __name__ == "__main__":
    sys.exit(unittest.main())
