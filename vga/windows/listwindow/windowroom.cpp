#include "windowroom.h"
#include "graphics.h"
#include "headings.h"
#include "paneheights.h"
#include "roomrules.h"
#include "titlerow.h"
#include "toolkit.h"
#include "widgets.h"
#include <algorithm>
#include <string>

namespace {

constexpr NB_ULONG least_lines = 2;
constexpr NB_ULONG list_margins = 8; // offsets, shadows and highlights around a list
constexpr int dialog_edge = 56;      // pixels for the window manager's title and border

NB_ULONG wanted_height(Widget widget) {
    return vga_wanted_size(widget).height;
}

Widget find(const VGA_LIST_WINDOW *window, const NB_CHAR *name) {
    return name != nullptr ? XtNameToWidget(window->common.widget, const_cast<NB_CHAR *>(name))
                           : nullptr;
}

/* The window's own part of that name; null where it has none. */
Widget part(const VGA_LIST_WINDOW *window, const NB_CHAR *name) {
    return find(window, (std::string("*") + window->plan->prefix + name).c_str());
}

bool is_main(const VGA_LIST_WINDOW *window) {
    return part(window, "MenuBar") != nullptr;
}

bool is_shown(Widget widget) {
    return widget != nullptr && XtIsManaged(widget);
}

/* A form that is not on the screen yet does not know its height, but its contents do. */
NB_ULONG tool_bar_height(const VGA_LIST_WINDOW *window) {
    return wanted_height(part(window, "ToolbarRowColumn")) +
           wanted_height(part(window, "ToolbarRule"));
}

/* Of a pane with two lines, without key and headings. */
NB_ULONG least_height(const VGA_LISTW_PANE &pane) {
    Dimension margin = 0, scroll_bar = 0;
    XtVaGetValues(pane.form, XmNmarginHeight, &margin, nullptr);
    XtVaGetValues(pane.hscroll, XmNheight, &scroll_bar, nullptr);
    return margin + vga_listw_row_height(pane) + wanted_height(pane.rule) +
           least_lines * gvga_viewer_item_height + scroll_bar + list_margins;
}

NB_ULONG headings_height(const VGA_LISTW_PANE &pane) {
    return pane.headings != nullptr ? vga_viewer_headings_height() : 0;
}

/* Above and below the panes, and between them; a dialog shares out the room of its panes only. */
NB_ULONG fixed_height(const VGA_LIST_WINDOW *window) {
    NB_ULONG height = vga_listw_height_around_panes(window);
    if (is_main(window)) {
        height += wanted_height(part(window, "MenuBar")) +
                  wanted_height(find(window, window->plan->head)) +
                  wanted_height(window->message_bar);
        height += is_shown(window->band) ? wanted_height(window->band) : 0;
    }
    return height;
}

VGA_LISTW_HEIGHTS measure(const VGA_LIST_WINDOW *window) {
    Dimension height = 0;
    XtVaGetValues(is_main(window) ? window->common.widget : window->panes_widget, XmNheight,
                  &height, nullptr);
    VGA_LISTW_HEIGHTS heights = {};
    heights.window = height;
    heights.fixed = fixed_height(window);
    heights.tool_bar = is_main(window) ? tool_bar_height(window) : 0;
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        heights.panes += least_height(window->panes[pane]);
        heights.keys += vga_listw_key_height(window->panes[pane]);
        heights.headings += headings_height(window->panes[pane]);
    }
    return heights;
}

NB_VOID hang(Widget widget, Widget upper) {
    Widget now = nullptr;
    XtVaGetValues(widget, XmNtopWidget, &now, nullptr);
    if (now != upper) {
        XtVaSetValues(widget, XmNtopAttachment, upper != nullptr ? XmATTACH_WIDGET : XmATTACH_FORM,
                      XmNtopWidget, upper, nullptr);
    }
}

/* The parts of the window hang on each other from top to bottom; what is not shown is left out. */
NB_VOID stack_parts(const VGA_LIST_WINDOW *window, bool with_tool_bar) {
    Widget tool_bar = part(window, "Toolbar");
    Widget upper = part(window, "MenuBar");
    if (tool_bar != nullptr && with_tool_bar) {
        /* It is arranged with the height that it has now. */
        const auto height = static_cast<Dimension>(tool_bar_height(window));
        XtVaSetValues(tool_bar, XmNheight, height, nullptr);
        XtManageChild(tool_bar);
    }
    Widget head = find(window, window->plan->head);
    for (Widget widget : {window->band, tool_bar, head, window->panes_widget}) {
        const bool shown = widget == tool_bar ? with_tool_bar : is_shown(widget);
        if (widget != nullptr && shown) {
            hang(widget, upper);
            upper = widget;
        }
    }
    if (tool_bar != nullptr && !with_tool_bar) {
        XtUnmanageChild(tool_bar);
    }
}

