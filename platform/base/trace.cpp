#include "nbbase.h"

#include <cstdlib>

namespace {

int digit_value(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

NB_TRACE_CONTROL read_environment() {
    NB_TRACE_CONTROL control{};
    const char *text = std::getenv("SNA_TRACE_CONTROL");
    for (NB_UCHAR &flags : control.flags) {
        const int high = text ? digit_value(text[0]) : -1;
        const int low = high >= 0 ? digit_value(text[1]) : -1;
        if (low < 0) {
            break;
        }
        flags = static_cast<NB_UCHAR>(high << 4 | low);
        text += 2;
    }
    return control;
}

} // namespace

NB_TRACE_CONTROL ptrc = read_environment();
