#include "windowtable.h"
#include "forms.h"
#include "listwindow.h"
#include "recordwindow.h"
#include "vganotices.h"
#include <algorithm>
#include <string_view>

#include "windowrows.h"

namespace {

#include "formrows.h"

NB_USHORT no_widgets(VGA_DIALOG *) {
    return 1;
}

constexpr VGA_UID_DESC row(NB_USHORT dialog_id, std::string_view name, VGA_DIALOG_KIND kind) {
    VGA_UID_DESC row = {.dialog_id = dialog_id, .name = {}, .kind = kind};
    for (size_t at = 0; at < name.size(); at++) {
        row.name[at] = name[at];
    }
    row.name[name.size()] = '\0'; /* an error of the compiler where it does not fit */
    return row;
}

/* What the build makes of a description in resources/dialogs (form_rows) or resources/windows
 * (window_rows); null where there is none of that name. */
template <class Row, size_t count>
constexpr const Row *find_described(const Row (&rows)[count], std::string_view name) {
    for (const Row &row : rows) {
        if (name == row.name) {
            return &row;
        }
    }
    return nullptr;
}

constexpr VGA_UID_DESC form(VGA_UID_DESC made, const VGA_FORM_ROW &form) {
    made.desc_size = form.desc_size;
    made.get_widgets = form.get_widgets;
    made.close_proc = form.close_proc;
    made.record_changed = vga_form_record_changed;
    made.may_close = vga_form_may_close;
    return made;
}

constexpr VGA_UID_DESC list_window(VGA_UID_DESC made, const VGA_LISTW_UID_ROW &window) {
    made.desc_size = window.desc_size;
    made.get_widgets = window.get_widgets;
    made.close_proc = window.close_proc;
    made.command_proc = vga_listw_command_proc;
    made.delete_action = vga_listw_delete_key;
    made.zoom_action = vga_listw_zoom_key;
    made.add_action = vga_listw_add_key;
    made.callbacks = window.callbacks;
    made.callback_count = window.callback_count;
    made.actions = window.actions;
    made.action_count = window.action_count;
    made.record_changed = window.record_changed;
    return made;
}

/* A dialog of fields (form.h), a list window (listwindow.h), or a window that is not in this
 * release: its description is made from resources/uil/later.txt. */
constexpr VGA_UID_DESC dialog(VGA_DIALOG_ID dialog_id, std::string_view name,
                              VGA_DIALOG_KIND kind) {
    VGA_UID_DESC made = row(dialog_id, name, kind);
    if (const VGA_FORM_ROW *described = find_described(form_rows, name)) {
        return form(made, *described);
    }
    if (const VGA_LISTW_UID_ROW *described = find_described(window_rows, name)) {
        return list_window(made, *described);
    }
    made.later = 1;
    made.desc_size = sizeof(VGA_DIALOG);
    made.get_widgets = no_widgets;
    return made;
}

constexpr VGA_UID_TABLE rows = {{
    dialog(VGA_UID_SYSTEM_WINDOW, "sysw", VGA_KIND_MAIN),
    dialog(VGA_UID_NODE_WINDOW, "nodew", VGA_KIND_MAIN),
    dialog(VGA_UID_LU62_DIALOG, "lu62d", VGA_KIND_DIALOG),
    dialog(VGA_UID_NODE_DIALOG, "noded", VGA_KIND_DIALOG),
    dialog(VGA_UID_LLC2_PORT_DIALOG, "llc2p", VGA_KIND_DIALOG),
    dialog(VGA_UID_LLC2_LS_DIALOG, "llc2l", VGA_KIND_DIALOG),
    dialog(VGA_UID_LU03_DIALOG, "lu32d", VGA_KIND_DIALOG),
    dialog(VGA_UID_USER_DIALOG, "userd", VGA_KIND_DIALOG),
    dialog(VGA_UID_PLU_DEF_DIALOG, "plud", VGA_KIND_DIALOG),
    dialog(VGA_UID_REMOTE_NODE_DIALOG, "remnd", VGA_KIND_DIALOG),
    dialog(VGA_UID_USER_WINDOW, "userw", VGA_KIND_MAIN),
    dialog(VGA_UID_SDLC_PORT_DIALOG, "sdlcp", VGA_KIND_DIALOG),
    dialog(VGA_UID_SDLC_LS_DIALOG, "sdlcl", VGA_KIND_DIALOG),
    dialog(VGA_UID_POOL_WINDOW, "poolw", VGA_KIND_MAIN),
    dialog(VGA_UID_POOL_DIALOG, "poold", VGA_KIND_DIALOG),
    dialog(VGA_UID_DSLU_DIALOG, "dslud", VGA_KIND_DIALOG),
    dialog(VGA_UID_CPIC_WINDOW, "cpicw", VGA_KIND_MAIN),
    dialog(VGA_UID_CPIC_DIALOG, "cpicd", VGA_KIND_DIALOG),
    dialog(VGA_UID_MODE_WINDOW, "modew", VGA_KIND_DIALOG),
    dialog(VGA_UID_MODE_DIALOG, "moded", VGA_KIND_DIALOG),
    dialog(VGA_UID_RJEW_WINDOW, "rjeww", VGA_KIND_MAIN),
    dialog(VGA_UID_RJEW_DIALOG, "rjewd", VGA_KIND_DIALOG),
    dialog(VGA_UID_PU_DIALOG, "inpud", VGA_KIND_DIALOG),
    dialog(VGA_UID_LOG_DIALOG, "logd", VGA_KIND_DIALOG),
    dialog(VGA_UID_TRACE_DIALOG, "trcd", VGA_KIND_DIALOG),
    dialog(VGA_UID_QLLC_PORT_DIALOG, "qllcp", VGA_KIND_DIALOG),
    dialog(VGA_UID_QLLC_LS_DIALOG, "qllcl", VGA_KIND_DIALOG),
    dialog(VGA_UID_NODE_CONTEXT_ADD_DIALOG, "nctxd", VGA_KIND_DIALOG),
    dialog(VGA_UID_REM_SYS_CTX_ADD_DIALOG, "rctxd", VGA_KIND_DIALOG),
    dialog(VGA_UID_3270_SESS_DIALOG, "ss32d", VGA_KIND_DIALOG),
    dialog(VGA_UID_5250_SESS_DIALOG, "ss52d", VGA_KIND_DIALOG),
    dialog(VGA_UID_USERS_CTX_ADD_DIALOG, "uctxd", VGA_KIND_DIALOG),
    dialog(VGA_UID_QLLC_PORT_ADV_DIALOG, "qadvp", VGA_KIND_MODAL),
    dialog(VGA_UID_LLC2_PORT_ADV_DIALOG, "ladvp", VGA_KIND_MODAL),
    dialog(VGA_UID_SDLC_PORT_ADV_DIALOG, "sadvp", VGA_KIND_MODAL),
    dialog(VGA_UID_SDLC_LS_ADV_DIALOG, "sadvl", VGA_KIND_MODAL),
    dialog(VGA_UID_LLC2_LS_ADV_DIALOG, "ladvl", VGA_KIND_MODAL),
    dialog(VGA_UID_QLLC_LS_ADV_DIALOG, "qadvl", VGA_KIND_MODAL),
    {VGA_UID_START_HELP_DIALOG, "shlpd", VGA_KIND_MODAL, sizeof(VGA_DIALOG), no_widgets, nullptr,
     nullptr, nullptr, nullptr, nullptr, gvga_shlpd_callbacks, VGA_SHLPD_CALLBACK_COUNT, nullptr, 0,
     vga_shlpd_record_changed},
    dialog(VGA_UID_USER_STATUS_DIALOG, "ustad", VGA_KIND_DIALOG),
    dialog(VGA_UID_TN_WINDOW, "tnw", VGA_KIND_MAIN),
    dialog(VGA_UID_TN_DIALOG, "tnd", VGA_KIND_DIALOG),
    dialog(VGA_UID_SESS_LIMIT_DIALOG, "mdsls", VGA_KIND_DIALOG),
    dialog(VGA_UID_CL_SECURITY_WINDOW, "clscw", VGA_KIND_MAIN),
    dialog(VGA_UID_CL_SECURITY_DIALOG, "clscd", VGA_KIND_DIALOG),
    dialog(VGA_UID_SL_SECURITY_WINDOW, "slscw", VGA_KIND_DIALOG),
    dialog(VGA_UID_SL_SECURITY_DIALOG, "slscd", VGA_KIND_DIALOG),
    {VGA_UID_ABOUT_BOX, "about", VGA_KIND_MODAL, sizeof(VGA_DIALOG), vga_get_widgets_about},
    dialog(VGA_UID_POOL_CTX_ADD_DIALOG, "pctxd", VGA_KIND_DIALOG),
    dialog(VGA_UID_STOP_LS_DIALOG, "stopl", VGA_KIND_MODAL),
    dialog(VGA_UID_START_LS_DIALOG, "strtl", VGA_KIND_MODAL),
    dialog(VGA_UID_LEAD_DIALOG, "leadd", VGA_KIND_MODAL),
    dialog(VGA_UID_PORT_DET_DIALOG, "ports", VGA_KIND_DIALOG),
    dialog(VGA_UID_LINK_DET_DIALOG, "links", VGA_KIND_DIALOG),
    dialog(VGA_UID_LU62_ADV_DIALOG, "lu62a", VGA_KIND_MODAL),
    dialog(VGA_UID_LU32_ADV_DIALOG, "lu32a", VGA_KIND_MODAL),
    dialog(VGA_UID_CHNL_PORT_DIALOG, "chnlp", VGA_KIND_DIALOG),
    dialog(VGA_UID_CHNL_LS_DIALOG, "chnll", VGA_KIND_DIALOG),
    dialog(VGA_UID_CHNL_PORT_ADV_DIALOG, "cadvp", VGA_KIND_MODAL),
    dialog(VGA_UID_CHNL_LS_ADV_DIALOG, "cadvl", VGA_KIND_MODAL),
    dialog(VGA_UID_TN_ASSOC_DIALOG, "tnasd", VGA_KIND_DIALOG),
    dialog(VGA_UID_TN_DEFAULTS_DIALOG, "tndfd", VGA_KIND_DIALOG),
    dialog(VGA_UID_NODE_ADV_DIALOG, "nodea", VGA_KIND_MODAL),
    dialog(VGA_UID_HPR_WINDOW, "hprw", VGA_KIND_MAIN),
    dialog(VGA_UID_RTP_CONN_STATUS_DIALOG, "rtpd", VGA_KIND_DIALOG),
    dialog(VGA_UID_LS_ROUTING_DIALOG, "lsrd", VGA_KIND_DIALOG),
    dialog(VGA_UID_TAMRIX_WINDOW, "anyw", VGA_KIND_MAIN),
    dialog(VGA_UID_TAMRIX_APPCIP_DIALOG, "apdfd", VGA_KIND_DIALOG),
    dialog(VGA_UID_DSLUP_DIALOG, "dslup", VGA_KIND_DIALOG),
    dialog(VGA_UID_LULI_DIALOG, "lulid", VGA_KIND_DIALOG),
    dialog(VGA_UID_LULI_ADV_DIALOG, "lulia", VGA_KIND_MODAL),
    dialog(VGA_UID_LULU_DIALOG, "lulud", VGA_KIND_DIALOG),
    dialog(VGA_UID_LULU_ADV_DIALOG, "lulua", VGA_KIND_MODAL),
    dialog(VGA_UID_SALD_DIALOG, "sald", VGA_KIND_DIALOG),
    dialog(VGA_UID_TP_WINDOW, "tpw", VGA_KIND_MAIN),
    dialog(VGA_UID_TP_DIALOG, "tpd", VGA_KIND_DIALOG),
    dialog(VGA_UID_TP_LOAD_DIALOG, "tpld", VGA_KIND_DIALOG),
    dialog(VGA_UID_ACTIVATE_SESS_DIALOG, "actsd", VGA_KIND_DIALOG),
    dialog(VGA_UID_TN_REDIRECT_DIALOG, "tnrdd", VGA_KIND_DIALOG),
    dialog(VGA_UID_IP_PORT_DIALOG, "ipp", VGA_KIND_DIALOG),
    dialog(VGA_UID_IP_PORT_ADV_DIALOG, "iadvp", VGA_KIND_MODAL),
    dialog(VGA_UID_IP_LS_DIALOG, "ipl", VGA_KIND_DIALOG),
    dialog(VGA_UID_IP_LS_ADV_DIALOG, "iadvl", VGA_KIND_MODAL),
    dialog(VGA_UID_TN_SLP_DIALOG, "tnslp", VGA_KIND_DIALOG),
    dialog(VGA_UID_TN_SSL_DIALOG, "tnssl", VGA_KIND_DIALOG),
    dialog(VGA_UID_TN_SLS_DIALOG, "tnsls", VGA_KIND_MAIN),
    dialog(VGA_UID_TN_EXL_DIALOG, "tnexl", VGA_KIND_DIALOG),
}};

/* A row that is missing would leave the last ones zero; one in the wrong place shows here too. */
constexpr bool in_order(const VGA_UID_TABLE &table) {
    NB_USHORT id = 0;
    for (const VGA_UID_DESC &row : table) {
        if (row.dialog_id != id++ || row.name[0] == '\0') {
            return false;
        }
    }
    return true;
}
static_assert(in_order(rows) && VGA_UID_TN_EXL_DIALOG == VGA_UID_MAX);

/* What is described and has no row: the editors of lists' rows and of listed records. */
constexpr bool is_part(const VGA_FORM_ROW &form) {
    return std::none_of(rows.begin(), rows.end(), [&form](const VGA_UID_DESC &row) {
        return std::string_view(row.name) == form.name;
    });
}

constexpr VGA_UID_DESC record_window(NB_USHORT id, std::string_view name) {
    VGA_UID_DESC made = row(id, name, VGA_KIND_DIALOG);
    made.desc_size = sizeof(VGA_DIALOG);
    made.get_widgets = vga_record_window_get_widgets;
    made.close_proc = vga_record_window_close_proc;
    made.record_changed = vga_record_window_record_changed;
    return made;
}

/* A child form is modal by itself. */
std::vector<VGA_UID_DESC> make_parts() {
    std::vector<VGA_UID_DESC> parts;
    const auto next = [&parts] { return static_cast<NB_USHORT>(VGA_UID_PARTS + parts.size()); };
    for (const VGA_FORM_ROW &described : form_rows) {
        if (is_part(described)) {
            parts.push_back(form(row(next(), described.name, VGA_KIND_DIALOG), described));
        }
    }
    for (const VGA_RECORD_WINDOW &window : gvga_record_windows) {
        parts.push_back(record_window(next(), window.name));
    }
    return parts;
}

std::vector<VGA_UID_DESC> parts = make_parts();

} // namespace

VGA_UID_TABLE gvga_uid_desc = rows;
std::span<VGA_UID_DESC> gvga_part_desc = parts;

const VGA_UID_ROLES gvga_uid_roles = {.system_window = VGA_UID_SYSTEM_WINDOW,
                                      .node_window = VGA_UID_NODE_WINDOW,
                                      .about_box = VGA_UID_ABOUT_BOX};
