/* What a press, a double click and a drag do to the lines of list windows: the callbacks of
 * gvga_viewer_desc, made of a record's type. */
#ifndef LINEEVENTS_H
#define LINEEVENTS_H

#include "listwindow.h"
#include "model.h"

/* The window of a list, null while it is not displayed. */
VGA_LIST_WINDOW *vga_listw_from_root(const VGA_VIEWER_ROOT *root);

/* For disarm_cb: the buttons follow the selection. */
NB_VOID vga_listw_line_disarm(Widget widget);

/* For drag_cb of a line that no drag takes in. */
NB_VOID vga_listw_no_drag_cb(NB_VOID *data, NB_USHORT select, NB_USHORT redraw);

/* The common steps, for a line that is not its record's own. */
NB_VOID vga_listw_arm_line(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item,
                           const XmDrawnButtonCallbackStruct *cbs);
NB_VOID vga_listw_activate_line(const VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item,
                                const XmDrawnButtonCallbackStruct *cbs);

/* Pressing selects; a press on a fixed title line clears the selection. */
template <class Record> NB_VOID vga_listw_arm(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs) {
    auto *record = static_cast<Record *>(data);
    vga_listw_arm_line(record->gui_data.list, &record->gui_data.viewer, cbs);
}

/* A double click is Return. */
template <class Record> NB_VOID vga_listw_act(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs) {
    auto *record = static_cast<Record *>(data);
    vga_listw_activate_line(record->gui_data.list, &record->gui_data.viewer, cbs);
}

/* A drag takes in every line but the fixed titles. */
template <class Record> NB_VOID vga_listw_drag(NB_VOID *data, NB_USHORT select, NB_USHORT redraw) {
    auto *record = static_cast<Record *>(data);
    if (!record->gui_data.viewer.fixed) {
        vga_viewer_drag_cb(&record->gui_data.viewer, record->gui_data.list, select, redraw);
    }
}

/* Selects the title line over an LU's routings: a line of its own of the LU's record. */
NB_VOID vga_nodew_ls_r_title_arm_cb(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs);

/* The names of the node window's. */
#define VGA_NODEW_LINE(word, record)                                                               \
    inline constexpr auto vga_nodew_##word##_arm_cb = vga_listw_arm<record>;                       \
    inline constexpr auto vga_nodew_##word##_act_cb = vga_listw_act<record>;                       \
    inline constexpr auto vga_nodew_##word##_drag_cb = vga_listw_drag<record>

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
