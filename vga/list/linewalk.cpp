#include "finderparts.h"

namespace {

constexpr NB_USHORT lines_a_time = 32;

bool shows_children(const VGA_VIEWER_ITEM *item, NB_USHORT open_only) {
    return (open_only == 0 || item->expanded != 0) && vga_viewer_has_children(item) != 0;
}

/* The next line that is not hidden; null at the end.  Of hidden ones there may be many, so they are
 * not walked through. */
VGA_VIEWER_ITEM *next_shown(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item,
                            NB_USHORT open_only) {
    if (shows_children(item, open_only)) {
        return vga_viewer_find_in_list(&item->children, 0);
    }
    VGA_VIEWER_ITEM *next = nullptr;
    for (; item != nullptr && next == nullptr; item = item->parent) {
        next = vga_viewer_next_in_list(item);
        if (next != nullptr && next->hidden != 0) {
            next = vga_viewer_next_sibling(root, item);
        }
    }
    return next;
}

VGA_VIEWER_ITEM *last_of(const VGA_VIEWER_LIST *list, NB_USHORT open_only) {
    const NB_ULONG lines = vga_viewer_list_lines(list);
    VGA_VIEWER_ITEM *last = lines != 0 ? vga_viewer_find_in_list(list, lines - 1) : nullptr;
    return last != nullptr && shows_children(last, open_only) ? last_of(&last->children, open_only)
                                                              : last;
}

VGA_VIEWER_ITEM *previous_shown(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT open_only) {
    VGA_VIEWER_ITEM *previous = vga_viewer_previous_in_list(item);
    if (previous != nullptr && previous->hidden != 0) {
        previous = vga_viewer_prev_sibling(root, item);
    }
    if (previous == nullptr) {
        return item->parent;
    }
    return shows_children(previous, open_only) ? last_of(&previous->children, open_only) : previous;
}

VGA_VIEWER_ITEM *end_of(const VGA_VIEWER_ROOT *root, const VGA_FINDER_GOAL &goal) {
    return goal.up != 0 ? last_of(&root->top_items, goal.open_only)
                        : vga_viewer_find_in_list(&root->top_items, 0);
}

VGA_VIEWER_ITEM *step(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, const VGA_FINDER_GOAL &goal) {
    return goal.up != 0 ? previous_shown(root, item, goal.open_only)
                        : next_shown(root, item, goal.open_only);
}

NB_VOID end_seek(VGA_FINDER_SEEK &seek, VGA_FINDER_RESULT result, VGA_VIEWER_ITEM *line) {
    seek.result = result;
    seek.at = line;
    seek.last = nullptr;
}

/* Goes on behind a line without a match. */
NB_VOID go_on(VGA_FINDER &finder, VGA_FINDER_SEEK &seek) {
    VGA_VIEWER_ITEM *next =
        seek.at == seek.last && seek.wrapped != 0 ? nullptr : step(finder.root, seek.at, seek.goal);
    if (next == nullptr && seek.wrapped == 0) {
        seek.wrapped = 1;
        next = end_of(finder.root, seek.goal);
    }
    const bool around = seek.goal.here_too != 0 && seek.wrapped != 0 && next == seek.last;
    if (next == nullptr || around) {
        end_seek(seek, VGA_FINDER_NONE, nullptr);
    } else {
        seek.at = next;
    }
}

/* From the first line again, with what was known until then still told. */
NB_VOID begin_numbering(VGA_FINDER &finder) {
    VGA_FINDER_NUMBERING &numbering = finder.numbering;
    numbering.total = numbering.number = 0;
    numbering.stale = 0;
    numbering.known.pending = 1;
    numbering.at = vga_viewer_find_in_list(&finder.root->top_items, 0);
    finder.source->work_due(finder.root);
}

} // namespace

NB_VOID vga_finder_seek(VGA_VIEWER_ROOT *root, const VGA_FINDER_GOAL &goal, VGA_VIEWER_ITEM *from) {
    if (root->finder == nullptr) {
        return;
    }
    VGA_FINDER_SEEK &seek = root->finder->seek;
    seek = {.result = VGA_FINDER_SEEKING, .goal = goal};
    if (from == nullptr) {
        seek.goal.here_too = 1;
        from = end_of(root, goal);
    }
    seek.at = seek.last = from;
    if (from == nullptr) {
        end_seek(seek, VGA_FINDER_NONE, nullptr);
    } else if (seek.goal.here_too == 0) {
        go_on(*root->finder, seek);
    }
    root->finder->source->work_due(root);
}

