/* The checks and builders of SNA names, and names made from free text. */
#include "fuzzinput.h"
#include "nbbase.h"
#include "ntlname.h"
#include "v0toebcd.h"

namespace {

/* Random bytes are hardly ever names: with `local` the text is taken as typed. */
std::string as_field(std::string bytes, size_t width, bool local) {
    bytes.resize(width, local ? ' ' : '\x40');
    if (local) {
        nba_local_to_ebcdic(reinterpret_cast<NB_UCHAR *>(bytes.data()),
                            static_cast<NB_USHORT>(width));
    }
    return bytes;
}

NB_VOID check_name(const std::string &bytes) {
    FUZZ_BLOCK name(bytes);
    const size_t length = bytes.find_last_not_of('\x40') + 1;
    for (NB_USHORT type : {NB_EBCDIC_TYPE_A, NB_EBCDIC_TYPE_AE}) {
        MUST(ntl_check_name(type, name.get(), name.size()) ==
             nba_check_ebcdic(type, name.get(), static_cast<NB_USHORT>(length)));
    }
    MUST(ntl_name_length(name.get(), name.size()) == std::min(bytes.find('\x40'), bytes.size()));
}

NB_VOID check_fq_name(const std::string &bytes) {
    FUZZ_BLOCK fq(bytes), network(8), name(8), joined(17), changed(17);
    const std::string zeros(8, '\0');
    const NB_USHORT code = ntl_check_fq_name(fq.get());
    MUST(ntl_split_fq_name(fq.get(), network.get(), name.get()) == code);
    ntl_change_local_name(fq.get(), name.get(), changed.get());
    switch (code) {
    case NTL_FQ_QUALIFIED:
        ntl_make_fq_name(network.get(), name.get(), joined.get());
        MUST(joined.first(17) == bytes && changed.first(17) == bytes);
        break;
    case NTL_FQ_UNQUALIFIED:
        MUST(network.first(8) == zeros && name.first(8) == bytes.substr(0, 8));
        MUST(changed.first(17) == bytes);
        break;
    default:
        MUST(code >= NTL_FQ_LONG_NETWORK_ID && code <= NTL_FQ_TEXT_BEHIND_BLANK);
        MUST(network.first(8) == zeros && name.first(8) == zeros);
    }
}

/* The text is not terminated where it is longer than the name: no more of it is read. */
NB_VOID check_generated_name(std::string text, size_t length) {
    text.resize(std::min(text.find('\0'), text.size()));
    FUZZ_BLOCK input(text.size() < length ? text + '\0'
                                          : text.substr(0, std::max<size_t>(length, 1)));
    FUZZ_BLOCK name(length);
    MUST(v0_generate_ebcdic_a_name(input.text(), static_cast<NB_SHORT>(length), name.get()) == 1);
    /* Only what stands first can be wrong, and only as a digit there. */
    const std::string in_name = "\xC1" + name.first(length);
    FUZZ_BLOCK whole(in_name);
    MUST(ntl_check_name(NB_EBCDIC_TYPE_A, whole.get(), whole.size()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FUZZ_INPUT input(data, size);
    const auto choice = input.take<uint8_t>();
    const bool local = choice % 2 != 0;
    const std::string bytes = input.rest();
    check_name(as_field(bytes, choice % 67, local));
    check_fq_name(as_field(bytes, NTL_FQ_NAME_WIDTH, local));
    check_generated_name(bytes, choice % 20);
    return 0;
}
