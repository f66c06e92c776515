#!/usr/bin/python3
"""The rows of a table: what a host that is confined as a Flatpak may reach, and how far the demo's own
play, by message and then by code, gets there. Runs inside `parloquin-sandbox exec dbus-run-session --`."""
import dataclasses
import os
import signal
import socket
import subprocess
import sys

import seccomp
from gi.repository import Gio, GLib

APP = "com.example.Demo"
HOST = os.path.abspath("build/host")
OUT = os.path.abspath("build/confined")
PATIENCE = 120  # s, for a play
REFUSED = 97  # EAFNOSUPPORT


@dataclasses.dataclass
class Row:
    name: str
    verified: int  # of two sessions
    network: bool = True  # --share=network
    portals: bool = True  # what every Flatpak may talk to
    modem: bool = True  # --system-talk-name=org.freedesktop.ModemManager1
    netlink: bool = True  # refused by some who confine, not by Flatpak
    declares: bool = False  # the host brings an entry of its own for the apps' links


# What hands a link to the desktop in every Flatpak.
ENTRY = """[Desktop Entry]
Type=Application
Name=Messaging apps
NoDisplay=true
Exec=xdg-open %u
MimeType=x-scheme-handler/parlo;
"""
DEFAULTS = "[Default Applications]\nx-scheme-handler/parlo=links.desktop\n"

ROWS = [
    Row("links declared", 2, declares=True),
    Row("links asked of the portal", 2),
    Row("no netlink", 2, declares=True, netlink=False),
    Row("no ModemManager", 1, declares=True, modem=False),
    Row("no portals", 0, declares=True, portals=False),
    Row("no network", 0, declares=True, network=False),
]
SYSTEM = [word for folder in ("/usr", "/etc") for word in ("--ro-bind", folder, folder)] + [
    word for link in ("bin", "sbin", "lib", "lib64") for word in ("--symlink", "usr/" + link, "/" + link)]


def write_info(row, file):
    """By which the desktop knows who asks, and libraries that they are confined."""
    with open(file, "w", encoding="utf-8") as info:
        info.write(f"[Application]\nname={APP}\nruntime=runtime/com.example.Platform/x86_64/1\n"
                   "[Instance]\ninstance-id=1\n"
                   f"[Context]\nshared={'network;' if row.network else ''}\n")


def write_filter(row, file):
    """The families of sockets that a Flatpak may open, perhaps less netlink."""
    allowed = {socket.AF_UNIX, socket.AF_INET, socket.AF_INET6, socket.AF_NETLINK}
    allowed -= set() if row.netlink else {socket.AF_NETLINK}
    rules = seccomp.SyscallFilter(defaction=seccomp.ALLOW)
    for family in set(range(1, max(allowed))) - allowed:
        rules.add_rule(seccomp.ERRNO(REFUSED), "socket", seccomp.Arg(0, seccomp.EQ, family))
    rules.add_rule(seccomp.ERRNO(REFUSED), "socket", seccomp.Arg(0, seccomp.GT, max(allowed)))
    with open(file, "wb") as rule_file:
        rules.export_bpf(rule_file)


def start_proxy(row, info):
    """The session's bus as a Flatpak sees it. The desktop looks for the application's name at the root
    of this process."""
    path = os.path.join(os.environ["XDG_RUNTIME_DIR"], "confined-bus")
    if os.path.exists(path):
        os.unlink(path)
    end, start = os.pipe()
    rules = ["--talk=org.freedesktop.portal.*"] if row.portals else []
    process = subprocess.Popen(
        ["bwrap", *SYSTEM, "--bind", "/run", "/run", "--bind", "/tmp", "/tmp", "--proc", "/proc",
         "--ro-bind", info, "/.flatpak-info", "xdg-dbus-proxy", f"--fd={start}",
         os.environ["DBUS_SESSION_BUS_ADDRESS"], path, "--filter", *rules], pass_fds=(start,))
    os.close(start)
    if not os.read(end, 1):
        sys.exit("confined: no bus for the host")
    return process, path, end


