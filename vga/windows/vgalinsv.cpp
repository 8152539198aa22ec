#include "vgalincl.h"
#include "vgalinrs.h"
#include "vgarec.h"
#include "vgautil.h"

namespace {

constexpr NB_USHORT last_user_stop = 75;

/* Users, and the sessions of each below it. */

constexpr VGA_WORD one_user_word[] = {{0, VGA_MSG_ONE_USER}};
constexpr VGA_WORD no_limit_word[] = {{0, VGA_MSG_NO_LIMIT}};

NB_VOID user_sessions(const VGA_USER &user, NB_CHAR *text) {
    vga_write_number(
        vga_count_items<NAP_USER_SESSION>(user.vcb, VGA_NESTED(user, sessions, num_sessions)),
        VGA_MSG_LABEL_SESSIONS, text);
}

constexpr VGA_LINE_COLUMN user_columns[] = {
    {0, 0, vga_local_cell(VGA_FIELD(NAP_USER_DATA, user_name))},
    {26, 0,
     vga_word_cell(VGA_FIELD(NAP_USER_DATA, def_data.is_group), one_user_word, VGA_MSG_GROUP)},
    {41, 0, vga_written_cell<user_sessions>()},
    {61, 0,
     vga_word_cell(VGA_FIELD(NAP_USER_DATA, def_data.max_sessions), no_limit_word)
         .labelled(VGA_MSG_LABEL_AT_MOST)},
    {last_user_stop, 0, vga_local_cell(VGA_FIELD(NAP_USER_DATA, def_data.description))},
};

/* What a session is, by class and type. */
struct SESSION_KIND {
    NB_UCHAR session_class, session_type;
    NB_USHORT word, icon;
};
constexpr SESSION_KIND session_kinds[] = {
    {NAP_USER_SESSION_3270, NAP_SESSION_DISPLAY, VGA_MSG_DISPLAY_3270_2, VGA_ICON_DISP3270},
    {NAP_USER_SESSION_3270, NAP_SESSION_PRINTER, VGA_MSG_PRINTER_3270, VGA_ICON_PRINT3270},
    {NAP_USER_SESSION_5250, NAP_SESSION_DISPLAY, VGA_MSG_DISPLAY_5250, VGA_ICON_DISP5250},
    {NAP_USER_SESSION_5250, NAP_SESSION_PRINTER, VGA_MSG_PRINTER_5250, VGA_ICON_PRINT5250},
};

const SESSION_KIND *session_kind(const VGA_USER_SESSION &session) {
    for (const SESSION_KIND &kind : session_kinds) {
        if (kind.session_class == session.kind && kind.session_type == session.vcb->session_type) {
            return &kind;
        }
    }
    return nullptr;
}

constexpr VGA_WORD model_words[] = {
    {NAP_LU_3270_DISPLAY_MODEL_3, VGA_MSG_DISPLAY_3270_3},
    {NAP_LU_3270_DISPLAY_MODEL_4, VGA_MSG_DISPLAY_3270_4},
    {NAP_LU_3270_DISPLAY_MODEL_5, VGA_MSG_DISPLAY_3270_5},
};

NB_VOID user_session_kind(const VGA_USER_SESSION &session, NB_CHAR *text) {
    const SESSION_KIND *kind = session_kind(session);
    NB_USHORT word = kind != nullptr ? kind->word : NB_USHORT{VGA_MSG_UNKNOWN_STATUS};
    if (word == VGA_MSG_DISPLAY_3270_2) {
        word = vga_find_word(model_words, session.vcb->model, word);
    }
    vga_write_word(word, text);
}

/* The host LU or pool of a 3270 session, the system that a 5250 session reaches. */
NB_VOID user_session_goal(const VGA_USER_SESSION &session, NB_CHAR *text) {
    constexpr VGA_CELL_SOURCE lu = vga_ebcdic_cell(VGA_FIELD(NAP_USER_SESSION, lu_name));
    constexpr VGA_CELL_SOURCE system = vga_ebcdic_cell(VGA_FIELD(NAP_USER_SESSION, fqplu_name));
    vga_write_field(session.kind == NAP_USER_SESSION_5250 ? system : lu, session.vcb, text);
}

NB_VOID user_session_mark(const VGA_USER_SESSION &session, NB_CHAR *text) {
    vga_write_word(session.mark ? VGA_MSG_AVAILABLE : VGA_MSG_LU_MISSING, text);
}

constexpr VGA_LINE_COLUMN user_sess_columns[] = {
    {0, 0, vga_local_cell(VGA_FIELD(NAP_USER_SESSION, session_name))},
    {26, 0, vga_written_cell<user_session_kind>()},
    {41, 0, vga_written_cell<user_session_goal>()},
    {61, 0, vga_written_cell<user_session_mark>()},
    {last_user_stop, 0, vga_local_cell(VGA_FIELD(NAP_USER_SESSION, description))},
};

/* The status of a user's sessions. */

constexpr VGA_LINE_COLUMN ustad_columns[] = {
    {0, VGA_MSG_HEAD_USER, vga_local_cell(VGA_FIELD(VGA_USER_STATUS, key.user_name))},
    {18, VGA_MSG_HEAD_SESSION, vga_local_cell(VGA_FIELD(VGA_USER_STATUS, key.session_name))},
    {28, VGA_MSG_HEAD_STATUS,
     vga_word_cell(VGA_FIELD(VGA_USER_STATUS, status), gvga_status_words, VGA_MSG_UNKNOWN_STATUS)},
    {41, VGA_MSG_HEAD_LU, vga_ebcdic_cell(VGA_FIELD(VGA_USER_STATUS, lu_name))},
    {51, VGA_MSG_HEAD_NODE, vga_local_cell(VGA_FIELD(VGA_USER_STATUS, key.node_name))},
};

/* Pools of the domain, and the LUs of all nodes in each. */

NB_VOID pool_lus(const VGA_SYS_POOL &pool, NB_CHAR *text) {
    vga_write_number(pool.gui_data.viewer.children.count, VGA_MSG_LABEL_LUS, text);
}

NB_VOID pool_nodes(const VGA_SYS_POOL &pool, NB_CHAR *text) {
    vga_write_number(pool.node_pools, VGA_MSG_LABEL_NODES, text);
}

constexpr VGA_LINE_COLUMN pool_columns[] = {
    {0, 0, vga_ebcdic_cell(VGA_FIELD(NAP_LU_POOL_DATA, pool_name))},
    {26, 0, vga_written_cell<pool_lus>()},
    {39, 0, vga_written_cell<pool_nodes>()},
    {53, 0, vga_local_cell(VGA_FIELD(NAP_LU_POOL_DATA, description))},
};

NB_VOID pool_lu_status(const VGA_POOL_LU &lu, NB_CHAR *text) {
    vga_write_word(lu.vcb->lu_in_use   ? VGA_MSG_IN_USE
                   : lu.vcb->lu_active ? VGA_MSG_SSCP
                                       : VGA_MSG_INACTIVE,
                   text);
}

NB_VOID pool_lu_node(const VGA_POOL_LU &lu, NB_CHAR *text) {
    vga_write_field(vga_local_cell(VGA_FIELD(VGA_SYS_POOL_LU_KEY, node_name)), &lu.key, text);
}

constexpr VGA_LINE_COLUMN pool_lu_columns[] = {
    {0, 0, vga_ebcdic_cell(VGA_FIELD(NAP_LU_POOL_DATA, lu_name))},
    {26, 0, vga_written_cell<pool_lu_status>()},
    {39, 0, vga_ebcdic_cell(VGA_FIELD(NAP_LU_POOL_DATA, pu_name))},
    {53, 0, vga_written_cell<pool_lu_node>()},
};

/* CPI-C side information. */

NB_VOID cpic_partner(const VGA_CPIC &cpic, NB_CHAR *text) {
    constexpr VGA_CELL_SOURCE name =
        vga_ebcdic_cell(VGA_FIELD(NAP_CPIC_DATA, def_data.partner_lu_name));
    constexpr VGA_CELL_SOURCE alias =
        vga_local_cell(VGA_FIELD(NAP_CPIC_DATA, def_data.partner_lu_name));
    vga_write_field(cpic.vcb->def_data.partner_is_alias ? alias : name, cpic.vcb, text);
}

NB_VOID cpic_tp_name(const VGA_CPIC &cpic, NB_CHAR *text) {
    NAP_CPIC_DEF def = cpic.vcb->def_data;
    vga_write_tp_name(def.tp_name, text);
}

constexpr VGA_LINE_COLUMN cpic_columns[] = {
    {0, 0, vga_local_cell(VGA_FIELD(NAP_CPIC_DATA, sym_dest_name))},
    {12, 0, vga_written_cell<cpic_partner>()},
    {31, 0, vga_written_cell<cpic_tp_name>()},
    {53, 0, vga_ebcdic_cell(VGA_FIELD(NAP_CPIC_DATA, def_data.mode_name))},
    {63, 0, vga_local_cell(VGA_FIELD(NAP_CPIC_DATA, def_data.lu_alias), VGA_MSG_ANY_LU)},
    {75, 0, vga_local_cell(VGA_FIELD(NAP_CPIC_DATA, def_data.description))},
};

/* RJE workstations. */

NB_VOID rje_lus(const VGA_RJE_WKSTN &workstation, NB_CHAR *text) {
    constexpr NB_USHORT name_width = sizeof(workstation.vcb->def_data.lu_names[0]);
    const NB_USHORT count = std::min<NB_USHORT>(workstation.vcb->def_data.num_lus, NAP_MAX_RJE_LUS);
    VGA_CELL_SOURCE name = vga_ebcdic_cell(
        static_cast<NB_USHORT>(offsetof(NAP_RJE_DATA, def_data.lu_names)), name_width);
    NB_CHAR one[VGA_CELL_SIZE];
    for (NB_USHORT lu = 0; lu < count; lu++, name.offset += name_width) {
        vga_write_field(name, workstation.vcb, one);
        strcat(strcat(text, lu > 0 ? " " : ""), one); // at most 9 bytes for each
    }
}

constexpr VGA_LINE_COLUMN rje_columns[] = {
    {0, 0, vga_local_cell(VGA_FIELD(NAP_RJE_DATA, workstation_name))},
    {8, 0, vga_local_cell(VGA_FIELD(NAP_RJE_DATA, def_data.run_on_node), VGA_MSG_ANY_NODE)},
    {32, 0, vga_local_cell(VGA_FIELD(NAP_RJE_DATA, def_data.user_name))},
    {48, 0, vga_written_cell<rje_lus>()},
    {75, 0, vga_local_cell(VGA_FIELD(NAP_RJE_DATA, def_data.description))},
};

/* The TN3270 server and the TN redirector. */

constexpr VGA_WORD default_word[] = {{0, VGA_MSG_DEFAULT}};

NB_VOID client_address(const VGA_CLIENT_ADDRESS &client, NB_CHAR *text) {
    if (client.type == NAP_TN_DEFAULT_RECORD) {
        vga_write_word(VGA_MSG_DEFAULT, text);
    } else {
        vga_write_field(vga_local_cell(VGA_FIELD(VGA_CLIENT_ADDRESS, address)), &client, text);
    }
}
NB_VOID tn_sess_client(const VGA_TN_SESS &session, NB_CHAR *text) {
    client_address(session.key.client, text);
}
NB_VOID tn_redirect_client(const VGA_TN_REDIRECT &redirect, NB_CHAR *text) {
    client_address(redirect.key.client, text);
}

/* The session's own description, else that of the client. */
NB_VOID tn_sess_description(const VGA_TN_SESS &session, NB_CHAR *text) {
    vga_write_field(vga_local_cell(VGA_FIELD(NAP_TN_SESSION, description)), session.vcb, text);
    if (text[0] == '\0') {
        vga_write_field(vga_local_cell(VGA_FIELD(NAP_TN_ACCESS_DATA, def_data.description)),
                        session.parent->vcb, text);
    }
}

constexpr VGA_WORD protocol_words[] = {{0, VGA_MSG_TN3270}, {1, VGA_MSG_TN3270E}};

constexpr VGA_LINE_COLUMN tn_sess_columns[] = {
    {0, VGA_MSG_HEAD_CLIENT, vga_written_cell<tn_sess_client>()},
    {24, VGA_MSG_HEAD_PORT, vga_word_cell(VGA_FIELD(NAP_TN_SESSION, port), default_word)},
    {32, VGA_MSG_HEAD_DISPLAY_LU, vga_ebcdic_cell(VGA_FIELD(NAP_TN_SESSION, display_lu_name))},
    {44, VGA_MSG_HEAD_PRINTER_LU, vga_ebcdic_cell(VGA_FIELD(NAP_TN_SESSION, printer_lu_name))},
    {56, VGA_MSG_HEAD_PROTOCOL,
     vga_word_cell(VGA_FIELD(NAP_TN_SESSION, tn3270_support), protocol_words,
                   VGA_MSG_UNKNOWN_STATUS)},
    {66, VGA_MSG_HEAD_SSL,
     vga_word_cell(VGA_FIELD(NAP_TN_SESSION, ssl_enabled), gvga_ssl_words, VGA_MSG_UNKNOWN_STATUS)},
    {79, VGA_MSG_HEAD_DESCRIPTION, vga_written_cell<tn_sess_description>()},
};

constexpr VGA_LINE_COLUMN tn_assoc_columns[] = {
    {0, VGA_MSG_HEAD_DISPLAY_LU, vga_ebcdic_cell(VGA_FIELD(NAP_TN_ASSOC_DATA, display_lu_name))},
    {14, VGA_MSG_HEAD_PRINTER_LU,
     vga_ebcdic_cell(VGA_FIELD(NAP_TN_ASSOC_DATA, def_data.printer_lu_name))},
    {28, VGA_MSG_HEAD_DESCRIPTION,
     vga_local_cell(VGA_FIELD(NAP_TN_ASSOC_DATA, def_data.description))},
};

constexpr VGA_LINE_COLUMN tn_redirect_columns[] = {
    {0, VGA_MSG_HEAD_CLIENT, vga_written_cell<tn_redirect_client>()},
    {24, VGA_MSG_HEAD_PORT, vga_number_cell(VGA_FIELD(NAP_TN_REDIRECT_DATA, client_port))},
    {32, VGA_MSG_HEAD_HOST, vga_local_cell(VGA_FIELD(NAP_TN_REDIRECT_DATA, def_data.host_address))},
    {56, VGA_MSG_HEAD_HOST_PORT,
     vga_number_cell(VGA_FIELD(NAP_TN_REDIRECT_DATA, def_data.host_port))},
    {67, VGA_MSG_HEAD_CLIENT_SSL,
     vga_word_cell(VGA_FIELD(NAP_TN_REDIRECT_DATA, def_data.client_ssl), gvga_ssl_words,
                   VGA_MSG_UNKNOWN_STATUS)},
    {80, VGA_MSG_HEAD_HOST_SSL,
     vga_word_cell(VGA_FIELD(NAP_TN_REDIRECT_DATA, def_data.host_ssl), gvga_ssl_words,
                   VGA_MSG_YES)},
    {90, VGA_MSG_HEAD_DESCRIPTION,
     vga_local_cell(VGA_FIELD(NAP_TN_REDIRECT_DATA, def_data.description))},
};

/* Sessions over IP. */

NB_VOID session_address(const VGA_TAMRIX_APPCIP_SESS &session, NB_CHAR *text) {
    NAP_TAMRIX_SESSION_DATA entry = *session.vcb;
    if (entry.remote_ip_address.family == NAP_IPV4_ADDRESS) {
        vga_format_ip_addr_port(text, &entry.remote_ip_address, entry.remote_port);
    }
}

constexpr VGA_WORD this_node_word[] = {{0, VGA_MSG_THIS_NODE}};

constexpr VGA_LINE_COLUMN appcip_columns[] = {
    {0, VGA_MSG_HEAD_NUMBER, vga_number_cell(VGA_FIELD(NAP_TAMRIX_SESSION_DATA, session_number))},
    {8, VGA_MSG_HEAD_STATUS,
     vga_word_cell(VGA_FIELD(NAP_TAMRIX_SESSION_DATA, session_state), gvga_status_words,
                   VGA_MSG_UNKNOWN_STATUS)},
    {21, VGA_MSG_HEAD_LOCAL_LU, vga_ebcdic_cell(VGA_FIELD(NAP_TAMRIX_SESSION_DATA, lu_name))},
    {31, VGA_MSG_HEAD_PARTNER_LU, vga_ebcdic_cell(VGA_FIELD(NAP_TAMRIX_SESSION_DATA, fqplu_name))},
    {50, VGA_MSG_HEAD_MODE, vga_ebcdic_cell(VGA_FIELD(NAP_TAMRIX_SESSION_DATA, mode_name))},
    {60, VGA_MSG_HEAD_REMOTE_ADDRESS, vga_written_cell<session_address>()},
    {83, VGA_MSG_HEAD_SET_UP_BY,
     vga_word_cell(VGA_FIELD(NAP_TAMRIX_SESSION_DATA, secondary), this_node_word, VGA_MSG_PARTNER)},
};

} // namespace

