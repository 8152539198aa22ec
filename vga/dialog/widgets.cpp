#include "widgets.h"
#include "firewall.h"
#include "globals.h"
#include "holders.h"
#include "libraryleaks.h"
#include "nbbase.h"
#include "resourcereader.h"
#include "toolkit.h"
#include "vgadgutl.h"
#include <Xm/Column.h>
#include <Xm/Frame.h>
#include <Xm/Label.h>
#include <Xm/LabelG.h>
#include <Xm/MessageB.h>
#include <Xm/PanedW.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/ScrolledW.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

struct CHILDREN {
    explicit CHILDREN(Widget widget) {
        if (XtIsComposite(widget)) {
            XtVaGetValues(widget, XmNchildren, &list, XmNnumChildren, &count, nullptr);
        }
    }
    WidgetList begin() const { return list; }
    WidgetList end() const { return list + count; }
    WidgetList list = nullptr;
    Cardinal count = 0;
};

Widget box_part(Widget box, const NB_CHAR *name) {
    return box != nullptr && XmIsMessageBox(box) ? XtNameToWidget(box, name) : nullptr;
}

NB_VOID show_child(Widget child, NB_USHORT on) {
    if (child != nullptr) {
        (on != 0 ? XtManageChild : XtUnmanageChild)(child);
    }
}

NB_VOID set_edit(VGA_DIALOG *desc, XtCallbackProc ok_proc, Widget extra, NB_USHORT edit) {
    /* Both off first: the call may be repeated. */
    XtRemoveCallback(desc->widget, XmNokCallback, ok_proc, nullptr);
    XtRemoveCallback(desc->widget, XmNokCallback, vga_close_cb, nullptr);
    XtAddCallback(desc->widget, XmNokCallback, edit != 0 ? ok_proc : vga_close_cb, nullptr);
    show_child(box_part(desc->widget, "Cancel"), edit);
    show_child(extra, edit != 0 && gvga_supported[VGA_SUPPORTED_APPLY] != 0);
}

/* Once one widget is an explicit stop of the Tab key the toolkit skips all that are not, so the
 * fields of a work area must become stops with it. */
bool is_stop(Widget widget) {
    XmNavigationType navigation = XmNONE;
    XtVaGetValues(widget, XmNnavigationType, &navigation, nullptr);
    if (navigation == XmTAB_GROUP || navigation == XmSTICKY_TAB_GROUP ||
        navigation == XmEXCLUSIVE_TAB_GROUP) {
        return true;
    }
    Widget parent = XtParent(widget);
    unsigned char type = XmWORK_AREA;
    if (XmIsRowColumn(widget)) {
        XtVaGetValues(widget, XmNrowColumnType, &type, nullptr);
    }
    return type == XmMENU_OPTION || (XmIsToggleButton(widget) && XmIsColumn(parent)) ||
           (XmIsPushButton(widget) && XmIsRowColumn(parent)); /* "..." beside a field */
}

NB_VOID add_fields(Widget widget, std::vector<Widget> &stops) {
    for (Widget child : CHILDREN(widget)) {
        if (is_stop(child)) {
            stops.push_back(child);
        }
        add_fields(child, stops);
    }
}

/* Apply, Reset and whatever else stands beside the box's own buttons. */
NB_VOID add_extra_buttons(Widget message_box, std::vector<Widget> &stops) {
    for (Widget child : CHILDREN(message_box)) {
        if (XmIsPushButton(child) && child != box_part(message_box, "OK") &&
            child != box_part(message_box, "Cancel") && child != box_part(message_box, "Help")) {
            stops.push_back(child);
        }
    }
}

/* Returns 0 when the resource is not set or no colour of the display. */
NB_USHORT configured_colour(Widget widget, const NB_CHAR *resource, Pixel *pixel) {
    NB_CHAR name[65];
    if (vga_get_resource_string(resource, "", name, sizeof(name) - 1) == 0 || name[0] == '\0') {
        return 0;
    }
    XrmValue from = {static_cast<unsigned>(strlen(name) + 1), name};
    XrmValue to = {sizeof(*pixel), reinterpret_cast<XPointer>(pixel)};
    return XtConvertAndStore(widget, XmRString, &from, XmRPixel, &to);
}

NB_VOID swap_colours(Widget widget) {
    if (widget != nullptr) {
        Pixel foreground, background;
        XtVaGetValues(widget, XmNforeground, &foreground, XmNbackground, &background, nullptr);
        XtVaSetValues(widget, XmNforeground, background, XmNbackground, foreground, nullptr);
    }
}

