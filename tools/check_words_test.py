"""check_words.py finds the words it is for and nothing else."""
import unittest

import check_words


def found(text):
    return [words for _, words in check_words.hits(text)]


class WordsTest(unittest.TestCase):
    def test_references_that_lead_nowhere_are_found(self):
        for first, second in (("Part 3", ".1 says"), ("see spec", ".md"), ("in share", "d/notes"), ("iss", "ue #12"),
                              ("Iss", "ue 3"), ("th", "e spec says"), ("open /wo", "rk/a"), ("/ro", "ot/x")):
            self.assertEqual(len(found(first + second)), 1, first + second)

    def test_ordinary_words_pass(self):
        for text in ("a part of 3.1 pixels", "a shared pointer", "issue the command", "specific", "/usr/share/icons",
                     "network/rooted/", "a freedesktop specification"):
            self.assertEqual(found(text), [], text)


if __name__ == "__main__":
    unittest.main()
