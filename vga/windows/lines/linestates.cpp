#include "linestates.h"
#include "model.h"
#include "nodewindowlines.h"

namespace {

template <class Record> const Record &as(const NB_VOID *record) {
    return *static_cast<const Record *>(record);
}

VGA_LINE_STATE of_words(NB_ULONG state) {
    switch (state) {
    case NAP_NOT_ACTIVE:
        return VGA_LINE_INACTIVE;
    case NAP_ACTIVE:
    case NAP_SSCP_ACTIVE:
    case NAP_IN_SESSION:
        return VGA_LINE_ACTIVE;
    case NAP_PENDING_ACTIVE:
    case NAP_PENDING_INACTIVE:
    case NAP_RESETTING:
        return VGA_LINE_CHANGING;
    default:
        return VGA_LINE_NO_STATE;
    }
}

/* The node forgets the failure when an operator stops the resource. */
VGA_LINE_STATE of_link(NB_ULONG state, NB_ULONG failed_at) {
    return state == NAP_NOT_ACTIVE && failed_at != 0 ? VGA_LINE_FAILED : of_words(state);
}

VGA_LINE_STATE of_lu(bool up) {
    return up ? VGA_LINE_ACTIVE : VGA_LINE_INACTIVE;
}

} // namespace

/* Title lines are ports without an entry. */
VGA_LINE_STATE vga_port_line_state(const NB_VOID *record) {
    const NAP_PORT_DATA *entry = as<VGA_PORT>(record).vcb;
    return entry != nullptr ? of_link(entry->det_data.port_state, entry->det_data.failed_at)
                            : VGA_LINE_NO_STATE;
}

VGA_LINE_STATE vga_ls_line_state(const NB_VOID *record) {
    const auto &ls = as<VGA_LS>(record);
    return of_link(ls.state, ls.vcb->det_data.failed_at);
}

VGA_LINE_STATE vga_local_pu_line_state(const NB_VOID *record) {
    return of_words(as<VGA_LOCAL_PU>(record).vcb->pu_sscp_sess_active);
}

VGA_LINE_STATE vga_deplu_line_state(const NB_VOID *record) {
    const NAP_LU03_DET &det = as<VGA_LU03>(record).vcb->det_data;
    return of_lu(det.plu_sess_active || det.appl_conn_active || det.lu_sscp_sess_active);
}

VGA_LINE_STATE vga_down_lu_line_state(const NB_VOID *record) {
    const NAP_DOWN_LU_DET &det = as<VGA_DOWN_LU>(record).vcb->det_data;
    return of_lu(det.plu_sess_active || det.lu_sscp_sess_active);
}

VGA_LINE_STATE vga_primary_line_line_state(const NB_VOID *record) {
    return of_words(as<VGA_PRIMARY_LINE>(record).vcb->line_state);
}

VGA_LINE_STATE vga_primary_lu0_line_state(const NB_VOID *record) {
    const NAP_PRIMARY_LU0_DATA &entry = *as<VGA_PRIMARY_LU0>(record).vcb;
    return of_lu(entry.lu_sess_active || entry.appl_conn_active);
}

VGA_LINE_STATE vga_rtp_conn_line_state(const NB_VOID *record) {
    const NB_ULONG state = as<VGA_RTP_CONN>(record).vcb->connect_state;
    return state == NAP_RTP_CONNECTED ? VGA_LINE_ACTIVE : VGA_LINE_CHANGING;
}

/* A node that ought to be there, and that no verb reaches. */
VGA_LINE_STATE vga_node_line_state(const NB_VOID *record) {
    const auto &node = as<VGA_NODE>(record);
    if (node.connection == VGA_NOT_CONNECTED) {
        return VGA_LINE_FAILED;
    }
    if (node.connection == VGA_CONNECTING) {
        return VGA_LINE_CHANGING;
    }
    switch (node.node_state) {
    case NAP_NODE_ACTIVE:
        return VGA_LINE_ACTIVE;
    case NAP_NODE_STARTING:
    case NAP_NODE_STOPPING:
        return VGA_LINE_CHANGING;
    case NAP_NODE_BACK_LEVEL:
        return VGA_LINE_NO_STATE;
    default:
        return VGA_LINE_INACTIVE;
    }
}

VGA_LINE_STATE vga_pool_lu_line_state(const NB_VOID *record) {
    const auto &entry = *as<VGA_POOL_LU>(record).vcb;
    return of_lu(entry.lu_in_use || entry.lu_active);
}

VGA_LINE_STATE vga_ustad_line_state(const NB_VOID *record) {
    return of_words(as<VGA_USER_STATUS>(record).status);
}

VGA_LINE_STATE vga_appcip_sess_line_state(const NB_VOID *record) {
    return of_words(as<VGA_TAMRIX_APPCIP_SESS>(record).vcb->session_state);
}
