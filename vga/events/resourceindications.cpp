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

constexpr NB_CHAR module_name[] = "vgaindct";

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

/* A list that is still being read brings the resource with its state; one that is gone may have
 * been taken out already, with the copy of the verb that deleted it. */
NB_VOID record_missing(VGA_NODE *node, const VGA_STATUS_CLASS &row,
                       const NAP_RESOURCE_INDICATION &indication) {
    if (node->startup_status[row.chain] || indication.deactivated) {
        return;
    }
    if ((row.unknown & VGA_UNKNOWN_REPORT) != 0) {
        report_unknown(node, row, indication);
    }
    if ((row.unknown & VGA_UNKNOWN_READ) != 0) {
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

/* What every class has in common. */
NB_VOID process(const VGA_PROCESS_STATE *state, VGA_STATUS_ID id) {
    auto *node = static_cast<VGA_NODE *>(nba_validate_handle(state->user_data));
    if (node == nullptr) {
        return;
    }
    auto indication = nap_copy<NAP_RESOURCE_INDICATION>(state->vcb);
    if (indication.data_lost) {
        vga_start_check(node, id);
    } else {
        apply(node, gvga_status_classes[id], indication);
    }
}

} // namespace

#define VGA_CLASS(name, id, indication)                                                            \
    NB_VOID vga_process_##name##_ind(const VGA_PROCESS_STATE *state) {                             \
        const NAP_VCB *vcb = state->vcb;                                                           \
        if (NB_HOLDS(module_name, vcb->opcode == indication)) {                                    \
            process(state, id);                                                                    \
        }                                                                                          \
    }

VGA_CLASS(dlc, VGA_STATUS_DLC, NAP_DLC_INDICATION)
VGA_CLASS(port, VGA_STATUS_PORT, NAP_PORT_INDICATION)
VGA_CLASS(ls, VGA_STATUS_LS, NAP_LS_INDICATION)
VGA_CLASS(pu, VGA_STATUS_PU, NAP_PU_INDICATION)
VGA_CLASS(dlur_pu, VGA_STATUS_DLUR_PU, NAP_DLUR_PU_INDICATION)
VGA_CLASS(down_pu, VGA_STATUS_DOWN_PU, NAP_DOWNSTREAM_PU_INDICATION)
VGA_CLASS(down_lu, VGA_STATUS_DOWN_LU, NAP_DOWNSTREAM_LU_INDICATION)
VGA_CLASS(local_lu, VGA_STATUS_LU62, NAP_LOCAL_LU_INDICATION)
VGA_CLASS(lu03, VGA_STATUS_LU03, NAP_LU_0_TO_3_INDICATION)
VGA_CLASS(mode, VGA_STATUS_MODE, NAP_MODE_INDICATION)
VGA_CLASS(plu, VGA_STATUS_PLU, NAP_PLU_INDICATION)
VGA_CLASS(dir, VGA_STATUS_DIR, NAP_DIRECTORY_INDICATION)
VGA_CLASS(tamrix, VGA_STATUS_TAMRIX_SESS, NAP_TAMRIX_INDICATION)

#undef VGA_CLASS

namespace {

struct PROCESSOR {
    VGA_STATUS_ID id;
    NB_VOID (*process)(const VGA_PROCESS_STATE *state);
};

constexpr PROCESSOR processors[] = {
    {VGA_STATUS_DLC, vga_process_dlc_ind},
    {VGA_STATUS_PORT, vga_process_port_ind},
    {VGA_STATUS_LS, vga_process_ls_ind},
    {VGA_STATUS_PU, vga_process_pu_ind},
    {VGA_STATUS_DLUR_PU, vga_process_dlur_pu_ind},
    {VGA_STATUS_DOWN_PU, vga_process_down_pu_ind},
    {VGA_STATUS_DOWN_LU, vga_process_down_lu_ind},
    {VGA_STATUS_LU62, vga_process_local_lu_ind},
    {VGA_STATUS_LU03, vga_process_lu03_ind},
    {VGA_STATUS_MODE, vga_process_mode_ind},
    {VGA_STATUS_PLU, vga_process_plu_ind},
    {VGA_STATUS_DIR, vga_process_dir_ind},
    {VGA_STATUS_TAMRIX_SESS, vga_process_tamrix_ind},
};

/* VGA_STATUS_ID is the index. */
static_assert([] {
    for (NB_USHORT id = 0; id < VGA_STATUS_CLASSES; id++) {
        if (processors[id].id != id) {
            return false;
        }
    }
    return std::size(processors) == VGA_STATUS_CLASSES;
}());

} // namespace

NB_USHORT vga_is_resource_indication(NB_USHORT opcode) {
    return (opcode >= first_resource_opcode && opcode <= last_resource_opcode) ||
           opcode == NAP_TAMRIX_INDICATION;
}

NB_VOID vga_indication_handler(const VGA_PROCESS_STATE *state) {
    if (nba_validate_handle(state->user_data) == nullptr) {
        return;
    }
    const VGA_STATUS_CLASS *row = vga_find_status_class(state->vcb->opcode);
    if (row != nullptr && row->indication == state->vcb->opcode) {
        processors[row->id].process(state);
    } else {
        v0_assert(gvga_unhandled_indication.file, gvga_unhandled_indication.line, "FALSE");
    }
}
