#include "nodewindowlines.h"
#include "globals.h"
#include "linecolumns.h"
#include "nodeconnection.h"
#include "vgadsutl.h"
#include "vgautil.h"
#include <cstdio>
#include <cstring>

namespace {

using records::field;

/* An icon that stands for a number. */
struct ICON_OF {
    NB_ULONG value;
    NB_USHORT icon;
};

NB_USHORT find_icon(std::span<const ICON_OF> icons, NB_ULONG value, NB_USHORT otherwise) {
    for (const ICON_OF &row : icons) {
        if (row.value == value) {
            return row.icon;
        }
    }
    return otherwise;
}

/* A fixed title over lines, which is a record without an entry. */
NB_USHORT write_title(NB_USHORT message, NB_CHAR *buffer) {
    vga_write_harmless(vga_message(message), buffer);
    return static_cast<NB_USHORT>(strlen(buffer));
}

/* Nodes of the domain: a message for each state, with its columns. */

constexpr size_t node_remark_size = 2 * VGA_CELL_SIZE;
constexpr NB_INT counts_width = 32; /* columns before the description */

NB_USHORT node_message(NB_ULONG state) {
    switch (state) {
    case NAP_NODE_STOPPED:
        return VGA_MSG_NODE_STOPPED;
    case NAP_NODE_STARTING:
        return VGA_MSG_NODE_STARTING;
    case NAP_NODE_STOPPING:
        return VGA_MSG_NODE_STOPPING;
    case NAP_NODE_ACTIVE:
        return VGA_MSG_NODE_ACTIVE;
    case NAP_NODE_UNCONFIGURED:
        return VGA_MSG_NODE_UNCONFIGURED;
    case NAP_NODE_BACK_LEVEL:
        return VGA_MSG_NODE_BACK_LEVEL;
    default:
        v0_assert(__FILE__, __LINE__, "FALSE");
        return 0;
    }
}

/* The connectivity list: name, status, what it is or leads to, address, description. */

constexpr NB_USHORT status_stop = 26;
constexpr NB_USHORT kind_stop = 42;
constexpr NB_USHORT address_stop = 57;
constexpr NB_USHORT last_stop = 75;

NB_VOID port_kind(const VGA_PORT &port, NB_CHAR *text) {
    const NB_USHORT word = vga_word_message(records::dlc_words, port.vcb->def_data.dlc_type, 0);
    if (word != 0) {
        vga_write_word(word, text);
    }
}

constexpr VGA_LINE_COLUMN port_columns[] = {
    {.heading = VGA_MSG_HEAD_NAME, .field = &field(records::port, "name")},
    {.stop = status_stop,
     .heading = VGA_MSG_HEAD_STATUS,
     .field = &field(records::port, "port_state")},
    {.stop = kind_stop, .heading = VGA_MSG_HEAD_TYPE, .write = vga_written<port_kind>},
    {.stop = address_stop,
     .heading = VGA_MSG_HEAD_ADDRESS,
     .field = &field(records::port, "local_address")},
    {.stop = last_stop,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::port, "description")},
};

constexpr ICON_OF port_icons[] = {
    {NAP_DLC_SDLC, VGA_ICON_PORTSDLC},      {NAP_DLC_QLLC, VGA_ICON_PORTX25},
    {NAP_DLC_TOKEN_RING, VGA_ICON_PORTTR},  {NAP_DLC_FDDI, VGA_ICON_PORTFDDI},
    {NAP_DLC_ETHERNET, VGA_ICON_PORTETHER}, {NAP_DLC_FRAME_RELAY, VGA_ICON_PORTFR},
    {NAP_DLC_CHANNEL, VGA_ICON_PORTESCON},  {NAP_DLC_IP, VGA_ICON_PORTIP},
    {NAP_DLC_MPC, VGA_ICON_PORTMPC},        {NAP_DLC_MPC_PLUS, VGA_ICON_PORTMPCPLUS},
};

NB_VOID ls_status(const VGA_LS &ls, NB_CHAR *text) {
    vga_write_word(vga_word_message(records::state_words, ls.state, VGA_MSG_UNKNOWN_STATUS), text);
}

