#include "finderparts.h"
#include "selection.h"

namespace {

/* What the filter has said of a line (VGA_VIEWER_ITEM::filtered). */
constexpr NB_UCHAR unknown = 0, passes = 1, fails = 2, kept = 3;
constexpr NB_UCHAR verdict = 3; /* bits of it */
constexpr NB_UCHAR opened = 4;  /* flag: the filter opened it */

constexpr NB_LONG lines_kept = 1000; /* of a selection, looked at before all others */
constexpr NB_USHORT lines_a_time = 32;

NB_UCHAR verdict_of(const VGA_VIEWER_ITEM *item) {
    return item->filtered & verdict;
}

NB_VOID set_verdict(VGA_FINDER &finder, VGA_VIEWER_ITEM *item, NB_UCHAR said) {
    finder.filter.passed -= verdict_of(item) == passes;
    finder.filter.passed += said == passes;
    item->filtered = static_cast<NB_UCHAR>((item->filtered & opened) | said);
}

bool is_hidden(const VGA_VIEWER_ITEM *item) {
    return verdict_of(item) != passes && vga_viewer_has_children(item) == 0;
}

/* What is below a line that is closed would not be seen. */
NB_VOID open_above(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item) {
    for (VGA_VIEWER_ITEM *above = item->parent; above != nullptr; above = above->parent) {
        if (above->expanded == 0) {
            above->filtered |= opened;
            vga_viewer_set_quietly(root, above, above->hidden, 1);
        }
    }
}

/* Returns whether it passes. */
bool judge(VGA_FINDER &finder, VGA_VIEWER_ITEM *item) {
    const bool good = vga_finder_matches(finder, item, finder.filter.pattern, finder.filter.states);
    const bool news = good && item->hidden != 0;
    set_verdict(finder, item, good ? passes : fails);
    vga_finder_settle(finder, item);
    vga_finder_settle(finder, item->parent); // a line that came may be shown already
    if (news) {
        open_above(finder.root, item);
    }
    return good;
}

/* The selected lines, and the one with the keyboard, are not hidden for as long as it takes to look
 * at all others. */
NB_VOID keep_selection(VGA_FINDER &finder) {
    VGA_VIEWER_ROOT *root = finder.root;
    const auto keep = [&finder](VGA_VIEWER_ITEM *item) {
        const bool good =
            vga_finder_matches(finder, item, finder.filter.pattern, finder.filter.states);
        set_verdict(finder, item, good ? kept : unknown);
    };
    const VGA_VIEWER_ITEM *parent = root->select_parent;
    const VGA_VIEWER_LIST &list = parent != nullptr ? parent->children : root->top_items;
    for (NB_LONG at = 0; at < root->select_count && at < lines_kept; at++) {
        keep(vga_viewer_find_selected(&list, static_cast<NB_ULONG>(at)));
    }
    for (VGA_VIEWER_ITEM *item : {root->outline_viewer, root->select_anchor}) {
        if (item != nullptr) {
            keep(item);
        }
    }
}

/* Nothing may refer to a line that is hidden now. */
NB_VOID let_go_of_hidden(VGA_VIEWER_ROOT *root) {
    VGA_VIEWER_ITEM *parent = root->select_parent;
    const VGA_VIEWER_LIST &list = parent != nullptr ? parent->children : root->top_items;
    if (root->select_count > lines_kept) {
        vga_viewer_deselect_all(root, 0);
    }
    for (NB_ULONG at = 0; at < static_cast<NB_ULONG>(root->select_count);) {
        VGA_VIEWER_ITEM *item = vga_viewer_find_selected(&list, at);
        if (item == nullptr) {
            break;
        }
        if (item->hidden != 0) {
            vga_viewer_let_go(root, item);
        } else {
            at++;
        }
    }
    for (VGA_VIEWER_ITEM **line : {&root->select_anchor, &root->outline_viewer, &root->last_dragged,
                                   &root->armed, &root->clicked}) {
        *line = *line != nullptr && vga_viewer_is_visible(*line) != 0 ? *line : nullptr;
    }
}

/* A filter that was wider needs no second look at what failed, one that was narrower none at what
 * passed; until it was looked at, a line is hidden. */
struct FORGETTING {
    VGA_FINDER *finder;
    bool keep_passed;
};
NB_VOID forget_line(VGA_VIEWER_ITEM *item, NB_VOID *data) {
    const auto *how = static_cast<const FORGETTING *>(data);
    const NB_UCHAR said = verdict_of(item);
    const bool stays = said == kept || (said == passes && how->keep_passed);
    set_verdict(*how->finder, item, stays ? passes : unknown);
    item->hidden = is_hidden(item);
}

NB_VOID show_line(VGA_VIEWER_ITEM *item, NB_VOID *data) {
    const auto *root = static_cast<const VGA_VIEWER_ROOT *>(data);
    const bool in_use =
        vga_viewer_is_within(root->outline_viewer, item) != 0 ||
        (root->select_count != 0 && vga_viewer_is_within(root->select_parent, item) != 0);
    if ((item->filtered & opened) != 0 && !in_use) {
        item->expanded = 0;
    }
    item->filtered = unknown;
    item->hidden = 0;
}

/* Tells the window when the selection is another behind a call. */
class WATCH {
public:
    explicit WATCH(VGA_VIEWER_ROOT *watched)
        : root(watched), type(root->select_type), count(root->select_count) {}
    WATCH(const WATCH &) = delete;
    WATCH &operator=(const WATCH &) = delete;
    ~WATCH() {
        if (root->select_count != count) {
            vga_viewer_notify(root, type);
        }
    }

private:
    VGA_VIEWER_ROOT *root;
    NB_SHORT type;
    NB_LONG count;
};

} // namespace

