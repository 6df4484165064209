#!/usr/bin/env python3
"""Changes one place of the core at a time and runs the suites that cover it: what no suite notices is not tested.

  mutate.py [--seed N] [--count N] [--named] [--only TEXT] [--build FOLDER] [--jobs N] [--most-survivors N]

Works on a copy of the sources in a build folder of its own, where only the changed file is compiled and linked before
the built ones. The places are chosen by the seed. --named takes instead those of tools/mutants.json, where also the
accepted survivors stand, each with the reason why no test can or should notice it. Prints the survivors and their share;
ends with 1 when more than --most-survivors (0) survived.
"""
import argparse
import json
import os
import pathlib
import random
import re
import resource
import shlex
import shutil
import subprocess
import sys
import time

SOURCE = pathlib.Path(__file__).resolve().parent.parent
FOLDERS = ("cursor", "themes", "apply", "settings", "app")
#: Suites by folder, the one that is likeliest to notice first.
SUITES = {
    "base": ("base", "apply", "settings"),
    "cursor": ("cursor", "themes", "apply"),
    "themes": ("themes", "app"),
    "apply": ("apply", "overlay", "app"),
    "settings": ("settings", "app", "themes"),
    "app": ("app",),
}
COPIED = ("app", "apply", "base", "cmake", "cursor", "fuzz", "platform", "settings", "tests", "themes", "CMakeLists.txt")
MUTANTS = SOURCE / "tools/mutants.json"
MEMORY = 4 << 30
LINKER = ["-fuse-ld=lld"] if shutil.which("ld.lld") else []

COMPARISONS = {" < ": " <= ", " <= ": " < ", " > ": " >= ", " >= ": " > ", " == ": " != ", " != ": " == ",
               " && ": " || ", " || ": " && ", " + ": " - ", " - ": " + "}
NUMBER = re.compile(r"(?<![\w.\"'{x])(\d+)(\.\d+)?(?![\w.\"'x])")
WORD = re.compile(r"\b(true|false)\b")
STATEMENT = re.compile(r"^\s+(?!return\b|using\b|const\b|constexpr\b|static\b|auto\b|else\b|throw\b|break\b|case\b)"
                       r"[\w:.>()\[\]*+\-]+(?:\(.*\)| = .*| \+= .*);$")
GUARD = re.compile(r"^\s+if \(.*\) (?:return\b.*|continue|break);$")
CALL = re.compile(r"^(\s+)[\w:.>()\-]+\(.*\);$")
#: What changes nothing that can be seen.
INVISIBLE = re.compile(r"\breserve\(|\bstatic_assert\b|^\s*(#|//|\*|namespace\b|template\b)|\bassert\(")


def code_parts(line):
    """[(start, end)] of a line outside its texts and its comment."""
    parts, start, quote, i = [], 0, None, 0
    while i < len(line):
        character = line[i]
        if quote:
            if character == "\\":
                i += 1
            elif character == quote:
                quote, start = None, i + 1
        elif character in "\"'" and not (character == "'" and i and line[i - 1].isdigit()):
            parts.append((start, i))
            quote = character
        elif line.startswith("//", i):
            parts.append((start, i))
            return parts
        i += 1
    if not quote:
        parts.append((start, len(line)))
    return parts


def replaced(line, at, old, new):
    return line[:at] + new + line[at + len(old):]


def changes_of(lines, index):
    """The changed texts of a line, each as a list of the lines that stand there instead, with how many they replace."""
    line = lines[index]
    if INVISIBLE.search(line):
        return
    for start, end in code_parts(line):
        part = line[start:end]
        for old, new in COMPARISONS.items():
            for found in re.finditer(re.escape(old), part):
                yield 1, [replaced(line, start + found.start(), old, new)]
        for found in NUMBER.finditer(part):
            number = found[0]
            new = str(int(number) + 1) if "." not in number else repr(float(number) * 2 + 1)
            yield 1, [replaced(line, start + found.start(), number, new)]
        for found in WORD.finditer(part):
            yield 1, [replaced(line, start + found.start(), found[0], "false" if found[0] == "true" else "true")]
    if STATEMENT.match(line) and line.count("(") == line.count(")"):
        yield 1, []
    if GUARD.match(line):
        yield 1, []
    following = lines[index + 1] if index + 1 < len(lines) else ""
    first, second = CALL.match(line), CALL.match(following)
    if first and second and first[1] == second[1] and line != following and line.count("(") == line.count(")"):
        yield 2, [following, line]


