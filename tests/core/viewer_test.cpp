// The list control without a screen: random changes, clicks and keys against plain vectors.
#include <gtest/gtest.h> // before the X headers, whose macros it cannot bear

#include "graphics.h"
#include "nbbase.h"
#include "viewerparts.h"
#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

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

    NB_ULONG line_of(const NODE *node) const {
        const std::vector<NODE *> all = lines();
        return static_cast<NB_ULONG>(std::find(all.begin(), all.end(), node) - all.begin());
    }

    /* The visible line that follows, or, with a step of -1, comes before. */
    NODE *step(const NODE *node, bool among_siblings, long step) const {
        std::vector<NODE *> all = lines();
        if (among_siblings) {
            std::erase_if(all, [node](const NODE *line) { return line->parent != node->parent; });
        }
        const long place = std::find(all.begin(), all.end(), node) - all.begin() + step;
        return place >= 0 && place < static_cast<long>(all.size()) ? all[static_cast<size_t>(place)]
                                                                   : nullptr;
    }

    /* Where a key goes; `page` is the height of the window in lines. */
    NODE *target(NB_USHORT direction, bool among_siblings, long page) const {
        std::vector<NODE *> all = lines();
        if (all.empty()) {
            return nullptr;
        }
        among_siblings = among_siblings && outline != nullptr;
        const bool back = direction == VGA_VIEWER_UP || direction == VGA_VIEWER_PRIOR ||
                          direction == VGA_VIEWER_HOME;
        NODE *line = nullptr;
        if (direction == VGA_VIEWER_UP || direction == VGA_VIEWER_DOWN) {
            line = outline == nullptr ? all[0] : step(outline, among_siblings, back ? -1 : 1);
        } else {
            const auto foreign = [&](const NODE *other) {
                return among_siblings && other->parent != outline->parent;
            };
            long place = back ? 0 : static_cast<long>(all.size()) - 1;
            if (direction == VGA_VIEWER_PRIOR || direction == VGA_VIEWER_NEXT) {
                const long from = outline != nullptr ? static_cast<long>(line_of(outline)) : 0;
                place =
                    std::clamp(from + (back ? -page : page), 0L, static_cast<long>(all.size()) - 1);
            }
            while (foreign(all[static_cast<size_t>(place)])) {
                place += back ? 1 : -1; // towards the start
            }
            line = all[static_cast<size_t>(place)];
        }
        // Only a step up goes on up past a title; the ends and pages go on inwards.
        const bool on_down =
            direction == VGA_VIEWER_UP ? outline == nullptr : direction == VGA_VIEWER_DOWN || back;
        const auto passed = [&](const NODE *other) {
            return other->fixed || (among_siblings && anchor != nullptr &&
                                    anchor->parent == other->parent && anchor->type != other->type);
        };
        while (line != nullptr && passed(line)) {
            line = step(line, among_siblings, on_down ? 1 : -1);
        }
        return line;
    }

    void set_select(NODE *node, bool state) {
        const std::vector<NODE *> before = selected();
        if (state && !node->selected && !before.empty() &&
            (before[0]->parent != node->parent || before[0]->type != node->type)) {
            deselect();
        }
        node->selected = state;
    }

    void select(NODE *node, bool toggle, bool extend) {
        outline = node;
        const bool range = extend && anchor != nullptr && anchor->parent == node->parent &&
                           anchor->type == node->type;
        const bool state = range && anchor->selected;
        const NB_USHORT type = node->type;
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
        ASSERT_EQ(vga_viewer_get_line_in_list(&node->item), y);
        ASSERT_EQ(node->item.lines, MODEL::extent(node));
        ASSERT_EQ(node->item.selected, node->selected);
        y += MODEL::extent(node);
        check_level(node->item.children, node);
    }
}

