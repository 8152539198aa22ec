#include "nodestate.h"
#include "hooks.h"
#include "messages.h"
#include "model.h"
#include "newresources.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include "outcomes.h"
#include "vgadsutl.h"
#include <cstring>
#include <ctime>
#include <map>
#include <string>

namespace {

NB_VOID take_over(VGA_NODE *node, NB_ULONG state) {
    node->node_data.info.node_state = state;
    node->vcb->info.node_state = state;
    vga_server_follows(node);
    if (node->node_state == state) {
        return;
    }
    node->node_state = state;
    if (state == NAP_NODE_ACTIVE || state == NAP_NODE_STOPPED) {
        vga_read_untold(node);
    }
    vga_node_list_changed(node, VGA_NODE_CHANGED);
}

} // namespace

NB_VOID vga_process_init_node(VGA_NODE *node, NB_ULONG state) {
    if (state == NAP_NODE_STARTING || state == NAP_NODE_ACTIVE) {
        take_over(node, state);
    }
}

NB_VOID vga_process_stop_node(VGA_NODE *node, NB_ULONG state) {
    if (state == NAP_NODE_STOPPING || state == NAP_NODE_STOPPED) {
        take_over(node, state);
    }
}

NB_VOID vga_process_node_status_ind(const VGA_PROCESS_STATE *work) {
    auto *node = static_cast<VGA_NODE *>(nba_validate_handle(work->user_data));
    if (node == nullptr) {
        return;
    }
    auto copy = nap_copy<NAP_NODE_STATUS_INDICATION_VERB>(work->vcb);
    if (copy.opcode == NAP_INIT_NODE) {
        vga_process_init_node(node, copy.node_state);
    } else {
        vga_process_stop_node(node, copy.node_state);
    }
}

NB_VOID vga_tell_not_stored(NB_ULONG target) {
    constexpr time_t PAUSE = 60; /* many things may be deleted at once */
    static std::map<std::string, time_t> told_at;
    const VGA_NODE *node = vga_find_node_of_target(target);
    if (node == nullptr) {
        return;
    }
    const std::string name = vga_node_name(node);
    const time_t now = time(nullptr);
    if (time_t &last = told_at[name]; now - last >= PAUSE || now < last) {
        last = now;
        vga_tell_outcome(name, vga_message(VGA_MSG_NOT_STORED), 1);
    }
}
