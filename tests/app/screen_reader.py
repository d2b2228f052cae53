"""A screen reader's part on the accessibility bus: says what an application of one name tells it, a line for each.

    said TEXT               a notification has appeared
    focused ROLE|NAME       the keyboard has come to something

To "walk" on the standard input it goes through everything that the application shows and prints "item DEPTH|ROLE|STATES|NAME" for
each, then "walked".
"""
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

STATES = ("FOCUSABLE", "FOCUSED", "SELECTABLE", "SELECTED", "CHECKED")


def role_of(item):
    """Its role's name, which newer buses have made shorter."""
    name = item.get_role_name()
    return {"button": "push button", "push button menu": "push button"}.get(name, name)


def say(*words):
    print(*(" ".join(str(word).split()) for word in words), flush=True)


def application(name):
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        child = desktop.get_child_at_index(index)
        if child is not None and child.get_name() == name:
            return child
    return None


def shown(item):
    states = item.get_state_set()
    return states.contains(Atspi.StateType.SHOWING) or item.get_role() == Atspi.Role.APPLICATION


def name_of(item):
    """Nothing is told of a secret field; people hear what it is in."""
    is_secret = item.get_role() == Atspi.Role.PASSWORD_TEXT
    return (item.get_parent() if is_secret else item).get_name() or ""


def walk(item, depth=0):
    states = item.get_state_set()
    held = [name for name in STATES if states.contains(getattr(Atspi.StateType, name))]
    say("item", "|".join((str(depth), role_of(item), ",".join(held), name_of(item))))
    for index in range(item.get_child_count()):
        child = item.get_child_at_index(index)
        if child is not None and shown(child):
            walk(child, depth + 1)


def on_event(event):
    if not event.detail1:
        return
    source = event.source
    try:
        source.clear_cache()
        if event.type.startswith("object:state-changed:focused"):
            say("focused", f"{role_of(source)}|{name_of(source)}")
        elif source.get_role() == Atspi.Role.NOTIFICATION:
            say("said", source.get_name())
    except GLib.Error:
        pass  # it is gone


def on_input(channel, _condition, loop, name):
    command = channel.readline().strip()
    if command == "walk":
        found = application(name)
        if found is not None:
            found.clear_cache()
            walk(found)
        say("walked")
        return True
    loop.quit()
    return False


def main(name):
    Atspi.init()
    loop = GLib.MainLoop()
    listener = Atspi.EventListener.new(on_event)
    for event in ("object:state-changed:showing", "object:state-changed:focused"):
        listener.register(event)

    def look():
        if application(name) is None:
            return True
        say("ready")
        return False

    GLib.timeout_add(100, look)
    GLib.io_add_watch(sys.stdin, GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, on_input, loop, name)
    loop.run()


if __name__ == "__main__":
    main(sys.argv[1])
