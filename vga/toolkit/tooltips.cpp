#include "tooltips.h"
#include "holders.h"
#include <X11/Shell.h>
#include <Xm/Label.h>
#include <Xm/MenuShell.h>
#include <Xm/RowColumn.h>
#include <Xm/VendorS.h>
#include <algorithm>
#include <string>

namespace {

constexpr NB_INT tip_border = 1;
constexpr NB_INT pointer_height = 20; /* pixels that the pointer covers below its hot spot */

struct TIP_CONFIG {
    Boolean enable;
    NB_INT delay;
    NB_INT duration;
};

/* The toolkit's default is no tips at all, and five seconds before the first. */
XtResource config_resources[] = {
    {const_cast<NB_CHAR *>(XmNtoolTipEnable), const_cast<NB_CHAR *>(XmCToolTipEnable),
     const_cast<NB_CHAR *>(XmRBoolean), sizeof(Boolean), XtOffsetOf(TIP_CONFIG, enable),
     const_cast<NB_CHAR *>(XmRImmediate), reinterpret_cast<XtPointer>(True)},
    {const_cast<NB_CHAR *>(XmNtoolTipPostDelay), const_cast<NB_CHAR *>(XmCToolTipPostDelay),
     const_cast<NB_CHAR *>(XmRInt), sizeof(NB_INT), XtOffsetOf(TIP_CONFIG, delay),
     const_cast<NB_CHAR *>(XmRImmediate), reinterpret_cast<XtPointer>(600)},
    {const_cast<NB_CHAR *>(XmNtoolTipPostDuration), const_cast<NB_CHAR *>(XmCToolTipPostDuration),
     const_cast<NB_CHAR *>(XmRInt), sizeof(NB_INT), XtOffsetOf(TIP_CONFIG, duration),
     const_cast<NB_CHAR *>(XmRImmediate), reinterpret_cast<XtPointer>(10000)},
};

struct TIP {
    Widget over;
    Widget shell;
    std::string text;
    XtIntervalId timer; /* 0: none */
};
TIP tip;

/* A menu's tips are its window's. */
Widget shell_of(Widget widget) {
    while (!XtIsShell(widget) || XmIsMenuShell(widget)) {
        widget = XtParent(widget);
    }
    return widget;
}

TIP_CONFIG config_of(Widget shell) {
    TIP_CONFIG config{};
    XtVaGetValues(shell, XmNtoolTipEnable, &config.enable, XmNtoolTipPostDelay, &config.delay,
                  XmNtoolTipPostDuration, &config.duration, nullptr);
    return config;
}

NB_VOID wait_for(NB_INT milliseconds, XtTimerCallbackProc proc) {
    tip.timer =
        XtAppAddTimeOut(XtWidgetToApplicationContext(tip.over),
                        static_cast<unsigned long>(std::max(milliseconds, 0)), proc, nullptr);
}

NB_VOID time_is_over(XtPointer, XtIntervalId *) {
    tip.timer = 0;
    vga_hide_tip();
}

/* A label that looks as the toolkit's own tips were configured to. */
Widget make_label(Widget parent, const std::string &text) {
    const VGA_STRING string(text.c_str());
    Widget label =
        XtVaCreateManagedWidget("TipLabel", xmLabelWidgetClass, parent, XmNlabelString,
                                string.get(), XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
    if (Widget model = XmToolTipGetLabel(tip.over)) {
        Pixel foreground = 0;
        Pixel background = 0;
        XmRenderTable fonts = nullptr;
        XtVaGetValues(model, XmNforeground, &foreground, XmNbackground, &background, XmNrenderTable,
                      &fonts, nullptr);
        XtVaSetValues(label, XmNforeground, foreground, XmNbackground, background, XmNrenderTable,
                      fonts, nullptr);
    }
    return label;
}

/* One label, or one for each column. */
Widget make_content(Widget shell) {
    if (tip.text.find('\t') == std::string::npos) {
        return make_label(shell, tip.text);
    }
    std::string columns[2];
    NB_INT column = 0;
    for (const NB_CHAR character : tip.text) {
        column = character == '\t' ? 1 : column;
        if (character == '\n') {
            columns[0] += character;
            columns[1] += character;
            column = 0;
        } else if (character != '\t') {
            columns[column] += character;
        }
    }
    Widget row = XtVaCreateWidget("TipColumns", xmRowColumnWidgetClass, shell, XmNorientation,
                                  XmHORIZONTAL, XmNmarginWidth, 0, XmNmarginHeight, 0, nullptr);
    for (const std::string &text : columns) {
        Pixel background = 0;
        XtVaGetValues(make_label(row, text), XmNbackground, &background, nullptr);
        XtVaSetValues(row, XmNbackground, background, nullptr);
    }
    XtManageChild(row);
    return row;
}

/* Where the pointer is on the screen. */
struct PLACE {
    NB_INT x, y;
};

PLACE below_pointer(Widget shell) {
    Window root = None;
    Window child = None;
    PLACE place{};
    NB_INT inside_x = 0;
    NB_INT inside_y = 0;
    unsigned buttons = 0;
    XQueryPointer(XtDisplay(shell), RootWindowOfScreen(XtScreen(shell)), &root, &child, &place.x,
                  &place.y, &inside_x, &inside_y, &buttons);
    place.y += pointer_height;
    return place;
}

/* All of it on the screen, and above `place` where there is no room below. */
NB_VOID put(Widget shell, Widget content, PLACE place) {
    Screen *screen = XtScreen(shell);
    Dimension width = 0;
    Dimension height = 0;
    XtVaGetValues(content, XmNwidth, &width, XmNheight, &height, nullptr);
    const NB_INT above = place.y - height - pointer_height - 2;
    const NB_INT top = place.y + height > HeightOfScreen(screen) ? above : place.y;
    const NB_INT left = std::min(place.x, WidthOfScreen(screen) - width - 2 * tip_border);
    XtVaSetValues(shell, XmNx, static_cast<Position>(std::max(left, 0)), XmNy,
                  static_cast<Position>(std::max(top, 0)), nullptr);
}

NB_VOID post(PLACE place) {
    Widget parent = shell_of(tip.over);
    tip.shell =
        XtVaCreatePopupShell("TipShell", overrideShellWidgetClass, parent, XmNallowShellResize,
                             True, XmNborderWidth, tip_border, nullptr);
    Widget content = make_content(tip.shell);
    XtRealizeWidget(tip.shell);
    put(tip.shell, content, place);
    XtPopup(tip.shell, XtGrabNone);
    wait_for(config_of(parent).duration, time_is_over);
}

NB_VOID delay_is_over(XtPointer, XtIntervalId *) {
    tip.timer = 0;
    post(below_pointer(shell_of(tip.over)));
}

} // namespace

NB_VOID vga_enable_tips(Widget widget) {
    Widget shell = shell_of(widget);
    if (!XmIsVendorShell(shell)) {
        return;
    }
    TIP_CONFIG config{};
    XtGetApplicationResources(shell, &config, config_resources, XtNumber(config_resources), nullptr,
                              0);
    XtVaSetValues(shell, XmNtoolTipEnable, config.enable, XmNtoolTipPostDelay, config.delay,
                  XmNtoolTipPostDuration, config.duration, nullptr);
    if (Widget label = XmToolTipGetLabel(widget)) {
        XtVaSetValues(XtParent(label), XmNborderWidth, tip_border, nullptr);
    }
}

NB_VOID vga_show_tip(Widget over, const NB_CHAR *text) {
    vga_hide_tip();
    Widget shell = shell_of(over);
    const TIP_CONFIG config = XmIsVendorShell(shell) ? config_of(shell) : TIP_CONFIG{};
    if (config.enable != False && text[0] != '\0') {
        tip.over = over;
        tip.text = text;
        wait_for(config.delay, delay_is_over);
    }
}

NB_VOID vga_show_tip_at(Widget over, const NB_CHAR *text, NB_INT x, NB_INT y) {
    vga_hide_tip();
    if (text[0] != '\0') {
        Position left = 0;
        Position top = 0;
        XtTranslateCoords(over, static_cast<Position>(x), static_cast<Position>(y), &left, &top);
        tip.over = over;
        tip.text = text;
        post({left, top});
    }
}

NB_VOID vga_hide_tip(NB_VOID) {
    if (tip.timer != 0) {
        XtRemoveTimeOut(tip.timer);
    }
    if (tip.shell != nullptr) {
        XtDestroyWidget(tip.shell);
    }
    tip = TIP{};
}
