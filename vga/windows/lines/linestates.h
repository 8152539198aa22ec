/* The state of lines: one function a viewer type that has any.  `record` is the line's. */
#ifndef LINESTATES_H
#define LINESTATES_H

#include "linestate.h"
#include "linetypes.h"

VGA_LINE_STATE vga_port_line_state(const NB_VOID *record);
VGA_LINE_STATE vga_ls_line_state(const NB_VOID *record);
VGA_LINE_STATE vga_local_pu_line_state(const NB_VOID *record);
VGA_LINE_STATE vga_deplu_line_state(const NB_VOID *record);
VGA_LINE_STATE vga_down_lu_line_state(const NB_VOID *record);
VGA_LINE_STATE vga_primary_line_line_state(const NB_VOID *record);
VGA_LINE_STATE vga_primary_lu0_line_state(const NB_VOID *record);
VGA_LINE_STATE vga_rtp_conn_line_state(const NB_VOID *record);
VGA_LINE_STATE vga_node_line_state(const NB_VOID *record);
VGA_LINE_STATE vga_pool_lu_line_state(const NB_VOID *record);
VGA_LINE_STATE vga_ustad_line_state(const NB_VOID *record);
VGA_LINE_STATE vga_appcip_sess_line_state(const NB_VOID *record);

struct VGA_STATE_OF_LINE {
    VGA_VIEWER_TYPE type;
    VGA_LINE_STATE (*state)(const NB_VOID *record);
};
inline constexpr VGA_STATE_OF_LINE gvga_line_states[] = {
    {VGA_VIEWER_PORT, vga_port_line_state},
    {VGA_VIEWER_LS, vga_ls_line_state},
    {VGA_VIEWER_LS_LEAF, vga_ls_line_state},
    {VGA_VIEWER_LOCAL_PU, vga_local_pu_line_state},
    {VGA_VIEWER_DEPLU, vga_deplu_line_state},
    {VGA_VIEWER_DOWN_LU, vga_down_lu_line_state},
    {VGA_VIEWER_PRIMARY_LINE, vga_primary_line_line_state},
    {VGA_VIEWER_PRIMARY_LU0, vga_primary_lu0_line_state},
    {VGA_VIEWER_RTP_CONN, vga_rtp_conn_line_state},
    {VGA_VIEWER_NODE, vga_node_line_state},
    {VGA_VIEWER_POOL_LU, vga_pool_lu_line_state},
    {VGA_VIEWER_USTAD, vga_ustad_line_state},
    {VGA_VIEWER_APPCIP_SESS, vga_appcip_sess_line_state},
};

#endif
