#!/usr/bin/env python3
"""Type-checks the macOS backend on another system: Clang's Objective-C++ with ARC, against this repository's own
declarations of the desktop's interfaces in tests/mac.

  mac_typecheck.py [FILE...]     checks these files, or all of platform/mac and of the probe

Exits with 77 when there is no Clang 14.
"""
import concurrent.futures
import os
import shutil
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
COMPILER = "clang"
NO_COMPILER = 77
COMMON = ["-fsyntax-only", "-std=c++20", "-Wall", "-Wextra", "-Wshadow", "-Wnon-virtual-dtor", "-Werror"]
# Availability is the cross compiler's to judge: it knows the target's version.
OBJECTIVE = ["-x", "objective-c++", "-fobjc-arc", "-fblocks", "-fobjc-runtime=macosx-13.3",
             "-Wno-unguarded-availability-new"]
HEADERS = ["-I", ROOT, "-isystem", os.path.join(ROOT, "tests/mac/decl"),
           "-isystem", os.path.join(ROOT, "tests/mac/shim")]


def backend():
    folders = [os.path.join(ROOT, folder) for folder in ("platform/mac", "tools/mac_probe")]
    return sorted(os.path.join(folder, name) for folder in folders for name in os.listdir(folder)
                  if name.endswith((".cpp", ".mm")))


def check(path):
    """The compiler's words about a file; empty when it is right."""
    language = OBJECTIVE if path.endswith(".mm") else ["-x", "c++"]
    done = subprocess.run([COMPILER, *language, *COMMON, *HEADERS, path], capture_output=True, text=True, check=False)
    if done.returncode == 0:
        return ""
    return done.stderr or f"{COMPILER} ended with {done.returncode}\n"


def main():
    if not shutil.which(COMPILER):
        print(f"There is no {COMPILER} here; the type check of the macOS backend is skipped.")
        return NO_COMPILER
    paths = sys.argv[1:] or backend()
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        answers = list(pool.map(check, paths))
    sys.stderr.write("".join(answers))
    wrong = sum(1 for answer in answers if answer)
    print(f"{len(paths)} files of the macOS backend, {wrong} with mistakes.")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
