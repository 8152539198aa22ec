// The list control without a screen: its item tree against plain vectors, and the layout
// arithmetic.
#include <gtest/gtest.h> // before the X headers, whose macros it cannot bear

#include "nbbase.h"
#include "vgadgutl.h"
#include "vgagraph.h"
#include "vgaviewi.h"
#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

VGA_UID_TABLE gvga_uid_desc; // no windows here

namespace {

/* The plain model. */

struct NODE {
    VGA_VIEWER_ITEM item; // garbage until it is made into a line
    NODE *parent = nullptr;
    std::vector<NODE *> children;
    NB_USHORT type = 0;
    bool expanded = false, hidden = false, fixed = false, selected = false;
    NODE() { memset(static_cast<void *>(&item), 0xA5, sizeof(item)); }
};

NODE *node_of(const VGA_VIEWER_ITEM *item) {
    return item != nullptr ? static_cast<NODE *>(item->data) : nullptr;
}

struct MODEL {
    NODE top;
    std::vector<std::unique_ptr<NODE>> nodes; // in the lists, in no order
    NODE *anchor = nullptr, *outline = nullptr;

    std::vector<NODE *> &siblings(const NODE *node) { return node->parent->children; }

    size_t index(const NODE *node) {
        const auto &list = siblings(node);
        return static_cast<size_t>(std::find(list.begin(), list.end(), node) - list.begin());
    }

    static void collect(const NODE *node, std::vector<NODE *> *lines) {
        for (NODE *child : node->children) {
            if (!child->hidden) {
                lines->push_back(child);
                if (child->expanded) {
                    collect(child, lines);
                }
            }
        }
    }

    std::vector<NODE *> lines() const {
        std::vector<NODE *> all;
        collect(&top, &all);
        return all;
    }

    static NB_ULONG extent(const NODE *node) {
        std::vector<NODE *> below;
        if (node->expanded) {
            collect(node, &below);
        }
        return node->hidden ? 0 : static_cast<NB_ULONG>(below.size() + 1);
    }

    std::vector<NODE *> selected() const {
        std::vector<NODE *> all;
        for (const auto &node : nodes) {
            if (node->selected) {
                all.push_back(node.get());
            }
        }
        return all;
    }

    static bool within(const NODE *node, const NODE *ancestor) {
        while (node != nullptr && node != ancestor) {
            node = node->parent;
        }
        return node != nullptr;
    }

    void deselect() {
        for (const auto &node : nodes) {
            node->selected = false;
        }
    }

    /* The node and all below it are about to go, or are about to be hidden. */
    void let_go(NODE *node) {
        NODE *heir = nullptr;
        if (node->selected) {
            node->selected = false;
            for (NODE *sibling : siblings(node)) {
                if (sibling->selected && (heir == nullptr || index(heir) < index(node))) {
                    heir = sibling; // the last one before, unless there is one behind
                }
            }
        }
        for (const auto &other : nodes) {
            other->selected = other->selected && !within(other.get(), node);
        }
        anchor = within(anchor, node) ? heir : anchor;
        outline = within(outline, node) ? nullptr : outline;
    }

