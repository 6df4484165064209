"""The program under test as the tour runs it: `pintle` itself, or the driver, which is the same program with
commands on standard input."""
import selectors
import signal
import subprocess
import time


class Driver:
    def __init__(self, desktop, program):
        self.desktop = desktop
        self.process = desktop.start("driver", [program], stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def command(self, text, seconds=30):
        """Sends a command and waits for "ok <command>"."""
        self.process.stdin.write(text.encode() + b"\n")
        self.process.stdin.flush()
        selector = selectors.DefaultSelector()
        selector.register(self.process.stdout, selectors.EVENT_READ)
        deadline = time.monotonic() + seconds
        line = b""
        while not line.endswith(b"\n"):
            if not selector.select(max(0.0, deadline - time.monotonic())):
                raise TimeoutError(f"the driver does not answer to {text}")
            byte = self.process.stdout.read1(1)
            if not byte:
                raise RuntimeError(f"the driver ended at {text}:\n" + self.desktop.log_text("driver")[-3000:])
            line += byte
        answer = line.decode().strip()
        if not answer.startswith("ok " + text.split()[0]):
            raise RuntimeError(f"the driver answered {answer!r} to {text}")

    def quit(self, seconds=20):
        self.process.stdin.write(b"quit\n")
        self.process.stdin.flush()
        return self.process.wait(seconds)

    def kill(self):
        self.process.kill()
        self.process.wait()


class Pintle:
    def __init__(self, desktop, program):
        self.process = desktop.start("pintle", [program])

    def kill(self):
        self.process.kill()
        self.process.wait()

    def terminate(self, seconds=20):
        """Asks it to end; true when it died by that very signal, as a program without a handler would."""
        self.process.terminate()
        return self.process.wait(seconds) == -signal.SIGTERM

    def is_running(self):
        return self.process.poll() is None
