#include "findbar.h"
#include "findtitles.h"
#include "globals.h"
#include "holders.h"
#include "messages.h"
#include "panes.h"
#include "search.h"
#include "toolkit.h"
#include "windowroom.h"
#include <Mrm/MrmPublic.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <Xm/TextF.h>
#include <cstring>

constexpr VGA_LISTW_STATES gvga_listw_states[5] = {
    {VGA_ANY_LINE_STATE, 0},
    {VGA_STATES_SET(VGA_LINE_ACTIVE), VGA_MSG_NODEW_STOPPED + NAP_NODE_ACTIVE},
    {VGA_STATES_SET(VGA_LINE_CHANGING) | VGA_STATES_SET(VGA_LINE_INACTIVE) |
         VGA_STATES_SET(VGA_LINE_FAILED),
     VGA_MSG_FILTER_NOT_ACTIVE},
    {VGA_STATES_SET(VGA_LINE_CHANGING), VGA_MSG_FILTER_CHANGING},
    {VGA_STATES_SET(VGA_LINE_FAILED), VGA_MSG_FILTER_FAILED},
};

namespace {

VGA_VIEWER_ROOT *root_of(const VGA_LIST_WINDOW *window) {
    return window->bar.kind != VGA_LISTW_NO_BAR ? vga_listw_root(window, window->bar.pane)
                                                : nullptr;
}

std::string with_text(NB_USHORT message, const std::string &text) {
    NB_CHAR line[512];
    vga_print_msg(line, sizeof(line), message, "s", text.c_str());
    return line;
}

std::string typed_text(const VGA_LISTW_BAR &bar) {
    return VGA_TEXT(XmTextFieldGetString(bar.field)).get();
}

NB_VOID set_label(Widget label, const NB_CHAR *text) {
    VGA_STRING string(text);
    XtVaSetValues(label, XmNlabelString, string.get(), nullptr);
}

/* The row of the title. */

Widget fetch(const NB_CHAR *name, Widget parent) {
    Widget widget = nullptr;
    MrmType type;
    return MrmFetchWidget(gvga_uil_hierarchy, const_cast<NB_CHAR *>(name), parent, &widget,
                          &type) == MrmSUCCESS
               ? widget
               : nullptr;
}

NB_VOID show_all(Widget button, XtPointer client_data, XtPointer call_data);

/* What ends the filter of a list stands in its title's row as long as there is one. */
NB_VOID show_filter_off(VGA_LIST_WINDOW *window, NB_USHORT at) {
    const VGA_VIEWER_ROOT *root = vga_listw_root(window, at);
    VGA_LISTW_PANE &pane = window->panes[at];
    const bool on = root != nullptr && vga_finder_filter_of(root).on != 0;
    if (on && pane.filter_off == nullptr) {
        pane.filter_off = fetch("filterOff", pane.form);
        if (pane.filter_off == nullptr) {
            return;
        }
        XtVaSetValues(pane.filter_off, XmNbottomWidget, pane.rule, nullptr);
        XtAddCallback(pane.filter_off, XmNactivateCallback, show_all, window);
    }
    pane.filtered = on;
    vga_listw_share_room(window);
    vga_listw_counts_due(window);
}

/* Searching. */

NB_VOID show_result(VGA_LIST_WINDOW *window) {
    const VGA_VIEWER_ROOT *root = root_of(window);
    if (root == nullptr || window->bar.kind != VGA_LISTW_FIND_BAR) {
        return;
    }
    const VGA_FINDER_NUMBERS numbers = vga_finder_numbers(root);
    NB_CHAR text[128] = "";
    if (numbers.current != 0) {
        vga_print_msg(text, sizeof(text), VGA_MSG_FIND_NUMBER, "s s",
                      vga_number(numbers.current).c_str(), vga_number(numbers.total).c_str());
    } else if (numbers.total != 0) {
        vga_print_msg(text, sizeof(text), VGA_MSG_FIND_TOTAL, "s",
                      vga_number(numbers.total).c_str());
    } else if (numbers.pending != 0) {
        vga_print_msg(text, sizeof(text), VGA_MSG_FIND_SEARCHING, "");
    } else if (window->bar.sought[0] != '\0') {
        vga_print_msg(text, sizeof(text), VGA_MSG_FIND_NONE, "");
    }
    set_label(window->bar.result, text);
}

NB_VOID seek_text(VGA_LIST_WINDOW *window, VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *from,
                  NB_USHORT up, NB_USHORT here_too) {
    VGA_FINDER_GOAL goal;
    goal.pattern = vga_plain_pattern(window->bar.sought);
    goal.up = up;
    goal.here_too = here_too;
    vga_viewer_seek(root, goal, from, VGA_VIEWER_SOUGHT_TEXT);
}

/* The list's selection stands where the search has come to, or where it began. */
NB_VOID find_typed(VGA_LIST_WINDOW *window, VGA_VIEWER_ROOT *root) {
    v0_mb_strncpy(window->bar.sought, typed_text(window->bar).c_str(), sizeof(window->bar.sought));
    vga_finder_stop_numbering(root);
    VGA_VIEWER_ITEM *origin = vga_finder_marked(root);
    if (window->bar.sought[0] != '\0') {
        seek_text(window, root, origin, 0, 1);
    } else if (origin != nullptr) {
        vga_viewer_go_to(root, origin);
    }
    show_result(window);
}

NB_VOID text_sought(VGA_LIST_WINDOW *window, VGA_VIEWER_ROOT *root, VGA_FINDER_RESULT result) {
    if (root_of(window) != root || window->bar.kind != VGA_LISTW_FIND_BAR) {
        if (result == VGA_FINDER_NONE) {
            vga_listw_message(window, VGA_MSG_FIND_NONE);
        }
        return;
    }
    if (result == VGA_FINDER_FOUND) {
        vga_viewer_number(root, vga_plain_pattern(window->bar.sought), root->outline_viewer);
    }
    show_result(window);
}

/* Filtering. */

NB_UCHAR chosen_states(const VGA_LISTW_BAR &bar) {
    Widget chosen = nullptr;
    WidgetList entries = nullptr;
    Cardinal count = 0;
    Widget menu = nullptr;
    XtVaGetValues(bar.state, XmNmenuHistory, &chosen, XmNsubMenuId, &menu, nullptr);
    XtVaGetValues(menu, XmNchildren, &entries, XmNnumChildren, &count, nullptr);
    for (Cardinal at = 0; at < count && at < std::size(gvga_listw_states); at++) {
        if (entries[at] == chosen) {
            return gvga_listw_states[at].states;
        }
    }
    return VGA_ANY_LINE_STATE;
}

NB_VOID filter_typed(VGA_LIST_WINDOW *window, VGA_VIEWER_ROOT *root) {
    const VGA_PATTERN pattern = vga_parse_pattern(typed_text(window->bar));
    const NB_UCHAR states = chosen_states(window->bar);
    if (pattern.kind == VGA_PATTERN_ALL && states == VGA_ANY_LINE_STATE) {
        vga_finder_end_filter(root);
    } else {
        vga_viewer_filter(root, pattern, states);
    }
    vga_listw_message_text(window, vga_listw_explain(pattern).c_str());
}

/* The field. */

NB_VOID typed(Widget, XtPointer client_data, XtPointer) {
    auto *window = static_cast<VGA_LIST_WINDOW *>(client_data);
    VGA_VIEWER_ROOT *root = root_of(window);
    if (root == nullptr) {
        return;
    }
    if (window->bar.kind == VGA_LISTW_FIND_BAR) {
        find_typed(window, root);
    } else {
        filter_typed(window, root);
    }
}

NB_VOID show_all_of(VGA_LIST_WINDOW *window, NB_USHORT pane) {
    if (window->bar.kind == VGA_LISTW_FILTER_BAR && window->bar.pane == pane) {
        vga_listw_close_bar(window, 1);
    }
    if (VGA_VIEWER_ROOT *root = vga_listw_root(window, pane)) {
        vga_finder_end_filter(root);
        show_filter_off(window, pane);
    }
}

/* In the field of a pane's filter, or beside its title. */
NB_VOID show_all(Widget button, XtPointer client_data, XtPointer) {
    auto *window = static_cast<VGA_LIST_WINDOW *>(client_data);
    NB_USHORT pane = window->bar.pane;
    for (NB_USHORT at = 0; at < window->list_count; at++) {
        pane = window->panes[at].filter_off == button ? at : pane;
    }
    show_all_of(window, pane);
}

/* A dialog has no menu bar, whose keys these are elsewhere. */
constexpr struct {
    KeySym key;
    unsigned modifiers;
    NB_VOID (*action)(VGA_LIST_WINDOW *window);
} menu_keys[] = {
    {XK_f, ControlMask, vga_listw_find},
    {XK_F3, 0, vga_listw_find_next},
    {XK_F3, ShiftMask, vga_listw_find_previous},
    {XK_l, ControlMask, vga_listw_filter},
    {XK_L, ControlMask | ShiftMask, vga_listw_filter_off},
    {XK_F8, 0, vga_listw_failed_next},
    {XK_F8, ShiftMask, vga_listw_failed_previous},
};

KeySym key_of(XEvent *event) {
    NB_CHAR text[16];
    KeySym key = NoSymbol;
    XLookupString(&event->xkey, text, sizeof(text), &key, nullptr);
    return key;
}

bool press_menu_key(VGA_LIST_WINDOW *window, XEvent *event) {
    if (XtNameToWidget(window->common.widget,
                       (std::string("*") + window->plan->prefix + "MenuBar").c_str()) != nullptr) {
        return false;
    }
    const KeySym key = key_of(event);
    const unsigned modifiers = event->xkey.state & (ControlMask | ShiftMask | Mod1Mask);
    for (const auto &row : menu_keys) {
        if (row.key == key && row.modifiers == modifiers &&
            window->current_pane != VGA_LISTW_NO_LIST) {
            row.action(window);
            return true;
        }
    }
    return false;
}

NB_VOID list_key(Widget, XtPointer client_data, XEvent *event, Boolean *go_on) {
    auto *window = static_cast<VGA_LIST_WINDOW *>(client_data);
    if (event->type == KeyPress && press_menu_key(window, event)) {
        *go_on = False;
    }
}

NB_VOID field_key(Widget, XtPointer client_data, XEvent *event, Boolean *go_on) {
    auto *window = static_cast<VGA_LIST_WINDOW *>(client_data);
    if (event->type != KeyPress) {
        return;
    }
    const KeySym key = key_of(event);
    const bool find = window->bar.kind == VGA_LISTW_FIND_BAR;
    *go_on = False;
    if (key == XK_Escape || key == XK_Return || key == XK_KP_Enter) {
        vga_listw_close_bar(window, 1);
    } else if (find && key == XK_Down) {
        vga_listw_find_next(window);
    } else if (find && key == XK_Up) {
        vga_listw_find_previous(window);
    } else if (!press_menu_key(window, event)) {
        *go_on = True;
    }
}

/* Opens the field over the current list; what it began with is still to be put into it.  False when
 * it is open there already. */
bool open_bar(VGA_LIST_WINDOW *window, VGA_LISTW_BAR_KIND kind) {
    VGA_LISTW_BAR &bar = window->bar;
    const NB_USHORT at = window->current_pane;
    if (bar.kind == kind && bar.pane == at) {
        XmProcessTraversal(bar.field, XmTRAVERSE_CURRENT);
        return false;
    }
    vga_listw_close_bar(window, 0);
    VGA_LISTW_PANE &pane = window->panes[at];
    const bool find = kind == VGA_LISTW_FIND_BAR;
    bar.form = fetch(find ? "findBar" : "filterBar", pane.form);
    if (bar.form == nullptr) {
        return false;
    }
    bar.kind = kind;
    bar.pane = at;
    bar.field = XtNameToWidget(bar.form, find ? "*findBarField" : "*filterBarField");
    bar.result = find ? XtNameToWidget(bar.form, "*findBarResult") : nullptr;
    bar.state = find ? nullptr : XtNameToWidget(bar.form, "*filterBarState");
    Dimension height = 0;
    XtVaGetValues(bar.field, XmNheight, &height, nullptr);
    pane.bar = bar.form;
    pane.bar_height = height + 2U;
    XtVaSetValues(bar.form, XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, pane.rule,
                  nullptr);
    vga_listw_share_room(window);
    Position row = 0;
    XtVaGetValues(pane.rule, XmNy, &row, nullptr);
    XtVaSetValues(bar.field, XmNtopOffset, row > height ? (row - height) / 2 : 0, nullptr);
    XtInsertEventHandler(bar.field, KeyPressMask, False, field_key, window, XtListHead);
    return true;
}

/* What the menu shows as chosen. */
NB_VOID choose_states(const VGA_LISTW_BAR &bar, NB_UCHAR states) {
    Widget menu = nullptr;
    WidgetList entries = nullptr;
    Cardinal count = 0;
    XtVaGetValues(bar.state, XmNsubMenuId, &menu, nullptr);
    XtVaGetValues(menu, XmNchildren, &entries, XmNnumChildren, &count, nullptr);
    for (Cardinal at = 0; at < count && at < std::size(gvga_listw_states); at++) {
        if (gvga_listw_states[at].states == states) {
            XtVaSetValues(bar.state, XmNmenuHistory, entries[at], nullptr);
        }
    }
}

/* The keyboard goes on in the field, where Return and Escape close it. */
NB_VOID state_chosen(Widget widget, XtPointer client_data, XtPointer call_data) {
    typed(widget, client_data, call_data);
    XmProcessTraversal(static_cast<VGA_LIST_WINDOW *>(client_data)->bar.field, XmTRAVERSE_CURRENT);
}

NB_VOID follow_states(VGA_LIST_WINDOW *window) {
    Widget menu = nullptr;
    WidgetList entries = nullptr;
    Cardinal count = 0;
    XtVaGetValues(window->bar.state, XmNsubMenuId, &menu, nullptr);
    XtVaGetValues(menu, XmNchildren, &entries, XmNnumChildren, &count, nullptr);
    for (Cardinal at = 0; at < count; at++) {
        XtAddCallback(entries[at], XmNactivateCallback, state_chosen, window);
    }
}

/* Failed lines. */

NB_VOID seek_failed(const VGA_LIST_WINDOW *window, NB_USHORT up) {
    if (VGA_VIEWER_ROOT *root = vga_listw_current_root(window)) {
        VGA_FINDER_GOAL goal;
        goal.states = VGA_STATES_SET(VGA_LINE_FAILED);
        goal.up = up;
        vga_viewer_seek(root, goal, root->outline_viewer, VGA_VIEWER_SOUGHT_STATE);
    }
}

NB_VOID find_again(VGA_LIST_WINDOW *window, NB_USHORT up) {
    VGA_VIEWER_ROOT *root = vga_listw_current_root(window);
    if (window->bar.sought[0] == '\0') {
        vga_listw_find(window);
    } else if (root != nullptr) {
        seek_text(window, root, root->outline_viewer, up, 0);
    }
}

/* What the finder tells. */

NB_VOID sought(VGA_VIEWER_ROOT *root, VGA_VIEWER_SOUGHT what, VGA_FINDER_RESULT result) {
    auto *window = static_cast<VGA_LIST_WINDOW *>(root->window);
    if (window == nullptr) {
        return;
    }
    const bool none = result == VGA_FINDER_NONE;
    if (what == VGA_VIEWER_SOUGHT_TEXT) {
        text_sought(window, root, result);
    } else if (what == VGA_VIEWER_SOUGHT_STATE) {
        vga_listw_message(window, none ? NB_USHORT{VGA_MSG_FIND_NO_FAILED} : NB_USHORT{0});
    } else {
        vga_listw_message_text(
            window,
            with_text(none ? VGA_MSG_FIND_TYPED_NONE : VGA_MSG_FIND_TYPED, root->view->typed)
                .c_str());
    }
    if (none && what != VGA_VIEWER_SOUGHT_TEXT) {
        XBell(XtDisplay(window->common.widget), 0);
    }
}

/* The numbers of a search follow at once, those of a title a moment later. */
NB_VOID news(VGA_VIEWER_ROOT *root) {
    auto *window = static_cast<VGA_LIST_WINDOW *>(root->window);
    if (window != nullptr && window->lists_shown != 0) {
        vga_listw_counts_due(window);
        if (root_of(window) == root) {
            show_result(window);
        }
    }
}

NB_VOID resized(Widget, XtPointer client_data, XEvent *event, Boolean *) {
    if (event->type == ConfigureNotify) {
        vga_listw_counts_due(static_cast<VGA_LIST_WINDOW *>(client_data));
    }
}

} // namespace