VGA_FINDER_RESULT vga_finder_result(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM **line, NB_USHORT take) {
    if (root->finder == nullptr) {
        return VGA_FINDER_IDLE;
    }
    VGA_FINDER_SEEK &seek = root->finder->seek;
    const VGA_FINDER_RESULT result = seek.result;
    *line = result == VGA_FINDER_FOUND ? seek.at : nullptr;
    if (take != 0 && result != VGA_FINDER_SEEKING) {
        end_seek(seek, VGA_FINDER_IDLE, nullptr);
    }
    return result;
}

NB_VOID vga_finder_mark(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *line) {
    if (root->finder != nullptr) {
        root->finder->marked = line;
    }
}

VGA_VIEWER_ITEM *vga_finder_marked(const VGA_VIEWER_ROOT *root) {
    return root->finder != nullptr ? root->finder->marked : nullptr;
}

bool vga_finder_seek_some(VGA_FINDER &finder) {
    VGA_FINDER_SEEK &seek = finder.seek;
    for (NB_USHORT at = 0; at < lines_a_time && seek.result == VGA_FINDER_SEEKING; at++) {
        if (seek.at->hidden == 0 &&
            vga_finder_matches(finder, seek.at, seek.goal.pattern, seek.goal.states)) {
            end_seek(seek, VGA_FINDER_FOUND, seek.at);
        } else {
            go_on(finder, seek);
        }
    }
    return seek.result == VGA_FINDER_SEEKING;
}

NB_VOID vga_finder_number(VGA_VIEWER_ROOT *root, const VGA_PATTERN &pattern,
                          VGA_VIEWER_ITEM *current) {
    if (root->finder == nullptr) {
        return;
    }
    VGA_FINDER_NUMBERING &numbering = root->finder->numbering;
    numbering.on = 1;
    numbering.pattern = pattern;
    numbering.current = current;
    begin_numbering(*root->finder);
}

NB_VOID vga_finder_stop_numbering(VGA_VIEWER_ROOT *root) {
    if (root->finder != nullptr) {
        root->finder->numbering = {};
    }
}

VGA_FINDER_NUMBERS vga_finder_numbers(const VGA_VIEWER_ROOT *root) {
    return root->finder != nullptr ? root->finder->numbering.known : VGA_FINDER_NUMBERS{};
}

bool vga_finder_number_some(VGA_FINDER &finder) {
    VGA_FINDER_NUMBERING &numbering = finder.numbering;
    if (numbering.on == 0 || numbering.known.pending == 0) {
        return false;
    }
    for (NB_USHORT at = 0; at < lines_a_time && numbering.at != nullptr; at++) {
        if (numbering.at->hidden == 0 &&
            vga_finder_matches(finder, numbering.at, numbering.pattern, VGA_ANY_LINE_STATE)) {
            ++numbering.total;
            numbering.number =
                numbering.at == numbering.current ? numbering.total : numbering.number;
        }
        numbering.at = next_shown(finder.root, numbering.at, 0);
    }
    if (numbering.at != nullptr) {
        return true;
    }
    numbering.known = {numbering.total, numbering.number, 0};
    const bool again = numbering.stale != 0;
    if (again) {
        begin_numbering(finder);
    }
    return again;
}

NB_VOID vga_finder_renumber(VGA_FINDER &finder) {
    VGA_FINDER_NUMBERING &numbering = finder.numbering;
    if (numbering.on != 0) {
        if (numbering.known.pending == 0) {
            begin_numbering(finder);
        }
        numbering.stale = 1; // what changed may lie behind the line that is looked at
    }
}

NB_VOID vga_finder_leave(VGA_FINDER &finder, VGA_VIEWER_ITEM *item) {
    VGA_FINDER_SEEK &seek = finder.seek;
    VGA_VIEWER_ITEM *const behind = vga_finder_next_behind(item);
    if (vga_viewer_is_within(seek.at, item) != 0 || vga_viewer_is_within(seek.last, item) != 0) {
        if (seek.result == VGA_FINDER_SEEKING) {
            seek.goal.here_too = 1;
            seek.at = seek.last = behind != nullptr ? behind : finder.root->top_items.first;
            seek.wrapped = 0;
        }
        if (seek.result != VGA_FINDER_SEEKING || vga_viewer_is_within(seek.at, item) != 0) {
            end_seek(seek, VGA_FINDER_IDLE, nullptr);
        }
    }
    VGA_FINDER_NUMBERING &numbering = finder.numbering;
    numbering.at = vga_viewer_is_within(numbering.at, item) != 0 ? behind : numbering.at;
    numbering.current =
        vga_viewer_is_within(numbering.current, item) != 0 ? nullptr : numbering.current;
    finder.marked = vga_viewer_is_within(finder.marked, item) != 0 ? behind : finder.marked;
    finder.unfiltered =
        vga_viewer_is_within(finder.unfiltered, item) != 0 ? behind : finder.unfiltered;
}
