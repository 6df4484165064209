"""tidy.py puts files together that can be compiled together, and says what clang-tidy says of each alone."""
import contextlib
import io
import os
import pathlib
import shutil
import tempfile
import unittest
from unittest import mock

import tidy

REPOSITORY = tidy.ROOT
OWN = "namespace {\nint own(int size) { return size + %d; }\n}  // namespace\nint %s() { return own(1); }\n"
GOOD = "int %s() { return 1; }\n"
ZERO = "bool %s(const int* at) {\n    return at != 0;\n}\n"


def unit(path, text="", *words):
    made = tidy.Unit({"directory": tidy.ROOT, "file": path, "arguments": ["c++", "-std=c++20", *words]})
    made.text, made.names, made.taken = text, tidy.local_names(text), tidy.taken_names(text)
    return made


class Batches(unittest.TestCase):
    def paths(self, units, most=20):
        return [[each.path for each in batch.units] for batch in tidy.batches(units, most)]

    def test_names_of_a_file_alone_are_what_it_declares_at_the_margin_of_its_own_namespace(self):
        text = """#include <map>
namespace pintle {
namespace {
using x11::Reply;
namespace fs = std::filesystem;
constexpr std::size_t kMost = 4;
std::map<std::string, int> table{{"a", 1}};
struct Row final : Base {
    int inner = 1;
};
enum class Kind : int { one };
static_assert(kMost > 3);

[[nodiscard]] bool
isDigit(char c) { return c == '1'; }

}  // namespace
int shared() { return 1; }
}  // namespace pintle
"""
        self.assertEqual(tidy.local_names(text), {"kMost", "table", "Row", "Kind", "isDigit"})

    def test_neighbours_share_a_batch_up_to_its_size(self):
        self.assertEqual(self.paths([unit(f"base/{name}.cpp") for name in "cab"], 2),
                         [["base/a.cpp", "base/b.cpp"], ["base/c.cpp"]])

    def test_files_with_the_same_name_for_different_things_are_parted(self):
        self.assertEqual(self.paths([unit("base/a.cpp", OWN % (1, "a")), unit("base/b.cpp", OWN % (2, "b")),
                                     unit("base/c.cpp")]), [["base/a.cpp", "base/c.cpp"], ["base/b.cpp"]])

    def test_a_name_is_shared_by_those_that_take_it_and_not_with_one_that_declares_it(self):
        taking = "using std::count;\nint %s = count(1);\n"
        self.assertEqual(self.paths([unit("base/a.cpp", taking % "a"), unit("base/b.cpp", taking % "b"),
                                     unit("base/c.cpp", "namespace {\nint count() { return 1; }\n}  // namespace\n")]),
                         [["base/a.cpp", "base/b.cpp"], ["base/c.cpp"]])

    def test_files_that_are_compiled_with_different_values_or_options_are_parted(self):
        self.assertEqual(len(self.paths([unit("a.cpp", "", "-DA=1"), unit("b.cpp", "", "-DA=2")])), 2)
        self.assertEqual(len(self.paths([unit("a.cpp"), unit("b.cpp", "", "-Wall")])), 2)
        self.assertEqual(len(self.paths([unit("a.cpp", "", "-DA=1"), unit("b.cpp", "", "-DB=2", "-I/b")])), 1)

    def test_a_file_with_macros_or_with_an_unused_name_of_another_is_judged_alone(self):
        self.assertFalse(tidy.fits_a_batch("# define A 1\n"))
        self.assertFalse(tidy.fits_a_batch("using std::string;\n"))
        self.assertTrue(tidy.fits_a_batch("using std::string;\nstring text;\n"))


@unittest.skipUnless(shutil.which("clang-tidy"), "there is no clang-tidy")
class Judging(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        shutil.copy(os.path.join(REPOSITORY, ".clang-tidy"), self.root)
        replaced = mock.patch.object(tidy, "ROOT", folder.name)
        replaced.start()
        self.addCleanup(replaced.stop)

    def judge(self, **texts):
        units = []
        for name, text in texts.items():
            path = self.root / "base" / (name + ".cpp")
            path.parent.mkdir(exist_ok=True)
            path.write_text(text)
            units.append(unit(f"base/{name}.cpp", text, "-Wall", "-Wshadow", "-Werror"))
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            complaints = tidy.judge(units, str(self.root / "build"), 2, 20)
        return "\n".join(complaints), output.getvalue()

    def test_nothing_is_said_of_good_files_that_were_judged_as_one(self):
        self.assertEqual(self.judge(a=OWN % (1, "a"), b=GOOD % "b", c=GOOD % "c"), ("", ""))

    def test_a_finding_in_a_batch_is_reported_at_its_place_in_its_file(self):
        complaints, _ = self.judge(a=GOOD % "a", b=ZERO % "b", c=GOOD % "c")
        self.assertIn("base/b.cpp:2:18: error: use nullptr [modernize-use-nullptr", complaints)
        self.assertEqual(complaints.count("error:"), 1)

    def test_a_finding_in_a_shared_header_is_reported(self):
        (self.root / "base").mkdir()
        (self.root / "base" / "zero.h").write_text("#pragma once\ninline " + ZERO % "isSet")
        include = f'#include "{self.root}/base/zero.h"\n'
        complaints, _ = self.judge(a=include + GOOD % "a", b=include + GOOD % "b")
        self.assertIn("base/zero.h:3:18: error: use nullptr [modernize-use-nullptr", complaints)

    def test_files_whose_names_collide_all_the_same_are_judged_alone(self):
        text = "static const int\n    two = 2;\nint %s() { return two; }\n"
        complaints, output = self.judge(a=text % "a", b=text % "b", c=ZERO % "c")
        self.assertIn("cannot be compiled together", output)
        self.assertIn("base/c.cpp:2:18", complaints)
        self.assertEqual(complaints.count("error:"), 1)

    def test_a_file_that_does_not_compile_alone_is_reported(self):
        complaints, _ = self.judge(a=GOOD % "a", b="Size b() { return 1; }\n")
        self.assertIn("base/b.cpp:1:1: error: unknown type name 'Size'", complaints)


if __name__ == "__main__":
    unittest.main()
