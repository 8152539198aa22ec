// Handles.

#include "../../platform/base/handletable.h"
#include "nbbase.h"

#include <gtest/gtest.h>
#include <random>
#include <unordered_map>
#include <vector>

namespace {

char objects[64];

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

} // namespace
