#include "linecolumns.h"
#include "nodewindowlines.h"
#include "recordpattern.h"

namespace {

using records::field;

/* Mode definitions. */

NB_VOID mode_ru_sizes(const VGA_MODE_DEF &record, NB_CHAR *text) {
    NAP_MODE_CHARS mode = record.vcb->mode_chars;
    if (mode.default_ru_size) {
        vga_write_word(VGA_MSG_DEFAULT_RU, text);
    } else {
        vga_print_msg(text, VGA_CELL_SIZE, VGA_MSG_LABEL_RU_RANGE, "l l",
                      NB_LONG{mode.max_ru_size_low}, NB_LONG{mode.max_ru_size_upp});
    }
}

/* It serves for names that nobody defined. */
NB_VOID mode_default(const VGA_MODE_DEF &record, NB_CHAR *text) {
    const NAP_DEFAULTS defaults = record.parent->defaults.def_data;
    if (memcmp(record.name, defaults.mode_name, sizeof(record.name)) == 0) {
        vga_write_word(VGA_MSG_IS_DEFAULT, text);
    }
}

constexpr VGA_LINE_COLUMN mode_def_columns[] = {
    {.heading = VGA_MSG_HEAD_MODE,
     .field = &field(records::mode_def, "name"),
     .none = VGA_MSG_BLANK_NAME},
    {.stop = 12, .heading = VGA_MSG_HEAD_COS, .field = &field(records::mode_def, "cos_name")},
    {.stop = 23,
     .heading = VGA_MSG_HEAD_SESSIONS,
     .field = &field(records::mode_def, "plu_mode_session_limit")},
    {.stop = 34, .heading = VGA_MSG_HEAD_RU_SIZES, .write = vga_written<mode_ru_sizes>},
    {.stop = 50, .heading = VGA_MSG_HEAD_USE, .write = vga_written<mode_default>},
    {.stop = 59,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::mode_def, "description")},
};

/* Transaction programs.  A name has up to 64 characters; most have 8, and what is cut off shows in
 * the properties. */

constexpr NB_USHORT after_tp_name = 34;

NB_VOID tp_name(const VGA_TP_DEF &record, NB_CHAR *text) {
    vga_write_tp_name(record.tp_name, text);
}

NB_VOID tp_security(const VGA_TP_DEF &record, NB_CHAR *text) {
    const NAP_TP_DATA *entry = record.vcb;
    if (!entry->def_data.conv_security) {
        vga_write_word(VGA_MSG_NO_SECURITY, text);
    } else if (!entry->def_data.security_access) {
        vga_write_word(VGA_MSG_PASSWORD, text);
    } else {
        vga_write_field({.field = &field(records::tp, "list_name"),
                         .none = VGA_MSG_PASSWORD,
                         .label = VGA_MSG_LABEL_LIST},
                        entry, text);
    }
}

constexpr VGA_LINE_COLUMN tp_def_columns[] = {
    {.heading = VGA_MSG_HEAD_PROGRAM, .write = vga_written<tp_name>},
    {.stop = after_tp_name,
     .heading = VGA_MSG_HEAD_STATUS,
     .field = &field(records::tp, "enabled"),
     .none = VGA_MSG_DISABLED,
     .other = VGA_MSG_ENABLED},
    {.stop = 46, .heading = VGA_MSG_HEAD_SECURITY, .write = vga_written<tp_security>},
    {.stop = 66, .heading = VGA_MSG_HEAD_DESCRIPTION, .field = &field(records::tp, "description")},
};

NB_VOID tp_load_name(const VGA_TP_LOAD_INFO &record, NB_CHAR *text) {
    vga_write_tp_name(record.key.tp_name, text);
}

constexpr VGA_LINE_COLUMN tp_load_info_columns[] = {
    {.heading = VGA_MSG_HEAD_PROGRAM, .write = vga_written<tp_load_name>},
    {.stop = after_tp_name,
     .heading = VGA_MSG_HEAD_LOCAL_LU,
     .field = &field(records::tp_load, "lu_alias"),
     .none = VGA_MSG_ANY_LU},
    {.stop = 45, .heading = VGA_MSG_HEAD_TYPE, .field = &field(records::tp_load, "tp_type")},
    {.stop = 63, .heading = VGA_MSG_HEAD_USER, .field = &field(records::tp_load, "user_id")},
    {.stop = 79, .heading = VGA_MSG_HEAD_PATH, .field = &field(records::tp_load, "path")},
};

/* Security. */

constexpr VGA_LINE_COLUMN cl_security_columns[] = {
    {.heading = VGA_MSG_HEAD_USER, .field = &field(records::userid_password, "name")},
    {.stop = 18,
     .heading = VGA_MSG_HEAD_PROFILE,
     .field = &field(records::userid_password, "profile"),
     .label = VGA_MSG_LABEL_PROFILE},
    {.stop = 38,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::userid_password, "description")},
};

constexpr VGA_LINE_COLUMN sl_security_columns[] = {
    {.heading = VGA_MSG_HEAD_LOCAL_LU, .field = &field(records::lu_lu_password, "lu_alias")},
    {.stop = 11,
     .heading = VGA_MSG_HEAD_PARTNER_LU,
     .field = &field(records::lu_lu_password, "name")},
    {.stop = 30,
     .heading = VGA_MSG_HEAD_VERIFICATION,
     .field = &field(records::lu_lu_password, "verification")},
    {.stop = 45,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::lu_lu_password, "description")},
};

NB_VOID access_list_users(const VGA_ACCESS_LIST &record, NB_CHAR *text) {
    vga_write_number(
        vga_count_items<NAP_ACCESS_LIST_USER>(record.vcb, VGA_NESTED(record, users, num_users)),
        VGA_MSG_LABEL_USERS, text);
}

constexpr VGA_LINE_COLUMN access_list_columns[] = {
    {.heading = VGA_MSG_HEAD_LIST, .field = &field(records::access_list, "name")},
    {.stop = 18, .heading = VGA_MSG_HEAD_USERS, .write = vga_written<access_list_users>},
    {.stop = 38,
     .heading = VGA_MSG_HEAD_DESCRIPTION,
     .field = &field(records::access_list, "description")},
};

} // namespace

VGA_LINE_TEXT(mode_def, VGA_VIEWER_MODE_DEF, VGA_MODE_DEF)
VGA_SAME_ICON(mode_def, VGA_ICON_MODE)

VGA_LINE_TEXT(tp_def, VGA_VIEWER_TP_DEF, VGA_TP_DEF)
VGA_SAME_ICON(tp_def, VGA_ICON_TPDEF)
VGA_LINE_TEXT(tp_load_info, VGA_VIEWER_TP_LOAD_INFO, VGA_TP_LOAD_INFO)
VGA_SAME_ICON(tp_load_info, VGA_ICON_TPLOAD)

VGA_LINE_TEXT(cl_security, VGA_VIEWER_CL_SECURITY, VGA_CLSEC_DEF)
VGA_SAME_ICON(cl_security, VGA_ICON_CONVSEC)
VGA_TITLE_TEXT(vga_slscw_create_sl_sec_title_viewer_text, VGA_VIEWER_SL_SEC_TITLE,
               sl_security_columns)
VGA_LINE_TEXT(sl_security, VGA_VIEWER_SL_SECURITY, VGA_SLSEC_DEF)
VGA_SAME_ICON(sl_security, VGA_ICON_SESSSEC)
VGA_LINE_TEXT(access_list, VGA_VIEWER_ACCESS_LIST, VGA_ACCESS_LIST)
VGA_SAME_ICON(access_list, VGA_ICON_ACCLIST)
