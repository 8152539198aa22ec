#!/usr/bin/env python3
"""Checks that faults in descriptions of dialogs are found, each in its line, and nothing is made then.

usage: dialog_source_test.py REPO_ROOT
"""

import contextlib
import io
import sys
import tempfile
from pathlib import Path

FIELDS = "".join(f"{row}\n".replace(" ", "\t") for row in (  # as listfields prints them
    "port name NameA 8 0 0 Plain 0 ", "port kind Word 1 0 0 Plain 0 leased:0,shared:0",
    "port on Flag 1 0 0 Plain 0 ", "port limit Number 2 1 100 Links 0 ", "port.item user NameA 8 0 0 Plain 0 ",
    "other text Text 8 0 0 Plain 0 "))
GOOD = {"main.dlg": '''dialog main "Main" of port PORT
widgets main
key name "Name:" required
edit kind "Kind:" as=Type member=type
edit limit "Limit:" low=2 high=50 when=kind=leased&new
switch extra "Extra"
child part "Part..."
list users "Users:" editor=item
column user "User" columns=9
''', "part.dlg": 'dialog part "Part" of port PORT\nwidgets part\nchild\nedit on "On" not\n',
        "item.dlg": 'dialog item "User" of port.item ITEM\nwidgets item\nchild\nkey user "User:"\n'}
HEAD = 'dialog more "More" of port PORT\n'
BODY = HEAD + "widgets more\n"

FAULTS = (  # what stands behind main.dlg, or is a dialog more.dlg, and the fault that it has
    ('child none "None..."', "no child form none"), (BODY + "child", "nothing opens the child more"),
    (BODY + 'list l "L:" editor=part\ncolumn user "User"', "say of port.item TYPE"),
    ('dialog more "M" of other OTHER\nwidgets more\nchild part "P"', "say of other OTHER"),
    (BODY + 'child\nswitch s "S"', "put the switch there"), (BODY + 'child part "Part"', "other switches"),
    (HEAD, "without it there is no such form"), ("widgets", "write: widgets NAME"), ("page", 'write: page "Tab"'),
    (BODY + 'choice leased "L"', "stands below a field that is a menu"), ("choice leased", "write: choice WORD"),
    ('acts "Go"', "say acts"), ("acts", 'write: acts "Button"'), ("plan issue", "write: plan MEMBER=VALUE"), ("plan nothing=1", "a plan has no nothing"),
    ('page "P"', "put the page above them"), ("order name users", "users is no field"),
    ('edit on "On" when=kind=other', "write one of leased, shared"), ('edit on "On" when=limit=1', "has no words"),
    ('edit on "On" when=kind>1', '">" goes with a number'), ('edit on "On" when=kind', "is no flag"),
    ('edit on "On" when=extra=on', "write one of yes, no"), ('edit on "On" when=nothing', "no field nothing"),
    ('edit on "On" when=!new', '"!" goes with a flag only'),
    ('edit on "On" when=other\nedit port.on "On" as=Other member=other when=on', "in a circle"),
    ('edit on "On" low=1', '"low" does nothing'), ('edit on "On" from=f', '"from" does nothing'),
    (BODY + 'edit name "N:" not', '"not" does nothing'), (BODY + 'edit name "N:" zero', '"zero" does nothing'),
    (BODY + 'edit kind "K:" columns=9', '"columns" does nothing'), (BODY + 'edit name "N:" free', "add that"),
    (BODY + 'edit limit "L:" box=:', "is no name"), (BODY + 'edit name "N:" columns=x', "is no number"),
    (BODY + 'edit limit "L:" low=9 high=8', "write bounds in order"),
    (BODY + 'edit limit "L:" high=101', "schema's 1 to 100"), ('choice leased "L"', "that is a menu"),
    (BODY + 'edit kind "K:"\nchoice other "O"', "has no word other"),
    ('edit name "Again:" as=Again member=again', "name is there already"),
    ('edit on "On" as=Type', "mainType is there already"), ('edit on "On" member=type', "say member=name"),
    (BODY + 'key name "N:"\nedit on "On"\nkey limit "L:"', "put the keys next to each other"),
    ('edit on "O"n"', "a text does not end"), ('edit on "a"b"c"', "has a double quote inside"),
    ('edit on "O\\n"', "has a backslash"), ('edit on "Größe:"', "write it in ASCII"),
)


def main(arguments):
    sys.dont_write_bytecode = True
    sys.path.insert(0, str(Path(arguments[1]) / "resources/uil"))
    import mkforms  # pylint: disable=import-outside-toplevel

    wrong = []
    for text, fault in (("", ""),) + FAULTS:
        name = "more.dlg" if text.startswith("dialog") else "main.dlg"
        sources = dict(GOOD, **{name: GOOD.get(name, "") + text})
        with tempfile.TemporaryDirectory() as folder:
            fields, made = Path(folder) / "fields", Path(folder) / "made"
            fields.write_text(FIELDS, encoding="utf-8")
            made.mkdir()
            paths = [Path(folder) / source for source in sources]
            for path in paths:
                path.write_text(sources[path.name], encoding="utf-8")
            printed = io.StringIO()
            with contextlib.redirect_stderr(printed):
                status = mkforms.main(["mkforms", str(fields), str(made)] + [str(path) for path in paths])
            at, _, told = printed.getvalue().partition(": ")
            file, _, line = at.partition(":")
            placed = line in ("1", str(len(sources.get(file, "").splitlines()))) and fault in told
            if not (placed if fault else status == 0) or bool(fault) == any(made.iterdir()) or status != bool(fault):
                wrong.append(f"{text!r}: status {status}, {printed.getvalue()!r}")
    for line in wrong:
        print(line)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
