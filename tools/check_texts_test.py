"""check_texts.py finds texts that would show markup and nothing else."""
import unittest

import check_texts


def lines(text):
    return list(check_texts.hits(text))


class CheckTexts(unittest.TestCase):
    def test_a_text_without_a_format_is_found_by_its_line(self):
        self.assertEqual(lines("Item {\n    Text {\n        text: a\n    }\n}\n"), [2])

    def test_a_plain_text_is_not_found(self):
        self.assertEqual(lines("Text {\n    text: a\n    textFormat: Text.PlainText\n}\n"), [])

    def test_the_format_of_an_inner_text_is_not_that_of_the_outer_one(self):
        inner = "Text {\n    text: a\n    Text {\n        textFormat: Text.PlainText\n    }\n}\n"
        self.assertEqual(lines(inner), [1])

    def test_other_formats_do_not_count(self):
        self.assertEqual(lines("Text {\n    textFormat: Text.StyledText\n}\n"), [1])
        self.assertEqual(lines("contentItem: Text {\n    textFormat: Text.AutoText\n}\n"), [1])

    def test_a_control_whose_name_ends_with_text_is_no_text(self):
        self.assertEqual(lines("RichText {\n    text: a\n}\n"), [])


if __name__ == "__main__":
    unittest.main()
