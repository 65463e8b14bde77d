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

// Among so many, some have the same hash of 32 bits.
TEST(BoundsCache, TellsItemsetsOfOneHashApart) {
    constexpr Item itemsets = 300'000;
    BoundsCache cache;
    for (Item item = 0; item < itemsets; ++item) {
        const auto [bounds, is_new] = cache.try_emplace(Itemset{item});
        ASSERT_TRUE(is_new) << "item " << item;
        bounds.lower = item;
    }
    for (Item item = 0; item < itemsets; ++item) {
        ASSERT_EQ(lower_bound_known(cache, {item}), static_cast<int>(item));
    }
}

// Caches that forget often. A stale entry shows as an itemset that should be new.

TEST(BoundsCache, ForgetsEachItemsetAtTheNextWhereOneIsAsMuchAsItMayTake) {
    BoundsCache cache(1);
    for (Count round = 0; round < 5000; ++round) {
        const Itemset itemset = {round / 2 % 10};  // each twice in a row
        const auto [bounds, is_new] = cache.try_emplace(itemset);
        ASSERT_TRUE(is_new) << "round " << round;
        bounds = {round, round};
    }
}

/// How many itemsets of two items are remembered before the next one makes the cache forget them; 0 if that
/// is more than there is room for, each with two bounds.
std::size_t capacity(std::size_t most_bytes) {
    for (Item count = 1; (count - 1) * (2 * sizeof(Item) + sizeof(SupportBounds)) < most_bytes; ++count) {
        BoundsCache cache(most_bytes);
        for (Item item = 0; item < count; ++item) {
            remember(cache, {item, item + 1}, item);
        }
        if (lower_bound_known(cache, {0, 1}) < 0) {
            return count;
        }
    }
    return 0;
}

class ForgetfulBoundsCache : public ::testing::TestWithParam<std::size_t> {};

TEST_P(ForgetfulBoundsCache, KnowsWhatWasSetSinceItForgotAndNothingElse) {
    const std::size_t most = capacity(GetParam());
    ASSERT_GE(most, 1 + GetParam() / 100);
    constexpr std::uint32_t seed = 9;
    std::mt19937 random(seed);
    BoundsCache cache(GetParam());
    std::map<Itemset, Count> remembered;
    std::size_t forgotten = 0;
    for (Count round = 0; round < 200'000; ++round) {
        if (remembered.size() == most) {
            remembered.clear();
            ++forgotten;
        }
        const auto item = static_cast<Item>(random() % (2 + most + most / 2));
        const Itemset itemset = {item, item + 1};
        const auto expected = remembered.find(itemset);
        const auto [bounds, is_new] = cache.try_emplace(itemset);
        ASSERT_EQ(is_new, expected == remembered.end()) << "seed " << seed << ", round " << round;
        if (!is_new) {
            ASSERT_EQ(bounds.lower, expected->second) << "seed " << seed << ", round " << round;
        }
        bounds = {round, round};
        remembered[itemset] = round;
    }
    EXPECT_GT(forgotten, 10U);
}

// Of a few itemsets; and of more than the first slots are for.
INSTANTIATE_TEST_SUITE_P(Bytes, ForgetfulBoundsCache, ::testing::Values(1, 100, 1000, 60'000));

}  // namespace
}  // namespace korv
