#!/usr/bin/env python3
"""Checks what the build can't: which folder of src/ includes and calls what.

Prints one line for each fault and fails when there is any. Usage: layering.py ROOT
"""

import pathlib
import re
import sys
from typing import Iterator, NamedTuple

STANDARD_HEADERS = set(
    """
    algorithm any array atomic bit bitset cassert cctype cerrno charconv chrono climits cmath compare concepts
    condition_variable coroutine cstdarg cstddef cstdint cstdio cstdlib cstring ctime deque exception filesystem format
    forward_list fstream functional future initializer_list iomanip ios iosfwd iostream istream iterator limits list
    locale map memory memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex set
    shared_mutex source_location span sstream stack stdexcept stop_token streambuf string string_view strstream
    syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set utility valarray
    variant vector version
    """.split()
)
QT = re.compile(r"Q[A-Z]\w*(/.*)?|qt.*|private/q.*|qpa/.*", re.ASCII)
XCB = re.compile(r"xcb/.*|X11/.*|xkbcommon/.*", re.ASCII)


# What src/platform may include beside the standard library, in source files: the header, and which files (None: any).
OWN_LIBRARIES = [
    (re.compile(r"nlohmann/json\.hpp"), None),
    (re.compile(r"unicode/(bytestream|normalizer2)\.h"), {"src/platform/foundation/canonical_mapping.cpp"}),
    (re.compile(r"unicode/ucnv\.h"), {"src/platform/appkit/rich_text/text/code_page.cpp"}),
    (re.compile(r"gumbo\.h"), {"src/platform/appkit/rich_text/html/html_reader.cpp"}),
]


class Room(NamedTuple):
    """A folder of src/: the folders it includes beside itself, and the libraries beside the standard one."""

    includes: frozenset
    libraries: str = "none"  # "none", "own" (see OWN_LIBRARIES), or "system" less what `excluded` matches.
    excluded: tuple = ()
    is_pure: bool = True  # No threads, clocks, environment, files or printing.


def logic(*includes):
    return Room(frozenset(includes))


def backend(*excluded):
    return Room(frozenset({"platform"}), "system", excluded, is_pure=False)


ROOMS = {
    "platform": Room(frozenset(), "own"),
    "capture": logic("platform"),
    "settings": logic("platform"),
    "shortcuts": logic("platform"),
    "detail": logic("platform", "capture", "settings"),
    "history": logic("platform", "capture", "settings", "detail"),
    "backends/simulated": Room(frozenset({"platform"})),
    "backends/linux": backend(QT, XCB),
    "backends/x11": backend(QT),
    "backends/qt": Room(frozenset({"platform", "previewer/protocol"}), "system", (XCB,), is_pure=False),
    "previewer/protocol": Room(frozenset()),
    "previewer": Room(frozenset({"previewer/protocol"}), "system", (XCB,), is_pure=False),
}
# The rooms inside some of them, and which of each other these include. What lies beside them may include all.
CHAMBERS = {
    "backends/linux": {"files": (), "applications": ("files",)},
    "backends/qt": {
        "theme": (),
        "widgets": ("theme",),
        "text/plain": ("theme", "widgets"),
        "text/rich": ("theme", "widgets", "text/plain"),
        "rows": ("theme", "widgets"),
        "tree": ("theme",),
        "previews": ("theme", "widgets", "text/plain"),
        "presenters": ("theme", "widgets", "text/plain", "text/rich", "rows", "previews", "tree"),
    },
    "backends/x11": {
        "text": (), "connection": ("text",), "windows": ("connection",), "clipboard": ("text", "connection"),
    },
    "platform": {
        "foundation": (),
        "foundation/coding": ("foundation",),
        "foundation/defaults": ("foundation",),
        "combine": ("foundation",),
        "concurrency": ("foundation",),
        "coregraphics": ("foundation",),
        "appkit": ("foundation", "foundation/coding", "combine", "coregraphics"),
        "appkit/rich_text/text": ("foundation", "coregraphics", "appkit"),
        "appkit/rich_text/rtf": ("foundation", "coregraphics", "appkit", "appkit/rich_text/text"),
        "appkit/rich_text/html": ("foundation", "coregraphics", "appkit", "appkit/rich_text/text"),
        "appkit/rich_text": ("foundation", "appkit", "appkit/rich_text/text", "appkit/rich_text/rtf",
                             "appkit/rich_text/html"),
        "quicklook": ("foundation", "appkit"),
        "swiftui": ("foundation", "combine", "coregraphics", "appkit", "quicklook"),
    },
    # Observing and showing a setting takes its key.
    "settings": {"bridges": (), "observation": ("", "bridges"), "views": ("", "bridges", "observation")},
}
# The one room that knows all others.
UNRESTRICTED_ROOM = "app"

