"""A finger on a Wayland compositor's screen: a client that brings a pointer of its own
(wlr-virtual-pointer-unstable-v1, in the protocol's plain bytes, as no package has it)."""
import os
import socket
import struct
import time

DISPLAY, REGISTRY, DONE, MANAGER, POINTER = 1, 2, 3, 4, 5  # object ids
LEFT = 0x110  # BTN_LEFT


class Finger:
    def __init__(self, width, height):
        self.size = width, height
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.connect(os.path.join(os.environ["XDG_RUNTIME_DIR"], os.environ["WAYLAND_DISPLAY"]))
        self.send(DISPLAY, 1, REGISTRY)  # get_registry
        self.send(DISPLAY, 0, DONE)  # sync
        name = self.find(b"zwlr_virtual_pointer_manager_v1")
        interface = b"zwlr_virtual_pointer_manager_v1\0"
        self.send(REGISTRY, 0, name, len(interface), interface, 1, MANAGER)  # bind
        self.send(MANAGER, 0, 0, POINTER)  # create_virtual_pointer, on any seat

    def send(self, target, request, *arguments):
        body = b"".join(each + b"\0" * (-len(each) % 4) if isinstance(each, bytes)
                        else struct.pack("=I", each) for each in arguments)
        self.socket.sendall(struct.pack("=IHH", target, request, 8 + len(body)) + body)

    def find(self, interface):
        """Reads what the compositor has, to the end; the number of this."""
        stream = self.socket.makefile("rb")
        found = None
        while True:
            target, event, size = struct.unpack("=IHH", stream.read(8))
            body = stream.read(size - 8)
            if target == DONE:
                return found
            if target == REGISTRY and event == 0:
                name, length = struct.unpack_from("=II", body)
                if body[8:8 + length - 1] == interface:
                    found = name

    def at(self, x, y):
        self.send(POINTER, 1, self.now(), round(x), round(y), *self.size)  # motion_absolute
        self.frame()

    def press(self, is_down):
        self.send(POINTER, 2, self.now(), LEFT, int(is_down))  # button
        self.frame()

    def frame(self):
        self.send(POINTER, 4)
        time.sleep(0.02)  # it takes its time

    @staticmethod
    def now():
        return int(time.monotonic() * 1000) & 0xFFFFFFFF  # ms

    def tap(self, x, y):
        self.at(x, y)
        self.press(True)
        self.press(False)

    def roll(self, x, y):
        """A wheel's notch, to what is below: there is no protocol by which a client could touch."""
        self.at(x, y)
        self.send(POINTER, 3, self.now(), 0, 15 * 256)  # axis, vertical, in 256ths of a px
        self.frame()
