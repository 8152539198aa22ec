#!/usr/bin/env python3
"""Makes a help volume of its sources (the mark-up is described in docs/help.md).

usage: mkhelp.py OUTPUT TITLE SOURCE...

A source *.labels lists the fields of dialogs, "topic<TAB>file:line<TAB>label" each: a definition of
the topic has to name it, alone or as one of several ("Local LU, mode").

A source *.txt lists the windows that are not written yet, "NAME KIND TITLE" each (resources/uil/later.txt): the
pages of that name say so.

Topics stand in the contents in the order of the files and of the topics in them.  A page of a chapter
ends with links to the topics below it that its text does not lead to.  The index has each word once, and
below it, where it leads to several topics, their titles.  A fault is a
field that is not explained, a topic or a title that is there twice, a link to a topic that is not there, a
topic that nothing leads to, one without text, a mark that does not end, and text that would not fit;
each is printed as file:line, no volume is written, and the exit status is 1.
"""

import re
import sys
from pathlib import Path

MAX_FIXED = 72  # characters of a line that is shown as it stands
MAX_DEPTH = 3

TOPIC = re.compile(r"(=+) ([a-z0-9_]+): (.+)")
ITEM = re.compile(r"(\*+|#|\+|!|:|\?|\|) ?(.*)")
MARK = re.compile(r"\[\[(?P<link>[^\]]*)\]\]|``(?P<fixed>.*?)``|\*\*(?P<strong>.*?)\*\*"
                  r"|//(?P<emphasis>.*?)//")
NOT_YET = "This release does not have this window yet. The page says what it is for."
CHAPTER = "Pages"
STYLES = {"fixed": "f", "strong": "b", "emphasis": "i"}
OTHER_TARGETS = re.compile(r"(man:[\w.+-]+\(\w+\)|app:\w+)")


class Topic:
    def __init__(self, place, depth, name, title):
        self.place, self.depth, self.name, self.title = place, depth, name, title
        self.blocks = []  # (place, kind, level, text)
        self.terms = []


def fixed_text(text):
    return text.expandtabs(4).rstrip()


class Reader:
    """Reads sources into topics; faults are collected as texts."""

    def __init__(self):
        self.topics, self.faults, self.labels, self.later = [], [], [], set()

    def fault(self, place, text):
        self.faults.append(f"{place}: {text}")

    def read_labels(self, path):
        lines = path.read_text(encoding="utf-8").splitlines()
        self.labels += [line.split("\t") for line in lines]

    def read_later(self, path):
        lines = path.read_text(encoding="utf-8").splitlines()
        self.later |= {line.split()[0] for line in lines if line.strip() and not line.startswith("#")}

    def mark_later(self):
        for topic in self.topics:
            if topic.name in self.later:
                topic.blocks.insert(0, (topic.place, "W", 0, NOT_YET))

    def check_labels(self):
        named = {(topic.name, name.strip()) for topic in self.topics
                 for _, kind, _, text in topic.blocks if kind == "D" for name in text.lower().split(",")}
        for name, place, label in self.labels:
            if (name, label.rstrip(":").lower()) not in named:
                self.fault(place, f'the help topic {name} does not explain "{label}"')

    def read(self, path):
        number_of_item = 0
        open_block = None  # [place, kind, level, text] that goes on in the next line
        lines = path.read_text(encoding="utf-8").splitlines()
        for line_number, line in enumerate(lines + [""], 1):
            place = f"{path.name}:{line_number}"
            topic_line = TOPIC.fullmatch(line)
            item = ITEM.fullmatch(line) if not topic_line else None
            ends = not line.strip() or topic_line or (item and not line.startswith("**"))
            if ends and open_block:
                self.topics[-1].blocks.append(tuple(open_block))
                open_block = None
            if topic_line:
                self.begin_topic(place, topic_line)
            elif not line.strip():
                number_of_item = 0 if not self.follows_item(lines, line_number) else number_of_item
            elif not self.topics:
                self.fault(place, "text before the first topic")
            elif line.startswith("|"):
                self.add_fixed(place, line[1:])
            elif item and not line.startswith("**") or re.match(r"\*\* \S", line):
                if open_block:
                    self.topics[-1].blocks.append(tuple(open_block))
                item = ITEM.fullmatch(line)
                number_of_item = number_of_item + 1 if item[1] == "#" else number_of_item
                open_block = self.begin_item(place, item[1], item[2].strip(), number_of_item)
            elif open_block:
                open_block[3] += " " + line.strip()
            else:
                open_block = [place, "P", 0, line.strip()]

    @staticmethod
    def follows_item(lines, line_number):
        return line_number < len(lines) and lines[line_number].startswith("#")

    def begin_topic(self, place, found):
        depth = len(found[1]) - 1
        before = self.topics[-1].depth if self.topics else -1
        if depth > min(before + 1, MAX_DEPTH):
            self.fault(place, "a topic that is nested deeper than the one before allows")
        if any(topic.name == found[2] for topic in self.topics):
            self.fault(place, f"the topic {found[2]} is there twice")
        if any(topic.title.lower() == found[3].strip().lower() for topic in self.topics):
            self.fault(place, f'there are two pages with the title "{found[3].strip()}"')
        self.topics.append(Topic(place, depth, found[2], found[3].strip()))

    def add_fixed(self, place, text):
        text = fixed_text(text[1:] if text.startswith(" ") else text)
        if len(text) > MAX_FIXED:
            self.fault(place, f"more than {MAX_FIXED} characters")
        self.topics[-1].blocks.append((place, "F", 0, text))

    def begin_item(self, place, mark, text, number):
        """Returns the block that the line begins, or None when it is complete."""
        topic = self.topics[-1]
        if mark[0] == "*":
            return [place, "B", len(mark) - 1, text]
        if mark == "#":
            return [place, "N", number, text]
        if mark == "+":
            topic.blocks.append((place, "H", 0, text))
            return None
        if mark == "!":
            return [place, "W", 0, text]
        if mark == "?":
            topic.terms += [term.strip() for term in text.split(";") if term.strip()]
            return None
        term, separator, meaning = text.partition(" :: ")
        if not separator or not meaning.strip():
            self.fault(place, 'a definition is ": term :: meaning"')
        topic.blocks.append((place, "D", 0, term.strip()))
        return [place, "E", 0, meaning.strip()]


