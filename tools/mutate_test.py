"""mutate.py finds the places of its list in today's sources and changes lines as it says."""
import contextlib
import io
import json
import pathlib
import sys
import tempfile
import unittest
from unittest import mock

import mutate

PROJECT = """cmake_minimum_required(VERSION 3.25)
project(small LANGUAGES CXX)
option(PINTLE_CORE_ONLY "As the real project" OFF)
add_library(limit STATIC cursor/limit.cpp)
add_executable(test_cursor tests/limit_test.cpp)
target_link_libraries(test_cursor limit)
set_target_properties(test_cursor PROPERTIES RUNTIME_OUTPUT_DIRECTORY tests)
"""
CODE = "int limited(int size) {\n    if (size > 48) return 48;\n    return size;\n}\n"
TEST = "int limited(int size);\nint main() { return limited(49) == 48 && limited(30) == 30 ? 0 : 1; }\n"


class SmallProject:
    """One rule and one suite, which notices another limit and a missing guard, but not where the limit begins."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        for name, text in (("CMakeLists.txt", PROJECT), ("cursor/limit.cpp", CODE), ("tests/limit_test.cpp", TEST)):
            path = self.folder / "source" / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        self.mutants = self.folder / "mutants.json"

    def run(self, *words, named=()):
        """(exit status, what was printed)"""
        self.mutants.write_text(json.dumps({"named": list(named), "accepted": []}), encoding="utf-8")
        printed = io.StringIO()
        with mock.patch.multiple(mutate, SOURCE=self.folder / "source", MUTANTS=self.mutants, FOLDERS=("cursor",),
                                 COPIED=("CMakeLists.txt", "cursor", "tests"), SUITES={"cursor": ("cursor",)}), \
                mock.patch.object(sys, "argv", ["mutate.py", "--build", str(self.folder / "build"), *words]), \
                contextlib.redirect_stdout(printed):
            return mutate.main(), printed.getvalue()


def changes(*lines):
    return [instead for _, instead in mutate.changes_of(list(lines), 0)]


class MutateTest(unittest.TestCase):
    def setUp(self):
        self.listed = json.loads(mutate.MUTANTS.read_text(encoding="utf-8"))

    def test_a_change_that_no_suite_notices_is_named_and_fails(self):
        with tempfile.TemporaryDirectory() as folder:
            status, printed = SmallProject(folder).run()
        self.assertEqual(status, 1, printed)
        self.assertEqual(printed.count("SURVIVED"), 1, printed)
        self.assertIn("-> if (size >= 48) return 48;", printed)

    def test_a_named_change_that_a_suite_notices_passes(self):
        entry = {"file": "cursor/limit.cpp", "old": "return 48", "new": "return 47"}
        with tempfile.TemporaryDirectory() as folder:
            status, printed = SmallProject(folder).run("--named", named=[entry])
        self.assertEqual(status, 0, printed)
        self.assertIn("noticed by cursor", printed)

    def test_each_named_place_stands_once_in_the_sources(self):
        self.assertEqual(len(list(mutate.named(self.listed["named"]))), len(self.listed["named"]))

    def test_each_accepted_survivor_has_a_place_and_a_reason(self):
        for entry in self.listed["accepted"]:
            text = " ".join((mutate.SOURCE / entry["file"]).read_text(encoding="utf-8").split())
            self.assertIn(" ".join(entry["old"].split()), text)
            self.assertTrue(entry["reason"])

    def test_there_are_places_in_each_folder_of_the_core(self):
        for folder in mutate.FOLDERS:
            found = [mutant for path in (mutate.SOURCE / folder).glob("*.cpp") for mutant in mutate.mutants_of(path)]
            self.assertGreater(len(found), 100, folder)

    def test_a_comparison_a_number_and_a_guard_change_one_at_a_time(self):
        self.assertEqual(changes("    if (size < 48) return;"),
                         [["    if (size <= 48) return;"], ["    if (size < 49) return;"], []])

    def test_a_statement_goes_and_changes_places_with_the_next(self):
        self.assertEqual(changes("    close(file);", "    report();"), [[], ["    report();", "    close(file);"]])

    def test_texts_comments_and_what_nobody_can_see_stay(self):
        for line in ('    const auto text = "1 < 2";', "// 1 < 2", "    rows.reserve(4);"):
            self.assertEqual(changes(line), [])


if __name__ == "__main__":
    unittest.main()
