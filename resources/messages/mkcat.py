#!/usr/bin/env python3
"""Makes the input of gencat and a C++ table of help keys from the message source.

usage: mkcat.py sna.msg.in OUT.msg OUT.h

The source lists the allocated messages only; OUT.msg has every number of the set, because the
program refuses to start when one is missing. Nothing is written when the source has a fault;
each fault is printed as file:line and the exit status is 1. messages_test.py uses read_source()
to know what the program may use.
"""

import re
import sys
from pathlib import Path

SET_NUMBER = 2
LAST_NUMBER = 1483
MAX_BYTES = 3999  # the program copies messages through blocks of 4096 bytes
TYPES = ("s", "i", "l", "x", "lx", "ca", "cs")

# First and last message, longest text, and what limits it.
LONGEST = (
    (207, 207, 900, "the text of a failed request"),
    (211, 211, 900, "the text of a failed request"),
    (212, 212, 100, "the title of a help window"),
    (223, 223, 900, "the text of a failed request"),
    (227, 227, 900, "the text of a failed request"),
    (228, 229, 200, "the command line of the browser"),
    (230, 230, 31, "a description field"),
    (234, 234, 31, "a description field"),
    (605, 605, 900, "the text of a failed request"),
    (692, 692, 900, "the text of a failed request"),
    (1223, 1223, 15, "the role column"),
    (1225, 1226, 15, "the role column"),
    (1250, 1259, 15, "the status column"),
    (1271, 1280, 21, "the link type column"),
    (1281, 1285, 11, "the link role column"),
    (1286, 1292, 21, "the LU type column"),
    (1293, 1296, 15, "the node type column"),
    (1441, 1441, 900, "the text of a failed request"),
)
# Names, patterns and addresses: something else than an operator reads them.
NO_BLANK_ENDS = (228, 229, 600, 601, 607, 612)
FOR_TERMINAL = (599, 603, 609, 1120, 1121, 1124, 1161)
# Their other arguments stand behind "Details".
SHOWS_PART = (602, 604)

TOKEN = re.compile(r"%%|%t(?P<column>\d+)%|%(?P<argument>[1-9])(?!\d)|%|[^%]+")
ESCAPES = {"n": "\n", "t": "\t", "\\": "\\", '"': '"'}


class Message:
    """One allocated message: `types` as in its "$ args:" line, `help_key` as in its "$ help:" line
    (None without one), `text` without escapes."""

    def __init__(self, number, types, help_key, text, line):
        self.number = number
        self.types = types
        self.help_key = help_key
        self.text = text
        self.line = line


def logical_lines(path):
    """Yields (number of the first line, text) with continued lines joined."""
    pending, first = "", 0
    for number, raw in enumerate(path.read_text(encoding="latin-1").split("\n"), 1):
        first = first or number
        ends_in = len(raw) - len(raw.rstrip("\\"))
        if ends_in % 2 and (pending or not raw.startswith("$")):
            pending += raw[:-1]
            continue
        yield first, pending + raw
        pending, first = "", 0
    if pending:
        yield first, pending


def unquote(quoted):
    """Returns (text, None), or (None, what is wrong)."""
    if len(quoted) < 2 or not quoted.startswith('"'):
        return None, "the text is not in double quotes"
    out, at = [], 1
    while at < len(quoted):
        char = quoted[at]
        if char == '"':
            if quoted[at + 1:].strip():
                return None, "characters after the closing quote"
            return "".join(out), None
        if char == "\\":
            at += 1
            escape = quoted[at:at + 1]
            if escape not in ESCAPES:
                return None, f"unknown escape \\{escape}"
            char = ESCAPES[escape]
        out.append(char)
        at += 1
    return None, "no closing quote"


def check_tokens(message):
    """Yields what is wrong with the placeholders and column stops of a message."""
    used, columns = set(), []
    for token in TOKEN.finditer(message.text):
        if token["argument"]:
            used.add(int(token["argument"]))
        elif token["column"]:
            columns.append(int(token["column"]))
        elif token[0] == "%":
            yield "a per cent sign that starts no placeholder"
        elif token[0] == "%%" and not message.types:
            yield "%% in a message that is shown without being formatted"
    wanted = set(range(1, len(message.types) + 1))
    for number in sorted(used - wanted):
        yield f"%{number} has no argument"
    for number in sorted(wanted - used if message.number not in SHOWS_PART else ()):
        yield f"argument {number} is not used"
    if columns != sorted(set(columns)):
        yield "column stops do not ascend"


