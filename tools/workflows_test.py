#!/usr/bin/env python3
"""The workflow files: that they are well-formed, and that what they call is there."""
import os
import re
import subprocess
import tempfile
import unittest

import yaml

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
FOLDER = os.path.join(ROOT, ".github", "workflows")


def workflows():
    for name in sorted(os.listdir(FOLDER)):
        with open(os.path.join(FOLDER, name), encoding="utf-8") as file:
            # "on" is a word of its own there and a truth value to the parser.
            yield name, yaml.safe_load(re.sub(r"^on:", '"on":', file.read(), flags=re.M))


class Workflows(unittest.TestCase):
    def test_there_is_one_for_each_desktop(self):
        self.assertEqual([name for name, _ in workflows()], ["linux.yml", "macos.yml"])

    def test_each_has_a_name_its_events_and_jobs_with_steps(self):
        for name, content in workflows():
            self.assertEqual(content["name"] + ".yml", name)
            self.assertEqual(set(content["on"]), {"push", "pull_request", "workflow_dispatch"}, name)
            self.assertTrue(content["jobs"], name)
            for job in content["jobs"].values():
                self.assertLessEqual(set(job), {"runs-on", "container", "timeout-minutes", "strategy", "steps"}, name)
                self.assertIn("runs-on", job, name)
                self.assertTrue(job["steps"], name)

    def test_a_step_either_runs_something_or_uses_a_versioned_action(self):
        for name, content in workflows():
            for job in content["jobs"].values():
                for step in job["steps"]:
                    self.assertEqual(("run" in step) + ("uses" in step), 1, (name, step))
                    self.assertLessEqual(
                        set(step), {"name", "run", "uses", "with", "env", "if", "continue-on-error"}, (name, step))
                    if "uses" in step:
                        self.assertRegex(step["uses"], r"^[\w.-]+/[\w.-]+@v\d+$", name)

    def test_every_expression_names_something_that_is_defined(self):
        for name, content in workflows():
            text = open(os.path.join(FOLDER, name), encoding="utf-8").read()
            axes = {axis for job in content["jobs"].values() for axis in job.get("strategy", {}).get("matrix", {})}
            for expression in re.findall(r"\$\{\{\s*(.*?)\s*\}\}", text):
                axis = re.fullmatch(r"matrix\.(\w+)", expression)
                hashed = re.fullmatch(r"hashFiles\('([^']+)'\)", expression)
                self.assertTrue(axis or hashed, (name, expression))
                if axis:
                    self.assertIn(axis.group(1), axes, name)
                if hashed:
                    self.assertTrue(os.path.exists(os.path.join(ROOT, hashed.group(1))), (name, expression))

    def test_every_command_of_the_script_exists(self):
        script = open(os.path.join(ROOT, "dev"), encoding="utf-8").read()
        for name, content in workflows():
            for job in content["jobs"].values():
                for step in job["steps"]:
                    for command in re.findall(r"\./dev ([\w-]+)", step.get("run", "")):
                        self.assertRegex(script, rf"(?m)^{re.escape(command)}\)", name)

    def test_a_label_without_tests_is_an_error(self):
        found = [(name, line) for name, content in workflows() for job in content["jobs"].values()
                 for step in job["steps"] for line in step.get("run", "").splitlines() if "ctest " in line]
        self.assertTrue(found)
        for name, line in found:
            self.assertIn("--no-tests=error", line, name)

    def test_the_mac_jobs_run_on_images_that_are_there_with_a_toolkit_that_links_on_them(self):
        job = dict(workflows())["macos.yml"]["jobs"]["mac"]
        self.assertEqual(job["strategy"]["matrix"]["os"], ["macos-15", "macos-26"])
        toolkit = next(step for step in job["steps"] if "install-qt-action" in step.get("uses", ""))
        self.assertGreaterEqual([int(part) for part in toolkit["with"]["version"].split(".")], [6, 9, 2])

    def test_a_mac_that_fails_says_why(self):
        steps = dict(workflows())["macos.yml"]["jobs"]["mac"]["steps"]
        start = next(at for at, step in enumerate(steps) if step.get("run", "").count("open -n") == 2)
        evidence = next(at for at, step in enumerate(steps) if "log show" in step.get("run", ""))
        upload = next(at for at, step in enumerate(steps) if "upload-artifact" in step.get("uses", ""))
        # The picture is of the second start, and taken before anything of that step can fail after it.
        script = steps[start]["run"]
        self.assertLess(script.rindex("open -n"), script.index("screencapture"))
        self.assertLess(script.index("screencapture"), script.index("test "))
        self.assertLess(start, evidence)
        self.assertLess(evidence, upload)
        self.assertIn("DiagnosticReports", steps[evidence]["run"])
        for at in (evidence, upload):
            self.assertEqual(steps[at]["if"], "always()")
        self.assertEqual(steps[upload]["with"]["path"].split(), ["probe.json", "run.log", "crashes", "pictures", "screen.png"])

    def test_a_link_for_the_mac_that_cannot_be_tried_is_no_success(self):
        with tempfile.TemporaryDirectory() as folder:
            # Everything is installed, and the linking says that there is no compiler.
            for name, script in (("dpkg-query", 'shift 2; for package; do echo "installed $package"; done'),
                                 ("npm", "exit 1"), ("nice", "exit 77")):
                path = os.path.join(folder, name)
                with open(path, "w", encoding="utf-8") as file:
                    file.write(f"#!/bin/sh\n{script}\n")
                os.chmod(path, 0o755)
            done = subprocess.run([os.path.join(ROOT, "dev"), "mac-link"], stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT, text=True, timeout=60, check=False,
                                  env={**os.environ, "PATH": folder + os.pathsep + os.environ["PATH"]})
        self.assertEqual(done.returncode, 77, done.stdout)


if __name__ == "__main__":
    unittest.main()
