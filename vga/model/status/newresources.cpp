#include "newresources.h"
#include "hooks.h"
#include "listqueries.h"
#include "nbproblem.h"
#include "nofcopy.h"
#include <cstring>

namespace {

NB_VOID read_answered(const VGA_PROCESS_STATE *work);

NB_VOID ask(VGA_NODE *node, VGA_STATUS_ID id, const VGA_LIST_START &start) {
    const VGA_LIST &list = *vga_find_list(gvga_status_classes[id].query);
    node->class_work[id].reading = static_cast<NB_UCHAR>(
        vga_issue_list(list, node->target, start, node->handle, read_answered));
}

/* Adds what is not there yet.  An entry without an owner, or without memory, stays out; the list
 * reports the former. */
VGA_LIST_POSITION add_new(VGA_NODE *node, const VGA_STATUS_CLASS &row, const VGA_LIST &list,
                          const NAP_VCB *vcb) {
    VGA_LIST_POSITION last = {};
    vga_visit_entries(list, vcb, [&](const NB_UCHAR *entry) {
        const NB_UCHAR *key = entry + sizeof(NB_USHORT);
        last.received = 1;
        memcpy(last.key, key, list.key_length());
        if (row.find(node, key) != nullptr) {
            return;
        }
        if (list.add(node, entry) == VGA_ENTRY_NO_MEMORY) {
            nba_pd_print_exception(NB_PD_NO_MEMORY, 0, "x ca", row.indication,
                                   static_cast<NB_INT>(row.name_width), key + row.name_offset);
        } else if (NB_VOID *record = row.find(node, key)) {
            vga_record_changed(record, VGA_RECORD_ADDED);
        }
    });
    return last;
}

NB_VOID read_answered(const VGA_PROCESS_STATE *work) {
    auto *node = static_cast<VGA_NODE *>(nba_validate_handle(work->user_data));
    const VGA_STATUS_CLASS *row = vga_find_status_class(work->vcb->opcode);
    if (node == nullptr || node->target != work->target || row == nullptr) {
        return;
    }
    const VGA_LIST &list = *vga_find_list(row->query);
    VGA_CLASS_WORK &state = node->class_work[row->id];
    auto query = nap_copy<NAP_QUERY_LIST>(work->vcb);
    NB_USHORT one = (query.list_options & NAP_LIST_INCLUSIVE) != 0;
    NB_USHORT gone = query.secondary_rc == NAP_UNKNOWN_RESOURCE || vga_node_is_gone(work->vcb);
    if (query.primary_rc == NAP_OK) {
        VGA_LIST_POSITION last = add_new(node, *row, list, work->vcb);
        if (!one && vga_list_goes_on(list, work->vcb, last)) {
            ask(node, row->id, {nullptr, &last, nullptr, NAP_DETAIL});
            return;
        }
    } else if (!gone) {
        vga_report_failed_verb(work->vcb);
    }
    state.reading = 0;
    if (state.read_again && !vga_node_is_gone(work->vcb)) {
        state.read_again = 0;
        ask(node, row->id, {nullptr, nullptr, nullptr, NAP_DETAIL});
    }
}

} // namespace

NB_VOID vga_read_new_resource(VGA_NODE *node, VGA_STATUS_ID id, const NB_UCHAR *key) {
    VGA_CLASS_WORK &state = node->class_work[id];
    if (node->target == 0) {
        return;
    }
    if (state.reading) {
        state.read_again = 1;
        return;
    }
    ask(node, id, {nullptr, nullptr, key, NAP_DETAIL});
}
