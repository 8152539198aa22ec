#include "panes.h"
#include "nodeselection.h"
#include "rememberedlines.h"
#include <Xm/PanedW.h>
#include <algorithm>

static VGA_VIEWER_ROOT VGA_NODE::*const roots[VGA_NODEW_PANE_COUNT] = {
    &VGA_NODE::connectivity_root, &VGA_NODE::local_lu_root, &VGA_NODE::rem_sys_root};

VGA_VIEWER_ROOT *vga_nodew_pane_root(const VGA_NODEW_DESC *desc, NB_USHORT pane) {
    VGA_NODE *node = vga_nodew_node(desc);
    const bool shown = node != nullptr && desc->lists_shown != 0 && pane < VGA_NODEW_PANE_COUNT;
    return shown ? &(node->*roots[pane]) : nullptr;
}

/* The current pane. */

static NB_VOID set_border(VGA_NODEW_DESC *desc, NB_USHORT pane, Pixel colour) {
    if (pane < VGA_NODEW_PANE_COUNT) {
        XtVaSetValues(desc->panes[pane].form, XmNborderColor, colour, nullptr);
    }
}

static NB_VOID clear_pane(VGA_VIEWER_ROOT *root) {
    vga_clear_outline_selection(root);
    vga_viewer_clear_selection(root);
}

static VGA_VIEWER_ITEM *first_selectable(const VGA_VIEWER_ROOT *root) {
    VGA_VIEWER_ITEM *item = vga_viewer_find_line(root, 0);
    while (item != nullptr && vga_viewer_can_select(root, item) == 0) {
        item = vga_viewer_get_next_item(root, item);
    }
    return item;
}

NB_VOID vga_nodew_forget_pane(VGA_NODEW_DESC *desc) {
    set_border(desc, desc->current_pane, desc->normal_border);
    desc->current_pane = VGA_NODEW_NO_PANE;
}

NB_VOID vga_nodew_select_pane(VGA_NODEW_DESC *desc, NB_USHORT pane, NB_USHORT take_focus) {
    VGA_VIEWER_ROOT *root = vga_nodew_pane_root(desc, pane);
    if (root == nullptr || desc->current_pane == pane) {
        return;
    }
    /* The keyboard comes back before the lines that were selected. */
    const bool selected_lines_come = vga_nodew_remembered_pane(desc) == pane;
    if (!selected_lines_come) {
        vga_nodew_forget_selection(desc);
    }
    vga_nodew_forget_pane(desc);
    desc->current_pane = pane;
    set_border(desc, pane, desc->current_border);
    if (take_focus && vga_nodew_focus_pane(desc) != pane) {
        XmProcessTraversal(desc->panes[pane].draw_area, XmTRAVERSE_CURRENT);
    }
    for (NB_USHORT other = 0; other < VGA_NODEW_PANE_COUNT; other++) {
        if (other != pane) {
            clear_pane(vga_nodew_pane_root(desc, other));
        }
    }
    VGA_VIEWER_ITEM *item = first_selectable(root);
    if (item != nullptr && root->select_count == 0 && !selected_lines_come) {
        vga_viewer_select(item, root, 0, 0, 1, 0);
    }
    vga_nodew_set_button_states(desc);
}

NB_VOID vga_nodew_select_node(VGA_NODEW_DESC *desc, NB_USHORT take_focus) {
    vga_nodew_forget_selection(desc);
    vga_nodew_forget_pane(desc);
    if (take_focus) {
        XmProcessTraversal(desc->server_text, XmTRAVERSE_CURRENT);
    }
    for (NB_USHORT pane = 0; pane < VGA_NODEW_PANE_COUNT; pane++) {
        if (VGA_VIEWER_ROOT *root = vga_nodew_pane_root(desc, pane)) {
            clear_pane(root);
        }
    }
    vga_nodew_set_button_states(desc);
}

NB_USHORT vga_nodew_focus_pane(const VGA_NODEW_DESC *desc) {
    Widget focus = XmGetFocusWidget(desc->common.widget);
    for (NB_USHORT pane = 0; pane < VGA_NODEW_PANE_COUNT; pane++) {
        for (Widget widget = focus; widget != nullptr; widget = XtParent(widget)) {
            if (widget == desc->panes[pane].form) {
                return pane;
            }
        }
    }
    return VGA_NODEW_NO_PANE;
}

/* The focus is on its way when the callback tells of it; to move it again would confuse the
 * toolkit. */
template <NB_USHORT pane> static NB_VOID pane_callback(Widget widget, XtPointer call_data) {
    const auto *cbs = static_cast<const XmAnyCallbackStruct *>(call_data);
    if (VGA_NODEW_DESC *desc = vga_nodew_from_widget(widget)) {
        vga_nodew_select_pane(desc, pane, cbs == nullptr || cbs->reason != XmCR_FOCUS);
    }
}

NB_VOID vga_nodew_select_top_pane(Widget widget, XtPointer, XtPointer call_data) {
    pane_callback<VGA_NODEW_TOP_PANE>(widget, call_data);
}

