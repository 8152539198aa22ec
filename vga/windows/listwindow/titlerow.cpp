#include "titlerow.h"
#include "roomrules.h"
#include "widgets.h"

NB_ULONG vga_listw_row_height(const VGA_LISTW_PANE &pane) {
    return vga_wanted_size(pane.title).height;
}

NB_ULONG vga_listw_key_height(const VGA_LISTW_PANE &pane) {
    if (pane.key == nullptr) {
        return 0;
    }
    const NB_ULONG key = vga_wanted_size(pane.key).height;
    const NB_ULONG row = vga_listw_row_height(pane);
    return key > row ? key - row : 0;
}

/* What is to the left of a part ends there, or at the edge of the pane. */
static NB_VOID end_at(Widget left, Widget right) {
    Widget now = nullptr;
    XtVaGetValues(left, XmNrightWidget, &now, nullptr);
    if (now != right) {
        XtVaSetValues(left, XmNrightAttachment, right != nullptr ? XmATTACH_WIDGET : XmATTACH_FORM,
                      XmNrightWidget, right, nullptr);
    }
}

static NB_VOID put_rule_below(const VGA_LISTW_PANE &pane, NB_ULONG row_height) {
    Dimension margin = 0;
    int now = 0;
    XtVaGetValues(pane.form, XmNmarginHeight, &margin, nullptr);
    XtVaGetValues(pane.rule, XmNtopOffset, &now, nullptr);
    const int offset = margin + static_cast<int>(row_height);
    if (now != offset) {
        XtVaSetValues(pane.rule, XmNtopOffset, offset, nullptr);
    }
}

NB_VOID vga_listw_arrange_row(const VGA_LISTW_PANE &pane, NB_ULONG width, NB_USHORT key_wanted) {
    const bool shown = pane.key != nullptr && key_wanted != 0 &&
                       vga_listw_key_fits(width, vga_wanted_size(pane.title).width, 0,
                                          vga_wanted_size(pane.key).width) != 0;
    put_rule_below(pane,
                   vga_listw_row_height(pane) + (shown ? vga_listw_key_height(pane) : NB_ULONG{0}));
    /* The layout of the pane knows only parts that are there. */
    if (shown) {
        XtManageChild(pane.key);
        end_at(pane.title, pane.key);
    } else {
        end_at(pane.title, nullptr);
        if (pane.key != nullptr) {
            XtUnmanageChild(pane.key);
        }
    }
}
