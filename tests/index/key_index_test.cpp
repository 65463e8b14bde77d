#include "index/key_index.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/itemset_tables.h"

namespace korv {
namespace {

/// An index, and a search in it.
class SearchedIndex : private KeyIndex, public KeySearch {
public:
    SearchedIndex(const std::vector<Itemset>& keys, const std::vector<KeyOwner>& owners, std::size_t items)
        : KeyIndex(test::table_of(keys), owners, items), KeySearch(static_cast<const KeyIndex&>(*this)) {}
    SearchedIndex(const SearchedIndex&) = delete;
    SearchedIndex& operator=(const SearchedIndex&) = delete;
    ~SearchedIndex() = default;
};

/// Keys of classes that stand in this order.
SearchedIndex index_of(const std::vector<Itemset>& keys, const std::vector<Count>& supports,
                       std::size_t items) {
    std::vector<KeyOwner> owners;
    for (const Count support : supports) {
        owners.push_back({support, static_cast<std::uint32_t>(owners.size())});
    }
    return {keys, owners, items};
}

/// The definition of KeySearch::largest_support_within.
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
    SearchedIndex index = index_of({{0}, {1}, {0, 2}}, {3, 5, 9}, 3);
    EXPECT_EQ(index.largest_support_within(Itemset{0}), 3U);
    EXPECT_EQ(index.largest_support_within(Itemset{0, 1}), 5U);
    EXPECT_EQ(index.largest_support_within(Itemset{0, 1, 2}), 9U);
}

TEST(KeyIndex, FindsNothingWithoutAKeyWithin) {
    SearchedIndex index = index_of({{0, 1}}, {4}, 3);
    EXPECT_EQ(index.largest_support_within(Itemset{0, 2}), 0U);
}

TEST(KeyIndex, FindsNothingThatIsNotMoreThanAskedFor) {
    SearchedIndex index = index_of({{0}}, {4}, 1);
    EXPECT_EQ(index.largest_support_within(Itemset{0}, 3), 4U);
    EXPECT_EQ(index.largest_support_within(Itemset{0}, 4), 4U);
    EXPECT_EQ(index.largest_support_within(Itemset{0}, 5), 5U);
}

TEST(KeyIndex, TakesTheLargerSupportOfEqualKeys) {
    SearchedIndex index = index_of({{0}, {0}, {0}}, {4, 6, 5}, 1);
    EXPECT_EQ(index.largest_support_within(Itemset{0}), 6U);
}

TEST(KeyIndex, FindsAKeyThatContainsAnotherOfMoreSupport) {
    SearchedIndex index = index_of({{0}, {0, 1}}, {6, 4}, 2);
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
    SearchedIndex index = index_of(keys, supports, 1000);
    EXPECT_EQ(index.largest_support_within(Itemset{205, 699, 801}), 100U);
    EXPECT_EQ(index.largest_support_within(Itemset{3, 7, 99}), 200U);
    EXPECT_EQ(index.largest_support_within(Itemset{205}), 6U);
    EXPECT_EQ(index.largest_support_within(Itemset{205}, 6), 6U);
}

TEST(KeyIndex, OfNoKeysFindsNothing) {
    SearchedIndex index = index_of({}, {}, 2);
    EXPECT_EQ(index.largest_support_within(Itemset{0, 1}), 0U);
}

// Positions. The keys are those of the classes 0, 1, 2 and so on.

/// Where the positions of these supports and keys are searched, before position 9.
std::uint32_t first_position(const std::vector<Itemset>& keys, const std::vector<Count>& supports,
                             const Itemset& itemset, Count least, std::uint32_t before = 9) {
    SearchedIndex index = index_of(keys, supports, 4);
    const std::uint32_t first = index.first_position_within(itemset, least, before);
    EXPECT_EQ(index.has_position_within(itemset, least, before), first < before);
    return first;
}

TEST(KeyIndexPosition, IsTheFirstOfAKeyWithinOfMoreSupport) {
    const std::vector<Itemset> keys = {{0}, {1}, {0, 2}, {0, 1}};
    const std::vector<Count> supports = {3, 5, 6, 7};
    EXPECT_EQ(first_position(keys, supports, {0, 1, 2}, 2), 0U);
    EXPECT_EQ(first_position(keys, supports, {0, 1, 2}, 3), 1U);
    EXPECT_EQ(first_position(keys, supports, {0, 1, 2}, 4), 1U);
    EXPECT_EQ(first_position(keys, supports, {0, 1, 2}, 5), 2U);
    EXPECT_EQ(first_position(keys, supports, {0, 1}, 5), 3U);
    EXPECT_EQ(first_position(keys, supports, {0, 1, 2}, 6), 3U);
}

TEST(KeyIndexPosition, IsTheEndWithoutSuchAKey) {
    EXPECT_EQ(first_position({{0}, {0, 1}}, {3, 5}, {0, 2}, 3), 9U);
    EXPECT_EQ(first_position({{0}, {0, 1}}, {3, 5}, {2}, 0), 9U);
    EXPECT_EQ(first_position({}, {}, {0, 1}, 0), 9U);
}

TEST(KeyIndexPosition, IsBeforeTheEnd) {
    EXPECT_EQ(first_position({{0}, {1}}, {3, 5}, {0, 1}, 3, 1), 1U);
    EXPECT_EQ(first_position({{0}, {1}}, {3, 5}, {0, 1}, 3, 2), 1U);
    EXPECT_EQ(first_position({{0}, {1}}, {3, 5}, {0, 1}, 0, 0), 0U);
}

TEST(KeyIndexPosition, OfAKeyThatContainsAnotherIsSeen) {
    EXPECT_EQ(first_position({{0, 1}, {0}}, {6, 4}, {0, 1}, 4), 0U);
    EXPECT_EQ(first_position({{0}, {0, 1}}, {6, 4}, {0, 1}, 3), 0U);
}

TEST(KeyIndexPosition, OfAnEqualKeyOfLessSupportIsSeen) {
    // The key {0} stands for 3, 8 and 5. Those of less than 8 count as long as they come first.
    const std::vector<Itemset> keys = {{0}, {0}, {0}};
    EXPECT_EQ(first_position(keys, {3, 8, 5}, {0, 1}, 2), 0U);
    EXPECT_EQ(first_position(keys, {3, 8, 5}, {0, 1}, 3), 1U);
    EXPECT_EQ(first_position(keys, {3, 5, 8}, {0, 1}, 3), 1U);
    EXPECT_EQ(first_position(keys, {3, 5, 8}, {0, 1}, 5), 2U);
    EXPECT_EQ(first_position(keys, {3, 5, 8}, {0, 1}, 8), 9U);
    EXPECT_EQ(first_position(keys, {8, 5, 3}, {0, 1}, 2), 0U);
}

TEST(KeyIndexPosition, OfEqualKeysOfOneSupportIsTheFirst) {
    EXPECT_EQ(first_position({{1}, {0}, {0}}, {1, 5, 5}, {0}, 4), 1U);
}

TEST(KeyIndexPosition, OfAnEqualKeyIsSeenOnlyBeforeTheEndAndWithinTheItemset) {
    const std::vector<Itemset> keys = {{2}, {0, 1}, {0, 1}};
    EXPECT_EQ(first_position(keys, {1, 4, 8}, {0, 1}, 2, 1), 1U);
    EXPECT_EQ(first_position(keys, {1, 4, 8}, {0, 2}, 2), 9U);
    EXPECT_EQ(first_position(keys, {1, 4, 8}, {0, 1, 2}, 2), 1U);
}

TEST(KeyIndexPosition, OfClassesInAnyOrderIsTheSmallest) {
    SearchedIndex index({{0}, {1}, {0}}, {{7, 5}, {7, 2}, {4, 3}}, 2);
    EXPECT_EQ(index.first_position_within(Itemset{0, 1}, 3, 9), 2U);
    EXPECT_EQ(index.first_position_within(Itemset{0}, 3, 9), 3U);
    EXPECT_EQ(index.first_position_within(Itemset{0}, 4, 9), 5U);
    EXPECT_EQ(index.first_position_within(Itemset{0}, 4, 5), 5U);
    EXPECT_FALSE(index.has_position_within(Itemset{0}, 4, 5));
    EXPECT_TRUE(index.has_position_within(Itemset{0}, 4, 6));
}

TEST(KeyIndexOther, IsAKeyWithinOfEnoughSupportAndAnotherPosition) {
    SearchedIndex index = index_of({{0}, {0, 1}, {2}}, {3, 5, 4}, 4);
    EXPECT_FALSE(index.has_other_within(Itemset{0, 1}, 5, 1));
    EXPECT_TRUE(index.has_other_within(Itemset{0, 1}, 3, 1));
    EXPECT_FALSE(index.has_other_within(Itemset{0, 1}, 4, 1));
    EXPECT_TRUE(index.has_other_within(Itemset{0, 1, 2}, 4, 1));
    EXPECT_TRUE(index.has_other_within(Itemset{0, 1, 2}, 5, 2));
    EXPECT_FALSE(index.has_other_within(Itemset{3}, 1, 0));
}

TEST(KeyIndexOther, OfEqualKeysIsThatOfTheLargestSupportThenTheFirst) {
    SearchedIndex index = index_of({{0}, {0}, {0}}, {4, 6, 6}, 1);
    EXPECT_TRUE(index.has_other_within(Itemset{0}, 4, 0));
    EXPECT_FALSE(index.has_other_within(Itemset{0}, 4, 1));
    EXPECT_TRUE(index.has_other_within(Itemset{0}, 4, 2));
}

/// The definition of KeyIndex::has_other_within.
bool has_other(const std::vector<Itemset>& keys, const std::vector<Count>& supports, const Itemset& itemset,
               Count least, std::uint32_t position) {
    for (std::uint32_t key = 0; key < keys.size(); ++key) {
        bool is_hidden = false;
        for (std::uint32_t twin = 0; twin < keys.size(); ++twin) {
            const bool comes_first =
                supports[twin] > supports[key] || (supports[twin] == supports[key] && twin < key);
            is_hidden = is_hidden || (keys[twin] == keys[key] && comes_first);
        }
        if (!is_hidden && key != position && supports[key] >= least && is_contained(keys[key], itemset)) {
            return true;
        }
    }
    return false;
}

TEST(KeyIndexOther, IsFoundAsByLookingAtEachKey) {
    std::mt19937 random(20261122);
    for (const auto& [count, items] : {std::pair<std::size_t, Item>{6, 4}, {20, 8}, {60, 200}}) {
        for (int round = 0; round < 100; ++round) {
            const std::vector<Itemset> keys = test::random_itemsets(count, items, random);
            std::vector<Count> supports(count);
            std::ranges::generate(supports, [&] { return 1 + static_cast<Count>(random() % 9); });
            SearchedIndex index = index_of(keys, supports, items);
            for (const Itemset& itemset : test::random_itemsets(30, items, random)) {
                const Count least = 1 + static_cast<Count>(random() % 9);
                const auto position = static_cast<std::uint32_t>(random() % count);
                ASSERT_EQ(index.has_other_within(itemset, least, position),
                          has_other(keys, supports, itemset, least, position));
            }
        }
    }
}

/// The definition of KeyIndex::first_position_within.
std::uint32_t first_position(const std::vector<Itemset>& keys, const std::vector<KeyOwner>& owners,
                             const Itemset& itemset, Count least, std::uint32_t before) {
    for (std::size_t key = 0; key < keys.size(); ++key) {
        if (owners[key].support > least && is_contained(keys[key], itemset)) {
            before = std::min(before, owners[key].position);
        }
    }
    return before;
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
        SearchedIndex index = index_of(keys, supports, items);
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

TEST_P(RandomKeys, HaveTheirFirstPositionsAsByLookingAtEachOfThem) {
    const std::size_t count = GetParam().first;
    const Item items = GetParam().second;
    constexpr std::uint32_t seed = 20261122;
    std::mt19937 random(seed);
    for (int round = 0; round < 100; ++round) {
        // A third of the keys are equal to others.
        std::vector<Itemset> keys = test::random_itemsets(count, items, random);
        for (Itemset& key : keys) {
            if (random() % 3 == 0) {
                key = keys[random() % keys.size()];
            }
        }
        std::vector<KeyOwner> owners(count);
        std::ranges::generate(owners, [&] {
            return KeyOwner{static_cast<Count>(random() % 20), static_cast<std::uint32_t>(random() % count)};
        });
        SearchedIndex index(keys, owners, items);
        for (int query = 0; query < 100; ++query) {
            const Item one_in = 1 + static_cast<Item>(random() % items);
            Itemset itemset;
            for (Item item = 0; item < items; ++item) {
                if (random() % one_in == 0) {
                    itemset.push_back(item);
                }
            }
            const auto least = static_cast<Count>(random() % 22);
            const auto before = static_cast<std::uint32_t>(random() % (count + 2));
            const std::uint32_t expected = first_position(keys, owners, itemset, least, before);
            ASSERT_EQ(index.first_position_within(itemset, least, before), expected)
                << "seed " << seed << ", round " << round << ", query " << query;
            ASSERT_EQ(index.has_position_within(itemset, least, before), expected < before)
                << "seed " << seed << ", round " << round << ", query " << query;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(FewAndMany, RandomKeys,
                         ::testing::Values(std::pair{1, 3}, std::pair{40, 8}, std::pair{300, 14},
                                           std::pair{300, 40}, std::pair{500, 400}));

}  // namespace
}  // namespace korv
