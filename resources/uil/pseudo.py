#!/usr/bin/env python3
"""Makes a translation that nobody speaks, to see what a real one would do to the windows.

    pseudo.py messages SNA.MSG.IN OUT.msg     catalogue source (UTF-8) from the message source
    pseudo.py uil FOLDER OUT_FOLDER           window descriptions from those of a folder
    pseudo.py help VOLUME OUT_VOLUME          help volume from one

Texts keep their meaning but get accents, grow by 40 % and stand in brackets: a text without its
closing bracket was cut, one without accents is not translatable.  Placeholders, column stops, the
letters that mnemonics underline and the texts of accelerators stay; so do messages that no operator
reads, and those of a limited length grow up to it only.
"""

import math
import pathlib
import re
import sys

RESOURCES = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(RESOURCES / 'messages'), str(RESOURCES / 'help')]
import mkcat  # noqa: E402  (needs the path above)
import mkhelp  # noqa: E402

ACCENTS = str.maketrans('aceinouyACEINOUY', 'áçéíñöüýÁÇÉÍÑÖÜÝ')
GROWTH = 0.4
FILLING = ' ëîøûæ'  # in words, so that long texts have places to break

STRING = re.compile(r'(XmNacceleratorText\s*=\s*)?compound_string\("([^"\n]+)"')
OBJECT = re.compile(r'^(?:object|list|value)\b.*?(?=^(?:object|list|value|procedure|include|end)\b|\Z)',
                    re.S | re.M)
MNEMONIC = re.compile(r'XmNmnemonic\s*=\s*keysym\("(.)"\)')
LINE = 100  # of a description; its compiler takes 132 bytes, and a letter has up to two


def accented(text, keep=''):
    """The first `keep` stays as it is: a mnemonic underlines it."""
    at = text.find(keep) if keep else -1
    if at < 0:
        return text.translate(ACCENTS)
    return text[:at].translate(ACCENTS) + keep + text[at + 1:].translate(ACCENTS)


def filling(letters):
    words = FILLING if letters > 2 else FILLING.strip()
    return (words * (letters // len(words) + 1))[:letters]


def translated(text, keep='', most=None):
    """`most` limits the result's bytes; None: no limit."""
    if not re.search(r'[A-Za-z]', text):
        return text
    body = text.rstrip('\n')
    wanted = math.ceil(len(body) * GROWTH)
    tries = [f'[{accented(body, keep)}{filling(count)}]'
             for count in range(max(wanted - 2, 0), -1, -1)]
    for result in tries + [f'[{body}]', accented(body)]:
        if most is None or len(result.encode()) <= most:
            return result + text[len(body):]
    return text


def translated_message(message):
    if message.number in mkcat.NO_BLANK_ENDS:
        return message.text
    pieces = [(token[0], token['argument'] or token['column'] or token[0] == '%%')
              for token in mkcat.TOKEN.finditer(message.text)]
    words = ''.join(text for text, fixed in pieces if not fixed)
    if not re.search(r'[A-Za-z]', words):
        return message.text
    if any('%t' in text for text, fixed in pieces if fixed):  # a table's cells
        return ''.join(text if fixed else accented(text) for text, fixed in pieces)
    limits = [most for first, last, most, _ in mkcat.LONGEST if first <= message.number <= last]
    marks = [text for text, fixed in pieces if fixed]
    # A character that no text has stands for each placeholder meanwhile.
    plain = ''.join('\x01' if fixed else text for text, fixed in pieces)
    room = limits[0] - sum(len(mark) - 1 for mark in marks) if limits else None
    result = translated(plain, most=room)
    for mark in marks:
        result = result.replace('\x01', mark, 1)
    return result


def literal(text):
    """One or more literals that fit lines of a description."""
    if len(text) <= LINE // 2:
        return f'"{text}"'
    parts = [text[at:at + LINE // 2] for at in range(0, len(text), LINE // 2)]
    return '\n' + ' &\n'.join(f'"{part}"' for part in parts)


def translated_object(match):
    mnemonic = MNEMONIC.search(match[0])
    keep = mnemonic[1] if mnemonic else ''

    def string(found):
        if found[1]:
            return found[0]
        return f'compound_string(\n{literal(translated(found[2], keep))}'

    return STRING.sub(string, match[0])


def translated_description(text):
    return OBJECT.sub(translated_object, text)


def translated_runs(runs):
    """Runs of a block: the style, of a link the target and a bar, the text."""
    heads = [run[:run.index('|') + 1] if run[0] == 'l' else run[:1] for run in runs]
    texts = [run[len(head):] for run, head in zip(runs, heads)]
    texts = [text if head == 'f' else accented(text) for head, text in zip(heads, texts)]
    return [f'{head}{"[" * (at == 0)}{text}{"]" * (at + 1 == len(runs))}'
            for at, (head, text) in enumerate(zip(heads, texts))]


def translated_volume(text):
    lines = []
    for line in text.split('\n')[1:]:
        fields = line.split('\t')
        if fields[0] in ('V', 'C', 'X', 'T'):
            place = 1 if fields[0] == 'V' else 2
            fields[place] = translated(fields[place])
        elif fields[0] not in ('', 'F') and len(fields) > 2:  # what stands as it is stays
            fields[2:] = translated_runs(fields[2:])
        lines.append('\t'.join(fields))
    return '\n'.join(lines)


def main(arguments):
    if len(arguments) != 4 or arguments[1] not in ('messages', 'uil', 'help'):
        print(__doc__, file=sys.stderr)
        return 2
    source, target = map(pathlib.Path, arguments[2:])
    if arguments[1] == 'uil':
        target.mkdir(parents=True, exist_ok=True)
        for file in sorted(source.glob('*.ui[lh]')):
            (target / file.name).write_text(
                translated_description(file.read_text(encoding='utf-8')), encoding='utf-8')
        return 0
    if arguments[1] == 'help':
        target.parent.mkdir(parents=True, exist_ok=True)
        mkhelp.write_volume(target, translated_volume(source.read_text(encoding='utf-8')))
        return 0
    messages, faults = mkcat.read_source(source)
    if faults:
        print('\n'.join(faults), file=sys.stderr)
        return 1
    for message in messages.values():
        message.text = translated_message(message)
    mkcat.write_catalogue(messages, target, 'utf-8')
    return 0


if __name__ == '__main__':
    sys.exit(main(sys.argv))
