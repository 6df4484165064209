#!/usr/bin/env python3
"""Fails when a text that people read is missing in a language: each translatable("Pintle", "...") of the sources must
have a finished translation in every file of translations, with the same places for values. A translation whose text is
nowhere is reported as well.

  check_translations.py SOURCE... FILE.ts...
"""
import re
import sys
import xml.etree.ElementTree as ElementTree

MARK = re.compile(r'\btranslatable\(\s*"Pintle"\s*,\s*((?:"(?:[^"\\]|\\.)*"\s*)+)\)')
PIECE = re.compile(r'"((?:[^"\\]|\\.)*)"')
ESCAPE = re.compile(r"\\(.)")


def marked(text):
    """The texts that a source marks, as the program has them; comments count for nothing."""
    text = re.sub(r"^\s*//.*$", "", text, flags=re.MULTILINE)
    for found in MARK.finditer(text):
        joined = "".join(PIECE.findall(found.group(1)))
        yield ESCAPE.sub(lambda escape: {"n": "\n", "t": "\t"}.get(escape.group(1), escape.group(1)), joined)


def translations(text):
    """What a file of translations has, text by text; absent for what is not finished."""
    for context in ElementTree.fromstring(text).iter("context"):
        if context.findtext("name") != "Pintle":
            continue
        for message in context.iter("message"):
            translation = message.find("translation")
            finished = translation is not None and translation.get("type") is None and translation.text
            yield message.findtext("source"), translation.text if finished else None


def complaints(texts, known):
    """What is wrong with one language, in sentences."""
    for text in sorted(texts):
        if not known.get(text):
            yield f'"{text}" has no translation'
        elif known[text].count("%1") != text.count("%1"):
            yield f'"{text}" and its translation have different places for values'
    for text in sorted(set(known) - texts):
        yield f'"{text}" is translated and nowhere in the sources'


def main():
    sources = [path for path in sys.argv[1:] if not path.endswith(".ts")]
    languages = [path for path in sys.argv[1:] if path.endswith(".ts")]
    texts = set()
    for path in sources:
        with open(path, encoding="utf-8") as file:
            texts.update(marked(file.read()))
    bad = not languages or not texts
    for path in languages:
        with open(path, encoding="utf-8") as file:
            for complaint in complaints(texts, dict(translations(file.read()))):
                bad = True
                print(f"{path}: {complaint}")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
