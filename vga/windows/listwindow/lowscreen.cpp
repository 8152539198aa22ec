#include "lowscreen.h"
#include "graphics.h"
#include "headings.h"
#include "toolkit.h"
#include <algorithm>
#include <string>

namespace {

constexpr NB_ULONG least_lines = 2;
constexpr NB_ULONG frame_room = 28;  // pixels for the window manager's title and border
constexpr NB_ULONG panel_room = 44;  // and for a panel of the desktop
constexpr NB_ULONG side_room = 24;   // borders at the left and right
constexpr NB_ULONG list_margins = 8; // offsets, shadows and highlights around a list

NB_ULONG wanted_height(Widget widget) {
    XtWidgetGeometry wanted = {};
    XtQueryGeometry(widget, nullptr, &wanted);
    return wanted.height;
}

NB_ULONG wanted_width(Widget widget) {
    XtWidgetGeometry wanted = {};
    XtQueryGeometry(widget, nullptr, &wanted);
    return wanted.width;
}

Widget find(const VGA_LIST_WINDOW *window, const NB_CHAR *name) {
    return XtNameToWidget(window->common.widget, const_cast<NB_CHAR *>(name));
}

/* The window's own part of that name. */
Widget part(const VGA_LIST_WINDOW *window, const NB_CHAR *name) {
    return find(window, (std::string("*") + window->plan->prefix + name).c_str());
}

Widget key_of(const VGA_LIST_WINDOW *window, NB_USHORT pane) {
    const NB_CHAR *name = window->plan->lists[pane].key;
    return name != nullptr ? find(window, name) : nullptr;
}

Widget rule_of(const VGA_LIST_WINDOW *window, NB_USHORT pane) {
    return find(window, window->plan->lists[pane].rule);
}

/* A form that is not on the screen yet does not know its height, but its contents do. */
NB_ULONG tool_bar_height(const VGA_LIST_WINDOW *window) {
    return wanted_height(part(window, "ToolbarRowColumn")) +
           wanted_height(part(window, "ToolbarRule"));
}

/* Of a pane with two lines and no key. */
NB_ULONG least_height(const VGA_LIST_WINDOW *window, NB_USHORT pane) {
    const VGA_LISTW_PANE &parts = window->panes[pane];
    Dimension border = 0, scroll_bar = 0;
    XtVaGetValues(parts.form, XmNborderWidth, &border, nullptr);
    XtVaGetValues(parts.hscroll, XmNheight, &scroll_bar, nullptr);
    return wanted_height(parts.title) + wanted_height(rule_of(window, pane)) +
           least_lines * gvga_viewer_item_height + scroll_bar + 2U * border + list_margins;
}

NB_ULONG headings_height(const VGA_LIST_WINDOW *window, NB_USHORT pane) {
    return window->panes[pane].headings != nullptr ? vga_viewer_headings_height() : 0;
}

NB_ULONG key_height(const VGA_LIST_WINDOW *window, NB_USHORT pane) {
    if (key_of(window, pane) == nullptr) {
        return 0;
    }
    const NB_ULONG key = wanted_height(key_of(window, pane));
    const NB_ULONG title = wanted_height(window->panes[pane].title);
    return key > title ? key - title : 0;
}

VGA_LISTW_HEIGHTS measure(const VGA_LIST_WINDOW *window) {
    Dimension margin = 0, spacing = 0;
    XtVaGetValues(window->panes_widget, XmNmarginHeight, &margin, XmNspacing, &spacing, nullptr);
    VGA_LISTW_HEIGHTS heights = {};
    heights.screen = static_cast<NB_ULONG>(HeightOfScreen(gvga_screen));
    heights.fixed =
        wanted_height(part(window, "MenuBar")) +
        (window->plan->head != nullptr ? wanted_height(find(window, window->plan->head)) : 0) +
        wanted_height(window->message_bar) + 2U * margin +
        (NB_ULONG{window->list_count} - 1U) * spacing;
    heights.tool_bar = tool_bar_height(window);
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        heights.panes += least_height(window, pane);
        heights.keys += key_height(window, pane) + headings_height(window, pane);
    }
    return heights;
}

NB_VOID hide_key(const VGA_LIST_WINDOW *window, NB_USHORT pane) {
    if (key_of(window, pane) == nullptr) {
        return;
    }
    Widget title = window->panes[pane].title;
    Widget rule = rule_of(window, pane);
    XtUnmanageChild(key_of(window, pane));
    /* The rule hung on the key, and the title on the rule. */
    XtVaSetValues(title, XmNbottomAttachment, XmATTACH_NONE, XmNrightAttachment, XmATTACH_NONE,
                  nullptr);
    XtVaSetValues(rule, XmNtopWidget, title, nullptr);
}

/* A title and its key stand beside each other. */
bool is_too_narrow(const VGA_LIST_WINDOW *window, NB_USHORT pane) {
    constexpr NB_ULONG gaps = 48; /* around the panes and between the two */
    return key_of(window, pane) != nullptr &&
           wanted_width(window->panes[pane].title) + wanted_width(key_of(window, pane)) + gaps >
               static_cast<NB_ULONG>(WidthOfScreen(gvga_screen)) - side_room;
}

