#include "properties.h"
#include "dialogids.h"
#include "form.h"
#include "nodeselection.h"
#include <algorithm>
#include <span>

namespace {

/* The dialog that a line of this type opens with; it gets the line's record. */
struct ROW {
    VGA_VIEWER_TYPE type;
    VGA_DIALOG_ID dialog;
};

constexpr ROW properties[] = {
    {VGA_VIEWER_MODE_DEF, VGA_UID_MODE_DIALOG},
    {VGA_VIEWER_MODE, VGA_UID_SESS_LIMIT_DIALOG},
};

constexpr ROW statuses[] = {
    {VGA_VIEWER_LS, VGA_UID_LINK_DET_DIALOG},
    {VGA_VIEWER_LS_LEAF, VGA_UID_LINK_DET_DIALOG},
};

const ROW *find(std::span<const ROW> rows, NB_SHORT type) {
    const auto found =
        std::find_if(rows.begin(), rows.end(), [type](const ROW &row) { return row.type == type; });
    return found != rows.end() ? &*found : nullptr;
}

NB_VOID show(VGA_NODEW_DESC *desc, std::span<const ROW> rows) {
    NB_SHORT type;
    NB_VOID *record = vga_nodew_get_selection(desc, &type, nullptr);
    const ROW *row = find(rows, type);
    if (record != nullptr && row != nullptr) {
        vga_form_open(row->dialog, &desc->common, record, nullptr, VGA_FORM_CHANGE);
    }
}

} // namespace

NB_USHORT vga_nodew_has_properties(NB_SHORT type) {
    return find(properties, type) != nullptr;
}

NB_USHORT vga_nodew_has_status(NB_SHORT type) {
    return find(statuses, type) != nullptr;
}

NB_VOID vga_nodew_show_properties(VGA_NODEW_DESC *desc) {
    show(desc, properties);
}

NB_VOID vga_nodew_show_status(VGA_NODEW_DESC *desc) {
    show(desc, statuses);
}

NB_VOID vga_nodew_add_modes(VGA_NODEW_DESC *desc) {
    if (VGA_NODE *node = vga_nodew_node(desc)) {
        vga_form_open(VGA_UID_MODE_DIALOG, &desc->common, nullptr, node, VGA_FORM_REPEAT);
    }
}
