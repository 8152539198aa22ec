#!/usr/bin/env python3
"""Makes one UIL module of icon literals from the drawings in src/.

    svg2uil.py --set small --table icons.txt --src src --out icons.uil

Every row of the table names an icon, its class (which fixes the size), its drawing and whether
it is coloured or greyed.  For each icon the module exports <name><suffix>_icon and, for selected
lines, <name><suffix>_iconi.  There the ground is the window's foreground, and a picture keeps its
outlines on a plate of the background that follows them.  Only the expanders, which have a bevel
for an outline, exchange the two colours.

A mark of a state goes on top of another icon, in ink of a colour of its own: instead of a picture
for selected lines it has one in ink of all that it covers, which is a plate that follows it.

The drawings use the colours of PALETTE and no others.  Ink and ground stand for the window's
foreground and background.  Hence the rule of the set: ink for outlines, slate for what is drawn
inside a filled shape.
"""

import argparse
import collections
import os
import subprocess
import sys

from gridfit import Drawing, DrawingError

# Name, colour in the drawings, character in the UIL rows.
PALETTE = (
    ('ground', '#ffffff', ' '),
    ('ink', '#000000', '#'),
    ('paper', '#f3f6f8', 'p'),
    ('grey', '#8894a0', 'y'),
    ('slate', '#2e4258', 's'),
    ('blue', '#2a78c8', 'b'),
    ('sky', '#a9d3f2', 'k'),
    ('green', '#38ae62', 'g'),
    ('amber', '#f2b632', 'a'),
    ('red', '#d8463c', 'r'),
)
GROUND, INK = ' ', '#'
MARKS = {name: mark for name, _, mark in PALETTE}
HEX = {mark: colour for _, colour, mark in PALETTE}

# What an insensitive picture makes of each colour: grey lines, which show on a light and on a dark
# ground; a filling would not.
GREYED = {mark: MARKS['grey' if name in ('ink', 'slate', 'grey') else 'ground']
          for name, mark in MARKS.items()}
TINTS = {'colour': None, 'grey': GREYED}

SETS = {'small': ('', {'line': 20, 'mark': 20, 'tool': 24, 'expand': 13}),
        'big': ('big', {'line': 28, 'mark': 28, 'tool': 36, 'expand': 17}),
        'medium': ('medium', {'line': 42, 'mark': 42, 'tool': 54, 'expand': 25}),
        'large': ('large', {'line': 56, 'mark': 56, 'tool': 72, 'expand': 34})}
EXPANDERS_GAP = {13: 3, 17: 3, 25: 5, 34: 6}  # blank columns towards the icon of the line
PLATE_UNITS = 20  # a plate reaches a pixel beyond the picture for each so many of its pixels

SAMPLES = 4         # samples a pixel in each direction
COLUMNS = 10        # icons in a row of the sheet
OUTLINE_WEIGHT = 5  # votes of an ink or slate sample, so that thin strokes keep their pixels
FILL_WEIGHT = 4

Icon = collections.namedtuple('Icon', 'name kind pixels drawing tint')


def read_table(path, source_folder, pixels_of_class):
    """The icons in table order; the table holds `name class drawing tint` and # comments."""
    icons, drawings = [], {}
    parts = Drawing(os.path.join(source_folder, 'parts.svg'))
    with open(path, encoding='ascii') as table:
        for number, line in enumerate(table, 1):
            fields = line.split('#')[0].split()
            if not fields:
                continue
            if len(fields) != 4 or fields[1] not in pixels_of_class or fields[3] not in TINTS:
                raise DrawingError(f'{os.path.basename(path)}:{number}: not an icon row')
            name, kind, source, tint = fields
            if source not in drawings:
                drawings[source] = read_drawing(source_folder, source, parts)
            icons.append(Icon(name, kind, pixels_of_class[kind], drawings[source], TINTS[tint]))
    return icons


def read_drawing(folder, name, parts):
    drawing = Drawing(os.path.join(folder, name + '.svg'), parts)
    foreign = drawing.colours() - set(HEX.values())
    if foreign:
        drawing.fail(f'colours outside the palette: {", ".join(sorted(foreign))}')
    return drawing


