"""Whether anything grows while one process lives."""
from x_clients import descriptors, memory

#: What may be added between the second count of a life and its last: caches fill slowly, and a thread that has not yet
#: ended has a descriptor.
LIMITS = {"memory": 24 << 20, "descriptors": 6, "resources": 40, "threads": 6}
#: A life with fewer counts tells nothing.
FEWEST_COUNTS = 3


class Growth:
    def __init__(self, world):
        self.world = world
        #: The counts of each life, by its process.
        self.lives = {}

    def count(self):
        process = self.world.driver.process.pid
        with open(f"/proc/{process}/status", encoding="ascii") as file:
            threads = next(int(line.split()[1]) for line in file if line.startswith("Threads:"))
        clients = self.world.clients
        now = {"memory": memory(process), "descriptors": descriptors(process), "threads": threads,
               "resources": sum(clients.resources(client) for client in clients.of_process(process)),
               "server": memory(self.world.desktop.server.pid)}
        self.lives.setdefault(process, []).append(now)
        return self.line(now)

    @staticmethod
    def line(counts):
        return (f"memory {counts['memory'] / (1 << 20):.1f} MiB, descriptors {counts['descriptors']}, threads "
                f"{counts['threads']}, X resources {counts['resources']}, "
                f"server {counts['server'] / (1 << 20):.1f} MiB")

    def long_lives(self):
        """The lives that are long enough."""
        return [counts for counts in self.lives.values() if len(counts) >= FEWEST_COUNTS]

    def complaints(self):
        """What grew, in words."""
        for counts in self.long_lives():
            for what, limit in LIMITS.items():
                if counts[-1][what] > counts[1][what] + limit:
                    yield f"{what} grew from {counts[1][what]} to {counts[-1][what]} within {len(counts)} counts"

    def words(self):
        lines = [f"{len(self.long_lives())} of {len(self.lives)} lives were counted {FEWEST_COUNTS} times or more"]
        for counts in self.long_lives():
            lines.append(f"  {len(counts)} counts, the second: {self.line(counts[1])}")
            lines.append(f"  {' ' * len(str(len(counts)))}         the last: {self.line(counts[-1])}")
        return "\n".join(lines)
