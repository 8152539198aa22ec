#include "nbproblem.h"

#include <cstdlib>

namespace {

NB_FATAL_HANDLER fatal_handler = nullptr;

void report(NB_USHORT detail, const NB_CHAR *file, NB_INT line, const NB_CHAR *text) {
    nba_pd_print_problem(NB_PD_ASSERTION, detail, "s s i", text, file, line);
}

} // namespace

NB_VOID v0_assert(const NB_CHAR *file, NB_INT line, const NB_CHAR *text) {
    report(0, file, line, text);
}

NB_VOID v0_assert_fatal(const NB_CHAR *file, NB_INT line, const NB_CHAR *text) {
    report(1, file, line, text);
    if (!fatal_handler) {
        std::abort();
    }
    fatal_handler(file, line, text);
}

NB_FATAL_HANDLER v0_set_fatal_handler(NB_FATAL_HANDLER handler) {
    const NB_FATAL_HANDLER before = fatal_handler;
    fatal_handler = handler;
    return before;
}