def mutants_of(path):
    lines = path.read_text(encoding="utf-8").split("\n")
    for index in range(len(lines)):
        for count, instead in changes_of(lines, index):
            yield {"file": str(path.relative_to(SOURCE)), "line": index + 1,
                   "old": "\n".join(lines[index:index + count]), "new": "\n".join(instead)}


def key_of(mutant):
    def squeezed(text):
        return " ".join(text.split())
    return mutant["file"], squeezed(mutant["old"]), squeezed(mutant["new"])


class Bench:
    """A copy of the sources with its build folder."""

    def __init__(self, folder, jobs):
        self.folder, self.jobs = folder, jobs
        self.copy, self.build = folder / "source", folder / "build"
        self.seconds, self.compilations, self.links = {}, {}, {}

    def prepare(self, suites):
        self.copy.mkdir(parents=True, exist_ok=True)
        for name in COPIED:
            source, target = SOURCE / name, self.copy / name
            if source.is_file():
                self.put(source, target)
                continue
            kept = set()
            for file in source.rglob("*"):
                if file.is_file() and "corpus" not in file.parts:
                    kept.add(target / file.relative_to(source))
                    self.put(file, target / file.relative_to(source))
            for file in target.rglob("*"):
                if file.is_file() and file not in kept:
                    file.unlink()
        configure = ["cmake", "-S", self.copy, "-B", self.build, "-G", "Ninja", "-DPINTLE_CORE_ONLY=ON",
                     "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON",
                     "--log-level=ERROR"]
        subprocess.run(configure, check=True, stdout=subprocess.DEVNULL)
        if not self.compile(suites):
            sys.exit("The unchanged sources do not build.")
        for suite in suites:
            started = time.monotonic()
            if not self.passes(self.program(suite), 600):
                sys.exit(f"The suite {suite} fails on the unchanged sources.")
            self.seconds[suite] = time.monotonic() - started
        self.read_commands(suites)

    @staticmethod
    def put(source, target):
        content = source.read_bytes()
        if target.is_file() and target.read_bytes() == content:
            return
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_bytes(content)
        shutil.copymode(source, target)

    def compile(self, suites):
        command = ["cmake", "--build", self.build, f"-j{self.jobs}", "--target", *(f"test_{suite}" for suite in suites)]
        return subprocess.run(command, capture_output=True, check=False).returncode == 0

    def program(self, suite):
        return next(self.build.glob(f"tests/**/test_{suite}"))

    def passes(self, program, limit):
        """Whether a suite passes within a limit of seconds, with a home and a memory of its own."""
        home = self.folder / "home"
        home.mkdir(exist_ok=True)
        try:
            return subprocess.run([program, "--gtest_brief=1", "--gtest_fail_fast"], capture_output=True, timeout=limit,
                                  check=False, cwd=program.parent, env=os.environ | {"HOME": str(home)},
                                  preexec_fn=limit_memory).returncode == 0
        except subprocess.TimeoutExpired:
            return False

    def read_commands(self, suites):
        """How each file is compiled and each suite is linked, asked from the build once."""
        with open(self.build / "compile_commands.json", encoding="utf-8") as file:
            self.compilations = {entry["file"]: entry["command"] for entry in json.load(file)}
        for suite in suites:
            target = str(self.program(suite).relative_to(self.build))
            told = subprocess.run(["ninja", "-C", self.build, "-t", "commands", "-s", target], check=True, text=True,
                                  capture_output=True).stdout
            # What is done with a linked program stands after it.
            self.links[suite] = next(words for words in map(shlex.split, told.strip().split("&&"))
                                     if "-o" in words and words[words.index("-o") + 1] == target)

    def compile_changed(self, changed, path):
        """The object that stands before the libraries in place of the unchanged one, and that one's name; none when it
        does not compile."""
        words = shlex.split(self.compilations[str(path)])
        # Nothing changed is compiled twice.
        cached = next((at for at, word in enumerate(words) if word.endswith("/ccache")), -1)
        words = words[cached + 1:]
        unchanged = words[words.index("-o") + 1]
        result = str(self.folder / "changed.o")
        words = [{unchanged: result, str(path): str(changed)}.get(word, word) for word in words]
        good = subprocess.run(words, capture_output=True, check=False, cwd=self.build).returncode == 0
        return (result, unchanged) if good else None

    def link_changed(self, suite, objects):
        changed, unchanged = objects
        words = [word for word in self.links[suite] if word != unchanged]
        at = words.index("-o") + 1
        program = self.program(suite)
        program = program.with_name(program.name + "_changed")
        words[at:at + 1] = [str(program), changed, *LINKER]
        good = subprocess.run(words, capture_output=True, check=False, cwd=self.build).returncode == 0
        return program if good else None

    def verdict(self, mutant):
        """The suite that noticed, "compiler", or none for a survivor."""
        path = self.copy / mutant["file"]
        lines = path.read_text(encoding="utf-8").split("\n")
        first = mutant["line"] - 1
        count = mutant["old"].count("\n") + 1
        text = lines[:first] + (mutant["new"].split("\n") if mutant["new"] else []) + lines[first + count:]
        changed = path.with_name("changed_" + path.name)
        try:
            changed.write_text("\n".join(text), encoding="utf-8")
            objects = self.compile_changed(changed, path)
        finally:
            changed.unlink()
        if not objects:
            return "compiler"
        for suite in SUITES[mutant["file"].split("/")[0]]:
            program = self.link_changed(suite, objects)
            if not program:
                return "compiler"
            if not self.passes(program, 10 + 4 * self.seconds[suite]):
                return suite
        return None


