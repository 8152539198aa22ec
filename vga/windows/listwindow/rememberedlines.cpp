#include "rememberedlines.h"
#include "graphics.h"
#include "linerules.h"
#include "panes.h"
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace {

/* Names of lines. */

struct NAME_ROW {
    VGA_VIEWER_TYPE type;
    std::string_view (*name)(const NB_VOID *record);
};

template <class Record, class Name> Record *record_with(Name Record::*);

template <auto Name> std::string_view name_of(const NB_VOID *data) {
    using RECORD = std::remove_pointer_t<decltype(record_with(Name))>;
    const auto &name = static_cast<const RECORD *>(data)->*Name;
    return {reinterpret_cast<const NB_CHAR *>(&name), sizeof(name)};
}

constexpr NAME_ROW names[] = {
    {VGA_VIEWER_LU62, name_of<&VGA_LU62::name>},
    {VGA_VIEWER_MODE, name_of<&VGA_MODE::key>},
    {VGA_VIEWER_PORT, name_of<&VGA_PORT::name>},
    {VGA_VIEWER_LS, name_of<&VGA_LS::name>},
    {VGA_VIEWER_LOCAL_PU, name_of<&VGA_LOCAL_PU::name>},
    {VGA_VIEWER_DEPLU, name_of<&VGA_LU03::name>},
    {VGA_VIEWER_DOWN_LU, name_of<&VGA_DOWN_LU::name>},
    {VGA_VIEWER_LS_LEAF, name_of<&VGA_LS::name>},
    {VGA_VIEWER_REM_SYS, name_of<&VGA_REM_SYS::name>},
    {VGA_VIEWER_REM_PLU, name_of<&VGA_REM_PLU::key>},
    {VGA_VIEWER_REM_SESS, name_of<&VGA_REM_SESS::key>},
    {VGA_VIEWER_REM_PLU_LEAF, name_of<&VGA_REM_PLU::key>},
    {VGA_VIEWER_LS_R, name_of<&VGA_LS_ROUTING::fqplu_name>},
    {VGA_VIEWER_PRIMARY_LINE, name_of<&VGA_PRIMARY_LINE::name>},
    {VGA_VIEWER_PRIMARY_LU0, name_of<&VGA_PRIMARY_LU0::name>},
};

/* Others are told apart by what they say. */
std::string name_of_line(const VGA_VIEWER_ITEM &item) {
    for (const NAME_ROW &row : names) {
        if (row.type == item.type && item.fixed == 0) {
            return std::string(row.name(item.data));
        }
    }
    return vga_line_name(item);
}

using PATH = std::string;

/* A line's own part of its path. */
PATH step_to(const VGA_VIEWER_ITEM &item) {
    const std::string name = name_of_line(item);
    return PATH{static_cast<NB_CHAR>(item.type), static_cast<NB_CHAR>(name.size())} + name;
}

PATH path_of(const VGA_VIEWER_ITEM *item) {
    return item != nullptr ? path_of(item->parent) + step_to(*item) : PATH();
}

/* The memory. */

struct LIST_MEMORY {
    std::unordered_set<PATH> toggled; /* open, or at the top level closed: not as lines come */
    std::unordered_set<PATH> selected;
    NB_LONG recalled = 0; /* selected lines that have come */
    PATH outlined;        /* empty: none */
    PATH first;           /* the first line in sight; empty: the list's */
};

struct MEMORY {
    LIST_MEMORY lists[VGA_LISTW_MAX_LISTS];
    NB_USHORT pane; /* of the selection; VGA_LISTW_NO_LIST: nothing to be chosen */
};

std::unordered_map<const VGA_LIST_WINDOW *, MEMORY> memories;

MEMORY *memory_of(const VGA_LIST_WINDOW *window) {
    const auto found = memories.find(window);
    return found != memories.end() ? &found->second : nullptr;
}

bool opens_by_itself(const VGA_VIEWER_ITEM &item) {
    return item.parent == nullptr;
}

/* Remembering. */

NB_VOID remember_toggled(VGA_VIEWER_ROOT *root, const VGA_VIEWER_LIST &list, const PATH &above,
                         LIST_MEMORY &memory) {
    for (const VGA_VIEWER_ITEM *item = list.first; item != nullptr;
         item = vga_viewer_next_sibling(root, item)) {
        if (item->children.count == 0) {
            continue;
        }
        const PATH path = above + step_to(*item);
        if ((item->expanded != 0) != opens_by_itself(*item) &&
            memory.toggled.size() < VGA_LISTW_REMEMBERED) {
            memory.toggled.insert(path);
        }
        remember_toggled(root, item->children, path, memory);
    }
}

NB_VOID remember_selection(const VGA_VIEWER_ROOT *root, LIST_MEMORY &memory) {
    if (root->outline_viewer != nullptr) {
        memory.outlined = path_of(root->outline_viewer);
    }
    const VGA_VIEWER_ITEM *parent = root->select_parent;
    const VGA_VIEWER_LIST &list = parent != nullptr ? parent->children : root->top_items;
    const auto count = static_cast<NB_ULONG>(root->select_count);
    const PATH above = path_of(parent);
    for (NB_ULONG index = 0; count <= VGA_LISTW_REMEMBERED && index < count; index++) {
        memory.selected.insert(above + step_to(*vga_viewer_find_selected(&list, index)));
    }
}

NB_VOID remember_place(const VGA_VIEWER_ROOT *root, LIST_MEMORY &memory) {
    if (root->view != nullptr && root->view->y_offset != 0) {
        memory.first = path_of(vga_find_viewer(root, static_cast<NB_LONG>(root->view->y_offset)));
    }
}

/* Recalling. */

NB_VOID recall_toggled(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *parent, LIST_MEMORY &memory) {
    if (parent == nullptr || parent->children.count != 1 || memory.toggled.empty() ||
        memory.toggled.erase(path_of(parent)) == 0) {
        return;
    }
    if (opens_by_itself(*parent)) {
        vga_viewer_contract(root, parent, 1);
    } else {
        vga_expand_viewer(root, parent, 1);
    }
}

/* With another count of selected lines the operator has selected meanwhile. */
NB_VOID recall_selected(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, LIST_MEMORY &memory) {
    const bool nothing = memory.selected.empty() && memory.outlined.empty();
    if (nothing || root->select_count != memory.recalled) {
        return;
    }
    const PATH path = path_of(item);
    if (path == memory.outlined) {
        memory.outlined.clear();
        root->select_anchor = item;
        vga_viewer_set_outline(root, item, 1);
    }
    if (memory.selected.erase(path) != 0) {
        memory.recalled += vga_viewer_set_select(root, item, 1);
    }
}

/* The visible line of that path, or the one above it that is left. */
const VGA_VIEWER_ITEM *find_line(VGA_VIEWER_ROOT *root, const PATH &path) {
    const VGA_VIEWER_ITEM *found = nullptr;
    const VGA_VIEWER_ITEM *item = root->top_items.first;
    for (PATH above; item != nullptr;) {
        const PATH here = above + step_to(*item);
        if (path.compare(0, here.size(), here) != 0) {
            item = vga_viewer_next_sibling(root, item);
            continue;
        }
        found = item;
        above = here;
        item = item->expanded != 0 ? item->children.first : nullptr;
    }
    return found;
}

NB_VOID recall_place(VGA_VIEWER_ROOT *root, const PATH &first) {
    if (first.empty() || root->view == nullptr || root->view->y_offset != 0) {
        return;
    }
    if (const VGA_VIEWER_ITEM *item = find_line(root, first)) {
        vga_viewer_scroll_view(root, vga_viewer_get_screen_pos(item));
    }
}

NB_USHORT pane_of(const VGA_LIST_WINDOW *window, const VGA_VIEWER_ROOT *root) {
    NB_USHORT pane = 0;
    while (pane < window->list_count && vga_listw_root(window, pane) != root) {
        pane++;
    }
    return pane < window->list_count ? pane : NB_USHORT{VGA_LISTW_NO_LIST};
}

} // namespace

