#!/usr/bin/env python3
"""Tests of the check for missing translations."""
import unittest

from check_translations import complaints, marked, translations


def file_of(*messages):
    return "<TS><context><name>Pintle</name>" + "".join(messages) + "</context></TS>"


def message(source, translation, kind=""):
    return f"<message><source>{source}</source><translation{kind}>{translation}</translation></message>"


class Marked(unittest.TestCase):
    def test_pieces_are_one_text(self):
        self.assertEqual(list(marked('translatable(\n  "Pintle",\n  "one "\n  "two");')), ["one two"])

    def test_escapes_are_what_they_stand_for(self):
        self.assertEqual(list(marked(r'translatable("Pintle", "a \"b\"")')), ['a "b"'])

    def test_comments_mark_nothing(self):
        self.assertEqual(list(marked('// translatable("Pintle", "no")')), [])


class Complaints(unittest.TestCase):
    def of(self, texts, *messages):
        return list(complaints(set(texts), dict(translations(file_of(*messages)))))

    def test_nothing_is_said_of_a_whole_language(self):
        self.assertEqual(self.of(["All"], message("All", "Alle")), [])

    def test_a_missing_an_empty_and_an_unfinished_translation_are_reported(self):
        self.assertEqual(len(self.of(["All"])), 1)
        self.assertEqual(len(self.of(["All"], message("All", ""))), 1)
        self.assertEqual(len(self.of(["All"], message("All", "Alle", ' type="unfinished"'))), 1)

    def test_a_lost_place_for_a_value_is_reported(self):
        self.assertEqual(len(self.of(["Update %1"], message("Update %1", "Neu"))), 1)

    def test_a_translation_of_nothing_is_reported(self):
        self.assertEqual(len(self.of(["All"], message("All", "Alle"), message("Old", "Alt"))), 1)


if __name__ == "__main__":
    unittest.main()
