#!/usr/bin/python3
"""A GTK program that copies a text, or files, and keeps them until somebody else copies.

Usage: gtk_copy.py --text TEXT | gtk_copy.py FILE...
"""

import pathlib
import sys

import gi

gi.require_version("Gtk", "3.0")
gi.require_version("Gdk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402


def copy_text(window, text):
    # In the order in which the toolkit offers them itself.
    for target in "text/plain;charset=utf-8", "UTF8_STRING":
        Gtk.selection_add_target(window, Gdk.SELECTION_CLIPBOARD, Gdk.Atom.intern(target, False), 0)
    window.connect("selection-get", lambda _, selection, *__: selection.set_text(text, -1))


def copy_files(window, files):
    uris = [pathlib.Path(file).absolute().as_uri() for file in files]
    Gtk.selection_add_target(window, Gdk.SELECTION_CLIPBOARD, Gdk.Atom.intern("text/uri-list", False), 0)
    window.connect("selection-get", lambda _, selection, *__: selection.set_uris(uris))


def main(arguments):
    if not arguments:
        sys.exit(__doc__)
    window = Gtk.Window(title="GTK copy")
    window.realize()
    if arguments[0] == "--text":
        copy_text(window, arguments[1])
    else:
        copy_files(window, arguments)
    window.connect("selection-clear-event", Gtk.main_quit)
    # Asked for by timestamp, since there is no event that this copy answers.
    Gtk.selection_owner_set(window, Gdk.SELECTION_CLIPBOARD, Gdk.CURRENT_TIME)
    Gtk.main()


main(sys.argv[1:])
