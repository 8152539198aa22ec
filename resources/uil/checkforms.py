"""What a description of a dialog (mkforms.py) must not say.  Each check raises a Fault that names the
line and says what to do."""

import re

# What follows the first word of a line: texts in quotes, then more of it, or one that may be left out.
LINES = {'dialog': 'NAME "Title" of SCHEMA TYPE ...', 'with': 'SCHEMA TYPE', 'widgets': 'NAME', 'include': 'FILE ...', 'status': '',
         'guided': '', 'part': '', 'acts': '"Button"', 'state': 'TYPE', 'plan': 'MEMBER=VALUE ...', 'page': '"Tab"', 'group': '"Heading"',
         'choice': 'WORD "Text" [called]', 'order': 'FIELD ...', 'show': 'FIELD "Label" ...',
         'edit': 'FIELD "Label" ...', 'key': 'FIELD "Label" ...', 'switch': 'NAME "Label" ...',
         'list': 'NAME "Label" editor=FORM ...', 'column': 'FIELD "Title" ...', 'child': 'FORM "Label" ...'}
STYLES = ('plain', 'node_id', 'mac', 'mask', 'tp_name')
ENTERED = {'text', 'number'}
CHANGED = ENTERED | {'flag', 'menu'}
FIELD = CHANGED | {'shown', 'shown flag'}
ALL = FIELD | {'list', 'child'}
# What an option may stand with; with all else it would do nothing.
OPTIONS = {'as': ALL, 'member': ALL, 'when': FIELD, 'hint': FIELD, 'not': {'flag', 'shown flag'},
           'toggle': {'flag'}, 'renames': CHANGED, 'check': CHANGED, 'required': ENTERED, 'empty': ENTERED, 'bad': ENTERED,
           'from': ENTERED, 'free': ENTERED, 'unknown': ENTERED, 'filter': ENTERED, 'button': ENTERED,
           'columns': ENTERED | {'column'}, 'part': ENTERED | {'shown'}, 'box': ENTERED | {'shown'},
           'style': {'text', 'shown'}, 'zero': {'number', 'shown'}, 'low': {'number'}, 'high': {'number'},
           'most': {'number'}, 'editor': {'list'}}
NEEDS = {'free': 'from', 'unknown': 'from', 'button': 'from'}


class Fault(Exception):
    pass


def need(good, place, message):
    if not good:
        raise Fault(f'{place}: {message}' if place else message)


# A line by itself.

def check_line(line, words):
    """Raises what is wrong with a line before it is read."""
    need(line.count('"') % 2 == 0, '', 'a text does not end: write it between two double quotes')
    need('\\' not in line, '', 'a text has a backslash: write it without')
    for word in words:
        need(word.isascii() and word.isprintable(), '',
             f'{word} has characters that the window description cannot have: write it in ASCII')
        need('"' not in word or re.fullmatch(r'([a-z]+=)?"[^"]*"', word), '',
             f'{word} has a double quote inside: write the text without')
    if words[0] not in LINES or words == ['child']:
        return
    shape = LINES[words[0]].split()
    needed = [part for part in shape if part[0] not in '[.']
    given = words[1:]
    need(len(given) >= len(needed) and (shape[-1:] == ['...'] or len(given) <= len(shape)) and
         all(word.startswith('"') == part.startswith('"') for word, part in zip(given, needed)) and
         all('=' in word for word in given if words[0] == 'plan'), '',
         f'write: {words[0]} {LINES[words[0]]}'.rstrip())


# A dialog by itself.

def kind_of(item):
    """What the options of OPTIONS go by."""
    if item.what in ('list', 'child', 'column'):
        return item.what
    if item.is_flag:
        return 'shown flag' if item.is_shown else 'flag'
    if item.is_shown:
        return 'shown'
    return 'menu' if item.is_menu else 'number' if item.row.kind == 'Number' else 'text'


