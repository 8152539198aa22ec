#!/usr/bin/env python3
"""Makes what dialogs of fields need of their descriptions, one file a dialog.

    mkforms.py FIELDS OUT_FOLDER DIALOG.dlg...

forms.uih   the dialogs as window descriptions, with all their texts
forms.h     for each its data, its descriptor, its fields as an enum, and the functions that its own
            code has to define
forms.inc   for each its table of fields, its plan, vga_get_widgets_<name> and vga_<prefix>_close_proc
forms.labels  what the dialog's help topic has to explain (mkhelp.py)

FIELDS is what listfields prints: kind, width, bounds, unit and words of a field are those of its
schema and are not said again.  A description is a line a thing, lines that begin with # are comments;
texts are ASCII, without double quotes and backslashes:

    dialog NAME "Title" of SCHEMA TYPE [with SCHEMA TYPE]...   what it shows: records and their types;
                        or settings, each with the place where the model has them:
                        of settings.trace_type VGA_NODE.tracing.type
    with SCHEMA TYPE    more of them, where the first line is long enough
    widgets NAME        vga_get_widgets_NAME looks its widgets up; every dialog has one
    include FILE        header with constants and types that the lines below name
    status              shows only: Close, Refresh, when it was asked, how often to ask again; unless
                        its plan says otherwise, it asks for the record's entry in its list
    child               edits a part of the data of the form that opens it, and accepts without a verb;
                        its records are its parent's, all and in that order, since it copies their bytes
    part                has no row of the table of windows: a list of records (recordwindow.h) or other code opens it
    guided              one page after the other, with Back and a summary
    acts "Button"       asks how something is to be done: its button, in place of OK, calls plan act=FUNCTION
    state TYPE          the descriptor has a member `state` of that type, for the dialog's own code
    plan MEMBER=VALUE.. members of VGA_FORM_PLAN; a function is declared in forms.h

    page "Tab"          the fields below stand on a page of their own
    group "Heading"     the fields below stand under a heading
    show FIELD "Label"  a value that is only looked at
    edit FIELD "Label"  one that can be changed
    key FIELD "Label"   one that only a new record can be given (`renames`: an old one, too); it may be
                        empty unless it is `required`
    switch NAME "Label" a flag of the dialog's own, no record's
    choice WORD "Text" [called]  below a field of words: one that is offered; without, all are.  Its
                        item is a member of the descriptor, called after the word unless said
    list NAME "Label" editor=FORM    the items within the first record, and the child form that edits one:
                        its records are `of SCHEMA.item TYPE`
    column FIELD "Title"  below a list: a column; `columns=N` characters
    child FORM "Label"  a button that opens a child form
    order FIELD...      in which fields are checked, where that is not the order of the lines

FIELD is a field of the first schema, SCHEMA.FIELD of another.  What may follow a label:

    as=Name             the widget is <dialog>Name; otherwise the field's name in one word
    member=name         of the descriptor; otherwise the field's name
    box=Name[:member] button=Name[:member]  the manager around the field and its unit or "..."; the
                        "..."; and what the descriptor calls them
    not                 the flag is shown the other way round
    toggle              the number is shown as a flag: off when it is 0
    part=network|name   of a qualified name
    style=STYLE         as VGA_STYLE_...
    required[=FUNCTION] must not be empty (when FUNCTION says so); an empty number otherwise means 0,
                        where 0 is allowed or `zero`, and where it is not one has to be entered
    zero                0 reads as nothing, and nothing means 0
    low=N high=N        narrower than the schema's
    most=FUNCTION       the highest number by the fields before it
    check=FUNCTION      one more check
    from=FUNCTION       choices for "..."; `free`: what is not among them will do, too
    when=A[&B...]       of use only while: FLAG, !FLAG, FIELD=WORD, FIELD!=WORD, FIELD>N, new
    empty=MESSAGE bad=MESSAGE unknown=MESSAGE   messages of its own
    hint="Text"         what there is to say besides range and unit
    filter=PROCEDURE columns=N   otherwise by kind and width

What most=, check=, from= and required= name, and `arranged`, is called at every change of a field, and
has no effect but its result.  Of the plan's functions `may_edit`, `refuses`, `question` and `issue` are called
only while there is a record, or for a new one what it will belong to.  All others ask whether
vga_form_record or vga_form_owner is null: a record goes while its dialog is open.

A fault (checkforms.py) is printed as file:line, nothing is written, and the exit status is 1.
"""

import re
import sys
from pathlib import Path

from checkforms import Fault, check_choice, check_dialog, check_line, check_together, condition

