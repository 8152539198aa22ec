#include "tooltips.h"
#include "holders.h"
#include "messagebox.h"
#include <X11/Shell.h>
#include <Xm/Label.h>
#include <Xm/MenuShell.h>
#include <Xm/VendorS.h>
#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

constexpr NB_USHORT tip_columns = 60;
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

/* The label of the toolkit's own tips has the look that was configured for them. */
Widget make_label(Widget shell) {
    NB_CHAR *wrapped = vga_wrap_text(tip.text.c_str(), tip_columns);
    const VGA_STRING string(wrapped != nullptr ? wrapped : tip.text.c_str());
    free(wrapped);
    Widget label =
        XtVaCreateManagedWidget("TipLabel", xmLabelWidgetClass, shell, XmNlabelString, string.get(),
                                XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
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

/* Below the pointer, and all of it on the screen. */
NB_VOID place(Widget shell, Widget label) {
    Window root = None;
    Window child = None;
    NB_INT x = 0;
    NB_INT y = 0;
    NB_INT inside_x = 0;
    NB_INT inside_y = 0;
    unsigned buttons = 0;
    Screen *screen = XtScreen(shell);
    XQueryPointer(XtDisplay(shell), RootWindowOfScreen(screen), &root, &child, &x, &y, &inside_x,
                  &inside_y, &buttons);
    Dimension width = 0;
    Dimension height = 0;
    XtVaGetValues(label, XmNwidth, &width, XmNheight, &height, nullptr);
    const NB_INT below = y + pointer_height;
    const NB_INT top = below + height > HeightOfScreen(screen) ? y - height - 2 : below;
    const NB_INT left = std::min(x, WidthOfScreen(screen) - width);
    XtVaSetValues(shell, XmNx, static_cast<Position>(std::max(left, 0)), XmNy,
                  static_cast<Position>(std::max(top, 0)), nullptr);
}

NB_VOID post(XtPointer, XtIntervalId *) {
    tip.timer = 0;
    Widget parent = shell_of(tip.over);
    tip.shell =
        XtVaCreatePopupShell("TipShell", overrideShellWidgetClass, parent, XmNallowShellResize,
                             True, XmNborderWidth, tip_border, nullptr);
    Widget label = make_label(tip.shell);
    XtRealizeWidget(tip.shell);
    place(tip.shell, label);
    XtPopup(tip.shell, XtGrabNone);
    wait_for(config_of(parent).duration, time_is_over);
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
        wait_for(config.delay, post);
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
