#include "rules/itemset_pool.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace korv::tools {

namespace {

TEST(ItemsetPool, NumbersItemsetsFrom0InTheirOrder) {
    ItemsetPool pool;

    EXPECT_EQ(pool.intern(Itemset{2, 5}), 0U);
    EXPECT_EQ(pool.intern(Itemset{}), 1U);
    EXPECT_EQ(pool.intern(Itemset{2}), 2U);
    EXPECT_EQ(pool.size(), 3U);
}

TEST(ItemsetPool, KnowsAnItemsetAgain) {
    ItemsetPool pool;
    pool.intern(Itemset{7});
    const ItemsetId id = pool.intern(Itemset{1, 9});

    EXPECT_EQ(pool.intern(Itemset{1, 9}), id);
    EXPECT_TRUE(std::ranges::equal(pool[id], Itemset{1, 9}));
    EXPECT_EQ(pool.size(), 2U);
}

TEST(ItemsetPool, FindsOnlyWhatIsThere) {
    ItemsetPool pool;
    EXPECT_EQ(pool.find(Itemset{1, 9}), std::nullopt);
    pool.intern(Itemset{7});
    const ItemsetId id = pool.intern(Itemset{1, 9});

    EXPECT_EQ(pool.find(Itemset{1, 9}), id);
    EXPECT_EQ(pool.find(Itemset{1}), std::nullopt);
    EXPECT_EQ(pool.size(), 2U);
}

TEST(ItemsetPool, KeepsTheNumbersOfManyItemsets) {
    ItemsetPool pool;
    constexpr Item many = 10'000;
    for (Item item = 0; item < many; ++item) {
        ASSERT_EQ(pool.intern(Itemset{item, item + 1}), item);
    }
    for (Item item = 0; item < many; ++item) {
        ASSERT_EQ(pool.intern(Itemset{item, item + 1}), item);
    }
}

}  // namespace

}  // namespace korv::tools
