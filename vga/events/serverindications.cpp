#include "serverindications.h"
#include "globals.h"
#include "hooks.h"
#include "listqueries.h"
#include "messages.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include "outcomes.h"
#include "recordtypes.h"
#include "vgadsadd.h"
#include "vgadsbld.h"
#include "vgadsdel.h"
#include "vgadsutl.h"
#include <algorithm>
#include <ctime>

namespace {

constexpr NB_ULONG server_active = 1;

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

/* Lets go of the domain's configuration, and of what is known of it.  `gone`: its holder is. */
NB_VOID free_domain(NB_USHORT gone) {
    vga_free_system_resources(gone, nullptr);
    vga_delete_system_contents();
    vga_record_changed(gvga_system, VGA_RECORD_CHANGED);
}

NB_VOID free_network(NB_VOID) {
    vga_free_sna_net_resources(nullptr);
    vga_delete_all<VGA_SNA_NET_NODE>(gvga_system->net_nodes);
}

/* A domain that is being read is read from the start. */
NB_VOID read_domain_again(NB_VOID) {
    vga_rebuild_system();
}

/* Lets go of what the holder of the configuration has.  A build that this stops half-way would
 * never end: it begins again. */
NB_VOID leave_holder(NB_USHORT gone, NB_USHORT read_again) {
    const NB_USHORT unfinished = !vga_check_system_startup(nullptr);
    free_domain(gone);
    free_network();
    if (read_again || unfinished) {
        read_domain_again();
    }
}

/* Reading the domain's list opens the network file, too. */
NB_VOID read_network_again(NB_VOID) {
    if (gvga_system->domain_target != 0 && gvga_system->startup_status[VGA_NETWORK_FILE] == 0) {
        vga_purge_verb_queue(0, NAP_QUERY_SNA_NET, nullptr, gvga_system->handle, vga_build_system);
        vga_rebuild_sna_net();
    }
}

/* The operator is told once, whichever of the indications about it comes first: each target of a
 * node that is gone has one, and the server another. */
NB_VOID node_died(VGA_NODE *node) {
    NB_USHORT single = !gvga_supported[VGA_SUPPORTED_CLIENT_SERVER];
    if (single && node->connection == VGA_NOT_CONNECTED && node->lost_at != 0) {
        return;
    }
    if (gvga_system->config_target != 0 && gvga_system->config_target == node->target) {
        gvga_system->config_target = 0;
        std::fill(std::begin(gvga_system->config_name), std::end(gvga_system->config_name), '\0');
    }
    vga_lose_connection(node);
    node->lost_at =
        node->lost_at != 0 ? node->lost_at : time(nullptr); /* while it was being read */
    vga_tell_outcome(vga_node_name(node), vga_message(VGA_MSG_CONNECTION_WAS_LOST), 1);
    if (gvga_hooks.node_died != nullptr) {
        gvga_hooks.node_died(node);
    }
    if (!single) {
        vga_free_node_resources(node, 1, nullptr);
    }
}

VGA_NODE *find_node(const NAP_SERVER_INDICATION_VERB &indication) {
    return static_cast<VGA_NODE *>(ntl_avl_find(&gvga_system->nodes, indication.node_name));
}

/* A node that nobody knew begins without a role, so that the one it has is a change. */
VGA_NODE *add_node(const NAP_SERVER_INDICATION_VERB &indication) {
    NAP_NODE_ALL_DATA entry = {};
    entry.overlay_size = sizeof(entry);
    memcpy(entry.node_name, indication.node_name, sizeof(entry.node_name));
    VGA_NODE *made = vga_init_vga_node(&entry);
    VGA_NODE *node = made != nullptr ? vga_insert_vga_node(made) : nullptr;
    if (node == nullptr) {
        VGA_EXIT(VGA_EXIT_INTERNAL, 0);
    }
    return node;
}

/* Whether a node is configured is not in the indication. */
NB_VOID entry_read(const VGA_PROCESS_STATE *work) {
    auto *node = static_cast<VGA_NODE *>(nba_validate_handle(work->user_data));
    VGA_LIST_POSITION last;
    if (node == nullptr || gvga_closing || work->vcb->primary_rc != NAP_OK ||
        vga_process_list(*vga_find_list(NAP_QUERY_NODE_ALL), nullptr, work->vcb, __LINE__, &last) ==
            0) {
        return;
    }
    if (node->node_state != NAP_NODE_UNCONFIGURED) {
        vga_start_build_node(node);
    }
}

NB_VOID look_whether_configured(VGA_NODE *node) {
    const auto *key = reinterpret_cast<const NB_UCHAR *>(node->name);
    vga_issue_list(*vga_find_list(NAP_QUERY_NODE_ALL), 0, {nullptr, nullptr, key, NAP_DETAIL},
                   node->handle, entry_read);
}

NB_VOID take_role(VGA_NODE *node, VGA_SERVER_ROLE role) {
    if (node->role == role) {
        return;
    }
    const NB_USHORT old = node->role;
    node->role = role;
    if (old == VGA_ROLE_MASTER || role == VGA_ROLE_MASTER) {
        leave_holder(0, role == VGA_ROLE_MASTER);
    }
    vga_node_list_changed(node, VGA_NODE_CHANGED);
}

NB_VOID server_came(const NAP_SERVER_INDICATION_VERB &indication) {
    VGA_NODE *node = find_node(indication);
    NB_USHORT unknown = node == nullptr;
    if (unknown && (node = add_node(indication)) == nullptr) {
        return;
    }
    if (unknown || (node->connection == VGA_NOT_CONNECTED && node->target == 0)) {
        vga_start_build_node(node);
    } else if (node->node_state == NAP_NODE_UNCONFIGURED) {
        look_whether_configured(node);
    }
    take_role(node, vga_role_of(indication.server_flags));
}

/* The only node of its domain was not there yet when the program came. */
NB_VOID only_node_came(const NAP_SERVER_INDICATION_VERB &indication) {
    VGA_NODE *node = find_node(indication);
    if (node != nullptr && node->connection == VGA_NOT_CONNECTED && node->lost_at == 0) {
        vga_start_build_node(node);
    }
}

/* Its role went with it: another server may have it already when it comes back. */
NB_VOID server_gone(const NAP_SERVER_INDICATION_VERB &indication) {
    VGA_NODE *node = find_node(indication);
    if (node == nullptr) {
        return;
    }
    if (node->role == VGA_ROLE_MASTER) {
        leave_holder(1, 0);
    }
    node->role = VGA_ROLE_NONE;
    if (node->target != 0 || node->connection != VGA_NOT_CONNECTED) {
        node_died(node);
    } else {
        vga_node_list_changed(node, VGA_NODE_CHANGED);
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
    if (nba_validate_handle(work->user_data) == nullptr || gvga_closing) {
        return;
    }
    NB_ULONG target = indication.target_handle;
    if (target != 0 && target == gvga_system->net_target) {
        free_network();
        read_network_again();
    } else if (indication.status == NAP_SYSTEM_FILE_CHANGED ||
               (target != 0 && target == gvga_system->domain_target)) {
        free_domain(indication.status != NAP_SYSTEM_FILE_CHANGED);
        read_domain_again();
    } else if (VGA_NODE *node = vga_find_node_of_target(target)) {
        node_died(node);
    }
}

NB_VOID vga_process_server_ind(const VGA_PROCESS_STATE *work) {
    auto indication = nap_copy<NAP_SERVER_INDICATION_VERB>(work->vcb);
    const bool single = gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] == 0;
    const bool came = indication.state == server_active;
    if (single && !came) {
        return;
    }
    auto follow = single ? only_node_came : came ? server_came : server_gone;
    follow(indication);
}

NB_VOID vga_process_sna_net_ind(const VGA_PROCESS_STATE *work) {
    if (nba_validate_handle(work->user_data) != nullptr) {
        free_network();
        read_network_again();
    }
}