NB_VOID set_frame(Widget button, unsigned char shadow) {
    while (button != nullptr && !XmIsFrame(button)) {
        button = XtIsShell(button) ? nullptr : XtParent(button);
    }
    if (button != nullptr) {
        XtVaSetValues(button, XmNshadowType, shadow, nullptr);
    }
}

struct LABEL_FONTS {
    explicit LABEL_FONTS(Widget like) {
        XtVaGetValues(like, XmNrenderTable, &field, nullptr);
        const VGA_LIBRARY_LEAKS known;  /* eight bytes of the table */
        const VGA_NO_WARNINGS quiet;    /* where there are no scalable fonts */
        NB_CHAR tag[] = "groupHeading"; /* its resources have this name */
        XmRendition bold = XmRenditionCreate(like, tag, nullptr, 0);
        heading = XmRenderTableAddRenditions(nullptr, &bold, 1, XmMERGE_NEW);
        XmRenditionFree(bold);
        const VGA_STRING sample("Mg");
        drawn = XmStringHeight(heading, sample.get()) > 0;
    }
    LABEL_FONTS(const LABEL_FONTS &) = delete;
    LABEL_FONTS &operator=(const LABEL_FONTS &) = delete;
    ~LABEL_FONTS() { XmRenderTableFree(heading); }
    XmRenderTable of(const std::string &entry) const {
        const size_t digits = entry.find_last_not_of("0123456789") + 1;
        const bool group = digits < entry.size() && entry.substr(0, digits).ends_with("Group");
        return group && drawn ? heading : field;
    }
    XmRenderTable field = nullptr; /* the widget's */
    XmRenderTable heading;
    bool drawn;
};

NB_VOID set_label_fonts(Widget widget, const LABEL_FONTS &fonts) {
    static const std::string ending = "_label";
    for (Widget child : CHILDREN(widget)) {
        const std::string name = XtName(child);
        const bool made = XmIsColumn(widget) && name.ends_with(ending);
        if (made && (XmIsLabel(child) || XmIsLabelGadget(child))) {
            XtVaSetValues(child, XmNrenderTable,
                          fonts.of(name.substr(0, name.size() - ending.size())), nullptr);
        }
        set_label_fonts(child, fonts);
    }
}

/* A scalable font's column is that of a digit whatever the locale; a font set's is that of its
 * widest characters. */
bool counts_wide_columns(Widget text) {
    XmRenderTable fonts = nullptr;
    XtVaGetValues(text, XmNrenderTable, &fonts, nullptr);
    XmStringTag *tags = nullptr;
    const int count = fonts != nullptr ? XmRenderTableGetTags(fonts, &tags) : 0;
    XmFontType type = XmFONT_IS_FONTSET;
    for (int at = 0; at < count; at++) {
        Arg args[1];
        XtSetArg(args[0], XmNfontType, &type);
        XmRendition rendition = XmRenderTableGetRendition(fonts, tags[at]);
        XmRenditionRetrieve(rendition, args, 1);
        XmRenditionFree(rendition);
        XtFree(tags[at]);
    }
    XtFree(reinterpret_cast<char *>(tags));
    return type != XmFONT_IS_XFT;
}

} // namespace

/* Whole dialogs. */

NB_VOID vga_dialog_allow_edit(VGA_DIALOG *desc, XtCallbackProc ok_proc, Widget extra) {
    set_edit(desc, ok_proc, extra, 1);
}

NB_VOID vga_dialog_disallow_edit(VGA_DIALOG *desc, XtCallbackProc ok_proc, Widget extra) {
    set_edit(desc, ok_proc, extra, 0);
}

NB_VOID vga_dialog_sensitive(VGA_DIALOG *desc, Widget extra, NB_USHORT on) {
    vga_set_sensitive(box_part(desc->widget, "OK"), on);
    vga_set_sensitive(extra, on);
}

NB_VOID vga_define_tab_groups(const Widget *widgets, NB_USHORT count) {
    for (NB_USHORT ii = 0; ii < count; ii++) {
        if (widgets[ii] != nullptr) {
            XmRemoveTabGroup(widgets[ii]);
        }
    }
    for (NB_USHORT ii = 0; ii < count; ii++) {
        if (widgets[ii] != nullptr && XtIsManaged(widgets[ii])) {
            XtVaSetValues(widgets[ii], XmNtraversalOn, True, nullptr);
            XmAddTabGroup(widgets[ii]);
        }
    }
}

