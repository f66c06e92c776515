#!/usr/bin/python3
"""A screen reader's half of a test: walks the road by SMS over the accessibility bus, from a process
of its own. Usage: reader.py PID."""
import pathlib
import sys

sys.path.append(str(pathlib.Path(__file__).parent.parent / "support"))
from accessibility import Atspi, awaited, children, line, outline  # noqa: E402

PATIENCE = 10  # s, for each thing to come
focused = []  # names, as they are heard


def await_(what, come):
    return awaited(come, PATIENCE) or sys.exit(f"not within {PATIENCE} s: {what}\n" + outline(application))


def expect(what, actual, expected):
    if actual != expected:
        sys.exit(f"{what}: expected {expected!r}, found {actual!r}\n" + outline(application))


def find(what):
    """The only node of this role and name."""
    found = []

    def look(at):
        if at and line(at) == what:
            found.append(at)
        rows = at and at.get_role() == Atspi.Role.LIST and not what.startswith("list item")
        for child in children(at) if at and not rows else []:
            look(child)

    look(application)
    if len(found) > 1:
        sys.exit(f"{len(found)} times in the tree: {what}\n" + outline(application))
    return found[0] if found else None


def seek(what):
    return await_(what, lambda: find(what))


def press(what):
    node = seek(what)
    actions = [Atspi.Action.get_action_name(node, i) for i in range(Atspi.Action.get_n_actions(node))]
    Atspi.Action.do_action(node, actions.index("Press"))


def write(what, text):
    Atspi.EditableText.insert_text(seek(what), 0, text, len(text))


def has(node, state):
    return node.get_state_set().contains(state)


def hear(event):
    if event.type.startswith("object:state-changed:focused"):
        focused.extend([line(event.source)] * event.detail1)


pid = int(sys.argv[1])
application = None
application = await_("the application on the bus", lambda: next(
    (app for app in children(Atspi.get_desktop(0)) if app and app.get_process_id() == pid), None))
listener = Atspi.EventListener.new(hear)
listener.register("object")

press("button Don't use any of these apps? Get a code by SMS instead")
seek("panel SMS")
press("button Select Country..")
countries = seek("list Country List")
reading = ["heading L"] + [f"list item Land {number}, +{number}" for number in range(10, 70)]
await_("all countries", lambda: countries.get_child_count() == len(reading))
expect("in reading order", [line(row) for row in children(countries)], reading)
expect("in view", has(children(countries)[-1], Atspi.StateType.SHOWING), False)

Atspi.Component.grab_focus(children(countries)[1])
await_("focus on the first row", lambda: reading[1] in focused)

press(reading[-2])
seek("button Country, Land 68")
number = seek("text Phone number")
write("text Phone number", "4123")
expect("number", Atspi.Text.get_text(number, 0, -1), "4123")
press("button Send SMS")
first = seek("text Code, digit 1 of 3")
await_("the first box's turn", lambda: has(first, Atspi.StateType.FOCUSED))
for digit in (1, 2, 3):
    write(f"text Code, digit {digit} of 3", "7K2"[digit - 1])
await_("the button's turn", lambda: has(seek("button Send Code"), Atspi.StateType.FOCUSED))
press("button Send Code")
await_("the overlay gone again", lambda: find("panel SMS"))
press("button Back")
seek("text Phone number")
press("button Back")
press("button Close")
