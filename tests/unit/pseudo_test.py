#!/usr/bin/env python3
"""Checks what a pseudo-translation must leave as it is: pseudo_test.py SOURCE_FOLDER"""

import pathlib
import re
import sys
import unittest

ROOT = pathlib.Path(sys.argv.pop(1))
sys.path.insert(0, str(ROOT / 'resources/uil'))
import pseudo  # noqa: E402
from pseudo import mkcat  # noqa: E402

SOURCE = ROOT / 'resources/messages/sna.msg.in'


class Messages(unittest.TestCase):
    def setUp(self):
        self.messages, faults = mkcat.read_source(SOURCE)
        self.assertEqual(faults, [])

    def test_placeholders_stops_and_limits_are_kept(self):
        for message in self.messages.values():
            before = message.text
            message.text = pseudo.translated_message(message)
            with self.subTest(message=message.number, text=message.text):
                marks = [[token[0] for token in mkcat.TOKEN.finditer(text) if token[0][0] == '%']
                         for text in (before, message.text)]
                self.assertEqual(*marks)
                self.assertEqual(before.endswith('\n'), message.text.endswith('\n'))
                size = len(message.text.encode())
                self.assertLessEqual(size, mkcat.MAX_BYTES)
                for first, last, most, _ in mkcat.LONGEST:
                    if first <= message.number <= last:
                        self.assertLessEqual(size, most)

    def test_texts_without_a_limit_grow(self):
        limited = {number for first, last, _, _ in mkcat.LONGEST
                   for number in range(first, last + 1)}
        for number, message in self.messages.items():
            text = pseudo.translated_message(message)
            if number in limited or not text.startswith('['):
                continue
            self.assertGreaterEqual(len(text), 1.4 * len(message.text.rstrip('\n')) - 3 * len(
                message.types), f'{number}: {text}')

    def test_what_no_operator_reads_stays(self):
        for number in mkcat.NO_BLANK_ENDS:
            if number in self.messages:
                message = self.messages[number]
                self.assertEqual(pseudo.translated_message(message), message.text)


class Descriptions(unittest.TestCase):
    def test_only_labels_change(self):
        for file in sorted((ROOT / 'resources/uil').glob('*.ui[lh]')):
            before = file.read_text(encoding='utf-8')
            after = pseudo.translated_description(before)
            bare = [re.sub(r'\s+', '', re.sub(r'compound_string\((\s*"[^"]*"\s*&?)*', '', text))
                    for text in (before, after)]
            self.assertEqual(*bare, file.name)
            self.assertLessEqual(max(len(line.encode()) for line in after.split('\n')), 132)

    def test_strings(self):
        def item(label, rest=''):
            return ('object x : XmPushButton { arguments { XmNlabelString = ' + label + '; ' +
                    rest + ' }; };\n')

        cases = (
            (item('compound_string("Close")', 'XmNmnemonic = keysym("o");'), '"[Çlosé]"'),
            (item('compound_string("Close")', 'XmNmnemonic = keysym("z");'), '"[Çlösé]"'),
            (item('compound_string("")'), 'compound_string("")'),
            (item('compound_string("...")'), '"..."'),
            ('object x : XmPushButton { arguments { XmNacceleratorText = '
             'compound_string("Ctrl+Q"); }; };', 'compound_string("Ctrl+Q")'),
            (item('compound_string("' + 'long text ' * 10 + '")'), '" &\n"'),
        )
        for description, wanted in cases:
            self.assertIn(wanted, pseudo.translated_description(description))


if __name__ == '__main__':
    unittest.main()
