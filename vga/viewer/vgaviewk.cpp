#include "graphics.h"
#include "viewerparts.h"
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <algorithm>

namespace {

/* Movement. */

/* Siblings of the outlined line, or all lines in screen order. */
struct WALK {
    VGA_VIEWER_VIEW *view;
    bool siblings;
    const VGA_VIEWER_ITEM *start; // the outlined line; null without one

    /* Among siblings those of another type than the anchor's are passed, too. */
    bool can_end_at(const VGA_VIEWER_ITEM *line) const {
        const VGA_VIEWER_ITEM *anchor = view->root->select_anchor;
        return vga_viewer_can_select(view->root, line) != 0 &&
               (!siblings || start == nullptr || anchor == nullptr ||
                anchor->parent != line->parent || vga_viewer_extends_to(anchor, line) != 0);
    }

    VGA_VIEWER_ITEM *step(const VGA_VIEWER_ITEM *line, bool down) const {
        if (siblings) {
            return down ? vga_viewer_next_sibling(view->root, line)
                        : vga_viewer_prev_sibling(view->root, line);
        }
        return down ? vga_viewer_get_next_item(view->root, line)
                    : vga_viewer_get_prev_item(view->root, line);
    }

    /* The first or the last line of the walk. */
    VGA_VIEWER_ITEM *end(bool last) const {
        if (siblings && start != nullptr) {
            const VGA_VIEWER_LIST *list = vga_viewer_siblings(view->root, start);
            return vga_viewer_find_in_list(list, last ? vga_viewer_list_lines(list) - 1 : 0);
        }
        const NB_ULONG lines = vga_viewer_list_lines(&view->root->top_items);
        return vga_viewer_find_line(view->root, last && lines != 0 ? lines - 1 : 0);
    }

