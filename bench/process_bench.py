#!/usr/bin/env python3
"""Measures the built program from outside, on a virtual screen with a session of its own.

Prints one line for each figure: what, value, bound, and whether the bound is held. All raw numbers go to a JSON file.
Figures of time mean little on a busy machine, so the load is printed first (`nice -n -15` before it all helps there);
where there is something to compare with, a bare Qt program is measured in the same run. Needs Xvfb, openbox,
dbus-daemon, xdotool and, for reading the window, python3-gi with AT-SPI.
"""

import argparse
import collections
import contextlib
import json
import os
import pathlib
import queue
import random
import signal
import statistics
import string
import subprocess
import sys
import tempfile
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
WINDOW_TEXT = ROOT / "tests" / "support" / "window_text.py"
MB = 1_000_000
TICK = 0.2
# Of the middle of the button that clears the list: from the window's left, from its bottom.
CLEAR_BUTTON = 243, 35
# What is asked of an owner for the text, the best first; one of them is asked for.
TEXT_TARGETS = {"text/plain;charset=utf-8", "UTF8_STRING", "text/plain", "TEXT", "STRING"}
# Representations that the program reads beside the text.
READ_TARGETS = {"TARGETS", "text/rtf", "application/rtf", "text/richtext", "text/uri-list", "org.nspasteboard.source",
                "x-kde-passwordManagerHint"} | TEXT_TARGETS
HOSTILE_MODES = ["never", "targets-only", "incr-stall", "drip", "die-on-targets", "die-on-data", "die-in-incr",
                 "wrong-type", "wrong-format", "wrong-targets", "many-targets", "invalid-atoms", "long-names", "late"]


class Failed(Exception):
    """A benchmark that could not be carried out."""


class TimeIsUp(BaseException):
    """What ends the whole run, through all that tidies up."""


class Child:
    """A program of ours whose lines are read as they come."""

    def __init__(self, command, environment, folder):
        self.name = pathlib.Path(str(command[0])).name
        log = open(os.path.join(folder, "log"), "ab")
        self.process = subprocess.Popen([str(word) for word in command], env=environment, cwd=folder,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=log)
        log.close()
        self.pid = self.process.pid
        self.lines = []
        self._unread = queue.Queue()
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        for line in self.process.stdout:
            text = line.decode(errors="replace").rstrip("\n")
            self.lines.append(text)
            self._unread.put(text)
        self._unread.put(None)

    def line(self, timeout):
        try:
            text = self._unread.get(timeout=timeout)
        except queue.Empty:
            raise Failed(f"{self.name} printed nothing in {timeout} s") from None
        if text is None:
            raise Failed(f"{self.name} ended early")
        return text

    def wait_for_line(self, expected, timeout):
        end = time.monotonic() + timeout
        while self.line(max(end - time.monotonic(), 0.01)) != expected:
            pass

    def finish(self, timeout=5):
        """Closes its input, which ends it, and gives what it printed."""
        with contextlib.suppress(OSError):
            self.process.stdin.close()
        self.process.wait(timeout)
        self._reader.join(timeout)
        return self.lines

    def requests(self):
        """How often each target was asked for, from the lines of the scripted owner."""
        return collections.Counter(line[8:] for line in self.lines if line.startswith("request "))

    def is_running(self):
        return self.process.poll() is None

    def end(self):
        if self.is_running():
            self.process.terminate()
            try:
                self.process.wait(3)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait(3)