NB_VOID vga_nodew_select_middle_pane(Widget widget, XtPointer, XtPointer call_data) {
    pane_callback<VGA_NODEW_MIDDLE_PANE>(widget, call_data);
}

NB_VOID vga_nodew_select_bottom_pane(Widget widget, XtPointer, XtPointer call_data) {
    pane_callback<VGA_NODEW_BOTTOM_PANE>(widget, call_data);
}

/* Heights. */

NB_VOID vga_nodew_divide(const NB_ULONG *shares, NB_ULONG total, NB_ULONG minimum,
                         NB_ULONG *heights) {
    NB_ULONG sum = 0;
    for (NB_USHORT pane = 0; pane < VGA_NODEW_PANE_COUNT; pane++) {
        sum += shares[pane];
    }
    NB_ULONG floor = std::min(minimum, total / VGA_NODEW_PANE_COUNT);
    NB_ULONG left = total;
    for (NB_USHORT pane = 0; pane + 1 < VGA_NODEW_PANE_COUNT; pane++) {
        NB_ULONG wanted =
            sum == 0 ? total / VGA_NODEW_PANE_COUNT
                     : static_cast<NB_ULONG>(static_cast<uint64_t>(total) * shares[pane] / sum);
        NB_ULONG others = floor * (VGA_NODEW_PANE_COUNT - 1 - pane);
        heights[pane] = std::clamp(wanted, floor, left - others);
        left -= heights[pane];
    }
    heights[VGA_NODEW_PANE_COUNT - 1] = left;
}

static Dimension height_of(Widget widget) {
    Dimension height = 0;
    XtVaGetValues(widget, XmNheight, &height, nullptr);
    return height;
}

static NB_VOID note_shares(VGA_NODEW_DESC *desc) {
    for (VGA_NODEW_PANE &pane : desc->panes) {
        pane.share = height_of(pane.form);
    }
}

/* The paned window gives all of a change to one pane.  It obeys limits, however, so each pane is
 * fixed at its height for a moment. */
static NB_VOID divide_again(VGA_NODEW_DESC *desc) {
    NB_ULONG shares[VGA_NODEW_PANE_COUNT], heights[VGA_NODEW_PANE_COUNT], total = 0;
    for (NB_USHORT pane = 0; pane < VGA_NODEW_PANE_COUNT; pane++) {
        shares[pane] = desc->panes[pane].share;
        total += height_of(desc->panes[pane].form);
    }
    Dimension minimum[VGA_NODEW_PANE_COUNT], maximum[VGA_NODEW_PANE_COUNT];
    vga_nodew_divide(shares, total, desc->least_pane, heights);
    XtVaSetValues(desc->panes_widget, XmNrefigureMode, False, nullptr);
    for (NB_USHORT pane = 0; pane < VGA_NODEW_PANE_COUNT; pane++) {
        Widget form = desc->panes[pane].form;
        XtVaGetValues(form, XmNpaneMinimum, &minimum[pane], XmNpaneMaximum, &maximum[pane],
                      nullptr);
        XtVaSetValues(form, XmNpaneMinimum, static_cast<Dimension>(heights[pane]), XmNpaneMaximum,
                      static_cast<Dimension>(heights[pane]), nullptr);
    }
    XtVaSetValues(desc->panes_widget, XmNrefigureMode, True, nullptr);
    for (NB_USHORT pane = 0; pane < VGA_NODEW_PANE_COUNT; pane++) {
        XtVaSetValues(desc->panes[pane].form, XmNpaneMinimum, minimum[pane], XmNpaneMaximum,
                      maximum[pane], nullptr);
    }
}

/* One handler for the paned window and for the panes, also when they come on the screen.  Where the
 * paned window's own height is the one that is known, the operator has moved a sash, and the shares
 * follow. */
static NB_VOID resized(Widget, XtPointer client_data, XEvent *event, Boolean *) {
    if (event->type != ConfigureNotify && event->type != MapNotify) {
        return;
    }
    auto *desc = static_cast<VGA_NODEW_DESC *>(client_data);
    Dimension height = height_of(desc->panes_widget);
    if (height == desc->panes_height) {
        note_shares(desc);
    } else {
        desc->panes_height = height;
        divide_again(desc);
    }
}

/* A sash between two lists would be a stop of the Tab key. */
static NB_VOID keep_focus_off_sashes(VGA_NODEW_DESC *desc) {
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(desc->panes_widget, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    for (Cardinal child = 0; child < count; child++) {
        if (!XmIsManager(children[child])) {
            XtVaSetValues(children[child], XmNtraversalOn, False, nullptr);
        }
    }
}

NB_VOID vga_nodew_share_height(VGA_NODEW_DESC *desc) {
    note_shares(desc);
    keep_focus_off_sashes(desc);
    XtAddEventHandler(desc->panes_widget, StructureNotifyMask, False, resized, desc);
    for (VGA_NODEW_PANE &pane : desc->panes) {
        XtAddEventHandler(pane.form, StructureNotifyMask, False, resized, desc);
    }
}
