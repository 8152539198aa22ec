#include "fieldchecks.h"
#include "fieldtext.h"
#include "filterrules.h"
#include "holders.h"
#include "nbbase.h"
#include "ntlname.h"
#include "textfocus.h"
#include "vgadgutl.h"
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <algorithm>
#include <string>

namespace {

constexpr NB_USHORT hex_field_max = 200; /* digits */

struct MESSAGE {
    NB_USHORT number;
    const NB_CHAR *key;
};

/* Both kinds of number field. */
NB_USHORT check_number(VGA_DIALOG *parent, Widget field, int64_t min, int64_t max,
                       const MESSAGE &empty, const MESSAGE &range, int64_t *value) {
    NB_CHAR text[VGA_NUMBER_SIZE];
    vga_get_field_text(field, text, sizeof(text));
    const VGA_NUMBER_STATE state = vga_read_number(text, min, max, value);
    if (state == VGA_NUMBER_EMPTY) {
        return vga_refuse_field(parent, field, empty.number, empty.key);
    }
    if (state == VGA_NUMBER_OUT_OF_RANGE) {
        return vga_refuse_range(parent, field, range.number, range.key, min, max);
    }
    return 1;
}

NB_USHORT build_fq_name(Widget netid_field, Widget name_field, NB_USHORT lenient,
                        NB_UCHAR *fq_name) {
    NB_CHAR network_id[NTL_NAME_WIDTH + 1];
    NB_CHAR name[NTL_NAME_WIDTH + 1];
    vga_get_field_text(netid_field, network_id, sizeof(network_id));
    vga_get_field_text(name_field, name, sizeof(name));
    return vga_make_fq_name(network_id, name, lenient, fq_name);
}

} // namespace

NB_USHORT vga_get_field_text(Widget field, NB_CHAR *out, NB_USHORT size) {
    const VGA_TEXT text(field != nullptr ? XmTextGetString(field) : nullptr);
    return v0_mb_strncpy(out, text.get(), size);
}

NB_VOID vga_focus_field(Widget field) {
    if (field != nullptr) {
        XmProcessTraversal(field, XmTRAVERSE_CURRENT);
        vga_select_text(field);
    }
}

NB_USHORT vga_refuse_field(VGA_DIALOG *parent, Widget field, NB_USHORT message,
                           const NB_CHAR *key) {
    vga_display_error_dialog(parent, message, key, nullptr, 0, "");
    vga_place_box_beside(parent, field);
    vga_focus_field(field);
    return 0;
}

/* The bounds go in as texts: as numbers the formatter would take them for signed ones of 32 bits,
 * and the upper bound of an unsigned field may be higher. */
NB_USHORT vga_refuse_range(VGA_DIALOG *parent, Widget field, NB_USHORT message, const NB_CHAR *key,
                           int64_t min, int64_t max) {
    vga_display_error_dialog(parent, message, key, nullptr, 0, "s s", std::to_string(min).c_str(),
                             std::to_string(max).c_str());
    vga_place_box_beside(parent, field);
    vga_focus_field(field);
    return 0;
}

NB_USHORT vga_check_field(VGA_DIALOG *parent, Widget text_field, NB_ULONG min, NB_ULONG max,
                          NB_USHORT empty_message, const NB_CHAR *empty_key,
                          NB_USHORT range_message, const NB_CHAR *range_key, NB_ULONG *value) {
    int64_t read = 0;
    const NB_USHORT good = check_number(parent, text_field, min, max, {empty_message, empty_key},
                                        {range_message, range_key}, &read);
    if (good != 0) {
        *value = static_cast<NB_ULONG>(read);
    }
    return good;
}

NB_USHORT vga_check_signed_field(VGA_DIALOG *parent, Widget text_field, NB_LONG min, NB_LONG max,
                                 NB_USHORT empty_message, const NB_CHAR *empty_key,
                                 NB_USHORT range_message, const NB_CHAR *range_key,
                                 NB_LONG *value) {
    int64_t read = 0;
    const NB_USHORT good = check_number(parent, text_field, min, max, {empty_message, empty_key},
                                        {range_message, range_key}, &read);
    if (good != 0) {
        *value = static_cast<NB_LONG>(read);
    }
    return good;
}

NB_SHORT vga_get_hex_field(Widget text_field, NB_UCHAR *out, NB_USHORT max_len, NB_USHORT message,
                           const NB_CHAR *key, VGA_DIALOG *parent) {
    if (!NB_HOLDS("vgautil", 200 >= max_len * 2)) {
        return -1;
    }
    NB_CHAR text[hex_field_max + 1];
    vga_get_field_text(text_field, text, static_cast<NB_USHORT>(max_len * 2 + 1));
    const NB_INT length = records::read_bytes(text, out, max_len);
    if (length < 0) {
        vga_refuse_field(parent, text_field, message, key);
    }
    return static_cast<NB_SHORT>(length);
}

NB_USHORT vga_get_node_id(Widget block_field, Widget puid_field, NB_UCHAR *node_id,
                          NB_USHORT empty_message, const NB_CHAR *empty_key, NB_USHORT bad_message,
                          const NB_CHAR *bad_key, VGA_DIALOG *parent) {
    NB_CHAR block[VGA_BLOCK_NUMBER_SIZE];
    NB_CHAR puid[VGA_PU_ID_SIZE];
    vga_get_field_text(block_field, block, sizeof(block));
    vga_get_field_text(puid_field, puid, sizeof(puid));
    switch (vga_read_node_id(block, puid, node_id)) {
    case VGA_NODE_ID_EMPTY:
        if (empty_key != nullptr) {
            return vga_refuse_field(parent, block_field, empty_message, empty_key);
        }
        std::fill_n(node_id, VGA_NODE_ID_WIDTH, NB_UCHAR{0});
        return 1;
    case VGA_NODE_ID_BAD_BLOCK:
        return vga_refuse_field(parent, block_field, bad_message, bad_key);
    case VGA_NODE_ID_BAD_PUID:
        return vga_refuse_field(parent, puid_field, bad_message, bad_key);
    case VGA_NODE_ID_GOOD:
        break;
    }
    return 1;
}

NB_USHORT vga_build_fq_name(Widget netid_field, Widget name_field, NB_UCHAR *fq_name) {
    return build_fq_name(netid_field, name_field, 0, fq_name);
}

NB_USHORT vga_buildw_fq_name(Widget netid_field, Widget name_field, NB_UCHAR *fq_name) {
    return build_fq_name(netid_field, name_field, 1, fq_name);
}
