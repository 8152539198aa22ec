#!/usr/bin/env python3
"""Checks that every window and every message has a topic in the help volume.

usage: help_topics_test.py REPO_ROOT VOLUME

The names are those of the rows of gvga_uid_desc, and the help keys that the program's sources hand
to message boxes or that stand beside the messages' texts.
"""

import re
import sys
from pathlib import Path

ROWS = "vga/windows/windowtable.cpp"
MESSAGES = "resources/messages/sna.msg.in"
ROW = re.compile(r'[{(]\s*VGA_UID_\w+,\s*"(\w+)"')
BOX = re.compile(r"vga_display_(?:error|info|confirm|confirm_each)_dialog\s*\(([^;]*);", re.S)
KEY = re.compile(r'^"([a-z0-9_]+)"$')
# Topics of lines and lists.
NAMED = ((re.compile(r'\.topic = "(\w+)"'), "vga/windows/listwindow/linerules.cpp"),
         (re.compile(r"\btopic=(\w+)"), "resources/windows/nodew.window"))
ASSIGNED = re.compile(r'\bhelp_key\s*=\s*"(\w+)"')


def keys_of(text):
    """The key is the third argument of a box, where it is a literal."""
    keys = set(ASSIGNED.findall(text))
    for call in BOX.findall(text):
        arguments = re.split(r",\s*(?![^()]*\))", call.rstrip().removesuffix(")"))
        if len(arguments) > 2 and KEY.match(arguments[2].strip()):
            keys.add(KEY.match(arguments[2].strip())[1])
    return keys


def main(arguments):
    if len(arguments) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    root = Path(arguments[1])
    volume = Path(arguments[2]).read_text(encoding="utf-8")
    topics = set(re.findall(r"^T\t(\w+)\t", volume, re.M))
    rows = set(ROW.findall((root / ROWS).read_text(encoding="utf-8")))
    messages = (root / MESSAGES).read_text(encoding="latin-1")
    keys = set(re.findall(r"^\$ help: *(\w+)$", messages, re.M))
    for path in (root / "vga").rglob("*.cpp"):
        keys |= keys_of(path.read_text(encoding="utf-8"))
    for pattern, name in NAMED:
        named = set(pattern.findall((root / name).read_text(encoding="utf-8")))
        keys |= named or {f"(none in {name})"}
    faults = [f"the window {name} has no topic" for name in sorted(rows - topics)]
    faults += [f"the message key {name} has no topic" for name in sorted(keys - topics)]
    if len(rows) != 87:
        faults.append(f"{ROWS}: {len(rows)} rows were recognised, not 87")
    if not {"verbfailed", "confirmexit"} <= keys:
        faults.append("vga: known help keys were not recognised")
    for fault in faults:
        print(fault)
    print(f"{len(rows)} windows, {len(keys)} message keys, {len(topics)} topics")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
