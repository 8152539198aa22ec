#include "linecolumns.h"
#include "nodewindowlines.h"
#include "recordpattern.h"
#include "vgautil.h"

namespace {

using records::field;
using records::item_field;

constexpr NB_USHORT last_user_stop = 75;

/* Users, and the sessions of each below it. */

NB_VOID user_sessions(const VGA_USER &user, NB_CHAR *text) {
    vga_write_number(
        vga_count_items<NAP_USER_SESSION>(user.vcb, VGA_NESTED(user, sessions, num_sessions)),
        VGA_MSG_LABEL_SESSIONS, text);
}

constexpr VGA_LINE_COLUMN user_columns[] = {
    {.heading = VGA_MSG_HEAD_USER, .field = &field(records::user, "name")},
    {.stop = 26,
     .heading = VGA_MSG_HEAD_TYPE,
     .field = &field(records::user, "is_group"),
     .none = VGA_MSG_ONE_USER,
     .other = VGA_MSG_GROUP},
    {.stop = 41, .heading = VGA_MSG_HEAD_SESSIONS, .write = vga_written<user_sessions>},
    {.stop = 61,
     .heading = VGA_MSG_HEAD_SESSION_LIMIT,
     .field = &field(records::user, "max_sessions"),
     .none = VGA_MSG_NO_LIMIT,
     .label = VGA_MSG_LABEL_AT_MOST},
    {.stop = last_user_stop,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::user, "description")},
};

/* What a session is, by class and type. */
struct SESSION_KIND {
    NB_UCHAR session_class, session_type;
    NB_USHORT word, icon;
};
constexpr SESSION_KIND session_kinds[] = {
    {NAP_USER_SESSION_3270, NAP_SESSION_DISPLAY, records::MSG_DISPLAY_3270_2, VGA_ICON_DISP3270},
    {NAP_USER_SESSION_3270, NAP_SESSION_PRINTER, records::MSG_PRINTER_3270, VGA_ICON_PRINT3270},
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

NB_VOID user_session_kind(const VGA_USER_SESSION &session, NB_CHAR *text) {
    const SESSION_KIND *kind = session_kind(session);
    NB_USHORT word = kind != nullptr ? kind->word : NB_USHORT{VGA_MSG_UNKNOWN_STATUS};
    if (word == records::MSG_DISPLAY_3270_2) {
        word = vga_word_message(records::screen_words, session.vcb->model, word);
    }
    vga_write_word(word, text);
}

/* The host LU or pool of a 3270 session, the system that a 5250 session reaches. */
NB_VOID user_session_goal(const VGA_USER_SESSION &session, NB_CHAR *text) {
    vga_write_field({.field = session.kind == NAP_USER_SESSION_5250
                                  ? &item_field(records::user, "fqplu_name")
                                  : &item_field(records::user, "lu_name")},
                    session.vcb, text);
}

NB_VOID user_session_mark(const VGA_USER_SESSION &session, NB_CHAR *text) {
    vga_write_word(session.mark ? VGA_MSG_AVAILABLE : VGA_MSG_LU_MISSING, text);
}

constexpr VGA_LINE_COLUMN user_sess_columns[] = {
    {.heading = VGA_MSG_HEAD_SESSION, .field = &item_field(records::user, "session_name")},
    {.stop = 26, .heading = VGA_MSG_HEAD_TYPE, .write = vga_written<user_session_kind>},
    {.stop = 41, .heading = VGA_MSG_HEAD_LU_OR_SYSTEM, .write = vga_written<user_session_goal>},
    {.stop = 61, .heading = VGA_MSG_HEAD_STATUS, .write = vga_written<user_session_mark>},
    {.stop = last_user_stop,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &item_field(records::user, "description")},
};

/* The status of a user's sessions. */

#define AT(member) FIELD_AT(VGA_USER_STATUS, member)
constexpr records::FieldRow ustad_user = records::rows::text(AT(key.user_name));
constexpr records::FieldRow ustad_session = records::rows::local(AT(key.session_name));
constexpr records::FieldRow ustad_status = records::rows::state(AT(status));
constexpr records::FieldRow ustad_lu = records::rows::sna(AT(lu_name));
constexpr records::FieldRow ustad_node = records::rows::text(AT(key.node_name));
#undef AT

constexpr VGA_LINE_COLUMN ustad_columns[] = {
    {.heading = VGA_MSG_HEAD_USER, .field = &ustad_user},
    {.stop = 18, .heading = VGA_MSG_HEAD_SESSION, .field = &ustad_session},
    {.stop = 28, .heading = VGA_MSG_HEAD_STATUS, .field = &ustad_status},
    {.stop = 44, .heading = VGA_MSG_HEAD_LU, .field = &ustad_lu},
    {.stop = 54, .heading = VGA_MSG_HEAD_NODE, .field = &ustad_node},
};

/* Pools of the domain, and the LUs of all nodes in each. */

NB_VOID pool_lus(const VGA_SYS_POOL &pool, NB_CHAR *text) {
    vga_write_number(pool.gui_data.viewer.children.count, VGA_MSG_LABEL_LUS, text);
}

NB_VOID pool_nodes(const VGA_SYS_POOL &pool, NB_CHAR *text) {
    vga_write_number(pool.node_pools, VGA_MSG_LABEL_NODES, text);
}

constexpr VGA_LINE_COLUMN pool_columns[] = {
    {.heading = VGA_MSG_HEAD_POOL, .field = &field(records::lu_pool, "name")},
    {.stop = 26, .heading = VGA_MSG_HEAD_LUS, .write = vga_written<pool_lus>},
    {.stop = 42, .heading = VGA_MSG_HEAD_NODES, .write = vga_written<pool_nodes>},
    {.stop = 56,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::lu_pool, "description")},
};

