#include "vgadschk.h"
#include "globals.h"
#include "listqueries.h"
#include "nofverbs.h"
#include <cstring>

namespace {

constexpr NB_CHAR module_name[] = "vgadschk";

struct CHECK {
    VGA_STATUS_ID id;
    VGA_COMPLETION completion;
    VGA_COMPLETION when_repeated; /* of a check that will be repeated; null: the same */
    VGA_COMPLETION one;           /* of a check of one resource; null: there is none */
};

constexpr CHECK checks[] = {
    {VGA_STATUS_DLC, vga_check_dlc, nullptr, nullptr},
    {VGA_STATUS_PORT, vga_check_port, nullptr, vga_check_one_port},
    {VGA_STATUS_LS, vga_check_ls, nullptr, nullptr},
    {VGA_STATUS_PU, vga_check_pu, nullptr, nullptr},
    {VGA_STATUS_DLUR_PU, vga_check_dlur_pu, nullptr, nullptr},
    {VGA_STATUS_DOWN_PU, vga_check_down_pu, nullptr, nullptr},
    {VGA_STATUS_DOWN_LU, vga_check_down_lu, nullptr, nullptr},
    {VGA_STATUS_LU62, vga_check_lu62, nullptr, vga_check_local_lu},
    {VGA_STATUS_LU03, vga_check_lu03, vga_lu03_wait_restart_check, nullptr},
    {VGA_STATUS_MODE, vga_check_mode, nullptr, nullptr},
    {VGA_STATUS_PLU, vga_check_plu, nullptr, nullptr},
    {VGA_STATUS_DIR, vga_check_dir, nullptr, nullptr},
    {VGA_STATUS_TAMRIX_SESS, vga_check_tamrix_sess, nullptr, nullptr},
};

static_assert([] {
    for (NB_USHORT id = 0; id < VGA_STATUS_CLASSES; id++) {
        if (checks[id].id != id) {
            return false;
        }
    }
    return std::size(checks) == VGA_STATUS_CLASSES;
}());

const VGA_LIST &list_of(VGA_STATUS_ID id) {
    return gvga_status_classes[id].list();
}

/* The node that a check is about; null when it, or the connection that was asked, has gone. */
VGA_NODE *checked_node(const VGA_PROCESS_STATE *work) {
    auto *node = static_cast<VGA_NODE *>(nba_validate_handle(work->user_data));
    return node != nullptr && node->target == work->target ? node : nullptr;
}

/* Asks for the entries behind `last`, or for all. */
NB_VOID ask(VGA_NODE *node, VGA_STATUS_ID id, const VGA_LIST_POSITION *last) {
    const CHECK &check = checks[id];
    NB_USHORT repeated = node->class_work[id].check_again && check.when_repeated != nullptr;
    VGA_LIST_START start = {nullptr, last, nullptr, NAP_DETAIL};
    if (vga_issue_list(list_of(id), node->target, start, node->handle,
                       repeated ? check.when_repeated : check.completion) == 0) {
        vga_request_exit(VGA_EXIT_INTERNAL, 0, module_name, __LINE__);
    }
}

/* Takes over the status of every entry that has a record; the position is that of the last one. */
VGA_LIST_POSITION take_over(VGA_NODE *node, VGA_STATUS_ID id, const NAP_VCB *vcb) {
    const VGA_STATUS_CLASS &row = gvga_status_classes[id];
    const VGA_LIST &list = list_of(id);
    VGA_LIST_POSITION last = {};
    vga_visit_entries(list, vcb, [&](const NB_UCHAR *entry) {
        const NB_UCHAR *key = entry + sizeof(NB_USHORT);
        NB_VOID *record = list.find(node, key).record;
        if (record != nullptr) {
            last.received = 1;
            memcpy(last.key, key, list.key_length());
            row.change(record, entry + row.status().offset, row.status().width);
        }
    });
    return last;
}

NB_USHORT answered_well(const NAP_VCB *vcb) {
    if (vcb->primary_rc != NAP_OK && !vga_node_is_gone(vcb)) {
        vga_report_failed_verb(vcb);
    }
    return vcb->primary_rc == NAP_OK;
}

NB_VOID check_answered(const VGA_PROCESS_STATE *work, VGA_STATUS_ID id) {
    VGA_NODE *node = checked_node(work);
    if (node == nullptr) {
        return;
    }
    VGA_CLASS_WORK &state = node->class_work[id];
    if (answered_well(work->vcb)) {
        VGA_LIST_POSITION last = take_over(node, id, work->vcb);
        if (last.received && vga_list_goes_on(list_of(id), work->vcb, last)) {
            ask(node, id, &last);
            return;
        }
    }
    NB_USHORT again = state.check_again && !vga_node_is_gone(work->vcb);
    state.checking = 0;
    state.check_again = 0;
    if (again) {
        vga_start_check(node, id);
    }
}

NB_VOID one_answered(const VGA_PROCESS_STATE *work, VGA_STATUS_ID id) {
    VGA_NODE *node = checked_node(work);
    if (node != nullptr && answered_well(work->vcb)) {
        take_over(node, id, work->vcb);
    }
}

} // namespace