NB_VOID hide_tool_bar(const VGA_LIST_WINDOW *window) {
    Widget below =
        window->plan->head != nullptr ? find(window, window->plan->head) : window->panes_widget;
    XtVaSetValues(below, XmNtopWidget, part(window, "MenuBar"), nullptr);
    XtUnmanageChild(part(window, "Toolbar"));
}

NB_VOID cut_size(Widget window, VGA_LISTW_STEP step) {
    Dimension width, height;
    XtVaGetValues(window, XmNwidth, &width, XmNheight, &height, nullptr);
    const auto screen_width = static_cast<NB_ULONG>(WidthOfScreen(gvga_screen));
    const auto screen_height = static_cast<NB_ULONG>(HeightOfScreen(gvga_screen));
    XtVaSetValues(window, XmNwidth,
                  static_cast<Dimension>(std::min<NB_ULONG>(width, screen_width - side_room)),
                  XmNheight,
                  static_cast<Dimension>(
                      std::min<NB_ULONG>(height, vga_listw_height_limit(screen_height, step))),
                  nullptr);
}

} // namespace

NB_ULONG vga_listw_height_limit(NB_ULONG screen, VGA_LISTW_STEP step) {
    const NB_ULONG room = frame_room + (step == VGA_LISTW_STEP_NONE ? panel_room : 0);
    return screen > room ? screen - room : 1;
}

VGA_LISTW_STEP vga_listw_choose_step(const VGA_LISTW_HEIGHTS &heights) {
    NB_ULONG need = heights.fixed + heights.tool_bar + heights.keys + heights.panes;
    const struct {
        VGA_LISTW_STEP step;
        NB_ULONG saves;
    } steps[] = {{VGA_LISTW_STEP_NONE, 0},
                 {VGA_LISTW_STEP_NO_PANEL, 0},
                 {VGA_LISTW_STEP_NO_KEYS, heights.keys}};
    for (const auto &row : steps) {
        need -= row.saves;
        if (need <= vga_listw_height_limit(heights.screen, row.step)) {
            return row.step;
        }
    }
    return VGA_LISTW_STEP_NO_TOOL_BAR;
}

NB_VOID vga_listw_set_headings(const VGA_LIST_WINDOW *window, NB_USHORT shown) {
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        Widget headings = window->panes[pane].headings;
        if (headings == nullptr || XtIsManaged(headings) == (shown != 0)) {
            continue;
        }
        XtVaSetValues(XtParent(window->panes[pane].draw_area), XmNtopWidget,
                      shown != 0 ? headings : rule_of(window, pane), nullptr);
        (shown != 0 ? XtManageChild : XtUnmanageChild)(headings);
    }
}

NB_VOID vga_listw_fit_dialog(const VGA_LIST_WINDOW *window) {
    constexpr int edge = 2 * static_cast<int>(frame_room);
    XtWidgetGeometry wanted = {};
    XtQueryGeometry(window->common.widget, nullptr, &wanted);
    const int wide = wanted.width + edge - WidthOfScreen(gvga_screen);
    const int high = wanted.height + edge - HeightOfScreen(gvga_screen);
    if (wide > 0 || high > 0) {
        XtVaSetValues(window->common.widget, XmNresizePolicy, XmRESIZE_NONE, XmNwidth,
                      static_cast<Dimension>(wanted.width - std::max(wide, 0)), XmNheight,
                      static_cast<Dimension>(wanted.height - std::max(high, 0)), nullptr);
    }
}

NB_VOID vga_listw_fit_screen(VGA_LIST_WINDOW *window) {
    if (part(window, "MenuBar") == nullptr) {
        return; /* a dialog is as large as its list */
    }
    const VGA_LISTW_STEP step = vga_listw_choose_step(measure(window));
    window->least_pane = 0;
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        const NB_ULONG key = step < VGA_LISTW_STEP_NO_KEYS
                                 ? key_height(window, pane) + headings_height(window, pane)
                                 : 0;
        const auto least = static_cast<Dimension>(least_height(window, pane) + key);
        Dimension minimum = 0;
        XtVaGetValues(window->panes[pane].form, XmNpaneMinimum, &minimum, nullptr);
        /* Never more: a window that the operator makes low could not keep to it. */
        XtVaSetValues(window->panes[pane].form, XmNpaneMinimum, std::min(minimum, least), nullptr);
        window->least_pane = std::max(window->least_pane, least);
    }
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        if (step >= VGA_LISTW_STEP_NO_KEYS || is_too_narrow(window, pane)) {
            hide_key(window, pane);
        }
    }
    if (step >= VGA_LISTW_STEP_NO_KEYS) {
        vga_listw_set_headings(window, 0);
        for (VGA_LISTW_PANE &pane : window->panes) {
            pane.headings = nullptr; /* for good */
        }
    }
    if (step >= VGA_LISTW_STEP_NO_TOOL_BAR) {
        hide_tool_bar(window);
    } else {
        /* The cut arranges the window with the heights that it has now. */
        XtVaSetValues(part(window, "Toolbar"), XmNheight,
                      static_cast<Dimension>(tool_bar_height(window)), nullptr);
    }
    cut_size(window->common.widget, step);
}