WORD = re.compile(r'(?:"[^"]*"|[^\s"])+')
PLAN_FUNCTIONS = {'load', 'may_edit', 'refuses', 'check', 'question', 'shows_too', 'issue', 'next', 'arranged',
                  'subject', 'failed', 'refresh', 'answered', 'act', 'other'}
FIELD_FUNCTIONS = {'most': 'at_most', 'check': 'check', 'from': 'choices'}
FLAGS = {'not', 'renames', 'zero', 'free', 'toggle'}
VALUES = {'as', 'member', 'box', 'button', 'part', 'style', 'required', 'low', 'high', 'most', 'check',
          'from', 'when', 'empty', 'bad', 'unknown', 'hint', 'filter', 'columns', 'editor'}
UNITS = {'Seconds': 'seconds', 'Milliseconds': 'milliseconds', 'Hundredths': 'hundredths of a second',
         'Bytes': 'bytes', 'Frames': 'frames', 'Messages': 'messages', 'BitsPerSecond': 'bits per second',
         'KilobitsPerSecond': 'kilobits per second'}
UNITS_UNSAID = {'Plain', 'Time', 'Sessions', 'Links', 'Ports', 'Lus', 'Users'}  # the label says them
NAMES = {'NameA': 8, 'NameFq': 17, 'NameAny': 17, 'NamePartner': 17}
FILTERS = {'NameA': 'vga_check_ebcdic_cb', 'Number': 'vga_check_num_cb', 'Bytes': 'vga_check_hex_cb',
           'Hex': 'vga_check_hex_cb', 'Address': 'vga_check_ip_addr_cb'}
STYLE_FILTERS = {'TP_NAME': 'vga_check_tp_name_cb', 'NODE_ID': 'vga_all_caps_cb', 'MAC': 'vga_all_caps_cb'}


def one_word(name):
    """max_ru_size_upp: MaxRuSizeUpp."""
    return ''.join(part[:1].upper() + part[1:] for part in re.split(r'[._]', name))


class Row:
    """A field as its schema has it."""

    def __init__(self, columns):
        (self.schema, self.name, self.kind, width, low, high, unit, secret, words) = columns
        self.width, self.low, self.high = int(width), int(low), int(high)
        if unit not in UNITS and unit not in UNITS_UNSAID:
            raise Fault(f'{self.schema} {self.name}: the unit {unit} is new: add it to UNITS or UNITS_UNSAID')
        self.unit, self.secret = UNITS.get(unit, ''), secret == '1'
        self.words = [word.split(':')[0] for word in words.split(',') if word]


def read_rows(path):
    rows = {}
    for line in Path(path).read_text(encoding='utf-8').splitlines():
        row = Row(line.split('\t'))
        rows.setdefault(row.schema, {})[row.name] = row
    return rows


class Item:
    """A line of the description."""

    def __init__(self, dialog, what, words, place):
        self.dialog, self.what, self.place = dialog, what, place
        self.name = words[0]
        self.label = words[1][1:-1]
        self.facts, self.choices, self.called, self.columns_of_list = {}, [], {}, []
        self.row = self.field = None
        for word in words[2:]:
            key, given, value = word.partition('=')
            if given and key not in VALUES or not given and key not in FLAGS | {'required'}:
                raise Fault(f'"{word}" is not known: name an option, as the head of mkforms.py has them')
            if key in self.facts or given and not value.strip('"'):
                raise Fault(f'"{key}" is there twice or says nothing: say it once')
            self.facts[key] = value.strip('"') if given else ''
            if key in ('box', 'button') and ':' in value:
                self.facts[key], _, self.facts[key + '_member'] = value.partition(':')
        self.widget = dialog.name + self.facts.get('as', one_word(self.name.split('.')[-1]))
        self.member = self.facts.get('member', self.name.split('.')[-1])

    def has(self, fact):
        return fact in self.facts

    def conditions(self):
        return self.facts['when'].split('&') if self.has('when') else []

    # What the field looks like.

    @property
    def is_shown(self):
        return self.what == 'show' or self.dialog.status

    @property
    def is_flag(self):
        return self.what == 'switch' or self.row.kind == 'Flag' or self.has('toggle')

    @property
    def is_menu(self):
        return self.what in ('edit', 'key') and self.row.kind == 'Word' and not self.is_shown

    @property
    def unit(self):
        return '' if self.row is None else self.row.unit

    @property
    def button(self):
        return self.dialog.name + self.facts['button'] if self.has('button') else (
            self.widget + 'Button' if self.has('from') and not self.is_shown else None)

    @property
    def box(self):
        if self.has('box'):
            return self.dialog.name + self.facts['box']
        return self.widget + 'Form' if (self.unit or self.button) and not self.is_menu else None

    def outer(self):
        return self.box or self.widget

    def columns(self):
        row = self.row
        if self.has('columns'):
            return int(self.facts['columns'])
        if row.kind == 'Number':
            return len(self.facts.get('high', str(row.high))) + 1
        if self.has('part'):
            return 9
        width = 2 * row.width if row.kind == 'Bytes' else {'Address': 15, 'Hex': 8}.get(
            row.kind, NAMES.get(row.kind, row.width))
        return max(9, min(width + 1, 36))

    def filter(self):
        kind = self.row.kind
        style = self.facts.get('style', '').upper()
        if self.has('part'):
            kind = 'NameA'
        return self.facts.get('filter', STYLE_FILTERS.get(style, FILTERS.get(kind)))


