/* The viewer beside a list that only draws and beside the toolkit's own list: time and memory, from
 * a thousand lines to a million.
 *
 *   bench_viewer [largest number of lines [server-font]]
 *
 * Lists are drawn in the scalable font that is shipped or, when asked, in one of the server, all in
 * the same.  Times are of the wall, with the server's part (every measured drawing ends with
 * XSync), but for those called processor time: the client's is this process's, and the server's is
 * had where the server is our own (without DISPLAY).  The lists take turns, and a ratio is the
 * median of the ratios of the turns, so that a machine that is busy with other things slows both
 * sides alike.  Status 1 when a goal is missed. */
#include "graphics.h"
#include "viewerlists.h"
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <malloc.h>
#include <memory>
#include <numeric>
#include <random>

namespace {

using namespace bench;

constexpr size_t list_limit = 100000;  /* beyond, the toolkit's list takes minutes */
constexpr size_t churn_lines = 100000; /* for the single operations */
constexpr double fill_goal = 0.5;      /* of the toolkit's list */
constexpr double bare_fill_goal = 1.2; /* of the bare list, at list_limit */
constexpr double page_goal = 1.3;      /* of the bare list */
constexpr double list_goal = 1;        /* of the toolkit's list */
constexpr double growth_goal = 1.2;    /* a page of the longest list to one of the shortest */
constexpr double insert_goal = 1;      /* ms */
constexpr double random_goal = 2;      /* s */
constexpr double memory_goal = 200;    /* bytes */

bool missed = false;

double seconds(clockid_t which) {
    timespec now;
    clock_gettime(which, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

template <class Work> double wall(const Work &work) {
    const double start = seconds(CLOCK_MONOTONIC);
    work();
    return seconds(CLOCK_MONOTONIC) - start;
}

template <class Work> double processor(const Work &work) {
    const double start = seconds(CLOCK_PROCESS_CPUTIME_ID);
    work();
    return seconds(CLOCK_PROCESS_CPUTIME_ID) - start;
}

double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2),
                     values.end());
    return values[values.size() / 2];
}

/* What both did in the same turns. */
struct TURNS {
    std::vector<double> ours, theirs, ratios;
    void add(double our, double their) {
        ours.push_back(our);
        theirs.push_back(their);
        ratios.push_back(our / their);
    }
};

/* Processor time of the client and of the server, in ms. */
struct COSTS {
    std::vector<double> client, server;
    template <class Work> double of(const Work &work) {
        const double before = server_seconds();
        double time = 0;
        client.push_back(processor([&] { time = wall(work); }) * 1e3);
        server.push_back((server_seconds() - before) * 1e3);
        return time * 1e3;
    }
};

/* A row of the table: our figure, theirs and the ratio, where there are any, and a goal for the
 * ratio or, without one, for our figure. */
void print(const char *what, size_t lines, double ours, const char *unit, double theirs = 0,
           double ratio = 0, double goal = 0) {
    printf("%-50s %8zu  %9.3f %-5s", what, lines, ours, unit);
    if (theirs != 0) {
        printf(" %9.3f  %6.2f", theirs, ratio != 0 ? ratio : ours / theirs);
    } else {
        printf(" %9s  %6s", "", "");
    }
    if (goal != 0) {
        const bool met = (theirs != 0 ? (ratio != 0 ? ratio : ours / theirs) : ours) <= goal;
        printf("  %5g %s", goal, met ? "met" : "MISSED");
        missed = missed || !met;
    }
    printf("\n");
    fflush(stdout);
}

void print_costs(const std::string &beside, size_t lines, const COSTS &ours, const COSTS &theirs) {
    print(("  client's processor time, beside the " + beside).c_str(), lines, median(ours.client),
          "ms", median(theirs.client));
    if (median(theirs.server) > 0) {
        print(("  server's processor time, beside the " + beside).c_str(), lines,
              median(ours.server), "ms", median(theirs.server));
    }
}

struct LISTS {
    OURS ours{0}, other{1};
    BARE bare{2};
    TOOLKIT toolkit{3};
};

/* Filling, and what a line takes of memory. */

void measure_fill(LISTS *lists, LINES *lines) {
    const size_t count = lines->size();
    const int rounds = count > list_limit ? 1 : 3;
    TURNS turns;
    std::vector<double> bare;
    for (int round = 0; round < rounds; ++round) {
        const double ours = wall([&] { lists->ours.fill(lines); });
        lists->ours.clear(lines);
        bare.push_back(wall([&] { lists->bare.fill(*lines); }));
        double theirs = 0;
        if (count <= list_limit) {
            theirs = wall([&] { lists->toolkit.fill(*lines); });
            lists->toolkit.clear();
        }
        turns.add(ours * 1e3, theirs * 1e3);
    }
    const double theirs = median(turns.theirs);
    print("fill and show, beside the toolkit's in bulk", count, median(turns.ours), "ms", theirs,
          theirs != 0 ? median(turns.ratios) : 0, theirs != 0 ? fill_goal : 0);
    print("fill and show, beside the bare list", count, median(turns.ours), "ms",
          median(bare) * 1e3, 0, count == list_limit ? bare_fill_goal : 0);
}

