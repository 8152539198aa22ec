/* Builds under one record: the lists that hang under a record that joined the model after the build
 * of its node, or that are to be read again. */
#include "buildsteps.h"
#include "listqueries.h"
#include "nofverbs.h"
#include "recordpattern.h"
#include "vgadsbld.h"
#include "vgadsdel.h"
#include "vganofbd.h"
#include <algorithm>
#include <array>
#include <type_traits>

namespace {

constexpr size_t most_lists = 3;

template <class Record> VGA_NODE *node_of(Record *record) {
    if constexpr (std::is_same_v<Record, VGA_NODE>) {
        return record;
    } else {
        return record->parent;
    }
}

template <class Record> const NB_UCHAR *name_of(const Record *record) {
    if constexpr (std::is_same_v<Record, VGA_NODE>) {
        return nullptr;
    } else {
        return record->name;
    }
}

/* What is read under a record of one type, list after list. */
template <class Record> struct BUILD {
    std::array<NB_USHORT, most_lists> lists = {}; /* opcodes; 0 ends */
    VGA_COMPLETION completion = nullptr;
    NB_ULONG (*target)(const VGA_NODE *node) = vga_node_target;
    /* By which the lists have the record as owner; null: the whole list. */
    const NB_UCHAR *(*owner)(const Record *record) = name_of<Record>;
    NB_VOID (*finished)(Record *record) = nullptr; /* null: nothing follows */
    NB_INT line = 0;                               /* of the row: what reports say */
};

constexpr BUILD<VGA_LU62> lu62_build = {
    .lists = {NAP_QUERY_PARTNER_LU, NAP_QUERY_MODE, NAP_QUERY_LU_LU_PASSWORD},
    .completion = vga_build_lu62,
    .owner = [](const VGA_LU62 *lu) -> const NB_UCHAR * { return lu->alias; },
    .line = __LINE__,
};
constexpr BUILD<VGA_LOCAL_PU> local_pu_build = {
    .lists = {NAP_QUERY_LU_0_TO_3},
    .completion = vga_build_local_pu,
    .line = __LINE__,
};
constexpr BUILD<VGA_DOWN_PU> down_pu_build = {
    .lists = {NAP_QUERY_DOWNSTREAM_LU},
    .completion = vga_build_down_pu,
    .line = __LINE__,
};
constexpr BUILD<VGA_CN> cn_build = {
    .lists = {NAP_QUERY_CN_PORT},
    .completion = vga_build_cn,
    .line = __LINE__,
};
constexpr BUILD<VGA_NODE> extra_data_build = {
    .lists = {NAP_QUERY_EXTRA_DATA},
    .completion = vga_build_extra_data,
    .line = __LINE__,
};
/* Nothing tells of RTP connections that come and go: those that a new list does not have are gone.
 */
NB_VOID drop_ended_conns(VGA_NODE *node) {
    vga_for_each(node->rtp_conns, &VGA_RTP_CONN::links, [](VGA_RTP_CONN &conn) {
        if (!conn.listed) {
            vga_record_changed(&conn, VGA_RECORD_GONE);
            vga_delete_vga_rtp_conn(&conn);
        }
    });
}

constexpr BUILD<VGA_NODE> rtp_build = {
    .lists = {NAP_QUERY_RTP_CONNECTION},
    .completion = vga_build_rtp_conns,
    .finished = drop_ended_conns,
    .line = __LINE__,
};
constexpr BUILD<VGA_NODE> tp_load_build = {
    .lists = {NAP_QUERY_TP_LOAD_INFO},
    .completion = vga_build_tp_load_info,
    .target = [](const VGA_NODE *node) { return node->tp_target; },
    .line = __LINE__,
};

template <class Record>
NB_VOID issue(const BUILD<Record> &build, Record *record, NB_USHORT opcode,
              const VGA_LIST_POSITION *last) {
    VGA_LIST_START start = {build.owner(record), last, nullptr, NAP_DETAIL};
    if (vga_issue_list(*vga_find_list(opcode), build.target(node_of(record)), start, record->handle,
                       build.completion) == 0) {
        VGA_BUILD_EXIT_AT(build.line);
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
    if (vga_process_list(list, node_of(record), work->vcb, build.line, &last) == 0) {
        return;
    }
    if (vga_list_goes_on(list, work->vcb, last)) {
        issue(build, record, list.opcode, &last);
        return;
    }
    auto next = std::find(build.lists.begin(), build.lists.end(), list.opcode);
    if (next != build.lists.end() && ++next != build.lists.end() && *next != 0) {
        issue(build, record, *next, nullptr);
    } else if (build.finished != nullptr) {
        build.finished(record);
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

NB_VOID vga_start_build_rtp_conns(VGA_NODE *node) {
    if (node != nullptr) {
        vga_purge_verb_queue(node->target, NAP_QUERY_RTP_CONNECTION, nullptr, 0,
                             vga_build_rtp_conns);
        vga_for_each(node->rtp_conns, &VGA_RTP_CONN::links,
                     [](VGA_RTP_CONN &conn) { conn.listed = 0; });
    }
    start(rtp_build, node, "node != NULL");
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
NB_VOID vga_build_rtp_conns(const VGA_PROCESS_STATE *work) {
    answered(rtp_build, work);
}
