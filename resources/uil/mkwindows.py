#!/usr/bin/env python3
"""Makes what list windows need of their descriptions, one file a window.

    mkwindows.py OUT_FOLDER WINDOW.window...

windows.uih    the windows as window descriptions, with all their texts
windows.h      the commands of each as an enum, and the functions that its own code has to define
windows.inc    the tables of commands, tools and lists, the plans, and the procedures by their names
windowrows.h   what the table of windows needs of each

A description says, one thing a line:

    window NAME KIND "Title"      main: menu bar, tool bar, lists, message line; dialog: a list beside
                                  its buttons
    descriptor TYPE HEADER        the window has a descriptor, widgets and a life of its own; without
                                  this line all of it is made
    widgets NAME                  vga_get_widgets_NAME looks its widgets up, where there is a descriptor
    head NAME                     an XmForm between tool bar and lists that the program describes
    size WIDTH HEIGHT             font units (main), or columns and lines of the list (dialog)

and, a section each and its lines indented:

    toolbar       commands with a button, in this order; they are the first of the enum
    elsewhere     commands that nothing here offers
    popup         the menu of the window's lists
    menu ...      a menu of the menu bar; in it further ones, indented again
    lists         the window's lists, from top to bottom
    registered    the procedures with a name of their own, in the order of their table

A line of a menu or the tool bar is one of

    -                                        a gap
    COMMAND ["label" LETTER] [MEMBER=VALUE]  a command, or another place for one that a line above has
    item NAME "label" LETTER calls=PROC(..)  something that is no command of the window
    menu NAME "label" LETTER                 a menu

A button of the tool bar has its command's label without the dots.  What most windows have (STANDARD
below) needs no more than its name; a line may say it otherwise.  The enumerator of a command is
VGA_<WINDOW>_<COMMAND>, its procedure vga_<window>_<command>; one that is not registered is called
as vga_command_cb(number).  These members are for the window description:

    icon=NAME help=MESSAGE   picture (and NAMEins, its grey one) and help of a button of the tool bar
    named_help=MESSAGE       its help while a line is selected; the argument is the line's name
    accelerator=Ctrl+W       key that does it, in the menu bar; a single letter is a key as it is
    shown=Delete             text only: the key is read elsewhere
    procedure=NAME           instead of vga_<window>_<command>
    by_hand                  the procedure does more than to run the command: the program has it

Every main window has the menu Find, and so have the lists of a dialog: what finds lines needs no word.

Any other MEMBER=VALUE is C++: a member of VGA_COMMAND_ROW, in the order of its declaration.

A line below `lists` is

    list NAME "Title" node=ROOT|domain=ROOT [MEMBER=VALUE]
        key NAME "label" icon=NAME           a kind of line, explained beside the title

ROOT is a member of VGA_NODE or VGA_SYSTEM.  The widgets are <window><NAME>Form, DrawArea, HScrollBar,
VScrollBar, Window, Headings, and <window><NAME>Title, Counts, Key and Rule.  These members there are:

    called=NAME        in the names of title, key and rule
    height=N           font units, of which each list gets its share
    selects=PROCEDURE  makes the list the current one; otherwise the program's own does
    headings=TYPE      above the list stand the headings of lines of that viewer type
    add=DIALOG         the dialog that Add opens: its number
    topic=NAME         help on the list, while no line is selected; otherwise the window's

A fault is printed as file:line, nothing is written, and the exit status is 1.
"""

import re
import sys
from pathlib import Path

WORD = re.compile(r'"[^"]*"|(?:"[^"]*"|[^\s"])+')
SHARED = {'label', 'letter', 'icon', 'help', 'named_help', 'accelerator', 'shown', 'procedure', 'by_hand', 'calls'}
MEMBERS = ('scope', 'changes', 'told', 'states', 'capability', 'offered', 'opens', 'refuses', 'action')
LIST_FACTS = {'topic', 'node', 'domain', 'called', 'height', 'selects', 'headings', 'add', 'label'}


