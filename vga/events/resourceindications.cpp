#include "resourceindications.h"
#include "globals.h"
#include "nbproblem.h"
#include "newresources.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include "vgadschk.h"
#include <algorithm>
#include <cstring>

namespace {

/* The opcodes that always are indications about resources, whether a class has them or not. */
constexpr NB_USHORT first_resource_opcode = 0x4002;
constexpr NB_USHORT last_resource_opcode = 0x401B;

/* A list that is being read, and a check that runs, have not met every resource yet. */
NB_VOID report_unknown(const VGA_NODE *node, const VGA_STATUS_CLASS &row,
                       const NAP_RESOURCE_INDICATION &indication) {
    if (node->class_work[row.id].checking || nba_is_silenced(NB_TRACE_RESOURCES)) {
        return;
    }
    nba_pd_print_exception(NB_PD_UNKNOWN_NAME, row.detail, "x ca", indication.opcode,
                           static_cast<NB_INT>(row.name_width), indication.key + row.name_offset);
}

/* A list that is still being read brings the resource with its state. */
NB_VOID record_missing(VGA_NODE *node, const VGA_STATUS_CLASS &row,
                       const NAP_RESOURCE_INDICATION &indication) {
    if (node->startup_status[row.chain]) {
        return;
    }
    if ((row.unknown & VGA_UNKNOWN_REPORT) != 0) {
        report_unknown(node, row, indication);
    }
    if ((row.unknown & VGA_UNKNOWN_READ) != 0 && !indication.deactivated) {
        vga_read_resource(node, row.query, indication.key);
    }
}

/* A PU of the node's dependent LU server is one that is reached through it. */
NB_USHORT fits(const VGA_STATUS_CLASS &row, const NB_VOID *record) {
    const auto *this_pu = static_cast<const VGA_LOCAL_PU *>(record);
    if (row.id == VGA_STATUS_DLUR_PU && this_pu->vcb->host_attachment != NAP_DLUR_ATTACHED) {
        v0_assert(__FILE__, __LINE__, "this_pu->vcb.host_attachment == NAP_DLUR_ATTACHED");
        return 0;
    }
    return 1;
}

NB_VOID apply(VGA_NODE *node, const VGA_STATUS_CLASS &row,
              const NAP_RESOURCE_INDICATION &indication) {
    NB_VOID *record = row.list().find(node, indication.key).record;
    if (record == nullptr) {
        record_missing(node, row, indication);
    } else if (!fits(row, record)) {
        return;
    } else if (indication.deactivated) {
        row.list().remove(node, indication.key);
    } else if (indication.det_length >= row.status().width ||
               !vga_start_check_one(node, row.id, indication.key)) {
        NB_USHORT length = std::min({row.status().width, indication.det_length,
                                     static_cast<NB_USHORT>(sizeof(indication.det_data))});
        row.change(record, indication.det_data, length);
    }
}

NB_USHORT always_here(NB_USHORT opcode) {
    return (opcode >= first_resource_opcode && opcode <= last_resource_opcode) ||
           opcode == NAP_TAMRIX_INDICATION;
}

} // namespace

NB_USHORT vga_indication_handler(const VGA_PROCESS_STATE *work) {
    const VGA_STATUS_CLASS *row = vga_find_status_class(work->vcb->opcode);
    NB_USHORT has_case = row != nullptr && row->indication == work->vcb->opcode;
    if (!has_case && !always_here(work->vcb->opcode)) {
        return 0;
    }
    auto *node = static_cast<VGA_NODE *>(nba_validate_handle(work->user_data));
    if (node == nullptr) {
        return 1;
    }
    if (!has_case) {
        v0_assert(gvga_unhandled_indication.file, gvga_unhandled_indication.line, "FALSE");
        return 1;
    }
    auto indication = nap_copy<NAP_RESOURCE_INDICATION>(work->vcb);
    if (indication.data_lost) {
        vga_start_check(node, row->id);
    } else {
        apply(node, *row, indication);
    }
    return 1;
}
