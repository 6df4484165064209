"""mutate.py finds the places of its list in today's sources and changes lines as it says."""
import json
import unittest

import mutate


def changes(*lines):
    return [instead for _, instead in mutate.changes_of(list(lines), 0)]


class MutateTest(unittest.TestCase):
    def setUp(self):
        self.listed = json.loads(mutate.MUTANTS.read_text(encoding="utf-8"))

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