def standard(label, letter, icon, verb, **facts):
    return {'label': label, 'letter': letter, 'icon': icon, 'help': f'VGA_MSG_NODEW_HELP_{verb.upper()}',
            'scope': 'VGA_FOR_SELECTION', 'refuses': f'vga_refuses_{verb}', 'action': f'vga_listw_{verb}', **facts}


def finding(label, letter, action, **facts):
    return {'label': label, 'letter': letter, 'scope': 'VGA_FOR_LIST', 'states': 'VGA_ANY_STATE',
            'action': f'vga_listw_{action}', **facts}


CHANGES = {'changes': '1'}
STANDARD = {
    'start': standard('Start', 'S', 'start', 'start', **CHANGES),
    'stop': standard('Stop', 't', 'stop', 'stop', **CHANGES),
    'add': standard('Add...', 'A', 'add', 'add', scope='VGA_FOR_LIST', told='1', shown='Insert', refuses='nullptr'),
    'delete': standard('Delete', 'D', 'del', 'delete', shown='Delete', **CHANGES),
    'zoom': standard('Properties...', 'P', 'zoom', 'zoom', accelerator='Alt+Return'),
    'status': standard('Status...', 'u', 'status', 'status', accelerator='Ctrl+I'),
    'copy': standard('Copy...', 'C', 'copy', 'copy', **CHANGES),
    'copy_name': {'label': 'Copy name', 'letter': 'n', 'scope': 'VGA_FOR_SELECTION',
                  'action': 'vga_listw_copy_name'},
    'copy_lines': {'label': 'Copy lines', 'letter': 'l', 'shown': 'Ctrl+C', 'scope': 'VGA_FOR_SELECTION',
                   'states': 'VGA_ANY_STATE', 'action': 'vga_listw_copy_lines'},
    'messages': {'label': 'Messages...', 'letter': 'M', 'states': 'VGA_ANY_STATE', 'action': 'vga_listw_messages'},
    'help_on_this': {'label': 'Help on this', 'letter': 'H', 'scope': 'VGA_FOR_SELECTION',
                     'states': 'VGA_ANY_STATE', 'action': 'vga_listw_help_on_this'},
    'find_text': finding('Find...', 'F', 'find', accelerator='Ctrl+F'),
    'find_next': finding('Find next', 'n', 'find_next', accelerator='F3'),
    'find_previous': finding('Find previous', 'p', 'find_previous', accelerator='Shift+F3'),
    'filter': finding('Show only...', 'S', 'filter', accelerator='Ctrl+L'),
    'filter_off': finding('Show all', 'w', 'filter_off', accelerator='Ctrl+Shift+L'),
    'failed_next': finding('Next failed line', 'x', 'failed_next', accelerator='F8'),
    'failed_previous': finding('Previous failed line', 'v', 'failed_previous', accelerator='Shift+F8'),
}
FINDING = ('find_text', 'find_next', 'find_previous', '-', 'filter', 'filter_off', '-', 'failed_next', 'failed_previous')
FIND_MENU = 'menu Find "Find" F\n' + ''.join(f'    {command}\n' for command in FINDING)
# A dialog has no menu bar: the menu of its lists offers what its keys do.
FIND_POPUP = 'popup\n    -\n    find_text\n    filter\n    filter_off\n'
HELP_MENU = '''menu Help "Help" H
    item HelpContents    "Contents"            C  calls=vga_menu_help_contents()
    item HelpIndex       "Index"               I  calls=vga_menu_help_index()
    item HelpSearch      "Search..."           e  calls=vga_menu_help_search()
    item HelpHelp        "Using help"          U  calls=vga_menu_help_help()
    -
    item HelpWeb         "On the web"          w  calls=vga_menu_help_web("1")
    item HelpWebSupport  "Support on the web"  S  calls=vga_menu_help_web("2")
    -
    item HelpAbout       "About..."            A  calls=vga_menu_help_about()
'''


