// Finding in a long list: a key is answered at once, and events are handled while the rest of the
// lines is looked through.
#include "viewer_fixture.h"

#include "search.h"
#include <ctime>

namespace {

double processor_ms() {
    timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

bool ended;

TEST_F(Viewer, ALongSearchKeepsNobodyWaiting) {
    constexpr double bound = 100;
    fill(100000);
    display();
    vga_viewer_select(&records[0]->item, &root, 0, 0, 1, 1);
    vga_viewer_has_finder(&root);
    gvga_viewer_finding.sought = [](VGA_VIEWER_ROOT *, VGA_VIEWER_SOUGHT,
                                    VGA_FINDER_RESULT result) {
        ended = result == VGA_FINDER_NONE;
    };
    ended = false;
    VGA_FINDER_GOAL goal;
    goal.pattern = vga_plain_pattern("nowhere");
    double start = processor_ms();
    vga_viewer_seek(&root, goal, nullptr, VGA_VIEWER_SOUGHT_TEXT);
    EXPECT_LT(processor_ms() - start, bound);
    ASSERT_FALSE(ended) << "the list is too short for this test";

    // Keys of the list work meanwhile.
    gui::give_focus(shell);
    XmProcessTraversal(draw_widget, XmTRAVERSE_CURRENT);
    gui::key("Down");
    double longest = 0;
    bool moved = false;
    while (!ended) {
        start = processor_ms();
        XtAppProcessEvent(gvga_appcontext, XtIMAll);
        longest = std::max(longest, processor_ms() - start);
        moved = moved || records[1]->item.selected != 0;
    }
    EXPECT_TRUE(moved) << "before the search has ended";
    EXPECT_LT(longest, bound);

    start = processor_ms();
    vga_viewer_filter(&root, vga_parse_pattern("group99999"), VGA_ANY_LINE_STATE);
    EXPECT_LT(processor_ms() - start, bound);
    EXPECT_TRUE(gui::wait_for([] { return vga_viewer_list_lines(&root.top_items) == 1; }, 20000));
    gvga_viewer_finding = {};
}

} // namespace