NB_VOID pool_lu_status(const VGA_POOL_LU &lu, NB_CHAR *text) {
    vga_write_lu_status(lu.vcb->lu_in_use, lu.vcb->lu_active, text);
}

NB_VOID pool_lu_node(const VGA_POOL_LU &lu, NB_CHAR *text) {
    constexpr records::FieldRow name =
        records::rows::text(FIELD_AT(VGA_SYS_POOL_LU_KEY, node_name));
    vga_write_field({.field = &name}, &lu.key, text);
}

constexpr VGA_LINE_COLUMN pool_lu_columns[] = {
    {.heading = VGA_MSG_HEAD_LU, .field = &field(records::lu_pool, "lu_name")},
    {.stop = 26, .heading = VGA_MSG_HEAD_STATUS, .write = vga_written<pool_lu_status>},
    {.stop = 42, .heading = VGA_MSG_HEAD_PU, .field = &field(records::lu_pool, "pu_name")},
    {.stop = 56, .heading = VGA_MSG_HEAD_NODE, .write = vga_written<pool_lu_node>},
};

/* CPI-C side information. */

NB_VOID cpic_partner(const VGA_CPIC &cpic, NB_CHAR *text) {
    records::FieldRow name = field(records::cpic, "partner_lu_name");
    name.kind = cpic.vcb->def_data.partner_is_alias ? records::FieldKind::NameLocal
                                                    : records::FieldKind::NameFq;
    vga_write_field({.field = &name}, cpic.vcb, text);
}

NB_VOID cpic_tp_name(const VGA_CPIC &cpic, NB_CHAR *text) {
    NAP_CPIC_DEF def = cpic.vcb->def_data;
    vga_write_tp_name(def.tp_name, text);
}

constexpr VGA_LINE_COLUMN cpic_columns[] = {
    {.heading = VGA_MSG_HEAD_NAME, .field = &field(records::cpic, "name")},
    {.stop = 12, .heading = VGA_MSG_HEAD_PARTNER_LU, .write = vga_written<cpic_partner>},
    {.stop = 31, .heading = VGA_MSG_HEAD_PROGRAM, .write = vga_written<cpic_tp_name>},
    {.stop = 53, .heading = VGA_MSG_HEAD_MODE, .field = &field(records::cpic, "mode_name")},
    {.stop = 63,
     .heading = VGA_MSG_HEAD_LOCAL_LU,
     .field = &field(records::cpic, "lu_alias"),
     .none = VGA_MSG_ANY_LU},
    {.stop = 75,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::cpic, "description")},
};

/* RJE workstations. */

NB_VOID rje_lus(const VGA_RJE_WKSTN &workstation, NB_CHAR *text) {
    const records::Nested &lus = records::rje.nested;
    const NB_USHORT count = std::min<NB_USHORT>(workstation.vcb->def_data.num_lus, NAP_MAX_RJE_LUS);
    const auto *name = reinterpret_cast<const NB_UCHAR *>(workstation.vcb) + lus.offset;
    NB_CHAR one[VGA_CELL_SIZE];
    for (NB_USHORT lu = 0; lu < count; lu++, name += lus.size) {
        vga_write_field({.field = &item_field(records::rje, "lu_name")}, name, one);
        strcat(strcat(text, lu > 0 ? " " : ""), one); // at most 9 bytes for each
    }
}

