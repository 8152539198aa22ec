#include "search.h"
#include "toolkit.h"
#include "viewerparts.h"
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <cctype>
#include <cstring>

VGA_VIEWER_FINDING gvga_viewer_finding;

namespace {

constexpr NB_ULONG first_slice = 20000; // microseconds
constexpr NB_ULONG slice = 10000;
constexpr unsigned long gap = 2; // milliseconds between two, in which events are handled
constexpr Time pause_of_typing = 1000;
constexpr unsigned long texts_kept = 5000; // for the next key

/* A search is over, or goes on with the timer. */
NB_VOID report(VGA_VIEWER_VIEW *view) {
    VGA_VIEWER_ITEM *line = nullptr;
    const VGA_FINDER_RESULT result = vga_finder_result(view->root, &line, 1);
    if (result != VGA_FINDER_FOUND && result != VGA_FINDER_NONE) {
        return;
    }
    VGA_VIEWER_ROOT *const root = view->root;
    const auto what = static_cast<VGA_VIEWER_SOUGHT>(view->sought);
    if (line != nullptr) {
        vga_viewer_go_to(root, line);
    }
    if (gvga_viewer_finding.sought != nullptr) {
        gvga_viewer_finding.sought(root, what, result);
    } else if (line == nullptr && view->draw_widget != nullptr) {
        XBell(XtDisplay(view->draw_widget), 0);
    }
}

NB_VOID schedule(VGA_VIEWER_VIEW *view, unsigned long milliseconds);

NB_VOID go_on(XtPointer client_data, XtIntervalId *) {
    VGA_VIEWER_VIEW *view = vga_viewer_view_of_timer(client_data);
    if (view == nullptr) {
        return;
    }
    view->find_due = 0;
    if (vga_finder_work(view->root, slice) != 0) {
        schedule(view, gap);
    }
    report(view);
}

NB_VOID add_timer(const VGA_VIEWER_VIEW *view, unsigned long milliseconds,
                  XtTimerCallbackProc proc) {
    const auto handle = reinterpret_cast<XtPointer>(static_cast<uintptr_t>(view->root->handle));
    XtAppAddTimeOut(gvga_appcontext, milliseconds, proc, handle);
}

NB_VOID schedule(VGA_VIEWER_VIEW *view, unsigned long milliseconds) {
    if (view->find_due == 0) {
        view->find_due = 1;
        add_timer(view, milliseconds, go_on);
    }
}

NB_VOID work_due(VGA_VIEWER_ROOT *root) {
    if (root->view != nullptr) {
        schedule(root->view, 0);
    }
}

NB_VOID news(VGA_VIEWER_ROOT *root) {
    if (gvga_viewer_finding.news != nullptr) {
        gvga_viewer_finding.news(root);
    }
}

constexpr VGA_FINDER_SOURCE source = {
    .text = vga_viewer_whole_text,
    .state = vga_viewer_line_state,
    .work_due = work_due,
    .news = news,
};

NB_VOID begin(VGA_VIEWER_ROOT *root) {
    vga_finder_work(root, first_slice);
    report(root->view);
}

/* What names are made of, but for the characters that are keys of the list. */
bool is_of_name(NB_CHAR letter) {
    return isalnum(static_cast<NB_UCHAR>(letter)) != 0 || strchr(".$#@_", letter) != nullptr;
}

NB_VOID rest(XtPointer client_data, XtIntervalId *) {
    if (const VGA_VIEWER_VIEW *view = vga_viewer_view_of_timer(client_data)) {
        vga_finder_rest(view->root);
    }
}

/* Goes to what begins with the typed text: the next one, unless more was typed of the same. */
NB_VOID seek_typed(VGA_VIEWER_VIEW *view, NB_USHORT here_too) {
    VGA_FINDER_GOAL goal;
    goal.pattern = vga_parse_pattern(view->typed);
    if (goal.pattern.kind == VGA_PATTERN_ALL) {
        return;
    }
    goal.pattern.kind = VGA_PATTERN_BEGINS;
    goal.here_too = here_too;
    goal.open_only = 1;
    vga_viewer_seek(view->root, goal, view->root->outline_viewer, VGA_VIEWER_SOUGHT_TYPED);
}

} // namespace

NB_USHORT vga_viewer_has_finder(VGA_VIEWER_ROOT *root) {
    return vga_viewer_view(root) != nullptr && vga_make_finder(root, source) != nullptr;
}

NB_VOID vga_viewer_seek(VGA_VIEWER_ROOT *root, const VGA_FINDER_GOAL &goal, VGA_VIEWER_ITEM *from,
                        VGA_VIEWER_SOUGHT what) {
    if (vga_viewer_has_finder(root) != 0) {
        root->view->sought = what;
        vga_finder_seek(root, goal, from);
        begin(root);
    }
}

NB_VOID vga_viewer_number(VGA_VIEWER_ROOT *root, const VGA_PATTERN &pattern,
                          VGA_VIEWER_ITEM *current) {
    if (vga_viewer_has_finder(root) != 0) {
        vga_finder_number(root, pattern, current);
        begin(root);
    }
}

NB_VOID vga_viewer_filter(VGA_VIEWER_ROOT *root, const VGA_PATTERN &pattern, NB_UCHAR states) {
    if (vga_viewer_has_finder(root) != 0) {
        vga_finder_filter(root, pattern, states);
        begin(root);
    }
}

NB_VOID vga_viewer_go_to(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item) {
    VGA_VIEWER_VIEW *view = vga_viewer_view(root);
    if (view == nullptr) {
        return;
    }
    for (VGA_VIEWER_ITEM *above = item->parent; above != nullptr; above = above->parent) {
        vga_expand_viewer(root, above, 1);
    }
    const NB_UCHAR type = item->type;
    vga_viewer_set_view(root, item);
    vga_viewer_select(item, root, 0, 0, 1, 1);
    vga_viewer_call_disarm(view, type);
}

NB_USHORT vga_viewer_type_ahead(VGA_VIEWER_VIEW *view, XKeyEvent *event) {
    constexpr unsigned others = ControlMask | Mod1Mask | Mod4Mask;
    NB_CHAR text[16] = {};
    KeySym key = NoSymbol;
    const NB_INT length = XLookupString(event, text, sizeof(text) - 1, &key, nullptr);
    const bool anew = event->time - view->typed_at > pause_of_typing || view->typed[0] == '\0';
    const size_t used = anew ? 0 : strlen(view->typed);
    if ((event->state & others) != 0) {
        return 0;
    }
    if (key == XK_BackSpace && used != 0) {
        view->typed[used - 1] = '\0';
    } else if (length == 1 && is_of_name(text[0]) && used + 2 <= sizeof(view->typed)) {
        view->typed[used] = text[0];
        view->typed[used + 1] = '\0';
    } else {
        return 0;
    }
    view->typed_at = event->time;
    seek_typed(view, used != 0);
    add_timer(view, texts_kept, rest);
    return 1;
}