    void select(NODE *node, bool toggle, bool extend) {
        outline = node;
        const bool range = extend && anchor != nullptr && anchor->parent == node->parent;
        const bool state = range && anchor->selected;
        const NB_USHORT type = range ? anchor->type : node->type;
        const std::vector<NODE *> before = selected();
        if (!toggle ||
            (!before.empty() && (before[0]->parent != node->parent || before[0]->type != type))) {
            deselect();
        }
        if (!range) {
            node->selected = !toggle || !node->selected;
            anchor = node;
            return;
        }
        const auto [from, to] = std::minmax({index(anchor), index(node)});
        for (size_t i = from; i <= to; ++i) {
            NODE *line = siblings(node)[i];
            if (!line->hidden && !line->fixed && line->type == type) {
                line->selected = state;
            }
        }
    }
};

/* Invariants. */

/* Balance, sums and links of the binary tree; returns its items in order. */
void check_list(const VGA_VIEWER_LIST &list, const VGA_VIEWER_ITEM *node,
                std::vector<const VGA_VIEWER_ITEM *> *order) {
    if (node == nullptr) {
        return;
    }
    check_list(list, node->left, order);
    order->push_back(node);
    check_list(list, node->right, order);
    NB_ULONG lines = node->lines, selected = node->selected;
    NB_INT heights[2] = {0, 0};
    NB_INT side = 0;
    for (const VGA_VIEWER_ITEM *branch : {node->left, node->right}) {
        if (branch != nullptr) {
            ASSERT_EQ(branch->up, node);
            lines += branch->lines_sum;
            selected += branch->selected_sum;
            heights[side] = branch->height;
        }
        ++side;
    }
    ASSERT_LE(std::abs(heights[0] - heights[1]), 1);
    ASSERT_EQ(node->height, 1 + std::max(heights[0], heights[1]));
    ASSERT_EQ(node->lines_sum, lines);
    ASSERT_EQ(node->selected_sum, selected);
}

void check_level(const VGA_VIEWER_LIST &list, const NODE *parent) {
    std::vector<const VGA_VIEWER_ITEM *> order;
    check_list(list, list.root, &order);
    ASSERT_EQ(order.size(), parent->children.size());
    ASSERT_EQ(list.count, order.size());
    ASSERT_EQ(node_of(list.first), order.empty() ? nullptr : parent->children.front());
    ASSERT_EQ(node_of(list.last), order.empty() ? nullptr : parent->children.back());
    NB_ULONG y = 0;
    for (size_t i = 0; i < order.size(); ++i) {
        const NODE *node = parent->children[i];
        ASSERT_EQ(node_of(order[i]), node);
        ASSERT_EQ(vga_viewer_get_y(&node->item), y * gvga_viewer_item_height);
        ASSERT_EQ(vga_viewer_get_extent(&node->item),
                  MODEL::extent(node) * gvga_viewer_item_height);
        ASSERT_EQ(node->item.selected, node->selected);
        y += MODEL::extent(node);
        check_level(node->item.children, node);
    }
}

void check(VGA_VIEWER_ROOT *root, const MODEL &model) {
    check_level(root->top_items, &model.top);
    const std::vector<NODE *> lines = model.lines();
    const NB_ULONG height = gvga_viewer_item_height;
    ASSERT_EQ(root->content_height, lines.size() * height);
    for (NB_ULONG y = 0; y < lines.size() * height; ++y) {
        ASSERT_EQ(node_of(vga_find_viewer(root, static_cast<NB_LONG>(y))), lines[y / height]);
    }
    ASSERT_EQ(vga_find_viewer(root, -1), nullptr);
    ASSERT_EQ(vga_find_viewer(root, static_cast<NB_LONG>(lines.size() * height)), nullptr);
    for (size_t i = 0; i < lines.size(); ++i) {
        const VGA_VIEWER_ITEM *item = &lines[i]->item;
        ASSERT_EQ(vga_viewer_get_screen_pos(item), static_cast<NB_LONG>(i * height));
        ASSERT_EQ(node_of(vga_viewer_get_next_item(root, item)),
                  i + 1 < lines.size() ? lines[i + 1] : nullptr);
        ASSERT_EQ(node_of(vga_viewer_get_prev_item(root, item)), i > 0 ? lines[i - 1] : nullptr);
    }
    const std::vector<NODE *> selected = model.selected();
    ASSERT_EQ(root->select_count, static_cast<NB_LONG>(selected.size()));
    ASSERT_EQ(root->select_type, selected.empty() ? VGA_VIEWER_SELECT_NONE : selected[0]->type);
    ASSERT_EQ(node_of(root->select_anchor), model.anchor);
    ASSERT_EQ(node_of(root->outline_viewer), model.outline);
    const NODE *current = node_of(vga_viewer_get_selected_viewer(root));
    ASSERT_EQ(current == nullptr, selected.empty());
    ASSERT_TRUE(current == nullptr || current->selected);
}

/* Random operations. */

class VIEWER_RANDOM : public testing::TestWithParam<unsigned> {
protected:
    void SetUp() override {
        gvga_viewer_item_height = 3;
        ASSERT_EQ(vga_viewer_init_root(&root), 1);
        random.seed(GetParam());
    }
    void TearDown() override {
        vga_viewer_destroy_root(&root);
        gvga_viewer_item_height = 0;
    }

    unsigned pick(size_t choices) { return static_cast<unsigned>(random() % choices); }
    NODE *any() { return model.nodes[pick(model.nodes.size())].get(); }
    NODE *any_or_none() { return model.nodes.empty() || pick(3) == 0 ? nullptr : any(); }

