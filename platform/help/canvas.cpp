#include "canvas.h"

#include <Xm/DrawingA.h>
#include <Xm/Form.h>
#include <Xm/ScrollBar.h>
#include <algorithm>
#include <cstring>

namespace help {

namespace {

constexpr int wheel_lines = 3;

struct Key_Name {
    const char *name;
    Key key;
};

constexpr Key_Name key_names[] = {
    {"up", Key::up},           {"down", Key::down},
    {"left", Key::left},       {"right", Key::right},
    {"page-up", Key::page_up}, {"page-down", Key::page_down},
    {"first", Key::first},     {"last", Key::last},
    {"next", Key::next},       {"previous", Key::previous},
    {"follow", Key::follow},   {"back", Key::back},
    {"copy", Key::copy},       {"select-all", Key::select_all},
};

/* Whatever the toolkit's own table would do with these keys, it is nothing that is wanted here. */
const char translations[] = "Alt<Key>osfLeft: HelpKey(back)\n"
                            "<Key>osfUp: HelpKey(up)\n"
                            "<Key>osfDown: HelpKey(down)\n"
                            "<Key>osfLeft: HelpKey(left)\n"
                            "<Key>osfRight: HelpKey(right)\n"
                            "<Key>osfPageUp: HelpKey(page-up)\n"
                            "<Key>osfPageDown: HelpKey(page-down)\n"
                            "Shift<Key>space: HelpKey(page-up)\n"
                            "<Key>space: HelpKey(page-down)\n"
                            "<Key>osfBeginLine: HelpKey(first)\n"
                            "<Key>osfEndLine: HelpKey(last)\n"
                            "Shift<Key>Tab: HelpKey(previous)\n"
                            "<Key>Tab: HelpKey(next)\n"
                            "<Key>Return: HelpKey(follow)\n"
                            "<Key>KP_Enter: HelpKey(follow)\n"
                            "<Key>osfActivate: HelpKey(follow)\n"
                            "<Key>osfBackSpace: HelpKey(back)\n"
                            "Ctrl<Key>c: HelpKey(copy)\n"
                            "<Key>osfCopy: HelpKey(copy)\n"
                            "Ctrl<Key>a: HelpKey(select-all)\n"
                            "<Key>osfHelp: ManagerGadgetHelp()\n"
                            "<Key>osfCancel: ManagerParentCancel()\n"
                            "<Btn1Down>: HelpPoint(press)\n"
                            "<Btn1Up>: HelpPoint(release)\n"
                            "<Btn1Motion>: HelpPoint(drag)\n"
                            "<Btn2Down>: HelpPoint(middle)\n"
                            "<Btn4Down>: HelpPoint(wheel-up)\n"
                            "<Btn5Down>: HelpPoint(wheel-down)\n"
                            "<Motion>: HelpPoint(motion)\n"
                            "<LeaveWindow>: HelpPoint(leave)\n"
                            "<FocusIn>: ManagerFocusIn() HelpFocus(in)\n"
                            "<FocusOut>: ManagerFocusOut() HelpFocus(out)\n";

Widget make_bar(Widget frame) {
    return XtVaCreateManagedWidget("helpScrollBar", xmScrollBarWidgetClass, frame, XmNorientation,
                                   XmVERTICAL, XmNtopAttachment, XmATTACH_FORM, XmNbottomAttachment,
                                   XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, XmNtraversalOn,
                                   False, XmNhighlightThickness, 0, nullptr);
}

Widget make_area(Widget frame, const char *name, Widget bar, Pixel background) {
    return XtVaCreateManagedWidget(
        name, xmDrawingAreaWidgetClass, frame, XmNtopAttachment, XmATTACH_FORM, XmNbottomAttachment,
        XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_WIDGET,
        XmNrightWidget, bar, XmNtraversalOn, True, XmNnavigationType, XmTAB_GROUP, XmNmarginWidth,
        0, XmNmarginHeight, 0, XmNresizePolicy, XmRESIZE_NONE, XmNbackground, background, nullptr);
}

} // namespace

Canvas::Canvas(Widget parent, const char *name, const Look &canvas_look, Colour background_colour)
    : look(canvas_look), background(background_colour) {
    frame =
        XtVaCreateWidget("helpFrame", xmFormWidgetClass, parent, XmNshadowThickness, 0, nullptr);
    bar = make_bar(frame);
    drawing = make_area(frame, name, bar, look.colour(background).pixel);
    XtVaSetValues(drawing, XmNuserData, this, nullptr);
    add_translations();
    XtAddCallback(drawing, XmNexposeCallback, on_expose, this);
    XtAddCallback(drawing, XmNresizeCallback, on_resize, this);
    XtAddCallback(bar, XmNvalueChangedCallback, on_scroll, this);
    XtAddCallback(bar, XmNdragCallback, on_scroll, this);
}

Canvas::~Canvas() {
    if (draw != nullptr) {
        XftDrawDestroy(draw);
        XFreePixmap(XtDisplay(frame), buffer);
        XFreeGC(XtDisplay(frame), copy_gc);
    }
}

void Canvas::register_actions(XtAppContext context) {
    static XtActionsRec actions[] = {
        {const_cast<char *>("HelpKey"), on_key},
        {const_cast<char *>("HelpPoint"), on_point},
        {const_cast<char *>("HelpFocus"), on_focus},
    };
    XtAppAddActions(context, actions, XtNumber(actions));
}

void Canvas::add_translations() {
    static XtAppContext registered;
    XtAppContext context = XtWidgetToApplicationContext(drawing);
    if (registered != context) {
        register_actions(context);
        registered = context;
    }
    static XtTranslations parsed = XtParseTranslationTable(translations);
    XtVaSetValues(drawing, XmNtranslations, parsed, nullptr);
}

Canvas *Canvas::of(Widget widget) {
    XtPointer canvas = nullptr;
    XtVaGetValues(widget, XmNuserData, &canvas, nullptr);
    return static_cast<Canvas *>(canvas);
}

/* Drawing. */

void Canvas::make_buffer() {
    if (buffer_width == wide && buffer_height == high) {
        return;
    }
    Display *display = XtDisplay(drawing);
    Visual *visual = DefaultVisualOfScreen(XtScreen(drawing));
    if (draw == nullptr) {
        copy_gc = XCreateGC(display, XtWindow(drawing), 0, nullptr);
        XSetGraphicsExposures(display, copy_gc, False);
    }
    const Pixmap made = XCreatePixmap(
        display, XtWindow(drawing), static_cast<unsigned>(wide), static_cast<unsigned>(high),
        static_cast<unsigned>(DefaultDepthOfScreen(XtScreen(drawing))));
    if (draw == nullptr) {
        draw = XftDrawCreate(display, made, visual, DefaultColormapOfScreen(XtScreen(drawing)));
    } else {
        XftDrawChange(draw, made);
        XFreePixmap(display, buffer);
    }
    buffer = made;
    buffer_width = wide;
    buffer_height = high;
}

void Canvas::redraw() {
    if (!XtIsRealized(drawing) || wide <= 0 || high <= 0) {
        return;
    }
    make_buffer();
    look.fill(draw, background, 0, 0, wide, high);
    paint(draw);
    if (has_focus) {
        const int edges[][4] = {
            {0, 0, wide, 1}, {0, high - 1, wide, 1}, {0, 0, 1, high}, {wide - 1, 0, 1, high}};
        for (const auto &edge : edges) {
            look.fill(draw, Colour::link, edge[0], edge[1], edge[2], edge[3]);
        }
    }
    XCopyArea(XtDisplay(drawing), buffer, XtWindow(drawing), copy_gc, 0, 0,
              static_cast<unsigned>(wide), static_cast<unsigned>(high), 0, 0);
}

void Canvas::on_expose(Widget, XtPointer canvas, XtPointer call_data) {
    const auto *call = static_cast<const XmDrawingAreaCallbackStruct *>(call_data);
    if (call->event != nullptr && call->event->xexpose.count > 0) {
        return;
    }
    guarded([&] {
        auto *self = static_cast<Canvas *>(canvas);
        self->measure();
        self->redraw();
    });
}

void Canvas::on_resize(Widget, XtPointer canvas, XtPointer) {
    guarded([&] {
        static_cast<Canvas *>(canvas)->measure();
        static_cast<Canvas *>(canvas)->redraw();
    });
}

void Canvas::measure() {
    Dimension now_wide = 0, now_high = 0;
    XtVaGetValues(drawing, XmNwidth, &now_wide, XmNheight, &now_high, nullptr);
    if (wide != now_wide || high != now_high) {
        wide = now_wide;
        high = now_high;
        resized();
        set_bar();
    }
}

/* Scrolling. */

void Canvas::set_bar() {
    const int all = std::max(content_height(), 1);
    const int page = std::clamp(high, 1, all);
    scrolled = std::clamp(scrolled, 0, all - page);
    XtVaSetValues(bar, XmNminimum, 0, XmNmaximum, all, XmNsliderSize, page, XmNvalue, scrolled,
                  XmNincrement, look.em() * 2, XmNpageIncrement, std::max(page - look.em(), 1),
                  nullptr);
}

void Canvas::changed() {
    measure();
    set_bar();
    redraw();
}

void Canvas::scroll_to(int y) {
    scrolled = y;
    set_bar();
    redraw();
}

void Canvas::show(int from, int to) {
    if (to > scrolled + high) {
        scrolled = to - high;
    }
    scrolled = std::min(scrolled, from);
    set_bar();
}

void Canvas::on_scroll(Widget, XtPointer canvas, XtPointer call_data) {
    auto *self = static_cast<Canvas *>(canvas);
    self->scrolled = static_cast<const XmScrollBarCallbackStruct *>(call_data)->value;
    guarded([&] { self->redraw(); });
}

bool Canvas::scroll_key(Key which) {
    const int page = std::max(high - 2 * look.em(), look.em());
    switch (which) {
    case Key::up:
    case Key::down:
        scroll_to(scrolled + (which == Key::up ? -2 : 2) * look.em());
        return true;
    case Key::page_up:
    case Key::page_down:
        scroll_to(scrolled + (which == Key::page_up ? -page : page));
        return true;
    case Key::first:
        scroll_to(0);
        return true;
    case Key::last:
        scroll_to(content_height());
        return true;
    default:
        return false;
    }
}

/* Input. */

void Canvas::focus() {
    XmProcessTraversal(drawing, XmTRAVERSE_CURRENT);
}

void Canvas::take_key(Key which) {
    if (key(which) || scroll_key(which) || (other_key && other_key(which))) {
        return;
    }
    if (which == Key::next || which == Key::previous) {
        XmProcessTraversal(drawing, which == Key::next ? XmTRAVERSE_NEXT_TAB_GROUP
                                                       : XmTRAVERSE_PREV_TAB_GROUP);
    }
}

void Canvas::on_key(Widget widget, XEvent *, String *params, Cardinal *count) {
    Canvas *self = of(widget);
    for (const Key_Name &row : key_names) {
        if (self != nullptr && *count == 1 && std::strcmp(params[0], row.name) == 0) {
            guarded([&] { self->take_key(row.key); });
            return;
        }
    }
}

void Canvas::on_point(Widget widget, XEvent *event, String *params, Cardinal *count) {
    Canvas *self = of(widget);
    if (self == nullptr || *count != 1) {
        return;
    }
    guarded([&] {
        const std::string_view what = params[0];
        if (what == "wheel-up" || what == "wheel-down") {
            const int lines = what == "wheel-up" ? -wheel_lines : wheel_lines;
            self->scroll_to(self->scrolled + lines * self->look.em());
        } else if (what == "motion" || what == "drag") {
            self->point(what == "drag" ? Point::drag : Point::motion, event->xmotion.x,
                        event->xmotion.y, event->xmotion.state);
        } else if (what == "leave") {
            self->point(Point::leave, 0, 0, 0);
        } else if (what == "release") {
            self->point(Point::release, event->xbutton.x, event->xbutton.y, event->xbutton.state);
        } else {
            self->focus();
            self->point(what == "middle" ? Point::middle_press : Point::press, event->xbutton.x,
                        event->xbutton.y, event->xbutton.state);
        }
    });
}

/* The server also tells the window under the pointer that its shell got the keyboard; the toolkit
 * makes the events that say which widget has it. */
void Canvas::on_focus(Widget widget, XEvent *event, String *params, Cardinal *count) {
    Canvas *self = of(widget);
    if (self != nullptr && *count == 1 && event->xfocus.send_event) {
        self->has_focus = std::strcmp(params[0], "in") == 0;
        guarded([&] { self->redraw(); });
    }
}

} // namespace help
