#!/usr/bin/env python3
"""Reads the #include lines and fails on a dependency that runs the wrong way.

Modules stand in a row and include only themselves and what is before them; a backend includes base, the interfaces,
its own folder and the backends it is built on; the core names no toolkit, no window system and no platform macro.

  check_dependencies.py [ROOT]
"""
import os
import re
import sys

ROW = ["base", "platform", "cursor", "settings", "themes", "apply", "app", "app/quick", "app/root"]
#: Each backend with those that it is built on.
BACKENDS = {
    "platform/fake": (),
    "platform/mac": (),
    "platform/qt": (),
    "platform/posix": (),
    "platform/plist": ("platform/posix",),
    "platform/freedesktop": ("platform/posix",),
    "platform/x11": ("platform/freedesktop",),
    "platform/wayland": ("platform/x11",),
}
#: What exists only to look at the rest, or to be pointed at by it.
FREE = ["tests", "bench", "fuzz"]
CORE = ROW[:-2]
SUFFIXES = (".h", ".hpp", ".cpp", ".cc", ".c", ".mm", ".m")

INCLUDE = re.compile(r'^\s*#\s*(?:include|import)\s*([<"])([^>"]+)[>"]')
FOREIGN = re.compile(r"^(Qt?[A-Z][A-Za-z]+(/.*)?|X11/.*|xcb/.*|[A-Z][A-Za-z]+/[A-Z][A-Za-z]+\.h|q[a-z]+\.h)$")
CONDITION = re.compile(r"^\s*#\s*(?:if|ifdef|ifndef|elif)\b(.*)")
PLATFORM_MACRO = re.compile(r"\b(_WIN(?:32|64)|_{0,2}(?:linux|unix|APPLE|MACH|OBJC|FreeBSD|ANDROID|gnu_linux)(?:__)?"
                            r"|TARGET_OS_\w+|Q_OS_\w+|QT_\w+)\b")


def module_of(path):
    """The module of a file by its path from the root; none for files outside the modules."""
    folders = path.split("/")[:-1]
    for length in range(len(folders), 0, -1):
        module = "/".join(folders[:length])
        if module in BACKENDS or module in ROW:
            return module
        if module in FREE:
            return "free"
    return None


def may_include(module, target):
    if module == target or module == "free":
        return True
    if module in BACKENDS:
        return target in ("base", "platform") or target in BACKENDS[module]
    if target in BACKENDS:
        # Only the root knows which backends there are; the views are the toolkit's.
        return target != "platform/fake" and module == "app/root" or (module, target) == ("app/quick", "platform/qt")
    return target in ROW and ROW.index(target) < ROW.index(module)


def problems_in(path, lines):
    """(line number, complaint) for each wrong line of the file at `path` from the root."""
    module = module_of(path)
    if module in (None, "free"):
        return
    for number, line in enumerate(lines, 1):
        condition = CONDITION.match(line)
        if condition and module in CORE and PLATFORM_MACRO.search(condition.group(1)):
            yield number, f"{module} asks which platform it is on"
        include = INCLUDE.match(line)
        if not include:
            continue
        kind, target = include.groups()
        if kind == "<":
            if module in CORE and FOREIGN.match(target):
                yield number, f"{module} includes <{target}>, which is a toolkit's or a platform's"
            continue
        target_module = module_of(target)
        if ".." in target.split("/"):
            yield number, f'"{target}" does not run from the root'
        elif target_module is None:
            if module in CORE and FOREIGN.match(target):
                yield number, f'{module} includes "{target}", which is a toolkit\'s or a platform\'s'
            elif "/" not in target and not (target.endswith(".moc") and module not in CORE):
                yield number, f'"{target}" does not run from the root'
        elif not may_include(module, target_module):
            yield number, f'{module} must not include "{target}"'


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