VGA_LINE_TEXT(vga_create_user_viewer_text, VGA_VIEWER_USER, VGA_USER, user_columns)

NB_USHORT vga_choose_user_viewer_icon(NB_VOID *data) {
    const VGA_USER *user = static_cast<VGA_USER *>(data);
    return user->vcb->def_data.is_group ? VGA_ICON_USERGROUP : VGA_ICON_USER;
}

VGA_LINE_TEXT(vga_create_user_sess_viewer_text, VGA_VIEWER_USER_SESS, VGA_USER_SESSION,
              user_sess_columns)

NB_USHORT vga_choose_user_sess_viewer_icon(NB_VOID *data) {
    const auto &session = *static_cast<VGA_USER_SESSION *>(data);
    const SESSION_KIND *kind = session_kind(session);
    if (kind != nullptr) {
        return kind->icon;
    }
    return session.kind == NAP_USER_SESSION_5250 ? VGA_ICON_LU5250 : VGA_ICON_LU3270;
}

NB_USHORT vga_create_ustad_viewer_text(NB_VOID *data, NB_CHAR *buffer) {
    return vga_write_line(VGA_VIEWER_USTAD, ustad_columns, data, data, buffer);
}
VGA_TITLE_TEXT(vga_create_ustad_title_viewer_text, VGA_VIEWER_USTAD_TITLE, ustad_columns)

