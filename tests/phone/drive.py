#!/usr/bin/python3
"""Verifies a number by both roads on a Linux phone: the demo's host under a phone's compositor
without a screen, a person's finger and keys through the compositor, and pictures of what it shows.

  parloquin-sandbox exec dbus-run-session -- drive.py sway|phoc DEMO FOLDER

What is on the screen is read as a screen reader does, never from the process.
"""
import json
import os
import pathlib
import signal
import subprocess
import sys
import time
import urllib.request

from finger import Finger

sys.path.append(str(pathlib.Path(__file__).parent.parent / "support"))
from accessibility import Atspi, awaited, children, outline  # noqa: E402

PATIENCE = 30  # s, for each thing to come
NUMBER = "470123456"
SIZE = 360, 720  # px, each of two device px
KEYBOARD = 240  # px, its height
CONFIGURATION = {"sway": """
output HEADLESS-1 mode 720x1440 scale 2
default_border none
focus_follows_mouse no
# As on a phone, an app has the screen to itself.
for_window [app_id="parloquin-messenger"] move to workspace messenger, workspace messenger
""", "phoc": """
[output:HEADLESS-1]
mode = 720x1440
scale = 2
"""}


def fail(words):
    print(f"phone: {words}", file=sys.stderr)
    sys.exit(1)


def await_(what, come):
    """What come() gives, as soon as that is something."""
    found = awaited(come, PATIENCE)
    if not found:
        phone.picture("failed")
        fail(f"not within {PATIENCE} s: {what}\n{outline(Atspi.get_desktop(0))}")
    return found


class Phone:
    """The compositor, and what a person does to its glass."""

    def __init__(self, compositor, folder):
        self.compositor = compositor
        self.folder = folder
        config = os.path.join(folder, compositor + ".config")
        with open(config, "w", encoding="utf-8") as file:
            file.write(CONFIGURATION[compositor])
        log = open(os.path.join(folder, compositor + ".log"), "w", encoding="utf-8")
        # An app has the whole of a phone's screen: no title bar of Qt's own.
        os.environ.update(QT_WAYLAND_DISABLE_WINDOWDECORATION="1", WLR_BACKENDS="headless",
                          WLR_RENDERER="pixman", WLR_LIBINPUT_NO_DEVICES="1")
        for display in ("WAYLAND_DISPLAY", "DISPLAY"):
            os.environ.pop(display, None)
        self.process = subprocess.Popen([compositor, "-c" if compositor == "sway" else "-C", config],
                                        stdout=log, stderr=log)
        os.environ["WAYLAND_DISPLAY"] = self.socket("wayland-")
        if compositor == "sway":
            os.environ["SWAYSOCK"] = os.path.join(os.environ["XDG_RUNTIME_DIR"], self.socket("sway-"))
        self.finger = Finger(*SIZE)
        self.keyboard = subprocess.Popen(["wvkbd-mobintl", "--hidden", "-L", str(KEYBOARD)])

    def socket(self, start):
        deadline = time.monotonic() + PATIENCE
        while True:
            names = [name for name in os.listdir(os.environ["XDG_RUNTIME_DIR"])
                     if name.startswith(start) and not name.endswith(".lock")]
            if names:
                return names[0]
            if self.process.poll() is not None or time.monotonic() > deadline:
                fail(f"{self.compositor} has not started; see {self.compositor}.log")
            time.sleep(0.05)

    def go_back_to_the_host(self):
        if self.compositor == "sway":  # phoc goes by itself
            self.say("workspace", "1")

    def say(self, *words):
        return subprocess.run(["swaymsg", *words], check=True, capture_output=True, text=True).stdout

    def show_keyboard(self, is_shown):
        """Its switch, as a button beside the screen."""
        self.keyboard.send_signal(signal.SIGUSR2 if is_shown else signal.SIGUSR1)
        time.sleep(0.3)
        self.settle()

    def type(self, text):
        self.settle()
        # An app takes notice of a new keyboard before its first key.
        subprocess.run(["wtype", "-s", "500", text], check=True)

    def turn(self, degrees):
        if self.compositor == "sway":
            self.say("output", "HEADLESS-1", "transform", degrees)
        else:
            subprocess.run(["wlr-randr", "--output", "HEADLESS-1", "--transform", degrees], check=True)

    def settle(self):
        """Until nothing moves on the screen; a finger on a sliding page only stops it."""
        def shot():
            return subprocess.run(["grim", "-t", "ppm", "-"], check=True, capture_output=True).stdout

        before = [None]

        def is_still():
            last, before[0] = before[0], shot()
            return last == before[0]

        await_("a screen at rest", is_still)

    def picture(self, name):
        subprocess.run(["grim", os.path.join(self.folder, name + ".png")], check=True)
        print(f"phone: {name}", flush=True)


def find(words, node=None):
    """The first node in view whose name begins with these words."""
    node = node or Atspi.get_desktop(0)
    if node.get_name().startswith(words) and node.get_state_set().contains(Atspi.StateType.SHOWING):
        return node
    return next(filter(None, (find(words, child) for child in children(node) if child)), None)


def seek(words):
    return await_(words, lambda: find(words))


def service(path):
    with urllib.request.urlopen(f"http://{os.environ['PARLOQUIN_SERVICE_HOST']}{path}") as answer:
        return json.load(answer)


def show(name):
    phone.finger.at(*SIZE)  # out of the picture
    phone.settle()
    phone.picture(name)


def tap(words):
    seek(words)
    phone.settle()
    box = Atspi.Component.get_extents(seek(words), Atspi.CoordType.WINDOW)
    phone.finger.tap(box.x + box.width // 2, box.y + box.height // 2)


def by_messaging_app():
    tap("Verify my number")
    seek("Verify with Parlo")
    show("app-list")
    phone.turn("90")
    show("app-list-turned")
    phone.turn("normal")
    tap("Verify with Parlo")
    seek("Prepared message")
    show("messenger")
    tap("Send")
    await_("the messenger's end", lambda: not find("Prepared message"))
    phone.go_back_to_the_host()
    seek("Number verified")
    show("verified-by-message")
    tap("Done")


def by_sms():
    tap("Verify my number")
    tap("Don't use any of these apps?")
    seek("Phone number")
    show("phone-entry")
    tap("Select Country..")
    seek("Country List")
    await_("Belgium in view", lambda: find("Belgium, +32") or phone.finger.roll(180, 360))
    show("countries")
    tap("Belgium, +32")
    tap("Phone number")
    phone.show_keyboard(True)
    phone.type(NUMBER)
    show("number")
    phone.show_keyboard(False)
    phone.turn("90")
    show("number-turned")
    phone.turn("normal")
    tap("Send SMS")
    seek("Code, digit 1")
    code = await_("the code", lambda: service("/sandbox/codes/last"))["code"]
    phone.type(code)
    show("code")
    tap("Send Code")
    seek("Number verified")
    show("verified-by-code")


phone = Phone(sys.argv[1], sys.argv[3])
# What it says to the compositor, of its text fields among others.
words = open(os.path.join(phone.folder, "host.log"), "w", encoding="utf-8")
host = subprocess.Popen([sys.argv[2]], env=dict(os.environ, WAYLAND_DEBUG="1"),
                        stdout=subprocess.DEVNULL, stderr=words)
seek("Verify my number")
show("start")
by_messaging_app()
by_sms()
host.terminate()
phone.keyboard.terminate()
phone.process.terminate()
