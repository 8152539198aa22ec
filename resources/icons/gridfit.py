"""Loads an icon drawing and fits it to the pixel grid of a given size.

Scaling a drawing by 1.4 or 1.5 puts its strokes between pixels and makes equal strokes come out
unequal.  So a drawing is not scaled as a whole: each coordinate on which a stroke or an edge is
sharp in the drawing's own grid moves to the nearest place where it is sharp in the target grid,
and every stroke gets a whole number of pixels.  All other coordinates (diagonals, curves) scale
plainly.  At the drawing's own size nothing moves.

What a drawing may hold: g, use (of parts.svg, with x and y), rect, circle, ellipse, line,
polyline, polygon and path with the commands M L H V C Q A Z.  No transform, no style sheet, no
text.  Anything else is reported with the name of the file.
"""

import math
import os
import re
import xml.etree.ElementTree as ElementTree

SVG = '{http://www.w3.org/2000/svg}'
INHERITED = ('fill', 'stroke', 'stroke-width', 'stroke-linecap', 'stroke-linejoin', 'fill-rule')
IGNORED = ('title', 'desc')
UNKNOWN = ('transform', 'style', 'class', 'opacity', 'stroke-dasharray')
# Per path command: which axis each of its numbers belongs to, or what else it is.
PATH_ARGUMENTS = {'M': 'xy', 'L': 'xy', 'H': 'x', 'V': 'y', 'C': 'xyxyxy', 'Q': 'xyxy',
                  'A': 'rrnnnxy', 'Z': ''}


class DrawingError(Exception):
    """A drawing uses something this module does not know; the text names the file."""


class Grid:
    """Maps coordinates of a drawing `size` units wide to a picture `pixels` wide."""

    def __init__(self, size, pixels):
        self.size = size
        self.pixels = pixels
        self.factor = pixels / size

    def stroke(self, width):
        """The pixels of a stroke of `width` units; 0 stays 0, anything else is at least 1."""
        if self.factor == 1 or width == 0:
            return width
        return max(1, math.floor(width * self.factor + 0.5))

    def fit(self, place, width):
        """The place of a coordinate whose stroke is `width` units wide (0: an edge)."""
        scaled = place * self.pixels / self.size
        sharp_at = 0.5 if width % 2 == 1 else 0
        if self.factor == 1 or (place - sharp_at) % 1 != 0:
            return scaled
        shift = 0.5 if self.stroke(width) % 2 == 1 else 0
        # A tie goes towards the middle on either side, so that symmetry survives.
        if place <= self.size / 2:
            return math.floor(scaled - shift + 0.5) + shift
        return math.ceil(scaled - shift - 0.5) + shift

    def span(self, low, length, width):
        """Start and length of a round shape: equal lengths stay equal wherever they start."""
        start = self.fit(low, width)
        if start % 0.5 != 0:
            return start, length * self.factor
        return start, math.floor(length * self.factor + 0.5)


