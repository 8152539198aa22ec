/* Dial strings: both notations, both ways. */
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "nbbase.h"
#include "v0convds.h"

namespace {

using Parser = NB_USHORT (*)(NB_UCHAR *, NB_USHORT *, const NB_UCHAR *, NB_USHORT);
using Writer = NB_VOID (*)(NB_UCHAR *, NB_USHORT *, const NB_UCHAR *, NB_USHORT);
using namespace std::string_literals;

const Parser hex = v0_dialstring_hex_to_binary;
const Parser ascii = v0_dialstring_ascii_to_binary;
const Parser either = v0_dialstring_text_to_binary;

NB_VOID text_in_hex(NB_UCHAR *output, NB_USHORT *length, const NB_UCHAR *input, NB_USHORT count) {
    v0_dialstring_binary_to_text(output, length, input, count, 1);
}

NB_VOID text_in_ascii(NB_UCHAR *output, NB_USHORT *length, const NB_UCHAR *input, NB_USHORT count) {
    v0_dialstring_binary_to_text(output, length, input, count, 0);
}

/* A heap block of the exact size, so that the sanitizer sees any access beyond it. */
struct Block {
    explicit Block(const std::string &text) : Block(text.size()) {
        std::memcpy(bytes.get(), text.data(), text.size());
    }
    explicit Block(size_t size) : size(size), bytes(new NB_UCHAR[size]) {
        std::memset(bytes.get(), '#', size);
    }
    std::string text() const { return std::string(bytes.get(), bytes.get() + size); }
    size_t size;
    std::unique_ptr<NB_UCHAR[]> bytes;
};

struct Outcome {
    NB_USHORT result;
    NB_USHORT length;
    std::string buffer; /* all of it; "#" where nothing was written */
    bool operator==(const Outcome &) const = default;
};

std::ostream &operator<<(std::ostream &out, const Outcome &outcome) {
    return out << outcome.result << ", " << outcome.length << " bytes of "
               << testing::PrintToString(outcome.buffer);
}

Outcome run(Parser parser, const std::string &text, size_t capacity) {
    Block in(text), out(capacity);
    auto length = static_cast<NB_USHORT>(capacity);
    NB_USHORT result =
        parser(out.bytes.get(), &length, in.bytes.get(), static_cast<NB_USHORT>(in.size));
    return {result, length, out.text()};
}

Outcome run(Writer writer, const std::string &bytes, size_t capacity) {
    Block in(bytes), out(capacity);
    auto length = static_cast<NB_USHORT>(capacity);
    writer(out.bytes.get(), &length, in.bytes.get(), static_cast<NB_USHORT>(in.size));
    return {0, length, out.text()};
}

std::string every_byte() {
    std::string all(256, '\0');
    for (size_t byte = 0; byte < all.size(); byte++) {
        all[byte] = static_cast<char>(byte);
    }
    return all;
}

/* Makes a failed assertion a note instead of the end of the program. */
class FatalNote {
public:
    FatalNote() {
        notes.clear();
        nba_pd_set_log(nullptr, NB_PD_NONE);
        previous = v0_set_fatal_handler(
            [](const NB_CHAR *, NB_INT, const NB_CHAR *text) { notes.emplace_back(text); });
    }
    ~FatalNote() {
        v0_set_fatal_handler(previous);
        nba_pd_set_log(nullptr, NB_PD_EXCEPTION);
    }
    static std::vector<std::string> take() { return std::exchange(notes, {}); }

private:
    NB_FATAL_HANDLER previous;
    static inline std::vector<std::string> notes;
};

using Notes = std::vector<std::string>;

} // namespace

