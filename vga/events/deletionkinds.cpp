/* The kinds of resources that can be deleted, and what the model itself refuses. */
#include "deletion.h"
#include "linetypes.h"
#include "messages.h"
#include "recordtypes.h"
#include "schemas.h"
#include "vgadsutl.h"
#include <algorithm>
#include <cstring>

namespace {

template <class Record> const Record &as(const NB_VOID *record) {
    return *static_cast<const Record *>(record);
}

/* What the system made can only be deleted by the system. */
constexpr NB_USHORT unless(bool defined) {
    return defined ? 0 : VGA_MSG_NODEW_NOT_DEFINED;
}

/* What nobody can stop alone. */
constexpr NB_USHORT while_active(bool active) {
    return active ? VGA_MSG_DELETE_ACTIVE : 0;
}

NB_USHORT refuses_port(const NB_VOID *record) {
    return unless(as<VGA_PORT>(record).vcb != nullptr);
}

NB_USHORT refuses_ls(const NB_VOID *record) {
    return unless(as<VGA_LS>(record).vcb->det_data.dynamic == 0);
}

/* A network's ports have their part in it while they are active. */
NB_USHORT refuses_cn_port(const NB_VOID *record) {
    const auto &member = as<VGA_CN_PORT>(record);
    const VGA_PORT *port = vga_find_port(member.parent->parent, member.port_name);
    return while_active(port != nullptr && port->vcb->det_data.port_state == NAP_ACTIVE);
}

NB_USHORT refuses_cn(const NB_VOID *record) {
    NB_USHORT reason = 0;
    vga_for_each(as<VGA_CN>(record).ports, &VGA_CN_PORT::links, [&reason](VGA_CN_PORT &member) {
        reason = reason != 0 ? reason : refuses_cn_port(&member);
    });
    return reason;
}

NB_USHORT refuses_pu(const NB_VOID *record) {
    return unless(as<VGA_LOCAL_PU>(record).ls_entry == nullptr);
}

NB_USHORT refuses_down_lu(const NB_VOID *record) {
    return while_active(as<VGA_DOWN_LU>(record).vcb->det_data.plu_sess_active != 0);
}

NB_USHORT refuses_lu62(const NB_VOID *record) {
    const auto &lu = as<VGA_LU62>(record);
    return unless(lu.parent->cp_lu != &lu);
}

/* The node's defaults name one, too. */
NB_USHORT refuses_mode(const NB_VOID *record) {
    const auto &mode = as<VGA_MODE_DEF>(record);
    const bool used =
        vga_count_mode_uses(&mode) != 0 ||
        memcmp(mode.parent->defaults.def_data.mode_name, mode.name, sizeof(mode.name)) == 0;
    return mode.sna_defined != 0 ? NB_USHORT{VGA_MSG_NODEW_NOT_DEFINED}
           : used                ? NB_USHORT{VGA_MSG_DELETE_IN_USE}
                                 : NB_USHORT{0};
}

/* Whether a record of the tree names another in a field of its entry. */
template <class Record, class Named>
NB_USHORT while_named(const AVL_TREE &tree, AVL_NODE Record::*links, const records::FieldRow &by,
                      const Named &name) {
    NB_USHORT reason = 0;
    vga_for_each(tree, links, [&](const Record &record) {
        const auto *entry = reinterpret_cast<const NB_UCHAR *>(record.vcb);
        if (memcmp(entry + by.offset, &name, sizeof(name)) == 0) {
            reason = VGA_MSG_DELETE_IN_USE;
        }
    });
    return reason;
}

NB_USHORT refuses_cos(const NB_VOID *record) {
    const auto &cos = as<VGA_COS>(record);
    return cos.vcb->def_data.sna_defined != 0
               ? NB_USHORT{VGA_MSG_NODEW_NOT_DEFINED}
               : while_named(cos.parent->mode_defs, &VGA_MODE_DEF::links,
                             records::field(records::mode_def, "cos_name"), cos.name);
}

NB_USHORT refuses_access_list(const NB_VOID *record) {
    const auto &list = as<VGA_ACCESS_LIST>(record);
    return while_named(list.parent->tp_defs, &VGA_TP_DEF::links,
                       records::field(records::tp, "list_name"), list.name);
}

NB_USHORT refuses_rem_sys(const NB_VOID *record) {
    return unless(as<VGA_REM_SYS>(record).defined != 0);
}

NB_USHORT refuses_plu(const NB_VOID *record) {
    const auto &plu = as<VGA_REM_PLU>(record);
    return unless(plu.defined != 0 || plu.in_directory != 0);
}

NB_USHORT refuses_primary_line(const NB_VOID *record) {
    return while_active(as<VGA_PRIMARY_LINE>(record).vcb->line_state != NAP_NOT_ACTIVE);
}

NB_USHORT refuses_primary_lu(const NB_VOID *record) {
    return while_active(as<VGA_PRIMARY_LU0>(record).vcb->lu_sess_active != 0);
}

using ROW = VGA_DELETABLE_ROW;

/* clang-format off */
constexpr ROW rows[] = {
    {.kind = VGA_DELETE_DLC, .schema = &records::dlc, .message = VGA_MSG_KIND_DLCS, .operable = VGA_OPERABLE_DLC},
    {.kind = VGA_DELETE_PORT, .schema = &records::port, .message = VGA_MSG_KIND_PORTS, .type = VGA_VIEWER_PORT, .operable = VGA_OPERABLE_PORT, .refuses = refuses_port},
    {.kind = VGA_DELETE_LS, .schema = &records::ls, .message = VGA_MSG_KIND_LINKS, .type = VGA_VIEWER_LS, .operable = VGA_OPERABLE_LS, .refuses = refuses_ls},
    {.kind = VGA_DELETE_CN, .schema = &records::cn, .message = VGA_MSG_KIND_CNS, .refuses = refuses_cn},
    {.kind = VGA_DELETE_CN_PORT, .schema = &records::cn_port, .message = VGA_MSG_KIND_CN_PORTS, .refuses = refuses_cn_port},
    {.kind = VGA_DELETE_PU, .schema = &records::pu, .message = VGA_MSG_KIND_PUS, .type = VGA_VIEWER_LOCAL_PU, .operable = VGA_OPERABLE_LOCAL_PU, .refuses = refuses_pu},
    {.kind = VGA_DELETE_DOWN_PU, .schema = &records::down_pu, .message = VGA_MSG_KIND_PUS, .operable = VGA_OPERABLE_DOWN_PU},
    {.kind = VGA_DELETE_LU03, .schema = &records::lu03, .message = VGA_MSG_KIND_LUS, .type = VGA_VIEWER_DEPLU, .operable = VGA_OPERABLE_LU03},
    {.kind = VGA_DELETE_DOWN_LU, .schema = &records::down_lu, .message = VGA_MSG_KIND_LUS, .type = VGA_VIEWER_DOWN_LU, .refuses = refuses_down_lu},
    {.kind = VGA_DELETE_LU62, .schema = &records::local_lu, .message = VGA_MSG_KIND_LOCAL_LUS, .type = VGA_VIEWER_LU62, .operable = VGA_OPERABLE_LU62, .refuses = refuses_lu62},
    {.kind = VGA_DELETE_ROUTING, .schema = &records::ls_routing, .message = VGA_MSG_KIND_ROUTINGS, .type = VGA_VIEWER_LS_R},
    {.kind = VGA_DELETE_PASSWORD, .schema = &records::lu_lu_password, .message = VGA_MSG_KIND_SECURITY, .type = VGA_VIEWER_SL_SECURITY},
    {.kind = VGA_DELETE_USERID, .schema = &records::userid_password, .message = VGA_MSG_KIND_SECURITY, .type = VGA_VIEWER_CL_SECURITY},
    {.kind = VGA_DELETE_MODE, .schema = &records::mode_def, .message = VGA_MSG_KIND_MODES, .type = VGA_VIEWER_MODE_DEF, .refuses = refuses_mode},
    {.kind = VGA_DELETE_TIMEOUT, .schema = &records::lu62_timeout},
    {.kind = VGA_DELETE_COS, .schema = &records::cos, .message = VGA_MSG_KIND_COSES, .refuses = refuses_cos},
    {.kind = VGA_DELETE_REM_SYS, .schema = nullptr, .message = VGA_MSG_KIND_REM_SYSTEMS, .type = VGA_VIEWER_REM_SYS, .refuses = refuses_rem_sys},
    {.kind = VGA_DELETE_PLU, .schema = nullptr, .message = VGA_MSG_KIND_PARTNERS, .type = VGA_VIEWER_REM_PLU, .refuses = refuses_plu},
    {.kind = VGA_DELETE_DIRECTORY, .schema = &records::directory},
    {.kind = VGA_DELETE_PLU_DEF, .schema = &records::plu_def},
    {.kind = VGA_DELETE_PRIMARY_LINE, .schema = &records::primary_line, .message = VGA_MSG_KIND_PRIMARY_LINES, .type = VGA_VIEWER_PRIMARY_LINE, .refuses = refuses_primary_line},
    {.kind = VGA_DELETE_PRIMARY_LU, .schema = &records::primary_lu0, .message = VGA_MSG_KIND_LUS, .type = VGA_VIEWER_PRIMARY_LU0, .refuses = refuses_primary_lu},
    {.kind = VGA_DELETE_TP, .schema = &records::tp, .message = VGA_MSG_KIND_PROGRAMS, .type = VGA_VIEWER_TP_DEF},
    {.kind = VGA_DELETE_TP_LOAD, .schema = &records::tp_load, .message = VGA_MSG_KIND_PROGRAMS, .type = VGA_VIEWER_TP_LOAD_INFO},
    {.kind = VGA_DELETE_ACCESS_LIST, .schema = &records::access_list, .message = VGA_MSG_KIND_ACCESS_LISTS, .type = VGA_VIEWER_ACCESS_LIST, .refuses = refuses_access_list},
    {.kind = VGA_DELETE_TN_CLIENT, .schema = &records::tn_access, .message = VGA_MSG_KIND_TN_RECORDS},
    {.kind = VGA_DELETE_TN_ASSOC, .schema = &records::tn_assoc, .message = VGA_MSG_KIND_TN_RECORDS, .type = VGA_VIEWER_TN_ASSOC},
    {.kind = VGA_DELETE_TN_REDIRECT, .schema = &records::tn_redirect, .message = VGA_MSG_KIND_TN_RECORDS, .type = VGA_VIEWER_TN_REDIRECT},
    {.kind = VGA_DELETE_POOL, .schema = nullptr, .message = VGA_MSG_KIND_POOLS, .type = VGA_VIEWER_POOL},
    {.kind = VGA_DELETE_NODE_POOL, .schema = &records::lu_pool},
    {.kind = VGA_DELETE_POOL_LU, .schema = &records::lu_pool, .message = VGA_MSG_KIND_POOL_LUS, .type = VGA_VIEWER_POOL_LU},
    {.kind = VGA_DELETE_USER, .schema = &records::user, .message = VGA_MSG_KIND_USERS, .type = VGA_VIEWER_USER},
    {.kind = VGA_DELETE_CPIC, .schema = &records::cpic, .message = VGA_MSG_KIND_CPICS, .type = VGA_VIEWER_CPIC},
    {.kind = VGA_DELETE_RJE, .schema = &records::rje, .message = VGA_MSG_KIND_RJES, .type = VGA_VIEWER_RJE},
    {.kind = VGA_DELETE_TN_SESSION, .schema = &records::tn_access, .message = VGA_MSG_KIND_SESSIONS, .type = VGA_VIEWER_TN_SESS, .part_key = {&item_field(records::tn_access, "port"), &item_field(records::tn_access, "listen_local_address")}, .last_takes_all = 1},
    {.kind = VGA_DELETE_USER_SESSION, .schema = &records::user, .message = VGA_MSG_KIND_SESSIONS, .type = VGA_VIEWER_USER_SESS, .part_key = {&item_field(records::user, "session_name")}},
    {.kind = VGA_DELETE_SESSION, .schema = &records::lu03, .operable = VGA_OPERABLE_LU03},
};
/* clang-format on */

constexpr bool in_order(NB_VOID) {
    for (size_t row = 0; row < std::size(rows); row++) {
        if (rows[row].kind != row) {
            return false;
        }
    }
    return std::size(rows) == VGA_DELETE_NOTHING;
}
static_assert(in_order());

} // namespace