def render(icons):
    """Renders all icons on one sheet, without blending, and returns their rows of marks."""
    cell = max(icon.pixels for icon in icons)
    rows = -(-len(icons) // COLUMNS)
    width, height = COLUMNS * cell, rows * cell
    sheet = [f'<svg xmlns="http://www.w3.org/2000/svg" shape-rendering="crispEdges" '
             f'width="{width * SAMPLES}" height="{height * SAMPLES}" '
             f'viewBox="0 0 {width} {height}">']
    for index, icon in enumerate(icons):
        x, y = index % COLUMNS * cell, index // COLUMNS * cell
        sheet.append(f'<svg x="{x}" y="{y}" width="{icon.pixels}" height="{icon.pixels}">\n'
                     f'{icon.drawing.fitted(icon.pixels)}\n</svg>')
    sheet.append('</svg>')
    marks = rasterize('\n'.join(sheet), width * SAMPLES)
    return [picture(marks, index % COLUMNS * cell, index // COLUMNS * cell, icon)
            for index, icon in enumerate(icons)]


def rasterize(sheet, width):
    """The sheet's samples, one string of marks a row."""
    png = subprocess.run(['rsvg-convert', '--background-color', HEX[GROUND]],
                         input=sheet.encode(), stdout=subprocess.PIPE, check=True).stdout
    pnm = subprocess.run(['pngtopnm'], input=png, stdout=subprocess.PIPE, check=True).stdout
    magic, size, depth, data = pnm.split(b'\n', 3)
    if magic != b'P6' or int(size.split()[0]) != width or depth != b'255':
        raise DrawingError('the renderer gave an unexpected picture')
    mark_of = {bytes.fromhex(colour[1:]): mark for mark, colour in HEX.items()}
    stride = 3 * width
    try:
        return [''.join(mark_of[data[i:i + 3]] for i in range(start, start + stride, 3))
                for start in range(0, len(data), stride)]
    except KeyError as colour:
        raise DrawingError(f'the renderer blended colours: {colour}') from None


def picture(marks, x, y, icon):
    rows = []
    for row in range(y, y + icon.pixels):
        band = marks[row * SAMPLES:(row + 1) * SAMPLES]
        text = ''.join(vote(''.join(line[i * SAMPLES:(i + 1) * SAMPLES] for line in band))
                       for i in range(x, x + icon.pixels))
        rows.append(text.translate(str.maketrans(icon.tint)) if icon.tint else text)
    return rows


def on_plate(rows):
    """The picture for a selected line: what is further from it than the plate reaches is ink."""
    reach = round(len(rows) / PLATE_UNITS)
    around = range(-reach, reach + 1)
    size = len(rows)

    def is_ground(x, y):
        return not (0 <= x < size and 0 <= y < size) or rows[y][x] == GROUND

    outside, found = set(), [(-1, -1)]
    while found:
        x, y = found.pop()
        if (x, y) not in outside and -1 <= min(x, y) and max(x, y) <= size and is_ground(x, y):
            outside.add((x, y))
            found += [(x - 1, y), (x + 1, y), (x, y - 1), (x, y + 1)]
    return [''.join(INK if (x, y) in outside and all(is_ground(x + right, y + down)
                                                     for right in around for down in around)
                    else row[x] for x in range(size)) for y, row in enumerate(rows)]


def covered(rows):
    """What a mark covers of the icon under it."""
    plate = on_plate(rows)
    return [''.join(GROUND if mark == GROUND and on == INK else INK
                    for mark, on in zip(row, plate_row)) for row, plate_row in zip(rows, plate)]


def vote(samples):
    """The mark of one pixel: ground when more than half of it is, else the strongest colour."""
    counts = collections.Counter(samples)
    if counts[GROUND] * 2 > len(samples):
        return GROUND
    del counts[GROUND]
    outlines = (INK, MARKS['slate'])
    return max(counts, key=lambda mark: counts[mark] * (
        OUTLINE_WEIGHT if mark in outlines else FILL_WEIGHT))


def write_module(path, module, suffix, icons, pictures):
    """Icons of the same colours share a table: the toolkit asks the server for every entry."""
    used = [''.join(m for m in HEX if m not in (GROUND, INK) and any(m in row for row in rows))
            for rows in pictures]
    out = [f'module {module}', 'names = case_sensitive', '', 'value']
    out += [f"    pal_{name} : color('{HEX[mark]}');" for name, _, mark in PALETTE
            if mark not in (GROUND, INK)]
    for colours in sorted(set(used)):
        entries = ''.join(f",\n        pal_{name}='{mark}'" for name, _, mark in PALETTE
                          if mark in colours)
        out += [f"    tab_n_{colours} : color_table(background color='{GROUND}', "
                f"foreground color='{INK}'{entries});"]
    out += [f"    tab_i_ : color_table(foreground color='{GROUND}', background color='{INK}');"]
    for icon, rows, colours in zip(icons, pictures, used):
        forms = [('', f'tab_n_{colours}', rows), ('i', f'tab_n_{colours}', on_plate(rows))]
        if icon.kind == 'expand':
            rows = [row + GROUND * EXPANDERS_GAP[len(rows)] for row in rows]
            forms = [('', 'tab_n_', rows), ('i', 'tab_i_', rows)]
        elif icon.kind == 'mark':
            forms = [('', 'tab_n_', rows), ('i', 'tab_n_', covered(rows))]
        for ending, table, picture_rows in forms:
            body = ',\n'.join(f"        '{row}'" for row in picture_rows)
            out += [f'    {icon.name}{suffix}_icon{ending} : exported icon('
                    f'color_table = {table},\n{body});']
    out += ['end module;', '']
    with open(path, 'w', encoding='ascii') as module_file:
        module_file.write('\n'.join(out))


def main():
    arguments = argparse.ArgumentParser(description=__doc__.split('\n')[0])
    arguments.add_argument('--set', choices=SETS, required=True)
    arguments.add_argument('--table', required=True)
    arguments.add_argument('--src', required=True)
    arguments.add_argument('--out', required=True)
    options = arguments.parse_args()
    suffix, pixels_of_class = SETS[options.set]
    try:
        icons = read_table(options.table, options.src, pixels_of_class)
        write_module(options.out, 'icons' + suffix, suffix, icons, render(icons))
    except (DrawingError, OSError, subprocess.CalledProcessError) as fault:
        sys.exit(f'svg2uil: {fault}')


if __name__ == '__main__':
    main()
