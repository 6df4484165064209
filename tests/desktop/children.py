"""Child processes that never outlive the tour.

A forgotten child keeps the pipes of the test runner open, so each is tied to this process three ways: the
kernel kills it when this process dies, its orphans become children of this process, and end_all() kills
whatever is left, deepest first or not, until nothing is.
"""
import ctypes
import os
import signal
import subprocess
import sys
import time

PR_SET_PDEATHSIG = 1
PR_SET_CHILD_SUBREAPER = 36
_libc = ctypes.CDLL(None, use_errno=True)


def adopt_orphans():
    """From now on processes whose parent died below this one become its children."""
    _libc.prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)


def _die_with_parent():
    _libc.prctl(PR_SET_PDEATHSIG, signal.SIGKILL, 0, 0, 0)


def start(arguments, log, **options):
    """A child whose standard error (and output, unless asked for) goes to the open file `log`."""
    options.setdefault("stdin", subprocess.DEVNULL)
    options.setdefault("stdout", log)
    return subprocess.Popen(arguments, stderr=log, preexec_fn=_die_with_parent, start_new_session=True, **options)


def _living():
    mine = str(os.getpid())
    parents = {}
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            try:
                with open(f"/proc/{entry}/stat") as file:
                    fields = file.read().rsplit(")", 1)[1].split()
            except OSError:
                continue
            if fields[0] != "Z":
                parents[entry] = fields[1]
    below, found = {mine}, []
    grown = True
    while grown:
        grown = False
        for process, parent in parents.items():
            if parent in below and process not in below:
                below.add(process)
                found.append(int(process))
                grown = True
    return found


def end_all(patience=5.0):
    """Kills every process below this one and collects them."""
    deadline = time.monotonic() + patience
    while True:
        left = _living()
        for process in left:
            try:
                os.kill(process, signal.SIGKILL)
            except ProcessLookupError:
                pass
        try:
            while os.waitpid(-1, os.WNOHANG)[0]:
                pass
        except ChildProcessError:
            pass
        if not left or time.monotonic() > deadline:
            return
        time.sleep(0.01)


def run(main):
    """Ends the process with the status that `main()` returns; what it started does not outlive it."""
    try:
        code = main()
    finally:
        end_all()
    sys.exit(code)


def wait_until(what, question, seconds=20.0, step=0.02):
    """The first true answer to `question()`; raises with the name `what` after `seconds`."""
    deadline = time.monotonic() + seconds
    while True:
        answer = question()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise TimeoutError(f"waited {seconds:.0f} s in vain: {what}")
        time.sleep(step)
