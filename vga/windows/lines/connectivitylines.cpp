#include "linecolumns.h"
#include "nodewindowlines.h"
#include <cstring>

namespace {

using records::field;
using records::item_field;

/* The connectivity list: name, status, what it is or leads to, address, description. */

constexpr NB_USHORT status_stop = 26;
constexpr NB_USHORT kind_stop = 42;
constexpr NB_USHORT address_stop = 57;
constexpr NB_USHORT last_stop = 75;

/* Downstream LUs. */

NB_VOID down_lu_status(const VGA_DOWN_LU &record, NB_CHAR *text) {
    const NAP_DOWN_LU_DET &det = record.vcb->det_data;
    vga_write_lu_status(det.plu_sess_active, det.lu_sscp_sess_active, text);
}

/* The host LU that carries it now, else the LU or pool that it is to take one from. */
NB_VOID down_lu_host(const VGA_DOWN_LU &record, NB_CHAR *text) {
    const NAP_DOWN_LU_DATA *entry = record.vcb;
    vga_write_field({.field = &field(records::down_lu, "used_lu_name")}, entry, text);
    if (text[0] == '\0') {
        vga_write_field({.field = &field(records::down_lu, "host_lu_name")}, entry, text);
    }
}

/* The application while there is one, else the description. */
NB_VOID down_lu_application(const VGA_DOWN_LU &record, NB_CHAR *text) {
    const NAP_DOWN_LU_DATA *entry = record.vcb;
    vga_write_field({.field = &field(records::down_lu, "plu_name")}, entry, text);
    if (text[0] == '\0') {
        vga_write_field({.field = &field(records::down_lu, "description")}, entry, text);
    }
}

constexpr VGA_LINE_COLUMN down_lu_columns[] = {
    {.heading = VGA_MSG_HEAD_LU, .field = &field(records::down_lu, "name")},
    {.stop = status_stop, .heading = VGA_MSG_HEAD_STATUS, .write = vga_written<down_lu_status>},
    {.stop = kind_stop, .heading = VGA_MSG_HEAD_HOST_LU, .write = vga_written<down_lu_host>},
    {.stop = address_stop,
     .heading = VGA_MSG_HEAD_NAU_ADDRESS,
     .field = &field(records::down_lu, "nau_address"),
     .label = VGA_MSG_LABEL_NAU},
    {.stop = last_stop,
     .heading = VGA_MSG_HEAD_APPLICATION,
     .write = vga_written<down_lu_application>},
};

/* Primary lines and the LUs on them. */

constexpr VGA_LINE_COLUMN primary_line_columns[] = {
    {.heading = VGA_MSG_HEAD_LINE, .field = &field(records::primary_line, "name")},
    {.stop = status_stop,
     .heading = VGA_MSG_HEAD_STATUS,
     .field = &field(records::primary_line, "line_state")},
    {.stop = kind_stop,
     .heading = VGA_MSG_HEAD_TYPE,
     .field = &field(records::primary_line, "line_type")},
    {.stop = address_stop,
     .heading = VGA_MSG_HEAD_DEVICE,
     .field = &field(records::primary_line, "device")},
    {.stop = last_stop,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::primary_line, "description")},
};

NB_VOID primary_lu0_status(const VGA_PRIMARY_LU0 &record, NB_CHAR *text) {
    const NAP_PRIMARY_LU0_DATA &entry = *record.vcb;
    if (entry.appl_conn_active && !entry.lu_sess_active) {
        vga_write_word(VGA_MSG_OPEN, text);
    } else {
        vga_write_lu_status(entry.lu_sess_active, false, text);
    }
}

NB_VOID primary_lu0_address(const VGA_PRIMARY_LU0 &record, NB_CHAR *text) {
    const NAP_PRIMARY_LU0_DATA &entry = *record.vcb;
    vga_print_msg(text, VGA_CELL_SIZE, VGA_MSG_LABEL_STATION_NAU, "l l",
                  NB_LONG{entry.def_data.station_address}, NB_LONG{entry.def_data.nau_address});
}

constexpr VGA_LINE_COLUMN primary_lu0_columns[] = {
    {.heading = VGA_MSG_HEAD_LU, .field = &field(records::primary_lu0, "name")},
    {.stop = status_stop, .heading = VGA_MSG_HEAD_STATUS, .write = vga_written<primary_lu0_status>},
    {.stop = kind_stop,
     .heading = VGA_MSG_HEAD_PROGRAM,
     .field = &field(records::primary_lu0, "plu_name"),
     .none = VGA_MSG_ANY_PROGRAM},
    {.stop = address_stop,
     .heading = VGA_MSG_HEAD_STATION_NAU,
     .write = vga_written<primary_lu0_address>},
    {.stop = last_stop,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::primary_lu0, "description")},
};

/* Routing of a local LU's partners to link stations, in the list of local LUs. */

