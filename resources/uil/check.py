#!/usr/bin/env python3
"""Checks the names that window descriptions and program share.

    check.py UIL_FOLDER CODE_FOLDER MADE_FOLDER

A fault is: a procedure or toolkit action that a description names and no table of the program
registers (the widget would silently do nothing), a procedure that is declared and never used (an
include file may declare what not all of its users need, but only what a table registers), a
child that no object describes, and a widget that the program looks up by "*name" and no
description has.
"""

import pathlib
import re
import sys

COMMENT = re.compile(r'![^\n]*')
CODE_COMMENT = re.compile(r'//[^\n]*|/\*.*?\*/', re.S)
TABLE = r'\b%s\s+\w+\s*\[[^\]]*\]\s*=\s*\{(.*?)\};'


def read(folders, patterns, comment):
    files = [file for folder in folders for pattern in patterns
             for file in sorted(pathlib.Path(folder).rglob(pattern))]
    return {file: comment.sub('', file.read_text(encoding='utf-8')) for file in files}


def registered(code, table_type):
    """Every vga_ name in the tables of a type, whatever macros the rows are written with."""
    return {name for text in code.values()
            for table in re.findall(TABLE % table_type, text, re.S)
            for name in re.findall(r'\bvga_\w+', table)}


def registered_by_name(code):
    """The rows of other tables that give a procedure beside its own name."""
    return {name for text in code.values()
            for name in re.findall(r'\{\s*"(vga_\w+)"\s*,\s*\1\b', text)}


def main():
    descriptions = read((sys.argv[1], sys.argv[3]), ('*.uil', '*.uih'), COMMENT)
    code = read((sys.argv[2],), ('*.cpp',), CODE_COMMENT)
    code |= read((sys.argv[3],), ('windows.inc',), CODE_COMMENT)
    faults = []

    procedures = registered(code, 'MRMRegisterArg') | registered_by_name(code)
    actions = registered(code, 'XtActionsRec')
    declared, used, objects, children = set(), set(), set(), set()
    for file, text in descriptions.items():
        for block in re.findall(r'^procedure\b(.*?)(?=^\w|\Z)', text, re.S | re.M):
            names = re.findall(r'\b(\w+)\s*\(', block)
            if file.suffix == '.uil':
                declared.update(names)
            faults += [f'{file.name}: no table registers the procedure {name}'
                       for name in names if name not in procedures]
        for name in re.findall(r'=\s*procedure\s+(\w+)', text):
            used.add(name)
            if name not in procedures:
                faults.append(f'{file.name}: no table registers the procedure {name}')
        for name in re.findall(r'\b(vga_\w+)\s*\(', ' '.join(re.findall(r"'[^'\n]*'", text))):
            if name not in actions:
                faults.append(f'{file.name}: no table registers the action {name}')
        objects.update(re.findall(r'^object\s+(\w+)\s*:', text, re.M))
        children.update(re.findall(r'^\s+(?:unmanaged\s+)?Xm\w+\s+(\w+);', text, re.M))
    faults += [f'the procedure {name} is declared but not used' for name in declared - used]

    windows = tuple(objects - children)
    faults += [f'the child {name} is not described' for name in children - objects]

    for file, text in code.items():
        for name in re.findall(r'"\*(\w+)"', text):
            # Resource names look alike, but do not begin with the name of a window.
            if name.startswith(windows) and name not in objects:
                faults.append(f'{file.name}: no description has the widget {name}')

    for fault in sorted(set(faults)):
        print(fault, file=sys.stderr)
    return 1 if faults else 0


if __name__ == '__main__':
    sys.exit(main())