def limit_memory():
    """A changed loop must not take the machine's."""
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))


def named(listed):
    for entry in listed:
        text = (SOURCE / entry["file"]).read_text(encoding="utf-8")
        if text.count(entry["old"]) != 1:
            sys.exit(f"{entry['file']} does not hold once: {entry['old']}")
        before, after = text.split(entry["old"])
        start = before.rfind("\n") + 1
        end = after.find("\n")
        yield {"file": entry["file"], "line": before.count("\n") + 1,
               "old": before[start:] + entry["old"] + after[:end], "new": before[start:] + entry["new"] + after[:end]}


def chosen(options, listed):
    accepted = {key_of(entry) for entry in listed["accepted"]}
    if options.named:
        return [mutant for mutant in named(listed["named"])
                if options.only in mutant["file"] and key_of(mutant) not in accepted]
    everything = []
    for folder in FOLDERS:
        for path in sorted((SOURCE / folder).glob("*.cpp")):
            everything += mutants_of(path)
    everything = [mutant for mutant in everything if options.only in mutant["file"]]
    chance = random.Random(options.seed)
    chance.shuffle(everything)
    return [mutant for mutant in everything if key_of(mutant) not in accepted]


def shown(mutant):
    new = mutant["new"].strip() or "(removed)"
    return f"{mutant['file']}:{mutant['line']}: {mutant['old'].strip()}\n    -> {new}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, default=20, help="mutants that compile")
    parser.add_argument("--named", action="store_true")
    parser.add_argument("--only", default="", help="part of the file's name")
    parser.add_argument("--build", type=pathlib.Path, default=SOURCE / "build-mutants")
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--most-survivors", type=int, default=0)
    options = parser.parse_intermixed_args()
    mutants = chosen(options, json.loads(MUTANTS.read_text(encoding="utf-8")))
    count = len(mutants) if options.named else options.count
    bench = Bench(options.build.resolve(), options.jobs)
    bench.prepare(sorted({suite for suites in SUITES.values() for suite in suites}))
    started = time.monotonic()
    tried, survivors = 0, []
    for mutant in mutants:
        if tried == count:
            break
        verdict = bench.verdict(mutant)
        if verdict == "compiler":
            if options.named:
                sys.exit(f"Does not compile: {shown(mutant)}")
            continue
        tried += 1
        if verdict is None:
            survivors.append(mutant)
            print(f"SURVIVED {shown(mutant)}", flush=True)
        elif options.named:
            print(f"noticed by {verdict}: {shown(mutant)}", flush=True)
    share = 100 * len(survivors) / max(tried, 1)
    print(f"{tried} mutants, {len(survivors)} survived ({share:.1f} %), "
          f"{time.monotonic() - started:.0f} seconds, seed {options.seed}")
    return 1 if len(survivors) > options.most_survivors else 0


if __name__ == "__main__":
    sys.exit(main())