class Entry:
    """A line of the description, with the lines that are indented below it."""

    def __init__(self, place, words):
        self.place, self.kind, self.inner, self.facts = place, 'command', [], {}
        self.item = None  # a command's widget in the menu bar
        if words[0] in ('menu', 'item', 'list', 'key'):
            self.kind = words.pop(0)
        elif words[0] == '-':
            self.kind = 'gap'
        self.name = words[0]
        if self.kind == 'command':
            self.facts = dict(STANDARD.get(self.name, {}))
        self.said = set()
        for word in words[1:]:
            key, is_fact, value = word.partition('=')
            if word.startswith('"'):
                self.say('label', word[1:-1])
            elif is_fact and '"' not in key:
                self.say(key, value)
            elif len(word) == 1:
                self.say('letter', word)
            elif word == 'by_hand':
                self.say(word, '1')
            else:
                raise ValueError(f'{place}: {word} is not understood')

    def say(self, key, value):
        self.said.add(key)
        self.facts[key] = value


def read(name, text):
    """The lines of a text as a tree: the entries that stand furthest left, and the plain facts."""
    top, facts = Entry(name, ['top']), {}
    levels = [(-1, top)]
    for number, line in enumerate(text.splitlines(), 1):
        words = WORD.findall(line.split('#')[0])
        if not words:
            continue
        place = f'{name}:{number}'
        if words[0] in ('window', 'descriptor', 'widgets', 'head', 'size'):
            facts[words[0]] = words[1:]
            continue
        indent = len(line) - len(line.lstrip())
        while levels[-1][0] >= indent:
            levels.pop()
        parent = levels[-1][1]
        if parent.name == 'registered':
            parent.inner += words
            continue
        entry = Entry(place, words)
        parent.inner.append(entry)
        levels.append((indent, entry))
    return top.inner, facts


def camel(name):
    return ''.join(part.capitalize() for part in name.split('_'))


class Window:
    """A description that was read: its commands in the order of the enum, and its sections."""

    def __init__(self, path):
        sections, facts = read(path.name, path.read_text(encoding='utf-8'))
        if 'window' not in facts or len(facts['window']) != 3 or facts['window'][1] not in ('main', 'dialog'):
            raise ValueError(f'{path.name}:1: say `window NAME main|dialog "Title"` first')
        self.name, self.kind, title = facts['window']
        self.title = title[1:-1]
        self.descriptor, self.header = facts.get('descriptor', ('VGA_LIST_WINDOW', 'listwindow.h'))
        self.own = 'descriptor' in facts
        self.widgets = facts.get('widgets', [self.name])[0]
        self.head = facts.get('head', [None])[0]
        self.size = facts.get('size', ['132', '80'] if self.kind == 'main' else ['70', '14'])
        self.commands, self.tools, self.menus, self.popup, self.registered, self.lists = {}, [], [], [], [], []
        if self.kind == 'main':
            sections += read('the find menu', FIND_MENU)[0] + read('the help menu', HELP_MENU)[0]
        for section in sections:
            self.take(section)
        if self.kind == 'dialog':
            self.add_to_popup(read('the popup menu', FIND_POPUP)[0][0])
        for tool in self.tools:
            self.facts_of(tool, 'label', 'letter', 'help', *(('icon',) if self.kind == 'main' else ()))
        self.check_menu(self.popup)
        self.check_menu(self.menus)
        self.check_lists(path.name)

    def take(self, section):
        if section.kind == 'menu':
            self.menus.append(section)
        elif section.name == 'registered':
            self.registered = [f'vga_{self.name}_{word}' for word in section.inner]
            return
        elif section.name == 'lists':
            self.lists = section.inner
            return
        elif section.name == 'toolbar':
            self.tools = section.inner
        elif section.name == 'popup':
            self.popup = section.inner
        elif section.name != 'elsewhere':
            raise ValueError(f'{section.place}: {section.name} is no section')
        self.note_commands(section)

    def add_to_popup(self, section):
        self.popup += section.inner
        self.note_commands(section)

    def facts_of(self, entry, *wanted):
        """What is said of an entry here and where it was first named; it must have these."""
        first = self.commands.get(entry.name) if entry.kind == 'command' else None
        facts = dict(first.facts) if first else {}
        facts.update({key: entry.facts[key] for key in (entry.said if first else entry.facts)})
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

    def check_lists(self, file):
        if not self.lists or len(self.lists) > 3:
            raise ValueError(f'{file}: a window has one to three lists')
        for entry in self.lists:
            unknown = set(entry.facts) - LIST_FACTS
            if entry.kind != 'list' or unknown or ('node' in entry.facts) == ('domain' in entry.facts):
                raise ValueError(f'{entry.place}: say `list NAME "Title"` and one of node=, domain='
                                 + (f'; {", ".join(sorted(unknown))} is not known' if unknown else ''))
            for key in entry.inner:
                if key.kind != 'key' or 'icon' not in key.facts:
                    raise ValueError(f'{key.place}: say `key NAME "label" icon=NAME`')

    def note_commands(self, section):
        """A command is what the first line says that names it; it knows its item in the menu bar."""
        for entry in section.inner:
            if entry.kind == 'menu':
                self.note_commands(entry)
            elif entry.kind == 'command':
                unknown = set(entry.facts) - SHARED - set(MEMBERS)
                if unknown:
                    raise ValueError(f'{entry.place}: {", ".join(sorted(unknown))} is no member of a command')
                first = self.commands.setdefault(entry.name, entry)
                if section.name not in ('toolbar', 'elsewhere', 'popup'):
                    first.item = self.item_name(entry)

    def item_name(self, entry):
        return self.name + camel(entry.name) + ('Item' if self.is_tool(entry) else '')

    def is_tool(self, entry):
        return any(tool.name == entry.name for tool in self.tools)

    def in_popup(self, command):
        return any(entry.name == command.name for entry in self.popup)

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


