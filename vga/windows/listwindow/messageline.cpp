#include "messageline.h"
#include "attention.h"
#include "globals.h"
#include "hints.h"
#include "history.h"
#include "linerules.h"
#include "longwork.h"
#include "messages.h"
#include "outcomes.h"
#include "toolkit.h"
#include "vgadgutl.h"
#include "vgadsutl.h"
#include <X11/keysym.h>
#include <Xm/TextF.h>
#include <unordered_map>
#include <utility>

namespace {

constexpr unsigned long moment = 10000; /* milliseconds */

/* What a line is about. */
struct LINE {
    std::string for_the_moment, busy;
    XtIntervalId timer = 0;
    std::string shown;
    /* The selection that was looked at last, and the last outcome before it. */
    const VGA_VIEWER_ROOT *root = nullptr;
    const NB_VOID *record = nullptr;
    NB_LONG count = 0;
    NB_ULONG outcome = 0;
};
std::unordered_map<const VGA_LIST_WINDOW *, LINE> lines;

std::string print(NB_USHORT message, const std::string &first, const std::string &second = "") {
    NB_CHAR text[512];
    vga_print_msg(text, sizeof(text), message, "s s", first.c_str(), second.c_str());
    return text;
}

/* What the line says of itself. */

/* Why there is nothing to see; what can be worked with needs no such words. */
std::string trouble(const VGA_LIST_WINDOW *window) {
    if (window->plan->lists[0].of_domain != nullptr) {
        return gvga_system->domain_target == 0 ? vga_message(VGA_MSG_DOMAIN_LOST) : "";
    }
    const VGA_NODE *node = vga_listw_node(window);
    if (node == nullptr || node->connection == VGA_CONNECTED) {
        return {};
    }
    return node->lost_at != 0 ? vga_message(VGA_MSG_NODEW_NODE_LOST)
           : node->connection == VGA_NOT_CONNECTED
               ? print(VGA_MSG_NODEW_NOT_CONNECTED, vga_node_name(node))
               : "";
}

bool concerns(const VGA_LIST_WINDOW *window, const VGA_OUTCOME &outcome) {
    const VGA_NODE *node = vga_listw_node(window);
    return node == nullptr || outcome.node.empty() || outcome.node == vga_node_name(node);
}

const VGA_OUTCOME *last_outcome(const VGA_LIST_WINDOW *window) {
    const auto &all = vga_outcomes();
    for (auto outcome = all.rbegin(); outcome != all.rend(); outcome++) {
        if (concerns(window, *outcome)) {
            return &*outcome;
        }
    }
    return nullptr;
}

std::string at_rest(const VGA_LIST_WINDOW *window, const LINE &line) {
    const std::string no_lines = trouble(window);
    if (!no_lines.empty()) {
        return no_lines;
    }
    const VGA_OUTCOME *last = last_outcome(window);
    const std::string selected = vga_listw_selection_in_words(window);
    const bool news = last != nullptr && (selected.empty() || last->number > line.outcome);
    return news ? vga_outcome_line(*last) : selected;
}

/* A hint may stand in it at present, which goes by itself unless something else is written. */
NB_VOID show(VGA_LIST_WINDOW *window, LINE &line) {
    const std::string work = vga_listw_work_in_words(window);
    const std::string text = !line.for_the_moment.empty() ? line.for_the_moment
                             : !line.busy.empty()         ? line.busy
                             : !work.empty()              ? work
                                                          : at_rest(window, line);
    if (text != line.shown) {
        line.shown = text;
        XmTextFieldSetString(window->message_bar, const_cast<NB_CHAR *>(text.c_str()));
    }
}

/* For the moment. */

NB_VOID end_moment(LINE &line) {
    line.for_the_moment.clear();
    if (line.timer != 0) {
        XtRemoveTimeOut(std::exchange(line.timer, 0));
    }
}

NB_VOID moment_over(XtPointer window, XtIntervalId *) {
    auto *of = static_cast<VGA_LIST_WINDOW *>(window);
    lines[of].timer = 0;
    end_moment(lines[of]);
    show(of, lines[of]);
}

NB_VOID key_or_press(Widget, XtPointer window, XEvent *event, Boolean *) {
    auto *of = static_cast<VGA_LIST_WINDOW *>(window);
    vga_listw_message(of, 0);
    if (event->type == KeyPress && XLookupKeysym(&event->xkey, 0) == XK_Escape) {
        vga_listw_cancel_work(of);
    }
}

NB_VOID line_destroyed(Widget, XtPointer window, XtPointer) {
    vga_listw_forget_line(static_cast<VGA_LIST_WINDOW *>(window));
}

NB_VOID cancel_pressed(Widget, XtPointer window, XtPointer) {
    vga_listw_cancel_work(static_cast<VGA_LIST_WINDOW *>(window));
}

NB_VOID history_pressed(Widget, XtPointer window, XtPointer) {
    vga_show_history(&static_cast<VGA_LIST_WINDOW *>(window)->common);
}

/* Who marks some of the text wants to have that. */
NB_VOID line_clicked(Widget line, XtPointer window, XEvent *event, Boolean *) {
    XmTextPosition left = 0, right = 0;
    const bool marked = XmTextFieldGetSelectionPosition(line, &left, &right) && left != right;
    if (event->xbutton.button == Button1 && !marked) {
        vga_show_history(&static_cast<VGA_LIST_WINDOW *>(window)->common);
    }
}

} // namespace