double allocated() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

void measure_memory(LISTS *lists, LINES *lines) {
    const double count = static_cast<double>(lines->size());
    double before = allocated();
    lists->ours.fill(lines);
    const double ours = sizeof(VGA_VIEWER_ITEM) + (allocated() - before) / count;
    lists->ours.clear(lines);
    before = allocated();
    lists->toolkit.fill(*lines);
    const double theirs = (allocated() - before) / count;
    lists->toolkit.clear();
    print("memory a line, beside the record", lines->size(), ours, "bytes", 0, 0, memory_goal);
    print("memory a line, beside the toolkit's", lines->size(), ours, "bytes", theirs);
}

/* Scrolling. */

void measure_pages(LISTS *lists, LINES *lines) {
    constexpr int steps = 120;
    const size_t count = lines->size(), pages = count / page_lines - 1;
    lists->ours.fill(lines);
    lists->bare.fill(*lines);
    const bool toolkit = count <= list_limit;
    if (toolkit) {
        lists->toolkit.fill(*lines);
    }
    catch_up();
    std::mt19937 random(1);
    TURNS bare, list;
    COSTS our_costs, bare_costs, list_costs;
    for (int step = 0; step < steps; ++step) {
        // Half of them one page further, half of them anywhere.
        const size_t page = step % 2 == 0 ? static_cast<size_t>(step) % pages : random() % pages;
        const size_t first = page * page_lines;
        const auto our_step = [&] { return our_costs.of([&] { lists->ours.step(first); }); };
        const auto bare_step = [&] { return bare_costs.of([&] { lists->bare.step(first); }); };
        const bool turn = step % 4 < 2;
        const double one = turn ? our_step() : bare_step(), other = turn ? bare_step() : our_step();
        bare.add(turn ? one : other, turn ? other : one);
        if (toolkit) {
            list.add(bare.ours.back(), list_costs.of([&] { lists->toolkit.step(first); }));
        }
    }
    print("page step, beside the bare list", count, median(bare.ours), "ms", median(bare.theirs),
          median(bare.ratios), page_goal);
    print_costs("bare list", count, our_costs, bare_costs);
    if (toolkit) {
        print("page step, beside the toolkit's", count, median(list.ours), "ms",
              median(list.theirs), median(list.ratios), list_goal);
        print_costs("toolkit's", count, our_costs, list_costs);
        lists->toolkit.clear();
    }
    const double found = wall([&] {
        for (int i = 0; i < 100000; ++i) {
            const NB_ULONG y =
                static_cast<NB_ULONG>(random()) % vga_viewer_get_content_height(&lists->ours.root);
            if (vga_find_viewer(&lists->ours.root, static_cast<NB_LONG>(y)) == nullptr &&
                y < count * gvga_viewer_item_height) {
                abort();
            }
        }
    });
    print("search of the line at a height", count, found * 1e9 / 100000, "ns");
    lists->ours.clear(lines);
}

/* Random pages of the longest list and of the shortest in turns. */
void measure_growth(LISTS *lists, size_t shortest, size_t longest) {
    constexpr int steps = 200;
    LINES few = make_lines(shortest), many = make_lines(longest);
    lists->ours.fill(&many);
    lists->other.fill(&few);
    catch_up();
    std::mt19937 random(4);
    TURNS turns;
    for (int step = 0; step < steps; ++step) {
        const auto page = [&](OURS *list, size_t count) {
            const size_t first = random() % (count / page_lines) * page_lines;
            return wall([&] { list->step(first); }) * 1e3;
        };
        const double other = page(&lists->other, shortest);
        turns.add(page(&lists->ours, longest), other);
    }
    print("page step, beside one of the shortest list", longest, median(turns.ours), "ms",
          median(turns.theirs), median(turns.ratios), growth_goal);
    lists->ours.clear(&many);
    lists->other.clear(&few);
}

/* Single operations in a long list. */

/* Inserts lines in the middle of the displayed list, each with its redraw, and takes them out. */
void measure_inserts(LISTS *lists, LINES *lines) {
    constexpr size_t rounds = 200, list_rounds = 10;
    LINES extra = make_lines(rounds);
    OURS &ours = lists->ours;
    ours.step(lines->size() / 2 - page_lines / 2);
    VGA_VIEWER_ITEM *middle =
        &(*lines)[lines->size() / 2 / group_lines * group_lines].item; // a group
    std::vector<double> inserts, deletes, theirs;
    for (LINE &line : extra) {
        inserts.push_back(wall([&] {
            vga_create_viewer(&ours.root, &line.item, 0, &line, nullptr, middle);
            ours.draw();
        }));
    }
    for (LINE &line : extra) {
        deletes.push_back(wall([&] {
            vga_delete_viewer(&ours.root, &line.item);
            ours.draw();
        }));
    }
    lists->toolkit.fill(*lines);
    lists->toolkit.step(lines->size() / 2 - page_lines / 2);
    for (size_t i = 0; i < list_rounds; ++i) {
        theirs.push_back(wall([&] {
            lists->toolkit.insert(lines->size() / 2, extra[i]);
            lists->toolkit.draw();
        }));
    }
    print("insert in the middle, drawn", lines->size(), median(inserts) * 1e3, "ms", 0, 0,
          insert_goal);
    print("insert in the middle, drawn, toolkit's", lines->size(), median(inserts) * 1e3, "ms",
          median(theirs) * 1e3);
    print("delete in the middle, drawn", lines->size(), median(deletes) * 1e3, "ms");
}

