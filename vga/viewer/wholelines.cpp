#include "graphics.h"
#include "textselection.h"
#include "tooltips.h"
#include "viewerparts.h"
#include <algorithm>
#include <functional>
#include <vector>

namespace {

constexpr NB_ULONG tip_columns = 60; // of a text in a tip, which is broken there

/* The columns of a line or of its headings, whole. */
std::vector<std::string> columns_of(const NB_CHAR *text) {
    std::vector<std::string> columns;
    NB_ULONG column = 0;
    VGA_VIEWER_RUN run;
    while (vga_viewer_next_run(&text, &column, &run) != 0) {
        std::string &cell = columns.emplace_back(run.text, static_cast<size_t>(run.whole));
        cell.erase(cell.find_last_not_of(' ') + 1);
    }
    return columns;
}

std::vector<std::string> columns_of(const VGA_VIEWER_ITEM *item) {
    NB_CHAR text[VGA_VIEWER_TEXT_BUFFER + 1];
    vga_viewer_whole_text(item, text);
    return columns_of(text);
}

std::vector<std::string> headings_of(NB_SHORT type) {
    const VGA_VIEWER_DESC *desc = vga_viewer_type(type);
    NB_CHAR text[VGA_VIEWER_TEXT_BUFFER + 1] = "";
    if (desc->create_headings != nullptr) {
        text[desc->create_headings(nullptr, text)] = '\0';
    }
    return columns_of(text);
}

NB_VOID add_line(std::string &lines, const VGA_VIEWER_ITEM *item) {
    NB_CHAR separator = '\0';
    for (const std::string &cell : columns_of(item)) {
        if (separator != '\0') {
            lines += separator;
        }
        lines += cell;
        separator = '\t';
    }
}

/* A heading and its text, or what does not fit beside it below it. */
NB_VOID add_to_tip(std::string &tip, const std::string &heading, const std::string &text) {
    const NB_CHAR *rest = text.c_str();
    for (NB_INT left = static_cast<NB_INT>(text.size()), cut; left > 0; rest += cut, left -= cut) {
        cut = std::max(vga_viewer_cut(rest, left, tip_columns), 1);
        tip += (tip.empty() ? "" : "\n") + (rest == text.c_str() ? heading : "") + "\t";
        tip.append(rest, static_cast<size_t>(cut));
    }
}

std::string tip_of(const VGA_VIEWER_ITEM *item) {
    const std::vector<std::string> headings = headings_of(item->type);
    const std::vector<std::string> columns = columns_of(item);
    std::string tip;
    for (size_t at = 0; at < columns.size(); ++at) {
        add_to_tip(tip, at < headings.size() ? headings[at] : std::string(), columns[at]);
    }
    return tip;
}

size_t tip_hash(const std::string &tip) {
    return std::hash<std::string>()(tip);
}

/* Notes what the tip of a line is made of; returns it. */
std::string begin_tip(VGA_VIEWER_VIEW *view, const VGA_VIEWER_ITEM *line) {
    std::string tip = tip_of(line);
    view->tip_line = static_cast<NB_LONG>(vga_viewer_get_line(line));
    view->tip_hash = tip_hash(tip);
    return tip;
}

/* A column, or the window, does not show all of the line. */
bool is_cut(const VGA_VIEWER_VIEW *view, const VGA_VIEWER_ITEM *item) {
    NB_CHAR text[VGA_VIEWER_TEXT_BUFFER + 1];
    vga_viewer_whole_text(item, text);
    const NB_ULONG right =
        vga_viewer_left_width(vga_viewer_type(item->type)) + vga_viewer_text_width(text);
    return vga_viewer_mark_cuts(text) != 0 || view->x_offset != 0 || right > view->window_width;
}

} // namespace

std::string vga_viewer_selected_lines(const VGA_VIEWER_ROOT *root) {
    const VGA_VIEWER_LIST &list =
        root->select_parent != nullptr ? root->select_parent->children : root->top_items;
    std::string lines;
    for (NB_LONG at = 0; at < root->select_count; ++at) {
        lines += at > 0 ? "\n" : "";
        add_line(lines, vga_viewer_find_selected(&list, static_cast<NB_ULONG>(at)));
    }
    return lines;
}

NB_VOID vga_viewer_copy_lines(const VGA_VIEWER_ROOT *root) {
    if (root->displayed != 0 && root->select_count != 0) {
        vga_own_clipboard(root->view->draw_widget, vga_viewer_selected_lines(root));
    }
}

NB_VOID vga_viewer_offer_selection(VGA_VIEWER_VIEW *view) {
    const VGA_VIEWER_ROOT *root = view->root;
    if (root->displayed != 0 && root->select_count != 0) {
        vga_offer_text(view->draw_widget, [root] { return vga_viewer_selected_lines(root); });
    }
}

NB_VOID vga_viewer_show_whole(VGA_VIEWER_VIEW *view) {
    const VGA_VIEWER_ITEM *line = view->root->outline_viewer;
    if (line == nullptr) {
        line = vga_viewer_get_selected_viewer(view->root);
    }
    if (line == nullptr) {
        return;
    }
    vga_viewer_set_view(view->root, line);
    const NB_LONG below = vga_viewer_get_screen_pos(line) - static_cast<NB_LONG>(view->y_offset) +
                          static_cast<NB_LONG>(gvga_viewer_item_height);
    const NB_ULONG left = vga_viewer_left_width(vga_viewer_type(line->type));
    vga_show_tip_at(view->draw_widget, begin_tip(view, line).c_str(), static_cast<NB_INT>(left),
                    below);
}

NB_VOID vga_viewer_check_tip(VGA_VIEWER_VIEW *view) {
    if (view->tip_line == VGA_VIEWER_NO_TIP) {
        return;
    }
    const VGA_VIEWER_ITEM *line =
        vga_viewer_find_line(view->root, static_cast<NB_ULONG>(view->tip_line));
    if (line == nullptr || tip_hash(tip_of(line)) != view->tip_hash) {
        vga_viewer_hide_tip(view);
    }
}

NB_VOID vga_viewer_hide_tip(VGA_VIEWER_VIEW *view) {
    if (view->tip_line != VGA_VIEWER_NO_TIP) {
        view->tip_line = VGA_VIEWER_NO_TIP;
        vga_hide_tip();
    }
}

NB_VOID vga_viewer_pointer_moved(Widget, XtPointer client_data, XEvent *event, Boolean *) {
    auto *view = static_cast<VGA_VIEWER_VIEW *>(client_data);
    const NB_INT y = event->type == EnterNotify ? event->xcrossing.y : event->xmotion.y;
    const VGA_VIEWER_ITEM *item = vga_viewer_hit(view, y);
    const NB_LONG line =
        item != nullptr ? static_cast<NB_LONG>(vga_viewer_get_line(item)) : VGA_VIEWER_NO_TIP;
    if (line == view->tip_line) {
        return;
    }
    vga_viewer_hide_tip(view);
    if (item != nullptr && view->dragging == 0 && is_cut(view, item)) {
        vga_show_tip(view->draw_widget, begin_tip(view, item).c_str());
    }
}

NB_VOID vga_viewer_pointer_left(Widget, XtPointer client_data, XEvent *, Boolean *) {
    vga_viewer_hide_tip(static_cast<VGA_VIEWER_VIEW *>(client_data));
}
