/* Who names LUs and pools: TN3270 clients and downstream LUs.  The node deletes none that is named.
 */
#include "deletion.h"
#include "messages.h"
#include "recordtypes.h"
#include "schemas.h"
#include "vgadsutl.h"
#include <cstring>
#include <map>

namespace {

constexpr size_t name8 = 8;

using NAME = std::string; /* EBCDIC, as it stands in entries */

NAME name_at(const NB_UCHAR *name) {
    return NAME(reinterpret_cast<const NB_CHAR *>(name), name8);
}

/* What can be named, and downstream LUs, of one node: their items. */
struct OF_NODE {
    std::map<NAME, size_t> named;
    std::map<NAME, size_t> down_lus; /* by PU and LU */
};

std::map<NB_ULONG, OF_NODE> items_by_node(const VGA_DELETION &plan) {
    std::map<NB_ULONG, OF_NODE> nodes;
    for (size_t at = 0; at < plan.items.size(); at++) {
        const VGA_DELETION_ITEM &item = plan.items[at];
        const NB_UCHAR *key = item.entry + records::KEY_OFFSET;
        if (item.kind == VGA_DELETE_LU03) { /* behind its PU */
            nodes[item.node].named[name_at(key + name8)] = at;
        } else if (item.kind == VGA_DELETE_NODE_POOL) {
            nodes[item.node].named[name_at(key)] = at;
        } else if (item.kind == VGA_DELETE_DOWN_LU) {
            nodes[item.node].down_lus[name_at(key) + name_at(key + name8)] = at;
        }
    }
    return nodes;
}

/* The line stays with what is named. */
NB_VOID leave_alone(VGA_DELETION &plan, size_t at) {
    const VGA_DELETION_ITEM &item = plan.items[at];
    VGA_DELETION_LINE &line = plan.lines[item.line];
    const bool itself = at == line.item || vga_deletable_row(item.kind).message == 0;
    if (line.reason.empty()) {
        line.reason = itself ? vga_message(VGA_MSG_DELETE_IN_USE)
                             : vga_deletion_words(VGA_MSG_DELETE_NAMED_BELOW,
                                                  vga_kind_word(item.kind), item.name);
    }
    line.wanted = 0;
}

NB_VOID look_at_clients(VGA_DELETION &plan, const VGA_NODE &node, const OF_NODE &items) {
    vga_for_each(node.tn_sessions, &VGA_TN_SESS::node_links, [&](const VGA_TN_SESS &session) {
        for (const NAME &name :
             {name_at(session.vcb->display_lu_name), name_at(session.vcb->printer_lu_name)}) {
            if (const auto found = items.named.find(name); found != items.named.end()) {
                leave_alone(plan, found->second);
            }
        }
    });
}

NB_VOID look_at_down_lus(VGA_DELETION &plan, const VGA_NODE &node, const OF_NODE &items) {
    const auto look = [&](const VGA_DOWN_LU &lu) {
        const auto named = items.named.find(name_at(lu.vcb->def_data.host_lu_name));
        if (named == items.named.end()) {
            return;
        }
        const auto goes = items.down_lus.find(name_at(lu.vcb->dspu_name) + name_at(lu.name));
        if (goes != items.down_lus.end()) {
            plan.items[goes->second].refers = static_cast<NB_LONG>(named->second);
        } else {
            leave_alone(plan, named->second);
        }
    };
    vga_for_each(node.down_pus, &VGA_DOWN_PU::links, [&look](const VGA_DOWN_PU &pu) {
        vga_for_each(pu.lus, &VGA_DOWN_LU::links, look);
    });
}

} // namespace

NB_VOID vga_order_referrers(VGA_DELETION *plan) {
    for (const auto &[handle, items] : items_by_node(*plan)) {
        const auto *node = static_cast<const VGA_NODE *>(nba_validate_handle(handle));
        if (node != nullptr && !items.named.empty()) {
            look_at_clients(*plan, *node, items);
            look_at_down_lus(*plan, *node, items);
        }
    }
}