class Dialog:
    """A description."""

    def __init__(self, path, rows):
        self.path, self.rows = path, rows
        self.name = self.place = self.order_place = None
        self.widgets = self.state = self.opener = self.acts = None
        self.status = self.child = self.guided = self.part = self.opened = False
        self.includes, self.plan, self.records = [], {}, []
        self.pages, self.items, self.order = [], [], []
        for number, line in enumerate(path.read_text(encoding='utf-8', errors='replace').splitlines(), 1):
            words = WORD.findall(line)
            if not words or words[0].startswith('#'):
                continue
            try:
                check_line(line, words)
                self.read_line(words, f'{path.name}:{number}')
            except Fault as fault:
                raise Fault(f'{path.name}:{number}: {fault}') from None
        if self.name is None:
            raise Fault(f'{path.name}:1: the first line says: dialog NAME "Title" of SCHEMA TYPE')
        check_dialog(self)

    def read_line(self, words, place):
        what, words = words[0], words[1:]
        if what == 'dialog' and self.name is None:
            self.read_head(words)
            self.place = place
        elif self.name is None:
            raise Fault('the first line says: dialog NAME "Title" of SCHEMA TYPE')
        elif what == 'with':
            self.read_records([what, *words])
        elif what in ('status', 'guided', 'part') or what == 'child' and not words:
            setattr(self, what, True)
        elif what in ('widgets', 'state', 'acts'):
            setattr(self, what, words[0].strip('"'))
        elif what == 'include':
            self.includes += words
        elif what == 'plan':
            for word in words:
                key, _, value = word.partition('=')
                if key not in PLAN_ORDER or key in self.plan:
                    raise Fault(f'a plan has no {key}, or has it already: name a member of VGA_FORM_PLAN once')
                self.plan[key] = value
        elif what == 'order':
            self.order += words
            self.order_place = place
        elif what == 'page':
            if self.pages and self.pages[0][0] is None:
                raise Fault('fields stand in front of the first page: put the page above them')
            self.pages.append((words[0].strip('"'), []))
        elif what == 'group':
            self.add(('group', words[0].strip('"')))
        elif what == 'column':
            self.add_column(words, place)
        elif what == 'choice':
            check_choice(self.items, words[0])
            self.items[-1].choices.append((words[0], words[1].strip('"')))
            self.items[-1].called[words[0]] = words[2] if len(words) > 2 else words[0]
        elif what in ('show', 'edit', 'key', 'switch', 'list', 'child'):
            self.add_item(Item(self, what, words, place))
        else:
            raise Fault(f'"{what}" is not known here: begin a line as the head of mkforms.py has it')

    def read_head(self, words):
        self.name, self.title = words[0], words[1].strip('"')
        self.read_records(words[2:])

    def read_records(self, rest):
        while rest:
            if rest[0] not in ('of', 'with') or len(rest) < 3 or rest[1] not in self.rows:
                raise Fault(f'"{" ".join(rest)}" names no schema and type: write of SCHEMA TYPE, then with SCHEMA TYPE')
            self.records.append((rest[1], rest[2]))
            rest = rest[3:]

    def add(self, thing):
        if not self.pages:
            self.pages.append((None, []))
        self.pages[-1][1].append(thing)

    def add_item(self, item):
        item.page = max(len(self.pages) - 1, 0)
        if item.what in ('show', 'edit', 'key'):
            schema, _, field = item.name.rpartition('.')
            schema = schema or self.records[0][0]
            item.schema, item.field = schema, field
            if field not in self.rows.get(schema, {}):
                raise Fault(f'{schema} has no field {field}: name one of its fields')
            if schema not in [name for name, _ in self.records]:
                raise Fault(f'the dialog is not of {schema}: add with {schema} TYPE to its first line')
            item.row = self.rows[schema][field]
        self.items.append(item)
        self.add(('item', item))

    def add_column(self, words, place):
        if not self.items or self.items[-1].what != 'list':
            raise Fault('a column stands below a list: put it there')
        column = Item(self, 'column', words, place)
        schema = f'{self.records[0][0]}.item'
        if column.name not in self.rows.get(schema, {}):
            raise Fault(f'{schema} has no field {column.name}: name one of its fields')
        column.row = self.rows[schema][column.name]
        self.items[-1].columns_of_list.append(column)

    def fields(self):
        """In the order in which they are checked."""
        found = [item for item in self.items if item.what not in ('list', 'child')]
        return ([item for name in self.order for item in found if item.name == name] +
                [item for item in found if item.name not in self.order])

    def field_called(self, name):
        return next((item for item in self.fields() if name in (item.name, item.member)), None)

    def switches(self):
        return [item.name for item in self.items if item.what == 'switch']


