#include "outcomes.h"
#include "globals.h"
#include "hooks.h"

namespace {

std::deque<VGA_OUTCOME> outcomes;
NB_ULONG last_number;

} // namespace

NB_VOID vga_tell_outcome(const std::string &node, const std::string &text, NB_ULONG failed) {
    if (gvga_closing != 0) {
        return;
    }
    if (outcomes.size() == VGA_OUTCOMES_KEPT) {
        outcomes.pop_front();
    }
    outcomes.push_back({++last_number, time(nullptr), node, text, failed});
    if (gvga_hooks.outcome != nullptr) {
        gvga_hooks.outcome(outcomes.back());
    }
}

const std::deque<VGA_OUTCOME> &vga_outcomes(NB_VOID) {
    return outcomes;
}

NB_VOID vga_forget_outcomes(NB_VOID) {
    outcomes.clear();
}

std::string vga_outcome_line(const VGA_OUTCOME &outcome) {
    struct tm fields = {};
    NB_CHAR clock[16] = "";
    if (localtime_r(&outcome.time, &fields) != nullptr) {
        strftime(clock, sizeof(clock), "%H:%M:%S ", &fields);
    }
    return clock + outcome.text.substr(0, outcome.text.find('\n'));
}
