#include "linerules.h"
#include "dialogids.h"
#include "vgadgutl.h"
#include "vgaviewr.h"
#include <algorithm>
#include <cstring>

namespace {

template <class Record> const Record &as(const NB_VOID *record) {
    return *static_cast<const Record *>(record);
}

/* Ports and link stations have a dialog for each kind of link. */
constexpr struct {
    NB_ULONG dlc_type;
    NB_USHORT port, ls;
} links[] = {
    {NAP_DLC_SDLC, VGA_UID_SDLC_PORT_DIALOG, VGA_UID_SDLC_LS_DIALOG},
    {NAP_DLC_QLLC, VGA_UID_QLLC_PORT_DIALOG, VGA_UID_QLLC_LS_DIALOG},
    {NAP_DLC_CHANNEL, VGA_UID_CHNL_PORT_DIALOG, VGA_UID_CHNL_LS_DIALOG},
    {NAP_DLC_MPC, VGA_UID_CHNL_PORT_DIALOG, VGA_UID_CHNL_LS_DIALOG},
    {NAP_DLC_MPC_PLUS, VGA_UID_CHNL_PORT_DIALOG, VGA_UID_CHNL_LS_DIALOG},
    {NAP_DLC_IP, VGA_UID_IP_PORT_DIALOG, VGA_UID_IP_LS_DIALOG},
};
constexpr auto lan = VGA_UID_LLC2_PORT_DIALOG;
constexpr auto lan_ls = VGA_UID_LLC2_LS_DIALOG;

NB_USHORT port_dialog(const NB_VOID *record) {
    const VGA_PORT *port = static_cast<const VGA_PORT *>(record);
    const NB_ULONG type =
        port != nullptr && port->vcb != nullptr ? port->vcb->def_data.dlc_type : 0;
    for (const auto &row : links) {
        if (row.dlc_type == type) {
            return row.port;
        }
    }
    return lan;
}

NB_USHORT ls_dialog(const NB_VOID *record) {
    const VGA_PORT *port = record != nullptr ? as<VGA_LS>(record).parent : nullptr;
    const NB_ULONG type =
        port != nullptr && port->vcb != nullptr ? port->vcb->def_data.dlc_type : 0;
    for (const auto &row : links) {
        if (row.dlc_type == type) {
            return row.ls;
        }
    }
    return lan_ls;
}

/* Defined by an operator, or made by the node. */

NB_USHORT port_is_defined(const NB_VOID *record) {
    return as<VGA_PORT>(record).vcb != nullptr;
}
NB_USHORT ls_is_defined(const NB_VOID *record) {
    return !as<VGA_LS>(record).vcb->det_data.dynamic;
}
/* The other PUs are made by their link stations. */
NB_USHORT pu_is_defined(const NB_VOID *record) {
    return as<VGA_LOCAL_PU>(record).ls_entry == nullptr;
}
NB_USHORT lu62_is_defined(const NB_VOID *record) {
    const auto &lu = as<VGA_LU62>(record);
    return lu.parent->cp_lu != &lu;
}
NB_USHORT rem_sys_is_defined(const NB_VOID *record) {
    return as<VGA_REM_SYS>(record).defined;
}
NB_USHORT rem_plu_is_defined(const NB_VOID *record) {
    const auto &plu = as<VGA_REM_PLU>(record);
    return plu.defined || plu.in_directory;
}

constexpr VGA_LINE_RULE rules[] = {
    {.type = VGA_VIEWER_LU62,
     .words = VGA_MSG_KIND_LOCAL_LUS,
     .properties = VGA_UID_LU62_DIALOG,
     .is_defined = lu62_is_defined},
    {.type = VGA_VIEWER_MODE,
     .words = VGA_MSG_KIND_MODES,
     .properties = VGA_UID_SESS_LIMIT_DIALOG,
     .can_copy = 0,
     .can_delete = 0},
    {.type = VGA_VIEWER_PORT,
     .words = VGA_MSG_KIND_PORTS,
     .properties_of = port_dialog,
     .status = VGA_UID_PORT_DET_DIALOG,
     .is_defined = port_is_defined},
    {.type = VGA_VIEWER_LS,
     .words = VGA_MSG_KIND_LINKS,
     .properties_of = ls_dialog,
     .status = VGA_UID_LINK_DET_DIALOG,
     .is_defined = ls_is_defined},
    {.type = VGA_VIEWER_LS_LEAF,
     .words = VGA_MSG_KIND_LINKS,
     .properties_of = ls_dialog,
     .status = VGA_UID_LINK_DET_DIALOG,
     .is_defined = ls_is_defined},
    {.type = VGA_VIEWER_LOCAL_PU,
     .words = VGA_MSG_KIND_PUS,
     .properties = VGA_UID_PU_DIALOG,
     .is_defined = pu_is_defined},
    {.type = VGA_VIEWER_DEPLU, .words = VGA_MSG_KIND_LUS, .properties = VGA_UID_LU03_DIALOG},
    {.type = VGA_VIEWER_DOWN_LU, .words = VGA_MSG_KIND_LUS, .properties = VGA_UID_DSLU_DIALOG},
    {.type = VGA_VIEWER_REM_SYS,
     .words = VGA_MSG_KIND_REM_SYSTEMS,
     .properties = VGA_UID_REMOTE_NODE_DIALOG,
     .is_defined = rem_sys_is_defined},
    {.type = VGA_VIEWER_REM_PLU,
     .words = VGA_MSG_KIND_PARTNERS,
     .properties = VGA_UID_PLU_DEF_DIALOG,
     .is_defined = rem_plu_is_defined},
    {.type = VGA_VIEWER_REM_PLU_LEAF,
     .words = VGA_MSG_KIND_PARTNERS,
     .properties = VGA_UID_PLU_DEF_DIALOG,
     .is_defined = rem_plu_is_defined},
    {.type = VGA_VIEWER_REM_SESS,
     .words = VGA_MSG_KIND_MODES,
     .topic = "c_limits",
     .can_copy = 0,
     .can_delete = 0},
    {.type = VGA_VIEWER_LS_R,
     .words = VGA_MSG_KIND_ROUTINGS,
     .properties = VGA_UID_LS_ROUTING_DIALOG},
    {.type = VGA_VIEWER_PRIMARY_LINE,
     .words = VGA_MSG_KIND_PRIMARY_LINES,
     .properties = VGA_UID_SDLC_PORT_DIALOG},
    {.type = VGA_VIEWER_PRIMARY_LU0, .words = VGA_MSG_KIND_LUS, .properties = VGA_UID_LULU_DIALOG},
    {.type = VGA_VIEWER_NODE,
     .words = VGA_MSG_KIND_NODES,
     .topic = "noded",
     .can_copy = 0,
     .can_delete = 0},
    {.type = VGA_VIEWER_USER,
     .words = VGA_MSG_KIND_USERS,
     .properties = VGA_UID_USER_DIALOG,
     .status = VGA_UID_USER_STATUS_DIALOG},
    {.type = VGA_VIEWER_POOL, .words = VGA_MSG_KIND_POOLS, .properties = VGA_UID_POOL_DIALOG},
    {.type = VGA_VIEWER_POOL_LU, .words = VGA_MSG_KIND_POOL_LUS, .topic = "c_pools", .can_copy = 0},
    {.type = VGA_VIEWER_CPIC, .words = VGA_MSG_KIND_CPICS, .properties = VGA_UID_CPIC_DIALOG},
    {.type = VGA_VIEWER_MODE_DEF, .words = VGA_MSG_KIND_MODES, .properties = VGA_UID_MODE_DIALOG},
    {.type = VGA_VIEWER_RJE, .words = VGA_MSG_KIND_RJES, .properties = VGA_UID_RJEW_DIALOG},
    {.type = VGA_VIEWER_TN_SESS, .words = VGA_MSG_KIND_SESSIONS, .properties = VGA_UID_TN_DIALOG},
    {.type = VGA_VIEWER_TN_ASSOC,
     .words = VGA_MSG_KIND_TN_RECORDS,
     .properties = VGA_UID_TN_ASSOC_DIALOG},
    {.type = VGA_VIEWER_TN_REDIRECT,
     .words = VGA_MSG_KIND_TN_RECORDS,
     .properties = VGA_UID_TN_REDIRECT_DIALOG},
    {.type = VGA_VIEWER_CL_SECURITY,
     .words = VGA_MSG_KIND_SECURITY,
     .properties = VGA_UID_CL_SECURITY_DIALOG},
    {.type = VGA_VIEWER_SL_SECURITY,
     .words = VGA_MSG_KIND_SECURITY,
     .properties = VGA_UID_SL_SECURITY_DIALOG},
    {.type = VGA_VIEWER_ACCESS_LIST,
     .words = VGA_MSG_KIND_ACCESS_LISTS,
     .properties = VGA_UID_SALD_DIALOG},
    {.type = VGA_VIEWER_TP_DEF, .words = VGA_MSG_KIND_PROGRAMS, .properties = VGA_UID_TP_DIALOG},
    {.type = VGA_VIEWER_TP_LOAD_INFO,
     .words = VGA_MSG_KIND_PROGRAMS,
     .properties = VGA_UID_TP_LOAD_DIALOG},
    {.type = VGA_VIEWER_DSLU_TEMPLATE, .properties = VGA_UID_DSLUP_DIALOG},
    {.type = VGA_VIEWER_RTP_CONN,
     .words = VGA_MSG_KIND_RTP_CONNECTIONS,
     .status = VGA_UID_RTP_CONN_STATUS_DIALOG,
     .can_copy = 0,
     .can_delete = 0},
    {.type = VGA_VIEWER_APPCIP_SESS,
     .words = VGA_MSG_KIND_SESSIONS,
     .can_copy = 0,
     .can_delete = 0},
};

/* The column of a line that names it ends where the next one begins. */
constexpr NB_CHAR next_column[] = "%t";

} // namespace