class Writer:
    """Makes the records of the volume and checks what leads where."""

    def __init__(self, reader):
        self.topics, self.fault = reader.topics, reader.fault
        self.titles = {topic.name: topic.title for topic in self.topics}

    def runs(self, place, kind, text):
        if kind == "F":
            return ["p" + text] if text else []
        out, at = [], 0
        for found in MARK.finditer(text):
            if found.start() > at:
                out.append("p" + text[at:found.start()])
            if found["link"] is not None:
                out.append(self.link(place, found["link"]))
            else:
                style = next(name for name in STYLES if found[name] is not None)
                out.append(STYLES[style] + found[style])
            at = found.end()
        if at < len(text):
            out.append("p" + text[at:])
        left = "".join(run[1:] for run in out if run[0] == "p")
        if re.search(r"\[\[|\]\]|``|\*\*", left):
            self.fault(place, "a mark that does not end")
        return out

    def add_chapters(self):
        """Links from each topic to those right below it in the contents."""
        for at, topic in enumerate(self.topics):
            text = " ".join(block[3] for block in topic.blocks)
            linked = {found["link"].partition("|")[0].lstrip("+")
                      for found in MARK.finditer(text) if found["link"] is not None}
            below = [below for below in self.below(at) if below.name not in linked]
            if below:
                if topic.blocks:
                    topic.blocks.append((topic.place, "H", 0, CHAPTER))
                topic.blocks += [(topic.place, "B", 0, f"[[{one.name}]]") for one in below]

    def below(self, at):
        depth = self.topics[at].depth
        for topic in self.topics[at + 1:]:
            if topic.depth <= depth:
                return
            if topic.depth == depth + 1:
                yield topic

    def index(self):
        """Yields (depth, text, topic)."""
        titles = {topic.title.lower(): topic for topic in self.topics}
        words = {word: (topic.title, []) for word, topic in titles.items()}
        for topic in self.topics:
            for term in topic.terms:
                others = words.setdefault(term.lower(), (term, []))[1]
                if topic not in others and titles.get(term.lower()) != topic:
                    others.append(topic)
        for word, (text, others) in sorted(words.items()):
            yield 0, text, titles.get(word, (others or [None])[0]).name
            if word in titles or len(others) > 1:
                for topic in sorted(others, key=lambda topic: topic.title.lower()):
                    yield 1, topic.title, topic.name

    def link(self, place, text):
        target, _, shown = text.partition("|")
        name = target.lstrip("+")
        if name not in self.titles and not OTHER_TARGETS.fullmatch(target):
            self.fault(place, f"there is no topic {name}")
        return f"l{target}|{shown or self.titles.get(name, target)}"

    def records(self, title):
        yield f"V\t{title}"
        self.add_chapters()
        for topic in self.topics:
            yield f"C\t{topic.depth}\t{topic.title}\t{topic.name}"
        for depth, term, name in self.index():
            yield f"X\t{depth}\t{term}\t{name}"
        for topic in self.topics:
            if not topic.blocks:
                self.fault(topic.place, f"the topic {topic.name} says nothing")
            yield f"T\t{topic.name}\t{topic.title}"
            for place, kind, level, text in topic.blocks:
                if "\t" in text or not (text.isprintable() or not text):
                    self.fault(place, "a character that cannot be printed")
                yield "\t".join([kind, str(level)] + self.runs(place, kind, text))


def checksum(data):
    total = 2166136261
    for byte in data:
        total = ((total ^ byte) * 16777619) & 0xFFFFFFFF
    return total


def write_volume(path, records):
    body = records.encode()
    head = f"quiladmin-help 1 {len(body)} {checksum(body):08x}\n".encode()
    Path(path).write_bytes(head + body)


def main(arguments):
    if len(arguments) < 4:
        print(__doc__, file=sys.stderr)
        return 2
    reader = Reader()
    for name in arguments[3:]:
        read = {".labels": reader.read_labels, ".txt": reader.read_later}.get(Path(name).suffix, reader.read)
        read(Path(name))
    reader.check_labels()
    reader.mark_later()
    records = "".join(line + "\n" for line in Writer(reader).records(arguments[2]))
    if not reader.topics:
        reader.fault(arguments[3], "there is no topic")
    for fault in reader.faults:
        print(fault, file=sys.stderr)
    if reader.faults:
        return 1
    write_volume(arguments[1], records)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