constexpr VGA_LINE_COLUMN rje_columns[] = {
    {.heading = VGA_MSG_HEAD_NAME, .field = &field(records::rje, "name")},
    {.stop = 8,
     .heading = VGA_MSG_HEAD_NODE,
     .field = &field(records::rje, "run_on_node"),
     .none = VGA_MSG_ANY_NODE},
    {.stop = 32, .heading = VGA_MSG_HEAD_USER, .field = &field(records::rje, "user_name")},
    {.stop = 48, .heading = VGA_MSG_HEAD_LUS, .write = vga_written<rje_lus>},
    {.stop = 75, .heading = VGA_MSG_HEAD_DESCRIPTION, .field = &field(records::rje, "description")},
};

/* The TN3270 server and the TN redirector. */

NB_VOID client_address(const VGA_CLIENT_ADDRESS &client, NB_CHAR *text) {
    if (client.type == NAP_TN_DEFAULT_RECORD) {
        vga_write_word(VGA_MSG_DEFAULT, text);
    } else {
        constexpr records::FieldRow address =
            records::rows::text(FIELD_AT(VGA_CLIENT_ADDRESS, address));
        vga_write_field({.field = &address}, &client, text);
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
    vga_write_field({.field = &item_field(records::tn_access, "description")}, session.vcb, text);
    if (text[0] == '\0') {
        vga_write_field({.field = &field(records::tn_access, "description")}, session.parent->vcb,
                        text);
    }
}

constexpr VGA_LINE_COLUMN tn_sess_columns[] = {
    {.heading = VGA_MSG_HEAD_CLIENT, .write = vga_written<tn_sess_client>},
    {.stop = 24,
     .heading = VGA_MSG_HEAD_PORT,
     .field = &item_field(records::tn_access, "port"),
     .none = VGA_MSG_DEFAULT},
    {.stop = 32,
     .heading = VGA_MSG_HEAD_DISPLAY_LU,
     .field = &item_field(records::tn_access, "display_lu_name")},
    {.stop = 44,
     .heading = VGA_MSG_HEAD_PRINTER_LU,
     .field = &item_field(records::tn_access, "printer_lu_name")},
    {.stop = 56,
     .heading = VGA_MSG_HEAD_PROTOCOL,
     .field = &item_field(records::tn_access, "tn3270e"),
     .none = VGA_MSG_TN3270,
     .other = VGA_MSG_TN3270E},
    {.stop = 66, .heading = VGA_MSG_HEAD_SSL, .field = &item_field(records::tn_access, "ssl")},
    {.stop = 79, .heading = VGA_MSG_HEAD_DESCRIPTION, .write = vga_written<tn_sess_description>},
};

constexpr VGA_LINE_COLUMN tn_assoc_columns[] = {
    {.heading = VGA_MSG_HEAD_DISPLAY_LU, .field = &field(records::tn_assoc, "name")},
    {.stop = 14,
     .heading = VGA_MSG_HEAD_PRINTER_LU,
     .field = &field(records::tn_assoc, "printer_lu_name")},
    {.stop = 28,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::tn_assoc, "description")},
};

constexpr VGA_LINE_COLUMN tn_redirect_columns[] = {
    {.heading = VGA_MSG_HEAD_CLIENT, .write = vga_written<tn_redirect_client>},
    {.stop = 24,
     .heading = VGA_MSG_HEAD_PORT,
     .field = &field(records::tn_redirect, "client_port")},
    {.stop = 32,
     .heading = VGA_MSG_HEAD_HOST,
     .field = &field(records::tn_redirect, "host_address")},
    {.stop = 56,
     .heading = VGA_MSG_HEAD_HOST_PORT,
     .field = &field(records::tn_redirect, "host_port")},
    {.stop = 67,
     .heading = VGA_MSG_HEAD_CLIENT_SSL,
     .field = &field(records::tn_redirect, "client_ssl")},
    {.stop = 80,
     .heading = VGA_MSG_HEAD_HOST_SSL,
     .field = &field(records::tn_redirect, "host_ssl"),
     .none = records::MSG_NO,
     .other = records::MSG_YES},
    {.stop = 90,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::tn_redirect, "description")},
};

/* Sessions over IP. */

