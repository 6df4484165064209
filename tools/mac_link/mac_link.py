#!/usr/bin/env python3
"""Compiles the core and the macOS backend for a Mac and links them, on a machine that is none.

The compiler comes from a package registry, pinned by the hashes of package-lock.json. The frameworks are stubs that
hold exactly the names which the objects ask for and our own declaration headers know; the C library is the
compiler's own list. The markup of the standard library says what Apple's library lacks at the lowest system that is
supported. Files that need the toolkit are not part of this.

  mac_link.py [--folder FOLDER] [--jobs N]      77: the compiler cannot be had
"""
import argparse
import hashlib
import json
import os
import platform
import re
import shutil
import subprocess
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
MINIMUM = "13.3"
#: Name of the architecture, target, CPU type in the header of the file.
ARCHITECTURES = [("arm64", "aarch64-macos." + MINIMUM, 0x0100000C), ("x86_64", "x86_64-macos." + MINIMUM, 0x01000007)]
DECLARATIONS = os.path.join(ROOT, "tests", "mac", "decl")
RUN_TIME = os.path.join(ROOT, "tests", "mac", "shim", "objc")
CORE = ["base", "cursor", "settings", "themes", "apply", "app"]
SKIPPED = 77

COMMON = [
    "-std=c++20", "-Wall", "-Wextra", "-Wnon-virtual-dtor", "-Werror", "-fno-sanitize=all",
    # Says what Apple's library has at the minimum version, which the static library linked here would hide.
    "-U_LIBCPP_HAS_VENDOR_AVAILABILITY_ANNOTATIONS", "-D_LIBCPP_HAS_VENDOR_AVAILABILITY_ANNOTATIONS=1",
    "-DFMT_HEADER_ONLY", "-DQT_NO_KEYWORDS", '-DPINTLE_VERSION="0.0.0"', '-DPINTLE_BUILD="0"',
]
OBJECTIVE = ["-x", "objective-c++", "-fobjc-arc", "-fblocks", "-Wno-nullability-completeness",
             "-Werror=unguarded-availability-new", "-Werror=objc-method-access"]
BACKEND = ["-Werror=unguarded-availability-new", "-Wno-nullability-completeness"]
#: Libraries that a Mac's build takes from elsewhere: a stub for each, by the beginning of their symbols.
THIRD_PARTY = {"hwy": "__ZN3hwy"}
TOOLKIT = re.compile(r'^\s*#\s*(?:include|import)\s*[<"](?:Qt?[A-Z]|platform/qt/|app/quick/)', re.M)


class Unavailable(Exception):
    """What is needed from outside cannot be had here."""


def say(text):
    print(f"mac-link: {text}", flush=True)


def run(command, **more):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True, **more).stdout


# ---- The compiler ---------------------------------------------------------------------------------------------------


def compiler(folder):
    """The path of the cross compiler and its library folder; fetches the package where it is missing."""
    home = os.path.join(folder, "compiler")
    machine = {"x86_64": "x64", "aarch64": "arm64"}.get(platform.machine(), platform.machine())
    program = os.path.join(home, "node_modules", "@zigc", f"linux-{machine}", "bin", "zig")
    library = os.path.join(home, "node_modules", "@zigc", "lib")
    lock = open(os.path.join(HERE, "package-lock.json"), "rb").read()
    mark = os.path.join(home, "installed")
    wanted = hashlib.sha256(lock).hexdigest()
    if os.path.exists(mark) and open(mark).read() == wanted and os.access(program, os.X_OK):
        return program, library
    if f"node_modules/@zigc/linux-{machine}" not in json.loads(lock)["packages"]:
        raise Unavailable(f"no compiler for {platform.machine()} is pinned")
    if not shutil.which("npm"):
        raise Unavailable("there is no npm to fetch the compiler with")
    shutil.rmtree(home, ignore_errors=True)
    os.makedirs(home)
    for name in ("package.json", "package-lock.json"):
        shutil.copy(os.path.join(HERE, name), home)
    say("fetching the compiler, 400 MB unpacked")
    try:
        done = subprocess.run(["npm", "install", "--ignore-scripts", "--no-audit", "--no-fund"],
                              cwd=home, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=600)
    except subprocess.TimeoutExpired as late:
        raise Unavailable("fetching the compiler took too long") from late
    # A package whose bytes do not have the pinned hash is not installed.
    if done.returncode != 0 or not os.access(program, os.X_OK) or not os.path.isdir(library):
        print(done.stdout[-2000:], file=sys.stderr)
        raise Unavailable("the compiler's package could not be fetched with the pinned hash")
    with open(mark, "w") as file:
        file.write(wanted)
    return program, library


