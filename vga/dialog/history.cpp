#include "history.h"
#include "messages.h"
#include "outcomes.h"
#include "textwindow.h"
#include "vgadgutl.h"
#include <Xm/Text.h>

namespace {

constexpr NB_CHAR description[] = "history";
constexpr NB_CHAR margin[] = "\n\t\t\t\t";

std::string time_of(const VGA_OUTCOME &outcome) {
    struct tm fields = {};
    NB_CHAR text[32] = "";
    if (localtime_r(&outcome.time, &fields) != nullptr) {
        strftime(text, sizeof(text), "%Y-%m-%d %H:%M:%S", &fields);
    }
    return text;
}

std::string with(NB_USHORT message, const std::string &first, const std::string &second = "",
                 const std::string &third = "") {
    NB_CHAR text[4000];
    vga_print_msg(text, sizeof(text), message, "s s s", first.c_str(), second.c_str(),
                  third.c_str());
    return text;
}

/* Further lines of a message stand under its first. */
std::string line_of(const VGA_OUTCOME &outcome) {
    const std::string node = outcome.node.empty() ? "-" : outcome.node;
    const std::string text =
        outcome.failed != 0 ? with(VGA_MSG_HISTORY_FAILED, outcome.text) : outcome.text;
    std::string line = with(VGA_MSG_HISTORY_LINE, time_of(outcome), node, "");
    for (const NB_CHAR letter : text) {
        line += letter == '\n' ? margin : std::string(1, letter);
    }
    return line + "\n";
}

/* Who reads the end goes on reading it; what is marked stays marked. */
NB_VOID append(Widget text, const std::string &line) {
    const XmTextPosition end = XmTextGetLastPosition(text);
    Position x, y;
    const bool at_end = XmTextPosToXY(text, end, &x, &y) != 0;
    XmTextInsert(text, end, const_cast<NB_CHAR *>(line.c_str()));
    if (at_end) {
        XmTextShowPosition(text, XmTextGetLastPosition(text));
    }
}

} // namespace

NB_VOID vga_show_history(VGA_DIALOG *desc) {
    const VGA_TEXT_WINDOW *window = vga_text_window(desc, description);
    if (window == nullptr) {
        return;
    }
    if (XtIsManaged(window->box) == 0) {
        std::string all;
        for (const VGA_OUTCOME &outcome : vga_outcomes()) {
            all += line_of(outcome);
        }
        all = !all.empty() ? all : std::string(vga_message(VGA_MSG_HISTORY_EMPTY)) + "\n";
        XmTextSetString(window->text, const_cast<NB_CHAR *>(all.c_str()));
    }
    vga_show_text_window(*window, vga_message(VGA_MSG_HISTORY), "history");
    XmTextShowPosition(window->text, XmTextGetLastPosition(window->text));
}

NB_VOID vga_history_grew(const VGA_OUTCOME &outcome) {
    vga_for_each_dialog(
        [](VGA_DIALOG *desc, NB_VOID *data) {
            const VGA_TEXT_WINDOW *window = vga_shown_text_window(desc, description);
            const auto &news = *static_cast<const VGA_OUTCOME *>(data);
            if (window != nullptr && news.number == 1) {
                XmTextSetString(window->text, const_cast<NB_CHAR *>(""));
            }
            if (window != nullptr) {
                append(window->text, line_of(news));
            }
        },
        const_cast<VGA_OUTCOME *>(&outcome));
}
