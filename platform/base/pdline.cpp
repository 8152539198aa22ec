#include "pdline.h"

#include "nbbase.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace base {

namespace {

constexpr char cut_mark[] = "...\n";
constexpr NB_UCHAR ebcdic_blank = 0x40;

bool printable(NB_UCHAR byte) {
    return byte >= 0x20 && byte < 0x7F;
}

size_t trimmed(const NB_UCHAR *bytes, size_t width, NB_UCHAR blank) {
    while (width > 0 && (bytes[width - 1] == blank || bytes[width - 1] == 0)) {
        width--;
    }
    return width;
}

// A byte of a name in EBCDIC: what the larger character set takes, or a blank.
bool ebcdic_name_byte(NB_UCHAR byte) {
    return byte == ebcdic_blank || nba_check_ebcdic(NB_EBCDIC_TYPE_AE, &byte, 1);
}

} // namespace

// A va_list can be handed on by reference only inside a structure.
struct PdLine::Source {
    va_list values;
};

void PdLine::add(std::string_view text) {
    const size_t room = sizeof(text_) - sizeof(cut_mark) - length_;
    const size_t fits = std::min(text.size(), room);
    std::memcpy(text_ + length_, text.data(), fits);
    length_ += fits;
    cut_ = cut_ || fits < text.size();
}

void PdLine::addf(const char *format, ...) {
    char piece[sizeof(text_)];
    va_list values;
    va_start(values, format);
    const int length = std::vsnprintf(piece, sizeof(piece), format, values);
    va_end(values);
    if (length > 0) {
        add({piece, std::min(static_cast<size_t>(length), sizeof(piece) - 1)});
    }
}

void PdLine::add_escaped(NB_UCHAR byte, bool beyond_ascii) {
    if (byte == '"' || byte == '\\') {
        addf("\\%c", byte);
    } else if (printable(byte) || (byte >= 0x80 && beyond_ascii)) {
        const char c = static_cast<char>(byte);
        add({&c, 1});
    } else {
        addf("\\x%02X", byte);
    }
}

void PdLine::add_text(const char *text) {
    if (!text) {
        add("(null)");
        return;
    }
    add("\"");
    for (; *text && !cut_; text++) {
        add_escaped(static_cast<NB_UCHAR>(*text), true);
    }
    add("\"");
}

void PdLine::add_array(const NB_UCHAR *bytes, size_t width) {
    if (!bytes) {
        add("(null)");
        return;
    }
    size_t length = trimmed(bytes, width, ' ');
    const bool local = std::all_of(bytes, bytes + length, printable);
    const bool ebcdic = !local && std::all_of(bytes, bytes + length, ebcdic_name_byte);
    length = ebcdic ? trimmed(bytes, length, ebcdic_blank) : length;
    add("\"");
    for (size_t at = 0; at < length && !cut_; at++) {
        NB_UCHAR byte = bytes[at];
        if (ebcdic) {
            nba_ebcdic_to_local(&byte, 1);
        }
        add_escaped(byte, false);
    }
    add(ebcdic ? "\" (EBCDIC)" : "\"");
}

void PdLine::add_number(const char *format, NB_ULONG number, PdDecode decode) {
    char digits[16];
    std::snprintf(digits, sizeof(digits), format, number);
    add(digits);
    if (const char *name = pd_explain(decode, number)) {
        addf(" (%s)", name);
    }
}

void PdLine::add_sized(Source &source, bool cut_at_nul) {
    const NB_INT width = va_arg(source.values, NB_INT);
    const NB_UCHAR *bytes = va_arg(source.values, const NB_UCHAR *);
    if (width < 0) {
        addf("(bad width %d)", width);
        return;
    }
    size_t length = static_cast<size_t>(width);
    if (bytes && cut_at_nul) {
        length = strnlen(reinterpret_cast<const char *>(bytes), length);
    }
    add_array(bytes, length);
}

// Returns false for a word that is not known; the values behind it cannot be read.
bool PdLine::add_value(std::string_view word, PdDecode decode, Source &source) {
    if (word == "s") {
        add_text(va_arg(source.values, const char *));
    } else if (word == "i" || word == "l") {
        addf("%d", va_arg(source.values, NB_INT));
    } else if (word == "x") {
        add_number("0x%04X", va_arg(source.values, NB_ULONG), decode);
    } else if (word == "lx") {
        add_number("0x%08X", va_arg(source.values, NB_ULONG), decode);
    } else if (word == "ca" || word == "cs") {
        add_sized(source, word == "cs");
    } else {
        return false;
    }
    return true;
}

void PdLine::add_values(const PdRow &row, const char *format, va_list values) {
    Source source;
    va_copy(source.values, values);
    const std::string_view words = format ? format : "";
    size_t count = 0;
    for (size_t at = words.find_first_not_of(' '); at < words.size();) {
        const size_t end = std::min(words.find(' ', at), words.size());
        const PdValue value = count < pd_most_values ? row.values[count] : PdValue{};
        count++;
        if (value.name) {
            addf("%s%s=", count > 1 ? " " : ": ", value.name);
        } else {
            addf("%svalue%zu=", count > 1 ? " " : ": ", count);
        }
        const std::string_view word = words.substr(at, end - at);
        if (!add_value(word, value.decode, source)) {
            addf("(unknown format word \"%.*s\")",
                 static_cast<int>(std::min<size_t>(word.size(), 16)), word.data());
            break;
        }
        at = words.find_first_not_of(' ', end);
    }
    va_end(source.values);
}

std::string_view PdLine::finish() {
    const std::string_view end = cut_ ? cut_mark : "\n";
    std::memcpy(text_ + length_, end.data(), end.size());
    return {text_, length_ + end.size()};
}

} // namespace base
