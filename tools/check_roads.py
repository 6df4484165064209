#!/usr/bin/env python3
"""Reads the #include lines and fails on a road that runs the wrong way.

Rooms stand in a row and include only themselves and what is before them; a backend includes base, the
interfaces and its own folder; the core names no toolkit, no window system and no platform macro.

  check_roads.py [ROOT]
"""
import os
import re
import sys

ROW = ["base", "platform", "cursor", "settings", "themes", "apply", "app", "app/qt"]
BACKENDS = ["platform/fake", "platform/qt", "platform/posix", "platform/linux", "platform/mac"]
#: What exists only to look at the rest, or to be pointed at by it.
FREE = ["tests", "bench", "fuzz"]
CORE = ROW[:-1]
SUFFIXES = (".h", ".hpp", ".cpp", ".cc", ".c", ".mm", ".m")

INCLUDE = re.compile(r'^\s*#\s*(?:include|import)\s*([<"])([^>"]+)[>"]')
FOREIGN = re.compile(r"^(Qt?[A-Z][A-Za-z]+(/.*)?|X11/.*|xcb/.*|[A-Z][A-Za-z]+/[A-Z][A-Za-z]+\.h|q[a-z]+\.h)$")
CONDITION = re.compile(r"^\s*#\s*(?:if|ifdef|ifndef|elif)\b(.*)")
PLATFORM_MACRO = re.compile(r"\b(_WIN(?:32|64)|_{0,2}(?:linux|unix|APPLE|MACH|OBJC|FreeBSD|ANDROID|gnu_linux)(?:__)?"
                            r"|TARGET_OS_\w+|Q_OS_\w+|QT_\w+)\b")


def room_of(path):
    """The room of a file by its path from the root; none for files outside the rooms."""
    folders = path.split("/")[:-1]
    for length in range(len(folders), 0, -1):
        room = "/".join(folders[:length])
        if room in BACKENDS or room in ROW:
            return room
        if room in FREE:
            return "free"
    return None


def may_include(room, target):
    if room == target or room == "free":
        return True
    if room in BACKENDS:
        return target in ("base", "platform")
    if target in BACKENDS:
        # Only the composition root knows which backends there are.
        return room == "app/qt" and target != "platform/fake"
    return target in ROW and ROW.index(target) < ROW.index(room)


def problems_in(path, lines):
    """(line number, complaint) for each wrong line of the file at `path` from the root."""
    room = room_of(path)
    if room in (None, "free"):
        return
    for number, line in enumerate(lines, 1):
        condition = CONDITION.match(line)
        if condition and room in CORE and PLATFORM_MACRO.search(condition.group(1)):
            yield number, f"{room} asks which platform it is on"
        include = INCLUDE.match(line)
        if not include:
            continue
        kind, target = include.groups()
        if kind == "<":
            if room in CORE and FOREIGN.match(target):
                yield number, f"{room} includes <{target}>, which is a toolkit's or a platform's"
            continue
        target_room = room_of(target)
        if ".." in target.split("/"):
            yield number, f'"{target}" does not run from the root'
        elif target_room is None:
            if room in CORE and FOREIGN.match(target):
                yield number, f'{room} includes "{target}", which is a toolkit\'s or a platform\'s'
            elif "/" not in target and not (target.endswith(".moc") and room not in CORE):
                yield number, f'"{target}" does not run from the root'
        elif not may_include(room, target_room):
            yield number, f'{room} must not include "{target}"'


def sources(root):
    for folder, folders, files in os.walk(root):
        folders[:] = [name for name in folders
                      if not name.startswith(".") and name != "build" and not name.startswith("build-")]
        for name in files:
            if name.endswith(SUFFIXES):
                yield os.path.relpath(os.path.join(folder, name), root)


def check(root):
    complaints = []
    for path in sorted(sources(root)):
        with open(os.path.join(root, path), encoding="utf-8", errors="replace") as file:
            complaints += [f"{path}:{number}: {text}" for number, text in problems_in(path, file)]
    return complaints


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    complaints = check(root)
    for complaint in complaints:
        print(complaint)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