/* A wildcard stands for all names that begin so, or for all. */
NB_VOID routed_partner(const VGA_LS_ROUTING &record, NB_CHAR *text) {
    const NAP_LS_ROUTING_DATA *entry = record.vcb;
    vga_write_field({.field = &field(records::ls_routing, "name")}, entry, text);
    const NB_UCHAR wildcard = entry->def_data.wildcard;
    if (wildcard == NAP_DIR_WILDCARD_FULL) {
        vga_write_word(VGA_MSG_ANY_PARTNER, text);
    } else if (wildcard == NAP_DIR_WILDCARD_PARTIAL) {
        strcat(text, "*"); // a name of 17 bytes leaves room
    }
}

constexpr VGA_LINE_COLUMN ls_r_columns[] = {
    {.heading = VGA_MSG_HEAD_ROUTING, .write = vga_written<routed_partner>},
    {.stop = 44,
     .heading = VGA_MSG_HEAD_LINK_STATION,
     .field = &field(records::ls_routing, "ls_name")},
    {.stop = 57,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::ls_routing, "description")},
};

/* RTP connections. */

constexpr VGA_LINE_COLUMN rtp_conn_columns[] = {
    {.heading = VGA_MSG_HEAD_CONNECTION, .field = &field(records::rtp_conn, "name")},
    {.stop = 12,
     .heading = VGA_MSG_HEAD_STATUS,
     .field = &field(records::rtp_conn, "connect_state")},
    {.stop = 25,
     .heading = VGA_MSG_HEAD_REMOTE_NODE,
     .field = &field(records::rtp_conn, "dest_cp_name")},
    {.stop = 44,
     .heading = VGA_MSG_HEAD_LINK_STATION,
     .field = &field(records::rtp_conn, "first_hop_ls_name")},
    {.stop = 57, .heading = VGA_MSG_HEAD_COS, .field = &field(records::rtp_conn, "cos_name")},
    {.stop = 66, .heading = VGA_MSG_HEAD_SESSIONS, .field = &field(records::rtp_conn, "sessions")},
    {.stop = 77, .heading = VGA_MSG_HEAD_ROUTE, .field = &field(records::rtp_conn, "route")},
};

/* Ranges of LUs of a template for downstream PUs. */

NB_VOID dslu_range(const VGA_DSLU_TEMPLATE &record, NB_CHAR *text) {
    const NAP_DSLU_TEMPLATE &range = *record.vcb;
    vga_print_msg(text, VGA_CELL_SIZE, VGA_MSG_LABEL_NAU_RANGE, "l l", NB_LONG{range.min_nau},
                  NB_LONG{range.max_nau});
}

NB_VOID dslu_logon(const VGA_DSLU_TEMPLATE &record, NB_CHAR *text) {
    if (record.vcb->delayed_logon) {
        vga_write_word(VGA_MSG_DELAYED_LOGON, text);
    }
}

constexpr VGA_LINE_COLUMN dslu_template_columns[] = {
    {.heading = VGA_MSG_HEAD_NAU_RANGE, .write = vga_written<dslu_range>},
    {.stop = 18,
     .heading = VGA_MSG_HEAD_HOST_LU,
     .field = &item_field(records::dspu_template, "host_lu_name")},
    {.stop = 28,
     .heading = VGA_MSG_HEAD_TIME_OUT,
     .field = &item_field(records::dspu_template, "allow_timeout"),
     .none = VGA_MSG_HELD,
     .other = VGA_MSG_TIMES_OUT},
    {.stop = 46, .heading = VGA_MSG_HEAD_LOGON, .write = vga_written<dslu_logon>},
};

} // namespace

VGA_LINE_TEXT(down_lu, VGA_VIEWER_DOWN_LU, VGA_DOWN_LU)
VGA_SAME_ICON(down_lu, VGA_ICON_LU03)

VGA_TITLE_TEXT(vga_nodew_create_ls_r_title_viewer_text, VGA_VIEWER_LS_R_TITLE, ls_r_columns)
NB_USHORT vga_nodew_choose_ls_r_title_viewer_icon(NB_VOID *) {
    return VGA_ICON_LSRT;
}
VGA_LINE_TEXT(ls_r, VGA_VIEWER_LS_R, VGA_LS_ROUTING)
VGA_SAME_ICON(ls_r, VGA_ICON_LSR)

VGA_LINE_TEXT(primary_line, VGA_VIEWER_PRIMARY_LINE, VGA_PRIMARY_LINE)
VGA_SAME_ICON(primary_line, VGA_ICON_PORTSDLC)
VGA_LINE_TEXT(primary_lu0, VGA_VIEWER_PRIMARY_LU0, VGA_PRIMARY_LU0)
VGA_SAME_ICON(primary_lu0, VGA_ICON_LU03)

VGA_TITLE_TEXT(vga_hprw_create_rtp_conn_title_viewer_text, VGA_VIEWER_RTP_CONN_TITLE,
               rtp_conn_columns)
VGA_LINE_TEXT(rtp_conn, VGA_VIEWER_RTP_CONN, VGA_RTP_CONN)
VGA_SAME_ICON(rtp_conn, VGA_ICON_RTPCONN)

VGA_LINE_TEXT(dslu_template, VGA_VIEWER_DSLU_TEMPLATE, VGA_DSLU_TEMPLATE)
VGA_SAME_ICON(dslu_template, VGA_ICON_LU03)