NB_VOID vga_define_tabbing_order(Widget message_box, Widget widget) {
    if (message_box == nullptr || !XmIsMessageBox(message_box)) {
        return;
    }
    std::vector<Widget> stops = {box_part(message_box, "OK")};
    add_extra_buttons(message_box, stops);
    if (widget != nullptr) {
        stops.push_back(widget);
        add_fields(widget, stops);
    }
    stops.push_back(box_part(message_box, "Cancel"));
    stops.push_back(box_part(message_box, "Help"));
    vga_define_tab_groups(stops.data(), static_cast<NB_USHORT>(stops.size()));
}

Widget vga_get_work_area(Widget message_box) {
    if (message_box != nullptr && XmIsMessageBox(message_box)) {
        for (Widget child : CHILDREN(message_box)) {
            if (XtIsComposite(child) && XtIsManaged(child)) {
                return child;
            }
        }
    }
    return nullptr;
}

XtWidgetGeometry vga_wanted_size(Widget widget) {
    XtWidgetGeometry wanted = {};
    if (widget != nullptr) {
        XtQueryGeometry(widget, nullptr, &wanted);
    }
    return wanted;
}

/* A column makes its labels of a font of its own, which the resources for all text do not reach. */
NB_VOID vga_set_label_fonts(Widget widget, Widget message_box) {
    Widget like = box_part(message_box, "OK"); /* as the resources have it */
    if (widget == nullptr || like == nullptr) {
        return;
    }
    LABEL_FONTS fonts(like);
    set_label_fonts(widget, fonts);
}

/* State and look. */

NB_VOID vga_set_sensitive(Widget widget, NB_USHORT on) {
    if (widget == nullptr) {
        return;
    }
    if (on == 0) {
        vga_modal_firewall_forget_tree(widget);
    }
    XtSetSensitive(widget, on != 0);
    if (XmIsToggleButton(widget)) {
        /* Its box has both shadows for its edges, its text is sharp without the upper one. */
        Pixel edge = 0, ground = 0;
        XtVaGetValues(widget, XmNbottomShadowColor, &edge, XmNbackground, &ground, nullptr);
        XtVaSetValues(widget, XmNtopShadowColor, on != 0 ? edge : ground, nullptr);
    }
}

NB_VOID vga_set_colours(Widget widget, Pixel background, Pixel foreground) {
    if (widget == nullptr) {
        return;
    }
    if (XtIsWidget(widget) && !XtIsShell(widget)) {
        XmChangeColor(widget, background);
        XtVaSetValues(widget, XmNforeground, foreground, nullptr);
    }
    for (Widget child : CHILDREN(widget)) {
        vga_set_colours(child, background, foreground);
    }
}

NB_VOID vga_set_configured_colours(Widget widget) {
    Pixel background, foreground;
    XtVaGetValues(widget, XmNbackground, &background, XmNforeground, &foreground, nullptr);
    NB_USHORT changed = configured_colour(widget, ".dialogBackground", &background);
    changed |= configured_colour(widget, ".dialogForeground", &foreground);
    if (changed != 0) {
        vga_set_colours(widget, background, foreground);
    }
}

/* A colour alone would not be seen by everybody. */
NB_VOID vga_mark_label(Widget label, NB_USHORT on) {
    constexpr NB_CHAR mark[] = " *";
    XmString string = nullptr;
    if (label == nullptr) {
        return;
    }
    XtVaGetValues(label, XmNlabelString, &string, nullptr);
    const VGA_STRING owned(string);
    const VGA_TEXT old(static_cast<NB_CHAR *>(XmStringUnparse(
        string, nullptr, XmCHARSET_TEXT, XmMULTIBYTE_TEXT, nullptr, 0, XmOUTPUT_ALL)));
    std::string text = old.get() != nullptr ? old.get() : "";
    if (text.ends_with(mark) == (on != 0)) {
        return;
    }
    text = on != 0 ? text + mark : text.substr(0, text.size() - strlen(mark));
    const VGA_STRING marked(text.c_str());
    XtVaSetValues(label, XmNlabelString, marked.get(), nullptr);
}

NB_VOID vga_put_widget_context(Widget widget, NB_VOID *context) {
    if (widget != nullptr) {
        XtVaSetValues(widget, XmNuserData, context, nullptr);
    }
}

