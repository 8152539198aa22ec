/* Finding lines in long lists: what a key takes until it is answered and the program is back in its
 * loop, and until all lines were looked at.
 *
 *   bench_find [number of lines]
 *
 * Times are of the processor, so that a busy machine does not count.  "answered" is the call that a
 * key makes; "longest" is the longest slice behind it, between which events are handled; "complete"
 * is the sum of all.  Status 1 when an answer or a slice takes longer than its goal. */
#include "search.h"
#include "viewerlists.h"
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <malloc.h>

namespace {

using namespace bench;

constexpr double goal = 100; // ms
bool missed = false;

double now() {
    timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

/* The lists' types have no callbacks, which makes them titles; titles are not found. */
NB_VOID make_lines_selectable(NB_VOID) {
    static VGA_VIEWER_DESC types[] = {*vga_viewer_type(0), *vga_viewer_type(1)};
    for (VGA_VIEWER_DESC &type : types) {
        type.arm_cb = [](NB_VOID *, XmDrawnButtonCallbackStruct *) {};
    }
    vga_viewer_set_types(types, std::size(types));
}

/* The key, then the slices as the timer would call them. */
template <class Key> void measure(const char *what, VGA_VIEWER_ROOT *root, const Key &key) {
    const double start = now();
    key();
    const double answered = now() - start;
    double longest = 0;
    for (bool more = true; more;) {
        const double before = now();
        more = vga_finder_work(root, 10000) != 0;
        longest = std::max(longest, now() - before);
    }
    const bool met = answered <= goal && longest <= goal;
    missed = missed || !met;
    printf("%-52s %9.1f %9.1f %9.1f  %s\n", what, answered, longest, now() - start,
           met ? "met" : "MISSED");
    fflush(stdout);
}

void measure_all(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *first) {
    const auto seek = [&](const char *text, bool name) {
        VGA_FINDER_GOAL sought;
        sought.pattern = vga_plain_pattern(text);
        sought.pattern.kind = name ? VGA_PATTERN_BEGINS : VGA_PATTERN_CONTAINS;
        sought.here_too = 1;
        vga_viewer_seek(root, sought, first, VGA_VIEWER_SOUGHT_TEXT);
    };
    const auto filter = [&](const char *text) {
        vga_viewer_filter(root, vga_parse_pattern(text), VGA_ANY_LINE_STATE);
    };
    vga_viewer_has_finder(root);
    measure("type-ahead, no such name, first key", root, [&] { seek("x", true); });
    measure("type-ahead, next key", root, [&] { seek("xy", true); });
    vga_finder_rest(root);
    measure("find, in the last line, first key", root, [&] { seek("0099999 ", false); });
    measure("find, next key", root, [&] { seek("0999999,", false); });
    measure("find, nowhere", root, [&] { seek("no such text", false); });
    measure("numbering of all matches", root,
            [&] { vga_viewer_number(root, vga_plain_pattern("line"), first); });
    vga_finder_stop_numbering(root);
    vga_finder_rest(root);
    measure("filter, first key", root, [&] { filter("5"); });
    measure("filter, next key", root, [&] { filter("55"); });
    measure("filter, next key", root, [&] { filter("555"); });
    measure("filter, Backspace", root, [&] { filter("55"); });
    measure("filter, a name", root, [&] { filter("LINE00*7"); });
    measure("filter, everything passes", root, [&] { filter("e"); });
    measure("filter, all shown again", root, [&] { vga_finder_end_filter(root); });
    const size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
    vga_finder_rest(root);
    const size_t freed = before - (mallinfo2().uordblks + mallinfo2().hblkhd);
    printf("texts that are kept while somebody types: %zu MB\n", freed >> 20);
}

} // namespace

int main(int argc, char **argv) {
    const size_t count = argc > 1 ? strtoul(argv[1], nullptr, 10) : 1000000;
    open_display(false);
    LINES lines = make_lines(count);
    make_lines_selectable();
    OURS list(0);
    list.fill(&lines);
    printf("%-52s %9s %9s %9s\n", "ms", "answered", "longest", "complete");
    measure_all(&list.root, &lines.front().item);
    return missed ? 1 : 0;
}