/* The PU that a host knows it by, else the adjacent control point, as learned or as defined. */
NB_VOID ls_partner(const VGA_LS &ls, NB_CHAR *text) {
    const NAP_LS_DATA *entry = ls.vcb;
    if (entry->def_data.adj_cp_type == NAP_ADJ_HOST) {
        vga_write_field({.field = &field(records::ls, "pu_name")}, entry, text);
    }
    if (text[0] == '\0') {
        vga_write_field({.field = &field(records::ls, "actual_cp_name")}, entry, text);
    }
    if (text[0] == '\0') {
        vga_write_field({.field = &field(records::ls, "adj_cp_name")}, entry, text);
    }
}

constexpr VGA_LINE_COLUMN ls_columns[] = {
    {.heading = VGA_MSG_HEAD_LS, .field = &field(records::ls, "name")},
    {.stop = status_stop, .heading = VGA_MSG_HEAD_STATUS, .write = vga_written<ls_status>},
    {.stop = kind_stop,
     .heading = VGA_MSG_HEAD_TYPE,
     .field = &field(records::ls, "adj_cp_type"),
     .other = VGA_MSG_ANY_PEER},
    {.stop = address_stop, .heading = VGA_MSG_HEAD_PU_OR_CP, .write = vga_written<ls_partner>},
    {.stop = last_stop,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::ls, "description")},
};

constexpr ICON_OF ls_icons[] = {
    {NAP_ADJ_LEN_NODE, VGA_ICON_LSPEER},   {NAP_ADJ_NETWORK_NODE, VGA_ICON_LSPEER},
    {NAP_ADJ_END_NODE, VGA_ICON_LSPEER},   {NAP_ADJ_HOST, VGA_ICON_LSHOST},
    {NAP_ADJ_DOWNSTREAM, VGA_ICON_LSDOWN},
};

constexpr VGA_LINE_COLUMN local_pu_columns[] = {
    {.heading = VGA_MSG_HEAD_PU, .field = &field(records::pu, "name")},
    {.stop = status_stop,
     .heading = VGA_MSG_HEAD_STATUS,
     .field = &field(records::pu, "pu_sscp_sess_active")},
    {.stop = kind_stop, .heading = VGA_MSG_HEAD_DLUS, .field = &field(records::pu, "dlus_name")},
    {.stop = last_stop,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::pu, "description")},
};

NB_VOID deplu_status(const VGA_LU03 &lu, NB_CHAR *text) {
    const NAP_LU03_DET &det = lu.vcb->det_data;
    vga_write_lu_status(det.plu_sess_active || det.appl_conn_active, det.lu_sscp_sess_active, text);
}

/* The pool that it is in, else the description. */
NB_VOID deplu_pool(const VGA_LU03 &lu, NB_CHAR *text) {
    vga_write_field({.field = &field(records::lu03, "pool_name")}, lu.vcb, text);
    if (text[0] == '\0') {
        vga_write_field({.field = &field(records::lu03, "description")}, lu.vcb, text);
    }
}

constexpr VGA_LINE_COLUMN deplu_columns[] = {
    {.heading = VGA_MSG_HEAD_LU, .field = &field(records::lu03, "name")},
    {.stop = status_stop, .heading = VGA_MSG_HEAD_STATUS, .write = vga_written<deplu_status>},
    {.stop = kind_stop,
     .heading = VGA_MSG_HEAD_MODEL,
     .field = &field(records::lu03, "lu_model"),
     .other = records::MSG_UNRESTRICTED},
    {.stop = address_stop,
     .heading = VGA_MSG_HEAD_NAU_ADDRESS,
     .field = &field(records::lu03, "nau_address"),
     .label = VGA_MSG_LABEL_NAU},
    {.stop = last_stop, .heading = VGA_MSG_HEAD_POOL_OR_TEXT, .write = vga_written<deplu_pool>},
};

