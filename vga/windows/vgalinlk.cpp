#include "vgalincl.h"
#include "vgalinrs.h"
#include <cstring>

namespace {

/* The connectivity list: name, status, what it is or leads to, address, description. */

constexpr NB_USHORT status_stop = 26;
constexpr NB_USHORT kind_stop = 39;
constexpr NB_USHORT address_stop = 54;
constexpr NB_USHORT last_stop = 72;

/* Downstream LUs. */

NB_VOID down_lu_status(const VGA_DOWN_LU &record, NB_CHAR *text) {
    NAP_DOWN_LU_DET det = record.vcb->det_data;
    NB_ULONG status = det.plu_sess_active       ? NAP_IN_SESSION
                      : det.lu_sscp_sess_active ? NAP_SSCP_ACTIVE
                                                : NAP_NOT_ACTIVE;
    vga_write_word(vga_find_word(gvga_status_words, status, VGA_MSG_UNKNOWN_STATUS), text);
}

/* The host LU that carries it now, else the LU or pool that it is to take one from. */
NB_VOID down_lu_host(const VGA_DOWN_LU &record, NB_CHAR *text) {
    const NAP_DOWN_LU_DATA *entry = record.vcb;
    vga_write_field(vga_ebcdic_cell(VGA_FIELD(NAP_DOWN_LU_DATA, det_data.used_lu_name)), entry,
                    text);
    if (text[0] == '\0') {
        vga_write_field(vga_ebcdic_cell(VGA_FIELD(NAP_DOWN_LU_DATA, def_data.host_lu_name)), entry,
                        text);
    }
}

/* The application while there is one, else the description. */
NB_VOID down_lu_application(const VGA_DOWN_LU &record, NB_CHAR *text) {
    const NAP_DOWN_LU_DATA *entry = record.vcb;
    vga_write_field(vga_ebcdic_cell(VGA_FIELD(NAP_DOWN_LU_DATA, det_data.plu_name)), entry, text);
    if (text[0] == '\0') {
        vga_write_field(vga_local_cell(VGA_FIELD(NAP_DOWN_LU_DATA, def_data.description)), entry,
                        text);
    }
}

constexpr VGA_LINE_COLUMN down_lu_columns[] = {
    {0, 0, vga_ebcdic_cell(VGA_FIELD(NAP_DOWN_LU_DATA, dslu_name))},
    {status_stop, 0, vga_written_cell<down_lu_status>()},
    {kind_stop, 0, vga_written_cell<down_lu_host>()},
    {address_stop, 0,
     vga_number_cell(VGA_FIELD(NAP_DOWN_LU_DATA, def_data.nau_address))
         .labelled(VGA_MSG_LABEL_NAU)},
    {last_stop, 0, vga_written_cell<down_lu_application>()},
};

/* Primary lines and the LUs on them. */

constexpr VGA_WORD line_type_words[] = {
    {NAP_PORT_LEASED, VGA_MSG_LEASED},
    {NAP_PORT_SWITCHED, VGA_MSG_SWITCHED},
};

constexpr VGA_LINE_COLUMN primary_line_columns[] = {
    {0, 0, vga_local_cell(VGA_FIELD(NAP_PRIMARY_LINE_DATA, line_name))},
    {status_stop, 0,
     vga_word_cell(VGA_FIELD(NAP_PRIMARY_LINE_DATA, line_state), gvga_status_words,
                   VGA_MSG_UNKNOWN_STATUS)},
    {kind_stop, 0,
     vga_word_cell(VGA_FIELD(NAP_PRIMARY_LINE_DATA, def_data.line_type), line_type_words,
                   VGA_MSG_UNKNOWN_STATUS)},
    {address_stop, 0, vga_local_cell(VGA_FIELD(NAP_PRIMARY_LINE_DATA, def_data.device))},
    {last_stop, 0, vga_local_cell(VGA_FIELD(NAP_PRIMARY_LINE_DATA, def_data.description))},
};

NB_VOID primary_lu0_status(const VGA_PRIMARY_LU0 &record, NB_CHAR *text) {
    const NAP_PRIMARY_LU0_DATA &entry = *record.vcb;
    vga_write_word(entry.lu_sess_active     ? VGA_MSG_IN_USE
                   : entry.appl_conn_active ? VGA_MSG_OPEN
                                            : VGA_MSG_INACTIVE,
                   text);
}

NB_VOID primary_lu0_address(const VGA_PRIMARY_LU0 &record, NB_CHAR *text) {
    const NAP_PRIMARY_LU0_DATA &entry = *record.vcb;
    vga_print_msg(text, VGA_CELL_SIZE, VGA_MSG_LABEL_STATION_NAU, "l l",
                  NB_LONG{entry.def_data.station_address}, NB_LONG{entry.def_data.nau_address});
}

constexpr VGA_LINE_COLUMN primary_lu0_columns[] = {
    {0, 0, vga_ebcdic_cell(VGA_FIELD(NAP_PRIMARY_LU0_DATA, lu_name))},
    {status_stop, 0, vga_written_cell<primary_lu0_status>()},
    {kind_stop, 0,
     vga_ebcdic_cell(VGA_FIELD(NAP_PRIMARY_LU0_DATA, def_data.plu_name), VGA_MSG_ANY_PROGRAM)},
    {address_stop, 0, vga_written_cell<primary_lu0_address>()},
    {last_stop, 0, vga_local_cell(VGA_FIELD(NAP_PRIMARY_LU0_DATA, def_data.description))},
};

/* Routing of a local LU's partners to link stations, in the list of local LUs. */

/* A wildcard stands for all names that begin so, or for all. */
NB_VOID routed_partner(const VGA_LS_ROUTING &record, NB_CHAR *text) {
    const NAP_LS_ROUTING_DATA *entry = record.vcb;
    constexpr VGA_CELL_SOURCE name = vga_ebcdic_cell(VGA_FIELD(NAP_LS_ROUTING_DATA, fqplu_name));
    vga_write_field(name, entry, text);
    const NB_UCHAR wildcard = entry->def_data.wildcard;
    if (wildcard == NAP_DIR_WILDCARD_FULL) {
        vga_write_word(VGA_MSG_ANY_PARTNER, text);
    } else if (wildcard == NAP_DIR_WILDCARD_PARTIAL) {
        strcat(text, "*"); // a name of 17 bytes leaves room
    }
}

constexpr VGA_LINE_COLUMN ls_r_columns[] = {
    {0, VGA_MSG_HEAD_ROUTING, vga_written_cell<routed_partner>()},
    {44, VGA_MSG_HEAD_LINK_STATION,
     vga_local_cell(VGA_FIELD(NAP_LS_ROUTING_DATA, def_data.ls_name))},
    {57, VGA_MSG_HEAD_DESCRIPTION,
     vga_local_cell(VGA_FIELD(NAP_LS_ROUTING_DATA, def_data.description))},
};

/* RTP connections. */

constexpr VGA_WORD rtp_words[] = {
    {NAP_RTP_LISTENING, VGA_MSG_RTP_LISTENING}, {NAP_RTP_CALLING, VGA_MSG_RTP_CALLING},
    {NAP_RTP_CONNECTED, VGA_MSG_RTP_CONNECTED}, {NAP_RTP_SWITCHING, VGA_MSG_RTP_SWITCHING},
    {NAP_RTP_ENDING, VGA_MSG_RTP_ENDING},
};

constexpr VGA_LINE_COLUMN rtp_conn_columns[] = {
    {0, VGA_MSG_HEAD_CONNECTION, vga_ebcdic_cell(VGA_FIELD(NAP_RTP_CONN_DATA, rtp_name))},
    {12, VGA_MSG_HEAD_STATUS,
     vga_word_cell(VGA_FIELD(NAP_RTP_CONN_DATA, connect_state), rtp_words, VGA_MSG_UNKNOWN_STATUS)},
    {25, VGA_MSG_HEAD_REMOTE_NODE, vga_ebcdic_cell(VGA_FIELD(NAP_RTP_CONN_DATA, dest_cp_name))},
    {44, VGA_MSG_HEAD_LINK_STATION,
     vga_local_cell(VGA_FIELD(NAP_RTP_CONN_DATA, first_hop_ls_name))},
    {57, VGA_MSG_HEAD_COS, vga_ebcdic_cell(VGA_FIELD(NAP_RTP_CONN_DATA, cos_name))},
    {66, VGA_MSG_HEAD_SESSIONS, vga_number_cell(VGA_FIELD(NAP_RTP_CONN_DATA, sessions))},
    {77, VGA_MSG_HEAD_ROUTE, vga_local_cell(VGA_FIELD(NAP_RTP_CONN_DATA, route))},
};

/* Ranges of LUs of a template for downstream PUs. */

NB_VOID dslu_range(const VGA_DSLU_TEMPLATE &record, NB_CHAR *text) {
    const NAP_DSLU_TEMPLATE &range = *record.vcb;
    vga_print_msg(text, VGA_CELL_SIZE, VGA_MSG_LABEL_NAU_RANGE, "l l", NB_LONG{range.min_nau},
                  NB_LONG{range.max_nau});
}

constexpr VGA_WORD timeout_words[] = {{0, VGA_MSG_HELD}};

NB_VOID dslu_logon(const VGA_DSLU_TEMPLATE &record, NB_CHAR *text) {
    if (record.vcb->delayed_logon) {
        vga_write_word(VGA_MSG_DELAYED_LOGON, text);
    }
}

constexpr VGA_LINE_COLUMN dslu_template_columns[] = {
    {0, 0, vga_written_cell<dslu_range>()},
    {18, 0, vga_ebcdic_cell(VGA_FIELD(NAP_DSLU_TEMPLATE, host_lu_name))},
    {28, 0,
     vga_word_cell(VGA_FIELD(NAP_DSLU_TEMPLATE, allow_timeout), timeout_words, VGA_MSG_TIMES_OUT)},
    {46, 0, vga_written_cell<dslu_logon>()},
};

} // namespace

