#include "longwork.h"
#include "messageline.h"
#include "messages.h"
#include "toolkit.h"
#include "verbqueue.h"
#include "vgadsutl.h"
#include <algorithm>
#include <chrono>
#include <unordered_map>
#include <vector>

namespace {

using CLOCK = std::chrono::steady_clock;

constexpr unsigned long second = 1000;                 /* milliseconds */
constexpr std::chrono::milliseconds between_news{100}; /* enough for the eye */

struct GOING_ON {
    VGA_WORK work;
    std::string text;
};
struct WORKS {
    std::vector<GOING_ON> all; /* newest last */
    CLOCK::time_point shown = {};
};
std::unordered_map<VGA_LIST_WINDOW *, WORKS> windows;
XtIntervalId ticker; /* 0: there is no work */

Widget cancel_button(const VGA_LIST_WINDOW *window) {
    const std::string name = std::string("*") + window->plan->prefix + "CancelWork";
    return XtNameToWidget(window->common.widget, name.c_str());
}

NB_VOID show(VGA_LIST_WINDOW *window, WORKS &works) {
    works.shown = CLOCK::now();
    vga_listw_refresh_line(window);
}

/* What is over at once needs no button. */
NB_VOID tick(XtPointer, XtIntervalId *) {
    ticker = 0;
    for (auto &[window, works] : windows) {
        XtManageChild(cancel_button(window));
        show(window, works);
    }
    if (!windows.empty()) {
        ticker = XtAppAddTimeOut(gvga_appcontext, second, tick, nullptr);
    }
}

auto find(WORKS &works, const VGA_WORK &work) {
    return std::find_if(works.all.begin(), works.all.end(), [&work](const GOING_ON &one) {
        return one.work.number == work.number && one.work.cancel == work.cancel;
    });
}

} // namespace

NB_VOID vga_listw_work_goes_on(VGA_LIST_WINDOW *window, const VGA_WORK &work,
                               const std::string &text) {
    WORKS &works = windows[window];
    const auto found = find(works, work);
    if (found == works.all.end()) {
        works.all.push_back({work, text});
        works.shown = {};
    } else {
        found->text = text;
    }
    if (CLOCK::now() - works.shown >= between_news) {
        show(window, works);
    }
    if (ticker == 0) {
        ticker = XtAppAddTimeOut(gvga_appcontext, second, tick, nullptr);
    }
}

NB_VOID vga_listw_work_over(VGA_LIST_WINDOW *window, const VGA_WORK &work) {
    const auto at = windows.find(window);
    if (at == windows.end()) {
        return;
    }
    const auto found = find(at->second, work);
    if (found != at->second.all.end()) {
        at->second.all.erase(found);
    }
    if (at->second.all.empty()) {
        XtUnmanageChild(cancel_button(window));
        windows.erase(at);
    }
    vga_listw_refresh_line(window);
}

std::string vga_listw_work_in_words(const VGA_LIST_WINDOW *window) {
    const auto at = windows.find(const_cast<VGA_LIST_WINDOW *>(window));
    if (at == windows.end()) {
        return {};
    }
    const std::string &text = at->second.all.back().text;
    const VGA_NODE *node = vga_listw_node(window);
    const VGA_OUTSTANDING waiting = vga_outstanding(node != nullptr ? node->target : 0);
    if (waiting.verbs == 0 || waiting.seconds == 0) {
        return text;
    }
    const std::string whose = vga_node_name(vga_find_node_of_target(waiting.target));
    NB_CHAR line[512];
    vga_print_msg(line, sizeof(line), VGA_MSG_OUTSTANDING, "s s s l", text.c_str(),
                  vga_counted(VGA_MSG_VERBS, waiting.verbs).c_str(),
                  whose.empty() ? vga_message(VGA_MSG_THE_DOMAIN) : whose.c_str(), waiting.seconds);
    return line;
}

NB_USHORT vga_listw_cancel_work(VGA_LIST_WINDOW *window) {
    const auto at = windows.find(window);
    if (at == windows.end()) {
        return 0;
    }
    const VGA_WORK work = at->second.all.back().work;
    work.cancel(work.number);
    return 1;
}

NB_VOID vga_listw_leave_work(const VGA_LIST_WINDOW *window) {
    if (windows.erase(const_cast<VGA_LIST_WINDOW *>(window)) != 0) {
        XtUnmanageChild(cancel_button(window));
    }
}

NB_VOID vga_listw_forget_work(const VGA_LIST_WINDOW *window) {
    windows.erase(const_cast<VGA_LIST_WINDOW *>(window));
}