constexpr ICON_OF deplu_icons[] = {
    {NAP_LU_3270_DISPLAY_MODEL_2, VGA_ICON_LUDISP},
    {NAP_LU_3270_DISPLAY_MODEL_3, VGA_ICON_LUDISP},
    {NAP_LU_3270_DISPLAY_MODEL_4, VGA_ICON_LUDISP},
    {NAP_LU_3270_DISPLAY_MODEL_5, VGA_ICON_LUDISP},
    {NAP_LU_PRINTER, VGA_ICON_LUPRINT},
    {NAP_LU_SCS_PRINTER, VGA_ICON_LUPRINT},
    {NAP_LU_RJE, VGA_ICON_LURJE},
};

/* The lists of local LUs and of remote systems: names, kind or status, description. */

constexpr NB_USHORT second_name_stop = 26;
constexpr NB_USHORT session_stop = 44;
constexpr NB_USHORT description_stop = 57;

/* An LU is in the network of its node's control point. */
NB_VOID lu62_full_name(const VGA_LU62 &lu, NB_CHAR *text) {
    constexpr records::FieldRow cp_name =
        records::rows::fq(FIELD_AT(NAP_QUERY_NODE_VERB, info.fq_cp_name));
    NB_CHAR name[VGA_CELL_SIZE] = {};
    vga_write_field({.field = &cp_name}, &lu.parent->node_data, text);
    const NB_CHAR *period = strchr(text, '.');
    text[period != nullptr ? period - text + 1 : 0] = '\0';
    vga_write_field({.field = &field(records::local_lu, "name")}, lu.vcb, name);
    strcat(text, name); // 8 bytes behind 17 at most
}

constexpr VGA_LINE_COLUMN lu62_columns[] = {
    {.heading = VGA_MSG_HEAD_LU_ALIAS, .field = &field(records::local_lu, "lu_alias")},
    {.stop = second_name_stop,
     .heading = VGA_MSG_HEAD_LU_NAME,
     .write = vga_written<lu62_full_name>},
    {.stop = session_stop,
     .heading = VGA_MSG_HEAD_STATUS,
     .field = &field(records::local_lu, "active_sessions"),
     .none = VGA_MSG_DEFINED,
     .other = records::MSG_IN_USE},
    {.stop = description_stop,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::local_lu, "description")},
};

NB_VOID write_sessions(const NAP_MODE_DATA &mode, NB_CHAR *text) {
    vga_print_msg(text, VGA_CELL_SIZE, VGA_MSG_LABEL_OF_SESSIONS, "l l",
                  NB_LONG{mode.act_sess_count}, NB_LONG{mode.sess_limit});
}
NB_VOID mode_sessions(const VGA_MODE &mode, NB_CHAR *text) {
    write_sessions(*mode.vcb, text);
}
NB_VOID rem_sess_sessions(const VGA_REM_SESS &session, NB_CHAR *text) {
    write_sessions(*session.vcb, text);
}

constexpr VGA_LINE_COLUMN mode_columns[] = {
    {.heading = VGA_MSG_HEAD_MODE, .field = &field(records::mode, "mode_name")},
    {.stop = second_name_stop,
     .heading = VGA_MSG_HEAD_PARTNER_LU,
     .field = &field(records::mode, "name")},
    {.stop = session_stop, .heading = VGA_MSG_HEAD_SESSIONS, .write = vga_written<mode_sessions>},
};

constexpr VGA_LINE_COLUMN rem_sess_columns[] = {
    {.heading = VGA_MSG_HEAD_LOCAL_LU, .field = &field(records::mode, "lu_alias")},
    {.stop = second_name_stop,
     .heading = VGA_MSG_HEAD_MODE,
     .field = &field(records::mode, "mode_name")},
    {.stop = session_stop,
     .heading = VGA_MSG_HEAD_SESSIONS,
     .write = vga_written<rem_sess_sessions>},
};

constexpr VGA_LINE_COLUMN rem_sys_columns[] = {
    {.heading = VGA_MSG_HEAD_NAME, .field = &field(records::directory, "fqcp_name")},
    {.stop = second_name_stop,
     .heading = VGA_MSG_HEAD_TYPE,
     .field = &field(records::directory, "resource_type"),
     .other = VGA_MSG_UNKNOWN_NODE_TYPE},
    {.stop = session_stop,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::directory, "description")},
};