def check_options(item):
    kind, facts, place = kind_of(item), item.facts, item.place
    for fact in facts:
        if fact.endswith('_member'):
            continue
        need(kind in OPTIONS[fact], place, f'{item.name} is a {kind}, with which "{fact}" does nothing: take it away')
        need(NEEDS.get(fact, fact) in facts, place, f'"{fact}" goes with {NEEDS.get(fact)}=FUNCTION: add that')
    need('renames' not in facts or item.what == 'key', place, '"renames" goes with a key: make the field one')
    need(facts.get('style', 'plain').lower() in STYLES, place, f'write one of style={"|".join(STYLES)}')
    need('part' not in facts or facts['part'] in ('network', 'name') and item.row.width == 17, place,
         'write part=network or part=name, of a qualified name')
    for fact in ('low', 'high', 'columns'):
        need(re.fullmatch('0|[1-9][0-9]*', facts.get(fact, '1')), place, f'{fact}={facts.get(fact)} is no number: write one')
    need(facts.get('columns') != '0', place, 'no characters fit into columns=0: write how many')
    for fact in ('as', 'member', 'box', 'box_member', 'button', 'button_member', 'editor'):
        need(re.fullmatch(r'\w+', facts.get(fact, 'A')), place, f'"{facts.get(fact)}" is no name: write letters and digits')
    if kind == 'number':
        row = item.row
        low, high = int(facts.get('low', row.low)), int(facts.get('high', row.high))
        need(row.low <= low <= high <= row.high, place,
             f'low={low} high={high}: write bounds in order, and within the schema\'s {row.low} to {row.high}')


def check_choice(items, word):
    """A line below the last of the items, before it is read."""
    need(items and items[-1].row is not None and items[-1].is_menu, '',
         'a choice stands below a field that is a menu: put it there')
    item = items[-1]
    need(word in item.row.words, '', f'{item.name} has no word {word}: write one of {", ".join(item.row.words)}')
    need(word not in item.called, '', f'the choice {word} is there already: take one away')


def condition(item, part):
    """FIELD, operator and value of one condition, checked against the field that it names; the
    field is None for `new`."""
    match = re.fullmatch(r'(!?)([\w.]+)(?:(!=|=|>)([\w-]+))?', part)
    need(match, item.place, f'"{part}" is no condition: write FLAG, !FLAG, FIELD=WORD, FIELD!=WORD, FIELD>N or new')
    no, name, operator, value = match.groups()
    need(not (no and (operator or name == 'new')), item.place, f'"{part}": "!" goes with a flag only: of a word write FIELD!=WORD')
    if name == 'new' and operator is None:
        return None, None, None
    other = item.dialog.field_called(name)
    need(other is not None, item.place, f'the dialog has no field {name}: add it, or name another in "{part}"')
    words = ['yes', 'no'] if other.is_flag else other.row.words
    if operator == '>':
        need(not other.is_flag and other.row.kind == 'Number' and value.isdigit(), item.place,
             f'"{part}": ">" goes with a number field and a number')
    elif operator is None:
        need(other.is_flag, item.place, f'{name} is no flag: write {name}=WORD')
    else:
        need(words, item.place, f'"{part}": {name} has no words, name a field of words or a flag')
        need(value in words, item.place, f'{name} has no word {value}: write one of {", ".join(words)}')
    return other, operator or '=', value or ('no' if no else 'yes')


def check_conditions(item, seen):
    for part in item.conditions():
        other, _, _ = condition(item, part)
        need(other not in seen, item.place, f'the conditions go round in a circle by "{part}": name another field')
        if other is not None:
            check_conditions(other, seen + [other])