class Drawing:
    """One drawing file, read once; `parts` is the file of shared shapes or None."""

    def __init__(self, path, parts=None):
        self.path = path
        self.parts = parts
        try:
            self.root = ElementTree.parse(path).getroot()
        except ElementTree.ParseError as fault:
            self.fail(str(fault))
        box = self.root.get('viewBox', '').split()
        if self.root.tag != SVG + 'svg' or len(box) != 4 or box[:2] != ['0', '0']:
            self.fail('no <svg> with a viewBox that starts at 0 0')
        self.size = float(box[2])
        self.ids = {node.get('id'): node for node in self.root.iter() if node.get('id')}

    def fail(self, text):
        raise DrawingError(f'{os.path.basename(self.path)}: {text}')

    def fitted(self, pixels):
        """The drawing's shapes as SVG text, for a picture `pixels` wide and high."""
        shapes = []
        self._walk(self.root, {}, (0, 0), Grid(self.size, pixels), shapes)
        return '\n'.join(shapes)

    def colours(self):
        """Every fill and stroke colour the drawing or a part it uses names."""
        return set(re.findall(r'(?:fill|stroke)="(#[^"]*)"', self.fitted(self.size)))

    def _walk(self, parent, style, offset, grid, shapes):
        style = {**style, **{k: v for k, v in parent.items() if k in INHERITED}}
        for node in parent:
            tag = node.tag.removeprefix(SVG)
            for name in UNKNOWN:
                if name in node.keys():
                    self.fail(f'<{tag}>: attribute {name} is not known here')
            if tag == 'g':
                self._walk(node, style, offset, grid, shapes)
            elif tag == 'use':
                self._use(node, style, offset, grid, shapes)
            elif tag in SHAPES:
                shapes.append(self._shape(tag, node, style, offset, grid))
            elif tag not in IGNORED:
                self.fail(f'element <{tag}> is not known here')

    def _use(self, node, style, offset, grid, shapes):
        name = node.get('href', '').removeprefix('parts.svg#')
        part = (self.parts or self).ids.get(name)
        if part is None or part.tag != SVG + 'g':
            self.fail(f'there is no part "{name}"')
        style = {**style, **{k: v for k, v in node.items() if k in INHERITED}}
        offset = (offset[0] + float(node.get('x', 0)), offset[1] + float(node.get('y', 0)))
        self._walk(part, style, offset, grid, shapes)

    def _shape(self, tag, node, style, offset, grid):
        style = {**style, **{k: v for k, v in node.items() if k in INHERITED}}
        stroked = style.get('stroke', 'none') != 'none'
        width = float(style.get('stroke-width', 1)) if stroked else 0
        style['stroke-width'] = number(grid.stroke(width))
        place = Placement(grid, offset, width)
        try:
            geometry = SHAPES[tag](node, place)
        except (KeyError, TypeError, ValueError) as fault:
            self.fail(f'<{tag}>: {fault}')
        attributes = ' '.join(f'{k}="{v}"' for k, v in {**style, **geometry}.items())
        return f'<{tag} {attributes}/>'


class Placement:
    """Where the numbers of one shape go: the grid, the shape's offset and its stroke width."""

    def __init__(self, grid, offset, width):
        self.grid = grid
        self.offset = dict(zip('xy', offset))
        self.width = width

    def at(self, axis, value):
        return self.grid.fit(float(value) + self.offset[axis], self.width)

    def length(self, value):
        return float(value) * self.grid.factor

    def span(self, axis, low, length):
        return self.grid.span(low + self.offset[axis], length, self.width)


def number(value):
    return f'{value:.3f}'.rstrip('0').rstrip('.')


def fit_rect(node, place):
    geometry = {}
    for axis, side in (('x', 'width'), ('y', 'height')):
        low = float(node.get(axis, 0))
        start, end = place.at(axis, low), place.at(axis, low + float(node.get(side)))
        geometry[axis], geometry[side] = number(start), number(end - start)
    if node.get('rx'):
        geometry['rx'] = number(place.length(node.get('rx')))
    return geometry


def fit_round(node, place):
    geometry = {}
    for axis in 'xy':
        name = 'r' if node.get('r') else 'r' + axis
        radius = float(node.get(name))
        start, length = place.span(axis, float(node.get('c' + axis)) - radius, 2 * radius)
        geometry['c' + axis] = number(start + length / 2)
        geometry[name] = number(length / 2)
    return geometry


def fit_line(node, place):
    return {name: number(place.at(name[0], node.get(name))) for name in ('x1', 'y1', 'x2', 'y2')}


def fit_points(node, place):
    values = re.split(r'[\s,]+', node.get('points').strip())
    return {'points': ' '.join(number(place.at('xy'[i % 2], v)) for i, v in enumerate(values))}


def fit_path(node, place):
    text = []
    for command, tail in re.findall(r'([A-Za-z])([^A-Za-z]*)', node.get('d')):
        kinds = PATH_ARGUMENTS[command]
        values = re.findall(r'-?(?:\d+\.?\d*|\.\d+)', tail)
        if (len(values) % len(kinds) if kinds else values):
            raise ValueError(f'wrong count of numbers after {command}')
        text.append(command)
        for i, value in enumerate(values):
            kind = kinds[i % len(kinds)]
            if kind in 'xy':
                value = number(place.at(kind, value))
            elif kind == 'r':
                value = number(place.length(value))
            text.append(value)
    return {'d': ' '.join(text)}


SHAPES = {'rect': fit_rect, 'circle': fit_round, 'ellipse': fit_round, 'line': fit_line,
          'polyline': fit_points, 'polygon': fit_points, 'path': fit_path}