# The window description.

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
    bar = ['arguments fill_width', 'XmNtopAttachment = XmATTACH_FORM',
           f'XmNmenuHelpWidget = XmCascadeButton {window.name}Help']
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


def pointer_text(window):
    return f"""list {window.name}_tool : arguments {{
    XmNtranslations = translation_table(
        '#override',
        '<Enter>: Enter() vga_{window.name}_enter_button()',
        '<Leave>: Leave() vga_{window.name}_leave_button()');
}};
"""


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
            object_text(f'{bar}Rule', 'XmSeparator', ['arguments tool_rule']) + inner)


def buttons_text(window):
    """The tools of a dialog: buttons below each other."""
    name, inner = f'{window.name}Buttons', ''
    tools = [tool for tool in window.tools if tool.kind != 'gap']
    for tool in tools:
        inner += object_text(f'{window.name}{camel(tool.name)}ButtonText', 'XmPushButton',
                             [f'arguments {window.name}_tool'] + label(tool.facts),
                             callbacks=[f'XmNactivateCallback = procedure {window.call(tool)}'])
    return object_text(name, 'XmRowColumn', ['arguments dialog_buttons'],
                       [f'XmPushButton {window.name}{camel(tool.name)}ButtonText' for tool in tools]) + inner


def list_text(window, entry):
    name = window.name + entry.name
    called = window.name + entry.facts.get('called', entry.name)
    selects = entry.facts.get('selects')
    callback = f'procedure {selects}()' if selects else None
    below = f'XmSeparator {called}Rule'
    headings = f'XmDrawingArea {name}Headings' if 'headings' in entry.facts else None
    keys = [f'XmLabel {window.name}Key{key.name}' for key in entry.inner]
    key = f'XmRowColumn {called}Key' if keys else None
    controls = [f'XmLabel {called}Title', f'XmLabel {called}Counts'] + ([key] if keys else []) + [below]
    controls += ([headings] if headings else []) + [f'XmScrolledWindow {name}Window']
    height = [f'XmNheight = {entry.facts["height"]} font_units'] if 'height' in entry.facts else []
    text = object_text(f'{name}Form', 'XmForm', ['arguments pane_form'] + height, controls,
                       [f'XmNfocusCallback = {callback}'] if callback else [])
    in_row = [f'XmNbottomWidget = {below}'] # titlerow.h does the rest
    margins = [] if keys else ['XmNmarginTop = 4', 'XmNmarginBottom = 4']
    text += object_text(f'{called}Title', 'XmLabel', ['arguments pane_title'] + in_row + margins +
                        [f'XmNlabelString = {quoted(entry.facts["label"])}'])
    text += object_text(f'{called}Counts', 'XmLabel', ['arguments pane_counts'] + in_row +
                        [f'XmNleftWidget = XmLabel {called}Title'])
    text += object_text(f'{called}Key', 'XmRowColumn', ['arguments pane_key'] + in_row, keys) if keys else ''
    for kind in entry.inner:
        text += object_text(f'{window.name}Key{kind.name}', 'XmLabel',
                            [f'XmNlabelString = {quoted(kind.facts["label"])}'])
    text += object_text(f'{called}Rule', 'XmSeparator', ['arguments pane_rule'])
    if headings:
        text += object_text(f'{name}Headings', 'XmDrawingArea',
                            ['arguments pane_headings', f'XmNtopWidget = {below}'])
    text += object_text(f'{name}Window', 'XmScrolledWindow',
                        ['arguments pane_window', f'XmNtopWidget = {headings or below}'],
                        [f'XmDrawnButton {name}DrawArea', f'unmanaged XmScrollBar {name}HScrollBar',
                         f'unmanaged XmScrollBar {name}VScrollBar'])
    text += object_text(f'{name}DrawArea', 'XmDrawnButton', ['arguments viewer_area'],
                        callbacks=[f'XmNarmCallback = {callback}'] if callback else [])
    text += object_text(f'{name}HScrollBar', 'XmScrollBar', ['arguments viewer_hscroll'])
    return text + object_text(f'{name}VScrollBar', 'XmScrollBar', ['arguments viewer_vscroll'])


