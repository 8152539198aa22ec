// Finding lines without a screen: patterns, and random changes of a list while it is searched,
// filtered and counted in small slices, against walks over plain records.
#include <gtest/gtest.h>

#include "finder.h"
#include "selection.h"
#include <algorithm>
#include <clocale>
#include <cstring>
#include <memory>
#include <random>

namespace {

TEST(Patterns, MeanWhatTheyShow) {
    setlocale(LC_CTYPE, "C.UTF-8");
    constexpr auto line = "LS0417%t26%Active%t39%Zürich 7*%t50%";
    const struct {
        const char *typed;
        VGA_PATTERN_KIND kind;
        bool matches;
    } rows[] = {
        {"", VGA_PATTERN_ALL, true},
        {"s04", VGA_PATTERN_CONTAINS, true},
        {"ACTIVE", VGA_PATTERN_CONTAINS, true},
        {"ZÜRICH", VGA_PATTERN_CONTAINS, true},
        {"17active", VGA_PATTERN_CONTAINS, false}, // nothing matches across columns
        {"17 ", VGA_PATTERN_CONTAINS, false},
        {"ls04*", VGA_PATTERN_BEGINS, true},
        {"act*", VGA_PATTERN_BEGINS, false}, // that is no name
        {"*17", VGA_PATTERN_ENDS, true},
        {"*", VGA_PATTERN_LIKE, true},
        {"ls??17", VGA_PATTERN_LIKE, true},
        {"ls?17", VGA_PATTERN_LIKE, false},
        {"*0*1*", VGA_PATTERN_LIKE, true},
        {"*0*1", VGA_PATTERN_LIKE, false},
        {"[k-m]s04[!2-9]7", VGA_PATTERN_LIKE, true},
        {"[^l]*", VGA_PATTERN_LIKE, false},
        {"LS[04", VGA_PATTERN_OPEN_SET, false},
        {"LS[!", VGA_PATTERN_OPEN_SET, false},
        {"LS[]", VGA_PATTERN_EMPTY_SET, false},
        {"LS[9-0]*", VGA_PATTERN_BAD_RANGE, false},
        {"\xff[", VGA_PATTERN_OPEN_SET, false}, // bytes that are no characters
    };
    for (const auto &row : rows) {
        const VGA_PATTERN pattern = vga_parse_pattern(row.typed);
        EXPECT_EQ(pattern.kind, row.kind) << row.typed;
        EXPECT_EQ(vga_pattern_matches(pattern, vga_fold_line(line)) != 0, row.matches) << row.typed;
        EXPECT_EQ(vga_pattern_is_valid(pattern) != 0, row.kind < VGA_PATTERN_OPEN_SET);
        for (const auto &other : rows) { // what narrows matches less
            const VGA_PATTERN before = vga_parse_pattern(other.typed);
            EXPECT_FALSE(vga_pattern_narrows(pattern, before) && row.matches && !other.matches)
                << row.typed << " after " << other.typed;
        }
    }
}

/* A list of records with names of few letters, so that much matches. */

struct RECORD {
    VGA_VIEWER_ITEM item;
    std::string name;
    VGA_LINE_STATE state;
};

RECORD &record_of(const VGA_VIEWER_ITEM *item) {
    return *static_cast<RECORD *>(item->data);
}

bool work_due;
const VGA_FINDER_SOURCE source = {
    .text = [](const VGA_VIEWER_ITEM *item,
               NB_CHAR *buffer) { strcpy(buffer, record_of(item).name.c_str()); },
    .state = [](const VGA_VIEWER_ITEM *item) { return record_of(item).state; },
    .work_due = [](VGA_VIEWER_ROOT *) { work_due = true; },
    .news = [](VGA_VIEWER_ROOT *) {},
};

class Finder : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(vga_viewer_init_root(&root), 1);
        vga_make_finder(&root, source);
        RecordProperty("seed", std::to_string(seed));
    }
    void TearDown() override { vga_viewer_destroy_root(&root); }

    size_t below(size_t count) {
        return std::uniform_int_distribution<size_t>(0, count - 1)(random);
    }
    RECORD *any() { return records.empty() ? nullptr : records[below(records.size())].get(); }
    std::string some_text(size_t most) {
        std::string text;
        for (size_t left = 1 + below(most); left > 0; left--) {
            text += "abc"[below(3)];
        }
        return text;
    }
    VGA_LINE_STATE some_state() { return static_cast<VGA_LINE_STATE>(below(VGA_LINE_STATES)); }

    void add() {
        auto record = std::make_unique<RECORD>();
        record->name = some_text(6);
        record->state = some_state();
        RECORD *parent = below(4) != 0 ? any() : nullptr;
        for (int depth = 0; parent != nullptr && parent->item.parent != nullptr && depth < 2;
             depth++) {
            parent = &record_of(parent->item.parent);
        }
        vga_create_viewer(&root, &record->item, 0, record.get(),
                          parent != nullptr ? &parent->item : nullptr,
                          below(2) != 0 ? VGA_VIEWER_FIRST : VGA_VIEWER_LAST);
        records.push_back(std::move(record));
    }
    void remove(const RECORD *record) {
        VGA_VIEWER_ITEM *const top = const_cast<VGA_VIEWER_ITEM *>(&record->item);
        const auto goes = [top](const auto &each) {
            return vga_viewer_is_within(&each->item, top) != 0;
        };
        current =
            current != nullptr && vga_viewer_is_within(&current->item, top) ? nullptr : current;
        vga_delete_viewer(&root, top);
        records.erase(std::remove_if(records.begin(), records.end(), goes), records.end());
    }
    void change() {
        RECORD *record = any();
        switch (below(7)) {
        case 0:
            remove(record);
            break;
        case 1:
            record->name = some_text(6);
            record->state = some_state();
            vga_update_viewer(&root, &record->item);
            break;
        case 2:
            vga_expand_viewer(&root, &record->item, 1);
            break;
        case 3:
            vga_viewer_contract(&root, &record->item, 1);
            break;
        case 4:
            if (vga_viewer_is_visible(&record->item)) {
                vga_viewer_select(&record->item, &root, 0, 0, 1, 1);
            }
            break;
        case 5: // whoever counts which one it is has lost it
            current = current != nullptr && vga_viewer_is_within(&current->item, &record->item)
                          ? nullptr
                          : current;
            vga_move_viewer(&root, &record->item, 0, record->item.parent, VGA_VIEWER_LAST);
            break;
        default:
            add();
            break;
        }
    }

    /* All lines in the order of the list. */
    std::vector<RECORD *> in_order() const {
        std::vector<RECORD *> lines;
        collect(root.top_items, &lines);
        return lines;
    }
    static void collect(const VGA_VIEWER_LIST &list, std::vector<RECORD *> *lines) {
        for (VGA_VIEWER_ITEM *item = list.first; item != nullptr;
             item = vga_viewer_next_in_list(item)) {
            lines->push_back(&record_of(item));
            collect(item->children, lines);
        }
    }
    static bool fits(const RECORD &record, const std::string &text, NB_UCHAR states) {
        return record.name.find(text) != std::string::npos &&
               (states & VGA_STATES_SET(record.state)) != 0;
    }
    void work() {
        while (vga_finder_work(&root, 0) != 0) {
        }
    }

    /* What a filter hides, how many lines pass, and that nothing hidden is in use. */
    void check_filter(bool on, const std::string &text, NB_UCHAR states) const {
        NB_ULONG passed = 0;
        for (const auto &record : records) {
            const bool shown = std::any_of(records.begin(), records.end(), [&](const auto &each) {
                return vga_viewer_is_within(&each->item, &record->item) != 0 &&
                       fits(*each, text, states);
            });
            ASSERT_EQ(record->item.hidden != 0, on && !shown) << record->name;
            ASSERT_FALSE(record->item.selected && record->item.hidden);
            passed += fits(*record, text, states);
        }
        EXPECT_EQ(vga_finder_filter_of(&root).passed, on ? passed : 0);
        EXPECT_TRUE(root.outline_viewer == nullptr || root.outline_viewer->hidden == 0);
    }
    void check_counts() const {
        for (NB_USHORT at = 0; at < VGA_LINE_STATES; at++) {
            const auto state = static_cast<VGA_LINE_STATE>(at);
            const auto count = std::count_if(records.begin(), records.end(), [&](const auto &each) {
                return each->state == state;
            });
            ASSERT_EQ(vga_finder_count_all(&root, state), static_cast<NB_ULONG>(count));
            ASSERT_EQ(vga_finder_count(&root, 0, state), static_cast<NB_ULONG>(count));
        }
    }
    /* From every line on, in both directions, to the next one with the text. */
    void check_seek(const std::string &text) {
        std::vector<RECORD *> lines = in_order();
        std::erase_if(lines, [](const RECORD *each) { return each->item.hidden != 0; });
        const size_t count = lines.size();
        const size_t from = count != 0 ? below(count) : 0;
        for (const NB_USHORT up : {0, 1}) {
            RECORD *expected = nullptr;
            for (size_t step = 1; step <= count && expected == nullptr; step++) {
                RECORD *line = lines[(up != 0 ? from + count - step : from + step) % count];
                expected = fits(*line, text, VGA_ANY_LINE_STATE) ? line : nullptr;
            }
            VGA_FINDER_GOAL goal;
            goal.pattern = vga_plain_pattern(text);
            goal.up = up;
            vga_finder_seek(&root, goal, count != 0 ? &lines[from]->item : nullptr);
            work();
            VGA_VIEWER_ITEM *found = nullptr;
            EXPECT_EQ(vga_finder_result(&root, &found, 1),
                      expected != nullptr ? VGA_FINDER_FOUND : VGA_FINDER_NONE);
            EXPECT_EQ(found, expected != nullptr ? &expected->item : nullptr);
        }
    }
    void check_numbers(const std::string &text) {
        NB_ULONG total = 0, number = 0;
        for (const RECORD *line : in_order()) {
            if (line->item.hidden == 0 && fits(*line, text, VGA_ANY_LINE_STATE)) {
                ++total;
                number = line == current ? total : number;
            }
        }
        const VGA_FINDER_NUMBERS numbers = vga_finder_numbers(&root);
        EXPECT_EQ(numbers.total, total);
        EXPECT_EQ(numbers.current, number);
        EXPECT_EQ(numbers.pending, 0);
    }

    VGA_VIEWER_ROOT root = {};
    std::vector<std::unique_ptr<RECORD>> records;
    const RECORD *current = nullptr; // among the lines that are numbered
    const unsigned seed = std::random_device()();
    std::mt19937 random{seed};
};

