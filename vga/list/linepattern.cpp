#include "linepattern.h"
#include "linelayout.h"
#include <algorithm>
#include <climits>
#include <cstring>
#include <cwctype>

namespace {

constexpr NB_CHAR column_mark = '\t';

bool is_plain(NB_CHAR letter) {
    return static_cast<NB_UCHAR>(letter) < 0x80;
}

NB_CHAR small(NB_CHAR letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<NB_CHAR>(letter - 'A' + 'a') : letter;
}

/* Takes a character off the text; a byte that is none stands for itself. */
wchar_t take_character(std::string_view *text) {
    wchar_t character = static_cast<NB_UCHAR>(text->front());
    size_t bytes = 1;
    if (!is_plain(text->front())) {
        mbstate_t state = {};
        wchar_t read = L'\0';
        const size_t length = mbrtowc(&read, text->data(), text->size(), &state);
        if (length != 0 && length <= text->size()) {
            bytes = length;
            character = read;
        }
    }
    text->remove_prefix(bytes);
    return character;
}

NB_VOID add_folded(std::string *folded, std::string_view text) {
    while (!text.empty()) {
        if (is_plain(text.front())) {
            *folded += small(text.front());
            text.remove_prefix(1);
            continue;
        }
        const std::string_view whole = text;
        const wchar_t character = take_character(&text);
        const auto lower = static_cast<wchar_t>(towlower(static_cast<wint_t>(character)));
        NB_CHAR bytes[MB_LEN_MAX];
        mbstate_t state = {};
        const size_t length = lower != character ? wcrtomb(bytes, lower, &state) : 0;
        if (lower != character && length <= sizeof(bytes)) {
            folded->append(bytes, length);
        } else {
            folded->append(whole, 0, whole.size() - text.size());
        }
    }
}

/* Reads a set behind its [ and takes it off the text.  Returns its fault, or VGA_PATTERN_LIKE. */
VGA_PATTERN_KIND read_set(std::string_view *text, VGA_PATTERN_PLACE *place) {
    if (!text->empty() && (text->front() == '!' || text->front() == '^')) {
        place->others = true;
        text->remove_prefix(1);
    }
    while (!text->empty() && text->front() != ']') {
        const wchar_t first = take_character(text);
        wchar_t last = first;
        if (text->size() > 1 && text->front() == '-' && (*text)[1] != ']') {
            text->remove_prefix(1);
            last = take_character(text);
        }
        if (last < first) {
            return VGA_PATTERN_BAD_RANGE;
        }
        place->ranges.emplace_back(first, last);
    }
    if (text->empty()) {
        return VGA_PATTERN_OPEN_SET;
    }
    text->remove_prefix(1);
    return place->ranges.empty() ? VGA_PATTERN_EMPTY_SET : VGA_PATTERN_LIKE;
}

VGA_PATTERN read_places(std::string_view typed, std::string_view text) {
    VGA_PATTERN pattern = {VGA_PATTERN_LIKE, std::string(typed), std::string(text), {}};
    while (!text.empty() && pattern.kind == VGA_PATTERN_LIKE) {
        const wchar_t character = take_character(&text);
        VGA_PATTERN_PLACE place;
        place.any_run = character == L'*';
        place.others = character == L'?';
        if (character == L'[') {
            pattern.kind = read_set(&text, &place);
        } else if (!place.any_run && !place.others) {
            place.ranges.emplace_back(character, character);
        }
        pattern.places.push_back(place);
    }
    return pattern;
}

bool fits(const VGA_PATTERN_PLACE &place, wchar_t character) {
    const bool in = std::any_of(place.ranges.begin(), place.ranges.end(), [character](auto &range) {
        return character >= range.first && character <= range.second;
    });
    return in != place.others;
}

/* The usual way: behind a run of any length, the rest is tried from place to place. */
bool is_like(const std::vector<VGA_PATTERN_PLACE> &places, std::string_view name) {
    size_t place = 0, behind_run = places.size() + 1;
    std::string_view tried_from;
    while (!name.empty()) {
        if (place < places.size() && places[place].any_run) {
            behind_run = ++place;
            tried_from = name;
            continue;
        }
        std::string_view rest = name;
        if (place < places.size() && fits(places[place], take_character(&rest))) {
            ++place;
            name = rest;
        } else if (behind_run <= places.size()) {
            take_character(&tried_from);
            name = tried_from;
            place = behind_run;
        } else {
            return false;
        }
    }
    while (place < places.size() && places[place].any_run) {
        ++place;
    }
    return place == places.size();
}

std::string_view name_of(std::string_view folded) {
    return folded.substr(0, std::min(folded.size(), folded.find(column_mark)));
}

} // namespace

