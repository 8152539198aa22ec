#!/usr/bin/env python3
"""Makes the descriptions of the dialogs that are not written yet.

    mkrows.py later.txt windowtable.cpp OUT.uih DIALOG.dlg... WINDOW.window...

Each row of later.txt (name, kind, title) becomes a message box with its title, Close and Help.  The
rows of the program's table that have no description must be the same ones, of the same kinds; a
difference is printed and nothing is written.
"""

import re
import sys
from pathlib import Path

KINDS = {'main': 'VGA_KIND_MAIN', 'dialog': 'VGA_KIND_DIALOG', 'modal': 'VGA_KIND_MODAL'}
# The editors of a list's rows and of listed records are parts of windows and have no row of the table.
PART = re.compile(r'^part$|^dialog \w+ "[^"]*" of \w+\.item ', re.M)
TABLE_ROW = re.compile(r'\bdialog\(\s*VGA_UID_\w+,\s*"(\w+)",\s*(VGA_KIND_\w+)\s*\)')

HEAD = '''! Made from later.txt by mkrows.py.

list later_dialog : arguments {
    XmNdialogType = XmDIALOG_TEMPLATE;
    XmNautoUnmanage = false;
    XmNokLabelString = compound_string("Close");
    XmNhelpLabelString = compound_string("Help");
};

list later_callbacks : callbacks {
    XmNokCallback = procedure vga_close_cb();
};
'''

DIALOG = '''
object {name} : XmMessageBox {{
    arguments {{
        arguments later_dialog;
        XmNdialogTitle = compound_string("{title}");
        XmNmessageString = compound_string("{title}");
    }};
    callbacks later_callbacks;
}};
'''


def read_list(path):
    """The rows as (name, kind, title), and the faults of the list itself."""
    rows, faults = [], []
    for number, line in enumerate(path.read_text(encoding='utf-8').splitlines(), 1):
        parts = line.split('#')[0].split(None, 2)
        if not parts:
            continue
        if len(parts) != 3 or parts[1] not in KINDS or '"' in parts[2]:
            faults.append(f'{path.name}:{number}: not a name, a kind and a title')
        else:
            rows.append((parts[0], parts[1], parts[2].strip()))
    return rows, faults


def main():
    listed, table, out, *described = map(Path, sys.argv[1:])
    rows, faults = read_list(listed)
    wanted = dict(TABLE_ROW.findall(table.read_text(encoding='utf-8')))
    for path in described:
        row = wanted.pop(path.stem, None)
        if row is None and not PART.search(path.read_text(encoding='utf-8')):
            faults.append(f'{path.name}: {table.name} has no such row')
    given = {name: KINDS[kind] for name, kind, _ in rows}
    if len(given) != len(rows):
        faults.append(f'{listed.name}: a name stands twice')
    for name in sorted(wanted.keys() | given.keys()):
        if wanted.get(name) != given.get(name):
            faults.append(f'{name}: {given.get(name)} in {listed.name}, '
                          f'{wanted.get(name)} in {table.name}')
    if faults:
        print('\n'.join(faults), file=sys.stderr)
        return 1
    out.write_text(HEAD + ''.join(DIALOG.format(name=name, title=title)
                                  for name, _, title in rows), encoding='utf-8')
    return 0


if __name__ == '__main__':
    sys.exit(main())
