#include "titlerow.h"
#include "roomrules.h"
#include "widgets.h"
#include <algorithm>

namespace {

constexpr NB_ULONG least_counts = 64; // pixels that say anything
constexpr NB_ULONG part_gap = 16;     // beside a part, at most

NB_ULONG wanted_width(Widget widget) {
    return widget != nullptr ? vga_wanted_size(widget).width : NB_ULONG{0};
}

/* What is to the left of a part ends there, or at the edge of the pane. */
NB_VOID end_at(Widget left, Widget right) {
    Widget now = nullptr;
    NB_UCHAR attachment = XmATTACH_NONE;
    const NB_UCHAR wanted = right != nullptr ? XmATTACH_WIDGET : XmATTACH_FORM;
    XtVaGetValues(left, XmNrightWidget, &now, XmNrightAttachment, &attachment, nullptr);
    if (now != right || attachment != wanted) {
        XtVaSetValues(left, XmNrightAttachment, wanted, XmNrightWidget, right, nullptr);
    }
}

/* A part between two others gets its width here: while the window becomes narrow the layout, which
 * comes first, could not end it before it begins. */
NB_VOID end_by_itself(Widget part, NB_ULONG width) {
    Dimension now = 0;
    NB_UCHAR attachment = XmATTACH_FORM;
    XtVaGetValues(part, XmNwidth, &now, XmNrightAttachment, &attachment, nullptr);
    if (now != width || attachment != XmATTACH_NONE) {
        XtVaSetValues(part, XmNrightAttachment, XmATTACH_NONE, XmNrightWidget, nullptr, XmNwidth,
                      static_cast<Dimension>(width), nullptr);
    }
}

NB_VOID hide(Widget widget) {
    if (widget != nullptr) {
        XtUnmanageChild(widget);
    }
}

NB_VOID set_height(const VGA_LISTW_PANE &pane, NB_ULONG height) {
    Dimension margin = 0; /* that the title keeps from the top */
    int now = 0;
    XtVaGetValues(pane.form, XmNmarginHeight, &margin, nullptr);
    XtVaGetValues(pane.rule, XmNtopOffset, &now, nullptr);
    const int offset = margin + static_cast<int>(height);
    if (now != offset) {
        XtVaSetValues(pane.rule, XmNtopOffset, offset, nullptr);
    }
}

/* What the parts of the field's bar want: it has itself the width that it was given. */
NB_ULONG wanted_by_parts(Widget bar) {
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(bar, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    NB_ULONG width = 0;
    for (Cardinal at = 0; at < count; at++) {
        width += XtIsManaged(children[at]) ? wanted_width(children[at]) + part_gap : NB_ULONG{0};
    }
    return width;
}

/* The field and, where there is room, the title. */
NB_VOID arrange_bar(const VGA_LISTW_PANE &pane, NB_ULONG width) {
    const NB_ULONG title = wanted_width(pane.title);
    const bool both = vga_listw_row_room(width, title) >= wanted_by_parts(pane.bar);
    if (both) {
        XtManageChild(pane.title);
        end_by_itself(pane.title, title);
    }
    XtVaSetValues(pane.bar, XmNleftAttachment, both ? XmATTACH_WIDGET : XmATTACH_FORM,
                  XmNleftWidget, both ? pane.title : nullptr, nullptr);
    end_by_itself(pane.bar, std::max<NB_ULONG>(vga_listw_row_room(width, both ? title : 0), 1));
    XtManageChild(pane.bar);
    for (Widget widget : {pane.counts, pane.filter_off, pane.key}) {
        hide(widget);
    }
    if (!both) {
        hide(pane.title);
    }
}

} // namespace

NB_ULONG vga_listw_row_height(const VGA_LISTW_PANE &pane) {
    const NB_ULONG title = vga_wanted_size(pane.title).height;
    return pane.bar != nullptr ? std::max(title, pane.bar_height) : title;
}

NB_ULONG vga_listw_key_height(const VGA_LISTW_PANE &pane) {
    if (pane.key == nullptr) {
        return 0;
    }
    const NB_ULONG key = vga_wanted_size(pane.key).height;
    const NB_ULONG row = vga_listw_row_height(pane);
    return key > row ? key - row : 0;
}

NB_VOID vga_listw_arrange_row(const VGA_LISTW_PANE &pane, NB_ULONG width, NB_USHORT key_wanted) {
    const NB_ULONG title = wanted_width(pane.title);
    Widget off = pane.filtered != 0 ? pane.filter_off : nullptr;
    const bool shown =
        pane.key != nullptr && key_wanted != 0 &&
        vga_listw_row_room(width, title + wanted_width(off)) >= wanted_width(pane.key);
    set_height(pane,
               vga_listw_row_height(pane) + (shown ? vga_listw_key_height(pane) : NB_ULONG{0}));
    if (pane.bar != nullptr) {
        arrange_bar(pane, width);
        return;
    }
    /* The layout of the pane knows only parts that are there, and nothing may hang on another. */
    Widget right = shown ? pane.key : nullptr;
    if (shown) {
        XtManageChild(pane.key);
    }
    if (off != nullptr) {
        end_at(off, right);
        XtManageChild(off);
        right = off;
    }
    const NB_ULONG others = wanted_width(off) + (shown ? wanted_width(pane.key) : NB_ULONG{0});
    const NB_ULONG counts = vga_listw_row_room(width, title + others + part_gap);
    XtManageChild(pane.title);
    if (counts >= least_counts) {
        end_by_itself(pane.title, title);
        end_by_itself(pane.counts, counts);
        XtManageChild(pane.counts);
    } else {
        hide(pane.counts);
        end_at(pane.title, right);
    }
    if (off == nullptr) {
        hide(pane.filter_off);
    }
    if (!shown) {
        hide(pane.key);
    }
}