/* Status changes one after the other, drawn after every hundred: on lines all over the list, and on
 * those of the page that is shown. */
void measure_changes(LISTS *lists, LINES *lines) {
    constexpr int changes = 100000, burst = 100, list_changes = 1000;
    std::mt19937 random(2);
    for (const bool shown : {false, true}) {
        const size_t range = shown ? page_lines : lines->size();
        lists->ours.step(0);
        lists->toolkit.step(0);
        const auto place = [&] { return static_cast<size_t>(random()) % range; };
        const double ours = wall([&] {
            for (int i = 0; i < changes; ++i) {
                vga_update_viewer(&lists->ours.root, &(*lines)[place()].item);
                if (i % burst == burst - 1) {
                    lists->ours.draw();
                }
            }
        });
        const double theirs = wall([&] {
            for (int i = 0; i < list_changes; ++i) {
                const size_t line = place();
                lists->toolkit.replace(line, (*lines)[line]);
                if (i % burst == burst - 1) {
                    lists->toolkit.draw();
                }
            }
        });
        print(shown ? "status change of a line that is shown" : "status change of any line",
              lines->size(), ours * 1e6 / changes, "us", theirs * 1e6 / list_changes);
    }
}

void measure_opening(LISTS *lists, LINES *lines) {
    OURS &ours = lists->ours;
    const auto all = [&](auto call) {
        return wall([&] {
            for (size_t i = 0; i < lines->size(); i += group_lines) {
                call(&ours.root, &(*lines)[i].item, 1);
            }
            ours.draw();
        });
    };
    ours.step(lines->size() / 2);
    print("close all groups", lines->size(), all(vga_viewer_contract) * 1e3, "ms");
    print("open all groups", lines->size(), all(vga_expand_viewer) * 1e3, "ms");
}

/* Inserts at random places, then deletes in random order, drawn at the end. */
void measure_random(LISTS *lists, size_t count, double goal) {
    LINES lines = make_lines(count);
    std::mt19937 random(3);
    std::vector<size_t> order(count);
    std::iota(order.begin(), order.end(), 0);
    VGA_VIEWER_ROOT *root = &lists->ours.root;
    const double inserted = processor([&] {
        for (size_t i = 0; i < count; ++i) {
            VGA_VIEWER_ITEM *after = i == 0 ? VGA_VIEWER_LAST : &lines[random() % i].item;
            vga_create_viewer(root, &lines[i].item, 0, &lines[i], nullptr, after);
        }
        lists->ours.draw();
    });
    std::shuffle(order.begin(), order.end(), random);
    const double deleted = processor([&] {
        for (const size_t i : order) {
            vga_delete_viewer(root, &lines[i].item);
        }
        lists->ours.draw();
    });
    print("random inserts, processor time", count, inserted, "s", 0, 0, goal);
    print("random deletes, processor time", count, deleted, "s");
}

} // namespace

int main(int argc, char **argv) {
    const size_t largest = std::max(argc > 1 ? strtoul(argv[1], nullptr, 10) : 1000000, 1000UL);
    open_display(argc > 2 && strcmp(argv[2], "server-font") == 0);
    LISTS lists;
    catch_up();
    printf("%-50s %8s  %9s %-5s %9s  %6s  %5s\n", "", "lines", "viewer", "", "other", "ratio",
           "goal");
    for (size_t count = 1000; count <= largest; count *= 10) {
        LINES lines = make_lines(count);
        measure_fill(&lists, &lines);
    }
    for (size_t count = 1000; count <= largest; count *= 10) {
        LINES lines = make_lines(count);
        measure_pages(&lists, &lines);
    }
    measure_growth(&lists, 1000, largest);
    LINES lines = make_lines(std::min(churn_lines, largest));
    measure_memory(&lists, &lines);
    lists.ours.fill(&lines);
    measure_inserts(&lists, &lines);
    measure_changes(&lists, &lines);
    measure_opening(&lists, &lines);
    lists.ours.clear(&lines);
    lists.toolkit.clear();
    for (size_t count = 1000; count <= largest; count *= 10) {
        measure_random(&lists, count, count == churn_lines ? random_goal : 0);
    }
    return missed ? 1 : 0;
}