const VGA_DELETABLE_ROW &vga_deletable_row(VGA_DELETABLE kind) {
    return rows[kind];
}

VGA_TO_DELETE vga_to_delete(NB_SHORT type, NB_VOID *record) {
    NB_SHORT row_type = type; /* leaves stand for the same as lines that open */
    row_type = type == VGA_VIEWER_LS_LEAF ? NB_SHORT{VGA_VIEWER_LS} : row_type;
    row_type = type == VGA_VIEWER_REM_PLU_LEAF ? NB_SHORT{VGA_VIEWER_REM_PLU} : row_type;
    const auto *row = std::find_if(std::begin(rows), std::end(rows), [row_type](const ROW &one) {
        return row_type >= 0 && one.type == row_type;
    });
    return row != std::end(rows) ? VGA_TO_DELETE{row->kind, record}
                                 : VGA_TO_DELETE{VGA_DELETE_NOTHING, nullptr};
}

std::vector<VGA_TO_DELETE> vga_selected_to_delete(const VGA_VIEWER_ROOT *root) {
    std::vector<VGA_TO_DELETE> all;
    if (root->select_count == 0) {
        return all;
    }
    const VGA_VIEWER_LIST &lines =
        root->select_parent != nullptr ? root->select_parent->children : root->top_items;
    for (NB_LONG at = 0; at < root->select_count; at++) {
        if (const VGA_VIEWER_ITEM *line =
                vga_viewer_find_selected(&lines, static_cast<NB_ULONG>(at))) {
            all.push_back(vga_to_delete(line->type, line->data));
        }
    }
    return all;
}

std::string vga_part_key(const VGA_DELETABLE_ROW &row, const NB_VOID *part) {
    std::string key;
    for (const records::FieldRow *field : row.part_key) {
        if (field != nullptr) {
            key.append(static_cast<const NB_CHAR *>(part) + field->offset, field->width);
        }
    }
    return key;
}