NB_VOID session_address(const VGA_TAMRIX_APPCIP_SESS &session, NB_CHAR *text) {
    NAP_TAMRIX_SESSION_DATA entry = *session.vcb;
    if (entry.remote_ip_address.family == NAP_IPV4_ADDRESS) {
        vga_format_ip_addr_port(text, &entry.remote_ip_address, entry.remote_port);
    }
}

constexpr VGA_LINE_COLUMN appcip_sess_columns[] = {
    {.heading = VGA_MSG_HEAD_NUMBER, .field = &field(records::tamrix_session, "name")},
    {.stop = 8,
     .heading = VGA_MSG_HEAD_STATUS,
     .field = &field(records::tamrix_session, "session_state")},
    {.stop = 21,
     .heading = VGA_MSG_HEAD_LOCAL_LU,
     .field = &field(records::tamrix_session, "lu_name")},
    {.stop = 31,
     .heading = VGA_MSG_HEAD_PARTNER_LU,
     .field = &field(records::tamrix_session, "fqplu_name")},
    {.stop = 50,
     .heading = VGA_MSG_HEAD_MODE,
     .field = &field(records::tamrix_session, "mode_name")},
    {.stop = 60, .heading = VGA_MSG_HEAD_REMOTE_ADDRESS, .write = vga_written<session_address>},
    {.stop = 83,
     .heading = VGA_MSG_HEAD_SET_UP_BY,
     .field = &field(records::tamrix_session, "secondary"),
     .none = VGA_MSG_THIS_NODE,
     .other = VGA_MSG_PARTNER},
};

} // namespace

VGA_LINE_TEXT(user, VGA_VIEWER_USER, VGA_USER)

NB_USHORT vga_choose_user_viewer_icon(NB_VOID *data) {
    const VGA_USER *user = static_cast<VGA_USER *>(data);
    return user->vcb->def_data.is_group ? VGA_ICON_USERGROUP : VGA_ICON_USER;
}

VGA_LINE_TEXT(user_sess, VGA_VIEWER_USER_SESS, VGA_USER_SESSION)

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

VGA_LINE_TEXT(pool, VGA_VIEWER_POOL, VGA_SYS_POOL)
VGA_SAME_ICON(pool, VGA_ICON_POOL)
VGA_LINE_TEXT(pool_lu, VGA_VIEWER_POOL_LU, VGA_POOL_LU)
VGA_SAME_ICON(pool_lu, VGA_ICON_POOLLU03)

VGA_LINE_TEXT(cpic, VGA_VIEWER_CPIC, VGA_CPIC)
VGA_SAME_ICON(cpic, VGA_ICON_CPIC)
VGA_LINE_TEXT(rje, VGA_VIEWER_RJE, VGA_RJE_WKSTN)
VGA_SAME_ICON(rje, VGA_ICON_RJEW)

VGA_TITLE_TEXT(vga_tnw_create_sess_title_viewer_text, VGA_VIEWER_TN_SESS_TITLE, tn_sess_columns)
VGA_LINE_TEXT(tn_sess, VGA_VIEWER_TN_SESS, VGA_TN_SESS)
VGA_SAME_ICON(tn_sess, VGA_ICON_TNCLIENT)
VGA_TITLE_TEXT(vga_tnw_create_assoc_title_viewer_text, VGA_VIEWER_TN_ASSOC_TITLE, tn_assoc_columns)
VGA_LINE_TEXT(tn_assoc, VGA_VIEWER_TN_ASSOC, VGA_TN_ASSOC)
VGA_SAME_ICON(tn_assoc, VGA_ICON_TNASSOC)
VGA_TITLE_TEXT(vga_tnw_create_redirect_title_viewer_text, VGA_VIEWER_TN_REDIRECT_TITLE,
               tn_redirect_columns)
VGA_LINE_TEXT(tn_redirect, VGA_VIEWER_TN_REDIRECT, VGA_TN_REDIRECT)
VGA_SAME_ICON(tn_redirect, VGA_ICON_TNREDIRECT)

VGA_TITLE_TEXT(vga_anyw_create_appcip_sess_title_viewer_text, VGA_VIEWER_APPCIP_SESS_TITLE,
               appcip_sess_columns)
VGA_LINE_TEXT(appcip_sess, VGA_VIEWER_APPCIP_SESS, VGA_TAMRIX_APPCIP_SESS)
VGA_SAME_ICON(appcip_sess, VGA_ICON_APPCIP)