def panes_text(window, above, below):
    name = f'{window.name}Panes'
    arguments = ['arguments window_panes', f'XmNbottomWidget = {below}']
    if window.kind == 'dialog':
        arguments += ['XmNtopAttachment = XmATTACH_FORM', 'XmNrightAttachment = XmATTACH_WIDGET',
                      f'XmNrightWidget = XmRowColumn {window.name}Buttons']
    else:
        arguments += ['XmNtopAttachment = XmATTACH_WIDGET', f'XmNtopWidget = {above}',
                      'XmNrightAttachment = XmATTACH_FORM']
    return (object_text(name, 'XmPanedWindow', arguments,
                        [f'XmForm {window.name}{entry.name}Form' for entry in window.lists]) +
            ''.join(list_text(window, entry) for entry in window.lists))


def message_bar_text(window):
    """The message line, and beside it the button that opens the history."""
    name = window.name
    return (object_text(f'{name}MessageBar', 'XmTextField',
                        ['arguments message_line', 'XmNbottomAttachment = XmATTACH_FORM',
                         'XmNleftAttachment = XmATTACH_FORM', 'XmNrightAttachment = XmATTACH_WIDGET',
                         f'XmNrightWidget = XmRowColumn {name}MessageButtons']) +
            object_text(f'{name}MessageButtons', 'XmRowColumn', ['arguments message_buttons'],
                        [f'unmanaged XmPushButton {name}CancelWork', f'XmPushButton {name}History']) +
            object_text(f'{name}CancelWork', 'XmPushButton',
                        ['arguments message_button', f'XmNlabelString = {quoted("Cancel")}']) +
            object_text(f'{name}History', 'XmPushButton', ['arguments message_button',
                                                           f'XmNlabelString = {quoted("Messages...")}']))


