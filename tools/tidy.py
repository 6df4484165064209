#!/usr/bin/env python3
"""Runs clang-tidy over the product's files, many of them as one.

clang-tidy looks with every check at every header that a file includes, which takes far longer than the file itself. So
files are put one behind another into a batch, and the headers are looked at once for all of them. A batch only shows
where there may be something to complain about: what counts is what is said of a file alone. That each file includes
what it uses is not seen here; the preset `release` compiles each without precompiled headers.

  tidy.py BUILD_FOLDER [--jobs N] [--batch N] [FILE...]    FILE: of the repository; default: all of the product

BUILD_FOLDER has a compile database of the preset `lint` and what moc makes. Ends with 1 when there is a complaint.
"""
import argparse
import concurrent.futures
import json
import os
import re
import shlex
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PRODUCT = re.compile(r"(base|platform|cursor|settings|themes|apply|app)/.*[.]cpp")
PLACE = re.compile(r"^(/[^:\n]*):(\d+):\d+: (?:warning|error): ", re.M)
NOISE = re.compile(r"\d+ (warnings?|errors?)\b.* (generated|treated)|Suppressed |Use -header-filter|$")
# Macros of one file would reach those behind it.
MACRO = re.compile(r"^#\s*(define|undef)\b", re.M)
LOCAL = re.compile(r"^namespace \{$(.*?)^\}  // namespace$", re.M | re.S)
DECLARED = re.compile(r"^(?!static_assert|namespace|using [\w:]+;)(?=\w)[^({=;\n]*?\b(\w+)(?: final)?\s*"
                      r"(?:[({=;\[]|:(?!:))", re.M)
USING = re.compile(r"^using [\w:]+::(\w+);", re.M)


def local_names(text):
    """What a file declares for itself alone. A name that is missed here costs time and nothing else."""
    return {name for part in LOCAL.findall(text) for name in DECLARED.findall(part)}


def taken_names(text):
    """What a file takes from elsewhere, which other files may take as well."""
    return set(USING.findall(text))


def fits_a_batch(text):
    """Not when it may take something that it does not use: another file of its batch may use that."""
    return not MACRO.search(text) and all(len(re.findall(rf"\b{name}\b", text)) > 1 for name in taken_names(text))


class Unit:
    """A file and how it is compiled."""

    def __init__(self, entry):
        self.path = os.path.relpath(os.path.join(entry["directory"], entry["file"]), ROOT)
        words = iter(entry["arguments"] if "arguments" in entry else shlex.split(entry["command"]))
        self.definitions, self.folders, self.options = {}, {}, []
        for word in words:
            if word.startswith("-D"):
                name, _, value = word[2:].partition("=")
                self.definitions[name] = value
            elif word.startswith("-I"):
                self.folders["-I", word[2:]] = None
            elif word == "-isystem":
                self.folders[word, next(words)] = None
            elif word.startswith(("-std=", "-W")):
                self.options.append(word)

    def read(self):
        with open(os.path.join(ROOT, self.path), encoding="utf-8") as file:
            self.text = file.read()
        self.names, self.taken = local_names(self.text), taken_names(self.text)


class Batch:
    """Files that can be compiled as one."""

    def __init__(self, *units):
        self.units, self.definitions, self.folders, self.names, self.taken = [], {}, {}, set(), set()
        for unit in units:
            self.add(unit)

    def takes(self, unit):
        apart = self.names.isdisjoint(unit.names | unit.taken) and self.taken.isdisjoint(unit.names)
        return apart and unit.options == self.units[0].options and all(
            self.definitions.get(name, value) == value for name, value in unit.definitions.items())

    def add(self, unit):
        self.units.append(unit)
        self.definitions.update(unit.definitions)
        self.folders.update(unit.folders)
        self.names.update(unit.names)
        self.taken.update(unit.taken)

    def join(self, path):
        """Writes them into one file, and returns the lines there that they begin on."""
        begins, line = [], 1
        with open(path, "w", encoding="utf-8") as joined:
            for unit in self.units:
                joined.write(unit.text)
                begins.append(line)
                line += unit.text.count("\n")
        return begins

    def flags(self):
        words = list(self.units[0].options)
        words += [f"-D{name}={value}" if value else f"-D{name}" for name, value in self.definitions.items()]
        return words + [word for folder in self.folders for word in folder]


def batches(units, most):
    """Neighbours share a batch, because they need the same headers; those over more of the toolkit come first."""
    made = []
    for unit in sorted(units, key=lambda unit: (-len(unit.folders), unit.path)):
        batch = next((batch for batch in made[-3:] if len(batch.units) < most and batch.takes(unit)), None)
        if batch:
            batch.add(unit)
        else:
            made.append(Batch(unit))
    return made


def tidy(path, flags):
    """What clang-tidy says of a file."""
    command = ["clang-tidy", "-quiet", f"--config-file={ROOT}/.clang-tidy", path, "--", *flags]
    result = subprocess.run(command, cwd=ROOT, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    said = "\n".join(line for line in result.stdout.splitlines() if not NOISE.match(line))
    return said or (f"{path}: error: clang-tidy ended with {result.returncode}" if result.returncode else "")


def judge_alone(unit):
    return tidy(unit.path, Batch(unit).flags())


def suspects(batch, path):
    """The files of a batch that there may be something to say of."""
    if len(batch.units) == 1:
        return batch.units
    begins = batch.join(path)
    # That one file's name is hidden by another's is no fault of either.
    said = tidy(path, [*batch.flags(), "-Wno-shadow"])
    if not said:
        return []
    if "[clang-diagnostic-error]" in said:
        print("These cannot be compiled together, so each is judged alone, which takes longer:",
              *(line for line in said.splitlines() if line.endswith("[clang-diagnostic-error]")), sep="\n", flush=True)
        return batch.units
    places = PLACE.findall(said)
    lines = [int(line) for file, line in places if file == path]
    if not lines or len(lines) != len(places):
        return batch.units
    found = {max(index for index, begin in enumerate(begins) if begin <= line) for line in lines}
    return [batch.units[index] for index in sorted(found)]


def judge(units, folder, jobs, most):
    """What there is to complain about in files of the product; the folder is for batches."""
    os.makedirs(folder, exist_ok=True)
    for unit in units:
        unit.read()
    fit = [unit for unit in units if fits_a_batch(unit.text)]
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        looked = [pool.submit(suspects, batch, os.path.join(folder, f"batch_{number}.cpp"))
                  for number, batch in enumerate(batches(fit, most))]
        answers = [pool.submit(judge_alone, unit) for unit in units if not fits_a_batch(unit.text)]
        for each in looked:
            answers += [pool.submit(judge_alone, unit) for unit in each.result()]
        return [answer.result() for answer in answers if answer.result()]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", metavar="BUILD_FOLDER")
    parser.add_argument("files", metavar="FILE", nargs="*")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--batch", type=int, default=20, help="files in a batch at most; 1: each alone")
    options = parser.parse_args()
    folder = os.path.abspath(options.build)
    with open(os.path.join(folder, "compile_commands.json"), encoding="utf-8") as file:
        compiled = [unit for unit in map(Unit, json.load(file)) if PRODUCT.fullmatch(unit.path)]
    # Suites compile some files once more, and come later.
    units = {unit.path: unit for unit in reversed(compiled)}
    absent = sorted(set(options.files) - set(units))
    if absent or not units:
        sys.exit(f"Not in the compile database: {' '.join(absent) or 'the product'}")
    complaints = judge([units[path] for path in options.files] or list(units.values()),
                       os.path.join(folder, "tidy"), options.jobs, options.batch)
    for complaint in complaints:
        print(complaint)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