def header_farm(folder):
    """A folder with the headers of the libraries alone, so that nothing else of this system is seen."""
    farm = os.path.join(folder, "include")
    os.makedirs(farm, exist_ok=True)
    for name in ("fmt", "hwy", "nlohmann"):
        if not os.path.isdir(f"/usr/include/{name}"):
            raise Unavailable(f"the headers of {name} are not installed")
        link = os.path.join(farm, name)
        if not os.path.islink(link):
            os.symlink(f"/usr/include/{name}", link)
    return farm


def definitions():
    """The texts that the build lists give their files, with the values they have there."""
    found = []
    for module in CORE:
        with open(os.path.join(ROOT, module, "CMakeLists.txt"), encoding="utf-8") as file:
            found += [f'-D{name}="{value}"'
                      for name, value in re.findall(r'set\((PINTLE_\w+) "([^"]*)" CACHE STRING', file.read())]
    return found


# ---- What is compiled -----------------------------------------------------------------------------------------------


def sources():
    """Paths from the root; the probe's files are last."""
    found = []
    for module in CORE:
        found += [f"{module}/{name}" for name in sorted(os.listdir(os.path.join(ROOT, module)))
                  if name.endswith(".cpp")]
    # The rest of that folder is compiled elsewhere only, see its CMakeLists.txt.
    found.append("platform/posix/signal_recovery.cpp")
    for top in ("platform/mac", "tools/mac_probe"):
        for folder, folders, names in os.walk(os.path.join(ROOT, top)):
            folders.sort()
            found += [os.path.relpath(os.path.join(folder, name), ROOT)
                      for name in sorted(names) if name.endswith((".cpp", ".mm"))]
    with_toolkit = [path for path in found if TOOLKIT.search(open(os.path.join(ROOT, path), encoding="utf-8").read())]
    return [path for path in found if path not in with_toolkit], with_toolkit


def write_ninja(folder, zig, library, farm, paths):
    quoted = lambda words: " ".join("'" + word + "'" if re.search(r'["\s]', word) else word for word in words)
    environment = (f"ZIG_LIB_DIR={library} ZIG_GLOBAL_CACHE_DIR={folder}/cache ZIG_LOCAL_CACHE_DIR={folder}/cache "
                   f"CCACHE_DISABLE=1")
    objects = {}
    lines = ["ninja_required_version = 1.10", f"builddir = {folder}"]
    for arch, target, _ in ARCHITECTURES:
        for kind, flags in (("core", []), ("backend", BACKEND), ("objective", OBJECTIVE)):
            lines += [f"rule {arch}_{kind}",
                      f"  command = {environment} {zig} c++ -target {target} {quoted(COMMON + definitions() + flags)} -I{ROOT} "
                      f"-isystem {farm} -isystem {DECLARATIONS} -idirafter {HERE}/shim -MD -MF $out.d -c $in -o $out",
                      "  depfile = $out.d", "  deps = gcc", f"  description = {arch} $in"]
        objects[arch] = []
        for path in paths:
            kind = "objective" if path.endswith(".mm") else "core" if path.split("/")[0] in CORE else "backend"
            out = f"{folder}/{arch}/{path}.o"
            objects[arch].append(out)
            lines.append(f"build {out}: {arch}_{kind} {ROOT}/{path}")
    with open(os.path.join(folder, "build.ninja"), "w") as file:
        file.write("\n".join(lines) + "\n")
    return objects


# ---- Stubs ----------------------------------------------------------------------------------------------------------


def symbols(objects, option):
    """The names of one kind in the objects."""
    listing = run(["llvm-nm", "--just-symbol-name", option, *objects])
    return {line.strip() for line in listing.splitlines() if line.strip() and not line.endswith(":")}