# Window descriptions.

def text(value):
    return f'compound_string("{value}")'


def widget_object(kind, name, arguments, controls=(), callbacks=()):
    """One object; lines stay below the 132 characters that the compiler reads."""
    lines = [f'object {name} : {kind} {{']
    if arguments:
        lines += ['    arguments {'] + [f'        {line};' for line in arguments] + ['    };']
    if controls:
        lines += ['    controls {'] + [f'        {line};' for line in controls] + ['    };']
    if callbacks:
        lines += ['    callbacks {'] + [f'        {line};' for line in callbacks] + ['    };']
    return '\n'.join(lines + ['};', ''])


class Describer:
    """Makes the window description of one dialog.  Its callbacks, but for filters, the form itself
    adds; its widgets are found by name."""

    def __init__(self, dialog):
        self.dialog, self.out = dialog, []

    def put(self, kind, name, arguments, controls=(), callbacks=()):
        self.out.append(widget_object(kind, name, arguments, controls, callbacks))

    def run(self):
        dialog, name = self.dialog, self.dialog.name
        self.out.append(f'! {dialog.title}.\n')
        buttons = [('Refresh', 'form_refresh')] if dialog.status else [('Back', 'form_back')] if (
            dialog.guided) else [] if dialog.child or dialog.acts else [('Apply', 'form_apply'), ('Reset', 'form_reset')]
        if dialog.acts:
            self.out.append(f'value {name}Acts : exported {text(dialog.acts)};\n')
        self.put('XmMessageBox', name,
                 ['arguments form_box',
                  f'XmNokLabelString = {text("Close" if dialog.status else dialog.acts or "OK")}',
                  f'XmNdialogTitle = {text(dialog.title)}'],
                 [f'XmForm {name}Form'] + [f'XmPushButton {name}{part}Button' for part, _ in buttons])
        for part, look in buttons:
            self.put('XmPushButton', f'{name}{part}Button', [f'arguments {look}'])
        self.area()
        for item in dialog.items:
            for at, column in enumerate(item.columns_of_list):
                self.out.append(f'value {item.widget}Column{at} : exported {text(column.label)};\n')
            if item.has('hint'):
                self.out.append(f'value {item.widget}Hint : exported {text(item.facts["hint"])};\n')
        return self.out

    def area(self):
        """The work area: pages of fields above the message line."""
        name, pages = self.dialog.name, self.dialog.pages
        above = f'XmScrolledWindow {name}Page1'
        controls = [f'XmScrolledWindow {name}Page{at + 1}' for at in range(len(pages))]
        if self.dialog.guided:
            controls.append(f'XmScrolledWindow {name}SummaryPage')
        elif len(pages) > 1:
            above = f'XmTabStack {name}Pages'
            self.put('XmTabStack', f'{name}Pages', ['arguments form_pages'], controls)
            controls = [above]
        if self.dialog.status:
            controls.append(f'XmOptionMenu {name}Period')
            self.period(above)
            above = f'XmOptionMenu {name}Period'
        self.put('XmForm', f'{name}Form', ['arguments form_area'],
                 controls + [f'XmLabel {name}MessageLine'])
        self.put('XmLabel', f'{name}MessageLine', ['arguments form_message', f'XmNtopWidget = {above}'])
        for at, (title, things) in enumerate(pages):
            self.page(f'{name}Page{at + 1}', title, things)
        if self.dialog.guided:
            self.put('XmScrolledWindow', f'{name}SummaryPage', ['arguments form_page', 'arguments form_top'],
                     [f'XmLabel {name}Summary'])
            self.put('XmLabel', f'{name}Summary', ['arguments form_value'])

    def page(self, name, title, things):
        alone = len(self.dialog.pages) == 1 or self.dialog.guided
        place = 'arguments form_top' if alone else f'XmNtabLabelString = {text(title)}'
        self.put('XmScrolledWindow', name, ['arguments form_page', place], [f'XmColumn {name}Fields'])
        controls = []
        for number, (what, thing) in enumerate(things):
            if what == 'group':
                controls.append(f'XmLabel {name}Group{number}')
                self.put('XmLabel', f'{name}Group{number}',
                         ['arguments form_heading', f'XmNentryLabelString = {text(thing)}'])
            else:
                controls.append(self.item(thing))
        self.put('XmColumn', f'{name}Fields', ['arguments form_fields'], controls)

    def item(self, item):
        """The objects of one field; returns what stands in the column."""
        entry = f'XmNentryLabelString = {text(item.label)}'
        if item.what == 'child':
            self.put('XmPushButton', item.widget, ['arguments form_child', f'XmNlabelString = {text(item.label)}'])
            return f'XmPushButton {item.widget}'
        if item.what == 'list':
            self.put('XmForm', item.widget, ['arguments form_list', entry])
            return f'XmForm {item.widget}'
        if item.is_flag and not item.is_shown:
            self.put('XmToggleButton', item.widget,
                     ['arguments form_toggle', f'XmNlabelString = {text(item.label)}'])
            return f'XmToggleButton {item.widget}'
        if item.is_menu:
            self.menu(item, entry)
            return f'XmOptionMenu {item.widget}'
        return self.text_field(item, entry)

    def text_field(self, item, entry):
        boxed = item.box is not None
        if item.is_shown:
            kind, arguments, callbacks = 'XmLabel', ['arguments form_value'], []
        else:
            kind = 'XmTextField'
            arguments = ['arguments form_field', f'XmNcolumns = {item.columns()}']
            callbacks = [f'XmNmodifyVerifyCallback = procedure {item.filter()}()'] if item.filter() else []
        self.put(kind, item.widget, arguments + ([] if boxed else [entry]), (), callbacks)
        if not boxed:
            return f'{kind} {item.widget}'
        controls = [f'{kind} {item.widget}']
        if item.button:
            self.put('XmPushButton', item.button, ['arguments form_more'])
            controls.append(f'XmPushButton {item.button}')
        if item.unit:
            self.put('XmLabel', f'{item.widget}Unit',
                     ['arguments form_unit', f'XmNlabelString = {text(item.unit)}'])
            controls.append(f'XmLabel {item.widget}Unit')
        self.put('XmRowColumn', item.box, ['arguments form_with_unit', entry], controls)
        return f'XmRowColumn {item.box}'

    def menu(self, item, entry):
        words = item.choices or [(word, word[:1].upper() + word[1:].replace('_', ' '))
                                 for word in item.row.words]
        self.put('XmOptionMenu', item.widget, ['arguments form_menu', entry],
                 [f'XmPulldownMenu {item.widget}Menu'])
        self.put('XmPulldownMenu', f'{item.widget}Menu', [],
                 [f'XmPushButton {item.widget}{one_word(word)}' for word, _ in words])
        for word, label in words:
            self.put('XmPushButton', f'{item.widget}{one_word(word)}', [f'XmNlabelString = {text(label)}'])

    def period(self, above):
        name = self.dialog.name
        self.put('XmOptionMenu', f'{name}Period',
                 ['arguments form_period', f'XmNtopWidget = {above}'],
                 [f'XmPulldownMenu {name}PeriodMenu'])
        periods = [('Never', 'only when asked'), ('5', 'every 5 seconds'), ('15', 'every 15 seconds'),
                   ('60', 'every minute')]
        self.put('XmPulldownMenu', f'{name}PeriodMenu', [],
                 [f'XmPushButton {name}Period{period}' for period, _ in periods])
        for period, label in periods:
            self.put('XmPushButton', f'{name}Period{period}', [f'XmNlabelString = {text(label)}'])


