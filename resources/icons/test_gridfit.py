#!/usr/bin/env python3
"""Tests of the grid fitting and of the icon set as a whole."""

import os
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

import svg2uil
from gridfit import Drawing, DrawingError, Grid

HERE = os.path.dirname(os.path.abspath(__file__))
SIZES = ((20, 28), (24, 36), (13, 17), (20, 20), (20, 42), (20, 56), (24, 54), (13, 25), (13, 34))


class GridTest(unittest.TestCase):
    def test_sharp_places_stay_sharp_ordered_and_symmetric(self):
        for size, pixels in SIZES:
            grid = Grid(size, pixels)
            for width in (0, 1, 2):
                low = 0.5 if width == 1 else 0
                sharp_at = 0.5 if grid.stroke(width) % 2 == 1 else 0
                places = [low + i for i in range(int(size - 2 * low) + 1)]
                fitted = [grid.fit(place, width) for place in places]
                with self.subTest(size=size, pixels=pixels, width=width):
                    self.assertTrue(all((f - sharp_at) % 1 == 0 for f in fitted))
                    self.assertTrue(all(a < b for a, b in zip(fitted, fitted[1:])))
                    for place, f in zip(places, fitted):
                        if place * 2 != size:
                            self.assertEqual(grid.fit(size - place, width), pixels - f)

    def test_round_shapes_have_one_size_wherever_they_stand(self):
        grid = Grid(20, 28)
        self.assertEqual({grid.span(low + 0.5, 7, 1)[1] for low in range(12)}, {10})


class DrawingTest(unittest.TestCase):
    def fitted(self, body, pixels=28):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, 'shape.svg')
            with open(path, 'w', encoding='ascii') as drawing:
                drawing.write('<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 20 20" '
                              f'stroke="#000000">{body}</svg>')
            return Drawing(path).fitted(pixels)

    def attributes(self, body):
        return ElementTree.fromstring(self.fitted(body)).attrib

    def test_numbers_of_a_path_go_to_the_right_axis(self):
        # x moves by 1.4 and then to a pixel's middle; radii and flags must not be taken for it.
        shape = self.attributes('<path d="M.5 1.5H2.5V4.5A3 2 0 0 1 5.5.5Z"/>')
        self.assertEqual(shape['d'], 'M 0.5 2.5 H 3.5 V 6.5 A 4.2 2.8 0 0 1 7.5 0.5 Z')

    def test_parts_are_fitted_where_they_are_used(self):
        # The part's own 1.5 would go to 2.5; moved to 4.5 it goes to 6.5.
        shapes = self.fitted('<g id="dot"><rect x="1.5" y="0.5" width="2" height="2"/></g>'
                             '<use href="parts.svg#dot" x="3" y="1" fill="#2a78c8"/>')
        used = ElementTree.fromstring(shapes.split('\n')[1]).attrib
        self.assertEqual((used['x'], used['y'], used['fill']), ('6.5', '2.5', '#2a78c8'))

    def test_what_is_not_known_is_refused(self):
        for body in ('<text>a</text>', '<rect x="1" y="1" width="2"/>', '<path d="m1 1"/>',
                     '<path d="M1 1L2"/>', '<circle cx="1" cy="1"/>',
                     '<g transform="scale(2)"/>', '<use href="parts.svg#none"/>', '<line'):
            with self.subTest(body=body), self.assertRaises(DrawingError):
                self.fitted(body)


class IconSetTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.sets = []
        for _, pixels_of_class in svg2uil.SETS.values():
            icons = svg2uil.read_table(os.path.join(HERE, 'icons.txt'),
                                       os.path.join(HERE, 'src'), pixels_of_class)
            pictures = svg2uil.render(icons)
            cls.sets.append({icon.name: rows for icon, rows in zip(icons, pictures)})

    def test_every_icon_is_a_full_square_of_its_own(self):
        for pictures in self.sets:
            self.assertEqual(len(pictures), 85 + 4)
            self.assertEqual(len({tuple(rows) for rows in pictures.values()}), 85 + 4)
            for name, rows in pictures.items():
                self.assertEqual({len(row) for row in rows}, {len(rows)}, name)

    def test_the_border_of_the_expanders_is_free_for_the_bevel(self):
        for pictures in self.sets:
            for name in ('plus', 'minus'):
                rows = pictures[name]
                border = rows[0] + rows[-1] + ''.join(row[0] + row[-1] for row in rows)
                self.assertEqual(border.strip(), '', name)
                self.assertIn(svg2uil.INK, ''.join(rows))

    def test_pictures_of_selected_lines_keep_their_outlines_on_a_plate(self):
        for pictures in self.sets:
            for name in ('ls', 'pu', 'remsys'):
                rows = pictures[name]
                for row, selected in zip(rows, svg2uil.on_plate(rows)):
                    for mark, to in zip(row, selected):
                        self.assertIn(to, mark if mark != svg2uil.GROUND
                                      else (svg2uil.GROUND, svg2uil.INK), name)
            self.assertEqual(set(''.join(svg2uil.on_plate(pictures['blank']))), {svg2uil.INK})
            self.assertIn(svg2uil.GROUND, ''.join(svg2uil.on_plate(pictures['lu62'])))

    def test_insensitive_pictures_are_grey_and_otherwise_the_same(self):
        for pictures in self.sets:
            for name in ('start', 'stop', 'zoom', 'add', 'del', 'copy', 'status'):
                grey = ''.join(pictures[name + 'ins'])
                self.assertLessEqual(set(grey), {svg2uil.MARKS[c]
                                                 for c in ('ground', 'paper', 'grey')})
                for mark, to in zip(''.join(pictures[name]), grey):
                    self.assertEqual(svg2uil.GREYED[mark], to, name)


if __name__ == '__main__':
    unittest.main()