const VGA_LINE_RULE *vga_line_rule(NB_SHORT type) {
    const auto *found = std::find_if(std::begin(rules), std::end(rules),
                                     [type](const auto &rule) { return rule.type == type; });
    return found != std::end(rules) ? found : nullptr;
}

std::string vga_lines_in_words(NB_SHORT type, NB_ULONG count) {
    const VGA_LINE_RULE *rule = vga_line_rule(type);
    return vga_counted(rule != nullptr ? rule->words : VGA_LINE_RULE{}.words, count);
}

NB_USHORT vga_properties_of(const VGA_LINE_RULE &rule, const NB_VOID *record) {
    return rule.properties_of != nullptr ? rule.properties_of(record) : rule.properties;
}

const NB_CHAR *vga_topic_of(const VGA_LINE_RULE &rule, const NB_VOID *record) {
    const NB_USHORT properties = vga_properties_of(rule, record);
    const VGA_UID_DESC *row = vga_find_row(properties != VGA_NO_DIALOG ? properties : rule.status);
    return rule.topic != nullptr ? rule.topic : row != nullptr ? row->name : nullptr;
}

NB_USHORT vga_is_written(NB_USHORT dialog_id) {
    const VGA_UID_DESC *row = vga_find_row(dialog_id);
    return row != nullptr && row->get_widgets != nullptr && row->later == 0;
}

std::string vga_line_name(const VGA_VIEWER_ITEM &item) {
    if (item.type == VGA_VIEWER_NODE) { /* its column may be too narrow */
        const auto &node = as<VGA_NODE>(item.data);
        return {node.name, strnlen(node.name, sizeof(node.name))};
    }
    const VGA_VIEWER_DESC *type = vga_viewer_type(item.type);
    if (type->create_text == nullptr) {
        return {};
    }
    NB_CHAR buffer[VGA_VIEWER_TEXT_BUFFER];
    std::string text(buffer, type->create_text(item.data, buffer));
    text.resize(std::min(text.size(), text.find(next_column)));
    text.resize(text.find_last_not_of(' ') + 1);
    return text;
}
