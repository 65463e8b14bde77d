#include "key_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "itemset_tables.h"

namespace korv {
namespace {

/// The definition of KeyIndex::largest_support_within.
Count largest_support(const std::vector<Itemset>& keys, const std::vector<Count>& supports,
                      const Itemset& part, Count highest, Count lowest) {
    Count largest = 0;
    for (std::size_t key = 0; key < keys.size(); ++key) {
        if (supports[key] <= highest && supports[key] >= lowest && is_contained(keys[key], part)) {
            largest = std::max(largest, supports[key]);
        }
    }
    return largest;
}

/// Number of keys and of items: few keys under each item, or many, want different searches.
class RandomKeys : public ::testing::TestWithParam<std::pair<std::size_t, Item>> {};

TEST_P(RandomKeys, AreSearchedFromTheLargestSupportDown) {
    const auto [count, items] = GetParam();
    std::mt19937 random(20261121);
    const std::vector<Itemset> keys = test::random_itemsets(count, items, random);
    std::vector<Count> supports(count);
    std::ranges::generate(supports, [&] { return static_cast<Count>(random() % 50); });
    std::ranges::sort(supports, std::greater{});
    const ItemsetTable table = test::table_of(keys);
    KeyIndex index(table, supports, items);

    for (int round = 0; round < 300; ++round) {
        Itemset selected;
        while (selected.empty()) {
            for (Item item = 0; item < items; ++item) {
                if (random() % 3 != 0) {
                    selected.push_back(item);
                }
            }
        }
        const auto highest = static_cast<Count>(random() % 60);
        index.select(selected, highest);
        for (int query = 0; query < 10; ++query) {
            Itemset part;
            std::ranges::copy_if(selected, std::back_inserter(part), [&](Item) { return random() % 4 != 0; });
            const auto lowest = static_cast<Count>(random() % 40);
            ASSERT_EQ(index.largest_support_within(part, lowest),
                      largest_support(keys, supports, part, highest, lowest))
                << "round " << round << ", query " << query;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(FewAndMany, RandomKeys,
                         ::testing::Values(std::pair{1, 3}, std::pair{40, 8}, std::pair{3000, 14},
                                           std::pair{900, 40}));

}  // namespace
}  // namespace korv
