"""What the X server keeps for each of its clients, asked over the bare protocol: no library for it is installed."""
import os
import socket
import struct

RESOURCES = b"X-Resource"
QUERY_EXTENSION, KILL_CLIENT = 98, 113
QUERY_CLIENTS, QUERY_CLIENT_RESOURCES, QUERY_CLIENT_IDS = 1, 2, 4
LOCAL_PROCESS = 2
#: Ids that a client makes first; one of them still stands for something.
FIRST_IDS = 4096
EVENT_OR_REPLY = 32


class XClients:
    def __init__(self, display):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(20)
        self.socket.connect("/tmp/.X11-unix/X" + display.lstrip(":"))
        self.socket.sendall(struct.pack("<BxHHHHxx", ord("l"), 11, 0, 0, 0))
        good, length = struct.unpack("<BxxxxxH", self.receive(8))
        setup = self.receive(4 * length)
        if good != 1:
            raise RuntimeError("the X server refuses: " + setup.decode(errors="replace"))
        self.base = struct.unpack_from("<I", setup, 4)[0]
        answer = self.ask(struct.pack("<BxHHxx", QUERY_EXTENSION, 2 + (len(RESOURCES) + 3) // 4, len(RESOURCES)) +
                          RESOURCES + bytes(-len(RESOURCES) % 4))
        if not answer[8]:
            raise RuntimeError("the X server does not count resources")
        self.opcode = answer[9]

    def close(self):
        self.socket.close()

    def receive(self, count):
        data = b""
        while len(data) < count:
            more = self.socket.recv(count - len(data))
            if not more:
                raise RuntimeError("the X server has gone")
            data += more
        return data

    def ask(self, request):
        """The reply; errors and events of earlier requests are passed over."""
        self.socket.sendall(request)
        while True:
            head = self.receive(EVENT_OR_REPLY)
            if head[0] == 1:
                return head + self.receive(4 * struct.unpack_from("<I", head, 4)[0])

    def request(self, minor, *words):
        return self.ask(struct.pack(f"<BBH{len(words)}I", self.opcode, minor, 1 + len(words), *words))

    def all(self):
        """(base, mask) of each client's ids."""
        answer = self.request(QUERY_CLIENTS)
        count = struct.unpack_from("<I", answer, 8)[0]
        return [struct.unpack_from("<II", answer, EVENT_OR_REPLY + 8 * at) for at in range(count)]

    def of_process(self, process):
        """The base of the ids of each client that a process has, in the order of their beginnings."""
        answer = self.request(QUERY_CLIENT_IDS, 1, 0, LOCAL_PROCESS)
        count = struct.unpack_from("<I", answer, 8)[0]
        found, at = [], EVENT_OR_REPLY
        for _ in range(count):
            client, mask, length = struct.unpack_from("<III", answer, at)
            if mask == LOCAL_PROCESS and length == 4 and struct.unpack_from("<I", answer, at + 12)[0] == process:
                found.append(client)
            at += 12 + length
        return found

    def resources(self, client):
        """How many things the server keeps for a client; none when it has gone."""
        if client not in [base for base, _ in self.all()]:
            return 0
        answer = self.request(QUERY_CLIENT_RESOURCES, client)
        count = struct.unpack_from("<I", answer, 8)[0]
        return sum(struct.unpack_from("<II", answer, EVENT_OR_REPLY + 8 * at)[1] for at in range(count))

    def kill(self, client):
        """Ends a client's connection by one of the things it has made; false when nothing of it was found."""
        for start in range(0, FIRST_IDS, 256):
            for number in range(start, start + 256):
                self.socket.sendall(struct.pack("<BxHI", KILL_CLIENT, 2, client | number))
            if client not in [base for base, _ in self.all()]:
                return True
        return False


def descriptors(process):
    return len(os.listdir(f"/proc/{process}/fd"))


def memory(process):
    """Bytes that are the process's own."""
    with open(f"/proc/{process}/smaps_rollup", encoding="ascii") as file:
        fields = dict(line.split(":") for line in file if line.startswith("Private_"))
    return 1024 * sum(int(value.split()[0]) for value in fields.values())
