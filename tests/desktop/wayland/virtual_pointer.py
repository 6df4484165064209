"""A pointer of our own for a compositor that has none: the few messages of Wayland that take, written by hand, because
no packaged program moves a pointer on a headless compositor."""
import socket
import struct
import time

DISPLAY = 1
REGISTRY = 2
MANAGER = "zwlr_virtual_pointer_manager_v1"


class VirtualPointer:
    def __init__(self, path):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(10)
        self.socket.connect(path)
        self.next = 3
        self.buffer = b""
        self.send(DISPLAY, 1, struct.pack("=I", REGISTRY))
        manager_name = None
        for target, opcode, body in self.until_answered():
            if target == REGISTRY and opcode == 0:
                name, length = struct.unpack_from("=II", body)
                if body[8:8 + length - 1].decode() == MANAGER:
                    manager_name = name
        if manager_name is None:
            raise RuntimeError("the compositor takes no virtual pointer")
        manager = self.fresh()
        text = MANAGER.encode() + b"\0"
        text += b"\0" * (-len(text) % 4)
        self.send(REGISTRY, 0, struct.pack("=II", manager_name, len(MANAGER) + 1) + text +
                  struct.pack("=II", 1, manager))
        self.pointer = self.fresh()
        self.send(manager, 0, struct.pack("=II", 0, self.pointer))
        self.until_answered()

    def fresh(self):
        self.next += 1
        return self.next - 1

    def send(self, target, opcode, body):
        self.socket.sendall(struct.pack("=II", target, (8 + len(body)) << 16 | opcode) + body)

    def receive(self):
        while True:
            if len(self.buffer) >= 8:
                target, word = struct.unpack_from("=II", self.buffer)
                size = word >> 16
                if len(self.buffer) >= size:
                    body, self.buffer = self.buffer[8:size], self.buffer[size:]
                    return target, word & 0xFFFF, body
            more = self.socket.recv(65536)
            if not more:
                raise RuntimeError("the compositor is gone")
            self.buffer += more

    def until_answered(self):
        callback = self.fresh()
        self.send(DISPLAY, 0, struct.pack("=I", callback))
        received = []
        while True:
            message = self.receive()
            if message[0] == DISPLAY and message[1] == 0:
                raise RuntimeError(f"the compositor complains: {message[2]!r}")
            if message[0] == callback:
                return received
            received.append(message)

    def move(self, x, y, width, height):
        """To a point of an output area of that size."""
        now = int(time.monotonic() * 1000) & 0xFFFFFFFF
        self.send(self.pointer, 1, struct.pack("=IIIII", now, x, y, width, height))
        self.send(self.pointer, 4, b"")
        self.until_answered()