    void insert() {
        auto owned = std::make_unique<NODE>();
        NODE *node = owned.get(), *parent = any_or_none();
        node->parent = parent != nullptr ? parent : &model.top;
        node->type = static_cast<NB_USHORT>(pick(2));
        auto &list = node->parent->children;
        auto place = list.end();
        VGA_VIEWER_ITEM *after = VGA_VIEWER_LAST;
        if (pick(3) == 0) {
            after = VGA_VIEWER_FIRST;
            place = std::find_if(list.begin(), list.end(), [](NODE *line) { return !line->fixed; });
        } else if (!list.empty() && pick(4) != 0) {
            place = list.begin() + pick(list.size());
            after = &(*place)->item;
            ++place;
        }
        vga_create_viewer(&root, &node->item, node->type, node,
                          parent != nullptr ? &parent->item : nullptr, after);
        list.insert(place, node);
        model.nodes.push_back(std::move(owned));
    }

    // As a record goes: its line first, then its children one by one, then its memory.
    void remove(NODE *node, bool in_tree) {
        if (in_tree) {
            model.let_go(node);
            model.siblings(node).erase(model.siblings(node).begin() +
                                       static_cast<long>(model.index(node)));
        }
        vga_delete_viewer(&root, &node->item);
        vga_delete_viewer(&root, &node->item); // no harm
        for (NODE *child : node->children) {
            remove(child, false);
        }
        model.nodes.erase(std::find_if(model.nodes.begin(), model.nodes.end(),
                                       [node](const auto &other) { return other.get() == node; }));
    }

    void expand(NODE *node) {
        const bool children = std::any_of(node->children.begin(), node->children.end(),
                                          [](const NODE *child) { return !child->hidden; });
        vga_expand_viewer(&root, &node->item, 1);
        node->expanded = node->expanded || children;
    }

    void contract(NODE *node) {
        vga_viewer_contract(&root, &node->item, 1);
        if (!node->expanded) {
            return;
        }
        node->expanded = false;
        const auto vanishes = [node](const NODE *line) {
            return line != node && MODEL::within(line, node);
        };
        const std::vector<NODE *> selected = model.selected();
        if (!selected.empty() && vanishes(selected[0])) {
            model.deselect();
            node->selected = true;
        }
        model.anchor = vanishes(model.anchor) ? node : model.anchor;
        model.outline = vanishes(model.outline) ? node : model.outline;
    }

    void hide(NODE *node, bool hidden) {
        vga_viewer_set_hidden(&root, &node->item, hidden);
        if (hidden && !node->hidden) {
            model.let_go(node);
        }
        node->hidden = hidden;
    }

    void select() {
        const std::vector<NODE *> lines = model.lines();
        if (lines.empty()) {
            return;
        }
        NODE *node = lines[pick(lines.size())];
        const bool toggle = pick(2) == 0, extend = pick(2) == 0;
        vga_viewer_select(&node->item, &root, toggle, extend, 1, 1);
        model.select(node, toggle, extend);
    }

    void step() {
        const unsigned choice = pick(100);
        if (model.nodes.empty() || choice < 40) {
            insert();
        } else if (choice < 48) {
            remove(any(), true);
        } else if (choice < 58) {
            expand(any());
        } else if (choice < 63) {
            contract(any());
        } else if (choice < 70) {
            hide(any(), pick(2) == 0);
        } else if (choice < 73) {
            NODE *node = any();
            node->fixed = pick(2) == 0;
            vga_viewer_set_fixed(&root, &node->item, node->fixed);
        } else if (choice < 75) {
            vga_viewer_clear_selection(&root);
            model.deselect();
        } else {
            select();
        }
    }