def main_text(window):
    name, width, height = window.name, *window.size
    above = f'XmForm {window.head}' if window.head else f'XmForm {name}Toolbar'
    controls = [f'XmMenuBar {name}MenuBar', f'unmanaged XmLabel {name}Band', f'XmForm {name}Toolbar']
    controls += [above] if window.head else []
    controls += [f'XmTextField {name}MessageBar', f'XmRowColumn {name}MessageButtons',
                 f'XmPanedWindow {name}Panes']
    return (object_text(name, 'XmForm', ['arguments main_window', f'XmNwidth = {width} font_units',
                                         f'XmNheight = {height} font_units'], controls) +
            menu_bar_text(window) + tool_bar_text(window) +
            object_text(f'{name}Band', 'XmLabel',
                        ['arguments window_band', 'XmNtopAttachment = XmATTACH_WIDGET',
                         f'XmNtopWidget = XmMenuBar {name}MenuBar']) +
            message_bar_text(window) + panes_text(window, above, f'XmTextField {name}MessageBar'))


def dialog_text(window):
    name, width, height = window.name, *window.size
    return (object_text(name, 'XmMessageBox',
                        ['arguments list_dialog', f'XmNdialogTitle = {quoted(window.title)}'],
                        [f'XmForm {name}Area'], ['XmNcancelCallback = procedure vga_close_cb()']) +
            object_text(f'{name}Area', 'XmForm', ['arguments form_area'],
                        [f'unmanaged XmLabel {name}Band', f'XmRowColumn {name}Buttons',
                         f'XmTextField {name}MessageBar', f'XmRowColumn {name}MessageButtons',
                         f'XmPanedWindow {name}Panes']) +
            object_text(f'{name}Band', 'XmLabel', ['arguments window_band', 'XmNtopAttachment = XmATTACH_FORM']) +
            buttons_text(window) + message_bar_text(window) +
            panes_text(window, None, f'XmTextField {name}MessageBar')
            .replace('arguments pane_form;', f'arguments pane_form;\n        XmNwidth = {width} font_units;\n'
                     f'        XmNheight = {height} font_units;'))


def descriptions(windows):
    made = ''.join((main_text if window.kind == 'main' else dialog_text)(window) +
                   (popup_text(window) if window.popup else '') + pointer_text(window) for window in windows)
    used = sorted(set(re.findall(r'procedure (vga_\w+)\(\)', made)) -
                  {'vga_close_cb', 'vga_exit_cb', 'vga_button_push', 'vga_button_pop'} -
                  {name for name in re.findall(r'vga_menu_help_\w+', made)})
    declared = '\nprocedure\n' + ''.join(f'    {name}();\n' for name in used) if used else ''
    titles = 'value\n' + ''.join(f'    {window.name}Title : exported {quoted(window.title)};\n'
                                 for window in windows) + '\n'
    return '! Made by mkwindows.py.\n' + declared + '\n' + titles + made


# The program's side.

def members(window, command):
    return [f'.{key} = {command.facts[key]}' for key in MEMBERS if key in command.facts]


def command_row(window, command):
    item = f'"*{command.item}"' if command.item else 'nullptr'
    popup = f'"*{window.name}{camel(command.name)}Popup"' if window.in_popup(command) else 'nullptr'
    row = [f'.command = {window.constant(command.name)}', f'.item = {item}', f'.popup = {popup}']
    return f'    {{{", ".join(row + members(window, command))}}},\n'


def tool_row(window, tool):
    facts, name = tool.facts, f'*{window.name}{camel(tool.name)}Button'
    frame = f'.frame = "{name}Frame", .icon = "{name}Icon", ' if window.kind == 'main' else ''
    picture = f'.picture = "{facts["icon"]}", .grey_picture = "{facts["icon"]}ins", ' if frame else ''
    return (f'    {{.command = {window.constant(tool.name)}, {frame}.text = "{name}Text", {picture}'
            f'.help = {facts["help"]}, .named_help = {facts.get("named_help", "0")}}},\n')


