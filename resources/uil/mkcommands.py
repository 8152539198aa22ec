#!/usr/bin/env python3
"""Makes what a window's commands need of their one description.

    mkcommands.py WINDOW.commands OUT_FOLDER

WINDOW_commands.uih   menu bar, the lists' menu (popup) and tool bar as window descriptions
WINDOW_commands.h     the enum, and the rows of the program's tables as lists of macro calls

A description says `window NAME` and then, a section each and its lines indented:

    toolbar       commands with a button, in this order; they are the first of the enum
    elsewhere     commands that nothing here offers
    popup         the menu of the window's lists
    menu ...      a menu of the menu bar; in it further ones, indented again
    registered    the procedures with a name of their own, in the order of their table

A line of a menu or the tool bar is one of

    -                                        a gap
    COMMAND ["label" LETTER] [MEMBER=VALUE]  a command, or another place for one that a line above has
    item NAME "label" LETTER calls=PROC(..)  something that is no command of the window
    menu NAME "label" LETTER                 a menu

A button of the tool bar has its command's label without the dots.  The enumerator of a command is
VGA_<WINDOW>_<COMMAND>, its procedure vga_<window>_<command>; one that is not registered is called
as vga_command_cb(number).  These members are for the window description:

    icon=NAME help=MESSAGE   picture (and NAMEins, its grey one) and help of a button of the tool bar
    accelerator=Ctrl+W       key that does it, in the menu bar; a single letter is a key as it is
    shown=Delete             text only: the key is read elsewhere
    procedure=NAME           instead of vga_<window>_<command>
    by_hand                  the procedure does more than to run the command: the program has it

Any other MEMBER=VALUE is C++: a member of the command's row, in the order of its declaration.
"""

import re
import sys
from pathlib import Path

WORD = re.compile(r'"[^"]*"|(?:"[^"]*"|[^\s"])+')
SHARED = {'label', 'letter', 'icon', 'help', 'accelerator', 'shown', 'procedure', 'by_hand', 'calls'}


class Entry:
    """A line of the description, with the lines that are indented below it."""

    def __init__(self, place, words):
        self.place, self.kind, self.inner, self.facts = place, 'command', [], {}
        self.item = None  # a command's widget in the menu bar
        if words[0] in ('menu', 'item', 'window'):
            self.kind = words.pop(0)
        elif words[0] == '-':
            self.kind = 'gap'
        self.name = words[0]
        for word in words[1:]:
            key, is_fact, value = word.partition('=')
            if word.startswith('"'):
                self.facts['label'] = word[1:-1]
            elif is_fact and '"' not in key:
                self.facts[key] = value
            elif len(word) == 1:
                self.facts['letter'] = word
            elif word == 'by_hand':
                self.facts[word] = '1'
            else:
                raise ValueError(f'{place}: {word} is not understood')


def read(path):
    """The lines of the file as a tree: the entries that stand furthest left."""
    top = Entry(path.name, ['top'])
    levels = [(-1, top)]
    for number, line in enumerate(path.read_text(encoding='utf-8').splitlines(), 1):
        words = WORD.findall(line.split('#')[0])
        if not words:
            continue
        indent = len(line) - len(line.lstrip())
        while levels[-1][0] >= indent:
            levels.pop()
        parent = levels[-1][1]
        place = f'{path.name}:{number}'
        if parent.name == 'registered':
            parent.inner += words
            continue
        entry = Entry(place, words)
        parent.inner.append(entry)
        levels.append((indent, entry))
    return top.inner


def camel(name):
    return ''.join(part.capitalize() for part in name.split('_'))


class Window:
    """A description that was read: its commands in the order of the enum, and its sections."""

    def __init__(self, path):
        self.commands, self.tools, self.menus, self.popup, self.registered = {}, [], [], [], []
        for section in read(path):
            if section.kind == 'window':
                self.name = section.name
            elif section.kind == 'menu':
                self.menus.append(section)
            elif section.name == 'registered':
                self.registered = [f'vga_{self.name}_{word}' for word in section.inner]
                continue
            elif section.name == 'toolbar':
                self.tools = section.inner
            elif section.name == 'popup':
                self.popup = section.inner
            elif section.name != 'elsewhere':
                raise ValueError(f'{section.place}: {section.name} is no section')
            self.note_commands(section)
        for tool in self.tools:
            self.facts_of(tool, 'label', 'letter', 'icon', 'help')
        self.check_menu(self.popup)
        self.check_menu(self.menus)

    def facts_of(self, entry, *wanted):
        """What is said of an entry here and where it was first named; it must have these."""
        first = self.commands.get(entry.name) if entry.kind == 'command' else None
        facts = {**first.facts, **entry.facts} if first else entry.facts
        for key in wanted:
            if entry.kind != 'gap' and key not in facts:
                raise ValueError(f'{entry.place}: {entry.name} has no {key}')
        return facts

    def check_menu(self, entries):
        """Every entry of a menu has a letter of its own."""
        letters = {}
        for entry in entries:
            if entry.kind == 'gap':
                continue
            facts = self.facts_of(entry, 'label', 'letter', *(('calls',) if entry.kind == 'item' else ()))
            letter = facts['letter']
            if letter.lower() in letters or letter not in facts['label']:
                raise ValueError(f'{entry.place}: {letter} does not choose {entry.name}')
            letters[letter.lower()] = entry
            self.check_menu(entry.inner)

    def note_commands(self, section):
        """A command is what the first line says that names it; it knows its item in the menu bar."""
        for entry in section.inner:
            if entry.kind == 'menu':
                self.note_commands(entry)
            elif entry.kind == 'command':
                first = self.commands.setdefault(entry.name, entry)
                if section.name not in ('toolbar', 'elsewhere', 'popup'):
                    first.item = self.item_name(entry)

    def item_name(self, entry):
        return self.name + camel(entry.name) + ('Item' if self.is_tool(entry) else '')

    def is_tool(self, entry):
        return any(tool.name == entry.name for tool in self.tools)

    def constant(self, name):
        return f'VGA_{self.name}_{name}'.upper()

    def procedure(self, command):
        return command.facts.get('procedure', f'vga_{self.name}_{command.name}')

    def call(self, entry):
        if entry.kind == 'item':
            return entry.facts['calls']
        command = self.commands[entry.name]
        if self.procedure(command) in self.registered:
            return self.procedure(command) + '()'
        return f'vga_command_cb({list(self.commands).index(entry.name)})'