    VGA_VIEWER_ROOT root;
    MODEL model;
    std::mt19937 random;
};

TEST_P(VIEWER_RANDOM, FollowsThePlainModel) {
    for (NB_INT i = 0; i < 600; ++i) {
        step();
        ASSERT_NO_FATAL_FAILURE(check(&root, model)) << "seed " << GetParam() << " step " << i;
    }
}

/* What a line looks like, so that a change of it must be drawn. */
struct LOOK {
    const NODE *node;
    bool selected, outlined, open, has_children;
    bool operator==(const LOOK &) const = default;
};

std::vector<LOOK> looks(const VGA_VIEWER_ROOT &root, const MODEL &model) {
    std::vector<LOOK> all;
    for (const NODE *node : model.lines()) {
        all.push_back({node, node->item.selected != 0, root.outline_viewer == &node->item,
                       node->item.expanded != 0, vga_viewer_has_children(&node->item) != 0});
    }
    return all;
}

// The tree alone is told that it is displayed: it must note every line that looks different, and
// the bands must never overlap.
TEST_P(VIEWER_RANDOM, NotesEveryChangedLine) {
    for (NB_INT i = 0; i < 200; ++i) {
        step();
    }
    for (NB_INT i = 0; i < 300; ++i) {
        const std::vector<LOOK> before = looks(root, model);
        root.displayed = 1;
        root.update_timer = 1; // as if one were set: nothing is asked of the toolkit
        const NB_USHORT choice = static_cast<NB_USHORT>(pick(4));
        NODE *node = model.nodes.empty() ? nullptr : any();
        if (node != nullptr && choice == 0) {
            vga_viewer_tree_remove(&root, &node->item);
            root.displayed = 0;
            remove(node, true);
        } else if (node != nullptr && choice == 1) {
            node->expanded = !node->expanded;
            vga_viewer_tree_set_expanded(&root, &node->item, node->expanded, 1);
        } else if (node != nullptr && choice == 2) {
            node->hidden = !node->hidden;
            vga_viewer_tree_set_hidden(&root, &node->item, node->hidden);
        } else {
            select();
        }
        root.displayed = root.update_timer = 0;
        const std::vector<LOOK> after = looks(root, model);
        for (size_t line = 0; line < std::max(before.size(), after.size()); ++line) {
            NB_INT noted = 0;
            for (NB_USHORT band = 0; band < root.dirty_count; ++band) {
                noted += line >= root.dirty[band].top && line < root.dirty[band].bottom;
            }
            ASSERT_LE(noted, 1) << "seed " << GetParam() << " step " << i;
            const bool same =
                line < before.size() && line < after.size() && before[line] == after[line];
            ASSERT_TRUE(same || noted == 1)
                << "seed " << GetParam() << " step " << i << " line " << line;
        }
        root.dirty_count = 0;
        step();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, VIEWER_RANDOM, testing::Range(1U, 13U));

/* Single cases. */

class VIEWER : public testing::Test {
protected:
    void SetUp() override {
        gvga_viewer_item_height = 10;
        ASSERT_EQ(vga_viewer_init_root(&root), 1);
        previous = v0_set_fatal_handler(
            [](const NB_CHAR *, NB_INT, const NB_CHAR *text) { broken = text; });
        broken.clear();
    }
    void TearDown() override {
        v0_set_fatal_handler(previous);
        vga_viewer_set_types(nullptr, 0);
        vga_viewer_destroy_root(&root);
        gvga_viewer_item_height = 0;
    }
    void fill(size_t count) {
        items.resize(count);
        for (VGA_VIEWER_ITEM &item : items) {
            vga_create_viewer(&root, &item, 0, &item, nullptr, VGA_VIEWER_LAST);
        }
    }

    static std::string broken;
    NB_FATAL_HANDLER previous = nullptr;
    VGA_VIEWER_ROOT root;
    std::vector<VGA_VIEWER_ITEM> items;
};
std::string VIEWER::broken;

TEST_F(VIEWER, ManyLinesInTheWorstOrderStayShallow) {
    items.resize(200000);
    for (VGA_VIEWER_ITEM &item : items) {
        vga_create_viewer(&root, &item, 0, &item, nullptr, VGA_VIEWER_FIRST);
    }
    EXPECT_LE(root.top_items.root->height, 1.45 * std::log2(items.size()) + 1);
    EXPECT_EQ(root.content_height, 2000000U);
    EXPECT_EQ(vga_viewer_get_y(&items[0]), 1999990U);
    EXPECT_EQ(vga_find_viewer(&root, 999995), &items[100000]);
    for (VGA_VIEWER_ITEM &item : items) {
        vga_delete_viewer(&root, &item);
    }
    EXPECT_EQ(root.content_height, 0U);
}

TEST_F(VIEWER, AForeignPredecessorIsFatalAndLeavesTheListAlone) {
    fill(2);
    VGA_VIEWER_ITEM child, stray;
    vga_create_viewer(&root, &child, 0, nullptr, &items[0], &items[1]);
    EXPECT_EQ(broken, "FALSE");
    EXPECT_EQ(root.content_height, 20U);
    vga_create_viewer(&root, &child, 0, nullptr, &items[0], VGA_VIEWER_LAST);
    vga_create_viewer(&root, &stray, 0, nullptr, nullptr, &child);
    EXPECT_EQ(root.top_items.count, 2U);
}

TEST_F(VIEWER, FreshRecordTakesOverThatItsLineIsOpen) {
    fill(2);
    VGA_VIEWER_ITEM child, fresh_child;
    vga_create_viewer(&root, &child, 0, nullptr, &items[0], VGA_VIEWER_LAST);
    vga_expand_viewer(&root, &items[0], 1);
    vga_viewer_copy_state(&items[0], &items[1], &root);
    EXPECT_EQ(root.content_height, 30U);
    vga_create_viewer(&root, &fresh_child, 0, nullptr, &items[1], VGA_VIEWER_LAST);
    EXPECT_EQ(root.content_height, 40U);
}

TEST_F(VIEWER, KeysGoAroundTitlesAndKeepToSiblingsWithShift) {
    const VGA_VIEWER_DESC types[] = {
        {nullptr, nullptr, 0, [](NB_VOID *, XmDrawnButtonCallbackStruct *) {}, nullptr, nullptr,
         nullptr, nullptr, nullptr, 1, 0, 0},
        {},
    };
    vga_viewer_set_types(types, 2);
    fill(6);
    items[0].type = 1; // a title
    vga_viewer_set_fixed(&root, &items[3], 1);
    VGA_VIEWER_ITEM child;
    vga_create_viewer(&root, &child, 0, &child, &items[1], VGA_VIEWER_LAST);
    vga_expand_viewer(&root, &items[1], 1);
    struct CASE {
        NB_USHORT direction, shift;
        const VGA_VIEWER_ITEM *target;
        NB_LONG count;
    } const cases[] = {
        {VGA_VIEWER_DOWN, 0, &items[1], 1}, {VGA_VIEWER_UP, 0, &items[1], 1},
        {VGA_VIEWER_DOWN, 0, &child, 1},    {VGA_VIEWER_DOWN, 0, &items[2], 1},
        {VGA_VIEWER_DOWN, 0, &items[4], 1}, {VGA_VIEWER_HOME, 0, &items[1], 1},
        {VGA_VIEWER_DOWN, 1, &items[2], 2}, {VGA_VIEWER_DOWN, 1, &items[4], 3},
        {VGA_VIEWER_END, 1, &items[5], 4},  {VGA_VIEWER_UP, 1, &items[4], 3},
        {VGA_VIEWER_END, 0, &items[5], 1},  {VGA_VIEWER_PRIOR, 0, &items[5], 1},
    };
    for (const CASE &move : cases) {
        vga_viewer_key_move(&root, move.direction, move.shift, 0);
        EXPECT_EQ(root.outline_viewer, move.target) << &move - cases;
        EXPECT_EQ(root.select_count, move.count) << &move - cases;
    }
}

TEST_F(VIEWER, TextOfAThousandBytesIsTheLongest) {
    static NB_USHORT length;
    const VGA_VIEWER_DESC types[] = {{[](NB_VOID *, NB_CHAR *buffer) {
                                          memset(buffer, 'x', VGA_VIEWER_TEXT_BUFFER);
                                          return length;
                                      },
                                      nullptr, 0, nullptr, nullptr, nullptr, nullptr, nullptr,
                                      nullptr, 0, 0, 0}};
    vga_viewer_set_types(types, 1);
    fill(1);
    NB_CHAR buffer[VGA_VIEWER_TEXT_BUFFER + 1];
    length = VGA_VIEWER_MAX_TEXT_LENGTH;
    EXPECT_EQ(vga_viewer_line_text(&items[0], buffer), 1000);
    EXPECT_EQ(strlen(buffer), 1000U);
    EXPECT_EQ(broken, "");
    length = VGA_VIEWER_MAX_TEXT_LENGTH + 1;
    EXPECT_EQ(vga_viewer_line_text(&items[0], buffer), 0);
    EXPECT_EQ(broken, "text_len <= VGA_VIEWER_MAX_TEXT_LENGTH");
}

/* Layout. */

TEST(VIEWER_LAYOUT, RunsAreCutAtTheNextColumn) {
    struct CASE {
        const NB_CHAR *text, *runs; // column:text, separated by |
    } const cases[] = {
        {"", "0:"},
        {"plain 100% text", "0:plain 100% text"},
        {"ab%t4%cd%t8ef", "0:ab|4:cd|8:ef"},
        {"abcdef%t4%ghijkl%t8%and the rest", "0:abcd|4:ghij|8:and the rest"},
        {"a%t3%%t6%total", "0:a|3:|6:total"},
        {"a%t3%t5", "0:a|3:t5"}, // the sign closes the stop
        {"a%tb%t", "0:a%tb%t"},  // no column, no stop
        {"abc%t2%d%t1%e", "0:ab|2:|1:e"},
        {"a%t99999999999%b", "0:a|4000:b"},
    };
    for (const CASE &example : cases) {
        std::string runs;
        const NB_CHAR *text = example.text;
        NB_ULONG column = 0;
        VGA_VIEWER_RUN run;
        while (vga_viewer_next_run(&text, &column, &run) != 0) {
            runs += (runs.empty() ? "" : "|") + std::to_string(run.column) + ":" +
                    std::string(run.text, static_cast<size_t>(run.length));
        }
        EXPECT_EQ(runs, example.runs) << example.text;
    }
}

TEST(VIEWER_LAYOUT, CutsKeepCharactersWhole) {
    ASSERT_NE(setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    EXPECT_EQ(vga_viewer_cut("\xC3\xA4\xC3\xB6x", 5, 1), 2);
    EXPECT_EQ(vga_viewer_cut("\xC3\xA4\xC3\xB6x", 5, 3), 5);
    EXPECT_EQ(vga_viewer_cut("\xE6\xBC\xA2x", 4, 1), 0); // two columns wide
    EXPECT_EQ(vga_viewer_cut("\xE6\xBC\xA2x", 4, 2), 3);
    EXPECT_EQ(vga_viewer_cut("\xFF\xFEx", 3, 2), 2); // no characters at all
    setlocale(LC_CTYPE, "C");
}

TEST(VIEWER_LAYOUT, ScrollBarsComeOnlyWhenNeeded) {
    struct CASE {
        NB_ULONG content_width, lines_height;
        NB_USHORT hbar, vbar;
    } const cases[] = {
        {100, 100, 0, 0}, // fits exactly, although one bar would make the other necessary
        {101, 80, 1, 0},  {101, 91, 1, 1}, {80, 101, 0, 1},
        {91, 101, 1, 1},  {0, 0, 0, 0},    {500, 500, 1, 1},
    };
    for (const CASE &example : cases) {
        VGA_VIEWER_FIT fit = {100, 100, 10, 10, example.content_width, example.lines_height, 9, 9};
        vga_viewer_fit(&fit);
        EXPECT_EQ(fit.hbar, example.hbar) << &example - cases;
        EXPECT_EQ(fit.vbar, example.vbar) << &example - cases;
    }
}

TEST(VIEWER_LAYOUT, TheLastLineCanBeScrolledToWhereItIsWhole) {
    for (NB_ULONG window = 21; window < 60; ++window) {
        const NB_ULONG lines = 200, height = 20;
        const NB_ULONG content = vga_viewer_content_height(lines, window, height);
        const NB_ULONG offset = vga_viewer_clamp(1000000, content, window, height);
        EXPECT_EQ(offset % height, 0U);
        EXPECT_GE(offset + window, lines) << window;
        EXPECT_LT(offset, lines) << window;
    }
    EXPECT_EQ(vga_viewer_clamp(-5, 100, 50, 0), 0U);
    EXPECT_EQ(vga_viewer_clamp(70, 40, 50, 0), 0U);
}

TEST(VIEWER_LAYOUT, MetricsFollowTheLargerOfFontAndIcon) {
    struct CASE {
        VGA_VIEWER_FONT_SIZE font;
        VGA_VIEWER_ICON_SIZE icon, expand;
        NB_ULONG item, icon_y, expand_y, text_y;
    } const cases[] = {
        {{6, 11, 2}, {20, 20}, {13, 13}, 20, 0, 3, 14},
        {{9, 14, 6}, {20, 20}, {13, 13}, 20, 0, 3, 14}, // equal: the font decides
        {{9, 20, 5}, {20, 20}, {13, 14}, 25, 2, 5, 20},
        {{6, 11, 2}, {16, 12}, {17, 17}, 17, 2, 0, 13},
    };
    for (const CASE &example : cases) {
        vga_set_viewer_metrics(&example.font, &example.icon, &example.expand);
        EXPECT_EQ(gvga_viewer_item_height, example.item);
        EXPECT_EQ(gvga_viewer_icon_y, example.icon_y);
        EXPECT_EQ(gvga_viewer_expand_icon_y, example.expand_y);
        EXPECT_EQ(gvga_viewer_text_y, example.text_y);
        EXPECT_EQ(gvga_viewer_indent_width, 8 * example.font.width);
    }
    const VGA_VIEWER_FONT_SIZE no_font = {};
    const VGA_VIEWER_ICON_SIZE no_icon = {};
    vga_set_viewer_metrics(&no_font, &no_icon, &no_icon);
}

} // namespace