def list_row(window, entry):
    facts, name = entry.facts, f'*{window.name}{entry.name}'
    called = f'*{window.name}{facts.get("called", entry.name)}'
    root = f'.of_node = &VGA_NODE::{facts["node"]}' if 'node' in facts else \
        f'.of_domain = &VGA_SYSTEM::{facts["domain"]}'
    key = f'"{called}Key"' if entry.inner else 'nullptr'
    row = [f'.form = "{name}Form"', f'.title = "{called}Title"',
           f'.counts = "{called}Counts"', f'.key = {key}', f'.rule = "{called}Rule"',
           f'.draw_area = "{name}DrawArea"', f'.hscroll = "{name}HScrollBar"', f'.vscroll = "{name}VScrollBar"']
    if 'headings' in facts:
        row += [f'.headings = "{name}Headings"', f'.headings_of = {facts["headings"]}']
    row += [root] + ([f'.add = {facts["add"]}'] if 'add' in facts else [])
    row += [f'.topic = "{facts["topic"]}"'] if 'topic' in facts else []
    row += ['.selects = 1'] if 'selects' in facts else []
    return f'    {{{", ".join(row)}}},\n'


def table(kind, name, rows):
    return f'static constexpr {kind} {name}[] = {{\n{"".join(rows)}}};\n'


def tables(window):
    name = window.name
    commands = list(window.commands.values())
    tools = [tool for tool in window.tools if tool.kind == 'command']
    keys = [f'    {{"*{name}Key{key.name}", "{key.facts["icon"]}"}},\n'
            for entry in window.lists for key in entry.inner]
    has = lambda command: window.constant(command) if command in window.commands else 'VGA_LISTW_NO_COMMAND'
    plan = [f'.prefix = "{name}"', f'.commands = {name}_commands', f'.tools = {name}_tools',
            f'.lists = {name}_lists'] + ([f'.keys = {name}_keys'] if keys else [])
    plan += [f'.add = {has("add")}', f'.zoom = {has("zoom")}', f'.remove = {has("delete")}']
    plan += ([f'.popup = "{name}Popup"'] if window.popup else [])
    plan += ([f'.head = "*{window.head}"'] if window.head else [])
    text = (table('VGA_COMMAND_ROW', f'{name}_commands', [command_row(window, each) for each in commands]) +
            table('VGA_TOOL_ROW', f'{name}_tools', [tool_row(window, tool) for tool in tools]) +
            table('VGA_LISTW_ROW', f'{name}_lists', [list_row(window, entry) for entry in window.lists]) +
            (table('VGA_LISTW_KEY', f'{name}_keys', keys) if keys else '') +
            f'const VGA_LISTW_PLAN gvga_{name}_plan = {{{", ".join(plan)}}};\n')
    for command in commands:
        if window.procedure(command) in window.registered and 'by_hand' not in command.facts:
            text += (f'NB_VOID {window.procedure(command)}(Widget widget, XtPointer, XtPointer) {{\n'
                     f'    vga_listw_run_from(widget, {window.constant(command.name)});\n}}\n')
    return text + registered_text(window) + life_text(window)


def registered_text(window):
    rows = ''.join(f'    {{const_cast<NB_CHAR *>("{name}"), reinterpret_cast<XtPointer>({name})}},\n'
                   for name in window.registered)
    callbacks = f'MRMRegisterArg gvga_{window.name}_callbacks[] = {{\n{rows}}};\n' if rows else ''
    actions = ''.join(f'    {{const_cast<NB_CHAR *>("vga_{window.name}_{what}_button"), vga_listw_{what}_button}},\n'
                      for what in ('enter', 'leave'))
    return callbacks + f'XtActionsRec gvga_{window.name}_actions[] = {{\n{actions}}};\n'


def life_text(window):
    if window.own:
        return ''
    return (f'NB_USHORT vga_get_widgets_{window.widgets}(VGA_DIALOG *dialog) {{\n'
            f'    return vga_listw_get_widgets(dialog, gvga_{window.name}_plan);\n}}\n'
            f'NB_VOID vga_{window.name}_close_proc(VGA_DIALOG *dialog) {{\n'
            f'    vga_listw_close_proc(dialog);\n}}\n')