def check_text(message):
    """Yields what is wrong with a message as a whole."""
    yield from check_tokens(message)
    number, text = message.number, message.text
    if not text.strip():
        yield "the text is empty"
    if not text.isascii():
        yield "not ASCII, which every locale can show"
    if len(text) > MAX_BYTES:
        yield f"longer than {MAX_BYTES} bytes"
    for first, last, most, what in LONGEST:
        if first <= number <= last and len(text) > most:
            yield f"{len(text)} characters, but {what} holds {most}"
    if number in NO_BLANK_ENDS and text != text.strip():
        yield "blanks at an end"
    if (number in FOR_TERMINAL) != text.endswith("\n"):
        yield "only a text for the terminal ends with a new line, and it must"


def read_source(path):
    """Returns ({number: Message}, faults); a fault is a text that starts with file:line."""
    messages, faults = {}, []
    types, help_key, previous = None, None, 0

    def fault(line, text):
        faults.append(f"{path}:{line}: {text}")

    for line, text in logical_lines(Path(path)):
        comment = re.match(r"\$ args:(.*)$", text)
        topic = re.match(r"\$ help: *(\w+)$", text)
        entry = re.match(r"(\d+) (.*)$", text)
        if comment:
            if types is not None:
                fault(line, "a second args line for one message")
            types = comment[1].split()
            for name in types:
                if name not in TYPES:
                    fault(line, f"unknown type {name}")
        elif topic:
            help_key = topic[1]
        elif entry:
            number = int(entry[1])
            unquoted, wrong = unquote(entry[2])
            if types is None:
                fault(line, f"message {number} has no args line")
            if not previous < number <= LAST_NUMBER:
                fault(line, f"message {number} is out of order or above {LAST_NUMBER}")
            if wrong:
                fault(line, f"message {number}: {wrong}")
            else:
                messages[number] = Message(number, types or [], help_key, unquoted, line)
                for wrong in check_text(messages[number]):
                    fault(line, f"message {number}: {wrong}")
            types, help_key, previous = None, None, number
        elif text.strip() and text != '$quote "' and not re.match(r"\$( |$)", text):
            fault(line, "neither a comment nor a message")
    if types is not None:
        fault("end", "an args line without a message")
    return messages, faults


def gencat_text(text):
    """Quotes a text; a line of the text is a line of the output, as gencats limit their length."""
    for char, escaped in (("\\", "\\\\"), ('"', '\\"'), ("\t", "\\t"), ("\n", "\\n\\\n")):
        text = text.replace(char, escaped)
    return '"' + (text[:-2] if text.endswith("\\\n") else text) + '"'


def write_catalogue(messages, path, encoding="ascii"):
    with open(path, "w", encoding=encoding) as out:
        out.write(f'$ Made by mkcat.py.\n$set {SET_NUMBER}\n$quote "\n')
        for number in range(1, LAST_NUMBER + 1):
            message = messages.get(number)
            text = message.text if message else f"Message {number} is not in use."
            out.write(f"{number} {gencat_text(text)}\n")


def write_table(messages, path):
    rows = "".join(f'    {{{number}, "{message.help_key}"}},\n'
                   for number, message in messages.items() if message.help_key)
    Path(path).write_text(
        "// The help keys of messages, in the order of their numbers. Made by mkcat.py.\n"
        "struct MESSAGE_HELP {\n"
        "    unsigned short number;\n"
        "    const char *key;\n"
        "};\n\n"
        f"constexpr MESSAGE_HELP message_help[] = {{\n{rows}}};\n",
        encoding="ascii")


def main(arguments):
    if len(arguments) != 4:
        print(__doc__, file=sys.stderr)
        return 2
    messages, faults = read_source(arguments[1])
    for text in faults:
        print(text, file=sys.stderr)
    if faults:
        return 1
    write_catalogue(messages, arguments[2])
    write_table(messages, arguments[3])
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
