#include "vgaindct.h"
#include "globals.h"
#include "hooks.h"
#include "nodestate.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include "recordpattern.h"
#include "resourceindications.h"
#include "sessionlimits.h"
#include "vgadsdel.h"
#include "vgadsutl.h"
#include <algorithm>

namespace {

struct PROCESSOR {
    NB_USHORT opcode;
    NB_VOID (*process)(const VGA_PROCESS_STATE *work);
};

constexpr PROCESSOR processors[] = {
    {NAP_NOF_STATUS_INDICATION, vga_process_nof_status_ind},
    {NAP_INIT_NODE, vga_process_node_status_ind},
    {NAP_STOP_NODE, vga_process_node_status_ind},
    {NAP_CHANGE_SESSION_LIMIT, vga_process_session_limit},
};

/* Nothing may use a target any more once the node software is going down. */
NB_VOID forget_all_targets(NB_VOID) {
    gvga_system->domain_target = 0;
    gvga_system->net_target = 0;
    gvga_system->config_target = 0;
    std::fill(std::begin(gvga_system->config_name), std::end(gvga_system->config_name), '\0');
    vga_for_each(gvga_system->nodes, &VGA_NODE::links, [](VGA_NODE &node) {
        node.target = 0;
        node.tp_target = 0;
    });
}

NB_VOID node_died(VGA_NODE *node) {
    if (gvga_system->config_target == node->target) {
        gvga_system->config_target = 0;
        std::fill(std::begin(gvga_system->config_name), std::end(gvga_system->config_name), '\0');
    }
    if (gvga_hooks.node_died != nullptr) {
        gvga_hooks.node_died(node);
    }
    if (gvga_supported[VGA_SUPPORTED_CLIENT_SERVER]) {
        vga_free_node_resources(node, 1, nullptr);
    }
}

} // namespace

NB_VOID vga_process_nof_status_ind(const VGA_PROCESS_STATE *work) {
    auto indication = nap_copy<NAP_NOF_STATUS_INDICATION_VERB>(work->vcb);
    if (indication.status == NAP_CONNECTION_GONE) {
        /* An operator who is closing the program need not be told. */
        if (gvga_closing) {
            VGA_EXIT_AT(VGA_EXIT_NORMAL, 0, gvga_exit_closed_later);
        } else {
            VGA_EXIT(VGA_EXIT_SHUTTING_DOWN, 0);
        }
        vga_wake_main_loop();
        forget_all_targets();
        return;
    }
    if (nba_validate_handle(work->user_data) == nullptr) {
        return;
    }
    NB_ULONG target = indication.target_handle;
    if (target != 0 && target == gvga_system->net_target) {
        vga_free_sna_net_resources(nullptr);
    } else if (indication.status == NAP_SYSTEM_FILE_CHANGED ||
               (target != 0 && target == gvga_system->domain_target)) {
        vga_free_system_resources(indication.status != NAP_SYSTEM_FILE_CHANGED, nullptr);
    } else if (VGA_NODE *node = vga_find_node_of_target(target)) {
        node_died(node);
    }
}

NB_VOID vga_dispatch_indication(const VGA_PROCESS_STATE *work) {
    if (gvga_system == nullptr || vga_indication_handler(work)) {
        return;
    }
    for (const PROCESSOR &row : processors) {
        if (row.opcode == work->vcb->opcode) {
            row.process(work);
            return;
        }
    }
}