/* The directory entry under this name may be a wildcard for all names. */
NB_VOID rem_plu_name(const VGA_REM_PLU &plu, NB_CHAR *text) {
    constexpr records::FieldRow name = records::rows::fq(FIELD_AT(decltype(plu.key), fqplu_name));
    vga_write_field({.field = &name}, &plu.key, text);
    if (text[0] == '\0' && plu.key.type == NAP_DIR_WILDCARD_LU) {
        vga_write_word(VGA_MSG_ANY_PARTNER, text);
    }
}

constexpr VGA_LINE_COLUMN rem_plu_columns[] = {
    {.heading = VGA_MSG_HEAD_PARTNER_LU, .write = vga_written<rem_plu_name>},
    {.stop = second_name_stop,
     .heading = VGA_MSG_HEAD_ALIAS,
     .field = &field(records::plu_def, "plu_alias")},
    {.stop = session_stop,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::plu_def, "description")},
};

/* What to do next; else its connection, when there is something to say of it; else how many
 * resources it has, and its description. */
NB_VOID node_remark(const VGA_NODE &node, NB_CHAR (&text)[node_remark_size]) {
    NB_CHAR description[VGA_CELL_SIZE] = {};
    if (node.node_state == NAP_NODE_UNCONFIGURED) {
        vga_write_word(VGA_MSG_DEFINE_NODE_FIRST, text);
        return;
    }
    vga_write_connection(node, text);
    if (text[0] != '\0') {
        return;
    }
    NB_CHAR counts[VGA_CELL_SIZE] = {};
    NB_CHAR harmless[VGA_CELL_SIZE] = {};
    vga_write_field({.field = &field(records::domain_node, "description")}, node.vcb, description);
    vga_write_harmless(description, harmless);
    vga_print_msg(counts, sizeof(counts), VGA_MSG_NODE_COUNTS, "l l l", node.counts.ports,
                  node.counts.link_stations, node.counts.lus);
    snprintf(text, sizeof(text), "%-*s%s", counts_width, counts, harmless);
}

} // namespace

NB_USHORT vga_create_node_headings(NB_VOID *, NB_CHAR *buffer) {
    return vga_print_msg(buffer, VGA_VIEWER_TEXT_BUFFER, VGA_MSG_HEAD_OF_NODES, "");
}

NB_USHORT vga_create_node_viewer_text(NB_VOID *data, NB_CHAR *buffer) {
    const VGA_NODE &node = *static_cast<const VGA_NODE *>(data);
    const NB_USHORT role = node.role == VGA_ROLE_MASTER   ? VGA_MSG_MASTER_ROLE
                           : node.role == VGA_ROLE_BACKUP ? VGA_MSG_BACKUP_ROLE
                                                          : VGA_MSG_NO_ROLE;
    NB_CHAR bare[VGA_CELL_SIZE] = {};
    NB_CHAR harmless[VGA_CELL_SIZE] = {};
    NB_CHAR name[65]; /* a whole number of characters */
    NB_CHAR third[node_remark_size] = {};
    node_remark(node, third);
    vga_write_field({.field = &field(records::domain_node, "name")}, node.vcb, bare);
    vga_write_harmless(bare, harmless);
    v0_mb_strncpy(name, harmless, sizeof(name));
    return vga_print_msg(buffer, VGA_VIEWER_TEXT_BUFFER, node_message(node.node_state), "ca ca s",
                         64, name, 15, vga_message(role), third);
}

NB_USHORT vga_choose_node_viewer_icon(NB_VOID *data) {
    const VGA_NODE &node = *static_cast<const VGA_NODE *>(data);
    return node.node_state == NAP_NODE_BACK_LEVEL ? VGA_ICON_BACKNODE : VGA_ICON_NODE;
}

VGA_HEADINGS(port, VGA_VIEWER_PORT)

NB_USHORT vga_create_port_viewer_text(NB_VOID *data, NB_CHAR *buffer) {
    auto *port = static_cast<VGA_PORT *>(data);
    if (port->vcb == nullptr) {
        return write_title(port == port->node->dlur_fake_port ? VGA_MSG_DLUR_TITLE
                                                              : VGA_MSG_PRIMARY_LINES_TITLE,
                           buffer);
    }
    return vga_write_line(VGA_VIEWER_PORT, port_columns, port, port->vcb, buffer);
}