TEST(DialString, GoodTexts) {
    struct Case {
        Parser parser;
        std::string text;
        std::string bytes;
    };
    for (const Case &row : std::vector<Case>{
             {ascii, "", ""},
             {ascii, "ATDT/CR/", "ATDT\r"},
             {ascii, "a//b", "a/b"},
             {ascii, "////", "//"},
             {ascii, "/SP/ /DEL//NUL//BS//US/", "\x20\x20\x7F\0\b\x1F"s},
             {ascii, "/255//0//0000012//"s + std::string(300, '0') + "7/", "\xFF\0\x0C\x07"s},
             {ascii, "\x01\xFF\0"s, "\x01\xFF\0"s},
             {ascii, "0x12", "0x12"},
             {hex, "", ""},
             {hex, "09afAF", "\x09\xAF\xAF"},
             {either, "", ""},
             {either, "0x1f2E", "\x1F\x2E"},
             {either, "0X1F", "\x1F"},
             {either, "0x", ""},
             {either, "0", "0"},
             {either, "x0", "x0"},
             {either, "0/CR/", "0\r"},
         }) {
        const size_t size = row.bytes.size();
        EXPECT_EQ(run(row.parser, row.text, size),
                  (Outcome{0, static_cast<NB_USHORT>(size), row.bytes}))
            << row.text;
        EXPECT_EQ(run(row.parser, row.text, size + 1).buffer, row.bytes + "#") << row.text;
    }
}

TEST(DialString, BadTexts) {
    struct Case {
        Parser parser;
        std::string text;
        NB_USHORT position;
        std::string left; /* written in front of the fault */
    };
    for (const Case &row : std::vector<Case>{
             {ascii, "/", 1, ""},
             {ascii, "ab/CR", 3, "ab"},
             {ascii, "/del/", 1, ""},
             {ascii, "/256/", 1, ""},
             {ascii, "/2550/", 1, ""},
             {ascii, "x/2a/", 2, "x"},
             {ascii, "/-1/", 1, ""},
             {ascii, "/CR/ /NULL/", 6, "\r "},
             {ascii, "/ACKX/", 1, ""},
             {ascii,
              "/\x01"
              "ACK/",
              1, ""}, /* no more than a name is looked at */
             {ascii, "/AC/", 1, ""},
             {ascii, "/\0CR/"s, 1, ""},
             {ascii, "/C\0R/"s, 1, ""},
             {ascii, "///", 3, "/"},
             {hex, "g", 1, ""},
             {hex, "12g4", 3, "\x12"},
             {hex, "12345", 5, "\x12\x34"},
             {hex, "0x12", 1, ""},
             {hex, "1\xB1", 1, ""},
             {either, "0x1", 3, ""},
             {either, "0x0123x", 7, "\x01\x23"},
             {either, "12/x/", 3, "12"},
         }) {
        std::string buffer = row.left;
        buffer.resize(8, '#');
        EXPECT_EQ(run(row.parser, row.text, 8), (Outcome{row.position, 0, buffer})) << row.text;
    }
}

TEST(DialString, FullOutputComesBeforeTheRestOfTheText) {
    struct Case {
        Parser parser;
        std::string text;
        size_t capacity;
        NB_USHORT result;
        std::string buffer;
    };
    const std::string longest(65535, '1');
    for (const Case &row : std::vector<Case>{
             {ascii, "abc", 2, 4, "ab"},
             {ascii, "a", 0, 2, ""},
             {ascii, "ab/CR/", 2, 7, "ab"},
             {ascii, "ab/bad/", 2, 8, "ab"},
             {ascii, "ab/bad/", 3, 3, "ab#"},
             {hex, "1234", 1, 5, "\x12"},
             {hex, "123", 1, 4, "\x12"},
             {hex, "zz", 0, 3, ""},
             {either, "0x1234", 1, 7, "\x12"},
             /* positions wrap */
             {ascii, longest, 0, 0, ""},
             {hex, longest, 32767, 0, std::string(32767, '\x11')},
             {hex, longest, 32768, 65535, std::string(32767, '\x11') + "#"},
             {either, "0x" + longest.substr(2), 32767, 65535, std::string(32766, '\x11') + "#"},
         }) {
        EXPECT_EQ(run(row.parser, row.text, row.capacity), (Outcome{row.result, 0, row.buffer}))
            << row.text.substr(0, 20);
    }
}