def quoted(text):
    return f'compound_string("{text}")'


def object_text(name, widget_class, arguments=(), controls=(), callbacks=()):
    text = f'object {name} : {widget_class} {{\n'
    for kind, lines in (('arguments', arguments), ('controls', controls), ('callbacks', callbacks)):
        if lines:
            text += f'    {kind} {{\n' + ''.join(f'        {line};\n' for line in lines) + '    };\n'
    return text + '};\n'


def accelerator(facts):
    """Arguments that show the key, and bind it."""
    key = facts.get('accelerator')
    lines = [f'XmNacceleratorText = {quoted(key or facts["shown"])}'] if key or 'shown' in facts else []
    if key:
        *modifiers, letter = key.split('+')
        letter = letter.lower() if len(letter) == 1 else letter
        lines.append(f'XmNaccelerator = "{" ".join(modifiers)} <Key>{letter}"')
    return lines


def label(facts):
    return [f'XmNlabelString = {quoted(facts["label"])}', f'XmNmnemonic = keysym("{facts["letter"]}")']


def item_text(window, entry, name, with_keys):
    facts = window.facts_of(entry)
    return object_text(name, 'XmPushButton', label(facts) + (accelerator(facts) if with_keys else []),
                       callbacks=[f'XmNactivateCallback = procedure {window.call(entry)}'])


def menu_text(window, menu):
    """A cascade button, its menu, and all that is in it."""
    name, controls, inner = window.name + menu.name, [], ''
    for entry in menu.inner:
        if entry.kind == 'gap':
            controls.append('XmSeparator {}')
        elif entry.kind == 'menu':
            controls.append(f'XmCascadeButton {window.name}{entry.name}')
            inner += menu_text(window, entry)
        else:
            item = window.name + entry.name if entry.kind == 'item' else window.item_name(entry)
            controls.append(f'XmPushButton {item}')
            inner += item_text(window, entry, item, True)
    return (object_text(name, 'XmCascadeButton', label(menu.facts), [f'XmPulldownMenu {name}Menu']) +
            object_text(f'{name}Menu', 'XmPulldownMenu', controls=controls) + inner)


def menu_bar_text(window):
    bar = ['arguments fill_width', 'XmNtopAttachment = XmATTACH_FORM']
    bar += [f'XmNmenuHelpWidget = XmCascadeButton {window.name}Help'
            for menu in window.menus if menu.name == 'Help']
    return (object_text(f'{window.name}MenuBar', 'XmMenuBar', bar,
                        [f'XmCascadeButton {window.name}{menu.name}' for menu in window.menus]) +
            ''.join(menu_text(window, menu) for menu in window.menus))


def popup_text(window):
    controls, inner = [], ''
    for entry in window.popup:
        item = f'{window.name}{camel(entry.name)}Popup'
        controls.append('XmSeparator {}' if entry.kind == 'gap' else f'XmPushButton {item}')
        inner += item_text(window, entry, item, False) if entry.kind != 'gap' else ''
    return object_text(f'{window.name}Popup', 'XmPopupMenu', ['XmNpopupEnabled = false'],
                       controls) + inner


