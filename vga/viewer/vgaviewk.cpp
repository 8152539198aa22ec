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
    while (line != nullptr && vga_viewer_can_select(walk.view->root, line) == 0) {
        line = walk.step(line, down);
    }
    return line;
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
    }
}

/* All siblings of the current line that are of its type; it stays current, outlined and anchor. */
NB_VOID select_all(VGA_VIEWER_VIEW *view) {
    VGA_VIEWER_ITEM *const current = vga_viewer_get_selected_viewer(view->root);
    if (current == nullptr) {
        return;
    }
    const VGA_VIEWER_LIST *list = vga_viewer_siblings(view->root, current);
    for (VGA_VIEWER_ITEM *line = vga_viewer_find_in_list(list, 0); line != nullptr;
         line = vga_viewer_next_sibling(view->root, line)) {
        if (line->type == current->type && vga_viewer_can_select(view->root, line) != 0) {
            vga_viewer_mark_selected(view->root, line, 1, 1);
        }
    }
    view->root->select_anchor = current;
    vga_viewer_set_outline(view->root, current, 1);
    vga_viewer_schedule(view);
    const NB_UCHAR type = current->type; // the window may let the line go
    vga_viewer_notify(view->root, type);
    vga_viewer_call_disarm(view, type);
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
            vga_expand_viewer(view->root, line, 1);
        } else {
            vga_viewer_contract(view->root, line, 1);
        }
    }
}

NB_VOID window_action(VGA_VIEWER_VIEW *view, VGA_VIEWER_ACTION action) {
    if (gvga_viewer_window_action != nullptr) {
        gvga_viewer_window_action(view->root->window, action, view->draw_widget);
    }
}

/* The table of keys. */

enum KEY_KIND : NB_USHORT { MOVE, COLUMNS, SELECT, OPEN, CLOSE, ALL, OTHERS, ACTION };

struct KEY {
    KeySym key, keypad;
    KEY_KIND kind;
    NB_SHORT argument;
    bool with_ctrl; // only then
};

constexpr KEY keys[] = {
    {XK_Up, XK_KP_Up, MOVE, VGA_VIEWER_UP, false},
    {XK_Down, XK_KP_Down, MOVE, VGA_VIEWER_DOWN, false},
    {XK_Prior, XK_KP_Prior, MOVE, VGA_VIEWER_PRIOR, false},
    {XK_Next, XK_KP_Next, MOVE, VGA_VIEWER_NEXT, false},
    {XK_Home, XK_KP_Home, MOVE, VGA_VIEWER_HOME, false},
    {XK_End, XK_KP_End, MOVE, VGA_VIEWER_END, false},
    {XK_Left, XK_KP_Left, COLUMNS, -1, false},
    {XK_Right, XK_KP_Right, COLUMNS, 1, false},
    {XK_space, XK_KP_Space, SELECT, 0, false},
    {XK_plus, XK_KP_Add, OPEN, 0, false},
    {XK_equal, NoSymbol, OPEN, 0, false},
    {XK_minus, XK_KP_Subtract, CLOSE, 0, false},
    {XK_slash, XK_KP_Divide, ALL, 0, true},
    {XK_backslash, NoSymbol, OTHERS, 0, true},
    {XK_Return, XK_KP_Enter, ACTION, VGA_VIEWER_ACTION_ZOOM, false},
    {XK_Delete, XK_KP_Delete, ACTION, VGA_VIEWER_ACTION_DELETE, false},
    {XK_Insert, NoSymbol, ACTION, VGA_VIEWER_ACTION_ADD, false},
};

NB_VOID act(VGA_VIEWER_VIEW *view, const KEY &key, NB_USHORT shift, NB_USHORT ctrl) {
    switch (key.kind) {
    case MOVE:
        vga_viewer_key_move(view->root, static_cast<NB_USHORT>(key.argument), shift, ctrl);
        break;
    case COLUMNS:
        scroll_columns(view, key.argument);
        break;
    case SELECT:
        select_outlined(view, shift, ctrl);
        break;
    case OPEN:
    case CLOSE:
        open_or_close(view, key.kind == OPEN);
        break;
    case ALL:
        select_all(view);
        break;
    case OTHERS:
        deselect_others(view);
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
    }
    if (target == nullptr || target == start) {
        return;
    }
    const NB_UCHAR type = target->type;
    vga_viewer_set_view(view->root, target);
    vga_viewer_select(target, root, ctrl, shift, 1, 1);
    vga_viewer_call_disarm(view, type);
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
    const NB_USHORT shift = (event->xkey.state & ShiftMask) != 0;
    const NB_USHORT ctrl = (event->xkey.state & ControlMask) != 0;
    for (const KEY &key : keys) {
        if ((key.key == pressed || (key.keypad == pressed && pressed != NoSymbol)) &&
            (!key.with_ctrl || ctrl != 0)) {
            *go_on = False;
            act(view, key, shift, ctrl);
            return;
        }
    }
}
