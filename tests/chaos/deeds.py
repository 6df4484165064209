"""What is done to the program and around it, one deed at a time. Each answers words for the line that is printed."""
import signal
import subprocess
import time

from children import wait_until
from desktop import SCREEN
from world import DOWNLOADED, FREE, WITHOUT_ARROW

SCALES = (0.75, 1.0, 1.25, 1.5)
GOOD_SERVERS = ("well", "slow", "redirect")
BAD_SERVERS = ("404", "500", "reset", "short", "nohttp")
#: No file may grow beyond that while the disk is full.
FULL = 100


class Deeds:
    def __init__(self, world):
        self.world = world
        self.desktop = world.desktop
        self.monitors = False
        #: How often each comes, among all.
        self.all = {"apply": 14, "burst": 4, "scale": 8, "reset": 3, "download": 6, "delete": 4, "window_manager": 4,
                    "compositor": 4, "bus": 3, "bus_and_copy": 1, "connection": 3, "kill": 1, "terminate": 1,
                    "stop": 2, "second_copy": 4, "displays": 4, "lock": 4, "sleep": 3, "full_disk": 4}

    def choose(self, chance):
        name = chance.choices(list(self.all), list(self.all.values()))[0]
        return name, getattr(self, name)

    def calm(self):
        """The state in which is counted: nothing around the program, and System Default."""
        for reason in list(self.world.reasons_to_pause):
            self.toggle_pause(reason)
        if self.world.compositor:
            self.compositor(None)
        if self.monitors:
            self.displays(None)
        self.reset(None)
        self.set_scale(1.0)
        time.sleep(1.5)

    def warm_up(self):
        """What each life does once: the popover's window is made, the overlay's and a registration."""
        before = self.world.theme
        self.second_copy(None)
        for theme in (WITHOUT_ARROW, *self.installed()[:1], before):
            self.command("apply " + theme if theme else "reset")
            time.sleep(0.5)

    def command(self, words):
        self.world.driver.command(words)

    def look(self, chance, when):
        complaint = self.world.complaint(chance)
        if complaint:
            raise RuntimeError(f"{when}: {complaint}")

    # What a person does.

    def installed(self):
        return [name for name in DOWNLOADED if self.world.is_installed(name)]

    def apply(self, chance):
        self.world.theme = chance.choice([*self.installed(), WITHOUT_ARROW])
        self.command("apply " + self.world.theme)
        return self.world.theme

    def burst(self, chance):
        """Faster than they can be followed: the last one counts."""
        done = []
        for _ in range(chance.randint(3, 12)):
            done.append(chance.choice((self.apply, self.scale, self.reset))(chance))
        return " ".join(done)

    def scale(self, chance):
        return self.set_scale(chance.choice(SCALES))

    def set_scale(self, scale):
        self.world.scale = scale
        self.command(f"scale {scale}")
        return str(scale)

    def reset(self, _):
        self.world.theme = None
        self.command("reset")
        return "reset"

    def download(self, chance, full=False):
        missing = [name for name in DOWNLOADED if not self.world.is_installed(name)]
        if not missing:
            return self.delete(chance)
        identifier = chance.choice(missing)
        behaviour = chance.choice(GOOD_SERVERS + BAD_SERVERS)
        self.world.server.behave(behaviour)
        self.command("download " + identifier)
        between = chance.choice((self.apply, self.scale, self.reset, None))
        if between:
            between(chance)
        row = self.world.driver.ended(identifier)
        self.world.server.behave("well")
        good = behaviour in GOOD_SERVERS and not full
        if (row["downloaded"] == "1") != good or bool(row["error"]) == good:
            raise RuntimeError(f"{identifier} from a server that behaves {behaviour}: {row}")
        return f"{identifier} {behaviour}"

    def delete(self, chance):
        installed = self.installed()
        if not installed:
            return "nothing"
        identifier = chance.choice(installed)
        if self.world.theme == identifier:
            self.world.theme = None
        self.world.driver.delete(identifier)
        return identifier

    def second_copy(self, _):
        status = self.desktop.start("second copy", [self.world.program]).wait(30)
        if status != 0:
            raise RuntimeError(f"a second copy ends with {status}")
        # It has opened the popover of the first.
        time.sleep(0.3)
        self.desktop.run("xdotool", "mousemove", str(FREE[0]), str(FREE[1]), "click", "1")

    # What happens around it.

    def window_manager(self, chance):
        self.desktop.stop("window manager")
        time.sleep(0.5)
        if chance.random() < 0.5:
            self.look(chance, "without a window manager")
        self.desktop.start_window_manager()
        time.sleep(1.0)
        wait_until("the windows are back", self.windows_are_back)

    def windows_are_back(self):
        return self.desktop.probe.window("xterm") and self.desktop.probe.window("Qt")

    def compositor(self, _):
        if self.world.compositor:
            self.desktop.stop("compositor")
        else:
            self.desktop.start("compositor", ["picom", "--backend", "xrender", "--config", "/dev/null"])
            time.sleep(1.0)
        self.world.compositor = not self.world.compositor

    def bus(self, chance):
        self.desktop.stop("session bus")
        if chance.random() < 0.5:
            self.look(chance, "without a bus")
        time.sleep(chance.random())
        self.desktop.start_session_bus()

    def bus_and_copy(self, chance):
        """A second copy that starts while there is no bus ends when both have found the next one."""
        if self.world.connection_was_killed:
            return self.bus(chance)
        # Each copy ends the registration of the one before it, which is opened again once.
        self.world.connection_was_killed = True
        time.sleep(1.0)
        self.desktop.stop("session bus")
        self.world.copy = self.desktop.start("second copy", [self.world.program])
        time.sleep(1.0 + 2 * chance.random())
        self.desktop.start_session_bus()
        self.world.copy.wait(60)
        self.world.copy = None
        return "the copy ended"

    def connection(self, chance):
        """One of the program's own: each is opened again once, and without the toolkit's the program ends."""
        if self.world.connection_was_killed:
            return self.kill(chance)
        self.world.connection_was_killed = True
        time.sleep(1.0)
        clients = self.world.clients.of_process(self.world.driver.process.pid)
        order = list(range(len(clients)))
        chance.shuffle(order)
        # One that has made nothing yet cannot be named.
        number = next((each for each in order if self.world.clients.kill(clients[each])), None)
        if number is None:
            raise RuntimeError("no connection can be killed")
        time.sleep(1.0)
        if self.world.driver.process.poll() is None:
            return f"{number} of {len(clients)}"
        self.look_after_the_end()
        status = self.world.driver.process.returncode
        self.world.start()
        return f"{number} of {len(clients)}, the program ended with {status}"

    def look_after_the_end(self):
        for name, place in self.world.places().items():
            self.desktop.probe.move(*place)
            if not self.world.within(lambda where=place: self.world.shows_servers(where)):
                self.world.lost += 1
                self.world.start()
                raise RuntimeError(f"NO POINTER over {name} after the program's end")

    def kill(self, _):
        # What was chosen is written half a second later.
        time.sleep(1.0)
        self.world.kill_driver()
        self.look_after_the_end()
        self.world.start()

    def terminate(self, _):
        time.sleep(1.0)
        process = self.world.driver.process
        process.terminate()
        status = process.wait(20)
        if status != -signal.SIGTERM:
            self.world.start()
            raise RuntimeError(f"SIGTERM ends the program with {status}")
        self.look_after_the_end()
        self.world.start()

    def stop(self, chance):
        process = self.world.driver.process
        process.send_signal(signal.SIGSTOP)
        time.sleep(chance.random() * 2)
        process.send_signal(signal.SIGCONT)

    def displays(self, _):
        width, height = (int(side) for side in SCREEN.split("x"))
        half = width // 2
        self.monitors = not self.monitors
        for name, x, output in (("LEFT", 0, "screen"), ("RIGHT", half, "none")):
            words = (("--setmonitor", name, f"{half}/200x{height}/240+{x}+0", output) if self.monitors
                     else ("--delmonitor", name))
            if self.desktop.run("xrandr", *words) != 0:
                raise RuntimeError("the monitors cannot be changed")
        return "two" if self.monitors else "one"

    def lock(self, _):
        return self.toggle_pause("lock")

    def sleep(self, _):
        return self.toggle_pause("sleep")

    def toggle_pause(self, reason):
        begins = reason not in self.world.reasons_to_pause
        self.world.reasons_to_pause ^= {reason}
        if reason == "lock":
            self.desktop.set_locked_hint(begins)
            self.desktop.login_signal("session", "Lock" if begins else "Unlock")
        else:
            self.desktop.login_signal("manager", "PrepareForSleep", "true" if begins else "false")
        return "begins" if begins else "ends"

    def full_disk(self, chance):
        done = []
        self.limit(str(FULL))
        try:
            for _ in range(chance.randint(1, 3)):
                deed = chance.choice((self.apply, self.scale, self.reset, self.delete, self.download))
                done.append(deed.__name__ + " " + (deed(chance, True) if deed == self.download else deed(chance)))
            self.look(chance, "on a full disk")
        finally:
            self.limit("unlimited")
        time.sleep(1.0)
        return ", ".join(done)

    def limit(self, bytes_of_a_file):
        subprocess.run(["prlimit", f"--pid={self.world.driver.process.pid}", f"--fsize={bytes_of_a_file}:unlimited"],
                       check=True)
