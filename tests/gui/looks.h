/* The looks of the program for tests: LOOKS_CASE in the environment chooses one (CMakeLists.txt);
 * without it, it is the ordinary one. */
#ifndef LOOKS_H
#define LOOKS_H

#include "gui_windows.h"

#include <X11/IntrinsicP.h>
#include <X11/RectObjP.h>
#include <X11/Xatom.h>
#include <Xm/Label.h>
#include <Xm/LabelG.h>
#include <Xm/ScrolledW.h>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace looks {

struct LOOK {
    const char *name, *resources, *language;
    double text_contrast;
    int unit;         // pixels of a font unit
    double slack = 0; // of contrasts, where only the nearest colour can be had
};

inline const LOOK cases[] = {
    {"light", "", "", 4.5, 8},
    {"dark", "Quiladmin*customization: -dark\n", "", 4.5, 8},
    {"contrast", "Quiladmin*customization: -contrast\n", "", 7, 8},
    {"dots", "Xft.dpi: 192\nQuiladmin*size: big\n", "", 4.5, 16},
    {"pseudo", "", "xx_XX", 4.5, 8},
    {"planes", "", "", 4.5, 8},    // eight
    {"full", "", "", 4.5, 8, 0.1}, // eight, and others have taken all colours that are left
};

inline const LOOK &look() {
    const char *wanted = getenv("LOOKS_CASE");
    for (const LOOK &row : cases) {
        if (wanted != nullptr && strcmp(row.name, wanted) == 0) {
            return row;
        }
    }
    return cases[0];
}

/* What the operator's session would say.  It stays with the server. */
inline void set_session_resources(const char *text) {
    Display *display = XOpenDisplay(nullptr);
    ASSERT_NE(display, nullptr);
    XChangeProperty(display, DefaultRootWindow(display), XA_RESOURCE_MANAGER, XA_STRING, 8,
                    PropModeReplace, reinterpret_cast<const unsigned char *>(text),
                    static_cast<int>(strlen(text)));
    XCloseDisplay(display);
}

/* The build tree as a prefix; its own path may be too long for one. */
inline void set_language(const std::string &language) {
    if (!language.empty()) {
        setenv("LANG", language.c_str(), 1);
        setenv("LC_ALL", "C.UTF-8", 1);
        setenv("UIDPATH",
               (std::string(nba_prefix()) + "/lib/X11/" + language +
                "/uid/Quiladmin/%U:" + nba_prefix() + "/lib/X11/uid/Quiladmin/%U")
                   .c_str(),
               1);
    }
}

/* Every widget and gadget below one, menus and dialogs over it included. */
inline void collect(Widget widget, std::vector<Widget> &all) {
    all.push_back(widget);
    if (XtIsWidget(widget)) {
        for (Cardinal popup = 0; popup < widget->core.num_popups; popup++) {
            collect(widget->core.popup_list[popup], all);
        }
    }
    if (XtIsComposite(widget)) {
        WidgetList children = nullptr;
        Cardinal count = 0;
        XtVaGetValues(widget, XmNchildren, &children, XmNnumChildren, &count, nullptr);
        for (Cardinal child = 0; child < count; child++) {
            collect(children[child], all);
        }
    }
}

inline bool is_label(Widget widget) {
    return XmIsLabel(widget) || XmIsLabelGadget(widget);
}

/* Wherever a label stands, it has the room that it asks for, and so has what it stands in, up to
 * what scrolls. */
inline void expect_whole(Widget widget) {
    SCOPED_TRACE(gui::label_text(widget) + " in " + XtName(widget));
    XtWidgetGeometry wanted = {};
    XtQueryGeometry(widget, nullptr, &wanted);
    EXPECT_GE(widget->core.width, wanted.width);
    EXPECT_GE(widget->core.height, wanted.height);
    for (Widget part = widget; !XtIsShell(XtParent(part)); part = XtParent(part)) {
        const auto *room = &XtParent(part)->core;
        const bool scrolls = XmIsScrolledWindow(XtParent(XtParent(part)));
        EXPECT_GE(part->core.x, 0);
        EXPECT_LE(part->core.x + part->core.width, room->width) << XtName(part);
        if (!scrolls) {
            EXPECT_GE(part->core.y, 0);
            EXPECT_LE(part->core.y + part->core.height, room->height) << XtName(part);
        }
    }
}

/* Takes all colours that nobody has yet. */
inline void take_colours() {
    const Visual *visual = DefaultVisualOfScreen(gvga_screen);
    ASSERT_EQ(visual->c_class, PseudoColor);
    std::vector<unsigned long> cells(static_cast<size_t>(visual->map_entries));
    for (unsigned count = static_cast<unsigned>(cells.size()); count > 0; count /= 2) {
        while (XAllocColorCells(gvga_display, DefaultColormapOfScreen(gvga_screen), False, nullptr,
                                0, cells.data(), count) != 0) {
        }
    }
}

/* What start-up does, in the look. */
inline void open_windows() {
    if (gvga_uil_hierarchy != nullptr) {
        return; // of another suite
    }
    static gui::PREFIX prefix;
    set_language(look().language);
    set_session_resources(look().resources);
    nba_pd_set_log("/dev/null", NB_PD_ALL);
    ASSERT_EQ(vga_load_messages(), 1);
    gui::open_windows();
    if (look().slack > 0) {
        take_colours();
    }
}

} // namespace looks

#endif
