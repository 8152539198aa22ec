/* The template check, and what a template that it accepts promises: every host of a subnet gets an
 * LU name of its own, and fixed characters stay. */
#include "fuzzinput.h"
#include "nbbase.h"
#include "vtmutil.h"

#include <arpa/inet.h>

namespace {

/* One byte in four stands for itself; the others are characters that a template can have. */
std::string draw_template(FUZZ_INPUT &input) {
    const std::string usual = "ABCXYZEIOU@#$0189...   ";
    std::string drawn(8, ' ');
    for (char &character : drawn) {
        const auto byte = input.take<uint8_t>();
        if (byte % 4 != 0) {
            character = usual[byte / 4 % usual.size()];
            nba_local_to_ebcdic(reinterpret_cast<NB_UCHAR *>(&character), 1);
        } else {
            character = static_cast<char>(input.take<uint8_t>());
        }
    }
    return drawn;
}

std::string lu_name(const std::string &lu_template, NB_ULONG ip, NB_ULONG mask) {
    FUZZ_BLOCK text(lu_template.c_str(), lu_template.size() + 1), name(VTM_LU_TEXT_SIZE);
    MUST(ip_2_lu(text.text(), name.text(), htonl(ip), htonl(mask)) == 0);
    return name.text();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FUZZ_INPUT input(data, size);
    FUZZ_BLOCK field(draw_template(input));
    const auto bits = input.take<uint8_t>() % 34U;
    const NB_ULONG mask = bits == 33  ? input.take<NB_ULONG>()
                          : bits == 0 ? 0
                                      : ~NB_ULONG{0} << (32 - bits);
    const auto one = input.take<NB_ULONG>();
    const NB_ULONG other = (one & mask) | (input.take<NB_ULONG>() & ~mask);

    const NB_USHORT valid = vtm_validate_lu_map_template(field.get(), mask);
    FUZZ_BLOCK text(9);
    vtm_ebcdic_to_ascii(text.text(), field.get(), 8);
    const std::string lu_template = text.text();
    const std::string name = lu_name(lu_template, one, mask);
    MUST(mask == ~NB_ULONG{0} ? name == lu_template : name.size() == 8);
    if (!valid || !vtm_check_mask(mask) || bits < 8) {
        return 0;
    }
    MUST((lu_name(lu_template, other, mask) == name) == (one == other));
    for (size_t at = 0; at < lu_template.size(); at++) {
        MUST(lu_template[at] == '.' || lu_template[at] == ' ' || name[at] == lu_template[at]);
    }
    return 0;
}
