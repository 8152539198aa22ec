#include "findtitles.h"
#include "findbar.h"
#include "holders.h"
#include "messages.h"
#include "toolkit.h"
#include <Xm/Xm.h>
#include <algorithm>

namespace {

constexpr unsigned long moment = 150; // milliseconds

/* Kinds of lines, in the order in which titles name them. */
constexpr struct {
    VGA_VIEWER_TYPE type;
    NB_USHORT kind; /* for vga_counted */
} kinds[] = {
    {VGA_VIEWER_NODE, VGA_MSG_KIND_NODES},
    {VGA_VIEWER_PORT, VGA_MSG_KIND_PORTS},
    {VGA_VIEWER_LS, VGA_MSG_KIND_LINKS},
    {VGA_VIEWER_LS_LEAF, VGA_MSG_KIND_LINKS},
    {VGA_VIEWER_PRIMARY_LINE, VGA_MSG_KIND_PRIMARY_LINES},
    {VGA_VIEWER_LOCAL_PU, VGA_MSG_KIND_PUS},
    {VGA_VIEWER_DEPLU, VGA_MSG_KIND_LUS},
    {VGA_VIEWER_DOWN_LU, VGA_MSG_KIND_LUS},
    {VGA_VIEWER_PRIMARY_LU0, VGA_MSG_KIND_LUS},
    {VGA_VIEWER_LU62, VGA_MSG_KIND_LUS},
    {VGA_VIEWER_MODE_DEF, VGA_MSG_KIND_MODES},
    {VGA_VIEWER_REM_SYS, VGA_MSG_KIND_REM_SYSTEMS},
    {VGA_VIEWER_REM_PLU, VGA_MSG_KIND_PARTNERS},
    {VGA_VIEWER_REM_PLU_LEAF, VGA_MSG_KIND_PARTNERS},
    {VGA_VIEWER_CPIC, VGA_MSG_KIND_CPICS},
};

std::string with_number(NB_USHORT message, NB_ULONG number) {
    NB_CHAR text[128];
    vga_print_msg(text, sizeof(text), message, "s", vga_number(number).c_str());
    return text;
}

std::string counted(NB_USHORT kind, NB_ULONG count) {
    const std::string words = vga_counted(kind, count);
    return count == 1 ? vga_number(count) + " " + words : words;
}

NB_VOID set_text(Widget label, const std::string &text) {
    VGA_STRING string(text.c_str());
    XtVaSetValues(label, XmNlabelString, string.get(), nullptr);
}

bool fits(Widget label, const std::string &text) {
    Dimension width = 0, highlight = 0, shadow = 0;
    XmRenderTable fonts = nullptr;
    XtVaGetValues(label, XmNwidth, &width, XmNrenderTable, &fonts, XmNhighlightThickness,
                  &highlight, XmNshadowThickness, &shadow, nullptr);
    VGA_STRING string(text.c_str());
    return XmStringWidth(fonts, string.get()) + 2 * (highlight + shadow) <= width;
}

NB_VOID show(const VGA_LIST_WINDOW *window, NB_USHORT pane) {
    const VGA_VIEWER_ROOT *root = vga_listw_root(window, pane);
    Widget label = window->panes[pane].counts;
    if (root == nullptr) {
        set_text(label, "");
        return;
    }
    const VGA_LISTW_COUNTS counts = vga_listw_counts_of(root);
    std::string text;
    NB_USHORT step = 0;
    do {
        text = vga_listw_count_text(counts, step++);
        text = text.empty() ? text : ": " + text;
    } while (!text.empty() && !fits(label, text));
    set_text(label, text);
}

NB_VOID show_due(XtPointer client_data, XtIntervalId *) {
    const auto handle = static_cast<NB_ULONG>(reinterpret_cast<uintptr_t>(client_data));
    if (VGA_LIST_WINDOW *window =
            vga_listw_of(static_cast<VGA_DIALOG *>(nba_validate_handle(handle)))) {
        vga_listw_show_counts(window);
    }
}

std::string joined(const std::vector<std::string> &parts) {
    std::string text;
    for (const std::string &part : parts) {
        if (!part.empty()) {
            text += (text.empty() ? "" : ", ") + part;
        }
    }
    return text;
}

} // namespace

NB_VOID vga_listw_show_counts(VGA_LIST_WINDOW *window) {
    window->counts_due = 0;
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        show(window, pane);
    }
}

NB_VOID vga_listw_counts_due(VGA_LIST_WINDOW *window) {
    if (window->counts_due == 0) {
        window->counts_due = 1;
        XtAppAddTimeOut(gvga_appcontext, moment, show_due,
                        reinterpret_cast<XtPointer>(static_cast<uintptr_t>(window->common.handle)));
    }
}

VGA_LISTW_COUNTS vga_listw_counts_of(const VGA_VIEWER_ROOT *root) {
    VGA_LISTW_COUNTS counts;
    NB_ULONG active = 0;
    for (const auto &row : kinds) {
        NB_ULONG lines = 0, active_lines = 0;
        bool named = false;
        for (const auto &other : kinds) {
            if (other.kind == row.kind) {
                named = named || &other < &row;
                lines += vga_finder_count(root, other.type, VGA_LINE_STATES);
                active_lines += vga_finder_count(root, other.type, VGA_LINE_ACTIVE);
            }
        }
        if (!named && lines != 0) {
            active += active_lines;
            counts.kinds.push_back(counted(row.kind, lines));
            counts.active.push_back(active != 0 ? with_number(VGA_MSG_COUNT_ACTIVE, active) : "");
        }
    }
    const NB_ULONG failed = vga_finder_count_all(root, VGA_LINE_FAILED);
    counts.failed = failed != 0 ? with_number(VGA_MSG_COUNT_FAILED, failed) : "";
    const VGA_FINDER_FILTER &filter = vga_finder_filter_of(root);
    if (filter.on != 0) {
        NB_CHAR text[256];
        vga_print_msg(text, sizeof(text), VGA_MSG_COUNT_SHOWN, "s s",
                      vga_number(filter.passed).c_str(), vga_listw_filter_words(filter).c_str());
        counts.shown = text;
    }
    return counts;
}

std::string vga_listw_count_text(const VGA_LISTW_COUNTS &counts, NB_USHORT step) {
    std::vector<std::string> parts = counts.kinds;
    const size_t kinds_left = parts.size() > step ? parts.size() - step : size_t{!parts.empty()};
    const size_t more = step + kinds_left - counts.kinds.size();
    parts.resize(kinds_left);
    parts.push_back(more < 1 && kinds_left > 0 ? counts.active[kinds_left - 1] : "");
    parts.push_back(more < 3 || counts.shown.empty() ? counts.failed : "");
    parts.push_back(counts.shown);
    if (more >= 2) {
        parts.erase(parts.begin(), parts.begin() + static_cast<long>(kinds_left));
    }
    return more >= 4 ? "" : joined(parts);
}

std::string vga_listw_filter_words(const VGA_FINDER_FILTER &filter) {
    std::vector<std::string> words = {filter.pattern.typed};
    for (const VGA_LISTW_STATES &row : gvga_listw_states) {
        if (row.word != 0 && row.states == filter.states) {
            words.emplace_back(vga_message(row.word));
        }
    }
    return joined(words);
}
