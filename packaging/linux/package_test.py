"""Builds the package, unpacks it, runs the program from there on a private desktop and looks at the pointer; the same
from a prefix of `cmake --install`. Ends with 1 when something is not as it must be, with 77 where there is no dpkg.

  package_test.py BUILD_FOLDER      of the preset dev: the tools of the desktop tours are taken from there
"""
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
sys.path.insert(1, str(ROOT / "tests" / "desktop"))

import children  # noqa: E402
import points  # noqa: E402
from desktop import Desktop  # noqa: E402
from judge import Judge  # noqa: E402
from program import Pintle  # noqa: E402
from report import Report  # noqa: E402
from theme import Theme, write_preferences  # noqa: E402

NAME = "com.pintle.app"
RELEASE = ROOT / "build-release"
THEME = ("bibata-modern-ice", "Bibata-Modern-Ice")


def output(*command):
    """What a command prints on both of its streams."""
    done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True, check=False)
    return done.returncode, done.stdout.strip()


class PackageTest:
    def __init__(self, build, folder):
        self.tools = str(build / "tests" / "desktop")
        self.folder = folder
        self.report = Report(quiet=True)
        self.check = self.report.check

    def build(self):
        self.report.stage("The package is built")
        for old in RELEASE.glob("*.deb"):
            old.unlink()
        status, said = output(str(ROOT / "dev"), "package")
        found = list(RELEASE.glob("*.deb"))
        if status != 0 or len(found) != 1:
            raise RuntimeError(f"./dev package ended with {status} and made {found}:\n{said[-4000:]}")
        self.package = found[0]
        print(f"  {self.package.name}, {self.package.stat().st_size} bytes", flush=True)

    def field(self, name):
        return output("dpkg-deb", "-f", self.package, name)[1]

    def look_inside(self):
        self.report.stage("What it says and holds")
        version, architecture = self.field("Version"), self.field("Architecture")
        self.check("its name has version and architecture", self.package.name == f"pintle_{version}_{architecture}.deb",
                   f"{version} {architecture}")
        needed = [each.split(" ")[0] for each in self.field("Depends").split(", ")]
        for package in ("libc6", "libxcb1", "qml6-module-qtquick"):
            self.check(f"it needs {package}", package in needed, str(needed))
        root = self.folder / "unpacked"
        subprocess.run(["dpkg-deb", "-x", self.package, root], check=True)
        self.root = root / "usr"
        files = sorted(str(path.relative_to(root)) for path in root.rglob("*") if not path.is_dir())
        self.check("everything is below /usr", all(file.startswith("usr/") for file in files), str(files))
        content = (self.root / "bin/pintle").read_bytes()
        for place in (str(ROOT), str(RELEASE)):
            self.check(f"the program does not know {place}", place.encode() not in content)
        self.validators()

    def validators(self):
        """Each says nothing when it has nothing to say."""
        share = self.root / "share"
        metainfo = share / f"metainfo/{NAME}.metainfo.xml"
        silent = [("desktop-file-validate", share / f"applications/{NAME}.desktop"),
                  ("man", "--warnings", "-l", share / "man/man1/pintle.1.gz")]
        for command in silent:
            status, said = output(*command)
            if command[0] == "man":
                said = "" if said.startswith("PINTLE(1)") else said
            self.check(f"{command[0]} has nothing to say", status == 0 and not said, said)
        status, said = output("appstreamcli", "validate", "--no-net", metainfo)
        # There is no address of a home page, and none is invented; only newer validators know the complaint.
        if "url-homepage-missing" in said:
            status, said = output("appstreamcli", "validate", "--no-net", "--override=url-homepage-missing=pedantic",
                                  metainfo)
        self.check("appstreamcli has nothing to say", status == 0 and said.endswith("Validation was successful."), said)
        status, said = output("lintian", "--fail-on", "error", "--allow-root", self.package)
        print("  lintian: " + (said or "nothing"), flush=True)
        self.check("lintian finds no error", status == 0, said)

    def run(self, title, program):
        self.report.stage(title)
        with Desktop(self.tools) as desktop:
            judge = Judge(desktop.probe, self.report)
            theme = Theme(*THEME, self.tools)
            desktop.start_xterm("xterm", 20, 80)
            looked_at = points.xterm("xterm", desktop.probe) + points.root(1460, 860)
            judge.desktops_own(looked_at, theme)
            theme.install(desktop.data)
            write_preferences(desktop.config, currentThemeId=theme.identifier, cursorScale=1.0)
            running = Pintle(desktop, str(program))
            judge.stage(title + ": the pointer", looked_at, theme)
            self.check("it still runs", running.is_running(), desktop.log_text("pintle")[-2000:])
            running.process.send_signal(signal.SIGTERM)
            self.check("it dies by the signal that ends it", running.process.wait(20) == -signal.SIGTERM)
            # What the README advises people whose pointer is still the theme's.
            judge.stage(title + ": without the program", looked_at, theme)
            os.remove(os.path.join(desktop.config, NAME + ".plist"))
            running = Pintle(desktop, str(program))
            judge.stage(title + ": started without settings", looked_at)
            running.kill()
            judge.stage(title + ": and without the program again", looked_at)

    def install(self):
        prefix = self.folder / "a prefix"
        status, said = output("cmake", "--install", RELEASE, "--prefix", prefix)
        self.check("cmake --install ends well", status == 0, said)
        return prefix / "bin/pintle"

    def story(self):
        self.build()
        self.look_inside()
        self.run("Unpacked from the package", self.root / "bin/pintle")
        self.run("Installed below a prefix", self.install())
        return self.report.close()


def main():
    if not shutil.which("dpkg-deb"):
        print("There is no dpkg here.")
        return 77
    with tempfile.TemporaryDirectory(prefix="pintle-package-") as folder:
        return 0 if PackageTest(pathlib.Path(sys.argv[1]), pathlib.Path(folder)).story() else 1


if __name__ == "__main__":
    children.run(main)
