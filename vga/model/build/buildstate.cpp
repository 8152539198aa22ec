/* What others may ask of the build: whether a list is still being read, and to keep an answer as it
 * does. */
#include "buildsteps.h"
#include "nbproblem.h"
#include "vgadsbld.h"
#include <algorithm>

namespace {

template <class Condition> const VGA_BUILD_STEP *find_step(const VGA_NODE *node, Condition fits) {
    auto steps = node != nullptr ? vga_node_steps() : vga_system_steps();
    const auto found = std::find_if(steps.begin(), steps.end(), fits);
    return found != steps.end() ? &*found : nullptr;
}

} // namespace

NB_USHORT vga_is_list_outstanding(const VGA_NODE *node, NB_USHORT opcode) {
    const VGA_BUILD_STEP *step =
        find_step(node, [opcode](const VGA_BUILD_STEP &one) { return one.opcode == opcode; });
    if (step == nullptr || step->chain == VGA_NO_CHAIN) {
        return 0;
    }
    return node != nullptr ? node->startup_status[step->chain] != 0
                           : gvga_system->startup_status[step->chain] != 0;
}

NB_USHORT vga_keep_record(VGA_NODE *node, const NAP_VCB *vcb) {
    const VGA_BUILD_STEP *step = find_step(node, [vcb](const VGA_BUILD_STEP &one) {
        return one.opcode == vcb->opcode && one.kind == VGA_STEP_KIND::RECORD;
    });
    NB_USHORT kept = step != nullptr && step->store != nullptr &&
                     (step->wanted == nullptr || step->wanted(node) != 0);
    if (kept) {
        step->store(node, vcb);
    }
    return kept;
}

NB_VOID vga_process_register_sink(const NAP_VCB *vcb, NB_INT line) {
    constexpr NB_USHORT detail = 2;
    if (vcb->primary_rc == NAP_OK) {
        return;
    }
    if (!nba_is_silenced(NB_TRACE_RESOURCES)) {
        nba_pd_print_exception(NB_PD_VERB_FAILED, detail, "x x lx", vcb->opcode, vcb->primary_rc,
                               vcb->secondary_rc);
    }
    vga_request_exit(VGA_EXIT_VERB_FAILED, vcb->opcode, gvga_build_module, line);
}
