#include "base/itemset_hash.h"

#include <gtest/gtest.h>

#include <set>

namespace korv {
namespace {

TEST(ItemsetHash, IsThatOfTheItemsWhereverTheyAre) {
    const Itemset itemset = {1, 2, 3};
    const Itemset longer = {0, 1, 2, 3};
    EXPECT_EQ(hash_of(itemset), hash_of(ItemSpan(longer).subspan(1)));
    EXPECT_EQ(ItemsetHash{}(itemset), static_cast<std::size_t>(hash_of(itemset)));
}

TEST(ItemsetHash, DependsOnOrderAndRepetition) {
    const std::set<std::uint64_t> hashes = {hash_of(Itemset{}),     hash_of(Itemset{0}),
                                            hash_of(Itemset{0, 0}), hash_of(Itemset{1, 2}),
                                            hash_of(Itemset{2, 1}), hash_of(Itemset{1, 2, 2})};
    EXPECT_EQ(hashes.size(), 6U);
}

TEST(ItemsetHash, SpreadsSmallItemsetsOverTheLowBits) {
    // A hash table of 4,096 slots looks at 12 bits. Of 4,950 pairs, as many slots as chance takes would be
    // 4096 * (1 - exp(-4950 / 4096)), about 2,870.
    std::set<std::uint64_t> slots;
    for (Item first = 0; first < 100; ++first) {
        for (Item second = first + 1; second < 100; ++second) {
            slots.insert(hash_of(Itemset{first, second}) % 4096);
        }
    }
    EXPECT_GT(slots.size(), 2700U);
}

}  // namespace
}  // namespace korv
