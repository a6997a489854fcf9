#!/usr/bin/python3
"""A clipboard manager that has stopped: it owns the selection that managers own, and answers nothing.

Prints `owner` once it does.
"""

import time

import gi

gi.require_version("Gtk", "3.0")
gi.require_version("Gdk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402

window = Gtk.Window()
window.realize()
Gtk.selection_owner_set(window, Gdk.Atom.intern("CLIPBOARD_MANAGER", False), Gdk.CURRENT_TIME)
Gdk.Display.get_default().sync()
print("owner", flush=True)
time.sleep(60)
