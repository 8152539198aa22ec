#include "newresources.h"
#include "hooks.h"
#include "listqueries.h"
#include "nbproblem.h"
#include "nofcopy.h"
#include <cstring>

namespace {

NB_VOID read_answered(const VGA_PROCESS_STATE *work);

NB_USHORT asks_for_one(const NAP_VCB &vcb) {
    return (nap_copy<NAP_QUERY_LIST>(&vcb).list_options & NAP_LIST_INCLUSIVE) != 0;
}

NB_USHORT ask(VGA_NODE *node, const VGA_LIST &list, const VGA_LIST_START &start) {
    return vga_issue_list(list, node->target, start, node->handle, read_answered);
}

/* A merge leaves the status of some classes as it was. */
NB_VOID bring_status(VGA_NODE *node, const VGA_LIST &list, const NB_UCHAR *entry) {
    const VGA_STATUS_CLASS *row = vga_find_status_class(list.opcode);
    if (row != nullptr && row->kept_by_merge) {
        NB_VOID *record = list.find(node, entry + sizeof(NB_USHORT)).record;
        row->change(record, entry + row->status().offset, row->status().width);
    }
}

/* Adds or merges an entry that is not as its record has it.  One without an owner, or without
 * memory, stays out. */
NB_VOID take_entry(VGA_NODE *node, const VGA_LIST &list, const NB_UCHAR *entry) {
    const NB_UCHAR *key = entry + sizeof(NB_USHORT);
    const VGA_KNOWN before = list.find(node, key);
    NB_USHORT length;
    memcpy(&length, entry, sizeof(length));
    const NB_USHORT same = before.record != nullptr &&
                           memcmp(before.entry, entry, sizeof(length)) == 0 &&
                           memcmp(before.entry, entry, length) == 0;
    if (same) {
        return;
    }
    VGA_ENTRY_RESULT result = list.add(node, entry);
    if (result == VGA_ENTRY_NO_MEMORY) {
        nba_pd_print_exception(NB_PD_NO_MEMORY, 0, "x ca", list.opcode,
                               static_cast<NB_INT>(list.key_length()), key);
    } else if (result == VGA_ENTRY_SKIPPED) {
        vga_report_owner_missing(list, entry);
    } else if (NB_VOID *record = list.find(node, key).record) {
        bring_status(node, list, entry);
        vga_record_changed(record,
                           before.record != nullptr ? VGA_RECORD_CHANGED : VGA_RECORD_ADDED);
    }
}

VGA_LIST_POSITION take_entries(VGA_NODE *node, const VGA_LIST &list, const NAP_VCB *vcb) {
    VGA_LIST_POSITION last = {};
    vga_visit_entries(list, vcb, [&](const NB_UCHAR *entry) {
        last.received = 1;
        memcpy(last.key, entry + sizeof(NB_USHORT), list.key_length());
        take_entry(node, list, entry);
    });
    return last;
}

/* Of a class, what has come meanwhile is read with the whole list. */
NB_VOID reading_done(VGA_NODE *node, const VGA_LIST &list, NB_USHORT gone) {
    const VGA_STATUS_CLASS *row = vga_find_status_class(list.opcode);
    if (row == nullptr) {
        return;
    }
    VGA_CLASS_WORK &state = node->class_work[row->id];
    NB_USHORT again = state.read_again && !gone;
    state = {state.checking, state.check_again, 0, 0};
    if (again) {
        state.reading =
            static_cast<NB_UCHAR>(ask(node, list, {nullptr, nullptr, nullptr, NAP_DETAIL}));
    }
}

NB_VOID read_answered(const VGA_PROCESS_STATE *work) {
    auto *node = static_cast<VGA_NODE *>(nba_validate_handle(work->user_data));
    if (node == nullptr || node->target != work->target) {
        return;
    }
    const VGA_LIST &list = *vga_find_list(work->vcb->opcode);
    const VGA_LIST_POSITION last = vga_take_read(node, work->vcb);
    if (work->vcb->primary_rc == NAP_OK && !asks_for_one(*work->vcb) &&
        vga_list_goes_on(list, work->vcb, last)) {
        ask(node, list, {nullptr, &last, nullptr, NAP_DETAIL});
        return;
    }
    reading_done(node, list, vga_node_is_gone(work->vcb));
}

} // namespace

VGA_LIST_POSITION vga_take_read(VGA_NODE *node, const NAP_VCB *vcb) {
    const VGA_LIST &list = *vga_find_list(vcb->opcode);
    auto query = nap_copy<NAP_QUERY_LIST>(vcb);
    if (query.primary_rc == NAP_OK) {
        return take_entries(node, list, vcb);
    }
    if (query.secondary_rc == NAP_UNKNOWN_RESOURCE && asks_for_one(*vcb)) {
        list.remove(node, query.key);
    } else if (!vga_node_is_gone(vcb)) {
        vga_report_failed_verb(vcb);
    }
    return {};
}

NB_VOID vga_read_resource(VGA_NODE *node, NB_USHORT opcode, const NB_UCHAR *key) {
    const VGA_LIST &list = *vga_find_list(opcode);
    const VGA_STATUS_CLASS *row = vga_find_status_class(opcode);
    if (node->target == 0) {
        return;
    }
    if (row == nullptr) {
        ask(node, list, {nullptr, nullptr, key, NAP_DETAIL});
        return;
    }
    VGA_CLASS_WORK &state = node->class_work[row->id];
    if (state.reading) {
        state.read_again = 1;
    } else {
        state.reading = static_cast<NB_UCHAR>(ask(node, list, {nullptr, nullptr, key, NAP_DETAIL}));
    }
}

NB_VOID vga_read_untold(VGA_NODE *node) {
    if (node->target == 0 || !node->node_data.primary_support) {
        return;
    }
    for (NB_USHORT opcode : {NAP_QUERY_PRIMARY_LINE, NAP_QUERY_PRIMARY_LU0}) {
        ask(node, *vga_find_list(opcode), {nullptr, nullptr, nullptr, NAP_DETAIL});
    }
}
