"""The tests that docs/node-security.md names are there, and each line of its tables names one."""
import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]


class Security(unittest.TestCase):
    def test_each_line_has_its_test(self):
        there = set()
        for source in (ROOT / 'tests').glob('*/*.cpp'):
            there.update('.'.join(found) for found in
                         re.findall(r'^TEST(?:_F)?\((\w+), (\w+)\)', source.read_text(), re.M))
        rows = [row for row in (ROOT / 'docs/node-security.md').read_text().splitlines()
                if row.startswith('| ') and not row.endswith('| test |')]
        self.assertGreater(len(rows), 8)
        for row in rows:
            named = re.findall(r'`(\w+\.\w+)`', row.split('|')[-2])
            self.assertTrue(named, row)
            for name in named:
                self.assertIn(name, there, row)


if __name__ == '__main__':
    unittest.main()