VGA_PATTERN vga_plain_pattern(std::string_view typed) {
    std::string folded;
    add_folded(&folded, typed);
    return {
        folded.empty() ? VGA_PATTERN_ALL : VGA_PATTERN_CONTAINS, std::string(typed), folded, {}};
}

VGA_PATTERN vga_parse_pattern(std::string_view typed) {
    const VGA_PATTERN plain = vga_plain_pattern(typed);
    const std::string &folded = plain.text;
    const size_t wildcard = folded.find_first_of("*?[");
    if (wildcard == std::string::npos) {
        return plain;
    }
    const size_t last = folded.size() - 1;
    const bool one_run = folded.find_first_of("*?[", wildcard + 1) == std::string::npos &&
                         folded[wildcard] == '*' && folded.size() > 1;
    if (one_run && wildcard == last) {
        return {VGA_PATTERN_BEGINS, plain.typed, folded.substr(0, last), {}};
    }
    if (one_run && wildcard == 0) {
        return {VGA_PATTERN_ENDS, plain.typed, folded.substr(1), {}};
    }
    return read_places(typed, folded);
}

NB_USHORT vga_pattern_is_valid(const VGA_PATTERN &pattern) {
    return pattern.kind < VGA_PATTERN_OPEN_SET;
}

NB_USHORT vga_pattern_narrows(const VGA_PATTERN &pattern, const VGA_PATTERN &before) {
    const auto &text = pattern.text, &old = before.text;
    switch (before.kind) {
    case VGA_PATTERN_ALL:
        return 1;
    case VGA_PATTERN_CONTAINS:
        return pattern.kind > VGA_PATTERN_ALL && pattern.kind < VGA_PATTERN_LIKE &&
               text.find(old) != std::string::npos;
    case VGA_PATTERN_BEGINS:
        return pattern.kind == VGA_PATTERN_BEGINS && text.starts_with(old);
    case VGA_PATTERN_ENDS:
        return pattern.kind == VGA_PATTERN_ENDS && text.ends_with(old);
    default:
        return pattern.kind == before.kind && text == old;
    }
}

NB_USHORT vga_pattern_matches(const VGA_PATTERN &pattern, std::string_view folded) {
    const std::string &text = pattern.text;
    switch (pattern.kind) {
    case VGA_PATTERN_ALL:
        return 1;
    case VGA_PATTERN_CONTAINS:
        return memmem(folded.data(), folded.size(), text.data(), text.size()) != nullptr;
    case VGA_PATTERN_BEGINS:
        return name_of(folded).starts_with(text);
    case VGA_PATTERN_ENDS:
        return name_of(folded).ends_with(text);
    case VGA_PATTERN_LIKE:
        return is_like(pattern.places, name_of(folded));
    default:
        return 0;
    }
}

std::string vga_fold_line(const NB_CHAR *line) {
    std::string folded;
    NB_ULONG column = 0;
    VGA_VIEWER_RUN run;
    while (vga_viewer_next_run(&line, &column, &run) != 0) {
        std::string_view text(run.text, static_cast<size_t>(run.length));
        while (!text.empty() && text.back() == ' ') {
            text.remove_suffix(1);
        }
        add_folded(&folded, text);
        if (run.last == 0) {
            folded += column_mark;
        }
    }
    return folded;
}
