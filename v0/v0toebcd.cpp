#include "v0toebcd.h"

#include <algorithm>
#include <cctype>
#include <csignal>

#include "nbbase.h"

namespace {

bool is_digit(NB_CHAR character) {
    return character >= '0' && character <= '9';
}

NB_UCHAR upper_case(NB_CHAR character) {
    return static_cast<NB_UCHAR>(std::toupper(static_cast<NB_UCHAR>(character)));
}

/* Whether a type-A name can have the character behind its first one, where digits are valid. */
bool valid_in_name(NB_UCHAR character) {
    NB_UCHAR name[] = {'A', character};
    nba_local_to_ebcdic(name, sizeof name);
    return nba_check_ebcdic(NB_EBCDIC_TYPE_A, name, sizeof name) != 0;
}

} // namespace

NB_USHORT v0_generate_ebcdic_a_name(const NB_CHAR *text, NB_SHORT length, NB_UCHAR *out) {
    if (!NB_HOLDS("v0toebcd", text != NULL) || !NB_HOLDS("v0toebcd", out != NULL)) {
        return 0;
    }
    if (length <= 0) {
        return 1;
    }
    NB_SHORT used = 0;
    if (is_digit(text[0])) {
        out[used++] = 'A';
    }
    for (NB_SHORT at = 0; at < length && used < length && text[at] != '\0'; at++) {
        const NB_UCHAR character = upper_case(text[at]);
        if (valid_in_name(character)) {
            out[used++] = character;
        }
    }
    if (used == 0) {
        for (; used < length && text[used] != '\0' && text[used] != ' '; used++) {
            out[used] = static_cast<NB_UCHAR>('A' + static_cast<NB_UCHAR>(text[used]) % 26);
        }
    }
    std::fill(out + used, out + length, NB_UCHAR{' '});
    nba_local_to_ebcdic(out, static_cast<NB_USHORT>(length));
    return 1;
}

NB_INT vsvig_signal_ignore(NB_INT signal) {
    struct sigaction action = {};
    action.sa_handler = SIG_IGN;
    sigemptyset(&action.sa_mask);
    return sigaction(signal, &action, nullptr);
}
