#!/usr/bin/env python3
"""Runs the benches of a build folder and judges the quotients of both sides of each job.

usage: run.py BUILD_FOLDER [--repetitions N] [--quick]

Prints one line per job. Ends with status 1 when a gate is missed. Both sides run in one process, interleaved at
random, so only their quotient counts; the times are those of this machine today.
"""
import argparse
import json
import os
import re
import subprocess
import sys

# Job name pattern: (gate, goal); absent means it is only reported. How many times the library's time ours is.
JUDGED = [
    (r"parse/", 8, 15),
    (r"set-1\.0/", 5, 20),
    (r"resample/", None, 5),
    (r"signature/", 20, 60),
]
# Of these groups one passing job is enough; the other jobs of JUDGED must each pass.
ANY_OF = [("parse/dmz", "parse/adwaita"), ("set-1.0/dmz", "set-1.0/adwaita")]
REFERENCE_SIDES = ("library", "copy")
# How many times the reference's share of a core the overlay may take: (gate, goal).
OVERLAY = {"moving": (1.3, 1.0), "at-rest": (3, 2)}
# Kilobytes above the start that may stay after a theme's release.
MEMORY_GATE, MEMORY_GOAL = 2048, 700


def arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build")
    parser.add_argument("--repetitions", type=int, default=9)
    parser.add_argument("--quick", action="store_true", help="both sides of every job once, to see that they run: no gate is judged")
    return parser.parse_args()


def run(options):
    repetitions, least = (2, "0.001") if options.quick else (options.repetitions, "0.1")
    command = [
        os.path.join(options.build, "bench", "pintle_bench"),
        "--benchmark_enable_random_interleaving=true",
        f"--benchmark_repetitions={repetitions}",
        "--benchmark_report_aggregates_only=true",
        f"--benchmark_min_time={least}",
        "--benchmark_format=json",
    ]
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)
    notes = [line for line in done.stderr.splitlines() if not line.startswith("***")]
    if done.returncode != 0:
        print("\n".join(notes))
        sys.exit(f"the benches ended with status {done.returncode}")
    return json.loads(done.stdout), notes


def medians(report):
    """Job to side to processor time in microseconds. Processor time, because other programs run as well."""
    units = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}
    jobs = {}
    for row in report["benchmarks"]:
        if row.get("aggregate_name") != "median":
            continue
        parts = row["run_name"].split("/")
        side = next(part for part in parts if part in (*REFERENCE_SIDES, "pintle"))
        job = "/".join(part for part in parts if part != side)
        jobs.setdefault(job, {})[side] = row["cpu_time"] * units[row["time_unit"]]
    return jobs


def judged(job):
    for pattern, gate, goal in JUDGED:
        if re.match(pattern, job):
            return gate, goal
    return None, None


def verdict(value, gate, goal):
    if gate is not None and value < gate:
        return "MISSES THE GATE"
    if goal is not None:
        return "goal" if value >= goal else "gate" if gate is not None else "below goal"
    return ""


def duration(microseconds):
    return f"{microseconds * 1000:.0f} ns" if microseconds < 1 else f"{microseconds:.1f} us"


def judge_memory(notes):
    failed = False
    for line in notes:
        match = re.match(r"memory: (\S+) loaded \+(-?\d+) KB, released \+(-?\d+) KB, trimmed \+(-?\d+) KB", line)
        if not match:
            continue
        theme, kept = match.group(1), int(match.group(4))
        word = "goal" if kept <= MEMORY_GOAL else "gate" if kept <= MEMORY_GATE else "MISSES THE GATE"
        failed |= kept > MEMORY_GATE
        print(f"{'memory kept/' + theme:<28}{match.group(2):>10} KB{kept:>10} KB"
              f"{'':>9}{MEMORY_GATE:>8}{MEMORY_GOAL:>8}  {word}")
    return failed


def judge_overlay(options):
    """Beside a bare loop while the pointer moves, and beside an empty timer while it rests."""
    command = [os.path.join(options.build, "bench", "overlay_bench"), "1" if options.quick else "30"]
    done = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=False)
    if done.returncode != 0:
        sys.exit(f"the overlay's bench ended with status {done.returncode}")
    failed = False
    for line in done.stdout.splitlines():
        _, job, reference, ours = line.split()
        value = float(ours) / max(float(reference), 0.001)
        gate, goal = OVERLAY[job]
        word = "goal" if value <= goal else "gate" if value <= gate else "MISSES THE GATE"
        failed |= value > gate
        print(f"{'overlay/' + job:<28}{float(reference):>11.2f} %{float(ours):>11.2f} %{value:>8.2f}x"
              f"{gate:>8}{goal:>8}  {word}")
    return failed


def judge_shell(options):
    """The application beside the least tray program, on a private desktop; needs the system's own Python."""
    command = ["/usr/bin/python3", os.path.join(os.path.dirname(os.path.abspath(__file__)), "shell", "measure.py"),
               options.build] + (["--quick"] if options.quick else [])
    print(f"\n{'job':<28}{'plain':>13}{'pintle':>13}{'times':>9}{'gate':>8}{'goal':>8}", flush=True)
    return subprocess.run(command, check=False).returncode != 0


def main():
    options = arguments()
    report, notes = run(options)
    for line in notes:
        if not line.startswith("memory:") and not re.match(r"\d{4}-|Run|CPU|  L|Load", line):
            print(line)
    print(f"\n{'job':<28}{'library':>13}{'pintle':>13}{'times':>9}{'gate':>8}{'goal':>8}")
    missed = set()
    for job, sides in sorted(medians(report).items()):
        reference = next((sides[side] for side in REFERENCE_SIDES if side in sides), None)
        if reference is None or "pintle" not in sides:
            continue
        value = reference / sides["pintle"]
        gate, goal = judged(job)
        word = verdict(value, gate, goal)
        if gate is not None and value < gate:
            missed.add(job)
        print(f"{job:<28}{duration(reference):>13}{duration(sides['pintle']):>13}{value:>8.1f}x"
              f"{gate or '':>8}{goal or '':>8}  {word}")
    failed = judge_memory(notes)
    overlay_failed = judge_overlay(options)
    shell_failed = judge_shell(options)

    jobs = medians(report)
    for group in ANY_OF:
        present = [job for job in group if job in jobs]
        if not present or any(job not in missed for job in present):
            missed.difference_update(group)
    others = [name for name, misses in (("memory", failed), ("overlay", overlay_failed), ("shell", shell_failed))
              if misses]
    if options.quick:
        print("the application was not measured" if shell_failed else "every job ran; no gate was judged")
        return 1 if shell_failed else 0
    if missed or others:
        print("missed: " + ", ".join(sorted(missed) + others))
        return 1
    print("every gate is passed")
    return 0


if __name__ == "__main__":
    sys.exit(main())
