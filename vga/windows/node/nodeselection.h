/* The selection of the node window, what it allows, and the callbacks of the lines in its lists.
 *
 * What can be done follows from a situation (node, access, current pane, selected lines) by tables
 * alone, so that it can be tried without a display. */
#ifndef NODESELECTION_H
#define NODESELECTION_H

#include "recordtypes.h"
#include "vganodew.h"

struct VGA_NODEW_SITUATION {
    const VGA_NODE *node;   /* null: an empty window */
    NB_USHORT read_only;    /* flag */
    NB_USHORT pane_current; /* flag */
    NB_SHORT type;          /* viewer type of the selected lines, or VGA_VIEWER_SELECT_NONE */
    NB_LONG count;          /* of them */
    NB_UCHAR status;        /* of the line that stands for the selection: NAP_NOT_ACTIVE, ... */
    NB_USHORT defined;      /* flag: an operator defined it, so it can be changed and deleted */
};

/* What the window is in. */
VGA_NODEW_SITUATION vga_nodew_situation(const VGA_NODEW_DESC *desc);

/* 1 when the situation allows a command; whether this release has it is another matter. */
NB_USHORT vga_nodew_allows(const VGA_NODEW_SITUATION &situation, VGA_NODEW_COMMAND command);

/* The same, and this release has it. */
NB_USHORT vga_nodew_offers(const VGA_NODEW_SITUATION &situation, VGA_NODEW_COMMAND command);

/* The message that says why a command is not offered: what is selected, or the node, is of the
 * wrong kind or in the wrong state, or this release lacks it.  0 for one that is offered. */
NB_USHORT vga_nodew_reason(const VGA_NODEW_SITUATION &situation, VGA_NODEW_COMMAND command);

/* Sets the buttons and menu items of a window by its situation.  For set_button_states of the
 * viewer types, too: `window` is the VGA_NODEW_DESC; null is ignored. */
NB_VOID vga_nodew_set_button_states(NB_VOID *window);

/* The record of the selected line of the current pane, its viewer type and the number of selected
 * lines; null, VGA_VIEWER_SELECT_NONE and 0 without one.  `type` and `count` may be null. */
NB_VOID *vga_nodew_get_selection(const VGA_NODEW_DESC *desc, NB_SHORT *type, NB_LONG *count);

/* Lines. */

/* The window of a list, null while it is not displayed. */
VGA_NODEW_DESC *vga_nodew_from_root(const VGA_VIEWER_ROOT *root);

/* For disarm_cb of the window's viewer types. */
NB_VOID vga_nodew_line_disarm(Widget widget);

/* For drag_cb of a line that no drag takes in. */
NB_VOID vga_nodew_no_drag_cb(NB_VOID *data, NB_USHORT select, NB_USHORT redraw);

NB_VOID vga_nodew_arm_line(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item,
                           const XmDrawnButtonCallbackStruct *cbs);
NB_VOID vga_nodew_activate_line(const VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item,
                                const XmDrawnButtonCallbackStruct *cbs);

/* Pressing selects; a press on a fixed title line clears the selection. */
template <class Record> NB_VOID vga_nodew_arm(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs) {
    auto *record = static_cast<Record *>(data);
    vga_nodew_arm_line(VGA_RECORD_TYPE<Record>::line(*record).root, &record->gui_data.viewer, cbs);
}

/* Selects the title line over an LU's routings: a line of its own of the LU's record. */
NB_VOID vga_nodew_ls_r_title_arm_cb(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs);

/* A double click shows the properties. */
template <class Record> NB_VOID vga_nodew_act(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs) {
    auto *record = static_cast<Record *>(data);
    vga_nodew_activate_line(VGA_RECORD_TYPE<Record>::line(*record).root, &record->gui_data.viewer,
                            cbs);
}

/* A drag takes in every line but the fixed titles. */
template <class Record> NB_VOID vga_nodew_drag(NB_VOID *data, NB_USHORT select, NB_USHORT redraw) {
    auto *record = static_cast<Record *>(data);
    if (!record->gui_data.viewer.fixed) {
        vga_viewer_drag_cb(&record->gui_data.viewer, VGA_RECORD_TYPE<Record>::line(*record).root,
                           select, redraw);
    }
}

/* The names that rows of gvga_viewer_desc use. */
#define VGA_NODEW_LINE(word, record)                                                               \
    inline constexpr auto vga_nodew_##word##_arm_cb = vga_nodew_arm<record>;                       \
    inline constexpr auto vga_nodew_##word##_act_cb = vga_nodew_act<record>;                       \
    inline constexpr auto vga_nodew_##word##_drag_cb = vga_nodew_drag<record>

VGA_NODEW_LINE(port, VGA_PORT);
VGA_NODEW_LINE(ls, VGA_LS);
VGA_NODEW_LINE(local_pu, VGA_LOCAL_PU);
VGA_NODEW_LINE(deplu, VGA_LU03);
VGA_NODEW_LINE(lu62, VGA_LU62);
VGA_NODEW_LINE(mode, VGA_MODE);
VGA_NODEW_LINE(rem_sys, VGA_REM_SYS);
VGA_NODEW_LINE(rem_plu, VGA_REM_PLU);
VGA_NODEW_LINE(rem_sess, VGA_REM_SESS);
VGA_NODEW_LINE(down_lu, VGA_DOWN_LU);
VGA_NODEW_LINE(ls_r, VGA_LS_ROUTING);
VGA_NODEW_LINE(primary_line, VGA_PRIMARY_LINE);
VGA_NODEW_LINE(primary_lu0, VGA_PRIMARY_LU0);

#undef VGA_NODEW_LINE

#endif
