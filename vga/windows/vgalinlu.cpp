#include "vgalincl.h"
#include "vgalinrs.h"
#include "vgarec.h"

namespace {

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

constexpr VGA_LINE_COLUMN mode_def_columns[] = {
    {0, 0, vga_ebcdic_cell(VGA_FIELD(NAP_MODE_DEF_DATA, mode_name), VGA_MSG_BLANK_NAME)},
    {12, 0,
     vga_ebcdic_cell(VGA_FIELD(NAP_MODE_DEF_DATA, mode_chars.cos_name))
         .labelled(VGA_MSG_LABEL_COS_NAME)},
    {28, 0,
     vga_number_cell(VGA_FIELD(NAP_MODE_DEF_DATA, mode_chars.plu_mode_session_limit))
         .labelled(VGA_MSG_LABEL_SESSIONS)},
    {47, 0, vga_written_cell<mode_ru_sizes>()},
    {67, 0, vga_local_cell(VGA_FIELD(NAP_MODE_DEF_DATA, mode_chars.description))},
};

/* Transaction programs.  A name has up to 64 characters; most have 8, and what is cut off shows in
 * the properties. */

constexpr NB_USHORT after_tp_name = 34;

NB_VOID tp_name(const VGA_TP_DEF &record, NB_CHAR *text) {
    vga_write_tp_name(record.tp_name, text);
}

constexpr VGA_WORD disabled_word[] = {{0, VGA_MSG_DISABLED}};

NB_VOID tp_security(const VGA_TP_DEF &record, NB_CHAR *text) {
    const NAP_TP_DATA *entry = record.vcb;
    if (!entry->def_data.conv_security) {
        vga_write_word(VGA_MSG_NO_SECURITY, text);
    } else if (!entry->def_data.security_access) {
        vga_write_word(VGA_MSG_PASSWORD, text);
    } else {
        vga_write_field(vga_local_cell(VGA_FIELD(NAP_TP_DATA, def_data.list_name), VGA_MSG_PASSWORD)
                            .labelled(VGA_MSG_LABEL_LIST),
                        entry, text);
    }
}

constexpr VGA_LINE_COLUMN tp_def_columns[] = {
    {0, 0, vga_written_cell<tp_name>()},
    {after_tp_name, 0,
     vga_word_cell(VGA_FIELD(NAP_TP_DATA, def_data.enabled), disabled_word, VGA_MSG_ENABLED)},
    {46, 0, vga_written_cell<tp_security>()},
    {66, 0, vga_local_cell(VGA_FIELD(NAP_TP_DATA, def_data.description))},
};

NB_VOID tp_load_name(const VGA_TP_LOAD_INFO &record, NB_CHAR *text) {
    vga_write_tp_name(record.key.tp_name, text);
}

constexpr VGA_WORD tp_type_words[] = {
    {NAP_TP_QUEUED, VGA_MSG_QUEUED},
    {NAP_TP_QUEUED_BROADCAST, VGA_MSG_QUEUED_BROADCAST},
    {NAP_TP_NON_QUEUED, VGA_MSG_NOT_QUEUED},
};

constexpr VGA_LINE_COLUMN tp_load_columns[] = {
    {0, 0, vga_written_cell<tp_load_name>()},
    {after_tp_name, 0, vga_local_cell(VGA_FIELD(NAP_TP_LOAD_DATA, lu_alias), VGA_MSG_ANY_LU)},
    {45, 0,
     vga_word_cell(VGA_FIELD(NAP_TP_LOAD_DATA, def_data.tp_type), tp_type_words,
                   VGA_MSG_UNKNOWN_STATUS)},
    {63, 0, vga_local_cell(VGA_FIELD(NAP_TP_LOAD_DATA, def_data.user_id))},
    {79, 0, vga_local_cell(VGA_FIELD(NAP_TP_LOAD_DATA, def_data.path))},
};

/* Security. */

constexpr VGA_LINE_COLUMN cl_security_columns[] = {
    {0, 0, vga_ebcdic_cell(VGA_FIELD(NAP_USERID_PASSWORD_DATA, user_id))},
    {18, 0,
     vga_ebcdic_cell(VGA_FIELD(NAP_USERID_PASSWORD_DATA, def_data.profile))
         .labelled(VGA_MSG_LABEL_PROFILE)},
    {38, 0, vga_local_cell(VGA_FIELD(NAP_USERID_PASSWORD_DATA, def_data.description))},
};

constexpr VGA_WORD verification_words[] = {{0, VGA_MSG_BASIC}, {1, VGA_MSG_ENHANCED}};

constexpr VGA_LINE_COLUMN sl_security_columns[] = {
    {0, VGA_MSG_HEAD_LOCAL_LU, vga_local_cell(VGA_FIELD(NAP_LU_LU_PASSWORD_DATA, lu_alias))},
    {11, VGA_MSG_HEAD_PARTNER_LU, vga_ebcdic_cell(VGA_FIELD(NAP_LU_LU_PASSWORD_DATA, fqplu_name))},
    {30, VGA_MSG_HEAD_VERIFICATION,
     vga_word_cell(VGA_FIELD(NAP_LU_LU_PASSWORD_DATA, def_data.verification), verification_words,
                   VGA_MSG_UNKNOWN_STATUS)},
    {45, VGA_MSG_HEAD_DESCRIPTION,
     vga_local_cell(VGA_FIELD(NAP_LU_LU_PASSWORD_DATA, def_data.description))},
};

NB_VOID access_list_users(const VGA_ACCESS_LIST &record, NB_CHAR *text) {
    vga_write_number(
        vga_count_items<NAP_ACCESS_LIST_USER>(record.vcb, VGA_NESTED(record, users, num_users)),
        VGA_MSG_LABEL_USERS, text);
}

constexpr VGA_LINE_COLUMN access_list_columns[] = {
    {0, 0, vga_local_cell(VGA_FIELD(NAP_ACCESS_LIST_DATA, list_name))},
    {18, 0, vga_written_cell<access_list_users>()},
    {38, 0, vga_local_cell(VGA_FIELD(NAP_ACCESS_LIST_DATA, def_data.description))},
};

} // namespace

