#include "finderparts.h"
#include "selection.h"
#include <algorithm>
#include <ctime>

namespace {

constexpr NB_UCHAR not_counted = 0;

const VGA_FINDER_FILTER no_filter;

/* Lines below one that was taken off are in no list. */
bool is_in_list(const VGA_VIEWER_ITEM *item) {
    while (item != nullptr && item->in_list != 0) {
        item = item->parent;
    }
    return item == nullptr;
}

NB_ULONG *counter(VGA_FINDER &finder, NB_UCHAR type, NB_UCHAR state) {
    auto found = std::find_if(finder.counts.begin(), finder.counts.end(),
                              [type](const auto &count) { return count.type == type; });
    if (found == finder.counts.end()) {
        found = finder.counts.insert(found, {type, {}});
    }
    return &found->by_state[state];
}

NB_VOID uncount(VGA_FINDER &finder, VGA_VIEWER_ITEM *item) {
    if (item->counted != not_counted) {
        --*counter(finder, item->type, item->counted - 1U);
        item->counted = not_counted;
    }
}

NB_VOID count(VGA_FINDER &finder, VGA_VIEWER_ITEM *item) {
    uncount(finder, item);
    if (item->fixed == 0) {
        const VGA_LINE_STATE state = finder.source->state(item);
        ++*counter(finder, item->type, state);
        item->counted = static_cast<NB_UCHAR>(state + 1U);
    }
}

/* Calls visit(item) for the item and all below it. */
template <class Visit> NB_VOID for_branch(VGA_VIEWER_ITEM *item, Visit visit) {
    const VGA_VIEWER_ITEM *const end = vga_finder_next_behind(item);
    for (VGA_VIEWER_ITEM *line = item; line != end; line = vga_finder_next(line)) {
        visit(line);
    }
}

uint64_t now(NB_VOID) {
    timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<uint64_t>(time.tv_sec) * 1000000U +
           static_cast<uint64_t>(time.tv_nsec) / 1000U;
}

} // namespace

VGA_FINDER *vga_make_finder(VGA_VIEWER_ROOT *root, const VGA_FINDER_SOURCE &source) {
    if (root->finder == nullptr) {
        root->finder =
            new VGA_FINDER{.root = root, .source = &source, .texts = VGA_LINE_TEXTS(source.text)};
        for (VGA_VIEWER_ITEM *line = root->top_items.first; line != nullptr;
             line = vga_finder_next(line)) {
            line->counted = not_counted;
            line->text_at = 0;
            count(*root->finder, line);
        }
    }
    return root->finder;
}

NB_VOID vga_free_finder(VGA_VIEWER_ROOT *root) {
    delete root->finder;
    root->finder = nullptr;
}

VGA_VIEWER_ITEM *vga_finder_next_behind(const VGA_VIEWER_ITEM *item) {
    VGA_VIEWER_ITEM *next = nullptr;
    for (; item != nullptr && next == nullptr; item = item->parent) {
        next = vga_viewer_next_in_list(item);
    }
    return next;
}

VGA_VIEWER_ITEM *vga_finder_next(const VGA_VIEWER_ITEM *item) {
    return item->children.first != nullptr ? item->children.first : vga_finder_next_behind(item);
}

bool vga_finder_matches(VGA_FINDER &finder, VGA_VIEWER_ITEM *item, const VGA_PATTERN &pattern,
                        NB_UCHAR states) {
    if (vga_viewer_can_select(finder.root, item) == 0) {
        return false;
    }
    if (states != VGA_ANY_LINE_STATE &&
        (states & VGA_STATES_SET(finder.source->state(item))) == 0) {
        return false;
    }
    return pattern.kind == VGA_PATTERN_ALL ||
           vga_pattern_matches(pattern, finder.texts.of(item)) != 0;
}

NB_USHORT vga_finder_work(VGA_VIEWER_ROOT *root, NB_ULONG microseconds) {
    if (root->finder == nullptr) {
        return 0;
    }
    VGA_FINDER &finder = *root->finder;
    const uint64_t end = now() + microseconds;
    const VGA_VIEWER_ITEM *const unfiltered = finder.unfiltered;
    bool more = false;
    do {
        more = vga_finder_filter_some(finder) || vga_finder_seek_some(finder) ||
               vga_finder_number_some(finder);
    } while (more && now() < end);
    if (finder.unfiltered != unfiltered) {
        vga_viewer_changed_all(root);
    }
    finder.source->news(root);
    return more;
}

NB_VOID vga_finder_rest(VGA_VIEWER_ROOT *root) {
    const VGA_FINDER *finder = root->finder;
    if (finder != nullptr && finder->numbering.on == 0 && finder->unfiltered == nullptr &&
        finder->seek.result != VGA_FINDER_SEEKING) {
        root->finder->texts.drop(root);
    }
}

NB_ULONG vga_finder_count(const VGA_VIEWER_ROOT *root, NB_USHORT type, VGA_LINE_STATE state) {
    NB_ULONG sum = 0;
    if (root->finder != nullptr) {
        for (const VGA_FINDER_COUNT &row : root->finder->counts) {
            for (NB_USHORT at = 0; row.type == type && at < VGA_LINE_STATES; at++) {
                sum += state == VGA_LINE_STATES || state == at ? row.by_state[at] : 0;
            }
        }
    }
    return sum;
}

NB_ULONG vga_finder_count_all(const VGA_VIEWER_ROOT *root, VGA_LINE_STATE state) {
    NB_ULONG sum = 0;
    if (root->finder != nullptr) {
        for (const VGA_FINDER_COUNT &row : root->finder->counts) {
            sum += row.by_state[state];
        }
    }
    return sum;
}

const VGA_FINDER_FILTER &vga_finder_filter_of(const VGA_VIEWER_ROOT *root) {
    return root->finder != nullptr ? root->finder->filter : no_filter;
}

/* What happens to lines. */

NB_VOID vga_finder_line_came(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item) {
    if (root->finder == nullptr || !is_in_list(item)) {
        return;
    }
    for_branch(item, [root](VGA_VIEWER_ITEM *line) {
        count(*root->finder, line);
        vga_finder_filter_line(*root->finder, line);
    });
    vga_finder_renumber(*root->finder);
    root->finder->source->news(root);
}

NB_VOID vga_finder_line_changed(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item) {
    if (root->finder == nullptr || !is_in_list(item)) {
        return;
    }
    item->text_at = 0;
    count(*root->finder, item);
    vga_finder_filter_line(*root->finder, item);
    vga_finder_renumber(*root->finder);
    root->finder->source->news(root);
}

NB_VOID vga_finder_line_goes(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item) {
    if (root->finder == nullptr || !is_in_list(item)) {
        return;
    }
    vga_finder_leave(*root->finder, item);
    for_branch(item, [root](VGA_VIEWER_ITEM *line) {
        uncount(*root->finder, line);
        vga_finder_forget(*root->finder, line);
        line->text_at = 0;
    });
}

NB_VOID vga_finder_line_gone(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *parent) {
    if (root->finder == nullptr) {
        return;
    }
    if (root->finder->filter.on != 0) {
        vga_finder_settle(*root->finder, parent);
    }
    vga_finder_renumber(*root->finder);
    root->finder->source->news(root);
}
