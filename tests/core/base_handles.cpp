// Handles and queues.

#include "../../platform/base/handletable.h"
#include "nbbase.h"

#include <gtest/gtest.h>
#include <random>
#include <unordered_map>
#include <vector>

namespace {

char objects[64];

TEST(Handles, StandForTheirPointerUntilDestroyed) {
    const NB_ULONG first = nba_create_handle(&objects[0]);
    const NB_ULONG second = nba_create_handle(&objects[0]);
    EXPECT_NE(first, 0U);
    EXPECT_NE(first, second);
    nba_destroy_handle(first);
    nba_destroy_handle(first);
    nba_destroy_handle(0);
    EXPECT_EQ(nba_validate_handle(first), nullptr);
    EXPECT_EQ(nba_validate_handle(second), &objects[0]);
    EXPECT_EQ(nba_validate_handle(0), nullptr);
    EXPECT_EQ(nba_validate_handle(second + 1), nullptr);
    EXPECT_EQ(nba_create_handle(nullptr), 0U);
}

TEST(Handles, RandomOperationsAgreeWithAMap) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    base::HandleTable table(0xFFFFF000); // passes 0 on the way
    std::unordered_map<NB_ULONG, void *> model;
    std::vector<NB_ULONG> all;
    for (int step = 0; step < 200000; step++) {
        if (random() % 5 < (step < 100000 ? 3U : 2U) || all.empty()) {
            void *object = &objects[random() % 64];
            const NB_ULONG handle = table.create(object);
            ASSERT_NE(handle, 0U);
            ASSERT_TRUE(model.emplace(handle, object).second);
            all.push_back(handle);
        } else {
            const NB_ULONG handle = all[random() % all.size()];
            table.destroy(handle);
            model.erase(handle);
        }
        const NB_ULONG asked = all[random() % all.size()];
        const auto found = model.find(asked);
        ASSERT_EQ(table.find(asked), found == model.end() ? nullptr : found->second);
        ASSERT_EQ(table.live(), model.size());
    }
    for (NB_ULONG handle : all) {
        const auto found = model.find(handle);
        ASSERT_EQ(table.find(handle), found == model.end() ? nullptr : found->second);
    }
}

TEST(Queues, KeepOrderAndLetGoAnywhere) {
    NB_LQE head;
    NB_LQE entries[4];
    NB_INIT_LIST(head);
    EXPECT_EQ(nba_get_q_head(&head), nullptr);
    for (NB_LQE &entry : entries) {
        nba_add_to_q_tail(&head, &entry);
    }
    nba_remove_from_q(&entries[1]);
    nba_remove_from_q(&entries[1]); // points at itself, so nothing more happens
    nba_remove_from_q(&entries[3]);
    nba_add_to_q_tail(&head, &entries[1]);
    for (int expected : {0, 2, 1}) {
        ASSERT_EQ(nba_get_q_head(&head), &entries[expected]);
        nba_remove_from_q(&entries[expected]);
    }
    EXPECT_TRUE(NB_EMPTY_LIST(head));
}

} // namespace
