#include "v0convds.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <utility>

#include "nbbase.h"

constexpr const NB_CHAR *const v0_sdlc_escape_sequences[V0_SDLC_ESCAPE_COUNT] = {
    "/NUL/", "/SOH/", "/STX/", "/ETX/", "/EOT/", "/ENQ/", "/ACK/", "/BEL/", "/BS/",
    "/HT/",  "/LF/",  "/VT/",  "/FF/",  "/CR/",  "/SO/",  "/SI/",  "/DLE/", "/DC1/",
    "/DC2/", "/DC3/", "/DC4/", "/NAK/", "/SYN/", "/ETB/", "/CAN/", "/EM/",  "/SUB/",
    "/ESC/", "/FS/",  "/GS/",  "/RS/",  "/US/",  "/SP/",  "/DEL/",
};

/* In the function itself, so that the line number tells which one was called. */
#define BUFFERS_HOLD(length)                                                                       \
    (NB_HOLDS_FATAL("v0convds", input != NULL) && NB_HOLDS_FATAL("v0convds", output != NULL) &&    \
     NB_HOLDS_FATAL("v0convds", (length) != NULL))

namespace {

constexpr NB_USHORT RESULT_OF_NULL = 1;
constexpr NB_USHORT PREFIX_LENGTH = 2;
constexpr NB_USHORT LONGEST_ESCAPE = 5;
constexpr NB_UCHAR DEL_INDEX = V0_SDLC_ESCAPE_COUNT - 1;
constexpr NB_UCHAR DEL_BYTE = 0x7F;
constexpr NB_UCHAR NO_DIGIT = 0xFF;

/* Behind a failed assertion: nothing was produced. */
NB_VOID clear(NB_USHORT *length) {
    if (length != nullptr) {
        *length = 0;
    }
}

NB_USHORT position(size_t index) {
    return static_cast<NB_USHORT>(index + 1);
}

constexpr std::array<NB_UCHAR, 256> digit_values = [] {
    std::array<NB_UCHAR, 256> values{};
    values.fill(NO_DIGIT);
    for (NB_UCHAR value = 0; value < 16; value++) {
        values[static_cast<NB_UCHAR>("0123456789abcdef"[value])] = value;
        values[static_cast<NB_UCHAR>("0123456789ABCDEF"[value])] = value;
    }
    return values;
}();

/* A name of at most three characters, and how many they are, as one number: a look-up then compares
 * numbers. */
constexpr NB_ULONG name_key(std::string_view escape) {
    NB_ULONG key = 1;
    for (size_t at = 1; at + 1 < escape.size(); at++) {
        key = key << 8 | static_cast<NB_UCHAR>(escape[at]);
    }
    return key;
}

constexpr std::array<NB_ULONG, V0_SDLC_ESCAPE_COUNT> name_keys = [] {
    std::array<NB_ULONG, V0_SDLC_ESCAPE_COUNT> keys{};
    std::transform(std::begin(v0_sdlc_escape_sequences), std::end(v0_sdlc_escape_sequences),
                   keys.begin(), name_key);
    return keys;
}();

struct WRITTEN {
    NB_UCHAR length;
    NB_UCHAR text[LONGEST_ESCAPE];
};

constexpr WRITTEN written_form(NB_UCHAR byte) {
    NB_CHAR decimal[] = {'/', static_cast<NB_CHAR>('0' + byte / 100),
                         static_cast<NB_CHAR>('0' + byte / 10 % 10),
                         static_cast<NB_CHAR>('0' + byte % 10), '/'};
    NB_CHAR itself = static_cast<NB_CHAR>(byte);
    std::string_view text(&itself, 1);
    if (byte < ' ') {
        text = v0_sdlc_escape_sequences[byte];
    } else if (byte == '/') {
        text = "//";
    } else if (byte == DEL_BYTE) {
        text = v0_sdlc_escape_sequences[DEL_INDEX];
    } else if (byte > DEL_BYTE) {
        text = std::string_view(decimal, sizeof decimal);
    }
    WRITTEN form{};
    form.length = static_cast<NB_UCHAR>(text.size());
    std::copy(text.begin(), text.end(), form.text);
    return form;
}

constexpr std::array<WRITTEN, 256> written_forms = [] {
    std::array<WRITTEN, 256> forms{};
    for (size_t byte = 0; byte < forms.size(); byte++) {
        forms[byte] = written_form(static_cast<NB_UCHAR>(byte));
    }
    return forms;
}();

/* The value of the digits, or -1.  Their number has no limit, so the value is looked at before each
 * one is added. */
NB_INT decimal_value(std::string_view digits) {
    NB_INT value = 0;
    for (NB_CHAR digit : digits) {
        if (digit < '0' || digit > '9' || value > 25 || (value == 25 && digit > '5')) {
            return -1;
        }
        value = value * 10 + (digit - '0');
    }
    return value;
}

/* The byte that an escape stands for, slashes included, or -1. */
NB_INT escape_value(std::string_view escape) {
    if (escape.size() == 2) {
        return '/';
    }
    if (escape[1] >= '0' && escape[1] <= '9') {
        return decimal_value(escape.substr(1, escape.size() - 2));
    }
    if (escape.size() > LONGEST_ESCAPE) {
        return -1;
    }
    const auto found = std::find(name_keys.begin(), name_keys.end(), name_key(escape));
    if (found == name_keys.end()) {
        return -1;
    }
    const auto index = static_cast<NB_INT>(found - name_keys.begin());
    return index == DEL_INDEX ? DEL_BYTE : index;
}

} // namespace

