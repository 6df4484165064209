#!/usr/bin/env python3
"""What `./dev run` starts, and where: the script itself in a folder in which nothing is compiled, installed or drawn."""
import os
import re
import shutil
import subprocess
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SHELL_TOUR = os.path.join("tests", "desktop", "shell", "shell_tour.py")
SWAY_TOUR = os.path.join("tests", "desktop", "wayland", "sway_tour.py")
SAYS_WHAT_IT_IS = "#!/bin/sh\necho \"started $(basename \"$0\") $*\"\n"
STUBS = {
    "apt-get": "#!/bin/sh\necho \"apt-get $*\" >&2\nexit 1\n",
    # Every package is there.
    "dpkg-query": "#!/bin/sh\nshift 2\nfor each; do echo \"installed $each\"; done\n",
    "cmake": "#!/bin/sh\necho \"cmake $*\"\n",
}


class DevRun(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="dev-run-")
        self.addCleanup(shutil.rmtree, self.folder)
        shutil.copy(os.path.join(ROOT, "dev"), self.folder)
        self.write("build/pintle", SAYS_WHAT_IT_IS)
        for tour in (SHELL_TOUR, SWAY_TOUR):
            self.write(tour, "import sys\nprint('started', *sys.argv)\n")
        for name, text in STUBS.items():
            self.write("programs/" + name, text)

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        os.chmod(path, 0o755)

    def dev(self, *arguments, **variables):
        environment = {key: value for key, value in os.environ.items() if key not in ("DISPLAY", "WAYLAND_DISPLAY")}
        environment["PATH"] = os.path.join(self.folder, "programs") + ":" + environment.get("PATH", "/usr/bin:/bin")
        return subprocess.run([os.path.join(self.folder, "dev"), "run", *arguments], env=environment | variables,
                              capture_output=True, text=True, timeout=50, check=False)

    def started(self, *arguments, **variables):
        """(what was started at the end, all targets that were built before)"""
        result = self.dev(*arguments, **variables)
        self.assertEqual(result.returncode, 0, result.stderr)
        lines = result.stdout.splitlines()
        self.assertTrue(lines[-1].startswith("started "), result.stdout)
        return lines[-1][len("started "):].strip(), set(re.findall(r"--target (\w+)", result.stdout))

    def test_on_an_x_display_the_program_starts_there(self):
        self.assertEqual(self.started(DISPLAY=":5"), ("pintle", {"pintle"}))

    def test_in_a_wayland_session_the_program_starts_there(self):
        self.assertEqual(self.started(WAYLAND_DISPLAY="wayland-0", DISPLAY=":0"), ("pintle", {"pintle"}))
        self.assertEqual(self.started(WAYLAND_DISPLAY="wayland-0"), ("pintle", {"pintle"}))

    def test_without_a_display_it_is_a_tour_of_a_virtual_x_desktop(self):
        command, targets = self.started()
        self.assertEqual(command, SHELL_TOUR + " --build build --short")
        self.assertEqual(targets, {"pintle", "tour_programs"})
        self.assertEqual(self.started(DISPLAY="", WAYLAND_DISPLAY="")[0], command)

    def test_a_private_wayland_session_is_shown_whatever_display_there_is(self):
        command, targets = self.started("wayland")
        self.assertEqual(command.split()[0], SWAY_TOUR)
        self.assertEqual(targets, {"pintle", "tour_programs", "driver"})
        self.assertEqual(self.started("wayland", DISPLAY=":5", WAYLAND_DISPLAY="wayland-0")[0], command)

    def test_the_private_wayland_session_is_the_one_of_the_test_runs(self):
        command = self.started("wayland")[0].split()
        with open(os.path.join(ROOT, os.path.dirname(SWAY_TOUR), "CMakeLists.txt"), encoding="utf-8") as file:
            tested = re.search(r"NAME desktop\.sway_tour COMMAND (.*?)\)\n", file.read(), re.S).group(1)
        self.assertIn("/sway_tour.py", tested)
        # Here it says what it sees while it goes; the looks are the same.
        self.assertEqual(set(re.findall(r"--\w+", tested)) - {"--quiet"}, {each for each in command if each[:2] == "--"})

    def test_another_word_behind_it_starts_nothing(self):
        for words in (("x11",), ("wayland", "now"), ("",)):
            result = self.dev(*words, DISPLAY=":5")
            self.assertEqual((result.returncode, result.stdout), (2, ""), words)
            self.assertIn("./dev run [wayland]", result.stderr)


if __name__ == "__main__":
    unittest.main()
