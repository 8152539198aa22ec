/* What the tests of the list control share: a list in a window of its own, with types, records and
 * callbacks that know no more than the test. */
#ifndef VIEWER_FIXTURE_H
#define VIEWER_FIXTURE_H

#include "gui_support.h"

#include "graphics.h"
#include "headings.h"
#include "listfont.h"
#include "messages.h"
#include "verbqueue.h"
#include "vgaviewr.h"
#include "viewerparts.h"
#include <Xm/DrawingA.h>
#include <Xm/DrawnB.h>
#include <Xm/Screen.h>
#include <Xm/ScrollBar.h>
#include <Xm/ScrolledW.h>
#include <cstring>
#include <memory>

namespace {

enum TYPE : NB_USHORT { GROUP, MEMBER, TITLE, TYPES };

struct RECORD {
    VGA_VIEWER_ITEM item;
    std::string text;
    int drawn = 0; // how often
};

VGA_VIEWER_ROOT root;

VGA_VIEWER_VIEW *view() {
    return vga_viewer_view(&root);
}

/* What the types' functions saw. */
struct EVENTS {
    std::vector<const RECORD *> opened, clicked;
    std::vector<VGA_VIEWER_ACTION> actions;
    int buttons = 0, disarmed = 0, drawn = 0;
};
EVENTS events;

RECORD *record(NB_VOID *data) {
    return static_cast<RECORD *>(data);
}

NB_USHORT create_text(NB_VOID *data, NB_CHAR *buffer) {
    ++events.drawn;
    ++record(data)->drawn;
    const std::string &text = record(data)->text;
    memcpy(buffer, text.data(), text.size());
    return static_cast<NB_USHORT>(text.size());
}
NB_USHORT group_icon(NB_VOID *) {
    return 2;
}
NB_USHORT member_icon(NB_VOID *) {
    return 6;
}
NB_USHORT title_icon(NB_VOID *) {
    return VGA_ICON_BLANK;
}
NB_VOID arm(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs) {
    vga_viewer_arm_select(&root, &record(data)->item, cbs);
}
NB_VOID disarm(Widget widget) {
    events.disarmed += widget == view()->draw_widget;
}
NB_VOID activate(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs) {
    (vga_viewer_is_open(cbs) != 0 ? events.opened : events.clicked).push_back(record(data));
}
NB_VOID drag(NB_VOID *data, NB_USHORT select, NB_USHORT redraw) {
    vga_viewer_drag_cb(&record(data)->item, &root, select, redraw);
}
NB_VOID set_buttons(NB_VOID *window) {
    events.buttons += window == &events;
}

const VGA_VIEWER_DESC types[TYPES] = {
    {create_text, group_icon, 1, arm, disarm, activate, drag, nullptr, set_buttons, 1, 0, 1},
    {create_text, member_icon, 1, arm, disarm, activate, drag, nullptr, set_buttons, 0, 1, 0},
    {create_text, title_icon, 1, nullptr, nullptr, nullptr, nullptr, vga_viewer_add_underline,
     nullptr, 0, 0, 0},
};

// As the program's windows have them: the keys of the list are left to it.
constexpr char translations[] = "<Enter>: Enter()\n<Leave>: Leave()\n"
                                "<Btn1Down>: Arm()\n<Btn1Down>,<Btn1Up>: Activate() Disarm()\n"
                                "<Btn1Down>(2+): MultiArm()\n<Btn1Up>(2+): MultiActivate()\n"
                                "<Btn1Up>: Activate() Disarm()";

class Viewer : public testing::Test {
protected:
    static constexpr int width = 480, height = 210;

    static void SetUpTestSuite() {
        gui::open();
        XrmPutStringResource(&gvga_resource_database, "Quiladmin*size", "small");
        XrmPutStringResource(&gvga_resource_database, "Quiladmin*viewerFont", "DejaVu Sans Mono");
        gvga_messages[VGA_MSG_SMALL_FONT] = "-misc-fixed-medium-r-semicondensed--13-*-*-*-*-*-*-*";
    }

