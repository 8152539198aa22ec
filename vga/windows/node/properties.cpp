#include "properties.h"
#include "dialogids.h"
#include "form.h"
#include "nodeselection.h"
#include <algorithm>

namespace {

/* The dialog that a line of this type opens with; it gets the line's record. */
struct PROPERTIES {
    VGA_VIEWER_TYPE type;
    VGA_DIALOG_ID dialog;
};

constexpr PROPERTIES properties[] = {
    {VGA_VIEWER_MODE, VGA_UID_SESS_LIMIT_DIALOG},
};

const PROPERTIES *find(NB_SHORT type) {
    const auto *found = std::find_if(std::begin(properties), std::end(properties),
                                     [type](const PROPERTIES &row) { return row.type == type; });
    return found != std::end(properties) ? found : nullptr;
}

} // namespace

NB_USHORT vga_nodew_has_properties(NB_SHORT type) {
    return find(type) != nullptr;
}

NB_VOID vga_nodew_show_properties(VGA_NODEW_DESC *desc) {
    NB_SHORT type;
    NB_VOID *record = vga_nodew_get_selection(desc, &type, nullptr);
    const PROPERTIES *row = find(type);
    if (record != nullptr && row != nullptr) {
        vga_form_open(row->dialog, &desc->common, record, nullptr, VGA_FORM_CHANGE);
    }
}
