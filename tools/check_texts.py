#!/usr/bin/env python3
"""Fails when a text of a view has no plain format: what it shows may come from an archive or a server, and without a
format the toolkit reads markup in it and fetches what that names.

  check_texts.py FILE.qml...
"""
import re
import sys

TEXT = re.compile(r"\b(?:Text|Label|TextEdit|TextArea)\s*\{")
# Written so that it stands for the property in any order among the others.
PLAIN = re.compile(r"^\s*textFormat:\s*(?:Text|TextEdit)\.PlainText\s*;?\s*$", re.MULTILINE)


def own_part(text, opening):
    """What stands between a brace and its partner, without what inner braces hold."""
    depth, own = 0, []
    for character in text[opening:]:
        if character == "{":
            depth += 1
        elif character == "}":
            depth -= 1
            if depth == 0:
                break
        elif depth == 1:
            own.append(character)
    return "".join(own)


def hits(text):
    """The line numbers of texts that name no plain format."""
    for found in TEXT.finditer(text):
        if not PLAIN.search(own_part(text, found.end() - 1)):
            yield text.count("\n", 0, found.start()) + 1


def main():
    bad = False
    for path in sys.argv[1:]:
        with open(path, encoding="utf-8") as file:
            for number in hits(file.read()):
                bad = True
                print(f"{path}:{number}: this text would show markup; it needs textFormat: Text.PlainText")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