    /* The line one window above or below the start, or the end that lies there. */
    VGA_VIEWER_ITEM *page(bool down) const {
        const int64_t height = view->window_height;
        const int64_t y = start != nullptr ? vga_viewer_get_screen_pos(start) : 0;
        VGA_VIEWER_ITEM *line =
            vga_find_viewer(view->root, static_cast<NB_LONG>(down ? y + height : y - height));
        if (line == nullptr || !siblings || start == nullptr) {
            return line != nullptr ? line : end(down);
        }
        VGA_VIEWER_ITEM *sibling = line;
        while (sibling != nullptr && sibling->parent != start->parent) {
            sibling = sibling->parent;
        }
        if (sibling == nullptr) {
            return end(down);
        }
        return sibling == line || down ? sibling : step(sibling, true);
    }
};

/* Where a direction begins to look, and which way it goes on past lines that cannot be chosen. */
VGA_VIEWER_ITEM *find_target(const WALK &walk, NB_USHORT direction) {
    VGA_VIEWER_ITEM *line = nullptr;
    bool down = true;
    switch (direction) {
    case VGA_VIEWER_UP:
        down = walk.start == nullptr;
        line = walk.start != nullptr ? walk.step(walk.start, false) : walk.end(false);
        break;
    case VGA_VIEWER_DOWN:
        line = walk.start != nullptr ? walk.step(walk.start, true) : walk.end(false);
        break;
    case VGA_VIEWER_PRIOR:
        line = walk.page(false);
        break;
    case VGA_VIEWER_NEXT:
        down = false;
        line = walk.page(true);
        break;
    case VGA_VIEWER_HOME:
        line = walk.end(false);
        break;
    case VGA_VIEWER_END:
        down = false;
        line = walk.end(true);
        break;
    default:
        break;
    }
    while (line != nullptr && !walk.can_end_at(line)) {
        line = walk.step(line, down);
    }
    return line;
}

/* Scrolls to the top of the titles above the line, as long as the line itself stays in view. */
NB_VOID show_titles_above(VGA_VIEWER_VIEW *view, const VGA_VIEWER_ITEM *line) {
    const VGA_VIEWER_ITEM *top = line, *above = line;
    while ((above = vga_viewer_get_prev_item(view->root, above)) != nullptr &&
           vga_viewer_can_select(view->root, above) == 0) {
        top = above;
    }
    vga_viewer_set_view(view->root, top);
    vga_viewer_set_view(view->root, line);
}

/* The other keys. */

NB_VOID scroll_columns(VGA_VIEWER_VIEW *view, NB_LONG columns) {
    vga_viewer_scroll_view_horizontal(view->root,
                                      columns * static_cast<NB_LONG>(gvga_viewer_char_width));
}

NB_VOID select_outlined(VGA_VIEWER_VIEW *view, NB_USHORT shift, NB_USHORT ctrl) {
    VGA_VIEWER_ITEM *const line = view->root->outline_viewer;
    if (line != nullptr) {
        const NB_UCHAR type = line->type;
        vga_viewer_set_view(view->root, line);
        vga_viewer_select(line, view->root, ctrl, shift, 1, 1);
        vga_viewer_call_disarm(view, type);
        vga_viewer_offer_selection(view);
    }
}

/* All siblings of the current line that are of its type; it stays current, outlined and anchor. */
NB_VOID select_all(VGA_VIEWER_VIEW *view) {
    VGA_VIEWER_ITEM *const current = vga_viewer_get_selected_viewer(view->root);
    if (current == nullptr) {
        return;
    }
    vga_viewer_select_all(view->root, current);
    vga_viewer_schedule(view);
    const NB_UCHAR type = current->type; // the window may let the line go
    vga_viewer_notify(view->root, type);
    vga_viewer_call_disarm(view, type);
    vga_viewer_offer_selection(view);
}

NB_VOID deselect_others(VGA_VIEWER_VIEW *view) {
    VGA_VIEWER_ITEM *const line = view->root->outline_viewer;
    const NB_SHORT type = view->root->select_type;
    const NB_USHORT selected = line != nullptr ? line->selected : 0;
    vga_viewer_clear_selection(view->root);
    if (selected != 0) {
        vga_viewer_set_select(view->root, line, 1);
    }
    vga_viewer_notify(view->root, type);
}

NB_VOID open_or_close(VGA_VIEWER_VIEW *view, bool open) {
    if (VGA_VIEWER_ITEM *line = vga_viewer_get_selected_viewer(view->root)) {
        if (open) {
            vga_viewer_open(view->root, line);
        } else {
            vga_viewer_contract(view->root, line, 1);
        }
    }
}

/* The current line stays where it is in the window, or else the first that is shown. */
NB_VOID open_all(VGA_VIEWER_VIEW *view) {
    const VGA_VIEWER_ITEM *stays = view->root->outline_viewer;
    int64_t y = stays != nullptr ? int64_t{vga_viewer_get_screen_pos(stays)} - view->y_offset : -1;
    if (y < 0 || y >= view->window_height) {
        y = 0;
        stays = vga_viewer_hit(view, 0);
    }
    vga_viewer_expand_all(view->root);
    if (stays != nullptr) {
        vga_viewer_set_offsets(view, view->x_offset, vga_viewer_get_screen_pos(stays) - y, nullptr);
    }
}

NB_VOID select_line(VGA_VIEWER_VIEW *view, VGA_VIEWER_ITEM *line) {
    if (line != nullptr) {
        const NB_UCHAR type = line->type;
        vga_viewer_set_view(view->root, line);
        vga_viewer_select(line, view->root, 0, 0, 1, 1);
        vga_viewer_call_disarm(view, type);
        vga_viewer_offer_selection(view);
    }
}

/* Opens the current line, or goes to the first line below an open one. */
NB_VOID go_in(VGA_VIEWER_VIEW *view, VGA_VIEWER_ITEM *line) {
    if (vga_viewer_has_children(line) == 0) {
        return;
    }
    if (line->expanded == 0) {
        vga_viewer_open(view->root, line);
        return;
    }
    VGA_VIEWER_ITEM *child = vga_viewer_find_in_list(&line->children, 0);
    while (child != nullptr && vga_viewer_can_select(view->root, child) == 0) {
        child = vga_viewer_next_sibling(view->root, child);
    }
    select_line(view, child);
}

/* Closes the current line, or goes to the one that a closed line is in. */
NB_VOID go_out(VGA_VIEWER_VIEW *view, VGA_VIEWER_ITEM *line) {
    if (line->expanded != 0 && vga_viewer_has_children(line) != 0) {
        vga_viewer_contract(view->root, line, 1);
    } else if (line->parent != nullptr && vga_viewer_can_select(view->root, line->parent) != 0) {
        select_line(view, line->parent);
    }
}

/* Left and Right scroll a list that is wider than its window, and walk the tree of another. */
NB_VOID go_sideways(VGA_VIEWER_VIEW *view, NB_SHORT columns) {
    if (view->content_width > view->window_width) {
        scroll_columns(view, columns);
        return;
    }
    VGA_VIEWER_ITEM *line = view->root->outline_viewer;
    if (line == nullptr) {
        line = vga_viewer_get_selected_viewer(view->root);
    }
    if (line != nullptr) {
        (columns > 0 ? go_in : go_out)(view, line);
    }
}

NB_VOID window_action(VGA_VIEWER_VIEW *view, VGA_VIEWER_ACTION action) {
    if (gvga_viewer_window_action != nullptr) {
        gvga_viewer_window_action(view->root->window, action, view->draw_widget);
    }
}

/* The table of keys. */

enum KEY_KIND : NB_USHORT {
    MOVE,
    SIDEWAYS,
    SELECT,
    OPEN,
    OPEN_ALL,
    CLOSE,
    ALL,
    OTHERS,
    COPY,
    WHOLE,
    ACTION
};

constexpr unsigned free = 0, ctrl_only = ControlMask, shift_only = ShiftMask;

struct KEY {
    KeySym key, twin; // on the keypad, or with the letters locked
    KEY_KIND kind;
    NB_SHORT argument;
    unsigned held; // a modifier that must be
};

constexpr KEY keys[] = {
    {XK_Up, XK_KP_Up, MOVE, VGA_VIEWER_UP, free},
    {XK_Down, XK_KP_Down, MOVE, VGA_VIEWER_DOWN, free},
    {XK_Prior, XK_KP_Prior, MOVE, VGA_VIEWER_PRIOR, free},
    {XK_Next, XK_KP_Next, MOVE, VGA_VIEWER_NEXT, free},
    {XK_Home, XK_KP_Home, MOVE, VGA_VIEWER_HOME, free},
    {XK_End, XK_KP_End, MOVE, VGA_VIEWER_END, free},
    {XK_Left, XK_KP_Left, SIDEWAYS, -1, free},
    {XK_Right, XK_KP_Right, SIDEWAYS, 1, free},
    {XK_space, XK_KP_Space, SELECT, 0, free},
    {XK_plus, XK_KP_Add, OPEN, 0, free},
    {XK_equal, NoSymbol, OPEN, 0, free},
    {XK_asterisk, XK_KP_Multiply, OPEN_ALL, 0, free},
    {XK_minus, XK_KP_Subtract, CLOSE, 0, free},
    {XK_slash, XK_KP_Divide, ALL, 0, ctrl_only},
    {XK_a, XK_A, ALL, 0, ctrl_only},
    {XK_backslash, NoSymbol, OTHERS, 0, ctrl_only},
    {XK_c, XK_C, COPY, 0, ctrl_only},
    {XK_F1, NoSymbol, WHOLE, 0, shift_only},
    {XK_Return, XK_KP_Enter, ACTION, VGA_VIEWER_ACTION_ZOOM, free},
    {XK_Delete, XK_KP_Delete, ACTION, VGA_VIEWER_ACTION_DELETE, free},
    {XK_Insert, NoSymbol, ACTION, VGA_VIEWER_ACTION_ADD, free},
};

NB_VOID act(VGA_VIEWER_VIEW *view, const KEY &key, NB_USHORT shift, NB_USHORT ctrl) {
    switch (key.kind) {
    case MOVE:
        vga_viewer_key_move(view->root, static_cast<NB_USHORT>(key.argument), shift, ctrl);
        break;
    case SIDEWAYS:
        go_sideways(view, key.argument);
        break;
    case SELECT:
        select_outlined(view, shift, ctrl);
        break;
    case OPEN:
    case CLOSE:
        open_or_close(view, key.kind == OPEN);
        break;
    case OPEN_ALL:
        open_all(view);
        break;
    case ALL:
        select_all(view);
        break;
    case OTHERS:
        deselect_others(view);
        break;
    case COPY:
        vga_viewer_copy_lines(view->root);
        break;
    case WHOLE:
        vga_viewer_show_whole(view);
        break;
    case ACTION:
        window_action(view, static_cast<VGA_VIEWER_ACTION>(key.argument));
        break;
    }
}

} // namespace