NB_VOID show_headings(const VGA_LISTW_PANE &pane, bool shown) {
    if (pane.headings == nullptr || is_shown(pane.headings) == shown) {
        return;
    }
    Widget list = XtParent(pane.draw_area);
    if (shown) {
        XtManageChild(pane.headings);
        hang(list, pane.headings);
    } else {
        hang(list, pane.rule);
        XtUnmanageChild(pane.headings);
    }
}

NB_VOID resized(Widget, XtPointer client_data, XEvent *event, Boolean *) {
    if (event->type == ConfigureNotify || event->type == MapNotify) {
        vga_listw_share_room(static_cast<VGA_LIST_WINDOW *>(client_data));
    }
}

NB_VOID set_first_size(const VGA_LIST_WINDOW *window) {
    Dimension width = 0, height = 0;
    XtVaGetValues(window->common.widget, XmNwidth, &width, XmNheight, &height, nullptr);
    const auto most_wide = vga_listw_width_limit(static_cast<NB_ULONG>(WidthOfScreen(gvga_screen)));
    const VGA_LISTW_HEIGHTS need = measure(window);
    const auto most_high =
        vga_listw_height_limit(static_cast<NB_ULONG>(HeightOfScreen(gvga_screen)),
                               need.fixed + need.tool_bar + need.keys + need.headings + need.panes);
    XtVaSetValues(window->common.widget, XmNwidth,
                  static_cast<Dimension>(std::min<NB_ULONG>(width, most_wide)), XmNheight,
                  static_cast<Dimension>(std::min<NB_ULONG>(height, most_high)), nullptr);
}

} // namespace

NB_VOID vga_listw_share_room(VGA_LIST_WINDOW *window) {
    const VGA_LISTW_STEP step = vga_listw_choose_step(measure(window));
    Dimension width = 0;
    XtVaGetValues(window->common.widget, XmNwidth, &width, nullptr);
    stack_parts(window, step < VGA_LISTW_STEP_NO_TOOL_BAR &&
                            vga_wanted_size(part(window, "ToolbarRowColumn")).width <= width);
    XtVaGetValues(window->panes_widget, XmNwidth, &width, nullptr);
    NB_ULONG least = 0;
    for (NB_USHORT at = 0; at < window->list_count; at++) {
        const VGA_LISTW_PANE &pane = window->panes[at];
        const bool key = step < VGA_LISTW_STEP_NO_KEYS;
        const bool headings = step < VGA_LISTW_STEP_NO_HEADINGS;
        vga_listw_arrange_row(pane, width, key);
        show_headings(pane, headings);
        least = std::max(least, least_height(pane) + (key ? vga_listw_key_height(pane) : 0) +
                                    (headings ? headings_height(pane) : 0));
    }
    vga_listw_divide_panes(window, least);
}

NB_VOID vga_listw_prepare_room(VGA_LIST_WINDOW *window) {
    vga_listw_prepare_heights(window);
    if (is_main(window)) {
        set_first_size(window);
    }
    vga_listw_share_room(window);
    for (Widget widget : {window->common.widget, window->panes_widget}) {
        XtAddEventHandler(widget, StructureNotifyMask, False, resized, window);
    }
}

NB_VOID vga_listw_fit_dialog(const VGA_LIST_WINDOW *window) {
    const XtWidgetGeometry wanted = vga_wanted_size(window->common.widget);
    const int wide = wanted.width + dialog_edge - WidthOfScreen(gvga_screen);
    const int high = wanted.height + dialog_edge - HeightOfScreen(gvga_screen);
    if (wide > 0 || high > 0) {
        XtVaSetValues(window->common.widget, XmNresizePolicy, XmRESIZE_NONE, XmNwidth,
                      static_cast<Dimension>(wanted.width - std::max(wide, 0)), XmNheight,
                      static_cast<Dimension>(wanted.height - std::max(high, 0)), nullptr);
    }
}