class Desktop:
    """A display with a window manager, a message bus and a home, all of them its own and gone with it."""

    def __init__(self, settings, is_accessible=False):
        self.settings = settings
        self._stack = contextlib.ExitStack()
        try:
            self._open(is_accessible)
        except BaseException:
            self._stack.close()
            raise

    def _open(self, is_accessible):
        self.home = self._stack.enter_context(tempfile.TemporaryDirectory(ignore_cleanup_errors=True))
        runtime = os.path.join(self.home, "runtime")
        os.mkdir(runtime, 0o700)
        self.environment = {"PATH": os.environ["PATH"], "LANG": "C.UTF-8", "HOME": self.home,
                            "XDG_RUNTIME_DIR": runtime}
        if is_accessible:
            self.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        screen = self.start(["Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp", "-noreset"])
        self.screen_pid = screen.pid
        self.environment["DISPLAY"] = ":" + screen.line(20)
        bus = self.start(["dbus-daemon", "--session", "--nofork", "--print-address=1"])
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.line(10)
        self.start(["openbox"])
        time.sleep(0.7)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._stack.close()

    def start(self, command):
        child = Child(command, self.environment, self.home)
        self._stack.callback(child.end)
        return child

    def run(self, *command, timeout=20):
        done = subprocess.run([str(word) for word in command], env=self.environment, cwd=self.home, timeout=timeout,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
        return done.stdout.decode(errors="replace").strip() if done.returncode == 0 else None

    def open_window(self, program):
        """Starts a program and gives it with its window, once that is on screen and at rest."""
        child = self.start([program])
        end = time.monotonic() + 20
        while time.monotonic() < end and child.is_running():
            found = self.run("xdotool", "search", "--onlyvisible", "--pid", child.pid)
            if found:
                time.sleep(1)
                return child, int(found.split()[-1])
            time.sleep(0.05)
        raise Failed(f"{child.name} opened no window")

    def size(self, window):
        text = self.run("xdotool", "getwindowgeometry", "--shell", window) or ""
        values = dict(line.split("=") for line in text.splitlines())
        return int(values["WIDTH"]), int(values["HEIGHT"])

    def minimise(self, window):
        self.run("xdotool", "windowminimize", window)
        time.sleep(0.3)
        if str(window) in (self.run("xdotool", "search", "--onlyvisible", "--name", ".*") or "").split():
            raise Failed("the window did not minimise")

    def owner(self, mode, *options):
        child = self.start([self.settings.owner, *mode.split(), *options])
        child.wait_for_line("owner", 20)
        return child

    def watch_list(self, window, limit=3000):
        """Starts to look at the upper part of the list, below the search field."""
        width, height = self.size(window)
        return self.watch(window, (8, 70, min(240, width // 3), min(130, height - 150)), limit)

    def watch_clip(self, window):
        """Starts to look at the clip that is shown, without its edges."""
        width, height = self.size(window)
        left = width // 3 + 20
        return self.watch(window, (left, 70, width - left - 30, height - 90))

    def watch(self, window, region, limit=3000):
        watcher = self.start([self.settings.helper("copy_latency"), window, *region, limit])
        watcher.wait_for_line("ready", 5)
        return watcher

    def ping(self, *windows):
        child = self.start([self.settings.helper("ping_delay"), *windows])
        child.wait_for_line("ready", 5)
        return child

    def shows(self, text, timeout=10):
        return self.run("/usr/bin/python3", WINDOW_TEXT, "--application", self.settings.program.name, "--quiet",
                        "--timeout", timeout, "--until", text, timeout=timeout + 10) is not None


def delays(ping):
    """How long the program and the bare window beside it let pings wait, in ms, and how much longer the program did."""
    rows = [line.split() for line in ping.finish()][1:]
    figures = [{"pings": int(row[1]), "median": float(row[2]), "p99": float(row[3]), "longest": float(row[4])}
               for row in rows[:2]]
    return {"program": figures[0], "bare_window": figures[1], "excess": float(rows[2][1])}


def shown_after(watcher, timeout=10):
    """The milliseconds until the window changed; None when it did not."""
    words = watcher.line(timeout).split()
    return float(words[1]) if words[0] == "shown" else None


def by_thread(pid):
    """For each thread: its name, milliseconds of CPU and wake-ups so far."""
    threads = {}
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        with contextlib.suppress(OSError):
            status = (task / "status").read_text().splitlines()
            switches = [int(line.split()[1]) for line in status if line.startswith("voluntary_ctxt_switches")]
            threads[task.name] = {"name": (task / "comm").read_text().strip(), "wakeups": switches[0],
                                  "cpu_ms": int((task / "schedstat").read_text().split()[0]) / 1e6}
    return threads


def used_between(before, after):
    """Milliseconds of CPU and wake-ups between two looks at the threads. One that ended meanwhile woke for it."""
    ended = len(before.keys() - after.keys())
    nothing = {"cpu_ms": 0, "wakeups": 0}
    cpu, woken = (sum(now[kind] - before.get(name, nothing)[kind] for name, now in after.items())
                  for kind in ("cpu_ms", "wakeups"))
    return cpu, woken + ended


def memory(pid):
    """Resident, proportional and private bytes."""
    values = {}
    for line in pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines()[1:]:
        name, amount = line.split(":")
        values[name] = int(amount.split()[0]) * 1024
    return {"resident": values["Rss"], "proportional": values["Pss"],
            "private": values["Private_Clean"] + values["Private_Dirty"]}


def peak(pid):
    for line in pathlib.Path(f"/proc/{pid}/status").read_text().splitlines():
        if line.startswith("VmHWM"):
            return int(line.split()[1]) * 1024
    return 0


def random_text(length=60):
    return "".join(random.choice(string.ascii_letters + "      ") for _ in range(length))


def percentile(values, part):
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(len(ordered) * part))]


class Bench:
    def __init__(self, settings):
        self.settings = settings
        self.results = []
        self.raw = {}
        self.program = settings.program

    def report(self, what, value, bound, unit=""):
        is_held = value is not None and value <= bound
        self.results.append({"what": what, "value": value, "bound": bound, "unit": unit, "held": is_held})
        shown = "none" if value is None else f"{value:.2f}"
        print(f"{what:<74} {shown:>10} {unit:<9} at most {bound:g}   {'held' if is_held else 'NOT HELD'}", flush=True)

    def note(self, what, value, unit=""):
        self.results.append({"what": what, "value": value, "unit": unit})
        print(f"{what:<74} {value:>10.2f} {unit:<9} for comparison", flush=True)

    def repeats(self, usual, quick):
        return quick if self.settings.quick else usual

    # Each benchmark below is run by its name.

    def idle(self):
        """What the program costs while nothing happens, and what a plain timer in a bare Qt program costs."""
        seconds = self.repeats(30, 6)
        with contextlib.ExitStack() as stack:
            desktops = {name: stack.enter_context(Desktop(self.settings))
                        for name in ("no clip on show", "hidden", "a clip on show", "plain timer")}
            owners, watched = {}, {}
            for name, desktop in desktops.items():
                if name == "no clip on show":
                    owners[name] = desktop.owner("good", "--text", "Lay there before", "--seconds", 200)
                program = self.settings.helper("reference_poll") if name == "plain timer" else self.program
                child, window = desktop.open_window(program)
                if name in ("hidden", "a clip on show"):
                    owners[name] = desktop.owner("good", "--text", "A clip " + random_text(), "--seconds", 200)
                    time.sleep(0.5)
                if name == "hidden":
                    desktop.minimise(window)
                watched[name] = child.pid
            time.sleep(self.repeats(6, 3))
            asked = {name: sum(owner.requests().values()) for name, owner in owners.items()}
            before = {name: (time.monotonic(), by_thread(pid)) for name, pid in watched.items()}
            time.sleep(seconds)
            raw = self.raw["idle"] = {}
            for name, pid in watched.items():
                start, threads = before[name]
                minutes, threads_after = (time.monotonic() - start) / 60, by_thread(pid)
                cpu, woken = used_between(threads, threads_after)
                raw[name] = {"cpu_ms_per_minute": cpu / minutes, "wakeups_per_minute": woken / minutes,
                             "threads": {"before": threads, "after": threads_after}}
            for name, owner in owners.items():
                raw[name]["requests_before"] = asked[name]
                raw[name]["requests_meanwhile"] = sum(owner.requests().values()) - asked[name]
        for name, cpu, woken in (("no clip on show", 5, 12), ("hidden", 5, 12), ("a clip on show", 30, 62)):
            self.report(f"idle, {name}: CPU", raw[name]["cpu_ms_per_minute"], cpu, "ms/min")
            self.report(f"idle, {name}: wake-ups", raw[name]["wakeups_per_minute"], woken, "a minute")
            self.report(f"idle, {name}: selection requests", raw[name]["requests_meanwhile"], 0)
        self.note("idle, bare Qt with a plain 0.2 s timer: CPU", raw["plain timer"]["cpu_ms_per_minute"], "ms/min")
        self.note("idle, bare Qt with a plain 0.2 s timer: wake-ups", raw["plain timer"]["wakeups_per_minute"],
                  "a minute")

    def latency(self):
        """From a copy to the screen after a quiet second, and what the owner was asked for."""
        times, requests = [], []
        with Desktop(self.settings) as desktop:
            _, window = desktop.open_window(self.program)
            desktop.owner("good", "--text", "The first one")
            time.sleep(1.5)
            watcher = desktop.watch_list(window)
            for _ in range(self.repeats(40, 6)):
                time.sleep(1.05 + random.random() * 0.3)
                owner = desktop.owner("good", "--text", random_text(), "--html", "<b>bold</b>", "--rtf",
                                      r"{\rtf1\ansi " + random_text() + "}", "--offer", "image/png=not really")
                times.append(shown_after(watcher))
                time.sleep(0.2)
                requests.append(dict(owner.requests()))
        good = [each for each in times if each is not None]
        self.raw["latency"] = {"milliseconds": times, "requests": requests}
        self.report("copy after a quiet second: not shown", len(times) - len(good), 0, "copies")
        self.report("copy after a quiet second: median", statistics.median(good) if good else None, 30, "ms")
        self.report("copy after a quiet second: 95th percentile", percentile(good, 0.95) if good else None, 100, "ms")
        self.report("copy: requests for any one target", max((max(each.values(), default=0) for each in requests)), 1)
        self.report("copy: kinds of plain text asked for", max(len(TEXT_TARGETS & set(each)) for each in requests), 1)
        others = {target for each in requests for target in each if target not in READ_TARGETS}
        self.report("copy: targets asked for that are never read", len(others), 0)
        asked = collections.Counter(target for each in requests for target in each)
        print("    asked for in", len(requests), "copies:", dict(asked), "unread:", sorted(others) or "none", flush=True)

    def rich_text(self):
        """From a copy of 100 KB of formatted text to the whole of it on screen that is in sight."""
        times = {"formatted": [], "plain": []}
        with Desktop(self.settings) as desktop:
            _, window = desktop.open_window(self.program)
            desktop.owner("good", "--text", "The first one")
            time.sleep(1.5)
            watcher = desktop.watch_clip(window)
            for _ in range(self.repeats(15, 3)):
                for kind, taken in times.items():
                    time.sleep(1.2)
                    text = [random_text() for _ in range(1000)]
                    options = ["--text", "\n".join(text)]
                    if kind == "formatted":
                        options += ["--rtf", r"{\rtf1\ansi " + "".join(rf"{{\b {line[:8]}}}{{\i\fs28 {line[8:16]}}}"
                                                                        rf"{line[16:]}\par " for line in text) + "}"]
                    desktop.owner("good", *options)
                    taken.append(shown_after(watcher))
        self.raw["rich_text"] = times
        good = {kind: [each for each in taken if each is not None] for kind, taken in times.items()}
        self.report("100 KB of formatted text: not shown", sum(each is None for each in times["formatted"]), 0)
        self.report("100 KB of formatted text, from its copy to the screen: median",
                    statistics.median(good["formatted"]) if good["formatted"] else None, 50, "ms")
        self.note("60 KB of plain text, from its copy to the screen: median",
                  statistics.median(good["plain"]) if good["plain"] else None, "ms")

    def start(self):
        """From exec to the first window with something in it, and the memory that it takes."""
        programs = {"program": self.program, "bare": self.settings.helper("reference_window")}
        raw = self.raw["start"] = {name: {"mapped_ms": [], "content_ms": []} for name in programs}
        with Desktop(self.settings) as desktop:
            desktop.owner("good", "--text", "Lay there before", "--seconds", 200)
            for turn in range(self.repeats(9, 2) + 1):
                for name, program in programs.items():
                    output = desktop.run(self.settings.helper("start_time"), program)
                    if output is None:
                        raise Failed(f"{program} showed no window")
                    mapped, content = map(float, output.split())
                    if turn > 0:  # The first turn fills the caches.
                        raw[name]["mapped_ms"].append(mapped)
                        raw[name]["content_ms"].append(content)
            opened = {name: desktop.open_window(program)[0] for name, program in programs.items()}
            time.sleep(2)
            for name, child in opened.items():
                raw[name]["memory"] = memory(child.pid)
        medians = {name: statistics.median(raw[name]["content_ms"]) for name in programs}
        self.note("start to first content: the program", medians["program"], "ms")
        self.note("start to first content: a bare Qt window", medians["bare"], "ms")
        self.report("start to first content, against a bare Qt window", medians["program"] / medians["bare"], 1.5,
                    "times")
        for kind in ("resident", "proportional", "private"):
            more = raw["program"]["memory"][kind] - raw["bare"]["memory"][kind]
            self.report(f"{kind} memory above a bare Qt window", more / MB, 15, "MB")

    def history_memory(self):
        """A long history within one process, captured and cleared."""
        output = subprocess.run([self.settings.helper("memory_bench")], stdout=subprocess.PIPE, timeout=120, check=True)
        raw = dict((name, int(value)) for name, value in (line.split() for line in output.stdout.decode().splitlines()))
        self.raw["history_memory"] = raw
        self.report(f"memory of {raw['clips']} clips of 1 KB, against the text",
                    (raw["full"] - raw["before"]) / raw["payload"], 1.4, "times")
        self.report("resident memory after the clearing, against before", raw["cleared"] / raw["before"], 1.1, "times")

    def large_memory(self):
        """One text of 100 MB in the program, and its going."""
        size = 100 * MB
        with Desktop(self.settings) as desktop:
            child, window = desktop.open_window(self.program)
            desktop.owner("good", "--text", "A small one")
            time.sleep(2)
            before = memory(child.pid)["resident"]
            watcher = desktop.watch_list(window, 20000)
            owner = desktop.owner("good", "--size", size, "--seconds", 100)
            elapsed = shown_after(watcher, 30)
            time.sleep(2)
            full, highest = memory(child.pid)["resident"], peak(child.pid)
            self.delete_all_clips(desktop, child, window)
            cleared = memory(child.pid)["resident"]
            # What lies on the clipboard is the snapshot's; it goes with the next copy.
            desktop.owner("good", "--text", "Another small one")
            time.sleep(1)
            self.delete_all_clips(desktop, child, window)
            emptied = memory(child.pid)["resident"]
            requests = dict(owner.requests())
        self.raw["large_memory"] = {"before": before, "full": full, "peak": highest, "cleared": cleared,
                                    "cleared_and_off_the_clipboard": emptied, "shown_ms": elapsed, "requests": requests}
        self.report("100 MB text: not shown", 0 if elapsed is not None else 1, 0)
        self.report("100 MB text: memory once captured, against the text", (full - before) / size, 1.2, "times")
        self.report("100 MB text: memory at the peak, against the text", (highest - before) / size, 1.5, "times")
        self.report("100 MB text: memory after the clearing, against before", cleared / before, 1.1, "times")
        self.report("100 MB text: the same with another text on the clipboard", emptied / before, 1.1, "times")

    def delete_all_clips(self, desktop, child, window):
        """Presses the button at the end of the strip below the list, and the dialog's first button."""
        own = lambda: set((desktop.run("xdotool", "search", "--onlyvisible", "--pid", child.pid) or "").split())
        windows = own()
        desktop.run("xdotool", "windowactivate", "--sync", window)
        button = CLEAR_BUTTON[0], desktop.size(window)[1] - CLEAR_BUTTON[1]
        desktop.run("xdotool", "mousemove", "--window", window, *button, "click", 1)
        time.sleep(0.7)
        dialogs = own() - windows
        if not dialogs:
            raise Failed("the dialog of the clear button did not open")
        desktop.run("xdotool", "windowactivate", "--sync", dialogs.pop())
        desktop.run("xdotool", "key", "Tab", "space")  # From "Cancel" to "Delete all clips".
        time.sleep(1.5)
        if own() - windows:
            raise Failed("the dialog of the clear button did not close")

    def flood(self):
        """A thousand copies as fast as a client can make them, and a thousand that leave time for a few fetches."""
        count, last = 1000, "The last of the flood " + random_text(20)
        raw = self.raw["flood"] = {}
        with Desktop(self.settings) as desktop:
            child, _ = desktop.open_window(self.program)
            time.sleep(2)
            raw["at once"] = self.flooded(desktop, child, count, last, 0)
            raw["1 ms apart"] = self.flooded(desktop, child, count, last, 1)
        with Desktop(self.settings, is_accessible=True) as desktop:
            desktop.open_window(self.program)
            desktop.owner(f"flood {count}", "--text", last)
            raw["last_is_shown"] = desktop.shows(last)
        self.report("flood: last copy not recorded", 0 if raw["last_is_shown"] else 1, 0)
        for name in ("at once", "1 ms apart"):
            # One fetch for each tick that begins while it goes on, and one at its end.
            most = int(raw[name]["seconds"] / TICK) + 2
            self.report(f"flood, {name}: fetches", raw[name]["requests"].get("TARGETS", 0), most)
            self.report(f"flood, {name}: CPU", raw[name]["cpu_ms"], 200, "ms")

    def flooded(self, desktop, child, count, last, interval):
        before, start = by_thread(child.pid), time.monotonic()
        owner = desktop.owner(f"flood {count}", "--text", last, "--interval", interval)
        seconds = time.monotonic() - start
        time.sleep(2)
        return {"cpu_ms": used_between(before, by_thread(child.pid))[0], "seconds": seconds,
                "requests": dict(owner.requests())}

    def large_text(self):
        """Large texts on their way into the list, with the event loop watched meanwhile."""
        raw = self.raw["large_text"] = {}
        for size, limit, repeats in ((10 * MB, 150, self.repeats(7, 2)), (100 * MB, 1000, self.repeats(3, 1))):
            with Desktop(self.settings) as desktop:
                _, window = desktop.open_window(self.program)
                _, bare = desktop.open_window(self.settings.helper("reference_window"))
                desktop.run("xdotool", "windowactivate", "--sync", window)
                times, busy = [], []
                watcher = desktop.watch_list(window, 20000)
                for _ in range(repeats):
                    desktop.owner("good", "--text", random_text())
                    shown_after(watcher, 30)
                    time.sleep(1.2)
                    ping = desktop.ping(window, bare)
                    desktop.owner("good", "--size", size, "--seconds", 60)
                    times.append(shown_after(watcher, 30))
                    time.sleep(1)
                    busy.append(delays(ping))
            good = [each for each in times if each is not None]
            name = f"{size // MB} MB text"
            raw[name] = {"milliseconds": times, "waits": busy}
            self.report(f"{name}: in the list, median", statistics.median(good) if good else None, limit, "ms")
            self.report(f"{name}: in the list, longest", max(good) if good else None, limit, "ms")
            self.report_waits(name, busy)

    def report_waits(self, what, waits):
        """How long the event loop kept others waiting. What a bare window waited for as well is not the loop's doing."""
        self.report(f"{what}: event loop busy, longest", max(each["excess"] for each in waits), 50, "ms")
        for name, title in (("program", "the program"), ("bare_window", "a bare Qt window beside it")):
            self.note(f"{what}: longest wait for {title}", max(each[name]["longest"] for each in waits), "ms")

    def hostile(self):
        """Owners that misbehave, each followed by one that does not."""
        modes = HOSTILE_MODES if not self.settings.quick else HOSTILE_MODES[::7]
        raw = self.raw["hostile"] = {"good": []}
        with Desktop(self.settings) as desktop:
            _, window = desktop.open_window(self.program)
            _, bare = desktop.open_window(self.settings.helper("reference_window"))
            desktop.run("xdotool", "windowactivate", "--sync", window)
            desktop.owner("good", "--text", "The first one")
            time.sleep(1.2)
            for mode in ["good"] * self.repeats(9, 2) + modes:
                self.hostile_turn(desktop, mode, window, bare)
        good = statistics.median(raw["good"])
        later = {mode: raw[mode]["next_ms"] for mode in modes}
        worst = max(modes, key=lambda mode: raw[mode]["excess"])
        self.report_waits(f"hostile owners (worst: {worst})", [raw[mode] for mode in modes])
        self.note("a copy after a good owner, median", good, "ms")
        missing = [mode for mode in modes if later[mode] is None]
        self.report(f"hostile owners: next copy never shown ({', '.join(missing) or 'none'})", len(missing), 0)
        slowest = max(modes, key=lambda mode: later[mode] or 0)
        self.report(f"the next copy, later than after a good owner ({slowest})", (later[slowest] or 0) - good, 10, "ms")
        self.report("the next copy, later than after a good owner, median of the modes",
                    statistics.median(later[mode] or 0 for mode in modes) - good, 10, "ms")

    def hostile_turn(self, desktop, mode, window, bare):
        ping = None if mode == "good" else desktop.ping(window, bare)
        hostile = desktop.start([self.settings.owner, mode, "--seconds", 8, "--text", "Of " + mode])
        with contextlib.suppress(Failed):
            hostile.wait_for_line("owner", 5)
        time.sleep(1.3)
        if ping is not None:
            self.raw["hostile"][mode] = {**delays(ping), "requests": dict(hostile.requests())}
        watcher = desktop.watch_list(window)
        desktop.owner("good", "--text", random_text())
        elapsed = shown_after(watcher)
        watcher.finish()
        if mode == "good":
            self.raw["hostile"]["good"].append(elapsed)
        else:
            self.raw["hostile"][mode]["next_ms"] = elapsed
        hostile.end()


BENCHMARKS = ["start", "history_memory", "latency", "rich_text", "flood", "large_text", "large_memory", "hostile", "idle"]


class Settings:
    def __init__(self, arguments):
        self.program = arguments.program.resolve()
        self.quick = arguments.quick
        self.helpers = arguments.helpers.resolve()
        self.owner = self.helpers / "tests" / "support" / "tarnix_hostile_owner"

    def helper(self, name):
        return self.helpers / "bench" / f"tarnix_{name}"


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", nargs="?", type=pathlib.Path, default=ROOT / "build" / "release" / "tarnix")
    parser.add_argument("--helpers", type=pathlib.Path, default=ROOT / "build" / "benchproc", metavar="DIR",
                        help="the build directory with the programs of bench/, see --build")
    parser.add_argument("--build", action="store_true", help="build these programs first")
    parser.add_argument("--only", action="append", choices=BENCHMARKS, metavar="NAME", help=", ".join(BENCHMARKS))
    parser.add_argument("--quick", action="store_true", help="fewer repetitions, in about 90 s instead of 4 minutes")
    parser.add_argument("--json", type=pathlib.Path, default=ROOT / "build" / "process_bench.json", metavar="FILE")
    return parser.parse_args()


def build(folder):
    subprocess.run(["cmake", "-S", ROOT, "-B", folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                    "-DTARNIX_BENCHMARKS=ON", "-DBUILD_TESTING=OFF"], stdout=subprocess.DEVNULL, check=True)
    subprocess.run(["ninja", "-C", folder, "--quiet", "tarnix_process_bench_programs"], check=True)


def time_is_up(*_):
    raise TimeIsUp


def main():
    arguments = parse_arguments()
    settings = Settings(arguments)
    if arguments.build:
        build(settings.helpers)
    for needed in (settings.program, settings.owner, settings.helper("copy_latency")):
        if not needed.exists():
            print(f"{needed} is not there; build it first (--build builds the programs of bench/).", file=sys.stderr)
            return 2
    signal.signal(signal.SIGALRM, time_is_up)
    signal.signal(signal.SIGTERM, time_is_up)
    signal.alarm(120 if settings.quick else 360)

    print(f"load {' '.join(f'{each:.2f}' for each in os.getloadavg())}, {os.cpu_count()} processors", flush=True)
    bench = Bench(settings)
    failures = []
    for name in arguments.only or BENCHMARKS:
        try:
            getattr(bench, name)()
        except TimeIsUp:
            failures.append(name)
            print(f"{name}: the time for all benchmarks is up", flush=True)
            break
        except (Failed, OSError, KeyError, ValueError, subprocess.SubprocessError) as problem:
            failures.append(name)
            print(f"{name}: {problem!r}", flush=True)
    signal.alarm(0)
    arguments.json.parent.mkdir(parents=True, exist_ok=True)
    arguments.json.write_text(json.dumps({"load": os.getloadavg(), "results": bench.results, "failed": failures,
                                          "raw": bench.raw}, indent=1))
    missed = [each for each in bench.results if each.get("held") is False]
    print(f"{len(missed)} bounds not held, {len(failures)} benchmarks failed; raw numbers in {arguments.json}")
    return 1 if missed or failures else 0


if __name__ == "__main__":
    sys.exit(main())