VGA_LINE_TEXT(vga_create_pool_viewer_text, VGA_VIEWER_POOL, VGA_SYS_POOL, pool_columns)
VGA_SAME_ICON(vga_choose_pool_viewer_icon, VGA_ICON_POOL)
VGA_LINE_TEXT(vga_create_pool_lu_viewer_text, VGA_VIEWER_POOL_LU, VGA_POOL_LU, pool_lu_columns)
VGA_SAME_ICON(vga_choose_pool_lu_viewer_icon, VGA_ICON_POOLLU03)

VGA_LINE_TEXT(vga_create_cpic_viewer_text, VGA_VIEWER_CPIC, VGA_CPIC, cpic_columns)
VGA_SAME_ICON(vga_choose_cpic_viewer_icon, VGA_ICON_CPIC)
VGA_LINE_TEXT(vga_create_rje_viewer_text, VGA_VIEWER_RJE, VGA_RJE_WKSTN, rje_columns)
VGA_SAME_ICON(vga_choose_rje_viewer_icon, VGA_ICON_RJEW)

VGA_TITLE_TEXT(vga_tnw_create_sess_title_viewer_text, VGA_VIEWER_TN_SESS_TITLE, tn_sess_columns)
VGA_LINE_TEXT(vga_create_tn_sess_viewer_text, VGA_VIEWER_TN_SESS, VGA_TN_SESS, tn_sess_columns)
VGA_SAME_ICON(vga_choose_tn_sess_viewer_icon, VGA_ICON_TNCLIENT)
VGA_TITLE_TEXT(vga_tnw_create_assoc_title_viewer_text, VGA_VIEWER_TN_ASSOC_TITLE, tn_assoc_columns)
VGA_LINE_TEXT(vga_create_tn_assoc_viewer_text, VGA_VIEWER_TN_ASSOC, VGA_TN_ASSOC, tn_assoc_columns)
VGA_SAME_ICON(vga_choose_tn_assoc_viewer_icon, VGA_ICON_TNASSOC)
VGA_TITLE_TEXT(vga_tnw_create_redirect_title_viewer_text, VGA_VIEWER_TN_REDIRECT_TITLE,
               tn_redirect_columns)
VGA_LINE_TEXT(vga_create_tn_redirect_viewer_text, VGA_VIEWER_TN_REDIRECT, VGA_TN_REDIRECT,
              tn_redirect_columns)
VGA_SAME_ICON(vga_choose_tn_redirect_viewer_icon, VGA_ICON_TNREDIRECT)

VGA_TITLE_TEXT(vga_anyw_create_appcip_sess_title_viewer_text, VGA_VIEWER_APPCIP_SESS_TITLE,
               appcip_columns)
VGA_LINE_TEXT(vga_create_appcip_sess_viewer_text, VGA_VIEWER_APPCIP_SESS, VGA_TAMRIX_APPCIP_SESS,
              appcip_columns)
VGA_SAME_ICON(vga_choose_appcip_sess_viewer_icon, VGA_ICON_APPCIP)
