#include "index/bounds_cache.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace korv {
namespace {

/// What the cache knows of an itemset: its lower bound, or -1 where it was not there.
int lower_bound_known(BoundsCache& cache, const Itemset& itemset) {
    const auto [bounds, is_new] = cache.try_emplace(itemset);
    return is_new ? -1 : static_cast<int>(bounds.lower);
}

void remember(BoundsCache& cache, const Itemset& itemset, Count lower) {
    cache.try_emplace(itemset).first = {lower, lower + 1};
}

TEST(BoundsCache, GivesBackWhatWasSet) {
    BoundsCache cache;
    remember(cache, {1, 2}, 7);
    const auto [bounds, is_new] = cache.try_emplace(Itemset{1, 2});
    EXPECT_FALSE(is_new);
    EXPECT_EQ(bounds.lower, 7U);
    EXPECT_EQ(bounds.upper, 8U);
}

TEST(BoundsCache, TellsItemsetsApart) {
    BoundsCache cache;
    remember(cache, {1, 2}, 7);
    remember(cache, {12}, 8);
    EXPECT_EQ(lower_bound_known(cache, {1}), -1);
    EXPECT_EQ(lower_bound_known(cache, {1, 2, 3}), -1);
    EXPECT_EQ(lower_bound_known(cache, {1, 2}), 7);
    EXPECT_EQ(lower_bound_known(cache, {12}), 8);
}

TEST(BoundsCache, KeepsManyItemsetsWhileItGrows) {
    std::mt19937 random(5);
    std::map<Itemset, Count> remembered;
    BoundsCache cache;
    for (Count i = 0; i < 5000; ++i) {
        const Itemset itemset = {static_cast<Item>(random() % 100), static_cast<Item>(100 + random() % 100)};
        remember(cache, itemset, i);
        remembered[itemset] = i;
    }
    ASSERT_GT(remembered.size(), 3000U);
    for (const auto& [itemset, lower] : remembered) {
        ASSERT_EQ(lower_bound_known(cache, itemset), static_cast<int>(lower));
    }
}

TEST(BoundsCache, ForgetsAllWhenItTakesAsMuchAsItMay) {
    BoundsCache cache(3000);
    for (Item item = 0; item < 20; ++item) {
        remember(cache, {item}, item);
    }
    EXPECT_EQ(lower_bound_known(cache, {0}), 0);
    EXPECT_EQ(lower_bound_known(cache, {19}), 19);
    for (Item item = 20; item < 100; ++item) {
        remember(cache, {item}, item);
    }
    EXPECT_EQ(lower_bound_known(cache, {0}), -1);
    EXPECT_EQ(lower_bound_known(cache, {99}), 99);
}

TEST(BoundsCache, TakesLongItemsetsForMore) {
    BoundsCache cache(3000);
    remember(cache, Itemset(1000, 7), 1);
    EXPECT_EQ(lower_bound_known(cache, {1}), -1);
    EXPECT_EQ(lower_bound_known(cache, Itemset(1000, 7)), -1);
}

}  // namespace
}  // namespace korv