std::string vga_listw_explain(const VGA_PATTERN &pattern) {
    static constexpr NB_USHORT messages[VGA_PATTERN_KINDS] = {
        VGA_MSG_FILTER_NOTHING, VGA_MSG_FILTER_CONTAINS, VGA_MSG_FILTER_BEGINS,
        VGA_MSG_FILTER_ENDS,    VGA_MSG_FILTER_LIKE,     VGA_MSG_FILTER_OPEN_SET,
        VGA_MSG_FILTER_BAD_SET, VGA_MSG_FILTER_BAD_SET,
    };
    std::string_view shown = pattern.typed;
    shown.remove_prefix(pattern.kind == VGA_PATTERN_ENDS);
    shown.remove_suffix(pattern.kind == VGA_PATTERN_BEGINS);
    return with_text(messages[pattern.kind], std::string(shown));
}

NB_VOID vga_listw_prepare_finding(VGA_LIST_WINDOW *window) {
    gvga_viewer_finding = {sought, news};
    window->bar = {};
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        XtAddEventHandler(window->panes[pane].counts, StructureNotifyMask, False, resized, window);
        XtInsertEventHandler(window->panes[pane].draw_area, KeyPressMask, False, list_key, window,
                             XtListHead);
    }
}

NB_VOID vga_listw_close_bar(VGA_LIST_WINDOW *window, NB_USHORT to_list) {
    VGA_LISTW_BAR &bar = window->bar;
    if (bar.kind == VGA_LISTW_NO_BAR) {
        return;
    }
    VGA_VIEWER_ROOT *root = root_of(window);
    const NB_USHORT pane = bar.pane;
    bar.kind = VGA_LISTW_NO_BAR;
    if (to_list != 0) {
        XmProcessTraversal(window->panes[pane].draw_area, XmTRAVERSE_CURRENT);
    }
    Widget form = bar.form;
    bar.form = bar.field = bar.result = bar.state = nullptr;
    window->panes[pane].bar = nullptr;
    XtUnmanageChild(form);
    XtDestroyWidget(form);
    vga_listw_share_room(window);
    if (root != nullptr) {
        vga_finder_stop_numbering(root);
        vga_finder_rest(root);
        show_filter_off(window, pane);
    }
    vga_listw_message(window, 0);
}

