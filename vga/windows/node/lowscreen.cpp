#include "lowscreen.h"
#include "graphics.h"
#include "toolkit.h"
#include <algorithm>

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

Widget find(const VGA_NODEW_DESC *desc, const NB_CHAR *name) {
    return XtNameToWidget(desc->common.widget, const_cast<NB_CHAR *>(name));
}

struct PANE_PARTS {
    const NB_CHAR *key, *rule;
} constexpr pane_parts[VGA_NODEW_PANE_COUNT] = {
    {"*nodewConnectivityKey", "*nodewConnectivityRule"},
    {"*nodewLocalLUsKey", "*nodewLocalLUsRule"},
    {"*nodewRemSysKey", "*nodewRemSysRule"},
};

/* A form that is not on the screen yet does not know its height, but its contents do. */
NB_ULONG tool_bar_height(const VGA_NODEW_DESC *desc) {
    return wanted_height(find(desc, "*nodewToolbarRowColumn")) +
           wanted_height(find(desc, "*nodewToolbarRule"));
}

/* Of a pane with two lines and no key. */
NB_ULONG least_height(const VGA_NODEW_DESC *desc, NB_USHORT pane) {
    const VGA_NODEW_PANE &parts = desc->panes[pane];
    Dimension border = 0, scroll_bar = 0;
    XtVaGetValues(parts.form, XmNborderWidth, &border, nullptr);
    XtVaGetValues(parts.hscroll, XmNheight, &scroll_bar, nullptr);
    return wanted_height(parts.title) + wanted_height(find(desc, pane_parts[pane].rule)) +
           least_lines * gvga_viewer_item_height + scroll_bar + 2U * border + list_margins;
}

NB_ULONG key_height(const VGA_NODEW_DESC *desc, NB_USHORT pane) {
    const NB_ULONG key = wanted_height(find(desc, pane_parts[pane].key));
    const NB_ULONG title = wanted_height(desc->panes[pane].title);
    return key > title ? key - title : 0;
}

VGA_NODEW_HEIGHTS measure(const VGA_NODEW_DESC *desc) {
    Dimension margin = 0, spacing = 0;
    XtVaGetValues(desc->panes_widget, XmNmarginHeight, &margin, XmNspacing, &spacing, nullptr);
    VGA_NODEW_HEIGHTS heights = {};
    heights.screen = static_cast<NB_ULONG>(HeightOfScreen(gvga_screen));
    heights.fixed =
        wanted_height(find(desc, "*nodewMenuBar")) + wanted_height(find(desc, "*nodewServerForm")) +
        wanted_height(desc->message_bar) + 2U * margin + (VGA_NODEW_PANE_COUNT - 1U) * spacing;
    heights.tool_bar = tool_bar_height(desc);
    for (NB_USHORT pane = 0; pane < VGA_NODEW_PANE_COUNT; pane++) {
        heights.panes += least_height(desc, pane);
        heights.keys += key_height(desc, pane);
    }
    return heights;
}

NB_VOID hide_key(const VGA_NODEW_DESC *desc, NB_USHORT pane) {
    Widget title = desc->panes[pane].title;
    Widget rule = find(desc, pane_parts[pane].rule);
    XtUnmanageChild(find(desc, pane_parts[pane].key));
    /* The rule hung on the key, and the title on the rule. */
    XtVaSetValues(title, XmNbottomAttachment, XmATTACH_NONE, nullptr);
    XtVaSetValues(rule, XmNtopWidget, title, nullptr);
}

/* A title and its key stand beside each other. */
bool is_too_narrow(const VGA_NODEW_DESC *desc, NB_USHORT pane) {
    constexpr NB_ULONG gaps = 48; /* around the panes and between the two */
    return wanted_width(desc->panes[pane].title) + wanted_width(find(desc, pane_parts[pane].key)) +
               gaps >
           static_cast<NB_ULONG>(WidthOfScreen(gvga_screen)) - side_room;
}

NB_VOID hide_tool_bar(const VGA_NODEW_DESC *desc) {
    XtVaSetValues(find(desc, "*nodewServerForm"), XmNtopWidget, find(desc, "*nodewMenuBar"),
                  nullptr);
    XtUnmanageChild(find(desc, "*nodewToolbar"));
}

NB_VOID cut_size(Widget window, VGA_NODEW_STEP step) {
    Dimension width, height;
    XtVaGetValues(window, XmNwidth, &width, XmNheight, &height, nullptr);
    const auto screen_width = static_cast<NB_ULONG>(WidthOfScreen(gvga_screen));
    const auto screen_height = static_cast<NB_ULONG>(HeightOfScreen(gvga_screen));
    XtVaSetValues(window, XmNwidth,
                  static_cast<Dimension>(std::min<NB_ULONG>(width, screen_width - side_room)),
                  XmNheight,
                  static_cast<Dimension>(
                      std::min<NB_ULONG>(height, vga_nodew_height_limit(screen_height, step))),
                  nullptr);
}

} // namespace

NB_ULONG vga_nodew_height_limit(NB_ULONG screen, VGA_NODEW_STEP step) {
    const NB_ULONG room = frame_room + (step == VGA_NODEW_STEP_NONE ? panel_room : 0);
    return screen > room ? screen - room : 1;
}

VGA_NODEW_STEP vga_nodew_choose_step(const VGA_NODEW_HEIGHTS &heights) {
    NB_ULONG need = heights.fixed + heights.tool_bar + heights.keys + heights.panes;
    const struct {
        VGA_NODEW_STEP step;
        NB_ULONG saves;
    } steps[] = {{VGA_NODEW_STEP_NONE, 0},
                 {VGA_NODEW_STEP_NO_PANEL, 0},
                 {VGA_NODEW_STEP_NO_KEYS, heights.keys}};
    for (const auto &row : steps) {
        need -= row.saves;
        if (need <= vga_nodew_height_limit(heights.screen, row.step)) {
            return row.step;
        }
    }
    return VGA_NODEW_STEP_NO_TOOL_BAR;
}

NB_VOID vga_nodew_fit_screen(VGA_NODEW_DESC *desc) {
    const VGA_NODEW_STEP step = vga_nodew_choose_step(measure(desc));
    desc->least_pane = 0;
    for (NB_USHORT pane = 0; pane < VGA_NODEW_PANE_COUNT; pane++) {
        const NB_ULONG key = step < VGA_NODEW_STEP_NO_KEYS ? key_height(desc, pane) : 0;
        const auto least = static_cast<Dimension>(least_height(desc, pane) + key);
        Dimension minimum = 0;
        XtVaGetValues(desc->panes[pane].form, XmNpaneMinimum, &minimum, nullptr);
        /* Never more: a window that the operator makes low could not keep to it. */
        XtVaSetValues(desc->panes[pane].form, XmNpaneMinimum, std::min(minimum, least), nullptr);
        desc->least_pane = std::max(desc->least_pane, least);
    }
    for (NB_USHORT pane = 0; pane < VGA_NODEW_PANE_COUNT; pane++) {
        if (step >= VGA_NODEW_STEP_NO_KEYS || is_too_narrow(desc, pane)) {
            hide_key(desc, pane);
        }
    }
    if (step >= VGA_NODEW_STEP_NO_TOOL_BAR) {
        hide_tool_bar(desc);
    } else {
        /* The cut arranges the window with the heights that it has now. */
        XtVaSetValues(find(desc, "*nodewToolbar"), XmNheight,
                      static_cast<Dimension>(tool_bar_height(desc)), nullptr);
    }
    cut_size(desc->common.widget, step);
}
