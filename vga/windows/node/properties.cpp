#include "properties.h"
#include "nodeselection.h"
#include "vgamdsls.h"

namespace {

struct PROPERTIES {
    VGA_VIEWER_TYPE type;
    NB_VOID (*open)(VGA_DIALOG *parent, NB_VOID *record);
};

/* A template, so that a row names the dialog's own function and the record's type. */
template <class Record, VGA_FORM *(*Display)(VGA_DIALOG *parent, Record *record)>
NB_VOID open(VGA_DIALOG *parent, NB_VOID *record) {
    Display(parent, static_cast<Record *>(record));
}

constexpr PROPERTIES properties[] = {
    {VGA_VIEWER_MODE, open<VGA_MODE, vga_display_session_limits>},
};

const PROPERTIES *find(NB_SHORT type) {
    for (const PROPERTIES &row : properties) {
        if (row.type == type) {
            return &row;
        }
    }
    return nullptr;
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
        row->open(&desc->common, record);
    }
}