NB_VOID vga_listw_end_filters(VGA_LIST_WINDOW *window) {
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        show_all_of(window, pane);
    }
}

NB_VOID vga_listw_find(VGA_LIST_WINDOW *window) {
    VGA_VIEWER_ROOT *root = vga_listw_current_root(window);
    if (root != nullptr && open_bar(window, VGA_LISTW_FIND_BAR)) {
        vga_finder_mark(root, root->outline_viewer);
        XmTextFieldSetString(window->bar.field, window->bar.sought);
        XmTextFieldSetSelection(window->bar.field, 0, XmTextFieldGetLastPosition(window->bar.field),
                                CurrentTime);
        XtAddCallback(window->bar.field, XmNvalueChangedCallback, typed, window);
        XmProcessTraversal(window->bar.field, XmTRAVERSE_CURRENT);
    }
}

NB_VOID vga_listw_find_next(VGA_LIST_WINDOW *window) {
    find_again(window, 0);
}

NB_VOID vga_listw_find_previous(VGA_LIST_WINDOW *window) {
    find_again(window, 1);
}

NB_VOID vga_listw_filter(VGA_LIST_WINDOW *window) {
    VGA_VIEWER_ROOT *root = vga_listw_current_root(window);
    if (root != nullptr && open_bar(window, VGA_LISTW_FILTER_BAR)) {
        const VGA_FINDER_FILTER &filter = vga_finder_filter_of(root);
        choose_states(window->bar, filter.states);
        XmTextFieldSetString(window->bar.field,
                             const_cast<NB_CHAR *>(filter.pattern.typed.c_str()));
        XtAddCallback(window->bar.field, XmNvalueChangedCallback, typed, window);
        follow_states(window);
        XtAddCallback(XtNameToWidget(window->bar.form, "*filterBarAll"), XmNactivateCallback,
                      show_all, window);
        XmProcessTraversal(window->bar.field, XmTRAVERSE_CURRENT);
        vga_listw_message_text(window, vga_listw_explain(filter.pattern).c_str());
    }
}

NB_VOID vga_listw_filter_off(VGA_LIST_WINDOW *window) {
    show_all_of(window, window->current_pane);
}

NB_VOID vga_listw_failed_next(VGA_LIST_WINDOW *window) {
    seek_failed(window, 0);
}

NB_VOID vga_listw_failed_previous(VGA_LIST_WINDOW *window) {
    seek_failed(window, 1);
}