NB_VOID vga_start_check(VGA_NODE *node, VGA_STATUS_ID id) {
    VGA_CLASS_WORK &state = node->class_work[id];
    if (node->target == 0) {
        return;
    }
    if (state.checking) {
        state.check_again = 1;
        return;
    }
    state.checking = 1;
    ask(node, id, nullptr);
}

NB_USHORT vga_start_check_one(VGA_NODE *node, VGA_STATUS_ID id, const NB_UCHAR *key) {
    if (node->target == 0 || checks[id].one == nullptr) {
        return 0;
    }
    VGA_LIST_START start = {nullptr, nullptr, key, NAP_DETAIL};
    if (vga_issue_list(list_of(id), node->target, start, node->handle, checks[id].one) == 0) {
        vga_request_exit(VGA_EXIT_INTERNAL, 0, module_name, __LINE__);
    }
    return 1;
}

NB_VOID vga_check_merged_status(VGA_NODE *node) {
    for (const VGA_STATUS_CLASS &row : gvga_status_classes) {
        if (row.kept_by_merge) {
            vga_start_check(node, row.id);
        }
    }
}

#define VGA_STARTER(name, id)                                                                      \
    NB_VOID vga_start_check_##name(VGA_NODE *node) {                                               \
        vga_start_check(node, id);                                                                 \
    }

VGA_STARTER(dlc, VGA_STATUS_DLC)
VGA_STARTER(port, VGA_STATUS_PORT)
VGA_STARTER(pu, VGA_STATUS_PU)
VGA_STARTER(dlur_pu, VGA_STATUS_DLUR_PU)
VGA_STARTER(down_pu, VGA_STATUS_DOWN_PU)
VGA_STARTER(down_lu, VGA_STATUS_DOWN_LU)
VGA_STARTER(lu62, VGA_STATUS_LU62)
VGA_STARTER(dir, VGA_STATUS_DIR)
VGA_STARTER(tamrix_sess, VGA_STATUS_TAMRIX_SESS)

#undef VGA_STARTER

#define VGA_CHECK(name, query, answered, id)                                                       \
    NB_VOID vga_##name(const VGA_PROCESS_STATE *work) {                                            \
        if (NB_HOLDS(module_name, work->vcb->opcode == query)) {                                   \
            answered(work, id);                                                                    \
        }                                                                                          \
    }

VGA_CHECK(check_dlc, NAP_QUERY_DLC, check_answered, VGA_STATUS_DLC)
VGA_CHECK(check_port, NAP_QUERY_PORT, check_answered, VGA_STATUS_PORT)
VGA_CHECK(check_one_port, NAP_QUERY_PORT, one_answered, VGA_STATUS_PORT)
VGA_CHECK(check_ls, NAP_QUERY_LS, check_answered, VGA_STATUS_LS)
VGA_CHECK(check_pu, NAP_QUERY_PU, check_answered, VGA_STATUS_PU)
VGA_CHECK(check_dlur_pu, NAP_QUERY_DLUR_PU, check_answered, VGA_STATUS_DLUR_PU)
VGA_CHECK(check_down_pu, NAP_QUERY_DOWNSTREAM_PU, check_answered, VGA_STATUS_DOWN_PU)
VGA_CHECK(check_down_lu, NAP_QUERY_DOWNSTREAM_LU, check_answered, VGA_STATUS_DOWN_LU)
VGA_CHECK(check_lu62, NAP_QUERY_LOCAL_LU, check_answered, VGA_STATUS_LU62)
VGA_CHECK(check_local_lu, NAP_QUERY_LOCAL_LU, one_answered, VGA_STATUS_LU62)
VGA_CHECK(check_lu03, NAP_QUERY_LU_0_TO_3, check_answered, VGA_STATUS_LU03)
VGA_CHECK(lu03_wait_restart_check, NAP_QUERY_LU_0_TO_3, check_answered, VGA_STATUS_LU03)
VGA_CHECK(check_mode, NAP_QUERY_MODE, check_answered, VGA_STATUS_MODE)
VGA_CHECK(check_plu, NAP_QUERY_PARTNER_LU, check_answered, VGA_STATUS_PLU)
VGA_CHECK(check_dir, NAP_QUERY_DIRECTORY_ENTRY, check_answered, VGA_STATUS_DIR)
VGA_CHECK(check_tamrix_sess, NAP_QUERY_TAMRIX_APPCIP, check_answered, VGA_STATUS_TAMRIX_SESS)

#undef VGA_CHECK