    void SetUp() override {
        events = EVENTS();
        XtSetMultiClickTime(gvga_display, 0);
        vga_viewer_set_types(types, TYPES);
        gvga_viewer_window_action = [](NB_VOID *window, VGA_VIEWER_ACTION action, Widget widget) {
            EXPECT_EQ(window, &events);
            EXPECT_EQ(widget, view()->draw_widget);
            events.actions.push_back(action);
        };
        ASSERT_EQ(vga_viewer_init_root(&root), 1);
        root.window = &events;
        make_window();
        ASSERT_EQ(vga_init_graphics(draw_widget, draw_widget), 1);
        gui::show(shell);
    }

    void TearDown() override {
        vga_viewer_destroy_root(&root);
        XtDestroyWidget(shell);
        gui::settle();
        vga_free_graphics();
    }

    void make_window() {
        shell = gui::make_shell("viewer", 40, 40, width, height);
        Widget window = XtVaCreateManagedWidget(
            "window", xmScrolledWindowWidgetClass, shell, XmNscrollingPolicy, XmAPPLICATION_DEFINED,
            XmNvisualPolicy, XmVARIABLE, XmNspacing, 0, XmNshadowThickness, 0,
            XmNscrolledWindowMarginWidth, 0, nullptr);
        draw_widget = XtVaCreateManagedWidget(
            "area", xmDrawnButtonWidgetClass, window, XmNpushButtonEnabled, False, XmNmultiClick,
            XmMULTICLICK_KEEP, XmNshadowThickness, 0, XmNhighlightThickness, 0, XmNtranslations,
            XtParseTranslationTable(translations), XmNrecomputeSize, False, XmNbackground,
            WhitePixelOfScreen(gvga_screen), XmNforeground, foreground, nullptr);
        hscroll = XtVaCreateWidget("hscroll", xmScrollBarWidgetClass, window, XmNorientation,
                                   XmHORIZONTAL, XmNtraversalOn, False, nullptr);
        vscroll = XtVaCreateWidget("vscroll", xmScrollBarWidgetClass, window, XmNorientation,
                                   XmVERTICAL, XmNtraversalOn, False, nullptr);
    }

    RECORD *add(TYPE type, const std::string &text, RECORD *parent = nullptr) {
        records.push_back(std::make_unique<RECORD>());
        RECORD *made = records.back().get();
        made->text = text;
        vga_create_viewer(&root, &made->item, type, made,
                          parent != nullptr ? &parent->item : nullptr, VGA_VIEWER_LAST);
        return made;
    }

    void fill(int groups) {
        for (int i = 0; i < groups; ++i) {
            add(GROUP, "GROUP" + std::to_string(i) + "%t12%Active%t24%First of its kind");
        }
    }

    void display() {
        vga_viewer_display_root(&root, draw_widget, hscroll, vscroll);
        drawn();
    }

    // Waits until nothing is left to be drawn.
    static void drawn() {
        gui::settle();
        ASSERT_TRUE(gui::wait_for([] {
            return view()->update_timer == 0 && root.dirty_count == 0 && view()->bars_due == 0;
        }));
        XSync(gvga_display, False);
    }

    static int line() { return static_cast<int>(gvga_viewer_item_height); }
    static int middle_of(int row) { return row * line() + line() / 2; }

    void click(int row, const std::vector<const char *> &modifiers = {}, int x = 200) {
        gui::click(draw_widget, x, middle_of(row), modifiers);
        drawn();
    }
    static void key(const char *name, const std::vector<const char *> &modifiers = {}) {
        gui::key(name, modifiers);
        drawn();
    }

    gui::IMAGE row_image(int row) {
        return gui::IMAGE(draw_widget, 0, row * line(), static_cast<int>(view()->window_width),
                          line());
    }
    // The ground at the right end of a line, where no text stands.
    bool inverted(int row) {
        return gui::IMAGE(draw_widget, static_cast<int>(view()->window_width) - 4, middle_of(row),
                          1, 1)
                   .pixel(0, 0) == BlackPixelOfScreen(gvga_screen);
    }
    std::string selected() {
        std::string rows;
        for (size_t i = 0; i < records.size(); ++i) {
            rows += records[i]->item.selected != 0 ? std::to_string(i) + " " : "";
        }
        return rows;
    }

    Pixel foreground = BlackPixelOfScreen(gvga_screen); // before the window is made
    Widget shell = nullptr, draw_widget = nullptr, hscroll = nullptr, vscroll = nullptr;
    std::vector<std::unique_ptr<RECORD>> records;
};

} // namespace

#endif
