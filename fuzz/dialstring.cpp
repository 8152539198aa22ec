/* A dial-string parser, PARSER, on any text and capacity; what it accepts goes back through the
 * writers. */
#include "fuzzinput.h"
#include "v0convds.h"

namespace {

struct PARSED {
    NB_USHORT result;
    std::string bytes;
};

PARSED parse(decltype(PARSER) parser, const std::string &text, size_t capacity) {
    FUZZ_BLOCK input(text), output(capacity);
    NB_USHORT length = output.size();
    const NB_USHORT result = parser(output.get(), &length, input.get(), input.size());
    MUST(length <= capacity && (result == 0 || length == 0));
    MUST(result <= text.size() + 1);
    return {result, output.first(length)};
}

/* `spare` bytes of capacity more than are needed. */
std::string write(const std::string &bytes, size_t spare, bool hexadecimal) {
    const size_t worst = hexadecimal ? 2 + 2 * bytes.size() : 5 * bytes.size();
    FUZZ_BLOCK input(bytes), output(worst + spare);
    NB_USHORT length = output.size();
    v0_dialstring_binary_to_text(output.get(), &length, input.get(), input.size(), hexadecimal);
    MUST(length <= worst && (!hexadecimal || length == worst));
    return output.first(length);
}

NB_VOID check_round_trip(const std::string &bytes, size_t spare) {
    const PARSED from_hex =
        parse(v0_dialstring_text_to_binary, write(bytes, spare, true), bytes.size());
    MUST(from_hex.result == 0 && from_hex.bytes == bytes);
    const PARSED from_ascii =
        parse(v0_dialstring_ascii_to_binary, write(bytes, spare, false), bytes.size());
    MUST(from_ascii.result == 0 && from_ascii.bytes == bytes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FUZZ_INPUT input(data, size);
    const size_t capacity = input.take<uint8_t>();
    const std::string text = input.rest();
    const auto overflow = static_cast<NB_USHORT>(text.size() + 1);

    /* No notation is shorter than its bytes, so this capacity is enough for any text. */
    const PARSED whole = parse(PARSER, text, text.size());
    MUST(whole.result != overflow);
    const PARSED cut = parse(PARSER, text, capacity);
    MUST(cut.result == overflow || (cut.result == whole.result && cut.bytes == whole.bytes));
    if (whole.result == 0) {
        MUST((cut.result == 0) == (whole.bytes.size() <= capacity));
        check_round_trip(whole.bytes, capacity);
    } else {
        /* All is good up to the position of the fault. */
        MUST(parse(PARSER, text.substr(0, whole.result - 1U), text.size()).result == 0);
    }
    check_round_trip(text, capacity);
    return 0;
}
