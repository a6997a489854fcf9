#!/usr/bin/env python3
"""Reads every document of rtf_corpus/ with rtf_dump and scores what comes out.

Usage: rtf_score.py RTF_DUMP [--all] [NAME...]

A document's score is 1 if its words are the expected ones, in their order, and all expected runs are found with
their looks; else how alike the words are, or the share of runs that were found. Prints the documents below 1 (with
--all, each), and the totals. Fails when fewer than 95 % of the documents score 1, or when one scores less than 0.9.

The corpus: written.json is written by hand after the rules of the format; documents.json was saved by a word
processor, and copies.json was copied out of one. Each is a list of objects: `name`; `rtf`, each character a byte;
`text`; and perhaps `runs`, a list of pieces of the text with the looks that rtf_dump must print for them.
"""

import difflib
import json
import pathlib
import re
import subprocess
import sys
import tempfile
from typing import NamedTuple

CORPUS = pathlib.Path(__file__).with_name("rtf_corpus")
ENOUGH_EXACT = 0.95
LEAST_SCORE = 0.9
SECONDS = 60


class Score(NamedTuple):
    """What reading one document gave."""

    value: float
    is_strict: bool  # The text is the expected one to the letter, but for the line ends behind it.
    faults: list


def lines_of(text):
    return re.sub(r"\r\n?|\u2028|\f", "\n", text).replace("\ufffc", "").rstrip("\n")


def words_of(text):
    """Blanks, tabs and line ends count alike, and so do the signs that word processors draw before an item."""
    return [re.sub(r"^[•◦▪▫–‣⁃·\uf0b7]$", "•", word) for word in lines_of(text).split()]


def look_matches(run, look):
    for key, wanted in look.items():
        found = run.get(key)
        if key == "text":
            continue
        if key == "size_pt":
            matches = found is not None and abs(found - wanted) < 0.01
        elif key in ("color_hex", "family"):
            matches = (found or "").lower() == wanted.lower()
        else:
            matches = (found not in (None, False, "none")) == wanted
        if not matches:
            return False
    return True


def finds_run(runs, look):
    """Whether the piece occurs in the text with its look throughout."""
    text = "".join(run["text"] for run in runs)
    fits = [matches for run in runs for matches in [look_matches(run, look)] * len(run["text"])]
    size = len(look["text"])
    starts = (match.start() for match in re.finditer(f"(?={re.escape(look['text'])})", text))
    return any(all(fits[start : start + size]) for start in starts)


def dump(program, what, file):
    result = subprocess.run([program, what, file], capture_output=True, timeout=SECONDS, check=False)
    if result.returncode != 0:
        raise ValueError(f"rtf_dump {what} ended with {result.returncode}: {result.stderr[-300:]!r}")
    return result.stdout.decode("utf-8")


def difference(expected, found):
    matcher = difflib.SequenceMatcher(None, expected, found, autojunk=False)
    changes = [change for change in matcher.get_opcodes() if change[0] != "equal"]
    tag, a, b, c, d = changes[0]
    return matcher.ratio(), f"{tag}: {expected[a:b][:8]} is {found[c:d][:8]}"


def score(program, document, file):
    file.write_bytes(document["rtf"].encode("latin-1"))
    try:
        text = dump(program, "--text", file)
        runs = json.loads(dump(program, "--runs", file)) if "runs" in document else []
    except (ValueError, subprocess.TimeoutExpired) as error:
        return Score(0, False, [str(error)])
    value, faults = 1.0, []
    expected, found = words_of(document["text"]), words_of(text)
    if expected != found:
        value, fault = difference(expected, found)
        faults.append(fault)
    looks = document.get("runs", [])
    missing = [look for look in looks if not finds_run(runs, look)]
    if missing:
        value = min(value, 1 - len(missing) / len(looks))
        faults += [f"no run {look}" for look in missing]
    return Score(value, lines_of(text) == lines_of(document["text"]), faults)


def main(arguments):
    if not arguments:
        sys.exit(__doc__)
    shows_all = "--all" in arguments
    names = [argument for argument in arguments[1:] if argument != "--all"]
    scores = {}
    with tempfile.TemporaryDirectory() as folder:
        for container in sorted(CORPUS.glob("*.json")):
            for document in json.loads(container.read_text("utf-8")):
                name = f"{container.stem}/{document['name']}"
                if not names or document["name"] in names or name in names:
                    scores[name] = score(arguments[0], document, pathlib.Path(folder) / "document.rtf")
    for name, result in scores.items():
        if shows_all or result.value < 1:
            print(f"{result.value:.3f} {name}", *result.faults, sep="\n        ")
    exact = sum(result.value == 1 for result in scores.values())
    strict = sum(result.is_strict for result in scores.values())
    least = min((result.value for result in scores.values()), default=0)
    print(f"{exact} of {len(scores)} exact, {strict} to the letter; the least scores {least:.3f}")
    return 0 if exact >= ENOUGH_EXACT * len(scores) and least >= LEAST_SCORE else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