# Code.

class Coder:
    """Makes the tables of one dialog."""

    def __init__(self, dialog):
        self.dialog = dialog
        self.upper = dialog.name.upper()
        self.data, self.desc = f'VGA_{self.upper}_DATA', f'VGA_{self.upper}_DESC'

    def record(self, schema):
        return schema.replace('.', '_')

    def settings(self):
        """The records as (name of the settings, type of what has them, member of that)."""
        return [(schema.partition('.')[2], *kind.partition('.')[::2]) for schema, kind in self.dialog.records
                if schema.startswith('settings.')]

    def functions(self):
        """Every function that the dialog's own code defines: (member of what, its name)."""
        found = [(f'VGA_FORM_PLAN::{member}', value) for member, value in self.dialog.plan.items()
                 if member in PLAN_FUNCTIONS]
        for item in self.dialog.items:
            found += [(f'VGA_FIELD::{FIELD_FUNCTIONS[fact]}', item.facts[fact])
                      for fact in FIELD_FUNCTIONS if item.facts.get(fact)]
            if item.facts.get('required'):
                found.append(('VGA_FIELD::is_required', item.facts['required']))
        return sorted({value: (member, value) for member, value in found}.values())

    def members(self):
        """The descriptor's widgets: (member, widget, must be there)."""
        found = []
        for item in self.dialog.items:
            found.append((item.member, item.widget))
            for part, name in (('box', item.box), ('button', item.button)):
                if name is not None:
                    usual = {'box': '_form', 'button': '_button'}[part]
                    found.append((item.facts.get(part + '_member', item.member + usual), name))
            if item.row is not None and item.is_menu:
                stem = item.member.removesuffix('_menu')
                words = item.choices or [(word, '') for word in item.row.words]
                found += [(f'{stem}_{item.called.get(word, word)}', item.widget + one_word(word))
                          for word, _ in words]
                found.append((f'{stem}_label', item.widget + '_label'))
        return found

    def header(self):
        dialog = self.dialog
        out = [f'/* {dialog.title}. */', '']
        out.append(f'struct {self.data} {{')
        for schema, kind in dialog.records:
            root, _, member = kind.partition('.')
            data = (f'decltype(std::declval<{root}>().{member})' if member else
                    f'std::remove_pointer_t<decltype({kind}::vcb)>' if kind.startswith('VGA_') else kind)
            out.append(f'    {data} {self.record(schema)};')
        out += [f'    NB_UCHAR {name}; /* flag */' for name in (dialog.opener or dialog).switches()]
        out += ['};', '', f'struct {self.desc} {{', '    VGA_FORM form;']
        out += [f'    Widget {member};' for member, _ in self.members()]
        out += [f'    {dialog.state} state;'] if dialog.state else []
        out += [f'    {self.data} shown, working, wanted;', '};', '', f'enum VGA_{self.upper}_FIELD : NB_SHORT {{']
        out += [f'    VGA_{self.upper}_{item.member.upper()},' for item in dialog.fields()]
        out += ['};', '']
        out += [f'extern std::remove_pointer_t<decltype({member})> {name};'
                for member, name in self.functions()]
        out += [f'NB_USHORT vga_get_widgets_{dialog.widgets}(VGA_DIALOG *desc);',
                f'NB_VOID vga_{dialog.name}_close_proc(VGA_DIALOG *desc);',
                f'extern const VGA_FORM_PLAN gvga_{dialog.name}_plan;', '',
                f'inline {self.desc} *vga_{dialog.name}_desc(VGA_FORM *form) {{',
                f'    return reinterpret_cast<{self.desc} *>(form);', '}',
                f'inline const {self.data} &vga_{dialog.name}_data(const NB_VOID *data) {{',
                f'    return *static_cast<const {self.data} *>(data);', '}', '']
        return out

    def place(self, member):
        return f'offsetof({self.desc}, {member})'

    def conditions(self, item):
        """The rows of VGA_CONDITION of one field."""
        rows = []
        tests = {'=': 'VGA_WHEN_IS', '!=': 'VGA_WHEN_IS_NOT', '>': 'VGA_WHEN_ABOVE'}
        for part in item.conditions():
            other, operator, value = condition(item, part)
            rows.append('{.test = VGA_WHEN_NEW}' if other is None else
                        f'{{.field = {self.dialog.fields().index(other)}, .test = {tests[operator]}, .value = "{value}"}}')
        return rows

    @staticmethod
    def row_of(item):
        schema, _, inner = item.schema.partition('.')
        return (f'records::item_field(records::{schema}, "{item.field}")' if inner == 'item' else
                f'records::field(records::setting("{inner}"), "{item.field}")' if schema == 'settings' else
                f'records::field(records::{item.schema}, "{item.field}")')

    def field(self, item):
        """One row of VGA_FIELD."""
        facts, row = item.facts, item.row
        out = [f'.widget = "*{item.widget}"', f'.member = {self.place(item.member)}']
        if item.button is not None:
            out.append(f'.button = {self.place(item.facts.get("button_member", item.member + "_button"))}')
        if item.what == 'switch':
            out.append(f'.row = &{self.dialog.name}_{item.name}')
        else:
            out.append(f'.row = &{self.dialog.name}_{item.member}' if item.has('toggle') else f'.row = &{self.row_of(item)}')
            out.append(f'.base = offsetof({self.data}, {self.record(item.schema)})')
        if item.has('part'):
            out.append('.part = ' + {'network': 'VGA_FIELD_NETWORK', 'name': 'VGA_FIELD_NAME'}[facts['part']])
        uses = [bit for bit, on in (
            ('SHOWN', item.is_shown), ('KEY', item.what == 'key'),
            ('NEW', item.what == 'key' and not item.has('renames')), ('INVERTED', item.has('not')),
            ('ZERO_EMPTY', item.has('zero')), ('FREE', item.has('free')), ('HINT', item.has('hint')),
            ('REQUIRED', facts.get('required') == '')) if on]
        if uses:
            out.append('.uses = ' + ' | '.join('VGA_FIELD_' + bit for bit in uses))
        if facts.get('style'):
            out.append(f'.style = VGA_STYLE_{facts["style"].upper()}')
        if row is not None and row.kind == 'Number':
            out += [f'.low = {facts.get("low", row.low)}', f'.high = {facts.get("high", row.high)}U']
        out.append(f'.page = {item.page}')
        out += [f'.{member} = {facts[fact]}' for fact, member in FIELD_FUNCTIONS.items() if facts.get(fact)]
        if facts.get('required'):
            out.append(f'.is_required = {facts["required"]}')
        out += [f'.{fact} = {facts[fact]}' for fact in ('empty', 'bad', 'unknown') if item.has(fact)]
        if item.has('when'):
            out.append(f'.when = {self.dialog.name}_{item.member}_when')
        return '    {' + ', '.join(out) + '},'

    def tables(self):
        dialog, name = self.dialog, self.dialog.name
        out = [f'/* {dialog.title}. */', '', 'namespace {', '']
        for item in dialog.fields():
            if item.what == 'switch':
                out.append(f'constexpr records::FieldRow {name}_{item.name} = '
                           f'records::rows::flag(FIELD_AT({self.data}, {item.name}));')
            if item.has('toggle'):
                out.append(f'constexpr records::FieldRow {name}_{item.member} = '
                           f'records::rows::as_flag({self.row_of(item)});')
            if item.has('when'):
                out += [f'constexpr VGA_CONDITION {name}_{item.member}_when[] = {{',
                        '    ' + ', '.join(self.conditions(item)), '};']
        settings = self.settings()
        if settings:
            out += [f'constexpr VGA_FORM_SETTINGS {name}_settings[] = {{']
            out += [f'    {{&records::setting("{row}"), offsetof({self.data}, settings_{row}), '
                    f'[](const NB_VOID *record) -> const NB_VOID * {{ '
                    f'return &static_cast<const {root} *>(record)->{member}; }}}},'
                    for row, root, member in settings] + ['};']
        children = [item for item in dialog.items if item.what == 'child']
        lists = [item for item in dialog.items if item.what == 'list']
        out += [f'constexpr VGA_FIELD {name}_fields[] = {{'] + [self.field(item) for item in dialog.fields()] + ['};']
        out += [f'constexpr VGA_FORM_WIDGET {name}_widgets[] = {{']
        out += [f'    {{{self.place(member)}, "*{widget}"}},' for member, widget in self.members()] + ['};']
        if children:
            out += [f'constexpr VGA_FORM_OPENER {name}_children[] = {{']
            out += [f'    {{{self.place(item.member)}, "{item.name}"}},' for item in children] + ['};']
        for item in lists:
            schema = dialog.records[0][0]
            out += [f'constexpr VGA_FORM_COLUMN {name}_{item.member}_columns[] = {{']
            out += [f'    {{&records::item_field(records::{schema}, "{column.name}"), '
                    f'"{item.widget}Column{at}", {column.columns()}}},'
                    for at, column in enumerate(item.columns_of_list)] + ['};']
        if lists:
            out += [f'constexpr VGA_FORM_LIST {name}_lists[] = {{']
            out += [f'    {{{self.place(item.member)}, &records::{dialog.records[0][0]}.nested, '
                    f'{name}_{item.member}_columns, "{item.facts["editor"]}"}},' for item in lists] + ['};']
        out += ['', '} // namespace', '', f'extern constexpr VGA_FORM_PLAN gvga_{name}_plan = {{']
        members = {'fields': f'{name}_fields', 'widgets': f'{name}_widgets'}
        if children:
            members['children'] = f'{name}_children'
        if lists:
            members['lists'] = f'{name}_lists'
        members.update(shown=self.place('shown'), working=self.place('working'),
                       wanted=self.place('wanted'), data_size=f'sizeof({self.data})',
                       pages=str(len(dialog.pages)))
        kinds = [kind for kind in ('status', 'child', 'guided') if getattr(dialog, kind)]
        if kinds:
            members['kind'] = f'VGA_FORM_{kinds[0].upper()}'
        schema, record = dialog.records[0]
        if record.startswith('VGA_') and not dialog.child and not settings:
            members['type'] = f'&vga_form_type<{record}>'
            members['schema'] = f'&records::{schema}'
            if not kinds and not dialog.acts:
                members['issue'] = 'vga_form_issue_define'
            if dialog.status:
                members['refresh'] = 'vga_form_issue_read'
        if settings:
            members.update(type=f'&vga_settings_type<{settings[0][1]}>', settings=f'{name}_settings',
                           issue='vga_form_issue_settings', next='vga_form_next_settings',
                           refuses='vga_form_refuses_settings')
        members.update(dialog.plan)
        out += [f'    .{member} = {members[member]},' for member in PLAN_ORDER if member in members]
        out += ['};', '',
                f'NB_USHORT vga_get_widgets_{dialog.widgets}(VGA_DIALOG *desc) {{',
                f'    return vga_form_get_widgets(desc, &gvga_{name}_plan);', '}', '',
                f'NB_VOID vga_{name}_close_proc(VGA_DIALOG *desc) {{',
                '    vga_form_close_proc(desc);', '}', '']
        return out