TEST_F(Finder, FollowsAListThatChangesWhileItIsLookedThrough) {
    SCOPED_TRACE(seed);
    for (int count = 0; count < 300; count++) {
        add();
    }
    std::string text;
    NB_UCHAR states = VGA_ANY_LINE_STATE;
    bool on = false;
    for (int round = 0; round < 300 && !HasFatalFailure(); round++) {
        if (below(4) == 0) {
            vga_finder_end_filter(&root);
            on = false;
            text.clear();
        } else { // as keys do: longer, shorter, another
            text = below(3) != 0 && on ? text + some_text(1)
                   : below(2) != 0     ? text.substr(0, text.size() / 2)
                                       : some_text(2);
            states =
                below(3) == 0 ? static_cast<NB_UCHAR>(1 + below(31)) : NB_UCHAR{VGA_ANY_LINE_STATE};
            vga_finder_filter(&root, vga_plain_pattern(text), states);
            on = true;
        }
        current = any();
        const std::string sought = some_text(2);
        vga_finder_number(&root, vga_plain_pattern(sought),
                          const_cast<VGA_VIEWER_ITEM *>(&current->item));
        for (size_t changes = below(12); changes > 0; changes--) {
            vga_finder_work(&root, 0);
            change();
        }
        while (records.size() < 250) {
            add();
        }
        work();
        check_filter(on, text, on ? states : NB_UCHAR{VGA_ANY_LINE_STATE});
        check_counts();
        check_numbers(sought);
        check_seek(sought);
        if (below(5) == 0) {
            vga_finder_stop_numbering(&root);
            vga_finder_rest(&root);
        }
    }
    EXPECT_TRUE(work_due);
}

