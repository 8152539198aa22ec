/* The domain name check beside a plain one. */
#include "fuzzinput.h"
#include "vtmutil.h"

namespace {

bool plain_check(const std::string &text) {
    const std::string allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.";
    bool good = text.size() <= 237 && text.find_first_not_of(allowed) == text.npos;
    for (size_t start = 0; good && start < text.size();) {
        const size_t end = std::min(text.find('.', start), text.size());
        good = end - start <= 63;
        start = end + 1;
    }
    return good;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FUZZ_INPUT input(data, size);
    /* Runs of one character are rare in random bytes: the first byte repeats a part. */
    const size_t repeat = input.take<uint8_t>() % 80;
    std::string text = input.rest();
    if (!text.empty()) {
        text.insert(text.size() / 2, std::string(repeat, text[text.size() / 2]));
    }
    text.resize(std::min(text.find('\0'), text.size()));
    FUZZ_BLOCK block(text + '\0');
    MUST(vtm_check_domain_name(block.text()) == plain_check(text));

    /* Nothing is read beyond the first character too many. */
    if (text.size() > VTM_MAX_DOMAIN_NAME) {
        FUZZ_BLOCK unterminated(text.substr(0, VTM_MAX_DOMAIN_NAME + 1));
        MUST(vtm_check_domain_name(unterminated.text()) == 0);
    }
    return 0;
}