# In the order of the members of VGA_FORM_PLAN.
PLAN_ORDER = ['kind', 'fields', 'widgets', 'children', 'lists', 'pages', 'shown', 'working', 'wanted',
              'data_size', 'type', 'schema', 'settings', 'defines', 'gone', 'help', 'load', 'may_edit', 'refuses', 'check',
              'question', 'shows_too', 'other', 'subject', 'issue', 'act', 'answered', 'next', 'failed', 'refresh', 'arranged']


def rows_of_table(dialogs):
    """For the table of windows: what each dialog has that a description makes."""
    out = ['constexpr VGA_FORM_ROW form_rows[] = {']
    out += [f'    {{"{dialog.name}", sizeof(VGA_{dialog.name.upper()}_DESC), '
            f'{"vga_get_widgets_" + dialog.widgets}, vga_{dialog.name}_close_proc}},'
            for dialog in dialogs]
    return out + ['};', '']


def same_data(dialogs):
    """The compiler's word that a child form has its parent's data."""
    return [f'static_assert(sizeof(VGA_{child.upper()}_DATA) == sizeof(VGA_{parent.name.upper()}_DATA));'
            for parent in dialogs for child in [item.name for item in parent.items if item.what == 'child']]


def main(arguments):
    folder = Path(arguments[2])
    try:
        rows = read_rows(arguments[1])
        dialogs = [Dialog(Path(path), rows) for path in arguments[3:]]
        check_together(dialogs)
        made = '! Made of the dialogs\' descriptions by mkforms.py.\n\n'
        code = '/* Made of the dialogs\' descriptions by mkforms.py. */\n'
        description = made + '\n'.join(line for dialog in dialogs for line in Describer(dialog).run())
        includes = sorted({include for dialog in dialogs for include in dialog.includes})
        header = [code + '#ifndef FORMS_H', '#define FORMS_H', '', '#include "formrecords.h"']
        header += [f'#include "{name}"' for name in includes] + ['']
        for dialog in dialogs:
            header += Coder(dialog).header()
        header += same_data(dialogs)
        source = [code, '#include "forms.h"', '#include "fieldrows.h"', '#include "messages.h"', '#include "schemas.h"', '']
        for dialog in dialogs:
            source += Coder(dialog).tables()
    except Fault as fault:
        print(fault, file=sys.stderr)
        return 1
    (folder / 'forms.uih').write_text(description, encoding='utf-8')
    (folder / 'forms.h').write_text('\n'.join(header + ['#endif', '']), encoding='utf-8')
    (folder / 'forms.inc').write_text('\n'.join(source), encoding='utf-8')
    (folder / 'formrows.h').write_text('\n'.join([code] + rows_of_table(dialogs)), encoding='utf-8')
    labels = [f'{dialog.name}\t{item.place}\t{item.label}\n'
              for dialog in dialogs for item in dialog.items if item.what != 'child']
    (folder / 'forms.labels').write_text(''.join(labels), encoding='utf-8')
    return 0


if __name__ == '__main__':
    sys.exit(main(sys.argv))
