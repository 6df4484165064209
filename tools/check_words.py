#!/usr/bin/env python3
"""Fails when a text file refers to something that a reader of this repository does not have: numbered parts of a
document, tickets, folders of one machine.

  check_words.py FILE...        or file names on standard input, one a line
"""
import re
import sys

# Each pattern is written so that it does not match its own line.
PATTERNS = [
    re.compile(pattern) for pattern in (
        r"\bPart [1-5]\.[0-9]",
        r"\bspec[.]md",
        r"\b[t]he spec\b",
        r"\b[s]hared/",
        r"\b[Ii]ssue #?[0-9]+",
        r"(^|[^A-Za-z0-9_.])/(?:[w]ork|[r]oot|[t]mp/bash_jobs)/",
    )
]


def hits(text):
    """(line number, matched words) for each line that has some."""
    for number, line in enumerate(text.splitlines(), 1):
        for pattern in PATTERNS:
            found = pattern.search(line)
            if found:
                yield number, found.group(0).strip()


def main():
    bad = False
    for path in sys.argv[1:] or sys.stdin.read().splitlines():
        try:
            with open(path, encoding="utf-8") as file:
                text = file.read()
        except (UnicodeDecodeError, IsADirectoryError, FileNotFoundError):
            continue
        for number, words in hits(text):
            bad = True
            print(f'{path}:{number}: "{words}" means nothing to a reader of this repository')
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