TEST(DialString, Writers) {
    const std::string low =
        "/NUL//SOH//STX//ETX//EOT//ENQ//ACK//BEL//BS//HT//LF//VT//FF//CR//SO//SI/"
        "/DLE//DC1//DC2//DC3//DC4//NAK//SYN//ETB//CAN//EM//SUB//ESC//FS//GS/"
        "/RS//US/";
    struct Case {
        Writer writer;
        std::string bytes;
        std::string text;
    };
    const Writer to_hex = v0_dialstring_binary_to_hex, to_ascii = v0_dialstring_binary_to_ascii;
    for (const Case &row : std::vector<Case>{
             {to_hex, "", ""},
             {to_hex, "\x09\xAF\0"s, "09af00"},
             {text_in_hex, "", "0x"},
             {text_in_hex, "\x1F\x2E", "0x1f2e"},
             {to_ascii, "", ""},
             {to_ascii, "ATDT\r", "ATDT/CR/"},
             {to_ascii, "a/ b", "a// b"},
             {to_ascii, every_byte().substr(0, 32), low},
             {to_ascii, "!~\x7F\x80\xFF", "!~/DEL//128//255/"},
             {text_in_ascii, "\0\x80\xFF"s, "/NUL//128//255/"},
             {text_in_ascii, "0x12", "0x12"},
         }) {
        const size_t prefix = row.writer == text_in_hex ? 2 : 0;
        const size_t per_byte = row.writer == to_hex || prefix != 0 ? 2 : 5;
        std::string buffer = row.text;
        buffer.resize(prefix + per_byte * row.bytes.size(), '#');
        EXPECT_EQ(run(row.writer, row.bytes, buffer.size()),
                  (Outcome{0, static_cast<NB_USHORT>(row.text.size()), buffer}))
            << row.text;
    }
}

TEST(DialString, ShortOutputOfTheWritersIsFatal) {
    const std::string hex_text = "*hex_len >= (NB_USHORT)(2 * binary_len)";
    const std::string ascii_text = "*ascii_len >= (NB_USHORT)(5 * binary_len)";
    struct Case {
        Writer writer;
        size_t count;
        size_t capacity;
        const std::string &text;
    };
    FatalNote note;
    for (const Case &row : std::vector<Case>{
             {v0_dialstring_binary_to_hex, 3, 5, hex_text},
             {text_in_hex, 3, 7, hex_text},
             {text_in_hex, 0, 1, hex_text},
             {v0_dialstring_binary_to_ascii, 3, 14, ascii_text},
             {text_in_ascii, 1, 4, ascii_text},
         }) {
        EXPECT_EQ(run(row.writer, std::string(row.count, 'a'), row.capacity),
                  (Outcome{0, 0, std::string(row.capacity, '#')}));
        EXPECT_EQ(FatalNote::take(), Notes{row.text});
    }
}

TEST(DialString, NullPointersAreFatal) {
    FatalNote note;
    NB_UCHAR bytes[] = {'a', '#', '#', '#', '#', '#'};
    const auto expect_all = [&bytes](auto function) {
        NB_USHORT length = 5;
        function(bytes + 1, &length, nullptr, 0);
        EXPECT_EQ(std::exchange(length, 5), 0);
        function(nullptr, &length, bytes, 1);
        EXPECT_EQ(length, 0);
        EXPECT_EQ(FatalNote::take(), (Notes{"input != NULL", "output != NULL"}));
        function(bytes + 1, nullptr, bytes, 1);
        EXPECT_EQ(FatalNote::take().size(), 1U);
    };
    for (const Parser parser : {hex, ascii, either}) {
        expect_all(parser);
    }
    for (const Writer writer : {Writer{v0_dialstring_binary_to_hex},
                                Writer{v0_dialstring_binary_to_ascii}, Writer{text_in_hex}}) {
        expect_all(writer);
    }
    EXPECT_EQ(bytes[1], '#');
}
