#include "index/key_index.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/itemset_tables.h"

namespace korv {
namespace {

KeyIndex index_of(const std::vector<Itemset>& keys, const std::vector<Count>& supports, std::size_t items) {
    std::vector<KeyOwner> owners;
    for (const Count support : supports) {
        owners.push_back({support, static_cast<std::uint32_t>(owners.size())});
    }
    return {test::table_of(keys), owners, items};
}

/// The definition of KeyIndex::largest_support_within.
Count largest_support(const std::vector<Itemset>& keys, const std::vector<Count>& supports,
                      const Itemset& itemset, Count least) {
    Count largest = least;
    for (std::size_t key = 0; key < keys.size(); ++key) {
        if (is_contained(keys[key], itemset)) {
            largest = std::max(largest, supports[key]);
        }
    }
    return largest;
}

TEST(KeyIndex, FindsTheLargestSupportOfAKeyWithin) {
    KeyIndex index = index_of({{0}, {1}, {0, 2}}, {3, 5, 9}, 3);
    EXPECT_EQ(index.largest_support_within(Itemset{0}), 3U);
    EXPECT_EQ(index.largest_support_within(Itemset{0, 1}), 5U);
    EXPECT_EQ(index.largest_support_within(Itemset{0, 1, 2}), 9U);
}

TEST(KeyIndex, FindsNothingWithoutAKeyWithin) {
    KeyIndex index = index_of({{0, 1}}, {4}, 3);
    EXPECT_EQ(index.largest_support_within(Itemset{0, 2}), 0U);
}

TEST(KeyIndex, FindsNothingThatIsNotMoreThanAskedFor) {
    KeyIndex index = index_of({{0}}, {4}, 1);
    EXPECT_EQ(index.largest_support_within(Itemset{0}, 3), 4U);
    EXPECT_EQ(index.largest_support_within(Itemset{0}, 4), 4U);
    EXPECT_EQ(index.largest_support_within(Itemset{0}, 5), 5U);
}

TEST(KeyIndex, TakesTheLargerSupportOfEqualKeys) {
    KeyIndex index = index_of({{0}, {0}, {0}}, {4, 6, 5}, 1);
    EXPECT_EQ(index.largest_support_within(Itemset{0}), 6U);
}

TEST(KeyIndex, FindsAKeyThatContainsAnotherOfMoreSupport) {
    KeyIndex index = index_of({{0}, {0, 1}}, {6, 4}, 2);
    EXPECT_EQ(index.largest_support_within(Itemset{0, 1}), 6U);
}

TEST(KeyIndex, FindsTheLargestSupportAmongManyItems) {
    std::vector<Itemset> keys;
    std::vector<Count> supports;
    for (Item item = 0; item < 1000; ++item) {
        keys.push_back({item});
        supports.push_back(1 + item % 100);
    }
    keys.push_back({3, 7});
    supports.push_back(200);
    KeyIndex index = index_of(keys, supports, 1000);
    EXPECT_EQ(index.largest_support_within(Itemset{205, 699, 801}), 100U);
    EXPECT_EQ(index.largest_support_within(Itemset{3, 7, 99}), 200U);
    EXPECT_EQ(index.largest_support_within(Itemset{205}), 6U);
    EXPECT_EQ(index.largest_support_within(Itemset{205}, 6), 6U);
}

TEST(KeyIndex, OfNoKeysFindsNothing) {
    KeyIndex index = index_of({}, {}, 2);
    EXPECT_EQ(index.largest_support_within(Itemset{0, 1}), 0U);
}

/// Number of keys and of items.
class RandomKeys : public ::testing::TestWithParam<std::pair<std::size_t, Item>> {};

TEST_P(RandomKeys, AreFoundAsByLookingAtEachOfThem) {
    const auto [count, items] = GetParam();
    std::mt19937 random(20261121);
    for (int round = 0; round < 100; ++round) {
        const std::vector<Itemset> keys = test::random_itemsets(count, items, random);
        std::vector<Count> supports(count);
        std::ranges::generate(supports, [&] { return static_cast<Count>(random() % 50); });
        KeyIndex index = index_of(keys, supports, items);
        for (int query = 0; query < 100; ++query) {
            // From nearly all items to few of them.
            const Item one_in = 1 + static_cast<Item>(random() % items);
            Itemset itemset;
            for (Item item = 0; item < items; ++item) {
                if (random() % one_in == 0) {
                    itemset.push_back(item);
                }
            }
            const Count least = random() % 2 == 0 ? 0 : static_cast<Count>(random() % 60);
            ASSERT_EQ(index.largest_support_within(itemset, least),
                      largest_support(keys, supports, itemset, least))
                << "round " << round << ", query " << query;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(FewAndMany, RandomKeys,
                         ::testing::Values(std::pair{1, 3}, std::pair{40, 8}, std::pair{300, 14},
                                           std::pair{300, 40}, std::pair{500, 400}));

}  // namespace
}  // namespace korv