VGA_LINE_TEXT(vga_create_mode_def_viewer_text, VGA_VIEWER_MODE_DEF, VGA_MODE_DEF, mode_def_columns)
VGA_SAME_ICON(vga_choose_mode_def_viewer_icon, VGA_ICON_MODE)

VGA_LINE_TEXT(vga_create_tp_def_viewer_text, VGA_VIEWER_TP_DEF, VGA_TP_DEF, tp_def_columns)
VGA_SAME_ICON(vga_choose_tp_def_viewer_icon, VGA_ICON_TPDEF)
VGA_LINE_TEXT(vga_create_tp_load_info_viewer_text, VGA_VIEWER_TP_LOAD_INFO, VGA_TP_LOAD_INFO,
              tp_load_columns)
VGA_SAME_ICON(vga_choose_tp_load_info_viewer_icon, VGA_ICON_TPLOAD)

VGA_LINE_TEXT(vga_create_cl_security_viewer_text, VGA_VIEWER_CL_SECURITY, VGA_CLSEC_DEF,
              cl_security_columns)
VGA_SAME_ICON(vga_choose_cl_security_viewer_icon, VGA_ICON_CONVSEC)
VGA_TITLE_TEXT(vga_slscw_create_sl_sec_title_viewer_text, VGA_VIEWER_SL_SEC_TITLE,
               sl_security_columns)
VGA_LINE_TEXT(vga_create_sl_security_viewer_text, VGA_VIEWER_SL_SECURITY, VGA_SLSEC_DEF,
              sl_security_columns)
VGA_SAME_ICON(vga_choose_sl_security_viewer_icon, VGA_ICON_SESSSEC)
VGA_LINE_TEXT(vga_create_access_list_viewer_text, VGA_VIEWER_ACCESS_LIST, VGA_ACCESS_LIST,
              access_list_columns)
VGA_SAME_ICON(vga_choose_access_list_viewer_icon, VGA_ICON_ACCLIST)