TEST_F(Finder, AFaultyPatternChangesNothing) {
    add();
    vga_finder_filter(&root, vga_parse_pattern("[a"), VGA_ANY_LINE_STATE);
    work();
    EXPECT_FALSE(vga_finder_filter_of(&root).on);
    EXPECT_FALSE(records[0]->item.hidden);
}

TEST_F(Finder, AFilterClosesWhatItHasOpened) {
    for (int count = 0; count < 2; count++) {
        records.push_back(
            std::make_unique<RECORD>(RECORD{{}, count == 0 ? "a" : "b", VGA_LINE_ACTIVE}));
        vga_create_viewer(&root, &records.back()->item, 0, records.back().get(),
                          count == 0 ? nullptr : &records[0]->item, VGA_VIEWER_LAST);
    }
    vga_finder_filter(&root, vga_plain_pattern("b"), VGA_ANY_LINE_STATE);
    work();
    EXPECT_TRUE(vga_viewer_is_visible(&records[1]->item));
    vga_finder_end_filter(&root);
    EXPECT_FALSE(records[0]->item.expanded);
    vga_finder_filter(&root, vga_plain_pattern("b"), VGA_ANY_LINE_STATE);
    work();
    vga_viewer_select(&records[1]->item, &root, 0, 0, 1, 1);
    vga_finder_end_filter(&root);
    EXPECT_TRUE(vga_viewer_is_visible(&records[1]->item)) << "what is selected stays in sight";
}

} // namespace
