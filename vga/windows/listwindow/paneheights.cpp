#include "paneheights.h"
#include "roomrules.h"
#include <Xm/PanedW.h>
#include <Xm/SashP.h>
#include <algorithm>

static Dimension height_of(Widget widget) {
    Dimension height = 0;
    XtVaGetValues(widget, XmNheight, &height, nullptr);
    return height;
}

static NB_VOID note_shares(VGA_LIST_WINDOW *window) {
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        window->panes[pane].share = height_of(window->panes[pane].form);
    }
}

/* The paned window moves its panes first: it has known of the sash for longer. */
static NB_VOID sash_moved(Widget, XtPointer window, XtPointer call_data) {
    const auto *call = static_cast<const SashCallDataRec *>(call_data);
    if (call->num_params > 0 && call->params[0][0] == 'C') { /* "Commit" */
        note_shares(static_cast<VGA_LIST_WINDOW *>(window));
    }
}

NB_VOID vga_listw_prepare_heights(VGA_LIST_WINDOW *window) {
    note_shares(window);
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(window->panes_widget, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    for (Cardinal child = 0; child < count; child++) {
        if (XmIsSash(children[child])) {
            /* Between two lists it would be a stop of the Tab key. */
            XtVaSetValues(children[child], XmNtraversalOn, False, nullptr);
            XtAddCallback(children[child], XmNcallback, sash_moved, window);
        }
    }
}

NB_ULONG vga_listw_height_around_panes(const VGA_LIST_WINDOW *window) {
    Dimension margin = 0, spacing = 0, border = 0;
    XtVaGetValues(window->panes_widget, XmNmarginHeight, &margin, XmNspacing, &spacing, nullptr);
    XtVaGetValues(window->panes[0].form, XmNborderWidth, &border, nullptr);
    return 2U * margin + (NB_ULONG{window->list_count} - 1U) * spacing +
           NB_ULONG{window->list_count} * 2U * border;
}

/* The paned window gives all of a change to one pane.  It obeys limits, however, so each pane is
 * fixed at its height for a moment. */
NB_VOID vga_listw_divide_panes(const VGA_LIST_WINDOW *window, NB_ULONG least) {
    NB_ULONG shares[VGA_LISTW_MAX_LISTS], heights[VGA_LISTW_MAX_LISTS];
    const NB_ULONG around = vga_listw_height_around_panes(window);
    const NB_ULONG height_of_all = height_of(window->panes_widget);
    const NB_ULONG total =
        std::max<NB_ULONG>(height_of_all > around ? height_of_all - around : 0, window->list_count);
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        shares[pane] = window->panes[pane].share;
    }
    if (XtIsRealized(window->panes_widget)) {
        vga_listw_divide(shares, window->list_count, total, least, heights);
        XtVaSetValues(window->panes_widget, XmNrefigureMode, False, nullptr);
        for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
            const auto height = static_cast<Dimension>(heights[pane]);
            XtVaSetValues(window->panes[pane].form, XmNpaneMinimum, height, XmNpaneMaximum, height,
                          nullptr);
        }
        XtVaSetValues(window->panes_widget, XmNrefigureMode, True, nullptr);
    }
    /* Never more than there is: the paned window would not become as low as its window. */
    const auto minimum = static_cast<Dimension>(std::min(least, total / window->list_count));
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        XtVaSetValues(window->panes[pane].form, XmNpaneMinimum, minimum, XmNpaneMaximum,
                      Dimension{32000}, nullptr);
    }
}
