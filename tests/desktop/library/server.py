"""The badly behaving web server as the tours use it."""
import os
import subprocess
import sys

import children

SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "support", "loopback_server.py")


class Server:
    def __init__(self, root, log, *options):
        self.process = children.start([sys.executable, SCRIPT, "--root", root, *options], log,
                                      stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.port = int(self.process.stdout.readline().split()[1])

    def behave(self, name):
        self.process.stdin.write(f"behave {name}\n")
        self.process.stdin.flush()
        if self.process.stdout.readline().strip() != "ok " + name:
            raise RuntimeError("the server cannot behave " + name)
