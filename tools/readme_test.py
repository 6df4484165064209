#!/usr/bin/env python3
"""The README and the other pages for newcomers: their commands are those that CI runs, and what they name is there."""
import os
import re
import subprocess
import unittest

import yaml

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PAGES = ("README.md", "CONTRIBUTING.md", "SECURITY.md", "CHANGELOG.md")


def read(*path):
    with open(os.path.join(ROOT, *path), encoding="utf-8") as file:
        return file.read()


def section(page, title):
    """What stands below a heading of the second level."""
    found = re.search(rf"^## {re.escape(title)}\n(.*?)(?=^## |\Z)", page, re.M | re.S)
    return found.group(1) if found else ""


def commands(text):
    """The lines of the indented blocks, without comments; what is divided by && is two commands."""
    lines = [line.split(" # ")[0].strip() for line in re.findall(r"^    (\S.*)$", text, re.M)]
    return [plain(part) for line in lines for part in line.split("&&")]


def plain(command):
    """A command without what depends on who types it: sudo, the answer to questions, a display, the exit status."""
    command = re.sub(r"^(sudo|env( -u \w+)+) ", "", command.strip())
    command = re.sub(r" \|\| .*$", "", command)
    return re.sub(r"^apt-get (\w+)( -[qy]+)*", r"apt \1", command)


def steps(workflow):
    """Every command line of a workflow."""
    content = yaml.safe_load(read(".github", "workflows", workflow))
    return [plain(part) for job in content["jobs"].values() for step in job["steps"] if "run" in step
            for line in step["run"].splitlines() for part in line.split("&&")]


def run_by_ci():
    """The command lines of the script that every change must pass."""
    return [plain(line) for line in read(".ci", "run").splitlines() if not line.startswith("#")]


class Readme(unittest.TestCase):
    def test_the_commands_to_install_are_those_that_the_workflow_types_on_a_bare_system(self):
        typed = commands(section(read("README.md"), "Install"))
        self.assertTrue(any(command.startswith("./dev package") for command in typed), typed)
        for command in typed:
            self.assertIn(command, steps("linux.yml"))

    def test_the_two_commands_to_build_are_run_for_every_change_and_on_a_bare_system(self):
        typed = commands(section(read("README.md"), "Build"))
        self.assertEqual(typed, ["./dev run", "./dev test"])
        for command in (*typed, "./dev run wayland"):
            self.assertIn(command, steps("linux.yml"))
        self.assertIn("./dev run", run_by_ci())
        self.assertIn("./dev test --all", run_by_ci())

    def test_the_package_is_built_by_the_readmes_command_in_a_test_too(self):
        test = read("packaging", "linux", "package_test.py")
        self.assertRegex(test, r'output\(str\(ROOT / "dev"\), "package"\)')

    def test_the_commands_for_a_mac_are_those_of_its_workflow(self):
        typed, run = commands(section(read("README.md"), "On a Mac")), steps("macos.yml")
        # There the machine has CMake, and the toolkit comes by an action of its own.
        given = {"cmake", "pipx"}
        brewed = set(next(command for command in typed if command.startswith("brew install ")).split()[2:])
        fetched = set(next(command for command in run if command.startswith("brew install ")).split()[2:])
        self.assertEqual(brewed - given, fetched)
        for command in typed:
            if command.startswith("cmake"):
                self.assertTrue(any(each.startswith(command) for each in run), command)
        pinned = re.search(r'version: "([\d.]+)"', read(".github", "workflows", "macos.yml")).group(1)
        for toolkit in (f"aqt install-qt mac desktop {pinned} clang_64", f"Qt/{pinned}/macos"):
            self.assertTrue(any(toolkit in command for command in typed), toolkit)

    def test_each_command_of_the_script_that_a_page_names_exists(self):
        script = read("dev")
        for page in PAGES:
            for command in re.findall(r"\./dev ([a-z][\w-]*)", read(page)):
                self.assertRegex(script, rf"(?m)^{re.escape(command)}\)", page)

    def test_the_table_for_contributors_has_every_command_of_the_help(self):
        listed = set(re.findall(r"\./dev ([a-z][\w-]*)", subprocess.run(
            [os.path.join(ROOT, "dev"), "help"], capture_output=True, text=True, check=True).stdout)) - {"help"}
        table = set(re.findall(r"^\| `\./dev ([a-z][\w-]*)", read("CONTRIBUTING.md"), re.M))
        self.assertEqual(table, listed)

    def test_every_file_and_folder_that_a_page_names_is_there(self):
        folders = {name for name in os.listdir(ROOT) if os.path.isdir(os.path.join(ROOT, name))
                   and not name.startswith(("build", ".git"))}
        for page in PAGES:
            text = read(page)
            linked = re.findall(r'\]\(([^)#:]+)[^):]*\)|src="([^":]+)"', text)
            named = {first or second for first, second in linked}
            named |= {path for path in re.findall(r"`([\w.-]+/[\w./-]*)`", text) if path.split("/")[0] in folders}
            for path in named:
                self.assertTrue(os.path.exists(os.path.join(ROOT, path)), f"{page}: {path}")

    def test_a_moving_picture_is_no_larger_than_half_a_megabyte(self):
        folder = os.path.join(ROOT, "docs", "images")
        moving = [name for name in os.listdir(folder) if name.endswith((".webp", ".gif"))]
        self.assertTrue(moving)
        for name in moving:
            self.assertLessEqual(os.path.getsize(os.path.join(folder, name)), 500_000, name)


if __name__ == "__main__":
    unittest.main()