void check(VGA_VIEWER_ROOT *root, const MODEL &model) {
    check_level(root->top_items, &model.top);
    const std::vector<NODE *> lines = model.lines();
    const NB_ULONG height = gvga_viewer_item_height;
    ASSERT_EQ(vga_viewer_get_content_height(root), lines.size() * height);
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
        vga_viewer_view(&root)->window_height = page * gvga_viewer_item_height;
        for (VGA_VIEWER_DESC &desc : types) {
            desc.arm_cb = [](NB_VOID *, XmDrawnButtonCallbackStruct *) {};
        }
        vga_viewer_set_types(types, 2);
        random.seed(GetParam());
    }
    void TearDown() override {
        vga_viewer_set_types(nullptr, 0);
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

    static bool has_children(const NODE *node) {
        return std::any_of(node->children.begin(), node->children.end(),
                           [](const NODE *child) { return !child->hidden; });
    }

    void expand(NODE *node) {
        vga_expand_viewer(&root, &node->item, 1);
        node->expanded = node->expanded || has_children(node);
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

    void expand_all() {
        vga_viewer_expand_all(&root);
        for (const auto &node : model.nodes) {
            node->expanded = node->expanded || has_children(node.get());
        }
    }

    void select_all() {
        NODE *const current = node_of(vga_viewer_get_selected_viewer(&root));
        if (current == nullptr || vga_viewer_is_visible(&current->item) == 0) {
            return;
        }
        vga_viewer_select_all(&root, &current->item);
        model.deselect();
        for (NODE *line : model.siblings(current)) {
            line->selected =
                line == current || (!line->hidden && !line->fixed && line->type == current->type);
        }
        model.anchor = model.outline = current;
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

    void press_key() {
        const auto direction = static_cast<NB_USHORT>(VGA_VIEWER_UP + pick(VGA_VIEWER_END));
        const bool shift = pick(3) == 0, ctrl = pick(3) == 0;
        NODE *target = model.target(direction, shift || ctrl, page);
        vga_viewer_key_move(&root, direction, shift, ctrl);
        if (target != nullptr && target != model.outline) {
            model.select(target, ctrl, shift);
        }
    }

    void set_select(NODE *node) {
        const bool state = pick(2) == 0, was = node->selected;
        const NB_SHORT change = static_cast<NB_SHORT>(state - was);
        ASSERT_EQ(vga_viewer_set_select(&root, &node->item, state), change);
        model.set_select(node, state);
    }

    void copy_state(const NODE *old_node, NODE *new_node) {
        vga_viewer_copy_state(&old_node->item, &new_node->item, &root);
        new_node->expanded = new_node->expanded || old_node->expanded;
    }

    void step() {
        const unsigned choice = pick(100);
        if (model.nodes.empty() || choice < 40) {
            insert();
        } else if (choice < 48) {
            remove(any(), true);
        } else if (choice < 58) {
            expand(any());
        } else if (choice < 62) {
            contract(any());
        } else if (choice == 62) {
            pick(4) == 0 ? expand_all() : select_all();
        } else if (choice < 70) {
            hide(any(), pick(2) == 0);
        } else if (choice < 73) {
            NODE *node = any();
            node->fixed = pick(2) == 0;
            vga_viewer_set_fixed(&root, &node->item, node->fixed);
        } else if (choice < 75) {
            vga_viewer_clear_selection(&root);
            model.deselect();
        } else if (choice < 77) {
            copy_state(any(), any());
        } else if (choice < 80) {
            set_select(any());
        } else if (choice < 90) {
            press_key();
        } else {
            select();
        }
    }

    static constexpr long page = 4;
    VGA_VIEWER_DESC types[2] = {};
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
        vga_viewer_view(&root)->update_timer =
            1; // as if one were set: nothing is asked of the toolkit
        const NB_USHORT choice = static_cast<NB_USHORT>(pick(4));
        NODE *node = model.nodes.empty() ? nullptr : any();
        if (node != nullptr && choice == 0) {
            remove(node, true);
        } else if (node != nullptr && choice == 1) {
            node->expanded ? contract(node) : expand(node);
        } else if (node != nullptr && choice == 2) {
            hide(node, !node->hidden);
        } else {
            select();
        }
        root.displayed = 0;
        vga_viewer_view(&root)->update_timer = 0;
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

} // namespace
