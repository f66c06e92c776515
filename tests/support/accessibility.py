"""What a screen reader finds on the desktop, from a process of its own."""

import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402


def turn():
    while GLib.MainContext.default().iteration(False):
        pass


def awaited(come, patience):
    """What come() gives, as soon as that is something; nothing after so many seconds."""
    deadline = time.monotonic() + patience
    while time.monotonic() < deadline:
        turn()
        try:
            found = come()
        except (GLib.Error, OSError):  # it went while it was looked at, or has not come
            found = None
        if found:
            return found
        time.sleep(0.01)


def children(node):
    return [node.get_child_at_index(i) for i in range(node.get_child_count())]


def line(node):
    role = node.get_role_name().removeprefix("push ")  # as newer versions call a button
    return f"{role} {node.get_name()}".rstrip()


def outline(node, depth=0):
    try:
        return "  " * depth + line(node) + "\n" + "".join(
            outline(child, depth + 1) for child in children(node) if child)
    except GLib.Error as fault:
        return "  " * depth + f"({fault.message})\n"
