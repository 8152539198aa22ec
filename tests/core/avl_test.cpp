/* The ordered index against std::map, with the whole tree checked after every change. */
#include <map>
#include <memory>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "ntlavl.h"
#include "reports.h"

namespace {

int comparisons;

NB_INT compare_ints(const NB_VOID *a, const NB_VOID *b) {
    comparisons++;
    NB_INT x = *static_cast<const NB_INT *>(a);
    NB_INT y = *static_cast<const NB_INT *>(b);
    return x < y ? -7 : (x > y ? 7 : 0);
}

struct Record {
    AVL_NODE node;
    NB_INT key;
};

/* An index of integers beside a map of the same; every change compares the two. */
class Index {
public:
    Index() = default;
    explicit Index(const std::vector<NB_INT> &keys) {
        for (NB_INT key : keys) {
            insert(key);
        }
    }
    Record *make(NB_INT key) {
        records_.push_back(std::make_unique<Record>());
        Record *record = records_.back().get();
        record->key = key;
        AVL_INIT_NODE(record->node, record, &record->key);
        return record;
    }
    void insert(NB_INT key) { insert(make(key)); }
    void insert(Record *record) {
        bool is_new = model.emplace(record->key, record).second;
        EXPECT_EQ(ntl_avl_insert(&tree, &record->node), is_new ? 1 : 0);
        EXPECT_EQ(AVL_IN_TREE(record->node), is_new);
        check();
    }
    Record *remove(NB_INT key) {
        Record *record = model.at(key);
        model.erase(key);
        ntl_avl_delete(&tree, &record->node);
        EXPECT_FALSE(AVL_IN_TREE(record->node));
        EXPECT_TRUE(!record->node.parent && !record->node.left && !record->node.right);
        check();
        return record;
    }
    void probe(NB_INT key) const {
        auto exact = model.find(key);
        auto above = model.upper_bound(key);
        EXPECT_EQ(ntl_avl_find(&tree, &key), exact == model.end() ? nullptr : exact->second);
        EXPECT_EQ(ntl_avl_find_next(&tree, &key), above == model.end() ? nullptr : above->second);
    }
    AVL_TREE tree = {compare_ints, nullptr, nullptr, nullptr};
    std::map<NB_INT, Record *> model;

private:
    void check() const {
        ASSERT_EQ(ntl_avl_validate(&tree), static_cast<NB_LONG>(model.size()));
        auto forward = static_cast<Record *>(AVL_FIRST(tree));
        for (const auto &entry : model) {
            ASSERT_EQ(forward, entry.second);
            forward = static_cast<Record *>(ntl_avl_next(&forward->node));
        }
        ASSERT_EQ(forward, nullptr);
        auto back = static_cast<Record *>(tree.last != nullptr ? tree.last->data : nullptr);
        for (auto entry = model.rbegin(); entry != model.rend(); ++entry) {
            ASSERT_EQ(back, entry->second);
            back = static_cast<Record *>(ntl_avl_prev(&back->node));
        }
        ASSERT_EQ(back, nullptr);
    }
    std::vector<std::unique_ptr<Record>> records_;
};

} // namespace

TEST(Avl, RandomOperationsAgreeWithMap) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (NB_INT range : {3, 12, 90}) {
        Index index;
        std::vector<Record *> removed;
        for (int step = 0; step < 2500 && !testing::Test::HasFailure(); step++) {
            NB_INT key = static_cast<NB_INT>(random() % static_cast<unsigned>(range));
            bool grow = step / 250 % 2 == 0;
            index.probe(key);
            if (random() % 3 == 0 ? grow : !grow) {
                if (index.model.count(key) != 0) {
                    removed.push_back(index.remove(key));
                }
            } else if (!removed.empty() && random() % 2 == 0) {
                index.insert(removed.back()); /* a node that was deleted, or refused */
                removed.pop_back();
            } else {
                index.insert(key);
            }
        }
    }
}

TEST(Avl, OrderedArrivalCostsOneComparison) {
    Index index;
    for (NB_INT key = 0; key < 500; key++) {
        Record *record = index.make(key);
        comparisons = 0;
        ntl_avl_insert(&index.tree, &record->node);
        EXPECT_LE(comparisons, 1);
    }
    for (NB_INT key = 0; key < 500; key++) {
        comparisons = 0;
        ntl_avl_find(&index.tree, &key);
        EXPECT_LE(comparisons, 9);
    }
}

TEST(Avl, MisuseIsReportedAndChangesNothing) {
    Index index({2, 1, 3});
    Record *outside = index.make(4);
    REPORTS reports;
    EXPECT_EQ(ntl_avl_insert(&index.tree, index.tree.root), 0);
    EXPECT_NE(reports.take().find("!AVL_IN_TREE(*node)"), std::string::npos);
    ntl_avl_delete(&index.tree, &outside->node);
    EXPECT_NE(reports.take().find("node_in_tree"), std::string::npos);
    EXPECT_EQ(ntl_avl_next(&outside->node), nullptr);
    EXPECT_EQ(ntl_avl_prev(&outside->node), nullptr);
    EXPECT_EQ(ntl_avl_validate(&index.tree), 3);
}