NB_USHORT vga_choose_port_viewer_icon(NB_VOID *data) {
    auto *port = static_cast<VGA_PORT *>(data);
    if (port->vcb == nullptr) {
        return port == port->node->dlur_fake_port ? VGA_ICON_DLURPORT : VGA_ICON_PORTSDLC;
    }
    const NB_UCHAR dlc_type = port->vcb->def_data.dlc_type;
    if (dlc_type == NAP_DLC_CHANNEL &&
        port->parent->vcb->def_data.card_number >= NAP_BLOCK_MUX_CARDS) {
        return VGA_ICON_PORTBLKMUX;
    }
    return find_icon(port_icons, dlc_type, VGA_ICON_PORT);
}

VGA_LINE_TEXT(ls, VGA_VIEWER_LS, VGA_LS)

NB_USHORT vga_choose_ls_viewer_icon(NB_VOID *data) {
    auto *ls = static_cast<VGA_LS *>(data);
    return ls->vcb->det_data.dynamic
               ? NB_USHORT{VGA_ICON_LSIMPL}
               : find_icon(ls_icons, ls->vcb->def_data.adj_cp_type, VGA_ICON_LS);
}

VGA_LINE_TEXT(local_pu, VGA_VIEWER_LOCAL_PU, VGA_LOCAL_PU)
VGA_SAME_ICON(local_pu, VGA_ICON_PU)

VGA_LINE_TEXT(deplu, VGA_VIEWER_DEPLU, VGA_LU03)

NB_USHORT vga_choose_deplu_viewer_icon(NB_VOID *data) {
    return find_icon(deplu_icons, static_cast<VGA_LU03 *>(data)->vcb->def_data.lu_model,
                     VGA_ICON_LU03);
}

VGA_LINE_TEXT(lu62, VGA_VIEWER_LU62, VGA_LU62)

NB_USHORT vga_choose_lu62_viewer_icon(NB_VOID *data) {
    return static_cast<VGA_LU62 *>(data)->vcb->def_data.nau_address != 0 ? VGA_ICON_DLU
                                                                         : VGA_ICON_LU62;
}

VGA_LINE_TEXT(mode, VGA_VIEWER_MODE, VGA_MODE)
VGA_SAME_ICON(mode, VGA_ICON_MODE)

VGA_HEADINGS(rem_sys, VGA_VIEWER_REM_SYS)

NB_USHORT vga_create_rem_sys_viewer_text(NB_VOID *data, NB_CHAR *buffer) {
    auto *system = static_cast<VGA_REM_SYS *>(data);
    return system == system->parent->network_fake_rem_sys
               ? write_title(VGA_MSG_NETWORK_TITLE, buffer)
               : vga_write_line(VGA_VIEWER_REM_SYS, rem_sys_columns, system, system->vcb, buffer);
}

NB_USHORT vga_choose_rem_sys_viewer_icon(NB_VOID *data) {
    auto *system = static_cast<VGA_REM_SYS *>(data);
    if (system == system->parent->network_fake_rem_sys) {
        return VGA_ICON_REMSYSF;
    }
    return system->defined ? VGA_ICON_REMSYSD : VGA_ICON_REMSYS;
}

VGA_LINE_TEXT(rem_plu, VGA_VIEWER_REM_PLU, VGA_REM_PLU)

NB_USHORT vga_choose_rem_plu_viewer_icon(NB_VOID *data) {
    auto *plu = static_cast<VGA_REM_PLU *>(data);
    if (!plu->defined) {
        return VGA_ICON_REMPLU;
    }
    return plu->in_directory ? VGA_ICON_REMPLUD : VGA_ICON_REMPLUA;
}

VGA_LINE_TEXT(rem_sess, VGA_VIEWER_REM_SESS, VGA_REM_SESS)
VGA_SAME_ICON(rem_sess, VGA_ICON_MODE)
