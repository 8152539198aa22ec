#!/usr/bin/env python3
"""Checks every use of a message in the sources against the message catalogue's source, and that no
text for operators has a name that the table of words in docs/help.md says is out.

usage: messages_test.py REPO_ROOT

A use is a fault when its number is not allocated or when the types that it passes do not fit the
arguments of that message: a text for a number, a decimal for a hexadecimal, one too few. Named
numbers come from the enums of CONSTANTS_FILES. Numbers and types that only the running
program knows are passed over. Prints each fault as file:line; the exit status is 1 when there
was one, or when no use was found at all.
"""

import importlib.util
import re
import sys
from pathlib import Path

CONSTANTS_FILES = ("vga/frame/messages.h", "records/wordmessages.h")
SOURCES = (".cpp", ".h")

# Where a function takes messages: position of the number, and the argument types, which are
# fixed here or stand at a position of their own, with the arguments behind them. Where OR_NONE
# is set, 0 means that there is no message.
NO_ARGUMENTS, RANGE = "", "l l"
OR_NONE = True
BOX = ((1, 5, False),)
CHECK = ((4, NO_ARGUMENTS, False), (6, RANGE, False))
USES = {
    "vga_print_msg": ((2, 3, False),),
    "vga_display_error_dialog": BOX,
    "vga_display_info_dialog": BOX,
    "vga_display_confirm_dialog": BOX,
    "vga_message": ((0, None, False),),
    "gvga_messages": ((0, None, False),),
    "vga_message_node_window": ((1, NO_ARGUMENTS, OR_NONE),),
    "vga_message_system_window": ((1, NO_ARGUMENTS, OR_NONE),),
    "vga_sysw_set_insensitive": ((1, NO_ARGUMENTS, OR_NONE),),
    "vga_check_field": CHECK,
    "vga_check_signed_field": CHECK,
    "vga_get_hex_field": ((3, NO_ARGUMENTS, False),),
    "vga_get_node_id": ((3, NO_ARGUMENTS, OR_NONE), (5, NO_ARGUMENTS, False)),
    "vga_load_fixed_fontset": ((2, NO_ARGUMENTS, False),),
}
USE = re.compile(r"\b(%s)\s*([(\[])" % "|".join(USES))
DECLARATION = re.compile(
    r"\b(extern|inline|static|NB_VOID|NB_USHORT|NB_CHAR|void|int|char)[\s*&]+(\w+::)*$")

FITS = {"i": "decimal", "l": "decimal", "x": "hexadecimal", "lx": "hexadecimal"}
VALUES_PASSED = {"ca": 2, "cs": 2}  # a width, then the array

LEXEME = re.compile(
    r'R"(?P<raw>[^()\\\s]*)\(.*?\)(?P=raw)"'
    r'|"(?:\\.|[^"\\\n])*"'
    r"|(?<![0-9a-fA-F])'(?:\\.|[^'\\\n])+'"
    r"|(?P<comment>//[^\n]*|/\*.*?\*/)", re.DOTALL)
CAST = re.compile(r"^\s*(?:static_cast\s*<[^>]*>|\(\s*(?:NB_\w+|int|unsigned)\s*\))\s*(?=\(|\w)")


def blank_comments(text):
    """Replaces comments by blanks; lines keep their numbers."""
    def blank(lexeme):
        return re.sub(r"[^\n]", " ", lexeme[0]) if lexeme["comment"] else lexeme[0]
    return LEXEME.sub(blank, text)


def arguments_at(text, start):
    """Splits the list that opens at `start` - 1 at its commas; None when it does not close."""
    out, depth, begin, at = [], 0, start, start
    while at < len(text):
        lexeme = LEXEME.match(text, at)
        if lexeme:
            at = lexeme.end()
            continue
        char = text[at]
        if char in "([{":
            depth += 1
        elif char in ")]}":
            if depth == 0:
                last = text[begin:at].strip()
                return out + [last] if out or last else []
            depth -= 1
        elif char == "," and depth == 0:
            out.append(text[begin:at].strip())
            begin = at + 1
        at += 1
    return None


def split_choice(expression):
    """Returns (first, second) of `condition ? first : second`, or None."""
    depth, question = 0, None
    for at, char in enumerate(expression):
        depth += (char in "([{") - (char in ")]}")
        if depth == 0 and char == "?":
            question = at if question is None else question
        elif depth == 0 and char == ":" and question is not None \
                and "::" not in expression[max(at - 1, 0):at + 2]:
            return expression[question + 1:at], expression[at + 1:]
    return None


def numbers_of(expression, constants):
    """Returns the numbers that an expression may have; what cannot be known is left out."""
    expression = CAST.sub("", expression).strip()
    choice = split_choice(expression)
    if choice:
        return [number for part in choice for number in numbers_of(part, constants)]
    if expression.startswith("(") and len(arguments_at(expression, 1) or ()) == 1 \
            and expression.endswith(")"):
        return numbers_of(expression[1:-1], constants)
    total = 0
    for part in expression.split("+"):
        name = re.fullmatch(r"\s*(?:\w*::)*(\w+)\s*", part)
        if name and re.fullmatch(r"\d+[uU]?", name[1]):
            total += int(name[1].rstrip("uU"))
        elif name and name[1] in constants:
            total += constants[name[1]]
        else:
            return []
    return [total]


def types_of(expression):
    """Returns the types that a type argument names, or None when it is not a literal."""
    if expression in ("nullptr", "NULL", "0"):
        return []
    literals = re.findall(r'"([^"\\]*)"', expression)
    if not literals or re.sub(r'"[^"\\]*"', "", expression).strip():
        return None
    return "".join(literals).split()


