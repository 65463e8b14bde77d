#include "rules/itemset_parts.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace korv::tools {

namespace {

std::vector<ItemsetId> sorted_parts(const ItemsetParts& parts, ItemsetId id) {
    std::vector<ItemsetId> sorted(parts[id].begin(), parts[id].end());
    std::ranges::sort(sorted);
    return sorted;
}

using Ids = std::vector<ItemsetId>;

TEST(ItemsetParts, AreTheWantedItemsetsOfThePoolThatLieWithin) {
    ItemsetPool pool;
    const ItemsetId whole = pool.intern(Itemset{1, 4, 9});
    const ItemsetId part = pool.intern(Itemset{1, 9});
    const ItemsetId item = pool.intern(Itemset{9});
    const ItemsetId unwanted = pool.intern(Itemset{4});
    const ItemsetId other = pool.intern(Itemset{1, 5});
    std::vector<char> is_wanted(pool.size(), 1);
    is_wanted[unwanted] = 0;
    const ItemsetParts parts(pool, is_wanted);

    EXPECT_EQ(sorted_parts(parts, whole), (Ids{whole, part, item}));
    EXPECT_EQ(sorted_parts(parts, part), (Ids{part, item}));
    EXPECT_EQ(sorted_parts(parts, item), (Ids{item}));
    EXPECT_EQ(sorted_parts(parts, other), (Ids{other}));
    EXPECT_EQ(sorted_parts(parts, unwanted), Ids());
}

TEST(ItemsetParts, AreFoundUpToTheLastItemOfAShortItemset) {
    ItemsetPool pool;
    const ItemsetId whole = pool.intern(Itemset{1, 2, 3, 4, 5, 6, 7, 8});
    const ItemsetId last = pool.intern(Itemset{8});
    const ItemsetId all_but_one = pool.intern(Itemset{2, 3, 4, 5, 6, 7, 8});
    const ItemsetParts parts(pool, {1, 1, 1});

    EXPECT_EQ(sorted_parts(parts, whole), (Ids{whole, last, all_but_one}));
}

TEST(ItemsetParts, AreNoneForALongItemset) {
    ItemsetPool pool;
    const ItemsetId whole = pool.intern(Itemset{1, 2, 3, 4, 5, 6, 7, 8, 9});
    pool.intern(Itemset{1});
    const ItemsetParts parts(pool, {1, 1});

    EXPECT_TRUE(parts[whole].empty());
}

}  // namespace

}  // namespace korv::tools
