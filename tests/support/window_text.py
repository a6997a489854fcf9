#!/usr/bin/python3
"""Prints what the windows of a program show, read as a screen reader reads them.

One accessible object a line, indented by containment: role, "name", (description), [text], states. Groups that say
nothing of themselves are left out. Line breaks inside texts are written \\n. With --until it waits for texts to be
shown first and fails when they are not.
"""

import argparse
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

SHOWN_STATES = (Atspi.StateType.CHECKED, Atspi.StateType.SELECTED, Atspi.StateType.FOCUSED)
LONGEST_TEXT = 2000
MOST_CHILDREN = 200
GROUPS = (Atspi.Role.FILLER, Atspi.Role.PANEL)


def application_named(name):
    desktop = Atspi.get_desktop(0)
    for position in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(position)
        if application is not None and application.get_name() == name:
            return application
    return None


def text_of(accessible):
    if "Text" not in accessible.get_interfaces():
        return ""
    length = min(Atspi.Text.get_character_count(accessible), LONGEST_TEXT)
    return Atspi.Text.get_text(accessible, 0, length)


def line_for(accessible):
    parts = [accessible.get_role_name()]
    name, description, text = accessible.get_name(), accessible.get_description(), text_of(accessible)
    if name:
        parts.append(f'"{name}"')
    if description:
        parts.append(f"({description})")
    if text and text != name:
        parts.append(f"[{text}]")
    states = accessible.get_state_set()
    parts += [state.value_nick for state in SHOWN_STATES if states.contains(state)]
    return " ".join(parts).replace("\n", "\\n")


def lines_of(accessible, depth=0):
    """What is on show at and below `accessible`, top down. Objects that go away meanwhile are left out."""
    try:
        if not accessible.get_state_set().contains(Atspi.StateType.VISIBLE) and depth > 0:
            return []
        own = line_for(accessible)
        is_silent = accessible.get_role() in GROUPS and own == accessible.get_role_name()
        lines = [] if is_silent else ["  " * depth + own]
        count = min(accessible.get_child_count(), MOST_CHILDREN)
        children = [accessible.get_child_at_index(position) for position in range(count)]
    except GLib.Error:
        return []
    for child in children:
        if child is not None:
            lines += lines_of(child, depth if is_silent else depth + 1)
    return lines


def read_window(name):
    # What libatspi keeps of earlier readings would be told again.
    Atspi.get_desktop(0).clear_cache()
    application = application_named(name)
    return lines_of(application) if application is not None else []


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--application", default="tarnix")
    parser.add_argument("--until", action="append", default=[], metavar="TEXT", help="may be given several times")
    parser.add_argument("--timeout", type=float, default=5.0, metavar="SECONDS")
    parser.add_argument("--quiet", action="store_true", help="print only when a text is missing")
    arguments = parser.parse_args()

    deadline = time.monotonic() + arguments.timeout
    while True:
        lines = read_window(arguments.application)
        shown = "\n".join(lines)
        missing = [text for text in arguments.until if text not in shown]
        if lines and not missing:
            break
        if time.monotonic() > deadline:
            break
        time.sleep(0.02)

    if not lines:
        print(f"No window of {arguments.application} is accessible.", file=sys.stderr)
        return 1
    if missing or not arguments.quiet:
        print(shown)
    for text in missing:
        print(f"Not shown: {text}", file=sys.stderr)
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