def tool_text(window, tool):
    """Icon and text stand two levels below the frame, by which the pointer help finds them."""
    name = f'{window.name}{camel(tool.name)}Button'
    callbacks = ['XmNarmCallback = procedure vga_button_push()',
                 'XmNdisarmCallback = procedure vga_button_pop()',
                 f'XmNactivateCallback = procedure {window.call(tool)}']
    pointer = f'arguments {window.name}_tool'
    return (object_text(f'{name}Frame', 'XmFrame', ['arguments tool_frame'], [f'XmForm {name}Form']) +
            object_text(f'{name}Form', 'XmForm',
                        controls=[f'XmPushButton {name}Icon', f'XmPushButton {name}Text']) +
            object_text(f'{name}Icon', 'XmPushButton', [pointer, 'arguments tool_icon'],
                        callbacks=callbacks) +
            object_text(f'{name}Text', 'XmPushButton',
                        [pointer, 'arguments tool_text', f'XmNtopWidget = XmPushButton {name}Icon',
                         f'XmNlabelString = {quoted(tool.facts["label"].removesuffix("..."))}'],
                        callbacks=callbacks))


def tool_bar_text(window):
    bar, controls, inner, gaps = f'{window.name}Toolbar', [], '', 0
    for tool in window.tools:
        if tool.kind == 'gap':
            gaps += 1
            gap = f'{window.name}ToolGap{gaps}'
            controls.append(f'XmSeparator {gap}')
            inner += object_text(gap, 'XmSeparator', ['arguments tool_gap'])
        else:
            controls.append(f'XmFrame {window.name}{camel(tool.name)}ButtonFrame')
            inner += tool_text(window, tool)
    return (object_text(bar, 'XmForm', ['arguments fill_width', 'XmNtopAttachment = XmATTACH_WIDGET',
                                        f'XmNtopWidget = XmMenuBar {window.name}MenuBar'],
                        [f'XmRowColumn {bar}RowColumn', f'XmSeparator {bar}Rule']) +
            object_text(f'{bar}RowColumn', 'XmRowColumn',
                        ['arguments tool_row', f'XmNbottomWidget = XmSeparator {bar}Rule'], controls) +
            object_text(f'{bar}Rule', 'XmSeparator', ['arguments tool_rule']) + inner +
            f"""list {window.name}_tool : arguments {{
    XmNtranslations = translation_table(
        '#override',
        '<Enter>: Enter() vga_{window.name}_enter_button()',
        '<Leave>: Leave() vga_{window.name}_leave_button()');
}};
""")


def description(window):
    made = menu_bar_text(window) + popup_text(window) + tool_bar_text(window)
    used = sorted(name for name in window.registered if f'procedure {name}()' in made)
    return ('! Made by mkcommands.py.\n\nprocedure\n' +
            ''.join(f'    {name}();\n' for name in used) + '\n' + made)


def macro(name, parameter, rows):
    return f'#define {name}({parameter}) \\\n' + ' \\\n'.join(f'    {row}' for row in rows) + '\n\n'


def command_row(window, command):
    item = f'"*{command.item}"' if command.item else 'nullptr'
    members = [f'.{key} = {value}' for key, value in command.facts.items() if key not in SHARED]
    return f'COMMAND({", ".join([window.constant(command.name), item] + members)})'


def tool_row(window, tool):
    facts = tool.facts
    return (f'TOOL({window.constant(tool.name)}, "*{window.name}{camel(tool.name)}", '
            f'"{facts["icon"]}", {facts["help"]})')


def header(window):
    guard, count = window.constant('COMMANDS_H'), window.constant('TOOL_COUNT')
    commands = list(window.commands.values())
    names = [window.constant(command.name) for command in commands]
    tools = [tool for tool in window.tools if tool.kind == 'command']
    names.insert(len(tools), count)
    if len(tools) < len(commands):
        names[len(tools) + 1] += f' = {count}'
    plain = [command for command in commands
             if window.procedure(command) in window.registered and 'by_hand' not in command.facts]
    return (f'/* Made by mkcommands.py. */\n#ifndef {guard}\n#define {guard}\n\n#include "nbtypes.h"\n\n'
            f'enum {window.constant("COMMAND")} : NB_USHORT {{\n' +
            ''.join(f'    {name},\n' for name in names + [window.constant('COMMAND_COUNT')]) + '};\n\n' +
            f'#define {window.constant("CALLBACK_COUNT")} {len(window.registered)}\n\n' +
            macro(window.constant('COMMANDS'), 'COMMAND',
                  [command_row(window, command) for command in commands]) +
            macro(window.constant('TOOLS'), 'TOOL', [tool_row(window, tool) for tool in tools]) +
            '/* What does no more than to run a command, and all procedures in their order. */\n' +
            macro(window.constant('PROCEDURES'), 'PROCEDURE',
                  [f'PROCEDURE({window.procedure(command)}, {window.constant(command.name)})'
                   for command in plain]) +
            macro(window.constant('CALLBACKS'), 'CALLBACK',
                  [f'CALLBACK({name})' for name in window.registered]) + '#endif\n')


def main():
    source, folder = map(Path, sys.argv[1:])
    try:
        window = Window(source)
        files = {'uih': description(window), 'h': header(window)}
    except ValueError as fault:
        print(fault, file=sys.stderr)
        return 1
    for suffix, text in files.items():
        (folder / f'{source.stem}_commands.{suffix}').write_text(text, encoding='utf-8')
    return 0


if __name__ == '__main__':
    sys.exit(main())