NB_VOID *vga_get_widget_context(Widget widget) {
    XtPointer context = nullptr; /* stays so for a widget of a class without one */
    if (widget != nullptr) {
        XtVaGetValues(widget, XmNuserData, &context, nullptr);
    }
    return context;
}

NB_VOID vga_put_widget_pixmap(Widget widget, Pixmap pixmap) {
    if (widget != nullptr) {
        XtVaSetValues(widget, XmNlabelType, XmPIXMAP, XmNlabelPixmap, pixmap, nullptr);
    }
}

NB_VOID vga_button_push(Widget button, XtPointer, XtPointer) {
    set_frame(button, XmSHADOW_IN);
}

NB_VOID vga_button_pop(Widget button, XtPointer, XtPointer) {
    set_frame(button, XmSHADOW_OUT);
}

NB_VOID vga_arm_widget(Widget widget) {
    swap_colours(widget);
}

NB_VOID vga_disarm_widget(Widget widget) {
    swap_colours(widget);
}

/* Sizes. */

NB_VOID vga_set_window_height(VGA_DIALOG *desc, Dimension height) {
    Dimension limit = static_cast<Dimension>(HeightOfScreen(gvga_screen));
    XtVaSetValues(desc->shell, XmNheight, std::min(height, limit), nullptr);
}

NB_VOID vga_set_minimum_height(VGA_DIALOG *desc, Dimension height) {
    XtVaSetValues(desc->shell, XmNminHeight, static_cast<int>(height), nullptr);
}

/* A paned window only obeys limits, so both are set to the height and then put back. */
NB_VOID vga_set_pane_height(Widget pane, Dimension height) {
    if (pane == nullptr || !XmIsPanedWindow(XtParent(pane))) {
        return;
    }
    Dimension minimum, maximum;
    XtVaGetValues(pane, XmNpaneMinimum, &minimum, XmNpaneMaximum, &maximum, nullptr);
    height = std::clamp(height, minimum, std::max(minimum, maximum));
    XtVaSetValues(pane, XmNpaneMinimum, height, XmNpaneMaximum, height, nullptr);
    XtVaSetValues(pane, XmNpaneMinimum, minimum, XmNpaneMaximum, maximum, nullptr);
}

NB_VOID vga_set_toolbar_width(Widget tool_bar) {
    if (tool_bar == nullptr) {
        return;
    }
    Dimension widest = 0;
    for (Widget child : CHILDREN(tool_bar)) {
        if (XmIsFrame(child)) {
            Dimension width = 0;
            XtVaGetValues(child, XmNwidth, &width, nullptr);
            widest = std::max(widest, width);
        }
    }
    for (Widget child : CHILDREN(tool_bar)) {
        if (XmIsFrame(child)) {
            XtVaSetValues(child, XmNwidth, widest, nullptr);
        }
    }
}

NB_VOID vga_multi_byte_resize(Widget widget) {
    if (MB_CUR_MAX <= 1 || widget == nullptr) {
        return;
    }
    if ((XmIsText(widget) || XmIsTextField(widget)) && counts_wide_columns(widget)) {
        short columns = 0;
        XtVaGetValues(widget, XmNcolumns, &columns, nullptr);
        columns = static_cast<short>((columns + 1) / 2);
        XtVaSetValues(widget, XmNcolumns, columns, nullptr);
    }
    for (Widget child : CHILDREN(widget)) {
        vga_multi_byte_resize(child);
    }
}

NB_VOID vga_remove_scrollbars(Widget scrolled_window) {
    if (scrolled_window == nullptr || !XmIsScrolledWindow(scrolled_window)) {
        return;
    }
    for (const NB_CHAR *name : {XmNhorizontalScrollBar, XmNverticalScrollBar}) {
        Widget bar = nullptr;
        XtVaGetValues(scrolled_window, name, &bar, nullptr);
        if (bar != nullptr) {
            vga_modal_firewall_forget(bar);
            XtUnmanageChild(bar);
        }
    }
}

/* Keyboard. */

NB_VOID vga_activate_action(Widget widget, XEvent *event, String *, Cardinal *) {
    if (XmIsPushButton(widget) || XmIsToggleButton(widget)) {
        String no_params[] = {nullptr};
        XtCallActionProc(widget, "ArmAndActivate", event, no_params, 0);
    }
}