IMPURE_HEADERS = {
    "condition_variable", "cstdio", "ctime", "filesystem", "fstream", "future", "iomanip", "iostream", "mutex",
    "shared_mutex", "stop_token", "syncstream", "thread",
}
IMPURE_CALLS = re.compile(
    r"\b(getenv|system_clock|steady_clock|high_resolution_clock|printf|puts|putchar|cout|cerr|clog"
    r"|this_thread|jthread|sleep_for|sleep_until)\b"
)
# They report what they can't decode or encode; that is part of what they do.
MAY_PRINT = {"src/capture/dynamic_type.cpp", "src/settings/bridges/codable_bridge.cpp"}
# Settings may be used from any thread, and the main run loop can be reached from any.
MAY_LOCK = {
    "src/platform/concurrency/async_stream.h", "src/platform/foundation/defaults/defaults_suites.h",
    "src/platform/foundation/run_loop.h", "src/platform/foundation/defaults/user_defaults.h",
}


def without_comments(source):
    """The source with comments, characters and string literals blanked, line breaks kept."""
    quoted = [rf"{quote}(?:\\.|[^{quote}\\\n])*{quote}" for quote in "'\""]
    pattern = re.compile("|".join([r"//[^\n]*", r"/\*.*?\*/", r"(?<=\w)'(?=\w)", *quoted]), re.DOTALL)
    return pattern.sub(lambda match: re.sub(r"[^\n]", " ", match.group()), source)


def room_of(path):
    """The room that a path below src/ lies in, or None."""
    parts = path.split("/")
    for length in (2, 1):
        name = "/".join(parts[:length])
        if len(parts) > length and (name in ROOMS or name == UNRESTRICTED_ROOM):
            return name
    return None


def chamber_of(room, path):
    """The room inside `room` that a path below src/ lies in; empty beside them."""
    return path.removeprefix(room + "/").rpartition("/")[0]


def may_enter(room, path, header):
    """Whether the file may include this header of its own room."""
    inner = CHAMBERS.get(room, {})
    start, end = chamber_of(room, path.removeprefix("src/")), chamber_of(room, header)
    return start == end or (end in inner if start == "" else end in inner.get(start, ()))


def may_use_library(room, header, path):
    if room.libraries == "own":
        return path.endswith(".cpp") and any(
            pattern.fullmatch(header) and (files is None or path in files) for pattern, files in OWN_LIBRARIES
        )
    return room.libraries == "system" and not any(pattern.fullmatch(header) for pattern in room.excluded)


def include_fault(name, path, line):
    """What is wrong with an include line of a file in room `name`, or None."""
    room = ROOMS[name]
    match = re.match(r'\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)', line)
    if match is None:
        return "includes what a macro names"
    own, header = match.groups()
    if own is not None:
        target = room_of(own)
        is_allowed = may_enter(name, path, own) if target == name else target in room.includes
        return None if is_allowed else f'includes "{own}"'
    if header in STANDARD_HEADERS:
        is_allowed = not room.is_pure or header not in IMPURE_HEADERS
        is_allowed = is_allowed or (header == "iostream" and path in MAY_PRINT)
        is_allowed = is_allowed or (header == "mutex" and path in MAY_LOCK)
    else:
        is_allowed = may_use_library(room, header, path)
    return None if is_allowed else f"includes <{header}>"


def source_faults(path, source) -> Iterator[str]:
    """The faults of one file; `path` starts with src/."""
    name = room_of(path.removeprefix("src/"))
    if name is None:
        yield f"{path}: lies in no known folder"
        return
    if name == UNRESTRICTED_ROOM:
        return
    for number, line in enumerate(source.splitlines(), start=1):
        if re.match(r"\s*#\s*include", line):
            fault = include_fault(name, path, line)
            if fault:
                yield f"{path}:{number}: src/{name} {fault}"
    if not ROOMS[name].is_pure:
        return
    for number, line in enumerate(without_comments(source).splitlines(), start=1):
        match = IMPURE_CALLS.search(line)
        if match and path not in MAY_PRINT:
            yield f"{path}:{number}: src/{name} uses {match.group()}"


def faults(root) -> Iterator[str]:
    for path in sorted((root / "src").rglob("*")):
        if path.suffix in {".h", ".cpp"}:
            yield from source_faults(path.relative_to(root).as_posix(), path.read_text(encoding="utf-8"))


def main():
    root = pathlib.Path(sys.argv[1])
    if not (root / "src").is_dir():
        sys.exit(f"{root} holds no src/")
    found = list(faults(root))
    print("\n".join(found) if found else "No faults.")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