NB_VOID vga_finder_forget(VGA_FINDER &finder, VGA_VIEWER_ITEM *item) {
    set_verdict(finder, item, unknown);
}

NB_VOID vga_finder_settle(VGA_FINDER &finder, VGA_VIEWER_ITEM *item) {
    for (; item != nullptr && item->hidden != is_hidden(item); item = item->parent) {
        if (item->hidden == 0) {
            vga_viewer_let_go(finder.root, item);
        }
        vga_viewer_set_quietly(finder.root, item, item->hidden == 0, item->expanded);
    }
}

NB_VOID vga_finder_filter_line(VGA_FINDER &finder, VGA_VIEWER_ITEM *item) {
    if (finder.filter.on == 0) {
        return;
    }
    const WATCH watch(finder.root);
    const NB_USHORT hidden = item->hidden;
    judge(finder, item);
    /* The first line below one opens it, were it not hidden. */
    VGA_VIEWER_ITEM *parent = item->parent;
    if (item->hidden != 0 && parent != nullptr && parent->parent == nullptr &&
        parent->children.count == 1) {
        parent->expanded = 1;
    }
    if (item->hidden != hidden) {
        vga_viewer_changed_all(finder.root);
    }
}

bool vga_finder_filter_some(VGA_FINDER &finder) {
    if (finder.unfiltered == nullptr) {
        return false;
    }
    const WATCH watch(finder.root);
    for (NB_USHORT at = 0; at < lines_a_time && finder.unfiltered != nullptr; at++) {
        VGA_VIEWER_ITEM *item = finder.unfiltered;
        const bool sure = verdict_of(item) == (finder.narrows ? fails : passes);
        if (!sure) {
            judge(finder, item);
        }
        finder.unfiltered = vga_finder_next(item);
    }
    const bool more = finder.unfiltered != nullptr;
    finder.filter.pending = more;
    if (!more) {
        vga_finder_renumber(finder);
    }
    return more;
}

NB_VOID vga_finder_filter(VGA_VIEWER_ROOT *root, const VGA_PATTERN &pattern, NB_UCHAR states) {
    if (root->finder == nullptr || vga_pattern_is_valid(pattern) == 0) {
        return;
    }
    VGA_FINDER &finder = *root->finder;
    VGA_FINDER_FILTER &filter = finder.filter;
    const WATCH watch(root);
    const bool was_on = filter.on != 0;
    const bool narrows = was_on && (states & ~filter.states) == 0 &&
                         vga_pattern_narrows(pattern, filter.pattern) != 0;
    const bool widens = was_on && (filter.states & ~states) == 0 &&
                        vga_pattern_narrows(filter.pattern, pattern) != 0;
    filter.on = filter.pending = 1;
    filter.pattern = pattern;
    filter.states = states;
    finder.narrows = narrows;
    finder.unfiltered = root->top_items.first;
    if (!narrows) {
        FORGETTING how = {&finder, widens};
        keep_selection(finder);
        vga_viewer_sweep(root, forget_line, &how);
        let_go_of_hidden(root);
        vga_viewer_changed_all(root);
    }
    finder.source->work_due(root);
}

NB_VOID vga_finder_end_filter(VGA_VIEWER_ROOT *root) {
    if (root->finder == nullptr || root->finder->filter.on == 0) {
        return;
    }
    root->finder->filter = {};
    root->finder->unfiltered = nullptr;
    vga_viewer_sweep(root, show_line, root);
    vga_viewer_changed_all(root);
    vga_finder_renumber(*root->finder);
    root->finder->source->news(root);
}