NB_USHORT v0_dialstring_hex_to_binary(NB_UCHAR *output, NB_USHORT *output_len,
                                      const NB_UCHAR *input, NB_USHORT input_len) {
    if (!BUFFERS_HOLD(output_len)) {
        clear(output_len);
        return RESULT_OF_NULL;
    }
    const NB_USHORT capacity = std::exchange(*output_len, NB_USHORT{0});
    NB_USHORT used = 0;
    for (size_t at = 0; at < input_len; at += 2) {
        if (used == capacity) {
            return position(input_len);
        }
        const NB_UCHAR high = digit_values[input[at]];
        const NB_UCHAR low = at + 1U < input_len ? digit_values[input[at + 1]] : NO_DIGIT;
        if (high == NO_DIGIT || low == NO_DIGIT) {
            return position(at);
        }
        output[used++] = static_cast<NB_UCHAR>(high << 4 | low);
    }
    *output_len = used;
    return 0;
}

NB_USHORT v0_dialstring_ascii_to_binary(NB_UCHAR *output, NB_USHORT *output_len,
                                        const NB_UCHAR *input, NB_USHORT input_len) {
    if (!BUFFERS_HOLD(output_len)) {
        clear(output_len);
        return RESULT_OF_NULL;
    }
    const NB_USHORT capacity = std::exchange(*output_len, NB_USHORT{0});
    const std::string_view text(reinterpret_cast<const NB_CHAR *>(input), input_len);
    size_t used = 0;
    for (size_t at = 0; at < text.size();) {
        /* What stands for itself, up to the next escape, goes over in one piece. */
        const size_t slash = std::min(text.find('/', at), text.size());
        const size_t fits = std::min(slash - at, capacity - used);
        std::memcpy(output + used, input + at, fits);
        used += fits;
        at += fits;
        if (at == text.size()) {
            break;
        }
        if (used == capacity) {
            return position(input_len);
        }
        const size_t closing = text.find('/', at + 1);
        const NB_INT value =
            closing == text.npos ? -1 : escape_value(text.substr(at, closing + 1 - at));
        if (value < 0) {
            return position(at);
        }
        output[used++] = static_cast<NB_UCHAR>(value);
        at = closing + 1;
    }
    *output_len = static_cast<NB_USHORT>(used);
    return 0;
}

NB_USHORT v0_dialstring_text_to_binary(NB_UCHAR *output, NB_USHORT *output_len,
                                       const NB_UCHAR *input, NB_USHORT input_len) {
    if (input == nullptr || input_len < PREFIX_LENGTH || input[0] != '0' ||
        (input[1] != 'x' && input[1] != 'X')) {
        return v0_dialstring_ascii_to_binary(output, output_len, input, input_len);
    }
    const NB_USHORT result =
        v0_dialstring_hex_to_binary(output, output_len, input + PREFIX_LENGTH,
                                    static_cast<NB_USHORT>(input_len - PREFIX_LENGTH));
    return result == 0 ? NB_USHORT{0} : static_cast<NB_USHORT>(result + PREFIX_LENGTH);
}

NB_VOID v0_dialstring_binary_to_hex(NB_UCHAR *output, NB_USHORT *hex_len, const NB_UCHAR *input,
                                    NB_USHORT binary_len) {
    if (!BUFFERS_HOLD(hex_len) ||
        !NB_HOLDS_FATAL("v0convds", *hex_len >= (NB_USHORT)(2 * binary_len))) {
        clear(hex_len);
        return;
    }
    /* The wrapped length, not `binary_len`, is what the capacity was checked for. */
    const auto length = static_cast<NB_USHORT>(2 * binary_len);
    for (size_t at = 0; at < length; at += 2) {
        const NB_UCHAR byte = input[at / 2];
        output[at] = static_cast<NB_UCHAR>("0123456789abcdef"[byte >> 4]);
        output[at + 1] = static_cast<NB_UCHAR>("0123456789abcdef"[byte & 15]);
    }
    *hex_len = length;
}

NB_VOID v0_dialstring_binary_to_ascii(NB_UCHAR *output, NB_USHORT *ascii_len, const NB_UCHAR *input,
                                      NB_USHORT binary_len) {
    if (!BUFFERS_HOLD(ascii_len) ||
        !NB_HOLDS_FATAL("v0convds", *ascii_len >= (NB_USHORT)(5 * binary_len))) {
        clear(ascii_len);
        return;
    }
    const size_t capacity = *ascii_len;
    size_t used = 0;
    for (size_t at = 0; at < binary_len; at++) {
        const WRITTEN &form = written_forms[input[at]];
        if (form.length > capacity - used) {
            break; /* only when the check above wrapped */
        }
        for (NB_UCHAR place = 0; place < form.length; place++) {
            output[used++] = form.text[place];
        }
    }
    *ascii_len = static_cast<NB_USHORT>(used);
}

NB_VOID v0_dialstring_binary_to_text(NB_UCHAR *output, NB_USHORT *text_len, const NB_UCHAR *input,
                                     NB_USHORT binary_len, NB_USHORT hex) {
    if (!hex) {
        v0_dialstring_binary_to_ascii(output, text_len, input, binary_len);
        return;
    }
    const bool given = BUFFERS_HOLD(text_len);
    /* Signed, so that a capacity without room for the prefix does not pass for a large one. */
    const NB_INT room = given ? *text_len - PREFIX_LENGTH : 0;
    const NB_INT *const hex_len = &room;
    if (!given || !NB_HOLDS_FATAL("v0convds", *hex_len >= (NB_USHORT)(2 * binary_len))) {
        clear(text_len);
        return;
    }
    auto produced = static_cast<NB_USHORT>(room);
    v0_dialstring_binary_to_hex(output + PREFIX_LENGTH, &produced, input, binary_len);
    output[0] = '0';
    output[1] = 'x';
    *text_len = static_cast<NB_USHORT>(produced + PREFIX_LENGTH);
}