NB_VOID vga_listw_remember_lines(const VGA_LIST_WINDOW *window) {
    if (memory_of(window) != nullptr) {
        return;
    }
    MEMORY &memory = memories[window];
    memory.pane = window->current_pane;
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        VGA_VIEWER_ROOT *root = vga_listw_root(window, pane);
        remember_toggled(root, root->top_items, PATH(), memory.lists[pane]);
        remember_selection(root, memory.lists[pane]);
        remember_place(root, memory.lists[pane]);
    }
}

NB_VOID vga_listw_line_added(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item) {
    if (memories.empty()) {
        return;
    }
    const auto *window = static_cast<const VGA_LIST_WINDOW *>(root->window);
    MEMORY *memory = window != nullptr ? memory_of(window) : nullptr;
    const NB_USHORT pane = memory != nullptr ? pane_of(window, root) : NB_USHORT{VGA_LISTW_NO_LIST};
    if (pane == VGA_LISTW_NO_LIST) {
        return;
    }
    recall_toggled(root, item->parent, memory->lists[pane]);
    recall_selected(root, item, memory->lists[pane]);
}

NB_USHORT vga_listw_remembered_pane(const VGA_LIST_WINDOW *window) {
    const MEMORY *memory = memory_of(window);
    return memory != nullptr ? memory->pane : NB_USHORT{VGA_LISTW_NO_LIST};
}

NB_VOID vga_listw_forget_selection(const VGA_LIST_WINDOW *window) {
    if (MEMORY *memory = memory_of(window)) {
        memory->pane = VGA_LISTW_NO_LIST;
        for (LIST_MEMORY &list : memory->lists) {
            list.selected.clear();
            list.outlined.clear();
        }
    }
}

NB_VOID vga_listw_recall_lines(VGA_LIST_WINDOW *window) {
    MEMORY *memory = memory_of(window);
    if (memory == nullptr) {
        return;
    }
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        recall_place(vga_listw_root(window, pane), memory->lists[pane].first);
    }
    const NB_USHORT pane = memory->pane;
    vga_listw_forget_lines(window);
    if (pane != VGA_LISTW_NO_LIST) {
        vga_listw_forget_pane(window);
        vga_listw_select_pane(window, pane, 1);
    }
}

NB_VOID vga_listw_forget_lines(const VGA_LIST_WINDOW *window) {
    memories.erase(window);
}