class Checker:
    """Holds the messages and constants, and collects faults as texts "file:line: ..."."""

    def __init__(self, types_by_number, constants):
        self.types_by_number = types_by_number
        self.constants = constants
        self.faults = []
        self.uses = 0

    def check_number(self, place, number):
        if number in self.types_by_number:
            return True
        self.faults.append(f"{place}: message {number} is not allocated")
        return False

    def check_types(self, place, number, passed):
        wanted = self.types_by_number[number]
        if [FITS.get(name, name) for name in passed] != [FITS.get(name, name) for name in wanted]:
            self.faults.append(f'{place}: message {number} takes "{" ".join(wanted)}", '
                               f'not "{" ".join(passed)}"')

    def check_use(self, place, arguments, use):
        """`use` is a row of USES: position of the number, types or their position, 0 allowed."""
        position, types, or_none = use
        if position >= len(arguments):
            return
        passed = None
        if isinstance(types, str):
            passed = types.split()
        elif types is not None:
            passed = types_of(arguments[types]) if types < len(arguments) else []
            if passed is not None:
                values = sum(VALUES_PASSED.get(name, 1) for name in passed)
                given = max(len(arguments) - types - 1, 0)
                if given != values:
                    self.faults.append(
                        f'{place}: "{" ".join(passed)}" needs {values} values, not {given}')
        for number in numbers_of(arguments[position], self.constants):
            self.uses += 1
            if or_none and number == 0:
                continue
            if self.check_number(place, number) and passed is not None:
                self.check_types(place, number, passed)

    def check_source(self, name, text):
        text = blank_comments(text)
        for found in USE.finditer(text):
            if DECLARATION.search(text[max(found.start() - 80, 0):found.start()]):
                continue
            arguments = arguments_at(text, found.end())
            place = f"{name}:{text.count(chr(10), 0, found.start()) + 1}"
            if (found[2] == "[") != (found[1] == "gvga_messages") or arguments is None:
                continue
            for use in USES[found[1]]:
                self.check_use(place, arguments, use)


def read_constants(text):
    """Returns {enumerator: (number, line)} of the VGA_MSG_ and MSG_ enumerators of a header."""
    text, out, previous = blank_comments(text), {}, -1
    for found in re.finditer(r"\b((?:VGA_)?MSG_\w+)\s*(?:=([^,}]*))?(?=[,}])", text):
        if found[2] is None:
            values = [previous + 1]
        else:
            values = numbers_of(found[2], {name: value for name, (value, _) in out.items()})
        if values:
            previous = values[0]
            out[found[1]] = (previous, text.count("\n", 0, found.start()) + 1)
    return out


def load_mkcat(root):
    spec = importlib.util.spec_from_file_location("mkcat", root / "resources/messages/mkcat.py")
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


def words_out(root):
    """Returns the pattern of the names that the table of words has as out, and what to say instead."""
    rows = re.findall(r"^\|([^|]+)\|[^|]+\|([^|]+)\|$",
                      (root / "docs/help.md").read_text(encoding="utf-8").split("## Words", 1)[1], re.M)
    instead = {name.strip().lower(): say.strip() for say, names in rows[1:] for name in names.split(",")
               if set(name.strip()) - set("-")}
    return re.compile(rf"\b({'|'.join(map(re.escape, instead))})\b", re.I), instead


def texts_for_operators(root, messages):
    """Yields (place, text).  Of descriptions of windows only what is quoted is shown."""
    for message in messages.values():
        yield f"sna.msg.in:{message.line}", message.text
    for glob, shown, passed in (
            ("resources/windows/*.window", r'"([^"]*)"', "#"), ("resources/dialogs/*.dlg", r'"([^"]*)"', "#"),
            ("resources/uil/*.ui?", r'compound_string\("([^"]*)"', "!"), ("resources/uil/later.txt", r"(.*)", "#"),
            ("resources/help/*.hlp", r"(.*)", ("?", ": SSCP ")), ("resources/pages/*.html", r"(.*)", "<!--"),
            ("resources/desktop/*.in", r"(.*)", "#"), ("docs/man/*", r"(.*)", '.\\"'), ("README.md", r"(.*)", "<!--")):
        for path in sorted(root.glob(glob)):
            for number, line in enumerate(path.read_text(encoding="utf-8").split("\n"), 1):
                for text in re.findall(shown, line) if not line.startswith(passed) else ():
                    yield f"{path.name}:{number}", text


def check_words(root, messages):
    pattern, instead = words_out(root)
    return [f'{place}: "{found[1]}" is out, say "{instead[found[1].lower()]}"'
            for place, text in texts_for_operators(root, messages) for found in pattern.finditer(text)]


def main(arguments):
    if len(arguments) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    sys.dont_write_bytecode = True
    root = Path(arguments[1])
    messages, faults = load_mkcat(root).read_source(root / "resources/messages/sna.msg.in")
    types_by_number = {number: message.types for number, message in messages.items()}

    checker = Checker(types_by_number, {})
    for file in CONSTANTS_FILES:
        for name, (number, line) in read_constants((root / file).read_text(encoding="utf-8")).items():
            checker.constants[name] = number
            if number:
                checker.check_number(f"{file}:{line}: {name}", number)
    for path in sorted(path for path in (root / "vga").rglob("*") if path.suffix in SOURCES):
        checker.check_source(path.relative_to(root), path.read_text(encoding="utf-8"))

    faults += checker.faults + check_words(root, messages)
    if not checker.uses:
        faults.append("vga: no use of a message was found")
    for fault in faults:
        print(fault)
    print(f"{checker.uses} uses of messages, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