def check_names(dialog):
    """Widgets, members of the descriptor and fields are there once."""
    widgets, members, fields = {}, {}, {}
    for item in dialog.items:
        for widget in {item.widget, item.box, item.button} - {None}:
            need(widgets.setdefault(widget, item) is item, item.place, f'{widget} is there already: say as=Name')
        need(members.setdefault(item.member, item) is item, item.place,
             f'{item.member} is there already: say member=name')
        name = (item.name, item.facts.get('part'))
        need(fields.setdefault(name, item) is item, item.place, f'{item.name} is there already: take one away')


def check_records(dialog):
    settings = [schema.startswith('settings.') for schema, _ in dialog.records]
    need(all(settings) or not any(settings), dialog.place, 'settings and records have dialogs of their own: take one kind away')
    for schema, kind in dialog.records:
        need(schema.startswith('settings.') == ('.' in kind), dialog.place,
             f'say where the model has {schema}: VGA_NODE.member, and of no other schema')


def check_dialog(dialog):
    check_records(dialog)
    need(dialog.widgets, dialog.place, 'say "widgets NAME": without it there is no such form')
    kinds = [kind for kind in ('status', 'child', 'guided') if getattr(dialog, kind)]
    kinds += ['acts'] if dialog.acts else []
    need(bool(dialog.acts) == ('act' in dialog.plan), dialog.place,
         'what the button does is missing, or the button: say acts "Button" and plan act=FUNCTION')
    need(len(kinds) <= 1, dialog.place, f'a dialog is one of {", ".join(kinds)}: take the others away')
    for item in dialog.items:
        check_options(item)
        for column in item.columns_of_list:
            check_options(column)
        if item.what == 'switch':
            need(not dialog.child, item.place, 'a child\'s data are its parent\'s: put the switch there')
        if item.what == 'list':
            need(item.columns_of_list, item.place, 'a list shows nothing: put columns below it')
    check_names(dialog)
    fields = dialog.fields()
    for name in dialog.order:
        need(name in [item.name for item in fields], dialog.order_place, f'{name} is no field of the dialog: name one')
        need(dialog.order.count(name) == 1, dialog.order_place, f'{name} is in the order twice: take one away')
    keys = [at for at, item in enumerate(fields) if item.what == 'key']
    need(not keys or keys[-1] - keys[0] + 1 == len(keys), fields[keys[-1]].place if keys else '',
         'it is apart from the other key: put the keys next to each other')
    for item in fields:
        check_conditions(item, [item])


# All together.

def check_together(dialogs):
    """Who opens whom; a child learns its `opener`."""
    by_name = {}
    for dialog in dialogs:
        need(by_name.setdefault(dialog.name, dialog) is dialog, dialog.place,
             f'there is a dialog {dialog.name} already: give it another name')
    for parent in dialogs:
        for item in parent.items:
            if item.what in ('list', 'child'):
                check_opened(parent, item, by_name)
    for dialog in dialogs:
        need(not dialog.child or dialog.opened, dialog.place,
             f'nothing opens the child {dialog.name}: say child {dialog.name} or editor={dialog.name} in its parent')


def check_opened(parent, item, by_name):
    name, place = item.facts.get('editor', item.name), item.place
    need(item.what == 'child' or item.has('editor'), place, 'say editor=FORM: the child form that edits one item')
    need(name in by_name and by_name[name].child, place,
         f'there is no child form {name}: write its description, and "child" into it')
    child = by_name[name]
    need(child is not parent, place, 'a form does not open itself: name another')
    if item.what == 'list':
        schema = parent.records[0][0] + '.item'
        need([record for record, _ in child.records] == [schema], child.place,
             f'{parent.name} edits its items with {name}: say of {schema} TYPE')
    else:
        records = ' with '.join(' '.join(record) for record in parent.records)
        need(child.records == parent.records, child.place,
             f'its data are those of {parent.name}, which opens it: say of {records}')
        need(child.opener in (None, parent) or child.opener.switches() == parent.switches(), place,
             f'{child.opener and child.opener.name} opens {name}, too, and has other switches: give each a child of its own')
        child.opener = parent
    child.opened = True