NB_VOID vga_listw_message_text(VGA_LIST_WINDOW *window, const NB_CHAR *text) {
    LINE &line = lines[window];
    end_moment(line);
    line.for_the_moment = text;
    if (text[0] != '\0') {
        line.timer = XtAppAddTimeOut(gvga_appcontext, moment, moment_over, window);
    }
    show(window, line);
}

NB_VOID vga_listw_message(VGA_LIST_WINDOW *window, NB_USHORT message) {
    vga_listw_message_text(window, message != 0 ? vga_message(message) : "");
}

NB_VOID vga_listw_message_busy(VGA_LIST_WINDOW *window, const std::string &text) {
    lines[window].busy = text;
    show(window, lines[window]);
}

NB_VOID vga_listw_refresh_line(VGA_LIST_WINDOW *window) {
    show(window, lines[window]);
}

NB_VOID vga_listw_selection_seen(VGA_LIST_WINDOW *window) {
    LINE &line = lines[window];
    const VGA_VIEWER_ROOT *root = vga_listw_current_root(window);
    NB_LONG count = 0;
    const NB_VOID *record = vga_listw_get_selection(window, nullptr, &count);
    if (root != line.root || count != line.count || record != line.record) {
        line.root = root;
        line.count = count;
        line.record = record;
        line.outcome = vga_outcomes().empty() ? 0 : vga_outcomes().back().number;
        end_moment(line);
    }
    show(window, line);
}

NB_VOID vga_listw_outcome(const VGA_OUTCOME &outcome) {
    for (auto &[window, line] : lines) {
        if (concerns(window, outcome)) {
            auto *of = const_cast<VGA_LIST_WINDOW *>(window);
            end_moment(line);
            show(of, line);
            vga_call_attention(&of->common, outcome.failed);
        }
    }
    vga_history_grew(outcome);
}

NB_VOID vga_listw_watch_line(VGA_LIST_WINDOW *window) {
    constexpr EventMask input = KeyPressMask | ButtonPressMask;
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        XtInsertEventHandler(window->panes[pane].draw_area, input, False, key_or_press, window,
                             XtListHead);
    }
    const std::pair<const NB_CHAR *, XtCallbackProc> buttons[] = {{"History", history_pressed},
                                                                  {"CancelWork", cancel_pressed}};
    for (const auto &[name, pressed] : buttons) {
        const std::string full = std::string("*") + window->plan->prefix + name;
        Widget button = XtNameToWidget(window->common.widget, full.c_str());
        XtAddCallback(button, XmNactivateCallback, pressed, window);
        vga_set_field_hint(button,
                           pressed == history_pressed ? VGA_MSG_HISTORY_HINT : VGA_MSG_CANCEL_HINT);
    }
    XtAddCallback(window->message_bar, XmNdestroyCallback, line_destroyed, window);
    vga_watch_attention(&window->common);
    XtAddEventHandler(window->message_bar, ButtonReleaseMask, False, line_clicked, window);
}

NB_VOID vga_listw_forget_line(const VGA_LIST_WINDOW *window) {
    vga_listw_forget_work(window);
    const auto found = lines.find(window);
    if (found != lines.end()) {
        end_moment(found->second);
        lines.erase(found);
    }
}

std::string vga_listw_selection_in_words(const VGA_LIST_WINDOW *window) {
    NB_SHORT type;
    NB_LONG count;
    vga_listw_get_selection(window, &type, &count);
    const VGA_VIEWER_ROOT *root = vga_listw_current_root(window);
    const std::string kind = vga_lines_in_words(type, static_cast<NB_ULONG>(count));
    if (count > 1) {
        return print(VGA_MSG_SELECTED_MANY, kind);
    }
    const VGA_VIEWER_ITEM *line = count == 1 ? vga_viewer_get_selected_viewer(root) : nullptr;
    return line != nullptr ? print(VGA_MSG_SELECTED_ONE, vga_line_name(*line), kind) : "";
}
