/* Builds under one record: the lists that hang under a record that joined the model after the build
 * of its node, or that are to be read again. */
#include "buildsteps.h"
#include "listqueries.h"
#include "vgadsbld.h"
#include "vganofbd.h"
#include <algorithm>
#include <array>

namespace {

constexpr size_t most_lists = 3;

/* What is read under a record of one type, list after list. */
template <class Record> struct BUILD {
    std::array<NB_USHORT, most_lists> lists; /* opcodes; 0 ends */
    VGA_NODE *(*node)(Record *record);
    NB_ULONG (*target)(const VGA_NODE *node);
    const NB_UCHAR *(*owner)(const Record *record); /* its name; null: the whole list */
    VGA_COMPLETION completion;
};

NB_ULONG node_target(const VGA_NODE *node) {
    return node->target;
}
NB_ULONG tp_target(const VGA_NODE *node) {
    return node->tp_target;
}

template <class Record> VGA_NODE *parent_node(Record *record) {
    return record->parent;
}
VGA_NODE *the_node(VGA_NODE *node) {
    return node;
}

template <class Record> const NB_UCHAR *name_of(const Record *record) {
    return record->name;
}
const NB_UCHAR *alias_of(const VGA_LU62 *lu) {
    return lu->alias;
}
const NB_UCHAR *nobody(const VGA_NODE *) {
    return nullptr;
}

constexpr BUILD<VGA_LU62> lu62_build = {
    {NAP_QUERY_PARTNER_LU, NAP_QUERY_MODE, NAP_QUERY_LU_LU_PASSWORD},
    parent_node<VGA_LU62>,
    node_target,
    alias_of,
    vga_build_lu62};
constexpr BUILD<VGA_LOCAL_PU> local_pu_build = {{NAP_QUERY_LU_0_TO_3},
                                                parent_node<VGA_LOCAL_PU>,
                                                node_target,
                                                name_of<VGA_LOCAL_PU>,
                                                vga_build_local_pu};
constexpr BUILD<VGA_DOWN_PU> down_pu_build = {{NAP_QUERY_DOWNSTREAM_LU},
                                              parent_node<VGA_DOWN_PU>,
                                              node_target,
                                              name_of<VGA_DOWN_PU>,
                                              vga_build_down_pu};
constexpr BUILD<VGA_CN> cn_build = {
    {NAP_QUERY_CN_PORT}, parent_node<VGA_CN>, node_target, name_of<VGA_CN>, vga_build_cn};
constexpr BUILD<VGA_NODE> extra_data_build = {
    {NAP_QUERY_EXTRA_DATA}, the_node, node_target, nobody, vga_build_extra_data};
constexpr BUILD<VGA_NODE> tp_load_build = {
    {NAP_QUERY_TP_LOAD_INFO}, the_node, tp_target, nobody, vga_build_tp_load_info};

template <class Record>
NB_VOID issue(const BUILD<Record> &build, Record *record, NB_USHORT opcode,
              const VGA_LIST_POSITION *last) {
    VGA_LIST_START start = {build.owner(record), last, nullptr, NAP_DETAIL};
    if (vga_issue_list(*vga_find_list(opcode), build.target(build.node(record)), start,
                       record->handle, build.completion) == 0) {
        VGA_BUILD_EXIT();
    }
}

/* `holds` says in the log what a null record breaks. */
template <class Record>
NB_VOID start(const BUILD<Record> &build, Record *record, const NB_CHAR *holds) {
    if (record == nullptr) {
        v0_assert(__FILE__, __LINE__, holds);
        return;
    }
    issue(build, record, build.lists[0], nullptr);
}

/* The record, or its node, may have gone meanwhile. */
template <class Record>
NB_VOID answered(const BUILD<Record> &build, const VGA_PROCESS_STATE *work) {
    auto *record = static_cast<Record *>(nba_validate_handle(work->user_data));
    if (record == nullptr || vga_node_is_gone(work->vcb)) {
        return;
    }
    const VGA_LIST &list = *vga_find_list(work->vcb->opcode);
    VGA_LIST_POSITION last;
    if (vga_process_list(list, build.node(record), work->vcb, &last) == 0) {
        return;
    }
    if (vga_list_goes_on(list, work->vcb, last)) {
        issue(build, record, list.opcode, &last);
        return;
    }
    auto next = std::find(build.lists.begin(), build.lists.end(), list.opcode);
    if (next != build.lists.end() && ++next != build.lists.end() && *next != 0) {
        issue(build, record, *next, nullptr);
    }
}

} // namespace

NB_VOID vga_start_build_lu62(VGA_LU62 *this_lu) {
    start(lu62_build, this_lu, "this_lu != NULL");
}

NB_VOID vga_start_build_local_pu(VGA_LOCAL_PU *this_pu) {
    start(local_pu_build, this_pu, "this_pu != NULL");
}

NB_VOID vga_start_build_down_pu(VGA_DOWN_PU *this_pu) {
    start(down_pu_build, this_pu, "this_pu != NULL");
}

NB_VOID vga_start_build_cn(VGA_CN *this_cn) {
    start(cn_build, this_cn, "this_cn != NULL");
}

NB_VOID vga_start_build_extra_data(VGA_NODE *node) {
    start(extra_data_build, node, "node != NULL");
}

NB_VOID vga_start_build_tp_load_info(VGA_NODE *node) {
    if (node == nullptr || node->tp_target != 0) {
        start(tp_load_build, node, "node != NULL");
    }
}

NB_VOID vga_build_lu62(const VGA_PROCESS_STATE *work) {
    answered(lu62_build, work);
}
NB_VOID vga_build_local_pu(const VGA_PROCESS_STATE *work) {
    answered(local_pu_build, work);
}
NB_VOID vga_build_down_pu(const VGA_PROCESS_STATE *work) {
    answered(down_pu_build, work);
}
NB_VOID vga_build_cn(const VGA_PROCESS_STATE *work) {
    answered(cn_build, work);
}
NB_VOID vga_build_extra_data(const VGA_PROCESS_STATE *work) {
    answered(extra_data_build, work);
}
NB_VOID vga_build_tp_load_info(const VGA_PROCESS_STATE *work) {
    answered(tp_load_build, work);
}
