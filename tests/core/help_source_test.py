#!/usr/bin/env python3
"""Checks that faults in the sources of the help are found when the volume is made.

usage: help_source_test.py REPO_ROOT
"""

import contextlib
import importlib.util
import io
import sys
import tempfile
from pathlib import Path

GOOD = """= home: Home
? start; begin
Text with **strong**, //emphasis//, ``fixed`` and a link to [[page]]
that goes on, [[man:quiladmin(1)]] and [[app:web1|the web]].
+ Heading
* item
** below it
# one

# two
: term, other term :: meaning
! note
|   as it stands
== page: Page
See [[+home|the first one]].
== other: Other
? Begin; page; thing
Text.
== third: Third
? thing
Text.
"""
LATER = "# a comment\n\npage  dialog  Page\n"
LABELS = "LABELS\nhome\ta.dlg:4\tOther term:\n"

FAULTS = (  # what stands behind the good source, and the fault it has
    ("= home: Again\nText.\n", "is there twice"),
    ("= again: pagE\nText.\n", "two pages with the title"),
    ("= one: One\nSee [[nowhere]].\n", "there is no topic nowhere"),
    ("= one: One\nSee [[+nowhere|this]].\n", "there is no topic nowhere"),
    ("= one: One\nSee [[app:rm -rf]].\n", "there is no topic"),
    ("= one: One\n", "says nothing"),
    ("= one: One\nA **mark.\n", "does not end"),
    ("= one: One\nA [[page.\n", "does not end"),
    ("= one: One\n: term\n", "a definition is"),
    ("= one: One\n| " + "x" * 73 + "\n", "more than 72"),
    ("= one: One\n=== deep: Deep\nText.\n", "nested deeper"),
    ("= one: One\nA\tb.\n", "cannot be printed"),
    ("LABELS\nhome\ta.dlg:5\tThird:\n", 'a.dlg:5: the help topic home does not explain "Third:"'),
    ("LABELS\npage\ta.dlg:5\tTerm\n", "a.dlg:5: the help topic page does not explain"),
)

RECORDS = ("T\tpage\tPage\nW\t0\tpThis release does not have this window yet. The page says what it is for.",
           "C\t1\tPage\tpage",
           # A word stands once, with what it leads to below it, unless that is the page of this title.
           "X\t0\tbegin\thome\nX\t1\tHome\thome\nX\t1\tOther\tother", "X\t0\tPage\tpage\nX\t1\tOther\tother",
           "X\t0\tthing\tother\nX\t1\tOther\tother\nX\t1\tThird\tthird",
           # The page links to the first topic below it itself.
           "H\t0\tpPages\nB\t0\tlother|Other\nB\t0\tlthird|Third\nT\tpage\tPage", "N\t2\tptwo", "B\t1\tpbelow it",
           "F\t0\tp  as it stands", "P\t0\tpSee \tl+home|the first one\tp.",
           "P\t0\tpText with \tbstrong\tp, \tiemphasis\tp, \tffixed\tp and a link to "
           "\tlpage|Page\tp that goes on, \tlman:quiladmin(1)|man:quiladmin(1)\tp and "
           "\tlapp:web1|the web\tp.")


def make(mkhelp, folder, text):
    """Returns the exit status, what was printed, and the volume or None."""
    source, volume, labels = folder / "test.hlp", folder / "volume", folder / "test.labels"
    later = folder / "later.txt"
    later.write_text(LATER, encoding="utf-8")
    text, _, fields = text.partition("LABELS\n")
    source.write_text(text, encoding="utf-8")
    labels.write_text(fields, encoding="utf-8")
    volume.unlink(missing_ok=True)
    printed = io.StringIO()
    with contextlib.redirect_stderr(printed):
        status = mkhelp.main(["mkhelp", str(volume), "Title", str(source), str(labels), str(later)])
    return status, printed.getvalue(), volume.read_text() if volume.exists() else None


def main(arguments):
    sys.dont_write_bytecode = True
    path = Path(arguments[1]) / "resources/help/mkhelp.py"
    spec = importlib.util.spec_from_file_location("mkhelp", path)
    mkhelp = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(mkhelp)
    wrong = []
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        status, printed, volume = make(mkhelp, folder, GOOD + LABELS)
        if status != 0:
            wrong.append(f"a good source was refused: {printed}")
        wrong += [f"missing: {record!r}" for record in RECORDS
                  if f"\n{record}\n" not in (volume or "")]
        for text, fault in FAULTS + (("Text.\n", "before the first topic"), ("", "no topic")):
            before = "" if fault in ("before the first topic", "no topic") else GOOD
            status, printed, volume = make(mkhelp, folder, before + text)
            if status != 1 or fault not in printed or volume is not None:
                wrong.append(f"{text!r}: status {status}, {printed!r}")
    for line in wrong:
        print(line)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
