#!/usr/bin/env python3
"""Checks the matrix of exits against the tests that it names.

usage: exits_test.py REPO_ROOT

Every row of the table in docs/exits.md names at least one test as `Suite.Name`, and each of these
stands in a source below tests.  Prints each fault as file:line; the exit status is 1 when there
was one, or when there is no table.
"""

import re
import sys
from pathlib import Path

TABLE_FILE = "docs/exits.md"
HEAD = ["Cause", "Request", "Report", "Status", "Test"]
TEST = re.compile(r"^\s*(?:TYPED_)?TEST(?:_[FP])?\s*\(\s*(\w+)\s*,\s*(\w+)\s*\)", re.MULTILINE)
NAME = re.compile(r"`(\w+\.\w+)`")


def tests_in(text):
    return {f"{suite}.{name}" for suite, name in TEST.findall(text)}


def cells_of(line):
    return [cell.strip() for cell in re.split(r"(?<!\\)\|", line.strip().strip("|"))]


def rows_of(text):
    """Returns (line number, cells) of the rows below the head of the matrix."""
    rows, inside = [], False
    for number, line in enumerate(text.splitlines(), 1):
        if not line.startswith("|"):
            inside = False
        elif cells_of(line) == HEAD:
            inside = True
        elif inside and not set(line) <= set("|-: "):
            rows.append((number, cells_of(line)))
    return rows


def faults_of(text, tests):
    faults = []
    for number, cells in rows_of(text):
        place = f"{TABLE_FILE}:{number}"
        if len(cells) != len(HEAD) or not all(cells):
            faults.append(f"{place}: {len(HEAD)} filled cells are needed")
            continue
        names = NAME.findall(cells[-1])
        if not names:
            faults.append(f"{place}: no test is named")
        faults += [f"{place}: there is no test {name}" for name in names if name not in tests]
    return faults


def self_test():
    """A checker that recognises nothing finds no faults, so it is tried on known ones first."""
    tests = tests_in("TEST(One, Two) {\n  TEST_F(Three,\n    Four) {\n// TEST(Not, This)\n")
    head = "| " + " | ".join(HEAD) + " |\n|---|---|---|---|---|\n"
    row = "| a | b | c \\| d | 0 | {} |\n"
    expected = (
        (head + row.format("`One.Two`, `Three.Four`"), 0),
        (head + row.format("`One.Two`, `Three.Five`"), 1),
        (head + row.format("One.Two"), 1),
        (head + "| a | b | c | `One.Two` |\n", 1),
        (head + row.format("`One.Two`") + "\n| other | table |\n", 0),
    )
    wrong = [] if tests == {"One.Two", "Three.Four"} else [f"self-test: tests {tests}"]
    return wrong + [f"self-test: {count} faults expected in: {text}"
                    for text, count in expected if len(faults_of(text, tests)) != count]


def main(arguments):
    if len(arguments) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    root = Path(arguments[1])
    tests = set()
    for source in (root / "tests").rglob("*.cpp"):
        tests |= tests_in(source.read_text(encoding="utf-8"))
    text = (root / TABLE_FILE).read_text(encoding="utf-8")
    faults = self_test() + faults_of(text, tests)
    rows = len(rows_of(text))
    if not rows:
        faults.append(f"{TABLE_FILE}: no table was found")
    for fault in faults:
        print(fault)
    print(f"{rows} rows, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
