#!/usr/bin/env python3
"""Runs the fuzz targets of a build in turn, or several at a time.

  fuzz.py BUILD --seconds N [--runs N] [--seed N] [--jobs N] [--record FILE] [--minimise] [TARGET...]

What was found stays in BUILD/corpus/TARGET for the next run; an input that ends a target stays as BUILD/crash-TARGET-*.
--record adds the executions to the table in a file. --minimise adds to fuzz/corpus what reaches code that nothing
there reaches, in inputs of at most 1 KiB. Ends with 1 when a target was ended by an input.
"""
import argparse
import concurrent.futures
import pathlib
import re
import subprocess
import sys
import tempfile

SOURCE = pathlib.Path(__file__).resolve().parent.parent
LARGEST_KEPT = 1024
ROW = re.compile(r"^\| `(\w+)` \| *([\d,]+) \| *([\d,]+) \|$", re.M)


def programs(build, wanted):
    all_targets = sorted(path for path in (build / "fuzz").glob("fuzz_*") if path.is_file())
    found = [path for path in all_targets if not wanted or path.name.removeprefix("fuzz_") in
             [name.removeprefix("fuzz_") for name in wanted]]
    if not found or (wanted and len(found) < len(wanted)):
        sys.exit(f"There is no such target in {build / 'fuzz'}.")
    return found


def run(program, build, seconds, runs, seed):
    """(executions, edges, text of the failure or none). Seed 0: another one each time. Runs -1: without a limit."""
    name = program.name.removeprefix("fuzz_")
    corpus = build / "corpus" / name
    corpus.mkdir(parents=True, exist_ok=True)
    command = [program, corpus, SOURCE / "fuzz/corpus" / name, f"-max_total_time={seconds}", f"-runs={runs}",
               f"-seed={seed}", "-reload=0",
               "-rss_limit_mb=2048", "-timeout=30", f"-artifact_prefix={build}/crash-{name}-", "-print_final_stats=1"]
    done = subprocess.run(command, capture_output=True, text=True, errors="replace", check=False)
    executions = re.findall(r"number_of_executed_units:\s*(\d+)", done.stderr)
    edges = re.findall(r"\bcov: (\d+)", done.stderr)
    return (int(executions[-1]) if executions else 0, int(edges[-1]) if edges else 0,
            done.stderr if done.returncode else None)


def record(file, results):
    """Adds executions to the rows of the table; edges are those of the last run."""
    text = file.read_text(encoding="utf-8")
    counts = {name: int(count.replace(",", "")) for name, count, _ in ROW.findall(text)}

    def row(match):
        name = match[1]
        if name not in results:
            return match[0]
        executions, edges = results[name][:2]
        return f"| `{name}` | {counts[name] + executions:,} | {edges:,} |"

    file.write_text(ROW.sub(row, text), encoding="utf-8")


def minimise(program, build):
    name = program.name.removeprefix("fuzz_")
    kept = SOURCE / "fuzz/corpus" / name
    with tempfile.TemporaryDirectory() as folder:
        small = pathlib.Path(folder) / "small"
        small.mkdir()
        for path in (build / "corpus" / name).iterdir():
            if path.stat().st_size <= LARGEST_KEPT:
                (small / path.name).write_bytes(path.read_bytes())
        before = {path.name for path in kept.iterdir()}
        subprocess.run([program, "-merge=1", "-use_counters=0", "-timeout=10", kept, small], capture_output=True,
                       check=False, cwd=folder)
        return [path for path in kept.iterdir() if path.name not in before]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("targets", nargs="*")
    parser.add_argument("--seconds", type=int, default=60, help="for each target")
    parser.add_argument("--runs", type=int, default=-1, help="inputs for each target, if the seconds suffice")
    parser.add_argument("--seed", type=int, default=0, help="the same inputs in the same order")
    parser.add_argument("--jobs", type=int, default=1, help="targets at a time")
    parser.add_argument("--record", type=pathlib.Path)
    parser.add_argument("--minimise", action="store_true")
    options = parser.parse_intermixed_args()
    build = options.build.resolve()
    targets = programs(build, options.targets)
    results = {}
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        runs = {pool.submit(run, program, build, options.seconds, options.runs, options.seed): program for program in targets}
        for done in concurrent.futures.as_completed(runs):
            program = runs[done]
            name = program.name.removeprefix("fuzz_")
            executions, edges, failure = results[name] = done.result()
            print(f"{name}: {executions:,} executions, {edges:,} edges{', FAILED' if failure else ''}", flush=True)
            if failure:
                print(failure[-4000:], flush=True)
            if options.minimise and not failure:
                added = minimise(program, build)
                print(f"{name}: {len(added)} inputs added to the corpus", flush=True)
    if options.record:
        record(options.record, results)
    failed = sum(1 for result in results.values() if result[2])
    print(f"{len(results)} targets, {sum(result[0] for result in results.values()):,} executions, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