def play(row):
    folder = os.path.join(OUT, row.name.replace(" ", "-"))
    os.makedirs(folder)
    info, rules = os.path.join(folder, "flatpak-info"), os.path.join(folder, "seccomp")
    write_info(row, info)
    write_filter(row, rules)
    proxy, bus, held = start_proxy(row, info)
    # The modem's bus has its address for the command inside it only.
    modem = '--bind "${DBUS_SYSTEM_BUS_ADDRESS#unix:path=}" /run/system-bus' if row.modem else ""
    network = "" if row.network else "--unshare-net"
    # Where the desktop looks for what the confinement is made of.
    instance = os.path.join(os.environ["XDG_RUNTIME_DIR"], ".flatpak", "1")
    os.makedirs(instance, exist_ok=True)
    script = f'exec bwrap "$@" {modem} {network} --seccomp 9 --info-fd 8 ' \
        f'{HOST}/examples/demo/parloquin-demo --auto "{folder}" ' \
        f'9<"{rules}" 8>{instance}/bwrapinfo.json'
    if row.declares:
        for name, text in ("links.desktop", ENTRY), ("mimeapps.list", DEFAULTS):
            with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                file.write(text)
    confinement = [
        *SYSTEM, "--tmpfs", "/usr/share/applications", "--proc", "/proc", "--dev", "/dev",
        "--tmpfs", "/tmp", "--ro-bind", "/tmp/.X11-unix", "/tmp/.X11-unix", "--tmpfs", "/home",
        "--tmpfs", "/run", "--bind", bus, "/run/user/0/bus", "--ro-bind", info, "/.flatpak-info",
        "--ro-bind", HOST, HOST, "--bind", folder, folder, "--unshare-pid", "--unshare-ipc",
        "--ro-bind", folder, "/app/share/applications", "--cap-drop", "ALL",
        "--setenv", "PATH", "/usr/libexec/flatpak-xdg-utils:/usr/bin",
        "--setenv", "HOME", "/home", "--setenv", "XDG_RUNTIME_DIR", "/run/user/0",
        "--setenv", "DBUS_SESSION_BUS_ADDRESS", "unix:path=/run/user/0/bus",
        "--setenv", "DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/run/system-bus",
        "--setenv", "XDG_DATA_DIRS", "/app/share:/usr/share", "--setenv", "XDG_CONFIG_DIRS", "/etc/xdg"]
    said = os.path.join(folder, "host.log")
    with open(said, "wb") as log:
        host = subprocess.Popen(["sandbox/modem/parloquin-modem", "sh", "-euc", script, "sh", *confinement],
                                stdout=log, stderr=log, start_new_session=True)
        try:
            host.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            os.killpg(host.pid, signal.SIGTERM)
            host.wait()
    os.close(held)
    proxy.wait()
    with open(said, encoding="utf-8") as log:
        lines = log.read().splitlines()
    last = [line for line in lines if line.startswith("demo: ")][-1:]
    return sum("has confirmed session" in line for line in lines), " ".join(last)


def choose_the_messenger():
    """As a person who has said often enough which app is to open these links."""
    Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
        "org.freedesktop.impl.portal.PermissionStore", "/org/freedesktop/impl/portal/PermissionStore",
        "org.freedesktop.impl.portal.PermissionStore", "SetPermission",
        GLib.Variant("(sbssas)", ("desktop-used-apps", True, "x-scheme-handler/parlo", APP,
                                  ["parloquin-messenger", "3", "3"])),
        None, Gio.DBusCallFlags.NONE, -1)


def portal_version():
    return Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
        "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
        "org.freedesktop.DBus.Properties", "Get",
        GLib.Variant("(ss)", ("org.freedesktop.portal.OpenURI", "version")),
        None, Gio.DBusCallFlags.NONE, -1).unpack()[0]


choose_the_messenger()
version = portal_version()
print(f"confined: the portal for links is of version {version}", flush=True)
if version < 5:  # cannot say whether a link has a handler
    ROWS[1].verified = 0
wrong = 0
for row in ROWS:
    if sys.argv[1:] and row.name not in sys.argv[1:]:
        continue
    verified, last = play(row)
    print(f"confined: {row.name}: {verified} of 2 verified; {last}", flush=True)
    wrong += verified != row.verified
sys.exit(1 if wrong else 0)