def declarations():
    """The text of each framework's declaration headers, by framework; those of the run-time are under "objc"."""
    texts = {}
    for folder, names in [*((folder, names) for folder, _, names in os.walk(DECLARATIONS)),
                          (RUN_TIME, os.listdir(RUN_TIME))]:
        framework = "objc" if folder == RUN_TIME else os.path.relpath(folder, DECLARATIONS).split(os.sep)[0]
        for name in names:
            if not name.endswith(".h"):
                continue
            text = open(os.path.join(folder, name), encoding="utf-8").read()
            text = re.sub(r"//[^\n]*|/\*.*?\*/", " ", text, flags=re.S)
            texts[framework] = texts.get(framework, "") + text
    return texts


def owner_of(symbol, texts):
    """The framework whose headers declare the symbol; none for the C library and the C++ library."""
    objective = re.fullmatch(r"_OBJC_(?:META)?CLASS_\$_(\w+)", symbol)
    if objective:
        pattern = re.compile(rf"@interface\s+{objective.group(1)}\b\s*[:{{<\n]")
    else:
        pattern = re.compile(rf"\b{re.escape(symbol[1:])}\b\s*[\[;(,]")
    owners = [framework for framework, text in texts.items() if framework != "." and pattern.search(text)]
    if len(owners) > 1:
        raise SystemExit(f"mac-link: {symbol} is declared in several frameworks: {', '.join(owners)}")
    return owners[0] if owners else None


def write_stub(path, install_name, names):
    classes = sorted({match.group(1) for name in names if (match := re.fullmatch(r"_OBJC_(?:META)?CLASS_\$_(\w+)", name))})
    plain = sorted(name for name in names if not name.startswith("_OBJC_"))
    listed = lambda items: "[ " + ", ".join(f"'{item}'" for item in items) + " ]"
    lines = ["--- !tapi-tbd", "tbd-version: 4", "targets: [ x86_64-macos, arm64-macos ]",
             f"install-name: '{install_name}'", "exports:", "  - targets: [ x86_64-macos, arm64-macos ]"]
    if plain:
        lines.append(f"    symbols: {listed(plain)}")
    if classes:
        lines.append(f"    objc-classes: {listed(classes)}")
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w") as file:
        file.write("\n".join(lines) + "\n...\n")


def write_stubs(folder, objects):
    """Stubs for what the objects leave undefined; the options that link them, and the libraries' install names."""
    undefined = symbols(objects, "--undefined-only") - symbols(objects, "--defined-only")
    texts = declarations()
    frameworks, options, names = {}, [], []
    libraries = {"objc": set(), **{library: set() for library in THIRD_PARTY}}
    for symbol in undefined:
        if re.match(r"__?objc_|__?OBJC_EHTYPE", symbol):
            libraries["objc"].add(symbol)
            continue
        third = [library for library, beginning in THIRD_PARTY.items() if symbol.startswith(beginning)]
        if third:
            libraries[third[0]].add(symbol)
            continue
        if symbol.startswith("__Z"):
            continue
        if symbol == "___CFConstantStringClassReference":
            frameworks.setdefault("CoreFoundation", set()).add(symbol)
            continue
        framework = owner_of(symbol, texts)
        if framework == "objc":
            libraries["objc"].add(symbol)
        elif framework:
            frameworks.setdefault(framework, set()).add(symbol)
    stubs = os.path.join(folder, "stubs")
    shutil.rmtree(stubs, ignore_errors=True)
    for framework, wanted in sorted(frameworks.items()):
        install = f"/System/Library/Frameworks/{framework}.framework/Versions/{'C' if framework in ('AppKit', 'Foundation') else 'A'}/{framework}"
        write_stub(f"{stubs}/{framework}.framework/{framework}.tbd", install, wanted)
        options += ["-framework", framework]
        names.append(install)
    for library, wanted in sorted(libraries.items()):
        if wanted:
            install = "/usr/lib/libobjc.A.dylib" if library == "objc" else f"@rpath/lib{library}.1.dylib"
            write_stub(f"{stubs}/lib{library}.tbd", install, wanted)
            options.append(f"-l{library}")
            names.append(install)
    return [f"-F{stubs}", f"-L{stubs}", *options], names, undefined