NB_VOID vga_viewer_key_move(VGA_VIEWER_ROOT *root, NB_USHORT direction, NB_USHORT shift,
                            NB_USHORT ctrl) {
    VGA_VIEWER_VIEW *const view = vga_viewer_view(root);
    if (view == nullptr) {
        return;
    }
    VGA_VIEWER_ITEM *const start = view->root->outline_viewer;
    const WALK walk = {view, shift != 0 || ctrl != 0, start};
    VGA_VIEWER_ITEM *target = find_target(walk, direction);
    if (direction == VGA_VIEWER_HOME) {
        vga_viewer_set_offsets(view, 0, view->y_offset, nullptr);
        if (target != nullptr) {
            show_titles_above(view, target);
        }
    }
    if (target == nullptr || target == start) {
        return;
    }
    const NB_UCHAR type = target->type;
    vga_viewer_set_view(view->root, target);
    vga_viewer_select(target, root, ctrl, shift, 1, 1);
    vga_viewer_call_disarm(view, type);
    vga_viewer_offer_selection(view);
}

/* What the list takes goes no further: in a dialog the toolkit would press the default button, too.
 */
NB_VOID vga_viewer_key_input(Widget, XtPointer client_data, XEvent *event, Boolean *go_on) {
    VGA_VIEWER_VIEW *view = static_cast<VGA_VIEWER_VIEW *>(client_data);
    if (view == nullptr || view->dragging != 0 || event->type != KeyPress) {
        return;
    }
    NB_CHAR text[16];
    KeySym pressed = NoSymbol;
    XLookupString(&event->xkey, text, sizeof(text), &pressed, nullptr);
    vga_viewer_hide_tip(view);
    const NB_USHORT shift = (event->xkey.state & ShiftMask) != 0;
    const NB_USHORT ctrl = (event->xkey.state & ControlMask) != 0;
    for (const KEY &key : keys) {
        if ((key.key == pressed || (key.twin == pressed && pressed != NoSymbol)) &&
            (event->xkey.state & key.held) == key.held) {
            *go_on = False;
            act(view, key, shift, ctrl);
            return;
        }
    }
    if (vga_viewer_type_ahead(view, &event->xkey) != 0) {
        *go_on = False;
    }
}