def functions(window):
    """What the description names and the program defines, declared so that the compiler checks it."""
    text = set()
    for command in window.commands.values():
        if command.facts.get('action', 'nullptr') != 'nullptr':
            text.add(f'NB_VOID {command.facts["action"]}(VGA_LIST_WINDOW *window);\n')
        if command.facts.get('refuses', 'nullptr') != 'nullptr':
            text.add(f'NB_USHORT {command.facts["refuses"]}(const VGA_SITUATION &situation);\n')
    for name in window.registered:
        text.add(f'NB_VOID {name}(Widget widget, XtPointer client_data, XtPointer call_data);\n')
    return ''.join(sorted(text))


def header(windows):
    text = ('/* Made by mkwindows.py. */\n#ifndef WINDOWS_H\n#define WINDOWS_H\n\n#include "nbtypes.h"\n'
            '#include <Mrm/MrmPublic.h>\n#include <X11/Intrinsic.h>\n\nstruct VGA_DIALOG;\nstruct VGA_LIST_WINDOW;\n'
            'struct VGA_LISTW_PLAN;\nstruct VGA_SITUATION;\n\n')
    for window in windows:
        names = [window.constant(name) for name in window.commands]
        tools = len([tool for tool in window.tools if tool.kind == 'command'])
        text += (f'enum {window.constant("command")} : NB_USHORT {{\n' + ''.join(f'    {name},\n' for name in names) +
                 f'    {window.constant("command_count")},\n    {window.constant("tool_count")} = {tools}\n}};\n'
                 f'extern const VGA_LISTW_PLAN gvga_{window.name}_plan;\n' +
                 (f'extern MRMRegisterArg gvga_{window.name}_callbacks[{len(window.registered)}];\n'
                  if window.registered else '') +
                 f'extern XtActionsRec gvga_{window.name}_actions[2];\n' + functions(window) +
                 f'NB_USHORT vga_get_widgets_{window.widgets}(VGA_DIALOG *dialog);\n'
                 f'NB_VOID vga_{window.name}_close_proc(VGA_DIALOG *dialog);\n' +
                 (f'NB_VOID vga_{window.name}_record_changed(VGA_DIALOG *dialog, NB_VOID *item, '
                  'VGA_RECORD_CHANGE what);\n' if window.own else '') + '\n')
    return text.replace('struct VGA_SITUATION;\n', 'struct VGA_SITUATION;\nenum VGA_RECORD_CHANGE : NB_USHORT;\n') + '#endif\n'


def window_row(window):
    own = window.own
    changed = f'vga_{window.name}_record_changed' if own else 'vga_listw_record_changed'
    callbacks = f'gvga_{window.name}_callbacks' if window.registered else 'nullptr'
    return (f'    {{.name = "{window.name}", .desc_size = sizeof({window.descriptor}), '
            f'.get_widgets = vga_get_widgets_{window.widgets}, .close_proc = vga_{window.name}_close_proc, '
            f'.record_changed = {changed}, .callbacks = {callbacks}, .callback_count = {len(window.registered)}, '
            f'.actions = gvga_{window.name}_actions, .action_count = 2}},\n')


def main():
    folder = Path(sys.argv[1])
    try:
        windows = [Window(Path(source)) for source in sys.argv[2:]]
        files = {'windows.uih': descriptions(windows), 'windows.h': header(windows),
                 'windows.inc': '/* Made by mkwindows.py. */\n' + ''.join(map(tables, windows)) +
                 table('const VGA_LISTW_PLAN *', 'plans', [f'    &gvga_{window.name}_plan,\n' for window in windows]),
                 'windowrows.h': '/* Made by mkwindows.py. */\n' +
                 ''.join(f'#include "{name}"\n' for name in sorted({window.header for window in windows})) +
                 '#include "windows.h"\n' + table('VGA_LISTW_UID_ROW', 'window_rows', map(window_row, windows))}
    except ValueError as fault:
        print(fault, file=sys.stderr)
        return 1
    for name, text in files.items():
        (folder / name).write_text(text, encoding='utf-8')
    return 0


if __name__ == '__main__':
    sys.exit(main())