# ---- The binary -----------------------------------------------------------------------------------------------------


def check_binary(path, cpu, install_names):
    """Complaints about the linked file."""
    complaints = []
    with open(path, "rb") as file:
        head = file.read(16)
    magic, found_cpu, kind = (int.from_bytes(head[at:at + 4], "little") for at in (0, 4, 12))
    if (magic, found_cpu, kind) != (0xFEEDFACF, cpu, 2):
        complaints.append(f"magic {magic:#x}, CPU {found_cpu:#x}, kind {kind} is no program for this machine")
    commands = run(["llvm-objdump", "--macho", "--private-headers", path])
    minimum = re.search(r"cmd LC_BUILD_VERSION.*?platform (\S+).*?minos (\S+)", commands, re.S)
    if not minimum or minimum.group(1) not in ("macos", "1") or minimum.group(2) != MINIMUM:
        complaints.append(f"the lowest system is not {MINIMUM}: {minimum.groups() if minimum else 'none named'}")
    used = set(re.findall(r"^\s+(\S+) \(compatibility", run(["llvm-objdump", "--macho", "--dylibs-used", path]), re.M))
    allowed = {"/usr/lib/libSystem.B.dylib", *install_names}
    if used != allowed:
        complaints.append(f"libraries: {sorted(used - allowed)} too many, {sorted(allowed - used)} missing")
    if cpu == 0x0100000C and "LC_CODE_SIGNATURE" not in commands:
        complaints.append("no signature, without which this machine starts no program")
    return complaints


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--folder", default=os.path.join(ROOT, "build-mac"))
    parser.add_argument("--jobs", default=str(os.cpu_count()))
    options = parser.parse_args()
    folder = os.path.abspath(options.folder)
    started = time.monotonic()
    os.makedirs(folder, exist_ok=True)
    try:
        zig, library = compiler(folder)
        farm = header_farm(folder)
    except Unavailable as reason:
        say(f"SKIPPED: {reason}")
        return SKIPPED
    paths, with_toolkit = sources()
    if with_toolkit:
        say("left out, because they need the toolkit: " + ", ".join(with_toolkit))
    objects = write_ninja(folder, zig, library, farm, paths)
    if subprocess.run(["ninja", "-C", folder, "-j", options.jobs, "--quiet"], check=False).returncode != 0:
        say("FAILED: not everything compiles for a Mac")
        return 1
    environment = {**os.environ, "ZIG_LIB_DIR": library, "ZIG_GLOBAL_CACHE_DIR": f"{folder}/cache",
                   "ZIG_LOCAL_CACHE_DIR": f"{folder}/cache"}
    failed = False
    for arch, target, cpu in ARCHITECTURES:
        links, names, undefined = write_stubs(f"{folder}/{arch}", objects[arch])
        forbidden = sorted(name for name in undefined if re.match(r"_(CGS|CoreCursor)", name))
        if forbidden:
            say(f"FAILED: {arch} links private functions, which must be looked up: {', '.join(forbidden)}")
            failed = True
        program = f"{folder}/{arch}/mac_probe"
        command = [zig, "c++", "-target", target, "-fno-sanitize=all", *objects[arch], "-o", program, *links]
        # The first link also builds the standard library, and its warnings fill screens.
        with open(f"{folder}/{arch}/link.log", "w") as log:
            done = subprocess.run(command, env=environment, stdout=log, stderr=log, check=False)
        if done.returncode != 0:
            errors = [line for line in open(f"{folder}/{arch}/link.log") if "error" in line or "undefined" in line]
            print("".join(errors[:40]), file=sys.stderr)
            say(f"FAILED: {arch} does not link; {folder}/{arch}/link.log says why")
            failed = True
            continue
        complaints = check_binary(program, cpu, names)
        for complaint in complaints:
            say(f"FAILED: {arch}: {complaint}")
        failed = failed or bool(complaints)
        if not complaints:
            say(f"{arch}: {len(objects[arch])} files, {len(names)} libraries and frameworks, "
                f"{os.path.getsize(program) // 1024} KB, macOS {MINIMUM} and later")
    say(f"{'FAILED' if failed else 'linked'} in {time.monotonic() - started:.0f} s")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