VGA_LINE_TEXT(vga_create_down_lu_viewer_text, VGA_VIEWER_DOWN_LU, VGA_DOWN_LU, down_lu_columns)
VGA_SAME_ICON(vga_choose_down_lu_viewer_icon, VGA_ICON_LU03)

VGA_TITLE_TEXT(vga_nodew_create_ls_r_title_viewer_text, VGA_VIEWER_LS_R_TITLE, ls_r_columns)
VGA_SAME_ICON(vga_nodew_choose_ls_r_title_viewer_icon, VGA_ICON_LSRT)
VGA_LINE_TEXT(vga_create_ls_r_viewer_text, VGA_VIEWER_LS_R, VGA_LS_ROUTING, ls_r_columns)
VGA_SAME_ICON(vga_choose_ls_r_viewer_icon, VGA_ICON_LSR)

VGA_LINE_TEXT(vga_create_primary_line_viewer_text, VGA_VIEWER_PRIMARY_LINE, VGA_PRIMARY_LINE,
              primary_line_columns)
VGA_SAME_ICON(vga_choose_primary_line_viewer_icon, VGA_ICON_PORTSDLC)
VGA_LINE_TEXT(vga_create_primary_lu0_viewer_text, VGA_VIEWER_PRIMARY_LU0, VGA_PRIMARY_LU0,
              primary_lu0_columns)
VGA_SAME_ICON(vga_choose_primary_lu0_viewer_icon, VGA_ICON_LU03)

VGA_TITLE_TEXT(vga_hprw_create_rtp_conn_title_viewer_text, VGA_VIEWER_RTP_CONN_TITLE,
               rtp_conn_columns)
VGA_LINE_TEXT(vga_create_rtp_conn_viewer_text, VGA_VIEWER_RTP_CONN, VGA_RTP_CONN, rtp_conn_columns)
VGA_SAME_ICON(vga_choose_rtp_conn_viewer_icon, VGA_ICON_RTPCONN)

VGA_LINE_TEXT(vga_create_dslu_template_viewer_text, VGA_VIEWER_DSLU_TEMPLATE, VGA_DSLU_TEMPLATE,
              dslu_template_columns)
VGA_SAME_ICON(vga_choose_dslu_template_viewer_icon, VGA_ICON_LU03)
